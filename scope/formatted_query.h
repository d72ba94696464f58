// A query of a body's own, beside the one that its member's templates make.
#pragma once

#include <string_view>

#include "core/member_call.h"

namespace kestrion {

// Formats `command` and reads the reply by `reply`; `arguments` are what the command takes, then
// where the reply goes. Throws away what is left of an earlier reply.
template <typename... T>
[[nodiscard]] HRESULT QueryByFormat(MemberCall& call, std::string_view command,
                                    std::string_view reply, T... arguments) {
    const HRESULT status = call.Session().Queryf(command, reply, arguments...);
    // More of the response may be left; the next query throws it away.
    return status == IoStatusMoreData ? S_OK : status;
}

}  // namespace kestrion
