"""scripts/bench as a program: which groups it measures, and the file that it keeps."""

import contextlib
import io
import json
import os
import subprocess
import tempfile
import unittest
from pathlib import Path
from unittest import mock

from bench import cli, groups
from bench.report import BEGIN, END, Group
from bench.rows import Row
from bench.runner import TREE, RunError

ROW = Row("one", "us", 25.0, 20.0, 24.0, 19.0, 1.25)


class Choice(unittest.TestCase):
    def chosen(self, *arguments: str) -> list[str]:
        return cli.chosen(cli.parser().parse_args(list(arguments)))

    def test_everything_is_measured_unless_groups_are_named(self) -> None:
        self.assertEqual(self.chosen(), list(groups.SUBJECTS))
        self.assertEqual(self.chosen("--only", "query", "--only", "fetch"), ["fetch", "query"])

    def test_a_quick_run_builds_no_clean_tree_unless_told_to(self) -> None:
        self.assertNotIn("build", self.chosen("--quick"))
        self.assertEqual(self.chosen("--quick", "--only", "build"), ["build"])

    def test_an_unknown_group_is_refused(self) -> None:
        with contextlib.redirect_stderr(io.StringIO()) as said, self.assertRaises(SystemExit):
            self.chosen("--only", "nothing")
        self.assertIn("nothing", said.getvalue())

    def test_help_needs_nothing_installed_and_tells_the_groups(self) -> None:
        done = subprocess.run([str(TREE / "scripts" / "bench"), "--help"], capture_output=True,
                              text=True, check=False, env={"PATH": os.environ["PATH"]})
        self.assertEqual(done.returncode, 0, done.stderr)
        for name in groups.SUBJECTS:
            self.assertIn(name, done.stdout)


class Main(unittest.TestCase):
    """The program with stand-ins for what builds and measures."""

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.file = self.folder / "results.json"
        for target, stand_in in (("bench.cli.Runner", mock.Mock()),
                                 ("bench.cli.groups.run", self.measured),
                                 ("bench.cli.machine.description", lambda: "a desk")):
            patch = mock.patch(target, stand_in)
            patch.start()
            self.addCleanup(patch.stop)
        self.failing = ""

    def measured(self, name: str, _runner: object, _options: object) -> Group:
        if name == self.failing:
            raise RunError("it broke")
        return Group(f"Title of {name}", [ROW])

    def run_main(self, *arguments: str) -> tuple[int, str, str]:
        out, errors = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(errors):
            code = cli.main(["--output", str(self.file), *arguments])
        return code, out.getvalue(), errors.getvalue()

    def kept(self) -> list[str]:
        return list(json.loads(self.file.read_text(encoding="utf-8"))["groups"])

    def test_the_table_is_printed_and_the_file_written(self) -> None:
        code, out, _ = self.run_main("--only", "query")
        self.assertEqual(code, 0)
        self.assertIn("one    25 us  20 us   1.25  1.26    1.25  ok\n", out)
        self.assertEqual(cli.read_results(self.file), {"query": Group("Title of query", [ROW])})
        self.assertEqual(json.loads(self.file.read_text(encoding="utf-8"))["machine"], "a desk")

    def test_groups_that_arent_measured_again_stay_in_the_file(self) -> None:
        self.run_main("--only", "query")
        _, out, _ = self.run_main("--only", "fetch")
        self.assertEqual(self.kept(), ["fetch", "query"])
        self.assertNotIn("Title of query", out)

    def test_a_whole_run_starts_anew(self) -> None:
        self.file.write_text(json.dumps({"groups": {"build": {"title": "old", "rows": []}}}),
                             encoding="utf-8")
        self.run_main("--quick")
        self.assertNotIn("build", self.kept())

    def test_what_was_measured_before_a_failure_is_kept(self) -> None:
        self.failing = "query"
        code, _, errors = self.run_main("--only", "fetch", "--only", "query")
        self.assertEqual((code, errors), (1, "bench: it broke\n"))
        self.assertEqual(self.kept(), ["fetch"])

    def test_a_file_that_cant_be_read_counts_as_none(self) -> None:
        for text in ("", "[]", '{"groups": {"query": {}}}'):
            self.file.write_text(text, encoding="utf-8")
            self.assertEqual(cli.read_results(self.file), {}, text)

    def test_the_page_gets_all_groups_and_the_machine(self) -> None:
        page = self.folder / "page.md"
        page.write_text(f"# Speed\n{BEGIN}\n{END}\n", encoding="utf-8")
        self.run_main("--only", "query")
        code, _, errors = self.run_main("--only", "fetch", "--markdown", str(page))
        self.assertEqual((code, errors), (0, ""))
        text = page.read_text(encoding="utf-8")
        self.assertIn("Measured on: a desk.", text)
        self.assertLess(text.index("### Title of fetch"), text.index("### Title of query"))

    def test_a_page_without_marks_is_told(self) -> None:
        page = self.folder / "page.md"
        page.write_text("# Speed\n", encoding="utf-8")
        code, _, errors = self.run_main("--only", "query", "--markdown", str(page))
        self.assertEqual(code, 1)
        self.assertIn("the page has to have one line", errors)
        self.assertEqual(page.read_text(encoding="utf-8"), "# Speed\n")

    def test_accepting_counts_writes_them_and_measures_nothing_else(self) -> None:
        counts = self.folder / "counts.json"
        with mock.patch("bench.cli.groups.COUNTS_FILE", counts), \
                mock.patch("bench.cli.groups.count_instructions", lambda _: {"a get": 865}):
            code, out, _ = self.run_main("--accept-counts")
        self.assertEqual((code, out), (0, "a get: 865\n"))
        self.assertEqual(json.loads(counts.read_text(encoding="utf-8"))["counts"], {"a get": 865})
        self.assertFalse(self.file.exists())


if __name__ == "__main__":
    unittest.main()
