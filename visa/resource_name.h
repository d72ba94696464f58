// Resource names (VPP-4.3, section 4.3.1), as far as this provider can open what they name.
#pragma once

#include <string>
#include <string_view>

#include "visa/visa.h"

namespace visa_provider {

enum class ResourceKind { kSocket, kVirtual };

// The parts of a resource name.
struct ResourceName {
    ResourceKind kind = ResourceKind::kSocket;
    ViUInt16 board = 0;
    std::string host;  // as written; an IPv6 address keeps its square brackets
    ViUInt16 port = 0;
    std::string model;  // as written

    // The full name in its one form: keywords in capitals, nothing left out.
    [[nodiscard]] std::string Canonical() const;

    // The resource class: "SOCKET" or "INSTR".
    [[nodiscard]] std::string Class() const;

    // The interface in words, for people.
    [[nodiscard]] std::string InterfaceName() const;
};

// The model that VIRTUAL::INSTR stands for.
inline constexpr std::string_view kDefaultModel = "PL7254C";

// The longest name that VI_ATTR_RSRC_NAME can give back.
inline constexpr std::size_t kMaxResourceName = 255;

// Takes a name apart; keywords may be in capitals or not. VI_ERROR_INV_RSRC_NAME for what isn't a
// name, VI_ERROR_RSRC_NFOUND for one of an interface that this provider doesn't reach,
// VI_ERROR_INV_PROT for one that asks for a secure connection.
[[nodiscard]] ViStatus ParseResourceName(std::string_view text, ResourceName& name);

// True when both are the same but for capitals of the letters A to Z.
[[nodiscard]] bool SameIgnoringCase(std::string_view one, std::string_view other);

// The text with the letters a to z in capitals.
[[nodiscard]] std::string InCapitals(std::string_view text);

}  // namespace visa_provider
