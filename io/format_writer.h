// Writes by a format: literal text, numbers, texts, enumerations, arrays and blocks.
#pragma once

#include <string_view>

#include "io/args.h"
#include "io/io_buffer.h"
#include "io/partners.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// Runs the pieces of `format` in order, taking their arguments from `args`. Nothing is written if
// the format isn't of the language. The first failure ends the walk; what earlier pieces wrote
// stays in the buffer. A line feed in literal text sends the buffer; nothing else flushes.
//
// `formatter` gives the tokens of enumerations and may be null if the format names none.
// With `skipArrays`, array and block conversions are passed over and take no argument.
//
// Returns 0, or E_UNEXPECTED (bad format, an array without a count, a buffer that took less than it
// was given), E_INVALIDARG (null argument, unfit array), or what the buffer or `formatter` failed
// with. Throws std::bad_alloc only.
[[nodiscard]] HRESULT FormatWrite(IIoBuffer& buffer, std::string_view format, ArgCursor& args,
                                  IEnumFormatter* formatter, bool skipArrays = false);

}  // namespace kestrion
