#include "tables/hash_map.h"

namespace kestrion {

std::uint32_t TextHashTraits::Hash(std::string_view text) {
    std::uint32_t hash = 0;
    for (const char c : text) {
        hash = hash * 33 + static_cast<std::uint8_t>(c);
    }
    return hash;
}

}  // namespace kestrion
