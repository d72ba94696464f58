#include "tables/enum_converter.h"

#include <algorithm>

#include "platform/text.h"

namespace kestrion {

EnumCommandTable::EnumCommandTable(std::string_view model, std::span<const CEnumCommandItem> rows)
    : CModelBasedType(model) {
    for (const CEnumCommandItem& row : rows) {
        writeTokens_.Set(row.value,
                         row.tokens.empty() ? std::string() : std::string(row.tokens.front()));
        for (const std::string_view token : row.tokens) {
            readTokens_.Set(token, row.value);
        }
    }
}

std::int32_t EnumCommandTable::LongestToken() const {
    std::size_t longest = 0;
    for (const auto& [token, value] : readTokens_) {
        longest = std::max(longest, token.size());
    }
    return static_cast<std::int32_t>(longest);
}

void EnumCommandConverter::Add(std::unique_ptr<EnumCommandTable> table,
                               const ModelFamilyTable& families) {
    maxTokenLength_ = std::max(maxTokenLength_, table->LongestToken());
    tables_.Enter(std::move(table), families);
}

bool EnumCommandConverter::ToToken(std::string_view model, std::int32_t value,
                                   std::string& token) const {
    const EnumCommandTable* table = tables_.Find(model);
    const std::string* found = table == nullptr ? nullptr : table->FindToken(value);
    if (found == nullptr) {
        return false;
    }
    token = *found;
    return true;
}

bool EnumCommandConverter::FromToken(std::string_view model, std::string_view response,
                                     std::int32_t& value) const {
    const EnumCommandTable* table = tables_.Find(model);
    const std::int32_t* found = table == nullptr ? nullptr : table->FindValue(Trim(response));
    if (found == nullptr) {
        return false;
    }
    value = *found;
    return true;
}

}  // namespace kestrion
