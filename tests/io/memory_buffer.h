// A buffer in memory for tests of the format language, and short ways to run a format over it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "io/args.h"
#include "io/format_reader.h"
#include "io/format_writer.h"
#include "io/io_buffer.h"
#include "io/partners.h"
#include "io/status.h"

namespace kestrion {

// What the fake gives where a real buffer would wait for the instrument in vain.
inline constexpr HRESULT kFakeTimeout = MakeStatus(0x80040015);
// What a write gives that was told to fail.
inline constexpr HRESULT kFakeWriteFailure = MakeStatus(0x8004003E);
// What the enumerations give for a value or token that they don't know.
inline constexpr HRESULT kFakeUnknownValue = MakeStatus(0x80040208);
inline constexpr HRESULT kFakeUnknownToken = MakeStatus(0x80040217);

class MemoryBuffer final : public IIoBuffer {
  public:
    MemoryBuffer() = default;
    // The response is `payload`; behind it stands a terminator that only direct reads see.
    explicit MemoryBuffer(std::string payload, std::string terminator = "")
        : data_(payload + terminator), payloadEnd_(payload.size()) {}

    // The response never ends: after its last byte a read waits in vain.
    void NeverEnds() { endless_ = true; }
    // A direct read of more than there is ends with the response, as if the instrument had just
    // sent it. Otherwise such a read waits in vain, as it does when all of the response was
    // buffered.
    void DirectReadsEndWithResponse() { directReadsEnd_ = true; }
    // Writes take no more than this many bytes in all, and say so in their actual.
    void TakeAtMost(std::size_t bytes) { room_ = bytes; }
    // The write of this number, counted from 1, fails.
    void FailWrite(int number) { failWrite_ = number; }

    [[nodiscard]] std::string_view Unread() const {
        return std::string_view(data_).substr(0, payloadEnd_).substr(at_);
    }
    [[nodiscard]] const std::string& Written() const { return written_; }
    // What had been written when each flush came.
    [[nodiscard]] const std::vector<std::string>& Flushed() const { return flushed_; }
    [[nodiscard]] int Writes() const { return writes_; }
    [[nodiscard]] int DirectReads() const { return directReads_; }
    [[nodiscard]] int ReadFlushes() const { return readFlushes_; }

    HRESULT GetByte(BYTE* value) override { return ReadBytes(value, 1, nullptr, false); }
    HRESULT ReadToString(BSTR*, std::uint32_t, bool) override { return E_NOTIMPL; }
    HRESULT ReadToArray(SAFEARRAY**, std::uint32_t, bool) override { return E_NOTIMPL; }
    HRESULT Read(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool flush) override {
        return ReadBytes(target, count, actual, flush);
    }
    HRESULT ReadBytes(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool) override {
        const bool drained = at_ >= payloadEnd_;
        const HRESULT status = Take(target, count, payloadEnd_, actual);
        if (at_ >= payloadEnd_ && !endless_) {
            at_ = data_.size();  // the terminator goes with the last byte
        }
        return drained && count > 0 ? kFakeTimeout : status;
    }
    HRESULT UngetByte() override {
        if (at_ == 0) {
            return E_OUTOFMEMORY;
        }
        at_ = at_ == data_.size() ? payloadEnd_ - 1 : at_ - 1;
        return S_OK;
    }
    HRESULT ReadDirect(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool) override {
        ++directReads_;
        const bool drained = at_ >= data_.size();
        const std::size_t left = data_.size() - at_;
        const HRESULT status = Take(target, count, data_.size(), actual);
        const bool waits = drained || (left < count && !directReadsEnd_);
        return waits && count > 0 ? kFakeTimeout : status;
    }
    HRESULT WriteChar(BYTE value, bool flush) override {
        std::uint32_t actual = 0;
        return Put({reinterpret_cast<const char*>(&value), 1}, &actual, flush);
    }
    HRESULT WriteWideString(BSTR, std::uint32_t*, bool) override { return E_NOTIMPL; }
    HRESULT WriteArray(SAFEARRAY*, std::uint32_t, std::uint32_t*, bool) override {
        return E_NOTIMPL;
    }
    HRESULT WriteText(std::string_view text, std::uint32_t* actual, bool flush) override {
        return Put(text, actual, flush);
    }
    HRESULT WriteBytes(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                       bool flush) override {
        return Put({reinterpret_cast<const char*>(bytes), count}, actual, flush);
    }
    HRESULT FlushRead() override {
        ++readFlushes_;
        at_ = data_.size();
        return S_OK;
    }
    HRESULT FlushWrite(bool) override {
        flushed_.push_back(written_);
        return S_OK;
    }
    HRESULT SetBufferSize(IoBufferKind, std::uint32_t) override { return E_NOTIMPL; }
    HRESULT GetReadBufferSize(std::uint32_t*) override { return E_NOTIMPL; }
    HRESULT GetWriteBufferSize(std::uint32_t*) override { return E_NOTIMPL; }
    [[nodiscard]] bool GetByteSwap() override { return swap_; }
    void SetByteSwap(bool swap) override { swap_ = swap; }

  private:
    HRESULT Take(BYTE* target, std::uint32_t count, std::size_t end, std::uint32_t* actual) {
        const std::size_t taken = std::min<std::size_t>(count, end - std::min(at_, end));
        std::copy_n(data_.data() + at_, taken, reinterpret_cast<char*>(target));
        at_ += taken;
        if (actual != nullptr) {
            *actual = static_cast<std::uint32_t>(taken);
        }
        if (endless_) {
            return taken == count ? IoStatusMoreData : kFakeTimeout;
        }
        return at_ < payloadEnd_ ? IoStatusMoreData : S_OK;
    }
    HRESULT Put(std::string_view text, std::uint32_t* actual, bool flush) {
        if (++writes_ == failWrite_) {
            return kFakeWriteFailure;
        }
        text = text.substr(0, std::min(text.size(), room_));
        room_ -= text.size();
        written_ += text;
        *actual = static_cast<std::uint32_t>(text.size());
        return flush ? FlushWrite(true) : S_OK;
    }

    std::string data_;
    std::size_t payloadEnd_ = 0;
    std::size_t at_ = 0;
    bool endless_ = false;
    bool directReadsEnd_ = false;
    bool swap_ = true;
    std::string written_;
    std::vector<std::string> flushed_;
    std::size_t room_ = std::numeric_limits<std::size_t>::max();
    int writes_ = 0;
    int failWrite_ = 0;
    int directReads_ = 0;
    int readFlushes_ = 0;
};

// Two enumerations: "Mode" with SAMPLE 0, PEAKDETECT 1 and HIRES 2, and VARIANT_BOOL with ON and
// OFF.
class FakeEnums final : public IEnumFormatter {
  public:
    HRESULT EnumToToken(std::string_view name, std::int32_t value, std::string& token) override {
        lastValue = value;
        for (const auto& [text, number] : Table(name)) {
            if (number == value) {
                token = text;
                return S_OK;
            }
        }
        return kFakeUnknownValue;
    }
    HRESULT TokenToEnum(std::string_view name, std::string_view token,
                        std::int32_t& value) override {
        lastToken = token;
        for (const auto& [text, number] : Table(name)) {
            if (text == token) {
                value = number;
                return S_OK;
            }
        }
        return kFakeUnknownToken;
    }
    std::int32_t GetMaxTokenLength(std::string_view name) override {
        std::size_t longest = 0;
        for (const auto& [text, number] : Table(name)) {
            longest = std::max(longest, text.size());
        }
        return static_cast<std::int32_t>(longest);
    }

    std::int32_t lastValue = 0;
    std::string lastToken;

  private:
    using Rows = std::vector<std::pair<std::string, std::int32_t>>;
    static Rows Table(std::string_view name) {
        if (name == "Mode") {
            return {{"SAMPLE", 0}, {"PEAKDETECT", 1}, {"HIRES", 2}};
        }
        if (name == "VARIANT_BOOL") {
            return {{"ON", 1}, {"ON", -1}, {"OFF", 0}};
        }
        return {};
    }
};

// Runs a format that writes into `buffer`.
template <typename... Arguments>
HRESULT WriteTo(MemoryBuffer& buffer, std::string_view format, Arguments... arguments) {
    FakeEnums enums;
    const auto pack = PackArgs(arguments...);
    ArgCursor cursor(pack);
    return FormatWrite(buffer, format, cursor, &enums);
}

// What a format writes; "failed" and the status if it fails.
template <typename... Arguments>
std::string Written(std::string_view format, Arguments... arguments) {
    MemoryBuffer buffer;
    const HRESULT status = WriteTo(buffer, format, arguments...);
    if (status != S_OK) {
        return "failed " + std::to_string(status);
    }
    return buffer.Written();
}

// The status of a format that writes.
template <typename... Arguments>
HRESULT WriteStatus(std::string_view format, Arguments... arguments) {
    MemoryBuffer buffer;
    return WriteTo(buffer, format, arguments...);
}

// Runs a format that reads over `buffer`.
template <typename... Arguments>
HRESULT ReadFrom(MemoryBuffer& buffer, std::string_view format, Arguments... arguments) {
    FakeEnums enums;
    const auto pack = PackArgs(arguments...);
    ArgCursor cursor(pack);
    return FormatRead(buffer, format, cursor, &enums);
}

// The same over a response of its own.
template <typename... Arguments>
HRESULT ReadText(std::string_view response, std::string_view format, Arguments... arguments) {
    MemoryBuffer buffer{std::string(response)};
    return ReadFrom(buffer, format, arguments...);
}

}  // namespace kestrion
