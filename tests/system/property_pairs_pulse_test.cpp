// Pulses as both events: the interfaces of the B event have the methods of the A event.
#include "tests/system/property_pairs.h"

namespace kestrion {
namespace {

class PairsOfPulses : public PropertyPairs {
  protected:
    template <typename Glitch>
    void TestGlitch() {
        const auto glitch = client_.As<Glitch>();
        PutAndRead(*glitch, &Glitch::Configure, &Glitch::Read, KestrionChannelCh3, -0.5,
                   KestrionTriggerPulsePolarityNegative, KestrionTriggerGlitchConditionReject,
                   1e-9);
        PutAndRead(*glitch, &Glitch::Configure, &Glitch::Read, KestrionChannelCh1, 2.0,
                   KestrionTriggerPulsePolarityEither, KestrionTriggerGlitchConditionAccept, 1e6);
        EXPECT_EQ(glitch->ConfigureCondition(KestrionTriggerGlitchConditionReject, 4e-3), S_OK);
        ExpectRead(*glitch, &Glitch::Read, KestrionChannelCh1, 2.0,
                   KestrionTriggerPulsePolarityEither, KestrionTriggerGlitchConditionReject, 4e-3);
    }
    template <typename Runt>
    void TestRunt() {
        const auto runt = client_.As<Runt>();
        PutAndRead(*runt, &Runt::Configure, &Runt::Read, KestrionChannelCh4,
                   KestrionTriggerPulsePolarityPositive, KestrionTriggerRuntConditionOccurs, 2e-9,
                   -1.0, 1.0);
        PutAndRead(*runt, &Runt::Configure, &Runt::Read, KestrionChannelCh2,
                   KestrionTriggerPulsePolarityEither, KestrionTriggerRuntConditionLogic, 0.5,
                   -100.0, 100.0);
        EXPECT_EQ(runt->ConfigureLevel(0.25, 0.75), S_OK);
        EXPECT_EQ(runt->ConfigureWidthCondition(3e-6), S_OK);
        ExpectRead(*runt, &Runt::Read, KestrionChannelCh2, KestrionTriggerPulsePolarityEither,
                   KestrionTriggerRuntConditionWiderThan, 3e-6, 0.25, 0.75);
        TestOtherChannels(*runt);
        ExpectGet(*runt, &Runt::get_Qualify, KestrionTriggerQualifyLogic);
    }
    // The channels that are not the source.
    template <typename Pulse>
    void TestOtherChannels(Pulse& pulse) {
        for (const auto source : {KestrionChannelCh2, KestrionChannelCh3}) {
            EXPECT_EQ(pulse.put_Source(source), S_OK);
            const double level = source == KestrionChannelCh2 ? 1.5 : -0.5;
            EXPECT_EQ(
                pulse.ConfigureLogicCondition(KestrionTriggerWindowLogicInputHigh,
                                              KestrionTriggerWindowLogicInputLow, level, 2 * level),
                S_OK)
                << TakeErrorText();
            ExpectInstrumentError(0);
            ExpectGet(pulse, &Pulse::get_ChAInput, KestrionTriggerWindowLogicInputHigh);
            ExpectGet(pulse, &Pulse::get_ChBInput, KestrionTriggerWindowLogicInputLow);
            ExpectGet(pulse, &Pulse::get_ChAThreshold, level);
            ExpectGet(pulse, &Pulse::get_ChBThreshold, 2 * level);
        }
    }
    template <typename Timeout>
    void TestTimeout() {
        const auto timeout = client_.As<Timeout>();
        PutAndRead(*timeout, &Timeout::Configure, &Timeout::Read, KestrionChannelCh2, 1.25,
                   KestrionTriggerTimeoutPolarityStaysLow, 100e-12);
        PutAndRead(*timeout, &Timeout::Configure, &Timeout::Read, KestrionChannelCh4, -3.0,
                   KestrionTriggerTimeoutPolarityEither, 10.0);
    }
    template <typename Transition>
    void TestTransition() {
        const auto slope = client_.As<Transition>();
        PutAndRead(*slope, &Transition::Configure, &Transition::Read, KestrionChannelCh1,
                   KestrionTriggerPulsePolarityNegative,
                   KestrionTriggerTransitionConditionSlowerThan, 5e-9, -2.0, 2.0);
        PutAndRead(*slope, &Transition::Configure, &Transition::Read, KestrionChannelCh3,
                   KestrionTriggerPulsePolarityPositive,
                   KestrionTriggerTransitionConditionFasterThan, 7.0, 0.0, 0.5);
        EXPECT_EQ(slope->ConfigureCondition(KestrionTriggerTransitionConditionSlowerThan, 2e-6),
                  S_OK);
        EXPECT_EQ(slope->ConfigureLevels(-0.125, 0.375), S_OK);
        ExpectRead(*slope, &Transition::Read, KestrionChannelCh3,
                   KestrionTriggerPulsePolarityPositive,
                   KestrionTriggerTransitionConditionSlowerThan, 2e-6, -0.125, 0.375);
    }
    template <typename Width>
    void TestWidth() {
        const auto width = client_.As<Width>();
        PutAndRead(*width, &Width::Configure, &Width::Read, KestrionChannelCh3, 0.75,
                   KestrionTriggerWidthPolarityNegative, KestrionTriggerWidthConditionOutside, 1e-9,
                   1e-6);
        PutAndRead(*width, &Width::Configure, &Width::Read, KestrionChannelCh1, -0.75,
                   KestrionTriggerWidthPolarityPositive, KestrionTriggerWidthConditionWithin, 1.0,
                   2.0);
        EXPECT_EQ(width->ConfigureLimits(3e-9, 4e-9), S_OK);
        ExpectRead(*width, &Width::Read, KestrionChannelCh1, -0.75,
                   KestrionTriggerWidthPolarityPositive, KestrionTriggerWidthConditionWithin, 3e-9,
                   4e-9);
    }
    // On the older families, where a window has a condition of its own.
    template <typename Window>
    void TestWindow() {
        const auto window = client_.As<Window>();
        PutAndRead(*window, &Window::Configure, &Window::Read, KestrionChannelCh4,
                   KestrionTriggerWindowTypeOutside, KestrionTriggerWindowConditionOccurs, 6e-9,
                   -0.5, 0.5);
        PutAndRead(*window, &Window::Configure, &Window::Read, KestrionChannelCh1,
                   KestrionTriggerWindowTypeInside, KestrionTriggerWindowConditionWiderThan, 8e-3,
                   -4.0, 4.0);
        EXPECT_EQ(window->ConfigureThresholds(1.0, 2.0), S_OK);
        EXPECT_EQ(window->ConfigureWidthCondition(9e-6), S_OK);
        ExpectRead(*window, &Window::Read, KestrionChannelCh1, KestrionTriggerWindowTypeInside,
                   KestrionTriggerWindowConditionWiderThan, 9e-6, 1.0, 2.0);
        TestOtherChannels(*window);
        ExpectGet(*window, &Window::get_Condition, KestrionTriggerWindowConditionLogic);
    }
    // On the newer ones the condition is a qualifier.
    template <typename Window>
    void TestQualifiedWindow() {
        const auto window = client_.As<Window>();
        for (const auto condition :
             {KestrionTriggerWindowConditionLogic, KestrionTriggerWindowConditionOccurs}) {
            EXPECT_EQ(window->Configure(KestrionChannelCh2, KestrionTriggerWindowTypeOutside,
                                        condition, 6e-9, -0.5, 0.5),
                      S_OK)
                << TakeErrorText();
            ExpectInstrumentError(0);
            ExpectGet(*window, &Window::get_Qualify,
                      condition == KestrionTriggerWindowConditionLogic
                          ? KestrionTriggerQualifyLogic
                          : KestrionTriggerQualifyOccurs);
            ExpectGet(*window, &Window::get_Type, KestrionTriggerWindowTypeOutside);
            ExpectGet(*window, &Window::get_Width, 6e-9);
            ExpectGet(*window, &Window::get_ThresholdLow, -0.5);
            ExpectGet(*window, &Window::get_ThresholdHigh, 0.5);
        }
        TestOtherChannels(*window);
        ExpectGet(*window, &Window::get_Qualify, KestrionTriggerQualifyLogic);
    }
};

TEST_P(PairsOfPulses, Glitch) {
    Open();
    TestGlitch<IKestrionTriggerGlitch>();
    TestGlitch<IKestrionTriggerBGlitch>();
}

TEST_P(PairsOfPulses, Runt) {
    Open();
    TestRunt<IKestrionTriggerRunt>();
    TestRunt<IKestrionTriggerBRunt>();
}

TEST_P(PairsOfPulses, Timeout) {
    Open();
    TestTimeout<IKestrionTriggerTimeout>();
    TestTimeout<IKestrionTriggerBTimeout>();
}

TEST_P(PairsOfPulses, Transition) {
    Open();
    TestTransition<IKestrionTriggerTransition>();
    TestTransition<IKestrionTriggerBTransition>();
}

TEST_P(PairsOfPulses, Width) {
    Open();
    TestWidth<IKestrionTriggerWidth>();
    TestWidth<IKestrionTriggerBWidth>();
}

TEST_P(PairsOfPulses, WindowOnAnOlderFamily) {
    Open("LK7054");
    TestWindow<IKestrionTriggerWindow>();
    TestWindow<IKestrionTriggerBWindow>();
}

TEST_P(PairsOfPulses, WindowOnANewerFamily) {
    Open("LK7254B");
    TestQualifiedWindow<IKestrionTriggerWindow>();
    TestQualifiedWindow<IKestrionTriggerBWindow>();
}

INSTANTIATE_TEST_SUITE_P(Links, PairsOfPulses, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
