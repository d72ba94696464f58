// Reading stores that are in order.
#include "store/xml_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/store/sample_store.h"

namespace kestrion {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

std::shared_ptr<const ConfigurationStore> Read(std::string_view bytes) {
    std::string reason;
    auto store = ReadXmlStore(bytes, reason);
    EXPECT_NE(store, nullptr) << reason;
    EXPECT_EQ(reason, "");
    return store;
}

class SampleStoreTest : public testing::Test {
  protected:
    void SetUp() override {
        store = Read(SampleStore());
        ASSERT_NE(store, nullptr);
        bench = store->FindDriverSession("MyScope");
        ASSERT_NE(bench, nullptr);
        module = store->FindSoftwareModule("Kestrion");
        ASSERT_NE(module, nullptr);
    }

    std::shared_ptr<const ConfigurationStore> store;
    std::shared_ptr<const DriverSession> bench;
    std::shared_ptr<const SoftwareModule> module;
};

TEST_F(SampleStoreTest, ALogicalNameLeadsToItsDriverSession) {
    ASSERT_TRUE(bench->Asset().has_value());
    EXPECT_EQ(bench->Asset()->ioResourceDescriptor, "VIRTUAL::PL7254C::INSTR");
    EXPECT_EQ(bench->DriverSetup(), "Shape=Round");
    ASSERT_NE(bench->Module(), nullptr);
    EXPECT_EQ(bench->Module()->Name(), "Kestrion");
}

TEST_F(SampleStoreTest, TheOptionsAreThoseOfTheSession) {
    const SessionOptions options = bench->Options();
    EXPECT_FALSE(options.cache);
    EXPECT_FALSE(options.interchangeCheck);
    EXPECT_TRUE(options.queryInstrStatus);
    EXPECT_FALSE(options.rangeCheck);
    EXPECT_TRUE(options.recordCoercions);
    EXPECT_FALSE(options.simulate);
}

TEST_F(SampleStoreTest, ASessionMayBeWithoutAssetAndModule) {
    const auto session = store->FindDriverSession("Practice");
    ASSERT_NE(session, nullptr);
    EXPECT_FALSE(session->Asset().has_value());
    EXPECT_EQ(session->Module(), nullptr);
    EXPECT_THAT(session->VirtualNames(), IsEmpty());
    EXPECT_THAT(session->DataComponents(), IsEmpty());
    EXPECT_EQ(session->DriverSetup(), "");
    EXPECT_TRUE(session->Options().cache);
    EXPECT_TRUE(session->Options().simulate);
}

TEST_F(SampleStoreTest, ADriverSessionIsAlsoFoundByItsOwnName) {
    EXPECT_EQ(store->FindDriverSession("BenchSession"), bench);
    EXPECT_EQ(store->FindDriverSession("SimulatedSession"), store->FindDriverSession("Practice"));
}

TEST_F(SampleStoreTest, NamesCompareExactly) {
    EXPECT_EQ(store->FindDriverSession("myscope"), nullptr);
    EXPECT_EQ(store->FindDriverSession("MyScope "), nullptr);
    EXPECT_EQ(store->FindDriverSession(""), nullptr);
    EXPECT_EQ(store->FindSoftwareModule("kestrion"), nullptr);
    EXPECT_EQ(store->FindSoftwareModule("MyScope"), nullptr);
}

TEST_F(SampleStoreTest, ALogicalNameOfAnotherSessionLeadsToNoDriverSession) {
    EXPECT_EQ(store->FindDriverSession("Role"), nullptr);
    EXPECT_EQ(store->FindDriverSession("RoleControl"), nullptr);
    EXPECT_EQ(store->FindDriverSession("Spare"), nullptr);
}

TEST_F(SampleStoreTest, VirtualNamesHaveTheirRanges) {
    const std::vector<VirtualName> names = bench->VirtualNames();
    ASSERT_THAT(names, SizeIs(3));
    EXPECT_EQ(names[0].name, "Probe");
    EXPECT_EQ(names[0].mapsTo, "Channel3");
    EXPECT_THAT(names[0].ranges, IsEmpty());
    EXPECT_EQ(names[1].name, "Input");
    EXPECT_EQ(names[1].mapsTo, "Channel");
    ASSERT_THAT(names[1].ranges, SizeIs(1));
    EXPECT_EQ(names[1].ranges[0].min, 1);
    EXPECT_EQ(names[1].ranges[0].max, 2);
    EXPECT_EQ(names[1].ranges[0].startingPhysicalIndex, 1);
    EXPECT_EQ(names[2].name, "");
    EXPECT_EQ(names[2].mapsTo, "KestrionChannel!!Channel");
    ASSERT_THAT(names[2].ranges, SizeIs(1));
    EXPECT_EQ(names[2].ranges[0].startingPhysicalIndex, 3);
}

TEST_F(SampleStoreTest, PhysicalNamesAreNested) {
    const std::vector<PhysicalName> names = module->PhysicalNames();
    ASSERT_THAT(names, SizeIs(2));
    EXPECT_EQ(names[0].name, "Channel");
    EXPECT_EQ(names[0].repeatedCapability, "KestrionChannel");
    ASSERT_THAT(names[0].ranges, SizeIs(1));
    EXPECT_EQ(names[0].ranges[0].min, 1);
    EXPECT_EQ(names[0].ranges[0].max, 4);
    EXPECT_THAT(names[0].nested, IsEmpty());
    EXPECT_EQ(names[1].name, "A");
    EXPECT_THAT(names[1].ranges, IsEmpty());
    ASSERT_THAT(names[1].nested, SizeIs(1));
    const PhysicalName& remote = names[1].nested[0];
    EXPECT_EQ(remote.name, "Remote");
    EXPECT_EQ(remote.repeatedCapability, "RemoteChannel");
    ASSERT_THAT(remote.ranges, SizeIs(2));
    EXPECT_EQ(remote.ranges[1].min, 8);
    EXPECT_EQ(remote.ranges[1].max, 8);
}

TEST_F(SampleStoreTest, DataComponentsHaveTheirTypeAndValue) {
    const std::vector<DataComponent> components = bench->DataComponents();
    ASSERT_THAT(components, SizeIs(1));
    EXPECT_EQ(components[0].name, "Configurable Initial Settings");
    EXPECT_EQ(components[0].type, DataType::kStructure);
    const std::vector<DataComponent>& settings = components[0].components;
    ASSERT_THAT(settings, SizeIs(5));
    EXPECT_EQ(settings[0].name, "Model");
    EXPECT_EQ(settings[0].type, DataType::kString);
    EXPECT_EQ(std::get<std::string>(settings[0].value), "PL7054C");
    EXPECT_EQ(settings[1].type, DataType::kInteger);
    EXPECT_EQ(std::get<std::int32_t>(settings[1].value), -40);
    EXPECT_EQ(settings[2].type, DataType::kReal);
    EXPECT_EQ(std::get<double>(settings[2].value), 0.25);
    EXPECT_EQ(settings[3].type, DataType::kBoolean);
    EXPECT_EQ(std::get<bool>(settings[3].value), true);
    EXPECT_EQ(settings[4].name, "Scope");
    EXPECT_EQ(settings[4].type, DataType::kApiReference);
}

TEST_F(SampleStoreTest, EntitiesInTextsAreResolved) {
    const std::vector<DataComponent> components = module->DataComponents();
    ASSERT_THAT(components, SizeIs(2));
    EXPECT_EQ(components[1].name, "Author");
    EXPECT_EQ(std::get<std::string>(components[1].value), "Ada & Grace");
}

TEST_F(SampleStoreTest, ObjectsOutliveTheStore) {
    store.reset();
    EXPECT_EQ(bench->Module()->Name(), "Kestrion");
    EXPECT_EQ(bench->Asset()->ioResourceDescriptor, "VIRTUAL::PL7254C::INSTR");
}

TEST(XmlStoreTest, AnEmptyStoreHasNothing) {
    const auto store = Read("<IviConfigStore/>");
    EXPECT_EQ(store->FindDriverSession("MyScope"), nullptr);
    EXPECT_EQ(store->FindSoftwareModule("Kestrion"), nullptr);
}

TEST(XmlStoreTest, ALogicalNameWinsOverASessionOfTheSameName) {
    const auto store = Read(SampleWith("<Name>Practice</Name>", "<Name>BenchSession</Name>"));
    EXPECT_TRUE(store->FindDriverSession("BenchSession")->Options().simulate);
}

TEST(XmlStoreTest, ALogicalNameOfAnotherSessionHidesNoDriverSession) {
    const auto store = Read(SampleWith("<Name>Role</Name>", "<Name>BenchSession</Name>"));
    ASSERT_NE(store->FindDriverSession("BenchSession"), nullptr);
    EXPECT_EQ(store->FindDriverSession("BenchSession")->DriverSetup(), "Shape=Round");
}

TEST(XmlStoreTest, ALogicalNameMayCallItsDriverSessionASession) {
    const auto store =
        Read(SampleWith("<IviSession idref=\"p28\"/>", "<IviSession idref=\"p27\"/>"));
    EXPECT_NE(store->FindDriverSession("Role"), nullptr);
}

// What stands in full and what by reference is free.
TEST(XmlStoreTest, ASessionMayStandInFullInAnotherSection) {
    const auto store = Read(R"(<IviConfigStore>
        <Sessions><IviDriverSession id="s"><Name>Session</Name><Cache>1</Cache>
            <InterchangeCheck>0</InterchangeCheck><QueryInstrStatus>0</QueryInstrStatus>
            <RangeCheck>0</RangeCheck><RecordCoercions>0</RecordCoercions>
            <Simulate>0</Simulate></IviDriverSession></Sessions>
        <DriverSessions><IviDriverSession idref="s"/></DriverSessions>
        <LogicalNames><IviLogicalName><Name>Logical</Name><IviDriverSession idref="s"/>
            </IviLogicalName></LogicalNames>
        </IviConfigStore>)");
    ASSERT_NE(store->FindDriverSession("Session"), nullptr);
    EXPECT_TRUE(store->FindDriverSession("Session")->Options().cache);
    EXPECT_EQ(store->FindDriverSession("Session"), store->FindDriverSession("Logical"));
}

TEST(XmlStoreTest, AComponentMayStandForItsKindByASchemaType) {
    const auto store =
        Read(SampleWith("<IviString id=\"p17\">\n              <Name>Model</Name>\n"
                        "              <Type>String</Type>\n"
                        "              <Value>PL7054C</Value>\n"
                        "            </IviString>",
                        "<IviDataComponent xsi:type=\"IviString\"><Name>Model</Name>"
                        "<Value>PL7054C</Value></IviDataComponent>"));
    const auto settings =
        store->FindDriverSession("MyScope")->DataComponents().at(0).components.at(0);
    EXPECT_EQ(settings.type, DataType::kString);
    EXPECT_EQ(std::get<std::string>(settings.value), "PL7054C");
}

TEST(XmlStoreTest, AComponentOfAnUnknownTypeHasNoValue) {
    const auto store = Read(SampleWith("<IviString id=\"p7\">",
                                       "<IviDataComponent xsi:type=\"IviColour\"><Name>Shade</Name>"
                                       "<Value>7</Value></IviDataComponent><IviString id=\"p7\">"));
    const auto components = store->FindSoftwareModule("Kestrion")->DataComponents();
    ASSERT_THAT(components, SizeIs(3));
    EXPECT_EQ(components[1].name, "Shade");
    EXPECT_EQ(components[1].type, DataType::kOther);
    EXPECT_EQ(components[1].value.index(), 0U);
}

TEST(XmlStoreTest, WhatADriverDoesNotAskForIsSkipped) {
    const auto store =
        Read(SampleWith("<LogicalNames>",
                        "<Notes><IviLogicalName id=\"n\"><Name>MyScope</Name></IviLogicalName>"
                        "</Notes><LogicalNames><Remark>Four names</Remark>"));
    EXPECT_NE(store->FindDriverSession("MyScope"), nullptr);
}

TEST(XmlStoreTest, TextsMayBeInAnyEncodingThatXmlKnows) {
    std::string utf16 = "\xFF\xFE";
    for (const char c : SampleStore().substr(SampleStore().find("<IviConfigStore"))) {
        utf16 += c;
        utf16 += '\0';
    }
    EXPECT_NE(Read(utf16)->FindDriverSession("MyScope"), nullptr);
    const auto store =
        Read("\xEF\xBB\xBF" + SampleWith("<Name>Spare</Name>", "<Name>B\xC3\xA4r</Name>"));
    EXPECT_NE(store->FindDriverSession("MyScope"), nullptr);
}

TEST(XmlStoreTest, CommentsAndCdataDoNotCutANameUp) {
    const auto store = Read(
        SampleWith("<Name>MyScope</Name>", "<Name>My<!-- a comment --><![CDATA[Scope]]></Name>"));
    EXPECT_NE(store->FindDriverSession("MyScope"), nullptr);
}

TEST(XmlStoreTest, NumbersMayHaveTheFormsOfTheSchema) {
    const auto store = Read(SampleWith("<Value>-40</Value>", "<Value> +7\n</Value>"));
    const auto components = store->FindDriverSession("MyScope")->DataComponents();
    EXPECT_EQ(std::get<std::int32_t>(components.at(0).components.at(1).value), 7);
    const auto second = Read(SampleWith("<Cache>0</Cache>", "<Cache>true</Cache>"));
    EXPECT_TRUE(second->FindDriverSession("MyScope")->Options().cache);
}

TEST(XmlStoreTest, ARangeThatEndsBeforeItBeginsIsKept) {
    const auto store = Read(SampleWith("<Min>1</Min>", "<Min>5</Min>"));
    const auto names = store->FindSoftwareModule("Kestrion")->PhysicalNames();
    EXPECT_EQ(names.at(0).ranges.at(0).min, 5);
    EXPECT_EQ(names.at(0).ranges.at(0).max, 4);
}

TEST(XmlStoreTest, PhysicalNamesOfTheSameNameMayStandInDifferentCollections) {
    const auto store = Read(SampleWith("<Name>Remote</Name>", "<Name>A</Name>"));
    EXPECT_EQ(store->FindSoftwareModule("Kestrion")->PhysicalNames().at(1).nested.at(0).name, "A");
}

}  // namespace
}  // namespace kestrion
