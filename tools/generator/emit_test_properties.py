"""The tables of properties that the system tests put and get back."""

from collections.abc import Iterable
from pathlib import PurePath

from generator import cpp
from generator.records import Entry, Interface, Model, Parameter

_KINDS = {"long": "kLong", "double": "kDouble", "bool": "kBool", "string": "kText",
          "enum": "kEnum"}


def properties(interface: Interface) -> dict[str, dict[str, Entry]]:
    """What can be written, by name, with its entries by "get" and "put"."""
    found: dict[str, dict[str, Entry]] = {}
    for entry in interface.entries:
        for verb in ("get", "put"):
            if entry.name == f"{verb}_{entry.member}":
                found.setdefault(entry.member, {})[verb] = entry
    return {name: entries for name, entries in found.items() if "put" in entries}


def _is_reachable(put: Entry) -> bool:
    """Whether one number and one value call it."""
    index = put.parameters[:-1]
    return put.value.kind in _KINDS and (
        not index or (len(index) == 1 and index[0].type.kind in ("long", "enum")))


def _numbers(model: Model, key: str, parameter: Parameter) -> list[int]:
    """The legal values of an enumeration: those that the member's table has words for, or all where
    it has none of its own."""
    if parameter.type.kind != "enum":
        return []
    enum = next(enum for enum in model.enums if enum.name == parameter.type.name)
    for table in enum.tables:
        if key in table.members:
            return [value for value, tokens in table.rows if tokens]
    return [value.value for value in enum.values]


def _array(name: str, numbers: list[int]) -> tuple[str, str]:
    """The declaration of an array, and how it is named; nothing for an empty one."""
    if not numbers:
        return "", "{}"
    items = ", ".join(str(number) for number in numbers)
    return f"constexpr LONG {name}[] = {{{items}}};\n", name


def _property(model: Model, interface: Interface, name: str,
              entries: dict[str, Entry]) -> tuple[str, str]:
    """The arrays of one property, and its row."""
    put = entries["put"]
    key = f"{interface.name}.{name}"
    values, values_name = _array(f"k{name}Values", _numbers(model, key, put.parameters[-1]))
    indexes, indexes_name = "", "{}"
    if len(put.parameters) == 2:
        indexes, indexes_name = _array(f"k{name}Indexes",
                                       _numbers(model, key, put.parameters[0]))
    row = f'    {{.name = {cpp.literal(name)},\n'
    row += f"     .kind = PropertyKind::{_KINDS.get(put.value.kind, 'kOther')},\n"
    row += f"     .hasIndex = {cpp.boolean(len(put.parameters) > 1)},\n"
    row += f"     .values = {values_name},\n     .indexes = {indexes_name},\n"
    reachable = _is_reachable(put)
    for verb, kind in (("get", "Getter"), ("put", "Setter")):
        call = "nullptr"
        if verb in entries and reachable:
            call = f"{kind}<&::{interface.name}::{verb}_{name}>::Call"
        row += f"     .{verb} = {call},\n"
    return values + indexes, row.removesuffix(",\n") + "},\n"


def _table(model: Model, interface: Interface) -> str:
    arrays, rows = "", ""
    for name, entries in properties(interface).items():
        data, row = _property(model, interface, name, entries)
        arrays += data
        rows += row
    text = f"\nnamespace {interface.name}Properties {{\nnamespace {{\n\n{arrays}"
    text += f"constexpr Property kAll[] = {{\n{rows}}};\n\n}}  // namespace\n\n"
    text += "std::span<const Property> All() {\n    return kAll;\n}\n\n"
    return text + f"}}  // namespace {interface.name}Properties\n"


def tested_interfaces(model: Model) -> list[Interface]:
    return [interface for interface in model.interfaces.values()
            if not interface.external and properties(interface)]


def _source(model: Model, file: str, interfaces: list[Interface]) -> str:
    text = cpp.header(file, "What can be written of it, for the system tests.", guard=False)
    used = [cpp.interface_include(interface.name) for interface in interfaces]
    text += cpp.includes([*used, "tests/system/property.h", "tests/system/property_call.h"])
    text += "\nnamespace kestrion {\n"
    text += "".join(_table(model, interface) for interface in interfaces)
    return text + "\n}  // namespace kestrion\n"


def _nodes(model: Model, interfaces: Iterable[Interface]) -> tuple[str, str, list[str]]:
    """The rows of the classes of instances with how one is found, what they include, their names.
    """
    rows, used, names = "", [], []
    for capability in model.capabilities:
        if not any(interface.node == capability.class_name for interface in interfaces):
            continue
        for entry in _items(model, capability.class_name):
            used += [entry.interface, entry.value.name]
            names.append(capability.class_name)
            rows += (f"constexpr PropertyNode k{capability.class_name}{{"
                     f"{cpp.literal(capability.names[0])}, {cpp.literal(capability.names[-1])},\n"
                     f"    &FindInstance<::{entry.interface}, ::{entry.value.name}>}};\n")
            break
    return rows, cpp.includes(cpp.interface_include(name) for name in used), names


def _items(model: Model, class_name: str) -> list[Entry]:
    """What gives an instance by its name."""
    return [entry for interface in model.interfaces.values() if interface.node == "root"
            for entry in interface.entries
            if entry.shape == "item" and entry.collection == class_name]


def _list(model: Model, interfaces: list[Interface]) -> str:
    text = cpp.header("model", "Every interface with something that can be written.", guard=False)
    nodes, used, names = _nodes(model, interfaces)
    text += used + cpp.includes(["tests/system/property.h", "tests/system/property_call.h"])
    text += "\nnamespace kestrion {\n\n"
    for interface in interfaces:
        text += (f"namespace {interface.name}Properties {{\n"
                 "std::span<const Property> All();\n}\n")
    text += f"\nnamespace {{\n\n{nodes}\n}}  // namespace\n\n"
    text += "std::vector<PropertyInterface> AllPropertyInterfaces() {\n    return {\n"
    for interface in interfaces:
        node = f"&k{interface.node}" if interface.node in names else "nullptr"
        text += (f"        {{{cpp.literal(interface.name)}, {node},"
                 f" {interface.name}Properties::All()}},\n")
    return text + "    };\n}\n\n}  // namespace kestrion\n"


def test_property_files(model: Model) -> dict[str, str]:
    interfaces = tested_interfaces(model)
    by_file: dict[str, list[Interface]] = {}
    for interface in interfaces:
        by_file.setdefault(interface.file, []).append(interface)
    files = {"tests/properties.cpp": _list(model, interfaces)}
    for file, group in by_file.items():
        path = PurePath(file)
        files[f"tests/{path.parent.name}_{path.stem}.cpp"] = _source(model, file, group)
    return files
