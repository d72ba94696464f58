// The repeated capabilities and their physical names as plain data, which the generator makes from
// the model.
#pragma once

#include <span>
#include <string_view>

namespace kestrion {

struct RepeatedCapabilityData {
    std::string_view className;  // "KestrionChannel"
    std::span<const std::string_view> physicalNames;
};

// The capabilities in the order in which their instances are made.
[[nodiscard]] std::span<const RepeatedCapabilityData> AllRepeatedCapabilities();

}  // namespace kestrion
