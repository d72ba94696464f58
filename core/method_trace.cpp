#include "core/method_trace.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/error_info.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/variant.h"
#include "platform/system_time.h"

namespace kestrion {
namespace {

constexpr std::string_view kUnknown = "(unknown)";
constexpr std::string_view kNull = "(null)";

std::string_view DirectionName(Direction direction) {
    switch (direction) {
        case Direction::kIn:
            return "In";
        case Direction::kOut:
            return "Out";
        default:
            return "InOut";
    }
}

// Empty for a kind that has no name.
std::string_view KindName(VARTYPE kind) {
    switch (kind) {
        case VT_I2:
            return "Int16";
        case VT_I4:
            return "Int32";
        case VT_I8:
            return "Int64";
        case VT_UI2:
            return "UInt16";
        case VT_UI4:
            return "UInt32";
        case VT_UI8:
            return "UInt64";
        case VT_R4:
            return "Single";
        case VT_R8:
            return "Double";
        case VT_BSTR:
            return "String";
        case VT_BOOL:
            return "Boolean";
        case VT_UI1:
            return "Byte";
        case VT_I1:
            return "Char";
        case VT_VARIANT:
            return "VARIANT";
        case VT_DISPATCH:
            return "IDispatch";
        case VT_UNKNOWN:
            return "IUnknown";
        default:
            return {};
    }
}

std::string DataType(VARTYPE kind, bool isArray) {
    const std::string_view name = KindName(kind);
    return name.empty() ? std::string(kUnknown) : std::string(name).append(isArray ? "[]" : "");
}

// The value behind a pointer that may be unaligned.
template <typename T>
T Read(const void* at) {
    T value;
    std::memcpy(&value, at, sizeof(value));
    return value;
}

// As C's "%.15g" and "%e" in the "C" locale.
std::string FormatDouble(double value, std::chars_format format, int precision) {
    std::array<char, 64> text{};
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), value, format, precision);
    return {text.data(), result.ptr};
}

std::string FormatReal(double value) {
    return FormatDouble(value, std::chars_format::general, 15);
}

// The value of a kind other than text.
std::string FormatValue(VARTYPE kind, const void* at) {
    switch (kind) {
        case VT_I1:
            return std::to_string(Read<std::int8_t>(at));
        case VT_UI1:
            return std::to_string(Read<std::uint8_t>(at));
        case VT_I2:
            return std::to_string(Read<std::int16_t>(at));
        case VT_UI2:
            return std::to_string(Read<std::uint16_t>(at));
        case VT_I4:
            return std::to_string(Read<std::int32_t>(at));
        case VT_UI4:
            return std::to_string(Read<std::uint32_t>(at));
        case VT_I8:
            return std::to_string(Read<std::int64_t>(at));
        case VT_UI8:
            return std::to_string(Read<std::uint64_t>(at));
        case VT_R4:
            return FormatReal(static_cast<double>(Read<float>(at)));
        case VT_R8:
            return FormatReal(Read<double>(at));
        case VT_BOOL:
            return Read<VARIANT_BOOL>(at) == VARIANT_FALSE ? "false" : "true";
        case VT_VARIANT:
            return static_cast<const VARIANT*>(at)->vt == VT_EMPTY ? "(empty)" : "(variant)";
        case VT_DISPATCH:
        case VT_UNKNOWN:
            return Read<const void*>(at) == nullptr ? std::string(kNull) : "(interface)";
        default:
            return std::string(kUnknown);
    }
}

void WriteValue(TraceWriter& writer, VARTYPE kind, const void* at) {
    if (at == nullptr) {
        writer.WriteAttribute("Value", kNull);
        return;
    }
    if (kind != VT_BSTR) {
        writer.WriteAttribute("Value", FormatValue(kind, at));
        return;
    }
    const BSTR text = Read<BSTR>(at);
    if (text == nullptr) {
        writer.WriteAttribute("Value", kNull);
    } else {
        writer.WriteAttribute("Value", View(text));
    }
}

// The numbers of elements, the first dimension first.
std::vector<std::uint64_t> DimensionSizes(SAFEARRAY* array) {
    std::vector<std::uint64_t> sizes;
    for (UINT dimension = 1; dimension <= SafeArrayGetDim(array); ++dimension) {
        LONG lower = 0;
        LONG upper = -1;
        (void)SafeArrayGetLBound(array, dimension, &lower);
        (void)SafeArrayGetUBound(array, dimension, &upper);
        sizes.push_back(static_cast<std::uint64_t>(std::int64_t{upper} - lower + 1));
    }
    return sizes;
}

std::string Joined(const std::vector<std::uint64_t>& sizes) {
    std::string text;
    for (const std::uint64_t size : sizes) {
        text.append(text.empty() ? "" : ",").append(std::to_string(size));
    }
    return text;
}

// The first elements in the order of the array; the rest is left out.
void WriteElements(TraceWriter& writer, SAFEARRAY* array, VARTYPE kind, std::uint64_t count) {
    void* data = nullptr;
    if (Failed(SafeArrayAccessData(array, &data))) {
        return;
    }
    const auto limit = static_cast<std::uint64_t>(std::max(writer.arraySizeMax.load(), 0));
    for (std::uint64_t i = 0; i < std::min(count, limit); ++i) {
        writer.OpenElement("Element");
        WriteValue(writer, kind, static_cast<const BYTE*>(data) + i * array->cbElements);
        writer.CloseElement();
    }
    (void)SafeArrayUnaccessData(array);
}

void WriteArray(TraceWriter& writer, SAFEARRAY* array, VARTYPE expectedKind) {
    if (array == nullptr) {
        writer.WriteAttribute("Value", kNull);
        writer.WriteAttribute("DataType", DataType(expectedKind, true));
        return;
    }
    VARTYPE kind = expectedKind;
    (void)SafeArrayGetVartype(array, &kind);
    const std::vector<std::uint64_t> sizes = DimensionSizes(array);
    writer.WriteAttribute("NumDims", std::to_string(sizes.size()));
    writer.WriteAttribute("DimSizes", Joined(sizes));
    writer.WriteAttribute("DataType", DataType(kind, true));
    if (writer.traceArrays) {
        std::uint64_t count = 1;
        for (const std::uint64_t size : sizes) {
            count *= size;
        }
        WriteElements(writer, array, kind, count);
    }
}

void WriteParameter(TraceWriter& writer, const ParameterRecord& parameter) {
    writer.OpenElement("Parameter");
    writer.WriteAttribute("Name", parameter.name);
    writer.WriteAttribute("Direction", DirectionName(parameter.direction));
    const void* at = parameter.Value();
    if ((parameter.kind & VT_ARRAY) != 0) {
        WriteArray(writer, at == nullptr ? nullptr : Read<SAFEARRAY*>(at),
                   static_cast<VARTYPE>(parameter.kind & ~VT_ARRAY));
    } else {
        WriteValue(writer, parameter.kind, at);
        writer.WriteAttribute("DataType", DataType(parameter.kind, false));
    }
    writer.CloseElement();
}

// The description of the thread's error object, which stays where it is.
void WriteErrorMessage(TraceWriter& writer) {
    ComPtr<IErrorInfo> error;
    if (GetErrorInfo(0, error.Out()) != S_OK || !error) {
        return;
    }
    BstrPtr description;
    const HRESULT status = error->GetDescription(description.Out());
    (void)SetErrorInfo(0, error.Get());
    if (Succeeded(status)) {
        writer.WriteAttribute("Message", description.View());
    }
}

void WriteStatus(TraceWriter& writer, HRESULT status) {
    std::array<char, 16> value{};
    std::snprintf(value.data(), value.size(), "0x%08X", static_cast<unsigned>(status));
    writer.OpenElement("HRESULT");
    writer.WriteAttribute("Value", value.data());
    if (Failed(status)) {
        WriteErrorMessage(writer);
    }
    writer.CloseElement();
}

// Runs a step of the trace, which must not make a call fail, not even when memory runs out.
// False when it failed.
template <typename Step>
bool Quietly(Step step) noexcept {
    try {
        return step();
    } catch (...) {
        return false;
    }
}

std::string FormatTime(const WallTime& time) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%d:%d:%d:%d", time.hour, time.minute, time.second,
                  time.millisecond);
    return text.data();
}

}  // namespace

void CMethodTrace::Begin() noexcept {
    active_ = true;
    entryFailed_ = !Quietly([this] {
        const auto lock = writer_->Lock();
        runNumber_ = writer_->RunNumber();
        return Succeeded(WriteEntry());
    });
}

void CMethodTrace::End() noexcept {
    if (active_) {
        (void)Quietly([this] {
            Complete();
            return true;
        });
    }
    if (writer_->closing) {
        (void)Quietly([this] { return Succeeded(writer_->Stop()); });
    }
}

void CMethodTrace::Complete() {
    auto lock = writer_->Lock();
    if (!writer_->IsOpen() || writer_->RunNumber() != runNumber_) {
        return;
    }
    const HRESULT status = WriteExit();
    const std::string record = writer_->TakeEvent();
    lock.unlock();
    if (!record.empty()) {
        writer_->SendEvent(record);
    }
    if (!entryFailed_ && Succeeded(status)) {
        (void)writer_->CheckSave();
    }
}

HRESULT CMethodTrace::WriteEntry() {
    TraceWriter& writer = *writer_;
    entryCounter_ = writer.Counter();
    writer.OpenElement("Method");
    writer.WriteAttribute("Name", memberName_);
    writer.WriteAttribute("Interface", interfaceName_);
    writer.WriteAttribute("StartTime", FormatTime(writer.Now()));
    writer.WriteAttribute("Thread", std::to_string(CurrentThreadNumber()));
    writer.WriteAttribute("Timestamp", std::to_string(entryCounter_));
    for (const ParameterRecord& parameter : parameters_) {
        if (parameter.direction != Direction::kOut) {
            WriteParameter(writer, parameter);
        }
    }
    return writer.Commit();
}

HRESULT CMethodTrace::WriteExit() {
    TraceWriter& writer = *writer_;
    const double seconds = writer.SecondsBetween(entryCounter_, writer.Counter());
    for (const ParameterRecord& parameter : parameters_) {
        if (parameter.direction != Direction::kIn) {
            WriteParameter(writer, parameter);
        }
    }
    WriteStatus(writer, *status_);
    writer.OpenElement("Execution");
    writer.WriteAttribute("ExecutionTime", FormatDouble(seconds, std::chars_format::scientific, 6));
    writer.CloseElement();
    writer.CloseElement();
    return writer.Commit();
}

}  // namespace kestrion
