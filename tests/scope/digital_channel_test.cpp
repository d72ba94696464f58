// IKestrionDigitalChannels and IKestrionDigitalChannel.
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

class DigitalChannelTest : public ScopeTest {
  protected:
    ComPtr<IKestrionDigitalChannel> Digital(std::string_view name) {
        ComPtr<IKestrionDigitalChannels> channels;
        EXPECT_EQ(scope->get_DigitalChannels(channels.Out()), S_OK);
        ComPtr<IKestrionDigitalChannel> channel;
        const BstrPtr text(name);
        EXPECT_EQ(channels->get_Item(text.Get(), channel.Out()), S_OK);
        return channel;
    }
};

TEST_F(DigitalChannelTest, NumbersAreTheIndexAsItStands) {
    Connect();
    fake.Expect("D0:POS 2.5\n");
    EXPECT_EQ(Digital("DigitalChannel0")->put_Position(2.5), S_OK);
    fake.Expect("D15:POS?\n").Reply("-1.5\n");
    double position = 0.0;
    EXPECT_EQ(Digital("DigitalChannel15")->get_Position(&position), S_OK);
    EXPECT_EQ(position, -1.5);
}

TEST_F(DigitalChannelTest, SixteenOfThem) {
    Connect();
    ComPtr<IKestrionDigitalChannels> channels;
    ASSERT_EQ(scope->get_DigitalChannels(channels.Out()), S_OK);
    LONG count = 0;
    EXPECT_EQ(channels->get_Count(&count), S_OK);
    EXPECT_EQ(count, 16);
    BstrPtr name;
    EXPECT_EQ(channels->get_Name(1, name.Out()), S_OK);
    EXPECT_EQ(name.Utf8(), "DigitalChannel0");
}

TEST_F(DigitalChannelTest, LabelStateAndThreshold) {
    Connect();
    const auto channel = Digital("DigitalChannel7");
    fake.Expect(":D7:LABEL \"strobe\"\n");
    const BstrPtr label(std::u16string_view(u"strobe"));
    EXPECT_EQ(channel->put_Label(label.Get()), S_OK);
    fake.Expect(":D7:LABEL?\n").Reply("ack\n");
    BstrPtr read;
    EXPECT_EQ(channel->get_Label(read.Out()), S_OK);
    EXPECT_EQ(read.Utf8(), "ack");
    fake.Expect("SELECT:D7 ON\n");
    EXPECT_EQ(channel->put_State(KestrionDigitalChannelStateOn), S_OK);
    fake.Expect("SELECT:D7?\n").Reply("1\n");
    auto state = KestrionDigitalChannelStateOff;
    EXPECT_EQ(channel->get_State(&state), S_OK);
    EXPECT_EQ(state, KestrionDigitalChannelStateOn);
    fake.Expect("D7:THRESH 1.4\n");
    EXPECT_EQ(channel->put_Threshold(1.4), S_OK);
    fake.Expect("D7:THRESH?\n").Reply("1.65\n");
    double threshold = 0.0;
    EXPECT_EQ(channel->get_Threshold(&threshold), S_OK);
    EXPECT_DOUBLE_EQ(threshold, 1.65);
}

}  // namespace
}  // namespace kestrion
