// Files that are no store or a broken one: each is refused with its reason.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/xml_store.h"
#include "tests/store/sample_store.h"

namespace kestrion {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Why a file is refused; it has to be.
std::string Refusal(std::string_view bytes) {
    std::string reason;
    EXPECT_EQ(ReadXmlStore(bytes, reason), nullptr);
    return reason;
}

std::string RefusalOfSampleWith(std::string_view from, std::string_view to) {
    return Refusal(SampleWith(from, to));
}

std::string Repeated(std::string_view text, int times) {
    std::string repeated;
    for (int i = 0; i < times; ++i) {
        repeated += text;
    }
    return repeated;
}

TEST(BrokenStoreTest, WhatIsNoXmlIsToldWithItsLine) {
    EXPECT_EQ(Refusal("<IviConfigStore>\n<Name>x</Nam>\n</IviConfigStore>"),
              "line 2 is not well-formed XML: Start-end tags mismatch");
    EXPECT_THAT(Refusal(""), HasSubstr("not well-formed XML"));
    EXPECT_THAT(Refusal("MyScope = TCPIP::1.2.3.4::INSTR\n"), HasSubstr("not well-formed XML"));
    EXPECT_THAT(Refusal(std::string_view("\x7F"
                                         "ELF\0\0\1\2",
                                         8)),
                HasSubstr("not well-formed XML"));
}

TEST(BrokenStoreTest, AnotherDocumentIsNoStore) {
    EXPECT_EQ(Refusal("<html/>"), "its document element is 'html' and not 'IviConfigStore'");
    EXPECT_EQ(Refusal("<IviConfigStore/><IviConfigStore/>"),
              "it has more than one document element");
}

TEST(BrokenStoreTest, AReferenceToAMissingIdIsToldWithItsOwner) {
    EXPECT_EQ(RefusalOfSampleWith("<IviHardwareAsset idref=\"p14\"/>",
                                  "<IviHardwareAsset idref=\"p99\"/>"),
              "IviDriverSession 'BenchSession' (id 'p15') refers with IviHardwareAsset to the id "
              "'p99', which no element has");
    EXPECT_EQ(
        RefusalOfSampleWith("<IviPublishedAPI idref=\"p1\"/>", "<IviPublishedAPI idref=\"p77\"/>"),
        "IviSoftwareModule 'Kestrion' (id 'p3') refers with IviPublishedAPI to the id 'p77', "
        "which no element has");
}

TEST(BrokenStoreTest, AReferenceToAnotherKindIsToldWithBoth) {
    EXPECT_EQ(RefusalOfSampleWith("<IviSoftwareModuleRef idref=\"p3\"/>",
                                  "<IviSoftwareModuleRef idref=\"p14\"/>"),
              "IviDriverSession 'BenchSession' (id 'p15') refers with IviSoftwareModuleRef to the "
              "id 'p14', which belongs to IviHardwareAsset 'Scope on the bench' (id 'p14')");
    EXPECT_THAT(RefusalOfSampleWith("<IviDriverSession idref=\"p15\"/>\n    </IviLogicalName>",
                                    "<IviDriverSession idref=\"p28\"/>\n    </IviLogicalName>"),
                HasSubstr("which belongs to IviSession 'RoleControl' (id 'p28')"));
}

TEST(BrokenStoreTest, AnIdStandsOnce) {
    EXPECT_EQ(RefusalOfSampleWith("<IviHardwareAsset id=\"p14\">", "<IviHardwareAsset id=\"p8\">"),
              "the id 'p8' stands twice, at IviPhysicalName 'Channel' (id 'p8') and at "
              "IviHardwareAsset 'Scope on the bench' (id 'p8')");
}

TEST(BrokenStoreTest, AnElementIsEitherItselfOrAReference) {
    EXPECT_EQ(RefusalOfSampleWith("<IviDriverSession id=\"p27\">",
                                  "<IviDriverSession id=\"p27\" idref=\"p15\">"),
              "IviDriverSession 'SimulatedSession' (id 'p27') has an id of its own and an idref");
}

TEST(BrokenStoreTest, AStructureInItselfIsACycle) {
    EXPECT_EQ(RefusalOfSampleWith("<IviString id=\"p17\">",
                                  "<IviStructure idref=\"p16\"/><IviString id=\"p17\">"),
              "IviStructure 'Configurable Initial Settings' (id 'p16') contains itself");
}

TEST(BrokenStoreTest, StructuresInEachOtherAreACycle) {
    constexpr std::string_view kStore = R"(<IviConfigStore><SoftwareModules><IviSoftwareModule>
        <Name>Kestrion</Name><DataComponents>
        <IviStructure id="a"><Name>First</Name><DataComponents><IviStructure idref="b"/>
            </DataComponents></IviStructure>
        </DataComponents></IviSoftwareModule></SoftwareModules>
        <Spare><IviStructure id="b"><Name>Second</Name><DataComponents><IviStructure idref="a"/>
            </DataComponents></IviStructure></Spare>
        </IviConfigStore>)";
    EXPECT_EQ(Refusal(kStore), "IviStructure 'First' (id 'a') contains itself");
}

TEST(BrokenStoreTest, APhysicalNameBelowItselfIsACycle) {
    EXPECT_EQ(RefusalOfSampleWith("<IviPhysicalName id=\"p11\">",
                                  "<IviPhysicalName idref=\"p10\"/><IviPhysicalName id=\"p11\">"),
              "IviPhysicalName 'A' (id 'p10') contains itself");
}

// Without this, twenty structures of two references each would stand for a million.
TEST(BrokenStoreTest, APartBelongsToOneOwner) {
    EXPECT_EQ(RefusalOfSampleWith("<DataComponents/>\n      <VirtualNames/>",
                                  "<DataComponents><IviStructure idref=\"p16\"/></DataComponents>"
                                  "<VirtualNames/>"),
              "IviStructure 'Configurable Initial Settings' (id 'p16') stands in more than one "
              "collection");
}

TEST(BrokenStoreTest, NamesStandOnceInTheirSection) {
    EXPECT_EQ(RefusalOfSampleWith("<Name>Practice</Name>", "<Name>MyScope</Name>"),
              "two elements in the LogicalNames of IviConfigStore 'IVI Configuration Server' have "
              "the name 'MyScope'");
    EXPECT_THAT(RefusalOfSampleWith("<Name>SimulatedSession</Name>", "<Name>BenchSession</Name>"),
                HasSubstr("have the name 'BenchSession'"));
    EXPECT_THAT(RefusalOfSampleWith("<Name>RoleControl</Name>", "<Name>BenchSession</Name>"),
                StartsWith("two elements in the Sessions of"));
    EXPECT_THAT(RefusalOfSampleWith("</HardwareAssets>",
                                    "<IviHardwareAsset><Name>Scope on the bench</Name>"
                                    "</IviHardwareAsset></HardwareAssets>"),
                HasSubstr("HardwareAssets of"));
    EXPECT_THAT(RefusalOfSampleWith("</SoftwareModules>",
                                    "<IviSoftwareModule><Name>Kestrion</Name>"
                                    "</IviSoftwareModule></SoftwareModules>"),
                HasSubstr("SoftwareModules of"));
}

TEST(BrokenStoreTest, NamesStandOnceInTheirCollection) {
    EXPECT_EQ(RefusalOfSampleWith("<Name>WarmStart</Name>", "<Name>Model</Name>"),
              "two elements in the DataComponents of IviStructure 'Configurable Initial Settings' "
              "(id 'p16') have the name 'Model'");
    EXPECT_EQ(RefusalOfSampleWith("<Name>Input</Name>", "<Name>Probe</Name>"),
              "two elements in the VirtualNames of IviDriverSession 'BenchSession' (id 'p15') have "
              "the name 'Probe'");
    EXPECT_THAT(RefusalOfSampleWith("<Name>A</Name>", "<Name>Channel</Name>"),
                StartsWith("two elements in the PhysicalNames of IviSoftwareModule 'Kestrion'"));
    EXPECT_THAT(RefusalOfSampleWith("<Name>Second</Name>", "<Name>First</Name>"),
                StartsWith("two elements in the PhysicalRanges of IviPhysicalName 'Remote'"));
}

TEST(BrokenStoreTest, ASectionOrAFieldStandsOnce) {
    EXPECT_EQ(RefusalOfSampleWith("</IviConfigStore>", "<Sessions/></IviConfigStore>"),
              "IviConfigStore 'IVI Configuration Server' has more than one Sessions");
    EXPECT_EQ(RefusalOfSampleWith("<Cache>0</Cache>", "<Cache>0</Cache><Cache>1</Cache>"),
              "IviDriverSession 'BenchSession' (id 'p15') has more than one Cache");
    EXPECT_THAT(RefusalOfSampleWith("<IviHardwareAsset idref=\"p14\"/>",
                                    "<IviHardwareAsset idref=\"p14\"/>"
                                    "<IviHardwareAsset idref=\"p14\"/>"),
                HasSubstr("has more than one IviHardwareAsset"));
}

TEST(BrokenStoreTest, WhatHasToHaveANameHasOne) {
    EXPECT_EQ(RefusalOfSampleWith("<Name>BenchSession</Name>", "<Name> </Name>"),
              "IviDriverSession (id 'p15') has no Name");
    EXPECT_EQ(RefusalOfSampleWith("<Name>Kestrion</Name>", ""),
              "IviSoftwareModule (id 'p3') has no Name");
    EXPECT_EQ(RefusalOfSampleWith("<Name>Spare</Name>", ""),
              "IviLogicalName (id 'p32') has no Name");
    EXPECT_EQ(RefusalOfSampleWith("<Name>WarmStart</Name>", ""),
              "IviBoolean (id 'p20') has no Name");
}

TEST(BrokenStoreTest, ValuesAreOfTheirType) {
    EXPECT_EQ(RefusalOfSampleWith("<Simulate>0</Simulate>", "<Simulate>no</Simulate>"),
              "the Simulate of IviDriverSession 'BenchSession' (id 'p15') is 'no' and not 0, 1, "
              "true or false");
    EXPECT_EQ(RefusalOfSampleWith("<RangeCheck>0</RangeCheck>", ""),
              "IviDriverSession 'BenchSession' (id 'p15') has no RangeCheck");
    EXPECT_EQ(RefusalOfSampleWith("<Value>-40</Value>", "<Value>40 ms</Value>"),
              "the Value of IviInteger 'SettlingTime' (id 'p18') is '40 ms' and not an integer of "
              "32 bits");
    EXPECT_THAT(RefusalOfSampleWith("<Value>-40</Value>", "<Value>2147483648</Value>"),
                HasSubstr("is '2147483648' and not an integer of 32 bits"));
    EXPECT_THAT(RefusalOfSampleWith("<Value>-40</Value>", "<Value/>"),
                HasSubstr("is '' and not an integer"));
    EXPECT_EQ(RefusalOfSampleWith("<Value>2.5E-1</Value>", "<Value>2,5</Value>"),
              "the Value of IviReal 'ProbeFactor' (id 'p19') is '2,5' and not a number");
    EXPECT_EQ(
        RefusalOfSampleWith("<Value>1</Value>", "<Value>yes</Value>"),
        "the Value of IviBoolean 'WarmStart' (id 'p20') is 'yes' and not 0, 1, true or false");
    EXPECT_EQ(RefusalOfSampleWith("<Max>4</Max>", "<Max>four</Max>"),
              "the Max of IviPhysicalRange 'Inputs' (id 'p9') is 'four' and not an integer of 32 "
              "bits");
    EXPECT_EQ(RefusalOfSampleWith("<StartingPhysicalIndex>1</StartingPhysicalIndex>", ""),
              "IviVirtualRange 'Both inputs' (id 'p24') has no StartingPhysicalIndex");
}

TEST(BrokenStoreTest, AVirtualNameWithoutRangesHasBothNames) {
    EXPECT_EQ(RefusalOfSampleWith("<MapTo>Channel3</MapTo>", "<MapTo/>"),
              "IviVirtualName 'Probe' (id 'p22') has neither ranges nor both a Name and a MapTo");
    std::string nameless = SampleWith("<Name>Probe</Name>", "<Name/>");
    const std::string_view other = "<Name>\n          </Name>\n          <MapTo>";
    ASSERT_NE(nameless.find(other), std::string::npos);
    nameless.replace(nameless.find(other), other.size(), "<Name>N</Name><MapTo>");
    EXPECT_EQ(Refusal(nameless),
              "IviVirtualName (id 'p22') has neither ranges nor both a Name and a MapTo");
}

TEST(BrokenStoreTest, ARangeCannotStandForMoreNamesThanMemoryHolds) {
    EXPECT_EQ(
        RefusalOfSampleWith("<Max>2</Max>", "<Max>2147483647</Max>"),
        "with IviPhysicalRange 'First' (id 'p12'), from 1 to 2147483647, its ranges have more "
        "than 200000 indices");
    EXPECT_THAT(
        RefusalOfSampleWith("<Max>2</Max>\n              <Min>1</Min>\n              <Start",
                            "<Max>2147483647</Max><Min>-2147483648</Min><Start"),
        StartsWith("with IviVirtualRange 'Both inputs' (id 'p24')"));
    EXPECT_EQ(RefusalOfSampleWith("<MapTo>Channel3</MapTo>",
                                  "<MapTo>" + std::string(257, 'x') + "</MapTo>"),
              "the MapTo of IviVirtualName 'Probe' (id 'p22') is longer than 256 bytes");
}

TEST(BrokenStoreTest, AMegabyteOfNestingIsRefused) {
    constexpr int kLevels = 100'000;
    const std::string nested = "<IviConfigStore>" + Repeated("<a>", kLevels) +
                               Repeated("</a>", kLevels) + "</IviConfigStore>";
    EXPECT_EQ(Refusal(nested), "its elements are nested more than 100 deep, at 'a'");
    // Without the end, and as comments on the document's type.
    EXPECT_THAT(Refusal(Repeated("<a>", 350'000)), HasSubstr("not well-formed XML"));
    EXPECT_THAT(Refusal("<!DOCTYPE x [" + Repeated("<![INCLUDE[", 100'000)),
                HasSubstr("not well-formed XML"));
    EXPECT_THAT(Refusal("<IviConfigStore>" + Repeated("&", 1'000'000)),
                HasSubstr("not well-formed XML"));
}

TEST(BrokenStoreTest, MoreTagsThanAStoreHasAreRefusedBeforeTheyCostMemory) {
    EXPECT_EQ(Refusal(Repeated("<a/>", 1'000'001)), "it has more than 1000000 tags");
}

// References let elements be nested that stand side by side in the file.
TEST(BrokenStoreTest, NestingByReferencesIsRefusedAsWell) {
    std::string structures;
    constexpr int kStructures = 1000;
    for (int i = 0; i < kStructures; ++i) {
        structures += "<IviStructure id=\"s" + std::to_string(i) + "\"><Name>S" +
                      std::to_string(i) + "</Name><DataComponents><IviStructure idref=\"s" +
                      std::to_string(i + 1) + "\"/></DataComponents></IviStructure>";
    }
    const std::string store =
        "<IviConfigStore><SoftwareModules><IviSoftwareModule><Name>Kestrion</Name><DataComponents>"
        "<IviStructure idref=\"s0\"/></DataComponents></IviSoftwareModule></SoftwareModules>"
        "<Spare>" +
        structures + "<IviStructure id=\"s1000\"><Name>Last</Name></IviStructure>" +
        "</Spare></IviConfigStore>";
    EXPECT_EQ(Refusal(store), "IviStructure 'S63' (id 's63') is nested more than 64 deep");
}

TEST(BrokenStoreTest, EntitiesOfADocumentTypeAreNotExpanded) {
    const std::string store = SampleStore();
    const std::string entities =
        "<!DOCTYPE s [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">]>";
    const std::string body = store.substr(store.find("<IviConfigStore"));
    std::string reason;
    const auto read =
        ReadXmlStore(entities + std::string(body).replace(body.find("Ada"), 3, "&b;"), reason);
    ASSERT_NE(read, nullptr) << reason;
    EXPECT_EQ(
        std::get<std::string>(read->FindSoftwareModule("Kestrion")->DataComponents().at(1).value),
        "&b; & Grace");
}

TEST(BrokenStoreTest, LongTextsAreShortenedInTheReason) {
    EXPECT_EQ(Refusal("<" + std::string(100'000, 'x') + "/>"),
              "its document element is '" + std::string(60, 'x') + "...' and not 'IviConfigStore'");
    // The cut doesn't leave half a character behind.
    EXPECT_THAT(RefusalOfSampleWith("<Value>-40</Value>",
                                    "<Value>" + std::string(59, 'x') + "\xC3\xA4 and more</Value>"),
                HasSubstr(" is '" + std::string(59, 'x') + "...' and not"));
}

// Whatever is missing of a file or wrong in one place of it, it ends in a store or in a reason.
TEST(BrokenStoreTest, EveryCutEndsInAReason) {
    const std::string store = SampleStore();
    const std::size_t end = store.find("</IviConfigStore>") + 16;
    for (std::size_t length = 0; length < end; length += 41) {
        EXPECT_NE(Refusal(std::string_view(store).substr(0, length)), "") << length;
    }
}

TEST(BrokenStoreTest, EveryChangedByteEndsInAStoreOrAReason) {
    const std::string store = SampleStore();
    for (const char changed : {'\0', '<', '>', '&', '"', '\xFF', '9'}) {
        for (std::size_t at = 0; at < store.size(); at += 97) {
            std::string broken = store;
            broken[at] = changed;
            std::string reason;
            const bool isStore = ReadXmlStore(broken, reason) != nullptr;
            EXPECT_EQ(isStore, reason.empty()) << at;
        }
    }
}

}  // namespace
}  // namespace kestrion
