#include "tests/fuzz/read_targets.h"

#include <algorithm>
#include <cstring>

#include "platform/text.h"
#include "tests/fuzz/property.h"

namespace kestrion::fuzz {
namespace {

// The most bytes of one plain target.
constexpr std::int64_t kMostMemory = 16384;
constexpr BYTE kUntouched = 0xCD;

// The width of one text or of a block is the size of its target. That of a number, of an
// enumeration or of each element of an array is not, and may get back more.
bool WidthIsRoom(ReadRow row) {
    switch (row) {
        case ReadRow::kCharacters:
        case ReadRow::kLine:
        case ReadRow::kRest:
        case ReadRow::kWord:
        case ReadRow::kSet:
        case ReadRow::kBlock:
        case ReadRow::kRawArray:
            return true;
        default:
            return false;
    }
}

std::string Describe(std::string_view kind, std::string_view bytes) {
    return std::string(kind) + std::to_string(bytes.size()) + ":" + std::string(bytes) + "\n";
}

std::string Describe(BSTR text) {
    return text == nullptr ? "null\n" : Describe("wide", NarrowToBytes(View(text)));
}

std::string Describe(SAFEARRAY* array) {
    if (array == nullptr) {
        return "null\n";
    }
    VARTYPE type = VT_EMPTY;
    (void)SafeArrayGetVartype(array, &type);
    const std::size_t count = array->rgsabound[0].cElements;
    std::string text = "array of " + std::to_string(type) + "\n";
    if (type != VT_BSTR) {
        return text + Describe("", {static_cast<const char*>(array->pvData),
                                    count * std::size_t{array->cbElements}});
    }
    for (std::size_t i = 0; i < count; ++i) {
        text += Describe(static_cast<BSTR*>(array->pvData)[i]);
    }
    return text;
}

}  // namespace

ReadTargets::~ReadTargets() {
    std::ranges::for_each(wideTexts_, SysFreeString);
    for (const std::vector<BSTR>& array : wideArrays_) {
        std::ranges::for_each(array, SysFreeString);
    }
    for (SAFEARRAY* array : arrays_) {
        Require(SafeArrayDestroy(array) == S_OK, "no array is left locked");
    }
}

bool ReadTargets::Add(ReadRow row, FormatConversion conversion) {
    if (conversion.width.source == NumberSource::kArguments) {
        AddCount(conversion.width, WidthIsRoom(row));
    }
    if (conversion.count.source == NumberSource::kArguments) {
        AddCount(conversion.count, true);
    }
    if (conversion.suppress) {
        return true;
    }
    const std::int64_t width = conversion.width.value;
    if (width > kMostMemory) {
        return false;
    }
    const std::size_t textSize =
        width > 0 ? static_cast<std::size_t>(width)
                  : (conversion.width.source == NumberSource::kArguments ? 0 : longest_ + 1);
    switch (row) {
        case ReadRow::kInteger:
            AddMemory(FormatElementSize(IntegerKind(conversion)));
            return true;
        case ReadRow::kReal:
            AddMemory(FormatElementSize(RealKind(conversion)));
            return true;
        case ReadRow::kEnum:
        case ReadRow::kEnumSet:
            AddMemory(conversion.enumName == kBooleanEnum ? 2 : 4);
            return true;
        case ReadRow::kCharacters:
            AddMemory(static_cast<std::size_t>(std::max<std::int64_t>(width, 1)));
            return true;
        case ReadRow::kLine:
        case ReadRow::kRest:
        case ReadRow::kWord:
            AddText(conversion, textSize);
            return true;
        case ReadRow::kSet:
            // A set's width keeps no place for the closing zero, but a `#` does.
            AddText(conversion,
                    textSize + (width > 0 && conversion.width.source == NumberSource::kSpec));
            return true;
        case ReadRow::kIntegerArray:
            return AddElements(conversion, IntegerKind(conversion), conversion.count.value);
        case ReadRow::kRealArray:
            return AddElements(conversion, RealKind(conversion), conversion.count.value);
        case ReadRow::kEnumArray:
            return AddElements(
                conversion,
                conversion.enumName == kBooleanEnum ? FormatElement::kShort : FormatElement::kLong,
                conversion.count.value);
        case ReadRow::kBlock:
        case ReadRow::kRawArray:
            return AddElements(conversion, BlockKind(conversion), width);
        case ReadRow::kStringArray:
            break;
        case ReadRow::kLiteral:
            return false;
    }
    if (conversion.variantArray) {
        AddVariant(FormatElement::kText);
        return true;
    }
    const std::int64_t count = std::max<std::int64_t>(conversion.count.value, 0);
    if (count * static_cast<std::int64_t>(longest_ + 64) > 64 * kMostMemory) {
        return false;
    }
    AddTexts(conversion, static_cast<std::size_t>(count));
    return true;
}

void ReadTargets::AddCount(SpecNumber& number, bool isRoom) {
    const std::int32_t value = counts_[nextCount_];
    nextCount_ = (nextCount_ + 1) % counts_.size();
    given_.push_back({value, isRoom ? value : 0});
    number.value = value;
    slots_.emplace_back(&given_.back().value);
}

BYTE* ReadTargets::NewMemory(std::size_t size) {
    memory_.push_back({size, std::unique_ptr<BYTE[]>(new BYTE[size])});
    std::fill_n(memory_.back().bytes.get(), size, kUntouched);
    return memory_.back().bytes.get();
}

void ReadTargets::AddMemory(std::size_t size) {
    slots_.emplace_back(NewMemory(size));
}

void ReadTargets::AddText(const FormatConversion& conversion, std::size_t size) {
    switch (conversion.textKind) {
        case 'B':
            wideTexts_.push_back(size % 2 == 0 ? nullptr : MakeBstr(u"former"));
            slots_.emplace_back(&wideTexts_.back());
            return;
        case 'C':
            texts_.emplace_back("former");
            slots_.emplace_back(&texts_.back());
            return;
        default:
            AddMemory(size);
    }
}

void ReadTargets::AddTexts(const FormatConversion& conversion, std::size_t count) {
    switch (conversion.textKind) {
        case 'B':
            wideArrays_.emplace_back(count + 1);  // an empty one has no address
            slots_.emplace_back(wideArrays_.back().data());
            return;
        case 'C':
            textArrays_.emplace_back(count + 1);
            slots_.emplace_back(textArrays_.back().data());
            return;
        default:
            break;
    }
    const std::int64_t width = conversion.width.value;
    std::unique_ptr<BYTE[]> pointers(new BYTE[count * sizeof(char*)]);
    for (std::size_t i = 0; i < count; ++i) {
        BYTE* const place = NewMemory(width > 0 ? static_cast<std::size_t>(width) : longest_ + 1);
        std::memcpy(pointers.get() + i * sizeof(char*), &place, sizeof(char*));
    }
    slots_.emplace_back(pointers.get());
    places_.push_back(std::move(pointers));
}

void ReadTargets::AddVariant(FormatElement kind) {
    arrays_.push_back(longest_ % 2 == 0 ? nullptr
                                        : SafeArrayCreateVector(FormatElementVartype(kind), 0, 2));
    slots_.emplace_back(&arrays_.back());
}

bool ReadTargets::AddElements(const FormatConversion& conversion, FormatElement kind,
                              std::int64_t count) {
    if (conversion.variantArray) {
        AddVariant(kind);
        return true;
    }
    count = std::max<std::int64_t>(count, 0);
    if (count > kMostMemory) {
        return false;
    }
    AddMemory(static_cast<std::size_t>(count) * FormatElementSize(kind));
    return true;
}

bool ReadTargets::CountsFit() const {
    return std::ranges::all_of(given_, [](const Count& count) {
        return count.value == count.room || count.room < 1 ||
               (count.value >= 0 && count.value <= count.room);
    });
}

std::string ReadTargets::Describe() const {
    std::string text;
    for (const Count& count : given_) {
        text += "count " + std::to_string(count.value) + "\n";
    }
    for (const Memory& memory : memory_) {
        text += fuzz::Describe("memory",
                               {reinterpret_cast<const char*>(memory.bytes.get()), memory.size});
    }
    for (const std::string& one : texts_) {
        text += fuzz::Describe("text", one);
    }
    for (const std::vector<std::string>& array : textArrays_) {
        for (const std::string& one : array) {
            text += fuzz::Describe("text", one);
        }
    }
    for (BSTR one : wideTexts_) {
        text += fuzz::Describe(one);
    }
    for (const std::vector<BSTR>& array : wideArrays_) {
        for (BSTR one : array) {
            text += fuzz::Describe(one);
        }
    }
    for (SAFEARRAY* array : arrays_) {
        text += fuzz::Describe(array);
    }
    return text;
}

}  // namespace kestrion::fuzz
