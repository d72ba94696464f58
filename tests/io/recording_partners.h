// Partners of a session that write down what they are asked.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "io/partners.h"

namespace kestrion {

// Notes each report as "<operation>(<arguments>)" and answers the status that the driver's own
// reporter has for it.
class RecordingReporter final : public IIoErrorReporter {
  public:
    std::vector<std::string> reports;

    HRESULT RaiseWithStatus(HRESULT status, std::string_view message) override {
        return Note(static_cast<std::uint32_t>(status), "RaiseWithStatus", {message});
    }
    HRESULT ReportIoError(std::string_view detail) override {
        return Note(0x80044214, "ReportIoError", {detail});
    }
    HRESULT ReportIoTimeout(std::string_view detail) override {
        return Note(0x80044215, "ReportIoTimeout", {detail});
    }
    HRESULT ReportNotInitialized(std::string_view detail) override {
        return Note(0x8004701D, "ReportNotInitialized", {detail});
    }
    HRESULT ReportNullPointer(std::string_view method, std::string_view parameter,
                              std::string_view detail) override {
        return Note(0x80047058, "ReportNullPointer", {method, parameter, detail});
    }
    HRESULT ReportNullPointer(std::string_view parameter, std::string_view detail) override {
        return Note(0x80047058, "ReportNullPointer", {parameter, detail});
    }
    HRESULT ReportOutOfMemory(std::string_view detail) override {
        return Note(0x80047056, "ReportOutOfMemory", {detail});
    }
    HRESULT ReportUnexpectedResponse(std::string_view detail) override {
        return Note(0x80047059, "ReportUnexpectedResponse", {detail});
    }
    HRESULT ReportInvalidValue(std::string_view parameter, std::string_view value,
                               std::string_view detail) override {
        return Note(0x80047010, "ReportInvalidValue", {parameter, value, detail});
    }

  private:
    HRESULT Note(std::uint32_t status, std::string_view operation,
                 std::vector<std::string_view> arguments) {
        std::string text(operation);
        text += '(';
        for (const std::string_view argument : arguments) {
            text += text.ends_with('(') ? "" : " | ";
            text += argument;
        }
        reports.push_back(text + ')');
        return MakeStatus(status);
    }
};

// The statuses that the reporter above answers.
inline constexpr HRESULT kIoErrorStatus = MakeStatus(0x80044214);
inline constexpr HRESULT kIoTimeoutStatus = MakeStatus(0x80044215);
inline constexpr HRESULT kNotInitializedStatus = MakeStatus(0x8004701D);
inline constexpr HRESULT kNullPointerStatus = MakeStatus(0x80047058);
inline constexpr HRESULT kOutOfMemoryStatus = MakeStatus(0x80047056);
inline constexpr HRESULT kUnexpectedResponseStatus = MakeStatus(0x80047059);
inline constexpr HRESULT kInvalidValueStatus = MakeStatus(0x80047010);

class CountingPoller final : public IInstrErrorPoller {
  public:
    int polls = 0;
    HRESULT answer = S_OK;

    HRESULT PollInstrumentStatus() override {
        ++polls;
        return answer;
    }
};

// Knows the enum "Slope" with RISE 0 and FALL 1.
class SlopeFormatter final : public IEnumFormatter {
  public:
    HRESULT EnumToToken(std::string_view name, std::int32_t value, std::string& token) override {
        if (name != "Slope" || value < 0 || value > 1) {
            return E_FAIL;
        }
        token = value == 0 ? "RISE" : "FALL";
        return S_OK;
    }
    HRESULT TokenToEnum(std::string_view name, std::string_view token,
                        std::int32_t& value) override {
        if (name != "Slope" || (token != "RISE" && token != "FALL")) {
            return E_FAIL;
        }
        value = token == "RISE" ? 0 : 1;
        return S_OK;
    }
    std::int32_t GetMaxTokenLength(std::string_view name) override {
        return name == "Slope" ? 4 : 0;
    }
};

}  // namespace kestrion
