"""Templates as the model writes them, made into what the format engine gets."""

import re

from generator.formats import FormatError, parse_write
from generator.problems import nearest
from generator.records import SELECTORS, Template, ValueType

_MARK = re.compile(r"<[a-zA-Z]+>")

# What each type sends and reads where the model says nothing else.
_SET_CONVERSIONS = {"long": "%d", "double": "%0.15lg", "string": "%$BQs"}
_REPLY_CONVERSIONS = {"long": "%d", "double": "%lg", "string": "%$Bs"}


def _conversion(value: ValueType, plain: dict[str, str]) -> str:
    if value.kind == "bool":
        return "%{VARIANT_BOOL}s"
    if value.kind == "enum":
        return f"%{{{value.name}}}s"
    return plain.get(value.kind, "")


def set_conversion(value: ValueType) -> str:
    """The conversion that writes a value of the type; empty for a type that has none."""
    return _conversion(value, _SET_CONVERSIONS)


def reply_conversion(value: ValueType) -> str:
    """The conversion that reads a value of the type; empty for a type that has none."""
    return _conversion(value, _REPLY_CONVERSIONS)


def require_bytes(text: str) -> None:
    """Instrument text is bytes: a code point above 255 has none."""
    for character in text:
        if ord(character) > 255:
            raise FormatError(f"U+{ord(character):04X} is no byte of an instrument text")


def make_template(text: str) -> Template:
    """Puts the conversions of instance selectors in, and tells where they are."""
    require_bytes(text)
    selectors: list[str] = []
    position = 0
    for mark in [*_MARK.finditer(text), None]:
        segment = text[position:mark.start() if mark else len(text)]
        for conversion in parse_write(segment):
            selectors += [""] * (conversion.counts + 1)
        if mark is None:
            break
        if mark.group() not in SELECTORS:
            raise FormatError(
                f"{mark.group()} is no selector{nearest(mark.group(), SELECTORS)}")
        selectors.append(mark.group().strip("<>"))
        position = mark.end()
    plain = _MARK.sub(lambda found: SELECTORS[found.group()], text)
    return Template(plain, tuple(selectors))
