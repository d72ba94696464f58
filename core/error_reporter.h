// The one door for failures: a message number and its arguments become a status and the thread's
// error object.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "core/call_stack.h"
#include "core/message_data.h"
#include "io/partners.h"

namespace kestrion {

// The numbers of the messages that the driver's own code names. The texts and statuses are data:
// AllMessages() has them.
namespace message {
inline constexpr std::int32_t kUnrecoverable = 2;
inline constexpr std::int32_t kInstrumentError = 3;
inline constexpr std::int32_t kInvalidValue = 8;
inline constexpr std::int32_t kMethodNotSupported = 9;
inline constexpr std::int32_t kPropertyNotSupported = 10;
inline constexpr std::int32_t kValueNotSupported = 11;
inline constexpr std::int32_t kNotInitialized = 12;
inline constexpr std::int32_t kUnknownOptionValue = 19;
inline constexpr std::int32_t kOutOfMemory = 20;
inline constexpr std::int32_t kNullPointer = 22;
inline constexpr std::int32_t kUnexpectedResponse = 23;
inline constexpr std::int32_t kIdQueryFailed = 27;
inline constexpr std::int32_t kResetFailed = 28;
inline constexpr std::int32_t kUnknownResource = 29;
inline constexpr std::int32_t kAlreadyInitialized = 30;
inline constexpr std::int32_t kCannotChangeSimulation = 31;
inline constexpr std::int32_t kUnknownPhysicalSelector = 36;
inline constexpr std::int32_t kIoError = 42;
inline constexpr std::int32_t kIoTimeout = 43;
inline constexpr std::int32_t kNotSupportedByModel = 44;
inline constexpr std::int32_t kPersonalityNotInstalled = 47;
inline constexpr std::int32_t kPreviewState = 48;
inline constexpr std::int32_t kChannelNotEnabled = 49;
inline constexpr std::int32_t kMaxTimeExceeded = 51;
inline constexpr std::int32_t kInvalidAcquisitionType = 52;
// Numbers without a message: they leave through the "Internal Error" text.
inline constexpr std::int32_t kWaveformDatabaseRefused = 236;
inline constexpr std::int32_t kChannelRefused = 245;
}  // namespace message

// Texts are UTF-8. No operation throws: where memory runs out the status is still returned. It has
// no changing state, so any thread may call; the error object goes to the calling thread.
class CErrorReporter final : public IIoErrorReporter {
  public:
    using Arguments = std::span<const std::string_view>;

    explicit CErrorReporter(ICallContextProvider& context) : context_(context) {}
    CErrorReporter(const CErrorReporter&) = delete;
    CErrorReporter& operator=(const CErrorReporter&) = delete;
    ~CErrorReporter() = default;

    HRESULT RaiseWithStatus(HRESULT status, std::string_view message) override;

    // The message of `code` with its arguments. A code without a message raises the "Internal
    // Error" text under 0x80020009.
    HRESULT Report(std::int32_t code, std::initializer_list<std::string_view> arguments = {});
    // The same with `detail` behind a CR LF; an empty detail adds nothing.
    HRESULT ReportDetail(std::int32_t code, std::string_view detail,
                         std::initializer_list<std::string_view> arguments = {});

    HRESULT ReportIoError(std::string_view detail) override;
    HRESULT ReportIoTimeout(std::string_view detail) override;
    HRESULT ReportNotInitialized(std::string_view detail) override;
    HRESULT ReportNullPointer(std::string_view method, std::string_view parameter,
                              std::string_view detail) override;
    HRESULT ReportNullPointer(std::string_view parameter, std::string_view detail) override;
    HRESULT ReportOutOfMemory(std::string_view detail) override;
    HRESULT ReportUnexpectedResponse(std::string_view detail) override;
    HRESULT ReportInvalidValue(std::string_view parameter, std::string_view value,
                               std::string_view detail) override;

    // Puts the arguments into the message of `code`; false, and an empty text, without a message.
    [[nodiscard]] static bool FormatMessage(std::int32_t code, Arguments arguments,
                                            std::string& text);

  private:
    HRESULT ReportWith(std::int32_t code, std::string_view detail, Arguments arguments);
    HRESULT ReportLowerError(std::int32_t code, std::string_view detail);
    HRESULT RaiseCode(const MessageData& message, std::string_view text);
    [[nodiscard]] std::string_view CurrentMember() const;

    ICallContextProvider& context_;
};

}  // namespace kestrion
