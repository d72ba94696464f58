#include "io/format_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "tests/io/comma_locale.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

constexpr HRESULT kMore = IoStatusMoreData;

// The walk
// ------------------------------------------------------------------------------------------

TEST(FormatReader, AnEmptyFormatReadsNothing) {
    MemoryBuffer buffer("1");
    EXPECT_EQ(ReadFrom(buffer, ""), S_OK);
    EXPECT_EQ(buffer.Unread(), "1");
}

TEST(FormatReader, ABadFormatReadsNothing) {
    MemoryBuffer buffer("1");
    std::int32_t value = 7;
    EXPECT_EQ(ReadFrom(buffer, "%d%", &value), E_UNEXPECTED);
    EXPECT_EQ(buffer.Unread(), "1");
    EXPECT_EQ(value, 7);
}

TEST(FormatReader, ErrorQueueEntryKeepsItsQuotes) {
    std::int32_t code = 7;
    std::string text = "old";
    EXPECT_EQ(ReadText("0,\"No error\"", "%d,%$Ct", &code, &text), S_OK);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(text, "\"No error\"");
}

TEST(FormatReader, AShortResponseLeavesTheOtherArgumentsAlone) {
    double first = 0;
    double second = 7;
    std::string third = "old";
    EXPECT_EQ(ReadText("1.5", "%lg;%lg;%$Cs", &first, &second, &third), S_OK);
    EXPECT_EQ(first, 1.5);
    EXPECT_EQ(second, 7);
    EXPECT_EQ(third, "old");
}

TEST(FormatReader, ARestOfTheResponseIsMoreData) {
    MemoryBuffer buffer("1,2");
    std::int32_t value = 0;
    EXPECT_EQ(ReadFrom(buffer, "%d", &value), kMore);
    EXPECT_EQ(buffer.Unread(), ",2");
}

TEST(FormatReader, ATimeOutEndsTheWalk) {
    MemoryBuffer buffer("1;");
    buffer.NeverEnds();
    std::int32_t first = 0;
    std::int32_t second = 7;
    EXPECT_EQ(ReadFrom(buffer, "%d;%d", &first, &second), kFakeTimeout);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 7);
}

TEST(FormatReader, ACommaLocaleChangesNothing) {
    const CommaLocale comma;
    double value = 0;
    EXPECT_EQ(ReadText("1.5;2", "%lg", &value), kMore);
    EXPECT_EQ(value, 1.5);
}

// Literals
// ------------------------------------------------------------------------------------------

TEST(FormatReader, LiteralTextHasToMatch) {
    MemoryBuffer buffer("ABCD");
    EXPECT_EQ(ReadFrom(buffer, "ABC"), kMore);
    EXPECT_EQ(buffer.Unread(), "D");
}

TEST(FormatReader, ALiteralThatDoesNotMatchIsUnexpectedAndTakesTheByte) {
    MemoryBuffer buffer("ABCD");
    EXPECT_EQ(ReadFrom(buffer, "AX"), E_UNEXPECTED);
    EXPECT_EQ(buffer.Unread(), "CD");
}

TEST(FormatReader, TwoPercentSignsExpectOne) {
    std::int32_t value = 0;
    MemoryBuffer buffer("50% x");
    EXPECT_EQ(ReadFrom(buffer, "%d%%", &value), kMore);
    EXPECT_EQ(buffer.Unread(), " x");
    EXPECT_EQ(ReadText("%%x", "%%x"), E_UNEXPECTED);
}

TEST(FormatReader, TheEndOfTheResponseEndsALiteral) {
    EXPECT_EQ(ReadText("AB", "ABCDEF"), S_OK);
}

TEST(FormatReader, ALiteralBlankMatchesTheEmptyText) {
    std::int32_t first = 0;
    std::int32_t second = 0;
    EXPECT_EQ(ReadText("1,2;3", "%d ,%d", &first, &second), kMore);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(ReadText("A;", " A"), kMore);
}

TEST(FormatReader, ALiteralBlankMatchesAnyWhiteSpace) {
    double values[4] = {};
    EXPECT_EQ(ReadText("1 \t, 2,3\n,\r\n4;5", "%lg , %lg , %lg , %lg", &values[0], &values[1],
                       &values[2], &values[3]),
              kMore);
    EXPECT_EQ(values[0], 1);
    EXPECT_EQ(values[1], 2);
    EXPECT_EQ(values[2], 3);
    EXPECT_EQ(values[3], 4);
}

TEST(FormatReader, SeveralBlanksInALiteralAreOne) {
    EXPECT_EQ(ReadText("A B;", "A \t\n B"), kMore);
    EXPECT_EQ(ReadText("AB;", "A  B"), kMore);
}

TEST(FormatReader, ABlankAtTheEndOfALiteralTakesOneWhiteByteOrNone) {
    MemoryBuffer white("A  B");
    EXPECT_EQ(ReadFrom(white, "A "), kMore);
    EXPECT_EQ(white.Unread(), " B");
    MemoryBuffer other("AB");
    EXPECT_EQ(ReadFrom(other, "A "), S_OK);  // B was the last byte, and is back
    EXPECT_EQ(other.Unread(), "B");
}

TEST(FormatReader, AMismatchBehindABlankIsUnexpected) {
    EXPECT_EQ(ReadText("A  C;", "A B"), E_UNEXPECTED);
    EXPECT_EQ(ReadText("AC;", "A B"), E_UNEXPECTED);
    EXPECT_EQ(ReadText("A  ", "A B"), E_UNEXPECTED);
}

TEST(FormatReader, ATimeOutInALiteralIsPassedOn) {
    for (const char* start : {"", "A", "A ", "A  "}) {
        MemoryBuffer buffer(start);
        buffer.NeverEnds();
        EXPECT_EQ(ReadFrom(buffer, "A B"), kFakeTimeout);
    }
}

TEST(FormatReader, NoBreakSpaceIsNoWhiteSpace) {
    EXPECT_EQ(ReadText("A\xA0;", "A\xA0"), kMore);
    EXPECT_EQ(ReadText("A ;", "A\xA0"), E_UNEXPECTED);
}

// Integers
// ------------------------------------------------------------------------------------------

template <typename T>
struct Guarded {
    T value;
    std::uint8_t behind[8];
};

// Reads one value and tells whether the bytes behind it stayed.
template <typename T>
std::string ReadOne(std::string_view response, std::string_view format) {
    Guarded<T> target;
    std::memset(&target, 0x5A, sizeof(target));
    const HRESULT status = ReadText(response, format, &target.value);
    const std::uint8_t* end = reinterpret_cast<const std::uint8_t*>(&target.value) + sizeof(T);
    const std::uint8_t* last = reinterpret_cast<const std::uint8_t*>(&target + 1);
    if (Failed(status) || std::any_of(end, last, [](std::uint8_t b) { return b != 0x5A; })) {
        return "failed or too large";
    }
    return std::to_string(target.value);
}

TEST(FormatReader, IntegerSizesByTheirLetters) {
    EXPECT_EQ(ReadOne<std::int32_t>("-2000000000", "%d"), "-2000000000");
    EXPECT_EQ(ReadOne<std::int32_t>("-2000000000", "%ld"), "-2000000000");
    EXPECT_EQ(ReadOne<std::int16_t>("-20000", "%hd"), "-20000");
    EXPECT_EQ(ReadOne<std::uint8_t>("200", "%bd"), "200");
    EXPECT_EQ(ReadOne<std::int64_t>("-9000000000", "%Id"), "-9000000000");
    EXPECT_EQ(ReadOne<std::uint32_t>("4294967295", "%u"), "4294967295");
}

TEST(FormatReader, TheRadixComesFromTheLetterAlone) {
    EXPECT_EQ(ReadOne<std::int32_t>("0x1F", "%x"), "31");
    EXPECT_EQ(ReadOne<std::int32_t>("17", "%o"), "15");
    EXPECT_EQ(ReadOne<std::int32_t>("017;", "%i"), "17");
    EXPECT_EQ(ReadOne<std::int32_t>("0x1F", "%i"), "0");
}

TEST(FormatReader, AnOverflowingIntegerIsUnexpected) {
    std::int32_t value = 7;
    EXPECT_EQ(ReadText("2147483648", "%d", &value), E_UNEXPECTED);
    EXPECT_EQ(ReadText("40000", "%hd", &value), E_UNEXPECTED);
    EXPECT_EQ(ReadText("256", "%bd", &value), E_UNEXPECTED);
    EXPECT_EQ(value, 7);
}

TEST(FormatReader, TheWidthOfAnInteger) {
    std::int32_t first = 0;
    std::int32_t second = 0;
    EXPECT_EQ(ReadText("123456;", "%3d%2d", &first, &second), kMore);
    EXPECT_EQ(first, 123);
    EXPECT_EQ(second, 45);
}

TEST(FormatReader, AWidthOfZeroIsNoLimit) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("123;4", "%0d", &value), kMore);
    EXPECT_EQ(value, 123);
}

TEST(FormatReader, ASuppressedNumberTakesNoArgument) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("1,2", "%*d,%d", &value), S_OK);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(ReadText("1.5,3", "%* lf,%d", &value), S_OK);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(ReadText("x", "%*d"), E_UNEXPECTED);
}

TEST(FormatReader, ANullArgumentIsInvalid) {
    EXPECT_EQ(ReadText("1", "%d", nullptr), E_INVALIDARG);
    EXPECT_EQ(ReadText("1", "%lg", nullptr), E_INVALIDARG);
    EXPECT_EQ(ReadText("1", "%d"), E_INVALIDARG);
}

TEST(FormatReader, AWidthFromTheArgumentsIsAPointer) {
    std::int32_t width = 2;
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("1234", "%#d", &width, &value), kMore);
    EXPECT_EQ(value, 12);
    EXPECT_EQ(ReadText("1234", "%#d", nullptr, &value), E_INVALIDARG);
}

TEST(FormatReader, AWidthThatDoesNotFitIsInvalid) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("1234", "%99999999999d", &value), E_INVALIDARG);
}

// Real numbers
// --------------------------------------------------------------------------------------

TEST(FormatReader, RealNumbersAreSingleWithoutALetterAndDoubleWithOne) {
    float single = 0;
    double first = 0;
    double second = 0;
    EXPECT_EQ(ReadText("0.1;0.1;0.1;0", "%f;%lf;%Lg", &single, &first, &second), kMore);
    EXPECT_EQ(single, 0.1F);
    EXPECT_EQ(first, 0.1);
    EXPECT_EQ(second, 0.1);
}

TEST(FormatReader, AnOverflowingRealIsUnexpected) {
    float single = 7;
    double value = 7;
    EXPECT_EQ(ReadText("1E400", "%f", &single), E_UNEXPECTED);
    EXPECT_EQ(ReadText("1E400", "%lf", &value), E_UNEXPECTED);
    EXPECT_EQ(ReadText("-1E39", "%f", &single), E_UNEXPECTED);
    EXPECT_EQ(ReadText("1E-300", "%f", &single), E_UNEXPECTED);
    EXPECT_EQ(single, 7);
    EXPECT_EQ(value, 7);
}

TEST(FormatReader, TheInstrumentsNotANumberFitsBothSizes) {
    float single = 0;
    double value = 0;
    EXPECT_EQ(ReadText("9.91E+37", "%f", &single), S_OK);
    EXPECT_EQ(single, 9.91E+37F);
    EXPECT_EQ(ReadText("9.91E+37", "%lf", &value), S_OK);
    EXPECT_EQ(value, 9.91E+37);
}

TEST(FormatReader, ZeroFitsSinglePrecision) {
    float single = 7;
    EXPECT_EQ(ReadText("0.0E0", "%e", &single), S_OK);
    EXPECT_EQ(single, 0);
}

// Numeric forms
// -------------------------------------------------------------------------------------

TEST(FormatReader, DecimalFormsAreReadAsRealNumbers) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("1.5E3;0", "%@3d", &value), kMore);
    EXPECT_EQ(value, 1500);
    EXPECT_EQ(ReadText("-2.9;0", "%@2d", &value), kMore);
    EXPECT_EQ(value, -2);
    double real = 0;
    EXPECT_EQ(ReadText("12;0", "%@1lf", &real), kMore);
    EXPECT_EQ(real, 12);
    EXPECT_EQ(ReadText("1234;", "%@1 2d", &value), kMore);
    EXPECT_EQ(value, 12);
    EXPECT_EQ(ReadText("1E10;", "%@3d", &value), E_UNEXPECTED);
}

TEST(FormatReader, NonDecimalForms) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText(" #HFF;0", "%@Hd", &value), kMore);
    EXPECT_EQ(value, 255);
    EXPECT_EQ(ReadText("#HFFFFFFFF", "%@Hd", &value), S_OK);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(ReadText("#Q17", "%@Qd", &value), S_OK);
    EXPECT_EQ(value, 15);
    EXPECT_EQ(ReadText("#B101", "%@Bd", &value), S_OK);
    EXPECT_EQ(value, 5);
    double real = 0;
    EXPECT_EQ(ReadText("#H10", "%@Hlf", &real), S_OK);
    EXPECT_EQ(real, 16);
    EXPECT_EQ(ReadText("#Q1", "%@Hd", &value), E_UNEXPECTED);
    EXPECT_EQ(ReadText("#H100000000", "%@Hd", &value), E_UNEXPECTED);
}

}  // namespace
}  // namespace kestrion
