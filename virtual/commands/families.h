// Families that lack the same settings.
#pragma once

#include "virtual/models.h"

namespace virtual_scope {

// All but Merlin, Swift and Plover.
inline constexpr FamilySet kOlderFamilies =
    Families(Family::kCrake, Family::kLarkB, Family::kLark, Family::kIbisB, Family::kIbis,
             Family::kHeronB, Family::kHeron);

// Those without an optical input.
inline constexpr FamilySet kElectricalFamilies =
    Families(Family::kMerlin, Family::kSwift, Family::kPlover, Family::kLarkB, Family::kLark,
             Family::kIbisB, Family::kIbis, Family::kHeronB, Family::kHeron);

}  // namespace virtual_scope
