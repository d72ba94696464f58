#!/usr/bin/env python3
"""Makes a header of alike operations from their description.

    generate.py <description.toml> <header>

A description is one struct. Each row of `operations` is a member function of one line:

    name    its name
    args    its parameters, as C++ has them
    body    the expression that it returns
    each    the list of [each] for whose entries the row is repeated, one after the other
    doc     the comment in front of it
    before  template parameters

Words in braces are replaced: those of [words] everywhere, those of the entry in a repeated row.
A row whose body holds {polling} makes two functions: the one of the name, which asks the poller
after success, and the one whose name ends in NoPoll, which doesn't. A row with a `doc` and those
without that follow it belong together, and are repeated together, entry by entry.
"""

import sys
import textwrap
import tomllib
from pathlib import Path

KEYS = {"doc", "includes", "struct", "base", "words", "each", "operations"}
ROW_KEYS = {"name", "args", "body", "each", "doc", "before"}


class Fault(Exception):
    pass


def replaced(text: str, words: dict[str, str], row: str) -> str:
    try:
        return text.format_map(words)
    except KeyError as missing:
        raise Fault(f"{row}: there is no word {missing}") from None


def comment(text: str, indent: str = "") -> str:
    return "".join(f"{line}\n" for line in textwrap.wrap(
        " ".join(text.split()), 100, initial_indent=f"{indent}// ",
        subsequent_indent=f"{indent}// "))


def function(row: dict[str, str], words: dict[str, str]) -> str:
    name = row["name"]
    before = (f"    template <{replaced(row['before'], words, name)}>\n" if "before" in row
              else "")
    forms = {"": "kOn", "NoPoll": "kOff"} if "{polling}" in row["body"] else {"": ""}
    text = ""
    for suffix, polling in forms.items():
        all_words = {**words, "polling": f"Polling::{polling}"}
        text += (f"{before}    HRESULT {replaced(name, all_words, name)}{suffix}"
                 f"({replaced(row['args'], all_words, name)}) {{\n"
                 f"        return {replaced(row['body'], all_words, name)};\n    }}\n")
    return text


def checked(row: dict[str, str], lists: dict[str, list]) -> dict[str, str]:
    name = row.get("name", "a row without a name")
    if unknown := row.keys() - ROW_KEYS:
        raise Fault(f"{name}: unknown {', '.join(sorted(unknown))}")
    if missing := {"name", "args", "body"} - row.keys():
        raise Fault(f"{name}: no {', '.join(sorted(missing))}")
    if row.get("each", "") not in {"", *lists}:
        raise Fault(f"{name}: there is no list {row['each']} in [each]")
    return row


def families(rows: list[dict[str, str]]) -> list[list[dict[str, str]]]:
    found: list[list[dict[str, str]]] = []
    for row in rows:
        if "doc" in row:
            found.append([])
        if not found or found[-1] and found[-1][0].get("each") != row.get("each"):
            raise Fault(f"{row['name']}: no doc at the beginning of a family")
        found[-1].append(row)
    return found


def header(description: dict, source: str) -> str:
    if unknown := description.keys() - KEYS:
        raise Fault(f"unknown {', '.join(sorted(unknown))}")
    lists = description.get("each", {})
    rows = [checked(row, lists) for row in description["operations"]]
    text = comment(f"{description['doc']} Generated from {source}.") + "#pragma once\n\n"
    text += "".join(f'#include "{path}"\n' for path in description["includes"])
    text += f"\nnamespace kestrion {{\n\nstruct {description['struct']} : {description['base']} {{\n"
    words = description.get("words", {})
    for family in families(rows):
        text += "\n" + comment(family[0]["doc"], "    ")
        for entry in lists.get(family[0].get("each"), [{}]):
            text += "".join(function(row, {**words, **entry}) for row in family)
    return text + "};\n\n}  // namespace kestrion\n"


def main(arguments: list[str]) -> int:
    source, target = map(Path, arguments)
    try:
        text = header(tomllib.loads(source.read_text(encoding="utf-8")), source.name)
    except (Fault, KeyError, tomllib.TOMLDecodeError) as fault:
        print(f"{source}: {fault}", file=sys.stderr)
        return 1
    target.parent.mkdir(parents=True, exist_ok=True)
    if not target.exists() or target.read_text(encoding="utf-8") != text:
        target.write_text(text, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
