"""Holds the model against the numbers that it has to come to.

What has to be complete is checked: the values of enumerations, the families and their models, and
the members of the interfaces that are listed. Tables and refusals come with their members, so the
report shows how far they are.
"""

from generator.problems import Problems, nearest
from generator.records import BooleanWords, Enum, EnumTable, Expected, Model


def check_expected(model: Model, problems: Problems) -> None:
    _check_enums(model, problems)
    _check_families(model, problems)
    _check_booleans(model, problems)
    _check_sums(model.expected, problems)
    _check_interfaces(model, problems)
    for name, number in model.expected.refusals.items():
        if name not in model.refusals:
            problems.add(number.place, f"there is no refusal list '{name}'"
                         f"{nearest(name, model.refusals)}")


def own_enums(model: Model) -> list[Enum]:
    """The driver's enumerations: neither the platform's nor those of the class."""
    others = model.expected.class_enums()
    return [enum for enum in model.enums if not enum.platform and enum.name not in others]


def _check_enums(model: Model, problems: Problems) -> None:
    expected = model.expected.enums
    for enum in own_enums(model):
        if enum.name not in expected:
            problems.add(enum.place, f"{enum.name} has no line in {model.expected.place.file}"
                         f"{nearest(enum.name, expected)}")
        elif len(enum.values) != expected[enum.name].members:
            problems.add(enum.place, f"{enum.name} has {len(enum.values)} values, and"
                         f" {expected[enum.name].members} are expected")
    names = [enum.name for enum in model.enums]
    for name, line in expected.items():
        if name not in names:
            problems.add(line.place, f"there is no enumeration {name}{nearest(name, names)}")
    for name in model.expected.class_enums():
        if name not in names:
            problems.add(model.expected.class_place,
                         f"there is no enumeration {name}{nearest(name, names)}")


def _check_families(model: Model, problems: Problems) -> None:
    expected = model.expected.families
    for family in model.families:
        if family.name not in expected:
            problems.add(family.place, f"'{family.name}' has no line in"
                         f" {model.expected.place.file}{nearest(family.name, expected)}")
        elif len(family.models) != expected[family.name].number:
            problems.add(family.place, f"'{family.name}' has {len(family.models)} models, and"
                         f" {expected[family.name].number} are expected")
    names = [family.name for family in model.families]
    for name, line in expected.items():
        if name not in names:
            problems.add(line.place, f"there is no family '{name}'{nearest(name, names)}")


def _check_interfaces(model: Model, problems: Problems) -> None:
    for name, line in model.expected.interfaces.items():
        interface = model.interfaces.get(name)
        if interface is None:
            problems.add(line.place, f"there is no interface {name}"
                         f"{nearest(name, model.interfaces)}")
        elif len(interface.members()) != line.number:
            problems.add(interface.place, f"{name} has {len(interface.members())} members, and"
                         f" {line.number} are expected")


def words_of(expected: Expected, table: EnumTable) -> BooleanWords | None:
    """The words that a boolean table has, or None for words that no table should have."""
    rows = dict(table.rows)
    for words in expected.booleans:
        if (rows.get(0), rows.get(-1)) == (words.false_tokens, words.true_tokens):
            return words
    return None


def _check_booleans(model: Model, problems: Problems) -> None:
    for enum in model.enums:
        for table in enum.tables if enum.platform else []:
            if words_of(model.expected, table) is None:
                rows = dict(table.rows)
                problems.add(table.place, f"{enum.name}: {model.expected.place.file} has no"
                             f" 'boolean' with {rows.get(0)} and {rows.get(-1)}")


def expected_tables(expected: Expected) -> int:
    return (sum(enum.tables for enum in expected.enums.values())
            + sum(words.tables for words in expected.booleans) + expected.class_tables)


def _check_sums(expected: Expected, problems: Problems) -> None:
    """The file's own parts have to add up to its sums."""
    converters = sum(enum.tables > 0 for enum in expected.enums.values())
    converters += len(expected.class_with_tables) + bool(expected.booleans)
    for key, found in {
        "enumerations": len(expected.enums),
        "members": sum(enum.members for enum in expected.enums.values()),
        "tables": expected_tables(expected),
        "converters": converters,
        "families": len(expected.families),
        "models": sum(family.number for family in expected.families.values()),
    }.items():
        line = expected.sums.get(key)
        if line is not None and line.number != found:
            problems.add(line.place, f"the parts of '{key}' add up to {found}, not {line.number}")
