#include "core/error_reporter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <exception>
#include <system_error>

#include "kestrion/platform/error_info.h"
#include "platform/text.h"

namespace kestrion {
namespace {

constexpr std::size_t kInternalErrorLimit = 500;

const MessageData* FindMessage(std::int32_t code) {
    const auto messages = AllMessages();
    const auto found = std::ranges::lower_bound(messages, code, {}, &MessageData::code);
    return found != messages.end() && found->code == code ? &*found : nullptr;
}

// The fields of the thread's error object.
struct ErrorFields {
    std::string_view description;
    IID iid{};
    std::uint32_t helpContext = 0;
};

void InstallError(const ErrorFields& fields) {
    ComPtr<ICreateErrorInfo> created;
    if (Failed(CreateErrorInfo(created.Out()))) {
        return;
    }
    (void)created->SetGUID(fields.iid);
    (void)created->SetSource(Utf8ToUtf16(Metadata().progId).c_str());
    (void)created->SetDescription(Utf8ToUtf16(fields.description).c_str());
    if (fields.helpContext != 0) {
        (void)created->SetHelpFile(Utf8ToUtf16(Metadata().helpFile).c_str());
        (void)created->SetHelpContext(fields.helpContext);
    }
    const auto error = Query<IErrorInfo>(created.Get());
    (void)SetErrorInfo(0, error.Get());
}

// The description of the error that a lower layer left on this thread; empty without one.
std::string TakeLowerDescription() {
    ComPtr<IErrorInfo> error;
    BstrPtr description;
    if (GetErrorInfo(0, error.Out()) != S_OK || Failed(error->GetDescription(description.Out()))) {
        return {};
    }
    return description.Utf8();
}

std::string InternalErrorText(std::int32_t code) {
    std::string text =
        "Internal Error: Unable to retrieve and format error message from message "
        "table.\nResource ID = " +
        std::to_string(code) + "\nLanguage ID = 0\nReason = '" +
        std::generic_category().message(ENOMSG) + "'";
    text.resize(std::min(text.size(), kInternalErrorLimit));
    return text;
}

}  // namespace

std::string ValueText(bool value) {
    return value ? "True" : "False";
}

std::string ValueText(std::int32_t value) {
    return std::to_string(value);
}

std::string ValueText(double value) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), result.ptr};
}

std::string InsertArguments(std::string_view text, std::span<const std::string_view> arguments) {
    std::string inserted;
    while (!text.empty()) {
        const std::size_t percent = text.find('%');
        inserted += text.substr(0, percent);
        if (percent >= text.size() - 1) {
            // Nothing follows the percent sign, or there is none.
            inserted += text.substr(std::min(percent, text.size()));
            break;
        }
        text.remove_prefix(percent + 1);
        const char next = text.front();
        if (next == '0') {
            break;
        }
        if (!(next >= '0' && next <= '9')) {
            inserted += next == 'n' ? std::string_view("\r\n") : text.substr(0, 1);
            text.remove_prefix(1);
            continue;
        }
        std::size_t number = 0;
        const auto end = std::from_chars(
            text.data(), text.data() + std::min<std::size_t>(text.size(), 2), number);
        text.remove_prefix(static_cast<std::size_t>(end.ptr - text.data()));
        if (number <= arguments.size()) {
            inserted += arguments[number - 1];
        }
    }
    return inserted;
}

bool CErrorReporter::FormatMessage(std::int32_t code, Arguments arguments, std::string& text) {
    text.clear();
    const MessageData* message = FindMessage(code);
    if (message == nullptr) {
        return false;
    }
    text = InsertArguments(message->text, arguments);
    return true;
}

HRESULT CErrorReporter::RaiseWithStatus(HRESULT status, std::string_view message) {
    try {
        const MethodDescriptor* method = context_.GetCurrentMethod();
        InstallError({.description = message, .iid = method == nullptr ? IID{} : method->iid});
    } catch (const std::exception&) {
        // Without memory for the text the status has to do.
    }
    return status;
}

HRESULT CErrorReporter::RaiseCode(const MessageData& message, std::string_view text) {
    const MethodDescriptor* method = context_.GetCurrentMethod();
    InstallError({.description = text,
                  .iid = method == nullptr ? IID{} : method->iid,
                  .helpContext = message.helpContext});
    // An error object doesn't go with a plain success.
    return message.status == S_OK ? DISP_E_EXCEPTION : message.status;
}

HRESULT CErrorReporter::ReportWith(std::int32_t code, std::string_view detail,
                                   Arguments arguments) {
    const MessageData* message = FindMessage(code);
    try {
        if (message == nullptr) {
            InstallError({.description = InternalErrorText(code)});
            return DISP_E_EXCEPTION;
        }
        std::string text;
        (void)FormatMessage(code, arguments, text);
        text = std::string(Trim(text));
        if (!detail.empty()) {
            text.append("\r\n").append(detail);
        }
        return RaiseCode(*message, text);
    } catch (const std::exception&) {
        return message == nullptr || message->status == S_OK ? DISP_E_EXCEPTION : message->status;
    }
}

HRESULT CErrorReporter::Report(std::int32_t code,
                               std::initializer_list<std::string_view> arguments) {
    return ReportWith(code, {}, arguments);
}

HRESULT CErrorReporter::ReportDetail(std::int32_t code, std::string_view detail,
                                     std::initializer_list<std::string_view> arguments) {
    return ReportWith(code, detail, arguments);
}

HRESULT CErrorReporter::ReportLowerError(std::int32_t code, std::string_view detail) {
    std::string lower;
    try {
        lower = TakeLowerDescription();
    } catch (const std::exception&) {
        lower.clear();
    }
    return ReportDetail(code, detail, {lower});
}

HRESULT CErrorReporter::ReportIoError(std::string_view detail) {
    return ReportLowerError(42, detail);
}

HRESULT CErrorReporter::ReportIoTimeout(std::string_view detail) {
    return ReportLowerError(43, detail);
}

HRESULT CErrorReporter::ReportInvalidValue(std::string_view method, std::string_view parameter,
                                           std::string_view value, std::string_view detail) {
    return ReportDetail(8, detail, {value, method, parameter});
}

HRESULT CErrorReporter::ReportInvalidValue(std::string_view parameter, std::string_view value,
                                           std::string_view detail) {
    return ReportInvalidValue(CurrentMember(), parameter, value, detail);
}

HRESULT CErrorReporter::ReportNullPointer(std::string_view method, std::string_view parameter,
                                          std::string_view detail) {
    return ReportDetail(22, detail, {method, parameter});
}

HRESULT CErrorReporter::ReportNullPointer(std::string_view parameter, std::string_view detail) {
    return ReportNullPointer(CurrentMember(), parameter, detail);
}

HRESULT CErrorReporter::ReportValueNotSupported(std::string_view value, std::string_view parameter,
                                                std::string_view method, std::string_view detail) {
    return ReportDetail(11, detail, {value, parameter, method});
}

HRESULT CErrorReporter::ReportValueNotSupported(std::string_view value,
                                                std::string_view parameter) {
    return ReportValueNotSupported(value, parameter, CurrentMember());
}

HRESULT CErrorReporter::ReportMethodNotSupported(std::string_view method, std::string_view detail) {
    return ReportDetail(9, detail, {method});
}

HRESULT CErrorReporter::ReportMethodNotSupported() {
    return ReportMethodNotSupported(CurrentMember(), {});
}

HRESULT CErrorReporter::ReportPropertyNotSupported(std::string_view property,
                                                   std::string_view detail) {
    return ReportDetail(10, detail, {property});
}

HRESULT CErrorReporter::ReportPropertyNotSupported() {
    return ReportPropertyNotSupported(CurrentMember(), {});
}

HRESULT CErrorReporter::ReportNotSupportedByModel(std::string_view feature,
                                                  std::string_view detail) {
    return ReportDetail(44, detail, {feature});
}

HRESULT CErrorReporter::ReportUnknownOptionName(std::string_view name, std::string_view detail) {
    return ReportDetail(18, detail, {name});
}

HRESULT CErrorReporter::ReportUnknownOptionValue(std::string_view value, std::string_view detail) {
    return ReportDetail(19, detail, {value});
}

HRESULT CErrorReporter::ReportBadSelectorLevels(std::string_view capability,
                                                std::string_view detail) {
    return ReportDetail(32, detail, {capability});
}

HRESULT CErrorReporter::ReportBadRange(std::string_view range, std::string_view capability,
                                       std::string_view detail) {
    return ReportDetail(33, detail, {range, capability});
}

// The messages without arguments.

HRESULT CErrorReporter::ReportAlreadyInitialized(std::string_view detail) {
    return ReportDetail(30, detail);
}

HRESULT CErrorReporter::ReportCannotChangeSimulation(std::string_view detail) {
    return ReportDetail(31, detail);
}

HRESULT CErrorReporter::ReportMissingOptionName(std::string_view detail) {
    return ReportDetail(16, detail);
}

HRESULT CErrorReporter::ReportMissingOptionValue(std::string_view detail) {
    return ReportDetail(17, detail);
}

HRESULT CErrorReporter::ReportNotInitialized(std::string_view detail) {
    return ReportDetail(12, detail);
}

HRESULT CErrorReporter::ReportUnknownResource(std::string_view detail) {
    return ReportDetail(29, detail);
}

HRESULT CErrorReporter::ReportIdQueryFailed(std::string_view detail) {
    return ReportDetail(27, detail);
}

HRESULT CErrorReporter::ReportResetFailed(std::string_view detail) {
    return ReportDetail(28, detail);
}

HRESULT CErrorReporter::ReportPersonalityNotActive(std::string_view detail) {
    return ReportDetail(45, detail);
}

HRESULT CErrorReporter::ReportPersonalityNotInstalled(std::string_view detail) {
    return ReportDetail(47, detail);
}

HRESULT CErrorReporter::ReportUnknownChannel(std::string_view detail) {
    return ReportDetail(13, detail);
}

HRESULT CErrorReporter::ReportChannelNameRequired(std::string_view detail) {
    return ReportDetail(15, detail);
}

HRESULT CErrorReporter::ReportBadSelector(std::string_view detail) {
    return ReportDetail(35, detail);
}

HRESULT CErrorReporter::ReportUnknownNameInSelector(std::string_view detail) {
    return ReportDetail(34, detail);
}

HRESULT CErrorReporter::ReportUnknownPhysicalSelector(std::string_view detail) {
    return ReportDetail(36, detail);
}

HRESULT CErrorReporter::ReportInstrumentError(std::string_view detail) {
    return ReportDetail(3, detail);
}

HRESULT CErrorReporter::ReportUnexpectedResponse(std::string_view detail) {
    return ReportDetail(23, detail);
}

HRESULT CErrorReporter::ReportStatusNotAvailable(std::string_view detail) {
    return ReportDetail(26, detail);
}

HRESULT CErrorReporter::ReportOperationInProgress(std::string_view detail) {
    return ReportDetail(21, detail);
}

HRESULT CErrorReporter::ReportPreviewState(std::string_view detail) {
    return ReportDetail(48, detail);
}

HRESULT CErrorReporter::ReportChannelNotEnabled(std::string_view detail) {
    return ReportDetail(49, detail);
}

HRESULT CErrorReporter::ReportMeasurementFailed(std::string_view detail) {
    return ReportDetail(50, detail);
}

HRESULT CErrorReporter::ReportMaxTimeExceeded(std::string_view detail) {
    return ReportDetail(51, detail);
}

HRESULT CErrorReporter::ReportInvalidAcquisitionType(std::string_view detail) {
    return ReportDetail(52, detail);
}

HRESULT CErrorReporter::ReportCannotOpenFile(std::string_view detail) {
    return ReportDetail(4, detail);
}

HRESULT CErrorReporter::ReportReadError(std::string_view detail) {
    return ReportDetail(5, detail);
}

HRESULT CErrorReporter::ReportWriteError(std::string_view detail) {
    return ReportDetail(6, detail);
}

HRESULT CErrorReporter::ReportInvalidPath(std::string_view detail) {
    return ReportDetail(7, detail);
}

HRESULT CErrorReporter::ReportTooManyFiles(std::string_view detail) {
    return ReportDetail(14, detail);
}

HRESULT CErrorReporter::ReportFileNotFound(std::string_view detail) {
    return ReportDetail(24, detail);
}

HRESULT CErrorReporter::ReportInvalidFileFormat(std::string_view detail) {
    return ReportDetail(25, detail);
}

HRESULT CErrorReporter::ReportOutOfMemory(std::string_view detail) {
    return ReportDetail(20, detail);
}

HRESULT CErrorReporter::ReportUnrecoverable(std::string_view detail) {
    return ReportDetail(2, detail);
}

HRESULT CErrorReporter::ReportIdQueryNotSupported(std::string_view detail) {
    return ReportDetail(37, detail);
}

HRESULT CErrorReporter::ReportResetNotSupported(std::string_view detail) {
    return ReportDetail(38, detail);
}

HRESULT CErrorReporter::ReportSelfTestNotSupported(std::string_view detail) {
    return ReportDetail(39, detail);
}

HRESULT CErrorReporter::ReportErrorQueryNotSupported(std::string_view detail) {
    return ReportDetail(40, detail);
}

HRESULT CErrorReporter::ReportFirmwareQueryNotSupported(std::string_view detail) {
    return ReportDetail(41, detail);
}

HRESULT CErrorReporter::ReportInvalidWaveformElement(std::string_view detail) {
    return ReportDetail(53, detail);
}

std::string_view CErrorReporter::CurrentMember() const {
    const MethodDescriptor* method = context_.GetCurrentMethod();
    return method == nullptr ? std::string_view() : method->memberName;
}

}  // namespace kestrion
