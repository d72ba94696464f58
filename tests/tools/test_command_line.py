"""The generator as a program: its modes, what it writes and what it leaves alone."""

import os
import subprocess
import sys
import tempfile
from pathlib import Path

import generator
from support import SMALL_MODEL, ChangedModel, generated, run

PROGRAM = Path(generator.__file__).parent


class Check(ChangedModel):
    def test_model_in_order_prints_nothing(self) -> None:
        self.assertEqual(run("--model", str(SMALL_MODEL), "--check"), (0, "", ""))

    def test_errors_go_to_the_error_stream_and_end_with_1(self) -> None:
        self.change("lamps/lamp.toml", 'refuses = "newer"', 'refuses = "new"')
        self.assertEqual(run("--model", str(self.model), "--check"), (
            1, "", "model/lamps/lamp.toml:9: ILamp.Flash: there is no refusal list 'new'; did you"
                   " mean 'newer'?\n"))

    def test_check_writes_nothing(self) -> None:
        before = sorted(self.model.rglob("*"))
        run("--model", str(self.model), "--check")
        self.assertEqual(sorted(self.model.rglob("*")), before)

    def test_runs_as_a_folder_from_anywhere(self) -> None:
        with tempfile.TemporaryDirectory() as elsewhere:
            done = subprocess.run(
                [sys.executable, "-B", str(PROGRAM), "--model", str(SMALL_MODEL), "--check"],
                cwd=elsewhere, capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))


class Output(ChangedModel):
    def setUp(self) -> None:
        super().setUp()
        self.output = self.model.parent / "generated"

    def write(self) -> tuple[int, str, str]:
        return run("--model", str(self.model), "--output", str(self.output), "--version", "1.2.3")

    def age(self) -> None:
        """Sets every file back, so that a write shows."""
        for path in self.output.rglob("*.*"):
            os.utime(path, (1_000_000, 1_000_000))

    def written(self) -> list[str]:
        return sorted(path.relative_to(self.output).as_posix()
                      for path in self.output.rglob("*.*") if path.stat().st_mtime != 1_000_000)

    def test_writes_every_file(self) -> None:
        self.assertEqual(self.write(), (0, "", ""))
        found = sorted(path.relative_to(self.output).as_posix()
                       for path in self.output.rglob("*.*"))
        self.assertEqual(found, sorted(generated()))

    def test_unchanged_output_is_not_written_again(self) -> None:
        self.write()
        self.age()
        self.write()
        self.assertEqual(self.written(), [])

    def test_only_what_changed_is_written(self) -> None:
        self.write()
        self.age()
        self.change("lamps/lamp.toml", 'path = "HOURS"', 'path = "TIME"')
        self.write()
        self.assertEqual(self.written(), ["members/ILamp.h"])

    def test_file_that_was_changed_by_hand_is_put_right(self) -> None:
        self.write()
        path = self.output / "members" / "ILamp.h"
        text = path.read_text(encoding="ascii")
        path.write_text(text + "// Mine.\n", encoding="ascii")
        self.write()
        self.assertEqual(path.read_text(encoding="ascii"), text)

    def test_file_that_is_no_longer_made_goes(self) -> None:
        self.write()
        mine = self.output / "members" / "mine.h"
        mine.write_text("// Written by hand.\n", encoding="ascii")
        self.change("enum_order.toml", '"LampShape", ', "")
        self.change("expected.toml", "LampShape = { members = 1, tables = 0 }\n", "")
        self.change("expected.toml", "enumerations = 2\nmembers = 3",
                    "enumerations = 1\nmembers = 2")
        self.change("enums/lamps.toml", '''[LampShape]
doc = "The shape of a lamp; nothing converts it."
short = "Shape"

[LampShape.values]
LampShapeRound = 0
''', "")
        self.write()
        self.assertFalse((self.output / "include/kestrion/enums/LampShape.h").exists())
        self.assertTrue(mine.exists())

    def test_model_with_errors_writes_nothing(self) -> None:
        self.change("lamps/lamp.toml", 'refuses = "newer"', 'refuses = "new"')
        self.assertEqual(self.write()[0], 1)
        self.assertFalse(self.output.exists())


class Lists(ChangedModel):
    def test_files_by_group(self) -> None:
        result, text, errors = run("--model", str(SMALL_MODEL), "--list")
        self.assertEqual((result, errors), (0, ""))
        lines = text.splitlines()
        self.assertEqual(len(lines), len(generated()))
        self.assertEqual([line for line in lines if not line.startswith("headers ")], [
            "tables tables/enum_data.cpp",
            "tables tables/family_data.cpp",
            "tables tables/repeated_capability_data.cpp",
            "core core/message_data.cpp",
            "faces faces/IBase.cpp",
            "faces faces/IBeacon.cpp",
            "faces faces/IChime.cpp",
            "faces faces/IClassLamp.cpp",
            "faces faces/IGate.cpp",
            "faces faces/IGates.cpp",
            "faces faces/IHighChime.cpp",
            "faces faces/ILamp.cpp",
            "faces faces/IRoot.cpp",
            "objects objects/GateFaces.cpp",
            "objects objects/RootFaces.cpp",
            "tests tests/lamps_beacon.cpp",
            "tests tests/lamps_chime.cpp",
            "tests tests/lamps_gates.cpp",
            "tests tests/lamps_lamp.cpp",
            "tests tests/properties.cpp",
        ])
        self.assertIn("headers include/kestrion/interfaces/IAlien.h", lines)
