#include "platform/text.h"

#include <gtest/gtest.h>

namespace kestrion {
namespace {

TEST(Text, Utf8AndUtf16RoundTrip) {
    EXPECT_EQ(Utf8ToUtf16("A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), u"A\u00E9\u20AC\U0001F600");
    EXPECT_EQ(Utf16ToUtf8(u"A\u00E9\u20AC\U0001F600"), "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(Text, MalformedUtf8BecomesOneReplacementForEachBadByte) {
    EXPECT_EQ(Utf8ToUtf16("a\xFFz"), u"a\uFFFDz");
    EXPECT_EQ(Utf8ToUtf16("\xC0\x80"), u"\uFFFD\uFFFD");            // overlong zero
    EXPECT_EQ(Utf8ToUtf16("\xE2\x82"), u"\uFFFD\uFFFD");            // cut short
    EXPECT_EQ(Utf8ToUtf16("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");  // a surrogate
    EXPECT_EQ(Utf8ToUtf16("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(Text, UnpairedSurrogateBecomesReplacement) {
    const char16_t high[] = {u'a', 0xD83D, u'b', 0};
    EXPECT_EQ(Utf16ToUtf8(high),
              "a\xEF\xBF\xBD"
              "b");
    const char16_t low[] = {0xDE00, 0};
    EXPECT_EQ(Utf16ToUtf8(low), "\xEF\xBF\xBD");
    const char16_t last[] = {0xD83D, 0};
    EXPECT_EQ(Utf16ToUtf8(last), "\xEF\xBF\xBD");
}

TEST(Text, NoBreakSpaceIsTheByteA0) {
    EXPECT_EQ(NarrowToBytes(u"BYT_NR\u00A01"),
              "BYT_NR\xA0"
              "1");
    EXPECT_EQ(NarrowToBytes(u"\u20AC"), "?");
    EXPECT_EQ(WidenBytes("\xA0\xFF"), u"\u00A0\u00FF");
}

TEST(Text, TrimTakesEveryKindOfWhiteSpace) {
    EXPECT_EQ(Trim(" \t\r\n\v\f DC \n"), "DC");
    EXPECT_EQ(Trim(" \n"), "");
    EXPECT_EQ(Trim(""), "");
}

TEST(Text, CaseFoldingCoversAsciiOnly) {
    EXPECT_TRUE(EqualsIgnoreCase("ChannelCOUPLING", "channelcoupling"));
    EXPECT_FALSE(EqualsIgnoreCase("\xC9", "\xE9"));
    EXPECT_FALSE(EqualsIgnoreCase("[", "{"));
    EXPECT_FALSE(EqualsIgnoreCase("a", "ab"));
    EXPECT_EQ(ToLowerAscii("AbZ[1\xC9"), "abz[1\xC9");
    EXPECT_EQ(ToUpperAscii("AbZ{1\xE9"), "ABZ{1\xE9");
}

}  // namespace
}  // namespace kestrion
