// Events, their sequence and the edges.
#include "tests/system/property_pairs.h"

namespace kestrion {
namespace {

class PairsOfTriggers : public PropertyPairs {};

TEST_P(PairsOfTriggers, EdgeOfTheAEvent) {
    Open();
    const auto edge = client_.As<IKestrionTriggerAEdge>();
    constexpr auto kPut = &IKestrionTriggerAEdge::Configure;
    constexpr auto kRead = &IKestrionTriggerAEdge::Read;
    PutAndRead(*edge, kPut, kRead, KestrionTriggerSourceCh4, -0.5, KestrionTriggerSlopeFall,
               KestrionTriggerAEdgeCouplingNoiseReject);
    PutAndRead(*edge, kPut, kRead, KestrionTriggerSourceAux, 100.0, KestrionTriggerSlopeEither,
               KestrionTriggerAEdgeCouplingHFReject);
    PutAndRead(*edge, kPut, kRead, KestrionTriggerSourceLine, -100.0, KestrionTriggerSlopeRise,
               KestrionTriggerAEdgeCouplingLFReject);
    ExpectGet(*client_.As<IKestrionTrigger>(), &IKestrionTrigger::get_Type,
              KestrionTriggerTypeEdge);
}

TEST_P(PairsOfTriggers, EdgeOfTheBEvent) {
    Open();
    const auto edge = client_.As<IKestrionTriggerBEdge>();
    constexpr auto kPut = &IKestrionTriggerBEdge::Configure;
    constexpr auto kRead = &IKestrionTriggerBEdge::Read;
    PutAndRead(*edge, kPut, kRead, KestrionTriggerSourceCh2, 0.25, KestrionTriggerSlopeFall,
               KestrionTriggerBEdgeCouplingNoiseReject);
    PutAndRead(*edge, kPut, kRead, KestrionTriggerSourceCh3, -100.0, KestrionTriggerSlopeEither,
               KestrionTriggerBEdgeCouplingAC);
}

// 1 V amplitude around zero, and a square from 0 V to 3.3 V.
TEST_P(PairsOfTriggers, LevelToFiftyPercentIsTheMiddleOfTheSource) {
    Open();
    const auto edge = client_.As<IKestrionTriggerAEdge>();
    EXPECT_EQ(client_.Channel("Channel2")->put_DisplayState(VARIANT_TRUE), S_OK);
    EXPECT_EQ(edge->put_Source(KestrionTriggerSourceCh2), S_OK);
    EXPECT_EQ(edge->ConfigureLevelTo50Percent(), S_OK) << TakeErrorText();
    double level = 0.0;
    EXPECT_EQ(edge->get_Level(&level), S_OK) << TakeErrorText();
    EXPECT_NEAR(level, 1.65, 0.1);
}

TEST_P(PairsOfTriggers, SequenceOfTheEvents) {
    Open();
    const auto trigger = client_.As<IKestrionTrigger>();
    EXPECT_EQ(trigger->ConfigureAThenBAfterEventsTrigger(KestrionTriggerHoldoffModeTime, 0.5, 77),
              S_OK)
        << TakeErrorText();
    ExpectInstrumentError(0);
    ExpectGet(*trigger, &IKestrionTrigger::get_HoldoffMode, KestrionTriggerHoldoffModeTime);
    ExpectGet(*trigger, &IKestrionTrigger::get_AHoldoffTime, 0.5);
    ExpectGet(*trigger, &IKestrionTrigger::get_AActualHoldoffTime, 0.5);
    ExpectGet(*trigger, &IKestrionTrigger::get_ABSequence, KestrionTriggerSequenceAThenB);
    ExpectGet(*trigger, &IKestrionTrigger::get_BBy, KestrionTriggerBByEvents);
    ExpectGet(*trigger, &IKestrionTrigger::get_EventCount, 77);

    EXPECT_EQ(trigger->ConfigureAThenBAfterTimeTrigger(KestrionTriggerHoldoffModeRandom, 1e-3, 2.0),
              S_OK)
        << TakeErrorText();
    ExpectInstrumentError(0);
    ExpectGet(*trigger, &IKestrionTrigger::get_HoldoffMode, KestrionTriggerHoldoffModeRandom);
    ExpectGet(*trigger, &IKestrionTrigger::get_AHoldoffTime, 1e-3);
    ExpectGet(*trigger, &IKestrionTrigger::get_BBy, KestrionTriggerBByTime);
    ExpectGet(*trigger, &IKestrionTrigger::get_BDelayTime, 2.0);

    EXPECT_EQ(trigger->ConfigureAOnlyTrigger(KestrionTriggerHoldoffModeDefault, 12.0), S_OK)
        << TakeErrorText();
    ExpectInstrumentError(0);
    ExpectGet(*trigger, &IKestrionTrigger::get_HoldoffMode, KestrionTriggerHoldoffModeDefault);
    ExpectGet(*trigger, &IKestrionTrigger::get_AHoldoffTime, 12.0);
    ExpectGet(*trigger, &IKestrionTrigger::get_ABSequence, KestrionTriggerSequenceAOnly);
}

TEST_P(PairsOfTriggers, TypeAndHoldoffOfTheClass) {
    Open();
    const auto trigger = client_.As<IIviScopeTrigger>();
    for (const auto& [type, holdoff] :
         {std::pair(IviScopeTriggerWidth, 0.25), std::pair(IviScopeTriggerGlitch, 1e-3),
          std::pair(IviScopeTriggerRunt, 5.0), std::pair(IviScopeTriggerEdge, 2e-6)}) {
        EXPECT_EQ(trigger->Configure(type, holdoff), S_OK) << TakeErrorText();
        ExpectInstrumentError(0);
        ExpectGet(*trigger, &IIviScopeTrigger::get_Type, type);
        ExpectGet(*trigger, &IIviScopeTrigger::get_Holdoff, holdoff);
    }
}

INSTANTIATE_TEST_SUITE_P(Links, PairsOfTriggers, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
