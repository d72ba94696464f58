// Definite length arbitrary blocks (IEEE 488.2, 8.7.9) of typed elements over the buffers.
#pragma once

#include <cstdint>

#include "io/element.h"
#include "io/io_buffer.h"
#include "io/partners.h"

namespace kestrion {

// Header and `count` elements, most significant byte first if the buffer swaps. `flush` sends the
// message behind the last element; a block without elements isn't flushed while swapping.
// E_INVALIDARG for a negative count and for a block longer than nine digits can say.
[[nodiscard]] HRESULT WriteBlockElements(IIoBuffer& buffer, IIoErrorReporter& reporter,
                                         ElementKind kind, const void* values, std::int32_t count,
                                         bool flush);

// Reads a header; with `seek`, drops what stands in front of it. A header that isn't there, or that
// announces no length, is reported as an unexpected response. 0 means that the response ended with
// the header, IoStatusMoreData that more follows.
[[nodiscard]] HRESULT ReadBlockHeader(IIoBuffer& buffer, IIoErrorReporter& reporter, bool seek,
                                      std::uint32_t* byteCount);

// Reads up to `capacity` elements of a block of `byteCount` bytes straight into `values`, into host
// order. With `flush`, also drops the rest of the block and the one byte behind it. `actual` counts
// whole elements, after a failure too. `headerStatus` is what reading the header gave.
[[nodiscard]] HRESULT ReadBlockElements(IIoBuffer& buffer, HRESULT headerStatus, ElementKind kind,
                                        void* values, std::uint32_t capacity,
                                        std::uint32_t byteCount, bool flush, std::uint32_t* actual);

}  // namespace kestrion
