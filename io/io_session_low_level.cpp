// The unbuffered read and write in their further forms: arrays, texts, and with a poll behind.
#include <algorithm>
#include <array>

#include "io/io_session.h"
#include "io/variant_array.h"
#include "platform/text.h"

namespace kestrion {
namespace {

// Texts up to this size, with some room behind, are read without touching the heap.
constexpr std::uint32_t kStackText = 1024;
constexpr std::uint32_t kTextReserve = 17;
constexpr std::string_view kNoLowLevelArray = "LowLevelReadNoPoll could not allocate SAFEARRAY.";

}  // namespace

HRESULT CIoSession::LowLevelRead(SAFEARRAY** bytes, std::uint32_t count, std::int32_t timeout) {
    return Run(kKeepTimeout, Polling::kOn,
               [&] { return LowLevelReadNoPoll(bytes, count, timeout); });
}

HRESULT CIoSession::LowLevelRead(BYTE* buffer, std::uint32_t count, std::uint32_t* actual,
                                 std::int32_t timeout) {
    return Run(kKeepTimeout, Polling::kOn,
               [&] { return LowLevelReadNoPoll(buffer, count, actual, timeout); });
}

HRESULT CIoSession::LowLevelReadNoPoll(SAFEARRAY** bytes, std::uint32_t count,
                                       std::int32_t timeout) {
    return Run([&]() -> HRESULT {
        if (bytes == nullptr) {
            return reporter_->ReportNullPointer("LowLevelReadNoPoll", "ppsaBuf", "");
        }
        *bytes = nullptr;
        SafeArrayPtr result;
        HRESULT status = MakeReadArray(VT_UI1, count, *reporter_, result, kNoLowLevelArray);
        if (Failed(status)) {
            return status;
        }
        std::uint32_t actual = 0;
        status = LowLevelReadNoPoll(ArrayBytes(result.Get()), count, &actual, timeout);
        if (!Failed(status) && actual < count) {
            const HRESULT resized = ResizeReadArray(result, actual, *reporter_, kNoLowLevelArray);
            status = Failed(resized) ? resized : status;
        }
        if (!Failed(status)) {
            *bytes = result.Detach();
        }
        return status;
    });
}

HRESULT CIoSession::LowLevelReadString(BSTR* text, std::uint32_t count, std::int32_t timeout) {
    return Run(kKeepTimeout, Polling::kOn,
               [&] { return LowLevelReadStringNoPoll(text, count, timeout); });
}

HRESULT CIoSession::LowLevelReadString(std::string* text, std::uint32_t count,
                                       std::int32_t timeout) {
    return Run(kKeepTimeout, Polling::kOn,
               [&] { return LowLevelReadStringNoPoll(text, count, timeout); });
}

HRESULT CIoSession::LowLevelReadStringNoPoll(BSTR* text, std::uint32_t count,
                                             std::int32_t timeout) {
    return Run([&]() -> HRESULT {
        if (text == nullptr) {
            return reporter_->ReportNullPointer("LowLevelReadStringNoPoll", "pbstrBuf", "");
        }
        *text = nullptr;
        std::string bytes;
        const HRESULT status = LowLevelReadStringNoPoll(&bytes, count, timeout);
        if (!Failed(status)) {
            *text = MakeBstr(WidenBytes(bytes));
        }
        return status;
    });
}

HRESULT CIoSession::LowLevelReadStringNoPoll(std::string* text, std::uint32_t count,
                                             std::int32_t timeout) {
    return Run([&]() -> HRESULT {
        if (text == nullptr) {
            return reporter_->ReportNullPointer("LowLevelReadStringNoPoll", "pBuf", "");
        }
        text->clear();
        std::array<BYTE, kStackText> onStack;
        BufferMemory onHeap;
        BYTE* work = onStack.data();
        if (count > kStackText - kTextReserve) {
            onHeap = allocate_(std::size_t{count} + kTextReserve);
            work = onHeap.get();
        }
        if (work == nullptr) {
            return E_OUTOFMEMORY;
        }
        std::uint32_t actual = 0;
        const HRESULT status = LowLevelReadNoPoll(work, count, &actual, timeout);
        if (!Failed(status)) {
            text->assign(reinterpret_cast<const char*>(work), actual);
        }
        return status;
    });
}

HRESULT CIoSession::LowLevelWrite(SAFEARRAY* bytes, std::uint32_t count, std::uint32_t* actual,
                                  std::int32_t timeout) {
    return Run(kKeepTimeout, Polling::kOn, [&]() -> HRESULT {
        if (bytes == nullptr) {
            return reporter_->ReportNullPointer("LowLevelWriteNoPoll", "psaBuf", "");
        }
        const HRESULT status = CheckVariantArray(bytes, VT_UI1, *reporter_);
        return Failed(status)
                   ? status
                   : LowLevelWriteNoPoll(ArrayBytes(bytes), std::min(count, VectorLength(bytes)),
                                         actual, timeout);
    });
}

HRESULT CIoSession::LowLevelWrite(const BYTE* bytes, std::uint32_t count, std::uint32_t* actual,
                                  std::int32_t timeout) {
    return Run(kKeepTimeout, Polling::kOn,
               [&] { return LowLevelWriteNoPoll(bytes, count, actual, timeout); });
}

HRESULT CIoSession::LowLevelWriteNoPoll(SAFEARRAY* bytes, std::uint32_t* actual,
                                        std::int32_t timeout) {
    return Run([&]() -> HRESULT {
        if (bytes == nullptr) {
            return reporter_->ReportNullPointer("LowLevelWriteNoPoll", "psaBuf", "");
        }
        const HRESULT status = CheckVariantArray(bytes, VT_UI1, *reporter_);
        return Failed(status)
                   ? status
                   : LowLevelWriteNoPoll(ArrayBytes(bytes), VectorLength(bytes), actual, timeout);
    });
}

HRESULT CIoSession::LowLevelWriteString(BSTR text, std::uint32_t count, std::int32_t timeout) {
    return Run(kKeepTimeout, Polling::kOn, [&]() -> HRESULT {
        if (text == nullptr) {
            return reporter_->ReportNullPointer("LowLevelWriteStringNoPoll", "bstrBuf", "");
        }
        const std::string bytes = NarrowToBytes(View(text).substr(0, count));
        return LowLevelWriteStringNoPoll(bytes, nullptr, timeout);
    });
}

HRESULT CIoSession::LowLevelWriteString(std::string_view text, std::uint32_t count,
                                        std::int32_t timeout) {
    return Run(kKeepTimeout, Polling::kOn,
               [&] { return LowLevelWriteStringNoPoll(text.substr(0, count), nullptr, timeout); });
}

HRESULT CIoSession::LowLevelWriteStringNoPoll(BSTR text, std::uint32_t* actual,
                                              std::int32_t timeout) {
    return Run([&]() -> HRESULT {
        if (text == nullptr) {
            return reporter_->ReportNullPointer("LowLevelWriteStringNoPoll", "bstrBuf", "");
        }
        return LowLevelWriteStringNoPoll(NarrowToBytes(View(text)), actual, timeout);
    });
}

HRESULT CIoSession::LowLevelWriteStringNoPoll(std::string_view text, std::uint32_t* actual,
                                              std::int32_t timeout) {
    return Run([&]() -> HRESULT {
        if (text.data() == nullptr) {
            return reporter_->ReportNullPointer("LowLevelWriteStringNoPoll", "pBuf", "");
        }
        return LowLevelWriteNoPoll(reinterpret_cast<const BYTE*>(text.data()),
                                   static_cast<std::uint32_t>(text.size()), actual, timeout);
    });
}

}  // namespace kestrion
