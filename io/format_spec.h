// One conversion of a format, taken apart, with what its arguments say filled in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "io/args.h"
#include "io/format_grammar.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// What one element of a conversion's argument is.
enum class FormatElement { kByte, kShort, kLong, kInt64, kSingle, kDouble, kText };

// Size of one element in memory, in bytes. Numbers have the same size on the wire of a block.
[[nodiscard]] std::size_t FormatElementSize(FormatElement kind);
// The kind of a new variant array that holds such elements.
[[nodiscard]] VARTYPE FormatElementVartype(FormatElement kind);
// Whether the elements of a variant array of `type` can be taken as `kind`. Signed, unsigned and
// Boolean kinds of one size are all the same here.
[[nodiscard]] bool FormatElementFits(FormatElement kind, VARTYPE type);

// Where a width, precision or count comes from.
enum class NumberSource { kNone, kSpec, kArguments };

struct SpecNumber {
    NumberSource source = NumberSource::kNone;
    std::int64_t value = -1;  // -1 without a value
};

// The elements of a conversion. Views are into the format text.
struct FormatConversion {
    std::string_view enumName;  // the name between braces; empty for none
    bool leftAlign = false;     // `-`
    bool plusSign = false;      // `+`
    bool blankSign = false;     // a blank among the flags
    bool zeroFill = false;      // `0` among the flags, or in front of the width
    bool suppress = false;      // `*` of a conversion for reading
    char numericForm = '\0';    // the letter behind `@`
    SpecNumber width;
    SpecNumber precision;
    std::string_view separators;  // the separator letters of an array; empty for none
    SpecNumber count;
    bool littleEndian = false;  // `!ol`
    bool variantArray = false;  // `$S`
    char textKind = '\0';       // `B` or `C` of `$B`, `$C`
    char quote = '\0';          // `q` or `Q`
    char length = '\0';         // h, l, b, I, L, z or Z
    std::string_view set;       // the text between the brackets of a set
    char letter = '\0';         // the conversion letter; `[` for a set
    // The argument of the last `#`, which gets the actual count when the conversion ends well.
    std::int32_t* actualCount = nullptr;
    // The spec has a `#`, so the width or count is the size of the caller's memory.
    bool countFromArguments = false;
};

// Takes a piece apart that Tokenize gave; literal runs have no conversion. E_INVALIDARG for a
// width, precision or count that doesn't fit into 31 bits.
[[nodiscard]] HRESULT ParseConversion(std::string_view piece, FormatDirection direction,
                                      FormatConversion& conversion);

// Takes the arguments of `*` in their order. A negative width is its size with the flag `-`, a
// negative precision is none; a negative count stays negative, that of a block too.
void ResolveWriteArguments(FormatConversion& conversion, ArgCursor& args);

// Takes the arguments of `#` in their order: pointers to 32-bit counts, null is E_INVALIDARG.
// A width below 1 becomes -1, which is no limit.
[[nodiscard]] HRESULT ResolveReadArguments(FormatConversion& conversion, ArgCursor& args);

// The byte that a separator letter stands for: s, t, n and r are blank, tab, line feed and carriage
// return, the others themselves.
[[nodiscard]] char SeparatorByte(char letter);

// The element kinds that a length letter chooses for integers, real numbers and blocks. A real
// number without a letter is single.
[[nodiscard]] FormatElement IntegerKind(const FormatConversion& conversion);
[[nodiscard]] FormatElement RealKind(const FormatConversion& conversion);
[[nodiscard]] FormatElement BlockKind(const FormatConversion& conversion);

// The enumeration whose argument has 16 bits.
inline constexpr std::string_view kBooleanEnum = "VARIANT_BOOL";

}  // namespace kestrion
