"""The faces: what stands behind each interface and hands its members to the frame."""

from generator import cpp
from generator.emit_members import hooks_includes
from generator.records import Entry, Interface, Model, Parameter

_RECORD = {"in": "In", "out": "Out", "inout": "InOut"}
_ELEMENT_KIND = {"double": "VT_R8", "long": "VT_I4"}


def face_header(model: Model, interface: Interface) -> str:
    name = cpp.face_name(interface)
    text = cpp.header(interface.file, f"The face of {interface.name} on its node.")
    text += cpp.includes([cpp.interface_include(interface.name)])
    text += "\nnamespace kestrion {\n\nclass CNode;\n\n"
    text += f"class {name} final : public ::{interface.name} {{\n  public:\n"
    text += f"    explicit {name}(CNode& node) : node_(node) {{}}\n\n"
    text += "    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;\n"
    text += "    ULONG STDMETHODCALLTYPE AddRef() override;\n"
    text += "    ULONG STDMETHODCALLTYPE Release() override;\n\n"
    for entry in model.all_entries(interface):
        text += (f"    HRESULT STDMETHODCALLTYPE {entry.name}({cpp.signature(entry)}) override;\n")
    text += "\n  private:\n    CNode& node_;\n};\n\n}  // namespace kestrion\n"
    return text


def face_source(model: Model, interface: Interface) -> str:
    name = cpp.face_name(interface)
    entries = model.all_entries(interface)
    used = ["core/frame.h"]
    for part in model.chain(interface):
        used.append(f"generated/members/{part.name}.h")
        used += hooks_includes(part)
    used += [cpp.interface_include(other) for other in cpp.interfaces_of(entries)]
    used += [cpp.interface_include(entry.mapped.interface) for entry in entries if entry.mapped]
    text = cpp.header(interface.file, f"The face of {interface.name} on its node.", guard=False)
    text += f'#include "generated/faces/{interface.name}.h"\n\n'
    text += cpp.includes(used) + "\nnamespace kestrion {\n\n"
    text += (f"HRESULT {name}::QueryInterface(REFIID iid, void** object) {{\n"
             "    return node_.QueryInterface(iid, object);\n}\n\n"
             f"ULONG {name}::AddRef() {{\n    return node_.AddRef();\n}}\n\n"
             f"ULONG {name}::Release() {{\n    return node_.Release();\n}}\n")
    for entry in entries:
        text += (f"\nHRESULT {name}::{entry.name}({cpp.signature(entry)}) {{\n"
                 f"    return {body(entry)};\n}}\n")
    return text + "\n}  // namespace kestrion\n"


def body(entry: Entry) -> str:
    """The call into the frame that an entry is."""
    if entry.shape == "method":
        return _method(entry)
    descriptor = f"members::{entry.interface}::{entry.name}"
    names = ", ".join(parameter.name for parameter in entry.parameters)
    if entry.shape == "reference":
        return f"GetReference(node_, {descriptor}, {names})"
    if entry.collection:
        role = f"Collection{entry.shape.capitalize()}"
        return f"{role}(node_, {descriptor}, {cpp.literal(entry.collection)}, {names})"
    verb = entry.shape.capitalize()
    if entry.mapped is not None:
        target = entry.mapped
        return (f"{verb}Mapped<::{target.interface}>(node_, {descriptor}, {names},"
                f" &::{target.interface}::{entry.shape}_{target.member})")
    hook = f", hooks::{entry.hook_interface}::{entry.name}" if entry.has_hook else ""
    return f"{verb}(node_, {descriptor}, {names}{hook})"


def _method(entry: Entry) -> str:
    descriptor = f"members::{entry.interface}::{entry.name}"
    records = f"Parameters({', '.join(_record(p) for p in entry.parameters)})"
    start = f"(node_, {descriptor}, {records}"
    if entry.command is None:
        return f"Call{start}, {_hook(entry)})"
    arguments = f"Arguments({', '.join(_arguments(entry))})"
    if entry.has_hook:
        return f"CallCommand{start}, {arguments}, {_hook(entry)})"
    if not entry.is_query:
        return f"CallCommand{start}, {arguments})"
    return f"CallQuery{start}, {arguments}, Arguments({', '.join(entry.targets())}))"


def _record(parameter: Parameter) -> str:
    form = _RECORD[parameter.direction]
    if parameter.type.kind == "array":
        kind = _ELEMENT_KIND[parameter.type.name]
        return f"{form}Array({cpp.literal(parameter.name)}, {parameter.name}, {kind})"
    return f"{form}({cpp.literal(parameter.name)}, {parameter.name})"


def _hook(entry: Entry) -> str:
    names = "".join(f", {parameter.name}" for parameter in entry.parameters)
    return (f"[&](MemberCall& call) {{ return hooks::{entry.hook_interface}::{entry.name}"
            f"(call{names}); }}")


def _arguments(entry: Entry) -> list[str]:
    """What fills the conversions of the template, selectors included."""
    values = iter(entry.inputs())
    assert entry.command is not None
    return [f"node_.{selector.capitalize()}()" if selector else next(values)
            for selector in entry.command.selectors]


def face_files(model: Model) -> dict[str, str]:
    files = {}
    for interface in model.interfaces.values():
        if not interface.external:
            files[f"faces/{interface.name}.h"] = face_header(model, interface)
            files[f"faces/{interface.name}.cpp"] = face_source(model, interface)
    return files
