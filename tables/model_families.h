// Which models there are and in which family each of them is.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

#include "tables/family_data.h"
#include "tables/hash_map.h"

namespace kestrion {

// One known model.
struct ModelRecord {
    // The families that list it, in table order; none for a model without a family.
    std::vector<std::string_view> families;

    [[nodiscard]] bool IsIn(std::string_view family) const {
        return std::ranges::find(families, family) != families.end();
    }
};

// Names compare exactly. The families are flat: "LarkB Series" has nothing to do with "Lark
// Series". Read-only once made, so any thread may ask.
class ModelFamilyTable {
  public:
    // The texts of `families` have to outlive the table.
    explicit ModelFamilyTable(std::span<const FamilyData> families);

    // The table over AllFamilies(), made on first use.
    [[nodiscard]] static const ModelFamilyTable& Instance();

    [[nodiscard]] bool IsKnownModel(std::string_view model) const { return Find(model) != nullptr; }
    // False for an unknown family too.
    [[nodiscard]] bool IsModelInFamily(std::string_view model, std::string_view family) const;
    // Empty for an unknown model. The last family that lists a model is its family.
    [[nodiscard]] std::string_view FamilyOf(std::string_view model) const;
    // In table order; empty for an unknown family.
    [[nodiscard]] std::span<const std::string_view> ModelsOf(std::string_view family) const;

    // What there is of a model, for as long as the table lives; null for an unknown one.
    [[nodiscard]] const ModelRecord* Find(std::string_view model) const {
        return models_.Find(model);
    }

  private:
    HashMap<std::string_view, std::vector<std::string_view>> familyModels_;
    HashMap<std::string_view, ModelRecord> models_;
};

// A model of two channels has a name of more than six characters with '2' as the seventh.
[[nodiscard]] constexpr bool IsTwoChannelModel(std::string_view model) {
    return model.size() > 6 && model[6] == '2';
}

}  // namespace kestrion
