// Glitch, timeout, transition and width of both events: the same members, one letter apart.
#include "tests/scope/trigger_test.h"

namespace kestrion {
namespace {

class TriggerPulseTest : public TriggerTest {
  protected:
    inline static const Words kPolarities = {{"POSITIVE", 1}, {"NEGATIVE", 2}, {"EITHER", 3}};

    template <typename Pulse>
    void CheckSource(const ComPtr<Pulse>& pulse, const std::string& root) {
        CheckWords(pulse, &Pulse::get_Source, &Pulse::put_Source, root + ":PULSE:SOURCE",
                   kChannels);
    }

    template <typename Pulse>
    void CheckQualify(const ComPtr<Pulse>& pulse, const std::string& path) {
        CheckWords(pulse, &Pulse::get_Qualify, &Pulse::put_Qualify, path,
                   {{"OCCURS", 0}, {"LOGIC", 1}});
    }

    template <typename Pulse>
    void CheckLevel(const ComPtr<Pulse>& pulse, const std::string& root) {
        CheckReal(pulse, &Pulse::get_Level, &Pulse::put_Level, root + ":LEVEL");
        CheckWrittenWords(pulse, &Pulse::put_LevelEnum, root + ":LEVEL", kLogicFamilies);
    }

    template <typename Pulse>
    void CheckThresholds(const ComPtr<Pulse>& pulse, const std::string& path) {
        CheckReal(pulse, &Pulse::get_ThresholdHigh, &Pulse::put_ThresholdHigh, path + ":HIGH");
        CheckReal(pulse, &Pulse::get_ThresholdLow, &Pulse::put_ThresholdLow, path + ":LOW");
    }

    template <typename Glitch>
    void CheckGlitch(const std::string& root) {
        const auto glitch = As<Glitch>();
        fake.Expect(root + ":TYPE PULSE;PULSE:CLASS GLITCH;:" + root +
                    ":LEVEL 1.5;PULSE:SOURCE CH2;GLITCH:POLARITY NEGATIVE;TRIGIF REJECT;"
                    "WIDTH 2e-09\n");
        EXPECT_EQ(glitch->Configure(KestrionChannelCh2, 1.5, KestrionTriggerPulsePolarityNegative,
                                    KestrionTriggerGlitchConditionReject, 2e-9),
                  S_OK);
        fake.Expect(root + ":PULSE:GLITCH:TRIGIF ACCEPT;WIDTH 5e-09\n");
        EXPECT_EQ(glitch->ConfigureCondition(KestrionTriggerGlitchConditionAccept, 5e-9), S_OK);
        fake.Expect(root + ":LEVEL?;PULSE:SOURCE?;GLITCH:POLARITY?;TRIGIF?;WIDTH?\n")
            .Reply("1.5;CH4;EITHER;ACCEPT;3.0E-9\n");
        auto source = KestrionChannelCh1;
        double level = 0.0;
        auto polarity = KestrionTriggerPulsePolarityPositive;
        auto condition = KestrionTriggerGlitchConditionReject;
        double width = 0.0;
        EXPECT_EQ(glitch->Read(&source, &level, &polarity, &condition, &width), S_OK);
        EXPECT_EQ(source, KestrionChannelCh4);
        EXPECT_EQ(level, 1.5);
        EXPECT_EQ(polarity, KestrionTriggerPulsePolarityEither);
        EXPECT_EQ(condition, KestrionTriggerGlitchConditionAccept);
        EXPECT_EQ(width, 3e-9);
        CheckLevel(glitch, root);
        CheckSource(glitch, root);
        CheckQualify(glitch, root + ":PULSE:GLITCH:QUALIFY");
        CheckWords(glitch, &Glitch::get_Condition, &Glitch::put_Condition,
                   root + ":PULSE:GLITCH:TRIGIF", {{"ACCEPT", 1}, {"REJECT", 2}});
        CheckWords(glitch, &Glitch::get_Polarity, &Glitch::put_Polarity,
                   root + ":PULSE:GLITCH:POLARITY", kPolarities);
        CheckReal(glitch, &Glitch::get_Width, &Glitch::put_Width, root + ":PULSE:GLITCH:WIDTH");
    }

    template <typename Timeout>
    void CheckTimeout(const std::string& root) {
        const auto timeout = As<Timeout>();
        fake.Expect(root +
                    ":LEVEL 0.8;TYPE PULSE;PULSE:CLASS TIMEOUT;SOURCE CH3;"
                    "TIMEOUT:POLARITY STAYSLOW;TIME 1e-06\n");
        EXPECT_EQ(timeout->Configure(KestrionChannelCh3, 0.8,
                                     KestrionTriggerTimeoutPolarityStaysLow, 1e-6),
                  S_OK);
        fake.Expect(root + ":PULSE:SOURCE?;:" + root + ":LEVEL?;:" + root +
                    ":PULSE:TIMEOUT:POLARITY?;TIME?\n")
            .Reply("CH1;0.25;EITHER;2.0E-6\n");
        auto source = KestrionChannelCh4;
        double level = 0.0;
        auto polarity = KestrionTriggerTimeoutPolarityStaysHigh;
        double time = 0.0;
        EXPECT_EQ(timeout->Read(&source, &level, &polarity, &time), S_OK);
        EXPECT_EQ(source, KestrionChannelCh1);
        EXPECT_EQ(level, 0.25);
        EXPECT_EQ(polarity, KestrionTriggerTimeoutPolarityEither);
        EXPECT_EQ(time, 2e-6);
        CheckLevel(timeout, root);
        CheckSource(timeout, root);
        CheckQualify(timeout, root + ":PULSE:TIMEOUT:QUALIFY");
        CheckWords(timeout, &Timeout::get_Polarity, &Timeout::put_Polarity,
                   root + ":PULSE:TIMEOUT:POLARITY",
                   {{"STAYSHIGH", 0}, {"STAYSLOW", 1}, {"EITHER", 2}});
        CheckReal(timeout, &Timeout::get_Time, &Timeout::put_Time, root + ":PULSE:TIMEOUT:TIME");
    }

    template <typename Transition>
    void CheckTransition(const std::string& root) {
        const auto transition = As<Transition>();
        fake.Expect(root +
                    ":TYPE PULSE;PULSE:CLASS TRANSITION;SOURCE CH1;TRANSITION:POLARITY POSITIVE;"
                    "WHEN SLOWERTHAN;DELTATIME 4e-09;THRESHOLD:LOW -1;HIGH 1.5\n");
        EXPECT_EQ(
            transition->Configure(KestrionChannelCh1, KestrionTriggerPulsePolarityPositive,
                                  KestrionTriggerTransitionConditionSlowerThan, 4e-9, -1.0, 1.5),
            S_OK);
        fake.Expect(root + ":PULSE:TRANSITION:WHEN FASTERTHAN;DELTATIME 1e-09\n");
        EXPECT_EQ(
            transition->ConfigureCondition(KestrionTriggerTransitionConditionFasterThan, 1e-9),
            S_OK);
        fake.Expect(root + ":PULSE:TRANSITION:THRESHOLD:LOW 0.4;HIGH 2.4\n");
        EXPECT_EQ(transition->ConfigureLevels(0.4, 2.4), S_OK);
        fake.Expect(root + ":PULSE:SOURCE?;:" + root + ":PULSE:TRANSITION:THRESHOLD:LOW?;HIGH?;:" +
                    root + ":PULSE:TRANSITION:POLARITY?;WHEN?;DELTATIME?\n")
            .Reply("CH2;0.4;2.4;NEGATIVE;FASTERTHAN;5.0E-9\n");
        auto source = KestrionChannelCh1;
        auto polarity = KestrionTriggerPulsePolarityPositive;
        auto condition = KestrionTriggerTransitionConditionSlowerThan;
        double time = 0.0;
        double low = 0.0;
        double high = 0.0;
        EXPECT_EQ(transition->Read(&source, &polarity, &condition, &time, &low, &high), S_OK);
        EXPECT_EQ(source, KestrionChannelCh2);
        EXPECT_EQ(polarity, KestrionTriggerPulsePolarityNegative);
        EXPECT_EQ(condition, KestrionTriggerTransitionConditionFasterThan);
        EXPECT_EQ(time, 5e-9);
        EXPECT_EQ(low, 0.4);
        EXPECT_EQ(high, 2.4);
        CheckSource(transition, root);
        CheckQualify(transition, root + ":PULSE:TRANSITION:QUALIFY");
        CheckThresholds(transition, root + ":PULSE:TRANSITION:THRESHOLD");
        CheckWords(transition, &Transition::get_Condition, &Transition::put_Condition,
                   root + ":PULSE:TRANSITION:WHEN", {{"FASTERTHAN", 0}, {"SLOWERTHAN", 1}});
        CheckWords(transition, &Transition::get_Polarity, &Transition::put_Polarity,
                   root + ":PULSE:TRANSITION:POLARITY", kPolarities);
        CheckReal(transition, &Transition::get_DeltaTime, &Transition::put_DeltaTime,
                  root + ":PULSE:TRANSITION:DELTATIME");
    }

    template <typename Width>
    void CheckWidth(const std::string& root) {
        const auto width = As<Width>();
        fake.Expect(root +
                    ":LEVEL 0.5;TYPE PULSE;PULSE:CLASS WIDTH;SOURCE CH4;WIDTH:POLARITY NEGATIVE;"
                    "WHEN OUTSIDE;LOWLIMIT 1e-08;HIGHLIMIT 2e-08\n");
        EXPECT_EQ(width->Configure(KestrionChannelCh4, 0.5, KestrionTriggerWidthPolarityNegative,
                                   KestrionTriggerWidthConditionOutside, 1e-8, 2e-8),
                  S_OK);
        // The blank stands in the instrument's command set.
        fake.Expect(root + ":PULSE:WIDTH:LOWLIMIT 3e-09; HIGHLIMIT 4e-09\n");
        EXPECT_EQ(width->ConfigureLimits(3e-9, 4e-9), S_OK);
        fake.Expect(root + ":LEVEL?;PULSE:SOURCE?;WIDTH:POLARITY?;WHEN?;LOWLIMIT?;HIGHLIMIT?\n")
            .Reply("0.5;CH3;POSITIVE;WITHIN;1.0E-9;9.0E-9\n");
        auto source = KestrionChannelCh1;
        double level = 0.0;
        auto polarity = KestrionTriggerWidthPolarityNegative;
        auto condition = KestrionTriggerWidthConditionOutside;
        double low = 0.0;
        double high = 0.0;
        EXPECT_EQ(width->Read(&source, &level, &polarity, &condition, &low, &high), S_OK);
        EXPECT_EQ(source, KestrionChannelCh3);
        EXPECT_EQ(level, 0.5);
        EXPECT_EQ(polarity, KestrionTriggerWidthPolarityPositive);
        EXPECT_EQ(condition, KestrionTriggerWidthConditionWithin);
        EXPECT_EQ(low, 1e-9);
        EXPECT_EQ(high, 9e-9);
        CheckLevel(width, root);
        CheckSource(width, root);
        CheckQualify(width, root + ":PULSE:WIDTH:QUALIFY");
        CheckWords(width, &Width::get_Condition, &Width::put_Condition, root + ":PULSE:WIDTH:WHEN",
                   {{"WITHIN", 1}, {"OUTSIDE", 2}});
        CheckWords(width, &Width::get_Polarity, &Width::put_Polarity,
                   root + ":PULSE:WIDTH:POLARITY", {{"POSITIVE", 1}, {"NEGATIVE", 2}});
        CheckReal(width, &Width::get_LowLimit, &Width::put_LowLimit,
                  root + ":PULSE:WIDTH:LOWLIMIT");
        CheckReal(width, &Width::get_HighLimit, &Width::put_HighLimit,
                  root + ":PULSE:WIDTH:HIGHLIMIT");
    }

    template <typename Runt>
    void CheckRunt(const std::string& root) {
        const auto runt = As<Runt>();
        fake.Expect(root +
                    ":TYPE PULSE;PULSE:CLASS RUNT;SOURCE CH2;RUNT:POLARITY EITHER;WHEN WIDERTHAN;"
                    "WIDTH 6e-09;THRESHOLD:LOW 0.4;HIGH 2\n");
        EXPECT_EQ(runt->Configure(KestrionChannelCh2, KestrionTriggerPulsePolarityEither,
                                  KestrionTriggerRuntConditionWiderThan, 6e-9, 0.4, 2.0),
                  S_OK);
        fake.Expect(root + ":PULSE:RUNT:THRESHOLD:LOW 0.5;HIGH 1.5\n");
        EXPECT_EQ(runt->ConfigureLevel(0.5, 1.5), S_OK);
        fake.Expect(root + ":PULSE:RUNT:WHEN WIDERTHAN;WIDTH 1e-06\n");
        EXPECT_EQ(runt->ConfigureWidthCondition(1e-6), S_OK);
        fake.Expect(root + ":PULSE:SOURCE?;RUNT:POLARITY?;WHEN?;WIDTH?;THRESHOLD:LOW?;HIGH?\n")
            .Reply("CH1;NEGATIVE;LOGIC;7.0E-9;0.1;0.2\n");
        auto source = KestrionChannelCh4;
        auto polarity = KestrionTriggerPulsePolarityPositive;
        auto condition = KestrionTriggerRuntConditionOccurs;
        double width = 0.0;
        double low = 0.0;
        double high = 0.0;
        EXPECT_EQ(runt->Read(&source, &polarity, &condition, &width, &low, &high), S_OK);
        EXPECT_EQ(source, KestrionChannelCh1);
        EXPECT_EQ(polarity, KestrionTriggerPulsePolarityNegative);
        EXPECT_EQ(condition, KestrionTriggerRuntConditionLogic);
        EXPECT_EQ(width, 7e-9);
        EXPECT_EQ(low, 0.1);
        EXPECT_EQ(high, 0.2);
        CheckSource(runt, root);
        CheckQualify(runt, root + ":PULSE:RUNT:QUALIFY");
        CheckThresholds(runt, root + ":PULSE:RUNT:THRESHOLD");
        CheckWords(runt, &Runt::get_Condition, &Runt::put_Condition, root + ":PULSE:RUNT:WHEN",
                   {{"OCCURS", 0}, {"WIDERTHAN", 1}, {"LOGIC", 2}});
        CheckWords(runt, &Runt::get_Polarity, &Runt::put_Polarity, root + ":PULSE:RUNT:POLARITY",
                   kPolarities);
        CheckReal(runt, &Runt::get_Width, &Runt::put_Width, root + ":PULSE:RUNT:WIDTH");
    }

    template <typename Window>
    void CheckWindow(const std::string& root) {
        const auto window = As<Window>();
        fake.Expect(root + ":PULSE:WINDOW:THRESHOLD:LOW 0.5;HIGH 1.5\n");
        EXPECT_EQ(window->ConfigureThresholds(0.5, 1.5), S_OK);
        fake.Expect(root + ":PULSE:WINDOW:WHEN WIDERTHAN;WIDTH 1e-06\n");
        EXPECT_EQ(window->ConfigureWidthCondition(1e-6), S_OK);
        fake.Expect(root + ":PULSE:SOURCE?;WINDOW:TYPE?;WHEN?;WIDTH?;THRESHOLD:LOW?;HIGH?\n")
            .Reply("CH2;OUTSIDE;WIDERTHAN;7.0E-9;0.1;0.2\n");
        auto source = KestrionChannelCh4;
        auto type = KestrionTriggerWindowTypeInside;
        auto condition = KestrionTriggerWindowConditionOccurs;
        double width = 0.0;
        double low = 0.0;
        double high = 0.0;
        EXPECT_EQ(window->Read(&source, &type, &condition, &width, &low, &high), S_OK);
        EXPECT_EQ(source, KestrionChannelCh2);
        EXPECT_EQ(type, KestrionTriggerWindowTypeOutside);
        EXPECT_EQ(condition, KestrionTriggerWindowConditionWiderThan);
        EXPECT_EQ(width, 7e-9);
        EXPECT_EQ(low, 0.1);
        EXPECT_EQ(high, 0.2);
        CheckSource(window, root);
        CheckQualify(window, root + ":PULSE:WINDOW:QUALIFY");
        CheckThresholds(window, root + ":PULSE:WINDOW:THRESHOLD");
        CheckWords(window, &Window::get_Condition, &Window::put_Condition,
                   root + ":PULSE:WINDOW:WHEN", {{"OCCURS", 0}, {"WIDERTHAN", 1}, {"LOGIC", 2}});
        CheckWords(window, &Window::get_Type, &Window::put_Type, root + ":PULSE:WINDOW:TYPE",
                   {{"INSIDE", 0}, {"OUTSIDE", 1}});
        CheckReal(window, &Window::get_Width, &Window::put_Width, root + ":PULSE:WINDOW:WIDTH");
    }
};

TEST_F(TriggerPulseTest, GlitchOfA) {
    Connect();
    CheckGlitch<IKestrionTriggerGlitch>("TRIGGER:A");
}

TEST_F(TriggerPulseTest, GlitchOfB) {
    Connect();
    CheckGlitch<IKestrionTriggerBGlitch>("TRIGGER:B");
}

TEST_F(TriggerPulseTest, TimeoutOfA) {
    Connect();
    CheckTimeout<IKestrionTriggerTimeout>("TRIGGER:A");
}

TEST_F(TriggerPulseTest, TimeoutOfB) {
    Connect();
    CheckTimeout<IKestrionTriggerBTimeout>("TRIGGER:B");
}

TEST_F(TriggerPulseTest, TransitionOfA) {
    Connect();
    CheckTransition<IKestrionTriggerTransition>("TRIGGER:A");
}

TEST_F(TriggerPulseTest, TransitionOfB) {
    Connect();
    CheckTransition<IKestrionTriggerBTransition>("TRIGGER:B");
}

TEST_F(TriggerPulseTest, WidthOfA) {
    Connect();
    CheckWidth<IKestrionTriggerWidth>("TRIGGER:A");
}

TEST_F(TriggerPulseTest, WidthOfB) {
    Connect();
    CheckWidth<IKestrionTriggerBWidth>("TRIGGER:B");
}

TEST_F(TriggerPulseTest, RuntOfA) {
    Connect();
    CheckRunt<IKestrionTriggerRunt>("TRIGGER:A");
}

TEST_F(TriggerPulseTest, RuntOfB) {
    Connect();
    CheckRunt<IKestrionTriggerBRunt>("TRIGGER:B");
}

TEST_F(TriggerPulseTest, WindowOfA) {
    Connect();
    CheckWindow<IKestrionTriggerWindow>("TRIGGER:A");
}

TEST_F(TriggerPulseTest, WindowOfB) {
    Connect();
    CheckWindow<IKestrionTriggerBWindow>("TRIGGER:B");
}

}  // namespace
}  // namespace kestrion
