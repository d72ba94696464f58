#include <cstdint>

#include "io/format_array.h"
#include "io/format_write_pieces.h"
#include "io/number_forms.h"

namespace kestrion {
namespace {

// An integer of the conversion's size, with the sign that its letter shows.
struct IntegerValue {
    bool isSigned = true;
    std::int64_t value = 0;  // the bits of an unsigned value

    [[nodiscard]] double ToReal() const {
        return isSigned ? static_cast<double>(value)
                        : static_cast<double>(static_cast<std::uint64_t>(value));
    }
};

// `bits` holds the value in its low bytes. 8-bit values have no sign.
IntegerValue CutToSize(std::int64_t bits, const FormatConversion& conversion) {
    const bool isSigned = conversion.letter == 'd' || conversion.letter == 'i';
    switch (IntegerKind(conversion)) {
        case FormatElement::kByte:
            return {false, static_cast<std::uint8_t>(bits)};
        case FormatElement::kShort:
            return {isSigned, isSigned ? std::int64_t{static_cast<std::int16_t>(bits)}
                                       : std::int64_t{static_cast<std::uint16_t>(bits)}};
        case FormatElement::kInt64:
            return {isSigned, bits};
        default:
            return {isSigned, isSigned ? std::int64_t{static_cast<std::int32_t>(bits)}
                                       : std::int64_t{static_cast<std::uint32_t>(bits)}};
    }
}

HRESULT WriteForm(IIoBuffer& buffer, const FormatConversion& conversion, double value) {
    NumberDigits digits;
    TextField field;
    const HRESULT status =
        FormatNumericForm(conversion.numericForm, value, ToFieldFormat(conversion), digits, field);
    return Failed(status) ? status : WriteField(buffer, field);
}

HRESULT WriteIntegerValue(IIoBuffer& buffer, const FormatConversion& conversion,
                          IntegerValue integer) {
    if (conversion.numericForm != '\0') {
        return WriteForm(buffer, conversion, integer.ToReal());
    }
    NumberDigits digits;
    const FieldFormat format = ToFieldFormat(conversion);
    // A byte has no sign to show, but d and i still show the flag for one.
    const bool decimal = format.letter == 'd' || format.letter == 'i';
    return WriteField(buffer, decimal ? FormatSigned(integer.value, format, digits)
                                      : FormatUnsigned(static_cast<std::uint64_t>(integer.value),
                                                       format, digits));
}

HRESULT WriteRealValue(IIoBuffer& buffer, const FormatConversion& conversion, double value) {
    if (conversion.numericForm != '\0') {
        return WriteForm(buffer, conversion, value);
    }
    NumberDigits digits;
    return WriteField(buffer, FormatReal(value, ToFieldFormat(conversion), digits));
}

std::int64_t IntegerAt(const FormatArraySource& source, FormatElement kind, std::size_t i) {
    switch (kind) {
        case FormatElement::kByte:
            return source.At<std::uint8_t>(i);
        case FormatElement::kShort:
            return source.At<std::int16_t>(i);
        case FormatElement::kInt64:
            return source.At<std::int64_t>(i);
        default:
            return source.At<std::int32_t>(i);
    }
}

// Writes the elements that `writeElement(i)` writes one by one, with separators in between.
template <typename WriteElement>
HRESULT WriteElements(IIoBuffer& buffer, const FormatConversion& conversion,
                      FormatArraySource& source, WriteElement writeElement) {
    HRESULT status = S_OK;
    for (std::size_t i = 0; i < source.Count() && Succeeded(status); ++i) {
        status = WriteSeparatorBefore(buffer, conversion, i);
        if (Succeeded(status)) {
            status = writeElement(i);
        }
    }
    return source.Release(status);
}

}  // namespace

HRESULT WriteInteger(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return WriteIntegerValue(buffer, conversion, CutToSize(args.Next().Integer(), conversion));
}

HRESULT WriteReal(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return WriteRealValue(buffer, conversion, args.Next().Real());
}

HRESULT WriteIntegerArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    const FormatElement kind = IntegerKind(conversion);
    FormatArraySource source;
    if (const HRESULT status = source.Take(conversion, conversion.count.value, kind, args);
        Failed(status)) {
        return status;
    }
    return WriteElements(buffer, conversion, source, [&](std::size_t i) {
        return WriteIntegerValue(buffer, conversion,
                                 CutToSize(IntegerAt(source, kind, i), conversion));
    });
}

HRESULT WriteRealArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    const FormatElement kind = RealKind(conversion);
    FormatArraySource source;
    if (const HRESULT status = source.Take(conversion, conversion.count.value, kind, args);
        Failed(status)) {
        return status;
    }
    return WriteElements(buffer, conversion, source, [&](std::size_t i) {
        const double value =
            kind == FormatElement::kDouble ? source.At<double>(i) : double{source.At<float>(i)};
        return WriteRealValue(buffer, conversion, value);
    });
}

}  // namespace kestrion
