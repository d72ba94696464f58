#include "visa/resource_pattern.h"

#include <string>
#include <utility>

#include "visa/resource_name.h"

namespace visa_provider {

namespace {

std::size_t Index(char c) {
    return static_cast<unsigned char>(c);
}

}  // namespace

// Reads a pattern from left to right. A list of steps ends with the step behind its last one.
class PatternParser {
  public:
    using Step = ResourcePattern::Step;
    using Steps = ResourcePattern::Steps;

    explicit PatternParser(std::string_view text) : rest_(text) {}

    std::optional<Steps> Whole() {
        auto steps = Either();
        if (!rest_.empty()) {
            return std::nullopt;
        }
        return steps;
    }

  private:
    std::optional<Steps> Either() {
        auto steps = Sequence();
        while (steps && Skip('|')) {
            const auto other = Sequence();
            if (!other) {
                return std::nullopt;
            }
            Steps either{Fork(1, Length(*steps) + 2)};
            Append(either, *steps);
            either.push_back(Fork(Length(*other) + 1, Length(*other) + 1));
            Append(either, *other);
            steps = std::move(either);
        }
        return steps;
    }

    std::optional<Steps> Sequence() {
        Steps steps;
        while (!rest_.empty() && rest_.front() != '|' && rest_.front() != ')') {
            const auto part = Repeated();
            if (!part) {
                return std::nullopt;
            }
            Append(steps, *part);
        }
        return steps;
    }

    std::optional<Steps> Repeated() {
        auto steps = Single();
        while (steps && !rest_.empty() && (rest_.front() == '*' || rest_.front() == '+')) {
            const bool mayBeAbsent = Take() == '*';
            const int length = Length(*steps);
            Steps repeated;
            if (mayBeAbsent) {
                repeated.push_back(Fork(1, length + 2));
            }
            Append(repeated, *steps);
            repeated.push_back(Fork(-length, 1));
            steps = std::move(repeated);
        }
        return steps;
    }

    std::optional<Steps> Single() {
        switch (const char first = Take(); first) {
            case '*':
            case '+':
            case ']':
            case '{':
            case '}':
                return std::nullopt;
            case '(':
                return Group();
            case '[':
                return List();
            case '?':
                return OneOf(std::bitset<256>().set());
            case '\\':
                if (rest_.empty()) {
                    return std::nullopt;
                }
                return OneOf(std::bitset<256>().set(Index(Take())));
            default:
                return OneOf(std::bitset<256>().set(Index(first)));
        }
    }

    std::optional<Steps> Group() {
        auto steps = Either();
        if (!Skip(')')) {
            return std::nullopt;
        }
        return steps;
    }

    std::optional<Steps> List() {
        const bool isNoneOf = Skip('^');
        std::bitset<256> characters;
        while (!rest_.empty() && rest_.front() != ']') {
            const std::size_t first = Index(Take());
            std::size_t last = first;
            if (rest_.size() >= 2 && rest_[0] == '-' && rest_[1] != ']') {
                rest_.remove_prefix(1);
                last = Index(Take());
            }
            if (last < first) {
                return std::nullopt;
            }
            for (std::size_t c = first; c <= last; ++c) {
                characters.set(c);
            }
        }
        if (characters.none() || !Skip(']')) {
            return std::nullopt;
        }
        return OneOf(isNoneOf ? ~characters : characters);
    }

    static void Append(Steps& steps, const Steps& more) {
        for (const auto& step : more) {
            steps.push_back(step);
        }
    }

    static int Length(const Steps& steps) { return static_cast<int>(steps.size()); }

    static Steps OneOf(const std::bitset<256>& characters) { return {{characters, true, 1, 1}}; }

    static Step Fork(int one, int other) { return {{}, false, one, other}; }

    // The rest isn't empty.
    char Take() {
        const char first = rest_.front();
        rest_.remove_prefix(1);
        return first;
    }

    bool Skip(char expected) {
        if (rest_.empty() || rest_.front() != expected) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    std::string_view rest_;
};

std::optional<ResourcePattern> ResourcePattern::Parse(std::string_view text) {
    if (text.empty() || text.size() > kMaxLength) {
        return std::nullopt;
    }
    const std::string capitals = InCapitals(text);
    auto steps = PatternParser(capitals).Whole();
    if (!steps) {
        return std::nullopt;
    }
    ResourcePattern pattern;
    pattern.steps_ = std::move(*steps);
    return pattern;
}

// Marks `step` and all steps that can be reached from it without a character.
void ResourcePattern::Reach(const Steps& steps, std::size_t step, std::vector<bool>& reached) {
    std::vector<std::size_t> open{step};
    while (!open.empty()) {
        const std::size_t at = open.back();
        open.pop_back();
        if (reached[at]) {
            continue;
        }
        reached[at] = true;
        if (at == steps.size() || steps[at].takes) {
            continue;
        }
        open.push_back(at + static_cast<std::size_t>(steps[at].one));
        open.push_back(at + static_cast<std::size_t>(steps[at].other));
    }
}

bool ResourcePattern::Matches(std::string_view name) const {
    std::vector<bool> reached(steps_.size() + 1);
    Reach(steps_, 0, reached);
    for (const char c : InCapitals(name)) {
        std::vector<bool> next(steps_.size() + 1);
        for (std::size_t at = 0; at < steps_.size(); ++at) {
            if (reached[at] && steps_[at].takes && steps_[at].characters.test(Index(c))) {
                Reach(steps_, at + 1, next);
            }
        }
        reached = std::move(next);
    }
    return reached.back();
}

}  // namespace visa_provider
