#include "io/block_transfer.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "io/format_block.h"

namespace kestrion {
namespace {

// What one step of dropping the rest of a block reads at most.
constexpr std::uint32_t kDropChunk = 1000;

HRESULT CheckSent(IIoErrorReporter& reporter, std::uint64_t sent, std::uint64_t total) {
    if (sent == total) {
        return S_OK;
    }
    return reporter.ReportIoError("Binary block write only successfully sent " +
                                  std::to_string(sent) + " of " + std::to_string(total) +
                                  " data bytes to the device.");
}

HRESULT WriteAtOnce(IIoBuffer& buffer, IIoErrorReporter& reporter, std::span<const BYTE> bytes,
                    bool flush) {
    constexpr BYTE kNothing = 0;
    std::uint32_t actual = 0;
    const HRESULT status =
        buffer.WriteBytes(bytes.empty() ? &kNothing : bytes.data(),
                          static_cast<std::uint32_t>(bytes.size()), &actual, flush);
    return Failed(status) ? status : CheckSent(reporter, actual, bytes.size());
}

HRESULT WriteReversed(IIoBuffer& buffer, IIoErrorReporter& reporter, std::span<const BYTE> bytes,
                      std::uint32_t width, bool flush) {
    std::array<BYTE, sizeof(double)> element{};
    for (std::size_t done = 0; done < bytes.size(); done += width) {
        std::reverse_copy(bytes.begin() + static_cast<std::ptrdiff_t>(done),
                          bytes.begin() + static_cast<std::ptrdiff_t>(done + width),
                          element.begin());
        const bool last = done + width == bytes.size();
        std::uint32_t actual = 0;
        HRESULT status = buffer.WriteBytes(element.data(), width, &actual, flush && last);
        if (!Failed(status) && actual < width) {
            status = CheckSent(reporter, done, bytes.size());
        }
        if (Failed(status)) {
            return status;
        }
    }
    return S_OK;
}

// The bytes of a header, which ends at the latest with its response.
class HeaderReader {
  public:
    explicit HeaderReader(IIoBuffer& buffer) : buffer_(buffer) {}

    // Whether all `count` bytes came.
    bool Read(BYTE* target, std::uint32_t count) {
        std::uint32_t actual = 0;
        status_ = buffer_.ReadBytes(target, count, &actual, false);
        return !Failed(status_) && actual == count;
    }
    // Another response has no part in this header.
    bool ReadOn(BYTE* target, std::uint32_t count) {
        return status_ == IoStatusMoreData && Read(target, count);
    }
    // The same for what the data follows. Data may begin with what looks like a terminator, which
    // a direct read leaves alone.
    bool ReadLast(BYTE* target, std::uint32_t count) {
        if (status_ != IoStatusMoreData) {
            return false;
        }
        std::uint32_t actual = 0;
        status_ = buffer_.ReadDirect(target, count, &actual, false);
        return !Failed(status_) && actual == count;
    }
    [[nodiscard]] HRESULT Status() const { return status_; }

  private:
    IIoBuffer& buffer_;
    HRESULT status_ = IoStatusMoreData;
};

bool FindBlockStart(HeaderReader& reader, bool seek) {
    BYTE value = 0;
    while (reader.Read(&value, 1)) {
        if (value == '#' || !seek) {
            return value == '#';
        }
    }
    return false;
}

// The announced length; -1 if there is none.
std::int64_t ReadBlockLength(HeaderReader& reader) {
    BYTE digit = 0;
    if (!reader.ReadOn(&digit, 1) || BlockLengthDigits(digit) < 1) {
        return -1;
    }
    std::array<BYTE, 9> digits{};
    const auto count = static_cast<std::uint32_t>(BlockLengthDigits(digit));
    return reader.ReadLast(digits.data(), count) ? ParseBlockLength(std::span(digits).first(count))
                                                 : -1;
}

// The rest of the block and whatever single byte ends the message.
HRESULT DropRest(IIoBuffer& buffer, std::uint64_t count, HRESULT status) {
    std::array<BYTE, kDropChunk> dropped;
    while (count > 0) {
        const auto piece = static_cast<std::uint32_t>(std::min<std::uint64_t>(count, kDropChunk));
        std::uint32_t actual = 0;
        status = buffer.ReadDirect(dropped.data(), piece, &actual, false);
        if (Failed(status) || actual == 0) {
            return status;
        }
        count -= actual;
    }
    return status;
}

}  // namespace

HRESULT WriteBlockElements(IIoBuffer& buffer, IIoErrorReporter& reporter, ElementKind kind,
                           const void* values, std::int32_t count, bool flush) {
    if (count < 0) {
        return E_INVALIDARG;
    }
    const std::uint32_t width = ElementWidth(kind);
    const std::uint64_t byteCount = std::uint64_t{width} * static_cast<std::uint32_t>(count);
    const auto header = FormatBlockHeader(byteCount);
    if (!header) {
        return E_INVALIDARG;
    }
    const HRESULT status = buffer.WriteText(header->Text(), nullptr, false);
    if (Failed(status)) {
        return status;
    }
    const std::span bytes(static_cast<const BYTE*>(values), static_cast<std::size_t>(byteCount));
    return buffer.GetByteSwap() && width > 1 ? WriteReversed(buffer, reporter, bytes, width, flush)
                                             : WriteAtOnce(buffer, reporter, bytes, flush);
}

HRESULT ReadBlockHeader(IIoBuffer& buffer, IIoErrorReporter& reporter, bool seek,
                        std::uint32_t* byteCount) {
    HeaderReader reader(buffer);
    const std::int64_t length = FindBlockStart(reader, seek) ? ReadBlockLength(reader) : -1;
    if (Failed(reader.Status())) {
        return reader.Status();
    }
    if (length < 0) {
        return reporter.ReportUnexpectedResponse("Binary block header not found.");
    }
    *byteCount = static_cast<std::uint32_t>(length);
    return reader.Status();
}

HRESULT ReadBlockElements(IIoBuffer& buffer, HRESULT headerStatus, ElementKind kind, void* values,
                          std::uint32_t capacity, std::uint32_t byteCount, bool flush,
                          std::uint32_t* actual) {
    if (byteCount == 0 && headerStatus != IoStatusMoreData) {
        // An empty block that ended the response has nothing behind it but what is buffered.
        *actual = 0;
        return flush ? buffer.FlushRead() : headerStatus;
    }
    const std::uint32_t width = ElementWidth(kind);
    const auto wanted = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(std::uint64_t{capacity} * width, byteCount));
    // An array without elements has no address.
    BYTE nothing = 0;
    auto* target = wanted == 0 ? &nothing : static_cast<BYTE*>(values);
    std::uint32_t bytesRead = 0;
    const HRESULT status = buffer.ReadDirect(target, wanted, &bytesRead, false);
    if (buffer.GetByteSwap()) {
        ReverseElements({target, bytesRead}, width);
    }
    *actual = bytesRead / width;
    if (Failed(status) || !flush) {
        return status;
    }
    return DropRest(buffer, std::uint64_t{byteCount} - bytesRead + 1, status);
}

}  // namespace kestrion
