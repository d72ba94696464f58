#include <array>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "io/format_array.h"
#include "io/format_read_pieces.h"
#include "kestrion/platform/bstr.h"
#include "platform/text.h"

namespace kestrion {
namespace {

ByteSet SeparatorsOf(const FormatConversion& conversion) {
    ByteSet separators;
    for (const char letter : conversion.separators) {
        separators.Add(static_cast<BYTE>(SeparatorByte(letter)));
    }
    return separators;
}

// Elements that were read, on their way to the argument: straight into a plain array, or gathered
// for a variant array that takes the place of the caller's when all is well.
class ElementTarget {
  public:
    ElementTarget(const FormatConversion& conversion, FormatElement kind)
        : conversion_(conversion), size_(FormatElementSize(kind)), kind_(kind) {}

    [[nodiscard]] HRESULT Take(ArgCursor& args) {
        const std::int64_t count = conversion_.count.value;
        if (conversion_.suppress) {
            limit_ = count < 0 ? kNoLimit : static_cast<std::uint64_t>(count);
            return S_OK;
        }
        if (conversion_.variantArray) {
            limit_ = count < 1 ? kNoLimit : static_cast<std::uint64_t>(count);
            array_ = args.Next().Pointer<SAFEARRAY*>();
            return CheckFormatArrayTarget(array_, kind_);
        }
        if (count < 0) {
            return E_UNEXPECTED;
        }
        limit_ = static_cast<std::uint64_t>(count);
        plain_ = args.Next().Pointer<BYTE>();
        return plain_ == nullptr ? E_INVALIDARG : S_OK;
    }
    [[nodiscard]] bool Full() const { return count_ == limit_; }
    [[nodiscard]] std::uint64_t Limit() const { return limit_; }
    void Add(const void* element) {
        const BYTE* bytes = static_cast<const BYTE*>(element);
        if (plain_ != nullptr) {
            std::memcpy(plain_ + count_ * size_, bytes, size_);
        } else if (array_ != nullptr) {
            gathered_.insert(gathered_.end(), bytes, bytes + size_);
        }
        ++count_;
    }
    [[nodiscard]] HRESULT Finish(HRESULT status, VARTYPE type) {
        if (Failed(status)) {
            return status;
        }
        if (array_ != nullptr) {
            SafeArrayPtr built(SafeArrayCreateVector(type, 0, static_cast<ULONG>(count_)));
            if (!built) {
                return E_OUTOFMEMORY;
            }
            if (!gathered_.empty()) {
                std::memcpy(built.Get()->pvData, gathered_.data(), gathered_.size());
            }
            if (const HRESULT replaced = ReplaceArray(array_, built); Failed(replaced)) {
                return replaced;
            }
        }
        return StoreActualCount(conversion_, count_, status);
    }

  private:
    static constexpr std::uint64_t kNoLimit = std::numeric_limits<std::int32_t>::max();

    const FormatConversion& conversion_;
    std::size_t size_;
    FormatElement kind_;
    std::uint64_t limit_ = 0;
    std::uint64_t count_ = 0;
    BYTE* plain_ = nullptr;
    SAFEARRAY** array_ = nullptr;
    std::vector<BYTE> gathered_;
};

using ScanElement = HRESULT (*)(IIoBuffer&, const FormatConversion&, void*);

HRESULT ReadNumberArray(IIoBuffer& buffer, const FormatConversion& conversion, FormatElement kind,
                        ArgCursor& args, ScanElement scan) {
    ElementTarget target(conversion, kind);
    HRESULT status = target.Take(args);
    if (Failed(status)) {
        return status;
    }
    const ByteSet separators = SeparatorsOf(conversion);
    status = IoStatusMoreData;
    for (bool another = true; another && status == IoStatusMoreData && !target.Full();) {
        std::uint64_t element = 0;  // room for any kind
        status = scan(buffer, conversion, &element);
        if (Failed(status)) {
            return status;
        }
        target.Add(&element);
        if (status == IoStatusMoreData) {
            status = ScanSeparator(buffer, separators, another);
        }
    }
    return target.Finish(status, FormatElementVartype(kind));
}

// Takes one pair of quotes of the same kind off the ends.
std::string_view Unquote(std::string_view text) {
    const bool quoted = text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
                        text.front() == text.back();
    return quoted ? text.substr(1, text.size() - 2) : text;
}

// Scans the tokens of a list and hands each to `store(token)`, which returns a status.
template <typename Store>
HRESULT ScanTokens(IIoBuffer& buffer, const FormatConversion& conversion, std::int64_t width,
                   std::uint64_t limit, Store store) {
    TokenRules rules;
    rules.width = width;
    rules.delimiters = SeparatorsOf(conversion);
    rules.flags = kTokenTerminate | kTokenTakeDelimiter | QuoteFlags(conversion) |
                  (rules.delimiters.Has(' ') ? kTokenSkipSpace : 0);
    HRESULT status = IoStatusMoreData;
    std::string text;
    for (std::uint64_t i = 0; i < limit && status == IoStatusMoreData; ++i) {
        text.clear();
        TokenTarget target(text);
        status = ScanToken(buffer, rules, target);
        if (Failed(status)) {
            return status;
        }
        std::string_view token = text;
        if ((rules.flags & kTokenSkipSpace) != 0) {
            token = Trim(token);
        }
        if ((rules.flags & kTokenStripQuotes) != 0) {
            token = Unquote(token);
        }
        if (const HRESULT stored = store(token); Failed(stored)) {
            return stored;
        }
    }
    return status;
}

// Puts a token into the place that it has in a plain array.
void StorePlainText(void* array, char textKind, std::uint64_t i, std::string_view token) {
    switch (textKind) {
        case 'B': {
            BSTR& place = static_cast<BSTR*>(array)[i];
            const BSTR text = MakeBstr(WidenBytes(token));
            SysFreeString(place);
            place = text;
            return;
        }
        case 'C':
            static_cast<std::string*>(array)[i] = token;
            return;
        default: {
            char* place = static_cast<char**>(array)[i];
            token.copy(place, token.size());
            place[token.size()] = '\0';
        }
    }
}

// The places of plain narrow texts have to exist before anything is read.
bool AllPlacesExist(void* array, char textKind, std::int64_t count) {
    if (textKind != '\0') {
        return true;
    }
    char** places = static_cast<char**>(array);
    for (std::int64_t i = 0; i < count; ++i) {
        if (places[i] == nullptr) {
            return false;
        }
    }
    return true;
}

HRESULT ReadTextsIntoVariant(IIoBuffer& buffer, const FormatConversion& conversion,
                             std::int64_t width, SAFEARRAY** array) {
    if (const HRESULT status = CheckFormatArrayTarget(array, FormatElement::kText);
        Failed(status)) {
        return status;
    }
    const std::uint64_t limit = conversion.count.value < 1
                                    ? std::numeric_limits<std::int32_t>::max()
                                    : static_cast<std::uint64_t>(conversion.count.value);
    std::vector<BstrPtr> texts;
    const HRESULT status =
        ScanTokens(buffer, conversion, width, limit, [&texts](std::string_view token) {
            texts.emplace_back(WidenBytes(token));
            return S_OK;
        });
    if (Failed(status)) {
        return status;
    }
    SafeArrayPtr built(SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(texts.size())));
    if (!built) {
        return E_OUTOFMEMORY;
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
        built.Elements<BSTR>()[i] = texts[i].Detach();
    }
    if (const HRESULT replaced = ReplaceArray(array, built); Failed(replaced)) {
        return replaced;
    }
    return StoreActualCount(conversion, texts.size(), status);
}

}  // namespace

HRESULT ReadIntegerArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return ReadNumberArray(buffer, conversion, IntegerKind(conversion), args, ScanIntegerElement);
}

HRESULT ReadRealArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    return ReadNumberArray(buffer, conversion, RealKind(conversion), args, ScanRealElement);
}

HRESULT ReadStringArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args) {
    // Plain memory keeps a place of its width for the closing zero; texts that grow need none.
    const bool plainMemory =
        conversion.textKind == '\0' && !conversion.variantArray && !conversion.suppress;
    const std::int64_t width =
        conversion.width.value - (plainMemory && conversion.width.value > 0 ? 1 : 0);
    const std::int64_t count = conversion.count.value;
    if (conversion.variantArray && !conversion.suppress) {
        return ReadTextsIntoVariant(buffer, conversion, width, args.Next().Pointer<SAFEARRAY*>());
    }
    void* array = nullptr;
    if (!conversion.suppress) {
        if (count < 0) {
            return E_UNEXPECTED;
        }
        array = args.Next().Pointer<void>();
        if (array == nullptr || !AllPlacesExist(array, conversion.textKind, count)) {
            return E_INVALIDARG;
        }
    }
    std::uint64_t stored = 0;
    const std::uint64_t limit =
        count < 0 ? std::numeric_limits<std::int32_t>::max() : static_cast<std::uint64_t>(count);
    const HRESULT status =
        ScanTokens(buffer, conversion, width, limit, [&](std::string_view token) {
            if (array != nullptr) {
                StorePlainText(array, conversion.textKind, stored, token);
            }
            ++stored;
            return S_OK;
        });
    return StoreActualCount(conversion, stored, status);
}

HRESULT ReadEnumArray(IIoBuffer& buffer, const FormatConversion& conversion, ArgCursor& args,
                      IEnumFormatter* formatter) {
    if (formatter == nullptr) {
        return E_INVALIDARG;
    }
    const bool boolean = conversion.enumName == kBooleanEnum;
    ElementTarget target(conversion, boolean ? FormatElement::kShort : FormatElement::kLong);
    HRESULT status = target.Take(args);
    if (Failed(status)) {
        return status;
    }
    status = ScanTokens(buffer, conversion, conversion.width.value, target.Limit(),
                        [&](std::string_view token) {
                            std::int32_t value = 0;
                            HRESULT known = S_OK;
                            if (!conversion.suppress) {
                                known = formatter->TokenToEnum(conversion.enumName, token, value);
                            }
                            const std::int16_t truth = static_cast<std::int16_t>(value);
                            if (!Failed(known)) {
                                target.Add(boolean ? static_cast<const void*>(&truth) : &value);
                            }
                            return known;
                        });
    return target.Finish(status, boolean ? VT_BOOL : VT_I4);
}

}  // namespace kestrion
