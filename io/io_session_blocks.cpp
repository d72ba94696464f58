// Blocks through the session.
#include "io/block_transfer.h"
#include "io/io_session.h"
#include "io/variant_array.h"

namespace kestrion {

HRESULT CIoSession::WriteBlockOf(ElementKind kind, const void* values, std::int32_t count,
                                 bool flush, std::int32_t timeout, Polling polling) {
    return Run(timeout, flush ? polling : Polling::kOff, [&]() -> HRESULT {
        if (values == nullptr && count > 0) {
            return reporter_->ReportNullPointer("WriteBlock", "pBuf", "");
        }
        return WriteBlockElements(*buffer_, *reporter_, kind, values, count, flush);
    });
}

HRESULT CIoSession::CommandWriteBlockOf(ElementKind kind, std::string_view command,
                                        const void* values, std::int32_t count, bool flush,
                                        std::int32_t timeout) {
    return Run(timeout, flush ? Polling::kOn : Polling::kOff, [&] {
        const HRESULT status = WriteStringNoPoll(command, false);
        return Failed(status)
                   ? status
                   : WriteBlockOf(kind, values, count, flush, kKeepTimeout, Polling::kOff);
    });
}

HRESULT CIoSession::WriteVariantBlockOf(SAFEARRAY* values, bool flush, std::int32_t timeout,
                                        Polling polling) {
    return Run(timeout, flush ? polling : Polling::kOff, [&]() -> HRESULT {
        ElementKind kind = ElementKind::kByte;
        const HRESULT status = CheckNumberArray(values, *reporter_, &kind);
        if (Failed(status)) {
            return status;
        }
        return WriteBlockElements(*buffer_, *reporter_, kind, ArrayBytes(values),
                                  static_cast<std::int32_t>(VectorLength(values)), flush);
    });
}

HRESULT CIoSession::CommandWriteVariantBlockOf(std::string_view command, SAFEARRAY* values,
                                               bool flush, std::int32_t timeout) {
    return Run(timeout, flush ? Polling::kOn : Polling::kOff, [&] {
        const HRESULT status = WriteStringNoPoll(command, false);
        return Failed(status) ? status : WriteBlockNoPoll(values, flush);
    });
}

HRESULT CIoSession::ReadBlockOf(ElementKind kind, void* values, std::int32_t count,
                                std::int32_t* actual, bool seek, bool flush, std::int32_t timeout,
                                Polling polling) {
    return Run(timeout, polling, [&]() -> HRESULT {
        if (values == nullptr) {
            return reporter_->ReportNullPointer("ReadBlock", "pBuf", "");
        }
        if (count < 0) {
            return E_INVALIDARG;
        }
        std::uint32_t byteCount = 0;
        HRESULT status = ReadBlockHeader(*buffer_, *reporter_, seek, &byteCount);
        if (Failed(status)) {
            return status;
        }
        std::uint32_t got = 0;
        status = ReadBlockElements(*buffer_, status, kind, values,
                                   static_cast<std::uint32_t>(count), byteCount, flush, &got);
        if (actual != nullptr) {
            *actual = static_cast<std::int32_t>(got);
        }
        return status;
    });
}

HRESULT CIoSession::ReadVariantBlockOf(ElementKind kind, SAFEARRAY** values, bool seek, bool flush,
                                       std::int32_t timeout, Polling polling) {
    return Run(timeout, polling, [&]() -> HRESULT {
        if (values == nullptr) {
            return reporter_->ReportNullPointer("ReadBlock", "ppsaData", "");
        }
        const std::uint32_t width = ElementWidth(kind);
        if (width == 0) {
            return reporter_->ReportInvalidValue(
                "eType", std::to_string(static_cast<std::int32_t>(kind)), "");
        }
        (void)SafeArrayDestroy(*values);
        *values = nullptr;
        std::uint32_t byteCount = 0;
        HRESULT status = ReadBlockHeader(*buffer_, *reporter_, seek, &byteCount);
        if (Failed(status)) {
            return status;
        }
        const std::uint32_t announced = byteCount / width;
        SafeArrayPtr result;
        const HRESULT made = MakeReadArray(ElementVartype(kind), announced, *reporter_, result);
        if (Failed(made)) {
            return made;
        }
        std::uint32_t got = 0;
        status = ReadBlockElements(*buffer_, status, kind, ArrayBytes(result.Get()), announced,
                                   byteCount, flush, &got);
        if (!Failed(status) && got < announced) {
            const HRESULT resized = ResizeReadArray(result, got, *reporter_);
            status = Failed(resized) ? resized : status;
        }
        if (!Failed(status)) {
            *values = result.Detach();
        }
        return status;
    });
}

}  // namespace kestrion
