// The one door for failures: a message number and its arguments become a status and the thread's
// error object.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "core/call_stack.h"
#include "core/message_data.h"
#include "io/partners.h"

namespace kestrion {

// Numbers that no message has, on purpose: what they refuse has no words of its own yet, so it
// leaves through the "Internal Error" text with the number in it.
namespace message {
inline constexpr std::int32_t kWaveformDatabaseRefused = 236;
inline constexpr std::int32_t kSlopeRefused = 241;
inline constexpr std::int32_t kChannelRefused = 245;
inline constexpr std::int32_t kWaveformSourceRefused = 246;
}  // namespace message

// A value as the texts of errors show it.
[[nodiscard]] std::string ValueText(bool value);          // "True" or "False"
[[nodiscard]] std::string ValueText(std::int32_t value);  // in decimal
[[nodiscard]] std::string ValueText(double value);        // the shortest that reads back

// Texts are UTF-8. Every operation gives the status of its message, or leaves it to the caller as
// an out-of-memory failure would; a `detail` that isn't empty stands behind the message's words and
// a CR LF. No operation throws: where memory runs out the status is still returned. The reporter
// has no changing state, so any thread may call; the error object goes to the calling thread.
class CErrorReporter final : public IIoErrorReporter {
  public:
    using Arguments = std::span<const std::string_view>;

    explicit CErrorReporter(ICallContextProvider& context) : context_(context) {}
    CErrorReporter(const CErrorReporter&) = delete;
    CErrorReporter& operator=(const CErrorReporter&) = delete;
    ~CErrorReporter() = default;

    // Raises `message` as it stands under `status`.
    HRESULT RaiseWithStatus(HRESULT status, std::string_view message) override;

    // The message of `code` with its arguments. A code without a message raises the "Internal
    // Error" text under 0x80020009.
    HRESULT Report(std::int32_t code, std::initializer_list<std::string_view> arguments = {});
    HRESULT ReportDetail(std::int32_t code, std::string_view detail,
                         std::initializer_list<std::string_view> arguments = {});

    // I/O failures. The error object that the layer below left on the thread is taken, and its
    // description goes into the message.
    HRESULT ReportIoError(std::string_view detail) override;
    HRESULT ReportIoTimeout(std::string_view detail) override;

    // Arguments of the caller. Those that don't name the method mean the running one.
    HRESULT ReportInvalidValue(std::string_view method, std::string_view parameter,
                               std::string_view value, std::string_view detail);
    HRESULT ReportInvalidValue(std::string_view parameter, std::string_view value,
                               std::string_view detail) override;
    HRESULT ReportNullPointer(std::string_view method, std::string_view parameter,
                              std::string_view detail) override;
    HRESULT ReportNullPointer(std::string_view parameter, std::string_view detail) override;
    HRESULT ReportValueNotSupported(std::string_view value, std::string_view parameter,
                                    std::string_view method, std::string_view detail = {});
    HRESULT ReportValueNotSupported(std::string_view value, std::string_view parameter);

    // Members that the driver or the instrument doesn't have. The forms without a name mean the
    // running member.
    HRESULT ReportMethodNotSupported(std::string_view method, std::string_view detail);
    HRESULT ReportMethodNotSupported();
    HRESULT ReportPropertyNotSupported(std::string_view property, std::string_view detail);
    HRESULT ReportPropertyNotSupported();
    HRESULT ReportNotSupportedByModel(std::string_view feature, std::string_view detail = {});
    HRESULT ReportPersonalityNotActive(std::string_view detail = {});
    HRESULT ReportPersonalityNotInstalled(std::string_view detail = {});

    // Start-up, shut-down and options.
    HRESULT ReportAlreadyInitialized(std::string_view detail = {});
    HRESULT ReportNotInitialized(std::string_view detail) override;
    HRESULT ReportCannotChangeSimulation(std::string_view detail = {});
    HRESULT ReportMissingOptionName(std::string_view detail = {});
    HRESULT ReportMissingOptionValue(std::string_view detail = {});
    HRESULT ReportUnknownOptionName(std::string_view name, std::string_view detail = {});
    HRESULT ReportUnknownOptionValue(std::string_view value, std::string_view detail = {});
    HRESULT ReportUnknownResource(std::string_view detail = {});
    HRESULT ReportIdQueryFailed(std::string_view detail = {});
    HRESULT ReportResetFailed(std::string_view detail = {});

    // Repeated capabilities.
    HRESULT ReportUnknownChannel(std::string_view detail = {});
    HRESULT ReportChannelNameRequired(std::string_view detail = {});
    HRESULT ReportBadSelector(std::string_view detail = {});
    HRESULT ReportBadSelectorLevels(std::string_view capability, std::string_view detail = {});
    HRESULT ReportBadRange(std::string_view range, std::string_view capability,
                           std::string_view detail = {});
    HRESULT ReportUnknownNameInSelector(std::string_view detail = {});
    HRESULT ReportUnknownPhysicalSelector(std::string_view detail = {});

    // What the instrument answers and does.
    HRESULT ReportInstrumentError(std::string_view detail = {});
    HRESULT ReportUnexpectedResponse(std::string_view detail) override;
    HRESULT ReportStatusNotAvailable(std::string_view detail = {});
    HRESULT ReportOperationInProgress(std::string_view detail = {});
    HRESULT ReportPreviewState(std::string_view detail = {});
    HRESULT ReportChannelNotEnabled(std::string_view detail = {});
    HRESULT ReportMeasurementFailed(std::string_view detail = {});
    HRESULT ReportMaxTimeExceeded(std::string_view detail = {});
    HRESULT ReportInvalidAcquisitionType(std::string_view detail = {});

    // Files and memory.
    HRESULT ReportCannotOpenFile(std::string_view detail = {});
    HRESULT ReportReadError(std::string_view detail = {});
    HRESULT ReportWriteError(std::string_view detail = {});
    HRESULT ReportInvalidPath(std::string_view detail = {});
    HRESULT ReportTooManyFiles(std::string_view detail = {});
    HRESULT ReportFileNotFound(std::string_view detail = {});
    HRESULT ReportInvalidFileFormat(std::string_view detail = {});
    HRESULT ReportOutOfMemory(std::string_view detail) override;
    HRESULT ReportUnrecoverable(std::string_view detail = {});

    // Warnings: their statuses are positive, and an error object comes with them all the same.
    HRESULT ReportIdQueryNotSupported(std::string_view detail = {});
    HRESULT ReportResetNotSupported(std::string_view detail = {});
    HRESULT ReportSelfTestNotSupported(std::string_view detail = {});
    HRESULT ReportErrorQueryNotSupported(std::string_view detail = {});
    HRESULT ReportFirmwareQueryNotSupported(std::string_view detail = {});
    HRESULT ReportInvalidWaveformElement(std::string_view detail = {});

    // The message of `code` with its arguments; false, and an empty text, without a message.
    [[nodiscard]] static bool FormatMessage(std::int32_t code, Arguments arguments,
                                            std::string& text);

  private:
    HRESULT ReportWith(std::int32_t code, std::string_view detail, Arguments arguments);
    HRESULT ReportLowerError(std::int32_t code, std::string_view detail);
    HRESULT RaiseCode(const MessageData& message, std::string_view text);
    [[nodiscard]] std::string_view CurrentMember() const;

    ICallContextProvider& context_;
};

// A message's text with its arguments. "%1" to "%99" are the arguments by number, of which those
// that aren't there are left out; "%n" is a line break, "%0" ends the text, and "%" before any
// other character is that character. Arguments are taken as they stand. (The insertion rule of
// the message resources of Windows, without their format suffixes.)
[[nodiscard]] std::string InsertArguments(std::string_view text,
                                          std::span<const std::string_view> arguments);

}  // namespace kestrion
