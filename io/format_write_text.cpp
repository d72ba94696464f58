#include <string>

#include "io/format_array.h"
#include "io/format_write_pieces.h"
#include "platform/text.h"

namespace kestrion {
namespace {

char QuoteMark(const FormatConversion& conversion) {
    switch (conversion.quote) {
        case 'q':
            return '\'';
        case 'Q':
            return '"';
        default:
            return '\0';
    }
}

// A zero byte ends a text, as in C.
HRESULT WriteTextValue(IIoBuffer& buffer, const FormatConversion& conversion,
                       std::string_view text) {
    return WriteField(buffer, FormatText(text.substr(0, text.find('\0')), QuoteMark(conversion),
                                         ToFieldFormat(conversion)));
}

HRESULT WriteNarrow(IIoBuffer& buffer, const FormatConversion& conversion, const char* text) {
    return text == nullptr ? E_INVALIDARG : WriteTextValue(buffer, conversion, text);
}

HRESULT WriteWide(IIoBuffer& buffer, const FormatConversion& conversion, BSTR text) {
    return text == nullptr ? E_INVALIDARG
                           : WriteTextValue(buffer, conversion, NarrowToBytes(View(text)));
}

HRESULT WriteDynamic(IIoBuffer& buffer, const FormatConversion& conversion,
                     const std::string* text) {
    return text == nullptr ? E_INVALIDARG : WriteTextValue(buffer, conversion, *text);
}

HRESULT WriteEnumValue(IIoBuffer& buffer, const FormatConversion& conversion,
                       IEnumFormatter& formatter, std::int64_t bits) {
    const std::int32_t value = conversion.enumName == kBooleanEnum
                                   ? std::int32_t{static_cast<std::int16_t>(bits)}
                                   : static_cast<std::int32_t>(bits);
    std::string token;
    const HRESULT status = formatter.EnumToToken(conversion.enumName, value, token);
    return Failed(status) ? status : WriteTextValue(buffer, conversion, token);
}

HRESULT WriteStringElement(IIoBuffer& buffer, const FormatConversion& conversion,
                           const FormatArraySource& source, std::size_t i) {
    switch (conversion.textKind) {
        case 'B':
            return WriteWide(buffer, conversion, source.At<BSTR>(i));
        case 'C':
            return WriteDynamic(buffer, conversion,
                                reinterpret_cast<const std::string*>(source.Bytes()) + i);
        default:
            return WriteNarrow(buffer, conversion, source.At<const char*>(i));
    }
}

}  // namespace

HRESULT WriteCharacter(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    const char c = static_cast<char>(args.Next().Integer());
    FieldFormat format = ToFieldFormat(conversion);
    format.precision = -1;  // means nothing for a character
    TextField field = FormatText({&c, 1}, '\0', format);
    if (c == '\0') {
        // The zero ends the text: what would stand in front of it goes out, nothing else.
        field.body = {};
        field.blanksBehind = 0;
    }
    return WriteField(buffer, field);
}

HRESULT WriteString(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    switch (conversion.textKind) {
        case 'B':
            return WriteWide(buffer, conversion, args.Next().Pointer<OLECHAR>());
        case 'C':
            return WriteDynamic(buffer, conversion, args.Next().Pointer<const std::string>());
        default:
            return WriteNarrow(buffer, conversion, args.Next().Pointer<const char>());
    }
}

HRESULT WriteStringArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    if (conversion.variantArray && conversion.textKind != 'B') {
        return E_UNEXPECTED;
    }
    FormatArraySource source;
    HRESULT status = source.Take(conversion, conversion.count.value, FormatElement::kText, args);
    for (std::size_t i = 0; Succeeded(status) && i < source.Count(); ++i) {
        status = WriteSeparatorBefore(buffer, conversion, i);
        if (Succeeded(status)) {
            status = WriteStringElement(buffer, conversion, source, i);
        }
    }
    return source.Release(status);
}

HRESULT WriteEnum(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args,
                  IEnumFormatter* formatter) {
    if (formatter == nullptr) {
        return E_INVALIDARG;
    }
    return WriteEnumValue(buffer, conversion, *formatter, args.Next().Integer());
}

HRESULT WriteEnumArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args,
                       IEnumFormatter* formatter) {
    if (formatter == nullptr) {
        return E_INVALIDARG;
    }
    const bool boolean = conversion.enumName == kBooleanEnum;
    FormatArraySource source;
    HRESULT status = source.Take(conversion, conversion.count.value,
                                 boolean ? FormatElement::kShort : FormatElement::kLong, args);
    for (std::size_t i = 0; Succeeded(status) && i < source.Count(); ++i) {
        status = WriteSeparatorBefore(buffer, conversion, i);
        if (Succeeded(status)) {
            status =
                WriteEnumValue(buffer, conversion, *formatter,
                               boolean ? source.At<std::int16_t>(i) : source.At<std::int32_t>(i));
        }
    }
    return source.Release(status);
}

}  // namespace kestrion
