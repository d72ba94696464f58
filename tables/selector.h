// The narrow text by which the flat functions name one repeated capability instance or many:
// "Channel1", "Channel1-3", "[Channel1,Channel3]", "A:[Channel1-2]", "Channel1,Channel2".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestrion {

// Levels stand between ":". A level is one item, or a list of items in brackets; a list without
// brackets begins a selector of its own with each further item. An item is a name of letters,
// digits, "_" and "!", or a range "Channel1-Channel3", whose second prefix may be left out and has
// only to begin with the first one. Blanks may stand around names and around the "-".
class CRepCapSelector {
  public:
    // The statuses of Parse(), besides 0.
    static constexpr std::int32_t kBadlyFormed = static_cast<std::int32_t>(0xBFFA0066U);
    static constexpr std::int32_t kBadRange = static_cast<std::int32_t>(0xBFFA0064U);
    static constexpr std::int32_t kBadLevelCount = static_cast<std::int32_t>(0xBFFA0063U);

    // Far more than there are instances: a text that stands for more selectors, or for more names
    // or characters of names in all of them together, has a bad range instead of filling the
    // memory.
    static constexpr std::size_t kMaxSelectors = 65536;
    static constexpr std::size_t kMaxNames = 1048576;
    static constexpr std::size_t kMaxCharacters = 16777216;

    // One name for each level.
    using Path = std::vector<std::string>;

    explicit CRepCapSelector(std::string_view text) : text_(text) {}

    // Reads the text, once: any further call returns 0 and changes nothing. A range where
    // `allowRanges` is false is badly formed. After a failure there are no selectors.
    [[nodiscard]] std::int32_t Parse(bool allowRanges);

    // What the text names, in its order, each one once; an empty text is one empty name.
    [[nodiscard]] const std::vector<Path>& Selectors() const { return selectors_; }

    // The words for a status of Parse(); empty for 0.
    [[nodiscard]] static std::string_view Message(std::int32_t status);

  private:
    std::string text_;
    bool parsed_ = false;
    std::vector<Path> selectors_;
};

}  // namespace kestrion
