#include "core/error_reporter.h"

#include <algorithm>
#include <cerrno>
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

bool CErrorReporter::FormatMessage(std::int32_t code, Arguments arguments, std::string& text) {
    text.clear();
    const MessageData* message = FindMessage(code);
    if (message == nullptr) {
        return false;
    }
    const std::string_view from = message->text;
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (from[i] != '%' || i + 1 == from.size()) {
            text += from[i];
            continue;
        }
        const char next = from[++i];
        if (next < '1' || next > '9') {
            text += next;  // "%%" is one percent sign
            continue;
        }
        const auto index = static_cast<std::size_t>(next - '1');
        if (index < arguments.size()) {
            text += arguments[index];
        }
    }
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
    return ReportLowerError(message::kIoError, detail);
}

HRESULT CErrorReporter::ReportIoTimeout(std::string_view detail) {
    return ReportLowerError(message::kIoTimeout, detail);
}

HRESULT CErrorReporter::ReportNotInitialized(std::string_view detail) {
    return ReportDetail(message::kNotInitialized, detail);
}

HRESULT CErrorReporter::ReportNullPointer(std::string_view method, std::string_view parameter,
                                          std::string_view detail) {
    return ReportDetail(message::kNullPointer, detail, {method, parameter});
}

HRESULT CErrorReporter::ReportNullPointer(std::string_view parameter, std::string_view detail) {
    return ReportNullPointer(CurrentMember(), parameter, detail);
}

HRESULT CErrorReporter::ReportOutOfMemory(std::string_view detail) {
    return ReportDetail(message::kOutOfMemory, detail);
}

HRESULT CErrorReporter::ReportUnexpectedResponse(std::string_view detail) {
    return ReportDetail(message::kUnexpectedResponse, detail);
}

HRESULT CErrorReporter::ReportInvalidValue(std::string_view parameter, std::string_view value,
                                           std::string_view detail) {
    return ReportDetail(message::kInvalidValue, detail, {value, CurrentMember(), parameter});
}

std::string_view CErrorReporter::CurrentMember() const {
    const MethodDescriptor* method = context_.GetCurrentMethod();
    return method == nullptr ? std::string_view() : method->memberName;
}

}  // namespace kestrion
