#include <sys/mman.h>

#include <memory>
#include <new>

#include "bench/volts.h"

namespace bench {
namespace {

constexpr std::size_t kHugePage = std::size_t{2} << 20;

}  // namespace

HugeMemory::HugeMemory(std::size_t bytes)
    : mapping_(mmap(nullptr, bytes + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS,
                    -1, 0)),
      size_(bytes + kHugePage) {
    if (mapping_ == MAP_FAILED) {
        throw std::bad_alloc();
    }
    start_ = mapping_;
    std::size_t room = size_;
    (void)std::align(kHugePage, bytes, start_, room);
    madvise(start_, bytes, MADV_HUGEPAGE);
}

HugeMemory::~HugeMemory() {
    munmap(mapping_, size_);
}

}  // namespace bench
