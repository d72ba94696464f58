// Collections and their instances.
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

class ChannelsTest : public ScopeTest {
  protected:
    ComPtr<IKestrionChannels> Channels() { return As<IKestrionChannels>(); }
    HRESULT Item(std::string_view name, ComPtr<IKestrionChannel>& channel) {
        const BstrPtr text(name);
        return Channels()->get_Item(text.Get(), channel.Out());
    }
};

TEST_F(ChannelsTest, ThereAreFourOnEveryModel) {
    Simulate("Model=PL77002SX");
    LONG count = 0;
    EXPECT_EQ(Channels()->get_Count(&count), S_OK);
    EXPECT_EQ(count, 4);
}

TEST_F(ChannelsTest, ItemIgnoresCaseAndSurroundingSpace) {
    Simulate();
    ComPtr<IKestrionChannel> first;
    ComPtr<IKestrionChannel> same;
    ASSERT_EQ(Item("Channel1", first), S_OK);
    for (const char* name : {"channel1", "CHANNEL1", "  Channel1\t"}) {
        ASSERT_EQ(Item(name, same), S_OK) << name;
        EXPECT_EQ(same.Get(), first.Get()) << name;
    }
    ASSERT_EQ(Item("Channel2", same), S_OK);
    EXPECT_NE(same.Get(), first.Get());
}

TEST_F(ChannelsTest, AQualifiedNameStandsForWhatFollows) {
    Simulate();
    ComPtr<IKestrionChannel> plain;
    ComPtr<IKestrionChannel> qualified;
    ASSERT_EQ(Item("Channel2", plain), S_OK);
    ASSERT_EQ(Item("Channel!!Channel2", qualified), S_OK);
    EXPECT_EQ(qualified.Get(), plain.Get());
}

TEST_F(ChannelsTest, AnUnknownOrEmptyNameIsReported) {
    Simulate();
    for (const char* name : {"", "Channel5", "Channel", "Math1"}) {
        ComPtr<IKestrionChannel> channel;
        EXPECT_EQ(Item(name, channel), MakeStatus(0x80047067)) << name;
        EXPECT_EQ(ErrorText(), "Kestrion: Unknown physical repeated capability selector.");
        EXPECT_FALSE(channel);
    }
    ComPtr<IKestrionChannel> channel;
    EXPECT_EQ(Channels()->get_Item(nullptr, channel.Out()), MakeStatus(0x80047067));
}

TEST_F(ChannelsTest, NamesCountFromOne) {
    Simulate();
    BstrPtr name;
    EXPECT_EQ(Channels()->get_Name(1, name.Out()), S_OK);
    EXPECT_EQ(name.Utf8(), "Channel1");
    EXPECT_EQ(Channels()->get_Name(4, name.Out()), S_OK);
    EXPECT_EQ(name.Utf8(), "Channel4");
    EXPECT_EQ(Channels()->get_Name(0, name.Out()), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (0) for method get_Name, parameter Index.");
    EXPECT_EQ(Channels()->get_Name(5, name.Out()), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (5) for method get_Name, parameter Index.");
}

TEST_F(ChannelsTest, EachChannelSendsItsOwnNumber) {
    Connect();
    fake.Expect("CH1:OFFSET 0.5\n");
    EXPECT_EQ(Channel("Channel1")->put_Offset(0.5), S_OK);
    fake.Expect("CH4:OFFSET -0.25\n");
    EXPECT_EQ(Channel("Channel4")->put_Offset(-0.25), S_OK);
}

TEST_F(ChannelsTest, AChannelIsAnObjectOfItsOwn) {
    Simulate();
    const auto channel = Channel("Channel1");
    EXPECT_FALSE(Query<IKestrionAcquisition>(channel.Get()));
    EXPECT_NE(Query<IUnknown>(channel.Get()).Get(), Query<IUnknown>(scope.Get()).Get());
    EXPECT_EQ(Query<ISupportErrorInfo>(channel.Get())
                  ->InterfaceSupportsErrorInfo(kInterfaceId<IKestrionChannel>),
              S_OK);
}

}  // namespace
}  // namespace kestrion
