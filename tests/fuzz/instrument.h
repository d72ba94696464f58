// The unbuffered road to an instrument that has one response ready, for fuzz targets.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "io/instr_buffer.h"
#include "io/io_buffer.h"
#include "io/status.h"
#include "tests/fuzz/property.h"
#include "tests/io/recording_partners.h"

namespace kestrion::fuzz {

// What a read gives where an instrument would be waited for in vain.
inline constexpr HRESULT kNothingMoreCame = MakeStatus(0x80040015);

// What a write gives beyond the most that an instrument takes.
inline constexpr HRESULT kTookEnough = MakeStatus(0x8004003E);
inline constexpr std::size_t kMostWritten = std::size_t{1} << 18U;

// Gives as many bytes as it is asked for until the response has ended, and notes what is written.
class Instrument final : public ILowLevelIo {
  public:
    explicit Instrument(std::string_view response) : rest_(response) {}

    [[nodiscard]] const std::string& Written() const { return written_; }
    // What of the response hasn't been asked for.
    [[nodiscard]] std::string_view Rest() const { return rest_; }

    HRESULT SetTerminationCharacterEnabled(bool) override { return S_OK; }
    HRESULT GetTerminationCharacterEnabled(bool* enabled) override {
        *enabled = false;
        return S_OK;
    }
    HRESULT SetSendEndEnabled(bool) override { return S_OK; }
    HRESULT GetSendEndEnabled(bool* enabled) override {
        *enabled = true;
        return S_OK;
    }
    HRESULT LowLevelReadNoPoll(BYTE* buffer, std::uint32_t count, std::uint32_t* actual,
                               std::int32_t) override {
        const std::size_t got = std::min<std::size_t>(count, rest_.size());
        std::copy_n(rest_.data(), got, reinterpret_cast<char*>(buffer));
        rest_.remove_prefix(got);
        *actual = static_cast<std::uint32_t>(got);
        if (ended_ && count > 0) {
            return kNothingMoreCame;
        }
        ended_ = rest_.empty();
        return ended_ ? S_OK : IoStatusMoreData;
    }
    HRESULT LowLevelReadStringNoPoll(std::string* text, std::uint32_t count,
                                     std::int32_t timeout) override {
        text->resize(count);
        std::uint32_t actual = 0;
        const HRESULT status =
            LowLevelReadNoPoll(reinterpret_cast<BYTE*>(text->data()), count, &actual, timeout);
        text->resize(actual);
        return status;
    }
    HRESULT LowLevelWriteNoPoll(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                                std::int32_t) override {
        written_.append(reinterpret_cast<const char*>(bytes), count);
        *actual = count;
        return written_.size() > kMostWritten ? kTookEnough : S_OK;
    }

  private:
    std::string_view rest_;
    bool ended_ = false;
    std::string written_;
};

// An instrument with the driver's buffer in front of it, which fills itself with `pieceSize` bytes
// at a time. The end of the response is told by the instrument alone unless there is a terminator.
class BufferedResponse {
  public:
    BufferedResponse(std::string_view response, std::uint32_t pieceSize,
                     std::string_view terminator = {})
        : instrument_(response),
          buffer_(CInstrBuffer::Create(instrument_, reporter_, terminator, "\n")) {
        Require(buffer_->SetBufferSize(IoBufferKind::kRead, pieceSize) == S_OK,
                "the buffer exists");
    }

    [[nodiscard]] CInstrBuffer& Buffer() { return *buffer_; }
    [[nodiscard]] Instrument& Device() { return instrument_; }
    [[nodiscard]] RecordingReporter& Reporter() { return reporter_; }

    // Reads all that is left, which ends the response.
    [[nodiscard]] std::string Drain() {
        std::string rest;
        for (;;) {
            BYTE byte = 0;
            const HRESULT status = buffer_->GetByte(&byte);
            if (status != S_OK && status != IoStatusMoreData) {
                return rest;
            }
            rest += static_cast<char>(byte);
            if (status == S_OK) {
                return rest;
            }
        }
    }

  private:
    Instrument instrument_;
    RecordingReporter reporter_;
    std::unique_ptr<CInstrBuffer> buffer_;
};

}  // namespace kestrion::fuzz
