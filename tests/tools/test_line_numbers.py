"""Where the keys of a TOML text stand."""

import unittest

from generator.toml_lines import LineMap

TEXT = '''\
# A comment with [brackets].
top = 1
[table]
key = "a # no comment"
list = [
    "one", # ]
    "two",
]
after = 2
text = """
[no.header]
inside = 1
"""
last = 3
[table.below]
"quoted.key" = { inner = 1 }
a.b.c = 4
[[rows]]
name = "first"
[rows.tokens]
X = 1
[[rows]]
name = "second"
[rows.tokens]
X = 2
[[rows.deep]]
y = 1
'''


class Lines(unittest.TestCase):
    def line(self, *path: str) -> int:
        return LineMap("f.toml", TEXT).place(*path).line

    def test_keys_and_tables(self) -> None:
        self.assertEqual(self.line("top"), 2)
        self.assertEqual(self.line("table"), 3)
        self.assertEqual(self.line("table", "key"), 4)
        self.assertEqual(self.line("table", "below"), 15)

    def test_key_behind_a_value_of_several_lines(self) -> None:
        self.assertEqual(self.line("table", "after"), 9)
        self.assertEqual(self.line("table", "last"), 14)
        self.assertEqual(self.line("no", "header"), 1)

    def test_quoted_and_dotted_keys(self) -> None:
        self.assertEqual(self.line("table", "below", "quoted.key"), 16)
        self.assertEqual(self.line("table", "below", "a", "b", "c"), 17)
        self.assertEqual(self.line("table", "below", "a"), 17)

    def test_key_of_an_inline_table_has_the_line_of_the_table(self) -> None:
        self.assertEqual(self.line("table", "below", "quoted.key", "inner"), 16)

    def test_arrays_of_tables_count(self) -> None:
        self.assertEqual(self.line("rows", "0"), 18)
        self.assertEqual(self.line("rows", "0", "name"), 19)
        self.assertEqual(self.line("rows", "0", "tokens", "X"), 21)
        self.assertEqual(self.line("rows", "1"), 22)
        self.assertEqual(self.line("rows", "1", "tokens", "X"), 25)
        self.assertEqual(self.line("rows", "1", "deep", "0", "y"), 27)

    def test_unknown_key_has_the_line_of_the_nearest_table(self) -> None:
        self.assertEqual(self.line("table", "missing"), 3)
        self.assertEqual(self.line("missing"), 1)
        self.assertEqual(str(LineMap("f.toml", TEXT).place("top")), "f.toml:2")
