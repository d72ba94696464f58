// The session that all driver code talks through: one instrument, one pair of buffers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "io/io_buffer.h"
#include "io/operations/session_families.h"
#include "io/partners.h"
#include "io/session_cores.h"
#include "io/status.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// Lock types of IIoSession::Lock.
enum class IoLockType : std::int32_t { kExclusive = 0, kShared = 1 };

// Text and binary traffic with one instrument.
//
// Every operation on a closed session is reported as not initialized and changes nothing. A null
// out pointer is reported as one. Time-outs are milliseconds for this one call; kKeepTimeout
// leaves the session's own and -1 waits for ever. `flush` on a write sends the buffer with END;
// on a read it throws the rest of the response away. Names in NoPoll leave the poller alone; the
// others call it once after success (writes: only if they flushed, since text that stays in the
// buffer hasn't reached the instrument). Out actuals may be null. Texts are instrument bytes.
// Reads return IoStatusMoreData while more of the response follows, and 0 when it is complete.
// Memory that runs out inside a text gives E_OUTOFMEMORY; nothing is thrown.
//
// The typed operations, for text, bytes, numbers, lists and blocks, stand in
// io/operations/session.toml.
//
// Any thread may call: an operation (one write, one read, one query) is whole, and Close waits for
// the one that runs.
struct IIoSession : IoSessionFamilies {
    ~IIoSession() override = default;

    // Opens `resource`. The partners aren't owned and have to live until Close; a null one gives
    // E_POINTER. An open session is closed first.
    virtual HRESULT Initialize(std::string_view resource, IInstrErrorPoller* poller,
                               IIoErrorReporter* reporter, IEnumFormatter* formatter) = 0;
    // Drops buffers, partners and the connection; harmless on a closed session.
    virtual HRESULT Close() = 0;

    // The IEEE 488.2 status byte.
    virtual HRESULT ReadStatusByte(BYTE* statusByte) = 0;
    // Device clear. Whatever waits in the buffers is dropped with what the instrument drops, so the
    // next query starts afresh.
    virtual HRESULT Clear() = 0;

    // Terminators are "\n" at first and outlive Close. An empty one is legal.
    virtual HRESULT GetReadTerminator(std::string* text) = 0;
    virtual HRESULT SetReadTerminator(std::string_view text) = 0;
    virtual HRESULT GetWriteTerminator(std::string* text) = 0;
    virtual HRESULT SetWriteTerminator(std::string_view text) = 0;
    // On at first: binary data travels most significant byte first.
    virtual HRESULT GetByteSwap(bool* swap) = 0;
    virtual HRESULT SetByteSwap(bool swap) = 0;
    virtual HRESULT SetTimeout(std::int32_t milliseconds) = 0;
    virtual HRESULT GetTimeout(std::int32_t* milliseconds) = 0;
    virtual HRESULT SetTerminationCharacter(BYTE character) = 0;
    virtual HRESULT GetTerminationCharacter(BYTE* character) = 0;
    virtual HRESULT SetTerminationCharacterEnabled(bool enabled) = 0;
    virtual HRESULT GetTerminationCharacterEnabled(bool* enabled) = 0;
    virtual HRESULT SetBufferSize(IoBufferKind which, std::uint32_t size) = 0;
    virtual HRESULT GetReadBufferSize(std::uint32_t* size) = 0;
    virtual HRESULT GetWriteBufferSize(std::uint32_t* size) = 0;
    virtual HRESULT FlushWrite(bool sendEnd, std::int32_t timeout = kKeepTimeout) = 0;
    virtual HRESULT FlushRead(std::int32_t timeout = kKeepTimeout) = 0;
    // Locks the instrument against other sessions. `timeout` is the wait for the lock; the key that
    // was granted goes to `accessKey`, which may be null.
    virtual HRESULT Lock(IoLockType type, std::int32_t timeout, std::string_view requestedKey,
                         std::string* accessKey) = 0;
    virtual HRESULT Unlock() = 0;
    // Calls the poller once.
    virtual HRESULT PollInstrumentStatus() = 0;

    // Formatted text. The V forms take packed arguments: those of the command come first, then
    // those of the response.
    HRESULT VPrintf(std::string_view format, ArgList args) { return PrintfOf(format, args, true); }
    HRESULT VPrintfNoFlush(std::string_view format, ArgList args) {
        return PrintfOf(format, args, false);
    }
    HRESULT VScanf(std::string_view format, std::int32_t timeout, ArgList args) {
        return ScanfOf(format, timeout, args, true);
    }
    // Leaves the rest of the response for the next read.
    HRESULT VScanfNoFlush(std::string_view format, std::int32_t timeout, ArgList args) {
        return ScanfOf(format, timeout, args, false);
    }
    // Discards what is left of an earlier response, sends the command and reads the response.
    HRESULT VQueryf(std::string_view command, std::string_view response, std::int32_t timeout,
                    ArgList args) {
        return QueryfOf(command, response, timeout, args, Polling::kOn);
    }
    HRESULT VQueryfNoPoll(std::string_view command, std::string_view response, std::int32_t timeout,
                          ArgList args) {
        return QueryfOf(command, response, timeout, args, Polling::kOff);
    }
    // The same with a command that is text already and is sent as it stands.
    HRESULT VQueryScanf(std::string_view command, std::string_view response, std::int32_t timeout,
                        ArgList args) {
        return QueryScanfOf(command, response, timeout, args, Polling::kOn);
    }
    template <typename... T>
    HRESULT Printf(std::string_view format, T... args) {
        return VPrintf(format, PackArgs(args...));
    }
    template <typename... T>
    HRESULT PrintfNoFlush(std::string_view format, T... args) {
        return VPrintfNoFlush(format, PackArgs(args...));
    }
    template <typename... T>
    HRESULT Scanf(std::string_view format, T... args) {
        return VScanf(format, kKeepTimeout, PackArgs(args...));
    }
    template <typename... T>
    HRESULT ScanfNoFlush(std::string_view format, T... args) {
        return VScanfNoFlush(format, kKeepTimeout, PackArgs(args...));
    }
    template <typename... T>
    HRESULT ScanfTimeout(std::string_view format, std::int32_t timeout, T... args) {
        return VScanf(format, timeout, PackArgs(args...));
    }
    template <typename... T>
    HRESULT ScanfTimeoutNoFlush(std::string_view format, std::int32_t timeout, T... args) {
        return VScanfNoFlush(format, timeout, PackArgs(args...));
    }
    template <typename... T>
    HRESULT Queryf(std::string_view command, std::string_view response, T... args) {
        return VQueryf(command, response, kKeepTimeout, PackArgs(args...));
    }
    template <typename... T>
    HRESULT QueryfNoPoll(std::string_view command, std::string_view response, T... args) {
        return VQueryfNoPoll(command, response, kKeepTimeout, PackArgs(args...));
    }
    template <typename... T>
    HRESULT QueryfTimeout(std::string_view command, std::string_view response, std::int32_t timeout,
                          T... args) {
        return VQueryf(command, response, timeout, PackArgs(args...));
    }
    template <typename... T>
    HRESULT QueryfTimeoutNoPoll(std::string_view command, std::string_view response,
                                std::int32_t timeout, T... args) {
        return VQueryfNoPoll(command, response, timeout, PackArgs(args...));
    }

    // For bulk data: straight into `target`, past the buffer, with the termination character off
    // for as long as it takes. With nothing buffered it is exactly one read of the transport. The
    // rest of the response stays.
    virtual HRESULT ReadRaw(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                            std::int32_t timeout = kKeepTimeout) = 0;
    // Says that the response ends with what has been read, where the caller knows it and the link
    // doesn't: behind a block on a link without END. Drops what is buffered; reads nothing.
    virtual HRESULT EndResponse() = 0;
};

}  // namespace kestrion
