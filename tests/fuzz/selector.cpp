// Fuzz target: selectors of repeated capabilities. The input is the text of one.
#include "tables/selector.h"

#include <algorithm>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/fuzz/property.h"

namespace kestrion {
namespace {

using fuzz::Require;
using Paths = std::vector<CRepCapSelector::Path>;

// Numbers of so many digits make ranges of up to 65536 names, which take so long that little else
// would be tried. The room's own tests have them.
constexpr std::size_t kFewestSlowDigits = 4;
constexpr std::size_t kMostSlowDigits = 6;

// Of more selectors than this the first ones are looked at, and nothing is printed and read again.
constexpr std::size_t kMostToCheck = 1000;

constexpr std::string_view kNameCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_!";

bool IsName(std::string_view text) {
    return !text.empty() && text.find_first_not_of(kNameCharacters) == std::string_view::npos;
}

std::string Joined(const CRepCapSelector::Path& path) {
    std::string text;
    for (const std::string& name : path) {
        text += (&name == &path.front() ? "" : ":") + name;
    }
    return text;
}

std::string Printed(const Paths& paths) {
    std::string text;
    for (const CRepCapSelector::Path& path : paths) {
        text += (&path == &paths.front() ? "" : ",") + Joined(path);
    }
    return text;
}

bool HasSlowNumber(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t digits =
            std::min(text.find_first_not_of("0123456789", at), text.size()) - at;
        if (digits >= kFewestSlowDigits && digits <= kMostSlowDigits) {
            return true;
        }
        at += digits + 1;
    }
    return false;
}

void CheckFailure(const CRepCapSelector& selector, std::int32_t status) {
    Require(status == CRepCapSelector::kBadlyFormed || status == CRepCapSelector::kBadRange ||
                status == CRepCapSelector::kBadLevelCount,
            "a failure is one of the three");
    Require(!CRepCapSelector::Message(status).empty(), "every failure has its words");
    Require(selector.Selectors().empty(), "a failure leaves no selectors");
}

void CheckSelectors(std::string_view text, const Paths& paths) {
    Require(!paths.empty() && paths.size() <= CRepCapSelector::kMaxSelectors,
            "the number of selectors has its limit");
    std::set<std::string> seen;
    std::size_t characters = 0;
    for (const CRepCapSelector::Path& path :
         std::span(paths).first(std::min(paths.size(), kMostToCheck))) {
        Require(path.size() == paths.front().size(), "all selectors have as many levels");
        for (const std::string& name : path) {
            Require(IsName(name) || text.empty(), "levels are names", name);
            characters += name.size();
        }
        Require(seen.insert(Joined(path)).second, "no selector comes twice");
    }
    Require(characters <= CRepCapSelector::kMaxCharacters, "the names take a limited memory");
}

// What is printed names the same selectors, without ranges and brackets.
void CheckPrinted(const Paths& paths) {
    CRepCapSelector again(Printed(paths));
    Require(again.Parse(false) == 0, "printed selectors are well formed");
    Require(again.Selectors() == paths, "printed selectors are the same");
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

// Names, commas and colons alone: no more than a list of lists.
void CheckPlain(std::string_view text, std::int32_t status, const Paths& paths) {
    Paths expected;
    std::set<std::string> seen;
    bool good = true;
    for (const std::string& part : Split(text, ',')) {
        expected.push_back(Split(part, ':'));
        good = good && std::ranges::all_of(expected.back(), IsName) &&
               expected.back().size() == expected.front().size() && seen.insert(part).second;
    }
    Require(good == (status == 0), "plain lists are read as the model reads them", text);
    Require(!good || paths == expected, "plain lists name what stands in them", text);
}

void Check(std::string_view text) {
    CRepCapSelector selector(text);
    const std::int32_t status = selector.Parse(true);
    Require(selector.Parse(true) == 0, "a second reading changes nothing");
    if (status == 0) {
        CheckSelectors(text, selector.Selectors());
    } else {
        CheckFailure(selector, status);
    }
    if (status == 0 && !text.empty() && selector.Selectors().size() <= kMostToCheck) {
        CheckPrinted(selector.Selectors());
    }
    if (!text.empty() &&
        text.find_first_not_of(std::string(kNameCharacters) + ",:") == std::string_view::npos) {
        CheckPlain(text, status, selector.Selectors());
    }
    CRepCapSelector single(text);
    if (single.Parse(false) == 0) {
        Require(status == 0 && single.Selectors() == selector.Selectors(),
                "without a range it doesn't matter whether ranges are allowed");
    }
}

}  // namespace
}  // namespace kestrion

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = kestrion::fuzz::AsText(data, size);
    if (!kestrion::HasSlowNumber(text)) {
        kestrion::Check(text);
    }
    return 0;
}
