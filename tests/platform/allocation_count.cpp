#include "tests/platform/allocation_count.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

thread_local std::size_t allocations = 0;
thread_local std::size_t failing = kNone;

void* Allocate(std::size_t size) noexcept {
    if (allocations++ == failing) {
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

// The other forms of new and delete call these by the language's own rule, except that a sanitizer
// brings its own form of each: so the forms that are in use are all replaced.
void* operator new(std::size_t size) {
    if (void* memory = Allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Allocate(size);
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace kestrion::test {

std::size_t AllocationCount() {
    return allocations;
}

FailingAllocation::FailingAllocation(std::size_t count) {
    failing = allocations + count;
}

FailingAllocation::~FailingAllocation() {
    failing = kNone;
}

}  // namespace kestrion::test
