// Counts the heap allocations of the calling thread, for code that promises to make none.
#pragma once

#include <cstddef>

namespace kestrion::test {

// Allocations made by this thread so far.
[[nodiscard]] std::size_t AllocationCount();

// How many allocations `code` makes.
template <typename Code>
[[nodiscard]] std::size_t CountAllocations(Code code) {
    const std::size_t before = AllocationCount();
    code();
    return AllocationCount() - before;
}

}  // namespace kestrion::test
