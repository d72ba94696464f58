#include "io/format_writer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "kestrion/platform/bstr.h"
#include "tests/io/comma_locale.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

// The walk
// ------------------------------------------------------------------------------------------

TEST(FormatWriter, AnEmptyFormatWritesNothing) {
    EXPECT_EQ(Written(""), "");
}

TEST(FormatWriter, LiteralTextGoesOutByteByByte) {
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "CURVE?"), S_OK);
    EXPECT_EQ(buffer.Written(), "CURVE?");
    EXPECT_EQ(buffer.Writes(), 6);
    EXPECT_TRUE(buffer.Flushed().empty());
}

TEST(FormatWriter, TwoPercentSignsWriteOne) {
    EXPECT_EQ(Written("DUTY 50%%;"), "DUTY 50%;");
    EXPECT_EQ(Written("%%%%"), "%%");
}

TEST(FormatWriter, ABadFormatWritesNothingAtAll) {
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "50%", 1), E_UNEXPECTED);
    EXPECT_EQ(WriteTo(buffer, "A %d B %k", 1), E_UNEXPECTED);
    EXPECT_EQ(buffer.Writes(), 0);
}

TEST(FormatWriter, ALineFeedInALiteralFlushesThereAndThen) {
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "*CLS\n*RST\nX"), S_OK);
    EXPECT_EQ(buffer.Flushed(), (std::vector<std::string>{"*CLS\n", "*CLS\n*RST\n"}));
    EXPECT_EQ(buffer.Written(), "*CLS\n*RST\nX");
}

TEST(FormatWriter, ALineFeedInAnArgumentDoesNotFlush) {
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "%s", "A\nB"), S_OK);
    EXPECT_TRUE(buffer.Flushed().empty());
}

TEST(FormatWriter, NoBreakSpaceIsWrittenAsItsByte) {
    EXPECT_EQ(Written("LABEL\xA0%d", 3),
              "LABEL\xA0"
              "3");
}

TEST(FormatWriter, ArgumentsAreTakenInOrder) {
    EXPECT_EQ(Written("CH%d:SCALE %g;%s", 2, 0.5, "ON"), "CH2:SCALE 0.5;ON");
}

TEST(FormatWriter, TheFirstFailureEndsTheWalkAndKeepsWhatWasWritten) {
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "A%sB%d", static_cast<const char*>(nullptr), 1), E_INVALIDARG);
    EXPECT_EQ(buffer.Written(), "A");
}

TEST(FormatWriter, AFailureOfTheBufferIsPassedOnAtEveryWrite) {
    for (int write = 1; write <= 5; ++write) {
        MemoryBuffer buffer;
        buffer.FailWrite(write);
        EXPECT_EQ(WriteTo(buffer, "A%dB%sC", 1, "x"), kFakeWriteFailure) << write;
        EXPECT_EQ(buffer.Written(),
                  std::string("A1BxC").substr(0, static_cast<std::size_t>(write - 1)));
    }
}

TEST(FormatWriter, ABufferThatTakesLessThanAPieceIsUnexpected) {
    for (const char* format : {"%5d", "%.3f", "%@H8d", "%5c"}) {
        MemoryBuffer buffer;
        buffer.TakeAtMost(2);
        EXPECT_EQ(WriteTo(buffer, format, 1), E_UNEXPECTED) << format;
    }
    MemoryBuffer buffer;
    buffer.TakeAtMost(2);
    EXPECT_EQ(WriteTo(buffer, "%s", "ABC"), E_UNEXPECTED);
}

TEST(FormatWriter, AnAbsentArgumentIsZero) {
    EXPECT_EQ(Written("%d"), "0");
    EXPECT_EQ(WriteStatus("%s"), E_INVALIDARG);
}

TEST(FormatWriter, ACommaLocaleChangesNothing) {
    const CommaLocale comma;
    EXPECT_EQ(Written("%0.15lg %@3f", 0.5, 0.5), "0.5 5.000000E-01");
}

// Skipping arrays
// -----------------------------------------------------------------------------------

TEST(FormatWriter, SkippedArraysTakeNoArgument) {
    MemoryBuffer buffer;
    FakeEnums enums;
    const auto pack = PackArgs(1, "x");
    ArgCursor cursor(pack);
    EXPECT_EQ(
        FormatWrite(buffer, "%d|%,3d|%,2f|%2b|%2B|%2y|%,2s|%{Mode},2s|%s", cursor, &enums, true),
        S_OK);
    EXPECT_EQ(buffer.Written(), "1||||||||x");
    EXPECT_FALSE(cursor.Exhausted());
}

// Integers
// ------------------------------------------------------------------------------------------

TEST(FormatWriter, IntegerSizesByTheirLetters) {
    const std::int64_t big = 0x1234567887654321;
    EXPECT_EQ(Written("%d", big), "-2023406815");   // 0x87654321
    EXPECT_EQ(Written("%ld", big), "-2023406815");  // as without a letter
    EXPECT_EQ(Written("%hd", big), "17185");        // 0x4321
    EXPECT_EQ(Written("%bd", big), "33");           // 0x21
    EXPECT_EQ(Written("%Id", big), "1311768467139281697");
    EXPECT_EQ(Written("%u", -1), "4294967295");
    EXPECT_EQ(Written("%hu", -1), "65535");
    EXPECT_EQ(Written("%Iu", std::int64_t{-1}), "18446744073709551615");
}

TEST(FormatWriter, AnEightBitIntegerHasNoSign) {
    EXPECT_EQ(Written("%bd", -1), "255");
    EXPECT_EQ(Written("%+bd", 200), "+200");
}

TEST(FormatWriter, IntegerLettersAndFlags) {
    EXPECT_EQ(Written("%x %o %u %i", 255, 8, 7, -7), "ff 10 7 -7");
    EXPECT_EQ(Written("%5d|%-5d|%05d|%+d|% d", 42, 42, 42, 42, 42), "   42|42   |00042|+42| 42");
    EXPECT_EQ(Written("%8.5d", -42), "  -00042");
}

TEST(FormatWriter, WidthFromTheArgumentsComesFirst) {
    EXPECT_EQ(Written("%*d", 5, 42), "   42");
    EXPECT_EQ(Written("%0*d", 5, 42), "00042");
    EXPECT_EQ(Written("%*.*d|", 6, 3, 42), "   042|");
    EXPECT_EQ(Written("%*d|", -5, 42), "42   |");
    EXPECT_EQ(Written("%.*d", -1, 42), "42");  // a negative precision is none
}

TEST(FormatWriter, BlanksBetweenTheElementsAreIgnored) {
    EXPECT_EQ(Written("%5 .3\td", 42), "  042");
    EXPECT_EQ(Written("%0\td", 42), "42");
    EXPECT_EQ(Written("%\t{ Mode }\t-\t10\ts|", 2), "HIRES     |");
}

TEST(FormatWriter, NumbersInAFormatThatDoNotFitAreInvalid) {
    EXPECT_EQ(WriteStatus("%99999999999d", 1), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%.2147483648f", 1.0), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%,99999999999999999999999d", 1), E_INVALIDARG);
}

TEST(FormatWriter, ALargeWidthIsSentInParts) {
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "%100000d", 7), S_OK);
    EXPECT_EQ(buffer.Written(), std::string(99999, ' ') + "7");
    EXPECT_EQ(buffer.Writes(), 196);  // 512 bytes each
}

// Real numbers
// --------------------------------------------------------------------------------------

TEST(FormatWriter, RealNumbersAreDoublesWhateverTheLetter) {
    EXPECT_EQ(Written("%g %lg %Lg", 0.1, 0.2, 0.3), "0.1 0.2 0.3");
    EXPECT_EQ(Written("%0.15lg", 1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(Written("%e|%E|%f|%G", 1.5, 1.5, 1.5, 1e-10),
              "1.500000e+00|1.500000E+00|1.500000|1E-10");
    EXPECT_EQ(Written("%12.7g|", 1.25), "        1.25|");
}

// Numeric forms
// -------------------------------------------------------------------------------------

TEST(FormatWriter, DecimalFormOfARealRoundsAndCuts) {
    EXPECT_EQ(Written("%@1f", 2.5), "3");
    EXPECT_EQ(Written("%@1f", -2.6), "-2");
    EXPECT_EQ(Written("%@1f", -2.5), "-2");
}

TEST(FormatWriter, DecimalFormOfAnInteger) {
    EXPECT_EQ(Written("%@1d", 3), "3");
    EXPECT_EQ(Written("%@1d", -3), "-2");  // the half is added below zero too
    EXPECT_EQ(Written("%@2d|%@3d", 5, 5), "5.000000|5.000000E+00");
}

TEST(FormatWriter, HexadecimalFormKeepsTheWidth) {
    EXPECT_EQ(Written("%@H5d", 255), " #HFF");
    EXPECT_EQ(Written("%-@H5d", 255), "#HFF ");
    EXPECT_EQ(Written("%0@H6d", 255), "#H00FF");
    EXPECT_EQ(Written("%@H06d", 255), "#H00FF");
    EXPECT_EQ(Written("%@H00*d", 6, 255), "#H00FF");
    EXPECT_EQ(Written("%@Hd", 255), "#HFF");
    EXPECT_EQ(Written("%@Hbd", 255), "#HFF");
    EXPECT_EQ(Written("%@Hu", -1), "#HFFFFFFFF");
}

TEST(FormatWriter, AWidthInFrontOfTheFormIsNoConversion) {
    EXPECT_EQ(WriteStatus("%5@Hd", 255), E_UNEXPECTED);
}

TEST(FormatWriter, OctalAndBinaryForms) {
    EXPECT_EQ(Written("%@Qd", 8), "#Q10");
    EXPECT_EQ(Written("%@Bd", 5), "#B101");
    EXPECT_EQ(Written("%0@B8.3d", 5), "   #B101");
    EXPECT_EQ(Written("%0@B8d", 5), "#B000101");
    EXPECT_EQ(Written("%@Bf", 4.6), "#B101");
}

TEST(FormatWriter, A64BitIntegerGoesThroughADouble) {
    EXPECT_EQ(Written("%@1Id", std::int64_t{9007199254740993}), "9007199254740992");
    EXPECT_EQ(WriteStatus("%@1Id", std::numeric_limits<std::int64_t>::max()), E_INVALIDARG);
}

// Characters
// ----------------------------------------------------------------------------------------

TEST(FormatWriter, CharactersTakeTheLowEightBits) {
    EXPECT_EQ(Written("%c%c", 'A', 0x142), "AB");
    EXPECT_EQ(Written("%3c|%-3c|", 'A', 'B'), "  A|B  |");
    EXPECT_EQ(Written("%.0c", 'A'), "A");
}

TEST(FormatWriter, AZeroCharacterWritesNothing) {
    EXPECT_EQ(Written("%c", 0), "");
    EXPECT_EQ(Written("%-3c", 0), "");
    EXPECT_EQ(Written("%3c", 0), "  ");  // the padding stands in front of the zero
}

// Texts
// ---------------------------------------------------------------------------------------------

TEST(FormatWriter, TextKinds) {
    const BstrPtr wide(u"wide\u00A0\u2126");
    const std::string dynamic = "dynamic";
    EXPECT_EQ(Written("%s|%$Bs|%$Cs", "narrow", wide.Get(), &dynamic), "narrow|wide\xA0?|dynamic");
    EXPECT_EQ(Written("%8.3s|%-6s|%.*s", "abcdef", "ab", 2, "xyz"), "     abc|ab    |xy");
}

TEST(FormatWriter, NullTextsAreInvalid) {
    EXPECT_EQ(WriteStatus("%s", nullptr), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%$Bs", nullptr), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%$Cs", nullptr), E_INVALIDARG);
}

TEST(FormatWriter, AZeroEndsAnyText) {
    const std::string dynamic("ab\0cd", 5);
    EXPECT_EQ(Written("%$Cs|%5$Cs", &dynamic, &dynamic), "ab|   ab");
}

TEST(FormatWriter, QuotesStandAroundTheText) {
    EXPECT_EQ(Written("%qs", "abc"), "'abc'");
    EXPECT_EQ(Written("%Qs", "abc"), "\"abc\"");
    const BstrPtr wide(u"Label");
    EXPECT_EQ(Written("LAB %$BQs", wide.Get()), "LAB \"Label\"");
}

TEST(FormatWriter, WidthAndPrecisionCountTheQuotes) {
    EXPECT_EQ(Written("%10Qs", "abc"), "     \"abc\"");
    EXPECT_EQ(Written("%-7qs|", "abc"), "'abc'  |");
    EXPECT_EQ(Written("%.3Qs", "abc"), "\"ab");
}

TEST(FormatWriter, QuotesInsideATextAreNotDoubled) {
    EXPECT_EQ(Written("%Qs", "a\"b"), "\"a\"b\"");
}

// Enumerations
// --------------------------------------------------------------------------------------

TEST(FormatWriter, EnumerationsWriteTheirToken) {
    EXPECT_EQ(Written("ACQUIRE:MODE %{Mode}s", 1), "ACQUIRE:MODE PEAKDETECT");
    EXPECT_EQ(Written("%{Mode}-8s|%{Mode}.3s|%{Mode}Qs", 2, 0, 2), "HIRES   |SAM|\"HIRES\"");
}

TEST(FormatWriter, ABooleanEnumerationTakes16Bits) {
    MemoryBuffer buffer;
    FakeEnums enums;
    const auto pack = PackArgs(0x7FFF0000, 0x1234FFFF);
    ArgCursor cursor(pack);
    EXPECT_EQ(FormatWrite(buffer, "%{VARIANT_BOOL}s %{ VARIANT_BOOL }s", cursor, &enums), S_OK);
    EXPECT_EQ(buffer.Written(), "OFF ON");
    EXPECT_EQ(enums.lastValue, -1);
}

TEST(FormatWriter, OtherEnumerationsTake32Bits) {
    EXPECT_EQ(WriteStatus("%{Mode}s", 0x10001), kFakeUnknownValue);
    EXPECT_EQ(Written("%{Mode}s", std::int64_t{0x100000001}), "PEAKDETECT");
}

TEST(FormatWriter, AnUnknownValueFailsWithoutWriting) {
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "%{Mode}s", 9), kFakeUnknownValue);
    EXPECT_EQ(buffer.Writes(), 0);
}

TEST(FormatWriter, AnEnumerationWithoutAFormatterIsInvalid) {
    MemoryBuffer buffer;
    const auto pack = PackArgs(1);
    ArgCursor cursor(pack);
    EXPECT_EQ(FormatWrite(buffer, "%{Mode}s", cursor, nullptr), E_INVALIDARG);
    EXPECT_EQ(FormatWrite(buffer, "%{Mode},1s", cursor, nullptr), E_INVALIDARG);
}

}  // namespace
}  // namespace kestrion
