"""Reads the numbers that the finished model comes to."""

from typing import Any

from generator import schema
from generator.load import File
from generator.problems import Problems
from generator.records import BooleanWords, Expected, ExpectedEnum, ExpectedNumber


def resolve_expected(file: File, problems: Problems) -> Expected:
    data = file.check(problems, "expected.toml", (), file.data, schema.EXPECTED,
                      tuple(schema.EXPECTED))
    class_enums = _part(file, data, "class_enumerations", schema.EXPECTED_CLASS, problems)
    return Expected(
        place=file.place(),
        sums=_numbers(file, "sums",
                      _part(file, data, "sums", schema.EXPECTED_SUMS, problems), problems),
        about=_numbers(file, "about",
                       _part(file, data, "about", schema.EXPECTED_ABOUT, problems), problems),
        families=_numbers(file, "families", data.get("families", {}), problems),
        refusals=_numbers(file, "refusals", data.get("refusals", {}), problems),
        interfaces=_numbers(file, "interfaces", data.get("interfaces", {}), problems),
        enums=_enums(file, data.get("enumerations", {}), problems),
        booleans=_booleans(file, data.get("boolean", []), problems),
        class_place=file.place("class_enumerations"),
        class_tables=class_enums.get("tables", 0),
        class_with_tables=class_enums.get("with_tables", []),
        class_without_tables=class_enums.get("without_tables", []))


def _part(file: File, data: dict[str, Any], key: str, legal: dict[str, schema.Kind],
          problems: Problems) -> dict[str, Any]:
    return file.check(problems, f"[{key}]", (key,), data.get(key, {}), legal, tuple(legal))


def _numbers(file: File, table: str, data: dict[str, Any],
             problems: Problems) -> dict[str, ExpectedNumber]:
    found = {}
    for name, number in data.items():
        place = file.place(table, name)
        if schema.NUMBER.accepts(number):
            found[name] = ExpectedNumber(number, place)
        else:
            problems.add(place, f"'{name}' of [{table}] has to be {schema.NUMBER.description}")
    return found


def _enums(file: File, data: dict[str, Any], problems: Problems) -> dict[str, ExpectedEnum]:
    found = {}
    for name, table in data.items():
        path = ("enumerations", name)
        if not isinstance(table, dict):
            problems.add(file.place(*path), f"'{name}' has to be a table")
            continue
        good = file.check(problems, name, path, table, schema.EXPECTED_ENUM,
                          tuple(schema.EXPECTED_ENUM))
        found[name] = ExpectedEnum(good.get("members", 0), good.get("tables", 0),
                                   file.place(*path))
    return found


def _booleans(file: File, rows: list[dict[str, Any]], problems: Problems) -> list[BooleanWords]:
    found = []
    for index, row in enumerate(rows):
        path = ("boolean", str(index))
        good = file.check(problems, "a 'boolean'", path, row, schema.EXPECTED_BOOLEAN,
                          tuple(schema.EXPECTED_BOOLEAN))
        found.append(BooleanWords(good.get("false_tokens", []), good.get("true_tokens", []),
                                  good.get("tables", 0), file.place(*path)))
    return found
