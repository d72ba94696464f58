// The byte stream under the format engine, and the unbuffered road under that.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "io/status.h"
#include "kestrion/platform/bstr.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// Reaches the instrument without a buffer; the transport implements the NoPoll primitives.
// A read returns 0 when the response ended, IoStatusMoreData when `count` bytes came and more
// follow, and a failure otherwise; `actual` counts the bytes of a failed read too.
struct ILowLevelIo {
    virtual HRESULT SetTerminationCharacterEnabled(bool enabled) = 0;
    virtual HRESULT GetTerminationCharacterEnabled(bool* enabled) = 0;
    virtual HRESULT SetSendEndEnabled(bool enabled) = 0;
    virtual HRESULT GetSendEndEnabled(bool* enabled) = 0;
    virtual HRESULT LowLevelReadNoPoll(BYTE* buffer, std::uint32_t count, std::uint32_t* actual,
                                       std::int32_t timeout) = 0;
    // Up to `count` bytes as text.
    virtual HRESULT LowLevelReadStringNoPoll(std::string* text, std::uint32_t count,
                                             std::int32_t timeout) = 0;
    // Writes exactly these bytes, no terminator.
    virtual HRESULT LowLevelWriteNoPoll(const BYTE* bytes, std::uint32_t count,
                                        std::uint32_t* actual, std::int32_t timeout) = 0;

  protected:
    ~ILowLevelIo() = default;
};

// Which buffer SetBufferSize means.
enum class IoBufferKind : std::int32_t { kRead = 0, kWrite = 1, kBoth = 2 };

// A read buffer and a write buffer. Null targets and sources are reported with ReportNullPointer;
// out actuals may be null. One caller at a time.
struct IIoBuffer {
    virtual ~IIoBuffer() = default;

    // S_FALSE means that the response had ended and there was no byte: `value` is 0 then.
    virtual HRESULT GetByte(BYTE* value) = 0;
    virtual HRESULT ReadToString(BSTR* text, std::uint32_t count, bool flush) = 0;
    virtual HRESULT ReadToArray(SAFEARRAY** array, std::uint32_t count, bool flush) = 0;
    virtual HRESULT Read(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool flush) = 0;
    virtual HRESULT ReadBytes(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                              bool flush) = 0;
    virtual HRESULT UngetByte() = 0;
    // Past the buffer, for bulk transfers, with the termination character off.
    virtual HRESULT ReadDirect(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                               bool flush) = 0;
    virtual HRESULT WriteChar(BYTE value, bool flush) = 0;
    // The literal text of a format: byte by byte, and a line feed sends the buffer there and then.
    virtual HRESULT WriteLiteral(std::string_view text) {
        for (const char c : text) {
            const HRESULT status = WriteChar(static_cast<BYTE>(c), c == '\n');
            if (Failed(status)) {
                return status;
            }
        }
        return S_OK;
    }
    virtual HRESULT WriteWideString(BSTR text, std::uint32_t* actual, bool flush) = 0;
    virtual HRESULT WriteArray(SAFEARRAY* bytes, std::uint32_t count, std::uint32_t* actual,
                               bool flush) = 0;
    virtual HRESULT WriteText(std::string_view text, std::uint32_t* actual, bool flush) = 0;
    virtual HRESULT WriteBytes(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                               bool flush) = 0;
    virtual HRESULT FlushRead() = 0;
    virtual HRESULT FlushWrite(bool sendEnd) = 0;
    virtual HRESULT SetBufferSize(IoBufferKind which, std::uint32_t size) = 0;
    virtual HRESULT GetReadBufferSize(std::uint32_t* size) = 0;
    virtual HRESULT GetWriteBufferSize(std::uint32_t* size) = 0;
    [[nodiscard]] virtual bool GetByteSwap() = 0;
    virtual void SetByteSwap(bool swap) = 0;
};

}  // namespace kestrion
