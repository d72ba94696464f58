#include "tables/model_families.h"

namespace kestrion {

ModelFamilyTable::ModelFamilyTable(std::span<const FamilyData> families) {
    for (const FamilyData& data : families) {
        for (const std::string_view model : data.models) {
            ModelRecord& record = models_[model];
            // A model without a family is known and is in none.
            if (!data.name.empty() && !record.IsIn(data.name)) {
                familyModels_[data.name].push_back(model);
                record.families.push_back(data.name);
            }
        }
    }
}

const ModelFamilyTable& ModelFamilyTable::Instance() {
    static const ModelFamilyTable table(AllFamilies());
    return table;
}

bool ModelFamilyTable::IsModelInFamily(std::string_view model, std::string_view family) const {
    const ModelRecord* found = Find(model);
    return found != nullptr && found->IsIn(family);
}

std::string_view ModelFamilyTable::FamilyOf(std::string_view model) const {
    const ModelRecord* found = Find(model);
    return found == nullptr || found->families.empty() ? std::string_view()
                                                       : found->families.back();
}

std::span<const std::string_view> ModelFamilyTable::ModelsOf(std::string_view family) const {
    const auto* found = familyModels_.Find(family);
    return found == nullptr ? std::span<const std::string_view>() : *found;
}

}  // namespace kestrion
