// Properties that aren't a setting of the instrument alone, and values between the extremes that
// not every property takes.
#include "tests/system/property_pairs.h"

namespace kestrion {
namespace {

class PropertyApart : public PropertyPairs {
  protected:
    void Write(std::string_view command) {
        const BstrPtr text(command);
        EXPECT_EQ(client_.As<IDirectIo>()->WriteString(text.Get()), S_OK) << TakeErrorText();
    }
};

TEST_P(PropertyApart, TheTimeoutIsTheSessions) {
    Open();
    const auto io = client_.As<IDirectIo>();
    for (const LONG milliseconds : {1, 2'147'483'647, 5000}) {
        EXPECT_EQ(io->put_Timeout(milliseconds), S_OK) << TakeErrorText();
        ExpectGet(*io, &IDirectIo::get_Timeout, milliseconds);
    }
}

// Put as a delay, read from the preamble of the waveform: the first point at the delay, which the
// reference point at the left end of the record makes of it.
TEST_P(PropertyApart, TheStartTimeIsReadFromThePreamble) {
    Open();
    const auto acquisition = client_.As<IIviScopeAcquisition>();
    for (const double time : {-1e-3, 0.0, 0.5}) {
        EXPECT_EQ(acquisition->put_StartTime(time), S_OK) << TakeErrorText();
        ExpectInstrumentError(0);
        ExpectGet(*client_.As<IKestrionHorizontal>(), &IKestrionHorizontal::get_DelayTime, time);
        ExpectGet(*client_.As<IKestrionHorizontal>(), &IKestrionHorizontal::get_DelayMode,
                  VARIANT_TRUE);
        double start = 99.0;
        EXPECT_EQ(acquisition->get_StartTime(&start), S_OK) << TakeErrorText();
        EXPECT_NEAR(start, time, 1e-9);
    }
    EXPECT_EQ(acquisition->put_StartTime(1.1e6), S_OK);
    ExpectInstrumentError(-222);
}

// No channel sets it, but each reads what the instrument has.
TEST_P(PropertyApart, EveryWavelengthIsRead) {
    Open("CR7404B");
    const auto channel = client_.Channel("Channel2");
    for (const auto& [nanometers, value] : {std::pair("780", KestrionChannelWavelength780),
                                            std::pair("850", KestrionChannelWavelength850),
                                            std::pair("1310", KestrionChannelWavelength1310),
                                            std::pair("1550", KestrionChannelWavelength1550)}) {
        Write(std::string("WLENGTH:VALUE ") + nanometers);
        ExpectGet(*channel, &IKestrionChannel::get_WaveLength, value);
    }
}

// One of another device has no name.
TEST_P(PropertyApart, AnUnknownWavelengthIsAnUnexpectedResponse) {
    Open("CR7404B");
    Write("WLENGTH:VALUE 633");
    auto value = KestrionChannelWavelength780;
    EXPECT_EQ(client_.Channel("Channel1")->get_WaveLength(&value), MakeStatus(0x80047059));
    EXPECT_EQ(TakeErrorText().find("'633.0000'") != std::string::npos, true);
}

// The range of the impedance has two points only.
TEST_P(PropertyApart, NoImpedanceBetweenTheTwo) {
    Open();
    const auto channel = Query<IIviScopeChannel>(client_.Channel("Channel1").Get());
    EXPECT_EQ(channel->put_InputImpedance(1e6), S_OK) << TakeErrorText();
    EXPECT_EQ(channel->put_InputImpedance(75.0), S_OK) << TakeErrorText();
    ExpectInstrumentError(-224);
    ExpectGet(*channel, &IIviScopeChannel::get_InputImpedance, 1e6);
}

TEST_P(PropertyApart, LogicOfAChannelThatATwoChannelModelLacks) {
    Open("PL77002SX");
    const auto pattern = client_.As<IKestrionTriggerPattern>();
    for (const auto channel : {KestrionChannelCh1, KestrionChannelCh2}) {
        for (const auto logic :
             {KestrionTriggerLogicInputChannelHigh, KestrionTriggerLogicInputChannelLow,
              KestrionTriggerLogicInputChannelDontCare}) {
            EXPECT_EQ(pattern->put_ChannelLogic(channel, logic), S_OK) << TakeErrorText();
            auto got = static_cast<KestrionTriggerLogicInputChannelEnum>(99);
            EXPECT_EQ(pattern->get_ChannelLogic(channel, &got), S_OK) << TakeErrorText();
            EXPECT_EQ(got, logic);
        }
    }
    for (const auto channel : {KestrionChannelCh3, KestrionChannelCh4}) {
        auto logic = KestrionTriggerLogicInputChannelLow;
        EXPECT_EQ(pattern->put_ChannelLogic(channel, logic), MakeStatus(0x80020009));
        EXPECT_EQ(pattern->get_ChannelLogic(channel, &logic), MakeStatus(0x80020009));
    }
    ExpectInstrumentError(0);
}

TEST_P(PropertyApart, LogicOfOtherChannelsOnATwoChannelModel) {
    Open("PL77002SX");
    const auto runt = client_.As<IKestrionTriggerRunt>();
    auto logic = KestrionTriggerWindowLogicInputHigh;
    EXPECT_EQ(runt->put_ChAInput(logic), MakeStatus(0x80047013));
    EXPECT_EQ(runt->get_ChBInput(&logic), MakeStatus(0x80047013));
    double level = 0.0;
    EXPECT_EQ(runt->put_ChBThreshold(level), MakeStatus(0x80047013));
    EXPECT_EQ(runt->get_ChAThreshold(&level), MakeStatus(0x80047013));
    ExpectInstrumentError(0);
}

// The name doesn't tell that this model has two, so that the instrument itself refuses the others.
TEST_P(PropertyApart, ASourceThatAnUntoldTwoChannelModelLacks) {
    Open("HR5052BE");
    const auto edge = client_.As<IKestrionTriggerAEdge>();
    EXPECT_EQ(edge->put_Source(KestrionTriggerSourceCh2), S_OK) << TakeErrorText();
    for (const auto source : {KestrionTriggerSourceCh3, KestrionTriggerSourceCh4}) {
        EXPECT_EQ(edge->put_Source(source), S_OK) << TakeErrorText();
        ExpectInstrumentError(-241);
        ExpectGet(*edge, &IKestrionTriggerAEdge::get_Source, KestrionTriggerSourceCh2);
    }
}

// A runt is always asked about among the inputs, and the last one of an older instrument stands
// with the patterns: what is put there is refused.
TEST_P(PropertyApart, TheLastInputOfARuntOnAnOlderFamily) {
    Open("LK7054");
    const auto runt = client_.As<IKestrionTriggerRunt>();
    EXPECT_EQ(runt->put_Source(KestrionChannelCh1), S_OK) << TakeErrorText();
    EXPECT_EQ(runt->put_ChAInput(KestrionTriggerWindowLogicInputLow), S_OK) << TakeErrorText();
    ExpectGet(*runt, &IKestrionTriggerRunt::get_ChAInput, KestrionTriggerWindowLogicInputLow);
    EXPECT_EQ(runt->put_ChBInput(KestrionTriggerWindowLogicInputLow), S_OK) << TakeErrorText();
    ExpectInstrumentError(-221);
}

INSTANTIATE_TEST_SUITE_P(Links, PropertyApart, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
