#include "tests/fuzz/write_arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "platform/text.h"

namespace kestrion::fuzz {
namespace {

// What `*` stands for, so that a format can't ask for more than a line of text.
constexpr std::int64_t kMostOfStar = 300;
constexpr std::int64_t kMostElementsOfStar = 20;
// The largest array that a format may name by itself.
constexpr std::int64_t kMostElements = 4096;

template <typename T>
T Clamped(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    constexpr double kLow = static_cast<double>(std::numeric_limits<T>::min());
    constexpr double kHigh = static_cast<double>(std::numeric_limits<T>::max());
    return value <= kLow    ? std::numeric_limits<T>::min()
           : value >= kHigh ? std::numeric_limits<T>::max()
                            : static_cast<T>(value);
}

template <typename T>
void Put(BYTE* array, std::size_t i, T value) {
    std::memcpy(array + i * sizeof(T), &value, sizeof(T));
}

}  // namespace

Values::Values(std::string_view line) {
    for (;;) {
        const std::size_t end = line.find(',');
        values_.push_back(line.substr(0, end));
        if (end == std::string_view::npos) {
            return;
        }
        line.remove_prefix(end + 1);
    }
}

std::string_view Values::NextText() {
    const std::string_view value = values_[at_];
    at_ = (at_ + 1) % values_.size();
    return value;
}

std::int64_t Values::NextInteger() {
    const std::string_view text = NextText();
    std::int64_t value = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), value).ec ==
        std::errc::result_out_of_range) {
        return text.starts_with('-') ? std::numeric_limits<std::int64_t>::min()
                                     : std::numeric_limits<std::int64_t>::max();
    }
    return value;
}

double Values::NextReal() {
    const std::string_view text = NextText();
    double value = 0;
    (void)std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

bool IsWriteBlockRow(WriteRow row) {
    return row == WriteRow::kDefiniteBlock || row == WriteRow::kIndefiniteBlock ||
           row == WriteRow::kRawArray;
}

bool IsWriteArrayRow(WriteRow row) {
    return IsWriteBlockRow(row) || row == WriteRow::kIntegerArray || row == WriteRow::kRealArray ||
           row == WriteRow::kStringArray || row == WriteRow::kEnumArray;
}

bool WriteArguments::Add(WriteRow row, FormatConversion conversion, Values& values) {
    const bool block = IsWriteBlockRow(row);
    if (conversion.width.source == NumberSource::kArguments) {
        AddStar(conversion.width,
                values.NextInteger() % (block ? kMostElementsOfStar : kMostOfStar));
    }
    if (conversion.precision.source == NumberSource::kArguments) {
        AddStar(conversion.precision, values.NextInteger() % kMostOfStar);
    }
    if (conversion.count.source == NumberSource::kArguments) {
        AddStar(conversion.count, values.NextInteger() % kMostElementsOfStar);
    }
    given_.emplace_back();
    conversions_.push_back(conversion);
    if (IsWriteArrayRow(row)) {
        return AddArray(row, conversion, values);
    }
    AddScalar(row, conversion, values);
    return true;
}

void WriteArguments::AddStar(SpecNumber& number, std::int64_t value) {
    number.value = value;
    slots_.emplace_back(static_cast<std::int32_t>(value));
}

void WriteArguments::AddScalar(WriteRow row, const FormatConversion& conversion, Values& values) {
    WriteValue& given = given_.back();
    switch (row) {
        case WriteRow::kReal:
            given.reals.push_back(values.NextReal());
            slots_.emplace_back(given.reals.back());
            return;
        case WriteRow::kString:
            given.texts.emplace_back(values.NextText());
            texts_.push_back(given.texts.back());
            if (conversion.textKind == 'B') {
                wideTexts_.emplace_back(WidenBytes(texts_.back()));
                slots_.emplace_back(wideTexts_.back().Get());
            } else if (conversion.textKind == 'C') {
                slots_.emplace_back(&texts_.back());
            } else {
                slots_.emplace_back(texts_.back().c_str());
            }
            return;
        default:
            given.integers.push_back(values.NextInteger());
            slots_.emplace_back(given.integers.back());
    }
}

bool WriteArguments::AddArray(WriteRow row, const FormatConversion& conversion, Values& values) {
    const std::int64_t asked =
        IsWriteBlockRow(row) ? conversion.width.value : conversion.count.value;
    if (asked > kMostElements) {
        return false;
    }
    // A variant array is what it is, and gives at most that; a plain one without a count is refused
    // before it is looked at.
    const std::size_t count = conversion.variantArray
                                  ? static_cast<std::size_t>(values.NextInteger() & 7)
                                  : static_cast<std::size_t>(std::max<std::int64_t>(asked, 0));
    switch (row) {
        case WriteRow::kStringArray:
            AddTexts(conversion, count, values);
            break;
        case WriteRow::kIntegerArray:
            AddNumbers(IntegerKind(conversion), conversion.variantArray, count, values);
            break;
        case WriteRow::kRealArray:
            AddNumbers(RealKind(conversion), conversion.variantArray, count, values);
            break;
        case WriteRow::kEnumArray:
            AddNumbers(
                conversion.enumName == kBooleanEnum ? FormatElement::kShort : FormatElement::kLong,
                conversion.variantArray, count, values);
            break;
        default:
            AddNumbers(BlockKind(conversion), conversion.variantArray, count, values);
    }
    return true;
}

BYTE* WriteArguments::NewMemory(std::size_t size) {
    memory_.emplace_back(new BYTE[size]());
    return memory_.back().get();
}

BYTE* WriteArguments::NewArray(FormatElement kind, bool variant, std::size_t count) {
    if (!variant) {
        BYTE* const memory = NewMemory(count * FormatElementSize(kind));
        slots_.emplace_back(memory);
        return memory;
    }
    arrays_.emplace_back(
        SafeArrayCreateVector(FormatElementVartype(kind), 0, static_cast<ULONG>(count)));
    slots_.emplace_back(arrays_.back().Get());
    return static_cast<BYTE*>(arrays_.back().Get()->pvData);
}

void WriteArguments::AddNumbers(FormatElement kind, bool variant, std::size_t count,
                                Values& values) {
    BYTE* const array = NewArray(kind, variant, count);
    WriteValue& given = given_.back();
    for (std::size_t i = 0; i < count; ++i) {
        const double real = values.NextReal();
        const auto whole = Clamped<std::int64_t>(real);
        given.integers.push_back(whole);
        given.reals.push_back(kind == FormatElement::kSingle ? double{static_cast<float>(real)}
                                                             : real);
        switch (kind) {
            case FormatElement::kByte:
                Put(array, i, static_cast<std::uint8_t>(whole));
                break;
            case FormatElement::kShort:
                Put(array, i, static_cast<std::int16_t>(whole));
                break;
            case FormatElement::kInt64:
                Put(array, i, whole);
                break;
            case FormatElement::kSingle:
                Put(array, i, static_cast<float>(real));
                break;
            case FormatElement::kDouble:
                Put(array, i, real);
                break;
            default:
                Put(array, i, static_cast<std::int32_t>(whole));
        }
    }
    if (count > 0) {
        given.bytes.assign(reinterpret_cast<const char*>(array), count * FormatElementSize(kind));
    }
}

void WriteArguments::AddTexts(const FormatConversion& conversion, std::size_t count,
                              Values& values) {
    WriteValue& given = given_.back();
    for (std::size_t i = 0; i < count; ++i) {
        given.texts.emplace_back(values.NextText());
    }
    if (conversion.textKind == 'C' && !conversion.variantArray) {
        textArrays_.emplace_back(new std::string[count]);
        std::ranges::copy(given.texts, textArrays_.back().get());
        slots_.emplace_back(textArrays_.back().get());
        return;
    }
    BYTE* const array = NewArray(FormatElement::kText, conversion.variantArray, count);
    for (std::size_t i = 0; i < count; ++i) {
        if (conversion.textKind != 'B' && !conversion.variantArray) {
            texts_.push_back(given.texts[i]);
            Put(array, i, texts_.back().c_str());
            continue;
        }
        BstrPtr text(WidenBytes(given.texts[i]));
        Put(array, i, text.Get());
        if (conversion.variantArray) {
            (void)text.Detach();  // the array frees its texts
        } else {
            wideTexts_.push_back(std::move(text));
        }
    }
}

}  // namespace kestrion::fuzz
