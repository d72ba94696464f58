#include "io/list_transfer.h"

#include "io/format_scan.h"
#include "io/number_transfer.h"

namespace kestrion {

HRESULT WriteNumberList(IIoBuffer& buffer, ElementKind kind, const void* values, std::int32_t count,
                        std::string_view separator, bool flush) {
    const auto* bytes = static_cast<const BYTE*>(values);
    for (std::int32_t i = 0; i < count; ++i) {
        HRESULT status = WriteNumberElement(buffer, kind, bytes, false);
        if (!Failed(status) && i + 1 < count) {
            status = buffer.WriteText(separator, nullptr, false);
        }
        if (Failed(status)) {
            return status;
        }
        bytes += ElementWidth(kind);
    }
    return flush ? buffer.FlushWrite(true) : S_OK;
}

HRESULT ReadNumberList(IIoBuffer& buffer, IIoErrorReporter& reporter, ElementKind kind,
                       void* values, std::int32_t count, std::string_view separators,
                       std::int32_t* actual) {
    const ByteSet separatorSet(separators);
    auto* target = static_cast<BYTE*>(values);
    HRESULT status = IoStatusMoreData;
    bool another = true;
    for (*actual = 0; another && *actual < count;) {
        status = ReadNumberElement(buffer, reporter, kind, target, false);
        if (Failed(status)) {
            return status;
        }
        ++*actual;
        target += ElementWidth(kind);
        another = false;
        if (status == IoStatusMoreData) {
            status = ScanSeparator(buffer, separatorSet, another);
        }
        if (Failed(status)) {
            return status;
        }
    }
    // The scan pushes the last byte of a response back; a list that ended has no use for it.
    return status == S_OK ? buffer.FlushRead() : status;
}

HRESULT ReadTokenList(IIoBuffer& buffer, std::string* values, std::int32_t count,
                      std::string_view separators, std::int32_t* actual) {
    const TokenRules rules{.delimiters = ByteSet(separators),
                           .flags = kTokenSkipSpace | kTokenTakeDelimiter};
    HRESULT status = IoStatusMoreData;
    for (*actual = 0; status == IoStatusMoreData && *actual < count;) {
        std::string& token = values[*actual];
        token.clear();
        TokenTarget target(token);
        status = ScanToken(buffer, rules, target);
        if (Failed(status)) {
            return status;
        }
        ++*actual;
    }
    return status;
}

}  // namespace kestrion
