// What a VISA session offers beyond the plain session: attributes, information, memory, events.
//
// Texts and numbers below the object interfaces have one form here, so the C-level set of a facet
// is the facet itself; IVisaCSession leads to each.
#pragma once

#include <cstdint>
#include <string>

#include "io/operations/visa_memory_families.h"
#include "io/session.h"
#include "io/visa_api.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// The driver's own numbers; the tables in visa_enums.h give VISA's.
enum class VisaIoProtocol : std::int32_t {
    kNormal = 0,
    kFastDataChannel = 1,
    kHs488 = 2,
    kIeee4882 = 3,
    kUsbTmcVendor = 4,
};
enum class VisaTriggerProtocol : std::int32_t { kDefault = 0, kOn = 1, kOff = 2, kSync = 3 };
enum class VisaInterfaceType : std::int32_t {
    kGpib = 0,
    kVxi = 1,
    kGpibVxi = 2,
    kSerial = 3,
    kPxi = 4,
    kTcpip = 5,
    kUsb = 6,
    kUnknown = 8,
};
enum class VisaEvent : std::int32_t {
    kIoCompletion = 0,
    kTrigger = 1,
    kServiceRequest = 2,
    kException = 4,
    kGpibCic = 5,
    kGpibTalk = 6,
    kGpibListen = 7,
    kVxiSystemFail = 8,
    kVxiSystemReset = 9,
    kVxiSignal = 10,
    kVxiInterrupt = 11,
    kTcpipConnect = 12,
    kUsbInterrupt = 13,
    kAllEnabled = 14,
};
enum class VisaEventMechanism : std::int32_t {
    kQueue = 0,
    kHandler = 1,
    kSuspendedHandler = 2,
    kAll = 3,
};

// Bad arguments of all of these are reported as I/O errors with the words of visa_enums.h, a
// closed session as not initialized, a null out pointer as one.

// Attributes by number, for what has no operation of its own. The width is the attribute's.
struct IVisaIoSession : virtual IIoSession {
    virtual HRESULT SetProtocol(VisaIoProtocol protocol) = 0;
    virtual HRESULT GetProtocol(VisaIoProtocol* protocol) = 0;
    virtual HRESULT SetAttribute(visa::ViAttr attribute, const char* value) = 0;
    virtual HRESULT SetAttribute(visa::ViAttr attribute, bool value) = 0;
    virtual HRESULT SetAttribute(visa::ViAttr attribute, std::uint64_t value) = 0;
    virtual HRESULT SetAttribute(visa::ViAttr attribute, std::uint32_t value) = 0;
    virtual HRESULT SetAttribute(visa::ViAttr attribute, std::uint16_t value) = 0;
    virtual HRESULT SetAttribute(visa::ViAttr attribute, std::uint8_t value) = 0;
    virtual HRESULT GetAttribute(visa::ViAttr attribute, std::string* value) = 0;
    virtual HRESULT GetAttribute(visa::ViAttr attribute, bool* value) = 0;
    virtual HRESULT GetAttribute(visa::ViAttr attribute, std::uint64_t* value) = 0;
    virtual HRESULT GetAttribute(visa::ViAttr attribute, std::uint32_t* value) = 0;
    virtual HRESULT GetAttribute(visa::ViAttr attribute, std::uint16_t* value) = 0;
    virtual HRESULT GetAttribute(visa::ViAttr attribute, std::uint8_t* value) = 0;
};

// Transfers that don't wait. The memory belongs to the caller and has to live until the job's
// completion event; `job` is VISA's number of the job.
struct IVisaLowLevelIo {
    virtual HRESULT ReadAsync(BYTE* target, std::uint32_t count, visa::ViJobId* job) = 0;
    virtual HRESULT WriteAsync(SAFEARRAY* bytes, visa::ViJobId* job) = 0;
    virtual HRESULT WriteAsync(const BYTE* source, std::uint32_t count, visa::ViJobId* job) = 0;
    virtual HRESULT AssertTrigger(VisaTriggerProtocol protocol) = 0;

  protected:
    ~IVisaLowLevelIo() = default;
};

struct IVisaSessionInfo {
    virtual HRESULT GetResourceName(std::string* name) = 0;
    virtual HRESULT GetInterfaceName(std::string* name) = 0;
    // kUnknown for an interface outside of the table, and until it is read.
    virtual HRESULT GetInterfaceType(VisaInterfaceType* type) = 0;
    virtual HRESULT GetInterfaceNumber(std::uint16_t* number) = 0;
    virtual HRESULT GetResourceClass(std::string* name) = 0;
    virtual HRESULT GetManufacturerName(std::string* name) = 0;
    virtual HRESULT GetManufacturerId(std::uint16_t* id) = 0;

  protected:
    ~IVisaSessionInfo() = default;
};

// One end of a transfer inside of the device's memory.
struct VisaMemoryPlace {
    VisaAddressSpace space = VisaAddressSpace::kA16;
    std::uint64_t offset = 0;
    VisaDataWidth width = VisaDataWidth::k8;
};

// Access to the memory of a register-based device, which no oscilloscope of the driver is. The
// transfers check their arguments and succeed without any VISA call: what they read is 0, and what
// they write goes nowhere. The last eight operations do set and read the session's attributes.
// The transfers of elements stand in io/operations/visa_memory.toml.
//
// An unknown address space or data width is reported as an I/O error, memory that runs out as such.
// Offsets and counts are not looked at. An array that comes out belongs to the caller.
struct IVisaMemoryIo : VisaMemoryFamilies {
    virtual HRESULT Move(const VisaMemoryPlace& source, const VisaMemoryPlace& destination,
                         std::uint32_t count) = 0;
    // The form that doesn't wait; `job` may be null.
    virtual HRESULT Move(const VisaMemoryPlace& source, const VisaMemoryPlace& destination,
                         std::uint32_t count, visa::ViJobId* job) = 0;
    virtual HRESULT AllocateMemory(std::uint64_t size, std::uint64_t* offset) = 0;
    virtual HRESULT FreeMemory(std::uint64_t offset) = 0;

    virtual HRESULT SetSourceBigEndian(bool bigEndian) = 0;
    virtual HRESULT GetSourceBigEndian(bool* bigEndian) = 0;
    virtual HRESULT SetDestinationBigEndian(bool bigEndian) = 0;
    virtual HRESULT GetDestinationBigEndian(bool* bigEndian) = 0;
    // By how many elements a place moves on with each element, 0 or 1.
    virtual HRESULT SetSourceIncrement(std::int32_t increment) = 0;
    virtual HRESULT GetSourceIncrement(std::int32_t* increment) = 0;
    virtual HRESULT SetDestinationIncrement(std::int32_t increment) = 0;
    virtual HRESULT GetDestinationIncrement(std::int32_t* increment) = 0;

  protected:
    ~IVisaMemoryIo() override = default;
};

// Events. A wait doesn't hold the session: another thread can talk to the instrument meanwhile.
struct IVisaCEventManager {
    virtual HRESULT SetMaxQueueLength(std::uint32_t length) = 0;
    virtual HRESULT GetMaxQueueLength(std::uint32_t* length) = 0;
    virtual HRESULT EnableEvent(VisaEvent event, VisaEventMechanism mechanism) = 0;
    virtual HRESULT DisableEvent(VisaEvent event, VisaEventMechanism mechanism) = 0;
    virtual HRESULT DiscardEvents(VisaEvent event, VisaEventMechanism mechanism) = 0;
    virtual HRESULT InstallHandler(VisaEvent event, visa::ViHndlr handler, void* userHandle) = 0;
    virtual HRESULT UninstallHandler(VisaEvent event, visa::ViHndlr handler, void* userHandle) = 0;
    // Milliseconds; -1 waits for ever. The caller closes the context. Both out values may be null;
    // VISA then closes the context itself.
    virtual HRESULT WaitOnEvent(VisaEvent event, std::int32_t timeout, VisaEvent* outEvent,
                                visa::ViEvent* outContext) = 0;

  protected:
    ~IVisaCEventManager() = default;
};

// For VISA calls of the driver's own, where the session has no operation.
struct IVisaCDirectIo {
    // The instrument session's number; 0 while closed.
    [[nodiscard]] virtual visa::ViSession GetInstrumentSession() = 0;
    // The functions of the library that the session was opened with. Never null: while closed, or
    // when no library could be chosen, each of them answers VI_ERROR_INV_OBJECT.
    [[nodiscard]] virtual const visa::FunctionTable& GetFunctions() = 0;

  protected:
    ~IVisaCDirectIo() = default;
};

using IVisaCLowLevelIo = IVisaLowLevelIo;
using IVisaCSessionInfo = IVisaSessionInfo;
using IVisaCMemoryIo = IVisaMemoryIo;

// The way to the facets. The pointers live as long as the session object.
struct IVisaCSession {
    [[nodiscard]] virtual IVisaCLowLevelIo* GetLowLevelIo() = 0;
    [[nodiscard]] virtual IVisaCSessionInfo* GetSessionInfo() = 0;
    [[nodiscard]] virtual IVisaCMemoryIo* GetMemoryIo() = 0;
    [[nodiscard]] virtual IVisaCDirectIo* GetDirectIo() = 0;
    [[nodiscard]] virtual IVisaCEventManager* GetEventManager() = 0;

  protected:
    ~IVisaCSession() = default;
};

}  // namespace kestrion
