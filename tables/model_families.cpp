#include "tables/model_families.h"

namespace kestrion {

ModelFamilyTable::ModelFamilyTable(std::span<const FamilyData> families) {
    for (const FamilyData& data : families) {
        for (const std::string_view model : data.models) {
            // A model without a family is known and is in none.
            if (!data.name.empty()) {
                Family& family = familyModels_[data.name];
                if (family.isMember.TryAdd(model, true)) {
                    family.models.push_back(model);
                }
            }
            modelFamily_.Set(model, data.name);
        }
    }
}

const ModelFamilyTable& ModelFamilyTable::Instance() {
    static const ModelFamilyTable table(AllFamilies());
    return table;
}

bool ModelFamilyTable::IsKnownModel(std::string_view model) const {
    return modelFamily_.Contains(model);
}

bool ModelFamilyTable::IsModelInFamily(std::string_view model, std::string_view family) const {
    const Family* found = familyModels_.Find(family);
    return found != nullptr && found->isMember.Contains(model);
}

std::string_view ModelFamilyTable::FamilyOf(std::string_view model) const {
    const std::string_view* found = modelFamily_.Find(model);
    return found == nullptr ? std::string_view() : *found;
}

std::span<const std::string_view> ModelFamilyTable::ModelsOf(std::string_view family) const {
    const Family* found = familyModels_.Find(family);
    return found == nullptr ? std::span<const std::string_view>() : found->models;
}

}  // namespace kestrion
