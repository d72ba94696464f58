#include "tables/name_map.h"

#include <gtest/gtest.h>

namespace kestrion {
namespace {

TEST(NameMapTest, WithoutAnEntryANameStandsForItself) {
    const NameMap map;
    EXPECT_EQ(map.VirtualToPhysical("Channel1"), "Channel1");
    EXPECT_EQ(map.PhysicalToVirtual("Channel1"), "Channel1");
    EXPECT_EQ(map.QualifiedVirtualName("KestrionChannel", "Channel1"), "Channel1");
    EXPECT_EQ(map.VirtualToPhysical(""), "");
}

TEST(NameMapTest, AVirtualNameStandsForAPhysicalOneInAnyCase) {
    NameMap map;
    map.AddVirtualName("MyInput", "Channel3");
    EXPECT_EQ(map.VirtualToPhysical("MyInput"), "Channel3");
    EXPECT_EQ(map.VirtualToPhysical("MYINPUT"), "Channel3");
    EXPECT_EQ(map.VirtualToPhysical("myinput"), "Channel3");
    EXPECT_EQ(map.PhysicalToVirtual("CHANNEL3"), "MyInput");
    EXPECT_EQ(map.PhysicalToVirtual("channel3"), "MyInput");
}

TEST(NameMapTest, AVirtualNameWinsOverAPhysicalOneOfTheSameLetters) {
    NameMap map;
    map.AddVirtualName("Channel1", "Channel4");
    EXPECT_EQ(map.VirtualToPhysical("Channel1"), "Channel4");
}

TEST(NameMapTest, AQualifiedNameLosesItsFirstQualifier) {
    const NameMap map;
    EXPECT_EQ(map.VirtualToPhysical("Channel!!Channel2"), "Channel2");
    EXPECT_EQ(map.VirtualToPhysical("A!!B!!C"), "B!!C");
    EXPECT_EQ(map.VirtualToPhysical("!!Channel2"), "Channel2");
    EXPECT_EQ(map.VirtualToPhysical("Channel!!"), "");
    EXPECT_EQ(map.VirtualToPhysical("Channel!2"), "Channel!2");
}

TEST(NameMapTest, AVirtualNameMayStandForAQualifiedOne) {
    NameMap map;
    map.AddVirtualName("Probe", "Channel!!Channel2");
    EXPECT_EQ(map.VirtualToPhysical("probe"), "Channel2");
}

TEST(NameMapTest, ThePhysicalDirectionKeepsQualifiers) {
    NameMap map;
    EXPECT_EQ(map.PhysicalToVirtual("Channel!!Channel2"), "Channel!!Channel2");
    map.AddVirtualName("Probe", "Channel!!Channel2");
    EXPECT_EQ(map.PhysicalToVirtual("channel!!channel2"), "Probe");
}

TEST(NameMapTest, TheLaterOfTwoPairsWins) {
    NameMap map;
    map.AddVirtualName("Probe", "Channel1");
    map.AddVirtualName("PROBE", "Channel2");
    EXPECT_EQ(map.VirtualToPhysical("probe"), "Channel2");
    EXPECT_EQ(map.PhysicalToVirtual("Channel2"), "PROBE");
    // The first pair is still known backwards.
    EXPECT_EQ(map.PhysicalToVirtual("Channel1"), "Probe");
}

TEST(NameMapTest, QualifiedNamesAreFoundByCapabilityAndPhysicalNameExactly) {
    NameMap map;
    map.AddQualifiedName("KestrionChannel", "Channel1", "Input");
    EXPECT_EQ(map.QualifiedVirtualName("KestrionChannel", "Channel1"), "Input");
    EXPECT_EQ(map.QualifiedVirtualName("KestrionChannel", "channel1"), "channel1");
    EXPECT_EQ(map.QualifiedVirtualName("KestrionMath", "Channel1"), "Channel1");
}

TEST(NameMapTest, ClearsVirtualNamesAloneOrEverything) {
    NameMap map;
    map.AddVirtualName("Probe", "Channel1");
    map.AddQualifiedName("KestrionChannel", "Channel1", "Input");
    map.ClearVirtualNames();
    EXPECT_EQ(map.VirtualToPhysical("Probe"), "Probe");
    EXPECT_EQ(map.PhysicalToVirtual("Channel1"), "Channel1");
    EXPECT_EQ(map.QualifiedVirtualName("KestrionChannel", "Channel1"), "Input");
    map.Clear();
    EXPECT_EQ(map.QualifiedVirtualName("KestrionChannel", "Channel1"), "Channel1");
}

}  // namespace
}  // namespace kestrion
