"""Ratios, verdicts, and the rows that come of samples."""

import unittest

from bench import subjects
from bench.results import Samples
from bench.rows import Row, of_numbers


class Verdicts(unittest.TestCase):
    def test_a_ratio_up_to_the_budget_is_in_order(self) -> None:
        self.assertEqual(Row("a", "us", 115.0, 100.0, budget=1.15).verdict, "ok")
        self.assertEqual(Row("a", "us", 115.1, 100.0, budget=1.15).verdict, "missed")

    def test_the_median_decides_and_not_the_best_round(self) -> None:
        row = of_numbers("a", "us", [1.0, 4.0, 4.0], [2.0, 2.0, 2.0], 1.15)
        self.assertEqual((row.ratio, row.best_ratio, row.verdict), (2.0, 0.5, "missed"))

    def test_without_a_budget_or_a_floor_there_is_no_verdict(self) -> None:
        self.assertEqual(Row("a", "us", 9.0, 1.0).verdict, "")
        self.assertEqual(Row("a", "us", 9.0, budget=1.15).verdict, "")
        self.assertIsNone(Row("a", "us", 9.0).ratio)
        self.assertIsNone(Row("a", "us", 9.0, 1.0).best_ratio)

    def test_a_limit_is_held_against_the_number_itself(self) -> None:
        self.assertEqual(Row("a", "", 0.0, limit=0).verdict, "ok")
        self.assertEqual(Row("a", "", 0.5, limit=0).verdict, "missed")

    def test_a_row_comes_back_from_the_file_as_it_was(self) -> None:
        row = Row("a", "us", 9.0, 3.0, 8.0, 2.0, 1.15, None)
        self.assertEqual(Row.from_json(row.as_json()), row)
        self.assertEqual(row.as_json()["ratio"], 3.0)
        self.assertEqual(row.as_json()["best_ratio"], 4.0)
        self.assertEqual(row.as_json()["verdict"], "missed")


def fetch(size: int, **seconds: float) -> dict[str, Samples]:
    return {f"fetch/{size}/{name}": Samples([value]) for name, value in seconds.items()}


class Fetch(unittest.TestCase):
    def rows(self, size: int) -> list[Row]:
        return subjects.fetch_rows(fetch(size, driver=0.5, plain=0.25, huge=0.125, reused=0.1,
                                         curve=0.05, messages=0.01), size)

    def test_a_small_record_is_held_against_fresh_memory(self) -> None:
        row = self.rows(1_000_000)[0]
        self.assertEqual((row.driver, row.floor, row.unit, row.budget),
                         (500_000.0, 250_000.0, "us", 1.15))

    def test_a_large_record_is_held_against_fresh_huge_pages(self) -> None:
        row = self.rows(10_000_000)[0]
        self.assertEqual((row.driver, row.floor, row.unit, row.budget),
                         (500.0, 125.0, "ms", 1.15))

    def test_the_other_floors_have_no_budget(self) -> None:
        self.assertEqual([row.budget for row in self.rows(10_000_000)[1:]], [None] * 4)

    def test_memory_is_held_against_the_same_floors(self) -> None:
        kib = {("driver", 1_000_000): 2048.0, ("plain", 1_000_000): 1024.0,
               ("driver", 10_000_000): 4096.0, ("huge", 10_000_000): 4096.0}
        rows = subjects.memory_rows(kib, (1_000_000, 10_000_000))
        self.assertEqual([(row.driver, row.floor, row.verdict) for row in rows],
                         [(2.0, 1.0, "missed"), (4.0, 4.0, "ok")])


class Others(unittest.TestCase):
    def test_queries_and_settings_have_their_budget(self) -> None:
        found = {f"{way}/{cores}/{subject}": Samples([seconds])
                 for way in ("query", "settings") for cores in ("same_core", "two_cores")
                 for subject, seconds in (("driver", 25e-6), ("floor", 20e-6),
                                          ("paused", 22e-6))}
        rows = subjects.query_rows(found)
        self.assertEqual([row.budget for row in rows], [1.25, None] * 4)
        self.assertAlmostEqual(rows[0].driver, 25.0)

    def test_below_each_stands_what_work_between_messages_costs_by_itself(self) -> None:
        found = {f"{way}/{cores}/{subject}": Samples([seconds])
                 for way in ("query", "settings") for cores in ("same_core", "two_cores")
                 for subject, seconds in (("driver", 25e-6), ("floor", 20e-6),
                                          ("paused", 22e-6))}
        row = subjects.query_rows(found)[1]
        self.assertEqual(row.name, "  the floor with 1 us of work behind each message")
        self.assertAlmostEqual(row.driver, 22.0)
        self.assertAlmostEqual(row.floor or 0.0, 20.0)

    def test_many_instruments_are_told_by_query_and_by_what_they_gain(self) -> None:
        found = {"parallel/1/driver": Samples([0.05]), "parallel/1/floor": Samples([0.05]),
                 "parallel/16/driver": Samples([0.2]), "parallel/16/floor": Samples([0.1])}
        one, many, gain = subjects.parallel_rows(found)
        self.assertAlmostEqual(one.driver, 100.0)
        self.assertAlmostEqual(many.driver, 25.0)
        self.assertAlmostEqual(gain.driver, 4.0)
        self.assertAlmostEqual(gain.floor or 0.0, 8.0)

    def test_allocations_in_simulation_are_limited_to_none(self) -> None:
        found = {}
        for way, count in (("get", 0.0), ("put", 2.0)):
            found[f"simulated/{way}/driver"] = Samples([1e-7], {"allocations": count})
            found[f"simulated/{way}/floor"] = Samples([3e-9])
        rows = subjects.simulated_rows(found)
        self.assertEqual([row.verdict for row in rows], ["", "ok", "", "missed"])

    def test_templates_are_added_up_round_by_round_and_listed_below(self) -> None:
        found = {"write/1_A.Set/driver": Samples([4e-6, 6e-6]),
                 "write/1_A.Set/floor": Samples([2e-6, 2e-6]),
                 "write/2_B.Set/driver": Samples([1e-6, 1e-6]),
                 "write/2_B.Set/floor": Samples([1e-6, 1e-6]),
                 "read/1_C.Read/driver": Samples([3e-6, 3e-6]),
                 "read/1_C.Read/floor": Samples([1e-6, 1e-6]),
                 "enum/hit/driver": Samples([2e-7]), "enum/miss/driver": Samples([1e-7])}
        rows = subjects.format_rows(found)
        self.assertEqual([row.name for row in rows],
                         ["write by the 20 longest templates, floor snprintf", "  A.Set",
                          "  B.Set", "read by the 20 longest templates, floor strtod", "  C.Read",
                          "token of an enumeration, known", "token of an enumeration, unknown"])
        self.assertAlmostEqual(rows[0].driver, 6.0)
        self.assertAlmostEqual(rows[0].floor or 0.0, 3.0)
        self.assertAlmostEqual(rows[1].ratio or 0.0, 2.5)
        self.assertAlmostEqual(rows[2].ratio or 0.0, 1.0)


if __name__ == "__main__":
    unittest.main()
