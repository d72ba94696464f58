#include <algorithm>
#include <array>
#include <limits>

#include "io/format_array.h"
#include "io/format_block.h"
#include "io/format_read_pieces.h"

namespace kestrion {
namespace {

constexpr std::uint64_t kNotAnnounced = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kChunk = 1000;
// A header may announce far more than ever comes, so larger arrays grow with what came.
constexpr std::uint64_t kLargestFirstPiece = std::uint64_t{64} << 20U;

// Reads past the buffer until `count` bytes came or the response ended. The status is that of the
// last read: IoStatusMoreData, 0 or a failure.
HRESULT ReadDirectly(IIoBuffer& buffer, BYTE* target, std::uint64_t count, std::uint64_t& got) {
    HRESULT status = IoStatusMoreData;
    got = 0;
    while (status == IoStatusMoreData && got < count) {
        const std::uint64_t part =
            std::min<std::uint64_t>(count - got, std::numeric_limits<std::int32_t>::max());
        std::uint32_t actual = 0;
        status = buffer.ReadDirect(target + got, static_cast<std::uint32_t>(part), &actual, false);
        got += actual;
        if (actual == 0) {
            break;
        }
    }
    return Failed(status) || status == IoStatusMoreData ? status : S_OK;
}

// Reads through the buffer, which knows where the response ends and takes its terminator off.
HRESULT ReadToEnd(IIoBuffer& buffer, BYTE* target, std::uint64_t count, std::uint64_t& got) {
    std::uint32_t actual = 0;
    const HRESULT status =
        buffer.ReadBytes(target, static_cast<std::uint32_t>(count), &actual, false);
    got = actual;
    return status;
}

HRESULT DropDirectly(IIoBuffer& buffer, std::uint64_t count) {
    std::array<BYTE, kChunk> chunk;
    HRESULT status = IoStatusMoreData;
    while (status == IoStatusMoreData && count > 0) {
        std::uint64_t got = 0;
        status = ReadDirectly(buffer, chunk.data(), std::min(count, kChunk), got);
        count -= got;
        if (got == 0) {
            break;
        }
    }
    return status;
}

// The data of one block or raw array: what is to be read and into what kind of elements.
struct BlockData {
    FormatElement kind = FormatElement::kByte;
    std::uint64_t announced = kNotAnnounced;  // bytes that the header says
    bool reverse = false;                     // the wire's byte order isn't the host's
    HRESULT status = IoStatusMoreData;        // of the header's last byte

    [[nodiscard]] std::size_t Size() const { return FormatElementSize(kind); }
    [[nodiscard]] bool Known() const { return announced != kNotAnnounced; }
};

// Up to `wanted` elements into a plain array. What the header announced beyond that is dropped, so
// that the block is gone from the response.
HRESULT ReadPlain(IIoBuffer& buffer, const BlockData& block, BYTE* target, std::uint64_t wanted,
                  std::uint64_t& elements) {
    const std::uint64_t bytes = std::min(wanted * block.Size(), block.announced);
    std::uint64_t got = 0;
    HRESULT status = ReadDirectly(buffer, target, bytes, got);
    if (status == IoStatusMoreData && block.Known() && got == bytes) {
        status = DropDirectly(buffer, block.announced - bytes);
    }
    if (Failed(status)) {
        return status;
    }
    elements = got / block.Size();
    if (block.reverse) {
        ReverseElements({target, static_cast<std::size_t>(got)}, block.Size());
    }
    return status;
}

HRESULT Resize(SafeArrayPtr& array, const BlockData& block, std::uint64_t bytes) {
    const std::uint64_t elements = bytes / block.Size();
    if (elements > std::numeric_limits<std::int32_t>::max()) {
        return E_OUTOFMEMORY;
    }
    if (!array) {
        array = SafeArrayPtr(SafeArrayCreateVector(FormatElementVartype(block.kind), 0,
                                                   static_cast<ULONG>(elements)));
        return array ? S_OK : E_OUTOFMEMORY;
    }
    const SAFEARRAYBOUND bound{static_cast<ULONG>(elements), 0};
    return SafeArrayRedim(array.Get(), &bound);
}

// Reads at most `limit` bytes, a whole number of elements, or to the end of the response into a new
// array, which grows as they come. `got` counts the bytes.
HRESULT ReadGrowing(IIoBuffer& buffer, const BlockData& block, std::uint64_t limit,
                    SafeArrayPtr& array, std::uint64_t& got) {
    const bool known = limit != kNotAnnounced;
    std::uint64_t capacity = known ? std::min(limit, kLargestFirstPiece) : kChunk;
    HRESULT status = Resize(array, block, capacity);
    HRESULT read = IoStatusMoreData;
    while (!Failed(status) && read == IoStatusMoreData && got < limit) {
        if (got == capacity) {
            capacity = std::min(limit, capacity * 2);
            status = Resize(array, block, capacity);
            continue;
        }
        const std::uint64_t part = known ? capacity - got : std::min(kChunk, capacity - got);
        BYTE* const target = static_cast<BYTE*>(array.Get()->pvData) + got;
        std::uint64_t now = 0;
        read =
            known ? ReadDirectly(buffer, target, part, now) : ReadToEnd(buffer, target, part, now);
        got += now;
        if (now < part) {
            break;
        }
    }
    return Failed(status) ? status : read;
}

// A variant array of all elements, or of `wanted` if that is above 0, in place of the argument's.
HRESULT ReadVariant(IIoBuffer& buffer, const BlockData& block, std::int64_t wanted,
                    SAFEARRAY** target, std::uint64_t& elements) {
    if (const HRESULT status = CheckFormatArrayTarget(target, block.kind); Failed(status)) {
        return status;
    }
    const std::uint64_t size = block.Size();
    std::uint64_t limit = block.Known() ? block.announced / size * size : kNotAnnounced;
    if (wanted > 0) {
        limit = std::min(limit, static_cast<std::uint64_t>(wanted) * size);
    }
    SafeArrayPtr array;
    std::uint64_t got = 0;
    HRESULT status = ReadGrowing(buffer, block, limit, array, got);
    if (status == IoStatusMoreData && block.Known() && got == limit) {
        status = DropDirectly(buffer, block.announced - limit);
    }
    if (Failed(status)) {
        return status;
    }
    BYTE* bytes = static_cast<BYTE*>(array.Get()->pvData);
    elements = got / size;
    if (block.reverse) {
        ReverseElements({bytes, static_cast<std::size_t>(elements * size)},
                        static_cast<std::size_t>(size));
    }
    if (const HRESULT resized = Resize(array, block, got); Failed(resized)) {
        return resized;
    }
    const HRESULT replaced = ReplaceArray(target, array);
    return Failed(replaced) ? replaced : status;
}

HRESULT DropBlock(IIoBuffer& buffer, const BlockData& block, std::int64_t wanted) {
    if (block.Known()) {
        return block.announced == 0 ? block.status : DropDirectly(buffer, block.announced);
    }
    if (wanted < 0) {
        return buffer.FlushRead();
    }
    return DropDirectly(buffer, static_cast<std::uint64_t>(wanted) * block.Size());
}

HRESULT ReadData(IIoBuffer& buffer, const FormatConversion& conversion, const BlockData& block,
                 ArgCursor& args) {
    const std::int64_t wanted = conversion.width.value;
    if (conversion.suppress) {
        return DropBlock(buffer, block, wanted);
    }
    std::uint64_t elements = 0;
    HRESULT status = S_OK;
    if (conversion.variantArray) {
        status = ReadVariant(buffer, block, wanted, args.Next().Pointer<SAFEARRAY*>(), elements);
    } else {
        if (wanted < 0) {
            return E_UNEXPECTED;
        }
        BYTE* target = args.Next().Pointer<BYTE>();
        if (target == nullptr) {
            return E_INVALIDARG;
        }
        status = ReadPlain(buffer, block, target, static_cast<std::uint64_t>(wanted), elements);
    }
    // Nothing was read behind the header of an empty block, so that one's status stands.
    if (block.announced == 0 && !Failed(status)) {
        status = block.status;
    }
    return StoreActualCount(conversion, elements, status);
}

// The data follow the last digit and may begin with what looks like a terminator, which a direct
// read leaves alone. The status is that of the last digit; E_UNEXPECTED if one is missing.
HRESULT ReadLengthDigits(IIoBuffer& buffer, std::span<BYTE> digits) {
    HRESULT status = IoStatusMoreData;
    std::uint32_t actual = 0;
    const auto leading = static_cast<std::uint32_t>(digits.size() - 1);
    if (leading > 0) {
        status = buffer.ReadBytes(digits.data(), leading, &actual, false);
    }
    if (Failed(status)) {
        return status;
    }
    if (actual != leading || status != IoStatusMoreData) {
        return E_UNEXPECTED;
    }
    status = buffer.ReadDirect(digits.data() + leading, 1, &actual, false);
    return Failed(status) || actual == 1 ? status : E_UNEXPECTED;
}

HRESULT ReadHeader(IIoBuffer& buffer, BlockData& block) {
    ByteReader reader(buffer);
    if (!reader.Next() || reader.Byte() != '#' || !reader.More() || !reader.Next()) {
        return Failed(reader.Status()) ? reader.Status() : E_UNEXPECTED;
    }
    const int count = BlockLengthDigits(static_cast<BYTE>(reader.Byte()));
    if (count < 0 || (count > 0 && !reader.More())) {
        return E_UNEXPECTED;
    }
    if (count == 0) {
        block.status = reader.Status();
        block.announced = reader.More() ? kNotAnnounced : 0;
        return S_OK;
    }
    std::array<BYTE, 9> digits{};
    block.status =
        ReadLengthDigits(buffer, std::span(digits).first(static_cast<std::size_t>(count)));
    if (Failed(block.status)) {
        return block.status;
    }
    const std::int64_t length =
        ParseBlockLength(std::span(digits).first(static_cast<std::size_t>(count)));
    if (length < 0) {
        return E_UNEXPECTED;
    }
    block.announced = static_cast<std::uint64_t>(length);
    return S_OK;
}

}  // namespace

HRESULT ReadBlock(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    BlockData block;
    block.kind = BlockKind(conversion);
    block.reverse = buffer.GetByteSwap();
    if (const HRESULT status = ReadHeader(buffer, block); Failed(status)) {
        return status;
    }
    return ReadData(buffer, conversion, block, args);
}

HRESULT ReadRawArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    BlockData block;
    block.kind = BlockKind(conversion);
    block.reverse = conversion.littleEndian != kHostIsLittleEndian;
    return ReadData(buffer, conversion, block, args);
}

}  // namespace kestrion
