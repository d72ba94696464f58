#include "tests/tables/lookup_steps.h"

#include <cstdint>
#include <string_view>

namespace {

thread_local kestrion::test::LookupSteps steps;

}  // namespace

// The linker leads every call of the functions of IgnoreCaseHashTraits here, and the calls of the
// other names to the functions themselves.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
std::uint32_t
__real__ZN8kestrion20IgnoreCaseHashTraits4HashESt17basic_string_viewIcSt11char_traitsIcEE(
    std::string_view text);
bool __real__ZN8kestrion20IgnoreCaseHashTraits6EqualsESt17basic_string_viewIcSt11char_traitsIcEES4_(
    std::string_view a, std::string_view b);

std::uint32_t
__wrap__ZN8kestrion20IgnoreCaseHashTraits4HashESt17basic_string_viewIcSt11char_traitsIcEE(
    std::string_view text) {
    ++steps.hashes;
    return __real__ZN8kestrion20IgnoreCaseHashTraits4HashESt17basic_string_viewIcSt11char_traitsIcEE(
        text);
}

bool __wrap__ZN8kestrion20IgnoreCaseHashTraits6EqualsESt17basic_string_viewIcSt11char_traitsIcEES4_(
    std::string_view a, std::string_view b) {
    ++steps.comparisons;
    return __real__ZN8kestrion20IgnoreCaseHashTraits6EqualsESt17basic_string_viewIcSt11char_traitsIcEES4_(
        a, b);
}
// NOLINTEND(bugprone-reserved-identifier)
}

namespace kestrion::test {

LookupSteps TakenSteps() {
    return steps;
}

}  // namespace kestrion::test
