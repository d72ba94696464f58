// The driver's numbers for VISA's enumerations, and back.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "io/session.h"
#include "io/visa_numbers.h"
#include "io/visa_session_interfaces.h"

namespace kestrion::visa {

// One pair of a table.
template <typename Own, typename Visa>
struct EnumPair {
    Own own;
    Visa visa;
};

inline constexpr std::string_view kUnsupportedProtocol = "Unsupported VISA I/O protocol.";
inline constexpr std::string_view kUnsupportedTrigger = "Unsupported VISA trigger protocol.";
inline constexpr std::string_view kUnsupportedEvent = "Unsupported VISA event type.";
inline constexpr std::string_view kUnsupportedMechanism = "Unsupported VISA event mechanism.";
inline constexpr std::string_view kUnsupportedAddressSpace = "Unsupported VISA address space.";
inline constexpr std::string_view kUnsupportedDataWidth = "Unsupported VISA data width.";
inline constexpr std::string_view kUnsupportedAccessMode = "Unsupported VISA session access mode.";

// VI_PROT_... (VPP-4.3, VI_ATTR_IO_PROT).
inline constexpr std::array<EnumPair<VisaIoProtocol, ViUInt16>, 5> kProtocols{{
    {VisaIoProtocol::kNormal, 1},
    {VisaIoProtocol::kFastDataChannel, 2},
    {VisaIoProtocol::kHs488, 3},
    {VisaIoProtocol::kIeee4882, 4},
    {VisaIoProtocol::kUsbTmcVendor, 5},
}};

// VI_TRIG_PROT_...
inline constexpr std::array<EnumPair<VisaTriggerProtocol, ViUInt16>, 4> kTriggers{{
    {VisaTriggerProtocol::kDefault, 0},
    {VisaTriggerProtocol::kOn, 1},
    {VisaTriggerProtocol::kOff, 2},
    {VisaTriggerProtocol::kSync, 5},
}};

// VI_INTF_...
inline constexpr std::array<EnumPair<VisaInterfaceType, ViUInt16>, 7> kInterfaces{{
    {VisaInterfaceType::kGpib, kInterfaceGpib},
    {VisaInterfaceType::kVxi, kInterfaceVxi},
    {VisaInterfaceType::kGpibVxi, kInterfaceGpibVxi},
    {VisaInterfaceType::kSerial, kInterfaceSerial},
    {VisaInterfaceType::kPxi, kInterfacePxi},
    {VisaInterfaceType::kTcpip, kInterfaceTcpip},
    {VisaInterfaceType::kUsb, kInterfaceUsb},
}};

// VI_EVENT_...
inline constexpr std::array<EnumPair<VisaEvent, ViEventType>, 14> kEvents{{
    {VisaEvent::kIoCompletion, 0x3FFF2009},
    {VisaEvent::kTrigger, 0xBFFF200A},
    {VisaEvent::kServiceRequest, kEventServiceRequest},
    {VisaEvent::kException, 0xBFFF200E},
    {VisaEvent::kGpibCic, 0x3FFF2012},
    {VisaEvent::kGpibTalk, 0x3FFF2013},
    {VisaEvent::kGpibListen, 0x3FFF2014},
    {VisaEvent::kVxiSystemFail, 0x3FFF201D},
    {VisaEvent::kVxiSystemReset, 0x3FFF201E},
    {VisaEvent::kVxiSignal, 0x3FFF2020},
    {VisaEvent::kVxiInterrupt, 0xBFFF2021},
    {VisaEvent::kTcpipConnect, 0x3FFF2036},
    {VisaEvent::kUsbInterrupt, 0x3FFF2037},
    {VisaEvent::kAllEnabled, 0x3FFF7FFF},
}};

// VI_QUEUE, VI_HNDLR, VI_SUSPEND_HNDLR, VI_ALL_MECH.
inline constexpr std::array<EnumPair<VisaEventMechanism, ViUInt16>, 4> kMechanisms{{
    {VisaEventMechanism::kQueue, kMechanismQueue},
    {VisaEventMechanism::kHandler, 2},
    {VisaEventMechanism::kSuspendedHandler, 4},
    {VisaEventMechanism::kAll, 65535},
}};

// VI_..._SPACE.
inline constexpr std::array<EnumPair<VisaAddressSpace, ViUInt16>, 12> kAddressSpaces{{
    {VisaAddressSpace::kA16, 1},
    {VisaAddressSpace::kA24, 2},
    {VisaAddressSpace::kA32, 3},
    {VisaAddressSpace::kA64, 4},
    {VisaAddressSpace::kPxiConfiguration, 10},
    {VisaAddressSpace::kPxiBar0, 11},
    {VisaAddressSpace::kPxiBar1, 12},
    {VisaAddressSpace::kPxiBar2, 13},
    {VisaAddressSpace::kPxiBar3, 14},
    {VisaAddressSpace::kPxiBar4, 15},
    {VisaAddressSpace::kPxiBar5, 16},
    {VisaAddressSpace::kPxiAllocated, 9},
}};

// VI_WIDTH_...: bytes.
inline constexpr std::array<EnumPair<VisaDataWidth, ViUInt16>, 4> kDataWidths{{
    {VisaDataWidth::k8, 1},
    {VisaDataWidth::k16, 2},
    {VisaDataWidth::k32, 4},
    {VisaDataWidth::k64, 8},
}};

inline constexpr std::array<EnumPair<IoLockType, ViAccessMode>, 2> kLockTypes{{
    {IoLockType::kExclusive, kExclusiveLock},
    {IoLockType::kShared, kSharedLock},
}};

template <typename Own, typename Visa, std::size_t Size>
[[nodiscard]] constexpr std::optional<Visa> ToVisa(
    const std::array<EnumPair<Own, Visa>, Size>& table, Own value) {
    for (const auto& pair : table) {
        if (pair.own == value) {
            return pair.visa;
        }
    }
    return std::nullopt;
}

template <typename Own, typename Visa, std::size_t Size>
[[nodiscard]] constexpr std::optional<Own> FromVisa(
    const std::array<EnumPair<Own, Visa>, Size>& table, Visa value) {
    for (const auto& pair : table) {
        if (pair.visa == value) {
            return pair.own;
        }
    }
    return std::nullopt;
}

}  // namespace kestrion::visa
