"""The tables, and the page that gets one."""

import unittest

from bench.report import (BEGIN, END, GREEN, PLAIN, RED, Group, PageError, markdown, number,
                          summary, table, with_part)
from bench.rows import Row

GROUPS = [Group("Queries", [Row("one", "us", 25.0, 20.0, 24.0, 20.0, budget=1.25),
                            Row("ten", "us", 160.0, 100.0, budget=1.25)]),
          Group("Others", [Row("size", "KiB", 2416.0), Row("allocations", "", 0.0, limit=0)])]


class Numbers(unittest.TestCase):
    def test_three_figures_are_enough(self) -> None:
        for value, text in ((1234.56, "1235"), (123.4, "123"), (45.67, "45.7"), (1.23456, "1.23"),
                            (0.012345, "0.0123"), (7.0, "7"), (0.0, "0")):
            self.assertEqual(number(value), text)

    def test_the_unit_stands_behind(self) -> None:
        self.assertEqual(number(45.67, "ms"), "45.7 ms")
        self.assertEqual(number(None, "ms"), "")


class Table(unittest.TestCase):
    def test_every_row_has_its_columns(self) -> None:
        self.assertEqual(table(GROUPS, colour=False).splitlines(), [
            "what           driver   floor  ratio  best  budget",
            "",
            "Queries",
            "one             25 us   20 us   1.25  1.20    1.25  ok",
            "ten            160 us  100 us   1.60          1.25  missed",
            "",
            "Others",
            "size         2416 KiB",
            "allocations         0                            0  ok",
            "",
            "1 of 3 budgets are missed"])

    def test_on_a_terminal_verdicts_have_a_colour(self) -> None:
        lines = table(GROUPS, colour=True).splitlines()
        self.assertTrue(lines[3].startswith(GREEN) and lines[3].endswith("ok" + PLAIN), lines[3])
        self.assertTrue(lines[4].startswith(RED) and lines[4].endswith("missed" + PLAIN), lines[4])
        self.assertEqual(lines[7], "size         2416 KiB")

    def test_the_last_line_counts_the_budgets(self) -> None:
        self.assertEqual(summary(GROUPS[1:]), "all 1 budgets are kept")
        self.assertEqual(summary([Group("a", [Row("b", "us", 1.0)])]), "no budgets here")


class Page(unittest.TestCase):
    def test_a_group_is_a_table(self) -> None:
        self.assertEqual(markdown(GROUPS[:1]).splitlines(), [
            "### Queries", "",
            "| What | Driver | Floor | Ratio | Best | Budget | |",
            "|---|--:|--:|--:|--:|--:|---|",
            "| one | 25 us | 20 us | 1.25 | 1.20 | 1.25 | ok |",
            "| ten | 160 us | 100 us | 1.60 |  | 1.25 | **missed** |"])

    def test_only_what_is_between_the_marks_is_replaced(self) -> None:
        page = f"before\n\n{BEGIN}\nold\n{END}\n\nafter\n"
        self.assertEqual(with_part(page, "new \\1\n"),
                         f"before\n\n{BEGIN}\n\nnew \\1\n\n{END}\n\nafter\n")

    def test_a_page_without_both_marks_in_order_is_refused(self) -> None:
        for page in ("", BEGIN, END, f"{END}\n{BEGIN}", f"{BEGIN}{END}{BEGIN}"):
            with self.assertRaises(PageError, msg=page):
                with_part(page, "new")


if __name__ == "__main__":
    unittest.main()
