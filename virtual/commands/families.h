// Families that lack the same settings.
#pragma once

#include "virtual/models.h"

namespace virtual_scope {

// All but Merlin, Swift and Plover.
inline constexpr FamilySet kOlderFamilies =
    Families(Family::kCrake, Family::kLarkB, Family::kLark, Family::kIbisB, Family::kIbis,
             Family::kHeronB, Family::kHeron);

// Those whose last logic input stands under the pattern, and whose window has inputs of its own.
inline constexpr FamilySet kFamiliesOfOldLogic = Families(
    Family::kCrake, Family::kLark, Family::kIbisB, Family::kIbis, Family::kHeronB, Family::kHeron);

// The others: their triggers are qualified by the common logic inputs.
inline constexpr FamilySet kFamiliesOfNewLogic =
    Families(Family::kMerlin, Family::kSwift, Family::kPlover, Family::kLarkB);

// Those without a video trigger.
inline constexpr FamilySet kFamiliesWithoutVideo =
    Families(Family::kMerlin, Family::kSwift, Family::kPlover, Family::kCrake, Family::kLarkB,
             Family::kLark, Family::kIbisB, Family::kIbis, Family::kHeronB);

// Those without an optical input.
inline constexpr FamilySet kElectricalFamilies =
    Families(Family::kMerlin, Family::kSwift, Family::kPlover, Family::kLarkB, Family::kLark,
             Family::kIbisB, Family::kIbis, Family::kHeronB, Family::kHeron);

}  // namespace virtual_scope
