#include <gtest/gtest.h>

#include "virtual/program_message.h"

namespace virtual_scope {
namespace {

using Words = std::vector<std::string>;

TEST(ProgramMessage, SplitsIntoUnits) {
    const auto units = ParseMessage("ACQuire:STOPAfter SEQuence;STATE ON;*OPC?");
    ASSERT_EQ(units.size(), 3U);
    EXPECT_EQ(units[0].words, (Words{"ACQUIRE", "STOPAFTER"}));
    EXPECT_EQ(units[0].parameters, Words{"SEQuence"});
    EXPECT_FALSE(units[0].query);
    EXPECT_FALSE(units[0].fromRoot);
    EXPECT_EQ(units[1].words, Words{"STATE"});
    EXPECT_EQ(units[2].words, Words{"*OPC"});
    EXPECT_TRUE(units[2].query);
    EXPECT_TRUE(units[2].IsCommon());
}

TEST(ProgramMessage, LeadingColonMeansTheRoot) {
    const auto units = ParseMessage("HEAD OFF;:VERBOSE 1");
    ASSERT_EQ(units.size(), 2U);
    EXPECT_FALSE(units[0].fromRoot);
    EXPECT_TRUE(units[1].fromRoot);
}

TEST(ProgramMessage, EmptyUnitsAreLeftOut) {
    EXPECT_EQ(ParseMessage("CH1:SCALE?;").size(), 1U);
    EXPECT_EQ(ParseMessage(";; *CLS ; ;").size(), 1U);
    EXPECT_TRUE(ParseMessage("").empty());
}

TEST(ProgramMessage, NoBreakSpaceParts) {
    const auto units = ParseMessage(
        "BYT_NR\xA0"
        "1");
    ASSERT_EQ(units.size(), 1U);
    EXPECT_EQ(units[0].words, Words{"BYT_NR"});
    EXPECT_EQ(units[0].parameters, Words{"1"});
}

TEST(ProgramMessage, SemicolonsAndCommasInStringsStay) {
    const auto units = ParseMessage("A 'x;y,z';B \"p;\"\"q,\", 3");
    ASSERT_EQ(units.size(), 2U);
    EXPECT_EQ(units[0].parameters, Words{"'x;y,z'"});
    EXPECT_EQ(units[1].parameters, (Words{"\"p;\"\"q,\"", "3"}));
}

TEST(ProgramMessage, SemicolonsInABlockStay) {
    const auto units = ParseMessage("CURVE #15a;,\n ;*CLS");
    ASSERT_EQ(units.size(), 2U);
    EXPECT_EQ(units[0].parameters, Words{"#15a;,\n "});
}

struct BadForm {
    const char* text;
    ScpiError error;
};

class ProgramMessageForm : public testing::TestWithParam<BadForm> {};

TEST_P(ProgramMessageForm, IsRefused) {
    const auto units = ParseMessage(GetParam().text);
    ASSERT_EQ(units.size(), 1U);
    EXPECT_EQ(units[0].error, GetParam().error) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(All, ProgramMessageForm,
                         testing::Values(BadForm{"CH1::SCALE 1", ScpiError::kSyntaxError},
                                         BadForm{"CH1:SCALE: 1", ScpiError::kSyntaxError},
                                         BadForm{"A*B 1", ScpiError::kSyntaxError},
                                         BadForm{"CH1:SCALE 1,", ScpiError::kSyntaxError},
                                         BadForm{"CH1:SCALE ,1", ScpiError::kSyntaxError},
                                         BadForm{"CH1:SCALE=1", ScpiError::kInvalidSeparator},
                                         BadForm{"CH1:SCALE?1", ScpiError::kInvalidSeparator},
                                         BadForm{"?", ScpiError::kInvalidCharacter},
                                         BadForm{"%d", ScpiError::kInvalidCharacter},
                                         BadForm{"LABEL \"open", ScpiError::kInvalidStringData},
                                         BadForm{"LABEL 'a'b", ScpiError::kInvalidStringData}));

}  // namespace
}  // namespace virtual_scope
