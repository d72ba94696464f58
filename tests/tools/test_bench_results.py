"""What is read of the benchmark programs' reports."""

import json
import unittest

from bench.results import ResultError, Samples, read_number, read_rounds


def report(*runs: dict) -> dict:
    return {"context": {}, "benchmarks": list(runs)}


def run(name: str, real_time: float, unit: str = "us", **more: object) -> dict:
    return {"name": name, "iterations": 5, "real_time": real_time, "cpu_time": 1.0,
            "time_unit": unit, **more}


class Rounds(unittest.TestCase):
    def test_each_round_gives_a_sample_in_seconds(self) -> None:
        text = json.dumps([report(run("a/driver", 2000.0)), report(run("a/driver", 3.0, "ms"))])
        self.assertEqual(read_rounds(text)["a/driver"].seconds, [0.002, 0.003])

    def test_settings_behind_a_name_are_left_out(self) -> None:
        text = json.dumps([report(run("fetch/100/driver/iterations:4/real_time", 1.0),
                                  run("b/min_time:0.050", 1.0))])
        self.assertEqual(sorted(read_rounds(text)), ["b", "fetch/100/driver"])

    def test_counters_are_those_of_the_last_round(self) -> None:
        text = json.dumps([report(run("a", 1.0, allocations=5.0)),
                           report(run("a", 1.0, allocations=0.0))])
        self.assertEqual(read_rounds(text)["a"].counters, {"allocations": 0.0})

    def test_a_benchmark_that_failed_is_told_with_its_words(self) -> None:
        text = json.dumps([report(run("a", 1.0, error_occurred=True, error_message="no volts"))])
        with self.assertRaisesRegex(ResultError, "^a: no volts$"):
            read_rounds(text)

    def test_what_is_no_report_is_refused(self) -> None:
        for text in ("", "{", "[{}]", "[1]", '[{"benchmarks": [{"name": "a"}]}]',
                     json.dumps([report(run("a", 1.0, "days"))])):
            with self.assertRaisesRegex(ResultError, "no report of the benchmarks", msg=text):
                read_rounds(text)

    def test_a_report_without_a_benchmark_is_refused(self) -> None:
        for text in ("[]", json.dumps([report()])):
            with self.assertRaisesRegex(ResultError, "has no benchmark", msg=text):
                read_rounds(text)


class Numbers(unittest.TestCase):
    def test_a_number_is_found_by_its_key(self) -> None:
        self.assertEqual(read_number('{"kib": 8752}\n', "kib"), 8752.0)

    def test_anything_else_is_refused_with_what_was_said(self) -> None:
        for text in ("", "8752", '{"us": 1}', '{"kib": "many"}', '{"kib": null}'):
            with self.assertRaisesRegex(ResultError, "doesn't tell kib", msg=text):
                read_number(text, "kib")


class Statistics(unittest.TestCase):
    def test_the_median_and_the_best_of_the_rounds(self) -> None:
        samples = Samples([5.0, 1.0, 9.0, 2.0])
        self.assertEqual((samples.median, samples.minimum), (3.5, 1.0))


if __name__ == "__main__":
    unittest.main()
