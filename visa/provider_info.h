// What the provider tells of itself, the same for each of its resources.
#pragma once

#include <optional>

#include "visa/attribute_value.h"

namespace visa_provider {

// The version of the provider, as VI_ATTR_RSRC_IMPL_VERSION has it (VPP-4.3, table 3.2.2).
inline constexpr ViVersion kImplementationVersion = (KESTRION_VISA_VERSION_MAJOR << 20) |
                                                    (KESTRION_VISA_VERSION_MINOR << 8) |
                                                    KESTRION_VISA_VERSION_PATCH;

// The attributes of the provider; none for any other attribute.
[[nodiscard]] inline std::optional<AttributeValue> ProviderAttribute(ViAttr attribute) {
    switch (attribute) {
        case VI_ATTR_RSRC_MANF_NAME:
            return std::string("Kestrion");
        case VI_ATTR_RSRC_MANF_ID:
            return ViUInt16{0};  // no number in the VXI register of manufacturers
        case VI_ATTR_RSRC_SPEC_VERSION:
            return VI_SPEC_VERSION;
        case VI_ATTR_RSRC_IMPL_VERSION:
            return kImplementationVersion;
        default:
            return std::nullopt;
    }
}

}  // namespace visa_provider
