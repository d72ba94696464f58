// The VISA functions of this provider. What each does, and the statuses that it returns, is told
// by VPP-4.3; the comments here say what this provider decides where the standard leaves room.
//
// All of them may be called from any thread at any time, also with handles that another thread
// closes meanwhile. None throws. Buffers are the caller's; texts that are given out hold at most
// 256 characters with the null at their end.
#pragma once

#include "visa/visa.h"

namespace visa_provider {

[[nodiscard]] ViStatus viOpenDefaultRM(ViPSession session);

// `name` is TCPIP[board]::host::port::SOCKET, VIRTUAL::model::INSTR or VIRTUAL::INSTR. `timeout`,
// in milliseconds, bounds the look-up of the host, the connection and the wait for the lock; 0
// counts as 2000. Each open of VIRTUAL makes an instrument of its own, gone with the session.
[[nodiscard]] ViStatus viOpen(ViSession manager, ViConstRsrc name, ViAccessMode mode,
                              ViUInt32 timeout, ViPSession session);

// An operation that waits in another thread on what is closed here ends with VI_ERROR_ABORT.
ViStatus viClose(ViObject object);

[[nodiscard]] ViStatus viGetAttribute(ViObject object, ViAttr attribute, void* value);
[[nodiscard]] ViStatus viSetAttribute(ViObject object, ViAttr attribute, ViAttrState value);

// Writes a text for any status, also when `object` is no valid handle.
ViStatus viStatusDesc(ViObject object, ViStatus status, ViChar* description);

// The time-out bounds the wait for progress: it starts with the call, and starts anew each time
// that 64 KiB more have come since. So a long record at a steady pace isn't cut off, and a peer
// that sends a byte now and then is. What came before an error is in the buffer and counted.
[[nodiscard]] ViStatus viRead(ViSession session, ViPBuf buffer, ViUInt32 count, ViPUInt32 actual);

// The time-out bounds the wait for progress as in viRead.
[[nodiscard]] ViStatus viWrite(ViSession session, ViConstBuf buffer, ViUInt32 count,
                               ViPUInt32 actual);

// The two asynchronous operations are done when the call returns: VI_SUCCESS_SYNC, and the outcome
// in the event VI_EVENT_IO_COMPLETION. `job` is set before the transfer begins, so that another
// thread can end it with viTerminate.
[[nodiscard]] ViStatus viReadAsync(ViSession session, ViPBuf buffer, ViUInt32 count, ViPJobId job);
[[nodiscard]] ViStatus viWriteAsync(ViSession session, ViConstBuf buffer, ViUInt32 count,
                                    ViPJobId job);

// On a raw socket these two need VI_ATTR_IO_PROT to be VI_PROT_4882_STRS.
[[nodiscard]] ViStatus viAssertTrigger(ViSession session, ViUInt16 protocol);
[[nodiscard]] ViStatus viReadSTB(ViSession session, ViPUInt16 status);

// On a raw socket: throws away what has come and wasn't read.
[[nodiscard]] ViStatus viClear(ViSession session);

// Ends a transfer, a wait for an event or a wait for a lock that another thread runs on the
// session, with VI_ERROR_ABORT: that of the job, or all for VI_NULL. A job whose transfer is over
// is none (VI_ERROR_INV_JOB_ID).
[[nodiscard]] ViStatus viTerminate(ViSession session, ViUInt16 degree, ViJobId job);

// Locks hold between all sessions to a resource on this computer, in whatever process; they are
// given back when the process ends. A resource is told by its name, so one instrument under two
// names has two locks. Each virtual instrument belongs to its session alone. `accessKey` holds 256
// characters.
[[nodiscard]] ViStatus viLock(ViSession session, ViAccessMode type, ViUInt32 timeout,
                              ViConstKeyId requestedKey, ViChar* accessKey);
[[nodiscard]] ViStatus viUnlock(ViSession session);

// VI_EVENT_EXCEPTION, which knows the mechanism VI_HNDLR alone, tells of each function that fails
// on the session, within the call. A function that fails inside its handler is not told of again.
// Handlers run in the thread whose call brought the event about: the provider has no thread of its
// own, and a virtual instrument moves on while some call on its session runs or waits.
[[nodiscard]] ViStatus viEnableEvent(ViSession session, ViEventType type, ViUInt16 mechanism,
                                     ViEventFilter context);
[[nodiscard]] ViStatus viDisableEvent(ViSession session, ViEventType type, ViUInt16 mechanism);
[[nodiscard]] ViStatus viDiscardEvents(ViSession session, ViEventType type, ViUInt16 mechanism);
[[nodiscard]] ViStatus viWaitOnEvent(ViSession session, ViEventType type, ViUInt32 timeout,
                                     ViPEventType outType, ViPEvent outContext);
[[nodiscard]] ViStatus viInstallHandler(ViSession session, ViEventType type, ViHndlr handler,
                                        ViAddr userHandle);
[[nodiscard]] ViStatus viUninstallHandler(ViSession session, ViEventType type, ViHndlr handler,
                                          ViAddr userHandle);

// The search finds the virtual instruments. It takes no attribute expression in braces
// (VI_ERROR_INV_EXPR). `name` holds 256 characters.
[[nodiscard]] ViStatus viFindRsrc(ViSession manager, ViConstString expression, ViPFindList list,
                                  ViPUInt32 count, ViChar* name);
[[nodiscard]] ViStatus viFindNext(ViFindList list, ViChar* name);

// The texts hold 256 characters each; a null location is left out.
[[nodiscard]] ViStatus viParseRsrc(ViSession manager, ViConstRsrc name, ViPUInt16 interfaceType,
                                   ViPUInt16 interfaceNumber);
[[nodiscard]] ViStatus viParseRsrcEx(ViSession manager, ViConstRsrc name, ViPUInt16 interfaceType,
                                     ViPUInt16 interfaceNumber, ViChar* resourceClass,
                                     ViChar* expandedName, ViChar* alias);

}  // namespace visa_provider
