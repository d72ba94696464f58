#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/safe_array.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

template <typename T>
SafeArrayPtr MakeArray(std::initializer_list<T> values) {
    SafeArrayPtr array(SafeArrayCreateVector(kVartype<T>, 0, static_cast<ULONG>(values.size())));
    std::copy(values.begin(), values.end(), array.template Elements<T>().begin());
    return array;
}

SafeArrayPtr MakeTexts(std::initializer_list<std::u16string_view> texts) {
    SafeArrayPtr array(SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(texts.size())));
    std::size_t i = 0;
    for (const std::u16string_view text : texts) {
        array.Elements<BSTR>()[i++] = MakeBstr(text);
    }
    return array;
}

bool IsUnlocked(const SafeArrayPtr& array) {
    return array.Get()->cLocks == 0;
}

// Numbers
// -------------------------------------------------------------------------------------------

TEST(FormatWriteArray, CommaStandsBetweenElementsOnly) {
    const std::array<std::int32_t, 3> values = {1, 2, 3};
    EXPECT_EQ(Written("%,3d", values.data()), "1,2,3");
    EXPECT_EQ(Written("%,1d", values.data()), "1");
    EXPECT_EQ(Written("%,0d", values.data()), "");
}

TEST(FormatWriteArray, NamedSeparators) {
    const std::array<std::int32_t, 2> values = {1, 2};
    EXPECT_EQ(Written("%(;)2ld", values.data()), "1;2");
    EXPECT_EQ(Written("%(:)2d", values.data()), "1:2");
    EXPECT_EQ(Written("%(,)2d", values.data()), "1,2");
    EXPECT_EQ(Written("%(s)2d", values.data()), "1 2");
    EXPECT_EQ(Written("%(t)2d", values.data()), "1\t2");
    EXPECT_EQ(Written("%(n)2d", values.data()), "1\n2");
    EXPECT_EQ(Written("%(r)2d", values.data()), "1\r2");
}

TEST(FormatWriteArray, ALineFeedAsSeparatorDoesNotFlush) {
    const std::array<std::int32_t, 2> values = {1, 2};
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "%(n)2d", values.data()), S_OK);
    EXPECT_TRUE(buffer.Flushed().empty());
}

TEST(FormatWriteArray, ElementSizesByTheirLetters) {
    const std::array<std::uint8_t, 2> bytes = {1, 255};
    const std::array<std::int16_t, 2> shorts = {-1, 300};
    const std::array<std::int64_t, 2> longs = {-5'000'000'000, 1};
    EXPECT_EQ(Written("%,2bd", bytes.data()), "1,255");
    EXPECT_EQ(Written("%,2hd", shorts.data()), "-1,300");
    EXPECT_EQ(Written("%,2hu", shorts.data()), "65535,300");
    EXPECT_EQ(Written("%,2Id", longs.data()), "-5000000000,1");
}

TEST(FormatWriteArray, RealElementsAreSingleWithoutALetterAndDoubleWithOne) {
    const std::array<float, 2> singles = {0.5F, 0.25F};
    const std::array<double, 2> doubles = {0.1, 1e100};
    EXPECT_EQ(Written("%,2g", singles.data()), "0.5,0.25");
    EXPECT_EQ(Written("%,2lg", doubles.data()), "0.1,1e+100");
    EXPECT_EQ(Written("%.1,2Lf", doubles.data()).substr(0, 5), "0.1,1");
}

TEST(FormatWriteArray, EachElementHasTheWidthAndTheForm) {
    const std::array<std::int32_t, 3> values = {1, 20, 255};
    EXPECT_EQ(Written("%4,3d", values.data()), "   1,  20, 255");
    EXPECT_EQ(Written("%-4.2,3d|", values.data()), "01  ,20  ,255 |");
    EXPECT_EQ(Written("%@H,3d", values.data()), "#H1,#H14,#HFF");
}

TEST(FormatWriteArray, CountFromTheArgumentsComesBehindTheWidth) {
    const std::array<std::int32_t, 3> values = {1, 2, 3};
    EXPECT_EQ(Written("%*,*d", 2, 3, values.data()), " 1, 2, 3");
}

TEST(FormatWriteArray, APlainArrayNeedsACount) {
    const std::array<std::int32_t, 3> values = {1, 2, 3};
    EXPECT_EQ(WriteStatus("%,d", values.data()), E_UNEXPECTED);
    EXPECT_EQ(WriteStatus("%,*d", -1, values.data()), E_UNEXPECTED);
}

TEST(FormatWriteArray, ANullArrayIsInvalid) {
    EXPECT_EQ(WriteStatus("%,3d", nullptr), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%,0d", nullptr), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%,$Sd", nullptr), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%,2s", nullptr), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%{Mode},2s", nullptr), E_INVALIDARG);
}

TEST(FormatWriteArray, VariantArraysGiveAllTheirElementsOrFewer) {
    const SafeArrayPtr longs = MakeArray<LONG>({7, 8, 9});
    EXPECT_EQ(Written("%,$Sd", longs.Get()), "7,8,9");
    EXPECT_EQ(Written("%,2$Sd", longs.Get()), "7,8");
    EXPECT_EQ(Written("%,5$Sd", longs.Get()), "7,8,9");
    EXPECT_EQ(Written("%,0$Sd", longs.Get()), "7,8,9");
    const SafeArrayPtr doubles = MakeArray<DOUBLE>({0.5, 1.5});
    EXPECT_EQ(Written("%(;)$Slg", doubles.Get()), "0.5;1.5");
    EXPECT_TRUE(IsUnlocked(longs));
}

TEST(FormatWriteArray, AnEmptyVariantArrayWritesNothing) {
    const SafeArrayPtr empty = MakeArray<LONG>({});
    EXPECT_EQ(Written("%,$Sd", empty.Get()), "");
}

TEST(FormatWriteArray, UnfitVariantArraysAreInvalid) {
    const SAFEARRAYBOUND square[] = {{2, 0}, {2, 0}};
    const SafeArrayPtr twoDimensional(SafeArrayCreate(VT_I4, 2, square));
    const SafeArrayPtr fromOne(SafeArrayCreateVector(VT_I4, 1, 2));
    const SafeArrayPtr otherKind = MakeArray<DOUBLE>({1.0});
    EXPECT_EQ(WriteStatus("%,$Sd", twoDimensional.Get()), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%,$Sd", fromOne.Get()), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%,$Sd", otherKind.Get()), E_INVALIDARG);
    EXPECT_EQ(WriteStatus("%,$S$Bs", otherKind.Get()), E_INVALIDARG);
}

TEST(FormatWriteArray, AFailureLeavesTheArrayUnlocked) {
    const SafeArrayPtr longs = MakeArray<LONG>({7, 8, 9});
    for (int write = 1; write <= 5; ++write) {
        MemoryBuffer buffer;
        buffer.FailWrite(write);
        EXPECT_EQ(WriteTo(buffer, "%,$Sd", longs.Get()), kFakeWriteFailure);
        EXPECT_EQ(buffer.Written(),
                  std::string("7,8,9").substr(0, static_cast<std::size_t>(write - 1)));
        EXPECT_TRUE(IsUnlocked(longs));
    }
}

// Texts
// ---------------------------------------------------------------------------------------------

TEST(FormatWriteArray, TextsOfEachKind) {
    const std::array<const char*, 2> narrow = {"a", "bc"};
    const std::array<std::string, 2> dynamic = {"d", "ef"};
    const BstrPtr first(u"g");
    const BstrPtr second(u"hi");
    const std::array<BSTR, 2> wide = {first.Get(), second.Get()};
    EXPECT_EQ(Written("%,2s", narrow.data()), "a,bc");
    EXPECT_EQ(Written("%(;)2$Cqs", dynamic.data()), "'d';'ef'");
    EXPECT_EQ(Written("%3,2$Bs", wide.data()), "  g, hi");
}

TEST(FormatWriteArray, AVariantArrayOfTexts) {
    const SafeArrayPtr texts = MakeTexts({u"CH1", u"MATH2"});
    EXPECT_EQ(Written("%,$S$BQs", texts.Get()), "\"CH1\",\"MATH2\"");
    EXPECT_EQ(Written("%,1$S$Bs", texts.Get()), "CH1");
}

TEST(FormatWriteArray, AVariantArrayOfTextsHasToBeAnnouncedAsWide) {
    const SafeArrayPtr texts = MakeTexts({u"CH1"});
    EXPECT_EQ(WriteStatus("%,$Ss", texts.Get()), E_UNEXPECTED);
    EXPECT_EQ(WriteStatus("%,$S$Cs", texts.Get()), E_UNEXPECTED);
}

TEST(FormatWriteArray, ANullTextAmongOthersIsInvalid) {
    const std::array<const char*, 2> narrow = {"a", nullptr};
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "%,2s", narrow.data()), E_INVALIDARG);
    EXPECT_EQ(buffer.Written(), "a,");
}

// Enumerations
// --------------------------------------------------------------------------------------

TEST(FormatWriteArray, Enumerations) {
    const std::array<std::int32_t, 2> modes = {2, 0};
    EXPECT_EQ(Written("%{Mode},2s", modes.data()), "HIRES,SAMPLE");
    EXPECT_EQ(Written("%{Mode}(s)*Qs", 2, modes.data()), "\"HIRES\" \"SAMPLE\"");
    const SafeArrayPtr variant = MakeArray<LONG>({1, 2});
    EXPECT_EQ(Written("%{Mode},$Ss", variant.Get()), "PEAKDETECT,HIRES");
}

TEST(FormatWriteArray, BooleanEnumerationsHave16BitElements) {
    const std::array<std::int16_t, 3> values = {-1, 0, 1};
    EXPECT_EQ(Written("%{VARIANT_BOOL},3s", values.data()), "ON,OFF,ON");
    SafeArrayPtr variant(SafeArrayCreateVector(VT_BOOL, 0, 1));
    EXPECT_EQ(Written("%{VARIANT_BOOL},$Ss", variant.Get()), "OFF");
    const SafeArrayPtr longs = MakeArray<LONG>({1});
    EXPECT_EQ(WriteStatus("%{VARIANT_BOOL},$Ss", longs.Get()), E_INVALIDARG);
}

TEST(FormatWriteArray, AnUnknownEnumerationValueEndsTheArray) {
    const std::array<std::int32_t, 2> modes = {2, 7};
    MemoryBuffer buffer;
    EXPECT_EQ(WriteTo(buffer, "%{Mode},2s", modes.data()), kFakeUnknownValue);
    EXPECT_EQ(buffer.Written(), "HIRES,");
}

}  // namespace
}  // namespace kestrion
