"""What the model holds, in numbers, beside those that it has to come to."""

from collections import Counter

from generator.check_expected import own_enums, words_of
from generator.records import Entry, Model


def coverage(model: Model) -> list[str]:
    """The lines of the report: the parts one by one, then the sums."""
    return [*_held(model), "", *_interface_lines(model), "", *_enum_lines(model), "",
            *_boolean_lines(model), "", *_refusal_lines(model), "", *_sum_lines(model)]


def _of(have: int, expected: int) -> str:
    """ "3/5, 2 short": what there is, what is expected, and how far they are apart."""
    if have == expected:
        return f"{have}/{expected}"
    apart = f"{expected - have} short" if have < expected else f"{have - expected} over"
    return f"{have}/{expected}, {apart}"


def _entries(model: Model) -> list[Entry]:
    return [entry for interface in model.interfaces.values() for entry in interface.entries]


def _held(model: Model) -> list[str]:
    external = sum(interface.external for interface in model.interfaces.values())
    entries = _entries(model)
    return [
        f"interfaces: {len(model.interfaces) - external}",
        f"external interfaces: {external}",
        f"members of interfaces: {len({entry.key for entry in entries})}",
        f"entries: {len(entries)}",
        f"hooks: {sum(entry.has_hook for entry in entries)}",
        f"repeated capabilities: {len(model.capabilities)}",
        f"instances: {sum(len(capability.names) for capability in model.capabilities)}",
        f"messages: {len(model.messages)}",
    ]


def _interface_lines(model: Model) -> list[str]:
    """The listed interfaces are complete, or the model is refused; the others come with time."""
    complete = model.expected.interfaces
    lines = []
    for interface in model.interfaces.values():
        have = len(interface.members())
        number = _of(have, complete[interface.name].number) if interface.name in complete else have
        if not interface.external:
            lines.append(f"{interface.name}: members {number}")
    return lines


def _enum_lines(model: Model) -> list[str]:
    lines = []
    for enum in own_enums(model):
        expected = model.expected.enums[enum.name]
        lines.append(f"{enum.name}: members {_of(len(enum.values), expected.members)};"
                     f" tables {_of(enum.table_count(), expected.tables)}")
    of_class = [enum for enum in model.enums if enum.name in model.expected.class_enums()]
    for enum in of_class:
        lines.append(f"{enum.name}: members {len(enum.values)}; tables {enum.table_count()}")
    have = sum(enum.table_count() for enum in of_class)
    lines.append(f"tables of the class: {_of(have, model.expected.class_tables)}")
    return lines


def _boolean_lines(model: Model) -> list[str]:
    have: Counter[int] = Counter()
    for enum in model.enums:
        for table in enum.tables if enum.platform else []:
            words = words_of(model.expected, table)
            have[id(words)] += len(table.members)
    lines = [f"tables of the boolean with {_quoted(words.false_tokens)} and"
             f" {_quoted(words.true_tokens)}: {_of(have[id(words)], words.tables)}"
             for words in model.expected.booleans]
    total = sum(words.tables for words in model.expected.booleans)
    return [*lines, f"tables of the boolean: {_of(sum(have.values()), total)}"]


def _quoted(tokens: list[str]) -> str:
    return " ".join(f'"{token}"' for token in tokens)


def _refusal_lines(model: Model) -> list[str]:
    # By the families, whatever their order and whether the list has a name.
    refused = Counter(frozenset(entry.refused) for entry in _entries(model))
    free = refused.pop(frozenset(), 0)
    lines = []
    for name, families in model.refusals.items():
        expected = model.expected.refusals.get(name)
        have = refused.pop(frozenset(families), 0)
        number = str(have) if expected is None else _of(have, expected.number)
        lines.append(f"refused by {name} ({', '.join(families)}): {number}")
    lines += sorted(f"refused by {', '.join(sorted(families))}: {count}"
                    for families, count in refused.items())
    about = model.expected.about["refused_by_no_family"].number
    return [*lines, f"refused by no family: {free}, of about {about}"]


def _sum_lines(model: Model) -> list[str]:
    own = own_enums(model)
    have = {
        "enumerations": len(own),
        "members": sum(len(enum.values) for enum in own),
        "tables": sum(enum.table_count() for enum in model.enums),
        "member_keys": len({key.lower() for enum in model.enums for table in enum.tables
                            for key in table.members}),
        "converters": sum(bool(enum.tables) for enum in model.enums),
        "families": len(model.families),
        "models": sum(len(family.models) for family in model.families),
    }
    sums = [f"{name.replace('_', ' ')}: {_of(number, model.expected.sums[name].number)}"
            for name, number in have.items()]
    about = model.expected.about["methods"].number
    return [*sums, f"methods, getters and setters: {len(_entries(model))}, of about {about}"]
