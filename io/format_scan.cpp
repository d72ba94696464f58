#include "io/format_scan.h"

#include "io/number_parse.h"
#include "platform/text.h"

namespace kestrion {
namespace {

// The bytes of a number. Usual ones need no heap, and no instrument can make it grow for ever.
class NumberBytes {
  public:
    void Add(char c) {
        if (size_ < first_.size()) {
            first_[size_] = c;
        } else if (size_ <= kMost) {
            if (size_ == first_.size()) {
                more_.assign(first_.data(), first_.size());
            }
            more_ += c;
        }
        ++size_;
    }
    [[nodiscard]] bool TooLong() const { return size_ > kMost; }
    [[nodiscard]] std::int64_t Size() const { return static_cast<std::int64_t>(size_); }
    [[nodiscard]] std::string_view View() const {
        return size_ <= first_.size() ? std::string_view(first_.data(), size_)
                                      : std::string_view(more_);
    }

  private:
    static constexpr std::size_t kMost = 65536;

    std::array<char, 100> first_;
    std::string more_;
    std::size_t size_ = 0;
};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Follows a decimal number byte by byte.
class RealSyntax {
  public:
    enum class Verdict { kKeep, kSkip, kStop };

    Verdict Take(char c) {
        switch (c) {
            case '+':
            case '-':
                if (state_ == State::kNothing) {
                    return Keep(State::kMantissa);
                }
                return state_ == State::kExponentLetter ? Keep(State::kExponent) : Verdict::kStop;
            case '.':
                return state_ == State::kNothing || state_ == State::kMantissa
                           ? Keep(State::kFraction)
                           : Verdict::kStop;
            case 'e':
            case 'E':
                return state_ == State::kMantissa || state_ == State::kFraction
                           ? Keep(State::kExponentLetter)
                           : Verdict::kStop;
            default:
                return TakeOther(c);
        }
    }

  private:
    enum class State { kNothing, kMantissa, kFraction, kExponentLetter, kExponent };

    Verdict TakeOther(char c) {
        if (state_ == State::kNothing && IsSpace(c)) {
            return Verdict::kSkip;
        }
        if (!IsDigit(c)) {
            return Verdict::kStop;
        }
        return Keep(state_ == State::kNothing          ? State::kMantissa
                    : state_ == State::kExponentLetter ? State::kExponent
                                                       : state_);
    }
    Verdict Keep(State next) {
        state_ = next;
        return Verdict::kKeep;
    }

    State state_ = State::kNothing;
};

HRESULT ScanRealBytes(IIoBuffer& buffer, std::int64_t width, NumberBytes& number) {
    ByteReader reader(buffer);
    RealSyntax syntax;
    while (number.Size() != width && reader.More() && reader.Next()) {
        const RealSyntax::Verdict verdict = syntax.Take(reader.Byte());
        if (verdict == RealSyntax::Verdict::kStop) {
            break;
        }
        if (verdict == RealSyntax::Verdict::kKeep) {
            number.Add(reader.Byte());
        }
    }
    if (number.Size() != width) {
        reader.Unget();
    }
    if (!Failed(reader.Status()) && number.TooLong()) {
        return E_UNEXPECTED;
    }
    return reader.Status();
}

// The buffer's failure if it had one.
HRESULT FailureOr(const ByteReader& reader, HRESULT otherwise) {
    return Failed(reader.Status()) ? reader.Status() : otherwise;
}

// Keeps the digits of `radix` that follow the last byte, which was kept, up to the width.
void ScanDigits(ByteReader& reader, std::int64_t width, int radix, NumberBytes& number) {
    while (number.Size() != width && reader.More() && reader.Next()) {
        if (!IsDigitOf(reader.Byte(), radix)) {
            reader.Unget();
            return;
        }
        number.Add(reader.Byte());
    }
}

// Gets a byte that has to be a digit of `radix`, and keeps it.
bool KeepDigit(ByteReader& reader, int radix, NumberBytes& number) {
    if (!reader.More() || !reader.Next() || !IsDigitOf(reader.Byte(), radix)) {
        return false;
    }
    number.Add(reader.Byte());
    return true;
}

HRESULT ScanWholeBytes(IIoBuffer& buffer, std::int64_t width, int radix, NumberBytes& number) {
    ByteReader reader(buffer);
    if (!reader.NextNonSpace()) {
        return FailureOr(reader, E_UNEXPECTED);
    }
    const bool sign = reader.Byte() == '+' || reader.Byte() == '-';
    if (!sign && !IsDigitOf(reader.Byte(), radix)) {
        reader.Unget();
        return FailureOr(reader, E_UNEXPECTED);
    }
    number.Add(reader.Byte());
    if (sign && (width == 1 || !KeepDigit(reader, radix, number))) {
        return FailureOr(reader, E_UNEXPECTED);
    }
    if (radix == 16 && reader.Byte() == '0' && number.Size() != width && reader.More() &&
        reader.Next()) {
        if (reader.Byte() == 'x') {
            number.Add('x');
            if (number.Size() == width || !KeepDigit(reader, radix, number)) {
                return FailureOr(reader, E_UNEXPECTED);
            }
        } else if (IsDigitOf(reader.Byte(), radix)) {
            number.Add(reader.Byte());
        } else {
            reader.Unget();
            return reader.Status();
        }
    }
    ScanDigits(reader, width, radix, number);
    return FailureOr(reader, number.TooLong() ? E_UNEXPECTED : reader.Status());
}

// Follows single and double quotes; inside one kind the other is plain text.
class QuoteTracker {
  public:
    [[nodiscard]] bool Inside() const { return open_ != '\0'; }
    // Tells whether `c` opened or closed a quote.
    bool Take(char c) {
        if ((c != '"' && c != '\'') || (Inside() && open_ != c)) {
            return false;
        }
        open_ = Inside() ? '\0' : c;
        return true;
    }

  private:
    char open_ = '\0';
};

// Behind a token that used its width up: drops bytes up to the delimiter, and behind a blank as the
// one delimiter all white space.
HRESULT DropExcess(ByteReader& reader, const TokenRules& rules) {
    do {
        if (!reader.Next()) {
            return reader.Status();
        }
    } while (reader.More() && !rules.delimiters.Has(reader.Byte()));
    if (reader.More() && rules.delimiters == ByteSet(" ") && reader.NextNonSpace() &&
        (rules.flags & kTokenTakeDelimiter) == 0) {
        reader.Unget();
    }
    return reader.Status();
}

}  // namespace

bool ByteReader::Next() {
    BYTE byte = 0;
    status_ = buffer_.GetByte(&byte);
    byte_ = static_cast<char>(byte);
    hasByte_ = status_ == IoStatusMoreData || status_ == S_OK;
    if (!hasByte_ && !Failed(status_)) {
        status_ = S_OK;  // the response ended without a byte
    }
    return hasByte_;
}

bool ByteReader::NextNonSpace() {
    do {
        if (!Next()) {
            return false;
        }
        if (!IsSpace(byte_)) {
            return true;
        }
    } while (More());
    return false;
}

void ByteReader::Unget() {
    if (!hasByte_) {
        return;
    }
    hasByte_ = false;
    if (const HRESULT status = buffer_.UngetByte(); Failed(status)) {
        status_ = status;
    }
}

HRESULT ScanReal(IIoBuffer& buffer, std::int64_t width, double& value) {
    NumberBytes number;
    const HRESULT status = ScanRealBytes(buffer, width, number);
    if (Failed(status)) {
        return status;
    }
    return ParseReal(number.View(), value) ? status : E_UNEXPECTED;
}

HRESULT ScanRealAsWhole(IIoBuffer& buffer, std::int64_t width, int bits, bool isSigned,
                        std::int64_t& value) {
    NumberBytes number;
    const HRESULT status = ScanRealBytes(buffer, width, number);
    if (Failed(status)) {
        return status;
    }
    // Digits alone needn't go through a double, which would round the large ones.
    if (number.View().find_first_of(".eE") == std::string_view::npos) {
        return ParseWhole(number.View(), 10, bits, isSigned, value) ? status : E_UNEXPECTED;
    }
    double real = 0;
    return ParseReal(number.View(), real) && CutToWhole(real, bits, isSigned, value) ? status
                                                                                     : E_UNEXPECTED;
}

HRESULT ScanWhole(IIoBuffer& buffer, std::int64_t width, int radix, int bits, bool isSigned,
                  std::int64_t& value) {
    NumberBytes number;
    const HRESULT status = ScanWholeBytes(buffer, width, radix, number);
    if (Failed(status)) {
        return status;
    }
    return ParseWhole(number.View(), radix, bits, isSigned, value) ? status : E_UNEXPECTED;
}

HRESULT ScanBased(IIoBuffer& buffer, char form, int bits, std::uint64_t& value) {
    const int shift = form == 'H' ? 4 : form == 'Q' ? 3 : form == 'B' ? 1 : 0;
    if (shift == 0) {
        return E_UNEXPECTED;
    }
    ByteReader reader(buffer);
    if (!reader.NextNonSpace() || reader.Byte() != '#' || !reader.More() || !reader.Next() ||
        reader.Byte() != form) {
        return FailureOr(reader, E_UNEXPECTED);
    }
    const std::uint64_t largest = ~std::uint64_t{0} >> (64 - bits);
    value = 0;
    bool digits = false;
    bool fits = true;
    while (reader.More() && reader.Next()) {
        const char c = reader.Byte();
        if (!IsDigitOf(c, 1 << shift)) {
            reader.Unget();
            break;
        }
        const unsigned digit = IsDigit(c) ? static_cast<unsigned>(c - '0')
                                          : static_cast<unsigned>(ToLowerAscii(c) - 'a') + 10U;
        fits = fits && value <= largest >> shift;
        value = value << shift | digit;
        fits = fits && value <= largest;
        digits = true;
    }
    return FailureOr(reader, digits && fits ? reader.Status() : E_UNEXPECTED);
}

HRESULT ScanSeparator(IIoBuffer& buffer, const ByteSet& separators, bool& another) {
    ByteReader reader(buffer);
    another = reader.NextNonSpace() && separators.Has(reader.Byte()) && reader.More();
    return reader.Status();
}

void TokenTarget::Put(char c) {
    if (stored_ == room_) {
        return;
    }
    if (memory_ != nullptr) {
        memory_[stored_] = c;
    } else if (text_ != nullptr) {
        *text_ += c;
    }
    ++stored_;
}

void TokenTarget::Terminate() {
    if (memory_ != nullptr) {
        memory_[stored_] = '\0';
    }
}

HRESULT ScanToken(IIoBuffer& buffer, const TokenRules& rules, TokenTarget& target) {
    const auto has = [&rules](TokenFlags flag) { return (rules.flags & flag) != 0; };
    ByteReader reader(buffer);
    QuoteTracker quotes;
    bool leading = has(kTokenSkipSpace);
    bool stopped = false;
    for (std::int64_t count = 0; count != rules.width && reader.More() && reader.Next();) {
        const char c = reader.Byte();
        if (leading && IsSpace(c)) {
            continue;
        }
        leading = false;
        if (!quotes.Inside() && rules.delimiters.Has(c)) {
            stopped = true;
            break;
        }
        const bool quote = has(kTokenQuotes) && quotes.Take(c);
        if (!quote || !has(kTokenStripQuotes)) {
            target.Put(c);
        }
        ++count;
    }
    if (Failed(reader.Status())) {
        return reader.Status();
    }
    if (stopped && has(kTokenStoreDelimiter)) {
        target.Put(reader.Byte());
    }
    if (has(kTokenTerminate)) {
        target.Terminate();
    }
    if (!reader.More() || rules.width == 0) {
        return reader.Status();
    }
    if (stopped) {
        if (!has(kTokenStoreDelimiter) && !has(kTokenTakeDelimiter)) {
            reader.Unget();
        }
        return reader.Status();
    }
    return has(kTokenDropExcess) ? DropExcess(reader, rules) : reader.Status();
}

}  // namespace kestrion
