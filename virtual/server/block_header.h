// The header of a definite length block (IEEE 488.2, 8.7.9) in a piece of a message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace virtual_scope {

struct BlockHeader {
    std::size_t begin = 0;     // where it stands in the piece
    std::size_t size = 0;      // of the header itself
    std::uint64_t length = 0;  // of the data, as announced
};

// The first whole header in the piece that stands outside of strings.
[[nodiscard]] std::optional<BlockHeader> FindBlockHeader(std::span<const std::byte> piece);

}  // namespace virtual_scope
