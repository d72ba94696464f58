"""Checks of interfaces and of how they refer to each other."""

import re

from generator.problems import Place, Problems, nearest
from generator.records import Entry, Interface, Model

_IID = re.compile(r"[0-9a-fA-F]{8}(-[0-9a-fA-F]{4}){3}-[0-9a-fA-F]{12}")
_MAX_PARAMETERS = 25  # records of one call in the trace


def check_interfaces(model: Model, problems: Problems) -> None:
    classes = [capability.class_name for capability in model.capabilities]
    iids: dict[str, Interface] = {}
    for interface in model.interfaces.values():
        _check_iid(interface, iids, problems)
        _check_doc(interface.doc, interface.name, interface.place, problems)
        if interface.external:
            continue
        if interface.node not in ("root", *classes):
            problems.add(interface.place, f"{interface.name}: there is no node '{interface.node}'"
                         f"{nearest(interface.node, ['root', *classes])}")
        _check_extends(model, interface, problems)
        _check_entries(model, interface, classes, problems)


def _check_doc(doc: str, what: str, place: Place, problems: Problems) -> None:
    if not doc.strip() or "\n" in doc:
        problems.add(place, f"{what} needs a 'doc' of one line")


def _check_iid(interface: Interface, iids: dict[str, Interface], problems: Problems) -> None:
    iid = interface.iid.lower()
    if not _IID.fullmatch(iid):
        problems.add(interface.place, f"{interface.name}: '{interface.iid}' is no interface id")
    elif iid in iids:
        problems.add(interface.place, f"{interface.name} has the interface id of {iids[iid].name}")
    else:
        iids[iid] = interface


def _check_extends(model: Model, interface: Interface, problems: Problems) -> None:
    if not interface.extends:
        return
    base = model.interfaces.get(interface.extends)
    if base is None or base.external:
        problems.add(interface.place, f"{interface.name} can't extend '{interface.extends}'"
                     f"{nearest(interface.extends, model.interfaces)}")
    elif base.node != interface.node:
        problems.add(interface.place,
                     f"{interface.name} extends {base.name}, which is on the node {base.node}")
    elif model.chain(interface)[0].extends:
        problems.add(interface.place, f"{interface.name} extends itself")


def _check_entries(model: Model, interface: Interface, classes: list[str],
                   problems: Problems) -> None:
    inherited = {entry.name: entry for part in model.chain(interface)[:-1]
                 for entry in part.entries}
    seen: set[str] = set()
    families = [family.name for family in model.families]
    for entry in interface.entries:
        if entry.name in seen:
            problems.add(entry.place, f"{interface.name} has two entries {entry.name}")
        seen.add(entry.name)
        if entry.name in inherited:
            problems.add(entry.place, f"{interface.name} has {entry.name} from"
                         f" {inherited[entry.name].interface} already")
        if entry.doc:
            _check_doc(entry.doc, entry.key, entry.place, problems)
        if len(entry.parameters) > _MAX_PARAMETERS:
            problems.add(entry.place,
                         f"{entry.key} has more than {_MAX_PARAMETERS} parameters")
        if entry.collection and entry.collection not in classes:
            problems.add(entry.place, f"{entry.key}: there is no repeated capability"
                         f" '{entry.collection}'{nearest(entry.collection, classes)}")
        if not entry.refused_list:
            _check_refused(entry, families, problems)
        _check_mapped(model, entry, interface, problems)


def _check_refused(entry: Entry, families: list[str], problems: Problems) -> None:
    for family in entry.refused:
        if family not in families:
            problems.add(entry.place, f"{entry.key}: there is no family '{family}'"
                         f"{nearest(family, families)}")
    if len(set(entry.refused)) != len(entry.refused):
        problems.add(entry.place, f"{entry.key} refuses a family twice")


def _check_mapped(model: Model, entry: Entry, interface: Interface, problems: Problems) -> None:
    if entry.mapped is None:
        return
    name = f"{entry.mapped.interface}.{entry.mapped.member}"
    target = model.interfaces.get(entry.mapped.interface)
    entries = model.all_entries(target) if target is not None else []
    found = next((other for other in entries
                  if other.member == entry.mapped.member and other.shape == entry.shape), None)
    if target is None or not any(other.member == entry.mapped.member for other in entries):
        keys = [other.key for part in model.interfaces.values() for other in part.entries]
        problems.add(entry.place, f"{entry.key} maps to '{name}', which doesn't exist"
                     f"{nearest(name, keys)}")
    elif target.node != interface.node:
        problems.add(entry.place, f"{entry.key} maps to {name}, which is on another node")
    elif found is None:
        how = "read" if entry.shape == "get" else "written"
        problems.add(entry.place, f"{entry.key} maps to {name}, which can't be {how}")
    elif found.value != entry.value and (found.value.kind, entry.value.kind) != ("enum", "enum"):
        problems.add(entry.place, f"{entry.key} is {entry.value} and maps to {name}, which is"
                     f" {found.value}")
