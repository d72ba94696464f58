// What can be told of a source by its number.
#pragma once

#include <algorithm>
#include <array>

#include "kestrion/enums/KestrionSourceEnum.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// True for the third and the fourth of each kind, which a two-channel model lacks. Channels and
// references by enumerations of their own have the numbers of these.
[[nodiscard]] constexpr bool IsAbsentOnTwoChannels(LONG source) {
    constexpr std::array<LONG, 6> kAbsent = {KestrionSourceCh3,   KestrionSourceCh4,
                                             KestrionSourceMath3, KestrionSourceMath4,
                                             KestrionSourceRef3,  KestrionSourceRef4};
    return std::ranges::find(kAbsent, source) != kAbsent.end();
}

}  // namespace kestrion
