#include "cli/json.h"

#include <fmt/format.h>

#include <cmath>

#include "cli/utf8.h"

namespace kestrion::cli {

std::string JsonText(std::string_view text) {
    std::string result = "\"";
    for (char c : CleanUtf8(text)) {
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            result += fmt::format("\\u{:04x}", static_cast<unsigned>(c));
        } else {
            result += c;
        }
    }
    return result + '"';
}

std::string JsonNumber(double value) {
    return std::isfinite(value) ? fmt::format("{}", value) : "null";
}

}  // namespace kestrion::cli
