// The models that can be played: what sets one apart from another, as data.
#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>

namespace virtual_scope {

enum class Family : std::uint8_t {
    kMerlin,
    kSwift,
    kPlover,
    kCrake,
    kLarkB,
    kLark,
    kIbisB,
    kIbis,
    kHeronB,
    kHeron,
};

// A set of families, one bit each.
using FamilySet = std::uint16_t;

[[nodiscard]] constexpr FamilySet Families(std::same_as<Family> auto... family) {
    return static_cast<FamilySet>((0U | ... | (1U << static_cast<unsigned>(family))));
}

struct Model {
    std::string_view name;
    Family family;
    int channels;
    double bandwidth;  // Hz
};

// All of them, in a fixed order.
[[nodiscard]] std::span<const Model> AllModels();

// Null for a name that isn't known; names are compared exactly.
[[nodiscard]] const Model* FindModel(std::string_view name);

}  // namespace virtual_scope
