#include "tables/name_map.h"

#include <gtest/gtest.h>

namespace kestrion {
namespace {

TEST(NameMapTest, WithoutAnEntryANameStandsForItself) {
    const NameMap map;
    EXPECT_EQ(map.GetPhysicalName("Channel1"), "Channel1");
    EXPECT_EQ(map.GetVirtualName("Channel1"), "Channel1");
    EXPECT_EQ(map.GetQualifiedPhysicalName("KestrionChannel", "Channel1"), "Channel1");
    EXPECT_EQ(map.GetPhysicalName(""), "");
}

TEST(NameMapTest, AVirtualNameStandsForAPhysicalOneInAnyCase) {
    NameMap map;
    map.AddVirtualName("MyInput", "Channel3");
    EXPECT_EQ(map.GetPhysicalName("MyInput"), "Channel3");
    EXPECT_EQ(map.GetPhysicalName("MYINPUT"), "Channel3");
    EXPECT_EQ(map.GetPhysicalName("myinput"), "Channel3");
    EXPECT_EQ(map.GetVirtualName("CHANNEL3"), "MyInput");
    EXPECT_EQ(map.GetVirtualName("channel3"), "MyInput");
}

TEST(NameMapTest, AVirtualNameWinsOverAPhysicalOneOfTheSameLetters) {
    NameMap map;
    map.AddVirtualName("Channel1", "Channel4");
    EXPECT_EQ(map.GetPhysicalName("Channel1"), "Channel4");
}

TEST(NameMapTest, AQualifiedNameLosesItsFirstQualifier) {
    const NameMap map;
    EXPECT_EQ(map.GetPhysicalName("Channel!!Channel2"), "Channel2");
    EXPECT_EQ(map.GetPhysicalName("A!!B!!C"), "B!!C");
    EXPECT_EQ(map.GetPhysicalName("!!Channel2"), "Channel2");
    EXPECT_EQ(map.GetPhysicalName("Channel!!"), "");
    EXPECT_EQ(map.GetPhysicalName("Channel!2"), "Channel!2");
}

TEST(NameMapTest, AVirtualNameMayStandForAQualifiedOne) {
    NameMap map;
    map.AddVirtualName("Probe", "Channel!!Channel2");
    EXPECT_EQ(map.GetPhysicalName("probe"), "Channel2");
}

TEST(NameMapTest, ThePhysicalDirectionKeepsQualifiers) {
    NameMap map;
    EXPECT_EQ(map.GetVirtualName("Channel!!Channel2"), "Channel!!Channel2");
    map.AddVirtualName("Probe", "Channel!!Channel2");
    EXPECT_EQ(map.GetVirtualName("channel!!channel2"), "Probe");
}

TEST(NameMapTest, TheLaterOfTwoPairsWins) {
    NameMap map;
    map.AddVirtualName("Probe", "Channel1");
    map.AddVirtualName("PROBE", "Channel2");
    EXPECT_EQ(map.GetPhysicalName("probe"), "Channel2");
    EXPECT_EQ(map.GetVirtualName("Channel2"), "PROBE");
    // The first pair is still known backwards.
    EXPECT_EQ(map.GetVirtualName("Channel1"), "Probe");
}

TEST(NameMapTest, QualifiedNamesAreFoundByCapabilityAndPhysicalNameExactly) {
    NameMap map;
    map.AddPhysicalName("KestrionChannel", "Channel1", "Input");
    EXPECT_EQ(map.GetQualifiedPhysicalName("KestrionChannel", "Channel1"), "Input");
    EXPECT_EQ(map.GetQualifiedPhysicalName("KestrionChannel", "channel1"), "channel1");
    EXPECT_EQ(map.GetQualifiedPhysicalName("KestrionMath", "Channel1"), "Channel1");
}

TEST(NameMapTest, ClearsVirtualNamesAloneOrEverything) {
    NameMap map;
    map.AddVirtualName("Probe", "Channel1");
    map.AddPhysicalName("KestrionChannel", "Channel1", "Input");
    map.ClearVirtualNames();
    EXPECT_EQ(map.GetPhysicalName("Probe"), "Probe");
    EXPECT_EQ(map.GetVirtualName("Channel1"), "Channel1");
    EXPECT_EQ(map.GetQualifiedPhysicalName("KestrionChannel", "Channel1"), "Input");
    map.Clear();
    EXPECT_EQ(map.GetQualifiedPhysicalName("KestrionChannel", "Channel1"), "Channel1");
}

}  // namespace
}  // namespace kestrion
