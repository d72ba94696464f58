#include "scope/curve_block.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "kestrion/platform/error_info.h"

namespace kestrion {
namespace {

constexpr std::int32_t kLockTimeout = 1000;  // milliseconds

// The digit of a block header, which is read as a hexadecimal one; anything else counts as none.
std::uint32_t HeaderDigit(std::uint8_t byte) {
    std::uint32_t digit = 0;
    const auto text = static_cast<char>(byte);
    (void)std::from_chars(&text, &text + 1, digit, 16);
    return digit;
}

}  // namespace

void CurveBlock::Lock() {
    locked_ = Succeeded(call_.Session().Lock(IoLockType::kExclusive, kLockTimeout, "", nullptr));
    if (!locked_) {
        (void)SetErrorInfo(0, nullptr);
    }
}

void CurveBlock::Unlock() {
    if (locked_) {
        (void)call_.Session().Unlock();
    }
    locked_ = false;
}

HRESULT CurveBlock::ReadLength() {
    // Not followed by a look at the status: that would be a new query in front of the response.
    HRESULT status = call_.Session().WriteStringNoPoll(std::string_view("CURVE?"), true);
    std::array<std::uint8_t, 256> header{};
    std::uint32_t actual = 0;
    if (Succeeded(status)) {
        status = call_.Session().ReadRaw(header.data(), 2, &actual);
    }
    if (Failed(status)) {
        return status;
    }
    const std::uint32_t digits = actual == 2 ? HeaderDigit(header[1]) : 0;
    actual = 0;
    if (digits > 0) {
        status = call_.Session().ReadRaw(header.data(), digits, &actual);
    }
    const auto* text = reinterpret_cast<const char*>(header.data());
    (void)std::from_chars(text, text + actual, length_);
    return status;
}

void CurveBlock::ReadHeader() {
    if (steps_.Good()) {
        steps_.SetStatus(ReadLength());
    }
}

bool CurveBlock::Allocate() {
    if (length_ >= std::numeric_limits<std::uint32_t>::max()) {
        return false;
    }
    block_ = Storage(length_ + 1);
    return static_cast<bool>(block_);
}

bool CurveBlock::Unexpected(const char* what) {
    steps_.SetStatus(call_.Errors().ReportUnexpectedResponse(what));
    return false;
}

void CurveBlock::DiscardData() {
    std::array<std::uint8_t, 4096> part{};
    for (std::uint64_t left = length_ + 1; left > 0;) {
        const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(left, part.size()));
        std::uint32_t actual = 0;
        if (Failed(call_.Session().ReadRaw(part.data(), wanted, &actual))) {
            (void)SetErrorInfo(0, nullptr);
            return;
        }
        left = actual < wanted ? 0 : left - actual;
    }
    (void)call_.Session().EndResponse();
}

bool CurveBlock::ReadData() {
    const auto wanted = static_cast<std::uint32_t>(length_ + 1);
    std::uint32_t actual = 0;
    steps_.SetStatus(call_.Session().ReadRaw(block_.Data(), wanted, &actual));
    if (!steps_.Good()) {
        return false;
    }
    if (actual < length_) {
        return Unexpected("The waveform block is shorter than announced.");
    }
    if (actual == wanted && block_.Data()[length_] != '\n') {
        return Unexpected("The waveform block is longer than announced.");
    }
    // A raw socket can't tell that nothing follows.
    (void)call_.Session().EndResponse();
    return true;
}

}  // namespace kestrion
