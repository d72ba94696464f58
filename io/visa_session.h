// Between the driver's numbers and VISA's: translation and argument checks, no VISA calls.
#pragma once

#include <cstring>
#include <string>

#include "io/io_session.h"
#include "io/visa_session_interfaces.h"

namespace kestrion {

// A session whose transport is described by VISA attributes. The calls themselves are left to the
// class below.
class CVisaSession : public CIoSession,
                     public IVisaIoSession,
                     public IVisaLowLevelIo,
                     public IVisaSessionInfo,
                     public IVisaMemoryIo,
                     public IVisaCEventManager {
  public:
    HRESULT SetTimeout(std::int32_t milliseconds) override;
    HRESULT GetTimeout(std::int32_t* milliseconds) override;
    HRESULT SetTerminationCharacter(BYTE character) override;
    HRESULT GetTerminationCharacter(BYTE* character) override;
    HRESULT SetTerminationCharacterEnabled(bool enabled) override;
    HRESULT GetTerminationCharacterEnabled(bool* enabled) override;
    HRESULT SetSendEndEnabled(bool enabled) override;
    HRESULT GetSendEndEnabled(bool* enabled) override;
    HRESULT Lock(IoLockType type, std::int32_t timeout, std::string_view requestedKey,
                 std::string* accessKey) override;

    HRESULT SetProtocol(VisaIoProtocol protocol) override;
    HRESULT GetProtocol(VisaIoProtocol* protocol) override;
    HRESULT SetAttribute(visa::ViAttr attribute, const char* value) override;
    HRESULT SetAttribute(visa::ViAttr attribute, bool value) override;
    HRESULT SetAttribute(visa::ViAttr attribute, std::uint64_t value) override;
    HRESULT SetAttribute(visa::ViAttr attribute, std::uint32_t value) override;
    HRESULT SetAttribute(visa::ViAttr attribute, std::uint16_t value) override;
    HRESULT SetAttribute(visa::ViAttr attribute, std::uint8_t value) override;
    HRESULT GetAttribute(visa::ViAttr attribute, std::string* value) override;
    HRESULT GetAttribute(visa::ViAttr attribute, bool* value) override;
    HRESULT GetAttribute(visa::ViAttr attribute, std::uint64_t* value) override;
    HRESULT GetAttribute(visa::ViAttr attribute, std::uint32_t* value) override;
    HRESULT GetAttribute(visa::ViAttr attribute, std::uint16_t* value) override;
    HRESULT GetAttribute(visa::ViAttr attribute, std::uint8_t* value) override;

    HRESULT WriteAsync(SAFEARRAY* bytes, visa::ViJobId* job) override;
    HRESULT AssertTrigger(VisaTriggerProtocol protocol) override;
    using IVisaLowLevelIo::WriteAsync;

    HRESULT GetResourceName(std::string* name) override;
    HRESULT GetInterfaceName(std::string* name) override;
    HRESULT GetInterfaceType(VisaInterfaceType* type) override;
    HRESULT GetInterfaceNumber(std::uint16_t* number) override;
    HRESULT GetResourceClass(std::string* name) override;
    HRESULT GetManufacturerName(std::string* name) override;
    HRESULT GetManufacturerId(std::uint16_t* id) override;

    HRESULT Move(const VisaMemoryPlace& source, const VisaMemoryPlace& destination,
                 std::uint32_t count) override;
    HRESULT Move(const VisaMemoryPlace& source, const VisaMemoryPlace& destination,
                 std::uint32_t count, visa::ViJobId* job) override;
    HRESULT AllocateMemory(std::uint64_t size, std::uint64_t* offset) override;
    HRESULT FreeMemory(std::uint64_t offset) override;
    HRESULT SetSourceBigEndian(bool bigEndian) override;
    HRESULT GetSourceBigEndian(bool* bigEndian) override;
    HRESULT SetDestinationBigEndian(bool bigEndian) override;
    HRESULT GetDestinationBigEndian(bool* bigEndian) override;
    HRESULT SetSourceIncrement(std::int32_t increment) override;
    HRESULT GetSourceIncrement(std::int32_t* increment) override;
    HRESULT SetDestinationIncrement(std::int32_t increment) override;
    HRESULT GetDestinationIncrement(std::int32_t* increment) override;

    HRESULT SetMaxQueueLength(std::uint32_t length) override;
    HRESULT GetMaxQueueLength(std::uint32_t* length) override;
    HRESULT EnableEvent(VisaEvent event, VisaEventMechanism mechanism) override;
    HRESULT DisableEvent(VisaEvent event, VisaEventMechanism mechanism) override;
    HRESULT DiscardEvents(VisaEvent event, VisaEventMechanism mechanism) override;
    HRESULT InstallHandler(VisaEvent event, visa::ViHndlr handler, void* userHandle) override;
    HRESULT UninstallHandler(VisaEvent event, visa::ViHndlr handler, void* userHandle) override;
    HRESULT WaitOnEvent(VisaEvent event, std::int32_t timeout, VisaEvent* outEvent,
                        visa::ViEvent* outContext) override;

  protected:
    explicit CVisaSession(BufferAllocator allocate) : CIoSession(allocate) {}
    ~CVisaSession() override = default;

    // A serial line and a bare socket have no end-of-message line of their own: there a line feed
    // ends a message, in both directions. Other interfaces are left as they are.
    [[nodiscard]] HRESULT PrepareMessageEnd();

    // One VISA call each, its status mapped. Called with the session held, except for the wait.
    virtual HRESULT SetVisaAttribute(visa::ViAttr attribute, visa::ViAttrState value) = 0;
    virtual HRESULT GetVisaAttribute(visa::ViAttr attribute, void* value) = 0;
    virtual HRESULT AssertVisaTrigger(std::uint16_t protocol) = 0;
    virtual HRESULT LockVisa(visa::ViAccessMode type, std::uint32_t timeout,
                             const char* requestedKey, char* accessKey) = 0;
    virtual HRESULT EnableVisaEvent(visa::ViEventType event, std::uint16_t mechanism) = 0;
    virtual HRESULT DisableVisaEvent(visa::ViEventType event, std::uint16_t mechanism) = 0;
    virtual HRESULT DiscardVisaEvents(visa::ViEventType event, std::uint16_t mechanism) = 0;
    virtual HRESULT InstallVisaHandler(visa::ViEventType event, visa::ViHndlr handler,
                                       void* userHandle) = 0;
    virtual HRESULT UninstallVisaHandler(visa::ViEventType event, visa::ViHndlr handler,
                                         void* userHandle) = 0;
    virtual HRESULT WaitOnVisaEvent(visa::ViEventType event, std::uint32_t timeout,
                                    visa::ViEventType* outEvent, visa::ViEvent* outContext) = 0;

    HRESULT InOf(std::string_view method, VisaDataWidth width, VisaAddressSpace space,
                 std::uint64_t offset, void* value) override;
    HRESULT OutOf(VisaAddressSpace space, std::uint64_t offset) override;
    HRESULT MoveInVariantOf(std::string_view method, VisaDataWidth width, VisaAddressSpace space,
                            std::uint64_t offset, std::uint32_t count, VARIANT* array) override;
    HRESULT MoveInArrayOf(std::string_view method, VisaDataWidth width, VisaAddressSpace space,
                          std::uint64_t offset, std::uint32_t count, SAFEARRAY** array) override;
    HRESULT MoveInBufferOf(std::string_view method, VisaDataWidth width, VisaAddressSpace space,
                           std::uint64_t offset, std::uint32_t count, void* target) override;
    HRESULT MoveOutOf(std::string_view method, std::string_view parameter, VisaAddressSpace space,
                      std::uint64_t offset, const void* source) override;

  private:
    // A number of VISA as wide as T, which VISA writes without knowing more than the attribute.
    template <typename T>
    HRESULT GetNumber(visa::ViAttr attribute, T* value, std::string_view method,
                      std::string_view parameter);
    HRESULT GetFlag(visa::ViAttr attribute, bool* value, std::string_view method,
                    std::string_view parameter);
    HRESULT GetText(visa::ViAttr attribute, std::string* value, std::string_view method,
                    std::string_view parameter);
    HRESULT SetNumber(visa::ViAttr attribute, visa::ViAttrState value);
    // Both numbers in VISA's terms, or the report of the first that has none.
    HRESULT Translate(VisaEvent event, VisaEventMechanism mechanism, visa::ViEventType* visaEvent,
                      std::uint16_t* visaMechanism);
    HRESULT TranslateEvent(VisaEvent event, visa::ViEventType* visaEvent);
    HRESULT Refuse(std::string_view message);
    HRESULT CheckSpace(VisaAddressSpace space);
    HRESULT CheckPlace(const VisaMemoryPlace& place);
    HRESULT SetBigEndian(visa::ViAttr attribute, bool bigEndian);
    HRESULT GetBigEndian(visa::ViAttr attribute, bool* bigEndian, std::string_view method);
};

template <typename T>
HRESULT CVisaSession::GetNumber(visa::ViAttr attribute, T* value, std::string_view method,
                                std::string_view parameter) {
    return Run([&]() -> HRESULT {
        if (value == nullptr) {
            return reporter_->ReportNullPointer(method, parameter, "");
        }
        // VISA writes as many bytes as the attribute has, whatever the caller asked for.
        visa::ViAttrState state = 0;
        const HRESULT status = GetVisaAttribute(attribute, &state);
        if (!Failed(status)) {
            std::memcpy(value, &state, sizeof(T));
        }
        return status;
    });
}

}  // namespace kestrion
