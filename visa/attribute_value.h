// Attribute values as they pass through the C interface.
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "visa/visa.h"

namespace visa_provider {

// A value in the type that the standard gives to the attribute; a boolean is a ViUInt16.
using AttributeValue =
    std::variant<ViUInt8, ViInt16, ViUInt16, ViInt32, ViUInt32, ViUInt64, ViAddr, std::string>;

// Writes a value where viGetAttribute was told to. `target` is as large as the value's type; for a
// text it holds 256 characters (VPP-4.3, rule 3.4.1), and a longer text is cut.
void StoreValue(const AttributeValue& value, void* target);

// Copies a text with a null at its end, cut to 256 characters in all.
void StoreText(const std::string& text, ViChar* target);

// An attribute state as a number of 8, 16 or 32 bits; none if it doesn't fit. A 32-bit number that
// was sign-extended on its way counts as that number: -1 stands for VI_TMO_INFINITE.
[[nodiscard]] std::optional<ViUInt8> ToUInt8(ViAttrState state);
[[nodiscard]] std::optional<ViUInt16> ToUInt16(ViAttrState state);
[[nodiscard]] std::optional<ViUInt32> ToUInt32(ViAttrState state);

// VI_TRUE or VI_FALSE; none for anything else.
[[nodiscard]] std::optional<bool> ToBoolean(ViAttrState state);

[[nodiscard]] constexpr ViBoolean FromBoolean(bool value) {
    return value ? VI_TRUE : VI_FALSE;
}

}  // namespace visa_provider
