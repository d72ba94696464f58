#include "tables/enum_lookup.h"

#include <atomic>
#include <cstdint>
#include <mutex>

namespace kestrion {
namespace {

constexpr std::string_view kBoolean = "VARIANT_BOOL";
constexpr std::string_view kEnding = "Enum";

}  // namespace

// One enumeration with what has been made of it so far. A failure while making leaves the flag
// unset, so that the next question tries again; it can't be a once_flag, which a failure leaves
// stuck where the thread sanitizer stands in for the system's.
struct EnumLookup::Enumeration {
    struct Table {
        std::atomic<bool> made{false};
        std::unique_ptr<const IEnumConverter> converter;
    };

    const EnumData* data = nullptr;
    std::atomic<bool> indexed{false};
    HashMap<std::string_view, std::size_t, IgnoreCaseHashTraits> tableOfKey;
    std::unique_ptr<Table[]> tables;

    [[nodiscard]] const IEnumConverter* Find(std::string_view memberKey) {
        if (data->tables.empty()) {
            return nullptr;
        }
        MakeOnce(indexed, [this] { Index(); });
        if (memberKey.empty()) {
            return Converter(0);
        }
        const std::size_t* index = tableOfKey.Find(memberKey);
        return index == nullptr ? nullptr : Converter(*index);
    }

  private:
    template <typename Code>
    void MakeOnce(std::atomic<bool>& made, Code make) {
        if (made.load(std::memory_order_acquire)) {
            return;
        }
        const std::lock_guard guard(making_);
        if (!made.load(std::memory_order_relaxed)) {
            make();
            made.store(true, std::memory_order_release);
        }
    }

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
        MakeOnce(table.made, [&] { table.converter = Make(data->tables[index].rows); });
        return table.converter.get();
    }

    [[nodiscard]] std::unique_ptr<const IEnumConverter> Make(std::span<const EnumRow> rows) const {
        if (data->typeName == kBoolean) {
            return std::make_unique<CEnumCommandConverter<std::int16_t>>(rows);
        }
        return std::make_unique<CEnumCommandConverter<std::int32_t>>(rows);
    }

    std::mutex making_;
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
