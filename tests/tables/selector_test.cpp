#include "tables/selector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto kBadlyFormed = static_cast<std::int32_t>(0xBFFA0066U);
constexpr auto kBadRange = static_cast<std::int32_t>(0xBFFA0064U);
constexpr auto kBadLevelCount = static_cast<std::int32_t>(0xBFFA0063U);

// The selectors as texts, levels joined by ":".
std::vector<std::string> Parsed(std::string_view text) {
    CRepCapSelector selector(text);
    EXPECT_EQ(selector.Parse(true), 0) << text;
    std::vector<std::string> joined;
    for (const CRepCapSelector::Path& path : selector.Selectors()) {
        std::string& last = joined.emplace_back();
        for (std::size_t i = 0; i < path.size(); ++i) {
            last.append(i == 0 ? "" : ":").append(path[i]);
        }
    }
    return joined;
}

std::int32_t StatusOf(std::string_view text, bool allowRanges = true) {
    CRepCapSelector selector(text);
    const std::int32_t status = selector.Parse(allowRanges);
    if (status != 0) {
        EXPECT_THAT(selector.Selectors(), IsEmpty()) << text;
    }
    return status;
}

TEST(SelectorTest, AnEmptyTextIsOneLevelWithOneEmptyName) {
    CRepCapSelector selector("");
    EXPECT_EQ(selector.Parse(false), 0);
    ASSERT_THAT(selector.Selectors(), SizeIs(1));
    EXPECT_THAT(selector.Selectors()[0], ElementsAre(""));
}

TEST(SelectorTest, ReadsOneName) {
    EXPECT_THAT(Parsed("Channel1"), ElementsAre("Channel1"));
    EXPECT_THAT(Parsed("A"), ElementsAre("A"));
    EXPECT_THAT(Parsed("1"), ElementsAre("1"));
    EXPECT_THAT(Parsed("Channel!!Ch_1x"), ElementsAre("Channel!!Ch_1x"));
}

TEST(SelectorTest, ReadsABracketedList) {
    EXPECT_THAT(Parsed("[Channel1,Channel3]"), ElementsAre("Channel1", "Channel3"));
    EXPECT_THAT(Parsed("[Channel1]"), ElementsAre("Channel1"));
    EXPECT_THAT(Parsed(" [ Channel1 , Channel3 ] "), ElementsAre("Channel1", "Channel3"));
}

TEST(SelectorTest, ReadsARangeWithOrWithoutTheSecondPrefix) {
    EXPECT_THAT(Parsed("Channel1-3"), ElementsAre("Channel1", "Channel2", "Channel3"));
    EXPECT_THAT(Parsed("Channel1-Channel3"), ElementsAre("Channel1", "Channel2", "Channel3"));
    EXPECT_THAT(Parsed("Channel2-Channel2"), ElementsAre("Channel2"));
    EXPECT_THAT(Parsed("[Channel1-2,Channel4]"), ElementsAre("Channel1", "Channel2", "Channel4"));
}

TEST(SelectorTest, ARangeLosesLeadingZeros) {
    EXPECT_THAT(Parsed("Ch01-Ch03"), ElementsAre("Ch1", "Ch2", "Ch3"));
}

TEST(SelectorTest, TheSecondPrefixNeedsOnlyBeginWithTheFirst) {
    EXPECT_THAT(Parsed("Ch1-Channel2"), ElementsAre("Ch1", "Ch2"));
}

TEST(SelectorTest, ATopLevelListIsOneSelectorForEachItem) {
    CRepCapSelector selector("Channel1,Channel2");
    EXPECT_EQ(selector.Parse(true), 0);
    ASSERT_THAT(selector.Selectors(), SizeIs(2));
    EXPECT_THAT(selector.Selectors()[0], ElementsAre("Channel1"));
    EXPECT_THAT(selector.Selectors()[1], ElementsAre("Channel2"));
}

TEST(SelectorTest, AListNeedsNoRangesToBeAllowed) {
    EXPECT_EQ(StatusOf("Channel1,Channel2", false), 0);
    EXPECT_EQ(StatusOf("[Channel1,Channel2]", false), 0);
}

TEST(SelectorTest, MultipliesTheLevelsOutTheLastOneChangingFastest) {
    EXPECT_THAT(Parsed("A:[Channel1-2]"), ElementsAre("A:Channel1", "A:Channel2"));
    EXPECT_THAT(Parsed("[A,B]:[C,D]"), ElementsAre("A:C", "A:D", "B:C", "B:D"));
    EXPECT_THAT(Parsed("[A,B]:C:[D,E]"), ElementsAre("A:C:D", "A:C:E", "B:C:D", "B:C:E"));
}

TEST(SelectorTest, KeepsTheLevelsOfASelectorApart) {
    CRepCapSelector selector(" A : Channel1 ");
    EXPECT_EQ(selector.Parse(true), 0);
    ASSERT_THAT(selector.Selectors(), SizeIs(1));
    EXPECT_THAT(selector.Selectors()[0], ElementsAre("A", "Channel1"));
}

TEST(SelectorTest, AFurtherItemOutsideOfBracketsBeginsASelector) {
    EXPECT_THAT(Parsed("A:C,B:D"), ElementsAre("A:C", "B:D"));
}

TEST(SelectorTest, BlanksMayStandAroundNamesAndTheDash) {
    EXPECT_THAT(Parsed("Ch_1 "), ElementsAre("Ch_1"));
    EXPECT_THAT(Parsed(" Ch_1"), ElementsAre("Ch_1"));
    EXPECT_THAT(Parsed("\tCh_1 ,\t Ch_2"), ElementsAre("Ch_1", "Ch_2"));
    EXPECT_THAT(Parsed("Ch1 - Ch2"), ElementsAre("Ch1", "Ch2"));
    EXPECT_THAT(Parsed(" Ch1\t-\t2 "), ElementsAre("Ch1", "Ch2"));
    EXPECT_EQ(StatusOf("Ch 1"), kBadlyFormed);
    EXPECT_EQ(StatusOf("Ch 1-Ch 2"), kBadlyFormed);
    EXPECT_EQ(StatusOf("[A,\nB]"), kBadlyFormed);
}

TEST(SelectorTest, WhiteSpaceOfAnyKindMayStandAroundALevel) {
    EXPECT_THAT(Parsed("\r\nA\v:\fChannel1\n"), ElementsAre("A:Channel1"));
    EXPECT_THAT(Parsed("\n[A,B]\n"), ElementsAre("A", "B"));
    EXPECT_THAT(Parsed("\nA,B\n"), ElementsAre("A", "B"));
    EXPECT_EQ(StatusOf("A\n,B"), kBadlyFormed) << "only blanks and tabs stand around an item";
    EXPECT_EQ(StatusOf("[\nA]"), kBadlyFormed);
    EXPECT_EQ(StatusOf("\n"), kBadlyFormed);
}

TEST(SelectorTest, APrefixHasLettersUnderscoresAndExclamationMarks) {
    EXPECT_THAT(Parsed("Channel!!Ch_1-2"), ElementsAre("Channel!!Ch_1", "Channel!!Ch_2"));
    EXPECT_THAT(Parsed("_0-_1"), ElementsAre("_0", "_1"));
    EXPECT_THAT(Parsed("!8-!9"), ElementsAre("!8", "!9"));
    EXPECT_EQ(StatusOf("A1B1-2"), kBadlyFormed) << "a digit ends the prefix";
}

TEST(SelectorTest, EachItemOfATopLevelListMayBeARange) {
    EXPECT_THAT(Parsed("Channel1-2,Channel4"), ElementsAre("Channel1", "Channel2", "Channel4"));
    EXPECT_THAT(Parsed("A:C1-2,B:C1"), ElementsAre("A:C1", "A:C2", "B:C1"));
    EXPECT_EQ(StatusOf("Channel4,Channel1-2", false), kBadlyFormed);
    EXPECT_EQ(StatusOf("[Channel4,Channel1-2]", false), kBadlyFormed);
}

TEST(SelectorTest, ARangeThatRunsBackwardsIsInvalid) {
    EXPECT_EQ(StatusOf("Channel3-1"), kBadRange);
    EXPECT_EQ(StatusOf("Channel3-Channel1"), kBadRange);
}

TEST(SelectorTest, ARangeOverTwoPrefixesIsInvalid) {
    EXPECT_EQ(StatusOf("Channel1-Math3"), kBadRange);
    EXPECT_EQ(StatusOf("Channel1-Ch3"), kBadRange);
    EXPECT_EQ(StatusOf("Channel1-channel3"), kBadRange);
}

TEST(SelectorTest, ARangeWhereNoneIsAllowedIsBadlyFormed) {
    EXPECT_EQ(StatusOf("Channel1-3", false), kBadlyFormed);
    EXPECT_EQ(StatusOf("Channel1-Channel3", false), kBadlyFormed);
    EXPECT_EQ(StatusOf("Channel3-1", false), kBadlyFormed);
}

TEST(SelectorTest, UnfinishedBracketsAreBadlyFormed) {
    for (const char* text :
         {"[Channel1", "Channel1]", "[", "]", "[]", "[[A]]", "[A]B", "[A],B", "[A:B]", "A:[B"}) {
        EXPECT_EQ(StatusOf(text), kBadlyFormed) << text;
    }
}

TEST(SelectorTest, MissingItemsAreBadlyFormed) {
    for (const char* text : {" ", ",", "A,", ",A", "A,,B", ":", "A:", ":A", "A::B", "[A,]"}) {
        EXPECT_EQ(StatusOf(text), kBadlyFormed) << text;
    }
}

TEST(SelectorTest, OtherCharactersAreBadlyFormed) {
    for (const char* text : {"Ch.1", "Ch*", "Ch\xC3\xA4", "Ch1-", "-1", "1-3", "Ch-3", "Ch1-Ch",
                             "Ch1--Ch2", "Ch1-Ch2-Ch3", "Ch1-Ch2x", "Ch1x-Ch2"}) {
        EXPECT_EQ(StatusOf(text), kBadlyFormed) << text;
    }
    EXPECT_EQ(StatusOf(std::string_view("Ch\0001", 4)), kBadlyFormed);
}

TEST(SelectorTest, ARepeatIsBadlyFormed) {
    EXPECT_EQ(StatusOf("Channel1,Channel1"), kBadlyFormed);
    EXPECT_EQ(StatusOf("[Channel1,Channel1]"), kBadlyFormed);
    EXPECT_EQ(StatusOf("Channel1-3,Channel2"), kBadlyFormed);
    EXPECT_EQ(StatusOf("Channel1,channel1"), 0) << "names compare exactly";
}

TEST(SelectorTest, SelectorsOfDifferentDepthsAreInconsistent) {
    EXPECT_EQ(StatusOf("A:Channel1,B"), kBadLevelCount);
    EXPECT_EQ(StatusOf("A,B:C"), kBadLevelCount);
    EXPECT_EQ(StatusOf("A:B,C,D:E"), kBadLevelCount) << "found when the third one begins";
    EXPECT_EQ(StatusOf("[A,B]:C,D"), kBadLevelCount);
}

TEST(SelectorTest, TheFirstErrorFromTheLeftIsReported) {
    EXPECT_EQ(StatusOf("Channel3-1,*"), kBadRange);
    EXPECT_EQ(StatusOf("*,Channel3-1"), kBadlyFormed);
    EXPECT_EQ(StatusOf("A:B,C,*"), kBadlyFormed);
    EXPECT_EQ(StatusOf("A:B,C,D,*"), kBadLevelCount);
}

TEST(SelectorTest, NumbersThatOverflowAreAnInvalidRange) {
    EXPECT_EQ(StatusOf("a1-a2147483648"), kBadRange);
    EXPECT_EQ(StatusOf("a99999999999999999999-a99999999999999999999"), kBadRange);
    EXPECT_THAT(Parsed("a2147483646-a2147483647"), ElementsAre("a2147483646", "a2147483647"));
}

TEST(SelectorTest, ARangeThatWouldFillTheMemoryIsInvalid) {
    EXPECT_EQ(StatusOf("a1-a2000000000"), kBadRange);
    EXPECT_EQ(StatusOf("a0-a2147483647"), kBadRange);
    EXPECT_EQ(StatusOf("a1-a65537"), kBadRange);
    EXPECT_EQ(Parsed("a1-a65536").size(), 65536U);
}

TEST(SelectorTest, RangesThatMultiplyToFillTheMemoryAreInvalid) {
    EXPECT_EQ(StatusOf("[a1-a1000]:[b1-b1000]"), kBadRange);
    EXPECT_EQ(StatusOf("[a1-a60000,b1-b60000]"), kBadRange);
    EXPECT_EQ(StatusOf("a1-a60000,b1-b60000"), kBadRange);
    EXPECT_EQ(Parsed("[a1-a100]:[b1-b100]").size(), 10000U);
}

TEST(SelectorTest, ManyLevelsOfManyNamesAreInvalid) {
    std::string text = "[a1-a60000]";
    for (int i = 0; i < 20; ++i) {
        text += ":b";
    }
    EXPECT_EQ(StatusOf(text), kBadRange);
    std::string doubling = "[a,b]";
    for (int i = 0; i < 16; ++i) {
        doubling += ":[a,b]";
    }
    EXPECT_EQ(StatusOf(doubling), kBadRange);
}

// 4000 characters in front of each number: 262 MB of names from a text of 8 kB.
TEST(SelectorTest, ARangeOfLongNamesThatWouldFillTheMemoryIsInvalid) {
    const std::string prefix(4000, 'a');
    EXPECT_EQ(StatusOf(prefix + "1-" + prefix + "65536"), kBadRange);
    EXPECT_EQ(StatusOf("[" + prefix + "1-60000]:b"), kBadRange);
    EXPECT_EQ(Parsed(prefix + "1-1000").size(), 1000U);
}

TEST(SelectorTest, LongNamesThatMultiplyToFillTheMemoryAreInvalid) {
    EXPECT_EQ(StatusOf("[b1-b10000]:" + std::string(4000, 'a')), kBadRange);
    EXPECT_EQ(Parsed("[b1-b100]:" + std::string(4000, 'a')).size(), 100U);
}

TEST(SelectorTest, TheNamesOfAllSelectorsTogetherHaveTheirLimit) {
    // 64 combinations of 1006 levels each, forty times: 2.6 million names.
    std::string one;
    for (int i = 0; i < 6; ++i) {
        one += "a1-2:";
    }
    for (int i = 0; i < 999; ++i) {
        one += "b:";
    }
    std::string text = one + "c0";
    for (int i = 1; i < 40; ++i) {
        text += "," + one + "c" + std::to_string(i);
    }
    EXPECT_EQ(StatusOf(one + "c"), 0);
    EXPECT_EQ(StatusOf(text), kBadRange);
}

TEST(SelectorTest, ParsesOnce) {
    CRepCapSelector selector("Channel1-2");
    EXPECT_EQ(selector.Parse(true), 0);
    EXPECT_EQ(selector.Parse(false), 0);
    EXPECT_THAT(selector.Selectors(), SizeIs(2));
    CRepCapSelector failed("[");
    EXPECT_EQ(failed.Parse(true), kBadlyFormed);
    EXPECT_EQ(failed.Parse(true), 0);
    EXPECT_THAT(failed.Selectors(), IsEmpty());
}

TEST(SelectorTest, EachStatusHasItsWords) {
    EXPECT_EQ(CRepCapSelector::Message(kBadlyFormed),
              "The repeated capability selector is badly-formed.");
    EXPECT_EQ(CRepCapSelector::Message(kBadRange),
              "Invalid range specified in repeated capability selector.");
    EXPECT_EQ(CRepCapSelector::Message(kBadLevelCount),
              "Invalid or inconsistent number of levels specified in repeated capability "
              "selector.");
    EXPECT_EQ(CRepCapSelector::Message(0), "");
}

}  // namespace
}  // namespace kestrion
