// Single numbers as text over the buffers.
#pragma once

#include "io/element.h"
#include "io/io_buffer.h"
#include "io/partners.h"

namespace kestrion {

// Writes a number in the form "%d" (byte, short, long) or "%f" (float, double).
[[nodiscard]] HRESULT WriteNumberElement(IIoBuffer& buffer, ElementKind kind, const void* value,
                                         bool flush);

// Reads a number of at most 100 characters, cut toward zero where the kind is whole. A number that
// the kind can't hold is reported as an I/O error, and `value` stays; text without a digit is
// E_UNEXPECTED. With `flush`, the rest of the response is dropped before the range is looked at.
[[nodiscard]] HRESULT ReadNumberElement(IIoBuffer& buffer, IIoErrorReporter& reporter,
                                        ElementKind kind, void* value, bool flush);

}  // namespace kestrion
