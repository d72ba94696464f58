#include "io/format_spec.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/io/format_pattern_oracle.h"

namespace kestrion {
namespace {

FormatConversion Write(std::string_view piece) {
    FormatConversion conversion;
    EXPECT_EQ(ParseConversion(piece, FormatDirection::kWrite, conversion), S_OK) << piece;
    return conversion;
}

FormatConversion Read(std::string_view piece) {
    FormatConversion conversion;
    EXPECT_EQ(ParseConversion(piece, FormatDirection::kRead, conversion), S_OK) << piece;
    return conversion;
}

HRESULT WriteStatusOf(std::string_view piece) {
    FormatConversion conversion;
    return ParseConversion(piece, FormatDirection::kWrite, conversion);
}

TEST(FormatSpec, ANumberWithEveryElement) {
    const FormatConversion c = Write("%-+0 @H12.5(;)3$SId");
    EXPECT_TRUE(c.leftAlign);
    EXPECT_TRUE(c.plusSign);
    EXPECT_TRUE(c.blankSign);
    EXPECT_TRUE(c.zeroFill);
    EXPECT_EQ(c.numericForm, 'H');
    EXPECT_EQ(c.width.value, 12);
    EXPECT_EQ(c.precision.value, 5);
    EXPECT_EQ(c.separators, ";");
    EXPECT_EQ(c.count.value, 3);
    EXPECT_TRUE(c.variantArray);
    EXPECT_EQ(c.length, 'I');
    EXPECT_EQ(c.letter, 'd');
}

TEST(FormatSpec, ANumberWithNoElement) {
    const FormatConversion c = Write("%x");
    EXPECT_FALSE(c.leftAlign || c.plusSign || c.blankSign || c.zeroFill || c.variantArray);
    EXPECT_EQ(c.numericForm, '\0');
    EXPECT_EQ(c.width.source, NumberSource::kNone);
    EXPECT_EQ(c.width.value, -1);
    EXPECT_EQ(c.precision.value, -1);
    EXPECT_EQ(c.count.value, -1);
    EXPECT_EQ(c.separators, "");
    EXPECT_EQ(c.length, '\0');
    EXPECT_EQ(c.letter, 'x');
}

TEST(FormatSpec, TheModifierIsFoundByItsPlace) {
    EXPECT_EQ(Write("%@Bbd").length, 'b');
    EXPECT_EQ(Write("%@Bd").length, '\0');
    EXPECT_EQ(Write("%5 lg").length, 'l');
    EXPECT_EQ(Write("%5Zb").length, 'Z');
    EXPECT_EQ(Write("%$Sb").length, '\0');
    EXPECT_EQ(Write("%5!oly").length, '\0');
    EXPECT_EQ(Write("%5!olly").length, 'l');
    EXPECT_EQ(Write("%5!oby").length, '\0');
    EXPECT_EQ(Write("%{Bl}s").length, '\0');
}

TEST(FormatSpec, ByteOrder) {
    EXPECT_TRUE(Write("%5!oly").littleEndian);
    EXPECT_FALSE(Write("%5!oby").littleEndian);
    EXPECT_FALSE(Write("%5y").littleEndian);
}

TEST(FormatSpec, AZeroOfATextOrBlockIsItsWidthAndNoFlag) {
    EXPECT_EQ(Write("%0b").width.value, 0);
    EXPECT_EQ(Write("%0b").width.source, NumberSource::kSpec);
    EXPECT_EQ(Write("%05s").width.value, 5);
    EXPECT_EQ(Write("%0d").width.source, NumberSource::kNone);
}

TEST(FormatSpec, ATextWithEveryElement) {
    const FormatConversion c = Write("%-8.*(t)*$S$BQs");
    EXPECT_TRUE(c.leftAlign);
    EXPECT_EQ(c.width.value, 8);
    EXPECT_EQ(c.precision.source, NumberSource::kArguments);
    EXPECT_EQ(c.separators, "t");
    EXPECT_EQ(c.count.source, NumberSource::kArguments);
    EXPECT_TRUE(c.variantArray);
    EXPECT_EQ(c.textKind, 'B');
    EXPECT_EQ(c.quote, 'Q');
}

TEST(FormatSpec, EnumerationNamesLoseTheirBlanks) {
    EXPECT_EQ(Write("%{ Mode_1\t}s").enumName, "Mode_1");
    EXPECT_EQ(Write("% \t{A}5s").width.value, 5);
    EXPECT_EQ(Read("%{VARIANT_BOOL}[^;]").enumName, "VARIANT_BOOL");
    EXPECT_EQ(Read("%{VARIANT_BOOL}[^;]").set, "^;");
    EXPECT_EQ(Read("%{VARIANT_BOOL}[^;]").letter, '[');
}

TEST(FormatSpec, AReadConversionWithEveryElement) {
    const FormatConversion c = Read("% * @Q 12 (;:s) # $S hd");
    EXPECT_TRUE(c.suppress);
    EXPECT_EQ(c.numericForm, 'Q');
    EXPECT_EQ(c.width.value, 12);
    EXPECT_EQ(c.separators, ";:s");
    EXPECT_EQ(c.count.source, NumberSource::kArguments);
    EXPECT_TRUE(c.variantArray);
    EXPECT_EQ(c.length, 'h');
}

TEST(FormatSpec, ASetMayHoldCharactersThatMeanSomethingElsewhere) {
    EXPECT_EQ(Read("%5$C[#*,($S!ol{}%]").set, "#*,($S!ol{}%");
    EXPECT_FALSE(Read("%[*]").suppress);
    EXPECT_EQ(Read("%[#]").width.source, NumberSource::kNone);
}

TEST(FormatSpec, NumbersBeyond31BitsAreInvalid) {
    EXPECT_EQ(WriteStatusOf("%2147483647d"), S_OK);
    EXPECT_EQ(WriteStatusOf("%2147483648d"), E_INVALIDARG);
    EXPECT_EQ(WriteStatusOf("%.99999999999999999999999999d"), E_INVALIDARG);
    EXPECT_EQ(WriteStatusOf("%,2147483648d"), E_INVALIDARG);
}

TEST(FormatSpec, WriteArgumentsAreTakenFromLeftToRight) {
    const auto pack = PackArgs(4, 2, 3);
    ArgCursor args(pack);
    FormatConversion c = Write("%*.*,*d");
    ResolveWriteArguments(c, args);
    EXPECT_EQ(c.width.value, 4);
    EXPECT_EQ(c.precision.value, 2);
    EXPECT_EQ(c.count.value, 3);
}

TEST(FormatSpec, NegativeWriteArguments) {
    const auto pack = PackArgs(INT32_MIN, -2, -3);
    ArgCursor args(pack);
    FormatConversion c = Write("%*.*,*d");
    ResolveWriteArguments(c, args);
    EXPECT_TRUE(c.leftAlign);
    EXPECT_EQ(c.width.value, 2147483648);
    EXPECT_EQ(c.precision.value, -1);
    EXPECT_EQ(c.count.value, -3);
}

TEST(FormatSpec, ReadCountsComeThroughPointers) {
    std::int32_t width = 0;
    std::int32_t count = 7;
    const auto pack = PackArgs(&width, &count);
    ArgCursor args(pack);
    FormatConversion c = Read("%#,#d");
    EXPECT_EQ(ResolveReadArguments(c, args), S_OK);
    EXPECT_EQ(c.width.value, -1);  // a width of 0 is no limit
    EXPECT_EQ(c.count.value, 7);
    EXPECT_EQ(c.actualCount, &count);
}

TEST(FormatSpec, ANullCountPointerIsInvalid) {
    const auto pack = PackArgs(nullptr);
    ArgCursor args(pack);
    FormatConversion c = Read("%#s");
    EXPECT_EQ(ResolveReadArguments(c, args), E_INVALIDARG);
}

TEST(FormatSpec, SeparatorLetters) {
    EXPECT_EQ(SeparatorByte(','), ',');
    EXPECT_EQ(SeparatorByte(';'), ';');
    EXPECT_EQ(SeparatorByte(':'), ':');
    EXPECT_EQ(SeparatorByte('s'), ' ');
    EXPECT_EQ(SeparatorByte('t'), '\t');
    EXPECT_EQ(SeparatorByte('n'), '\n');
    EXPECT_EQ(SeparatorByte('r'), '\r');
}

TEST(FormatSpec, ElementSizesAndKinds) {
    EXPECT_EQ(FormatElementSize(FormatElement::kByte), 1U);
    EXPECT_EQ(FormatElementSize(FormatElement::kShort), 2U);
    EXPECT_EQ(FormatElementSize(FormatElement::kLong), 4U);
    EXPECT_EQ(FormatElementSize(FormatElement::kInt64), 8U);
    EXPECT_EQ(FormatElementSize(FormatElement::kSingle), 4U);
    EXPECT_EQ(FormatElementSize(FormatElement::kDouble), 8U);
    EXPECT_TRUE(FormatElementFits(FormatElement::kShort, VT_BOOL));
    EXPECT_TRUE(FormatElementFits(FormatElement::kLong, VT_UI4));
    EXPECT_FALSE(FormatElementFits(FormatElement::kLong, VT_R4));
    EXPECT_FALSE(FormatElementFits(FormatElement::kSingle, VT_I4));
    EXPECT_FALSE(FormatElementFits(FormatElement::kText, VT_UNKNOWN));
}

// Anything that the tokenizer lets through can be taken apart.
TEST(FormatSpec, EveryPieceCanBeTakenApart) {
    const FormatPattern number(
        R"(%\b*[-+0 ]*((@1)|(@H)\b*)?(\z|(0*\*)\b*)?(\.\z|\*\b*)?(,|(\([,;:strn]\))\b*(\z|\*\b*)?(\$S\b*)?)?[lhbI]?[dioux])");
    const FormatPattern text(
        R"(%\b*(\{\b*[a-zA-Z0-9_]+\b*\}\b*)?(\*\b*)?(\z|#\b*)?(\$B|C\b*)?(\[(\^)?[^\]]*\])|(T)|(t)|(s))");
    std::mt19937 random(5005);
    int readable = 0;
    for (int i = 0; i < 4000; ++i) {
        for (const FormatDirection direction : {FormatDirection::kWrite, FormatDirection::kRead}) {
            std::string piece;
            (direction == FormatDirection::kWrite ? number : text).Generate(random, piece);
            std::vector<FormatSpec> specs;
            if (Failed(Tokenize(piece, direction, specs)) || specs.size() != 1) {
                continue;
            }
            ++readable;
            FormatConversion c;
            ASSERT_EQ(ParseConversion(piece, direction, c), S_OK) << piece;
            ASSERT_EQ(c.letter, piece.back() == ']' ? '[' : piece.back()) << piece;
            const std::string_view front = std::string_view(piece).substr(0, piece.find('['));
            ASSERT_EQ(c.enumName.empty(), front.find('{') == std::string_view::npos) << piece;
            ASSERT_EQ(c.suppress, direction == FormatDirection::kRead &&
                                      front.find('*') != std::string_view::npos)
                << piece;
            ASSERT_EQ(c.numericForm != '\0', front.find('@') != std::string_view::npos) << piece;
            ASSERT_EQ(c.variantArray, front.find("$S") != std::string_view::npos) << piece;
        }
    }
    EXPECT_GT(readable, 6000);
}

}  // namespace
}  // namespace kestrion
