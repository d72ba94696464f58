// Counts the heap allocations of the calling thread, for code that promises to make none, and lets
// one of them fail.
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

// Lets one allocation of this thread fail, for its life time: the one behind `count` others.
class FailingAllocation {
  public:
    explicit FailingAllocation(std::size_t count);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();
};

}  // namespace kestrion::test
