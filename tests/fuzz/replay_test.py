#!/usr/bin/env python3
"""The replay of a corpus: what it runs, and that it doesn't pass without one.

REPLAY is a target that was built without libFuzzer.
"""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

REPLAY = os.environ["REPLAY"]


class ReplayTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def replay(self, *arguments: str) -> subprocess.CompletedProcess:
        return subprocess.run([REPLAY, *arguments], stdin=subprocess.DEVNULL, capture_output=True,
                              timeout=50, check=False)

    def test_a_folder_without_inputs_fails(self) -> None:
        (self.folder / "below").mkdir()
        result = self.replay(str(self.folder))
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"There is no input in", result.stderr)

    def test_a_missing_folder_fails(self) -> None:
        result = self.replay(str(self.folder / "nowhere"))
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"There is no input in", result.stderr)

    def test_it_asks_for_one_folder(self) -> None:
        self.assertEqual(self.replay().returncode, 2)
        self.assertEqual(self.replay("--show").returncode, 2)
        self.assertEqual(self.replay("a", "b").returncode, 2)

    def test_every_input_is_run_and_changed(self) -> None:
        (self.folder / "second").write_bytes(b"Channel1,Channel2")
        (self.folder / "first").write_bytes(b"")
        result = self.replay(str(self.folder))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout,
                         b"first\nsecond\n2 inputs, each with 1500 changes\n")

    def test_the_changes_are_the_same_each_time(self) -> None:
        (self.folder / "input").write_bytes(b"[Channel1-3]:A\x00\\")
        first = self.replay("--show", str(self.folder / "input"))
        self.assertEqual(first.returncode, 0, first.stderr)
        lines = first.stdout.splitlines()
        self.assertEqual(len(lines), 3002)
        self.assertGreater(len(set(lines)), 2000)
        self.assertEqual(self.replay("--show", str(self.folder / "input")).stdout, first.stdout)


if __name__ == "__main__":
    program = unittest.main(exit=False, verbosity=2)
    sys.exit(0 if program.result.testsRun > 0 and program.result.wasSuccessful() else 1)
