// The buffers between formatted text and the instrument.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "io/io_buffer.h"
#include "io/partners.h"

namespace kestrion {

// Zeroed memory for a buffer, or null. Replaced in tests of what happens without memory.
using BufferMemory = std::unique_ptr<BYTE[]>;
using BufferAllocator = BufferMemory (*)(std::size_t size);
[[nodiscard]] BufferMemory AllocateBufferMemory(std::size_t size);

// The one IIoBuffer that touches the instrument: takes the read terminator off a response, puts
// the write terminator behind a message, and sends END with the last piece of a message only.
//
// A response ends with the transport's end indicator; bytes come out with IoStatusMoreData while
// more of the response follows and with 0 when it is complete. Failures of the transport come back
// unchanged. No locks: the session's covers it.
class CInstrBuffer final : public IIoBuffer {
  public:
    static constexpr std::uint32_t kDefaultCapacity = 4096;

    // Null when there's no memory; nothing is reported then. Neither partner is owned.
    [[nodiscard]] static std::unique_ptr<CInstrBuffer> Create(
        ILowLevelIo& io, IIoErrorReporter& reporter, std::string_view readTerminator,
        std::string_view writeTerminator, BufferAllocator allocate = AllocateBufferMemory);

    // S_FALSE means that the response ended with no byte left: `value` is 0 then.
    HRESULT GetByte(BYTE* value) override;
    // A text whose bytes are those that were read. The caller owns it.
    HRESULT ReadToString(BSTR* text, std::uint32_t count, bool flush) override;
    // An array of the bytes that were read. The caller owns it.
    HRESULT ReadToArray(SAFEARRAY** array, std::uint32_t count, bool flush) override;
    HRESULT Read(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool flush) override;
    HRESULT ReadBytes(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                      bool flush) override;
    // Steps back by one byte of what was read since the buffer was last filled.
    HRESULT UngetByte() override;
    HRESULT ReadDirect(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                       bool flush) override;
    HRESULT WriteChar(BYTE value, bool flush) override;
    HRESULT WriteWideString(BSTR text, std::uint32_t* actual, bool flush) override;
    // At most as many bytes as the array holds.
    HRESULT WriteArray(SAFEARRAY* bytes, std::uint32_t count, std::uint32_t* actual,
                       bool flush) override;
    HRESULT WriteText(std::string_view text, std::uint32_t* actual, bool flush) override;
    HRESULT WriteBytes(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                       bool flush) override;
    // Throws the rest of the response away, in the buffer and in the instrument.
    HRESULT FlushRead() override;
    // Sends what waits, if anything does. With END the write terminator goes behind it.
    HRESULT FlushWrite(bool sendEnd) override;
    // Flushes the side or sides, then changes the size. A side keeps its size if that fails.
    HRESULT SetBufferSize(IoBufferKind which, std::uint32_t size) override;
    HRESULT GetReadBufferSize(std::uint32_t* size) override;
    HRESULT GetWriteBufferSize(std::uint32_t* size) override;
    [[nodiscard]] bool GetByteSwap() override { return byteSwap_; }
    void SetByteSwap(bool swap) override { byteSwap_ = swap; }

    void SetReadTerminator(std::string_view terminator);
    // Keeps what waits to be sent.
    HRESULT SetWriteTerminator(std::string_view terminator);

    // Nothing of the response is left, here or in the instrument.
    void EndResponse();
    // Forgets what waits to be read and what waits to be sent, as the instrument does when it is
    // cleared.
    void Discard();

  private:
    CInstrBuffer(ILowLevelIo& io, IIoErrorReporter& reporter, std::string_view readTerminator,
                 std::string_view writeTerminator, BufferAllocator allocate);

    [[nodiscard]] HRESULT Fill();
    void SetEnded(HRESULT readStatus);
    [[nodiscard]] bool RestIsTerminator() const;
    // `target` takes `count` bytes of the read buffer, which has to hold them.
    void CopyOut(BYTE* target, std::uint32_t count, bool strip);
    [[nodiscard]] HRESULT ReadUnbuffered(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                                         bool flush);
    [[nodiscard]] HRESULT ReadStatus() const;
    [[nodiscard]] HRESULT SendBuffer(bool withTerminator);
    [[nodiscard]] HRESULT SendWithoutEnd();
    void ForgetWritten();
    [[nodiscard]] HRESULT ResizeRead(std::uint32_t size);
    [[nodiscard]] HRESULT ResizeWrite(std::uint32_t size);
    HRESULT ReportNullPointer(std::string_view parameter);
    HRESULT ReportNoWriteMemory(std::uint32_t size);

    ILowLevelIo& io_;
    IIoErrorReporter& reporter_;
    BufferAllocator allocate_;
    BufferMemory readBuffer_;
    BufferMemory writeBuffer_;
    std::uint32_t readCapacity_ = kDefaultCapacity;
    std::uint32_t writeCapacity_ = kDefaultCapacity;
    std::uint32_t readCount_ = 0;
    std::uint32_t readPayload_ = 0;
    std::uint32_t writeCount_ = 0;
    std::uint32_t readPosition_ = 0;
    std::uint32_t readUsed_ = 0;  // bytes of the read buffer that may be other than zero
    bool responseEnded_ = true;
    bool deviceDrained_ = true;
    std::string writeTerminator_;
    std::string readTerminator_;
    bool byteSwap_ = true;
};

}  // namespace kestrion
