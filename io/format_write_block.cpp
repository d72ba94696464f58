#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "io/format_array.h"
#include "io/format_block.h"
#include "io/format_write_pieces.h"

namespace kestrion {
namespace {

// E_UNEXPECTED if the buffer takes less.
HRESULT WriteExactly(IIoBuffer& buffer, const BYTE* bytes, std::uint64_t count) {
    while (count > 0) {
        const std::uint32_t part = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(count, std::numeric_limits<std::int32_t>::max()));
        std::uint32_t actual = 0;
        const HRESULT status = buffer.WriteBytes(bytes, part, &actual, false);
        if (Failed(status)) {
            return status;
        }
        if (actual != part) {
            return E_UNEXPECTED;
        }
        bytes += part;
        count -= part;
    }
    return S_OK;
}

HRESULT WriteReversed(IIoBuffer& buffer, const BYTE* bytes, std::uint64_t count,
                      std::size_t elementSize) {
    std::array<BYTE, 1024> chunk;  // a multiple of every element size
    while (count > 0) {
        const std::size_t part =
            static_cast<std::size_t>(std::min<std::uint64_t>(count, chunk.size()));
        std::memcpy(chunk.data(), bytes, part);
        ReverseElements(std::span(chunk).first(part), elementSize);
        if (const HRESULT status = WriteExactly(buffer, chunk.data(), part); Failed(status)) {
            return status;
        }
        bytes += part;
        count -= part;
    }
    return S_OK;
}

HRESULT WriteElements(IIoBuffer& buffer, const FormatArraySource& source, std::size_t elementSize,
                      bool reverse) {
    const std::uint64_t bytes = std::uint64_t{source.Count()} * elementSize;
    return reverse && elementSize > 1 ? WriteReversed(buffer, source.Bytes(), bytes, elementSize)
                                      : WriteExactly(buffer, source.Bytes(), bytes);
}

}  // namespace

HRESULT WriteDefiniteBlock(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    const FormatElement kind = BlockKind(conversion);
    const std::size_t size = FormatElementSize(kind);
    FormatArraySource source;
    if (const HRESULT status = source.Take(conversion, conversion.width.value, kind, args);
        Failed(status)) {
        return status;
    }
    const auto header = FormatBlockHeader(std::uint64_t{source.Count()} * size);
    if (!header) {
        return source.Release(E_INVALIDARG);
    }
    HRESULT status = WriteAll(buffer, header->Text());
    if (Succeeded(status)) {
        status = WriteElements(buffer, source, size, buffer.GetByteSwap());
    }
    return source.Release(status);
}

HRESULT WriteIndefiniteBlock(IIoBuffer& buffer, const FormatConversion& conversion,
                             ArgCursor& args) {
    const FormatElement kind = BlockKind(conversion);
    FormatArraySource source;
    if (const HRESULT status = source.Take(conversion, conversion.width.value, kind, args);
        Failed(status)) {
        return status;
    }
    HRESULT status = WriteAll(buffer, kIndefiniteBlockHeader);
    if (Succeeded(status)) {
        status = WriteElements(buffer, source, FormatElementSize(kind), buffer.GetByteSwap());
    }
    if (Succeeded(status)) {
        status = WriteAll(buffer, "\n");
    }
    return source.Release(status);
}

HRESULT WriteRawArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    const FormatElement kind = BlockKind(conversion);
    FormatArraySource source;
    if (const HRESULT status = source.Take(conversion, conversion.width.value, kind, args);
        Failed(status)) {
        return status;
    }
    return source.Release(WriteElements(buffer, source, FormatElementSize(kind),
                                        conversion.littleEndian != kHostIsLittleEndian));
}

}  // namespace kestrion
