#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/safe_array.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

constexpr HRESULT kMore = IoStatusMoreData;

template <typename T>
std::vector<T> ToVector(const SafeArrayPtr& array) {
    const std::span<T> elements = array.Elements<T>();
    return {elements.begin(), elements.end()};
}

std::vector<std::u16string> Texts(const SafeArrayPtr& array) {
    std::vector<std::u16string> texts;
    for (const BSTR text : array.Elements<BSTR>()) {
        texts.emplace_back(View(text));
    }
    return texts;
}

// Numbers
// -------------------------------------------------------------------------------------------

TEST(FormatReadArray, NumbersWithASeparator) {
    std::array<std::int32_t, 3> values = {};
    EXPECT_EQ(ReadText("1,-2,3", "%,3d", values.data()), S_OK);
    EXPECT_EQ(values, (std::array<std::int32_t, 3>{1, -2, 3}));
}

TEST(FormatReadArray, WhiteSpaceAroundTheSeparatorIsSkipped) {
    std::array<double, 3> values = {};
    EXPECT_EQ(ReadText(" 1.5 ,\t2.5\n, 3.5", "%,3lg", values.data()), S_OK);
    EXPECT_EQ(values, (std::array<double, 3>{1.5, 2.5, 3.5}));
}

TEST(FormatReadArray, AReadBracketNamesSeveralSeparators) {
    std::array<std::int32_t, 4> values = {};
    EXPECT_EQ(ReadText("1;2:3;4", "%(;:)4d", values.data()), S_OK);
    EXPECT_EQ(values, (std::array<std::int32_t, 4>{1, 2, 3, 4}));
    values = {};
    EXPECT_EQ(ReadText("1,2", "%(;:)4d", values.data()), kMore);
    EXPECT_EQ(values, (std::array<std::int32_t, 4>{1, 0, 0, 0}));
}

TEST(FormatReadArray, ElementSizesByTheirLetters) {
    std::array<std::uint8_t, 2> bytes = {};
    std::array<std::int16_t, 2> shorts = {};
    std::array<std::int64_t, 2> longs = {};
    std::array<float, 2> singles = {};
    EXPECT_EQ(ReadText("1,255", "%,2bd", bytes.data()), S_OK);
    EXPECT_EQ(ReadText("-1,300", "%,2hd", shorts.data()), S_OK);
    EXPECT_EQ(ReadText("-5000000000,1", "%,2Id", longs.data()), S_OK);
    EXPECT_EQ(ReadText("0.5,1.5", "%,2g", singles.data()), S_OK);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 2>{1, 255}));
    EXPECT_EQ(shorts, (std::array<std::int16_t, 2>{-1, 300}));
    EXPECT_EQ(longs, (std::array<std::int64_t, 2>{-5'000'000'000, 1}));
    EXPECT_EQ(singles, (std::array<float, 2>{0.5F, 1.5F}));
}

TEST(FormatReadArray, TheCountEndsTheArrayBehindItsSeparator) {
    MemoryBuffer buffer("1,2,3");
    std::array<std::int32_t, 2> values = {};
    EXPECT_EQ(ReadFrom(buffer, "%,2d", values.data()), kMore);
    EXPECT_EQ(values, (std::array<std::int32_t, 2>{1, 2}));
    EXPECT_EQ(buffer.Unread(), "3");
}

TEST(FormatReadArray, TheByteThatEndsAnArrayIsLost) {
    MemoryBuffer buffer("1,2;3;4");
    std::array<std::int32_t, 5> values = {};
    std::int32_t count = 5;
    EXPECT_EQ(ReadFrom(buffer, "%,#d", &count, values.data()), kMore);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(buffer.Unread(), "3;4");
}

TEST(FormatReadArray, ABlankIsSkippedBeforeItCanSeparate) {
    MemoryBuffer buffer("1 2 3");
    std::array<std::int32_t, 3> values = {};
    EXPECT_EQ(ReadFrom(buffer, "%(s)3d", values.data()), kMore);
    EXPECT_EQ(values, (std::array<std::int32_t, 3>{1, 0, 0}));
    EXPECT_EQ(buffer.Unread(), " 3");
}

TEST(FormatReadArray, ASeparatorAtTheEndOfTheResponseEndsTheArray) {
    std::array<std::int32_t, 3> values = {};
    std::int32_t count = 3;
    EXPECT_EQ(ReadText("1,2,", "%,#d", &count, values.data()), S_OK);
    EXPECT_EQ(count, 2);
}

TEST(FormatReadArray, WidthAndFormHoldForEachElement) {
    std::array<std::int32_t, 2> values = {};
    EXPECT_EQ(ReadText("#HFF,#H10", "%@H,2d", values.data()), S_OK);
    EXPECT_EQ(values, (std::array<std::int32_t, 2>{255, 16}));
    EXPECT_EQ(ReadText("12,34", "%2,2d", values.data()), S_OK);
    EXPECT_EQ(values, (std::array<std::int32_t, 2>{12, 34}));
}

TEST(FormatReadArray, OnlyTheLastCountIsWrittenBack) {
    std::array<std::int32_t, 4> values = {};
    std::int32_t width = 2;
    std::int32_t count = 4;
    EXPECT_EQ(ReadText("12,34,56", "%#,#d", &width, &count, values.data()), S_OK);
    EXPECT_EQ(width, 2);
    EXPECT_EQ(count, 3);
}

TEST(FormatReadArray, APlainArrayNeedsACount) {
    std::array<std::int32_t, 2> values = {};
    std::int32_t count = -1;
    EXPECT_EQ(ReadText("1,2", "%,d", values.data()), E_UNEXPECTED);
    EXPECT_EQ(ReadText("1,2", "%,#d", &count, values.data()), E_UNEXPECTED);
    EXPECT_EQ(ReadText("a,b", "%,s", values.data()), E_UNEXPECTED);
    EXPECT_EQ(ReadText("ON", "%{Mode},s", values.data()), E_UNEXPECTED);
}

TEST(FormatReadArray, ACountOfZeroReadsNothing) {
    MemoryBuffer buffer("1,2");
    std::int32_t value = 7;
    EXPECT_EQ(ReadFrom(buffer, "%,0d", &value), kMore);
    EXPECT_EQ(value, 7);
    EXPECT_EQ(buffer.Unread(), "1,2");
}

TEST(FormatReadArray, NullArgumentsAreInvalid) {
    MemoryBuffer buffer("1,2");
    for (const char* format : {"%,2d", "%,2lg", "%,$Sd", "%,2s", "%,$Ss", "%{Mode},2s", "%,#d"}) {
        EXPECT_EQ(ReadFrom(buffer, format, nullptr, nullptr), E_INVALIDARG) << format;
    }
    EXPECT_EQ(buffer.Unread(), "1,2");
}

TEST(FormatReadArray, ABadElementFailsAndWritesNoCount) {
    std::array<std::int32_t, 3> values = {};
    std::int32_t count = 3;
    EXPECT_EQ(ReadText("1,x,3", "%,#d", &count, values.data()), E_UNEXPECTED);
    EXPECT_EQ(count, 3);
}

TEST(FormatReadArray, ASuppressedArrayTakesNoArgument) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("1,2,3;4", "%*,d%d", &value), S_OK);
    EXPECT_EQ(value, 4);
    EXPECT_EQ(ReadText("1,2,3", "%*,2$Sd%d", &value), S_OK);
    EXPECT_EQ(value, 3);
}

TEST(FormatReadArray, ATimeOutIsPassedOn) {
    for (const char* start : {"1", "1,", "1 "}) {
        MemoryBuffer buffer(start);
        buffer.NeverEnds();
        std::array<std::int32_t, 3> values = {};
        EXPECT_EQ(ReadFrom(buffer, "%,3d", values.data()), kFakeTimeout) << start;
    }
}

// Variant arrays
// ------------------------------------------------------------------------------------

TEST(FormatReadArray, ANewVariantArrayTakesAllElements) {
    SafeArrayPtr array;
    EXPECT_EQ(ReadText("1.5,2.5,3.5", "%,$Slg", array.Out()), S_OK);
    EXPECT_EQ(ToVector<double>(array), (std::vector<double>{1.5, 2.5, 3.5}));
}

TEST(FormatReadArray, TheFormerVariantArrayIsReplaced) {
    SAFEARRAY* array = SafeArrayCreateVector(VT_R8, 0, 1);
    EXPECT_EQ(ReadText("1,2,3", "%,$Sd", &array), S_OK);
    const SafeArrayPtr owner(array);
    EXPECT_EQ(ToVector<LONG>(owner), (std::vector<LONG>{1, 2, 3}));
}

TEST(FormatReadArray, VariantKindsByTheirLetters) {
    SafeArrayPtr array;
    EXPECT_EQ(ReadText("1,2", "%,$Sbd", array.Out()), S_OK);
    EXPECT_EQ(ToVector<BYTE>(array), (std::vector<BYTE>{1, 2}));
    EXPECT_EQ(ReadText("1,2", "%,$Shd", array.Out()), S_OK);
    EXPECT_EQ(ToVector<SHORT>(array), (std::vector<SHORT>{1, 2}));
    EXPECT_EQ(ReadText("1,2", "%,$SId", array.Out()), S_OK);
    EXPECT_EQ(ToVector<LONGLONG>(array), (std::vector<LONGLONG>{1, 2}));
    EXPECT_EQ(ReadText("1,2", "%,$Sf", array.Out()), S_OK);
    EXPECT_EQ(ToVector<FLOAT>(array), (std::vector<FLOAT>{1, 2}));
}

TEST(FormatReadArray, ACountLimitsAVariantArrayAndZeroDoesNot) {
    SafeArrayPtr array;
    EXPECT_EQ(ReadText("1,2,3", "%,2$Sd", array.Out()), kMore);
    EXPECT_EQ(ToVector<LONG>(array), (std::vector<LONG>{1, 2}));
    std::int32_t count = 0;
    EXPECT_EQ(ReadText("1,2,3", "%,#$Sd", &count, array.Out()), S_OK);
    EXPECT_EQ(ToVector<LONG>(array), (std::vector<LONG>{1, 2, 3}));
    EXPECT_EQ(count, 3);
}

TEST(FormatReadArray, AFailureLeavesTheVariantArrayAlone) {
    SAFEARRAY* const former = SafeArrayCreateVector(VT_I4, 0, 2);
    SAFEARRAY* array = former;
    EXPECT_EQ(ReadText("1,x", "%,$Sd", &array), E_UNEXPECTED);
    EXPECT_EQ(array, former);
    EXPECT_EQ(former->rgsabound[0].cElements, 2U);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(FormatReadArray, ALockedVariantArrayStays) {
    SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 0, 2);
    ASSERT_EQ(SafeArrayLock(array), S_OK);
    EXPECT_EQ(ReadText("1,2", "%,$Sd", &array), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(ReadText("a,b", "%,$Ss", &array), E_INVALIDARG);  // no array of texts
    ASSERT_EQ(SafeArrayUnlock(array), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(FormatReadArray, UnfitVariantArraysAreInvalid) {
    const SAFEARRAYBOUND square[] = {{2, 0}, {2, 0}};
    SAFEARRAY* twoDimensional = SafeArrayCreate(VT_I4, 2, square);
    SAFEARRAY* fromOne = SafeArrayCreateVector(VT_I4, 1, 2);
    for (SAFEARRAY* array : {twoDimensional, fromOne}) {
        SAFEARRAY* argument = array;
        MemoryBuffer buffer("1,2");
        EXPECT_EQ(ReadFrom(buffer, "%,$Sd", &argument), E_INVALIDARG);
        EXPECT_EQ(buffer.Unread(), "1,2");
        EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    }
}

// Texts
// ---------------------------------------------------------------------------------------------

TEST(FormatReadArray, TextsIntoAVariantArray) {
    SafeArrayPtr array;
    EXPECT_EQ(ReadText("CH1,MATH1,,REF2", "%,$Ss", array.Out()), S_OK);
    EXPECT_EQ(Texts(array), (std::vector<std::u16string>{u"CH1", u"MATH1", u"", u"REF2"}));
    std::int32_t count = 2;
    EXPECT_EQ(ReadText("CH1,MATH1,REF2", "%,#$S$Bs", &count, array.Out()), kMore);
    EXPECT_EQ(Texts(array), (std::vector<std::u16string>{u"CH1", u"MATH1"}));
    EXPECT_EQ(count, 2);
}

TEST(FormatReadArray, TextsIntoPlainArraysOfEachKind) {
    std::array<std::string, 3> dynamic;
    EXPECT_EQ(ReadText("a,bc", "%,3$Cs", dynamic.data()), S_OK);
    EXPECT_EQ(dynamic, (std::array<std::string, 3>{"a", "bc", ""}));
    char first[8] = "zzz";
    char second[8] = "zzz";
    std::array<char*, 2> narrow = {first, second};
    EXPECT_EQ(ReadText("a,bc", "%,2s", narrow.data()), S_OK);
    EXPECT_STREQ(first, "a");
    EXPECT_STREQ(second, "bc");
    std::array<BSTR, 2> wide = {MakeBstr(u"old"), nullptr};
    EXPECT_EQ(ReadText("a,b\xA0", "%,2$Bs", wide.data()), S_OK);
    EXPECT_EQ(View(wide[0]), u"a");
    EXPECT_EQ(View(wide[1]), u"b\u00A0");
    SysFreeString(wide[0]);
    SysFreeString(wide[1]);
}

TEST(FormatReadArray, TheWidthOfTextsKeepsAPlaceForTheZero) {
    char first[4] = "zzz";
    char second[4] = "zzz";
    std::array<char*, 2> narrow = {first, second};
    EXPECT_EQ(ReadText("abcd,e", "%4,2s", narrow.data()), kMore);
    EXPECT_STREQ(first, "abc");
    EXPECT_STREQ(second, "d");  // nothing is dropped
}

TEST(FormatReadArray, TheWidthOfGrowingTextsIsTheirNumberOfBytes) {
    std::array<std::string, 2> dynamic;
    EXPECT_EQ(ReadText("abcd,e", "%3,2$Cs", dynamic.data()), kMore);
    EXPECT_EQ(dynamic, (std::array<std::string, 2>{"abc", "d"}));
}

TEST(FormatReadArray, AWidthOfOneStillEnds) {
    SafeArrayPtr array;
    EXPECT_EQ(ReadText("ab", "%1,$Ss", array.Out()), S_OK);
    EXPECT_EQ(Texts(array), (std::vector<std::u16string>{u"a", u"b"}));
    EXPECT_EQ(ReadText("ab", "%*1,s"), S_OK);
    char first[] = "z";
    std::array<char*, 1> narrow = {first};
    MemoryBuffer buffer("ab");
    EXPECT_EQ(ReadFrom(buffer, "%1,1s", narrow.data()), kMore);
    EXPECT_STREQ(first, "");
    EXPECT_EQ(buffer.Unread(), "ab");
}

TEST(FormatReadArray, APlaceWithoutMemoryIsInvalid) {
    MemoryBuffer buffer("a,b");
    char first[8];
    std::array<char*, 2> narrow = {first, nullptr};
    EXPECT_EQ(ReadFrom(buffer, "%,2s", narrow.data()), E_INVALIDARG);
    EXPECT_EQ(buffer.Unread(), "a,b");
}

TEST(FormatReadArray, TheDelimiterOfTheLastTextIsTaken) {
    MemoryBuffer buffer("a,b,c");
    std::array<std::string, 2> texts;
    EXPECT_EQ(ReadFrom(buffer, "%,2$Cs", texts.data()), kMore);
    EXPECT_EQ(buffer.Unread(), "c");
}

TEST(FormatReadArray, QuotedTexts) {
    std::array<std::string, 3> texts;
    EXPECT_EQ(ReadText("\"a,b\",c,'d'", "%,3$CQs", texts.data()), S_OK);
    EXPECT_EQ(texts, (std::array<std::string, 3>{"a,b", "c", "d"}));
    EXPECT_EQ(ReadText("\"a,b\",c,'d,'", "%,3$Cqs", texts.data()), S_OK);
    EXPECT_EQ(texts, (std::array<std::string, 3>{"\"a,b\"", "c", "'d,'"}));
    EXPECT_EQ(ReadText("\"a,b\",c", "%,3$Cs", texts.data()), S_OK);
    EXPECT_EQ(texts, (std::array<std::string, 3>{"\"a", "b\"", "c"}));
}

TEST(FormatReadArray, ABlankAmongTheSeparatorsTrimsTheTexts) {
    std::array<std::string, 3> texts;
    EXPECT_EQ(ReadText("  a \t b  c", "%(s)3$Cs", texts.data()), S_OK);
    EXPECT_EQ(texts, (std::array<std::string, 3>{"a", "b", "c"}));
    EXPECT_EQ(ReadText(" a\t, b", "%(,)2$Cs", texts.data()), S_OK);
    EXPECT_EQ(texts, (std::array<std::string, 3>{" a\t", " b", "c"}));  // not trimmed
}

TEST(FormatReadArray, ASuppressedTextArrayTakesNoArgument) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("a,b,3", "%*,2s%d", &value), S_OK);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(ReadText("a,b,3", "%*,$Ss"), S_OK);
}

TEST(FormatReadArray, AFailureLeavesTheArrayOfTextsAlone) {
    SAFEARRAY* const former = SafeArrayCreateVector(VT_BSTR, 0, 2);
    SAFEARRAY* array = former;
    MemoryBuffer buffer("a,b");
    buffer.NeverEnds();
    EXPECT_EQ(ReadFrom(buffer, "%,$Ss", &array), kFakeTimeout);
    EXPECT_EQ(array, former);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

// Enumerations
// --------------------------------------------------------------------------------------

TEST(FormatReadArray, Enumerations) {
    std::array<std::int32_t, 3> modes = {7, 7, 7};
    std::int32_t count = 3;
    EXPECT_EQ(ReadText("HIRES,SAMPLE", "%{Mode},#s", &count, modes.data()), S_OK);
    EXPECT_EQ(modes, (std::array<std::int32_t, 3>{2, 0, 7}));
    EXPECT_EQ(count, 2);
    SafeArrayPtr array;
    EXPECT_EQ(ReadText("\"HIRES\";SAMPLE", "%{Mode}(;)$SQs", array.Out()), S_OK);
    EXPECT_EQ(ToVector<LONG>(array), (std::vector<LONG>{2, 0}));
}

TEST(FormatReadArray, BooleanEnumerationsHave16BitElements) {
    std::array<std::int16_t, 3> values = {7, 7, 7};
    EXPECT_EQ(ReadText("ON,OFF", "%{VARIANT_BOOL},2s", values.data()), S_OK);
    EXPECT_EQ(values, (std::array<std::int16_t, 3>{1, 0, 7}));
    SafeArrayPtr array;
    EXPECT_EQ(ReadText("ON,OFF", "%{VARIANT_BOOL},$Ss", array.Out()), S_OK);
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(SafeArrayGetVartype(array.Get(), &type), S_OK);
    EXPECT_EQ(type, VT_BOOL);
    EXPECT_EQ(static_cast<VARIANT_BOOL*>(array.Get()->pvData)[0], 1);
    EXPECT_EQ(static_cast<VARIANT_BOOL*>(array.Get()->pvData)[1], 0);
}

TEST(FormatReadArray, AnUnknownTokenFailsAndLeavesTheVariantArrayAlone) {
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(ReadText("HIRES,AVERAGE", "%{Mode},$Ss", &array), kFakeUnknownToken);
    EXPECT_EQ(array, nullptr);
}

TEST(FormatReadArray, SuppressedEnumerationsAskForNoValue) {
    std::int32_t value = 0;
    EXPECT_EQ(ReadText("WHAT,EVER,5", "%{Mode}*,2s%d", &value), S_OK);
    EXPECT_EQ(value, 5);
}

}  // namespace
}  // namespace kestrion
