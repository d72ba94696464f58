// Patterns, states, set-up and hold of both events.
#include "tests/scope/trigger_test.h"

namespace kestrion {
namespace {

constexpr auto kHigh = KestrionTriggerLogicInputChannelHigh;
constexpr auto kLow = KestrionTriggerLogicInputChannelLow;
constexpr auto kDontCare = KestrionTriggerLogicInputChannelDontCare;

// What Read of a pattern gives.
struct PatternRead {
    KestrionTriggerLogicInputChannelEnum inputs[4] = {kDontCare, kDontCare, kDontCare, kDontCare};
    double thresholds[4] = {};
    KestrionTriggerPatternTypeEnum type = KestrionTriggerPatternTypeNAND;
    KestrionTriggerPatternConditionEnum condition = KestrionTriggerPatternConditionFalse;
    double time = -1.0;
};

class TriggerLogicTest : public TriggerTest {
  protected:
    inline static const Words kStates = {{"HIGH", 0}, {"LOW", 1}, {"X", 2}};
    inline static const Words kFunctions = {{"AND", 0}, {"NAND", 1}, {"NOR", 2}, {"OR", 3}};

    ComPtr<IKestrionTriggerPattern> Pattern() { return As<IKestrionTriggerPattern>(); }
    ComPtr<IKestrionTriggerBPattern> PatternOfB() { return As<IKestrionTriggerBPattern>(); }
    ComPtr<IKestrionTriggerState> State() { return As<IKestrionTriggerState>(); }
    ComPtr<IKestrionTriggerBState> StateOfB() { return As<IKestrionTriggerBState>(); }

    template <typename I>
    HRESULT Read(const ComPtr<I>& pattern, PatternRead& read) {
        return pattern->Read(&read.inputs[0], &read.thresholds[0], &read.inputs[1],
                             &read.thresholds[1], &read.inputs[2], &read.thresholds[2],
                             &read.inputs[3], &read.thresholds[3], &read.type, &read.condition,
                             &read.time);
    }

    template <typename I>
    void CheckChannelThreshold(const ComPtr<I>& logic, const std::string& root) {
        fake.Expect(root + ":LOGIC:THRESHOLD:CH2 1.25\n");
        EXPECT_EQ(logic->put_ChannelThreshold(KestrionChannelCh2, 1.25), S_OK);
        double threshold = 0.0;
        fake.Expect(root + ":LOGIC:THRESHOLD:CH4?\n").Reply("-0.5\n");
        EXPECT_EQ(logic->get_ChannelThreshold(KestrionChannelCh4, &threshold), S_OK);
        EXPECT_EQ(threshold, -0.5);
    }

    template <typename I>
    void CheckPattern(const std::string& root) {
        const auto pattern = As<I>();
        fake.Expect(root + ":TYPE LOGIC;LOGIC:CLASS PATTERN;INPUT:CH1 HIGH;CH2 LOW;CH3 X;:" + root +
                    ":LOGIC:PATTERN:INPUT:CH4 HIGH;:" + root +
                    ":LOGIC:THRESHOLD:CH1 1.1;CH2 1.2;CH3 1.3;CH4 1.4;:" + root +
                    ":LOGIC:FUNCTION NOR;PATTERN:WHEN LESSTHAN;WHEN:LESSTHAN 5e-09\n");
        EXPECT_EQ(pattern->Configure(kHigh, 1.1, kLow, 1.2, kDontCare, 1.3, kHigh, 1.4,
                                     KestrionTriggerPatternTypeNOR,
                                     KestrionTriggerPatternConditionLessThan, 5e-9),
                  S_OK);
        fake.Expect(root + ":TYPE LOGIC;LOGIC:CLASS PATTERN;INPUT:CH1 X;:" + root +
                    ":LOGIC:PATTERN:INPUT:CH2 LOW;:" + root + ":LOGIC:THRESHOLD:CH1 0.5;CH2 0.6;:" +
                    root + ":LOGIC:FUNCTION AND;PATTERN:WHEN TRUE;WHEN:TRUE 0\n");
        EXPECT_EQ(pattern->Configure2ChannelScope(kDontCare, kLow, 0.5, 0.6,
                                                  KestrionTriggerPatternTypeAND,
                                                  KestrionTriggerPatternConditionTrue, 0.0),
                  S_OK);
        fake.Expect(root + ":LOGIC:INPUT:CH1?;:" + root + ":LOGIC:PATTERN:INPUT:CH2?;:" + root +
                    ":LOGIC:THRESHOLD:CH1?;CH2?;:" + root + ":LOGIC:FUNCTION?;:" + root +
                    ":LOGIC:PATTERN:WHEN?\n")
            .Reply("LOW;X;0.5;0.6;OR;MORETHAN\n");
        auto first = kHigh;
        auto second = kHigh;
        auto type = KestrionTriggerPatternTypeAND;
        auto condition = KestrionTriggerPatternConditionTrue;
        EXPECT_EQ(pattern->Read2ChannelScope(&first, &second, &type, &condition), S_OK);
        EXPECT_EQ(first, kLow);
        EXPECT_EQ(second, kDontCare);
        EXPECT_EQ(type, KestrionTriggerPatternTypeOR);
        EXPECT_EQ(condition, KestrionTriggerPatternConditionMoreThan);
        CheckChannelThreshold(pattern, root);
        CheckWords(pattern, &I::get_Condition, &I::put_Condition, root + ":LOGIC:PATTERN:WHEN",
                   {{"TRUE", 0}, {"FALSE", 1}, {"LESSTHAN", 2}, {"MORETHAN", 3}});
        CheckWords(pattern, &I::get_Type, &I::put_Type, root + ":LOGIC:FUNCTION", kFunctions);
        CheckReal(pattern, &I::get_LessThanTime, &I::put_LessThanTime,
                  root + ":LOGIC:PATTERN:WHEN:LESSTHAN");
        CheckReal(pattern, &I::get_MoreThanTime, &I::put_MoreThanTime,
                  root + ":LOGIC:PATTERN:WHEN:MORETHAN");
    }

    template <typename I>
    void CheckState(const std::string& root) {
        const auto state = As<I>();
        fake.Expect(root + ":TYPE LOGIC;LOGIC:CLASS STATE;INPUT:CH1 HIGH;CH2 LOW;CH3 X;:" + root +
                    ":LOGIC:STATE:INPUT:CH4 RISE;:" + root +
                    ":LOGIC:THRESHOLD:CH1 1.1;CH2 1.2;CH3 1.3;CH4 1.4;:" + root +
                    ":LOGIC:FUNCTION OR;STATE:WHEN TRUE\n");
        EXPECT_EQ(state->Configure(kHigh, kLow, kDontCare, KestrionTriggerSlopeRise, 1.1, 1.2, 1.3,
                                   1.4, KestrionTriggerPatternTypeOR, VARIANT_TRUE),
                  S_OK);
        fake.Expect(root + ":TYPE LOGIC;LOGIC:CLASS STATE;INPUT:CH1 LOW;:" + root +
                    ":LOGIC:STATE:INPUT:CH2 FALL;:" + root + ":LOGIC:THRESHOLD:CH1 1.1;CH2 1.2;:" +
                    root + ":LOGIC:FUNCTION NAND;STATE:WHEN FALSE\n");
        EXPECT_EQ(state->Configure2ChannelScope(kLow, KestrionTriggerSlopeFall, 1.1, 1.2,
                                                KestrionTriggerPatternTypeNAND, VARIANT_FALSE),
                  S_OK);
        fake.Expect(root + ":LOGIC:INPUT:CH1?;CH2?;CH3?;:" + root + ":LOGIC:STATE:INPUT:CH4?;:" +
                    root + ":LOGIC:THRESHOLD:CH1?;CH2?;CH3?;CH4?;:" + root +
                    ":LOGIC:FUNCTION?;:" + root + ":LOGIC:STATE:WHEN?\n")
            .Reply("LOW;HIGH;X;FALL;0.1;0.2;0.3;0.4;NOR;TRUE\n");
        KestrionTriggerLogicInputChannelEnum inputs[3] = {kHigh, kLow, kHigh};
        double thresholds[4] = {};
        auto edge = KestrionTriggerSlopeRise;
        auto type = KestrionTriggerPatternTypeAND;
        VARIANT_BOOL condition = VARIANT_FALSE;
        EXPECT_EQ(state->Read(&inputs[0], &inputs[1], &inputs[2], &edge, &thresholds[0],
                              &thresholds[1], &thresholds[2], &thresholds[3], &type, &condition),
                  S_OK);
        EXPECT_THAT(inputs, testing::ElementsAre(kLow, kHigh, kDontCare));
        EXPECT_EQ(edge, KestrionTriggerSlopeFall);
        EXPECT_THAT(thresholds, testing::ElementsAre(0.1, 0.2, 0.3, 0.4));
        EXPECT_EQ(type, KestrionTriggerPatternTypeNOR);
        EXPECT_EQ(condition, VARIANT_TRUE);
        fake.Expect(root + ":LOGIC:INPUT:CH1?;:" + root + ":LOGIC:STATE:INPUT:CH2?;:" + root +
                    ":LOGIC:THRESHOLD:CH1?;CH2?;:" + root + ":LOGIC:FUNCTION?;:" + root +
                    ":LOGIC:STATE:WHEN?\n")
            .Reply("X;RISE;0.5;0.6;AND;FALSE\n");
        EXPECT_EQ(state->Read2ChannelScope(&inputs[0], &edge, &thresholds[0], &thresholds[1], &type,
                                           &condition),
                  S_OK);
        EXPECT_EQ(inputs[0], kDontCare);
        EXPECT_EQ(edge, KestrionTriggerSlopeRise);
        EXPECT_EQ(thresholds[0], 0.5);
        EXPECT_EQ(thresholds[1], 0.6);
        EXPECT_EQ(type, KestrionTriggerPatternTypeAND);
        EXPECT_EQ(condition, VARIANT_FALSE);
        CheckChannelThreshold(state, root);
        CheckWords(state, &I::get_Condition, &I::put_Condition, root + ":LOGIC:STATE:WHEN",
                   {{"TRUE", 0}, {"FALSE", 1}});
        EXPECT_EQ(state->put_Condition(KestrionTriggerPatternConditionLessThan),
                  MakeStatus(0x80047010));
        CheckWords(state, &I::get_Type, &I::put_Type, root + ":LOGIC:FUNCTION", kFunctions);
        CheckWords(state, &I::get_ClockEdge, &I::put_ClockEdge, root + ":LOGIC:STATE:INPUT:CH4",
                   kSlopes);
    }

    template <typename I>
    void CheckSetuphold(const std::string& root) {
        const auto hold = As<I>();
        fake.Expect(root +
                    ":TYPE LOGIC;LOGIC:CLASS SETHOLD;SETHOLD:DATA:SOURCE CH2;THRESHOLD 1.4;:" +
                    root + ":LOGIC:SETHOLD:CLOCK:SOURCE CH1;THRESHOLD 1.5;EDGE FALL;:" + root +
                    ":LOGIC:SETHOLD:SETTIME 3e-09;HOLDTIME 2e-09\n");
        EXPECT_EQ(hold->Configure(KestrionChannelCh2, 1.4, KestrionChannelCh1, 1.5,
                                  KestrionTriggerSlopeFall, 3e-9, 2e-9),
                  S_OK);
        fake.Expect(root + ":LOGIC:SETHOLD:SETTIME 1e-09;HOLDTIME 5e-10\n");
        EXPECT_EQ(hold->ConfigureSetupHoldTime(1e-9, 5e-10), S_OK);
        fake.Expect(root + ":LOGIC:SETHOLD:DATA:SOURCE?;THRESHOLD?;:" + root +
                    ":LOGIC:SETHOLD:CLOCK:SOURCE?;THRESHOLD?;EDGE?;:" + root +
                    ":LOGIC:SETHOLD:SETTIME?;HOLDTIME?\n")
            .Reply("CH3;0.7;CH4;0.8;RISE;1.0E-9;2.0E-9\n");
        auto data = KestrionChannelCh1;
        auto clockSource = KestrionChannelCh1;
        auto edge = KestrionTriggerSlopeFall;
        double dataThreshold = 0.0;
        double clockThreshold = 0.0;
        double setup = 0.0;
        double time = 0.0;
        EXPECT_EQ(
            hold->Read(&data, &dataThreshold, &clockSource, &clockThreshold, &edge, &setup, &time),
            S_OK);
        EXPECT_EQ(data, KestrionChannelCh3);
        EXPECT_EQ(dataThreshold, 0.7);
        EXPECT_EQ(clockSource, KestrionChannelCh4);
        EXPECT_EQ(clockThreshold, 0.8);
        EXPECT_EQ(edge, KestrionTriggerSlopeRise);
        EXPECT_EQ(setup, 1e-9);
        EXPECT_EQ(time, 2e-9);
        const std::string path = root + ":LOGIC:SETHOLD";
        CheckWords(hold, &I::get_ClockEdge, &I::put_ClockEdge, path + ":CLOCK:EDGE", kSlopes);
        CheckWords(hold, &I::get_ClockSource, &I::put_ClockSource, path + ":CLOCK:SOURCE",
                   kChannels);
        CheckReal(hold, &I::get_ClockThreshold, &I::put_ClockThreshold, path + ":CLOCK:THRESHOLD");
        CheckWords(hold, &I::get_DataSource, &I::put_DataSource, path + ":DATA:SOURCE", kChannels);
        CheckReal(hold, &I::get_DataThreshold, &I::put_DataThreshold, path + ":DATA:THRESHOLD");
        CheckReal(hold, &I::get_HoldTime, &I::put_HoldTime, path + ":HOLDTIME");
        CheckReal(hold, &I::get_SetupTime, &I::put_SetupTime, path + ":SETTIME");
    }
};

TEST_F(TriggerLogicTest, PatternOfA) {
    Connect("LK7054");
    CheckPattern<IKestrionTriggerPattern>("TRIGGER:A");
}

TEST_F(TriggerLogicTest, PatternOfB) {
    Connect();
    CheckPattern<IKestrionTriggerBPattern>("TRIGGER:B");
}

TEST_F(TriggerLogicTest, StateOfA) {
    Connect();
    CheckState<IKestrionTriggerState>("TRIGGER:A");
}

TEST_F(TriggerLogicTest, StateOfB) {
    Connect("LK7054");
    CheckState<IKestrionTriggerBState>("TRIGGER:B");
}

TEST_F(TriggerLogicTest, SetupAndHoldOfA) {
    Connect();
    CheckSetuphold<IKestrionTriggerSetuphold>("TRIGGER:A");
}

TEST_F(TriggerLogicTest, SetupAndHoldOfB) {
    Connect();
    CheckSetuphold<IKestrionTriggerBSetuphold>("TRIGGER:B");
}

TEST_F(TriggerLogicTest, ChannelLogicOfChannel4StandsWithThePatternsOnTheLarkSeries) {
    Connect("LK7054");
    fake.Expect("TRIGGER:A:LOGIC:PATTERN:INPUT:CH4 HIGH\n");
    EXPECT_EQ(Pattern()->put_ChannelLogic(KestrionChannelCh4, kHigh), S_OK);
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH3 LOW\n");
    EXPECT_EQ(Pattern()->put_ChannelLogic(KestrionChannelCh3, kLow), S_OK);
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH2 X\n");
    EXPECT_EQ(State()->put_ChannelLogic(KestrionChannelCh2, kDontCare), S_OK);
    fake.Expect("TRIGGER:B:LOGIC:PATTERN:INPUT:CH4 X\n");
    EXPECT_EQ(PatternOfB()->put_ChannelLogic(KestrionChannelCh4, kDontCare), S_OK);
    auto logic = kHigh;
    fake.Expect("TRIGGER:A:LOGIC:PATTERN:INPUT:CH4?\n").Reply("LOW\n");
    EXPECT_EQ(Pattern()->get_ChannelLogic(KestrionChannelCh4, &logic), S_OK);
    EXPECT_EQ(logic, kLow);
    fake.Expect("TRIGGER:B:LOGIC:INPUT:CH1?;\n").Reply("X\n");
    EXPECT_EQ(StateOfB()->get_ChannelLogic(KestrionChannelCh1, &logic), S_OK);
    EXPECT_EQ(logic, kDontCare);
}

class SharedInputsTest : public TriggerTest, public testing::WithParamInterface<const char*> {};

TEST_P(SharedInputsTest, ChannelLogicOfChannel4StandsWithTheOthers) {
    Connect(GetParam());
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH4 HIGH\n");
    EXPECT_EQ(As<IKestrionTriggerPattern>()->put_ChannelLogic(KestrionChannelCh4, kHigh), S_OK);
    auto logic = kHigh;
    fake.Expect("TRIGGER:B:LOGIC:INPUT:CH4?;\n").Reply("LOW\n");
    EXPECT_EQ(As<IKestrionTriggerBState>()->get_ChannelLogic(KestrionChannelCh4, &logic), S_OK);
    EXPECT_EQ(logic, kLow);
}

INSTANTIATE_TEST_SUITE_P(Families, SharedInputsTest,
                         testing::Values("LK7254B", "PL7254C", "MR5104B", "SW72004C"));

TEST_F(TriggerLogicTest, ChannelLogicOnAModelOfTwoChannels) {
    Connect(kTwoChannels);
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH1 HIGH\n");
    EXPECT_EQ(Pattern()->put_ChannelLogic(KestrionChannelCh1, kHigh), S_OK);
    fake.Expect("TRIGGER:A:LOGIC:PATTERN:INPUT:CH2 LOW\n");
    EXPECT_EQ(Pattern()->put_ChannelLogic(KestrionChannelCh2, kLow), S_OK);
    auto logic = kHigh;
    fake.Expect("TRIGGER:A:LOGIC:PATTERN:INPUT:CH2?\n").Reply("X\n");
    EXPECT_EQ(State()->get_ChannelLogic(KestrionChannelCh2, &logic), S_OK);
    EXPECT_EQ(logic, kDontCare);
    ExpectNumberRefused(Pattern()->put_ChannelLogic(KestrionChannelCh3, kHigh), "245");
    ExpectNumberRefused(State()->get_ChannelLogic(KestrionChannelCh4, &logic), "245");
}

TEST_F(TriggerLogicTest, ChannelLogicOnATwoChannelModelWithSharedInputs) {
    Connect("PL77002SX");
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH2 LOW\n");
    EXPECT_EQ(Pattern()->put_ChannelLogic(KestrionChannelCh2, kLow), S_OK);
    ExpectNumberRefused(Pattern()->put_ChannelLogic(KestrionChannelCh4, kHigh), "245");
}

TEST_F(TriggerLogicTest, ChannelLogicRefusesInvalidValuesAndReplies) {
    Connect();
    auto logic = kHigh;
    EXPECT_EQ(Pattern()->put_ChannelLogic(static_cast<KestrionChannelEnum>(4), kHigh),
              MakeStatus(0x80047010));
    EXPECT_EQ(Pattern()->get_ChannelLogic(static_cast<KestrionChannelEnum>(4), &logic),
              MakeStatus(0x80047010));
    EXPECT_EQ(Pattern()->put_ChannelLogic(KestrionChannelCh1,
                                          static_cast<KestrionTriggerLogicInputChannelEnum>(3)),
              MakeStatus(0x80047010));
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH1?;\n").Reply("MIDDLE\n");
    EXPECT_EQ(Pattern()->get_ChannelLogic(KestrionChannelCh1, &logic), MakeStatus(0x80047059));
    EXPECT_THAT(ErrorText(), testing::HasSubstr("MIDDLE"));
}

TEST_F(TriggerLogicTest, TheClockOfAStateIsTheLastChannel) {
    Connect(kTwoChannels);
    fake.Expect("TRIGGER:A:LOGIC:STATE:INPUT:CH2 RISE\n");
    EXPECT_EQ(State()->put_ClockEdge(KestrionTriggerSlopeRise), S_OK);
    auto edge = KestrionTriggerSlopeRise;
    fake.Expect("TRIGGER:B:LOGIC:STATE:INPUT:CH2?\n").Reply("FALL\n");
    EXPECT_EQ(StateOfB()->get_ClockEdge(&edge), S_OK);
    EXPECT_EQ(edge, KestrionTriggerSlopeFall);
}

TEST_F(TriggerLogicTest, ConfigureOnAModelOfTwoChannelsTakesItsOwn) {
    Connect(kTwoChannels);
    fake.Expect(
        "TRIGGER:A:TYPE LOGIC;LOGIC:CLASS PATTERN;INPUT:CH1 HIGH;:TRIGGER:A:LOGIC:PATTERN:INPUT:CH2"
        " LOW;:TRIGGER:A:LOGIC:THRESHOLD:CH1 1.1;CH2 1.2;:TRIGGER:A:LOGIC:FUNCTION NOR;"
        "PATTERN:WHEN MORETHAN;WHEN:MORETHAN 5e-09\n");
    EXPECT_EQ(Pattern()->Configure(kHigh, 1.1, kLow, 1.2, kDontCare, 1.3, kHigh, 1.4,
                                   KestrionTriggerPatternTypeNOR,
                                   KestrionTriggerPatternConditionMoreThan, 5e-9),
              S_OK);
}

TEST_F(TriggerLogicTest, ConfigureNamesTheParameterThatIsInvalid) {
    Connect();
    const auto wrong = static_cast<KestrionTriggerLogicInputChannelEnum>(3);
    EXPECT_EQ(Pattern()->Configure(kHigh, 1.1, kLow, 1.2, wrong, 1.3, kHigh, 1.4,
                                   KestrionTriggerPatternTypeNOR,
                                   KestrionTriggerPatternConditionMoreThan, 5e-9),
              MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (3) for method Configure, parameter Ch3Input.");
    EXPECT_EQ(PatternOfB()->Configure(kHigh, 1.1, kLow, 1.2, kLow, 1.3, kHigh, 1.4,
                                      static_cast<KestrionTriggerPatternTypeEnum>(9),
                                      KestrionTriggerPatternConditionMoreThan, 5e-9),
              MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (9) for method Configure, parameter Type.");
}

TEST_F(TriggerLogicTest, APatternOfFourChannelsIsReadInParts) {
    Connect("LK7054");
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH1?;CH2?;CH3?;:TRIGGER:A:LOGIC:PATTERN:INPUT:CH4?;\n")
        .Reply("HIGH;LOW;X;HIGH\n");
    fake.Expect(":TRIGGER:A:LOGIC:THRESHOLD:CH1?;CH2?;CH3?;CH4?;\n").Reply("1.1;1.2;1.3;1.4\n");
    fake.Expect(":TRIGGER:A:LOGIC:FUNCTION?;:TRIGGER:A:LOGIC:PATTERN:WHEN?\n").Reply("OR;TRUE\n");
    PatternRead read;
    EXPECT_EQ(Read(Pattern(), read), S_OK);
    EXPECT_THAT(read.inputs, testing::ElementsAre(kHigh, kLow, kDontCare, kHigh));
    EXPECT_THAT(read.thresholds, testing::ElementsAre(1.1, 1.2, 1.3, 1.4));
    EXPECT_EQ(read.type, KestrionTriggerPatternTypeOR);
    EXPECT_EQ(read.condition, KestrionTriggerPatternConditionTrue);
    EXPECT_EQ(read.time, 0.0);
}

TEST_F(TriggerLogicTest, ThePatternsTimeIsThatOfItsCondition) {
    Connect();
    fake.Expect("TRIGGER:B:LOGIC:INPUT:CH1?;CH2?;CH3?;:TRIGGER:B:LOGIC:PATTERN:INPUT:CH4?;\n")
        .Reply("X;X;X;LOW\n");
    fake.Expect(":TRIGGER:B:LOGIC:THRESHOLD:CH1?;CH2?;CH3?;CH4?;\n").Reply("0;0;0;-1.5\n");
    fake.Expect(":TRIGGER:B:LOGIC:FUNCTION?;:TRIGGER:B:LOGIC:PATTERN:WHEN?\n")
        .Reply("NAND;MORETHAN\n");
    fake.Expect("TRIGGER:B:LOGIC:PATTERN:WHEN:MORETHAN?\n").Reply("4.0E-9\n");
    PatternRead read;
    EXPECT_EQ(Read(PatternOfB(), read), S_OK);
    EXPECT_THAT(read.inputs, testing::ElementsAre(kDontCare, kDontCare, kDontCare, kLow));
    EXPECT_EQ(read.thresholds[3], -1.5);
    EXPECT_EQ(read.type, KestrionTriggerPatternTypeNAND);
    EXPECT_EQ(read.condition, KestrionTriggerPatternConditionMoreThan);
    EXPECT_EQ(read.time, 4e-9);
}

TEST_F(TriggerLogicTest, APatternOfTwoChannelsIsReadAtOnce) {
    Connect(kTwoChannels);
    fake.Expect(
            "TRIGGER:A:LOGIC:INPUT:CH1?;:TRIGGER:A:LOGIC:PATTERN:INPUT:CH2?;"
            ":TRIGGER:A:LOGIC:THRESHOLD:CH1?;CH2?;:TRIGGER:A:LOGIC:FUNCTION?;"
            ":TRIGGER:A:LOGIC:PATTERN:WHEN?\n")
        .Reply("LOW;X;0.5;0.6;OR;LESSTHAN\n");
    fake.Expect("TRIGGER:A:LOGIC:PATTERN:WHEN:LESSTHAN?\n").Reply("6.0E-9\n");
    PatternRead read;
    EXPECT_EQ(Read(Pattern(), read), S_OK);
    EXPECT_EQ(read.inputs[0], kLow);
    EXPECT_EQ(read.inputs[1], kDontCare);
    EXPECT_EQ(read.thresholds[0], 0.5);
    EXPECT_EQ(read.thresholds[1], 0.6);
    EXPECT_EQ(read.type, KestrionTriggerPatternTypeOR);
    EXPECT_EQ(read.condition, KestrionTriggerPatternConditionLessThan);
    EXPECT_EQ(read.time, 6e-9);
    EXPECT_EQ(read.thresholds[2], 0.0);
}

TEST_F(TriggerLogicTest, APatternThatCannotBeReadLeavesZeros) {
    Connect();
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH1?;CH2?;CH3?;:TRIGGER:A:LOGIC:PATTERN:INPUT:CH4?;\n")
        .Reply("HIGH;MIDDLE;X;HIGH\n");
    fake.Expect(":TRIGGER:A:LOGIC:THRESHOLD:CH1?;CH2?;CH3?;CH4?;\n").Reply("1.1;1.2;1.3;1.4\n");
    fake.Expect(":TRIGGER:A:LOGIC:FUNCTION?;:TRIGGER:A:LOGIC:PATTERN:WHEN?\n").Reply("OR;TRUE\n");
    PatternRead read;
    EXPECT_EQ(Read(Pattern(), read), MakeStatus(0x80047059));
    EXPECT_EQ(read.thresholds[0], 0.0);
    EXPECT_THAT(ErrorText(), testing::HasSubstr("MIDDLE"));
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH1?;CH2?;CH3?;:TRIGGER:A:LOGIC:PATTERN:INPUT:CH4?;\n");
    EXPECT_EQ(Read(Pattern(), read), MakeStatus(0x80044215));
}

}  // namespace
}  // namespace kestrion
