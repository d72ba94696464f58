"""The groups of measurements: what each one runs."""

from collections.abc import Callable
from dataclasses import dataclass

from bench import counts, subjects
from bench.report import Group
from bench.rows import Row
from bench.runner import TREE, Runner

COUNTS_FILE = TREE / "bench" / "instruction_counts.json"
MEMBERS = {"get": "a class property in simulation", "set": "a formatted setting",
           "query": "a query of an enumeration"}
# How often a program is started that measures once: where the system puts its memory matters.
_PROCESSES = 9
# Of the largest record, which takes seconds each time.
_LARGE_ROUNDS = 5


@dataclass(frozen=True)
class Options:
    quick: bool = False


def _fetch(runner: Runner, options: Options) -> list[Row]:
    rows = []
    for size in subjects.QUICK_SIZES if options.quick else subjects.SIZES:
        rounds = _LARGE_ROUNDS if size == subjects.SIZES[-1] else None
        found = runner.benchmark("bench_fetch", f"fetch/{size}/", rounds)
        rows += subjects.fetch_rows(found, size)
    return rows


def _memory(runner: Runner, options: Options) -> list[Row]:
    sizes = tuple(size for size in subjects.MEMORY_SIZES
                  if not options.quick or size in subjects.QUICK_SIZES)
    kib = {(subject, size): runner.number("kib", "bench_fetch_memory", subject, str(size))
           for size in sizes for subject in ("driver", subjects.floor_of(size))}
    return subjects.memory_rows(kib, sizes)


def _query(runner: Runner, _: Options) -> list[Row]:
    return subjects.query_rows(runner.benchmark("bench_query"))


def _parallel(runner: Runner, _: Options) -> list[Row]:
    return subjects.parallel_rows(runner.benchmark("bench_parallel"))


def _simulated(runner: Runner, _: Options) -> list[Row]:
    return subjects.simulated_rows(runner.benchmark("bench_simulated", "simulated/"))


def _format(runner: Runner, _: Options) -> list[Row]:
    return subjects.format_rows(runner.benchmark("bench_format", share=0.2))


def _start(runner: Runner, _: Options) -> list[Row]:
    load: dict[str, list[float]] = {"driver": [], "floor": []}
    for _ in range(_PROCESSES):
        for subject, times in load.items():
            times.append(runner.number("us", "bench_load", subject))
    return (subjects.start_rows(runner.benchmark("bench_simulated", "start/"))
            + subjects.loading_rows(load, runner.stripped_library_size()))


def count_instructions(runner: Runner) -> dict[str, int]:
    return {what: runner.instructions(member) for member, what in MEMBERS.items()}


def _instructions(runner: Runner, _: Options) -> list[Row]:
    kept = {}
    if COUNTS_FILE.exists():
        kept = counts.read_kept(COUNTS_FILE.read_text(encoding="utf-8"))
    times = {what: [runner.number("ns", "bench_instructions", member, "time")
                    for _ in range(_PROCESSES)] for member, what in MEMBERS.items()}
    return counts.rows(count_instructions(runner), kept, times)


def _build(runner: Runner, _: Options) -> list[Row]:
    clock, processor = runner.clean_build()
    return [Row("a clean tree with its tests, by the clock", "s", clock),
            Row("  on all processors together", "s", processor)]


@dataclass(frozen=True)
class Subject:
    title: str
    run: Callable[[Runner, Options], list[Row]]


SUBJECTS = {
    "fetch": Subject("FetchWaveform, time", _fetch),
    "memory": Subject("FetchWaveform, growth of the process", _memory),
    "query": Subject("Queries and settings", _query),
    "parallel": Subject("Sixteen instruments at once", _parallel),
    "simulated": Subject("Simulation", _simulated),
    "format": Subject("The format engine", _format),
    "start": Subject("Starting", _start),
    "instructions": Subject("Instructions, beside the counts that are kept", _instructions),
    "build": Subject("Building", _build),
}


def run(name: str, runner: Runner, options: Options) -> Group:
    subject = SUBJECTS[name]
    return Group(subject.title, subject.run(runner, options))
