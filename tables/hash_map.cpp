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
    std::uint32_t hash = 0;
    for (const char c : text) {
        hash = hash * 33 + static_cast<std::uint8_t>(ToLowerAscii(c));
    }
    return hash;
}

bool IgnoreCaseHashTraits::Equals(std::string_view a, std::string_view b) {
    return EqualsIgnoreCase(a, b);
}

}  // namespace kestrion
