// The session that all driver code talks through: one instrument, one pair of buffers.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "io/args.h"
#include "io/element.h"
#include "io/io_buffer.h"
#include "io/partners.h"
#include "io/status.h"
#include "kestrion/platform/bstr.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"

namespace kestrion {

using ArgList = std::span<const ArgSlot>;

// Whether an operation asks the poller for the instrument's status when it has succeeded.
enum class Polling : bool { kOff = false, kOn = true };

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
// Any thread may call: an operation (one write, one read, one query) is whole, and Close waits for
// the one that runs.
struct IIoSession {
    virtual ~IIoSession() = default;

    // Opens `resource`. The partners aren't owned and have to live until Close; a null one gives
    // E_POINTER. An open session is closed first.
    virtual HRESULT Initialize(std::string_view resource, IInstrErrorPoller* poller,
                               IIoErrorReporter* reporter, IEnumFormatter* formatter) = 0;
    // Drops buffers, partners and the connection; harmless on a closed session.
    virtual HRESULT Close() = 0;

    // The IEEE 488.2 status byte.
    virtual HRESULT ReadStatusByte(BYTE* statusByte) = 0;
    // Device clear.
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

    // Sends the command and reads one buffer's worth of text. Nothing is discarded first.
    HRESULT QueryString(std::string_view command, BSTR* text, std::int32_t timeout = kKeepTimeout) {
        return QueryStringOf(command, text, timeout, Polling::kOn);
    }
    HRESULT QueryStringNoPoll(std::string_view command, BSTR* text,
                              std::int32_t timeout = kKeepTimeout) {
        return QueryStringOf(command, text, timeout, Polling::kOff);
    }
    HRESULT QueryString(std::string_view command, std::string* text,
                        std::int32_t timeout = kKeepTimeout) {
        return QueryStringOf(command, text, timeout, Polling::kOn);
    }
    HRESULT QueryStringNoPoll(std::string_view command, std::string* text,
                              std::int32_t timeout = kKeepTimeout) {
        return QueryStringOf(command, text, timeout, Polling::kOff);
    }

    // Bytes. The array form takes a one-dimensional array of bytes.
    HRESULT WriteBytes(SAFEARRAY* bytes, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteArrayOf(bytes, flush, timeout, Polling::kOn);
    }
    HRESULT WriteBytesNoPoll(SAFEARRAY* bytes, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteArrayOf(bytes, flush, timeout, Polling::kOff);
    }
    HRESULT WriteBytes(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual, bool flush,
                       std::int32_t timeout = kKeepTimeout) {
        return WriteBytesOf(bytes, count, actual, flush, timeout, Polling::kOn);
    }
    HRESULT WriteBytesNoPoll(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                             bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteBytesOf(bytes, count, actual, flush, timeout, Polling::kOff);
    }
    // One byte, without a poll.
    HRESULT WriteChar(BYTE value, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteBytesOf(&value, 1, nullptr, flush, timeout, Polling::kOff);
    }

    // Text: a counted text (null is an empty one), wide text and instrument bytes.
    HRESULT WriteString(BSTR text, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteWideOf(View(text), flush, timeout, Polling::kOn);
    }
    HRESULT WriteStringNoPoll(BSTR text, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteWideOf(View(text), flush, timeout, Polling::kOff);
    }
    HRESULT WriteString(std::u16string_view text, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteWideOf(text, flush, timeout, Polling::kOn);
    }
    HRESULT WriteStringNoPoll(std::u16string_view text, bool flush,
                              std::int32_t timeout = kKeepTimeout) {
        return WriteWideOf(text, flush, timeout, Polling::kOff);
    }
    HRESULT WriteString(std::string_view text, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteTextOf(text, flush, timeout, Polling::kOn);
    }
    HRESULT WriteStringNoPoll(std::string_view text, bool flush,
                              std::int32_t timeout = kKeepTimeout) {
        return WriteTextOf(text, flush, timeout, Polling::kOff);
    }

    // Up to `count` bytes. The array form makes an array of what came, which the caller owns.
    HRESULT ReadBytes(SAFEARRAY** bytes, std::uint32_t count, bool flush,
                      std::int32_t timeout = kKeepTimeout) {
        return ReadArrayOf(bytes, count, flush, timeout, Polling::kOn);
    }
    HRESULT ReadBytesNoPoll(SAFEARRAY** bytes, std::uint32_t count, bool flush,
                            std::int32_t timeout = kKeepTimeout) {
        return ReadArrayOf(bytes, count, flush, timeout, Polling::kOff);
    }
    HRESULT ReadBytes(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool flush,
                      std::int32_t timeout = kKeepTimeout) {
        return ReadBytesOf(target, count, actual, flush, timeout, Polling::kOn);
    }
    HRESULT ReadBytesNoPoll(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool flush,
                            std::int32_t timeout = kKeepTimeout) {
        return ReadBytesOf(target, count, actual, flush, timeout, Polling::kOff);
    }
    // One byte, without a poll.
    HRESULT ReadChar(BYTE* value, bool flush, std::int32_t timeout = kKeepTimeout) {
        return ReadBytesOf(value, 1, nullptr, flush, timeout, Polling::kOff);
    }
    // For bulk data: straight into `target`, past the buffer, with the termination character off
    // for as long as it takes. With nothing buffered it is exactly one read of the transport. The
    // rest of the response stays.
    virtual HRESULT ReadRaw(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                            std::int32_t timeout = kKeepTimeout) = 0;
    // Says that the response ends with what has been read, where the caller knows it and the link
    // doesn't: behind a block on a link without END. Drops what is buffered; reads nothing.
    virtual HRESULT EndResponse() = 0;

    // The whole response, up to the size of the read buffer; a longer one leaves its rest with
    // IoStatusMoreData. The caller owns a text that comes back through a BSTR.
    HRESULT ReadString(BSTR* text, std::int32_t timeout = kKeepTimeout) {
        return ReadStringOf(text, timeout, Polling::kOn);
    }
    HRESULT ReadStringNoPoll(BSTR* text, std::int32_t timeout = kKeepTimeout) {
        return ReadStringOf(text, timeout, Polling::kOff);
    }
    HRESULT ReadString(std::string* text, std::int32_t timeout = kKeepTimeout) {
        return ReadStringOf(text, timeout, Polling::kOn);
    }
    HRESULT ReadStringNoPoll(std::string* text, std::int32_t timeout = kKeepTimeout) {
        return ReadStringOf(text, timeout, Polling::kOff);
    }

    // Numbers as text: byte, short, long, float and double. A response that the type can't hold is
    // reported as an I/O error; one without a digit is E_UNEXPECTED. Without `flush`, a number that
    // ended the response leaves a byte of it in the buffer: flush unless you read on in the same
    // one.
    template <InstrumentNumber T>
    HRESULT QueryNumber(std::string_view command, T* value, bool flush,
                        std::int32_t timeout = kKeepTimeout) {
        return QueryNumberOf(kElementKind<T>, command, value, flush, timeout, Polling::kOn);
    }
    template <InstrumentNumber T>
    HRESULT QueryNumberNoPoll(std::string_view command, T* value, bool flush,
                              std::int32_t timeout = kKeepTimeout) {
        return QueryNumberOf(kElementKind<T>, command, value, flush, timeout, Polling::kOff);
    }
    template <InstrumentNumber T>
    HRESULT ReadNumber(T* value, bool flush, std::int32_t timeout = kKeepTimeout) {
        return ReadNumberOf(kElementKind<T>, value, flush, timeout, Polling::kOn);
    }
    template <InstrumentNumber T>
    HRESULT ReadNumberNoPoll(T* value, bool flush, std::int32_t timeout = kKeepTimeout) {
        return ReadNumberOf(kElementKind<T>, value, flush, timeout, Polling::kOff);
    }
    // "%d" for byte, short and long, "%f" for float and double.
    template <InstrumentNumber T>
    HRESULT WriteNumber(T value, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteNumberOf(kElementKind<T>, &value, flush, timeout, Polling::kOn);
    }
    template <InstrumentNumber T>
    HRESULT WriteNumberNoPoll(T value, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteNumberOf(kElementKind<T>, &value, flush, timeout, Polling::kOff);
    }
    // The Command forms send `command` in the same message, in front.
    template <InstrumentNumber T>
    HRESULT CommandWriteNumber(std::string_view command, T value, bool flush,
                               std::int32_t timeout = kKeepTimeout) {
        return CommandWriteNumberOf(kElementKind<T>, command, &value, flush, timeout);
    }

    // Lists of numbers as text, `separator` between two elements.
    template <InstrumentNumber T>
    HRESULT WriteList(const T* values, std::int32_t count, std::string_view separator, bool flush,
                      std::int32_t timeout = kKeepTimeout) {
        return WriteListOf(kElementKind<T>, values, count, separator, flush, timeout, Polling::kOn);
    }
    template <InstrumentNumber T>
    HRESULT WriteListNoPoll(const T* values, std::int32_t count, std::string_view separator,
                            bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteListOf(kElementKind<T>, values, count, separator, flush, timeout,
                           Polling::kOff);
    }
    template <InstrumentNumber T>
    HRESULT CommandWriteList(std::string_view command, const T* values, std::int32_t count,
                             std::string_view separator, bool flush,
                             std::int32_t timeout = kKeepTimeout) {
        return CommandWriteListOf(kElementKind<T>, command, values, count, separator, flush,
                                  timeout);
    }
    // Up to `count` elements; any byte of `separators` stands between two.
    template <InstrumentNumber T>
    HRESULT ReadList(T* values, std::int32_t count, std::int32_t* actual,
                     std::string_view separators, std::int32_t timeout = kKeepTimeout) {
        return ReadListOf(kElementKind<T>, values, count, actual, separators, timeout,
                          Polling::kOn);
    }
    template <InstrumentNumber T>
    HRESULT ReadListNoPoll(T* values, std::int32_t count, std::int32_t* actual,
                           std::string_view separators, std::int32_t timeout = kKeepTimeout) {
        return ReadListOf(kElementKind<T>, values, count, actual, separators, timeout,
                          Polling::kOff);
    }
    template <InstrumentNumber T>
    HRESULT QueryList(std::string_view command, T* values, std::int32_t count, std::int32_t* actual,
                      std::string_view separators, std::int32_t timeout = kKeepTimeout) {
        return QueryListOf(kElementKind<T>, command, values, count, actual, separators, timeout,
                           Polling::kOn);
    }
    template <InstrumentNumber T>
    HRESULT QueryListNoPoll(std::string_view command, T* values, std::int32_t count,
                            std::int32_t* actual, std::string_view separators,
                            std::int32_t timeout = kKeepTimeout) {
        return QueryListOf(kElementKind<T>, command, values, count, actual, separators, timeout,
                           Polling::kOff);
    }
    // Lists of text tokens.
    HRESULT ReadList(std::string* values, std::int32_t count, std::int32_t* actual,
                     std::string_view separators, std::int32_t timeout = kKeepTimeout) {
        return ReadListOf(ElementKind::kText, values, count, actual, separators, timeout,
                          Polling::kOn);
    }
    HRESULT ReadListNoPoll(std::string* values, std::int32_t count, std::int32_t* actual,
                           std::string_view separators, std::int32_t timeout = kKeepTimeout) {
        return ReadListOf(ElementKind::kText, values, count, actual, separators, timeout,
                          Polling::kOff);
    }
    HRESULT QueryList(std::string_view command, std::string* values, std::int32_t count,
                      std::int32_t* actual, std::string_view separators,
                      std::int32_t timeout = kKeepTimeout) {
        return QueryListOf(ElementKind::kText, command, values, count, actual, separators, timeout,
                           Polling::kOn);
    }
    HRESULT QueryListNoPoll(std::string_view command, std::string* values, std::int32_t count,
                            std::int32_t* actual, std::string_view separators,
                            std::int32_t timeout = kKeepTimeout) {
        return QueryListOf(ElementKind::kText, command, values, count, actual, separators, timeout,
                           Polling::kOff);
    }
    // Variant arrays: the element kind of a written array is its own, that of a read one is given,
    // and a read makes an array of as many elements as came, which the caller owns.
    HRESULT WriteList(SAFEARRAY* values, std::string_view separator, bool flush,
                      std::int32_t timeout = kKeepTimeout) {
        return WriteVariantListOf(values, separator, flush, timeout, Polling::kOn);
    }
    HRESULT WriteListNoPoll(SAFEARRAY* values, std::string_view separator, bool flush,
                            std::int32_t timeout = kKeepTimeout) {
        return WriteVariantListOf(values, separator, flush, timeout, Polling::kOff);
    }
    HRESULT CommandWriteList(std::string_view command, SAFEARRAY* values,
                             std::string_view separator, bool flush,
                             std::int32_t timeout = kKeepTimeout) {
        return CommandWriteVariantListOf(command, values, separator, flush, timeout);
    }
    HRESULT ReadList(SAFEARRAY** values, ElementKind kind, std::string_view separators,
                     std::int32_t timeout = kKeepTimeout) {
        return ReadVariantListOf(kind, values, separators, timeout, Polling::kOn);
    }
    HRESULT ReadListNoPoll(SAFEARRAY** values, ElementKind kind, std::string_view separators,
                           std::int32_t timeout = kKeepTimeout) {
        return ReadVariantListOf(kind, values, separators, timeout, Polling::kOff);
    }
    HRESULT QueryList(std::string_view command, SAFEARRAY** values, ElementKind kind,
                      std::string_view separators, std::int32_t timeout = kKeepTimeout) {
        return QueryVariantListOf(kind, command, values, separators, timeout, Polling::kOn);
    }
    HRESULT QueryListNoPoll(std::string_view command, SAFEARRAY** values, ElementKind kind,
                            std::string_view separators, std::int32_t timeout = kKeepTimeout) {
        return QueryVariantListOf(kind, command, values, separators, timeout, Polling::kOff);
    }

    // IEEE 488.2 definite length arbitrary blocks (8.7.9). Counts are elements.
    template <InstrumentNumber T>
    HRESULT WriteBlock(const T* values, std::int32_t count, bool flush,
                       std::int32_t timeout = kKeepTimeout) {
        return WriteBlockOf(kElementKind<T>, values, count, flush, timeout, Polling::kOn);
    }
    template <InstrumentNumber T>
    HRESULT WriteBlockNoPoll(const T* values, std::int32_t count, bool flush,
                             std::int32_t timeout = kKeepTimeout) {
        return WriteBlockOf(kElementKind<T>, values, count, flush, timeout, Polling::kOff);
    }
    template <InstrumentNumber T>
    HRESULT CommandWriteBlock(std::string_view command, const T* values, std::int32_t count,
                              bool flush, std::int32_t timeout = kKeepTimeout) {
        return CommandWriteBlockOf(kElementKind<T>, command, values, count, flush, timeout);
    }
    // With `seek`, whatever stands in front of the block's `#` is dropped. With `flush`, the rest
    // of the block and the byte behind it are read and dropped. A block shorter than announced
    // shows in `actual`.
    template <InstrumentNumber T>
    HRESULT ReadBlock(T* values, std::int32_t count, std::int32_t* actual, bool seek, bool flush,
                      std::int32_t timeout = kKeepTimeout) {
        return ReadBlockOf(kElementKind<T>, values, count, actual, seek, flush, timeout,
                           Polling::kOn);
    }
    template <InstrumentNumber T>
    HRESULT ReadBlockNoPoll(T* values, std::int32_t count, std::int32_t* actual, bool seek,
                            bool flush, std::int32_t timeout = kKeepTimeout) {
        return ReadBlockOf(kElementKind<T>, values, count, actual, seek, flush, timeout,
                           Polling::kOff);
    }
    HRESULT WriteBlock(SAFEARRAY* values, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteVariantBlockOf(values, flush, timeout, Polling::kOn);
    }
    HRESULT WriteBlockNoPoll(SAFEARRAY* values, bool flush, std::int32_t timeout = kKeepTimeout) {
        return WriteVariantBlockOf(values, flush, timeout, Polling::kOff);
    }
    HRESULT CommandWriteBlock(std::string_view command, SAFEARRAY* values, bool flush,
                              std::int32_t timeout = kKeepTimeout) {
        return CommandWriteVariantBlockOf(command, values, flush, timeout);
    }
    // An array that is in `values` already is destroyed first.
    HRESULT ReadBlock(SAFEARRAY** values, ElementKind kind, bool seek, bool flush,
                      std::int32_t timeout = kKeepTimeout) {
        return ReadVariantBlockOf(kind, values, seek, flush, timeout, Polling::kOn);
    }
    HRESULT ReadBlockNoPoll(SAFEARRAY** values, ElementKind kind, bool seek, bool flush,
                            std::int32_t timeout = kKeepTimeout) {
        return ReadVariantBlockOf(kind, values, seek, flush, timeout, Polling::kOff);
    }

  protected:
    // Each behaviour in one place: the families above are these with their types and the poll set.
    // `flush` of a formatted operation includes the poll.
    virtual HRESULT PrintfOf(std::string_view format, ArgList args, bool flush) = 0;
    virtual HRESULT ScanfOf(std::string_view format, std::int32_t timeout, ArgList args,
                            bool flush) = 0;
    virtual HRESULT QueryfOf(std::string_view command, std::string_view response,
                             std::int32_t timeout, ArgList args, Polling polling) = 0;
    virtual HRESULT QueryStringOf(std::string_view command, BSTR* text, std::int32_t timeout,
                                  Polling polling) = 0;
    virtual HRESULT QueryStringOf(std::string_view command, std::string* text, std::int32_t timeout,
                                  Polling polling) = 0;
    virtual HRESULT WriteArrayOf(SAFEARRAY* bytes, bool flush, std::int32_t timeout,
                                 Polling polling) = 0;
    virtual HRESULT WriteBytesOf(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                                 bool flush, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT WriteWideOf(std::u16string_view text, bool flush, std::int32_t timeout,
                                Polling polling) = 0;
    virtual HRESULT WriteTextOf(std::string_view text, bool flush, std::int32_t timeout,
                                Polling polling) = 0;
    virtual HRESULT ReadArrayOf(SAFEARRAY** bytes, std::uint32_t count, bool flush,
                                std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT ReadBytesOf(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                                bool flush, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT ReadStringOf(BSTR* text, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT ReadStringOf(std::string* text, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT WriteVariantListOf(SAFEARRAY* values, std::string_view separator, bool flush,
                                       std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT CommandWriteVariantListOf(std::string_view command, SAFEARRAY* values,
                                              std::string_view separator, bool flush,
                                              std::int32_t timeout) = 0;
    virtual HRESULT ReadVariantListOf(ElementKind kind, SAFEARRAY** values,
                                      std::string_view separators, std::int32_t timeout,
                                      Polling polling) = 0;
    virtual HRESULT QueryVariantListOf(ElementKind kind, std::string_view command,
                                       SAFEARRAY** values, std::string_view separators,
                                       std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT WriteVariantBlockOf(SAFEARRAY* values, bool flush, std::int32_t timeout,
                                        Polling polling) = 0;
    virtual HRESULT CommandWriteVariantBlockOf(std::string_view command, SAFEARRAY* values,
                                               bool flush, std::int32_t timeout) = 0;
    virtual HRESULT ReadVariantBlockOf(ElementKind kind, SAFEARRAY** values, bool seek, bool flush,
                                       std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT QueryNumberOf(ElementKind kind, std::string_view command, void* value,
                                  bool flush, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT ReadNumberOf(ElementKind kind, void* value, bool flush, std::int32_t timeout,
                                 Polling polling) = 0;
    virtual HRESULT WriteNumberOf(ElementKind kind, const void* value, bool flush,
                                  std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT CommandWriteNumberOf(ElementKind kind, std::string_view command,
                                         const void* value, bool flush, std::int32_t timeout) = 0;
    virtual HRESULT WriteListOf(ElementKind kind, const void* values, std::int32_t count,
                                std::string_view separator, bool flush, std::int32_t timeout,
                                Polling polling) = 0;
    virtual HRESULT CommandWriteListOf(ElementKind kind, std::string_view command,
                                       const void* values, std::int32_t count,
                                       std::string_view separator, bool flush,
                                       std::int32_t timeout) = 0;
    virtual HRESULT ReadListOf(ElementKind kind, void* values, std::int32_t count,
                               std::int32_t* actual, std::string_view separators,
                               std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT QueryListOf(ElementKind kind, std::string_view command, void* values,
                                std::int32_t count, std::int32_t* actual,
                                std::string_view separators, std::int32_t timeout,
                                Polling polling) = 0;
    virtual HRESULT WriteBlockOf(ElementKind kind, const void* values, std::int32_t count,
                                 bool flush, std::int32_t timeout, Polling polling) = 0;
    virtual HRESULT CommandWriteBlockOf(ElementKind kind, std::string_view command,
                                        const void* values, std::int32_t count, bool flush,
                                        std::int32_t timeout) = 0;
    virtual HRESULT ReadBlockOf(ElementKind kind, void* values, std::int32_t count,
                                std::int32_t* actual, bool seek, bool flush, std::int32_t timeout,
                                Polling polling) = 0;
};

}  // namespace kestrion
