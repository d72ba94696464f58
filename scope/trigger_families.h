// What the trigger's commands differ by.
#pragma once

#include <array>
#include <string_view>

#include "core/member_call.h"

namespace kestrion {

// The event that the running member is about, "A" or "B", as its path names it. The interfaces of
// both events are alike and run the same bodies.
[[nodiscard]] inline const char* EventOf(MemberCall& call) {
    return call.Method().variant;
}

// The families whose triggers are qualified by the logic inputs of all channels, in one place of
// the command tree for every type of trigger.
[[nodiscard]] inline bool HasSharedLogicInputs(MemberCall& call) {
    static constexpr std::array<std::string_view, 4> kFamilies = {"LarkB Series", "Plover Series",
                                                                  "Merlin Series", "Swift Series"};
    return call.InstrumentInAnyFamily(kFamilies);
}

}  // namespace kestrion
