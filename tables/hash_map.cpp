#include "tables/hash_map.h"

#include "platform/text.h"

namespace kestrion {

namespace {

// h = h * 33 + unit for each character, four in a step: with the powers of 33 multiplied out, a
// character doesn't wait for the one in front of it.
template <typename UnitOf>
std::uint32_t HashBy33(std::string_view text, UnitOf unitOf) {
    constexpr std::uint32_t k33 = 33;
    std::uint32_t hash = 0;
    std::size_t i = 0;
    for (; i + 4 <= text.size(); i += 4) {
        hash = hash * (k33 * k33 * k33 * k33) + unitOf(text[i]) * (k33 * k33 * k33) +
               unitOf(text[i + 1]) * (k33 * k33) + unitOf(text[i + 2]) * k33 + unitOf(text[i + 3]);
    }
    for (; i < text.size(); ++i) {
        hash = hash * k33 + unitOf(text[i]);
    }
    return hash;
}

}  // namespace

std::uint32_t TextHashTraits::Hash(std::string_view text) {
    return HashBy33(text, [](char c) { return std::uint32_t{static_cast<std::uint8_t>(c)}; });
}

std::uint32_t IgnoreCaseHashTraits::Hash(std::string_view text) {
    // A letter's case is this bit. Other characters lose it as well, which may give two keys one
    // hash and never two to one key.
    constexpr std::uint32_t kCase = 0x20;
    return HashBy33(text, [](char c) { return static_cast<std::uint8_t>(c) | kCase; });
}

bool IgnoreCaseHashTraits::Equals(std::string_view a, std::string_view b) {
    return EqualsIgnoreCase(a, b);
}

}  // namespace kestrion
