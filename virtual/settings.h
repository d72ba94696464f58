// The values of all settings.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "virtual/command_row.h"
#include "virtual/setting_id.h"
#include "virtual/value.h"

namespace virtual_scope {

// Not for several threads at once. `instance` counts from 0.
class Settings {
  public:
    // Every setting begins with its first value. `rows` have to live as long as the settings.
    explicit Settings(std::span<const CommandRow> rows);

    // All settings but HEADer and VERBose get their first values: those two belong to the
    // conversation, and a program that has shaped it goes on reading the answers it expects.
    void Reset();
    // All instances of one setting get their first values.
    void Reset(SettingId id);

    [[nodiscard]] const Value& Get(std::size_t row, int instance) const;
    void Set(std::size_t row, int instance, Value value);

    [[nodiscard]] std::int64_t Whole(SettingId id, int instance = 0) const;
    [[nodiscard]] double Number(SettingId id, int instance = 0) const;
    [[nodiscard]] const std::string& String(SettingId id, int instance = 0) const;
    [[nodiscard]] bool IsOn(SettingId id, int instance = 0) const;
    void Set(SettingId id, int instance, Value value);

  private:
    [[nodiscard]] std::size_t RowOf(SettingId id) const {
        return rowOf_[static_cast<std::size_t>(id)];
    }

    std::span<const CommandRow> rows_;
    std::vector<std::vector<Value>> values_;  // by row and instance
    std::array<std::size_t, static_cast<std::size_t>(SettingId::kCount)> rowOf_{};
};

}  // namespace virtual_scope
