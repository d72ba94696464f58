#include "kestrion/platform/variant.h"

#include <gtest/gtest.h>

namespace kestrion {
namespace {

TEST(Variant, CopyDuplicatesTexts) {
    VARIANT text{};
    text.vt = VT_BSTR;
    text.bstrVal = MakeBstr(std::u16string_view(u"abc"));
    VARIANT copy{};
    ASSERT_EQ(VariantCopy(&copy, &text), S_OK);
    EXPECT_NE(copy.bstrVal, text.bstrVal);
    EXPECT_EQ(View(copy.bstrVal), u"abc");
    EXPECT_EQ(VariantClear(&text), S_OK);
    EXPECT_EQ(text.vt, VT_EMPTY);
    EXPECT_EQ(VariantClear(&copy), S_OK);
}

TEST(Variant, CopyDuplicatesArraysOfTwoDimensions) {
    const SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 5}};
    VARIANT array{};
    array.vt = VT_ARRAY | VT_R8;
    array.parray = SafeArrayCreate(VT_R8, 2, bounds);
    static_cast<double*>(array.parray->pvData)[3] = 2.5;
    VARIANT copy{};
    ASSERT_EQ(VariantCopy(&copy, &array), S_OK);
    EXPECT_NE(copy.parray, array.parray);
    EXPECT_EQ(static_cast<double*>(copy.parray->pvData)[3], 2.5);
    LONG lower = 0;
    EXPECT_EQ(SafeArrayGetLBound(copy.parray, 2, &lower), S_OK);
    EXPECT_EQ(lower, 5);
    EXPECT_EQ(VariantClear(&array), S_OK);
    EXPECT_EQ(VariantClear(&copy), S_OK);
}

TEST(Variant, CopyOntoATextFreesIt) {
    VARIANT target{};
    target.vt = VT_BSTR;
    target.bstrVal = MakeBstr(std::u16string_view(u"old"));
    VARIANT number{};
    number.vt = VT_I4;
    number.lVal = 42;
    ASSERT_EQ(VariantCopy(&target, &number), S_OK);
    EXPECT_EQ(target.vt, VT_I4);
    EXPECT_EQ(target.lVal, 42);
}

TEST(Variant, AReferenceIsDroppedAndNotFreed) {
    BstrPtr owned(std::u16string_view(u"kept"));
    BSTR place = owned.Get();
    VARIANT reference{};
    reference.vt = VT_BSTR | VT_BYREF;
    reference.byref = &place;
    EXPECT_EQ(VariantClear(&reference), S_OK);
    EXPECT_EQ(owned.View(), u"kept");
}

TEST(Variant, NullIsRefused) {
    VARIANT value{};
    EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG);
    EXPECT_EQ(VariantCopy(nullptr, &value), E_INVALIDARG);
    EXPECT_EQ(VariantCopy(&value, nullptr), E_INVALIDARG);
}

}  // namespace
}  // namespace kestrion
