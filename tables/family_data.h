// The models and their families as plain data, which the generator makes from the model.
#pragma once

#include <span>
#include <string_view>

namespace kestrion {

struct FamilyData {
    std::string_view name;  // "Plover Series"
    std::span<const std::string_view> models;
};

// The families in table order.
[[nodiscard]] std::span<const FamilyData> AllFamilies();

// All model names joined by commas, in an order of its own.
[[nodiscard]] std::string_view SupportedInstrumentModels();

}  // namespace kestrion
