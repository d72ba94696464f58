// What the writer does for each kind of conversion. Each takes its arguments, writes with the flush
// flag off and returns a status as FormatWrite does. `*` is resolved before.
#pragma once

#include <string_view>

#include "io/args.h"
#include "io/format_spec.h"
#include "io/io_buffer.h"
#include "io/number_text.h"
#include "io/partners.h"

namespace kestrion {

// Writes a whole field; E_UNEXPECTED if the buffer takes less.
[[nodiscard]] HRESULT WriteField(IIoBuffer& buffer, const TextField& field);
// The same for a text as it stands.
[[nodiscard]] HRESULT WriteAll(IIoBuffer& buffer, std::string_view text);
// Writes the first separator of the conversion, unless `i` is 0.
[[nodiscard]] HRESULT WriteSeparatorBefore(IIoBuffer& buffer, const FormatConversion& conversion,
                                           std::size_t i);
// Flags, width and precision as the field's layout takes them.
[[nodiscard]] FieldFormat ToFieldFormat(const FormatConversion& conversion);

// format_write_number.cpp
[[nodiscard]] HRESULT WriteInteger(IIoBuffer& buffer, const FormatConversion& conversion,
                                   ArgCursor& args);
[[nodiscard]] HRESULT WriteReal(IIoBuffer& buffer, const FormatConversion& conversion,
                                ArgCursor& args);
[[nodiscard]] HRESULT WriteIntegerArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                        ArgCursor& args);
[[nodiscard]] HRESULT WriteRealArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                     ArgCursor& args);

// format_write_text.cpp
[[nodiscard]] HRESULT WriteCharacter(IIoBuffer& buffer, const FormatConversion& conversion,
                                     ArgCursor& args);
[[nodiscard]] HRESULT WriteString(IIoBuffer& buffer, const FormatConversion& conversion,
                                  ArgCursor& args);
[[nodiscard]] HRESULT WriteStringArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                       ArgCursor& args);
[[nodiscard]] HRESULT WriteEnum(IIoBuffer& buffer, const FormatConversion& conversion,
                                ArgCursor& args, IEnumFormatter* formatter);
[[nodiscard]] HRESULT WriteEnumArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                     ArgCursor& args, IEnumFormatter* formatter);

// format_write_block.cpp
[[nodiscard]] HRESULT WriteDefiniteBlock(IIoBuffer& buffer, const FormatConversion& conversion,
                                         ArgCursor& args);
[[nodiscard]] HRESULT WriteIndefiniteBlock(IIoBuffer& buffer, const FormatConversion& conversion,
                                           ArgCursor& args);
[[nodiscard]] HRESULT WriteRawArray(IIoBuffer& buffer, const FormatConversion& conversion,
                                    ArgCursor& args);

}  // namespace kestrion
