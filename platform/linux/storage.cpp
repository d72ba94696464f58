#include "platform/storage.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>
#include <limits>

namespace kestrion {
namespace {

// Of a large page on the processors that this runs on. Storage begins and ends on its boundaries,
// so that no part is left to small pages.
constexpr std::size_t kLargePage = std::size_t{2} << 20;

std::size_t InLargePages(std::size_t bytes) {
    return (bytes + kLargePage - 1) / kLargePage * kLargePage;
}

void* Map(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::size_t>::max() - 2 * kLargePage) {
        return nullptr;
    }
    const std::size_t size = InLargePages(bytes);
    void* const mapped = mmap(nullptr, size + kLargePage, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
        return nullptr;
    }
    auto* const begin = static_cast<std::uint8_t*>(mapped);
    const std::size_t before = InLargePages(reinterpret_cast<std::uintptr_t>(begin)) -
                               reinterpret_cast<std::uintptr_t>(begin);
    const std::size_t after = kLargePage - before;
    if (before > 0) {
        (void)munmap(begin, before);
    }
    if (after > 0) {
        (void)munmap(begin + before + size, after);
    }
    // A system without large pages goes on with small ones.
    (void)madvise(begin + before, size, MADV_HUGEPAGE);
    return begin + before;
}

}  // namespace

void* AllocateStorage(std::size_t bytes, Content content) {
    if (bytes >= kLargeStorage) {
        return Map(bytes);  // the system's pages are zero
    }
    const std::size_t size = bytes == 0 ? 1 : bytes;
    return content == Content::kZero ? std::calloc(size, 1) : std::malloc(size);
}

void FreeStorage(void* storage, std::size_t bytes) {
    if (bytes < kLargeStorage) {
        std::free(storage);
    } else if (storage != nullptr) {
        (void)munmap(storage, InLargePages(bytes));
    }
}

}  // namespace kestrion
