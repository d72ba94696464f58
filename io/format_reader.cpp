#include "io/format_reader.h"

#include <cstring>

#include "io/format_plan.h"
#include "io/format_read_pieces.h"
#include "io/number_parse.h"
#include "platform/text.h"

namespace kestrion {
namespace {

// A run of white space at the place `i` of `text` stands for any amount of it in the response, none
// too. Moves `i` to the last character that is done with.
HRESULT ReadWhiteSpace(ByteReader& reader, std::string_view text, std::size_t& i) {
    while (i < text.size() && IsSpace(text[i])) {
        ++i;
    }
    if (i == text.size()) {
        if (!IsSpace(reader.Byte())) {
            reader.Unget();
        }
        return reader.Status();
    }
    if (IsSpace(reader.Byte()) && reader.More() && !reader.NextNonSpace()) {
        return Failed(reader.Status()) ? reader.Status() : E_UNEXPECTED;
    }
    return reader.Byte() == text[i] ? reader.Status() : E_UNEXPECTED;
}

// Once the response has ended, the rest of the text isn't compared.
HRESULT ReadLiteral(IIoBuffer& buffer, std::string_view text) {
    ByteReader reader(buffer);
    HRESULT status = IoStatusMoreData;
    for (std::size_t i = 0; i < text.size() && status == IoStatusMoreData; ++i) {
        if (!reader.Next()) {
            return reader.Status();
        }
        if (IsSpace(text[i])) {
            status = ReadWhiteSpace(reader, text, i);
        } else {
            status = reader.Byte() == text[i] ? reader.Status() : E_UNEXPECTED;
        }
    }
    return status;
}

HRESULT ReadConversion(IIoBuffer& buffer, const FormatPiece& piece, ArgCursor& args,
                       IEnumFormatter* formatter) {
    if (Failed(piece.status)) {
        return piece.status;
    }
    FormatConversion conversion = piece.conversion;
    if (const HRESULT status = ResolveReadArguments(conversion, args); Failed(status)) {
        return status;
    }
    switch (ReadRow{piece.row}) {
        case ReadRow::kInteger:
            return ReadInteger(buffer, conversion, args);
        case ReadRow::kIntegerArray:
            return ReadIntegerArray(buffer, conversion, args);
        case ReadRow::kReal:
            return ReadReal(buffer, conversion, args);
        case ReadRow::kRealArray:
            return ReadRealArray(buffer, conversion, args);
        case ReadRow::kBlock:
            return ReadBlock(buffer, conversion, args);
        case ReadRow::kRawArray:
            return ReadRawArray(buffer, conversion, args);
        case ReadRow::kCharacters:
            return ReadCharacters(buffer, conversion, args);
        case ReadRow::kLine:
            return ReadLine(buffer, conversion, args);
        case ReadRow::kRest:
            return ReadRest(buffer, conversion, args);
        case ReadRow::kWord:
            return ReadWord(buffer, conversion, args);
        case ReadRow::kSet:
            return ReadSet(buffer, conversion, args);
        case ReadRow::kStringArray:
            return ReadStringArray(buffer, conversion, args);
        case ReadRow::kEnum:
        case ReadRow::kEnumSet:
            return ReadEnum(buffer, conversion, args, formatter);
        case ReadRow::kEnumArray:
            return ReadEnumArray(buffer, conversion, args, formatter);
        case ReadRow::kLiteral:
            break;
    }
    return E_INVALIDARG;
}

int RadixOf(char letter) {
    switch (letter) {
        case 'x':
            return 16;
        case 'o':
            return 8;
        default:
            return 10;
    }
}

bool IsDecimalForm(char form) {
    return form == '1' || form == '2' || form == '3';
}

template <typename T>
void StoreAs(void* target, T value) {
    std::memcpy(target, &value, sizeof(value));
}

void StoreWhole(void* target, FormatElement kind, std::uint64_t bits) {
    switch (kind) {
        case FormatElement::kByte:
            return StoreAs(target, static_cast<std::uint8_t>(bits));
        case FormatElement::kShort:
            return StoreAs(target, static_cast<std::uint16_t>(bits));
        case FormatElement::kInt64:
            return StoreAs(target, bits);
        default:
            return StoreAs(target, static_cast<std::uint32_t>(bits));
    }
}

// Scans one number with `scan` and stores it through the next argument.
template <typename Scan>
HRESULT ReadNumber(IIoBuffer& buffer, const FormatConversion& conversion, FormatElement kind,
                   ArgCursor& args, Scan scan) {
    std::uint64_t value = 0;  // room for any kind
    const HRESULT status = scan(buffer, conversion, &value);
    if (Failed(status) || conversion.suppress) {
        return status;
    }
    void* target = args.Next().Pointer<void>();
    if (target == nullptr) {
        return E_INVALIDARG;
    }
    std::memcpy(target, &value, FormatElementSize(kind));
    return status;
}

}  // namespace

HRESULT ScanIntegerElement(IIoBuffer& buffer, const FormatConversion& conversion, void* value) {
    const FormatElement kind = IntegerKind(conversion);
    const int bits = static_cast<int>(8 * FormatElementSize(kind));
    // A byte has no sign.
    const bool isSigned =
        kind != FormatElement::kByte && (conversion.letter == 'd' || conversion.letter == 'i');
    HRESULT status = S_OK;
    std::uint64_t whole = 0;
    if (conversion.numericForm == '\0' || IsDecimalForm(conversion.numericForm)) {
        std::int64_t number = 0;
        status = conversion.numericForm == '\0'
                     ? ScanWhole(buffer, conversion.width.value, RadixOf(conversion.letter), bits,
                                 isSigned, number)
                     : ScanRealAsWhole(buffer, conversion.width.value, bits, isSigned, number);
        whole = static_cast<std::uint64_t>(number);
    } else {
        status = ScanBased(buffer, conversion.numericForm, bits, whole);
    }
    if (!Failed(status)) {
        StoreWhole(value, kind, whole);
    }
    return status;
}

HRESULT ScanRealElement(IIoBuffer& buffer, const FormatConversion& conversion, void* value) {
    double real = 0;
    HRESULT status = S_OK;
    if (conversion.numericForm == '\0' || IsDecimalForm(conversion.numericForm)) {
        status = ScanReal(buffer, conversion.width.value, real);
    } else {
        std::uint64_t whole = 0;
        status = ScanBased(buffer, conversion.numericForm, 64, whole);
        real = static_cast<double>(whole);
    }
    if (Failed(status)) {
        return status;
    }
    if (RealKind(conversion) == FormatElement::kDouble) {
        StoreAs(value, real);
        return status;
    }
    if (!FitsSingle(real)) {
        return E_UNEXPECTED;
    }
    StoreAs(value, static_cast<float>(real));
    return status;
}

HRESULT ReadInteger(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return ReadNumber(buffer, conversion, IntegerKind(conversion), args, ScanIntegerElement);
}

HRESULT ReadReal(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return ReadNumber(buffer, conversion, RealKind(conversion), args, ScanRealElement);
}

HRESULT FormatRead(IIoBuffer& buffer, std::string_view format, ArgCursor& args,
                   IEnumFormatter* formatter) {
    const BorrowedPlan plan(format, FormatDirection::kRead);
    if (Failed(plan->Status()) || plan->Pieces().empty()) {
        return plan->Status();
    }
    HRESULT status = IoStatusMoreData;
    for (const FormatPiece& piece : plan->Pieces()) {
        status = ReadRow{piece.row} == ReadRow::kLiteral
                     ? ReadLiteral(buffer, piece.text)
                     : ReadConversion(buffer, piece, args, formatter);
        if (status != IoStatusMoreData) {
            break;
        }
    }
    return status;
}

}  // namespace kestrion
