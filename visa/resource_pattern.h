// Patterns of resource names, as viFindRsrc takes them (VPP-4.3, section 4.4.1).
#pragma once

#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

namespace visa_provider {

// A pattern, compiled to the steps of a small machine that follows all ways through the pattern at
// once. So the time of a match is at most the length of the name times that of the pattern.
//   ?               any character            [list]  [^list]   one of the list, or none of it
//   \c              the character c          a* a+             repetition
//   (a)             a group                  a|b               either
class ResourcePattern {
  public:
    // The longest pattern that is taken.
    static constexpr std::size_t kMaxLength = 255;

    // None for what isn't a pattern.
    [[nodiscard]] static std::optional<ResourcePattern> Parse(std::string_view text);

    // True when the whole of `name` matches, capitals or not.
    [[nodiscard]] bool Matches(std::string_view name) const;

  private:
    friend class PatternParser;

    // Either takes one of its characters and goes to the next step, or takes none and goes to one
    // of two steps. Distances are from this step on, so that a list of steps can be moved.
    struct Step {
        std::bitset<256> characters;  // in capitals
        bool takes = false;
        int one = 1;
        int other = 1;
    };
    using Steps = std::vector<Step>;

    static void Reach(const Steps& steps, std::size_t step, std::vector<bool>& reached);

    Steps steps_;
};

}  // namespace visa_provider
