// IKestrionChannel: properties and refusals, typed from the command set.
#include <gmock/gmock.h>

#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::HasSubstr;

class ChannelTest : public ScopeTest {};

TEST_F(ChannelTest, RealsAndTextsHaveTheirForms) {
    Connect();
    const auto channel = Channel("Channel2");
    double real = 0.0;
    fake.Expect("CH2:SCALE 0.5\n");
    EXPECT_EQ(channel->put_VerticalScale(0.5), S_OK);
    fake.Expect("CH2:SCALE?\n").Reply("200.0000E-3\n");
    EXPECT_EQ(channel->get_VerticalScale(&real), S_OK);
    EXPECT_DOUBLE_EQ(real, 0.2);
    fake.Expect("CH2:BANDWIDTH 20000000\n");
    EXPECT_EQ(channel->put_Bandwidth(20e6), S_OK);
    fake.Expect("CH2:LABEL:NAME \"clock\"\n");
    const BstrPtr name(std::u16string_view(u"clock"));
    EXPECT_EQ(channel->put_LabelName(name.Get()), S_OK);
    fake.Expect("CH2:PROBE:GAIN?\n").Reply("1.0E-1\n");
    EXPECT_EQ(channel->get_ProbeGain(&real), S_OK);
    EXPECT_DOUBLE_EQ(real, 0.1);
    fake.Expect("CH2:PROBE:ID:TYPE?\n").Reply("10X\n");
    BstrPtr type;
    EXPECT_EQ(channel->get_ProbeType(type.Out()), S_OK);
    EXPECT_EQ(type.Utf8(), "10X");
}

TEST_F(ChannelTest, CouplingTokens) {
    Connect();
    const auto channel = Channel("Channel1");
    const std::pair<const char*, KestrionChannelCouplingEnum> couplings[] = {
        {"AC", KestrionChannelCouplingAC},
        {"DC", KestrionChannelCouplingDC},
        {"GND", KestrionChannelCouplingGND},
        {"DCREJECT", KestrionChannelCouplingDCREJECT}};
    for (const auto& [token, value] : couplings) {
        fake.Expect("CH1:COUPLING " + std::string(token) + "\n");
        EXPECT_EQ(channel->put_Coupling(value), S_OK);
        fake.Expect("CH1:COUPLING?\n").Reply(std::string(token) + "\n");
        auto read = static_cast<KestrionChannelCouplingEnum>(9);
        EXPECT_EQ(channel->get_Coupling(&read), S_OK);
        EXPECT_EQ(read, value);
    }
    fake.Expect("CH1:COUPLING?\n").Reply("dc\n");
    auto read = KestrionChannelCouplingAC;
    EXPECT_EQ(channel->get_Coupling(&read), MakeStatus(0x80047059));
}

TEST_F(ChannelTest, TerminationOfThePropertyHasItsOwnTokens) {
    Connect();
    const auto channel = Channel("Channel1");
    auto termination = static_cast<KestrionChannelTerminationEnum>(9);
    fake.Expect("CH1:TERMINATION?\n").Reply("1.0000E+6\n");
    EXPECT_EQ(channel->get_Termination(&termination), S_OK);
    EXPECT_EQ(static_cast<int>(termination), 1);
    fake.Expect("CH1:TERMINATION 50.0000\n");
    EXPECT_EQ(channel->put_Termination(static_cast<KestrionChannelTerminationEnum>(0)), S_OK);
}

TEST_F(ChannelTest, DisplayStateSelectsTheChannel) {
    Connect();
    const auto channel = Channel("Channel4");
    VARIANT_BOOL shown = VARIANT_FALSE;
    fake.Expect("SELECT:CH4?\n").Reply("1\n");
    EXPECT_EQ(channel->get_DisplayState(&shown), S_OK);
    EXPECT_EQ(shown, VARIANT_TRUE);
}

struct BandwidthRefusal {
    const char* model;
    std::vector<int> refused;
};

class BandwidthRefusalTest : public ScopeTest,
                             public testing::WithParamInterface<BandwidthRefusal> {};

TEST_P(BandwidthRefusalTest, EachFamilyRefusesItsOwnValues) {
    Connect(GetParam().model);
    const auto channel = Channel("Channel1");
    const std::pair<int, const char*> names[] = {{1, "KestrionChannelBandwidthOnefifty"},
                                                 {2, "KestrionChannelBandwidthTwofifty"},
                                                 {4, "KestrionChannelBandwidthFive"}};
    for (const auto& [value, name] : names) {
        if (std::ranges::find(GetParam().refused, value) == GetParam().refused.end()) {
            continue;
        }
        EXPECT_EQ(channel->put_BandwidthEnum(static_cast<KestrionChannelBandwidthEnum>(value)),
                  MakeStatus(0x80047013))
            << name;
        EXPECT_THAT(ErrorText(), HasSubstr(std::string("(enumeration) value ") + name));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Families, BandwidthRefusalTest,
    testing::Values(BandwidthRefusal{"HR5054B", {2, 1}}, BandwidthRefusal{"HR5104", {2, 4}},
                    BandwidthRefusal{"LK7054", {1, 4}}, BandwidthRefusal{"LK7254B", {1, 4}},
                    BandwidthRefusal{"IB6404", {1, 4}}, BandwidthRefusal{"IB6804B", {1, 4}},
                    BandwidthRefusal{"CR7404B", {1, 4}}, BandwidthRefusal{"PL7254C", {1}}));

TEST_F(ChannelTest, WavelengthBelongsToNoChannel) {
    Connect("CR7404B");
    EXPECT_EQ(Channel("Channel1")->put_WaveLength(static_cast<KestrionChannelWavelengthEnum>(0)),
              MakeStatus(0x80020009));
    EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 245"));
}

TEST_F(ChannelTest, WavelengthIsRefusedByOtherFamilies) {
    Connect("PL7254C");
    EXPECT_EQ(Channel("Channel1")->put_WaveLength(static_cast<KestrionChannelWavelengthEnum>(0)),
              MakeStatus(0x80047013));
}

}  // namespace
}  // namespace kestrion
