// Asking the instrument's event status register behind each operation.
#include <gmock/gmock.h>

#include "core/driver.h"
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;

constexpr HRESULT kInstrumentError = MakeStatus(0x80047001);

class StatusPollTest : public ScopeTest {
  protected:
    CDriver& Root() { return *static_cast<CDriver*>(Query<IUnknown>(scope.Get()).Get()); }
    void ConnectPolling() {
        Connect();
        ASSERT_EQ(As<IIviDriverOperation>()->put_QueryInstrumentStatus(VARIANT_TRUE), S_OK);
        fake.ForgetCalls();
    }
    HRESULT Start() { return As<IKestrionAcquisition>()->Start(); }
};

TEST_F(StatusPollTest, WithoutTheOptionNothingIsAsked) {
    Connect();
    fake.ForgetCalls();
    EXPECT_EQ(Root().PollInstrumentStatus(), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

TEST_F(StatusPollTest, OnlyTheFourErrorBitsAreErrors) {
    ConnectPolling();
    struct Case {
        const char* answer;
        HRESULT status;
    };
    const Case cases[] = {
        {"0", S_OK},
        {"1", S_OK},    // operation complete
        {"2", S_OK},    // request control
        {"64", S_OK},   // user request
        {"128", S_OK},  // power on
        {"4", kInstrumentError},
        {"8", kInstrumentError},
        {"16", kInstrumentError},
        {"32", kInstrumentError},
        {"36", kInstrumentError},
        {"255", kInstrumentError},
        {"195", S_OK},
        {"text", S_OK},  // reads as 0
    };
    for (const Case& each : cases) {
        fake.Expect("ACQUIRE:STATE ON\n");
        fake.Expect("*ESR?\n").Reply(std::string(each.answer) + "\n");
        EXPECT_EQ(Start(), each.status) << each.answer;
        EXPECT_EQ(ErrorText(), each.status == S_OK
                                   ? ""
                                   : "Kestrion: Instrument error detected.  Use ErrorQuery() to "
                                     "determine error(s).")
            << each.answer;
    }
}

TEST_F(StatusPollTest, AnErrorLeavesTheInstrumentsQueueAlone) {
    ConnectPolling();
    fake.Expect("ACQUIRE:STATE ON\n");
    fake.Expect("*ESR?\n").Reply("32\n");
    EXPECT_EQ(Start(), kInstrumentError);
    EXPECT_TRUE(fake.Finished());
    EXPECT_THAT(fake.CallsOf("viClear"), ElementsAre());
}

TEST_F(StatusPollTest, AReadThatFailsClearsTheInstrument) {
    ConnectPolling();
    fake.Expect("ACQUIRE:STATE ON\n");
    fake.Expect("*ESR?\n");  // never answered
    EXPECT_EQ(Start(), kInstrumentError);
    EXPECT_EQ(fake.CallsOf("viClear").size(), 1U);
}

TEST_F(StatusPollTest, AWriteThatFailsClearsTheInstrument) {
    ConnectPolling();
    fake.Expect("ACQUIRE:STATE ON\n");
    // The member's write is the first call, the poll's is the second.
    fake.FailCall(fake.CallCount() + 2, static_cast<visa::ViStatus>(0xBFFF003E));
    EXPECT_EQ(Start(), kInstrumentError);
    EXPECT_EQ(fake.CallsOf("viClear").size(), 1U);
}

TEST_F(StatusPollTest, AFailedOperationIsNotPolled) {
    ConnectPolling();
    fake.FailFunction("viWrite", static_cast<visa::ViStatus>(0xBFFF003E));
    EXPECT_EQ(Start(), MakeStatus(0x8004003E));
    EXPECT_EQ(fake.CallsOf("viWrite").size(), 1U);
    fake.FailFunction("viWrite", 0);
}

TEST_F(StatusPollTest, AChildAsksItsRootAndNobodyOnceItIsDropped) {
    ConnectPolling();
    const std::vector<CRepCap*> channels = Root().Instances("KestrionChannel");
    ASSERT_EQ(channels.size(), 4U);
    const ComPtr<IKestrionChannel> held = Channel("Channel2");
    fake.Expect("*ESR?\n").Reply("8\n");
    EXPECT_EQ(channels[1]->PollInstrumentStatus(), kInstrumentError);
    EXPECT_EQ(scope->Close(), S_OK);
    fake.ForgetCalls();
    EXPECT_EQ(channels[1]->PollInstrumentStatus(), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

}  // namespace
}  // namespace kestrion
