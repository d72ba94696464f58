// IIviScopeTrigger and what stands below it, live and in simulation.
#include "tests/scope/trigger_test.h"

namespace kestrion {
namespace {

class ClassTriggerTest : public TriggerTest {
  protected:
    ComPtr<IIviScopeTrigger> Trigger() { return As<IIviScopeTrigger>(); }

    static BstrPtr Text(std::string_view text) { return BstrPtr(text); }

    // The report of a member that the instrument has nothing for.
    static void ExpectPropertyRefused(HRESULT status, const std::string& property) {
        EXPECT_EQ(status, MakeStatus(0x80047012));
        EXPECT_THAT(ErrorText(),
                    testing::AllOf(testing::StartsWith("Kestrion: Does not support this "
                                                       "class-compliant feature: property "),
                                   testing::HasSubstr(property)));
    }

    template <typename I, typename E>
    void CheckKept(HRESULT (I::*get)(E*), HRESULT (I::*put)(E), int number) {
        const auto object = As<I>();
        auto value = static_cast<E>(99);
        EXPECT_EQ((object.Get()->*get)(&value), S_OK);
        EXPECT_EQ(value, static_cast<E>(0));
        EXPECT_EQ((object.Get()->*put)(static_cast<E>(number)), S_OK);
        EXPECT_EQ((object.Get()->*get)(&value), S_OK);
        EXPECT_EQ(value, static_cast<E>(number));
    }
};

TEST_F(ClassTriggerTest, TheClassLeadsToEveryTrigger) {
    Connect();
    ComPtr<IIviScopeTrigger> trigger;
    EXPECT_EQ(As<IIviScope>()->get_Trigger(trigger.Out()), S_OK);
    ComPtr<IIviScopeTriggerAcLine> line;
    EXPECT_EQ(trigger->get_ACLine(line.Out()), S_OK);
    EXPECT_TRUE(line);
    ComPtr<IIviScopeTriggerEdge> edge;
    EXPECT_EQ(trigger->get_Edge(edge.Out()), S_OK);
    EXPECT_TRUE(edge);
    ComPtr<IIviScopeTriggerGlitch> glitch;
    EXPECT_EQ(trigger->get_Glitch(glitch.Out()), S_OK);
    EXPECT_TRUE(glitch);
    ComPtr<IIviScopeTriggerRunt> runt;
    EXPECT_EQ(trigger->get_Runt(runt.Out()), S_OK);
    EXPECT_TRUE(runt);
    ComPtr<IIviScopeTriggerTv> tv;
    EXPECT_EQ(trigger->get_TV(tv.Out()), S_OK);
    EXPECT_TRUE(tv);
    ComPtr<IIviScopeTriggerWidth> width;
    EXPECT_EQ(trigger->get_Width(width.Out()), S_OK);
    EXPECT_TRUE(width);
}

TEST_F(ClassTriggerTest, SourceIsTheTextThatTheCallerGave) {
    Connect();
    fake.Expect("TRIGGER:A:EDGE:SOURCE CH1\n");
    EXPECT_EQ(Trigger()->put_Source(Text("CH1").Get()), S_OK);
    fake.Expect("TRIGGER:A:EDGE:SOURCE?\n").Reply("LINE\n");
    BstrPtr source;
    EXPECT_EQ(Trigger()->get_Source(source.Out()), S_OK);
    EXPECT_EQ(source.Utf8(), "LINE");
}

TEST_F(ClassTriggerTest, AnUnknownSourceGoesToTheInstrument) {
    Connect();
    fake.Expect("TRIGGER:A:EDGE:SOURCE elsewhere\n");
    EXPECT_EQ(Trigger()->put_Source(Text("elsewhere").Get()), S_OK);
}

TEST_F(ClassTriggerTest, TypesThatBothKnowAreReadAsTheyAre) {
    Connect();
    auto type = IviScopeTriggerImmediate;
    fake.Expect("TRIGGER:A:TYPE?\n").Reply("EDGE\n");
    EXPECT_EQ(Trigger()->get_Type(&type), S_OK);
    EXPECT_EQ(type, IviScopeTriggerEdge);
    const std::pair<const char*, int> classes[] = {
        {"WIDTH", 2}, {"RUNT", 3}, {"GLITCH", 4}, {"TRANSITION", 7}};
    for (const auto& [token, number] : classes) {
        fake.Expect("TRIGGER:A:TYPE?\n").Reply("PULSE\n");
        fake.Expect("TRIGGER:A:PULSE:CLASS?\n").Reply(std::string(token) + "\n");
        EXPECT_EQ(Trigger()->get_Type(&type), S_OK);
        EXPECT_EQ(static_cast<int>(type), number);
    }
    fake.Expect("TRIGGER:A:TYPE?\n").Reply("VIDEO\n");
    EXPECT_EQ(Trigger()->get_Type(&type), S_OK);
    EXPECT_EQ(type, IviScopeTriggerTV);
}

TEST_F(ClassTriggerTest, ATypeThatTheClassHasNoNumberForIsUnexpected) {
    Connect();
    auto type = IviScopeTriggerEdge;
    fake.Expect("TRIGGER:A:TYPE?\n").Reply("LOGIC\n");
    fake.Expect("TRIGGER:A:LOGIC:CLASS?\n").Reply("STATE\n");
    EXPECT_EQ(Trigger()->get_Type(&type), MakeStatus(0x80047059));
    EXPECT_EQ(ErrorText(), "Kestrion: Unexpected response from the instrument.");
}

TEST_F(ClassTriggerTest, Type7BecomesATransitionWhichIsAPulse) {
    Connect();
    fake.Expect("TRIGGER:A:TYPE PULSE\n");
    fake.Expect("TRIGGER:A:PULSE:CLASS TRANSITION\n");
    EXPECT_EQ(Trigger()->put_Type(static_cast<IviScopeTriggerTypeEnum>(7)), S_OK);
}

TEST_F(ClassTriggerTest, TypesAreWrittenThroughTheInstrumentsOwn) {
    Connect("HR5104");
    fake.Expect("TRIGGER:A:TYPE EDGE\n");
    EXPECT_EQ(Trigger()->put_Type(IviScopeTriggerEdge), S_OK);
    const std::pair<IviScopeTriggerTypeEnum, const char*> classes[] = {
        {IviScopeTriggerWidth, "WIDTH"},
        {IviScopeTriggerRunt, "RUNT"},
        {IviScopeTriggerGlitch, "GLITCH"}};
    for (const auto& [type, token] : classes) {
        fake.Expect("TRIGGER:A:TYPE PULSE\n");
        fake.Expect("TRIGGER:A:PULSE:CLASS " + std::string(token) + "\n");
        EXPECT_EQ(Trigger()->put_Type(type), S_OK);
    }
    fake.Expect("TRIGGER:A:TYPE VIDEO\n");
    EXPECT_EQ(Trigger()->put_Type(IviScopeTriggerTV), S_OK);
}

TEST_F(ClassTriggerTest, TypesThatAreIgnoredOrRefused) {
    Connect();
    EXPECT_EQ(Trigger()->put_Type(static_cast<IviScopeTriggerTypeEnum>(0)), S_OK);
    EXPECT_EQ(Trigger()->put_Type(static_cast<IviScopeTriggerTypeEnum>(-3)), S_OK);
    ExpectValueRefused(Trigger()->put_Type(IviScopeTriggerImmediate),
                       "IviScopeTriggerTypeImmediate", "val", "put_Type");
    EXPECT_EQ(Trigger()->put_Type(static_cast<IviScopeTriggerTypeEnum>(8)), MakeStatus(0x80047010));
    // What the instrument's own type refuses the class refuses too.
    EXPECT_EQ(Trigger()->put_Type(IviScopeTriggerTV), MakeStatus(0x80047013));
}

TEST_F(ClassTriggerTest, ConfigureIsOneLineByType) {
    Connect();
    fake.Expect("TRIGGER:A:TYPE EDGE;HOLDOFF:TIME 1.23457e-06;\n");
    EXPECT_EQ(Trigger()->Configure(IviScopeTriggerEdge, 1.23456789e-6), S_OK);
    const std::pair<IviScopeTriggerTypeEnum, const char*> classes[] = {
        {IviScopeTriggerWidth, "WIDTH"},
        {IviScopeTriggerRunt, "RUNT"},
        {IviScopeTriggerGlitch, "GLITCH"}};
    for (const auto& [type, token] : classes) {
        fake.Expect("TRIGGER:A:TYPE PULSE;PULSE:CLASS " + std::string(token) +
                    ";:TRIGGER:A:HOLDOFF:TIME 0.001;\n");
        EXPECT_EQ(Trigger()->Configure(type, 1e-3), S_OK);
    }
    fake.Expect("TRIGGER:A:TYPE VIDEO;HOLDOFF:TIME 0.001;\n");
    EXPECT_EQ(Trigger()->Configure(IviScopeTriggerTV, 1e-3), S_OK);
}

TEST_F(ClassTriggerTest, ConfigureRefusesTypesWithoutALine) {
    Connect();
    ExpectValueRefused(Trigger()->Configure(IviScopeTriggerImmediate, 0.0),
                       "IviScopeTriggerTypeImmediate", "Type", "Configure");
    ExpectValueRefused(Trigger()->Configure(IviScopeTriggerACLine, 0.0), "IviScopeTriggerACLine",
                       "Type", "Configure");
    EXPECT_EQ(Trigger()->Configure(static_cast<IviScopeTriggerTypeEnum>(0), 0.0),
              MakeStatus(0x80047010));
}

TEST_F(ClassTriggerTest, ModifierIsTheModeOfTheInstrument) {
    Connect();
    fake.Expect("TRIGGER:A:MODE NORMAL\n");
    EXPECT_EQ(Trigger()->put_Modifier(IviScopeTriggerModifierNone), S_OK);
    fake.Expect("TRIGGER:A:MODE AUTO\n");
    EXPECT_EQ(Trigger()->put_Modifier(IviScopeTriggerModifierAuto), S_OK);
    ExpectValueRefused(Trigger()->put_Modifier(IviScopeTriggerModifierAutoLevel),
                       "IviScopeTriggerModifierAutoLevel", "val", "put_Modifier");
    EXPECT_EQ(Trigger()->put_Modifier(static_cast<IviScopeTriggerModifierEnum>(0)),
              MakeStatus(0x80047010));
    auto modifier = IviScopeTriggerModifierAutoLevel;
    fake.Expect("TRIGGER:A:MODE?\n").Reply("NORMAL\n");
    EXPECT_EQ(Trigger()->get_Modifier(&modifier), S_OK);
    EXPECT_EQ(modifier, IviScopeTriggerModifierNone);
    fake.Expect("TRIGGER:A:MODE?\n").Reply("AUTO\n");
    EXPECT_EQ(Trigger()->get_Modifier(&modifier), S_OK);
    EXPECT_EQ(modifier, IviScopeTriggerModifierAuto);
    fake.Expect("TRIGGER:A:MODE?\n").Reply("SINGLE\n");
    EXPECT_EQ(Trigger()->get_Modifier(&modifier), MakeStatus(0x80047059));
}

TEST_F(ClassTriggerTest, AttributesThatTheInstrumentsOwnMembersCarry) {
    Connect();
    CheckReal(Trigger(), &IIviScopeTrigger::get_Level, &IIviScopeTrigger::put_Level,
              "TRIGGER:A:LEVEL");
    CheckReal(Trigger(), &IIviScopeTrigger::get_Holdoff, &IIviScopeTrigger::put_Holdoff,
              "TRIGGER:A:HOLDOFF:TIME");
    CheckWords(Trigger(), &IIviScopeTrigger::get_Coupling, &IIviScopeTrigger::put_Coupling,
               "TRIGGER:A:EDGE:COUPLING",
               {{"AC", 0}, {"DC", 1}, {"HFREJ", 3}, {"LFREJ", 4}, {"NOISEREJ", 5}});
    fake.Expect("ACQUIRE:STOPAFTER RUNSTOP\n");
    EXPECT_EQ(Trigger()->put_Continuous(VARIANT_TRUE), S_OK);
    VARIANT_BOOL continuous = VARIANT_TRUE;
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SEQUENCE\n");
    EXPECT_EQ(Trigger()->get_Continuous(&continuous), S_OK);
    EXPECT_EQ(continuous, VARIANT_FALSE);
}

TEST_F(ClassTriggerTest, Edge) {
    Connect();
    const auto edge = As<IIviScopeTriggerEdge>();
    fake.Expect("TRIGGER:A:LEVEL 0.5;EDGE:SOURCE CH2;SLOPE RISE\n");
    EXPECT_EQ(edge->Configure(Text("CH2").Get(), 0.5, IviScopeTriggerSlopePositive), S_OK);
    CheckWords(edge, &IIviScopeTriggerEdge::get_Slope, &IIviScopeTriggerEdge::put_Slope,
               "TRIGGER:A:EDGE:SLOPE", {{"FALL", 0}, {"RISE", 1}});
}

TEST_F(ClassTriggerTest, Glitch) {
    Connect();
    using Glitch = IIviScopeTriggerGlitch;
    const auto glitch = As<Glitch>();
    fake.Expect(
        "TRIGGER:A:LEVEL 0.5;PULSE:SOURCE CH2;GLITCH:WIDTH 1e-09;TRIGIF REJECT;POLARITY EITHER\n");
    EXPECT_EQ(glitch->Configure(Text("CH2").Get(), 0.5, 1e-9, IviScopeGlitchPolarityEither,
                                IviScopeGlitchConditionGreaterThan),
              S_OK);
    CheckWords(glitch, &Glitch::get_Condition, &Glitch::put_Condition,
               "TRIGGER:A:PULSE:GLITCH:TRIGIF", {{"ACCEPT", 1}, {"REJECT", 2}});
    CheckWords(glitch, &Glitch::get_Polarity, &Glitch::put_Polarity,
               "TRIGGER:A:PULSE:GLITCH:POLARITY",
               {{"POSITIVE", 1}, {"NEGATIVE", 2}, {"EITHER", 3}});
    CheckReal(glitch, &Glitch::get_Width, &Glitch::put_Width, "TRIGGER:A:PULSE:GLITCH:WIDTH");
}

TEST_F(ClassTriggerTest, Runt) {
    Connect();
    using Runt = IIviScopeTriggerRunt;
    const auto runt = As<Runt>();
    fake.Expect("TRIGGER:A:PULSE:SOURCE CH3;RUNT:POLARITY NEGATIVE;THRESHOLD:HIGH 2.4;LOW 0.4\n");
    EXPECT_EQ(runt->Configure(Text("CH3").Get(), 0.4, 2.4, IviScopeRuntPolarityNegative), S_OK);
    CheckWords(runt, &Runt::get_Polarity, &Runt::put_Polarity, "TRIGGER:A:PULSE:RUNT:POLARITY",
               {{"POSITIVE", 1}, {"NEGATIVE", 2}, {"EITHER", 3}});
    CheckReal(runt, &Runt::get_ThresholdHigh, &Runt::put_ThresholdHigh,
              "TRIGGER:A:PULSE:RUNT:THRESHOLD:HIGH");
    CheckReal(runt, &Runt::get_ThresholdLow, &Runt::put_ThresholdLow,
              "TRIGGER:A:PULSE:RUNT:THRESHOLD:LOW");
}

TEST_F(ClassTriggerTest, Width) {
    Connect();
    using Width = IIviScopeTriggerWidth;
    const auto width = As<Width>();
    // No colon stands in front of the second path.
    fake.Expect(
        "TRIGGER:A:PULSE:SOURCE CH1;TRIGGER:A:LEVEL 0.5;PULSE:WIDTH:WHEN OUTSIDE;"
        "POLARITY NEGATIVE;HIGHLIMIT 2e-08;LOWLIMIT 1e-08\n");
    EXPECT_EQ(width->Configure(Text("CH1").Get(), 0.5, 1e-8, 2e-8, IviScopeWidthPolarityNegative,
                               IviScopeWidthConditionOutside),
              S_OK);
    CheckWords(width, &Width::get_Condition, &Width::put_Condition, "TRIGGER:A:PULSE:WIDTH:WHEN",
               {{"WITHIN", 1}, {"OUTSIDE", 2}});
    CheckWords(width, &Width::get_Polarity, &Width::put_Polarity, "TRIGGER:A:PULSE:WIDTH:POLARITY",
               {{"POSITIVE", 1}, {"NEGATIVE", 2}});
    CheckReal(width, &Width::get_ThresholdHigh, &Width::put_ThresholdHigh,
              "TRIGGER:A:PULSE:WIDTH:HIGHLIMIT");
    CheckReal(width, &Width::get_ThresholdLow, &Width::put_ThresholdLow,
              "TRIGGER:A:PULSE:WIDTH:LOWLIMIT");
}

TEST_F(ClassTriggerTest, AWidthOfEitherPolarityIsRefusedByName) {
    Connect();
    const auto width = As<IIviScopeTriggerWidth>();
    ExpectValueRefused(width->put_Polarity(IviScopeWidthPolarityEither),
                       "IviScopeWidthPolarityEither", "val", "put_Polarity");
    ExpectValueRefused(width->Configure(Text("CH1").Get(), 0.5, 1e-8, 2e-8,
                                        IviScopeWidthPolarityEither, IviScopeWidthConditionWithin),
                       "IviScopeWidthPolarityEither", "Polarity", "Configure");
}

TEST_F(ClassTriggerTest, TvHasASourceAndNothingElse) {
    Connect();
    const auto tv = As<IIviScopeTriggerTv>();
    fake.Expect("TRIGGER:A:VIDEO:SOURCE CH1\n");
    EXPECT_EQ(tv->Configure(Text("CH1").Get(), IviScopeTVSignalFormatPAL,
                            IviScopeTVTriggerEventAnyLine, IviScopeTVTriggerPolarityNegative),
              S_OK);
    auto event = IviScopeTVTriggerEventField1;
    ExpectPropertyRefused(tv->get_Event(&event), "Event");
    ExpectPropertyRefused(tv->put_Event(IviScopeTVTriggerEventField2), "Event");
    LONG line = 0;
    ExpectPropertyRefused(tv->get_LineNumber(&line), "LineNumber");
    ExpectPropertyRefused(tv->put_LineNumber(17), "LineNumber");
    auto polarity = IviScopeTVTriggerPolarityPositive;
    ExpectPropertyRefused(tv->get_Polarity(&polarity), "Polarity");
    ExpectPropertyRefused(tv->put_Polarity(IviScopeTVTriggerPolarityNegative), "Polarity");
    auto format = IviScopeTVSignalFormatNTSC;
    ExpectPropertyRefused(tv->get_SignalFormat(&format), "SignalFormat");
    ExpectPropertyRefused(tv->put_SignalFormat(IviScopeTVSignalFormatPAL), "SignalFormat");
}

TEST_F(ClassTriggerTest, AcLineIsRefused) {
    Connect();
    const auto line = As<IIviScopeTriggerAcLine>();
    auto slope = IviScopeACLinePositive;
    ExpectPropertyRefused(line->get_Slope(&slope), "Slope");
    ExpectPropertyRefused(line->put_Slope(IviScopeACLineEither), "Slope");
}

TEST_F(ClassTriggerTest, SimulationKeepsEveryAttribute) {
    Simulate();
    using T = IIviScopeTrigger;
    CheckKept(&T::get_Type, &T::put_Type, 6);
    CheckKept(&T::get_Coupling, &T::put_Coupling, 3);
    CheckKept(&T::get_Modifier, &T::put_Modifier, 3);
    CheckKept(&T::get_Continuous, &T::put_Continuous, VARIANT_TRUE);
    CheckKept(&T::get_Level, &T::put_Level, 2);
    CheckKept(&T::get_Holdoff, &T::put_Holdoff, 3);
    CheckKept(&IIviScopeTriggerAcLine::get_Slope, &IIviScopeTriggerAcLine::put_Slope, 3);
    CheckKept(&IIviScopeTriggerEdge::get_Slope, &IIviScopeTriggerEdge::put_Slope, 1);
    CheckKept(&IIviScopeTriggerGlitch::get_Condition, &IIviScopeTriggerGlitch::put_Condition, 2);
    CheckKept(&IIviScopeTriggerGlitch::get_Polarity, &IIviScopeTriggerGlitch::put_Polarity, 3);
    CheckKept(&IIviScopeTriggerGlitch::get_Width, &IIviScopeTriggerGlitch::put_Width, 4);
    CheckKept(&IIviScopeTriggerRunt::get_Polarity, &IIviScopeTriggerRunt::put_Polarity, 3);
    CheckKept(&IIviScopeTriggerRunt::get_ThresholdLow, &IIviScopeTriggerRunt::put_ThresholdLow, 1);
    CheckKept(&IIviScopeTriggerTv::get_Event, &IIviScopeTriggerTv::put_Event, 5);
    CheckKept(&IIviScopeTriggerTv::get_LineNumber, &IIviScopeTriggerTv::put_LineNumber, 17);
    CheckKept(&IIviScopeTriggerTv::get_Polarity, &IIviScopeTriggerTv::put_Polarity, 2);
    CheckKept(&IIviScopeTriggerTv::get_SignalFormat, &IIviScopeTriggerTv::put_SignalFormat, 3);
    CheckKept(&IIviScopeTriggerWidth::get_Condition, &IIviScopeTriggerWidth::put_Condition, 2);
    CheckKept(&IIviScopeTriggerWidth::get_Polarity, &IIviScopeTriggerWidth::put_Polarity, 3);
    CheckKept(&IIviScopeTriggerWidth::get_ThresholdHigh, &IIviScopeTriggerWidth::put_ThresholdHigh,
              5);
    EXPECT_EQ(Trigger()->put_Source(Text("anything").Get()), S_OK);
    BstrPtr source;
    EXPECT_EQ(Trigger()->get_Source(source.Out()), S_OK);
    EXPECT_EQ(source.Utf8(), "anything");
    EXPECT_THAT(fake.Calls(), testing::IsEmpty());
}

TEST_F(ClassTriggerTest, MethodsNeedAnInstrument) {
    Simulate();
    EXPECT_EQ(Trigger()->Configure(IviScopeTriggerEdge, 0.0), MakeStatus(0x8004701D));
    EXPECT_EQ(
        As<IIviScopeTriggerEdge>()->Configure(Text("CH1").Get(), 0.5, IviScopeTriggerSlopePositive),
        MakeStatus(0x8004701D));
}

}  // namespace
}  // namespace kestrion
