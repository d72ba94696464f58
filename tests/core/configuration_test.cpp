// What options and store leave in a driver's memory.
#include "core/configuration.h"

#include <gtest/gtest.h>

#include "tests/core/fake_store.h"

namespace kestrion {
namespace {

TEST(ConfigurationTest, OptionsAreFoundInAnyCase) {
    Configuration configuration;
    configuration.SetInitOption("Simulate", "true");
    configuration.SetDriverSetupOption("NumPhases", "3");
    EXPECT_EQ(configuration.GetInitOption("SIMULATE"), "true");
    EXPECT_EQ(configuration.GetInitOption("NumPhases"), "");
    EXPECT_EQ(configuration.GetDriverSetupOption("numphases"), "3");
    EXPECT_EQ(configuration.GetDriverSetupOption("Simulate"), "");
}

TEST(ConfigurationTest, ASecondDriverSetupTakesThePlaceOfTheFirst) {
    Configuration configuration;
    configuration.SetInitOption("cache", "0");
    configuration.SetDriverSetupOption("Shape", "Round");
    configuration.ClearDriverSetupOptions();
    EXPECT_EQ(configuration.GetDriverSetupOption("Shape"), "");
    EXPECT_EQ(configuration.GetInitOption("cache"), "0");
}

class SettingsTest : public testing::Test {
  protected:
    Configuration configuration;
};

TEST_F(SettingsTest, EachTypeIsKeptAsItsVariant) {
    configuration.AddSettings(
        {TextSetting("Text", "abc"),
         IntegerSetting("Integer", -40),
         {.name = "Real", .type = DataType::kReal, .value = 0.25, .components = {}},
         {.name = "Flag", .type = DataType::kBoolean, .value = true, .components = {}}});
    VariantPtr value;
    ASSERT_TRUE(configuration.GetConfigVariant("text", value));
    EXPECT_EQ(value->vt, VT_BSTR);
    EXPECT_EQ(ToUtf8(value->bstrVal), "abc");
    ASSERT_TRUE(configuration.GetConfigVariant("INTEGER", value));
    EXPECT_EQ(value->vt, VT_I4);
    EXPECT_EQ(value->lVal, -40);
    ASSERT_TRUE(configuration.GetConfigVariant("Real", value));
    EXPECT_EQ(value->vt, VT_R8);
    EXPECT_EQ(value->dblVal, 0.25);
    ASSERT_TRUE(configuration.GetConfigVariant("Flag", value));
    EXPECT_EQ(value->vt, VT_BOOL);
    EXPECT_EQ(value->boolVal, VARIANT_TRUE);
    EXPECT_FALSE(configuration.GetConfigVariant("Other", value));
}

TEST_F(SettingsTest, OnlyTheStructureOfTheSettingsIsEntered) {
    configuration.AddSettings(
        {Structure("Configurable Initial Settings",
                   {IntegerSetting("Inside", 1), Structure("Deeper", {IntegerSetting("Deep", 2)})}),
         Structure("Notes", {IntegerSetting("Noted", 3)}), IntegerSetting("Beside", 4)});
    std::int32_t value = 0;
    EXPECT_TRUE(configuration.GetConfigLong("inside", value));
    EXPECT_EQ(value, 1);
    EXPECT_TRUE(configuration.GetConfigLong("beside", value));
    EXPECT_EQ(value, 4);
    EXPECT_FALSE(configuration.GetConfigLong("deep", value));
    EXPECT_FALSE(configuration.GetConfigLong("noted", value));
    EXPECT_FALSE(configuration.GetConfigLong("configurable initial settings", value));
    EXPECT_FALSE(configuration.GetConfigLong("deeper", value));
}

TEST_F(SettingsTest, ReferencesAndUnknownTypesAreSkipped) {
    configuration.AddSettings(
        {{.name = "Api", .type = DataType::kApiReference, .value = {}, .components = {}},
         {.name = "Colour", .type = DataType::kOther, .value = {}, .components = {}}});
    VariantPtr value;
    EXPECT_FALSE(configuration.GetConfigVariant("api", value));
    EXPECT_FALSE(configuration.GetConfigVariant("colour", value));
}

TEST_F(SettingsTest, TheLaterOfTwoSettingsWins) {
    configuration.AddSettings({IntegerSetting("Delay", 1), IntegerSetting("DELAY", 2)});
    std::int32_t value = 0;
    EXPECT_TRUE(configuration.GetConfigLong("delay", value));
    EXPECT_EQ(value, 2);
}

TEST_F(SettingsTest, AReadChangesTheTypeWhereThatIsPossible) {
    configuration.AddSettings({TextSetting("Number", " 2.5 "), IntegerSetting("Two", 2)});
    std::int32_t integer = 0;
    EXPECT_TRUE(configuration.GetConfigLong("Number", integer));
    EXPECT_EQ(integer, 2);
    double real = 0.0;
    EXPECT_TRUE(configuration.GetConfigDouble("Number", real));
    EXPECT_EQ(real, 2.5);
    bool flag = false;
    EXPECT_TRUE(configuration.GetConfigBool("Two", flag));
    EXPECT_TRUE(flag);
}

TEST_F(SettingsTest, AChangeThatFailsLeavesTheDefault) {
    configuration.AddSettings({TextSetting("Word", "fast")});
    std::int32_t integer = 7;
    EXPECT_FALSE(configuration.GetConfigLong("Word", integer));
    EXPECT_EQ(integer, 7);
    double real = 0.5;
    EXPECT_FALSE(configuration.GetConfigDouble("Word", real));
    EXPECT_EQ(real, 0.5);
    bool flag = true;
    EXPECT_FALSE(configuration.GetConfigBool("Word", flag));
    EXPECT_TRUE(flag);
    EXPECT_FALSE(configuration.GetConfigLong("Missing", integer));
    EXPECT_EQ(integer, 7);
}

TEST_F(SettingsTest, ANumberIsNoText) {
    configuration.AddSettings({IntegerSetting("Two", 2), TextSetting("Word", "fast")});
    std::string text = "default";
    EXPECT_FALSE(configuration.GetConfigString("Two", text));
    EXPECT_FALSE(configuration.GetConfigString("Missing", text));
    EXPECT_EQ(text, "default");
    EXPECT_TRUE(configuration.GetConfigString("WORD", text));
    EXPECT_EQ(text, "fast");
}

class NamesTest : public testing::Test {
  protected:
    Configuration configuration;
};

TEST_F(NamesTest, AVirtualNameWithoutRangesStandsForItsPhysicalOne) {
    configuration.AddVirtualNames({{.name = "Probe", .mapsTo = "Channel3", .ranges = {}}});
    EXPECT_EQ(configuration.GetPhysicalName("probe"), "Channel3");
    EXPECT_EQ(configuration.GetVirtualName("CHANNEL3"), "Probe");
    EXPECT_EQ(configuration.GetPhysicalName("Channel3"), "Channel3");
    EXPECT_EQ(configuration.GetVirtualName("Channel1"), "Channel1");
}

TEST_F(NamesTest, AVirtualRangeOfTwoIndicesGivesTwoEntries) {
    configuration.AddVirtualNames({{.name = "Input",
                                    .mapsTo = "Channel",
                                    .ranges = {{.min = 1, .max = 2, .startingPhysicalIndex = 1}}}});
    EXPECT_EQ(configuration.GetPhysicalName("Input1"), "Channel1");
    EXPECT_EQ(configuration.GetPhysicalName("Input2"), "Channel2");
    EXPECT_EQ(configuration.GetPhysicalName("Input0"), "Input0");
    EXPECT_EQ(configuration.GetPhysicalName("Input3"), "Input3");
    EXPECT_EQ(configuration.GetPhysicalName("Input"), "Input");
    EXPECT_EQ(configuration.GetVirtualName("Channel2"), "Input2");
    EXPECT_EQ(configuration.GetVirtualName("Channel"), "Channel");
}

// IVI-3.5, appendix A: 1 to 3 starting at 2 maps 1 to C2, 2 to C3 and 3 to C4.
TEST_F(NamesTest, ARangeCountsFromItsStartingPhysicalIndex) {
    configuration.AddVirtualNames({{.name = "",
                                    .mapsTo = "C",
                                    .ranges = {{.min = 1, .max = 3, .startingPhysicalIndex = 2}}}});
    EXPECT_EQ(configuration.GetPhysicalName("1"), "C2");
    EXPECT_EQ(configuration.GetPhysicalName("2"), "C3");
    EXPECT_EQ(configuration.GetPhysicalName("3"), "C4");
    EXPECT_EQ(configuration.GetVirtualName("c4"), "3");
}

TEST_F(NamesTest, SeveralRangesAndNegativeIndices) {
    configuration.AddVirtualNames({{.name = "N",
                                    .mapsTo = "C",
                                    .ranges = {{.min = -1, .max = 0, .startingPhysicalIndex = 10},
                                               {.min = 7, .max = 7, .startingPhysicalIndex = -3},
                                               {.min = 9, .max = 8, .startingPhysicalIndex = 0}}}});
    EXPECT_EQ(configuration.GetPhysicalName("N-1"), "C10");
    EXPECT_EQ(configuration.GetPhysicalName("N0"), "C11");
    EXPECT_EQ(configuration.GetPhysicalName("N7"), "C-3");
    EXPECT_EQ(configuration.GetPhysicalName("N8"), "N8");
    EXPECT_EQ(configuration.GetPhysicalName("N9"), "N9");
}

TEST_F(NamesTest, RangesReachTheLastIndex) {
    configuration.AddVirtualNames(
        {{.name = "N",
          .mapsTo = "C",
          .ranges = {
              {.min = 2147483646, .max = 2147483647, .startingPhysicalIndex = 2147483647}}}});
    EXPECT_EQ(configuration.GetPhysicalName("N2147483647"), "C2147483648");
}

TEST_F(NamesTest, TheLaterOfTwoEqualNamesWins) {
    configuration.AddVirtualNames({{.name = "C",
                                    .mapsTo = "Channel",
                                    .ranges = {{.min = 1, .max = 2, .startingPhysicalIndex = 1}}},
                                   {.name = "c2", .mapsTo = "Channel4", .ranges = {}}});
    EXPECT_EQ(configuration.GetPhysicalName("C2"), "Channel4");
    EXPECT_EQ(configuration.GetPhysicalName("C1"), "Channel1");
}

TEST_F(NamesTest, OfAQualifiedNameTheInstanceIsLeft) {
    configuration.AddVirtualNames(
        {{.name = "Probe", .mapsTo = "KestrionChannel!!Channel2", .ranges = {}}});
    EXPECT_EQ(configuration.GetPhysicalName("Probe"), "Channel2");
    EXPECT_EQ(configuration.GetPhysicalName("Any!!Channel3"), "Channel3");
}

TEST_F(NamesTest, PhysicalNamesAreEnteredDepthFirstWithTheirIndices) {
    configuration.AddPhysicalNames({{.name = "Channel",
                                     .repeatedCapability = "KestrionChannel",
                                     .ranges = {{.min = 1, .max = 2}},
                                     .nested = {{.name = "Marker!!Left",
                                                 .repeatedCapability = "KestrionMarker",
                                                 .ranges = {},
                                                 .nested = {}}}},
                                    {.name = "KestrionMath!!Math",
                                     .repeatedCapability = "KestrionMath",
                                     .ranges = {{.min = 1, .max = 1}, {.min = 3, .max = 3}},
                                     .nested = {}}});
    EXPECT_EQ(configuration.GetQualifiedPhysicalName("KestrionChannel", "Channel2"), "Channel2");
    EXPECT_EQ(configuration.GetQualifiedPhysicalName("KestrionMarker", "Left"), "Marker!!Left");
    EXPECT_EQ(configuration.GetQualifiedPhysicalName("KestrionMath", "Math3"),
              "KestrionMath!!Math3");
    EXPECT_EQ(configuration.GetQualifiedPhysicalName("KestrionMath", "Math2"), "Math2");
    EXPECT_EQ(configuration.GetQualifiedPhysicalName("KestrionMath", "math3"), "math3");
    EXPECT_EQ(configuration.GetQualifiedPhysicalName("KestrionBus", "Math3"), "Math3");
}

TEST_F(NamesTest, ANewStartForgetsAllButThePhysicalNames) {
    configuration.SetStoreReport({.path = "/a/b.xml", .reason = "it is there", .broken = false});
    configuration.SetInitOption("cache", "0");
    configuration.SetDriverSetupOption("Shape", "Round");
    configuration.AddSettings({IntegerSetting("Two", 2)});
    configuration.AddVirtualNames({{.name = "Probe", .mapsTo = "Channel3", .ranges = {}}});
    configuration.AddPhysicalNames({{.name = "X!!Channel1",
                                     .repeatedCapability = "KestrionChannel",
                                     .ranges = {},
                                     .nested = {}}});
    configuration.Clear();
    EXPECT_EQ(configuration.GetStoreReport().path, "");
    EXPECT_EQ(configuration.GetStoreReport().reason, "");
    EXPECT_EQ(configuration.GetInitOption("cache"), "");
    EXPECT_EQ(configuration.GetDriverSetupOption("Shape"), "");
    std::int32_t value = 0;
    EXPECT_FALSE(configuration.GetConfigLong("Two", value));
    EXPECT_EQ(configuration.GetPhysicalName("Probe"), "Probe");
    EXPECT_EQ(configuration.GetVirtualName("Channel3"), "Channel3");
    EXPECT_EQ(configuration.GetQualifiedPhysicalName("KestrionChannel", "Channel1"), "X!!Channel1");
}

}  // namespace
}  // namespace kestrion
