// Typed numbers through the session.
#include "io/io_session.h"
#include "io/number_transfer.h"

namespace kestrion {

HRESULT CIoSession::ReadNumberOf(ElementKind kind, void* value, bool flush, std::int32_t timeout,
                                 Polling polling) {
    return Run(timeout, polling, [&]() -> HRESULT {
        if (value == nullptr) {
            return reporter_->ReportNullPointer("ReadNumber", "pValue", "");
        }
        return ReadNumberElement(*buffer_, *reporter_, kind, value, flush);
    });
}

HRESULT CIoSession::QueryNumberOf(ElementKind kind, std::string_view command, void* value,
                                  bool flush, std::int32_t timeout, Polling polling) {
    return Run(timeout, polling, [&] {
        const HRESULT status = WriteStringNoPoll(command, true);
        return Failed(status) ? status
                              : ReadNumberOf(kind, value, flush, kKeepTimeout, Polling::kOff);
    });
}

HRESULT CIoSession::WriteNumberOf(ElementKind kind, const void* value, bool flush,
                                  std::int32_t timeout, Polling polling) {
    return Run(timeout, flush ? polling : Polling::kOff,
               [&] { return WriteNumberElement(*buffer_, kind, value, flush); });
}

HRESULT CIoSession::CommandWriteNumberOf(ElementKind kind, std::string_view command,
                                         const void* value, bool flush, std::int32_t timeout) {
    return Run(timeout, flush ? Polling::kOn : Polling::kOff, [&] {
        const HRESULT status = WriteStringNoPoll(command, false);
        return Failed(status) ? status
                              : WriteNumberOf(kind, value, flush, kKeepTimeout, Polling::kOff);
    });
}

}  // namespace kestrion
