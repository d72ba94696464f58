#include "virtual/server/fault_injector.h"

#include <algorithm>
#include <string>

#include "virtual/server/block_header.h"

namespace virtual_scope {

void FaultInjector::Apply(std::vector<std::byte>& piece, bool end) {
    if (first_) {
        BendHeader(piece);
        first_ = false;
    }
    if (end && holdsBlock_) {
        piece.insert(piece.end() - 1, plan_.surplusBytes, std::byte{'x'});
    }
    if (plan_.silent) {
        piece.clear();
    }
    if (plan_.cutAfter && passed_ + piece.size() > *plan_.cutAfter) {
        piece.resize(*plan_.cutAfter - passed_);
        cut_ = true;
    }
    passed_ += piece.size();
}

void FaultInjector::BendHeader(std::vector<std::byte>& piece) {
    const auto header = FindBlockHeader(piece);
    holdsBlock_ = header.has_value();
    if (!header || plan_.lengthError == 0) {
        return;
    }
    const std::int64_t length =
        std::max<std::int64_t>(0, static_cast<std::int64_t>(header->length) + plan_.lengthError);
    const std::string digits = std::to_string(length);
    std::string bent = "#";
    bent += std::to_string(digits.size());
    bent += digits;
    const auto begin = piece.begin() + static_cast<std::ptrdiff_t>(header->begin);
    const auto rest = piece.erase(begin, begin + static_cast<std::ptrdiff_t>(header->size));
    const auto* bytes = reinterpret_cast<const std::byte*>(bent.data());
    piece.insert(rest, bytes, bytes + bent.size());
}

}  // namespace virtual_scope
