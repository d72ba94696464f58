// Scans a response byte by byte, with one byte of push-back: numbers, list separators, text tokens.
//
// All scanners return IoStatusMoreData when more of the response follows, 0 when it has ended, and
// a failure otherwise: the buffer's own, or E_UNEXPECTED for text that isn't what was asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "io/byte_set.h"
#include "io/io_buffer.h"
#include "io/status.h"

namespace kestrion {

// Takes bytes from a buffer and remembers the last one with its status.
class ByteReader {
  public:
    explicit ByteReader(IIoBuffer& buffer) : buffer_(buffer) {}

    // Gets the next byte. False if none came: the read failed or the response had nothing left.
    bool Next();
    // Gets bytes until one isn't white space or the response ends; false as above.
    bool NextNonSpace();
    // Pushes the last byte back, if there is one.
    void Unget();

    [[nodiscard]] char Byte() const { return byte_; }
    [[nodiscard]] bool More() const { return status_ == IoStatusMoreData; }
    // IoStatusMoreData, 0 or a failure.
    [[nodiscard]] HRESULT Status() const { return status_; }

  private:
    IIoBuffer& buffer_;
    HRESULT status_ = IoStatusMoreData;
    char byte_ = '\0';
    bool hasByte_ = false;
};

// Scans a decimal number into `value`: white space in front is skipped, then at most `width` bytes
// are taken (-1: no limit). Unless the width was used up, the last byte taken is pushed back, which
// is a kept digit where the number ended the response; the status is 0 all the same.
// E_UNEXPECTED without a digit, for an overflow, and for a number of more than 65536 bytes.
[[nodiscard]] HRESULT ScanReal(IIoBuffer& buffer, std::int64_t width, double& value);

// The same into a whole number of `bits` bits (8, 16, 32, 64), cut toward zero; E_UNEXPECTED out of
// range. Sign and range as ParseWhole has them.
[[nodiscard]] HRESULT ScanRealAsWhole(IIoBuffer& buffer, std::int64_t width, int bits,
                                      bool isSigned, std::int64_t& value);

// Scans a whole number of `radix` 8, 10 or 16; "0x" may stand in front in radix 16. White space in
// front is skipped. The first byte that is no digit is pushed back. Range as ParseWhole has it.
[[nodiscard]] HRESULT ScanWhole(IIoBuffer& buffer, std::int64_t width, int radix, int bits,
                                bool isSigned, std::int64_t& value);

// Scans a non-decimal number of IEEE 488.2: "#H", "#Q" or "#B" by `form`, then its digits.
// E_UNEXPECTED for anything else and for more than `bits` bits.
[[nodiscard]] HRESULT ScanBased(IIoBuffer& buffer, char form, int bits, std::uint64_t& value);

// Behind a list element: skips white space and takes one byte. `another` tells whether it was a
// separator with more behind it. A byte that is no separator is lost.
[[nodiscard]] HRESULT ScanSeparator(IIoBuffer& buffer, const ByteSet& separators, bool& another);

// What a token scan does besides taking bytes. The values are fixed; they may be added up.
using TokenFlags = std::uint32_t;
inline constexpr TokenFlags kTokenSkipSpace = 1;   // skip white space in front
inline constexpr TokenFlags kTokenDropExcess = 2;  // width used up: drop bytes up to the delimiter
inline constexpr TokenFlags kTokenTerminate = 4;   // put a zero behind the token
inline constexpr TokenFlags kTokenQuotes = 8;      // no delimiter inside quotes
inline constexpr TokenFlags kTokenStripQuotes = 16;      // with kTokenQuotes: don't store quotes
inline constexpr TokenFlags kTokenFullWidth = 32;        // the width keeps no place for the zero
inline constexpr TokenFlags kTokenTakeDelimiter = 64;    // don't push the delimiter back
inline constexpr TokenFlags kTokenStoreDelimiter = 128;  // store the delimiter with the token

struct TokenRules {
    std::int64_t width = -1;  // the most bytes of the token, -1 for no limit
    ByteSet delimiters;
    TokenFlags flags = 0;
};

// Where a token goes: nowhere, into a caller's memory or into a text that grows.
class TokenTarget {
  public:
    // Counts only.
    TokenTarget() = default;
    // `memory` has to hold what the rules' width lets through, and the zero if one is asked for.
    explicit TokenTarget(char* memory) : memory_(memory) {}
    // Appends up to `room` bytes and drops the others; no zero is put into a text.
    explicit TokenTarget(std::string& text, std::uint64_t room = UINT64_MAX)
        : text_(&text), room_(room) {}

    void Put(char c);
    void Terminate();
    // The number of bytes stored, without the zero.
    [[nodiscard]] std::uint64_t Stored() const { return stored_; }

  private:
    char* memory_ = nullptr;
    std::string* text_ = nullptr;
    std::uint64_t room_ = UINT64_MAX;
    std::uint64_t stored_ = 0;
};

// Scans one token. A width of 0 takes nothing. A delimiter that ends the token is pushed back
// unless the flags say otherwise or it was the response's last byte.
[[nodiscard]] HRESULT ScanToken(IIoBuffer& buffer, const TokenRules& rules, TokenTarget& target);

}  // namespace kestrion
