#include "kestrion/platform/bstr.h"

#include <gtest/gtest.h>

namespace kestrion {
namespace {

TEST(Bstr, CountsItsUnitsAndEndsInZero) {
    BSTR text = SysAllocString(u"scope");
    EXPECT_EQ(SysStringLen(text), 5U);
    EXPECT_EQ(SysStringByteLen(text), 10U);
    EXPECT_EQ(text[5], u'\0');
    SysFreeString(text);
}

TEST(Bstr, HoldsZeroUnits) {
    const BstrPtr text(std::u16string_view(u"a\0b", 3));
    EXPECT_EQ(SysStringLen(text.Get()), 3U);
    EXPECT_EQ(text.View(), std::u16string_view(u"a\0b", 3));
}

TEST(Bstr, NullIsAnEmptyText) {
    EXPECT_EQ(SysStringLen(nullptr), 0U);
    EXPECT_EQ(SysStringByteLen(nullptr), 0U);
    EXPECT_EQ(View(nullptr), u"");
    EXPECT_EQ(ToUtf8(nullptr), "");
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    SysFreeString(nullptr);
}

TEST(Bstr, AllocatesZeroedRoomWithoutASource) {
    BSTR text = SysAllocStringLen(nullptr, 3);
    EXPECT_EQ(View(text), std::u16string_view(u"\0\0\0", 3));
    SysFreeString(text);
}

TEST(Bstr, OddByteLengthIsKept) {
    BSTR text = SysAllocStringByteLen("abc", 3);
    EXPECT_EQ(SysStringByteLen(text), 3U);
    EXPECT_EQ(SysStringLen(text), 1U);
    SysFreeString(text);
}

TEST(Bstr, OwnerConvertsFromUtf8AndFreesOnReplacement) {
    BstrPtr text(std::string_view("\xC2\xB5s"));
    EXPECT_EQ(text.View(), u"\u00B5s");
    EXPECT_EQ(text.Utf8(), "\xC2\xB5s");
    *text.Out() = MakeBstr(std::string_view("second"));
    EXPECT_EQ(text.Utf8(), "second");
}

}  // namespace
}  // namespace kestrion
