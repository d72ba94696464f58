// Ways in which a server misbehaves, for tests of what is on the other side.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace virtual_scope {

// A plan without any entry is a server in order. It holds for responses that begin after it was
// set.
struct FaultPlan {
    // No response is sent at all.
    bool silent = false;
    // The connection is closed after that many bytes of a response; shorter ones pass.
    std::optional<std::uint64_t> cutAfter = {};
    // Added to the length that a block's header announces; the data stay as they are. Never makes
    // it less than 0.
    std::int64_t lengthError = 0;
    // That many bytes 'x' are sent behind the data of a response that holds a block.
    std::size_t surplusBytes = 0;
};

}  // namespace virtual_scope
