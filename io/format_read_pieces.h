// What the reader does for each kind of conversion. Each scans, stores through its arguments and
// returns a status as FormatRead does. `#` is resolved before.
#pragma once

#include <cstdint>

#include "io/args.h"
#include "io/format_scan.h"
#include "io/format_spec.h"
#include "io/io_buffer.h"
#include "io/partners.h"

namespace kestrion {

// Writes the actual count through the pointer of `#`, if there is one and nothing failed. Returns
// `status`.
inline HRESULT StoreActualCount(const FormatConversion& conversion, std::uint64_t count,
                                HRESULT status) {
    if (conversion.actualCount != nullptr && status >= 0) {
        *conversion.actualCount = static_cast<std::int32_t>(count);
    }
    return status;
}

// Scans one number into a value's memory of the conversion's size: an integer, or a real number.
[[nodiscard]] HRESULT ScanIntegerElement(IIoBuffer& buffer, const FormatConversion& conversion,
                                         void* value);
[[nodiscard]] HRESULT ScanRealElement(IIoBuffer& buffer, const FormatConversion& conversion,
                                      void* value);

// format_reader.cpp
[[nodiscard]] HRESULT ReadInteger(IIoBuffer& buffer, const FormatConversion& conversion,
                                  ArgCursor& args);
[[nodiscard]] HRESULT ReadReal(IIoBuffer& buffer, const FormatConversion& conversion,
                               ArgCursor& args);

// format_read_array.cpp
[[nodiscard]] HRESULT ReadIntegerArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                       ArgCursor& args);
[[nodiscard]] HRESULT ReadRealArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                    ArgCursor& args);
[[nodiscard]] HRESULT ReadStringArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                      ArgCursor& args);
[[nodiscard]] HRESULT ReadEnumArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                    ArgCursor& args, IEnumFormatter* formatter);

// format_read_text.cpp
[[nodiscard]] HRESULT ReadCharacters(IIoBuffer& buffer, const FormatConversion& conversion,
                                     ArgCursor& args);
[[nodiscard]] HRESULT ReadLine(IIoBuffer& buffer, const FormatConversion& conversion,
                               ArgCursor& args);
[[nodiscard]] HRESULT ReadRest(IIoBuffer& buffer, const FormatConversion& conversion,
                               ArgCursor& args);
[[nodiscard]] HRESULT ReadWord(IIoBuffer& buffer, const FormatConversion& conversion,
                               ArgCursor& args);
[[nodiscard]] HRESULT ReadSet(IIoBuffer& buffer, const FormatConversion& conversion,
                              ArgCursor& args);
[[nodiscard]] HRESULT ReadEnum(IIoBuffer& buffer, const FormatConversion& conversion,
                               ArgCursor& args, IEnumFormatter* formatter);
// The flags that the quote letter of an array of texts or an enumeration asks for.
[[nodiscard]] TokenFlags QuoteFlags(const FormatConversion& conversion);
// The bytes that end a token of `[...]`: all that aren't in the set between the brackets.
[[nodiscard]] ByteSet DelimitersOfSet(std::string_view set);

// format_read_block.cpp
[[nodiscard]] HRESULT ReadBlock(IIoBuffer& buffer, const FormatConversion& conversion,
                                ArgCursor& args);
[[nodiscard]] HRESULT ReadRawArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                   ArgCursor& args);

}  // namespace kestrion
