#include "io/format_spec.h"

#include <cstdlib>
#include <limits>

#include "io/byte_set.h"
#include "platform/text.h"

namespace kestrion {
namespace {

constexpr ByteSet kNumberLetters("diouxfeEgG");
constexpr ByteSet kNumberLengths("lhbIL");
constexpr ByteSet kBlockLetters("bBy");
constexpr ByteSet kBlockLengths("hlIzZ");

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

// Reads the elements of one piece from the front. The piece has matched a row, so each element
// stands where it may, and only what is there has to be looked at.
class SpecParser {
  public:
    SpecParser(std::string_view piece, FormatDirection direction, FormatConversion& conversion)
        : text_(piece), direction_(direction), to_(conversion) {}

    HRESULT Parse() {
        text_.remove_prefix(1);
        to_.letter = text_.back() == ']' ? '[' : text_.back();
        if (to_.letter != '[' && text_.size() > 1) {
            // A modifier is known by its place alone; no other element ends in one of these letters
            // without a bracket, a blank or a digit behind it.
            const char c = text_[text_.size() - 2];
            to_.length = ModifierAt(c) ? c : '\0';
        }
        ParseEnumName();
        ParseFlags();
        ParseNumericForm();
        HRESULT status = ParseNumber(to_.width, true);
        if (Succeeded(status) && Take('.')) {
            status = ParseNumber(to_.precision, false);
        }
        if (Succeeded(status) && ParseSeparators()) {
            status = ParseNumber(to_.count, false);
        }
        ParseKinds();
        return status;
    }

  private:
    bool ModifierAt(char c) const {
        if (kNumberLetters.Has(to_.letter)) {
            return kNumberLengths.Has(c);
        }
        return kBlockLetters.Has(to_.letter) && kBlockLengths.Has(c) && !EndsInByteOrder();
    }
    // The l of `!ol` isn't a length.
    bool EndsInByteOrder() const { return text_.substr(0, text_.size() - 1).ends_with("!ol"); }

    char Front() const { return text_.empty() ? '\0' : text_.front(); }
    void SkipBlanks() {
        while (IsBlank(Front())) {
            text_.remove_prefix(1);
        }
    }
    bool Take(char c) {
        const bool there = Front() == c;
        text_.remove_prefix(there ? 1 : 0);
        return there;
    }

    void ParseEnumName() {
        const std::size_t from = text_.find_first_not_of(" \t");
        if (text_[from] != '{') {
            return;
        }
        const std::size_t close = text_.find('}');
        to_.enumName = Trim(text_.substr(from + 1, close - from - 1));
        text_.remove_prefix(close + 1);
        SkipBlanks();
    }

    void ParseFlags() {
        if (direction_ == FormatDirection::kRead) {
            SkipBlanks();
            to_.suppress = Take('*');
            SkipBlanks();
            return;
        }
        const bool number = kNumberLetters.Has(to_.letter);
        for (;; text_.remove_prefix(1)) {
            switch (Front()) {
                case '-':
                    to_.leftAlign = true;
                    break;
                case '+':
                    to_.plusSign = true;
                    break;
                case ' ':
                    to_.blankSign = true;
                    break;
                case '\t':
                    break;
                case '0':
                    if (!number) {
                        return;  // the width of a text or the count of a block
                    }
                    to_.zeroFill = true;
                    break;
                default:
                    return;
            }
        }
    }

    void ParseNumericForm() {
        if (Take('@')) {
            to_.numericForm = Front();
            text_.remove_prefix(1);
            SkipBlanks();
        }
    }

    // Digits, or the sign that the value is an argument.
    HRESULT ParseNumber(SpecNumber& number, bool zerosFill) {
        std::int64_t value = 0;
        const bool leadingZero = Front() == '0';
        bool digits = false;
        HRESULT status = S_OK;
        for (; IsDigit(Front()); text_.remove_prefix(1)) {
            digits = true;
            value = value * 10 + (Front() - '0');
            if (value > std::numeric_limits<std::int32_t>::max()) {
                value = std::numeric_limits<std::int32_t>::max();
                status = E_INVALIDARG;
            }
        }
        if (Take(direction_ == FormatDirection::kWrite ? '*' : '#')) {
            number.source = NumberSource::kArguments;
        } else if (digits) {
            number = {NumberSource::kSpec, value};
        }
        to_.zeroFill = to_.zeroFill || (zerosFill && leadingZero);
        SkipBlanks();
        return status;
    }

    bool ParseSeparators() {
        if (Front() == ',') {
            to_.separators = text_.substr(0, 1);
            text_.remove_prefix(1);
        } else if (Front() == '(') {
            const std::size_t close = text_.find(')');
            to_.separators = text_.substr(1, close - 1);
            text_.remove_prefix(close + 1);
        } else {
            return false;
        }
        SkipBlanks();
        return true;
    }

    void ParseKinds() {
        if (Take('!')) {
            to_.littleEndian = text_.starts_with("ol");
            text_.remove_prefix(2);
            SkipBlanks();
        }
        while (Take('$')) {
            if (Front() == 'S') {
                to_.variantArray = true;
            } else {
                to_.textKind = Front();
            }
            text_.remove_prefix(1);
            SkipBlanks();
        }
        if (to_.letter == 's' && (Front() == 'q' || Front() == 'Q')) {
            to_.quote = Front();
        }
        if (to_.letter == '[') {
            to_.set = text_.substr(1, text_.size() - 2);
        }
    }

    std::string_view text_;
    FormatDirection direction_;
    FormatConversion& to_;
};

std::int32_t TakeInt32(ArgCursor& args) {
    return static_cast<std::int32_t>(args.Next().Integer());
}

}  // namespace

HRESULT ParseConversion(std::string_view piece, FormatDirection direction,
                        FormatConversion& conversion) {
    conversion = {};
    return SpecParser(piece, direction, conversion).Parse();
}

void ResolveWriteArguments(FormatConversion& conversion, ArgCursor& args) {
    const bool isBlock = kBlockLetters.Has(conversion.letter);
    if (conversion.width.source == NumberSource::kArguments && isBlock) {
        conversion.width.value = TakeInt32(args);  // a count
    } else if (conversion.width.source == NumberSource::kArguments) {
        const std::int64_t width = TakeInt32(args);
        conversion.leftAlign = conversion.leftAlign || width < 0;
        conversion.width.value = std::abs(width);
    }
    if (conversion.precision.source == NumberSource::kArguments) {
        const std::int64_t precision = TakeInt32(args);
        conversion.precision.value = precision < 0 ? -1 : precision;
    }
    if (conversion.count.source == NumberSource::kArguments) {
        conversion.count.value = TakeInt32(args);
    }
}

HRESULT ResolveReadArguments(FormatConversion& conversion, ArgCursor& args) {
    for (SpecNumber* number : {&conversion.width, &conversion.count}) {
        if (number->source != NumberSource::kArguments) {
            continue;
        }
        conversion.actualCount = args.Next().Pointer<std::int32_t>();
        if (conversion.actualCount == nullptr) {
            return E_INVALIDARG;
        }
        conversion.countFromArguments = true;
        number->value = *conversion.actualCount;
    }
    if (conversion.width.value < 1) {
        conversion.width.value = -1;
    }
    return S_OK;
}

char SeparatorByte(char letter) {
    switch (letter) {
        case 's':
            return ' ';
        case 't':
            return '\t';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        default:
            return letter;
    }
}

FormatElement IntegerKind(const FormatConversion& conversion) {
    switch (conversion.length) {
        case 'b':
            return FormatElement::kByte;
        case 'h':
            return FormatElement::kShort;
        case 'I':
            return FormatElement::kInt64;
        default:
            return FormatElement::kLong;
    }
}

FormatElement RealKind(const FormatConversion& conversion) {
    return conversion.length == '\0' ? FormatElement::kSingle : FormatElement::kDouble;
}

FormatElement BlockKind(const FormatConversion& conversion) {
    switch (conversion.length) {
        case 'h':
            return FormatElement::kShort;
        case 'l':
            return FormatElement::kLong;
        case 'I':
            return FormatElement::kInt64;
        case 'z':
            return FormatElement::kSingle;
        case 'Z':
            return FormatElement::kDouble;
        default:
            return FormatElement::kByte;
    }
}

std::size_t FormatElementSize(FormatElement kind) {
    switch (kind) {
        case FormatElement::kByte:
            return 1;
        case FormatElement::kShort:
            return 2;
        case FormatElement::kLong:
        case FormatElement::kSingle:
            return 4;
        case FormatElement::kInt64:
        case FormatElement::kDouble:
            return 8;
        case FormatElement::kText:
            return sizeof(void*);
    }
    return 1;
}

VARTYPE FormatElementVartype(FormatElement kind) {
    switch (kind) {
        case FormatElement::kByte:
            return VT_UI1;
        case FormatElement::kShort:
            return VT_I2;
        case FormatElement::kLong:
            return VT_I4;
        case FormatElement::kInt64:
            return VT_I8;
        case FormatElement::kSingle:
            return VT_R4;
        case FormatElement::kDouble:
            return VT_R8;
        case FormatElement::kText:
            return VT_BSTR;
    }
    return VT_EMPTY;
}

bool FormatElementFits(FormatElement kind, VARTYPE type) {
    switch (kind) {
        case FormatElement::kByte:
            return type == VT_UI1 || type == VT_I1;
        case FormatElement::kShort:
            return type == VT_I2 || type == VT_UI2 || type == VT_BOOL;
        case FormatElement::kLong:
            return type == VT_I4 || type == VT_UI4;
        case FormatElement::kInt64:
            return type == VT_I8 || type == VT_UI8;
        case FormatElement::kSingle:
        case FormatElement::kDouble:
        case FormatElement::kText:
            return type == FormatElementVartype(kind);
    }
    return false;
}

}  // namespace kestrion
