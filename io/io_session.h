// Everything of a session that is independent of the transport.
#pragma once

#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <string_view>

#include "io/instr_buffer.h"
#include "io/session.h"

namespace kestrion {

// The session over a few primitives that the transport below supplies: status byte, clear,
// time-out, termination character, lock, and the unbuffered read and write.
class CIoSession : public virtual IIoSession, public ILowLevelIo {
  public:
    CIoSession(const CIoSession&) = delete;
    CIoSession& operator=(const CIoSession&) = delete;

    // Who reports "not initialized" while the session is closed and has no partners. Not owned; may
    // be null, and then the status comes without an error object.
    void SetClosedReporter(IIoErrorReporter* reporter);

    HRESULT GetReadTerminator(std::string* text) override;
    HRESULT SetReadTerminator(std::string_view text) override;
    HRESULT GetWriteTerminator(std::string* text) override;
    HRESULT SetWriteTerminator(std::string_view text) override;
    HRESULT GetByteSwap(bool* swap) override;
    HRESULT SetByteSwap(bool swap) override;
    HRESULT SetBufferSize(IoBufferKind which, std::uint32_t size) override;
    HRESULT GetReadBufferSize(std::uint32_t* size) override;
    HRESULT GetWriteBufferSize(std::uint32_t* size) override;
    HRESULT FlushWrite(bool sendEnd, std::int32_t timeout = kKeepTimeout) override;
    HRESULT FlushRead(std::int32_t timeout = kKeepTimeout) override;
    HRESULT PollInstrumentStatus() override;
    HRESULT ReadRaw(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                    std::int32_t timeout = kKeepTimeout) override;
    HRESULT EndResponse() override;

    // Past the buffer: further forms of the transport's read and write.
    using ILowLevelIo::LowLevelReadNoPoll;
    using ILowLevelIo::LowLevelReadStringNoPoll;
    using ILowLevelIo::LowLevelWriteNoPoll;
    HRESULT LowLevelRead(SAFEARRAY** bytes, std::uint32_t count, std::int32_t timeout);
    HRESULT LowLevelRead(BYTE* buffer, std::uint32_t count, std::uint32_t* actual,
                         std::int32_t timeout);
    // An array of as many bytes as came, which the caller owns.
    HRESULT LowLevelReadNoPoll(SAFEARRAY** bytes, std::uint32_t count, std::int32_t timeout);
    HRESULT LowLevelReadString(BSTR* text, std::uint32_t count, std::int32_t timeout);
    HRESULT LowLevelReadString(std::string* text, std::uint32_t count, std::int32_t timeout);
    HRESULT LowLevelReadStringNoPoll(BSTR* text, std::uint32_t count, std::int32_t timeout);
    HRESULT LowLevelReadStringNoPoll(std::string* text, std::uint32_t count,
                                     std::int32_t timeout) override;
    HRESULT LowLevelWrite(SAFEARRAY* bytes, std::uint32_t count, std::uint32_t* actual,
                          std::int32_t timeout);
    HRESULT LowLevelWrite(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                          std::int32_t timeout);
    HRESULT LowLevelWriteNoPoll(SAFEARRAY* bytes, std::uint32_t* actual, std::int32_t timeout);
    HRESULT LowLevelWriteString(BSTR text, std::uint32_t count, std::int32_t timeout);
    HRESULT LowLevelWriteString(std::string_view text, std::uint32_t count, std::int32_t timeout);
    HRESULT LowLevelWriteStringNoPoll(BSTR text, std::uint32_t* actual, std::int32_t timeout);
    HRESULT LowLevelWriteStringNoPoll(std::string_view text, std::uint32_t* actual,
                                      std::int32_t timeout);

  protected:
    explicit CIoSession(BufferAllocator allocate) : allocate_(allocate) {}
    ~CIoSession() override = default;

    // The part of Initialize and Close that has nothing to do with the transport.
    [[nodiscard]] HRESULT OpenBuffers(IInstrErrorPoller* poller, IIoErrorReporter* reporter,
                                      IEnumFormatter* formatter);
    void CloseBuffers();
    [[nodiscard]] bool IsOpen() const { return buffer_ != nullptr; }

    // The frame of every operation: takes the session, refuses it while closed, applies a time-out
    // for as long as `work` runs, and polls after success if asked to.
    template <typename Work>
    HRESULT Run(std::int32_t timeout, Polling polling, const Work& work) {
        const std::scoped_lock lock(mutex_);
        if (!IsOpen()) {
            return ReportClosed();
        }
        try {
            const HRESULT status = RunUnderTimeout(timeout, work);
            return polling == Polling::kOn ? PollAfter(status) : status;
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }
    template <typename Work>
    HRESULT Run(const Work& work) {
        return Run(kKeepTimeout, Polling::kOff, work);
    }

    HRESULT PrintfOf(std::string_view format, ArgList args, bool flush) override;
    HRESULT ScanfOf(std::string_view format, std::int32_t timeout, ArgList args,
                    bool flush) override;
    HRESULT QueryfOf(std::string_view command, std::string_view response, std::int32_t timeout,
                     ArgList args, Polling polling) override;
    HRESULT QueryScanfOf(std::string_view command, std::string_view response, std::int32_t timeout,
                         ArgList args, Polling polling) override;
    HRESULT QueryStringOf(std::string_view command, BSTR* text, std::int32_t timeout,
                          Polling polling) override;
    HRESULT QueryStringOf(std::string_view command, std::string* text, std::int32_t timeout,
                          Polling polling) override;
    HRESULT WriteArrayOf(SAFEARRAY* bytes, bool flush, std::int32_t timeout,
                         Polling polling) override;
    HRESULT WriteBytesOf(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual, bool flush,
                         std::int32_t timeout, Polling polling) override;
    HRESULT WriteWideOf(std::u16string_view text, bool flush, std::int32_t timeout,
                        Polling polling) override;
    HRESULT WriteTextOf(std::string_view text, bool flush, std::int32_t timeout,
                        Polling polling) override;
    HRESULT ReadArrayOf(SAFEARRAY** bytes, std::uint32_t count, bool flush, std::int32_t timeout,
                        Polling polling) override;
    HRESULT ReadBytesOf(BYTE* target, std::uint32_t count, std::uint32_t* actual, bool flush,
                        std::int32_t timeout, Polling polling) override;
    HRESULT ReadStringOf(BSTR* text, std::int32_t timeout, Polling polling) override;
    HRESULT ReadStringOf(std::string* text, std::int32_t timeout, Polling polling) override;
    HRESULT QueryNumberOf(ElementKind kind, std::string_view command, void* value, bool flush,
                          std::int32_t timeout, Polling polling) override;
    HRESULT ReadNumberOf(ElementKind kind, void* value, bool flush, std::int32_t timeout,
                         Polling polling) override;
    HRESULT WriteNumberOf(ElementKind kind, const void* value, bool flush, std::int32_t timeout,
                          Polling polling) override;
    HRESULT CommandWriteNumberOf(ElementKind kind, std::string_view command, const void* value,
                                 bool flush, std::int32_t timeout) override;
    HRESULT WriteListOf(ElementKind kind, const void* values, std::int32_t count,
                        std::string_view separator, bool flush, std::int32_t timeout,
                        Polling polling) override;
    HRESULT CommandWriteListOf(ElementKind kind, std::string_view command, const void* values,
                               std::int32_t count, std::string_view separator, bool flush,
                               std::int32_t timeout) override;
    HRESULT ReadListOf(ElementKind kind, void* values, std::int32_t count, std::int32_t* actual,
                       std::string_view separators, std::int32_t timeout, Polling polling) override;
    HRESULT QueryListOf(ElementKind kind, std::string_view command, void* values,
                        std::int32_t count, std::int32_t* actual, std::string_view separators,
                        std::int32_t timeout, Polling polling) override;
    HRESULT WriteVariantListOf(SAFEARRAY* values, std::string_view separator, bool flush,
                               std::int32_t timeout, Polling polling) override;
    HRESULT CommandWriteVariantListOf(std::string_view command, SAFEARRAY* values,
                                      std::string_view separator, bool flush,
                                      std::int32_t timeout) override;
    HRESULT ReadVariantListOf(ElementKind kind, SAFEARRAY** values, std::string_view separators,
                              std::int32_t timeout, Polling polling) override;
    HRESULT QueryVariantListOf(ElementKind kind, std::string_view command, SAFEARRAY** values,
                               std::string_view separators, std::int32_t timeout,
                               Polling polling) override;
    HRESULT WriteBlockOf(ElementKind kind, const void* values, std::int32_t count, bool flush,
                         std::int32_t timeout, Polling polling) override;
    HRESULT CommandWriteBlockOf(ElementKind kind, std::string_view command, const void* values,
                                std::int32_t count, bool flush, std::int32_t timeout) override;
    HRESULT ReadBlockOf(ElementKind kind, void* values, std::int32_t count, std::int32_t* actual,
                        bool seek, bool flush, std::int32_t timeout, Polling polling) override;
    HRESULT WriteVariantBlockOf(SAFEARRAY* values, bool flush, std::int32_t timeout,
                                Polling polling) override;
    HRESULT CommandWriteVariantBlockOf(std::string_view command, SAFEARRAY* values, bool flush,
                                       std::int32_t timeout) override;
    HRESULT ReadVariantBlockOf(ElementKind kind, SAFEARRAY** values, bool seek, bool flush,
                               std::int32_t timeout, Polling polling) override;

    std::recursive_mutex mutex_;
    IInstrErrorPoller* poller_ = nullptr;
    IIoErrorReporter* reporter_ = nullptr;
    IEnumFormatter* formatter_ = nullptr;
    std::unique_ptr<CInstrBuffer> buffer_;

  private:
    // Restores the session's time-out when the operation ends, in whatever way.
    class TimeoutOverride {
      public:
        TimeoutOverride(CIoSession& session, std::int32_t timeout);
        TimeoutOverride(const TimeoutOverride&) = delete;
        TimeoutOverride& operator=(const TimeoutOverride&) = delete;
        ~TimeoutOverride();
        [[nodiscard]] HRESULT Status() const { return status_; }

      private:
        CIoSession& session_;
        std::int32_t saved_ = kKeepTimeout;
        HRESULT status_ = S_OK;
    };

    template <typename Work>
    HRESULT RunUnderTimeout(std::int32_t timeout, const Work& work) {
        const TimeoutOverride guard(*this, timeout);
        return Failed(guard.Status()) ? guard.Status() : work();
    }
    HRESULT PollAfter(HRESULT status);
    HRESULT ReportClosed();

    BufferAllocator allocate_;
    IIoErrorReporter* closedReporter_ = nullptr;
    std::string readTerminator_ = "\n";
    std::string writeTerminator_ = "\n";
};

}  // namespace kestrion
