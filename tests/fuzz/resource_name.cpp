// Fuzz target: resource names and the patterns that they are looked up by. The input is a pattern
// on the first line and a name on the second.
#include "visa/resource_name.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "tests/fuzz/property.h"
#include "visa/resource_pattern.h"

namespace visa_provider {
namespace {

using kestrion::fuzz::Require;
using kestrion::fuzz::TakeLine;

// The model follows a pattern of stars within stars the long way.
constexpr std::size_t kLongestForModel = 32;
constexpr int kMostSteps = 20000;

// A pattern of the provider's language, matched by following the text of the pattern itself: from a
// set of places in the name to the set of places where the pattern can end.
class PatternModel {
  public:
    using Places = std::set<std::size_t>;

    explicit PatternModel(std::string_view name) : name_(name) {}

    // Nothing if it would take too long to tell.
    std::optional<bool> Matches(std::string_view pattern) {
        const Places ends = Either(pattern, {0});
        if (steps_ > kMostSteps) {
            return std::nullopt;
        }
        return ends.contains(name_.size());
    }

  private:
    // The length of the first element: a character, a list, an escape or a group, with its stars.
    static std::size_t AtomLength(std::string_view pattern) {
        if (pattern.front() == '\\') {
            return 2;
        }
        if (pattern.front() == '[') {
            return ListLength(pattern);
        }
        if (pattern.front() != '(') {
            return 1;
        }
        std::size_t at = 1;
        while (pattern[at] != ')') {
            at += AtomLength(pattern.substr(at));
        }
        return at + 1;
    }
    static std::size_t ListLength(std::string_view pattern) {
        std::size_t at = pattern.substr(1).starts_with('^') ? 2 : 1;
        while (pattern[at] != ']') {
            // The character behind a dash belongs to the range, unless it is the bracket.
            const bool range =
                at + 2 < pattern.size() && pattern[at + 1] == '-' && pattern[at + 2] != ']';
            at += range ? 3 : 1;
        }
        return at + 1;
    }

    Places Either(std::string_view pattern, const Places& from) {
        Places ends;
        std::size_t start = 0;
        for (std::size_t at = 0; at <= pattern.size();) {
            if (at == pattern.size() || pattern[at] == '|') {
                ends.merge(Sequence(pattern.substr(start, at - start), from));
                start = ++at;
            } else {
                at += AtomLength(pattern.substr(at));
            }
        }
        return ends;
    }

    Places Sequence(std::string_view pattern, Places places) {
        while (!pattern.empty()) {
            const std::size_t atom = AtomLength(pattern);
            std::size_t end = atom;
            while (end < pattern.size() && (pattern[end] == '*' || pattern[end] == '+')) {
                ++end;
            }
            places = Repeated(pattern.substr(0, atom), pattern.substr(atom, end - atom), places);
            pattern.remove_prefix(end);
        }
        return places;
    }

    // Any number of signs repeat any number of times; one `*` among them allows none as well.
    Places Repeated(std::string_view atom, std::string_view signs, const Places& from) {
        Places ends = Atom(atom, from);
        if (signs.empty()) {
            return ends;
        }
        for (std::size_t before = 0; before != ends.size() && steps_ <= kMostSteps;) {
            before = ends.size();
            ends.merge(Atom(atom, ends));
        }
        if (signs.find('*') != std::string_view::npos) {
            ends.insert(from.begin(), from.end());
        }
        return ends;
    }

    Places Atom(std::string_view atom, const Places& from) {
        if (++steps_ > kMostSteps) {
            return {};
        }
        if (atom.front() == '(') {
            return Either(atom.substr(1, atom.size() - 2), from);
        }
        Places ends;
        for (const std::size_t at : from) {
            if (at < name_.size() && Takes(atom, name_[at])) {
                ends.insert(at + 1);
            }
        }
        return ends;
    }

    static bool Takes(std::string_view atom, char c) {
        switch (atom.front()) {
            case '?':
                return true;
            case '\\':
                return atom[1] == c;
            case '[':
                return ListTakes(atom.substr(1, atom.size() - 2), c);
            default:
                return atom.front() == c;
        }
    }
    static bool ListTakes(std::string_view list, char c) {
        const bool none = list.starts_with('^');
        list.remove_prefix(none ? 1 : 0);
        const auto code = [](char of) { return static_cast<unsigned char>(of); };
        bool listed = false;
        while (!list.empty()) {
            const bool range = list.size() > 2 && list[1] == '-';
            listed = listed ||
                     (range ? code(list[0]) <= code(c) && code(c) <= code(list[2]) : list[0] == c);
            list.remove_prefix(range ? 3 : 1);
        }
        return listed != none;
    }

    std::string_view name_;
    int steps_ = 0;
};

void CheckName(std::string_view text) {
    ResourceName name;
    const ViStatus status = ParseResourceName(text, name);
    Require(status == VI_SUCCESS || status == VI_ERROR_INV_RSRC_NAME ||
                status == VI_ERROR_RSRC_NFOUND || status == VI_ERROR_INV_PROT,
            "a name is taken apart or refused in one of three ways");
    ResourceName capitals;
    Require(ParseResourceName(InCapitals(text), capitals) == status, "capitals make no difference",
            text);
    if (status != VI_SUCCESS) {
        return;
    }
    const std::string canonical = name.Canonical();
    Require(canonical.size() <= kMaxResourceName, "a name is never longer than it can be told");
    ResourceName again;
    Require(ParseResourceName(canonical, again) == VI_SUCCESS, "the one form is a name", canonical);
    Require(again.Canonical() == canonical, "the one form stays as it is", canonical);
    Require(again.kind == name.kind && again.board == name.board && again.host == name.host &&
                again.port == name.port && again.model == name.model,
            "the one form has the same parts", canonical);
    Require(SameIgnoringCase(capitals.Canonical(), canonical),
            "the same name in capitals has the same form", canonical);
    const auto pattern = ResourcePattern::Parse("?*");
    Require(pattern && pattern->Matches(canonical), "anything matches ?*", canonical);
}

void CheckPattern(std::string_view text, std::string_view name) {
    const auto pattern = ResourcePattern::Parse(text);
    if (!pattern) {
        const bool plain = text.find_first_of("*+[]{}()\\") == std::string_view::npos;
        Require(text.empty() || text.size() > ResourcePattern::kMaxLength || !plain,
                "a text without signs is a pattern", text);
        return;
    }
    const bool matches = pattern->Matches(name);
    const std::string capitals = InCapitals(text);
    Require(pattern->Matches(InCapitals(name)) == matches, "capitals make no difference", name);
    if (text.find_first_of("*+[]{}()\\?|") == std::string_view::npos) {
        Require(matches == SameIgnoringCase(text, name), "a plain pattern matches itself", text);
    }
    if (text.size() <= kLongestForModel && name.size() <= kLongestForModel) {
        const std::string upper = InCapitals(name);
        const std::optional<bool> expected = PatternModel(upper).Matches(capitals);
        Require(!expected || *expected == matches, "a pattern matches as in the model", text);
    }
}

}  // namespace
}  // namespace visa_provider

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest = kestrion::fuzz::AsText(data, size);
    const std::string_view pattern = kestrion::fuzz::TakeLine(rest);
    visa_provider::CheckPattern(pattern, rest);
    visa_provider::CheckName(rest);
    visa_provider::CheckName(pattern);
    return 0;
}
