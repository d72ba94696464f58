"""Reads what the benchmark programs report."""

import json
import re
import statistics
from dataclasses import dataclass, field

_SECONDS = {"s": 1.0, "ms": 1e-3, "us": 1e-6, "ns": 1e-9}
# What Google Benchmark adds to a name for its settings.
_SETTINGS = re.compile(r"/(iterations:\d+|real_time|min_time:[\d.]+)")


class ResultError(Exception):
    """A report that can't be used, in words for the person who ran the benchmarks."""


@dataclass
class Samples:
    """One benchmark: the seconds of a run in each round, and its counters in the last one."""

    seconds: list[float] = field(default_factory=list)
    counters: dict[str, float] = field(default_factory=dict)

    @property
    def median(self) -> float:
        return statistics.median(self.seconds)

    @property
    def minimum(self) -> float:
        return min(self.seconds)


def _counters(run: dict) -> dict[str, float]:
    known = {"name", "run_name", "run_type", "repetitions", "repetition_index", "threads",
             "iterations", "real_time", "cpu_time", "time_unit", "family_index",
             "per_family_instance_index", "threads", "aggregate_name", "aggregate_unit"}
    return {name: value for name, value in run.items()
            if name not in known and isinstance(value, (int, float))}


def read_rounds(text: str) -> dict[str, Samples]:
    """The samples by name, from the list of reports that a program writes."""
    found: dict[str, Samples] = {}
    try:
        reports = json.loads(text)
        for report in reports:
            for run in report["benchmarks"]:
                name = _SETTINGS.sub("", run["name"])
                if run.get("error_occurred"):
                    raise ResultError(f"{name}: {run.get('error_message', 'failed')}")
                samples = found.setdefault(name, Samples())
                samples.seconds.append(run["real_time"] * _SECONDS[run["time_unit"]])
                samples.counters = _counters(run)
    except (json.JSONDecodeError, KeyError, TypeError) as error:
        raise ResultError(f"this is no report of the benchmarks: {error}") from error
    if not found:
        raise ResultError("the report has no benchmark")
    return found


def read_number(text: str, key: str) -> float:
    """The number that a program prints as {"key": NUMBER}."""
    try:
        return float(json.loads(text)[key])
    except (json.JSONDecodeError, KeyError, TypeError, ValueError) as error:
        raise ResultError(f"'{text.strip()}' doesn't tell {key}") from error
