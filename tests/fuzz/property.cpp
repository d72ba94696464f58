#include "tests/fuzz/property.h"

#include <cstdlib>
#include <iostream>

namespace kestrion::fuzz {

void Require(bool holds, std::string_view property, std::string_view detail) {
    if (holds) {
        return;
    }
    std::cerr << "This doesn't hold: " << property << '\n';
    if (!detail.empty()) {
        std::cerr << "  " << detail << '\n';
    }
    std::abort();
}

}  // namespace kestrion::fuzz
