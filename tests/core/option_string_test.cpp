#include "core/option_string.h"

#include <gtest/gtest.h>

#include <map>

namespace kestrion {
namespace {

std::map<std::string, std::string> Pairs(std::string_view text) {
    std::map<std::string, std::string> pairs;
    for (const auto& [name, value] : SplitPairs(text)) {
        pairs[name] = value;
    }
    return pairs;
}

using Map = std::map<std::string, std::string>;

TEST(OptionString, SplitsPairsAndTakesBlanksOff) {
    EXPECT_EQ(Pairs("Simulate=true, cache = false"),
              (Map{{"Simulate", "true"}, {"cache", "false"}}));
}

TEST(OptionString, ABlankSeparatesNothing) {
    EXPECT_EQ(Pairs("a=1 b=2"), (Map{{"a", "1 b"}}));
}

TEST(OptionString, TextWithoutAPairYieldsNothing) {
    EXPECT_EQ(Pairs(",,=x"), Map{});
    EXPECT_EQ(Pairs("cache"), Map{});
    EXPECT_EQ(Pairs("cache="), Map{});
    EXPECT_EQ(Pairs("cache=,a=1"), (Map{{"a", "1"}}));
    EXPECT_EQ(Pairs(""), Map{});
}

TEST(OptionString, AnEqualsSignEndsAValue) {
    EXPECT_EQ(Pairs("a=b=c"), (Map{{"a", "b"}}));
    EXPECT_EQ(Pairs("a=b=c=d"), (Map{{"a", "b"}, {"c", "d"}}));
}

TEST(OptionString, ANameWithASeparatorInItCannotBeWritten) {
    EXPECT_EQ(Pairs("a,b=1"), (Map{{"b", "1"}}));
    EXPECT_EQ(Pairs("a=b=1"), (Map{{"a", "b"}}));
}

TEST(OptionString, ALaterPairOfTheSameNameWins) {
    EXPECT_EQ(Pairs("a=1,a=2"), (Map{{"a", "2"}}));
    EXPECT_EQ(Pairs("a=1,A=2"), (Map{{"a", "1"}, {"A", "2"}}));
}

TEST(OptionString, DriverSetupTakesTheRestOfTheString) {
    const OptionText text = SplitDriverSetup("cache=false,DriverSetup=Model=X,Trace=true");
    EXPECT_EQ(text.options, "cache=false,");
    ASSERT_TRUE(text.driverSetup.has_value());
    EXPECT_EQ(*text.driverSetup, "Model=X,Trace=true");
}

TEST(OptionString, DriverSetupFirstSwallowsAllOptionsBehindIt) {
    const OptionText text = SplitDriverSetup("DriverSetup=Model=X,simulate=true");
    EXPECT_EQ(text.options, "");
    EXPECT_EQ(text.driverSetup, "Model=X,simulate=true");
}

TEST(OptionString, DriverSetupIsFoundInAnyCaseAndKeepsItsOwn) {
    EXPECT_EQ(SplitDriverSetup("driversetup=Model=AbC").driverSetup, "Model=AbC");
}

TEST(OptionString, BlanksMayStandInFrontOfTheEqualsSign) {
    EXPECT_EQ(SplitDriverSetup("cache=1, DriverSetup  = Model=X").driverSetup, " Model=X");
    EXPECT_EQ(SplitDriverSetup("cache=1, DriverSetup  = Model=X").options, "cache=1, ");
}

TEST(OptionString, AnotherCharacterBehindTheBlankMeansNoDriverSetup) {
    const OptionText text = SplitDriverSetup("DriverSetup x=1");
    EXPECT_FALSE(text.driverSetup.has_value());
    EXPECT_EQ(text.options, "DriverSetup x=1");
}

TEST(OptionString, AStringThatEndsInTheBlanksIsAnEmptyDriverSetup) {
    EXPECT_EQ(SplitDriverSetup("cache=1,DriverSetup  ").driverSetup, "");
}

TEST(OptionString, WithoutTheWordAllIsOptions) {
    EXPECT_FALSE(SplitDriverSetup("simulate=true").driverSetup.has_value());
    EXPECT_FALSE(SplitDriverSetup("DriverSetup").driverSetup.has_value());
}

TEST(OptionString, BooleansHaveThreeFormsInAnyCase) {
    for (const char* form : {"true", "TRUE", "VI_TRUE", "vi_true", "1"}) {
        EXPECT_EQ(ParseBoolean(form), true) << form;
    }
    for (const char* form : {"false", "False", "VI_FALSE", "0"}) {
        EXPECT_EQ(ParseBoolean(form), false) << form;
    }
    for (const char* form : {"yes", "", "2", "on", "true "}) {
        EXPECT_EQ(ParseBoolean(form), std::nullopt) << form;
    }
}

TEST(OptionString, NumbersEndAtTheFirstOtherCharacter) {
    EXPECT_EQ(ParseInteger("1000"), 1000);
    EXPECT_EQ(ParseInteger(" 12kB"), 12);
    EXPECT_EQ(ParseInteger("-3"), -3);
    EXPECT_EQ(ParseInteger("+7"), 7);
    EXPECT_EQ(ParseInteger("abc"), 0);
    EXPECT_EQ(ParseInteger(""), 0);
}

TEST(OptionString, ANumberHasOneSignAtMost) {
    EXPECT_EQ(ParseInteger("+-5"), 0);
    EXPECT_EQ(ParseInteger("-+5"), 0);
    EXPECT_EQ(ParseInteger("++5"), 0);
    EXPECT_EQ(ParseInteger("--5"), 0);
}

}  // namespace
}  // namespace kestrion
