#include "io/visa_session.h"

#include <array>
#include <type_traits>

#include "io/variant_array.h"
#include "io/visa_enums.h"

namespace kestrion {
namespace {

// VISA's texts are at most 256 characters; the rest is for libraries that take more.
constexpr std::size_t kTextSize = 1024;
constexpr std::size_t kKeySize = 1024;
// What ends a message where the interface has no line for it.
constexpr BYTE kLineFeed = 10;

// A time-out as VISA takes it: -1 is its infinite.
visa::ViUInt32 VisaTimeout(std::int32_t milliseconds) {
    return static_cast<visa::ViUInt32>(milliseconds);
}

}  // namespace

HRESULT CVisaSession::Refuse(std::string_view message) {
    return reporter_->ReportIoError(message);
}

// Attributes --------------------------------------------------------------------------------------

HRESULT CVisaSession::GetFlag(visa::ViAttr attribute, bool* value, std::string_view method,
                              std::string_view parameter) {
    std::uint16_t number = 0;
    const HRESULT status =
        GetNumber(attribute, value == nullptr ? nullptr : &number, method, parameter);
    if (!Failed(status)) {
        *value = number != 0;
    }
    return status;
}

HRESULT CVisaSession::GetText(visa::ViAttr attribute, std::string* value, std::string_view method,
                              std::string_view parameter) {
    return Run([&]() -> HRESULT {
        if (value == nullptr) {
            return reporter_->ReportNullPointer(method, parameter, "");
        }
        std::array<char, kTextSize> text{};
        const HRESULT status = GetVisaAttribute(attribute, text.data());
        if (!Failed(status)) {
            text.back() = '\0';
            *value = text.data();
        }
        return status;
    });
}

HRESULT CVisaSession::SetNumber(visa::ViAttr attribute, visa::ViAttrState value) {
    return Run([&] { return SetVisaAttribute(attribute, value); });
}

HRESULT CVisaSession::SetAttribute(visa::ViAttr attribute, const char* value) {
    return Run([&]() -> HRESULT {
        if (value == nullptr) {
            return reporter_->ReportNullPointer("SetAttribute", "pszValue", "");
        }
        return SetVisaAttribute(attribute, reinterpret_cast<std::uintptr_t>(value));
    });
}

HRESULT CVisaSession::SetAttribute(visa::ViAttr attribute, bool value) {
    return SetNumber(attribute, value ? 1 : 0);
}
HRESULT CVisaSession::SetAttribute(visa::ViAttr attribute, std::uint64_t value) {
    return SetNumber(attribute, value);
}
HRESULT CVisaSession::SetAttribute(visa::ViAttr attribute, std::uint32_t value) {
    return SetNumber(attribute, value);
}
HRESULT CVisaSession::SetAttribute(visa::ViAttr attribute, std::uint16_t value) {
    return SetNumber(attribute, value);
}
HRESULT CVisaSession::SetAttribute(visa::ViAttr attribute, std::uint8_t value) {
    return SetNumber(attribute, value);
}

HRESULT CVisaSession::GetAttribute(visa::ViAttr attribute, std::string* value) {
    return GetText(attribute, value, "GetAttribute", "pstrValue");
}
HRESULT CVisaSession::GetAttribute(visa::ViAttr attribute, bool* value) {
    return GetFlag(attribute, value, "GetAttribute", "pbValue");
}
HRESULT CVisaSession::GetAttribute(visa::ViAttr attribute, std::uint64_t* value) {
    return GetNumber(attribute, value, "GetAttribute", "pullValue");
}
HRESULT CVisaSession::GetAttribute(visa::ViAttr attribute, std::uint32_t* value) {
    return GetNumber(attribute, value, "GetAttribute", "pulValue");
}
HRESULT CVisaSession::GetAttribute(visa::ViAttr attribute, std::uint16_t* value) {
    return GetNumber(attribute, value, "GetAttribute", "pusValue");
}
HRESULT CVisaSession::GetAttribute(visa::ViAttr attribute, std::uint8_t* value) {
    return GetNumber(attribute, value, "GetAttribute", "puchValue");
}

// The transport's settings ------------------------------------------------------------------------

HRESULT CVisaSession::SetTimeout(std::int32_t milliseconds) {
    return SetNumber(visa::kAttrTimeout, VisaTimeout(milliseconds));
}
HRESULT CVisaSession::GetTimeout(std::int32_t* milliseconds) {
    return GetNumber(visa::kAttrTimeout, milliseconds, "GetTimeout", "plTimeout");
}
HRESULT CVisaSession::SetTerminationCharacter(BYTE character) {
    return SetNumber(visa::kAttrTermChar, character);
}
HRESULT CVisaSession::GetTerminationCharacter(BYTE* character) {
    return GetNumber(visa::kAttrTermChar, character, "GetTerminationCharacter", "pcTermChar");
}
HRESULT CVisaSession::SetTerminationCharacterEnabled(bool enabled) {
    return SetNumber(visa::kAttrTermCharEnabled, enabled ? 1 : 0);
}
HRESULT CVisaSession::GetTerminationCharacterEnabled(bool* enabled) {
    return GetFlag(visa::kAttrTermCharEnabled, enabled, "GetTerminationCharacterEnabled",
                   "pbEnabled");
}
HRESULT CVisaSession::SetSendEndEnabled(bool enabled) {
    return SetNumber(visa::kAttrSendEndEnabled, enabled ? 1 : 0);
}
HRESULT CVisaSession::GetSendEndEnabled(bool* enabled) {
    return GetFlag(visa::kAttrSendEndEnabled, enabled, "GetSendEndEnabled", "pbEnabled");
}

HRESULT CVisaSession::Lock(IoLockType type, std::int32_t timeout, std::string_view requestedKey,
                           std::string* accessKey) {
    return Run([&]() -> HRESULT {
        const auto visaType = visa::ToVisa(visa::kLockTypes, type);
        if (!visaType) {
            return Refuse(visa::kUnsupportedAccessMode);
        }
        const std::string requested(requestedKey);
        std::array<char, kKeySize> granted{};
        const HRESULT status =
            LockVisa(*visaType, VisaTimeout(timeout),
                     requested.empty() ? nullptr : requested.c_str(), granted.data());
        if (!Failed(status) && accessKey != nullptr) {
            granted.back() = '\0';
            *accessKey = granted.data();
        }
        return status;
    });
}

HRESULT CVisaSession::SetProtocol(VisaIoProtocol protocol) {
    return Run([&]() -> HRESULT {
        const auto value = visa::ToVisa(visa::kProtocols, protocol);
        return value ? SetVisaAttribute(visa::kAttrIoProtocol, *value)
                     : Refuse(visa::kUnsupportedProtocol);
    });
}

HRESULT CVisaSession::GetProtocol(VisaIoProtocol* protocol) {
    return Run([&]() -> HRESULT {
        std::uint16_t value = 0;
        const HRESULT status =
            GetNumber(visa::kAttrIoProtocol, protocol == nullptr ? nullptr : &value, "GetProtocol",
                      "peProtocol");
        if (Failed(status)) {
            return status;
        }
        const auto own = visa::FromVisa(visa::kProtocols, value);
        if (!own) {
            return Refuse(visa::kUnsupportedProtocol);
        }
        *protocol = *own;
        return status;
    });
}

HRESULT CVisaSession::PrepareMessageEnd() {
    VisaInterfaceType interfaceType = VisaInterfaceType::kUnknown;
    HRESULT status = GetInterfaceType(&interfaceType);
    if (Failed(status)) {
        return status;
    }
    std::string resourceClass;
    std::string resourceName;
    if (Failed(GetResourceClass(&resourceClass)) || Failed(GetResourceName(&resourceName))) {
        resourceClass = "OTHER";
        resourceName = "UNKNOWN";
    }
    if (interfaceType == VisaInterfaceType::kTcpip &&
        resourceName.find("::SOCKET") != std::string::npos) {
        resourceClass = "SOCKET";
    }
    const bool socket = interfaceType == VisaInterfaceType::kTcpip && resourceClass == "SOCKET";
    if (interfaceType != VisaInterfaceType::kSerial && !socket) {
        return S_OK;
    }
    status = SetTerminationCharacter(kLineFeed);
    if (!Failed(status)) {
        status = SetTerminationCharacterEnabled(true);
    }
    return Failed(status) ? status : SetSendEndEnabled(true);
}

// Information -------------------------------------------------------------------------------------

HRESULT CVisaSession::GetResourceName(std::string* name) {
    return GetText(visa::kAttrResourceName, name, "GetResourceName", "pstrName");
}
HRESULT CVisaSession::GetInterfaceName(std::string* name) {
    return GetText(visa::kAttrInterfaceName, name, "GetInterfaceName", "pstrName");
}
HRESULT CVisaSession::GetInterfaceType(VisaInterfaceType* type) {
    std::uint16_t value = 0;
    if (type != nullptr) {
        *type = VisaInterfaceType::kUnknown;
    }
    const HRESULT status = GetNumber(visa::kAttrInterfaceType, type == nullptr ? nullptr : &value,
                                     "GetInterfaceType", "peType");
    if (!Failed(status)) {
        *type = visa::FromVisa(visa::kInterfaces, value).value_or(VisaInterfaceType::kUnknown);
    }
    return status;
}
HRESULT CVisaSession::GetInterfaceNumber(std::uint16_t* number) {
    return GetNumber(visa::kAttrInterfaceNumber, number, "GetInterfaceNumber", "pusNumber");
}
HRESULT CVisaSession::GetResourceClass(std::string* name) {
    return GetText(visa::kAttrResourceClass, name, "GetResourceClass", "pstrClass");
}
HRESULT CVisaSession::GetManufacturerName(std::string* name) {
    return GetText(visa::kAttrManufacturerName, name, "GetManufacturerName", "pstrName");
}
HRESULT CVisaSession::GetManufacturerId(std::uint16_t* id) {
    return GetNumber(visa::kAttrManufacturerId, id, "GetManufacturerId", "pusId");
}

// Transfers and triggers --------------------------------------------------------------------------

HRESULT CVisaSession::WriteAsync(SAFEARRAY* bytes, visa::ViJobId* job) {
    return Run([&] {
        const HRESULT status = CheckVariantArray(bytes, VT_UI1, *reporter_);
        return Failed(status) ? status : WriteAsync(ArrayBytes(bytes), VectorLength(bytes), job);
    });
}

HRESULT CVisaSession::AssertTrigger(VisaTriggerProtocol protocol) {
    return Run([&]() -> HRESULT {
        const auto value = visa::ToVisa(visa::kTriggers, protocol);
        return value ? AssertVisaTrigger(*value) : Refuse(visa::kUnsupportedTrigger);
    });
}

// Events ------------------------------------------------------------------------------------------

HRESULT CVisaSession::TranslateEvent(VisaEvent event, visa::ViEventType* visaEvent) {
    const auto value = visa::ToVisa(visa::kEvents, event);
    if (!value) {
        return Refuse(visa::kUnsupportedEvent);
    }
    *visaEvent = *value;
    return S_OK;
}

HRESULT CVisaSession::Translate(VisaEvent event, VisaEventMechanism mechanism,
                                visa::ViEventType* visaEvent, std::uint16_t* visaMechanism) {
    const HRESULT status = TranslateEvent(event, visaEvent);
    if (Failed(status)) {
        return status;
    }
    const auto value = visa::ToVisa(visa::kMechanisms, mechanism);
    if (!value) {
        return Refuse(visa::kUnsupportedMechanism);
    }
    *visaMechanism = *value;
    return S_OK;
}

HRESULT CVisaSession::SetMaxQueueLength(std::uint32_t length) {
    return SetNumber(visa::kAttrMaxQueueLength, length);
}

HRESULT CVisaSession::GetMaxQueueLength(std::uint32_t* length) {
    return GetNumber(visa::kAttrMaxQueueLength, length, "GetMaxQueueLength", "pulLength");
}

HRESULT CVisaSession::EnableEvent(VisaEvent event, VisaEventMechanism mechanism) {
    return Run([&] {
        visa::ViEventType visaEvent = 0;
        std::uint16_t visaMechanism = 0;
        const HRESULT status = Translate(event, mechanism, &visaEvent, &visaMechanism);
        return Failed(status) ? status : EnableVisaEvent(visaEvent, visaMechanism);
    });
}

HRESULT CVisaSession::DisableEvent(VisaEvent event, VisaEventMechanism mechanism) {
    return Run([&] {
        visa::ViEventType visaEvent = 0;
        std::uint16_t visaMechanism = 0;
        const HRESULT status = Translate(event, mechanism, &visaEvent, &visaMechanism);
        return Failed(status) ? status : DisableVisaEvent(visaEvent, visaMechanism);
    });
}

HRESULT CVisaSession::DiscardEvents(VisaEvent event, VisaEventMechanism mechanism) {
    return Run([&] {
        visa::ViEventType visaEvent = 0;
        std::uint16_t visaMechanism = 0;
        const HRESULT status = Translate(event, mechanism, &visaEvent, &visaMechanism);
        return Failed(status) ? status : DiscardVisaEvents(visaEvent, visaMechanism);
    });
}

HRESULT CVisaSession::InstallHandler(VisaEvent event, visa::ViHndlr handler, void* userHandle) {
    return Run([&] {
        visa::ViEventType visaEvent = 0;
        const HRESULT status = TranslateEvent(event, &visaEvent);
        return Failed(status) ? status : InstallVisaHandler(visaEvent, handler, userHandle);
    });
}

HRESULT CVisaSession::UninstallHandler(VisaEvent event, visa::ViHndlr handler, void* userHandle) {
    return Run([&] {
        visa::ViEventType visaEvent = 0;
        const HRESULT status = TranslateEvent(event, &visaEvent);
        return Failed(status) ? status : UninstallVisaHandler(visaEvent, handler, userHandle);
    });
}

HRESULT CVisaSession::WaitOnEvent(VisaEvent event, std::int32_t timeout, VisaEvent* outEvent,
                                  visa::ViEvent* outContext) {
    visa::ViEventType awaited = 0;
    HRESULT status = Run([&] { return TranslateEvent(event, &awaited); });
    if (Failed(status)) {
        return status;
    }
    visa::ViEventType came = 0;
    status = WaitOnVisaEvent(awaited, VisaTimeout(timeout), outEvent == nullptr ? nullptr : &came,
                             outContext);
    if (Failed(status) || outEvent == nullptr) {
        return status;
    }
    const auto own = visa::FromVisa(visa::kEvents, came);
    if (!own) {
        return Run([&] { return Refuse(visa::kUnsupportedEvent); });
    }
    *outEvent = *own;
    return status;
}

}  // namespace kestrion
