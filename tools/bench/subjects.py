"""What is measured: for each group its runs, and the rows that come of them."""

from bench.results import Samples
from bench.rows import Row, of_numbers

# Ratios that aren't to be passed.
FETCH_BUDGET = 1.15
QUERY_BUDGET = 1.25

SIZES = (10_000, 1_000_000, 10_000_000, 100_000_000)
QUICK_SIZES = SIZES[:3]
# From here on a record's array is of huge pages in the floor that counts.
HUGE_FROM = 10_000_000
MEMORY_SIZES = SIZES[1:]

_SCALES = {"s": 1.0, "ms": 1e3, "us": 1e6, "ns": 1e9}
_PER_PARALLEL_RUN = 500  # queries of each instrument

Found = dict[str, Samples]


def points(count: int) -> str:
    return f"{count:,} points"


def times(name: str, unit: str, driver: Samples, floor: Samples | None = None,
          budget: float | None = None) -> Row:
    """A row of times, in the unit."""
    scale = _SCALES[unit]
    return of_numbers(name, unit, [value * scale for value in driver.seconds],
                      [value * scale for value in floor.seconds] if floor else None, budget)


def floor_of(size: int) -> str:
    """The floor that the budget is against."""
    return "huge" if size >= HUGE_FROM else "plain"


_FLOOR_NAMES = {"plain": "fresh memory", "huge": "fresh huge pages", "reused": "kept memory"}


def fetch_rows(found: Found, size: int) -> list[Row]:
    def sample(name: str) -> Samples:
        return found[f"fetch/{size}/{name}"]

    judged = floor_of(size)
    driver = sample("driver")
    unit = "us" if size < HUGE_FROM else "ms"
    rows = [times(f"{points(size)}, floor with {_FLOOR_NAMES[judged]}", unit, driver,
                  sample(judged), FETCH_BUDGET)]
    rows += [times(f"  floor with {_FLOOR_NAMES[other]}", unit, driver, sample(other))
             for other in _FLOOR_NAMES if other != judged]
    rows.append(times("  floor of the curve query alone", unit, driver, sample("curve")))
    rows.append(times("  the other messages alone, bare", unit, sample("messages")))
    return rows


def memory_rows(kib: dict[tuple[str, int], float], sizes: tuple[int, ...]) -> list[Row]:
    """From the growth of the peak by subject and size."""
    return [Row(points(size), "MiB", kib["driver", size] / 1024,
                kib[floor_of(size), size] / 1024, budget=FETCH_BUDGET) for size in sizes]


def query_rows(found: Found) -> list[Row]:
    names = {"query/same_core": "one query, server on the same core",
             "query/two_cores": "one query, server on the other core",
             "settings/same_core": "ten settings and a query, same core",
             "settings/two_cores": "ten settings and a query, other core"}
    rows = []
    for key, name in names.items():
        floor = found[f"{key}/floor"]
        rows.append(times(name, "us", found[f"{key}/driver"], floor, QUERY_BUDGET))
        rows.append(times("  the floor with 1 us of work behind each message", "us",
                          found[f"{key}/paused"], floor))
    return rows


def parallel_rows(found: Found) -> list[Row]:
    """Times by query, over all instruments together, and what many gain over one."""
    def each(instruments: int, subject: str) -> Samples:
        whole = found[f"parallel/{instruments}/{subject}"]
        queries = instruments * _PER_PARALLEL_RUN
        return Samples([seconds / queries for seconds in whole.seconds])

    rows = [times(f"{'one instrument' if count == 1 else f'{count} instruments'}, by query", "us",
                  each(count, "driver"), each(count, "floor")) for count in (1, 16)]
    rows.append(Row("throughput of 16 over that of one", "x",
                    each(1, "driver").median / each(16, "driver").median,
                    each(1, "floor").median / each(16, "floor").median))
    return rows


def simulated_rows(found: Found) -> list[Row]:
    rows = []
    for way in ("get", "put"):
        driver = found[f"simulated/{way}/driver"]
        rows.append(times(f"{way} of a class property, floor a virtual call", "ns", driver,
                          found[f"simulated/{way}/floor"]))
        rows.append(Row("  allocations of it", "", driver.counters["allocations"], limit=0))
    return rows


def start_rows(found: Found) -> list[Row]:
    """What the programs in simulation tell about starting."""
    both = found["start/initialize_and_close/driver"]
    return [times("Initialize and Close in simulation, with the object", "us", both),
            Row("  allocations of it", "", both.counters["allocations"]),
            times("making and dropping the object alone", "us",
                  found["start/create_and_release/driver"])]


def loading_rows(load: dict[str, list[float]], size: int) -> list[Row]:
    """From the microseconds of each load, and the bytes of the stripped library."""
    return [of_numbers("loading the library, floor an empty one", "us", load["driver"],
                       load["floor"]),
            Row("size of the stripped library", "KiB", size / 1024)]


def _sum(found: Found, beginning: str, subject: str) -> Samples:
    """All benchmarks with that beginning in one, round by round."""
    names = [name for name in found if name.startswith(beginning) and name.endswith(subject)]
    return Samples([sum(seconds) for seconds in zip(*(found[name].seconds for name in names))])


def format_rows(found: Found) -> list[Row]:
    """The twenty templates together and one by one, and the look up of tokens."""
    rows = []
    for way, floor in (("write", "snprintf"), ("read", "strtod")):
        every = times(f"{way} by the 20 longest templates, floor {floor}", "us",
                      _sum(found, f"{way}/", "/driver"), _sum(found, f"{way}/", "/floor"))
        names = [name.removesuffix("/driver") for name in found
                 if name.startswith(f"{way}/") and name.endswith("/driver")]
        rows.append(every)
        rows += [times(f"  {name.split('_', 1)[1]}", "us", found[f"{name}/driver"],
                       found[f"{name}/floor"]) for name in names]
    return rows + [times(f"token of an enumeration, {what}", "ns", found[f"enum/{key}/driver"])
                   for key, what in (("hit", "known"), ("miss", "unknown"))]
