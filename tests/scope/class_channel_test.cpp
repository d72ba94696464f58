// IIviScopeChannels and IIviScopeChannel: the class's view of vertical channels.
#include <gmock/gmock.h>

#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class ClassChannelTest : public ScopeTest {
  protected:
    ComPtr<IIviScopeChannels> Channels() {
        ComPtr<IIviScopeChannels> channels;
        EXPECT_EQ(As<IIviScope>()->get_Channels(channels.Out()), S_OK);
        return channels;
    }
    ComPtr<IIviScopeChannel> ClassChannel(std::string_view name) {
        ComPtr<IIviScopeChannel> channel;
        const BstrPtr text(name);
        EXPECT_EQ(Channels()->get_Item(text.Get(), channel.Out()), S_OK);
        return channel;
    }
};

TEST_F(ClassChannelTest, CollectionOfFour) {
    Connect();
    LONG count = 0;
    EXPECT_EQ(Channels()->get_Count(&count), S_OK);
    EXPECT_EQ(count, 4);
    BstrPtr name;
    EXPECT_EQ(Channels()->get_Name(3, name.Out()), S_OK);
    EXPECT_EQ(name.Utf8(), "Channel3");
    ComPtr<IIviScopeChannel> channel;
    const BstrPtr unknown(std::string_view("Channel5"));
    EXPECT_EQ(Channels()->get_Item(unknown.Get(), channel.Out()), MakeStatus(0x80047067));
}

TEST_F(ClassChannelTest, OneObjectShowsBothInterfaces) {
    Connect();
    const auto channel = ClassChannel("Channel2");
    EXPECT_EQ(Query<IUnknown>(channel.Get()).Get(),
              Query<IUnknown>(Channel("Channel2").Get()).Get());
}

TEST_F(ClassChannelTest, RangeIsTenDivisions) {
    Connect();
    const auto channel = ClassChannel("Channel1");
    fake.Expect("CH1:SCALE 1\n");
    EXPECT_EQ(channel->put_Range(10.0), S_OK);
    fake.Expect("CH1:SCALE?\n").Reply("1.0\n");
    double range = 0.0;
    EXPECT_EQ(channel->get_Range(&range), S_OK);
    EXPECT_DOUBLE_EQ(range, 10.0);
}

TEST_F(ClassChannelTest, ConfigureCountsEightDivisionsSoThatRangeReadsTwelveAndAHalfOfTen) {
    Connect();
    const auto channel = ClassChannel("Channel1");
    fake.Expect("CH1:SCALE 1.25;OFFSET 0.5;COUPLING DC;PROBEFUNC:EXTATTEN 10;:SELECT:CH1 1, ON\n");
    EXPECT_EQ(channel->Configure(10.0, 0.5, IviScopeVerticalCouplingDC, 10.0, VARIANT_TRUE), S_OK);
    fake.Expect("CH1:SCALE?\n").Reply("1.25\n");
    double range = 0.0;
    EXPECT_EQ(channel->get_Range(&range), S_OK);
    EXPECT_DOUBLE_EQ(range, 12.5);
}

TEST_F(ClassChannelTest, ConfigureWritesNumbersInTheShortForm) {
    Connect();
    fake.Expect(
        "CH3:SCALE 0.0154321;OFFSET -1.23457;COUPLING GND;PROBEFUNC:EXTATTEN 1;"
        ":SELECT:CH3 0, OFF\n");
    EXPECT_EQ(
        ClassChannel("Channel3")
            ->Configure(0.123456789, -1.23456789, IviScopeVerticalCouplingGnd, 1.0, VARIANT_FALSE),
        S_OK);
}

TEST_F(ClassChannelTest, ConfigureRefusesACouplingThatTheClassLacks) {
    Connect();
    const auto channel = ClassChannel("Channel1");
    fake.ForgetCalls();
    EXPECT_EQ(channel->Configure(1.0, 0.0, static_cast<IviScopeVerticalCouplingEnum>(3), 1.0,
                                 VARIANT_TRUE),
              MakeStatus(0x80047010));
    EXPECT_THAT(ErrorText(), HasSubstr("Invalid value (3)"));
    EXPECT_THAT(fake.CallsOf("viWrite"), IsEmpty());
}

TEST_F(ClassChannelTest, ConfigureCharacteristicsAndInputImpedance) {
    Connect();
    const auto channel = ClassChannel("Channel4");
    fake.Expect("CH4:TERMINATION 50;BANDWIDTH 20000000\n");
    EXPECT_EQ(channel->ConfigureCharacteristics(50.0, 20e6), S_OK);
    fake.Expect("CH4:TERMINATION 1000000\n");
    EXPECT_EQ(channel->put_InputImpedance(1e6), S_OK);
    fake.Expect("CH4:TERMINATION?\n").Reply("50.0000\n");
    double impedance = 0.0;
    EXPECT_EQ(channel->get_InputImpedance(&impedance), S_OK);
    EXPECT_DOUBLE_EQ(impedance, 50.0);
}

TEST_F(ClassChannelTest, MappedAttributes) {
    Connect();
    const auto channel = ClassChannel("Channel2");
    fake.Expect("CH2:COUPLING AC\n");
    EXPECT_EQ(channel->put_Coupling(IviScopeVerticalCouplingAC), S_OK);
    fake.Expect("CH2:COUPLING?\n").Reply("GND\n");
    auto coupling = IviScopeVerticalCouplingAC;
    EXPECT_EQ(channel->get_Coupling(&coupling), S_OK);
    EXPECT_EQ(coupling, IviScopeVerticalCouplingGnd);
    fake.Expect("SELECT:CH2 1\n");
    EXPECT_EQ(channel->put_Enabled(VARIANT_TRUE), S_OK);
    fake.Expect("SELECT:CH2?\n").Reply("0\n");
    VARIANT_BOOL enabled = VARIANT_TRUE;
    EXPECT_EQ(channel->get_Enabled(&enabled), S_OK);
    EXPECT_EQ(enabled, VARIANT_FALSE);
    fake.Expect("CH2:BANDWIDTH 20000000\n");
    EXPECT_EQ(channel->put_InputFrequencyMax(20e6), S_OK);
    double real = 0.0;
    fake.Expect("CH2:BANDWIDTH?\n").Reply("2.0E7\n");
    EXPECT_EQ(channel->get_InputFrequencyMax(&real), S_OK);
    EXPECT_DOUBLE_EQ(real, 20e6);
    fake.Expect("CH2:OFFSET -0.25\n");
    EXPECT_EQ(channel->put_Offset(-0.25), S_OK);
    fake.Expect("CH2:OFFSET?\n").Reply("0.75\n");
    EXPECT_EQ(channel->get_Offset(&real), S_OK);
    EXPECT_DOUBLE_EQ(real, 0.75);
    fake.Expect("CH2:PROBEFUNC:EXTATTEN 10\n");
    EXPECT_EQ(channel->put_ProbeAttenuation(10.0), S_OK);
    fake.Expect("CH2:PROBEFUNC:EXTATTEN?\n").Reply("2\n");
    EXPECT_EQ(channel->get_ProbeAttenuation(&real), S_OK);
    EXPECT_DOUBLE_EQ(real, 2.0);
    fake.Expect("CH2:PROBE:GAIN?\n").Reply("100.0E-3\n");
    EXPECT_EQ(channel->get_ProbeSense(&real), S_OK);
    EXPECT_DOUBLE_EQ(real, 0.1);
}

TEST_F(ClassChannelTest, SimulationKeepsAttributesByChannelAndSendsNothing) {
    Simulate();
    const auto first = ClassChannel("Channel1");
    const auto second = ClassChannel("Channel2");
    EXPECT_EQ(first->Configure(10.0, 0.5, IviScopeVerticalCouplingDC, 10.0, VARIANT_TRUE), S_OK);
    EXPECT_EQ(first->put_Range(4.0), S_OK);
    EXPECT_EQ(second->put_Range(8.0), S_OK);
    EXPECT_EQ(first->put_Coupling(IviScopeVerticalCouplingGnd), S_OK);
    double range = 0.0;
    EXPECT_EQ(first->get_Range(&range), S_OK);
    EXPECT_EQ(range, 4.0);
    EXPECT_EQ(second->get_Range(&range), S_OK);
    EXPECT_EQ(range, 8.0);
    auto coupling = IviScopeVerticalCouplingAC;
    EXPECT_EQ(first->get_Coupling(&coupling), S_OK);
    EXPECT_EQ(coupling, IviScopeVerticalCouplingGnd);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

}  // namespace
}  // namespace kestrion
