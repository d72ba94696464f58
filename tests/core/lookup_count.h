// Counts the look-ups in the driver's hash maps, for code that promises how many it makes.
#pragma once

#include <cstddef>

namespace kestrion::test {

// Look-ups by text that this thread has made so far. The program has to be linked by
// kestrion_count_lookups().
[[nodiscard]] std::size_t LookupCount();

}  // namespace kestrion::test
