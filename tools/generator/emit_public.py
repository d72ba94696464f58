"""The public headers: enumerations and interfaces."""

from generator import cpp
from generator.records import Entry, Enum, Interface, Model


def enum_header(enum: Enum) -> str:
    text = cpp.header(enum.file, enum.doc) + cpp.includes(["kestrion/platform/types.h"]) + "\n"
    text += f"enum {enum.name} : LONG {{\n"
    for value in enum.values:
        text += cpp.comment(value.doc, "    ") if value.doc else ""
        text += f"    {value.name} = {value.value},\n"
    return text + "};\n"


def interface_header(model: Model, interface: Interface) -> str:
    if interface.external:
        return _external_header(interface)
    base = interface.extends
    used = [cpp.enum_include(name) for name in cpp.enums_of(interface.entries)]
    used += [cpp.interface_include(base)] if base else []
    text = cpp.header(interface.file, interface.doc)
    text += cpp.includes(["kestrion/platform/component.h", *used]) + "\n"
    others = [name for name in cpp.interfaces_of(interface.entries)
              if name not in (interface.name, base)]
    text += "".join(f"struct {name};\n" for name in others) + ("\n" if others else "")
    text += f"struct {interface.name} : {base or 'IUnknown'} {{\n"
    previous = ""
    for entry in interface.entries:
        if entry.member != previous:
            member = [other for other in interface.entries if other.member == entry.member]
            text += cpp.comment(_doc(member), "    ")
        previous = entry.member
        text += (f"    virtual HRESULT STDMETHODCALLTYPE {entry.name}({_public_signature(entry)})"
                 " = 0;\n")
    text += f"\n  protected:\n    ~{interface.name}() = default;\n}};\n\n"
    return text + _interface_id(interface)


def _doc(entries: list[Entry]) -> str:
    """The comment of a member: what it is, and where it isn't."""
    agree = all(entry.refused == entries[0].refused for entry in entries)
    text = entries[0].doc
    for entry in entries[:1] if agree else entries:
        if entry.refused:
            how = "" if agree else {"get": "read ", "put": "written "}[entry.name[:3]]
            text += f" Not {how}on the models of the {', '.join(entry.refused)}."
    return text


def _public_signature(entry: Entry) -> str:
    return cpp.signature(entry).replace("::", "")


def _external_header(interface: Interface) -> str:
    text = cpp.header(interface.file, interface.doc)
    text += cpp.includes(["kestrion/platform/component.h"]) + "\n"
    return text + f"struct {interface.name};\n\n" + _interface_id(interface)


def _interface_id(interface: Interface) -> str:
    return (f"template <>\nstruct kestrion::InterfaceId<{interface.name}> {{\n"
            f"    static constexpr GUID value{{{cpp.guid(interface.iid)}}};\n}};\n")


def enums_umbrella(model: Model) -> str:
    text = cpp.header("model/enums", "Every enumeration of the object model.")
    return text + cpp.includes(cpp.enum_include(enum.name) for enum in model.enums
                               if not enum.platform)


def interfaces_umbrella(model: Model) -> str:
    text = cpp.header(
        "model", "Every interface of the object model. A member returns a status: negative for a"
        " failure, and then the thread's error object says what failed; 0 for success; positive for"
        " success with a remark. A null out pointer is a failure. What an out pointer receives"
        " belongs to the caller: texts are freed with SysFreeString, arrays with"
        " SafeArrayDestroy, interfaces with Release. Any thread may call; calls on one object run"
        " one after the other.")
    return text + cpp.includes(cpp.interface_include(name) for name in model.interfaces)


def public_files(model: Model) -> dict[str, str]:
    files = {"include/kestrion/enums.h": enums_umbrella(model),
             "include/kestrion/interfaces.h": interfaces_umbrella(model)}
    for enum in model.enums:
        if not enum.platform:
            files[f"include/{cpp.enum_include(enum.name)}"] = enum_header(enum)
    for interface in model.interfaces.values():
        files[f"include/{cpp.interface_include(interface.name)}"] = interface_header(
            model, interface)
    return files
