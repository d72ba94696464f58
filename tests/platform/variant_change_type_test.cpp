#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "kestrion/platform/variant.h"

namespace kestrion {
namespace {

VariantPtr Integer(LONG value) {
    VariantPtr variant;
    VARIANT* out = variant.Out();
    out->vt = VT_I4;
    out->lVal = value;
    return variant;
}

VariantPtr Real(double value) {
    VariantPtr variant;
    VARIANT* out = variant.Out();
    out->vt = VT_R8;
    out->dblVal = value;
    return variant;
}

VariantPtr Flag(bool value) {
    VariantPtr variant;
    VARIANT* out = variant.Out();
    out->vt = VT_BOOL;
    out->boolVal = ToVariantBool(value);
    return variant;
}

VariantPtr Text(std::string_view text) {
    VariantPtr variant;
    VARIANT* out = variant.Out();
    out->vt = VT_BSTR;
    out->bstrVal = MakeBstr(text);
    return variant;
}

// What a value changes to; the status has to be S_OK.
VariantPtr Changed(const VariantPtr& source, VARTYPE type, USHORT flags = 0) {
    VariantPtr target;
    EXPECT_EQ(VariantChangeType(target.Out(), source.Get(), flags, type), S_OK);
    EXPECT_EQ(target->vt, type);
    return target;
}

// The status of a change that has to fail and leave the target alone.
HRESULT Refused(const VariantPtr& source, VARTYPE type) {
    VARIANT target{};
    target.vt = VT_I4;
    target.lVal = 4711;
    const HRESULT status = VariantChangeType(&target, source.Get(), 0, type);
    EXPECT_EQ(target.vt, VT_I4);
    EXPECT_EQ(target.lVal, 4711);
    return status;
}

std::string TextOf(const VariantPtr& source, USHORT flags = 0) {
    return ToUtf8(Changed(source, VT_BSTR, flags)->bstrVal);
}

TEST(VariantChangeTypeTest, ARealNumberIsRoundedToTheNearestAndToTheEvenOfTwo) {
    EXPECT_EQ(Changed(Real(2.4), VT_I4)->lVal, 2);
    EXPECT_EQ(Changed(Real(2.5), VT_I4)->lVal, 2);
    EXPECT_EQ(Changed(Real(3.5), VT_I4)->lVal, 4);
    EXPECT_EQ(Changed(Real(-2.5), VT_I2)->iVal, -2);
    EXPECT_EQ(Changed(Text("1.6"), VT_I4)->lVal, 2);
}

TEST(VariantChangeTypeTest, ANumberOtherThanZeroIsTrue) {
    EXPECT_EQ(Changed(Integer(0), VT_BOOL)->boolVal, VARIANT_FALSE);
    EXPECT_EQ(Changed(Integer(2), VT_BOOL)->boolVal, VARIANT_TRUE);
    EXPECT_EQ(Changed(Real(0.25), VT_BOOL)->boolVal, VARIANT_TRUE);
    EXPECT_EQ(Changed(Text("0.0"), VT_BOOL)->boolVal, VARIANT_FALSE);
    EXPECT_EQ(Changed(Text("-3"), VT_BOOL)->boolVal, VARIANT_TRUE);
}

TEST(VariantChangeTypeTest, TrueIsMinusOne) {
    EXPECT_EQ(Changed(Flag(true), VT_I4)->lVal, -1);
    EXPECT_EQ(Changed(Flag(true), VT_R8)->dblVal, -1.0);
    EXPECT_EQ(Changed(Flag(false), VT_I2)->iVal, 0);
    EXPECT_EQ(TextOf(Flag(true)), "-1");
    EXPECT_EQ(TextOf(Flag(false)), "0");
}

TEST(VariantChangeTypeTest, ABooleanInWords) {
    EXPECT_EQ(TextOf(Flag(true), VARIANT_ALPHABOOL), "True");
    EXPECT_EQ(TextOf(Flag(false), VARIANT_ALPHABOOL), "False");
    EXPECT_EQ(Changed(Text("TRUE"), VT_BOOL)->boolVal, VARIANT_TRUE);
    EXPECT_EQ(Changed(Text(" false "), VT_BOOL)->boolVal, VARIANT_FALSE);
}

TEST(VariantChangeTypeTest, ATextHasToBeTheWholeOfANumber) {
    EXPECT_EQ(Changed(Text(" -12 "), VT_I4)->lVal, -12);
    EXPECT_EQ(Changed(Text("+7"), VT_I4)->lVal, 7);
    EXPECT_EQ(Changed(Text("2.5E-3"), VT_R8)->dblVal, 2.5e-3);
    for (const char* text : {"", " ", "abc", "12abc", "1,5", "inf", "nan", "+-1", "1 2", "0x10"}) {
        EXPECT_EQ(Refused(Text(text), VT_R8), DISP_E_TYPEMISMATCH) << text;
        EXPECT_EQ(Refused(Text(text), VT_I2), DISP_E_TYPEMISMATCH) << text;
        EXPECT_EQ(Refused(Text(text), VT_BOOL), DISP_E_TYPEMISMATCH) << text;
    }
}

TEST(VariantChangeTypeTest, NumbersInTheirText) {
    EXPECT_EQ(TextOf(Integer(-42)), "-42");
    EXPECT_EQ(TextOf(Real(0.1)), "0.1");
    EXPECT_EQ(TextOf(Real(1.0 / 3.0)), "0.333333333333333");
    EXPECT_EQ(TextOf(Real(1e20)), "1E+20");
    VariantPtr single;
    VARIANT* out = single.Out();
    out->vt = VT_R4;
    out->fltVal = 0.1F;
    EXPECT_EQ(TextOf(single), "0.1");
}

TEST(VariantChangeTypeTest, WhatATypeCannotHoldIsAnOverflow) {
    EXPECT_EQ(Refused(Integer(32768), VT_I2), DISP_E_OVERFLOW);
    EXPECT_EQ(Refused(Integer(-1), VT_UI4), DISP_E_OVERFLOW);
    EXPECT_EQ(Refused(Integer(256), VT_UI1), DISP_E_OVERFLOW);
    EXPECT_EQ(Refused(Integer(128), VT_I1), DISP_E_OVERFLOW);
    EXPECT_EQ(Refused(Real(2147483648.0), VT_I4), DISP_E_OVERFLOW);
    EXPECT_EQ(Refused(Real(9223372036854775808.0), VT_I8), DISP_E_OVERFLOW);
    EXPECT_EQ(Refused(Real(std::numeric_limits<double>::quiet_NaN()), VT_I4), DISP_E_OVERFLOW);
    EXPECT_EQ(Refused(Real(1e39), VT_R4), DISP_E_OVERFLOW);
    EXPECT_EQ(Refused(Text("1e999"), VT_R8), DISP_E_OVERFLOW);
    EXPECT_EQ(Changed(Integer(-128), VT_I1)->bVal, 0x80);
    EXPECT_EQ(Changed(Text("9223372036854775807"), VT_I8)->llVal, 9223372036854775807);
    EXPECT_EQ(Changed(Integer(65535), VT_UI2)->iVal, -1);
}

TEST(VariantChangeTypeTest, EmptyIsNothingOfEveryType) {
    const VariantPtr empty;
    EXPECT_EQ(Changed(empty, VT_I4)->lVal, 0);
    EXPECT_EQ(Changed(empty, VT_R8)->dblVal, 0.0);
    EXPECT_EQ(Changed(empty, VT_BOOL)->boolVal, VARIANT_FALSE);
    EXPECT_EQ(TextOf(empty), "");
}

TEST(VariantChangeTypeTest, OtherTypesDoNotChange) {
    VARIANT null{};
    null.vt = VT_NULL;
    VARIANT target{};
    EXPECT_EQ(VariantChangeType(&target, &null, 0, VT_I4), DISP_E_TYPEMISMATCH);
    VARIANT array{};
    array.vt = VT_ARRAY | VT_I4;
    EXPECT_EQ(VariantChangeType(&target, &array, 0, VT_I4), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Refused(Integer(1), VT_UNKNOWN), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Refused(Integer(1), VT_UI8), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(VariantChangeType(nullptr, &null, 0, VT_I4), E_INVALIDARG);
    EXPECT_EQ(VariantChangeType(&target, nullptr, 0, VT_I4), E_INVALIDARG);
}

TEST(VariantChangeTypeTest, AValueChangesInItsPlace) {
    VARIANT place{};
    place.vt = VT_BSTR;
    place.bstrVal = MakeBstr(std::string_view("12"));
    EXPECT_EQ(VariantChangeType(&place, &place, 0, VT_I4), S_OK);
    EXPECT_EQ(place.vt, VT_I4);
    EXPECT_EQ(place.lVal, 12);
}

TEST(VariantChangeTypeTest, TheSameTypeIsACopy) {
    const VariantPtr text = Text("abc");
    const VariantPtr copy = Changed(text, VT_BSTR);
    EXPECT_NE(copy->bstrVal, text->bstrVal);
    EXPECT_EQ(ToUtf8(copy->bstrVal), "abc");
}

}  // namespace
}  // namespace kestrion
