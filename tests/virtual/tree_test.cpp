#include <gtest/gtest.h>

#include <stdexcept>

#include "virtual/command_tree.h"
#include "virtual/text.h"

namespace virtual_scope {
namespace {

std::vector<std::string> WordsOf(std::string_view path) {
    std::vector<std::string> words;
    for (const std::string_view word : Split(path, ':')) {
        words.emplace_back(word);
    }
    return words;
}

class Tree : public testing::Test {
  protected:
    std::string Find(std::string_view path) const {
        const HeaderMatch match = tree_.Find(WordsOf(path));
        return match.row == nullptr ? std::to_string(static_cast<int>(match.error))
                                    : std::string(match.row->notation);
    }

    const std::vector<CommandRow> rows_ = {
        CommandRow("HEADer", Flag{}),
        CommandRow("HORizontal[:MAIn|:MODE]:SCAle", Flag{}),
        CommandRow("HORizontal:{RECOrdlength|RESOlution}", Flag{}),
        CommandRow("CH<x>:SCAle", Flag{}),
        CommandRow("CH<x>:PROBe:ID:TYPe?", Flag{}),
        CommandRow("D<x>:POSition", Flag{}),
        CommandRow("DATa:STARt", Flag{}),
        CommandRow("DATa:STOP", Flag{}),
        CommandRow("DESE", Flag{}),
        CommandRow("ABCdefgh", Flag{}),
        CommandRow("ABCdefxy", Flag{}),
        CommandRow("ABCDE", Flag{}),
        CommandRow("*IDN?", NoValue{}),
    };
    const CommandTree tree_{rows_};
};

TEST_F(Tree, ShortLongAndEveryLengthBetween) {
    for (const char* header : {"HEAD", "HEADE", "HEADER"}) {
        EXPECT_EQ(Find(header), "HEADer") << header;
    }
    for (const char* header : {"HEA", "HEADERS", "HEADX", ""}) {
        EXPECT_EQ(Find(header), "-113") << header;
    }
}

TEST_F(Tree, AWordThatMeansTwoCommandsMeansNone) {
    EXPECT_EQ(Find("ABCD"), "-113");
    EXPECT_EQ(Find("ABCDEF"), "-113");
    EXPECT_EQ(Find("ABCDEFG"), "ABCdefgh");
}

TEST_F(Tree, AnExactFormGoesFirst) {
    EXPECT_EQ(Find("ABCDE"), "ABCDE");
}

TEST_F(Tree, OptionalPartsAndAlternatives) {
    for (const char* header : {"HOR:SCA", "HORIZONTAL:MAIN:SCALE", "HOR:MODE:SCALE"}) {
        EXPECT_EQ(Find(header), "HORizontal[:MAIn|:MODE]:SCAle") << header;
    }
    EXPECT_EQ(Find("HOR:RECO"), "HORizontal:{RECOrdlength|RESOlution}");
    EXPECT_EQ(Find("HOR:RESOLUTION"), "HORizontal:{RECOrdlength|RESOlution}");
    EXPECT_EQ(Find("HOR:MAIN"), "-113");
    EXPECT_EQ(Find("HOR"), "-113");
}

TEST_F(Tree, NumbersOfHeaders) {
    const HeaderMatch match = tree_.Find(WordsOf("CH3:PROBE:ID:TYPE"));
    EXPECT_EQ(match.number, 3);
    EXPECT_TRUE(match.perChannel);
    EXPECT_EQ(match.longHeader, ":CH3:PROBE:ID:TYPE");
    EXPECT_EQ(match.shortHeader, ":CH3:PROB:ID:TYP");
    EXPECT_EQ(Find("CH0:SCALE"), "-114");
    EXPECT_EQ(Find("CH5:SCALE"), "-114");
    EXPECT_EQ(Find("CH:SCALE"), "-113");
    EXPECT_EQ(Find("D0:POS"), "D<x>:POSition");
    EXPECT_EQ(Find("D15:POS"), "D<x>:POSition");
    EXPECT_EQ(Find("D16:POS"), "-114");
    EXPECT_EQ(Find("CH99999999999:SCALE"), "-113");
}

TEST_F(Tree, ANumberWhereNoneBelongsIsUnknown) {
    EXPECT_EQ(Find("DATA1:START"), "-113");
    EXPECT_EQ(Find("CH1:SCALE1"), "-113");
}

TEST_F(Tree, CommonCommandsStandForThemselves) {
    EXPECT_EQ(Find("*IDN"), "*IDN?");
    EXPECT_EQ(Find("IDN"), "-113");
    EXPECT_EQ(Find("*IDNX"), "-113");
}

TEST_F(Tree, InstancesFollowTheNumber) {
    EXPECT_EQ(InstanceCount(rows_[0]), 1);
    EXPECT_EQ(InstanceCount(rows_[3]), 4);
    EXPECT_EQ(InstanceCount(rows_[5]), 16);
}

TEST_F(Tree, TwoLinesForOneHeaderAreAMistake) {
    const std::vector<CommandRow> rows = {CommandRow("A[:B]:C", Flag{}),
                                          CommandRow("A:C?", Flag{})};
    EXPECT_THROW(CommandTree{rows}, std::logic_error);
}

}  // namespace
}  // namespace virtual_scope
