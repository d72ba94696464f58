// Unformatted text and bytes through the session's buffers.
#include "io/io_session.h"
#include "io/variant_array.h"
#include "platform/text.h"

namespace kestrion {
namespace {

// Bytes that stay in the buffer haven't reached the instrument: there's nothing to ask it about.
Polling PollIfFlushed(bool flush, Polling polling) {
    return flush ? polling : Polling::kOff;
}

}  // namespace

HRESULT CIoSession::WriteBytesOf(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                                 bool flush, std::int32_t timeout, Polling polling) {
    return Run(timeout, PollIfFlushed(flush, polling),
               [&] { return buffer_->WriteBytes(bytes, count, actual, flush); });
}

HRESULT CIoSession::WriteArrayOf(SAFEARRAY* bytes, bool flush, std::int32_t timeout,
                                 Polling polling) {
    return Run(timeout, PollIfFlushed(flush, polling), [&] {
        const HRESULT status = CheckVariantArray(bytes, VT_UI1, *reporter_);
        return Failed(status) ? status
                              : buffer_->WriteArray(bytes, VectorLength(bytes), nullptr, flush);
    });
}

HRESULT CIoSession::WriteTextOf(std::string_view text, bool flush, std::int32_t timeout,
                                Polling polling) {
    return Run(timeout, PollIfFlushed(flush, polling),
               [&] { return buffer_->WriteText(text, nullptr, flush); });
}

HRESULT CIoSession::WriteWideOf(std::u16string_view text, bool flush, std::int32_t timeout,
                                Polling polling) {
    return Run(timeout, PollIfFlushed(flush, polling),
               [&] { return buffer_->WriteText(NarrowToBytes(text), nullptr, flush); });
}

HRESULT CIoSession::ReadBytesOf(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                                bool flush, std::int32_t timeout, Polling polling) {
    return Run(timeout, polling, [&] { return buffer_->ReadBytes(target, count, actual, flush); });
}

HRESULT CIoSession::ReadArrayOf(SAFEARRAY** bytes, std::uint32_t count, bool flush,
                                std::int32_t timeout, Polling polling) {
    return Run(timeout, polling, [&] { return buffer_->ReadToArray(bytes, count, flush); });
}

HRESULT CIoSession::ReadRaw(BYTE* target, std::uint32_t count, std::uint32_t* actual,
                            std::int32_t timeout) {
    return Run(timeout, Polling::kOff,
               [&] { return buffer_->ReadDirect(target, count, actual, false); });
}

HRESULT CIoSession::EndResponse() {
    return Run(kKeepTimeout, Polling::kOff, [&]() -> HRESULT {
        buffer_->EndResponse();
        return S_OK;
    });
}

HRESULT CIoSession::ReadStringOf(std::string* text, std::int32_t timeout, Polling polling) {
    return Run(timeout, polling, [&]() -> HRESULT {
        if (text == nullptr) {
            return reporter_->ReportNullPointer("ReadString", "pstrResult", "");
        }
        text->clear();
        std::uint32_t size = 0;
        HRESULT status = buffer_->GetReadBufferSize(&size);
        if (Failed(status)) {
            return status;
        }
        const BufferMemory work = allocate_(size);
        if (work == nullptr) {
            return reporter_->ReportOutOfMemory("Couldn't allocate temporary buffer.");
        }
        std::uint32_t actual = 0;
        status = buffer_->ReadBytes(work.get(), size, &actual, false);
        if (!Failed(status)) {
            text->assign(reinterpret_cast<const char*>(work.get()), actual);
        }
        return status;
    });
}

HRESULT CIoSession::ReadStringOf(BSTR* text, std::int32_t timeout, Polling polling) {
    return Run(timeout, polling, [&]() -> HRESULT {
        if (text == nullptr) {
            return reporter_->ReportNullPointer("ReadString", "pbstrResult", "");
        }
        *text = nullptr;
        std::string bytes;
        const HRESULT status = ReadStringOf(&bytes, kKeepTimeout, Polling::kOff);
        if (!Failed(status)) {
            *text = MakeBstr(WidenBytes(bytes));
        }
        return status;
    });
}

HRESULT CIoSession::QueryStringOf(std::string_view command, std::string* text, std::int32_t timeout,
                                  Polling polling) {
    return Run(timeout, polling, [&] {
        const HRESULT status = WriteStringNoPoll(command, true);
        return Failed(status) ? status : ReadStringNoPoll(text);
    });
}

HRESULT CIoSession::QueryStringOf(std::string_view command, BSTR* text, std::int32_t timeout,
                                  Polling polling) {
    return Run(timeout, polling, [&] {
        const HRESULT status = WriteStringNoPoll(command, true);
        return Failed(status) ? status : ReadStringNoPoll(text);
    });
}

}  // namespace kestrion
