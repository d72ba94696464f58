"""Counts of instructions beside those that are kept."""

import json
import unittest

from bench.counts import kept_text, read_callgrind, read_kept, rows
from bench.results import ResultError

OUTPUT = """# callgrind format
version: 1
events: Ir
summary: 865

fn=(1) member
12 865

totals: 865
"""


class Callgrind(unittest.TestCase):
    def test_the_total_is_found(self) -> None:
        self.assertEqual(read_callgrind(OUTPUT), 865)

    def test_a_count_of_nothing_is_refused(self) -> None:
        for text in ("", OUTPUT.replace("totals: 865", "totals: 0"), "# totals: 865\n"):
            with self.assertRaisesRegex(ResultError, "counted nothing", msg=text):
                read_callgrind(text)


class Kept(unittest.TestCase):
    def test_the_file_comes_back_as_it_was_written(self) -> None:
        text = kept_text({"get": 865, "set": 10862}, "c++ 12.2.0")
        self.assertEqual(read_kept(text), {"get": 865, "set": 10862})
        self.assertEqual(json.loads(text)["compiler"], "c++ 12.2.0")

    def test_a_broken_file_is_told(self) -> None:
        for text in ("", "{}", "[]", '{"counts": 5}', '{"counts": {"get": "many"}}'):
            with self.assertRaisesRegex(ResultError, "counts can't be read", msg=text):
                read_kept(text)


class Comparison(unittest.TestCase):
    def verdict(self, count: int) -> str:
        return rows({"get": count}, {"get": 1000}, {"get": [121.0]})[0].verdict

    def test_a_growth_of_up_to_five_per_cent_is_in_order(self) -> None:
        self.assertEqual(self.verdict(1050), "ok")
        self.assertEqual(self.verdict(1051), "missed")

    def test_fewer_instructions_are_in_order(self) -> None:
        self.assertEqual(self.verdict(10), "ok")

    def test_a_count_that_isnt_kept_has_no_verdict(self) -> None:
        found = rows({"new": 5}, {"get": 1000}, {"new": [7.0]})
        self.assertEqual([row.verdict for row in found], ["", ""])

    def test_the_time_stands_below_its_count(self) -> None:
        found = rows({"get": 900, "set": 5}, {}, {"get": [121.0, 900.0, 8.0], "set": [2.0]})
        self.assertEqual([(row.name, row.driver, row.unit) for row in found],
                         [("get", 900, ""), ("  the time of it", 121.0, "ns"),
                          ("set", 5, ""), ("  the time of it", 2.0, "ns")])


if __name__ == "__main__":
    unittest.main()
