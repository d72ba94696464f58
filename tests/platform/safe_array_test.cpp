#include "kestrion/platform/safe_array.h"

#include <gtest/gtest.h>

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/variant.h"

namespace kestrion {
namespace {

TEST(SafeArray, VectorIsZeroedAndKnowsItsBounds) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_R8, 0, 4));
    LONG lower = 7;
    LONG upper = 7;
    VARTYPE type = 0;
    EXPECT_EQ(SafeArrayGetDim(array.Get()), 1U);
    EXPECT_EQ(SafeArrayGetLBound(array.Get(), 1, &lower), S_OK);
    EXPECT_EQ(SafeArrayGetUBound(array.Get(), 1, &upper), S_OK);
    EXPECT_EQ(SafeArrayGetVartype(array.Get(), &type), S_OK);
    EXPECT_EQ(lower, 0);
    EXPECT_EQ(upper, 3);
    EXPECT_EQ(type, VT_R8);
    EXPECT_EQ(array.Elements<double>().size(), 4U);
    EXPECT_EQ(array.Elements<double>()[3], 0.0);
    EXPECT_TRUE(array.Elements<LONG>().empty());
}

TEST(SafeArray, TwoDimensionsVaryTheFirstIndexFastest) {
    const SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 10}};
    const SafeArrayPtr array(SafeArrayCreate(VT_I4, 2, bounds));
    for (LONG column = 10; column < 13; ++column) {
        for (LONG row = 0; row < 2; ++row) {
            const LONG indices[] = {row, column};
            const LONG value = 100 * column + row;
            ASSERT_EQ(SafeArrayPutElement(array.Get(), indices, &value), S_OK);
        }
    }
    const auto* stored = static_cast<const LONG*>(array.Get()->pvData);
    EXPECT_EQ(stored[0], 1000);
    EXPECT_EQ(stored[1], 1001);
    EXPECT_EQ(stored[2], 1100);
    EXPECT_EQ(stored[5], 1201);
    LONG bound = 0;
    EXPECT_EQ(SafeArrayGetLBound(array.Get(), 2, &bound), S_OK);
    EXPECT_EQ(bound, 10);
    EXPECT_EQ(SafeArrayGetUBound(array.Get(), 1, &bound), S_OK);
    EXPECT_EQ(bound, 1);
    EXPECT_TRUE(array.Elements<LONG>().empty());
}

TEST(SafeArray, RefusesWhatItCannotHold) {
    const SAFEARRAYBOUND bound{1, 0};
    EXPECT_EQ(SafeArrayCreate(VT_EMPTY, 1, &bound), nullptr);
    EXPECT_EQ(SafeArrayCreate(VT_R8, 0, &bound), nullptr);
    EXPECT_EQ(SafeArrayCreate(VT_R8, 3, &bound), nullptr);
    EXPECT_EQ(SafeArrayCreate(VT_R8, 1, nullptr), nullptr);
}

TEST(SafeArray, IndicesOutsideTheBoundsAreRefused) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_I2, 1, 2));
    SHORT value = 5;
    LONG index = 0;
    EXPECT_EQ(SafeArrayPutElement(array.Get(), &index, &value), DISP_E_BADINDEX);
    index = 3;
    EXPECT_EQ(SafeArrayGetElement(array.Get(), &index, &value), DISP_E_BADINDEX);
    LONG bound = 0;
    EXPECT_EQ(SafeArrayGetLBound(array.Get(), 0, &bound), DISP_E_BADINDEX);
    EXPECT_EQ(SafeArrayGetUBound(array.Get(), 2, &bound), DISP_E_BADINDEX);
    EXPECT_EQ(SafeArrayGetUBound(nullptr, 1, &bound), E_INVALIDARG);
}

TEST(SafeArray, TextsAreCopiedInAndOut) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_BSTR, 0, 1));
    const LONG index = 0;
    const BstrPtr first(std::u16string_view(u"one"));
    const BstrPtr second(std::u16string_view(u"two"));
    ASSERT_EQ(SafeArrayPutElement(array.Get(), &index, first.Get()), S_OK);
    ASSERT_EQ(SafeArrayPutElement(array.Get(), &index, second.Get()), S_OK);
    BstrPtr out;
    ASSERT_EQ(SafeArrayGetElement(array.Get(), &index, out.Out()), S_OK);
    EXPECT_EQ(out.View(), u"two");
    EXPECT_NE(out.Get(), second.Get());
}

TEST(SafeArray, RedimKeepsWhatFitsAndZeroesTheRest) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_I4, 0, 2));
    array.Elements<LONG>()[0] = 11;
    array.Elements<LONG>()[1] = 22;
    const SAFEARRAYBOUND larger{4, 0};
    ASSERT_EQ(SafeArrayRedim(array.Get(), &larger), S_OK);
    EXPECT_EQ(array.Elements<LONG>().size(), 4U);
    EXPECT_EQ(array.Elements<LONG>()[1], 22);
    EXPECT_EQ(array.Elements<LONG>()[3], 0);
    const SAFEARRAYBOUND smaller{1, 0};
    ASSERT_EQ(SafeArrayRedim(array.Get(), &smaller), S_OK);
    EXPECT_EQ(array.Elements<LONG>().size(), 1U);
    EXPECT_EQ(array.Elements<LONG>()[0], 11);
}

TEST(SafeArray, ALockedArrayIsNeitherDestroyedNorResized) {
    SafeArrayPtr array(SafeArrayCreateVector(VT_UI1, 0, 2));
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array.Get(), &data), S_OK);
    EXPECT_EQ(data, array.Get()->pvData);
    const SAFEARRAYBOUND bound{1, 0};
    EXPECT_EQ(SafeArrayRedim(array.Get(), &bound), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayDestroy(array.Get()), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayUnaccessData(array.Get()), S_OK);
    EXPECT_EQ(SafeArrayUnaccessData(array.Get()), E_UNEXPECTED);
}

TEST(SafeArray, AnEmptyVectorIsAnArray) {
    const SafeArrayPtr array(SafeArrayCreateVector(VT_R8, 0, 0));
    ASSERT_TRUE(array);
    LONG upper = 0;
    EXPECT_EQ(SafeArrayGetUBound(array.Get(), 1, &upper), S_OK);
    EXPECT_EQ(upper, -1);
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
}

}  // namespace
}  // namespace kestrion
