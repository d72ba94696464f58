"""The format language of templates, as far as the generator has to know it.

A template is cut into pieces by a table of rows, one table for each direction, tried in order. The
rows here are those of the driver's own format engine.
"""

import re
from dataclasses import dataclass

_BLANKS = r"[ \t]*"
_FLAGS = r"[-+0 ]*"
_NUMERIC = r"(?:@[123HQB][ \t]*)?"
_WRITE_WIDTH = r"(?:(?:[0-9]+|0*\*)[ \t]*)?"
_WRITE_PRECISION = r"(?:\.(?:[0-9]+|\*)[ \t]*)?"
_WRITE_COUNT = r"(?:(?:[0-9]+|\*)[ \t]*)?"
_WRITE_SEPARATOR = r"(?:,|\([,;:strn]\))[ \t]*"
_READ_COUNT = r"(?:(?:[0-9]+|#)[ \t]*)?"
_READ_SEPARATOR = r"(?:,|\([,;:strn]+\))[ \t]*"
_SUPPRESS = r"(?:\*[ \t]*)?"
_VARIANT_ARRAY = r"(?:\$S[ \t]*)?"
_TEXT_KIND = r"(?:\$[BC][ \t]*)?"
_BYTE_ORDER = r"(?:!o[bl][ \t]*)?"
_ENUM = r"\{[ \t]*(?P<%s>[a-zA-Z0-9_]+)[ \t]*\}[ \t]*"
_SET = r"\[\^?[^\]]*\]"

_WRITE_NUMBER = "%" + _BLANKS + _FLAGS + _NUMERIC + _WRITE_WIDTH + _WRITE_PRECISION
_WRITE_TEXT = "-?" + _BLANKS + _WRITE_COUNT + _WRITE_PRECISION
_READ_START = "%" + _BLANKS + _SUPPRESS

WRITE_ROWS = (
    ("literal", r"[^%]+|%%"),
    ("integer", _WRITE_NUMBER + "[lhbI]?[dioux]"),
    ("integer array",
     _WRITE_NUMBER + _WRITE_SEPARATOR + _WRITE_COUNT + _VARIANT_ARRAY + "[lhbI]?[dioux]"),
    ("real", _WRITE_NUMBER + "[lL]?[feEgG]"),
    ("real array",
     _WRITE_NUMBER + _WRITE_SEPARATOR + _WRITE_COUNT + _VARIANT_ARRAY + "[lL]?[feEgG]"),
    ("block", "%" + _BLANKS + _WRITE_COUNT + _VARIANT_ARRAY + "[hlzZI]?b"),
    ("block", "%" + _BLANKS + _WRITE_COUNT + _VARIANT_ARRAY + "[hlzZI]?B"),
    ("block", "%" + _BLANKS + _WRITE_COUNT + _BYTE_ORDER + _VARIANT_ARRAY + "[hlI]?y"),
    ("character", "%" + _BLANKS + _WRITE_TEXT + "c"),
    ("text", "%" + _BLANKS + _WRITE_TEXT + _TEXT_KIND + "[qQ]?s"),
    ("text array", "%" + _BLANKS + _WRITE_TEXT + _WRITE_SEPARATOR + _WRITE_COUNT
     + _VARIANT_ARRAY + _TEXT_KIND + "[qQ]?s"),
    ("enumeration", "%" + _BLANKS + _ENUM % "enum11" + _WRITE_TEXT + "[qQ]?s"),
    ("enumeration array", "%" + _BLANKS + _ENUM % "enum12" + _WRITE_TEXT + _WRITE_SEPARATOR
     + _WRITE_COUNT + _VARIANT_ARRAY + "[qQ]?s"),
)

READ_ROWS = (
    ("literal", r"[^%]+|%%"),
    ("integer", _READ_START + _NUMERIC + _READ_COUNT + "[lhbI]?[dioux]"),
    ("integer array", _READ_START + _NUMERIC + _READ_COUNT + _READ_SEPARATOR + _READ_COUNT
     + _VARIANT_ARRAY + "[lhbI]?[dioux]"),
    ("real", _READ_START + _NUMERIC + _READ_COUNT + "[lL]?[feEgG]"),
    ("real array", _READ_START + _NUMERIC + _READ_COUNT + _READ_SEPARATOR + _READ_COUNT
     + _VARIANT_ARRAY + "[lL]?[feEgG]"),
    ("block", _READ_START + _READ_COUNT + _VARIANT_ARRAY + "[hlzZI]?b"),
    ("block", _READ_START + _READ_COUNT + _BYTE_ORDER + _VARIANT_ARRAY + "[hlI]?y"),
    ("character", _READ_START + _READ_COUNT + "c"),
    ("text", _READ_START + _READ_COUNT + _TEXT_KIND + "T"),
    ("text", _READ_START + _READ_COUNT + _TEXT_KIND + "t"),
    ("text", _READ_START + _READ_COUNT + _TEXT_KIND + "s"),
    ("text", _READ_START + _READ_COUNT + _TEXT_KIND + _SET),
    ("text array", _READ_START + _READ_COUNT + _READ_SEPARATOR + _READ_COUNT + _VARIANT_ARRAY
     + _TEXT_KIND + "[qQ]?s"),
    ("enumeration",
     "%" + _BLANKS + _ENUM % "enum13" + _SUPPRESS + _READ_COUNT + "[qQ]?s"),
    ("enumeration", "%" + _BLANKS + _ENUM % "enum14" + _SUPPRESS + _READ_COUNT + _SET),
    ("enumeration array", "%" + _BLANKS + _ENUM % "enum15" + _SUPPRESS + _READ_COUNT
     + _READ_SEPARATOR + _READ_COUNT + _VARIANT_ARRAY + "[qQ]?s"),
)


def _compile(rows: tuple[tuple[str, str], ...]) -> re.Pattern[str]:
    return re.compile("|".join(f"(?P<row{i}>{row})" for i, (_, row) in enumerate(rows)))


_WRITE = _compile(WRITE_ROWS)
_READ = _compile(READ_ROWS)


class FormatError(Exception):
    """A template that the format engine would refuse."""


@dataclass(frozen=True)
class Conversion:
    """One conversion of a template, in either direction."""

    text: str
    kind: str  # the name of its row
    enum: str = ""  # the name between the braces
    length: str = ""  # the modifier before the conversion letter
    text_kind: str = ""  # "B" or "C"
    is_variant_array: bool = False
    counts: int = 0  # arguments that it takes before its value

    def __str__(self) -> str:
        return self.text


def _conversion(text: str, kind: str, enum: str, counts: int) -> Conversion:
    plain = re.sub(r"\{.*?\}|\[.*\]$", "", text)
    text_kind = re.search(r"\$([BC])", plain)
    length = ""
    if kind.split()[0] in ("integer", "real", "block") and plain[-2] in "lhbILzZ":
        length = plain[-2]
    return Conversion(text, kind, enum, length, text_kind.group(1) if text_kind else "",
                      "$S" in plain, counts)


def _cut(template: str, pattern: re.Pattern[str], rows: tuple[tuple[str, str], ...]):
    position = 0
    while position < len(template):
        match = pattern.match(template, position)
        if match is None:
            raise FormatError(f"'{template[position:position + 12]}' is no conversion")
        row = next(i for i in range(len(rows)) if match.group(f"row{i}") is not None)
        enum = match.groupdict().get(f"enum{row}") or ""
        yield rows[row][0], match.group(), enum
        position = match.end()


def parse_write(template: str) -> list[Conversion]:
    """The conversions of a template that is written, in order."""
    return [
        _conversion(text, kind, enum, re.sub(r"\{.*?\}", "", text).count("*"))
        for kind, text, enum in _cut(template, _WRITE, WRITE_ROWS)
        if kind != "literal"
    ]


def parse_read(template: str) -> list[Conversion]:
    """The conversions of a reply format that store something, in order."""
    found = []
    for kind, text, enum in _cut(template, _READ, READ_ROWS):
        if kind == "literal":
            continue
        before_set = re.sub(r"\{.*?\}", "", text).split("[")[0]
        if "*" not in before_set:
            found.append(_conversion(text, kind, enum, before_set.count("#")))
    return found
