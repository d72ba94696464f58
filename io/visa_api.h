// The table of VISA functions that the driver calls, and the numbers that it passes to them.
// Types and numbers are those of VPP-4.3 and VPP-4.3.2 (VISA library, C binding).
#pragma once

#include <cstdint>

namespace kestrion::visa {

// VPP-4.3.2, section 3: sizes are fixed, whatever the words of the C language are long.
using ViUInt8 = std::uint8_t;
using ViUInt16 = std::uint16_t;
using ViUInt32 = std::uint32_t;
using ViInt32 = std::int32_t;
using ViStatus = ViInt32;
using ViObject = ViUInt32;
using ViSession = ViObject;
using ViEvent = ViObject;
using ViAttr = ViUInt32;
// 64 bits on a 64-bit system (VPP-4.3.2, table 3.1.3).
using ViAttrState = std::uint64_t;
using ViEventType = ViUInt32;
using ViEventFilter = ViUInt32;
using ViAccessMode = ViUInt32;
using ViJobId = ViUInt32;
using ViHndlr = ViStatus (*)(ViSession, ViEventType, ViEvent, void*);

// One entry for each function used; every entry is set in a table that was made successfully.
struct FunctionTable {
    ViStatus (*viOpenDefaultRM)(ViSession* session);
    ViStatus (*viOpen)(ViSession manager, const char* name, ViAccessMode mode, ViUInt32 timeout,
                       ViSession* session);
    ViStatus (*viClose)(ViObject object);
    ViStatus (*viGetAttribute)(ViObject object, ViAttr attribute, void* value);
    ViStatus (*viSetAttribute)(ViObject object, ViAttr attribute, ViAttrState value);
    // `description` holds at least 256 characters.
    ViStatus (*viStatusDesc)(ViObject object, ViStatus status, char* description);
    ViStatus (*viRead)(ViSession session, ViUInt8* buffer, ViUInt32 count, ViUInt32* actual);
    ViStatus (*viWrite)(ViSession session, const ViUInt8* buffer, ViUInt32 count, ViUInt32* actual);
    ViStatus (*viReadAsync)(ViSession session, ViUInt8* buffer, ViUInt32 count, ViJobId* job);
    ViStatus (*viWriteAsync)(ViSession session, const ViUInt8* buffer, ViUInt32 count,
                             ViJobId* job);
    ViStatus (*viAssertTrigger)(ViSession session, ViUInt16 protocol);
    ViStatus (*viReadSTB)(ViSession session, ViUInt16* status);
    ViStatus (*viClear)(ViSession session);
    ViStatus (*viLock)(ViSession session, ViAccessMode type, ViUInt32 timeout,
                       const char* requestedKey, char* accessKey);
    ViStatus (*viUnlock)(ViSession session);
    ViStatus (*viEnableEvent)(ViSession session, ViEventType type, ViUInt16 mechanism,
                              ViEventFilter context);
    ViStatus (*viDisableEvent)(ViSession session, ViEventType type, ViUInt16 mechanism);
    ViStatus (*viDiscardEvents)(ViSession session, ViEventType type, ViUInt16 mechanism);
    ViStatus (*viWaitOnEvent)(ViSession session, ViEventType type, ViUInt32 timeout,
                              ViEventType* outType, ViEvent* outContext);
    ViStatus (*viInstallHandler)(ViSession session, ViEventType type, ViHndlr handler, void* user);
    ViStatus (*viUninstallHandler)(ViSession session, ViEventType type, ViHndlr handler,
                                   void* user);
};

}  // namespace kestrion::visa
