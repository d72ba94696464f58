"""Checks of enumerations, families, repeated capabilities and messages."""

import re
from collections.abc import Iterable

from generator.formats import FormatError
from generator.problems import Place, Problems, nearest
from generator.records import Enum, Model
from generator.templates import require_bytes

_MODEL = re.compile(r"[A-Z0-9]+")
_LEAST, _GREATEST = -(2**31), 2**31 - 1


def check_tables(model: Model, problems: Problems) -> None:
    _check_enums(model, problems)
    _check_families(model, problems)
    _check_once(((c.class_name, c.place) for c in model.capabilities), "the repeated capability",
                problems)
    for capability in model.capabilities:
        _check_once(((name, capability.place) for name in capability.names),
                    f"the name in {capability.class_name}", problems)
    _check_once(((str(m.code), m.place) for m in model.messages), "the message", problems)
    for message in model.messages:
        if not 0 <= message.status < 2**32:
            problems.add(message.place,
                         f"the status of message {message.code} hasn't 32 bits")


def _check_once(texts: Iterable[tuple[str, Place]], what: str, problems: Problems) -> None:
    seen: dict[str, Place] = {}
    for text, place in texts:
        if text in seen:
            problems.add(place, f"{what} '{text}' stands in {seen[text]} too")
        seen[text] = place


def _check_enums(model: Model, problems: Problems) -> None:
    enumerators: dict[str, str] = {}
    keys = {entry.key for part in model.interfaces.values() for entry in part.entries}
    for enum in model.enums:
        _check_values(enum, enumerators, problems)
        _check_member_keys(enum, keys, problems)
        if not enum.doc.strip() or "\n" in enum.doc:
            problems.add(enum.place, f"{enum.name} needs a 'doc' of one line")
        for table in enum.tables:
            for _, tokens in table.rows:
                for token in tokens:
                    try:
                        require_bytes(token)
                    except FormatError as error:
                        problems.add(table.place, f"{enum.name}: the token '{token}': {error}")


def _check_values(enum: Enum, enumerators: dict[str, str], problems: Problems) -> None:
    numbers: dict[int, str] = {}
    for value in enum.values:
        if not _LEAST <= value.value <= _GREATEST:
            problems.add(value.place, f"{enum.name}: {value.name} has more than 32 bits")
        if value.value in numbers:
            problems.add(value.place, f"{enum.name}: {value.name} has the value of"
                         f" {numbers[value.value]}")
        numbers[value.value] = value.name
        if value.name in enumerators:
            problems.add(value.place,
                         f"{enum.name}: {enumerators[value.name]} has a value {value.name} too")
        enumerators[value.name] = enum.name


def _check_member_keys(enum: Enum, keys: set[str], problems: Problems) -> None:
    seen: set[str] = set()
    for table in enum.tables:
        if not table.members:
            problems.add(table.place, f"a table of {enum.name} is for no member")
        for key in table.members:
            if key not in keys:
                problems.add(table.place, f"{enum.name}: there is no member '{key}'"
                             f"{nearest(key, keys)}")
            if key.lower() in seen:
                problems.add(table.place, f"{enum.name} has two tables for '{key}'")
            seen.add(key.lower())


def _check_families(model: Model, problems: Problems) -> None:
    names = [family.name for family in model.families]
    _check_once(((family.name, family.place) for family in model.families), "the family", problems)
    _check_once(((name, family.place) for family in model.families for name in family.models),
                "the model", problems)
    for family in model.families:
        for name in family.models:
            if not _MODEL.fullmatch(name):
                problems.add(family.place,
                             f"the model '{name}' isn't of capital letters and digits")
    for name, families in model.refusals.items():
        place = model.refusal_places[name]
        _check_once(((family, place) for family in families),
                    f"in the refusal list '{name}' the family", problems)
        for family in families:
            if family not in names:
                problems.add(place, f"refusal list '{name}': there is no family '{family}'"
                             f"{nearest(family, names)}")
