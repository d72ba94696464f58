// The functions under their C names, as a library that any VISA client can load. Types and
// parameters are those of the C binding (VPP-4.3.2, table 3.2.1).
#include "visa/functions.h"

namespace provider = visa_provider;
using namespace visa_provider;  // the types alone: the functions below stand for their own names

#pragma GCC visibility push(default)
extern "C" {

ViStatus viOpenDefaultRM(ViPSession session) {
    return provider::viOpenDefaultRM(session);
}
// The former name of viOpenDefaultRM (VPP-4.3, rule 4.3.14).
ViStatus viGetDefaultRM(ViPSession session) {
    return provider::viOpenDefaultRM(session);
}
ViStatus viOpen(ViSession manager, ViConstRsrc name, ViAccessMode mode, ViUInt32 timeout,
                ViPSession session) {
    return provider::viOpen(manager, name, mode, timeout, session);
}
ViStatus viClose(ViObject object) {
    return provider::viClose(object);
}
ViStatus viGetAttribute(ViObject object, ViAttr attribute, void* value) {
    return provider::viGetAttribute(object, attribute, value);
}
ViStatus viSetAttribute(ViObject object, ViAttr attribute, ViAttrState value) {
    return provider::viSetAttribute(object, attribute, value);
}
ViStatus viStatusDesc(ViObject object, ViStatus status, ViChar* description) {
    return provider::viStatusDesc(object, status, description);
}
ViStatus viRead(ViSession session, ViPBuf buffer, ViUInt32 count, ViPUInt32 actual) {
    return provider::viRead(session, buffer, count, actual);
}
ViStatus viWrite(ViSession session, ViConstBuf buffer, ViUInt32 count, ViPUInt32 actual) {
    return provider::viWrite(session, buffer, count, actual);
}
ViStatus viReadAsync(ViSession session, ViPBuf buffer, ViUInt32 count, ViPJobId job) {
    return provider::viReadAsync(session, buffer, count, job);
}
ViStatus viWriteAsync(ViSession session, ViConstBuf buffer, ViUInt32 count, ViPJobId job) {
    return provider::viWriteAsync(session, buffer, count, job);
}
ViStatus viAssertTrigger(ViSession session, ViUInt16 protocol) {
    return provider::viAssertTrigger(session, protocol);
}
ViStatus viReadSTB(ViSession session, ViPUInt16 status) {
    return provider::viReadSTB(session, status);
}
ViStatus viClear(ViSession session) {
    return provider::viClear(session);
}
ViStatus viTerminate(ViSession session, ViUInt16 degree, ViJobId job) {
    return provider::viTerminate(session, degree, job);
}
ViStatus viLock(ViSession session, ViAccessMode type, ViUInt32 timeout, ViConstKeyId requestedKey,
                ViChar* accessKey) {
    return provider::viLock(session, type, timeout, requestedKey, accessKey);
}
ViStatus viUnlock(ViSession session) {
    return provider::viUnlock(session);
}
ViStatus viEnableEvent(ViSession session, ViEventType type, ViUInt16 mechanism,
                       ViEventFilter context) {
    return provider::viEnableEvent(session, type, mechanism, context);
}
ViStatus viDisableEvent(ViSession session, ViEventType type, ViUInt16 mechanism) {
    return provider::viDisableEvent(session, type, mechanism);
}
ViStatus viDiscardEvents(ViSession session, ViEventType type, ViUInt16 mechanism) {
    return provider::viDiscardEvents(session, type, mechanism);
}
ViStatus viWaitOnEvent(ViSession session, ViEventType type, ViUInt32 timeout, ViPEventType outType,
                       ViPEvent outContext) {
    return provider::viWaitOnEvent(session, type, timeout, outType, outContext);
}
ViStatus viInstallHandler(ViSession session, ViEventType type, ViHndlr handler, ViAddr userHandle) {
    return provider::viInstallHandler(session, type, handler, userHandle);
}
ViStatus viUninstallHandler(ViSession session, ViEventType type, ViHndlr handler,
                            ViAddr userHandle) {
    return provider::viUninstallHandler(session, type, handler, userHandle);
}
ViStatus viFindRsrc(ViSession manager, ViConstString expression, ViPFindList list, ViPUInt32 count,
                    ViChar* name) {
    return provider::viFindRsrc(manager, expression, list, count, name);
}
ViStatus viFindNext(ViFindList list, ViChar* name) {
    return provider::viFindNext(list, name);
}
ViStatus viParseRsrc(ViSession manager, ViConstRsrc name, ViPUInt16 interfaceType,
                     ViPUInt16 interfaceNumber) {
    return provider::viParseRsrc(manager, name, interfaceType, interfaceNumber);
}
ViStatus viParseRsrcEx(ViSession manager, ViConstRsrc name, ViPUInt16 interfaceType,
                       ViPUInt16 interfaceNumber, ViChar* resourceClass, ViChar* expandedName,
                       ViChar* alias) {
    return provider::viParseRsrcEx(manager, name, interfaceType, interfaceNumber, resourceClass,
                                   expandedName, alias);
}

}  // extern "C"
#pragma GCC visibility pop
