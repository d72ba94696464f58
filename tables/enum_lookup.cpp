#include "tables/enum_lookup.h"

#include <cstdint>
#include <mutex>

namespace kestrion {
namespace {

constexpr std::string_view kBoolean = "VARIANT_BOOL";
constexpr std::string_view kEnding = "Enum";

}  // namespace

// One enumeration with what has been made of it so far. A failure while making leaves the flag
// unset, so that the next question tries again.
struct EnumLookup::Enumeration {
    struct Table {
        std::once_flag made;
        std::unique_ptr<const IEnumConverter> converter;
    };

    const EnumData* data = nullptr;
    std::once_flag indexed;
    HashMap<std::string_view, std::size_t, IgnoreCaseHashTraits> tableOfKey;
    std::unique_ptr<Table[]> tables;

    [[nodiscard]] const IEnumConverter* Find(std::string_view memberKey) {
        if (data->tables.empty()) {
            return nullptr;
        }
        std::call_once(indexed, [this] { Index(); });
        if (memberKey.empty()) {
            return Converter(0);
        }
        const std::size_t* index = tableOfKey.Find(memberKey);
        return index == nullptr ? nullptr : Converter(*index);
    }

  private:
    void Index() {
        for (std::size_t i = 0; i < data->tables.size(); ++i) {
            for (const std::string_view key : data->tables[i].memberKeys) {
                tableOfKey.TryAdd(key, i);
            }
        }
        tables = std::make_unique<Table[]>(data->tables.size());
    }

    const IEnumConverter* Converter(std::size_t index) {
        Table& table = tables[index];
        std::call_once(table.made, [&] { table.converter = Make(data->tables[index].rows); });
        return table.converter.get();
    }

    [[nodiscard]] std::unique_ptr<const IEnumConverter> Make(std::span<const EnumRow> rows) const {
        if (data->typeName == kBoolean) {
            return std::make_unique<CEnumCommandConverter<std::int16_t>>(rows);
        }
        return std::make_unique<CEnumCommandConverter<std::int32_t>>(rows);
    }
};

EnumLookup::EnumLookup(std::span<const EnumData> enums)
    : enumerations_(std::make_unique<Enumeration[]>(enums.size())) {
    for (std::size_t i = 0; i < enums.size(); ++i) {
        enumerations_[i].data = &enums[i];
        AddNames(enums[i], i);
    }
}

EnumLookup::~EnumLookup() = default;

void EnumLookup::AddNames(const EnumData& data, std::size_t index) {
    names_.TryAdd(data.typeName, index);
    if (data.typeName == kBoolean) {
        return;
    }
    if (data.typeName.ends_with(kEnding)) {
        names_.TryAdd(data.typeName.substr(0, data.typeName.size() - kEnding.size()), index);
    }
    if (!data.shortName.empty()) {
        names_.TryAdd(data.shortName, index);
        names_.TryAdd(std::string(data.shortName).append(kEnding), index);
    }
}

const IEnumConverter* EnumLookup::Find(std::string_view enumName,
                                       std::string_view memberKey) const {
    const std::size_t* index = names_.Find(enumName);
    return index == nullptr ? nullptr : enumerations_[*index].Find(memberKey);
}

const IEnumConverter* GetEnumConverter(std::string_view enumName, std::string_view memberKey) {
    static const EnumLookup lookup(AllEnums());
    return lookup.Find(enumName, memberKey);
}

}  // namespace kestrion
