"""What the README and the page about the architecture say is held against the tree."""

import os
import re
import textwrap
import unittest

from support import TREE, run

README = (TREE / "README.md").read_text(encoding="utf-8")
ARCHITECTURE = (TREE / "docs/architecture.md").read_text(encoding="utf-8")


def code_blocks(language: str) -> list[str]:
    return re.findall(rf"^```{language}\n(.*?)^```$", README, re.DOTALL | re.MULTILINE)


class ReadmeTest(unittest.TestCase):
    def test_every_line_of_cpp_stands_in_the_example(self) -> None:
        example = (TREE / "examples/read_waveform.cpp").read_text(encoding="utf-8")
        blocks = code_blocks("cpp")
        self.assertEqual(len(blocks), 2)
        for block in blocks:
            indented = textwrap.indent(block, "    ")
            self.assertTrue(block in example or indented in example, block)

    def test_every_command_is_there_and_can_be_run(self) -> None:
        commands = set(re.findall(r"^(scripts/[a-z-]+)", "".join(code_blocks("sh")),
                                  re.MULTILINE))
        self.assertLessEqual({"scripts/demo", "scripts/test"}, commands)
        for command in commands:
            self.assertTrue(os.access(TREE / command, os.X_OK), command)

    def test_every_file_that_is_named_is_there(self) -> None:
        for text in (README, ARCHITECTURE):
            # The folders of generated sources are named from the build folder.
            names = [name for name in re.findall(r"`((?:[a-z_]+/)+[a-z_.-]*)`", text)
                     if not name.startswith(("build/", "members/", "hooks/", "faces/", "objects/"))]
            self.assertGreater(len(names), 10)
            for name in names:
                self.assertTrue((TREE / name).exists(), name)

    def test_every_link_leads_somewhere(self) -> None:
        for target in re.findall(r"\]\(([^)]+)\)", README):
            self.assertTrue((TREE / target).exists(), target)

    def test_the_table_has_every_folder(self) -> None:
        listed = set(re.findall(r"^\| `([a-z_]+)/` \|", README, re.MULTILINE))
        holding = {path.name for path in TREE.iterdir()
                   if path.is_dir() and not path.name.startswith((".", "build"))
                   and any(file.is_file() for file in path.rglob("*"))}
        self.assertEqual(listed, holding)


if __name__ == "__main__":
    run()
