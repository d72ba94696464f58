#include "tables/hash_map.h"

#include "platform/text.h"

namespace kestrion {

std::uint32_t TextHashTraits::Hash(std::string_view text) {
    std::uint32_t hash = 0;
    for (const char c : text) {
        hash = hash * 33 + static_cast<std::uint8_t>(c);
    }
    return hash;
}

std::uint32_t IgnoreCaseHashTraits::Hash(std::string_view text) {
    // A letter's case is this bit. Other characters lose it as well, which may give two keys one
    // hash and never two to one key.
    constexpr std::uint8_t kCase = 0x20;
    std::uint32_t hash = 0;
    for (const char c : text) {
        hash = hash * 33 + (static_cast<std::uint8_t>(c) | kCase);
    }
    return hash;
}

bool IgnoreCaseHashTraits::Equals(std::string_view a, std::string_view b) {
    return EqualsIgnoreCase(a, b);
}

}  // namespace kestrion
