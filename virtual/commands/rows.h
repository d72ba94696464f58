// Lines of the command table that stand under more than one stem.
#pragma once

#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "virtual/command_row.h"

namespace virtual_scope {

inline void Append(std::vector<CommandRow> rows, std::vector<CommandRow>& all) {
    std::move(rows.begin(), rows.end(), std::back_inserter(all));
}

// The rows with `stem` before their notations: "TRIGger:A:PULse:" and "CLAss".
[[nodiscard]] inline std::vector<CommandRow> Under(std::string_view stem,
                                                   std::vector<CommandRow> rows) {
    for (CommandRow& row : rows) {
        row.notation.insert(0, stem);
    }
    return rows;
}

}  // namespace virtual_scope
