#include "tests/core/lookup_count.h"

#include <cstdint>
#include <string_view>

namespace {

thread_local std::size_t lookups = 0;

}  // namespace

// The linker leads every call of TextHashTraits::Hash here, and the call of the second name to the
// function itself.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
std::uint32_t __real__ZN8kestrion14TextHashTraits4HashESt17basic_string_viewIcSt11char_traitsIcEE(
    std::string_view text);

std::uint32_t __wrap__ZN8kestrion14TextHashTraits4HashESt17basic_string_viewIcSt11char_traitsIcEE(
    std::string_view text) {
    ++lookups;
    return __real__ZN8kestrion14TextHashTraits4HashESt17basic_string_viewIcSt11char_traitsIcEE(
        text);
}
// NOLINTEND(bugprone-reserved-identifier)
}

namespace kestrion::test {

std::size_t LookupCount() {
    return lookups;
}

}  // namespace kestrion::test
