#include "core/option_string.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/text.h"

namespace kestrion {
namespace {

bool IsSeparator(char c) {
    return c == ',' || c == '=';
}

// The end of the run of other characters that begins at `from`.
std::size_t RunEnd(std::string_view text, std::size_t from) {
    while (from < text.size() && !IsSeparator(text[from])) {
        ++from;
    }
    return from;
}

std::string_view TrimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

OptionMap SplitPairs(std::string_view text) {
    OptionMap pairs;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t nameEnd = RunEnd(text, at);
        if (nameEnd == at || nameEnd == text.size() || text[nameEnd] != '=') {
            at = std::max(nameEnd, at + 1);
            continue;
        }
        const std::size_t valueEnd = RunEnd(text, nameEnd + 1);
        if (valueEnd == nameEnd + 1) {
            at = valueEnd;
            continue;
        }
        const std::string_view name = TrimBlanks(text.substr(at, nameEnd - at));
        const std::string_view value = TrimBlanks(text.substr(nameEnd + 1, valueEnd - nameEnd - 1));
        pairs[name] = std::string(value);
        at = valueEnd;
    }
    return pairs;
}

OptionText SplitDriverSetup(std::string_view text) {
    constexpr std::string_view kWord = "DRIVERSETUP";
    const std::string upper = ToUpperAscii(text);
    std::size_t at = upper.find(std::string(kWord) + "=");
    std::size_t value = at + kWord.size() + 1;
    if (at == std::string::npos) {
        at = upper.find(std::string(kWord) + " ");
        if (at == std::string::npos) {
            return {.options = std::string(text), .driverSetup = std::nullopt};
        }
        value = at + kWord.size();
        while (value < text.size() && IsSpace(text[value])) {
            ++value;
        }
        if (value < text.size() && text[value] != '=') {
            return {.options = std::string(text), .driverSetup = std::nullopt};
        }
        value = std::min(value + 1, text.size());
    }
    return {.options = std::string(text.substr(0, at)),
            .driverSetup = std::string(text.substr(value))};
}

std::optional<bool> ParseBoolean(std::string_view value) {
    constexpr std::array<std::string_view, 3> kTrue = {"true", "VI_TRUE", "1"};
    constexpr std::array<std::string_view, 3> kFalse = {"false", "VI_FALSE", "0"};
    const auto matches = [value](std::string_view form) { return EqualsIgnoreCase(form, value); };
    if (std::ranges::any_of(kTrue, matches)) {
        return true;
    }
    if (std::ranges::any_of(kFalse, matches)) {
        return false;
    }
    return std::nullopt;
}

std::int32_t ParseInteger(std::string_view value) {
    value = Trim(value);
    if (value.starts_with('+') && !value.starts_with("+-")) {
        value.remove_prefix(1);
    }
    std::int32_t number = 0;
    (void)std::from_chars(value.data(), value.data() + value.size(), number);
    return number;
}

}  // namespace kestrion
