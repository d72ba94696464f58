// A road to an instrument that takes everything and answers each read with the same response.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "io/instr_buffer.h"

namespace bench {

class QuietLine final : public kestrion::ILowLevelIo {
  public:
    // Ends with a newline; has to live as long.
    void AnswerWith(std::string_view response) { response_ = response; }

    HRESULT SetTerminationCharacterEnabled(bool /*enabled*/) override { return S_OK; }
    HRESULT GetTerminationCharacterEnabled(bool* enabled) override { return Off(enabled); }
    HRESULT SetSendEndEnabled(bool /*enabled*/) override { return S_OK; }
    HRESULT GetSendEndEnabled(bool* enabled) override { return Off(enabled); }
    HRESULT LowLevelReadNoPoll(BYTE* buffer, std::uint32_t count, std::uint32_t* actual,
                               std::int32_t /*timeout*/) override {
        *actual = static_cast<std::uint32_t>(std::min<std::size_t>(count, response_.size()));
        std::copy_n(response_.data(), *actual, reinterpret_cast<char*>(buffer));
        return S_OK;
    }
    HRESULT LowLevelReadStringNoPoll(std::string* text, std::uint32_t /*count*/,
                                     std::int32_t /*timeout*/) override {
        *text = response_;
        return S_OK;
    }
    HRESULT LowLevelWriteNoPoll(const BYTE* /*bytes*/, std::uint32_t count, std::uint32_t* actual,
                                std::int32_t /*timeout*/) override {
        *actual = count;
        return S_OK;
    }

  private:
    static HRESULT Off(bool* enabled) {
        *enabled = false;
        return S_OK;
    }

    std::string_view response_;
};

// Nothing fails here, so nothing is said.
class QuietReporter final : public kestrion::IIoErrorReporter {
  public:
    HRESULT RaiseWithStatus(HRESULT status, std::string_view) override { return status; }
    HRESULT ReportIoError(std::string_view) override { return E_FAIL; }
    HRESULT ReportIoTimeout(std::string_view) override { return E_FAIL; }
    HRESULT ReportNotInitialized(std::string_view) override { return E_FAIL; }
    HRESULT ReportNullPointer(std::string_view, std::string_view, std::string_view) override {
        return E_FAIL;
    }
    HRESULT ReportNullPointer(std::string_view, std::string_view) override { return E_FAIL; }
    HRESULT ReportOutOfMemory(std::string_view) override { return E_OUTOFMEMORY; }
    HRESULT ReportUnexpectedResponse(std::string_view) override { return E_FAIL; }
    HRESULT ReportInvalidValue(std::string_view, std::string_view, std::string_view) override {
        return E_FAIL;
    }
};

}  // namespace bench
