"""What the tests of this folder share."""

import contextlib
import importlib.util
import io
import sys
import tempfile
import unittest
from pathlib import Path
from types import ModuleType

TREE = Path(__file__).resolve().parents[2]


def load_tool(name: str) -> ModuleType:
    """A program of tools/ as a module."""
    path = TREE / "tools" / f"{name}.py"
    specification = importlib.util.spec_from_file_location(name, path)
    module = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(module)
    return module


class ToolTest(unittest.TestCase):
    """Runs a tool on a small tree of its own."""

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)

    def write(self, path: str, text: str = "") -> None:
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def run_tool(self, tool: ModuleType, *arguments: str) -> tuple[int, list[str], str]:
        """The exit code, the lines of standard output and the text of standard error."""
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            code = tool.main(list(arguments))
        return code, out.getvalue().splitlines(), err.getvalue()


def run() -> None:
    """Runs the tests of the calling file; a file without any fails."""
    program = unittest.main(module="__main__", exit=False, verbosity=2)
    ran = program.result.testsRun > 0
    sys.exit(0 if ran and program.result.wasSuccessful() else 1)
