"""Makes the complete records of the model from its parsed files."""

import re
from typing import Any

from generator import schema
from generator.load import File, RawModel
from generator.problems import Place, Problems, nearest
from generator.records import (Capability, Enum, EnumTable, EnumValue, Family, Interface, Message,
                               Model)
from generator.resolve_expected import resolve_expected
from generator.resolve_members import MemberResolver, Names, Refusals

_SHORT_NAME = re.compile(r"(?:Kestrion|IviScope)(\w+)Enum")


def resolve(raw: RawModel, version: str, problems: Problems) -> Model:
    """The records of what could be resolved; the rest is in `problems`."""
    enums = _resolve_enums(raw, problems)
    families, supported, refusals, refusal_places = _resolve_families(raw, problems)
    return Model(
        interfaces=_resolve_interfaces(raw, enums, refusals, problems), enums=enums,
        families=families, supported_models=supported, refusals=refusals,
        refusal_places=refusal_places,
        capabilities=_resolve_capabilities(raw, problems),
        messages=_resolve_messages(raw, problems),
        metadata=_resolve_metadata(raw, version, problems),
        expected=resolve_expected(raw.single["expected.toml"], problems),
        files=[file.name for file in raw.files()])


def _single(raw: RawModel, name: str, legal: dict[str, schema.Kind],
            problems: Problems) -> tuple[File | None, dict[str, Any]]:
    file = raw.single.get(name)
    if file is None:
        return None, {}
    return file, file.check(problems, name, (), file.data, legal, tuple(legal))


def _tables(file: File | None, data: dict[str, Any], key: str, legal: dict[str, schema.Kind],
            problems: Problems) -> list[tuple[dict[str, Any], Place]]:
    """The complete tables of an array of tables, and where they stand."""
    found = []
    for index, table in enumerate(data.get(key, [])):
        assert file is not None
        good = file.check(problems, f"a '{key}'", (key, str(index)), table, legal, tuple(legal))
        if len(good) == len(legal):
            found.append((good, file.place(key, str(index))))
    return found


# Enumerations.


def _resolve_enums(raw: RawModel, problems: Problems) -> list[Enum]:
    found: dict[str, Enum] = {}
    for file in raw.enums:
        for name, table in file.data.items():
            enum = _resolve_enum(file, name, table, problems)
            if enum is None:
                continue
            if name in found:
                problems.add(enum.place,
                             f"the enumeration {name} stands in {found[name].place} too")
            found[name] = enum
    file, data = _single(raw, "enum_order.toml", schema.ENUM_ORDER, problems)
    order: list[str] = data.get("order", [])
    if file is not None:
        for name in order:
            if name not in found:
                problems.add(file.place("order"), f"there is no enumeration {name}")
            if order.count(name) > 1:
                problems.add(file.place("order"), f"{name} stands in the order twice")
        for name, enum in found.items():
            if name not in order:
                problems.add(enum.place, f"{name} has no place in {file.name}")
    return [found[name] for name in dict.fromkeys(order) if name in found]


def _resolve_enum(file: File, name: str, table: Any, problems: Problems) -> Enum | None:
    place = file.place(name)
    if not isinstance(table, dict):
        problems.add(place, f"'{name}' has to be a table: an enumeration")
        return None
    data = file.check(problems, name, (name,), table, schema.ENUM, ("doc", "values"))
    values = _resolve_values(file, name, data.get("values", {}), problems)
    is_platform = data.get("platform", False)
    short = data.get("short", name if is_platform else "")
    if not short:
        match = _SHORT_NAME.fullmatch(name)
        if match is None:
            problems.add(place, f"{name} needs 'short': its name isn't of the form"
                         " Kestrion...Enum or IviScope...Enum")
        short = match.group(1) if match else name
    tables = [_resolve_enum_table(file, name, index, entry, values, problems)
              for index, entry in enumerate(data.get("tables", []))]
    return Enum(name, short, data.get("doc", ""), place, file.name, values, tables, is_platform)


def _resolve_values(file: File, enum: str, table: dict[str, Any],
                    problems: Problems) -> list[EnumValue]:
    values = []
    for name, entry in table.items():
        path = (enum, "values", name)
        if schema.NUMBER.accepts(entry):
            entry = {"value": entry}
        if not isinstance(entry, dict):
            problems.add(file.place(*path), f"{name} has to be a number or a table")
            continue
        data = file.check(problems, name, path, entry, schema.ENUM_VALUE, ("value",))
        values.append(
            EnumValue(name, data.get("value", 0), data.get("doc", ""), file.place(*path)))
    return values


def _resolve_enum_table(file: File, enum: str, index: int, entry: dict[str, Any],
                        values: list[EnumValue], problems: Problems) -> EnumTable:
    path = (enum, "tables", str(index))
    data = file.check(problems, f"a table of {enum}", path, entry, schema.ENUM_TABLE,
                      ("members", "tokens"))
    numbers = {value.name: value.value for value in values}
    rows = []
    for name, tokens in data.get("tokens", {}).items():
        if name not in numbers:
            problems.add(file.place(*path, "tokens", name),
                         f"{enum} has no value {name}{nearest(name, numbers)}")
        elif not schema.TEXT_OR_TEXTS.accepts(tokens):
            problems.add(file.place(*path, "tokens", name),
                         f"the tokens of {name} have to be a text or an array of texts")
        else:
            rows.append((numbers[name], [tokens] if isinstance(tokens, str) else tokens))
    return EnumTable(data.get("members", []), rows, file.place(*path))


# Interfaces.


def _resolve_interfaces(raw: RawModel, enums: list[Enum], refusals: dict[str, tuple[str, ...]],
                        problems: Problems) -> dict[str, Interface]:
    found: dict[str, tuple[Interface, File, dict[str, Any]]] = {}
    for file in raw.interfaces:
        for name, table in file.data.items():
            place = file.place(name)
            if not isinstance(table, dict):
                problems.add(place, f"'{name}' has to be a table: an interface")
                continue
            data = file.check(problems, name, (name,), table, schema.INTERFACE, ("iid", "doc"))
            if name in found:
                problems.add(place, f"the interface {name} stands in {found[name][0].place} too")
                continue
            interface = Interface(
                name=name, iid=data.get("iid", ""), node=data.get("node", ""),
                doc=data.get("doc", ""), place=place, file=file.name,
                extends=data.get("extends", ""), external=data.get("external", False),
                variant=data.get("variant", ""), like=data.get("like", ""))
            found[name] = (interface, file, data)
    for name, (interface, file, data) in found.items():
        if interface.like:
            found[name] = _take_over(interface, file, data, found, problems)
    names = Names([enum.name for enum in enums if not enum.platform], list(found))
    for interface, file, data in found.values():
        _resolve_interface(interface, file, data, names, refusals, problems)
    return {name: interface for name, (interface, _, _) in found.items()}


# What an interface that is like another has from it.
_TAKEN_OVER = ("node", "extends", "class_compliant", "collection", "refuses", "members")


def _take_over(interface: Interface, file: File, data: dict[str, Any],
               found: dict[str, tuple[Interface, File, dict[str, Any]]],
               problems: Problems) -> tuple[Interface, File, dict[str, Any]]:
    """The interface with what it has from the one that it is like; its members stand there."""
    place = file.place(interface.name, "like")
    for key in (*_TAKEN_OVER, "external"):
        if key in data:
            problems.add(file.place(interface.name, key), f"{interface.name} is like"
                         f" {interface.like}: it has no '{key}' of its own")
    origin, origin_file, origin_data = found.get(interface.like, (None, file, {}))
    if origin is None:
        problems.add(place, f"there is no interface {interface.like}"
                     f"{nearest(interface.like, found)}")
    elif origin.like or origin.external:
        problems.add(place, f"{interface.name} can't be like {origin.name}, which has no members"
                     " of its own")
    elif not interface.variant or interface.variant == origin.variant:
        problems.add(place, f"{interface.name} needs a 'variant' other than that of {origin.name},"
                     " or there is nothing to tell them apart")
    else:
        taken = {key: origin_data[key] for key in _TAKEN_OVER if key in origin_data}
        interface.node, interface.extends = origin.node, origin.extends
        return interface, origin_file, {**data, **taken}
    # Reported; on the root and without members it causes no further problems.
    interface.node = "root"
    return interface, file, {**data, "node": "root", "members": {}}


def _resolve_interface(interface: Interface, file: File, data: dict[str, Any], names: Names,
                       refusals: dict[str, tuple[str, ...]], problems: Problems) -> None:
    if interface.external:
        for key in (*_TAKEN_OVER, "variant"):
            if key in data:
                problems.add(file.place(interface.name, key),
                             f"{interface.name} is external: it has no '{key}'")
        return
    for key in ("node", "members"):
        if key not in data:
            problems.add(interface.place, f"{interface.name} needs the key '{key}'")
    if interface.like:
        # What is wrong with a member is reported where it stands, once.
        problems = Problems()
    resolver = MemberResolver(
        interface, data.get("collection", ""), data.get("class_compliant", False), file, names,
        Refusals(refusals, data.get("refuses", ""), interface.name,
                 file.place(interface.origin, "refuses"), problems), problems)
    for name, table in data.get("members", {}).items():
        if not isinstance(table, dict):
            problems.add(file.place(interface.origin, "members", name),
                         f"'{name}' has to be a table: a member")
            continue
        interface.entries += resolver.resolve(name, table)


# Tables.


def _resolve_families(
        raw: RawModel, problems: Problems
) -> tuple[list[Family], list[str], dict[str, tuple[str, ...]], dict[str, Place]]:
    file, data = _single(raw, "families.toml", schema.FAMILIES, problems)
    families = [Family(table["name"], table["models"], place)
                for table, place in _tables(file, data, "family", schema.FAMILY, problems)]
    refusals, places = {}, {}
    for name, names in data.get("refusals", {}).items():
        assert file is not None
        places[name] = file.place("refusals", name)
        if schema.TEXTS.accepts(names):
            refusals[name] = tuple(names)
        else:
            problems.add(places[name], f"'{name}' has to be an array of texts")
    return families, data.get("supported_instrument_models", []), refusals, places


def _resolve_capabilities(raw: RawModel, problems: Problems) -> list[Capability]:
    file, data = _single(raw, "repeated_capabilities.toml", schema.CAPABILITIES, problems)
    return [Capability(table["class"], table["names"], place)
            for table, place in _tables(file, data, "capability", schema.CAPABILITY, problems)]


def _resolve_messages(raw: RawModel, problems: Problems) -> list[Message]:
    file, data = _single(raw, "messages.toml", schema.MESSAGES, problems)
    return [Message(table["code"], table["status"], table["help_context"],
                    data.get("prefix", "") + table["text"] + data.get("ending", ""), place)
            for table, place in _tables(file, data, "message", schema.MESSAGE, problems)]


def _resolve_metadata(raw: RawModel, version: str,
                      problems: Problems) -> dict[str, str | int | bool]:
    _, data = _single(raw, "metadata.toml", schema.METADATA, problems)
    resolved = {}
    for key, value in data.items():
        if isinstance(value, list):
            value = ",".join(value)
        if isinstance(value, str):
            value = value.replace("<version>", version)
        resolved[key] = value
    return resolved
