#include "io/number_transfer.h"

#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "io/format_scan.h"
#include "io/number_parse.h"
#include "io/number_text.h"

namespace kestrion {
namespace {

constexpr std::int64_t kNumberWidth = 100;

template <typename T>
T Load(const void* value) {
    T loaded;
    std::memcpy(&loaded, value, sizeof(T));
    return loaded;
}

std::string WholeText(std::int64_t value) {
    NumberDigits digits;
    std::string text;
    FormatSigned(value, {.letter = 'd'}, digits).AppendTo(text);
    return text;
}

std::string RealText(double value, char letter) {
    NumberDigits digits;
    std::string text;
    FormatReal(value, {.letter = letter}, digits).AppendTo(text);
    return text;
}

std::string NumberText(ElementKind kind, const void* value) {
    switch (kind) {
        case ElementKind::kByte:
            return WholeText(Load<BYTE>(value));
        case ElementKind::kShort:
            return WholeText(Load<SHORT>(value));
        case ElementKind::kLong:
            return WholeText(Load<LONG>(value));
        case ElementKind::kFloat:
            return RealText(Load<FLOAT>(value), 'f');
        default:
            return RealText(Load<DOUBLE>(value), 'f');
    }
}

HRESULT ReportRange(IIoErrorReporter& reporter, double value, std::string_view type) {
    return reporter.ReportIoError("Overflow or underflow reading value of '" +
                                  RealText(value, 'e') + "' into a " + std::string(type) + ".");
}

template <typename T>
HRESULT StoreWhole(IIoErrorReporter& reporter, double value, std::string_view type, void* target) {
    if (value > static_cast<double>(std::numeric_limits<T>::max()) ||
        value < static_cast<double>(std::numeric_limits<T>::min())) {
        return ReportRange(reporter, value, type);
    }
    const T whole = static_cast<T>(value);
    std::memcpy(target, &whole, sizeof(T));
    return S_OK;
}

HRESULT StoreSingle(IIoErrorReporter& reporter, double value, void* target) {
    if (!FitsSingle(value)) {
        return ReportRange(reporter, value, "single-precision float");
    }
    const auto single = static_cast<FLOAT>(value);
    std::memcpy(target, &single, sizeof(single));
    return S_OK;
}

HRESULT Store(IIoErrorReporter& reporter, ElementKind kind, double value, void* target) {
    switch (kind) {
        case ElementKind::kByte:
            return StoreWhole<BYTE>(reporter, value, "BYTE", target);
        case ElementKind::kShort:
            return StoreWhole<SHORT>(reporter, value, "short", target);
        case ElementKind::kLong:
            return StoreWhole<LONG>(reporter, value, "long", target);
        case ElementKind::kFloat:
            return StoreSingle(reporter, value, target);
        default:
            std::memcpy(target, &value, sizeof(value));
            return S_OK;
    }
}

}  // namespace

HRESULT WriteNumberElement(IIoBuffer& buffer, ElementKind kind, const void* value, bool flush) {
    return buffer.WriteText(NumberText(kind, value), nullptr, flush);
}

HRESULT ReadNumberElement(IIoBuffer& buffer, IIoErrorReporter& reporter, ElementKind kind,
                          void* value, bool flush) {
    double number = 0;
    HRESULT status = ScanReal(buffer, kNumberWidth, number);
    if (!Failed(status) && flush) {
        status = buffer.FlushRead();
    }
    if (Failed(status)) {
        return status;
    }
    const HRESULT stored = Store(reporter, kind, number, value);
    return Failed(stored) ? stored : status;
}

}  // namespace kestrion
