// Patterns, states, and set-up and hold, as both events.
#include "tests/system/property_pairs.h"

namespace kestrion {
namespace {

constexpr auto kHigh = KestrionTriggerLogicInputChannelHigh;
constexpr auto kLow = KestrionTriggerLogicInputChannelLow;
constexpr auto kAny = KestrionTriggerLogicInputChannelDontCare;

class PairsOfLogic : public PropertyPairs {
  protected:
    template <typename SetupHold>
    void TestSetupHold() {
        const auto times = client_.As<SetupHold>();
        PutAndRead(*times, &SetupHold::Configure, &SetupHold::Read, KestrionChannelCh4, 0.5,
                   KestrionChannelCh1, -0.5, KestrionTriggerSlopeFall, -100e-9, 100e-9);
        PutAndRead(*times, &SetupHold::Configure, &SetupHold::Read, KestrionChannelCh2, 100.0,
                   KestrionChannelCh3, -100.0, KestrionTriggerSlopeEither, 3e-9, -1e-9);
        EXPECT_EQ(times->ConfigureSetupHoldTime(5e-9, 6e-9), S_OK);
        ExpectRead(*times, &SetupHold::Read, KestrionChannelCh2, 100.0, KestrionChannelCh3, -100.0,
                   KestrionTriggerSlopeEither, 5e-9, 6e-9);
    }
    template <typename Pattern>
    void TestPattern() {
        const auto pattern = client_.As<Pattern>();
        PutAndRead(*pattern, &Pattern::Configure, &Pattern::Read, kHigh, 0.5, kLow, -0.5, kAny, 1.5,
                   kLow, -1.5, KestrionTriggerPatternTypeNAND,
                   KestrionTriggerPatternConditionLessThan, 1e-6);
        PutAndRead(*pattern, &Pattern::Configure, &Pattern::Read, kLow, 100.0, kAny, -100.0, kHigh,
                   0.0, kHigh, 2.5, KestrionTriggerPatternTypeOR,
                   KestrionTriggerPatternConditionMoreThan, 0.5);
    }
    template <typename State>
    void TestState() {
        const auto state = client_.As<State>();
        PutAndRead(*state, &State::Configure, &State::Read, kHigh, kLow, kAny,
                   KestrionTriggerSlopeFall, 0.5, -0.5, 1.5, -1.5, KestrionTriggerPatternTypeNOR,
                   VARIANT_TRUE);
        PutAndRead(*state, &State::Configure, &State::Read, kLow, kHigh, kHigh,
                   KestrionTriggerSlopeRise, 1.0, 2.0, 3.0, 4.0, KestrionTriggerPatternTypeAND,
                   VARIANT_FALSE);
    }
    template <typename State>
    void TestStateOfTwoChannels() {
        const auto state = client_.As<State>();
        PutAndRead(*state, &State::Configure2ChannelScope, &State::Read2ChannelScope, kHigh,
                   KestrionTriggerSlopeFall, 0.5, -0.5, KestrionTriggerPatternTypeNOR,
                   VARIANT_TRUE);
        PutAndRead(*state, &State::Configure2ChannelScope, &State::Read2ChannelScope, kLow,
                   KestrionTriggerSlopeRise, 1.5, -1.5, KestrionTriggerPatternTypeOR,
                   VARIANT_FALSE);
    }
    template <typename Pattern>
    void TestPatternOfTwoChannels() {
        const auto pattern = client_.As<Pattern>();
        EXPECT_EQ(pattern->Configure2ChannelScope(kLow, kHigh, 0.25, -0.25,
                                                  KestrionTriggerPatternTypeNAND,
                                                  KestrionTriggerPatternConditionMoreThan, 2e-6),
                  S_OK)
            << TakeErrorText();
        ExpectInstrumentError(0);
        ExpectRead(*pattern, &Pattern::Read2ChannelScope, kLow, kHigh,
                   KestrionTriggerPatternTypeNAND, KestrionTriggerPatternConditionMoreThan);
        ExpectGet(*pattern, &Pattern::get_MoreThanTime, 2e-6);
        EXPECT_EQ(
            pattern->Configure2ChannelScope(kAny, kLow, 1.25, -1.25, KestrionTriggerPatternTypeOR,
                                            KestrionTriggerPatternConditionLessThan, 3e-6),
            S_OK)
            << TakeErrorText();
        ExpectInstrumentError(0);
        ExpectRead(*pattern, &Pattern::Read2ChannelScope, kAny, kLow, KestrionTriggerPatternTypeOR,
                   KestrionTriggerPatternConditionLessThan);
        ExpectGet(*pattern, &Pattern::get_LessThanTime, 3e-6);
    }
};

TEST_P(PairsOfLogic, SetupAndHold) {
    Open();
    TestSetupHold<IKestrionTriggerSetuphold>();
    TestSetupHold<IKestrionTriggerBSetuphold>();
}

// Where the last input stands with the patterns.
TEST_P(PairsOfLogic, PatternOfFourChannels) {
    Open("LK7054");
    TestPattern<IKestrionTriggerPattern>();
    TestPattern<IKestrionTriggerBPattern>();
}

TEST_P(PairsOfLogic, PatternOfTwoChannels) {
    Open("PL77002SX");
    TestPatternOfTwoChannels<IKestrionTriggerPattern>();
    TestPatternOfTwoChannels<IKestrionTriggerBPattern>();
}

TEST_P(PairsOfLogic, StateOfFourChannels) {
    Open();
    TestState<IKestrionTriggerState>();
    TestState<IKestrionTriggerBState>();
}

TEST_P(PairsOfLogic, StateOfTwoChannels) {
    Open("PL77002SX");
    TestStateOfTwoChannels<IKestrionTriggerState>();
    TestStateOfTwoChannels<IKestrionTriggerBState>();
}

INSTANTIATE_TEST_SUITE_P(Links, PairsOfLogic, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
