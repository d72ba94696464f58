#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kestrion/platform/bstr.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

constexpr HRESULT kMore = IoStatusMoreData;

// What one text conversion into a dynamic text does.
struct TextRead {
    HRESULT status;
    std::string text;
    std::string left;
    friend bool operator==(const TextRead&, const TextRead&) = default;
};

void PrintTo(const TextRead& read, std::ostream* out) {
    *out << std::hex << read.status << " \"" << read.text << "\" left \"" << read.left << '"';
}

TextRead Dynamic(std::string response, std::string_view format) {
    MemoryBuffer buffer(std::move(response));
    std::string text = "old";
    const HRESULT status = ReadFrom(buffer, format, &text);
    return {status, text, std::string(buffer.Unread())};
}

// Words
// ---------------------------------------------------------------------------------------------

TEST(FormatReadWord, ABlankEndsTheWordAndStaysUnread) {
    EXPECT_EQ(Dynamic("ABC DEF", "%$Cs"), (TextRead{kMore, "ABC", " DEF"}));
}

TEST(FormatReadWord, TheEndOfTheResponseEndsTheWord) {
    EXPECT_EQ(Dynamic("ABC", "%$Cs"), (TextRead{S_OK, "ABC", ""}));
}

TEST(FormatReadWord, WhiteSpaceInFrontIsSkipped) {
    EXPECT_EQ(Dynamic(" \t\nABC", "%$Cs"), (TextRead{S_OK, "ABC", ""}));
}

TEST(FormatReadWord, OnlyTheBlankEndsAWord) {
    EXPECT_EQ(Dynamic("A\tB\nC;D E", "%$Cs"), (TextRead{kMore, "A\tB\nC;D", " E"}));
}

TEST(FormatReadWord, TheWidthKeepsAPlaceForTheZero) {
    EXPECT_EQ(Dynamic("ABCDEF GH", "%3$Cs"), (TextRead{kMore, "AB", "GH"}));
    char memory[] = "zzzzz";
    EXPECT_EQ(ReadText("ABCDEF", "%3s", memory), S_OK);
    EXPECT_STREQ(memory, "AB");
    EXPECT_EQ(memory[3], 'z');
}

TEST(FormatReadWord, AWidthOfOneReadsNothing) {
    MemoryBuffer buffer("ABC");
    char memory[] = "zz";
    EXPECT_EQ(ReadFrom(buffer, "%1s", memory), kMore);
    EXPECT_EQ(buffer.Unread(), "ABC");
    EXPECT_STREQ(memory, "");
}

TEST(FormatReadWord, AWordThatIsTooLongIsDroppedWithTheWhiteSpaceBehindIt) {
    std::string first;
    std::string second;
    EXPECT_EQ(ReadText("ABCDEF  GH", "%3$Cs%$Cs", &first, &second), S_OK);
    EXPECT_EQ(first, "AB");
    EXPECT_EQ(second, "GH");
}

// Lines and the rest
// --------------------------------------------------------------------------------

TEST(FormatReadLine, TheLineFeedIsStoredWithTheLine) {
    EXPECT_EQ(Dynamic("A B\nC", "%$CT"), (TextRead{kMore, "A B\n", "C"}));
    EXPECT_EQ(Dynamic("A B\n", "%$CT"), (TextRead{S_OK, "A B\n", ""}));
    EXPECT_EQ(Dynamic("A B", "%$CT"), (TextRead{S_OK, "A B", ""}));
}

TEST(FormatReadLine, ALineThatIsTooLongIsDroppedUpToItsLineFeed) {
    EXPECT_EQ(Dynamic("ABCDEF\nG", "%4$CT"), (TextRead{kMore, "ABC", "G"}));
}

TEST(FormatReadLine, ALineThatFillsTheWidthLosesItsLineFeed) {
    EXPECT_EQ(Dynamic("ABC\nG", "%4$CT"), (TextRead{kMore, "ABC", "G"}));
    EXPECT_EQ(Dynamic("ABC\nG", "%5$CT"), (TextRead{kMore, "ABC\n", "G"}));
}

TEST(FormatReadRest, EverythingUpToTheEnd) {
    EXPECT_EQ(Dynamic(" A B\n\"C\" ", "%$Ct"), (TextRead{S_OK, " A B\n\"C\" ", ""}));
    EXPECT_EQ(Dynamic("ABCDEF", "%3$Ct"), (TextRead{S_OK, "AB", ""}));
}

// Targets
// -------------------------------------------------------------------------------------------

TEST(FormatReadText, AWideTextReplacesTheFormerOne) {
    BSTR text = MakeBstr(u"old");
    EXPECT_EQ(ReadText("a\xA0 b", "%$Bs", &text), kMore);
    const BstrPtr owner(View(text));
    EXPECT_EQ(View(text), u"a\u00A0");
    SysFreeString(text);
    text = nullptr;
    EXPECT_EQ(ReadText("x y", "%$Bt", &text), S_OK);
    EXPECT_EQ(View(text), u"x y");
    SysFreeString(text);
}

TEST(FormatReadText, AFailureLeavesNoWideText) {
    BSTR text = MakeBstr(u"old");
    MemoryBuffer buffer("ab");
    buffer.NeverEnds();
    EXPECT_EQ(ReadFrom(buffer, "%$Bs", &text), kFakeTimeout);
    EXPECT_EQ(text, nullptr);
}

TEST(FormatReadText, PlainMemoryGetsAZero) {
    char memory[] = "zzzzzzzz";
    EXPECT_EQ(ReadText("ABC;", "%8[^;]", memory), S_OK);
    EXPECT_STREQ(memory, "ABC");
}

TEST(FormatReadText, NullTargetsAreInvalid) {
    for (const char* format : {"%s", "%$Bs", "%$Cs", "%T", "%t", "%[a]", "%c"}) {
        MemoryBuffer buffer("a");
        EXPECT_EQ(ReadFrom(buffer, format, nullptr), E_INVALIDARG) << format;
        EXPECT_EQ(buffer.Unread(), "a");
    }
}

TEST(FormatReadText, ASuppressedTextTakesNoArgument) {
    std::string text;
    EXPECT_EQ(ReadText("AB CD", "%*s%$Cs", &text), S_OK);
    EXPECT_EQ(text, "CD");
    EXPECT_EQ(ReadText("AB;CD", "%*[^;];%$Cs", &text), S_OK);
    EXPECT_EQ(text, "CD");
    EXPECT_EQ(ReadText("ABCDE", "%*3c%$Cs", &text), S_OK);
    EXPECT_EQ(text, "DE");
}

// Counts from the arguments
// -------------------------------------------------------------------------

TEST(FormatReadText, TheSizeOfTheMemoryComesInAndTheLengthGoesOut) {
    char memory[] = "zzzzzzzz";
    std::int32_t size = 6;
    EXPECT_EQ(ReadText("ABC DEF", "%#s", &size, memory), kMore);
    EXPECT_STREQ(memory, "ABC");
    EXPECT_EQ(size, 3);
    size = 3;
    EXPECT_EQ(ReadText("ABCDEF", "%#s", &size, memory), S_OK);
    EXPECT_STREQ(memory, "AB");
    EXPECT_EQ(size, 2);
}

TEST(FormatReadText, TheLengthOfALineCountsItsLineFeed) {
    char memory[16];
    std::int32_t size = 16;
    EXPECT_EQ(ReadText("ABC\nD", "%#T", &size, memory), kMore);
    EXPECT_STREQ(memory, "ABC\n");
    EXPECT_EQ(size, 4);
}

TEST(FormatReadText, ASetWithASizeKeepsAPlaceForTheZero) {
    char memory[] = "zzzzz";
    std::int32_t size = 3;
    EXPECT_EQ(ReadText("ABCDE", "%#[^;]", &size, memory), kMore);
    EXPECT_STREQ(memory, "AB");
    EXPECT_EQ(memory[3], 'z');
    EXPECT_EQ(size, 2);
}

TEST(FormatReadText, ASizeWithoutRoomIsInvalid) {
    char memory[] = "z";
    for (const std::int32_t given : {0, -5}) {
        for (const char* format : {"%#s", "%#T", "%#t", "%#[^;]", "%#c"}) {
            std::int32_t size = given;
            MemoryBuffer buffer("ABC");
            EXPECT_EQ(ReadFrom(buffer, format, &size, memory), E_INVALIDARG) << format;
            EXPECT_EQ(size, given);
            EXPECT_EQ(buffer.Unread(), "ABC");
        }
    }
    EXPECT_STREQ(memory, "z");
}

TEST(FormatReadText, AGrowingTextNeedsNoSize) {
    std::int32_t size = 0;
    std::string text;
    EXPECT_EQ(ReadText("ABC", "%#$Cs", &size, &text), S_OK);
    EXPECT_EQ(text, "ABC");
    EXPECT_EQ(size, 3);
}

TEST(FormatReadText, AFailureWritesNoLength) {
    char memory[16];
    std::int32_t size = 16;
    MemoryBuffer buffer("AB");
    buffer.NeverEnds();
    EXPECT_EQ(ReadFrom(buffer, "%#s", &size, memory), kFakeTimeout);
    EXPECT_EQ(size, 16);
}

TEST(FormatReadText, ALargeWidthReservesNoMemoryAhead) {
    std::string text;
    EXPECT_EQ(ReadText("ABC", "%2147483647$Cs", &text), S_OK);
    EXPECT_EQ(text, "ABC");
    EXPECT_LE(text.capacity(), 8192U);
}

// Sets
// ----------------------------------------------------------------------------------------------

TEST(FormatReadSet, StopsBeforeTheDelimiter) {
    EXPECT_EQ(Dynamic("ABC;DEF", "%$C[^;]"), (TextRead{kMore, "ABC", ";DEF"}));
    EXPECT_EQ(Dynamic("ABC", "%$C[^;]"), (TextRead{S_OK, "ABC", ""}));
    EXPECT_EQ(Dynamic(";DEF", "%$C[^;]"), (TextRead{kMore, "", ";DEF"}));
}

TEST(FormatReadSet, ADelimiterThatEndsTheResponseIsGone) {
    EXPECT_EQ(Dynamic("ABC;", "%$C[^;]"), (TextRead{S_OK, "ABC", ""}));
}

TEST(FormatReadSet, WhiteSpaceInFrontBelongsToTheText) {
    EXPECT_EQ(Dynamic("  ABC;D", "%$C[^;]"), (TextRead{kMore, "  ABC", ";D"}));
}

TEST(FormatReadSet, TheWidthIsTheNumberOfBytes) {
    EXPECT_EQ(Dynamic("ABCDEF;G", "%3$C[^;]"), (TextRead{kMore, "ABC", "DEF;G"}));
}

TEST(FormatReadSet, MembersAndRanges) {
    EXPECT_EQ(Dynamic("12.5V;", "%$C[0-9.]"), (TextRead{kMore, "12.5", "V;"}));
    EXPECT_EQ(Dynamic("ab-c", "%$C[a-b]"), (TextRead{kMore, "ab", "-c"}));
    EXPECT_EQ(Dynamic("a-bc;", "%$C[ab-]"), (TextRead{kMore, "a-b", "c;"}));
    EXPECT_EQ(Dynamic("a-bc;", "%$C[-ab]"), (TextRead{kMore, "a-b", "c;"}));
    EXPECT_EQ(Dynamic("z-am;", "%$C[z-a]"), (TextRead{kMore, "z-a", "m;"}));  // no range backwards
    EXPECT_EQ(Dynamic("ABC1", "%$C[^0-9]"), (TextRead{S_OK, "ABC", ""}));
    EXPECT_EQ(Dynamic("ABC;'x", "%$C[^';']"), (TextRead{kMore, "ABC", ";'x"}));
    EXPECT_EQ(Dynamic("\xA0\xA1z;", "%$C[\xA0-\xFF]"), (TextRead{kMore, "\xA0\xA1", "z;"}));
}

TEST(FormatReadSet, ACaretAloneOrNothingHasNoMembers) {
    EXPECT_EQ(Dynamic("ABC", "%$C[^]"), (TextRead{kMore, "", "ABC"}));
    EXPECT_EQ(Dynamic("ABC", "%$C[]"), (TextRead{kMore, "", "ABC"}));
}

TEST(FormatReadSet, AZeroByteIsInNoSetButPassesASingleDelimiter) {
    EXPECT_EQ(Dynamic(std::string("A\0B;", 4), "%$C[^;,]"),
              (TextRead{kMore, "A", std::string("\0B;", 3)}));
    EXPECT_EQ(Dynamic(std::string("A\0B;C", 5), "%$C[^;]"),
              (TextRead{kMore, std::string("A\0B", 3), ";C"}));
}

// Characters
// ----------------------------------------------------------------------------------------

TEST(FormatReadCharacters, ReadsTheCountWithoutSkippingAndWithoutZero) {
    char memory[] = "zzzzz";
    EXPECT_EQ(ReadText(" A\nBC", "%3c", memory), kMore);
    EXPECT_STREQ(memory, " A\nzz");
}

TEST(FormatReadCharacters, OneWithoutAWidth) {
    char memory[] = "zz";
    EXPECT_EQ(ReadText("AB", "%c", memory), kMore);
    EXPECT_STREQ(memory, "Az");
    EXPECT_EQ(ReadText("B", "%0c", memory), S_OK);
    EXPECT_STREQ(memory, "Bz");
}

TEST(FormatReadCharacters, AShortResponseGivesItsCount) {
    char memory[] = "zzzzz";
    std::int32_t size = 5;
    EXPECT_EQ(ReadText("AB", "%#c", &size, memory), S_OK);
    EXPECT_STREQ(memory, "ABzzz");
    EXPECT_EQ(size, 2);
}

TEST(FormatReadCharacters, ASuppressedCountMayBeLarge) {
    EXPECT_EQ(ReadText(std::string(5000, 'x'), "%*2147483647c"), S_OK);
    MemoryBuffer buffer(std::string(5000, 'x') + "END");
    EXPECT_EQ(ReadFrom(buffer, "%*5000c"), kMore);
    EXPECT_EQ(buffer.Unread(), "END");
}

TEST(FormatReadCharacters, ATimeOutIsPassedOn) {
    MemoryBuffer buffer("AB");
    buffer.NeverEnds();
    char memory[8];
    EXPECT_EQ(ReadFrom(buffer, "%5c", memory), kFakeTimeout);
}

// Enumerations
// --------------------------------------------------------------------------------------

TEST(FormatReadEnum, AWordBecomesAValue) {
    std::int32_t mode = 7;
    EXPECT_EQ(ReadText(" HIRES", "%{Mode}s", &mode), S_OK);
    EXPECT_EQ(mode, 2);
    EXPECT_EQ(ReadText("SAMPLE x", "%{ Mode }s", &mode), kMore);
    EXPECT_EQ(mode, 0);
}

TEST(FormatReadEnum, ASetEndsTheToken) {
    std::int32_t mode = 7;
    double value = 0;
    EXPECT_EQ(ReadText("HIRES;1.5", "%{Mode}[^;];%lg", &mode, &value), S_OK);
    EXPECT_EQ(mode, 2);
    EXPECT_EQ(value, 1.5);
    EXPECT_EQ(ReadText("HIRES;1.5", "%{Mode}[^';'];%lg", &mode, &value), S_OK);
}

TEST(FormatReadEnum, ASetSkipsNoWhiteSpace) {
    std::int32_t mode = 7;
    EXPECT_EQ(ReadText(" HIRES;", "%{Mode}[^;]", &mode), kFakeUnknownToken);
    EXPECT_EQ(mode, 7);
}

TEST(FormatReadEnum, ATokenStopsAtTheLengthOfTheLongest) {
    MemoryBuffer buffer("PEAKDETECTION;1");
    std::int32_t mode = 7;
    EXPECT_EQ(ReadFrom(buffer, "%{Mode}[^;]", &mode), kMore);
    EXPECT_EQ(mode, 1);  // PEAKDETECT
    EXPECT_EQ(buffer.Unread(), "ION;1");
    MemoryBuffer word("PEAKDETECTION X");
    EXPECT_EQ(ReadFrom(word, "%{Mode}s", &mode), kMore);
    EXPECT_EQ(word.Unread(), "ION X");
}

TEST(FormatReadEnum, AnUnknownTokenIsTheFormattersFailure) {
    MemoryBuffer buffer("AVERAGE;1");
    std::int32_t mode = 7;
    EXPECT_EQ(ReadFrom(buffer, "%{Mode}[^;];%d", &mode), kFakeUnknownToken);
    EXPECT_EQ(mode, 7);
    EXPECT_EQ(buffer.Unread(), ";1");
}

TEST(FormatReadEnum, AnUnknownNameReadsNothingAndFails) {
    MemoryBuffer buffer("AVERAGE");
    std::int32_t mode = 7;
    EXPECT_EQ(ReadFrom(buffer, "%{Nobody}s", &mode), kFakeUnknownToken);
    EXPECT_EQ(buffer.Unread(), "AVERAGE");
}

TEST(FormatReadEnum, ABooleanStores16Bits) {
    std::int16_t flags[2] = {7, 7};
    EXPECT_EQ(ReadText("ON", "%{VARIANT_BOOL}s", flags), S_OK);
    EXPECT_EQ(flags[0], 1);
    EXPECT_EQ(flags[1], 7);
    EXPECT_EQ(ReadText("OFF;", "%{VARIANT_BOOL}[^;]", flags), kMore);
    EXPECT_EQ(flags[0], 0);
    EXPECT_EQ(flags[1], 7);
}

TEST(FormatReadEnum, DoubleQuotesAreTakenOff) {
    std::int32_t mode = 7;
    EXPECT_EQ(ReadText("\"PEAKDETECT\" x", "%{Mode}Qs", &mode), kMore);
    EXPECT_EQ(mode, 1);
    EXPECT_EQ(ReadText("HIRES", "%{Mode}Qs", &mode), S_OK);
    EXPECT_EQ(mode, 2);
}

TEST(FormatReadEnum, SingleQuotesStayPartOfTheToken) {
    FakeEnums enums;
    std::int32_t mode = 7;
    const auto pack = PackArgs(&mode);
    ArgCursor cursor(pack);
    MemoryBuffer buffer("'HIRES'");
    EXPECT_EQ(FormatRead(buffer, "%{Mode}qs", cursor, &enums), kFakeUnknownToken);
    EXPECT_EQ(enums.lastToken, "'HIRES'");
}

TEST(FormatReadEnum, QuotesMayNotMakeATokenLongerThanTheLongest) {
    FakeEnums enums;
    std::int32_t mode = 7;
    const auto pack = PackArgs(&mode);
    ArgCursor cursor(pack);
    MemoryBuffer buffer("PEAKDETECTION x");
    EXPECT_EQ(FormatRead(buffer, "%{Mode}Qs", cursor, &enums), kMore);
    EXPECT_EQ(enums.lastToken, "PEAKDETECT");
    EXPECT_EQ(buffer.Unread(), "N x");  // two bytes more were taken
}

TEST(FormatReadEnum, SuppressedTakesNoArgumentAndAsksForNoValue) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("WHAT;5", "%{Mode}*[^;];%d", &value), S_OK);
    EXPECT_EQ(value, 5);
}

TEST(FormatReadEnum, TheCountIsTheLengthOfTheToken) {
    std::int32_t size = 3;
    std::int32_t mode = 7;
    EXPECT_EQ(ReadText("HIRES", "%{Mode}#s", &size, &mode), S_OK);
    EXPECT_EQ(size, 5);
    EXPECT_EQ(mode, 2);
}

TEST(FormatReadEnum, NullFormatterAndNullTargetAreInvalid) {
    EXPECT_EQ(ReadText("HIRES", "%{Mode}s", nullptr), E_INVALIDARG);
    MemoryBuffer buffer("HIRES");
    std::int32_t mode = 7;
    const auto pack = PackArgs(&mode);
    ArgCursor cursor(pack);
    EXPECT_EQ(FormatRead(buffer, "%{Mode}s", cursor, nullptr), E_INVALIDARG);
    EXPECT_EQ(FormatRead(buffer, "%{Mode},1s", cursor, nullptr), E_INVALIDARG);
    EXPECT_EQ(buffer.Unread(), "HIRES");
}

TEST(FormatReadEnum, ATimeOutIsPassedOn) {
    MemoryBuffer buffer("HI");
    buffer.NeverEnds();
    std::int32_t mode = 7;
    EXPECT_EQ(ReadFrom(buffer, "%{Mode}s", &mode), kFakeTimeout);
    EXPECT_EQ(mode, 7);
}

}  // namespace
}  // namespace kestrion
