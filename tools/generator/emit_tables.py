"""The tables of the driver as data: enumerations, families, repeated capabilities, messages."""

from generator import cpp
from generator.records import Enum, Model

_TEXTS = "constexpr std::string_view"


def _texts(name: str, texts: list[str]) -> str:
    items = "".join(f"    {cpp.literal(text)},\n" for text in texts)
    return f"{_TEXTS} {name}[] = {{\n{items}}};\n\n"


def _source(origin: str, about: str, include: str, data: str, functions: str) -> str:
    return (cpp.header(origin, about, guard=False) + f'#include "{include}"\n\n'
            "namespace kestrion {\nnamespace {\n\n" + data + "}  // namespace\n\n" + functions
            + "\n}  // namespace kestrion\n")


def _function(result: str, name: str, value: str) -> str:
    return f"{result} {name}() {{\n    return {value};\n}}\n"


def _enum_data(enum: Enum) -> tuple[str, str]:
    """The arrays of one enumeration, and its row in the list of all."""
    arrays, tables = "", []
    for number, table in enumerate(enum.tables, start=1):
        prefix = f"k{enum.name}{number}"
        arrays += _texts(f"{prefix}Members", table.members)
        rows = ""
        for index, (value, tokens) in enumerate(table.rows, start=1):
            name = "{}"
            if tokens:
                name = f"{prefix}Tokens{index}"
                items = ", ".join(cpp.literal(token) for token in tokens)
                arrays += f"{_TEXTS} {name}[] = {{{items}}};\n"
            rows += f"    {{{value}, {name}}},\n"
        arrays += f"constexpr EnumRow {prefix}Rows[] = {{\n{rows}}};\n\n"
        tables.append(f"    {{{prefix}Members, {prefix}Rows}},\n")
    listed = "{}"
    if tables:
        listed = f"k{enum.name}Tables"
        arrays += f"constexpr EnumTable {listed}[] = {{\n{''.join(tables)}}};\n\n"
    return arrays, (f"    {{{cpp.literal(enum.name)}, {cpp.literal(enum.short)}, {listed}}},\n")


def enum_data(model: Model) -> str:
    arrays, rows = "", ""
    for enum in model.enums:
        data, row = _enum_data(enum)
        arrays += data
        rows += row
    arrays += f"constexpr EnumData kEnums[] = {{\n{rows}}};\n\n"
    return _source("model/enums", "Every enumeration and its tokens.", "tables/enum_data.h", arrays,
                   _function("std::span<const EnumData>", "AllEnums", "kEnums"))


def family_data(model: Model) -> str:
    arrays, rows = "", ""
    for number, family in enumerate(model.families, start=1):
        arrays += _texts(f"kModels{number}", family.models)
        rows += f"    {{{cpp.literal(family.name)}, kModels{number}}},\n"
    arrays += f"constexpr FamilyData kFamilies[] = {{\n{rows}}};\n\n"
    functions = _function("std::span<const FamilyData>", "AllFamilies", "kFamilies") + "\n"
    functions += _function("std::string_view", "SupportedInstrumentModels",
                           supported_models(model))
    return _source("model/families.toml", "The families and their models.",
                   "tables/family_data.h", arrays, functions)


def supported_models(model: Model) -> str:
    """One literal of all model names, a few to the line."""
    names = [name + "," for name in model.supported_models]
    if names:
        names[-1] = names[-1].rstrip(",")
    lines = ["".join(names[i:i + 6]) for i in range(0, len(names), 6)] or [""]
    return "\n        ".join(cpp.literal(line) for line in lines)


def capability_data(model: Model) -> str:
    arrays, rows = "", ""
    for capability in model.capabilities:
        name = f"k{capability.class_name}Names"
        arrays += _texts(name, capability.names)
        rows += f"    {{{cpp.literal(capability.class_name)}, {name}}},\n"
    arrays += f"constexpr RepeatedCapabilityData kCapabilities[] = {{\n{rows}}};\n\n"
    return _source("model/repeated_capabilities.toml",
                   "The repeated capabilities and their physical names.",
                   "tables/repeated_capability_data.h", arrays,
                   _function("std::span<const RepeatedCapabilityData>",
                             "AllRepeatedCapabilities", "kCapabilities"))


# The fields of DriverMetadata, in its order.
_METADATA_FIELDS = (
    "driverName", "identifier", "vendor", "description", "revision", "groupCapabilities",
    "supportedInstrumentModels", "defaultModel", "specificationMajorVersion",
    "specificationMinorVersion", "supportsInterchangeCheck", "supportsIdQuery", "supportsReset",
    "supportsSelfTest", "supportsErrorQuery", "selfTestTimeout", "disableTimeout", "resetTimeout",
    "maxCoercionRecords", "progId", "helpFile")


def _metadata_value(model: Model, name: str) -> str:
    if name == "supportedInstrumentModels":
        return supported_models(model)
    value = model.metadata[name]
    if isinstance(value, bool):
        return cpp.boolean(value)
    return cpp.literal(value) if isinstance(value, str) else str(value)


def message_data(model: Model) -> str:
    rows = ""
    for message in sorted(model.messages, key=lambda message: message.code):
        rows += (f"    {{{message.code}, MakeStatus(0x{message.status:08X}),"
                 f" {message.help_context}, {cpp.literal(message.text)}}},\n")
    data = f"constexpr MessageData kMessages[] = {{\n{rows}}};\n\n"
    data += "constexpr DriverMetadata kMetadata{\n"
    for name in _METADATA_FIELDS:
        data += f"    .{name} = {_metadata_value(model, name)},\n"
    data += "};\n\n"
    functions = _function("std::span<const MessageData>", "AllMessages", "kMessages") + "\n"
    functions += _function("const DriverMetadata&", "Metadata", "kMetadata")
    return _source("model/messages.toml and model/metadata.toml",
                   "The messages, and what the driver says of itself.", "core/message_data.h",
                   data, functions)


def table_files(model: Model) -> dict[str, str]:
    return {"tables/enum_data.cpp": enum_data(model),
            "tables/family_data.cpp": family_data(model),
            "tables/repeated_capability_data.cpp": capability_data(model),
            "core/message_data.cpp": message_data(model)}
