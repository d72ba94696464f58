// Fuzz target: the option string and the lists of pairs in it. The input is the text.
#include "core/option_string.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/text.h"
#include "tests/fuzz/property.h"

namespace kestrion {
namespace {

using fuzz::Require;

// The model tries a match at every place of the text, which takes the square of its length.
constexpr std::size_t kLongestForModel = 1024;

bool IsSeparator(char c) {
    return c == ',' || c == '=';
}

std::string WithoutBlanks(std::string_view text) {
    while (text.starts_with(' ')) {
        text.remove_prefix(1);
    }
    while (text.ends_with(' ')) {
        text.remove_suffix(1);
    }
    return std::string(text);
}

// The length of a run, an equals sign and a run at the place `at`; 0 if they aren't there.
std::size_t MatchPair(std::string_view text, std::size_t at, std::size_t& equals) {
    std::size_t end = at;
    while (end < text.size() && !IsSeparator(text[end])) {
        ++end;
    }
    if (end == at || end == text.size() || text[end] != '=') {
        return 0;
    }
    equals = end++;
    while (end < text.size() && !IsSeparator(text[end])) {
        ++end;
    }
    return end == equals + 1 ? 0 : end - at;
}

std::map<std::string, std::string> PairsOfModel(std::string_view text) {
    std::map<std::string, std::string> pairs;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t equals = 0;
        const std::size_t length = MatchPair(text, at, equals);
        if (length == 0) {
            ++at;
            continue;
        }
        pairs[WithoutBlanks(text.substr(at, equals - at))] =
            WithoutBlanks(text.substr(equals + 1, at + length - equals - 1));
        at += length;
    }
    return pairs;
}

void CheckPairs(std::string_view text) {
    const OptionMap pairs = SplitPairs(text);
    for (const auto& [name, value] : pairs) {
        const bool clean = name.find_first_of(",=") == std::string::npos &&
                           value.find_first_of(",=") == std::string::npos;
        Require(clean, "no separator is left in a pair", name);
    }
    if (text.size() > kLongestForModel) {
        return;
    }
    const auto expected = PairsOfModel(text);
    Require(pairs.Size() == expected.size(), "as many pairs as the model finds");
    for (const auto& [name, value] : expected) {
        const std::string* found = pairs.Find(name);
        Require(found != nullptr && *found == value, "the model's pair is found", name);
    }
}

// The place of the word with an equals sign right behind it.
std::size_t FindSetup(std::string_view text) {
    return ToLowerAscii(text).find("driversetup=");
}

void CheckHalves(std::string_view text) {
    const OptionText halves = SplitDriverSetup(text);
    Require(text.starts_with(halves.options), "the options are what the text begins with");
    const std::size_t word = FindSetup(text);
    if (!halves.driverSetup) {
        Require(halves.options == text, "all is options where there is no driver setup");
        Require(word == std::string::npos, "a driver setup isn't overlooked");
        return;
    }
    Require(text.ends_with(*halves.driverSetup), "the setup is what the text ends with");
    Require(halves.options.size() + halves.driverSetup->size() < text.size(),
            "the halves don't overlap");
    if (word != std::string::npos) {
        Require(halves.options.size() == word, "the first driver setup counts");
    }
    std::string_view between = text.substr(halves.options.size());
    between.remove_suffix(halves.driverSetup->size());
    constexpr std::string_view kWord = "driversetup";
    Require(EqualsIgnoreCase(between.substr(0, kWord.size()), kWord),
            "between the halves stands the word");
    between.remove_prefix(std::min(kWord.size(), between.size()));
    Require(Trim(between) == "=" || (Trim(between).empty() && halves.driverSetup->empty()),
            "behind the word stands white space and an equals sign", between);
    Require(between.size() < 2 || between.front() == ' ' || between == "=",
            "white space behind the word begins with a blank", between);
}

// White space, a sign, digits: C's conversion, as far as it is defined.
std::optional<std::int32_t> IntegerOfModel(std::string_view text) {
    text = Trim(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t value = 0;
    for (; !text.empty() && text.front() >= '0' && text.front() <= '9'; text.remove_prefix(1)) {
        value = value * 10 + (text.front() - '0');
        if (value > INT32_MAX) {
            return std::nullopt;
        }
    }
    return static_cast<std::int32_t>(negative ? -value : value);
}

void CheckValues(std::string_view text) {
    if (const std::optional<bool> value = ParseBoolean(text)) {
        const bool isNumber = text == "1" || text == "0";
        Require(isNumber || EqualsIgnoreCase(text, *value ? "true" : "false") ||
                    EqualsIgnoreCase(text, *value ? "VI_TRUE" : "VI_FALSE"),
                "a Boolean has one of its forms", text);
    }
    const std::int32_t number = ParseInteger(text);
    const std::optional<std::int32_t> expected = IntegerOfModel(text);
    Require(!expected || number == *expected, "the number at the front of the text", text);
}

}  // namespace
}  // namespace kestrion

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = kestrion::fuzz::AsText(data, size);
    kestrion::CheckPairs(text);
    kestrion::CheckHalves(text);
    kestrion::CheckValues(text);
    return 0;
}
