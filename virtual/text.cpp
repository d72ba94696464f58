#include "virtual/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace virtual_scope {

std::string ToUpper(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), [](char c) { return ToUpper(c); });
    return upper;
}

std::string_view Trim(std::string_view text) {
    const auto isSpace = [](char c) { return IsBlank(c) || c == '\n'; };
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator)) {
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.push_back(text);
    return parts;
}

std::optional<double> ParseNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    const std::size_t sign = text.starts_with('-') ? 1 : 0;
    // Words such as "inf" that the conversion would take are no numbers of a program message.
    if (text.size() <= sign || (!IsDigit(text[sign]) && text[sign] != '.')) {
        return std::nullopt;
    }
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::string> Unquote(std::string_view text) {
    if (text.size() < 2 || (text.front() != '"' && text.front() != '\'') ||
        text.back() != text.front()) {
        return std::nullopt;
    }
    const char quote = text.front();
    const std::string_view inside = text.substr(1, text.size() - 2);
    std::string result;
    for (std::size_t i = 0; i < inside.size(); ++i) {
        if (inside[i] == quote && (i + 1 == inside.size() || inside[++i] != quote)) {
            return std::nullopt;
        }
        result += inside[i];
    }
    return result;
}

std::string Quote(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        result.append(c == '"' ? 2 : 1, c);
    }
    return result + '"';
}

std::string FormatReal(double value) {
    if (value == 0) {
        return "0.0000";
    }
    if (value == 9.91e37) {  // SCPI, volume 1, 7.2.1.5
        return "9.91E+37";
    }
    std::array<char, 32> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                            std::abs(value), std::chars_format::scientific);
    const std::string_view shortest(buffer.data(), end);
    const std::size_t mark = shortest.find('e');
    std::string digits(1, shortest[0]);
    if (mark > 2) {
        digits += shortest.substr(2, mark - 2);
    }
    int exponent = 0;
    const std::string_view power = shortest.substr(mark + (shortest[mark + 1] == '+' ? 2 : 1));
    std::from_chars(power.data(), power.data() + power.size(), exponent);

    const int wholeDigits = ((exponent % 3) + 3) % 3 + 1;
    const int engineering = exponent - (wholeDigits - 1);
    const auto whole = static_cast<std::size_t>(wholeDigits);
    digits.resize(std::max(digits.size(), whole + 4), '0');
    std::string result = value < 0 ? "-" : "";
    result += digits.substr(0, whole) + '.' + digits.substr(whole);
    if (engineering != 0) {
        result += engineering > 0 ? "E+" : "E";
        result += std::to_string(engineering);
    }
    return result;
}

}  // namespace virtual_scope
