// Lists of text elements over the buffers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "io/element.h"
#include "io/io_buffer.h"
#include "io/partners.h"

namespace kestrion {

// Writes `count` numbers with the separator between two, and then flushes if asked to. Without
// elements only the flush is left.
[[nodiscard]] HRESULT WriteNumberList(IIoBuffer& buffer, ElementKind kind, const void* values,
                                      std::int32_t count, std::string_view separator, bool flush);

// Reads up to `count` numbers. Behind each, white space and one byte of `separators` are skipped;
// any other byte ends the list and is lost, and so does the end of the response. `actual` counts
// what was stored, after a failure too. Elements that don't fit are reported as I/O errors.
[[nodiscard]] HRESULT ReadNumberList(IIoBuffer& buffer, IIoErrorReporter& reporter,
                                     ElementKind kind, void* values, std::int32_t count,
                                     std::string_view separators, std::int32_t* actual);

// Reads up to `count` tokens. A token goes up to any byte of `separators` or the end of the
// response; white space in front of one is skipped.
[[nodiscard]] HRESULT ReadTokenList(IIoBuffer& buffer, std::string* values, std::int32_t count,
                                    std::string_view separators, std::int32_t* actual);

}  // namespace kestrion
