// Bytes that are made while they are read.
#pragma once

#include <cstddef>
#include <span>

namespace virtual_scope {

class ByteSource {
  public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    // Fills as much of `target` as there are bytes left and returns how many that were: fewer than
    // asked for only at the end. The bytes don't depend on how the reads are cut.
    virtual std::size_t Read(std::span<std::byte> target) = 0;

    [[nodiscard]] virtual bool AtEnd() const = 0;
};

}  // namespace virtual_scope
