#include <algorithm>
#include <array>
#include <string>

#include "io/format_read_pieces.h"
#include "io/number_parse.h"
#include "kestrion/platform/bstr.h"
#include "platform/text.h"

namespace kestrion {
namespace {

constexpr std::size_t kUsualText = 100;      // what a text without a width begins with
constexpr std::size_t kLargestStart = 4096;  // a large width needn't be reserved before bytes come
constexpr std::uint32_t kDropChunk = 1000;

// The size of the caller's memory came through `#` and leaves no room.
bool HasNoRoom(const FormatConversion& conversion) {
    return conversion.countFromArguments && *conversion.actualCount < 1;
}

HRESULT ReadIntoWide(IIoBuffer& buffer, const TokenRules& rules, BSTR* text,
                     std::uint64_t& stored) {
    if (text == nullptr) {
        return E_INVALIDARG;
    }
    SysFreeString(*text);
    *text = nullptr;
    std::string bytes;
    TokenTarget target(bytes);
    const HRESULT status = ScanToken(buffer, rules, target);
    if (!Failed(status)) {
        *text = MakeBstr(WidenBytes(bytes));
    }
    stored = target.Stored();
    return status;
}

HRESULT ReadIntoDynamic(IIoBuffer& buffer, const TokenRules& rules, std::string* text,
                        std::uint64_t& stored) {
    if (text == nullptr) {
        return E_INVALIDARG;
    }
    text->clear();
    text->reserve(rules.width < 0
                      ? kUsualText
                      : std::min(static_cast<std::size_t>(rules.width) + 1, kLargestStart));
    TokenTarget target(*text);
    const HRESULT status = ScanToken(buffer, rules, target);
    stored = target.Stored();
    return status;
}

HRESULT ReadIntoMemory(IIoBuffer& buffer, const FormatConversion& conversion,
                       const TokenRules& rules, char* memory, std::uint64_t& stored) {
    if (memory == nullptr || HasNoRoom(conversion)) {
        return E_INVALIDARG;
    }
    TokenTarget target(memory);
    const HRESULT status = ScanToken(buffer, rules, target);
    stored = target.Stored();
    return status;
}

// The text conversions differ in their delimiters and flags only.
HRESULT ReadText(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args,
                 TokenRules rules) {
    rules.width = conversion.width.value;
    const bool keepsPlace =
        (rules.flags & kTokenFullWidth) == 0 || conversion.width.source == NumberSource::kArguments;
    if (rules.width > 0 && keepsPlace) {
        --rules.width;
    }
    std::uint64_t stored = 0;
    HRESULT status = S_OK;
    if (conversion.suppress) {
        TokenTarget nowhere;
        status = ScanToken(buffer, rules, nowhere);
        stored = nowhere.Stored();
    } else if (conversion.textKind == 'B') {
        status = ReadIntoWide(buffer, rules, args.Next().Pointer<BSTR>(), stored);
    } else if (conversion.textKind == 'C') {
        status = ReadIntoDynamic(buffer, rules, args.Next().Pointer<std::string>(), stored);
    } else {
        status = ReadIntoMemory(buffer, conversion, rules, args.Next().Pointer<char>(), stored);
    }
    return StoreActualCount(conversion, stored, status);
}

// Reads `count` bytes, as many as come, and drops them.
HRESULT DropBytes(IIoBuffer& buffer, std::uint64_t count, std::uint64_t& dropped) {
    std::array<BYTE, kDropChunk> chunk;
    HRESULT status = IoStatusMoreData;
    while (status == IoStatusMoreData && dropped < count) {
        std::uint32_t actual = 0;
        status = buffer.ReadBytes(
            chunk.data(),
            static_cast<std::uint32_t>(std::min<std::uint64_t>(count - dropped, kDropChunk)),
            &actual, false);
        dropped += actual;
        if (actual == 0) {
            break;
        }
    }
    return status;
}

}  // namespace

TokenFlags QuoteFlags(const FormatConversion& conversion) {
    switch (conversion.quote) {
        case 'Q':
            return kTokenQuotes | kTokenStripQuotes;
        case 'q':
            return kTokenQuotes;
        default:
            return 0;
    }
}

ByteSet DelimitersOfSet(std::string_view set) {
    const bool others = set.starts_with('^');
    set.remove_prefix(others ? 1 : 0);
    if (set.empty()) {
        return ByteSet().Others();  // C has no empty set: nothing is in it, nor in its opposite
    }
    if (others && set.size() == 1) {
        return ByteSet(set);
    }
    ByteSet members;
    for (std::size_t i = 0; i < set.size(); ++i) {
        const BYTE from = static_cast<BYTE>(set[i]);
        const bool range =
            i + 2 < set.size() && set[i + 1] == '-' && from <= static_cast<BYTE>(set[i + 2]);
        members.AddRange(from, range ? static_cast<BYTE>(set[i + 2]) : from);
        i += range ? 2 : 0;
    }
    ByteSet delimiters = others ? members : members.Others();
    delimiters.Add(0);  // a zero is the end of a text, never a member
    return delimiters;
}

HRESULT ReadLine(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return ReadText(buffer, conversion, args,
                    {.delimiters = ByteSet("\n"),
                     .flags = kTokenStoreDelimiter | kTokenTerminate | kTokenDropExcess});
}

HRESULT ReadRest(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return ReadText(buffer, conversion, args,
                    {.delimiters = {}, .flags = kTokenTerminate | kTokenDropExcess});
}

HRESULT ReadWord(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return ReadText(buffer, conversion, args,
                    {.delimiters = ByteSet(" "),
                     .flags = kTokenTerminate | kTokenDropExcess | kTokenSkipSpace});
}

HRESULT ReadSet(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return ReadText(buffer, conversion, args,
                    {.delimiters = DelimitersOfSet(conversion.set),
                     .flags = kTokenFullWidth | kTokenTerminate});
}

HRESULT ReadCharacters(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    const std::int64_t count = std::max<std::int64_t>(conversion.width.value, 1);
    if (conversion.suppress) {
        std::uint64_t dropped = 0;
        const HRESULT status = DropBytes(buffer, static_cast<std::uint64_t>(count), dropped);
        return StoreActualCount(conversion, dropped, status);
    }
    BYTE* target = args.Next().Pointer<BYTE>();
    if (target == nullptr || HasNoRoom(conversion)) {
        return E_INVALIDARG;
    }
    std::uint32_t actual = 0;
    const HRESULT status =
        buffer.ReadBytes(target, static_cast<std::uint32_t>(count), &actual, false);
    return StoreActualCount(conversion, actual, status);
}

HRESULT ReadEnum(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args,
                 IEnumFormatter* formatter) {
    if (formatter == nullptr) {
        return E_INVALIDARG;
    }
    const std::int64_t longest =
        std::max(formatter->GetMaxTokenLength(conversion.enumName), std::int32_t{0});
    TokenRules rules;
    if (conversion.letter == '[') {
        rules = {longest, DelimitersOfSet(conversion.set), kTokenTerminate};
    } else {
        rules = {longest, ByteSet(" "), kTokenTerminate | kTokenSkipSpace | QuoteFlags(conversion)};
        rules.width += conversion.quote == '\0' ? 0 : 2;
    }
    std::string token;
    TokenTarget target(token, static_cast<std::uint64_t>(longest));
    const HRESULT status = ScanToken(buffer, rules, target);
    if (Failed(status) || conversion.suppress) {
        return StoreActualCount(conversion, target.Stored(), status);
    }
    void* place = args.Next().Pointer<void>();
    if (place == nullptr) {
        return E_INVALIDARG;
    }
    std::int32_t value = 0;
    if (const HRESULT known = formatter->TokenToEnum(conversion.enumName, token, value);
        Failed(known)) {
        return known;
    }
    if (conversion.enumName == kBooleanEnum) {
        *static_cast<std::int16_t*>(place) = static_cast<std::int16_t>(value);
    } else {
        *static_cast<std::int32_t*>(place) = value;
    }
    return StoreActualCount(conversion, target.Stored(), status);
}

}  // namespace kestrion
