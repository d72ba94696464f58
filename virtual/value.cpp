#include "virtual/value.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "virtual/text.h"

namespace virtual_scope {
namespace {

// `SOUrce1` in its parts: its short form is SOU1.
struct Mnemonic {
    std::string_view letters;
    std::size_t shortLength;  // of the letters
    std::string_view digits;  // that every form ends in
};

Mnemonic PartsOf(std::string_view mnemonic) {
    const auto lower = std::ranges::find_if(mnemonic, [](char c) { return c >= 'a' && c <= 'z'; });
    const auto shortLength = static_cast<std::size_t>(lower - mnemonic.begin());
    std::size_t end = mnemonic.size();
    while (end > shortLength && IsDigit(mnemonic[end - 1])) {
        --end;
    }
    return {mnemonic.substr(0, end), shortLength, mnemonic.substr(end)};
}

bool IsWord(std::string_view parameter) {
    const char first = ToUpper(parameter.front());
    return first >= 'A' && first <= 'Z';
}

ScpiError WrongKind(std::string_view parameter) {
    return IsWord(parameter) ? ScpiError::kIllegalParameterValue : ScpiError::kDataTypeError;
}

// The number behind the word, for the real settings that have some.
std::optional<double> NamedNumber(const Real& spec, std::string_view word) {
    if (spec.names.empty()) {
        return std::nullopt;
    }
    for (const std::string_view pair : Split(spec.names, '|')) {
        const std::size_t mark = pair.find('=');
        if (MatchesMnemonic(pair.substr(0, mark), word)) {
            return ParseNumber(pair.substr(mark + 1));
        }
    }
    return std::nullopt;
}

bool IsNamedValue(const Real& spec, double value) {
    return std::ranges::any_of(Split(spec.names, '|'), [value](std::string_view pair) {
        return ParseNumber(pair.substr(pair.find('=') + 1)) == value;
    });
}

struct Parser {
    std::string_view parameter;
    Value& value;

    ScpiError operator()(const NoValue&) const { return ScpiError::kParameterNotAllowed; }

    ScpiError operator()(const Flag& spec) const {
        if (MatchesMnemonic("ON", parameter) || MatchesMnemonic(spec.onWord, parameter)) {
            value = std::int64_t{1};
            return ScpiError::kNone;
        }
        if (MatchesMnemonic("OFF", parameter) || MatchesMnemonic(spec.offWord, parameter)) {
            value = std::int64_t{0};
            return ScpiError::kNone;
        }
        const auto number = ParseNumber(parameter);
        if (!number) {
            return WrongKind(parameter);
        }
        value = std::int64_t{std::round(*number) != 0};
        return ScpiError::kNone;
    }

    ScpiError operator()(const Keyword& spec) const {
        const auto words = Split(spec.words, '|');
        const auto found = std::ranges::find_if(
            words, [this](std::string_view word) { return MatchesMnemonic(word, parameter); });
        if (found == words.end()) {
            return WrongKind(parameter);
        }
        value = std::int64_t{found - words.begin()};
        return ScpiError::kNone;
    }

    ScpiError operator()(const Integer& spec) const {
        const auto number = ParseNumber(parameter);
        if (!number) {
            return WrongKind(parameter);
        }
        const double rounded = std::round(*number);
        if (rounded < static_cast<double>(spec.low) || rounded > static_cast<double>(spec.high)) {
            return ScpiError::kDataOutOfRange;
        }
        value = static_cast<std::int64_t>(rounded);
        return ScpiError::kNone;
    }

    ScpiError operator()(const Real& spec) const {
        auto number = NamedNumber(spec, parameter);
        if (!number) {
            number = ParseNumber(parameter);
        }
        if (!number) {
            return WrongKind(parameter);
        }
        if (*number < spec.low || *number > spec.high) {
            return ScpiError::kDataOutOfRange;
        }
        if (spec.namedOnly && !IsNamedValue(spec, *number)) {
            return ScpiError::kIllegalParameterValue;
        }
        value = *number;
        return ScpiError::kNone;
    }

    ScpiError operator()(const Text& spec) const {
        auto text = Unquote(parameter);
        if (!text) {
            return ScpiError::kDataTypeError;
        }
        if (text->size() > spec.longest) {
            return ScpiError::kDataOutOfRange;
        }
        value = *std::move(text);
        return ScpiError::kNone;
    }
};

struct Initial {
    Value operator()(const NoValue&) const { return std::int64_t{0}; }
    Value operator()(const Flag& spec) const { return std::int64_t{spec.initial}; }
    Value operator()(const Text& spec) const { return std::string(spec.initial); }
    Value operator()(const auto& spec) const { return spec.initial; }
};

}  // namespace

bool MatchesMnemonic(std::string_view mnemonic, std::string_view word) {
    const auto [letters, shortLength, digits] = PartsOf(mnemonic);
    if (mnemonic.empty() || !word.ends_with(digits)) {
        return false;
    }
    word.remove_suffix(digits.size());
    if (word.size() > letters.size() || word.size() < shortLength) {
        return false;
    }
    return std::ranges::equal(
        word, letters.substr(0, word.size()), {}, [](char c) { return ToUpper(c); },
        [](char c) { return ToUpper(c); });
}

std::string FormatMnemonic(std::string_view mnemonic, bool verbose) {
    const Mnemonic parts = PartsOf(mnemonic);
    return verbose ? ToUpper(mnemonic)
                   : ToUpper(mnemonic.substr(0, parts.shortLength)) + std::string(parts.digits);
}

Value InitialValue(const Spec& spec) {
    return std::visit(Initial{}, spec);
}

ScpiError ParseValue(const Spec& spec, std::string_view parameter, Value& value) {
    return std::visit(Parser{parameter, value}, spec);
}

std::string FormatValue(const Spec& spec, const Value& value, bool verbose) {
    if (const auto* number = std::get_if<double>(&value)) {
        return FormatReal(*number);
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return Quote(*text);
    }
    const std::int64_t number = std::get<std::int64_t>(value);
    if (const auto* keyword = std::get_if<Keyword>(&spec)) {
        return FormatMnemonic(Split(keyword->words, '|').at(static_cast<std::size_t>(number)),
                              verbose);
    }
    return std::to_string(number);
}

}  // namespace virtual_scope
