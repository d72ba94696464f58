// IKestrionTrigger: the type in its three levels, and what holds for all types.
#include "tests/scope/trigger_test.h"

namespace kestrion {
namespace {

class TriggerTypeTest : public TriggerTest {
  protected:
    ComPtr<IKestrionTrigger> Trigger() { return As<IKestrionTrigger>(); }
};

TEST_F(TriggerTypeTest, TheRootLeadsToTheTriggerAndOnToItsEvents) {
    Connect();
    ComPtr<IKestrionTrigger> trigger;
    EXPECT_EQ(scope->get_Trigger(trigger.Out()), S_OK);
    ComPtr<IKestrionTriggerAEdge> edge;
    EXPECT_EQ(trigger->get_AEdge(edge.Out()), S_OK);
    EXPECT_TRUE(edge);
    ComPtr<IKestrionTriggerBWindow> window;
    EXPECT_EQ(trigger->get_BWindow(window.Out()), S_OK);
    EXPECT_TRUE(window);
}

TEST_F(TriggerTypeTest, TypesOfTheTopLevelAreOneLine) {
    Connect("HR5104");
    fake.Expect("TRIGGER:A:TYPE EDGE\n");
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeEdge), S_OK);
    fake.Expect("TRIGGER:A:TYPE COMMUNICATION\n");
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeCommunication), S_OK);
    fake.Expect("TRIGGER:A:TYPE VIDEO\n");
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeVideo), S_OK);
    fake.Expect("TRIGGER:A:TYPE BUS\n");
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeBus), S_OK);
}

TEST_F(TriggerTypeTest, PulsesAreALevelAndAClass) {
    Connect("LK7254B");
    const std::pair<KestrionTriggerTypeEnum, const char*> types[] = {
        {KestrionTriggerTypeWidth, "WIDTH"},           {KestrionTriggerTypeRunt, "RUNT"},
        {KestrionTriggerTypeGlitch, "GLITCH"},         {KestrionTriggerTypeTimeout, "TIMEOUT"},
        {KestrionTriggerTypeTransition, "TRANSITION"}, {KestrionTriggerTypeWindow, "WINDOW"}};
    for (const auto& [type, token] : types) {
        fake.Expect("TRIGGER:A:TYPE PULSE\n");
        fake.Expect("TRIGGER:A:PULSE:CLASS " + std::string(token) + "\n");
        EXPECT_EQ(Trigger()->put_Type(type), S_OK);
    }
}

TEST_F(TriggerTypeTest, LogicIsALevelAndAClass) {
    Connect();
    const std::pair<KestrionTriggerTypeEnum, const char*> types[] = {
        {KestrionTriggerTypeSetHold, "SETHOLD"},
        {KestrionTriggerTypePattern, "PATTERN"},
        {KestrionTriggerTypeState, "STATE"}};
    for (const auto& [type, token] : types) {
        fake.Expect("TRIGGER:A:TYPE LOGIC\n");
        fake.Expect("TRIGGER:A:LOGIC:CLASS " + std::string(token) + "\n");
        EXPECT_EQ(Trigger()->put_Type(type), S_OK);
    }
}

TEST_F(TriggerTypeTest, TheTypeReadAfterWidthWasWrittenTakesTwoQueries) {
    Connect();
    fake.Expect("TRIGGER:A:TYPE PULSE\n");
    fake.Expect("TRIGGER:A:PULSE:CLASS WIDTH\n");
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeWidth), S_OK);
    fake.Expect("TRIGGER:A:TYPE?\n").Reply("PULSE\n");
    fake.Expect("TRIGGER:A:PULSE:CLASS?\n").Reply("WIDTH\n");
    auto type = KestrionTriggerTypeEdge;
    EXPECT_EQ(Trigger()->get_Type(&type), S_OK);
    EXPECT_EQ(type, KestrionTriggerTypeWidth);
}

TEST_F(TriggerTypeTest, TheTypeReadIsTheLastWord) {
    Connect();
    auto type = KestrionTriggerTypeEdge;
    fake.Expect("TRIGGER:A:TYPE?\n").Reply("LOGIC\n");
    fake.Expect("TRIGGER:A:LOGIC:CLASS?\n").Reply("SETHOLD\n");
    EXPECT_EQ(Trigger()->get_Type(&type), S_OK);
    EXPECT_EQ(type, KestrionTriggerTypeSetHold);
    fake.Expect("TRIGGER:A:TYPE?\n").Reply("EDGE\n");
    EXPECT_EQ(Trigger()->get_Type(&type), S_OK);
    EXPECT_EQ(type, KestrionTriggerTypeEdge);
    fake.Expect("TRIGGER:A:TYPE?\n").Reply("SERIAL\n");
    EXPECT_EQ(Trigger()->get_Type(&type), S_OK);
    EXPECT_EQ(type, KestrionTriggerTypeSerial);
}

TEST_F(TriggerTypeTest, AnUnknownTypeIsAnUnexpectedResponse) {
    Connect();
    auto type = KestrionTriggerTypeEdge;
    fake.Expect("TRIGGER:A:TYPE?\n").Reply("PULSE\n");
    fake.Expect("TRIGGER:A:PULSE:CLASS?\n").Reply("NEWCLASS\n");
    EXPECT_EQ(Trigger()->get_Type(&type), MakeStatus(0x80047059));
    EXPECT_EQ(type, 0);
    EXPECT_THAT(ErrorText(), testing::HasSubstr("NEWCLASS"));
}

TEST_F(TriggerTypeTest, TheClassIsNotAskedForWhenTheLevelDoesNotCome) {
    Connect();
    fake.Expect("TRIGGER:A:TYPE?\n");
    auto type = KestrionTriggerTypeEdge;
    EXPECT_EQ(Trigger()->get_Type(&type), MakeStatus(0x80044215));
}

TEST_F(TriggerTypeTest, VideoIsForTheHeronSeriesAlone) {
    Connect("HR5054B");
    ExpectValueRefused(Trigger()->put_Type(KestrionTriggerTypeVideo), "KestrionTriggerTypeVideo",
                       "Type", "put_Type");
}

TEST_F(TriggerTypeTest, WindowIsForTwoFamilies) {
    Connect("PL7254C");
    ExpectValueRefused(Trigger()->put_Type(KestrionTriggerTypeWindow), "KestrionTriggerTypeWindow",
                       "Type", "put_Type");
}

TEST_F(TriggerTypeTest, WindowWorksOnTheHeronSeries) {
    Connect("HR5104");
    fake.Expect("TRIGGER:A:TYPE PULSE\n");
    fake.Expect("TRIGGER:A:PULSE:CLASS WINDOW\n");
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeWindow), S_OK);
}

TEST_F(TriggerTypeTest, SerialIsRefusedOnTheHeronSeries) {
    Connect("HR5104");
    ExpectValueRefused(Trigger()->put_Type(KestrionTriggerTypeSerial), "KestrionTriggerTypeSerial",
                       "Type", "put_Type");
}

TEST_F(TriggerTypeTest, SerialIsWrittenOnOthers) {
    Connect("LK7054");
    fake.Expect("TRIGGER:A:TYPE SERIAL\n");
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeSerial), S_OK);
}

TEST_F(TriggerTypeTest, CommunicationIsRefusedOnNoModelThatThereIs) {
    // It would be on one in both Heron families; each model is in one.
    Connect("HR5054B");
    fake.Expect("TRIGGER:A:TYPE COMMUNICATION\n");
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeCommunication), S_OK);
}

TEST_F(TriggerTypeTest, SerialBusesAndValuesBeyondAreNoTypeToWrite) {
    Connect();
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeI2C), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (15) for method put_Type, parameter Type.");
    EXPECT_EQ(Trigger()->put_Type(static_cast<KestrionTriggerTypeEnum>(0)), MakeStatus(0x80047010));
}

TEST_F(TriggerTypeTest, ConfigureLinesOfTheSequence) {
    Connect();
    fake.Expect("TRIGGER:A:HOLDOFF:BY TIME;TIME 0.0001;:TRIGGER:B:STATE 0\n");
    EXPECT_EQ(Trigger()->ConfigureAOnlyTrigger(KestrionTriggerHoldoffModeTime, 1e-4), S_OK);
    fake.Expect(
        "TRIGGER:A:HOLDOFF:BY DEFAULT;TIME 0.0001;:TRIGGER:B:STATE 1;BY EVENTS;EVENTS:COUNT 7\n");
    EXPECT_EQ(
        Trigger()->ConfigureAThenBAfterEventsTrigger(KestrionTriggerHoldoffModeDefault, 1e-4, 7),
        S_OK);
    fake.Expect(
        "TRIGGER:A:HOLDOFF:BY RANDOM;TIME 0.0001;:TRIGGER:B:STATE 1;BY TIME;TIME 1.6e-08\n");
    EXPECT_EQ(
        Trigger()->ConfigureAThenBAfterTimeTrigger(KestrionTriggerHoldoffModeRandom, 1e-4, 1.6e-8),
        S_OK);
    fake.Expect("TRIGGER FORCE\n");
    EXPECT_EQ(Trigger()->ForceTrigger(), S_OK);
}

TEST_F(TriggerTypeTest, HoldoffModeReadsAutoAsTheDefault) {
    Connect();
    CheckWords(Trigger(), &IKestrionTrigger::get_HoldoffMode, &IKestrionTrigger::put_HoldoffMode,
               "TRIGGER:A:HOLDOFF:BY", {{"DEFAULT", 0}, {"TIME", 1}, {"RANDOM", 2}});
    auto mode = KestrionTriggerHoldoffModeTime;
    fake.Expect("TRIGGER:A:HOLDOFF:BY?\n").Reply("AUTO\n");
    EXPECT_EQ(Trigger()->get_HoldoffMode(&mode), S_OK);
    EXPECT_EQ(mode, KestrionTriggerHoldoffModeDefault);
}

TEST_F(TriggerTypeTest, NumbersAndTexts) {
    Connect();
    const auto trigger = Trigger();
    CheckReal(trigger, &IKestrionTrigger::get_AHoldoffTime, &IKestrionTrigger::put_AHoldoffTime,
              "TRIGGER:A:HOLDOFF:TIME");
    CheckReal(trigger, &IKestrionTrigger::get_BDelayTime, &IKestrionTrigger::put_BDelayTime,
              "TRIGGER:B:TIME");
    CheckReal(trigger, &IKestrionTrigger::get_AuxLevel, &IKestrionTrigger::put_AuxLevel,
              "TRIGGER:AUXLEVEL");
    CheckReal(trigger, &IKestrionTrigger::get_BResetThreshold,
              &IKestrionTrigger::put_BResetThreshold, "TRIGGER:B:RESET:THRESHOLD");
    CheckReal(trigger, &IKestrionTrigger::get_BResetTimeout, &IKestrionTrigger::put_BResetTimeout,
              "TRIGGER:B:RESET:TIMEOUT");
    double time = 0.0;
    fake.Expect("TRIGGER:A:HOLDOFF:ACTUAL?\n").Reply("1.2E-6\n");
    EXPECT_EQ(trigger->get_AActualHoldoffTime(&time), S_OK);
    EXPECT_EQ(time, 1.2e-6);
    LONG count = 0;
    fake.Expect("TRIGGER:B:EVENTS:COUNT?\n").Reply("12\n");
    EXPECT_EQ(trigger->get_EventCount(&count), S_OK);
    EXPECT_EQ(count, 12);
    fake.Expect("TRIGGER:B:EVENTS:COUNT 3\n");
    EXPECT_EQ(trigger->put_EventCount(3), S_OK);
    BstrPtr state;
    fake.Expect("TRIGGER:STATE?\n").Reply("ARMED\n");
    EXPECT_EQ(trigger->get_CurrentState(state.Out()), S_OK);
    EXPECT_EQ(state.Utf8(), "ARMED");
}

TEST_F(TriggerTypeTest, LevelsOfTheBEventAreByChannel) {
    Connect();
    fake.Expect("TRIGGER:B:LEVEL:CH3 0.7\n");
    EXPECT_EQ(Trigger()->put_BLevel(KestrionChannelCh3, 0.7), S_OK);
    double level = 0.0;
    fake.Expect("TRIGGER:B:LEVEL:CH1?\n").Reply("-1.3\n");
    EXPECT_EQ(Trigger()->get_BLevel(KestrionChannelCh1, &level), S_OK);
    EXPECT_EQ(level, -1.3);
    fake.Expect("TRIGGER:B:LEVEL:CH4 ECL\n");
    EXPECT_EQ(Trigger()->put_BLevelEnum(KestrionChannelCh4, KestrionTriggerLevelECL), S_OK);
    EXPECT_EQ(Trigger()->put_BLevel(static_cast<KestrionChannelEnum>(4), 0.7),
              MakeStatus(0x80047010));
}

TEST_F(TriggerTypeTest, EnumerationsOfBothEvents) {
    Connect();
    using T = IKestrionTrigger;
    const auto trigger = Trigger();
    CheckWords(trigger, &T::get_ABSequence, &T::put_ABSequence, "TRIGGER:B:STATE",
               {{"0", 0}, {"1", 1}});
    CheckWords(trigger, &T::get_Mode, &T::put_Mode, "TRIGGER:A:MODE", {{"AUTO", 0}, {"NORMAL", 1}});
    CheckWrittenWords(trigger, &T::put_AuxLevelEnum, "TRIGGER:AUXLEVEL", kLogicFamilies);
    CheckWords(trigger, &T::get_LevelSourcePreference, &T::put_LevelSourcePreference,
               "TRIGGER:LVLSRCPREFERENCE", {{"SRCDEPENDENT", 0}, {"SRCINDEPENDENT", 1}});
    CheckWords(trigger, &T::get_BBy, &T::put_BBy, "TRIGGER:B:BY", {{"EVENTS", 0}, {"TIME", 1}});
    CheckWords(trigger, &T::get_BType, &T::put_BType, "TRIGGER:B:TYPE",
               {{"EDGE", 0}, {"LOGIC", 1}, {"PULSE", 2}});
    CheckWords(trigger, &T::get_BResetSource, &T::put_BResetSource, "TRIGGER:B:RESET:SOURCE",
               {{"CH1", 0}, {"CH2", 1}, {"CH3", 2}, {"CH4", 3}, {"AUXILIARY", 4}});
    CheckWords(trigger, &T::get_BResetState, &T::put_BResetState, "TRIGGER:B:RESET:STATE",
               {{"HIGH", 0}, {"LOW", 1}});
    CheckWords(trigger, &T::get_BResetTransition, &T::put_BResetTransition,
               "TRIGGER:B:RESET:TRANSITION", {{"RISE", 0}, {"FALL", 1}});
    CheckWords(trigger, &T::get_BResetType, &T::put_BResetType, "TRIGGER:B:RESET:TYPE",
               {{"NONE", 0}, {"TIMEOUT", 1}, {"TRANSITION", 2}, {"STATE", 3}});
}

TEST_F(TriggerTypeTest, WhatTheInstrumentWaitsForIsRead) {
    Connect();
    auto a = KestrionTriggerAReadyNo;
    fake.Expect("TRIGGER:A:READY?\n").Reply("1\n");
    EXPECT_EQ(Trigger()->get_AReady(&a), S_OK);
    EXPECT_EQ(a, KestrionTriggerAReadyYes);
    auto b = KestrionTriggerBReadyYes;
    fake.Expect("TRIGGER:B:READY?\n").Reply("0\n");
    EXPECT_EQ(Trigger()->get_BReady(&b), S_OK);
    EXPECT_EQ(b, KestrionTriggerBReadyNo);
}

TEST_F(TriggerTypeTest, SimulationHasNoAnswerForTheInstrumentsOwnMembers) {
    Simulate();
    auto type = KestrionTriggerTypeEdge;
    EXPECT_EQ(Trigger()->get_Type(&type), MakeStatus(0x8004701D));
    EXPECT_EQ(Trigger()->put_Type(KestrionTriggerTypeEdge), MakeStatus(0x8004701D));
}

}  // namespace
}  // namespace kestrion
