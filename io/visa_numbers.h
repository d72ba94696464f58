// The published VISA numbers that the driver uses: VPP-4.3.2, annex A (status codes, attributes,
// events and values).
#pragma once

#include "io/visa_api.h"

namespace kestrion::visa {

[[nodiscard]] constexpr ViStatus StatusCode(ViUInt32 bits) {
    return static_cast<ViStatus>(bits);
}

// Completion codes.
inline constexpr ViStatus kSuccess = 0;
inline constexpr ViStatus kSuccessTermChar = StatusCode(0x3FFF0005);
inline constexpr ViStatus kSuccessMaxCount = StatusCode(0x3FFF0006);
inline constexpr ViStatus kWarnUnknownStatus = StatusCode(0x3FFF0085);

// Error codes.
inline constexpr ViStatus kErrorSystem = StatusCode(0xBFFF0000);
inline constexpr ViStatus kErrorInvalidObject = StatusCode(0xBFFF000E);
inline constexpr ViStatus kErrorResourceLocked = StatusCode(0xBFFF000F);
inline constexpr ViStatus kErrorResourceNotFound = StatusCode(0xBFFF0011);
inline constexpr ViStatus kErrorTimeout = StatusCode(0xBFFF0015);
inline constexpr ViStatus kErrorUnsupportedAttribute = StatusCode(0xBFFF001D);
inline constexpr ViStatus kErrorNotEnabled = StatusCode(0xBFFF002F);
inline constexpr ViStatus kErrorIo = StatusCode(0xBFFF003E);
inline constexpr ViStatus kErrorConnectionLost = StatusCode(0xBFFF00A6);

// Attributes.
inline constexpr ViAttr kAttrResourceClass = 0xBFFF0001;
inline constexpr ViAttr kAttrResourceName = 0xBFFF0002;
inline constexpr ViAttr kAttrInterfaceName = 0xBFFF00E9;
inline constexpr ViAttr kAttrManufacturerName = 0xBFFF0174;
inline constexpr ViAttr kAttrMaxQueueLength = 0x3FFF0005;
inline constexpr ViAttr kAttrSendEndEnabled = 0x3FFF0016;
inline constexpr ViAttr kAttrTermChar = 0x3FFF0018;
inline constexpr ViAttr kAttrTimeout = 0x3FFF001A;
inline constexpr ViAttr kAttrIoProtocol = 0x3FFF001C;
inline constexpr ViAttr kAttrTermCharEnabled = 0x3FFF0038;
inline constexpr ViAttr kAttrSourceByteOrder = 0x3FFF003D;
inline constexpr ViAttr kAttrDestinationByteOrder = 0x3FFF003A;
inline constexpr ViAttr kAttrSourceIncrement = 0x3FFF0040;
inline constexpr ViAttr kAttrDestinationIncrement = 0x3FFF0041;
inline constexpr ViAttr kAttrInterfaceType = 0x3FFF0171;
inline constexpr ViAttr kAttrManufacturerId = 0x3FFF0175;
inline constexpr ViAttr kAttrInterfaceNumber = 0x3FFF0176;

// Values of VI_ATTR_INTF_TYPE.
inline constexpr ViUInt16 kInterfaceGpib = 1;
inline constexpr ViUInt16 kInterfaceVxi = 2;
inline constexpr ViUInt16 kInterfaceGpibVxi = 3;
inline constexpr ViUInt16 kInterfaceSerial = 4;
inline constexpr ViUInt16 kInterfacePxi = 5;
inline constexpr ViUInt16 kInterfaceTcpip = 6;
inline constexpr ViUInt16 kInterfaceUsb = 7;

// Events and mechanisms.
inline constexpr ViEventType kEventServiceRequest = 0x3FFF200B;
inline constexpr ViUInt16 kMechanismQueue = 1;

// Locks and access modes.
inline constexpr ViAccessMode kNoLock = 0;
inline constexpr ViAccessMode kExclusiveLock = 1;
inline constexpr ViAccessMode kSharedLock = 2;

// VI_TMO_INFINITE and VI_TMO_IMMEDIATE.
inline constexpr ViUInt32 kTimeoutInfinite = 0xFFFFFFFF;
inline constexpr ViUInt32 kTimeoutImmediate = 0;

}  // namespace kestrion::visa
