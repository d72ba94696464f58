"""For each node, the set of its faces."""

from generator import cpp
from generator.records import Interface, Model


def set_name(node: str) -> str:
    """"root" gives "RootFaces"."""
    return node[0].upper() + node[1:] + "Faces"


def _member(interface: Interface) -> str:
    bare = interface.name[1:]
    return bare[0].lower() + bare[1:]


def objects_header(model: Model, node: str) -> str:
    interfaces = model.node_interfaces(node)
    name = set_name(node)
    text = cpp.header("model", f"The faces of the node {node}.")
    text += cpp.includes(f"generated/faces/{interface.name}.h" for interface in interfaces)
    text += f"\nnamespace kestrion {{\n\nstruct {name} {{\n"
    text += f"    explicit {name}(CNode& node);\n\n"
    text += ("    // The face for an interface of this node, not counted; null for any other.\n"
             "    [[nodiscard]] void* Find(REFIID iid);\n\n")
    for interface in interfaces:
        text += f"    {cpp.face_name(interface)} {_member(interface)};\n"
    return text + "};\n\n}  // namespace kestrion\n"


def objects_source(model: Model, node: str) -> str:
    interfaces = model.node_interfaces(node)
    name = set_name(node)
    text = cpp.header("model", f"The faces of the node {node}.", guard=False)
    text += f'#include "generated/objects/{name}.h"\n\nnamespace kestrion {{\n\n'
    starts = ",\n      ".join(f"{_member(interface)}(node)" for interface in interfaces)
    text += f"{name}::{name}(CNode& node)\n    : {starts} {{}}\n\n"
    text += f"void* {name}::Find(REFIID iid) {{\n"
    for interface in interfaces:
        text += (f"    if (iid == kInterfaceId<::{interface.name}>) {{\n"
                 f"        return static_cast<::{interface.name}*>(&{_member(interface)});\n"
                 "    }\n")
    return text + "    return nullptr;\n}\n\n}  // namespace kestrion\n"


def object_files(model: Model) -> dict[str, str]:
    files = {}
    for node in model.nodes():
        files[f"objects/{set_name(node)}.h"] = objects_header(model, node)
        files[f"objects/{set_name(node)}.cpp"] = objects_source(model, node)
    return files
