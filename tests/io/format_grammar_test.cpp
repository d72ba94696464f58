#include "io/format_grammar.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "tests/io/format_patterns.h"

namespace kestrion {

// How a failed comparison shows a piece.
void PrintTo(const FormatSpec& spec, std::ostream* out) {
    *out << "row " << spec.row << " at " << spec.start << " length " << spec.length;
}

namespace {

using Pieces = std::vector<FormatSpec>;

// Nothing where the format is refused.
std::optional<Pieces> Cut(std::string_view format, FormatDirection direction) {
    Pieces pieces;
    const HRESULT status = Tokenize(format, direction, pieces);
    if (status == E_UNEXPECTED) {
        return std::nullopt;
    }
    EXPECT_EQ(status, S_OK);
    return pieces;
}

std::optional<Pieces> CutWrite(std::string_view format) {
    return Cut(format, FormatDirection::kWrite);
}

std::optional<Pieces> CutRead(std::string_view format) {
    return Cut(format, FormatDirection::kRead);
}

Pieces One(WriteRow row, std::uint32_t length) {
    return {{static_cast<std::int32_t>(row), 0, length}};
}

Pieces One(ReadRow row, std::uint32_t length) {
    return {{static_cast<std::int32_t>(row), 0, length}};
}

TEST(FormatGrammar, AnEmptyFormatHasNoPieces) {
    EXPECT_EQ(CutWrite(""), Pieces{});
    EXPECT_EQ(CutRead(""), Pieces{});
}

TEST(FormatGrammar, LiteralRunsAndPercentPairsAreSeparatePieces) {
    EXPECT_EQ(CutWrite("DUTY 50%% ON"), (Pieces{{0, 0, 7}, {0, 7, 2}, {0, 9, 3}}));
    EXPECT_EQ(CutRead("%%%%"), (Pieces{{0, 0, 2}, {0, 2, 2}}));
}

TEST(FormatGrammar, LonePercentFailsTheWholeFormat) {
    EXPECT_EQ(CutWrite("50%"), std::nullopt);
    EXPECT_EQ(CutRead("50%"), std::nullopt);
    EXPECT_EQ(CutWrite("CH%d 50%"), std::nullopt);
}

TEST(FormatGrammar, UnknownConversionFailsTheWholeFormat) {
    EXPECT_EQ(CutWrite("%d %k"), std::nullopt);
    EXPECT_EQ(CutRead("%d %p"), std::nullopt);
}

TEST(FormatGrammar, CommandLineIsCutInOrder) {
    EXPECT_EQ(
        CutWrite("CH%d:SCALE %g;%{VARIANT_BOOL}s\n"),
        (Pieces{
            {0, 0, 2}, {1, 2, 2}, {0, 4, 7}, {3, 11, 2}, {0, 13, 1}, {11, 14, 16}, {0, 30, 1}}));
}

TEST(FormatGrammar, EachWriteRowIsFound) {
    EXPECT_EQ(CutWrite("text"), One(WriteRow::kLiteral, 4));
    EXPECT_EQ(CutWrite("%-+0 @H05.3lx"), One(WriteRow::kInteger, 13));
    EXPECT_EQ(CutWrite("%5.2(;)3$Shu"), One(WriteRow::kIntegerArray, 12));
    EXPECT_EQ(CutWrite("%0.15lg"), One(WriteRow::kReal, 7));
    EXPECT_EQ(CutWrite("%,*Le"), One(WriteRow::kRealArray, 5));
    EXPECT_EQ(CutWrite("%10$SZb"), One(WriteRow::kDefiniteBlock, 7));
    EXPECT_EQ(CutWrite("%*hB"), One(WriteRow::kIndefiniteBlock, 4));
    EXPECT_EQ(CutWrite("%3 !ol $SIy"), One(WriteRow::kRawArray, 11));
    EXPECT_EQ(CutWrite("%-3.1c"), One(WriteRow::kCharacter, 6));
    EXPECT_EQ(CutWrite("%-10.5$BQs"), One(WriteRow::kString, 10));
    EXPECT_EQ(CutWrite("%(t)4$S$Bqs"), One(WriteRow::kStringArray, 11));
    EXPECT_EQ(CutWrite("%{ Name_1 } -8.2Qs"), One(WriteRow::kEnum, 18));
    EXPECT_EQ(CutWrite("%{Name},2$Ss"), One(WriteRow::kEnumArray, 12));
}

TEST(FormatGrammar, EachReadRowIsFound) {
    EXPECT_EQ(CutRead("text"), One(ReadRow::kLiteral, 4));
    EXPECT_EQ(CutRead("%*@Q5hx"), One(ReadRow::kInteger, 7));
    EXPECT_EQ(CutRead("%#,#Id"), One(ReadRow::kIntegerArray, 6));
    EXPECT_EQ(CutRead("%@3 12lf"), One(ReadRow::kReal, 8));
    EXPECT_EQ(CutRead("%,$Slg"), One(ReadRow::kRealArray, 6));
    EXPECT_EQ(CutRead("%#zb"), One(ReadRow::kBlock, 4));
    EXPECT_EQ(CutRead("%4!oby"), One(ReadRow::kRawArray, 6));
    EXPECT_EQ(CutRead("%*12c"), One(ReadRow::kCharacters, 5));
    EXPECT_EQ(CutRead("%80T"), One(ReadRow::kLine, 4));
    EXPECT_EQ(CutRead("%$Ct"), One(ReadRow::kRest, 4));
    EXPECT_EQ(CutRead("%#$Cs"), One(ReadRow::kWord, 5));
    EXPECT_EQ(CutRead("%$B[^;]"), One(ReadRow::kSet, 7));
    EXPECT_EQ(CutRead("%(,s)3$Qs"), std::nullopt);
    EXPECT_EQ(CutRead("%(,s)3$BQs"), One(ReadRow::kStringArray, 10));
    EXPECT_EQ(CutRead("%{VARIANT_BOOL}s"), One(ReadRow::kEnum, 16));
    EXPECT_EQ(CutRead("%{ChannelCoupling}[^;]"), One(ReadRow::kEnumSet, 22));
    EXPECT_EQ(CutRead("%{Name}(;:)4qs"), One(ReadRow::kEnumArray, 14));
}

TEST(FormatGrammar, WritingHasNoLineRestOrSetConversion) {
    EXPECT_EQ(CutWrite("%T"), std::nullopt);
    EXPECT_EQ(CutWrite("%t"), std::nullopt);
    EXPECT_EQ(CutWrite("%[^;]"), std::nullopt);
    EXPECT_EQ(CutWrite("%#s"), std::nullopt);
}

TEST(FormatGrammar, ReadingHasNoIndefiniteBlockConversion) {
    EXPECT_EQ(CutRead("%3B"), std::nullopt);
    EXPECT_EQ(CutWrite("%3B"), One(WriteRow::kIndefiniteBlock, 3));
}

TEST(FormatGrammar, AWriteBracketHoldsOneSeparatorAndAReadBracketSeveral) {
    EXPECT_EQ(CutRead("%(;:)3d"), One(ReadRow::kIntegerArray, 7));
    EXPECT_EQ(CutWrite("%(;:)3d"), std::nullopt);
    EXPECT_EQ(CutWrite("%(x)3d"), std::nullopt);
    EXPECT_EQ(CutRead("%()3d"), std::nullopt);
}

TEST(FormatGrammar, ByteModifierOfAnIntegerWinsOverTheBlock) {
    EXPECT_EQ(CutWrite("%bd"), One(WriteRow::kInteger, 3));
    EXPECT_EQ(CutWrite("%bus"), (Pieces{{1, 0, 3}, {0, 3, 1}}));
    EXPECT_EQ(CutWrite("%5bZ"), (Pieces{{5, 0, 3}, {0, 3, 1}}));
}

TEST(FormatGrammar, ZerosGivenBackByTheFlagsBecomeTheWidth) {
    EXPECT_EQ(CutWrite("%0\td"), One(WriteRow::kInteger, 4));
    EXPECT_EQ(CutWrite("%-00 \t .5d"), One(WriteRow::kInteger, 10));
    EXPECT_EQ(CutWrite("%+\td"), std::nullopt);
    EXPECT_EQ(CutWrite("%0\t@1d"), std::nullopt);
}

TEST(FormatGrammar, ZerosInFrontOfAnAsteriskAreZeroFill) {
    EXPECT_EQ(CutWrite("%0*d"), One(WriteRow::kInteger, 4));
    EXPECT_EQ(CutWrite("%@H00*d"), One(WriteRow::kInteger, 7));
    EXPECT_EQ(CutWrite("%@H10*d"), std::nullopt);
    EXPECT_EQ(CutWrite("%5*d"), std::nullopt);
}

TEST(FormatGrammar, APrecisionNeedsDigitsOrAnAsterisk) {
    EXPECT_EQ(CutWrite("%5.d"), std::nullopt);
    EXPECT_EQ(CutWrite("%5.*d"), One(WriteRow::kInteger, 5));
    EXPECT_EQ(CutRead("%5.2d"), std::nullopt);
}

TEST(FormatGrammar, TheNumericFormStandsInFrontOfTheWidth) {
    EXPECT_EQ(CutWrite("%@H5d"), One(WriteRow::kInteger, 5));
    EXPECT_EQ(CutWrite("%5@Hd"), std::nullopt);
}

TEST(FormatGrammar, ASetEndsAtItsFirstClosingBracket) {
    EXPECT_EQ(CutRead("%[]]"), (Pieces{{11, 0, 3}, {0, 3, 1}}));
    EXPECT_EQ(CutRead("%[^]"), One(ReadRow::kSet, 4));
    EXPECT_EQ(CutRead("%[^;"), std::nullopt);
}

TEST(FormatGrammar, NoBreakSpaceIsAnOrdinaryByte) {
    EXPECT_EQ(CutWrite("SCALE\xA0%g"), (Pieces{{0, 0, 6}, {3, 6, 2}}));
    EXPECT_EQ(CutWrite("%\xA0g"), std::nullopt);
}

TEST(FormatGrammar, LongFormatsGrowBeyondTheInlinePieces) {
    std::string format;
    for (int i = 0; i < 100; ++i) {
        format += "%d;";
    }
    const std::optional<Pieces> pieces = CutWrite(format);
    ASSERT_TRUE(pieces.has_value());
    ASSERT_EQ(pieces->size(), 200U);
    EXPECT_EQ(pieces->at(31), (FormatSpec{0, 47, 1}));
    EXPECT_EQ(pieces->at(32), (FormatSpec{1, 48, 2}));
    EXPECT_EQ(pieces->at(199), (FormatSpec{0, 299, 1}));
}

// The published patterns, matched slowly, against the scanner
// ---------------------------------------

TEST(FormatPatternOracle, AlternationBindsTighterThanASequence) {
    const FormatPattern pattern(R"(a\$B|Cd*)");
    EXPECT_EQ(pattern.Match("a$Cdd", 0), 5U);
    EXPECT_EQ(pattern.Match("a$B", 0), 3U);
    EXPECT_EQ(pattern.Match("Cdd", 0), std::string_view::npos);
    EXPECT_EQ(FormatPattern(R"(,|(\([;]\))x)").Match("(;)x", 0), 4U);
    EXPECT_EQ(FormatPattern(R"(,|(\([;]\))x)").Match(",", 0), std::string_view::npos);
    EXPECT_EQ(FormatPattern(R"(\.\z|\*)").Match(".*", 0), 2U);
    EXPECT_EQ(FormatPattern(R"(\.\z|\*)").Match("*", 0), std::string_view::npos);
}

TEST(FormatPatternOracle, AbbreviationsMatchWhatTheySay) {
    EXPECT_EQ(FormatPattern(R"(\a\b\c\d\h\w\z)").Match("7\tx9Fabc12", 0), 10U);
    EXPECT_EQ(FormatPattern(R"(\q)").Match("'a\"b'", 0), 5U);
    EXPECT_EQ(FormatPattern(R"([^\]]*\])").Match("ab]]", 0), 3U);
    EXPECT_EQ(FormatPattern(R"([-+0 ]+)").Match("0 -+1", 0), 4U);
}

constexpr std::string_view kAlphabet =
    " \t--+00**##@@123HQBB..,,;:(())strn$$SSBCqQhlbIzZLdiouxfeEgGcyTs[]^{}_N!olb%%";

void Mutate(std::mt19937& random, std::string& text) {
    for (std::size_t edits = random() % 3; edits > 0 && !text.empty(); --edits) {
        const std::size_t at = random() % text.size();
        const char c = kAlphabet[random() % kAlphabet.size()];
        switch (random() % 3) {
            case 0:
                text.erase(at, 1);
                break;
            case 1:
                text.insert(at, 1, c);
                break;
            default:
                text[at] = c;
        }
    }
}

std::string MakeFormat(std::mt19937& random, const FormatOracle& oracle) {
    std::string format;
    for (std::size_t pieces = 1 + random() % 3; pieces > 0; --pieces) {
        if (random() % 4 == 0) {
            format += '%';
            for (std::size_t i = random() % 6; i > 0; --i) {
                format += kAlphabet[random() % kAlphabet.size()];
            }
        } else {
            oracle.Rows()[random() % oracle.Rows().size()].Generate(random, format);
        }
    }
    Mutate(random, format);
    return format;
}

void CompareWithOracle(FormatDirection direction, std::span<const std::string_view> patterns,
                       std::uint32_t seed) {
    constexpr int kFormats = 20000;
    const FormatOracle oracle(patterns);
    std::mt19937 random(seed);
    std::vector<int> hits(patterns.size(), 0);
    int refused = 0;
    for (int i = 0; i < kFormats; ++i) {
        const std::string format = MakeFormat(random, oracle);
        const std::optional<Pieces> expected = oracle.Cut(format);
        ASSERT_EQ(Cut(format, direction), expected) << "format: " << format;
        refused += expected ? 0 : 1;
        for (const FormatSpec& piece : expected.value_or(Pieces{})) {
            ++hits[static_cast<std::size_t>(piece.row)];
        }
    }
    // The comparison has to have seen each row and many refusals to mean anything.
    for (std::size_t row = 0; row < hits.size(); ++row) {
        EXPECT_GT(hits[row], 400) << "row " << row;
    }
    EXPECT_GT(refused, kFormats / 10);
    EXPECT_LT(refused, kFormats * 9 / 10);
}

TEST(FormatGrammar, WriteRowsAgreeWithThePublishedPatterns) {
    CompareWithOracle(FormatDirection::kWrite, kWritePatterns, 20240117);
}

TEST(FormatGrammar, ReadRowsAgreeWithThePublishedPatterns) {
    CompareWithOracle(FormatDirection::kRead, kReadPatterns, 20240118);
}

// Flags, numeric form, width and precision can share characters; all short orders of them are
// tried.
TEST(FormatGrammar, AllShortOrdersOfFlagsAndWidthsAgreeWithThePublishedPatterns) {
    const FormatOracle oracle(kWritePatterns);
    constexpr std::string_view kCharacters = "0 \t-5*.";
    std::size_t count = 0;
    for (std::size_t length = 0; length <= 4; ++length) {
        std::size_t combinations = 1;
        for (std::size_t i = 0; i < length; ++i) {
            combinations *= kCharacters.size();
        }
        for (std::size_t number = 0; number < combinations; ++number, ++count) {
            std::string format = "%";
            for (std::size_t i = 0, rest = number; i < length; ++i, rest /= kCharacters.size()) {
                format += kCharacters[rest % kCharacters.size()];
            }
            for (const char* end : {"d", ",2s", "@H0*g"}) {
                ASSERT_EQ(CutWrite(format + end), oracle.Cut(format + end)) << format << end;
            }
        }
    }
    EXPECT_EQ(count, 2801U);  // 1 + 7 + 49 + 343 + 2401
}

}  // namespace
}  // namespace kestrion
