// Windows and runts while other channels are in a state: paths by family and source, refusals.
#include "tests/scope/trigger_test.h"

namespace kestrion {
namespace {

constexpr auto kHigh = KestrionTriggerWindowLogicInputHigh;
constexpr auto kLow = KestrionTriggerWindowLogicInputLow;
constexpr auto kDontCare = KestrionTriggerWindowLogicInputDontCare;

class TriggerWindowTest : public TriggerTest {
  protected:
    ComPtr<IKestrionTriggerWindow> Window() { return As<IKestrionTriggerWindow>(); }
    ComPtr<IKestrionTriggerBWindow> WindowOfB() { return As<IKestrionTriggerBWindow>(); }
    ComPtr<IKestrionTriggerRunt> Runt() { return As<IKestrionTriggerRunt>(); }
    ComPtr<IKestrionTriggerBRunt> RuntOfB() { return As<IKestrionTriggerBRunt>(); }

    void ExpectSource(const std::string& source, const std::string& event = "A") {
        fake.Expect("TRIGGER:" + event + ":PULSE:SOURCE?\n").Reply(source + "\n");
    }
};

TEST_F(TriggerWindowTest, ConfigureIsQualifiedOnFamiliesWithSharedInputs) {
    Connect("LK7254B");
    fake.Expect(
        "TRIGGER:A:TYPE PULSE;PULSE:CLASS WINDOW;SOURCE CH3;WINDOW:TYPE OUTSIDE;QUALIFY LOGIC;"
        "WIDTH 1.23457e-08;THRESHOLD:LOW -0.5;HIGH 0.5;\n");
    EXPECT_EQ(Window()->Configure(KestrionChannelCh3, KestrionTriggerWindowTypeOutside,
                                  KestrionTriggerWindowConditionLogic, 1.23456789e-8, -0.5, 0.5),
              S_OK);
}

TEST_F(TriggerWindowTest, ConfigureHasAConditionOnOtherFamilies) {
    Connect("HR5104");
    fake.Expect(
        "TRIGGER:A:TYPE PULSE;PULSE:CLASS WINDOW;SOURCE CH1;WINDOW:TYPE INSIDE;WHEN WIDERTHAN;"
        "WIDTH 2e-08;THRESHOLD:LOW -0.5;HIGH 0.5;\n");
    EXPECT_EQ(Window()->Configure(KestrionChannelCh1, KestrionTriggerWindowTypeInside,
                                  KestrionTriggerWindowConditionWiderThan, 2e-8, -0.5, 0.5),
              S_OK);
    fake.Expect(
        "TRIGGER:B:TYPE PULSE;PULSE:CLASS WINDOW;SOURCE CH4;WINDOW:TYPE INSIDE;WHEN LOGIC;"
        "WIDTH 2e-08;THRESHOLD:LOW -0.5;HIGH 0.5;\n");
    EXPECT_EQ(WindowOfB()->Configure(KestrionChannelCh4, KestrionTriggerWindowTypeInside,
                                     KestrionTriggerWindowConditionLogic, 2e-8, -0.5, 0.5),
              S_OK);
}

TEST_F(TriggerWindowTest, ConfigureRefusesSourcesAndLogicOnAModelOfTwoChannels) {
    Connect(kTwoChannels);
    ExpectNumberRefused(Window()->Configure(KestrionChannelCh3, KestrionTriggerWindowTypeInside,
                                            KestrionTriggerWindowConditionOccurs, 1e-8, 0.0, 1.0),
                        "245");
    ExpectNumberRefused(
        WindowOfB()->Configure(KestrionChannelCh4, KestrionTriggerWindowTypeInside,
                               KestrionTriggerWindowConditionOccurs, 1e-8, 0.0, 1.0),
        "245");
    ExpectValueRefused(Window()->Configure(KestrionChannelCh1, KestrionTriggerWindowTypeInside,
                                           KestrionTriggerWindowConditionLogic, 1e-8, 0.0, 1.0),
                       "KestrionTriggerWindowConditionLogic", "Window", "Configure");
}

TEST_F(TriggerWindowTest, ConfigureRefusesLogicOnOneFamily) {
    Connect("HR5054B");
    ExpectValueRefused(Window()->Configure(KestrionChannelCh1, KestrionTriggerWindowTypeInside,
                                           KestrionTriggerWindowConditionLogic, 1e-8, 0.0, 1.0),
                       "KestrionTriggerWindowConditionLogic", "Window", "Configure");
}

TEST_F(TriggerWindowTest, ConfigureSendsNothingForAnInvalidValue) {
    Connect();
    EXPECT_EQ(
        Window()->Configure(static_cast<KestrionChannelEnum>(7), KestrionTriggerWindowTypeInside,
                            KestrionTriggerWindowConditionOccurs, 1e-8, 0.0, 1.0),
        MakeStatus(0x80047010));
}

TEST_F(TriggerWindowTest, ChAInputWithTheSourceCh3IsThatOfCh1) {
    Connect();
    ExpectSource("CH3");
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH1?\n").Reply("LOW\n");
    auto state = kHigh;
    EXPECT_EQ(Window()->get_ChAInput(&state), S_OK);
    EXPECT_EQ(state, kLow);
    ExpectSource("CH3");
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH1?\n").Reply("X\n");
    EXPECT_EQ(Runt()->get_ChAInput(&state), S_OK);
    EXPECT_EQ(state, kDontCare);
}

TEST_F(TriggerWindowTest, OtherChannelsFollowTheSource) {
    Connect();
    const struct {
        const char* source;
        const char* first;
        const char* second;
    } rows[] = {
        {"CH1", "CH3", "CH4"}, {"CH2", "CH3", "CH4"}, {"CH3", "CH1", "CH2"}, {"CH4", "CH1", "CH2"}};
    for (const auto& row : rows) {
        auto state = kHigh;
        double threshold = 0.0;
        ExpectSource(row.source);
        fake.Expect("TRIGGER:A:LOGIC:INPUT:" + std::string(row.first) + "?\n").Reply("LOW\n");
        EXPECT_EQ(Window()->get_ChAInput(&state), S_OK);
        ExpectSource(row.source);
        fake.Expect("TRIGGER:A:LOGIC:INPUT:" + std::string(row.second) + "?\n").Reply("LOW\n");
        EXPECT_EQ(Window()->get_ChBInput(&state), S_OK);
        ExpectSource(row.source);
        fake.Expect("TRIGGER:A:LOGIC:THRESHOLD:" + std::string(row.first) + "?\n").Reply("1.4\n");
        EXPECT_EQ(Window()->get_ChAThreshold(&threshold), S_OK);
        EXPECT_EQ(threshold, 1.4);
        ExpectSource(row.source);
        fake.Expect("TRIGGER:A:LOGIC:THRESHOLD:" + std::string(row.second) + " 0.123457\n");
        EXPECT_EQ(Window()->put_ChBThreshold(0.123456789), S_OK);
    }
}

TEST_F(TriggerWindowTest, TheWindowHasLongPathsOnOldFamiliesAndTheRuntShortOnes) {
    Connect("LK7054");
    auto state = kLow;
    double threshold = 0.0;
    ExpectSource("CH4");
    fake.Expect("TRIGGER:A:PULSE:WINDOW:LOGIC:INPUT:CH1?\n").Reply("HIGH\n");
    EXPECT_EQ(Window()->get_ChAInput(&state), S_OK);
    EXPECT_EQ(state, kHigh);
    ExpectSource("CH4");
    fake.Expect("TRIGGER:A:PULSE:WINDOW:LOGIC:INPUT:CH2 X\n");
    EXPECT_EQ(Window()->put_ChBInput(kDontCare), S_OK);
    ExpectSource("CH1");
    fake.Expect("TRIGGER:A:PULSE:WINDOW:LOGIC:THRESHOLD:CH3?\n").Reply("0.5\n");
    EXPECT_EQ(Window()->get_ChAThreshold(&threshold), S_OK);
    EXPECT_EQ(threshold, 0.5);
    ExpectSource("CH1");
    fake.Expect("TRIGGER:A:PULSE:WINDOW:LOGIC:THRESHOLD:CH4 0.25\n");
    EXPECT_EQ(Window()->put_ChBThreshold(0.25), S_OK);
    ExpectSource("CH1", "B");
    fake.Expect("TRIGGER:B:PULSE:WINDOW:LOGIC:INPUT:CH3 LOW\n");
    EXPECT_EQ(WindowOfB()->put_ChAInput(kLow), S_OK);

    ExpectSource("CH4");
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH1 HIGH\n");
    EXPECT_EQ(Runt()->put_ChAInput(kHigh), S_OK);
    ExpectSource("CH4");
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH2?\n").Reply("X\n");
    EXPECT_EQ(Runt()->get_ChBInput(&state), S_OK);
    EXPECT_EQ(state, kDontCare);
    ExpectSource("CH2");
    fake.Expect("TRIGGER:A:LOGIC:THRESHOLD:CH3 1.5\n");
    EXPECT_EQ(Runt()->put_ChAThreshold(1.5), S_OK);
    ExpectSource("CH2", "B");
    fake.Expect("TRIGGER:B:LOGIC:THRESHOLD:CH4?\n").Reply("-1.5\n");
    EXPECT_EQ(RuntOfB()->get_ChBThreshold(&threshold), S_OK);
    EXPECT_EQ(threshold, -1.5);
}

TEST_F(TriggerWindowTest, AModelOfTwoChannelsHasNoOthers) {
    Connect(kTwoChannels);
    auto state = kHigh;
    double threshold = 0.0;
    ExpectValueRefused(Window()->get_ChAInput(&state), "ChAInput", "val", "get_ChAInput");
    ExpectValueRefused(Window()->put_ChBInput(kHigh), "ChBInput", "val", "put_ChBInput");
    ExpectValueRefused(Runt()->get_ChAThreshold(&threshold), "ChAThreshold", "val",
                       "get_ChAThreshold");
    ExpectValueRefused(RuntOfB()->put_ChBThreshold(1.0), "ChBThreshold", "val", "put_ChBThreshold");
    ExpectValueRefused(Runt()->ConfigureLogicCondition(kHigh, kLow, 1.0, 2.0),
                       "ConfigureLogicCondition", "val", "ConfigureLogicCondition");
}

TEST_F(TriggerWindowTest, ASourceThatIsNoChannelIsAnUnexpectedResponse) {
    Connect();
    ExpectSource("AUXILIARY");
    auto state = kHigh;
    EXPECT_EQ(Window()->get_ChAInput(&state), MakeStatus(0x80047059));
}

TEST_F(TriggerWindowTest, AnUnknownStateIsAnUnexpectedResponse) {
    Connect();
    ExpectSource("CH1");
    fake.Expect("TRIGGER:A:LOGIC:INPUT:CH3?\n").Reply("MAYBE\n");
    auto state = kHigh;
    EXPECT_EQ(Runt()->get_ChAInput(&state), MakeStatus(0x80047059));
    EXPECT_THAT(ErrorText(),
                testing::HasSubstr(
                    "Unexpected value 'MAYBE' for enum 'KestrionTriggerWindowLogicInputEnum'."));
}

TEST_F(TriggerWindowTest, AnInvalidStateIsRefusedBeforeALineIsSent) {
    Connect();
    EXPECT_EQ(Runt()->put_ChAInput(static_cast<KestrionTriggerWindowLogicInputEnum>(3)),
              MakeStatus(0x80047010));
    EXPECT_EQ(Runt()->ConfigureLogicCondition(
                  kHigh, static_cast<KestrionTriggerWindowLogicInputEnum>(3), 0.0, 0.0),
              MakeStatus(0x80047010));
    EXPECT_EQ(
        ErrorText(),
        "Kestrion: Invalid value (3) for method ConfigureLogicCondition, parameter ChBInput.");
}

TEST_F(TriggerWindowTest, LogicConditionOnFamiliesWithSharedInputs) {
    Connect("SW72004C");
    ExpectSource("CH3");
    fake.Expect(
        "TRIGGER:A:PULSE:RUNT:QUALIFY LOGIC;:TRIGGER:A:LOGIC:INPUT:CH1 HIGH;CH2 LOW;"
        ":TRIGGER:A:LOGIC:THRESHOLD:CH1 1.4;CH2 0.8\n");
    EXPECT_EQ(Runt()->ConfigureLogicCondition(kHigh, kLow, 1.4, 0.8), S_OK);
    ExpectSource("CH2");
    fake.Expect(
        "TRIGGER:A:PULSE:WINDOW:QUALIFY LOGIC;:TRIGGER:A:LOGIC:INPUT:CH3 X;CH4 LOW;"
        ":TRIGGER:A:LOGIC:THRESHOLD:CH3 1.4;CH4 0.8\n");
    EXPECT_EQ(Window()->ConfigureLogicCondition(kDontCare, kLow, 1.4, 0.8), S_OK);
}

TEST_F(TriggerWindowTest, LogicConditionOnOtherFamilies) {
    Connect("CR7404B");
    ExpectSource("CH4");
    fake.Expect(
        "TRIGGER:A:PULSE:RUNT:WHEN LOGIC;LOGIC:INPUT:CH1 HIGH;CH2 LOW;"
        ":TRIGGER:A:PULSE:RUNT:LOGIC:THRESHOLD:CH1 1.4;CH2 0.8\n");
    EXPECT_EQ(Runt()->ConfigureLogicCondition(kHigh, kLow, 1.4, 0.8), S_OK);
    ExpectSource("CH1", "B");
    fake.Expect(
        "TRIGGER:B:PULSE:RUNT:WHEN LOGIC;LOGIC:INPUT:CH3 HIGH;CH4 LOW;"
        ":TRIGGER:B:PULSE:RUNT:LOGIC:THRESHOLD:CH3 1.4;CH4 0.8\n");
    EXPECT_EQ(RuntOfB()->ConfigureLogicCondition(kHigh, kLow, 1.4, 0.8), S_OK);
    ExpectSource("CH1", "B");
    fake.Expect(
        "TRIGGER:B:PULSE:WINDOW:WHEN LOGIC;LOGIC:INPUT:CH3 X;CH4 X;"
        ":TRIGGER:B:PULSE:WINDOW:LOGIC:THRESHOLD:CH3 1.4;CH4 0.8\n");
    EXPECT_EQ(WindowOfB()->ConfigureLogicCondition(kDontCare, kDontCare, 1.4, 0.8), S_OK);
}

}  // namespace
}  // namespace kestrion
