// Tokens of enumerations for bodies that put their lines together themselves.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/member_call.h"

namespace kestrion {

// The tokens of one enumeration as one member writes and reads them; a body may use the tokens of
// another member than its own. `enumName` and `memberKey` have to outlive the object: literals.
class TokenSet {
  public:
    constexpr TokenSet(std::string_view enumName, std::string_view memberKey)
        : enumName_(enumName), memberKey_(memberKey) {}

    // The token to send for `value`. A value without one is reported as invalid for `parameter`.
    HRESULT ToToken(MemberCall& call, std::int32_t value, std::string_view parameter,
                    std::string& token) const;

    // The value of a reply, white space around it left aside. Any other text is reported as an
    // unexpected response.
    template <typename Enum>
    HRESULT FromToken(MemberCall& call, std::string_view reply, Enum* value) const {
        std::int32_t number = 0;
        const HRESULT status = FindValue(call, reply, number);
        if (Succeeded(status)) {
            *value = static_cast<Enum>(number);
        }
        return status;
    }

  private:
    HRESULT FindValue(MemberCall& call, std::string_view reply, std::int32_t& value) const;

    std::string_view enumName_;
    std::string_view memberKey_;
};

}  // namespace kestrion
