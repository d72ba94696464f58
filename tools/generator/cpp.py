"""Pieces of C++ text that several emitters use."""

import re
import textwrap
from collections.abc import Iterable

from generator.records import Entry, Interface, Parameter, ValueType

MARK = "// Made by tools/generator from"

_PLAIN = {"long": "LONG", "double": "double", "bool": "VARIANT_BOOL", "string": "BSTR"}
_ESCAPES = {"\\": "\\\\", '"': '\\"', "\n": "\\n", "\r": "\\r", "\t": "\\t"}
_HEX_DIGITS = "0123456789abcdefABCDEF"


def header(source: str, about: str, guard: bool = True) -> str:
    """The beginning of a generated file."""
    once = "#pragma once\n\n" if guard else "\n"
    return f"{MARK} {source}; do not edit.\n{comment(about)}{once}"


def comment(text: str, indent: str = "") -> str:
    """Lines of comment, at most 100 columns wide."""
    lines = textwrap.wrap(text, 100 - len(indent) - 3, break_long_words=False,
                          break_on_hyphens=False)
    return "".join(f"{indent}// {line}\n" for line in lines)


def literal(text: str) -> str:
    """A string literal whose code points up to 255 are one byte each."""
    parts = [""]
    after_byte = False
    for character in text:
        if 32 <= ord(character) < 127 or character in _ESCAPES:
            # A hexadecimal escape goes on as long as digits follow: those get a literal of their
            # own.
            if after_byte and character in _HEX_DIGITS:
                parts.append("")
            parts[-1] += _ESCAPES.get(character, character)
            after_byte = False
        else:
            parts[-1] += f"\\x{ord(character):02X}"
            after_byte = True
    return " ".join(f'"{part}"' for part in parts)


def guid(text: str) -> str:
    """The initialiser of a GUID, from its usual text form."""
    digits = text.strip("{}").replace("-", "").upper()
    tail = ", ".join(f"0x{digits[i:i + 2]}" for i in range(16, 32, 2))
    return f"0x{digits[:8]}, 0x{digits[8:12]}, 0x{digits[12:16]}, {{{tail}}}"


def boolean(value: bool) -> str:
    return "true" if value else "false"


def includes(paths: Iterable[str]) -> str:
    return "".join(f'#include "{path}"\n' for path in sorted(set(paths)))


def value_type(value: ValueType) -> str:
    """The type of a value that goes in."""
    if value.kind == "array":
        return "SAFEARRAY*"
    if value.kind == "interface":
        return f"::{value.name}*"
    return _PLAIN.get(value.kind, value.name)


def parameter_type(parameter: Parameter) -> str:
    return value_type(parameter.type) + ("" if parameter.direction == "in" else "*")


def signature(entry: Entry) -> str:
    """The parameter list of an entry, without the brackets."""
    return ", ".join(f"{parameter_type(p)} {p.name}" for p in entry.parameters)


def enums_of(entries: Iterable[Entry]) -> list[str]:
    return sorted({p.type.name for e in entries for p in e.parameters if p.type.kind == "enum"})


def interfaces_of(entries: Iterable[Entry]) -> list[str]:
    return sorted({p.type.name for e in entries for p in e.parameters
                   if p.type.kind == "interface"})


def enum_include(name: str) -> str:
    return f"kestrion/enums/{name}.h"


def interface_include(name: str) -> str:
    return f"kestrion/interfaces/{name}.h"


def face_name(interface: Interface) -> str:
    return f"{interface.name}Face"


def constant_name(text: str) -> str:
    """A name in the form of constants: "get_Mode" gives "kGetMode", "newer" gives "kNewer"."""
    words = [word for word in re.split(r"[_\W]+", text) if word]
    return "k" + "".join(word[0].upper() + word[1:] for word in words)
