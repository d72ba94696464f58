// The parts of one program message.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "virtual/scpi_error.h"

namespace virtual_scope {

// What stands between two semicolons.
struct ProgramUnit {
    std::vector<std::string> words;  // the header's mnemonics, in capitals
    bool fromRoot = false;           // the header began with a colon
    bool query = false;
    std::vector<std::string> parameters;  // as written, quotes and blocks included
    ScpiError error = ScpiError::kNone;   // what is wrong with the writing of it

    [[nodiscard]] bool IsCommon() const { return !words.empty() && words.front().starts_with('*'); }
};

// Splits at the semicolons that stand outside of strings and blocks. A unit without a header (as
// after a closing semicolon) is left out.
[[nodiscard]] std::vector<ProgramUnit> ParseMessage(std::string_view message);

}  // namespace virtual_scope
