"""Counts of instructions, and the file that they are held against."""

import json
import re

from bench.results import ResultError
from bench.rows import Row, of_numbers

# A count may grow by so much.
ALLOWED = 1.05
_TOTALS = re.compile(r"^totals: (\d+)", re.MULTILINE)


def read_callgrind(text: str) -> int:
    """The number of instructions in callgrind's output file."""
    found = _TOTALS.search(text)
    if found is None or int(found.group(1)) == 0:
        raise ResultError("callgrind has counted nothing")
    return int(found.group(1))


def read_kept(text: str) -> dict[str, int]:
    """The counts of the file, by name."""
    try:
        return {str(name): int(count) for name, count in json.loads(text)["counts"].items()}
    except (json.JSONDecodeError, KeyError, TypeError, ValueError, AttributeError) as error:
        raise ResultError(f"the file of the counts can't be read: {error}") from error


def kept_text(counts: dict[str, int], compiler: str) -> str:
    """The file for these counts."""
    return json.dumps({"compiler": compiler, "counts": counts}, indent=2, sort_keys=True) + "\n"


def rows(counts: dict[str, int], kept: dict[str, int], times: dict[str, list[float]]) -> list[Row]:
    """Each count beside the one that is kept, a new one alone, and below it the nanoseconds in
    each process."""
    found = []
    for name, count in counts.items():
        found += [Row(name, "", count, kept.get(name), budget=ALLOWED),
                  of_numbers("  the time of it", "ns", times[name])]
    return found
