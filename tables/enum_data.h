// The enumerations and their instrument tokens as plain data, which the generator makes from the
// model. What looks things up in it stands in enum_lookup.h.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kestrion {

// One value and its tokens: the first is the one that is written, all of them are read.
// No token at all is legal: the value then writes as an empty text.
struct EnumRow {
    std::int32_t value;
    std::span<const std::string_view> tokens;
};

// The rows of one table, and the member keys ("IKestrionChannel.Termination") that use it.
struct EnumTable {
    std::span<const std::string_view> memberKeys;
    std::span<const EnumRow> rows;
};

// One enumeration. The first member key of the first table is the one that an empty key means.
// An enumeration without tables is known by name and converts nothing.
struct EnumData {
    std::string_view typeName;   // "KestrionChannelCouplingEnum"
    std::string_view shortName;  // "ChannelCoupling"
    std::span<const EnumTable> tables;
};

// Every enumeration: VARIANT_BOOL first, then the driver's own in the order of the type library,
// then those of the class.
[[nodiscard]] std::span<const EnumData> AllEnums();

}  // namespace kestrion
