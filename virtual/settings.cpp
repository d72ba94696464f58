#include "virtual/settings.h"

#include <utility>

#include "virtual/command_tree.h"

namespace virtual_scope {
namespace {

std::vector<Value> InitialValues(const CommandRow& row) {
    if (!row.initials.empty()) {
        return row.initials;
    }
    return std::vector<Value>(static_cast<std::size_t>(InstanceCount(row)), InitialValue(row.spec));
}

}  // namespace

Settings::Settings(std::span<const CommandRow> rows) : rows_(rows) {
    for (std::size_t row = 0; row < rows.size(); ++row) {
        values_.push_back(InitialValues(rows[row]));
        rowOf_[static_cast<std::size_t>(rows[row].id)] = row;
    }
}

void Settings::Reset() {
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const SettingId id = rows_[row].id;
        if (id != SettingId::kHeader && id != SettingId::kVerbose) {
            values_[row] = InitialValues(rows_[row]);
        }
    }
}

void Settings::Reset(SettingId id) {
    values_[RowOf(id)] = InitialValues(rows_[RowOf(id)]);
}

const Value& Settings::Get(std::size_t row, int instance) const {
    return values_.at(row).at(static_cast<std::size_t>(instance));
}

void Settings::Set(std::size_t row, int instance, Value value) {
    values_.at(row).at(static_cast<std::size_t>(instance)) = std::move(value);
}

std::int64_t Settings::Whole(SettingId id, int instance) const {
    return std::get<std::int64_t>(Get(RowOf(id), instance));
}

double Settings::Number(SettingId id, int instance) const {
    return std::get<double>(Get(RowOf(id), instance));
}

const std::string& Settings::String(SettingId id, int instance) const {
    return std::get<std::string>(Get(RowOf(id), instance));
}

bool Settings::IsOn(SettingId id, int instance) const {
    return Whole(id, instance) != 0;
}

void Settings::Set(SettingId id, int instance, Value value) {
    Set(RowOf(id), instance, std::move(value));
}

}  // namespace virtual_scope
