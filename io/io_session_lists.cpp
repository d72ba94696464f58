// Lists of text elements through the session.
#include <algorithm>
#include <array>
#include <memory>

#include "io/io_session.h"
#include "io/list_transfer.h"
#include "io/variant_array.h"
#include "platform/text.h"

namespace kestrion {
namespace {

// A list of unknown length grows by as many elements as fill this many bytes.
constexpr std::uint32_t kChunkBytes = 4096;
constexpr std::uint32_t kTextChunk = 512;

std::uint32_t ChunkElements(ElementKind kind) {
    return kind == ElementKind::kText ? kTextChunk : kChunkBytes / ElementWidth(kind);
}

HRESULT ReadNumberChunk(IIoBuffer& buffer, IIoErrorReporter& reporter, ElementKind kind,
                        SAFEARRAY* array, std::uint32_t offset, std::string_view separators,
                        std::int32_t* actual) {
    BYTE* target = ArrayBytes(array) + std::size_t{offset} * ElementWidth(kind);
    return ReadNumberList(buffer, reporter, kind, target,
                          static_cast<std::int32_t>(ChunkElements(kind)), separators, actual);
}

HRESULT ReadTextChunk(IIoBuffer& buffer, SAFEARRAY* array, std::uint32_t offset,
                      std::string_view separators, std::int32_t* actual) {
    const auto tokens = std::make_unique<std::string[]>(kTextChunk);
    const HRESULT status = ReadTokenList(buffer, tokens.get(),
                                         static_cast<std::int32_t>(kTextChunk), separators, actual);
    auto* texts = static_cast<BSTR*>(array->pvData) + offset;
    for (std::int32_t i = 0; !Failed(status) && i < *actual; ++i) {
        texts[i] = MakeBstr(WidenBytes(tokens[static_cast<std::size_t>(i)]));
    }
    return status;
}

// Reads chunks behind each other until one is short or the response ends.
HRESULT ReadGrowing(IIoBuffer& buffer, IIoErrorReporter& reporter, ElementKind kind,
                    std::string_view separators, SafeArrayPtr& result) {
    const std::uint32_t chunk = ChunkElements(kind);
    const HRESULT made = MakeReadArray(ElementVartype(kind), chunk, reporter, result);
    if (Failed(made)) {
        return made;
    }
    for (std::uint32_t total = 0;;) {
        std::int32_t actual = 0;
        const HRESULT status =
            kind == ElementKind::kText
                ? ReadTextChunk(buffer, result.Get(), total, separators, &actual)
                : ReadNumberChunk(buffer, reporter, kind, result.Get(), total, separators, &actual);
        if (Failed(status)) {
            return status;
        }
        total += static_cast<std::uint32_t>(actual);
        const bool last = static_cast<std::uint32_t>(actual) < chunk || status != IoStatusMoreData;
        const HRESULT resized = ResizeReadArray(result, last ? total : total + chunk, reporter);
        if (Failed(resized) || last) {
            return Failed(resized) ? resized : status;
        }
    }
}

}  // namespace

HRESULT CIoSession::WriteListOf(ElementKind kind, const void* values, std::int32_t count,
                                std::string_view separator, bool flush, std::int32_t timeout,
                                Polling polling) {
    return Run(timeout, flush ? polling : Polling::kOff, [&]() -> HRESULT {
        if (values == nullptr && count > 0) {
            return reporter_->ReportNullPointer("WriteList", "pBuf", "");
        }
        return WriteNumberList(*buffer_, kind, values, count, separator, flush);
    });
}

HRESULT CIoSession::CommandWriteListOf(ElementKind kind, std::string_view command,
                                       const void* values, std::int32_t count,
                                       std::string_view separator, bool flush,
                                       std::int32_t timeout) {
    return Run(timeout, flush ? Polling::kOn : Polling::kOff, [&] {
        const HRESULT status = WriteStringNoPoll(command, false);
        return Failed(status) ? status
                              : WriteListOf(kind, values, count, separator, flush, kKeepTimeout,
                                            Polling::kOff);
    });
}

HRESULT CIoSession::WriteVariantListOf(SAFEARRAY* values, std::string_view separator, bool flush,
                                       std::int32_t timeout, Polling polling) {
    return Run(timeout, flush ? polling : Polling::kOff, [&]() -> HRESULT {
        const HRESULT status = CheckVariantArray(values, std::nullopt, *reporter_);
        if (Failed(status)) {
            return status;
        }
        VARTYPE type = VT_EMPTY;
        (void)SafeArrayGetVartype(values, &type);
        const auto kind = NumberKind(type);
        if (!kind) {
            return reporter_->ReportInvalidValue(
                "pszValues", "<Unknown Array Type>",
                "Unknown type of array passed to WriteList function.");
        }
        return WriteNumberList(*buffer_, *kind, ArrayBytes(values),
                               static_cast<std::int32_t>(VectorLength(values)), separator, flush);
    });
}

HRESULT CIoSession::CommandWriteVariantListOf(std::string_view command, SAFEARRAY* values,
                                              std::string_view separator, bool flush,
                                              std::int32_t timeout) {
    return Run(timeout, flush ? Polling::kOn : Polling::kOff, [&] {
        const HRESULT status = WriteStringNoPoll(command, false);
        return Failed(status) ? status : WriteListNoPoll(values, separator, flush);
    });
}

HRESULT CIoSession::ReadListOf(ElementKind kind, void* values, std::int32_t count,
                               std::int32_t* actual, std::string_view separators,
                               std::int32_t timeout, Polling polling) {
    return Run(timeout, polling, [&]() -> HRESULT {
        if (values == nullptr) {
            return reporter_->ReportNullPointer("ReadList", "pBuf", "");
        }
        std::int32_t got = 0;
        const HRESULT status =
            kind == ElementKind::kText
                ? ReadTokenList(*buffer_, static_cast<std::string*>(values), count, separators,
                                &got)
                : ReadNumberList(*buffer_, *reporter_, kind, values, count, separators, &got);
        if (actual != nullptr) {
            *actual = got;
        }
        return status;
    });
}

HRESULT CIoSession::QueryListOf(ElementKind kind, std::string_view command, void* values,
                                std::int32_t count, std::int32_t* actual,
                                std::string_view separators, std::int32_t timeout,
                                Polling polling) {
    return Run(timeout, polling, [&] {
        const HRESULT status = WriteStringNoPoll(command, true);
        return Failed(status) ? status
                              : ReadListOf(kind, values, count, actual, separators, kKeepTimeout,
                                           Polling::kOff);
    });
}

HRESULT CIoSession::ReadVariantListOf(ElementKind kind, SAFEARRAY** values,
                                      std::string_view separators, std::int32_t timeout,
                                      Polling polling) {
    return Run(timeout, polling, [&]() -> HRESULT {
        if (values == nullptr) {
            return reporter_->ReportNullPointer("ReadList", "ppsaData", "");
        }
        if (ElementVartype(kind) == VT_EMPTY) {
            return reporter_->ReportInvalidValue(
                "eType", std::to_string(static_cast<std::int32_t>(kind)), "");
        }
        SafeArrayPtr result;
        const HRESULT status = ReadGrowing(*buffer_, *reporter_, kind, separators, result);
        if (!Failed(status)) {
            (void)SafeArrayDestroy(*values);
            *values = result.Detach();
        }
        return status;
    });
}

HRESULT CIoSession::QueryVariantListOf(ElementKind kind, std::string_view command,
                                       SAFEARRAY** values, std::string_view separators,
                                       std::int32_t timeout, Polling polling) {
    return Run(timeout, polling, [&] {
        const HRESULT status = WriteStringNoPoll(command, true);
        return Failed(status)
                   ? status
                   : ReadVariantListOf(kind, values, separators, kKeepTimeout, Polling::kOff);
    });
}

}  // namespace kestrion
