"""The descriptors of members, and the declarations of hooks."""

from generator import cpp
from generator.records import Entry, Interface, Model


def _refused_name(entry: Entry) -> str:
    if entry.refused_list:
        return f"refusals::{cpp.constant_name(entry.refused_list)}"
    return f"{cpp.constant_name(entry.name)}Refusals"


def _texts(name: str, texts: tuple[str, ...]) -> str:
    items = ", ".join(cpp.literal(text) for text in texts)
    return f"inline constexpr std::string_view {name}[] = {{{items}}};\n"


def descriptor(entry: Entry) -> str:
    """One constant, complete."""
    command = entry.command
    # A method's call names its selectors among its arguments.
    selector = command.selector if command is not None and entry.shape != "method" else ""
    fields = {
        "iid": f"kInterfaceId<::{entry.interface}>",
        "interfaceName": cpp.literal(entry.interface),
        "memberName": cpp.literal(entry.name),
        "fullName": cpp.literal(entry.key),
        "command": cpp.literal(command.text if command is not None else ""),
        "response": cpp.literal(entry.reply or ""),
        "variant": cpp.literal(entry.variant),
        "selector": f"Selector::k{(selector or 'none').capitalize()}",
        "refusedFamilies": _refused_name(entry) if entry.refused else "{}",
        "needsConnection": cpp.boolean(entry.needs_connection),
        "simulated": cpp.boolean(entry.simulated),
    }
    lines = "".join(f"    .{name} = {value},\n" for name, value in fields.items())
    return f"inline constexpr MethodDescriptor {entry.name}{{\n{lines}}};\n"


def members_header(interface: Interface) -> str:
    used = ["core/method_descriptor.h", cpp.interface_include(interface.name)]
    if any(entry.refused_list for entry in interface.entries):
        used.append("generated/members/refusals.h")
    text = cpp.header(interface.file, f"The members of {interface.name} as constant data.")
    text += cpp.includes(used) + f"\nnamespace kestrion::members::{interface.name} {{\n"
    for entry in interface.entries:
        text += "\n"
        if entry.refused and not entry.refused_list:
            text += _texts(_refused_name(entry), entry.refused)
        text += descriptor(entry)
    return text + f"\n}}  // namespace kestrion::members::{interface.name}\n"


def refusals_header(model: Model) -> str:
    text = cpp.header("model/families.toml", "The lists of families that refuse a member.")
    text += "#include <string_view>\n\nnamespace kestrion::members::refusals {\n\n"
    for name, families in model.refusals.items():
        text += _texts(cpp.constant_name(name), families)
    return text + "\n}  // namespace kestrion::members::refusals\n"


def hooks_header(interface: Interface) -> str:
    hooked = [entry for entry in interface.entries if entry.has_hook]
    used = ["kestrion/platform/component.h"]
    used += [cpp.enum_include(name) for name in cpp.enums_of(hooked)]
    text = cpp.header(interface.file,
                      f"The hand-written bodies of members of {interface.name}. Each runs inside"
                      " the call frame, under the object's lock.")
    text += cpp.includes(used) + "\n"
    others = cpp.interfaces_of(hooked)
    text += "".join(f"struct {name};\n" for name in others) + ("\n" if others else "")
    text += "namespace kestrion {\n\nclass MemberCall;\n\n"
    text += f"namespace hooks::{interface.name} {{\n\n"
    for entry in hooked:
        text += f"[[nodiscard]] HRESULT {entry.name}({hook_signature(entry)});\n"
    return text + f"\n}}  // namespace hooks::{interface.name}\n\n}}  // namespace kestrion\n"


def hook_signature(entry: Entry) -> str:
    parameters = cpp.signature(entry)
    return "MemberCall& call" + (f", {parameters}" if parameters else "")


def has_hooks(interface: Interface) -> bool:
    """Whether bodies are written for it; those of the one that it is like are that one's."""
    return not interface.like and _is_hooked(interface)


def hooks_includes(interface: Interface) -> list[str]:
    """What declares the hooks that its members run."""
    return [f"generated/hooks/{interface.origin}.h"] if _is_hooked(interface) else []


def _is_hooked(interface: Interface) -> bool:
    return any(entry.has_hook for entry in interface.entries)


def member_files(model: Model) -> dict[str, str]:
    files = {"members/refusals.h": refusals_header(model)}
    for interface in model.interfaces.values():
        if interface.external:
            continue
        files[f"members/{interface.name}.h"] = members_header(interface)
        if has_hooks(interface):
            files[f"hooks/{interface.name}.h"] = hooks_header(interface)
    return files
