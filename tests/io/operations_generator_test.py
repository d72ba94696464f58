#!/usr/bin/env python3
"""The generator of alike operations: what it makes of a small description, and what it refuses."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

GENERATOR = Path(__file__).resolve().parents[2] / "io" / "operations" / "generate.py"

HEAD = """
doc = "The operations of a pump."
includes = ["pump/cores.h"]
struct = "Pump"
base = "PumpCores"

[words]
timeout = "int timeout = -2"

[each]
widths = [ { bits = "8", type = "Byte" }, { bits = "16", type = "Short" } ]
"""

PUMP = """// The operations of a pump. Generated from pump.toml.
#pragma once

#include "pump/cores.h"

namespace kestrion {

struct Pump : PumpCores {

    // Starts it.
    template <typename T>
    Status Start(T speed, int timeout = -2) {
        return StartOf(speed, timeout, Polling::kOn);
    }
    template <typename T>
    Status StartNoPoll(T speed, int timeout = -2) {
        return StartOf(speed, timeout, Polling::kOff);
    }
    Status Stop() {
        return StopOf();
    }

    // One register.
    Status In8(Byte* value) {
        return InOf(value);
    }
    Status Out8(Byte value) {
        return OutOf(value);
    }
    Status In16(Short* value) {
        return InOf(value);
    }
    Status Out16(Short value) {
        return OutOf(value);
    }
};

}  // namespace kestrion
""".replace("Status", "HRESULT")

ROWS = """
[[operations]]
doc = "Starts it."
name = "Start"
before = "typename T"
args = "T speed, {timeout}"
body = "StartOf(speed, timeout, {polling})"
[[operations]]
name = "Stop"
args = ""
body = "StopOf()"
[[operations]]
doc = "One register."
each = "widths"
name = "In{bits}"
args = "{type}* value"
body = "InOf(value)"
[[operations]]
each = "widths"
name = "Out{bits}"
args = "{type} value"
body = "OutOf(value)"
"""


def row(text: str) -> str:
    return f"[[operations]]\n{text}\n"


class OperationsGeneratorTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.source = Path(folder.name) / "pump.toml"
        self.target = Path(folder.name) / "made" / "pump_families.h"

    def generate(self, description: str) -> subprocess.CompletedProcess:
        self.source.write_text(description, encoding="utf-8")
        return subprocess.run([sys.executable, "-B", GENERATOR, self.source, self.target],
                              capture_output=True, text=True, timeout=50, check=False)

    def refused(self, description: str, why: str) -> None:
        result = self.generate(description)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, f"{self.source}: {why}\n")
        self.assertFalse(self.target.exists())

    def test_a_header_has_each_form_of_each_row(self) -> None:
        result = self.generate(HEAD + ROWS)
        self.assertEqual(result.stderr, "")
        self.assertEqual(self.target.read_text(encoding="utf-8"), PUMP)

    def test_a_header_that_would_stay_the_same_is_not_written(self) -> None:
        self.generate(HEAD + ROWS)
        before = self.target.stat().st_mtime_ns
        self.assertEqual(self.generate(HEAD + ROWS).returncode, 0)
        self.assertEqual(self.target.stat().st_mtime_ns, before)

    def test_an_unknown_key_is_refused(self) -> None:
        self.refused('colour = "red"\n' + HEAD + ROWS, "unknown colour")
        self.refused(HEAD + row('name = "A"\nargs = ""\nbody = "B()"\npoll = "no"'),
                     "A: unknown poll")

    def test_a_missing_key_is_refused(self) -> None:
        self.refused(HEAD + row('doc = "D"\nname = "A"'), "A: no args, body")
        self.refused(HEAD + row('doc = "D"\nargs = ""\nbody = "B()"'),
                     "a row without a name: no name")

    def test_a_word_that_is_none_is_refused(self) -> None:
        self.refused(HEAD + row('doc = "D"\nname = "A"\nargs = "{timeuot}"\nbody = "B()"'),
                     "A: there is no word 'timeuot'")

    def test_a_list_that_is_none_is_refused(self) -> None:
        self.refused(HEAD + row('doc = "D"\nname = "A"\nargs = ""\nbody = "B()"\neach = "sizes"'),
                     "A: there is no list sizes in [each]")

    def test_a_family_begins_with_a_doc(self) -> None:
        self.refused(HEAD + row('name = "A"\nargs = ""\nbody = "B()"'),
                     "A: no doc at the beginning of a family")
        self.refused(HEAD + row('doc = "D"\nname = "A"\nargs = ""\nbody = "B()"')
                     + row('name = "C{bits}"\nargs = ""\nbody = "B()"\neach = "widths"'),
                     "C{bits}: no doc at the beginning of a family")

    def test_a_file_that_is_no_description_is_refused(self) -> None:
        result = self.generate("operations =")
        self.assertEqual(result.returncode, 1)
        self.assertTrue(result.stderr.startswith(f"{self.source}: "))


if __name__ == "__main__":
    unittest.main()
