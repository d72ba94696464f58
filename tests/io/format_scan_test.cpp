#include "io/format_scan.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

constexpr HRESULT kMore = IoStatusMoreData;

// Byte sets
// -----------------------------------------------------------------------------------------

TEST(ByteSet, HoldsAnyByte) {
    ByteSet set("a\xFF");
    set.AddRange('0', '3');
    EXPECT_TRUE(set.Has('a'));
    EXPECT_TRUE(set.Has('\xFF'));
    EXPECT_TRUE(set.Has('0'));
    EXPECT_TRUE(set.Has('3'));
    EXPECT_FALSE(set.Has('4'));
    EXPECT_FALSE(set.Has('\0'));
    EXPECT_FALSE(set.Others().Has('a'));
    EXPECT_TRUE(set.Others().Has('b'));
    EXPECT_EQ(set.Others().Others(), set);
}

// A response that has nothing but its terminator left gives a byte count of zero.
class EmptyEndBuffer {
  public:
    static HRESULT Scan(double& value) {
        struct Buffer final : IIoBuffer {
            HRESULT GetByte(BYTE*) override { return S_FALSE; }
            HRESULT ReadToString(BSTR*, std::uint32_t, bool) override { return E_NOTIMPL; }
            HRESULT ReadToArray(SAFEARRAY**, std::uint32_t, bool) override { return E_NOTIMPL; }
            HRESULT Read(BYTE*, std::uint32_t, std::uint32_t*, bool) override { return E_NOTIMPL; }
            HRESULT ReadBytes(BYTE*, std::uint32_t, std::uint32_t*, bool) override {
                return E_NOTIMPL;
            }
            HRESULT UngetByte() override { return E_OUTOFMEMORY; }
            HRESULT ReadDirect(BYTE*, std::uint32_t, std::uint32_t*, bool) override {
                return E_NOTIMPL;
            }
            HRESULT WriteChar(BYTE, bool) override { return E_NOTIMPL; }
            HRESULT WriteWideString(BSTR, std::uint32_t*, bool) override { return E_NOTIMPL; }
            HRESULT WriteArray(SAFEARRAY*, std::uint32_t, std::uint32_t*, bool) override {
                return E_NOTIMPL;
            }
            HRESULT WriteText(std::string_view, std::uint32_t*, bool) override { return E_NOTIMPL; }
            HRESULT WriteBytes(const BYTE*, std::uint32_t, std::uint32_t*, bool) override {
                return E_NOTIMPL;
            }
            HRESULT FlushRead() override { return E_NOTIMPL; }
            HRESULT FlushWrite(bool) override { return E_NOTIMPL; }
            HRESULT SetBufferSize(IoBufferKind, std::uint32_t) override { return E_NOTIMPL; }
            HRESULT GetReadBufferSize(std::uint32_t*) override { return E_NOTIMPL; }
            HRESULT GetWriteBufferSize(std::uint32_t*) override { return E_NOTIMPL; }
            [[nodiscard]] bool GetByteSwap() override { return false; }
            void SetByteSwap(bool) override {}
        };
        Buffer buffer;
        return ScanReal(buffer, -1, value);
    }
};

TEST(ByteReader, AReadThatBringsNoByteEndsTheResponse) {
    double value = 7;
    EXPECT_EQ(EmptyEndBuffer::Scan(value), E_UNEXPECTED);  // a number without a digit
    EXPECT_EQ(value, 7.0);
}

TEST(ByteReader, AFailedPushBackIsAFailure) {
    MemoryBuffer buffer("x");
    ByteReader reader(buffer);
    ASSERT_TRUE(reader.Next());
    ASSERT_EQ(buffer.UngetByte(), S_OK);  // behind the reader's back
    reader.Unget();
    EXPECT_EQ(reader.Status(), E_OUTOFMEMORY);
}

// Real numbers
// --------------------------------------------------------------------------------------

struct Scanned {
    HRESULT status;
    double value;
    std::string left;
    friend bool operator==(const Scanned&, const Scanned&) = default;
};

Scanned Real(std::string response, std::int64_t width = -1) {
    MemoryBuffer buffer(std::move(response));
    double value = -777;
    const HRESULT status = ScanReal(buffer, width, value);
    return {status, value, std::string(buffer.Unread())};
}

TEST(ScanReal, StopsAtTheFirstByteThatIsNoPartOfTheNumber) {
    EXPECT_EQ(Real("1.5,2"), (Scanned{kMore, 1.5, ",2"}));
    EXPECT_EQ(Real("-2.5e3;x"), (Scanned{kMore, -2500, ";x"}));
    EXPECT_EQ(Real("1.2.3"), (Scanned{kMore, 1.2, ".3"}));
    EXPECT_EQ(Real("1-2"), (Scanned{kMore, 1, "-2"}));
    EXPECT_EQ(Real("1e5.5"), (Scanned{kMore, 1e5, ".5"}));
    EXPECT_EQ(Real("1e5e5"), (Scanned{kMore, 1e5, "e5"}));
    EXPECT_EQ(Real("5.E-1V;"), (Scanned{kMore, 0.5, "V;"}));
}

TEST(ScanReal, SkipsWhiteSpaceInFront) {
    EXPECT_EQ(Real(" \t\r\n\v\f7,8"), (Scanned{kMore, 7, ",8"}));
}

TEST(ScanReal, ADigitThatEndsTheResponseIsPushedBack) {
    EXPECT_EQ(Real("12"), (Scanned{S_OK, 12, "2"}));
}

TEST(ScanReal, AByteBehindTheNumberThatEndsTheResponseIsPushedBackWithStatusZero) {
    EXPECT_EQ(Real("12,"), (Scanned{S_OK, 12, ","}));
}

TEST(ScanReal, AnUsedUpWidthPushesNothingBack) {
    EXPECT_EQ(Real("12345", 3), (Scanned{kMore, 123, "45"}));
    EXPECT_EQ(Real("123", 3), (Scanned{S_OK, 123, ""}));
    EXPECT_EQ(Real("  12345", 3), (Scanned{kMore, 123, "45"}));  // white space doesn't count
}

TEST(ScanReal, NoDigitIsUnexpected) {
    EXPECT_EQ(Real("ABC"), (Scanned{E_UNEXPECTED, -777, "ABC"}));
    EXPECT_EQ(Real("  "), (Scanned{E_UNEXPECTED, -777, " "}));
    EXPECT_EQ(Real("-"), (Scanned{E_UNEXPECTED, -777, "-"}));
    EXPECT_EQ(Real("E5"), (Scanned{E_UNEXPECTED, -777, "E5"}));
    EXPECT_EQ(Real("+,"), (Scanned{E_UNEXPECTED, -777, ","}));
}

TEST(ScanReal, OverflowIsUnexpected) {
    EXPECT_EQ(Real("1E400,").status, E_UNEXPECTED);
    EXPECT_EQ(Real("-1E400,").status, E_UNEXPECTED);
}

TEST(ScanReal, NotANumberValueOfTheInstrumentIsAnOrdinaryNumber) {
    EXPECT_EQ(Real("9.91E+37;1"), (Scanned{kMore, 9.91e37, ";1"}));
}

TEST(ScanReal, AFailureOfTheBufferIsPassedOn) {
    MemoryBuffer buffer("12");
    buffer.NeverEnds();
    double value = -777;
    EXPECT_EQ(ScanReal(buffer, -1, value), kFakeTimeout);
    EXPECT_EQ(value, -777);
}

TEST(ScanReal, ALongNumberIsReadWhole) {
    EXPECT_EQ(Real("1" + std::string(300, '0') + ";1"), (Scanned{kMore, 1e300, ";1"}));
    EXPECT_EQ(Real("0." + std::string(5000, '0') + "1;1"), (Scanned{kMore, 0, ";1"}));
}

TEST(ScanReal, ANumberWithoutEndIsUnexpectedAndTakesLittleMemory) {
    EXPECT_EQ(Real(std::string(1000000, '1') + ";").status, E_UNEXPECTED);
    EXPECT_EQ(Real("0." + std::string(65534, '0') + ";").status, S_OK);
    EXPECT_EQ(Real("0." + std::string(65535, '0') + ";").status, E_UNEXPECTED);
}

TEST(ScanRealAsWhole, CutsTowardZeroAndTestsTheRange) {
    const auto scan = [](std::string text, int bits, bool isSigned) {
        MemoryBuffer buffer(std::move(text));
        std::int64_t value = -777;
        const HRESULT status = ScanRealAsWhole(buffer, -1, bits, isSigned, value);
        return Failed(status) ? status : value;
    };
    EXPECT_EQ(scan("1.5E3,", 32, true), 1500);
    EXPECT_EQ(scan("-2.9,", 16, true), -2);
    EXPECT_EQ(scan("9007199254740993,", 64, true), 9007199254740993);  // not through a double
    EXPECT_EQ(scan("1E5,", 16, true), E_UNEXPECTED);
    EXPECT_EQ(scan("256,", 8, false), E_UNEXPECTED);
    EXPECT_EQ(scan("x", 32, true), E_UNEXPECTED);
}

// Whole numbers
// -------------------------------------------------------------------------------------

struct ScannedWhole {
    HRESULT status;
    std::int64_t value;
    std::string left;
    friend bool operator==(const ScannedWhole&, const ScannedWhole&) = default;
};

ScannedWhole Whole(std::string response, int radix = 10, std::int64_t width = -1, int bits = 32,
                   bool isSigned = true) {
    MemoryBuffer buffer(std::move(response));
    std::int64_t value = -777;
    const HRESULT status = ScanWhole(buffer, width, radix, bits, isSigned, value);
    return {status, value, std::string(buffer.Unread())};
}

TEST(ScanWhole, StopsAtTheFirstByteThatIsNoDigit) {
    EXPECT_EQ(Whole("12,3"), (ScannedWhole{kMore, 12, ",3"}));
    EXPECT_EQ(Whole("+12.5"), (ScannedWhole{kMore, 12, ".5"}));
    EXPECT_EQ(Whole(" \n-12E3"), (ScannedWhole{kMore, -12, "E3"}));
    EXPECT_EQ(Whole("789,", 8), (ScannedWhole{kMore, 7, "89,"}));
}

TEST(ScanWhole, ADigitThatEndsTheResponseIsNotPushedBack) {
    EXPECT_EQ(Whole("12"), (ScannedWhole{S_OK, 12, ""}));
}

TEST(ScanWhole, AByteBehindTheNumberThatEndsTheResponseIsPushedBackWithStatusZero) {
    EXPECT_EQ(Whole("12,"), (ScannedWhole{S_OK, 12, ","}));
}

TEST(ScanWhole, TheWidthCountsSignAndDigits) {
    EXPECT_EQ(Whole("12345", 10, 3), (ScannedWhole{kMore, 123, "45"}));
    EXPECT_EQ(Whole("-2345", 10, 3), (ScannedWhole{kMore, -23, "45"}));
    EXPECT_EQ(Whole("-2345", 10, 1), (ScannedWhole{E_UNEXPECTED, -777, "2345"}));
}

TEST(ScanWhole, ASignNeedsADigitBehindIt) {
    EXPECT_EQ(Whole("-x").status, E_UNEXPECTED);
    EXPECT_EQ(Whole("--1").status, E_UNEXPECTED);
    EXPECT_EQ(Whole("- 1").status, E_UNEXPECTED);
    EXPECT_EQ(Whole("-").status, E_UNEXPECTED);
}

TEST(ScanWhole, NoDigitIsUnexpectedAndStaysUnread) {
    EXPECT_EQ(Whole("ABC"), (ScannedWhole{E_UNEXPECTED, -777, "ABC"}));
    EXPECT_EQ(Whole("   ").status, E_UNEXPECTED);
}

TEST(ScanWhole, HexadecimalWithAndWithoutPrefix) {
    EXPECT_EQ(Whole("0x1F,1", 16), (ScannedWhole{kMore, 31, ",1"}));
    EXPECT_EQ(Whole("-0x1f", 16), (ScannedWhole{S_OK, -31, ""}));
    EXPECT_EQ(Whole("FF;1", 16), (ScannedWhole{kMore, 255, ";1"}));
    EXPECT_EQ(Whole("0F;1", 16), (ScannedWhole{kMore, 15, ";1"}));
    EXPECT_EQ(Whole("0,1", 16), (ScannedWhole{kMore, 0, ",1"}));
    EXPECT_EQ(Whole("0", 16), (ScannedWhole{S_OK, 0, ""}));
}

TEST(ScanWhole, ACapitalXIsNoPrefix) {
    EXPECT_EQ(Whole("0X1F", 16), (ScannedWhole{kMore, 0, "X1F"}));
}

TEST(ScanWhole, ThePrefixNeedsADigitWithinTheWidth) {
    EXPECT_EQ(Whole("0xG", 16).status, E_UNEXPECTED);
    EXPECT_EQ(Whole("0x", 16).status, E_UNEXPECTED);
    EXPECT_EQ(Whole("0x1", 16, 2).status, E_UNEXPECTED);
    EXPECT_EQ(Whole("0x12", 16, 3), (ScannedWhole{kMore, 1, "2"}));
    EXPECT_EQ(Whole("0x12", 16, 1), (ScannedWhole{kMore, 0, "x12"}));
}

TEST(ScanWhole, OverflowIsUnexpected) {
    EXPECT_EQ(Whole("2147483648,").status, E_UNEXPECTED);
    EXPECT_EQ(Whole("70000,", 10, -1, 16).status, E_UNEXPECTED);
    EXPECT_EQ(Whole(std::string(100, '9') + ",", 10, -1, 64).status, E_UNEXPECTED);
    EXPECT_EQ(Whole("FFFFFFFF,1", 16, -1, 32, false), (ScannedWhole{kMore, 4294967295, ",1"}));
}

TEST(ScanWhole, ANumberWithoutEndIsUnexpected) {
    EXPECT_EQ(Whole(std::string(1000000, '0') + ";").status, E_UNEXPECTED);
}

TEST(ScanWhole, AFailureOfTheBufferIsPassedOnAtEveryByte) {
    for (const char* start : {"", " ", "-", "-1", "1", "0", "0x", "0x1"}) {
        MemoryBuffer buffer(start);
        buffer.NeverEnds();
        std::int64_t value = -777;
        EXPECT_EQ(ScanWhole(buffer, -1, 16, 32, true, value), kFakeTimeout) << start;
        EXPECT_EQ(value, -777);
    }
}

// Non-decimal numbers
// -------------------------------------------------------------------------------

ScannedWhole Based(std::string response, char form, int bits = 32) {
    MemoryBuffer buffer(std::move(response));
    std::uint64_t value = 0;
    const HRESULT status = ScanBased(buffer, form, bits, value);
    return {status, static_cast<std::int64_t>(value), std::string(buffer.Unread())};
}

TEST(ScanBased, ReadsEachForm) {
    EXPECT_EQ(Based(" #H1fF,1", 'H'), (ScannedWhole{kMore, 511, ",1"}));
    EXPECT_EQ(Based("#Q1789", 'Q'), (ScannedWhole{kMore, 15, "89"}));
    EXPECT_EQ(Based("#B10123", 'B'), (ScannedWhole{kMore, 5, "23"}));
    EXPECT_EQ(Based("#HFFFFFFFF", 'H'), (ScannedWhole{S_OK, 4294967295, ""}));
    EXPECT_EQ(Based("#H00000000000000000000000001", 'H', 8), (ScannedWhole{S_OK, 1, ""}));
}

TEST(ScanBased, AnythingElseIsUnexpected) {
    EXPECT_EQ(Based("H1", 'H').status, E_UNEXPECTED);
    EXPECT_EQ(Based("#Q1", 'H').status, E_UNEXPECTED);
    EXPECT_EQ(Based("#h1", 'H').status, E_UNEXPECTED);
    EXPECT_EQ(Based("#H", 'H').status, E_UNEXPECTED);
    EXPECT_EQ(Based("#", 'H').status, E_UNEXPECTED);
    EXPECT_EQ(Based("#HG", 'H').status, E_UNEXPECTED);
    EXPECT_EQ(Based("#X1", 'X').status, E_UNEXPECTED);
}

TEST(ScanBased, OverflowIsUnexpected) {
    EXPECT_EQ(Based("#H100000000,", 'H').status, E_UNEXPECTED);
    EXPECT_EQ(Based("#H100,", 'H', 8).status, E_UNEXPECTED);
    EXPECT_EQ(Based("#HFFFFFFFFFFFFFFFF,", 'H', 64).status, S_OK);
    EXPECT_EQ(Based("#H1FFFFFFFFFFFFFFFF,", 'H', 64).status, E_UNEXPECTED);
    EXPECT_EQ(Based("#H10000000000000000,", 'H', 64).status, E_UNEXPECTED);
    EXPECT_EQ(Based("#Q2000000000000000000000,", 'Q', 64).status, E_UNEXPECTED);
}

// Separators
// ----------------------------------------------------------------------------------------

struct Separated {
    HRESULT status;
    bool another;
    std::string left;
    friend bool operator==(const Separated&, const Separated&) = default;
};

Separated Separator(std::string response) {
    MemoryBuffer buffer(std::move(response));
    bool another = false;
    const HRESULT status = ScanSeparator(buffer, ByteSet(",;"), another);
    return {status, another, std::string(buffer.Unread())};
}

TEST(ScanSeparator, TakesWhiteSpaceAndOneSeparator) {
    EXPECT_EQ(Separator(" \t,2"), (Separated{kMore, true, "2"}));
    EXPECT_EQ(Separator(";;2"), (Separated{kMore, true, ";2"}));
}

TEST(ScanSeparator, AByteThatIsNoSeparatorIsLost) {
    EXPECT_EQ(Separator(" :2"), (Separated{kMore, false, "2"}));
}

TEST(ScanSeparator, TheEndOfTheResponseEndsTheList) {
    EXPECT_EQ(Separator("  "), (Separated{S_OK, false, ""}));
    EXPECT_EQ(Separator(","), (Separated{S_OK, false, ""}));
    EXPECT_EQ(Separator("x"), (Separated{S_OK, false, ""}));
}

TEST(ScanSeparator, AFailureOfTheBufferIsPassedOn) {
    MemoryBuffer buffer(" ");
    buffer.NeverEnds();
    bool another = true;
    EXPECT_EQ(ScanSeparator(buffer, ByteSet(","), another), kFakeTimeout);
    EXPECT_FALSE(another);
}

// Tokens
// --------------------------------------------------------------------------------------------

struct ScannedToken {
    HRESULT status;
    std::string token;
    std::uint64_t stored;
    std::string left;
    friend bool operator==(const ScannedToken&, const ScannedToken&) = default;
};

ScannedToken Token(std::string response, std::int64_t width, std::string_view delimiters,
                   TokenFlags flags) {
    MemoryBuffer buffer(std::move(response));
    std::string token;
    TokenTarget target(token);
    const HRESULT status = ScanToken(buffer, {width, ByteSet(delimiters), flags}, target);
    return {status, token, target.Stored(), std::string(buffer.Unread())};
}

TEST(ScanToken, FlagsHaveTheirFixedValues) {
    EXPECT_EQ(kTokenSkipSpace, 1U);
    EXPECT_EQ(kTokenDropExcess, 2U);
    EXPECT_EQ(kTokenTerminate, 4U);
    EXPECT_EQ(kTokenQuotes, 8U);
    EXPECT_EQ(kTokenStripQuotes, 16U);
    EXPECT_EQ(kTokenFullWidth, 32U);
    EXPECT_EQ(kTokenTakeDelimiter, 64U);
    EXPECT_EQ(kTokenStoreDelimiter, 128U);
}

TEST(ScanToken, TheDelimiterIsPushedBack) {
    EXPECT_EQ(Token("AB,C", -1, ",", 0), (ScannedToken{kMore, "AB", 2, ",C"}));
    EXPECT_EQ(Token(",C", -1, ",", 0), (ScannedToken{kMore, "", 0, ",C"}));
}

TEST(ScanToken, ADelimiterThatEndsTheResponseIsGone) {
    EXPECT_EQ(Token("AB,", -1, ",", 0), (ScannedToken{S_OK, "AB", 2, ""}));
}

TEST(ScanToken, TheEndOfTheResponseEndsTheToken) {
    EXPECT_EQ(Token("AB", -1, ",", 0), (ScannedToken{S_OK, "AB", 2, ""}));
}

TEST(ScanToken, AWidthOfZeroTakesNothing) {
    EXPECT_EQ(Token("AB", 0, ",", kTokenSkipSpace | kTokenDropExcess),
              (ScannedToken{kMore, "", 0, "AB"}));
}

TEST(ScanToken, SkipSpaceSkipsAllWhiteSpaceInFrontOnly) {
    EXPECT_EQ(Token(" \t\n A B,", -1, ",", kTokenSkipSpace), (ScannedToken{S_OK, "A B", 3, ""}));
    EXPECT_EQ(Token("  A", -1, ",", 0), (ScannedToken{S_OK, "  A", 3, ""}));
    EXPECT_EQ(Token("   ", -1, ",", kTokenSkipSpace), (ScannedToken{S_OK, "", 0, ""}));
}

TEST(ScanToken, WithoutDropExcessTheRestStaysUnread) {
    EXPECT_EQ(Token("ABCDE,F", 3, ",", 0), (ScannedToken{kMore, "ABC", 3, "DE,F"}));
}

TEST(ScanToken, DropExcessDropsTheRestWithItsDelimiter) {
    EXPECT_EQ(Token("ABCDE,F", 3, ",", kTokenDropExcess), (ScannedToken{kMore, "ABC", 3, "F"}));
    EXPECT_EQ(Token("ABC,F", 3, ",", kTokenDropExcess), (ScannedToken{kMore, "ABC", 3, "F"}));
    EXPECT_EQ(Token("ABCDE", 3, ",", kTokenDropExcess), (ScannedToken{S_OK, "ABC", 3, ""}));
    EXPECT_EQ(Token("ABCDE", 3, "", kTokenDropExcess), (ScannedToken{S_OK, "ABC", 3, ""}));
}

TEST(ScanToken, DropExcessBehindABlankDropsAllWhiteSpace) {
    EXPECT_EQ(Token("ABCDE \t\nFG", 3, " ", kTokenDropExcess),
              (ScannedToken{kMore, "ABC", 3, "FG"}));
    EXPECT_EQ(Token("ABCDE  FG", 3, " ", kTokenDropExcess | kTokenTakeDelimiter),
              (ScannedToken{kMore, "ABC", 3, "G"}));
    EXPECT_EQ(Token("ABCDE  ", 3, " ", kTokenDropExcess), (ScannedToken{S_OK, "ABC", 3, ""}));
    EXPECT_EQ(Token("ABCDE  F", 3, " ", kTokenDropExcess), (ScannedToken{S_OK, "ABC", 3, "F"}));
}

TEST(ScanToken, DelimitersInsideQuotesDoNotCount) {
    EXPECT_EQ(Token("\"A,B\",C", -1, ",", kTokenQuotes), (ScannedToken{kMore, "\"A,B\"", 5, ",C"}));
    EXPECT_EQ(Token("'A,B',C", -1, ",", kTokenQuotes), (ScannedToken{kMore, "'A,B'", 5, ",C"}));
    EXPECT_EQ(Token("\"A,B\",C", -1, ",", 0), (ScannedToken{kMore, "\"A", 2, ",B\",C"}));
}

TEST(ScanToken, OneKindOfQuoteInsideTheOtherIsPlainText) {
    EXPECT_EQ(Token("\"it's,\",C", -1, ",", kTokenQuotes | kTokenStripQuotes),
              (ScannedToken{kMore, "it's,", 5, ",C"}));
    EXPECT_EQ(Token("'a\"',C", -1, ",", kTokenQuotes | kTokenStripQuotes),
              (ScannedToken{kMore, "a\"", 2, ",C"}));
}

TEST(ScanToken, StrippedQuotesStillCountForTheWidth) {
    EXPECT_EQ(Token("\"ABC\"D", 5, "", kTokenQuotes | kTokenStripQuotes),
              (ScannedToken{kMore, "ABC", 3, "D"}));
}

TEST(ScanToken, StripQuotesAloneStripsNothing) {
    EXPECT_EQ(Token("\"A\",", -1, ",", kTokenStripQuotes), (ScannedToken{S_OK, "\"A\"", 3, ""}));
}

TEST(ScanToken, TakeDelimiterLeavesItOut) {
    EXPECT_EQ(Token("AB,C", -1, ",", kTokenTakeDelimiter), (ScannedToken{kMore, "AB", 2, "C"}));
}

TEST(ScanToken, StoreDelimiterPutsItBehindTheToken) {
    EXPECT_EQ(Token("AB\nC", -1, "\n", kTokenStoreDelimiter),
              (ScannedToken{kMore, "AB\n", 3, "C"}));
    EXPECT_EQ(Token("AB\n", -1, "\n", kTokenStoreDelimiter), (ScannedToken{S_OK, "AB\n", 3, ""}));
    EXPECT_EQ(Token("AB", -1, "\n", kTokenStoreDelimiter), (ScannedToken{S_OK, "AB", 2, ""}));
}

TEST(ScanToken, ATextTargetWithRoomDropsTheOthers) {
    MemoryBuffer buffer("ABCDE,");
    std::string token;
    TokenTarget target(token, 3);
    EXPECT_EQ(ScanToken(buffer, {-1, ByteSet(","), kTokenTerminate}, target), S_OK);
    EXPECT_EQ(token, "ABC");
    EXPECT_EQ(target.Stored(), 3U);
}

TEST(ScanToken, AMemoryTargetGetsItsZeroOnlyWhenAsked) {
    char memory[] = "zzzzz";
    MemoryBuffer buffer("AB,CD,");
    TokenTarget open(memory);
    EXPECT_EQ(ScanToken(buffer, {-1, ByteSet(","), 0}, open), kMore);
    EXPECT_STREQ(memory, "ABzzz");
    TokenTarget closed(memory);
    EXPECT_EQ(ScanToken(buffer, {-1, ByteSet(","), kTokenTerminate}, closed), kMore);
    EXPECT_STREQ(memory, "");  // the delimiter was pushed back
}

TEST(ScanToken, NoTargetOnlyCounts) {
    MemoryBuffer buffer("ABC,");
    TokenTarget nowhere;
    EXPECT_EQ(ScanToken(buffer, {-1, ByteSet(","), kTokenTerminate}, nowhere), S_OK);
    EXPECT_EQ(nowhere.Stored(), 3U);
}

TEST(ScanToken, AFailureOfTheBufferIsPassedOn) {
    for (const std::int64_t width : {-1, 1}) {
        MemoryBuffer buffer("AB");
        buffer.NeverEnds();
        std::string token;
        TokenTarget target(token);
        EXPECT_EQ(ScanToken(buffer, {width, ByteSet(","), kTokenDropExcess}, target), kFakeTimeout);
    }
}

}  // namespace
}  // namespace kestrion
