// Memory for records: one piece each, written as a whole and given back as a whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "kestrion/platform/safe_array.h"

namespace kestrion {

// From this many bytes on, storage comes from the system by itself, in large pages where the system
// has them; below, from the heap. It is the size from which the heap would fetch fresh pages for
// each piece anyway (the largest M_MMAP_THRESHOLD that mallopt(3) lets grow by itself). With small
// pages, the faults of a fresh piece cost several times what filling it does.
inline constexpr std::size_t kLargeStorage = std::size_t{32} << 20;

enum class Content { kUndefined, kZero };

// Null without memory; never null for 0 bytes. Any thread.
[[nodiscard]] void* AllocateStorage(std::size_t bytes, Content content);
// `bytes` as it was allocated with. Null is accepted.
void FreeStorage(void* storage, std::size_t bytes);

// Owns bytes.
class Storage {
  public:
    Storage() = default;
    // Of undefined content; empty without memory.
    explicit Storage(std::size_t bytes)
        : bytes_(static_cast<std::uint8_t*>(AllocateStorage(bytes, Content::kUndefined))),
          size_(bytes) {}
    Storage(Storage&& other) noexcept
        : bytes_(std::exchange(other.bytes_, nullptr)), size_(std::exchange(other.size_, 0)) {}
    Storage& operator=(Storage&& other) noexcept {
        std::swap(bytes_, other.bytes_);
        std::swap(size_, other.size_);
        return *this;
    }
    ~Storage() { FreeStorage(bytes_, size_); }

    explicit operator bool() const { return bytes_ != nullptr; }
    [[nodiscard]] std::uint8_t* Data() const { return bytes_; }
    [[nodiscard]] std::size_t Size() const { return size_; }

  private:
    std::uint8_t* bytes_ = nullptr;
    std::size_t size_ = 0;
};

// A vector of numbers from index 0, of undefined content: for whoever writes all of it. Null for a
// kind that isn't a number, or without memory. The caller owns it.
[[nodiscard]] SAFEARRAY* CreateVectorToFill(VARTYPE type, ULONG elements);

}  // namespace kestrion
