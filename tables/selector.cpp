#include "tables/selector.h"

#include <charconv>
#include <span>
#include <utility>

#include "platform/text.h"
#include "tables/hash_map.h"

namespace kestrion {
namespace {

using Names = std::vector<std::string>;
using Levels = std::vector<Names>;

constexpr std::int32_t kOk = 0;

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsPrefixCharacter(char c) {
    const char lower = ToLowerAscii(c);
    return (lower >= 'a' && lower <= 'z') || c == '_' || c == '!';
}

bool IsNameCharacter(char c) {
    return IsPrefixCharacter(c) || IsDigit(c);
}

// Reads an item from left to right.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool AtEnd() const { return rest_.empty(); }
    // The characters at the front that the test accepts.
    template <typename Test>
    std::string_view Take(Test test) {
        std::size_t count = 0;
        while (count < rest_.size() && test(rest_[count])) {
            ++count;
        }
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return taken;
    }
    bool TakeDash() {
        if (rest_.empty() || rest_.front() != '-') {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

  private:
    std::string_view rest_;
};

// What an item consists of: a range, or a plain name.
struct Item {
    std::string_view firstPrefix;
    std::string_view firstNumber;
    std::string_view lastPrefix;
    std::string_view lastNumber;
    std::string_view name;

    [[nodiscard]] bool IsRange() const { return !firstPrefix.empty(); }
};

bool ScanName(std::string_view text, Item& item) {
    Scanner scanner(text);
    scanner.Take(IsBlank);
    item.name = scanner.Take(IsNameCharacter);
    scanner.Take(IsBlank);
    return !item.name.empty() && scanner.AtEnd();
}

bool ScanRange(std::string_view text, Item& item) {
    Scanner scanner(text);
    scanner.Take(IsBlank);
    item.firstPrefix = scanner.Take(IsPrefixCharacter);
    item.firstNumber = scanner.Take(IsDigit);
    scanner.Take(IsBlank);
    if (item.firstPrefix.empty() || item.firstNumber.empty() || !scanner.TakeDash()) {
        return false;
    }
    scanner.Take(IsBlank);
    item.lastPrefix = scanner.Take(IsPrefixCharacter);
    item.lastNumber = scanner.Take(IsDigit);
    scanner.Take(IsBlank);
    return !item.lastNumber.empty() && scanner.AtEnd();
}

bool ScanItem(std::string_view text, Item& item) {
    const bool isRange = text.find('-') != std::string_view::npos;
    return isRange ? ScanRange(text, item) : ScanName(text, item);
}

bool ParseNumber(std::string_view digits, std::int32_t& number) {
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return result.ec == std::errc();
}

// What the names of ranges may still take. Counted down.
struct Room {
    std::size_t names = CRepCapSelector::kMaxSelectors;
    std::size_t characters = CRepCapSelector::kMaxCharacters;

    // Takes the room for `count` names of at most `length` characters; false if it isn't there.
    bool Take(std::size_t count, std::size_t length) {
        if (count > names || length > characters / count) {
            return false;
        }
        names -= count;
        characters -= count * length;
        return true;
    }
};

// Adds the names of a range as far as there is room.
std::int32_t ExpandRange(const Item& item, Names& names, Room& room) {
    if (!item.lastPrefix.empty() && !item.lastPrefix.starts_with(item.firstPrefix)) {
        return CRepCapSelector::kBadRange;
    }
    std::int32_t first = 0;
    std::int32_t last = 0;
    if (!ParseNumber(item.firstNumber, first) || !ParseNumber(item.lastNumber, last) ||
        last < first) {
        return CRepCapSelector::kBadRange;
    }
    const auto count = static_cast<std::size_t>(last - first) + 1;
    if (!room.Take(count, item.firstPrefix.size() + std::to_string(last).size())) {
        return CRepCapSelector::kBadRange;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const auto number = static_cast<std::size_t>(first) + i;
        names.push_back(std::string(item.firstPrefix).append(std::to_string(number)));
    }
    return kOk;
}

// Calls `visit` with each part of `text` between separators, until a status isn't 0.
template <typename Visit>
std::int32_t ForEachPart(std::string_view text, char separator, Visit visit) {
    for (;;) {
        const auto end = text.find(separator);
        if (const std::int32_t status = visit(text.substr(0, end)); status != kOk) {
            return status;
        }
        if (end == std::string_view::npos) {
            return kOk;
        }
        text.remove_prefix(end + 1);
    }
}

// Collects the levels of one selector after the other.
class Parser {
  public:
    explicit Parser(bool allowRanges) : allowRanges_(allowRanges) {}

    std::int32_t Parse(std::string_view text) {
        const std::int32_t status =
            ForEachPart(text, ':', [this](std::string_view level) { return AddLevel(level); });
        return status == kOk ? Flush() : status;
    }

    // All combinations of one name from each level, the last level changing fastest.
    std::int32_t MultiplyOut(std::vector<CRepCapSelector::Path>& selectors) const {
        std::vector<CRepCapSelector::Path> all;
        std::size_t names = 0;
        std::size_t characters = 0;
        for (const Levels& levels : results_) {
            const std::size_t count = CountCombinations(levels);
            if (count > CRepCapSelector::kMaxSelectors - all.size()) {
                return CRepCapSelector::kBadRange;
            }
            names += count * levels.size();
            characters += CountCharacters(levels, count);
            if (names > CRepCapSelector::kMaxNames ||
                characters > CRepCapSelector::kMaxCharacters) {
                return CRepCapSelector::kBadRange;
            }
            for (std::size_t i = 0; i < count; ++i) {
                all.push_back(Combination(levels, i));
            }
        }
        if (HasRepeat(all)) {
            return CRepCapSelector::kBadlyFormed;
        }
        selectors = std::move(all);
        return kOk;
    }

  private:
    std::int32_t AddLevel(std::string_view level) {
        level = Trim(level);
        const bool isBracketed = level.starts_with('[');
        if (isBracketed) {
            if (!level.ends_with(']')) {
                return CRepCapSelector::kBadlyFormed;
            }
            level = level.substr(1, level.size() - 2);
        }
        Names bracketed;
        bool isFirst = true;
        const std::int32_t status = ForEachPart(level, ',', [&](std::string_view item) {
            if (isBracketed) {
                return AddItem(item, bracketed);
            }
            return AddSingle(item, std::exchange(isFirst, false));
        });
        if (status == kOk && isBracketed) {
            levels_.push_back(std::move(bracketed));
        }
        return status;
    }

    // An item outside of brackets is a level, and ends the selector in front of it if it isn't the
    // first one between its colons.
    std::int32_t AddSingle(std::string_view item, bool isFirst) {
        Names names;
        if (const std::int32_t status = AddItem(item, names); status != kOk) {
            return status;
        }
        if (!isFirst) {
            if (const std::int32_t status = Flush(); status != kOk) {
                return status;
            }
        }
        levels_.push_back(std::move(names));
        return kOk;
    }

    std::int32_t AddItem(std::string_view text, Names& names) {
        Item item;
        if (!ScanItem(text, item) || (item.IsRange() && !allowRanges_)) {
            return CRepCapSelector::kBadlyFormed;
        }
        if (item.IsRange()) {
            return ExpandRange(item, names, room_);
        }
        names.emplace_back(item.name);
        return kOk;
    }

    std::int32_t Flush() {
        if (!results_.empty() && results_.front().size() != levels_.size()) {
            return CRepCapSelector::kBadLevelCount;
        }
        results_.push_back(std::exchange(levels_, {}));
        return kOk;
    }

    // Stops counting at the first number beyond the limit.
    static std::size_t CountCombinations(const Levels& levels) {
        std::size_t count = 1;
        for (const Names& names : levels) {
            count *= names.size();
            if (count > CRepCapSelector::kMaxSelectors) {
                break;
            }
        }
        return count;
    }

    // The characters of all names of `count` combinations: each name of a level stands in as many.
    static std::size_t CountCharacters(const Levels& levels, std::size_t count) {
        std::size_t characters = 0;
        for (const Names& names : levels) {
            std::size_t level = 0;
            for (const std::string& name : names) {
                level += name.size();
            }
            characters += level * (count / names.size());
        }
        return characters;
    }

    static CRepCapSelector::Path Combination(const Levels& levels, std::size_t number) {
        CRepCapSelector::Path path(levels.size());
        for (std::size_t i = levels.size(); i-- > 0;) {
            path[i] = levels[i][number % levels[i].size()];
            number /= levels[i].size();
        }
        return path;
    }

    static bool HasRepeat(std::span<const CRepCapSelector::Path> paths) {
        HashMap<std::string, bool> seen;
        for (const CRepCapSelector::Path& path : paths) {
            std::string joined;
            for (const std::string& name : path) {
                joined.append(joined.empty() ? "" : ":").append(name);
            }
            if (!seen.TryAdd(joined, true)) {
                return true;
            }
        }
        return false;
    }

    bool allowRanges_;
    Room room_;
    std::vector<Levels> results_;
    Levels levels_;
};

}  // namespace

std::int32_t CRepCapSelector::Parse(bool allowRanges) {
    if (std::exchange(parsed_, true)) {
        return kOk;
    }
    if (text_.empty()) {
        selectors_ = {Path{std::string()}};
        return kOk;
    }
    Parser parser(allowRanges);
    if (const std::int32_t status = parser.Parse(text_); status != kOk) {
        return status;
    }
    return parser.MultiplyOut(selectors_);
}

std::string_view CRepCapSelector::Message(std::int32_t status) {
    switch (status) {
        case kBadlyFormed:
            return "The repeated capability selector is badly-formed.";
        case kBadRange:
            return "Invalid range specified in repeated capability selector.";
        case kBadLevelCount:
            return "Invalid or inconsistent number of levels specified in repeated capability "
                   "selector.";
        default:
            return {};
    }
}

}  // namespace kestrion
