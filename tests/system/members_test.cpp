// Settings over a real link: what is put is got back.
#include "tests/system/scope_client.h"

namespace kestrion {
namespace {

class MembersTest : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        if (GetParam()) {
            server_ = Serve();
        }
        ASSERT_EQ(client_.Open(GetParam() ? server_->ResourceName() : "VIRTUAL::PL7254C::INSTR"),
                  S_OK)
            << TakeErrorText();
    }
    void TearDown() override {
        LONG code = -1;
        BstrPtr text;
        EXPECT_EQ(client_.As<IIviDriverUtility>()->ErrorQuery(&code, text.Out()), S_OK);
        EXPECT_EQ(code, 0) << text.Utf8();
    }

    std::unique_ptr<virtual_scope::SocketServer> server_;
    ScopeClient client_;
};

TEST_P(MembersTest, EveryAcquisitionModeIsKept) {
    const auto acquisition = client_.As<IKestrionAcquisition>();
    for (LONG value = 0; value <= 5; ++value) {
        EXPECT_EQ(acquisition->put_Mode(static_cast<KestrionAcquisitionModeEnum>(value)), S_OK);
        auto mode = static_cast<KestrionAcquisitionModeEnum>(99);
        EXPECT_EQ(acquisition->get_Mode(&mode), S_OK) << TakeErrorText();
        EXPECT_EQ(static_cast<LONG>(mode), value);
    }
}

TEST_P(MembersTest, TheClassTypeGoesThroughTheInstrument) {
    const auto acquisition = client_.As<IIviScopeAcquisition>();
    EXPECT_EQ(acquisition->put_Type(IviScopeAcquisitionTypeHiRes), S_OK);
    auto type = IviScopeAcquisitionTypeNormal;
    EXPECT_EQ(acquisition->get_Type(&type), S_OK) << TakeErrorText();
    EXPECT_EQ(type, IviScopeAcquisitionTypeHiRes);
    auto mode = KestrionAcquisitionModeSample;
    EXPECT_EQ(client_.As<IKestrionAcquisition>()->get_Mode(&mode), S_OK);
    EXPECT_EQ(mode, KestrionAcquisitionModeHiRes);
}

TEST_P(MembersTest, SingleSequenceAndRunStopAreOpposites) {
    const auto acquisition = client_.As<IKestrionAcquisition>();
    for (const VARIANT_BOOL single : {VARIANT_TRUE, VARIANT_FALSE}) {
        EXPECT_EQ(acquisition->put_SingleSequence(single), S_OK);
        VARIANT_BOOL value = 7;
        EXPECT_EQ(acquisition->get_SingleSequence(&value), S_OK) << TakeErrorText();
        EXPECT_EQ(value, single);
        EXPECT_EQ(acquisition->get_RunStop(&value), S_OK) << TakeErrorText();
        EXPECT_EQ(value, ToVariantBool(single == VARIANT_FALSE));
    }
}

TEST_P(MembersTest, TheTimeBaseAgreesWithItself) {
    const auto horizontal = client_.As<IKestrionHorizontal>();
    EXPECT_EQ(horizontal->Configure(50.0, 1e-3, 20000), S_OK);
    double position = 0.0;
    double scale = 0.0;
    LONG length = 0;
    EXPECT_EQ(horizontal->Read(&position, &scale, &length), S_OK) << TakeErrorText();
    EXPECT_DOUBLE_EQ(position, 50.0);
    EXPECT_DOUBLE_EQ(scale, 1e-3);
    EXPECT_EQ(length, 20000);
    double duration = 0.0;
    EXPECT_EQ(horizontal->get_Duration(&duration), S_OK) << TakeErrorText();
    EXPECT_DOUBLE_EQ(duration, 1e-2);
    double time = 0.0;
    EXPECT_EQ(client_.As<IIviScopeAcquisition>()->get_TimePerRecord(&time), S_OK);
    EXPECT_DOUBLE_EQ(time, 1e-2);
    double rate = 0.0;
    EXPECT_EQ(horizontal->get_SampleRate(&rate), S_OK) << TakeErrorText();
    EXPECT_DOUBLE_EQ(rate, 2e6);
}

TEST_P(MembersTest, ChannelSettingsAreKeptForEachChannel) {
    for (int number = 1; number <= 4; ++number) {
        const auto channel = client_.Channel("Channel" + std::to_string(number));
        const double scale = 0.1 * number;
        EXPECT_EQ(channel->put_VerticalScale(scale), S_OK);
        EXPECT_EQ(channel->put_Offset(-0.01 * number), S_OK);
        EXPECT_EQ(channel->put_DisplayState(VARIANT_TRUE), S_OK);
        const BstrPtr name("input " + std::to_string(number));
        EXPECT_EQ(channel->put_LabelName(name.Get()), S_OK);
    }
    for (int number = 1; number <= 4; ++number) {
        const auto channel = client_.Channel("Channel" + std::to_string(number));
        double value = 0.0;
        EXPECT_EQ(channel->get_VerticalScale(&value), S_OK) << TakeErrorText();
        EXPECT_DOUBLE_EQ(value, 0.1 * number);
        EXPECT_EQ(channel->get_Offset(&value), S_OK) << TakeErrorText();
        EXPECT_DOUBLE_EQ(value, -0.01 * number);
        VARIANT_BOOL shown = VARIANT_FALSE;
        EXPECT_EQ(channel->get_DisplayState(&shown), S_OK) << TakeErrorText();
        EXPECT_EQ(shown, VARIANT_TRUE);
    }
}

TEST_P(MembersTest, EveryCouplingAndTerminationIsKept) {
    const auto channel = client_.Channel("Channel2");
    for (LONG value = 0; value <= 3; ++value) {
        EXPECT_EQ(channel->put_Coupling(static_cast<KestrionChannelCouplingEnum>(value)), S_OK);
        auto coupling = static_cast<KestrionChannelCouplingEnum>(99);
        EXPECT_EQ(channel->get_Coupling(&coupling), S_OK) << TakeErrorText();
        EXPECT_EQ(static_cast<LONG>(coupling), value);
    }
    for (LONG value = 0; value <= 1; ++value) {
        EXPECT_EQ(channel->put_Termination(static_cast<KestrionChannelTerminationEnum>(value)),
                  S_OK);
        auto termination = static_cast<KestrionChannelTerminationEnum>(99);
        EXPECT_EQ(channel->get_Termination(&termination), S_OK) << TakeErrorText();
        EXPECT_EQ(static_cast<LONG>(termination), value);
    }
}

TEST_P(MembersTest, ResetBringsTheDefaultsBackAndLeavesTheLinkInOrder) {
    const auto horizontal = client_.As<IKestrionHorizontal>();
    EXPECT_EQ(horizontal->put_RecordLength(5000), S_OK);
    EXPECT_EQ(client_.As<IIviDriverUtility>()->Reset(), S_OK) << TakeErrorText();
    LONG length = 0;
    EXPECT_EQ(horizontal->get_RecordLength(&length), S_OK) << TakeErrorText();
    EXPECT_EQ(length, 10000);
    LONG result = -1;
    BstrPtr text;
    EXPECT_EQ(client_.As<IIviDriverUtility>()->SelfTest(&result, text.Out()), S_OK);
    EXPECT_EQ(text.Utf8(), "Selftest passed");
}

INSTANTIATE_TEST_SUITE_P(Links, MembersTest, testing::Bool(), [](const auto& link) {
    return std::string(link.param ? "Socket" : "Virtual");
});

TEST(Members, WhatAnInstrumentRefusesIsInItsErrorQueue) {
    ScopeClient client;
    ASSERT_EQ(client.Open("VIRTUAL::PL7254C::INSTR"), S_OK);
    const BstrPtr command(std::string_view("NO:SUCH:COMMAND 1"));
    EXPECT_EQ(client.As<IDirectIo>()->WriteString(command.Get()), S_OK);
    LONG code = 0;
    BstrPtr text;
    EXPECT_EQ(client.As<IIviDriverUtility>()->ErrorQuery(&code, text.Out()), S_OK);
    EXPECT_EQ(code, -113);
}

TEST(Members, AnInstrumentErrorIsToldWhenTheStatusIsAskedFor) {
    ScopeClient client;
    ASSERT_EQ(client.Open("VIRTUAL::PL7254C::INSTR", "queryinstrstatus=true"), S_OK)
        << TakeErrorText();
    const BstrPtr command(std::string_view("NO:SUCH:COMMAND 1"));
    EXPECT_EQ(client.As<IDirectIo>()->WriteString(command.Get()), MakeStatus(0x80047001));
    // The transfer works with polling on.
    client.AcquireOnce(1000);
    Waveform waveform;
    EXPECT_EQ(client.Fetch(KestrionSourceCh1, waveform), S_OK) << TakeErrorText();
    EXPECT_EQ(waveform.volts.size(), 1000U);
}

}  // namespace
}  // namespace kestrion
