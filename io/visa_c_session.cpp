#include "io/visa_c_session.h"

#include <array>
#include <string>
#include <utility>

#include "io/visa_closed.h"
#include "io/visa_numbers.h"

namespace kestrion {
namespace {

constexpr std::size_t kDescriptionSize = 1024;
// What a VISA time-out is reported as, where there's no reporter any more.
constexpr HRESULT kIoTimeout = MakeStatus(0x80044215);

// VISA's errors 0xBFFF00xx become 0x800400xx, its warnings 0x3FFF00xx become 0x000400xx.
constexpr HRESULT MappedStatus(visa::ViStatus status) {
    return MakeStatus((static_cast<std::uint32_t>(status) & 0x80040FFF) | 0x00040000);
}

// A read that stopped because the count was reached has more to come; one that stopped at the
// termination character is as complete as one that ended with END.
constexpr HRESULT ReadResult(HRESULT mapped) {
    if (mapped == MappedStatus(visa::kSuccessMaxCount)) {
        return IoStatusMoreData;
    }
    return mapped == MappedStatus(visa::kSuccessTermChar) ? S_OK : mapped;
}

}  // namespace

CVisaCSession::CVisaCSession(VisaSelector selector, BufferAllocator allocate)
    : CVisaSession(allocate),
      selector_(std::move(selector)),
      functions_(&visa::ClosedFunctions()) {}

CVisaCSession::~CVisaCSession() {
    (void)CloseVisa();
}

// Opening and closing -----------------------------------------------------------------------------

HRESULT CVisaCSession::Initialize(std::string_view resource, IInstrErrorPoller* poller,
                                  IIoErrorReporter* reporter, IEnumFormatter* formatter) {
    const std::scoped_lock lock(mutex_);
    if (poller == nullptr || reporter == nullptr || formatter == nullptr) {
        return E_POINTER;
    }
    try {
        // A connection that is still open would be lost with its numbers.
        (void)CloseVisa();
        const HRESULT status = OpenBuffers(poller, reporter, formatter);
        return Failed(status) ? status : OpenVisa(resource);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT CVisaCSession::OpenVisa(std::string_view resource) {
    const visa::FunctionTable* chosen = nullptr;
    HRESULT status = selector_(resource, chosen);
    if (Failed(status)) {
        return status;
    }
    if (chosen == nullptr) {
        return E_UNEXPECTED;
    }
    functions_ = chosen;
    status = MapStatus(functions_->viOpenDefaultRM(&manager_));
    if (Failed(status)) {
        return status;
    }
    status = MapStatus(functions_->viOpen(manager_, std::string(resource).c_str(), visa::kNoLock,
                                          kOpenTimeout, &instrument_));
    return Failed(status) ? status : PrepareMessageEnd();
}

HRESULT CVisaCSession::Close() {
    const std::scoped_lock lock(mutex_);
    HRESULT status = S_OK;
    if (manager_ != 0) {
        const visa::ViStatus closed = functions_->viClose(manager_);
        status = MapStatus(closed);
        manager_ = 0;
    }
    (void)CloseVisa();
    CloseBuffers();
    return Failed(status) ? status : S_OK;
}

visa::ViStatus CVisaCSession::CloseVisa() {
    visa::ViStatus status = visa::kSuccess;
    if (manager_ != 0) {
        status = functions_->viClose(manager_);
    }
    manager_ = 0;
    instrument_ = 0;
    functions_ = &visa::ClosedFunctions();
    return status;
}

visa::ViSession CVisaCSession::GetInstrumentSession() {
    const std::scoped_lock lock(mutex_);
    return instrument_;
}

const visa::FunctionTable& CVisaCSession::GetFunctions() {
    const std::scoped_lock lock(mutex_);
    return *functions_;
}

// Status ------------------------------------------------------------------------------------------

HRESULT CVisaCSession::MapStatus(visa::ViStatus status) {
    if (status == visa::kSuccess) {
        return S_OK;
    }
    const std::scoped_lock lock(mutex_);
    if (status == visa::kErrorTimeout) {
        return reporter_ == nullptr ? kIoTimeout : reporter_->ReportIoTimeout("");
    }
    const HRESULT mapped = MappedStatus(status);
    if (!Failed(mapped) || reporter_ == nullptr) {
        return mapped;
    }
    return reporter_->RaiseWithStatus(mapped, Describe(status));
}

std::string CVisaCSession::Describe(visa::ViStatus status) {
    std::array<char, kDescriptionSize> text{};
    // Until the instrument is open, only the resource manager can be asked.
    (void)functions_->viStatusDesc(instrument_ != 0 ? instrument_ : manager_, status, text.data());
    text.back() = '\0';
    return text.data();
}

// Reading and writing -----------------------------------------------------------------------------

HRESULT CVisaCSession::LowLevelReadNoPoll(BYTE* buffer, std::uint32_t count, std::uint32_t* actual,
                                          std::int32_t timeout) {
    return Run(timeout, Polling::kOff, [&]() -> HRESULT {
        if (buffer == nullptr) {
            return reporter_->ReportNullPointer("LowLevelReadNoPoll", "pBuf", "");
        }
        visa::ViUInt32 got = 0;
        const HRESULT status = MapStatus(functions_->viRead(instrument_, buffer, count, &got));
        // A time-out may have delivered bytes all the same.
        if (actual != nullptr) {
            *actual = got;
        }
        return ReadResult(status);
    });
}

HRESULT CVisaCSession::LowLevelWriteNoPoll(const BYTE* bytes, std::uint32_t count,
                                           std::uint32_t* actual, std::int32_t timeout) {
    return Run(timeout, Polling::kOff, [&]() -> HRESULT {
        if (bytes == nullptr) {
            return reporter_->ReportNullPointer("LowLevelWriteNoPoll", "pBuf", "");
        }
        visa::ViUInt32 sent = 0;
        const HRESULT status = MapStatus(functions_->viWrite(instrument_, bytes, count, &sent));
        if (!Failed(status) && actual != nullptr) {
            *actual = sent;
        }
        return status;
    });
}

HRESULT CVisaCSession::ReadAsync(BYTE* target, std::uint32_t count, visa::ViJobId* job) {
    return Run([&]() -> HRESULT {
        if (target == nullptr) {
            return reporter_->ReportNullPointer("ReadAsync", "pBuf", "");
        }
        return MapStatus(functions_->viReadAsync(instrument_, target, count, job));
    });
}

HRESULT CVisaCSession::WriteAsync(const BYTE* source, std::uint32_t count, visa::ViJobId* job) {
    return Run([&]() -> HRESULT {
        if (source == nullptr) {
            return reporter_->ReportNullPointer("WriteAsync", "pBuf", "");
        }
        return MapStatus(functions_->viWriteAsync(instrument_, source, count, job));
    });
}

HRESULT CVisaCSession::ReadStatusByte(BYTE* statusByte) {
    return Run([&]() -> HRESULT {
        if (statusByte == nullptr) {
            // The name is spelled so on purpose: programs may look for it.
            return reporter_->ReportNullPointer("ReadStatusBte", "psStatusByte", "");
        }
        visa::ViUInt16 value = 0;
        const HRESULT status = MapStatus(functions_->viReadSTB(instrument_, &value));
        if (!Failed(status)) {
            *statusByte = static_cast<BYTE>(value);
        }
        return status;
    });
}

HRESULT CVisaCSession::Clear() {
    return Run([&] {
        const HRESULT status = MapStatus(functions_->viClear(instrument_));
        if (!Failed(status)) {
            // The instrument has dropped its side of both (VPP-4.3, observation 6.1.22): the rest
            // of a response must not be waited for, nor the rest of a message be sent.
            buffer_->Discard();
        }
        return status;
    });
}

HRESULT CVisaCSession::Unlock() {
    return Run([&] { return MapStatus(functions_->viUnlock(instrument_)); });
}

// One call each -----------------------------------------------------------------------------------

HRESULT CVisaCSession::SetVisaAttribute(visa::ViAttr attribute, visa::ViAttrState value) {
    return MapStatus(functions_->viSetAttribute(instrument_, attribute, value));
}

HRESULT CVisaCSession::GetVisaAttribute(visa::ViAttr attribute, void* value) {
    return MapStatus(functions_->viGetAttribute(instrument_, attribute, value));
}

HRESULT CVisaCSession::AssertVisaTrigger(std::uint16_t protocol) {
    return MapStatus(functions_->viAssertTrigger(instrument_, protocol));
}

HRESULT CVisaCSession::LockVisa(visa::ViAccessMode type, std::uint32_t timeout,
                                const char* requestedKey, char* accessKey) {
    return MapStatus(functions_->viLock(instrument_, type, timeout, requestedKey, accessKey));
}

HRESULT CVisaCSession::EnableVisaEvent(visa::ViEventType event, std::uint16_t mechanism) {
    constexpr visa::ViEventFilter kNoContext = 0;
    return MapStatus(functions_->viEnableEvent(instrument_, event, mechanism, kNoContext));
}

HRESULT CVisaCSession::DisableVisaEvent(visa::ViEventType event, std::uint16_t mechanism) {
    return MapStatus(functions_->viDisableEvent(instrument_, event, mechanism));
}

HRESULT CVisaCSession::DiscardVisaEvents(visa::ViEventType event, std::uint16_t mechanism) {
    return MapStatus(functions_->viDiscardEvents(instrument_, event, mechanism));
}

HRESULT CVisaCSession::InstallVisaHandler(visa::ViEventType event, visa::ViHndlr handler,
                                          void* userHandle) {
    return MapStatus(functions_->viInstallHandler(instrument_, event, handler, userHandle));
}

HRESULT CVisaCSession::UninstallVisaHandler(visa::ViEventType event, visa::ViHndlr handler,
                                            void* userHandle) {
    return MapStatus(functions_->viUninstallHandler(instrument_, event, handler, userHandle));
}

HRESULT CVisaCSession::WaitOnVisaEvent(visa::ViEventType event, std::uint32_t timeout,
                                       visa::ViEventType* outEvent, visa::ViEvent* outContext) {
    std::unique_lock lock(mutex_);
    const visa::FunctionTable& functions = *functions_;
    const visa::ViSession session = instrument_;
    lock.unlock();
    return MapStatus(functions.viWaitOnEvent(session, event, timeout, outEvent, outContext));
}

}  // namespace kestrion
