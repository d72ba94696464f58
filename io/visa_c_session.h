// The session over a VISA library: the one session class of the driver.
#pragma once

#include <functional>
#include <string_view>

#include "io/visa_session.h"

namespace kestrion {

// Finds the VISA functions for a resource; a failure ends Initialize with this very status. The
// table has to stay valid until the session is closed.
using VisaSelector =
    std::function<HRESULT(std::string_view resource, const visa::FunctionTable*& functions)>;

class CVisaCSession final : public CVisaSession, public IVisaCSession, public IVisaCDirectIo {
  public:
    // How long viOpen may take, in milliseconds.
    static constexpr std::uint32_t kOpenTimeout = 2000;

    explicit CVisaCSession(VisaSelector selector, BufferAllocator allocate = AllocateBufferMemory);
    ~CVisaCSession() override;

    // Makes the buffers, chooses the library, opens resource manager and instrument, and sets how
    // a message ends. After a failure the caller closes the session.
    HRESULT Initialize(std::string_view resource, IInstrErrorPoller* poller,
                       IIoErrorReporter* reporter, IEnumFormatter* formatter) override;
    HRESULT Close() override;

    HRESULT ReadStatusByte(BYTE* statusByte) override;
    HRESULT Clear() override;
    HRESULT Unlock() override;

    using CIoSession::LowLevelReadNoPoll;
    using CIoSession::LowLevelWriteNoPoll;
    HRESULT LowLevelReadNoPoll(BYTE* buffer, std::uint32_t count, std::uint32_t* actual,
                               std::int32_t timeout) override;
    HRESULT LowLevelWriteNoPoll(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                                std::int32_t timeout) override;

    using CVisaSession::WriteAsync;
    HRESULT ReadAsync(BYTE* target, std::uint32_t count, visa::ViJobId* job) override;
    HRESULT WriteAsync(const BYTE* source, std::uint32_t count, visa::ViJobId* job) override;

    [[nodiscard]] IVisaCLowLevelIo* GetLowLevelIo() override { return this; }
    [[nodiscard]] IVisaCSessionInfo* GetSessionInfo() override { return this; }
    [[nodiscard]] IVisaCMemoryIo* GetMemoryIo() override { return this; }
    [[nodiscard]] IVisaCDirectIo* GetDirectIo() override { return this; }
    [[nodiscard]] IVisaCEventManager* GetEventManager() override { return this; }

    [[nodiscard]] visa::ViSession GetInstrumentSession() override;
    [[nodiscard]] const visa::FunctionTable& GetFunctions() override;

    // The one way of a VISA status into the driver: success and warnings keep their low bits, a
    // time-out is reported as one, other errors with VISA's own words.
    HRESULT MapStatus(visa::ViStatus status);

  private:
    HRESULT SetVisaAttribute(visa::ViAttr attribute, visa::ViAttrState value) override;
    HRESULT GetVisaAttribute(visa::ViAttr attribute, void* value) override;
    HRESULT AssertVisaTrigger(std::uint16_t protocol) override;
    HRESULT LockVisa(visa::ViAccessMode type, std::uint32_t timeout, const char* requestedKey,
                     char* accessKey) override;
    HRESULT EnableVisaEvent(visa::ViEventType event, std::uint16_t mechanism) override;
    HRESULT DisableVisaEvent(visa::ViEventType event, std::uint16_t mechanism) override;
    HRESULT DiscardVisaEvents(visa::ViEventType event, std::uint16_t mechanism) override;
    HRESULT InstallVisaHandler(visa::ViEventType event, visa::ViHndlr handler,
                               void* userHandle) override;
    HRESULT UninstallVisaHandler(visa::ViEventType event, visa::ViHndlr handler,
                                 void* userHandle) override;
    HRESULT WaitOnVisaEvent(visa::ViEventType event, std::uint32_t timeout,
                            visa::ViEventType* outEvent, visa::ViEvent* outContext) override;

    HRESULT OpenVisa(std::string_view resource);
    // Closes the resource manager, which closes the instrument too; the status isn't mapped.
    visa::ViStatus CloseVisa();
    [[nodiscard]] std::string Describe(visa::ViStatus status);

    VisaSelector selector_;
    const visa::FunctionTable* functions_;
    visa::ViSession manager_ = 0;
    visa::ViSession instrument_ = 0;
};

}  // namespace kestrion
