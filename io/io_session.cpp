// The frame of the session, its settings, and formatted text.
#include "io/io_session.h"

#include "io/format_reader.h"
#include "io/format_writer.h"

namespace kestrion {
namespace {

// What "not initialized" is reported as; used where there's no reporter to ask.
constexpr HRESULT kNotInitialized = MakeStatus(0x8004701D);

}  // namespace

// The frame ---------------------------------------------------------------------------------------

CIoSession::TimeoutOverride::TimeoutOverride(CIoSession& session, std::int32_t timeout)
    : session_(session) {
    if (timeout <= kKeepTimeout) {
        return;
    }
    std::int32_t current = kKeepTimeout;
    if (Failed(session_.GetTimeout(&current))) {
        return;  // A transport without a time-out works with what it has.
    }
    saved_ = current;
    status_ = session_.SetTimeout(timeout);
}

CIoSession::TimeoutOverride::~TimeoutOverride() {
    if (saved_ != kKeepTimeout) {
        (void)session_.SetTimeout(saved_);
    }
}

HRESULT CIoSession::PollAfter(HRESULT status) {
    if (Failed(status)) {
        return status;
    }
    const HRESULT polled = poller_->PollInstrumentStatus();
    return Failed(polled) ? polled : status;
}

HRESULT CIoSession::ReportClosed() {
    return closedReporter_ == nullptr ? kNotInitialized : closedReporter_->ReportNotInitialized("");
}

void CIoSession::SetClosedReporter(IIoErrorReporter* reporter) {
    const std::scoped_lock lock(mutex_);
    closedReporter_ = reporter;
}

HRESULT CIoSession::OpenBuffers(IInstrErrorPoller* poller, IIoErrorReporter* reporter,
                                IEnumFormatter* formatter) {
    buffer_.reset();
    buffer_ = CInstrBuffer::Create(*this, *reporter, readTerminator_, writeTerminator_, allocate_);
    if (buffer_ == nullptr) {
        return reporter->ReportOutOfMemory(
            "Failed to create the formatted I/O read and write buffers.");
    }
    poller_ = poller;
    reporter_ = reporter;
    formatter_ = formatter;
    return S_OK;
}

void CIoSession::CloseBuffers() {
    buffer_.reset();
    poller_ = nullptr;
    reporter_ = nullptr;
    formatter_ = nullptr;
}

// Settings ----------------------------------------------------------------------------------------

HRESULT CIoSession::GetReadTerminator(std::string* text) {
    return Run([&]() -> HRESULT {
        if (text == nullptr) {
            return reporter_->ReportNullPointer("GetReadTerminator", "pstrTerminator", "");
        }
        *text = readTerminator_;
        return S_OK;
    });
}

HRESULT CIoSession::SetReadTerminator(std::string_view text) {
    return Run([&]() -> HRESULT {
        buffer_->SetReadTerminator(text);
        readTerminator_ = text;
        return S_OK;
    });
}

HRESULT CIoSession::GetWriteTerminator(std::string* text) {
    return Run([&]() -> HRESULT {
        if (text == nullptr) {
            return reporter_->ReportNullPointer("GetWriteTerminator", "pstrTerminator", "");
        }
        *text = writeTerminator_;
        return S_OK;
    });
}

HRESULT CIoSession::SetWriteTerminator(std::string_view text) {
    return Run([&]() -> HRESULT {
        const HRESULT status = buffer_->SetWriteTerminator(text);
        if (!Failed(status)) {
            writeTerminator_ = text;
        }
        return status;
    });
}

HRESULT CIoSession::GetByteSwap(bool* swap) {
    return Run([&]() -> HRESULT {
        if (swap == nullptr) {
            return reporter_->ReportNullPointer("GetByteSwap", "pbSwap", "");
        }
        *swap = buffer_->GetByteSwap();
        return S_OK;
    });
}

HRESULT CIoSession::SetByteSwap(bool swap) {
    return Run([&]() -> HRESULT {
        buffer_->SetByteSwap(swap);
        return S_OK;
    });
}

HRESULT CIoSession::SetBufferSize(IoBufferKind which, std::uint32_t size) {
    return Run([&] { return buffer_->SetBufferSize(which, size); });
}

HRESULT CIoSession::GetReadBufferSize(std::uint32_t* size) {
    return Run([&] { return buffer_->GetReadBufferSize(size); });
}

HRESULT CIoSession::GetWriteBufferSize(std::uint32_t* size) {
    return Run([&] { return buffer_->GetWriteBufferSize(size); });
}

HRESULT CIoSession::FlushWrite(bool sendEnd, std::int32_t timeout) {
    return Run(timeout, Polling::kOff, [&] { return buffer_->FlushWrite(sendEnd); });
}

HRESULT CIoSession::FlushRead(std::int32_t timeout) {
    return Run(timeout, Polling::kOff, [&] { return buffer_->FlushRead(); });
}

HRESULT CIoSession::PollInstrumentStatus() {
    return Run([&] { return poller_->PollInstrumentStatus(); });
}

// Formatted text ----------------------------------------------------------------------------------

HRESULT CIoSession::PrintfOf(std::string_view format, ArgList args, bool flush) {
    return Run(kKeepTimeout, flush ? Polling::kOn : Polling::kOff, [&] {
        ArgCursor cursor(args);
        const HRESULT status = FormatWrite(*buffer_, format, cursor, formatter_);
        return Failed(status) || !flush ? status : buffer_->FlushWrite(true);
    });
}

HRESULT CIoSession::ScanfOf(std::string_view format, std::int32_t timeout, ArgList args,
                            bool flush) {
    return Run(timeout, flush ? Polling::kOn : Polling::kOff, [&] {
        ArgCursor cursor(args);
        const HRESULT status = FormatRead(*buffer_, format, cursor, formatter_);
        return Failed(status) || !flush ? status : buffer_->FlushRead();
    });
}

HRESULT CIoSession::QueryfOf(std::string_view command, std::string_view response,
                             std::int32_t timeout, ArgList args, Polling polling) {
    return Run(timeout, polling, [&] {
        // A response can't be answered by what an earlier one left.
        HRESULT status = buffer_->FlushRead();
        ArgCursor cursor(args);
        if (!Failed(status)) {
            status = FormatWrite(*buffer_, command, cursor, formatter_);
        }
        if (!Failed(status)) {
            status = buffer_->FlushWrite(true);
        }
        return Failed(status) ? status : FormatRead(*buffer_, response, cursor, formatter_);
    });
}

HRESULT CIoSession::QueryScanfOf(std::string_view command, std::string_view response,
                                 std::int32_t timeout, ArgList args, Polling polling) {
    return Run(timeout, polling, [&] {
        HRESULT status = buffer_->FlushRead();
        if (!Failed(status)) {
            status = buffer_->WriteText(command, nullptr, true);
        }
        ArgCursor cursor(args);
        return Failed(status) ? status : FormatRead(*buffer_, response, cursor, formatter_);
    });
}

}  // namespace kestrion
