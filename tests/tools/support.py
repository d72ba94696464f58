"""What the tests of the generator share."""

import contextlib
import io
import shutil
import tempfile
import unittest
from pathlib import Path

from generator import output
from generator.cli import main, read_model
from generator.problems import ModelError, Problems

HERE = Path(__file__).resolve().parent
SMALL_MODEL = HERE / "small_model"


def generated(version: str = "1.2.3") -> dict[str, str]:
    """Every output of the small model, by path."""
    return output.all_files(read_model(SMALL_MODEL, version, Problems()))


def run(*arguments: str) -> tuple[int, str, str]:
    """Runs the generator: its result, its output and its errors."""
    out, errors = io.StringIO(), io.StringIO()
    with contextlib.redirect_stdout(out), contextlib.redirect_stderr(errors):
        result = main(list(arguments))
    return result, out.getvalue(), errors.getvalue()


class ChangedModel(unittest.TestCase):
    """A test on copies of the small model with one change each."""

    def setUp(self) -> None:
        self._folder = tempfile.TemporaryDirectory()
        self.addCleanup(self._folder.cleanup)
        self.model = Path(self._folder.name) / "model"
        shutil.copytree(SMALL_MODEL, self.model)

    def change(self, file: str, old: str, new: str) -> None:
        """Replaces a text that stands in the file exactly once."""
        path = self.model / file
        text = path.read_text(encoding="utf-8")
        self.assertEqual(text.count(old), 1, f"'{old}' in {file}")
        path.write_text(text.replace(old, new), encoding="utf-8")

    def errors(self) -> list[str]:
        """What the generator says of the changed model."""
        problems = Problems()
        with contextlib.suppress(ModelError):
            read_model(self.model, "1.2.3", problems)
        return problems.lines()
