#include "virtual/program_message.h"

#include <algorithm>
#include <charconv>

#include "virtual/text.h"

namespace virtual_scope {
namespace {

bool IsHeaderCharacter(char c) {
    return (ToUpper(c) >= 'A' && ToUpper(c) <= 'Z') || IsDigit(c) || c == '_' || c == ':' ||
           c == '*';
}

// The place behind the string that begins at `at`, or behind the whole text if it never ends.
std::size_t SkipString(std::string_view text, std::size_t at) {
    const std::size_t close = text.find(text[at], at + 1);
    return close == std::string_view::npos ? text.size() : close + 1;
}

// The place behind the definite length block that begins at `at`; behind the sign if it is none.
std::size_t SkipBlock(std::string_view text, std::size_t at) {
    if (at + 1 >= text.size() || text[at + 1] < '1' || text[at + 1] > '9') {
        return at + 1;
    }
    const auto digits = static_cast<std::size_t>(text[at + 1] - '0');
    const std::string_view number = text.substr(at + 2, digits);
    std::size_t length = 0;
    const auto [stop, error] =
        std::from_chars(number.data(), number.data() + number.size(), length);
    if (number.size() != digits || stop != number.data() + number.size()) {
        return at + 1;
    }
    return std::min(text.size(), at + 2 + digits + length);
}

// The text up to the next separator outside of strings and blocks, which is taken off `rest`
// together with the separator.
std::string_view TakePart(std::string_view& rest, char separator) {
    std::size_t at = 0;
    while (at < rest.size() && rest[at] != separator) {
        if (rest[at] == '"' || rest[at] == '\'') {
            at = SkipString(rest, at);
        } else if (rest[at] == '#') {
            at = SkipBlock(rest, at);
        } else {
            ++at;
        }
    }
    const std::string_view part = rest.substr(0, at);
    rest.remove_prefix(std::min(rest.size(), at + 1));
    return part;
}

// A block's data may end in what looks like white space, so only the front is bared.
std::string_view TrimParameter(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text.starts_with('#') ? text : Trim(text);
}

ScpiError ParseParameters(std::string_view text, std::vector<std::string>& parameters) {
    bool more = true;
    while (more) {
        const std::size_t before = text.size();
        const std::string_view part = TakePart(text, ',');
        more = before != part.size();
        const std::string_view parameter = TrimParameter(part);
        if (parameter.empty()) {
            return ScpiError::kSyntaxError;
        }
        const bool quoted = parameter.front() == '"' || parameter.front() == '\'';
        if (quoted && !Unquote(parameter)) {
            return ScpiError::kInvalidStringData;
        }
        parameters.emplace_back(parameter);
    }
    return ScpiError::kNone;
}

ScpiError ParseHeader(std::string_view header, ProgramUnit& unit) {
    unit.fromRoot = header.starts_with(':');
    if (unit.fromRoot) {
        header.remove_prefix(1);
    }
    for (const std::string_view word : Split(header, ':')) {
        if (word.empty() || word.find('*', 1) != std::string_view::npos) {
            return ScpiError::kSyntaxError;
        }
        unit.words.push_back(ToUpper(word));
    }
    return ScpiError::kNone;
}

ProgramUnit ParseUnit(std::string_view text) {
    ProgramUnit unit;
    const auto headerEnd =
        static_cast<std::size_t>(std::ranges::find_if_not(text, IsHeaderCharacter) - text.begin());
    if (headerEnd == 0) {
        unit.error = ScpiError::kInvalidCharacter;
        return unit;
    }
    unit.error = ParseHeader(text.substr(0, headerEnd), unit);
    std::string_view rest = text.substr(headerEnd);
    if (rest.starts_with('?')) {
        unit.query = true;
        rest.remove_prefix(1);
    }
    if (!rest.empty() && !IsBlank(rest.front()) && unit.error == ScpiError::kNone) {
        unit.error = ScpiError::kInvalidSeparator;
    }
    if (unit.error == ScpiError::kNone && !Trim(rest).empty()) {
        unit.error = ParseParameters(rest, unit.parameters);
    }
    return unit;
}

}  // namespace

std::vector<ProgramUnit> ParseMessage(std::string_view message) {
    std::vector<ProgramUnit> units;
    while (!message.empty()) {
        std::string_view part = TakePart(message, ';');
        while (!part.empty() && (IsBlank(part.front()) || part.front() == '\n')) {
            part.remove_prefix(1);
        }
        if (!part.empty()) {
            units.push_back(ParseUnit(part));
        }
    }
    return units;
}

}  // namespace virtual_scope
