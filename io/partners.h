// What the instrument I/O asks of the driver above it. The driver implements these; tests do too.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "kestrion/platform/types.h"

namespace kestrion {

// Asks the instrument whether the last command failed.
struct IInstrErrorPoller {
    virtual HRESULT PollInstrumentStatus() = 0;

  protected:
    ~IInstrErrorPoller() = default;
};

// Enum values to instrument tokens and back, for the member call that is running.
// `name` is the bare enum name of a format directive, such as "KestrionAcquisitionModeEnum".
struct IEnumFormatter {
    virtual HRESULT EnumToToken(std::string_view name, std::int32_t value, std::string& token) = 0;
    virtual HRESULT TokenToEnum(std::string_view name, std::string_view token,
                                std::int32_t& value) = 0;
    // The longest token of the enum in characters; 0 for an unknown name, which isn't reported.
    virtual std::int32_t GetMaxTokenLength(std::string_view name) = 0;

  protected:
    ~IEnumFormatter() = default;
};

// Records a failure in the thread's error object and returns its status. `detail` goes behind the
// message's own words; texts are UTF-8. No operation throws.
struct IIoErrorReporter {
    // Records `message` as it stands under `status`, which is returned.
    virtual HRESULT RaiseWithStatus(HRESULT status, std::string_view message) = 0;
    // "I/O error: %1." with the text of the error that the layer below left on the thread as %1.
    virtual HRESULT ReportIoError(std::string_view detail) = 0;
    // "I/O timeout error: %1.", in the same way.
    virtual HRESULT ReportIoTimeout(std::string_view detail) = 0;
    virtual HRESULT ReportNotInitialized(std::string_view detail) = 0;
    virtual HRESULT ReportNullPointer(std::string_view method, std::string_view parameter,
                                      std::string_view detail) = 0;
    // The method is the one of the running call.
    virtual HRESULT ReportNullPointer(std::string_view parameter, std::string_view detail) = 0;
    virtual HRESULT ReportOutOfMemory(std::string_view detail) = 0;
    virtual HRESULT ReportUnexpectedResponse(std::string_view detail) = 0;
    // "Invalid value (%1) for method %2, parameter %3."; the method is the one of the running call.
    virtual HRESULT ReportInvalidValue(std::string_view parameter, std::string_view value,
                                       std::string_view detail) = 0;

  protected:
    ~IIoErrorReporter() = default;
};

}  // namespace kestrion
