// The rows of the format language in the notation that they are published in, as one oracle for
// each direction.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "io/format_grammar.h"
#include "tests/io/format_pattern_oracle.h"

namespace kestrion {

inline constexpr std::array<std::string_view, 13> kWritePatterns = {
    R"([^%]+|(%%))",
    R"(%\b*[-+0 ]*((@1)|(@2)|(@3)|(@H)|(@Q)|(@B)\b*)?(\z|(0*\*)\b*)?(\.\z|\*\b*)?[lhbI]?[dioux])",
    R"(%\b*[-+0 ]*((@1)|(@2)|(@3)|(@H)|(@Q)|(@B)\b*)?(\z|(0*\*)\b*)?(\.\z|\*\b*)?,|(\([,;:strn]\))\b*(\z|\*\b*)?(\$S\b*)?[lhbI]?[dioux])",
    R"(%\b*[-+0 ]*((@1)|(@2)|(@3)|(@H)|(@Q)|(@B)\b*)?(\z|(0*\*)\b*)?(\.\z|\*\b*)?[lL]?[feEgG])",
    R"(%\b*[-+0 ]*((@1)|(@2)|(@3)|(@H)|(@Q)|(@B)\b*)?(\z|(0*\*)\b*)?(\.\z|\*\b*)?,|(\([,;:strn]\))\b*(\z|\*\b*)?(\$S\b*)?[lL]?[feEgG])",
    R"(%\b*(\z|\*\b*)?(\$S\b*)?[hlzZI]?b)",
    R"(%\b*(\z|\*\b*)?(\$S\b*)?[hlzZI]?B)",
    R"(%\b*(\z|\*\b*)?((\!ob)|(\!ol)\b*)?(\$S\b*)?[hlI]?y)",
    R"(%\b*-?\b*(\z|\*\b*)?(\.(\z|\*)\b*)?c)",
    R"(%\b*-?\b*(\z|\*\b*)?(\.(\z|\*)\b*)?(\$B|C\b*)?[qQ]?s)",
    R"(%\b*-?\b*(\z|\*\b*)?(\.(\z|\*)\b*)?,|(\([,;:strn]\))\b*(\z|\*\b*)?(\$S\b*)?(\$B|C\b*)?[qQ]?s)",
    R"(%\b*\{\b*[a-zA-Z0-9_]+\b*\}\b*-?\b*(\z|\*\b*)?(\.(\z|\*)\b*)?[qQ]?s)",
    R"(%\b*\{\b*[a-zA-Z0-9_]+\b*\}\b*-?\b*(\z|\*\b*)?(\.(\z|\*)\b*)?,|(\([,;:strn]\))\b*(\z|\*\b*)?(\$S\b*)?[qQ]?s)",
};

inline constexpr std::array<std::string_view, 16> kReadPatterns = {
    R"([^%]+|(%%))",
    R"(%\b*(\*\b*)?((@1)|(@2)|(@3)|(@H)|(@Q)|(@B)\b*)?(\z|#\b*)?[lhbI]?[dioux])",
    R"(%\b*(\*\b*)?((@1)|(@2)|(@3)|(@H)|(@Q)|(@B)\b*)?(\z|#\b*)?,|(\([,;:strn]+\))\b*(\z|#\b*)?(\$S\b*)?[lhbI]?[dioux])",
    R"(%\b*(\*\b*)?((@1)|(@2)|(@3)|(@H)|(@Q)|(@B)\b*)?(\z|#\b*)?[lL]?[feEgG])",
    R"(%\b*(\*\b*)?((@1)|(@2)|(@3)|(@H)|(@Q)|(@B)\b*)?(\z|#\b*)?,|(\([,;:strn]+\))\b*(\z|#\b*)?(\$S\b*)?[lL]?[feEgG])",
    R"(%\b*(\*\b*)?(\z|#\b*)?(\$S\b*)?[hlzZI]?b)",
    R"(%\b*(\*\b*)?(\z|#\b*)?((\!ob)|(\!ol)\b*)?(\$S\b*)?[hlI]?y)",
    R"(%\b*(\*\b*)?(\z|#\b*)?c)",
    R"(%\b*(\*\b*)?(\z|#\b*)?(\$B|C\b*)?T)",
    R"(%\b*(\*\b*)?(\z|#\b*)?(\$B|C\b*)?t)",
    R"(%\b*(\*\b*)?(\z|#\b*)?(\$B|C\b*)?s)",
    R"(%\b*(\*\b*)?(\z|#\b*)?(\$B|C\b*)?\[(\^)?[^\]]*\])",
    R"(%\b*(\*\b*)?(\z|#\b*)?,|(\([,;:strn]+\))\b*(\z|#\b*)?(\$S\b*)?(\$B|C\b*)?[qQ]?s)",
    R"(%\b*\{\b*[a-zA-Z0-9_]+\b*\}\b*(\*\b*)?(\z|#\b*)?[qQ]?s)",
    R"(%\b*\{\b*[a-zA-Z0-9_]+\b*\}\b*(\*\b*)?(\z|#\b*)?\[(\^)?[^\]]*\])",
    R"(%\b*\{\b*[a-zA-Z0-9_]+\b*\}\b*(\*\b*)?(\z|#\b*)?,|(\([,;:strn]+\))\b*(\z|#\b*)?(\$S\b*)?[qQ]?s)",
};

// Cuts formats by the patterns, slowly. Shares no code with the tokenizer.
class FormatOracle {
  public:
    explicit FormatOracle(std::span<const std::string_view> patterns) {
        for (const std::string_view pattern : patterns) {
            rows_.emplace_back(pattern);
        }
    }
    // Nothing where the format is refused.
    [[nodiscard]] std::optional<std::vector<FormatSpec>> Cut(std::string_view format) const {
        std::vector<FormatSpec> pieces;
        for (std::size_t at = 0; at < format.size();) {
            std::size_t row = 0;
            std::size_t length = std::string_view::npos;
            while (row < rows_.size() &&
                   (length = rows_[row].Match(format, at)) == std::string_view::npos) {
                ++row;
            }
            if (row == rows_.size()) {
                return std::nullopt;
            }
            pieces.push_back({static_cast<std::int32_t>(row), static_cast<std::uint32_t>(at),
                              static_cast<std::uint32_t>(length)});
            at += length;
        }
        return pieces;
    }
    [[nodiscard]] const std::vector<FormatPattern>& Rows() const { return rows_; }

  private:
    std::vector<FormatPattern> rows_;
};

}  // namespace kestrion
