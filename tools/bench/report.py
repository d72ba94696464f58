"""The report: a table for the terminal, one for a page, and the file."""

import re
from dataclasses import dataclass

from bench.rows import MISSED, OK, Row

RED, GREEN, PLAIN = "\033[31m", "\033[32m", "\033[0m"
HEADINGS = ("what", "driver", "floor", "ratio", "best", "budget", "")
BEGIN = "<!-- made by scripts/bench --markdown -->"
END = "<!-- end of what scripts/bench made -->"


class PageError(Exception):
    """A page without the marks that the table stands between."""


@dataclass
class Group:
    """The rows of one subject."""

    title: str
    rows: list[Row]


def number(value: float | None, unit: str = "") -> str:
    """Three figures, or more where there are more before the point; empty for no value."""
    if value is None:
        return ""
    if value == int(value) and abs(value) < 1e15:
        text = f"{int(value)}"
    elif abs(value) >= 100:
        text = f"{value:.0f}"
    else:
        text = f"{value:.3g}" if abs(value) < 10 else f"{value:.1f}"
    return f"{text} {unit}".rstrip()


def ratio(value: float | None) -> str:
    return "" if value is None else f"{value:.2f}"


def _budget(row: Row) -> str:
    if row.limit is not None:
        return number(row.limit)
    return ratio(row.budget)


def cells(row: Row) -> tuple[str, ...]:
    return (row.name, number(row.driver, row.unit), number(row.floor, row.unit), ratio(row.ratio),
            ratio(row.best_ratio), _budget(row), row.verdict)


def _painted(text: str, verdict: str, colour: bool) -> str:
    if not colour or verdict not in (OK, MISSED):
        return text
    return (GREEN if verdict == OK else RED) + text + PLAIN


def table(groups: list[Group], colour: bool) -> str:
    """For the terminal: columns of one width over all groups."""
    lines = [cells(row) for group in groups for row in group.rows]
    widths = [max(len(line[i]) for line in [HEADINGS, *lines]) for i in range(len(HEADINGS))]

    def line_of(texts: tuple[str, ...]) -> str:
        rest = "".join(f"  {text:>{width}}" for text, width in zip(texts[1:-1], widths[1:-1]))
        return f"{texts[0]:<{widths[0]}}{rest}  {texts[-1]}".rstrip()

    out = [line_of(HEADINGS)]
    for group in groups:
        out += ["", group.title]
        out += [_painted(line_of(cells(row)), row.verdict, colour) for row in group.rows]
    return "\n".join(out) + "\n\n" + summary(groups, colour) + "\n"


def summary(groups: list[Group], colour: bool = False) -> str:
    verdicts = [row.verdict for group in groups for row in group.rows if row.verdict]
    missed = verdicts.count(MISSED)
    if not verdicts:
        return "no budgets here"
    if missed == 0:
        return _painted(f"all {len(verdicts)} budgets are kept", OK, colour)
    return _painted(f"{missed} of {len(verdicts)} budgets are missed", MISSED, colour)


def markdown(groups: list[Group]) -> str:
    """For a page: a table for each group."""
    out = []
    for group in groups:
        out += [f"### {group.title}", "", "| What | Driver | Floor | Ratio | Best | Budget | |",
                "|---|--:|--:|--:|--:|--:|---|"]
        out += ["| " + " | ".join(_emphasised(cells(row))) + " |" for row in group.rows]
        out.append("")
    return "\n".join(out)


def _emphasised(texts: tuple[str, ...]) -> tuple[str, ...]:
    return (*texts[:-1], "**missed**" if texts[-1] == MISSED else texts[-1])


def with_part(page: str, part: str) -> str:
    """The page with `part` in place of what stands between the marks."""
    if page.count(BEGIN) != 1 or page.count(END) != 1 or page.index(BEGIN) > page.index(END):
        raise PageError(f"the page has to have one line '{BEGIN}' and behind it one '{END}'")
    pattern = re.escape(BEGIN) + ".*" + re.escape(END)
    return re.sub(pattern, lambda _: f"{BEGIN}\n\n{part.strip()}\n\n{END}", page, flags=re.DOTALL)
