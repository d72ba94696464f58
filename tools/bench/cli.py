"""The command line of scripts/bench."""

import argparse
import json
import sys
from pathlib import Path

from bench import counts, groups, machine, report
from bench.report import Group
from bench.results import ResultError
from bench.rows import Row
from bench.runner import BUILD, RunError, Runner

_RESULTS = BUILD / "results.json"
# Rounds, and the least seconds of a benchmark in each.
_FULL, _QUICK = (9, 0.05), (3, 0.01)


def parser() -> argparse.ArgumentParser:
    made = argparse.ArgumentParser(
        prog="scripts/bench",
        description="Measures the driver beside the floor: what plain sockets, snprintf or a virtual"
                    " call take for the same work. Driver and floor take turns. The table has the"
                    " medians, their ratio, and the ratio of the best rounds.",
        epilog="Nothing else should run meanwhile. A number tells something only beside its floor"
               " on the same machine.")
    made.add_argument("--only", action="append", choices=list(groups.SUBJECTS), metavar="GROUP",
                      help=f"measure this group, and keep the other results of the file; may be"
                           f" repeated: {', '.join(groups.SUBJECTS)}")
    made.add_argument("--quick", action="store_true",
                      help="few rounds, no record of 1e8 points, no clean build")
    made.add_argument("--output", type=Path, default=_RESULTS, metavar="FILE",
                      help="where the results go as JSON (build/bench/results.json)")
    made.add_argument("--markdown", type=Path, metavar="FILE",
                      help="put the table into this page, between its marks")
    made.add_argument("--accept-counts", action="store_true",
                      help="count the instructions and keep the counts as those to compare with")
    made.add_argument("--wrap", default="", metavar="COMMAND",
                      help="a command to run each measurement under, such as 'nice -n -10'")
    return made


def chosen(options: argparse.Namespace) -> list[str]:
    """The groups to measure, in their order."""
    if options.only:
        return [name for name in groups.SUBJECTS if name in options.only]
    return [name for name in groups.SUBJECTS if name != "build" or not options.quick]


def read_results(file: Path) -> dict[str, Group]:
    """The groups of an earlier run; none without a file that can be read."""
    try:
        data = json.loads(file.read_text(encoding="utf-8"))
        return {name: Group(group["title"], [Row.from_json(row) for row in group["rows"]])
                for name, group in data["groups"].items()}
    except (OSError, json.JSONDecodeError, KeyError, TypeError, AttributeError):
        return {}


def results_text(found: dict[str, Group], about: str) -> str:
    data = {name: {"title": group.title, "rows": [row.as_json() for row in group.rows]}
            for name, group in found.items()}
    return json.dumps({"machine": about, "groups": data}, indent=2) + "\n"


def in_order(found: dict[str, Group]) -> dict[str, Group]:
    return {name: found[name] for name in groups.SUBJECTS if name in found}


def _accept(runner: Runner) -> None:
    counted = groups.count_instructions(runner)
    groups.COUNTS_FILE.write_text(counts.kept_text(counted, machine.compiler()), encoding="utf-8")
    print("".join(f"{name}: {count}\n" for name, count in counted.items()), end="")


def _measure(runner: Runner, options: argparse.Namespace) -> None:
    kept = read_results(options.output) if options.only else {}
    found = {}
    for name in chosen(options):
        found[name] = groups.run(name, runner, groups.Options(options.quick))
        # After each group, so that an end in the middle loses little.
        kept[name] = found[name]
        options.output.write_text(results_text(in_order(kept), machine.description()),
                                  encoding="utf-8")
    print(report.table(list(found.values()), sys.stdout.isatty()), end="")
    if options.markdown:
        part = f"Measured on: {machine.description()}.\n\n"
        part += report.markdown(list(in_order(kept).values()))
        options.markdown.write_text(
            report.with_part(options.markdown.read_text(encoding="utf-8"), part), encoding="utf-8")


def main(arguments: list[str]) -> int:
    options = parser().parse_args(arguments)
    runner = Runner(*(_QUICK if options.quick else _FULL), options.wrap)
    try:
        runner.build()
        if options.accept_counts:
            _accept(runner)
        else:
            _measure(runner, options)
    except (RunError, ResultError, report.PageError, OSError) as error:
        print(f"bench: {error}", file=sys.stderr)
        return 1
    return 0
