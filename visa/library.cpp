// The functions under their C names, as a library that any VISA client can load. Types and
// parameters are those of the C binding (VPP-4.3.2, table 3.2.1).
#include "visa/functions.h"

namespace provider = visa_provider;

extern "C" {

[[gnu::visibility("default")]] provider::ViStatus viOpenDefaultRM(provider::ViPSession session) {
    return provider::viOpenDefaultRM(session);
}

// The former name of viOpenDefaultRM (VPP-4.3, rule 4.3.14).
[[gnu::visibility("default")]] provider::ViStatus viGetDefaultRM(provider::ViPSession session) {
    return provider::viOpenDefaultRM(session);
}

[[gnu::visibility("default")]] provider::ViStatus viOpen(provider::ViSession manager,
                                                         provider::ViConstRsrc name,
                                                         provider::ViAccessMode mode,
                                                         provider::ViUInt32 timeout,
                                                         provider::ViPSession session) {
    return provider::viOpen(manager, name, mode, timeout, session);
}

[[gnu::visibility("default")]] provider::ViStatus viClose(provider::ViObject object) {
    return provider::viClose(object);
}

[[gnu::visibility("default")]] provider::ViStatus viGetAttribute(provider::ViObject object,
                                                                 provider::ViAttr attribute,
                                                                 void* value) {
    return provider::viGetAttribute(object, attribute, value);
}

[[gnu::visibility("default")]] provider::ViStatus viSetAttribute(provider::ViObject object,
                                                                 provider::ViAttr attribute,
                                                                 provider::ViAttrState value) {
    return provider::viSetAttribute(object, attribute, value);
}

[[gnu::visibility("default")]] provider::ViStatus viStatusDesc(provider::ViObject object,
                                                               provider::ViStatus status,
                                                               provider::ViChar* description) {
    return provider::viStatusDesc(object, status, description);
}

[[gnu::visibility("default")]] provider::ViStatus viRead(provider::ViSession session,
                                                         provider::ViPBuf buffer,
                                                         provider::ViUInt32 count,
                                                         provider::ViPUInt32 actual) {
    return provider::viRead(session, buffer, count, actual);
}

[[gnu::visibility("default")]] provider::ViStatus viWrite(provider::ViSession session,
                                                          provider::ViConstBuf buffer,
                                                          provider::ViUInt32 count,
                                                          provider::ViPUInt32 actual) {
    return provider::viWrite(session, buffer, count, actual);
}

[[gnu::visibility("default")]] provider::ViStatus viReadAsync(provider::ViSession session,
                                                              provider::ViPBuf buffer,
                                                              provider::ViUInt32 count,
                                                              provider::ViPJobId job) {
    return provider::viReadAsync(session, buffer, count, job);
}

[[gnu::visibility("default")]] provider::ViStatus viWriteAsync(provider::ViSession session,
                                                               provider::ViConstBuf buffer,
                                                               provider::ViUInt32 count,
                                                               provider::ViPJobId job) {
    return provider::viWriteAsync(session, buffer, count, job);
}

[[gnu::visibility("default")]] provider::ViStatus viAssertTrigger(provider::ViSession session,
                                                                  provider::ViUInt16 protocol) {
    return provider::viAssertTrigger(session, protocol);
}

[[gnu::visibility("default")]] provider::ViStatus viReadSTB(provider::ViSession session,
                                                            provider::ViPUInt16 status) {
    return provider::viReadSTB(session, status);
}

[[gnu::visibility("default")]] provider::ViStatus viClear(provider::ViSession session) {
    return provider::viClear(session);
}

[[gnu::visibility("default")]] provider::ViStatus viLock(provider::ViSession session,
                                                         provider::ViAccessMode type,
                                                         provider::ViUInt32 timeout,
                                                         provider::ViConstKeyId requestedKey,
                                                         provider::ViChar* accessKey) {
    return provider::viLock(session, type, timeout, requestedKey, accessKey);
}

[[gnu::visibility("default")]] provider::ViStatus viUnlock(provider::ViSession session) {
    return provider::viUnlock(session);
}

[[gnu::visibility("default")]] provider::ViStatus viEnableEvent(provider::ViSession session,
                                                                provider::ViEventType type,
                                                                provider::ViUInt16 mechanism,
                                                                provider::ViEventFilter context) {
    return provider::viEnableEvent(session, type, mechanism, context);
}

[[gnu::visibility("default")]] provider::ViStatus viDisableEvent(provider::ViSession session,
                                                                 provider::ViEventType type,
                                                                 provider::ViUInt16 mechanism) {
    return provider::viDisableEvent(session, type, mechanism);
}

[[gnu::visibility("default")]] provider::ViStatus viDiscardEvents(provider::ViSession session,
                                                                  provider::ViEventType type,
                                                                  provider::ViUInt16 mechanism) {
    return provider::viDiscardEvents(session, type, mechanism);
}

[[gnu::visibility("default")]] provider::ViStatus viWaitOnEvent(provider::ViSession session,
                                                                provider::ViEventType type,
                                                                provider::ViUInt32 timeout,
                                                                provider::ViPEventType outType,
                                                                provider::ViPEvent outContext) {
    return provider::viWaitOnEvent(session, type, timeout, outType, outContext);
}

[[gnu::visibility("default")]] provider::ViStatus viInstallHandler(provider::ViSession session,
                                                                   provider::ViEventType type,
                                                                   provider::ViHndlr handler,
                                                                   provider::ViAddr userHandle) {
    return provider::viInstallHandler(session, type, handler, userHandle);
}

[[gnu::visibility("default")]] provider::ViStatus viUninstallHandler(provider::ViSession session,
                                                                     provider::ViEventType type,
                                                                     provider::ViHndlr handler,
                                                                     provider::ViAddr userHandle) {
    return provider::viUninstallHandler(session, type, handler, userHandle);
}

[[gnu::visibility("default")]] provider::ViStatus viFindRsrc(provider::ViSession manager,
                                                             provider::ViConstString expression,
                                                             provider::ViPFindList list,
                                                             provider::ViPUInt32 count,
                                                             provider::ViChar* name) {
    return provider::viFindRsrc(manager, expression, list, count, name);
}

[[gnu::visibility("default")]] provider::ViStatus viFindNext(provider::ViFindList list,
                                                             provider::ViChar* name) {
    return provider::viFindNext(list, name);
}

[[gnu::visibility("default")]] provider::ViStatus viParseRsrc(provider::ViSession manager,
                                                              provider::ViConstRsrc name,
                                                              provider::ViPUInt16 interfaceType,
                                                              provider::ViPUInt16 interfaceNumber) {
    return provider::viParseRsrc(manager, name, interfaceType, interfaceNumber);
}

[[gnu::visibility("default")]] provider::ViStatus viParseRsrcEx(
    provider::ViSession manager, provider::ViConstRsrc name, provider::ViPUInt16 interfaceType,
    provider::ViPUInt16 interfaceNumber, provider::ViChar* resourceClass,
    provider::ViChar* expandedName, provider::ViChar* alias) {
    return provider::viParseRsrcEx(manager, name, interfaceType, interfaceNumber, resourceClass,
                                   expandedName, alias);
}

}  // extern "C"
