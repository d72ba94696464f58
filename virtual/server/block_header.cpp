#include "virtual/server/block_header.h"

#include <charconv>
#include <string_view>

namespace virtual_scope {
namespace {

std::optional<BlockHeader> ReadHeader(std::string_view text, std::size_t begin) {
    if (begin + 1 >= text.size() || text[begin + 1] < '1' || text[begin + 1] > '9') {
        return std::nullopt;
    }
    const auto digits = static_cast<std::size_t>(text[begin + 1] - '0');
    const std::string_view number = text.substr(begin + 2, digits);
    BlockHeader header = {.begin = begin, .size = digits + 2};
    const char* end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, header.length);
    if (number.size() != digits || error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return header;
}

}  // namespace

std::optional<BlockHeader> FindBlockHeader(std::span<const std::byte> piece) {
    const std::string_view text(reinterpret_cast<const char*>(piece.data()), piece.size());
    std::size_t at = text.find_first_of("#\"'");
    while (at != std::string_view::npos) {
        if (text[at] == '#') {
            if (const auto header = ReadHeader(text, at)) {
                return header;
            }
        } else {
            at = text.find(text[at], at + 1);
            if (at == std::string_view::npos) {
                break;
            }
        }
        at = text.find_first_of("#\"'", at + 1);
    }
    return std::nullopt;
}

}  // namespace virtual_scope
