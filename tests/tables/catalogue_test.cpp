// The lookup over the driver's own enumerations and models, as the generator makes them.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "tables/enum_lookup.h"
#include "tables/model_families.h"
#include "tests/platform/allocation_count.h"
#include "tests/tables/lookup_steps.h"

namespace kestrion {
namespace {

struct Listed {
    std::string_view shortName;
    std::string_view memberKey;
};

// The enumerations that members use so far, each with one of these members. All have type names of
// the form "Kestrion...Enum".
constexpr Listed kWithTables[] = {
    {"AcquisitionEnhancedENOBType", "IKestrionAcquisition.EnhancedENOBType"},
    {"AcquisitionMode", "IKestrionAcquisition.Mode"},
    {"AcquisitionSamplingMode", "IKestrionAcquisition.SamplingMode"},
    {"ChannelBandwidth", "IKestrionChannel.BandwidthEnum"},
    {"ChannelCalibration", "IKestrionChannel.ProbeCalibration"},
    {"ChannelCoupling", "IKestrionChannel.Coupling"},
    {"ChannelEnhancedBandwidth", "IKestrionChannel.EnhancedBandwidth"},
    {"ChannelMixCaptureState", "IKestrionChannel.MixCaptureState"},
    {"ChannelProbeControl", "IKestrionChannel.ProbeControl"},
    {"ChannelProbeInputMode", "IKestrionChannels.ConfigureAuxInProbeInputMode"},
    {"ChannelProbeSignal", "IKestrionChannel.ProbeSignal"},
    {"ChannelTermination", "IKestrionChannel.Termination"},
    {"ChannelWavelength", "IKestrionChannel.WaveLength"},
    {"EnhancedBandwidthApplytoAll", "IKestrionChannel.EnhancedBandwidthApplytoAll"},
    {"HorizontalModel", "IKestrionHorizontal.HorizontalModel"},
    {"HorizontalRollMode", "IKestrionHorizontal.RollMode"},
    {"Source", "IKestrionWaveformTransfer.FetchWaveform"},
    {"Channel", "IKestrionTrigger.BLevel"},
    {"DigitalChannel", "IKestrionWaveformTransfer.FetchDigitalWaveform"},
    {"DigitalChannelState", "IKestrionDigitalChannel.State"},
    {"MeasurementAnnotation", "IKestrionMeasurements.AnnotationX"},
    {"MeasurementAnnotationState", "IKestrionMeasurements.AnnotationState"},
    {"MeasurementAnnotationType", "IKestrionMeasurements.AnnotationType"},
    {"MeasurementDelayDirection", "IKestrionMeasurementImmediate.DelayDirection"},
    {"MeasurementEdge", "IKestrionMeasurementImmediate.DelayEdge1"},
    {"MeasurementGating", "IKestrionMeasurements.Gating"},
    {"MeasurementMethod", "IKestrionMeasurements.Method"},
    {"MeasurementNoise", "IKestrionMeasurement.Noise"},
    {"MeasurementSignalType", "IKestrionMeasurements.SetSourceSignalType"},
    {"MeasurementSource", "IKestrionMeasurements.SetSourceSignalType"},
    {"MeasurementStatistics", "IKestrionMeasurements.StatisticsMode"},
    {"MeasurementType", "IKestrionMeasurementImmediate.Type"},
    {"MeasurementUnit", "IKestrionReferenceLevel.Unit"},
    {"Reference", "IKestrionWaveformTransfer.WriteWaveformToReference"},
    {"TriggerAEdgeCoupling", "IKestrionTriggerAEdge.Coupling"},
    {"TriggerAReady", "IKestrionTrigger.AReady"},
    {"TriggerBBy", "IKestrionTrigger.BBy"},
    {"TriggerBEdgeCoupling", "IKestrionTriggerBEdge.Coupling"},
    {"TriggerBReady", "IKestrionTrigger.BReady"},
    {"TriggerBType", "IKestrionTrigger.BType"},
    {"TriggerCommunicationClockPolarity", "IKestrionTriggerCommunication.ClockPolarity"},
    {"TriggerCommunicationCode", "IKestrionTriggerCommunication.Code"},
    {"TriggerCommunicationPulseForm", "IKestrionTriggerCommunication.PulseForm"},
    {"TriggerCommunicationSourceType", "IKestrionTriggerCommunication.SourceType"},
    {"TriggerCommunicationStandard", "IKestrionTriggerCommunication.Standard"},
    {"TriggerGlitchCondition", "IKestrionTriggerGlitch.Condition"},
    {"TriggerHoldoffMode", "IKestrionTrigger.HoldoffMode"},
    {"TriggerLevel", "IKestrionTriggerAEdge.LevelEnum"},
    {"TriggerLevelSourcePreference", "IKestrionTrigger.LevelSourcePreference"},
    {"TriggerLogicInputChannel", "IKestrionTriggerPattern.ChannelLogic"},
    {"TriggerMode", "IKestrionTrigger.Mode"},
    {"TriggerPatternCondition", "IKestrionTriggerPattern.Condition"},
    {"TriggerPatternType", "IKestrionTriggerPattern.Type"},
    {"TriggerPulsePolarity", "IKestrionTriggerGlitch.Polarity"},
    {"TriggerQualify", "IKestrionTriggerRunt.Qualify"},
    {"TriggerResetSource", "IKestrionTrigger.BResetSource"},
    {"TriggerResetState", "IKestrionTrigger.BResetState"},
    {"TriggerResetTransition", "IKestrionTrigger.BResetTransition"},
    {"TriggerResetType", "IKestrionTrigger.BResetType"},
    {"TriggerRuntCondition", "IKestrionTriggerRunt.Condition"},
    {"TriggerSequence", "IKestrionTrigger.ABSequence"},
    {"TriggerSerialClockPolarity", "IKestrionTriggerSerial.ClockPolarity"},
    {"TriggerSerialClockSource", "IKestrionTriggerSerial.ClockSource"},
    {"TriggerSerialCode", "IKestrionTriggerSerial.Code"},
    {"TriggerSerialDataFormat", "IKestrionTriggerSerial.DataFormat"},
    {"TriggerSerialErrorType", "IKestrionTriggerSerial.ErrorType"},
    {"TriggerSerialStandard", "IKestrionTriggerSerial.Standard"},
    {"TriggerSlope", "IKestrionTriggerAEdge.Slope"},
    {"TriggerSource", "IKestrionTriggerAEdge.Source"},
    {"TriggerTimeoutPolarity", "IKestrionTriggerTimeout.Polarity"},
    {"TriggerTransitionCondition", "IKestrionTriggerTransition.Condition"},
    {"TriggerType", "IKestrionTrigger.Type"},
    {"TriggerVideoField", "IKestrionTriggerVideo.Field"},
    {"TriggerVideoFormat", "IKestrionTriggerVideo.Format"},
    {"TriggerVideoPolarity", "IKestrionTriggerVideo.Polarity"},
    {"TriggerVideoScanRate", "IKestrionTriggerVideo.ScanRate"},
    {"TriggerVideoScanType", "IKestrionTriggerVideo.ScanType"},
    {"TriggerWidthCondition", "IKestrionTriggerWidth.Condition"},
    {"TriggerWidthPolarity", "IKestrionTriggerWidth.Polarity"},
    {"TriggerWindowCondition", "IKestrionTriggerWindow.Condition"},
    {"TriggerWindowLogicInput", "IKestrionTriggerWindow.ChAInput"},
    {"TriggerWindowType", "IKestrionTriggerWindow.Type"},
};

// Those that no command carries.
constexpr std::string_view kWithoutTables[] = {
    "KestrionErrorCodesEnum",
    "KestrionSaveRecallSetupLocationEnum",
    "KestrionSearchDDRSearchTypeEnum",
    "KestrionTimeOutEnum",
    "KestrionTriggerRuntLogicInputEnum",
    "KestrionUtilityExCalibrationStatusEnum",
    "IviScopeInterpolationEnum",
    "IviScopeSampleModeEnum",
    "IviScopeAcquisitionTypeEnum",
    "IviScopeMeasurementEnum",
    "IviScopeAcquisitionStatusEnum",
    "IviScopeTriggerCouplingEnum",
    "IviScopeTriggerModifierEnum",
    "IviScopeACLineSlopeEnum",
    "IviScopeTimeOutEnum",
};

const EnumData& DataOf(std::string_view typeName) {
    const auto found = std::ranges::find(AllEnums(), typeName, &EnumData::typeName);
    EXPECT_NE(found, AllEnums().end()) << typeName;
    return *found;
}

std::array<std::string, 4> FourNames(std::string_view shortName) {
    const std::string name(shortName);
    return {name, "Kestrion" + name + "Enum", "Kestrion" + name, name + "Enum"};
}

// "-" where there is no token.
std::string TokenOf(std::string_view enumName, std::string_view memberKey, std::int32_t value) {
    const IEnumConverter* converter = GetEnumConverter(enumName, memberKey);
    std::string token;
    return converter != nullptr && converter->ToToken("", value, token) ? token : "-";
}

constexpr std::int32_t kNoValue = 999;
std::int32_t ValueOf(std::string_view enumName, std::string_view memberKey,
                     std::string_view response) {
    const IEnumConverter* converter = GetEnumConverter(enumName, memberKey);
    std::int32_t value = 0;
    return converter != nullptr && converter->FromToken("", response, value) ? value : kNoValue;
}

TEST(CatalogueTest, HoldsEveryEnumeration) {
    constexpr std::size_t kDriver = 286;
    constexpr std::size_t kClass = 20;
    ASSERT_EQ(AllEnums().size(), 1 + kDriver + kClass);
    EXPECT_EQ(AllEnums().front().typeName, "VARIANT_BOOL");
    for (std::size_t i = 1; i < AllEnums().size(); ++i) {
        const std::string_view first = i <= kDriver ? "Kestrion" : "IviScope";
        EXPECT_EQ(AllEnums()[i].typeName.substr(0, first.size()), first);
    }
}

TEST(CatalogueTest, EveryNameFindsItsConverterInAllFourForms) {
    for (const Listed& listed : kWithTables) {
        const IEnumConverter* found = GetEnumConverter(listed.shortName, listed.memberKey);
        EXPECT_NE(found, nullptr) << listed.shortName;
        for (const std::string& name : FourNames(listed.shortName)) {
            EXPECT_EQ(GetEnumConverter(name, listed.memberKey), found) << name;
        }
    }
}

TEST(CatalogueTest, EveryMemberOfATableFindsItsConverterInAllFourForms) {
    for (const Listed& listed : kWithTables) {
        const std::array<std::string, 4> names = FourNames(listed.shortName);
        for (const EnumTable& table : DataOf(names[1]).tables) {
            for (const std::string_view key : table.memberKeys) {
                const IEnumConverter* found = GetEnumConverter(names[0], key);
                EXPECT_NE(found, nullptr) << names[0] << " of " << key;
                for (const std::string& name : names) {
                    EXPECT_EQ(GetEnumConverter(name, key), found) << name << " of " << key;
                }
            }
        }
    }
}

TEST(CatalogueTest, EveryEnumerationWithTablesIsListedHere) {
    for (const EnumData& data : AllEnums()) {
        const bool isListed = std::ranges::find(kWithTables, data.shortName, &Listed::shortName) !=
                              std::end(kWithTables);
        if (data.typeName.starts_with("Kestrion")) {
            EXPECT_EQ(isListed, !data.tables.empty()) << data.typeName;
        }
    }
}

TEST(CatalogueTest, WhatNoCommandCarriesHasNoConverter) {
    for (const std::string_view name : kWithoutTables) {
        EXPECT_TRUE(DataOf(name).tables.empty()) << name;
        EXPECT_EQ(GetEnumConverter(name, ""), nullptr) << name;
        EXPECT_EQ(GetEnumConverter(name, "IKestrionChannel.Coupling"), nullptr) << name;
        EXPECT_EQ(GetEnumConverter(DataOf(name).shortName, ""), nullptr) << name;
    }
}

TEST(CatalogueTest, AnEnumerationWhoseMembersAreToComeHasNoConverterYet) {
    for (const EnumData& data : AllEnums()) {
        if (data.tables.empty()) {
            EXPECT_EQ(GetEnumConverter(data.typeName, ""), nullptr) << data.typeName;
        }
    }
}

TEST(CatalogueTest, TheNameWithoutTheEndingHasNoFifthForm) {
    // This one has no table yet, so that the name is looked up in a copy with one.
    constexpr std::string_view kKeys[] = {"I.Member"};
    const EnumTable tables[] = {{kKeys, {}}};
    EnumData data = DataOf("KestrionTrigABusUSBTrigOnCondition");
    data.tables = tables;
    const EnumLookup lookup(std::span<const EnumData>(&data, 1));
    const IEnumConverter* found = lookup.Find("KestrionTrigABusUSBTrigOnCondition", "I.Member");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(lookup.Find("TrigABusUSBTrigOnCondition", "I.Member"), found);
    EXPECT_EQ(lookup.Find("TrigABusUSBTrigOnConditionEnum", "I.Member"), found);
    EXPECT_EQ(lookup.Find("KestrionTrigABusUSBTrigOnConditionEnum", "I.Member"), nullptr);
}

TEST(CatalogueTest, ALookupAllocatesNothingAfterTheFirstUse) {
    for (const EnumData& data : AllEnums()) {
        for (const EnumTable& table : data.tables) {
            for (const std::string_view key : table.memberKeys) {
                const IEnumConverter* first = GetEnumConverter(data.typeName, key);
                const IEnumConverter* second = nullptr;
                EXPECT_EQ(
                    test::CountAllocations([&] { second = GetEnumConverter(data.typeName, key); }),
                    0U);
                EXPECT_NE(first, nullptr);
                EXPECT_EQ(second, first) << data.typeName << " of " << key;
            }
        }
        EXPECT_EQ(test::CountAllocations(
                      [&] { EXPECT_EQ(GetEnumConverter(data.typeName, "I.None"), nullptr); }),
                  0U);
    }
}

// However late an enumeration comes in the order, and however late a member: the name is one
// look-up and the member another.
TEST(CatalogueTest, ALookupTakesTwoStepsForEveryEnumerationAndMember) {
    std::size_t lookups = 0;
    std::size_t comparisons = 0;
    for (const Listed& listed : kWithTables) {
        for (const std::string& name : FourNames(listed.shortName)) {
            for (const EnumTable& table : DataOf(FourNames(listed.shortName)[1]).tables) {
                for (const std::string_view key : table.memberKeys) {
                    (void)GetEnumConverter(name, key);
                    const test::LookupSteps steps =
                        test::CountSteps([&] { (void)GetEnumConverter(name, key); });
                    EXPECT_EQ(steps.hashes, 2U) << name << " of " << key;
                    lookups += steps.hashes;
                    comparisons += steps.comparisons;
                }
            }
        }
    }
    // A map has 2.25 keys to a place at most.
    EXPECT_GT(lookups, 0U);
    EXPECT_LE(comparisons, lookups * 3);
}

TEST(CatalogueTest, AnUnknownNameTakesOneStep) {
    (void)GetEnumConverter("Nothing", "IKestrionChannel.Coupling");
    for (const char* name : {"Nothing", "KestrionNothingEnum", "", "KestrionTimeOutEnum"}) {
        const test::LookupSteps steps =
            test::CountSteps([&] { (void)GetEnumConverter(name, "IKestrionChannel.Coupling"); });
        EXPECT_EQ(steps.hashes, 1U) << name;
    }
}

TEST(CatalogueTest, OneEnumerationHasTheTokensOfEachMember) {
    constexpr std::string_view kTermination = "ChannelTermination";
    EXPECT_EQ(TokenOf(kTermination, "IKestrionChannel.Termination", 0), "50.0000");
    EXPECT_EQ(TokenOf(kTermination, "IKestrionChannel.Termination", 1), "1.0000E+6");
    EXPECT_EQ(ValueOf(kTermination, "IKestrionChannel.Termination", "50"), kNoValue);

    constexpr std::string_view kEnhanced = "ChannelEnhancedBandwidth";
    EXPECT_EQ(TokenOf(kEnhanced, "IKestrionChannel.EnhancedBandwidth", 0), "OFF");
    EXPECT_EQ(TokenOf(kEnhanced, "IKestrionChannel.EnhancedBandwidth", 1), "AUTO");
    EXPECT_EQ(ValueOf(kEnhanced, "IKestrionChannel.EnhancedBandwidth", "1"), kNoValue);
    EXPECT_EQ(TokenOf(kEnhanced, "IKestrionChannel.BandWidthEnhancedState", 0), "0");
    EXPECT_EQ(TokenOf(kEnhanced, "IKestrionChannel.BandWidthEnhancedState", 1), "1");
    EXPECT_EQ(ValueOf(kEnhanced, "IKestrionChannel.BandWidthEnhancedState", "AUTO"), kNoValue);
}

TEST(CatalogueTest, RunStopAndSingleSequenceSeeOneSettingFromBothSides) {
    EXPECT_EQ(TokenOf("VARIANT_BOOL", "IKestrionAcquisition.RunStop", -1), "RUNSTOP");
    EXPECT_EQ(TokenOf("VARIANT_BOOL", "IKestrionAcquisition.RunStop", 0), "SEQUENCE");
    EXPECT_EQ(ValueOf("VARIANT_BOOL", "IKestrionAcquisition.RunStop", "RUNSTOP"), -1);
    EXPECT_EQ(TokenOf("VARIANT_BOOL", "IKestrionAcquisition.SingleSequence", -1), "SEQUENCE");
    EXPECT_EQ(TokenOf("VARIANT_BOOL", "IKestrionAcquisition.SingleSequence", 0), "RUNSTOP");
    EXPECT_EQ(ValueOf("VARIANT_BOOL", "IKestrionAcquisition.SingleSequence", "SEQUENCE"), -1);
}

TEST(CatalogueTest, EveryTokenThatIsWrittenReadsBackAsItsValue) {
    for (const EnumData& data : AllEnums()) {
        for (const EnumTable& table : data.tables) {
            const std::string_view key = table.memberKeys.front();
            for (const EnumRow& row : table.rows) {
                ASSERT_FALSE(row.tokens.empty()) << data.typeName << " of " << key;
                // Both 1 and -1 stand for true, which reads as -1.
                const std::int32_t value =
                    data.typeName == "VARIANT_BOOL" && row.value == 1 ? -1 : row.value;
                EXPECT_EQ(ValueOf(data.typeName, key, row.tokens.front()), value)
                    << data.typeName << " of " << key;
            }
        }
    }
}

TEST(ModelListTest, EveryModelIsInOneFamily) {
    std::size_t models = 0;
    for (const FamilyData& family : AllFamilies()) {
        for (const std::string_view model : family.models) {
            ++models;
            EXPECT_EQ(ModelFamilyTable::Instance().Find(model)->families.size(), 1U) << model;
            EXPECT_TRUE(ModelFamilyTable::Instance().IsModelInFamily(model, family.name)) << model;
            EXPECT_FALSE(ModelFamilyTable::Instance().IsModelInFamily(model, "IbisC Series"));
        }
    }
    EXPECT_EQ(models, 115U);
}

TEST(ModelListTest, ModelsOfLikeFamilies) {
    const ModelFamilyTable& table = ModelFamilyTable::Instance();
    EXPECT_EQ(table.FamilyOf("LK7254B"), "LarkB Series");
    EXPECT_EQ(table.FamilyOf("LK7054"), "Lark Series");
    EXPECT_FALSE(table.IsModelInFamily("LK7254B", "Lark Series"));
    // An ending doesn't decide.
    EXPECT_EQ(table.FamilyOf("IB6124C"), "Ibis Series");
    EXPECT_EQ(table.FamilyOf("PL7254C"), "Plover Series");
    EXPECT_EQ(table.FamilyOf("MR71254C"), "Merlin Series");
}

TEST(ModelListTest, ModelsOfTwoChannels) {
    std::vector<std::string_view> found;
    for (const FamilyData& family : AllFamilies()) {
        std::ranges::copy_if(family.models, std::back_inserter(found), IsTwoChannelModel);
    }
    EXPECT_EQ(found, (std::vector<std::string_view>{"PL75002SX", "PL75902SX", "PL77002SX"}));
}

TEST(ModelListTest, TheSupportedModelsAreAllModelsFromTheHeronSeriesUpward) {
    const std::string_view text = SupportedInstrumentModels();
    EXPECT_EQ(std::ranges::count(text, ','), 114);
    EXPECT_EQ(text.find(' '), std::string_view::npos);
    EXPECT_TRUE(text.starts_with("HR5034,"));
    EXPECT_TRUE(text.ends_with(",MR75004DX"));
    const std::string commas = "," + std::string(text) + ",";
    for (const FamilyData& family : AllFamilies()) {
        for (const std::string_view model : family.models) {
            EXPECT_NE(commas.find("," + std::string(model) + ","), std::string::npos) << model;
        }
    }
}

}  // namespace
}  // namespace kestrion
