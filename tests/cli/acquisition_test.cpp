#include "cli/acquisition.h"

#include <gmock/gmock.h>

#include "tests/cli/failure_matcher.h"
#include "tests/cli/fake_scope.h"

namespace kestrion::cli {
namespace {

using ::testing::ElementsAre;

class AcquisitionTest : public ::testing::Test {
  protected:
    AcquisitionTest() {
        arguments_.sources = {{SourceKind::kChannel, 1}, {SourceKind::kChannel, 2}};
    }

    Waveforms AcquireFrom(const std::string& resource) {
        FakeScope client(run_.instrument);
        client.Open(resource, "");
        run_.instrument.calls.clear();
        Waveforms waveforms =
            Acquire(client, arguments_, run_.FakeTiming(),
                    [this](std::string_view phase) { phases_.emplace_back(phase); });
        calls_ = run_.instrument.calls;
        return waveforms;
    }

    FakeRun run_;
    CaptureArguments arguments_;
    std::vector<std::string> phases_;
    std::vector<std::string> calls_;
};

TEST_F(AcquisitionTest, ReadsTheFirstSourceAndFetchesTheOthers) {
    const Waveforms waveforms = AcquireFrom("VIRTUAL::PL7254C::INSTR");
    EXPECT_THAT(calls_,
                ElementsAre("TurnOn CH2", "SelectSingleSequence", "Read CH1 10000", "Fetch CH2"));
    EXPECT_THAT(phases_, ElementsAre("Acquiring and transferring CH1", "Transferring CH2"));
    ASSERT_EQ(waveforms.size(), 2U);
    EXPECT_EQ(waveforms[0].source, "CH1");
    EXPECT_EQ(waveforms[1].source, "CH2");
}

TEST_F(AcquisitionTest, SetsTheRecordLengthBeforeTheAcquisition) {
    arguments_.points = 5000;
    arguments_.maxTimeMilliseconds = 77;
    (void)AcquireFrom("TCPIP::scope::INSTR");
    EXPECT_THAT(calls_, ElementsAre("TurnOn CH2", "SetRecordLength 5000", "SelectSingleSequence",
                                    "Read CH1 77", "Fetch CH2"));
}

TEST_F(AcquisitionTest, AsItIsOnlyFetches) {
    arguments_.asIs = true;
    (void)AcquireFrom("TCPIP::scope::4000::SOCKET");
    EXPECT_THAT(calls_, ElementsAre("TurnOn CH2", "Fetch CH1", "Fetch CH2"));
    EXPECT_THAT(phases_, ElementsAre("Transferring CH1", "Transferring CH2"));
}

TEST_F(AcquisitionTest, PollsEveryFiveMillisecondsWhereThereIsNoServiceRequest) {
    run_.instrument.pollsWhileAcquiring = 3;
    (void)AcquireFrom("TCPIP::scope::4000::SOCKET");
    EXPECT_THAT(calls_,
                ElementsAre("TurnOn CH2", "StartSingleSequence", "IsAcquiring", "IsAcquiring",
                            "IsAcquiring", "IsAcquiring", "Fetch CH1", "Fetch CH2"));
    EXPECT_EQ(run_.slept, std::chrono::milliseconds(15));
    EXPECT_THAT(phases_, ElementsAre("Acquiring", "Transferring CH1", "Transferring CH2"));
}

TEST_F(AcquisitionTest, PollingEndsAtTheMaximumTime) {
    run_.instrument.pollsWhileAcquiring = 1000000;
    arguments_.maxTimeMilliseconds = 50;
    const Failure failure = ExpectFailure([this] { (void)AcquireFrom("TCPIP::a::1::SOCKET"); });
    EXPECT_STREQ(failure.what(), "No complete acquisition within 50 ms.");
    EXPECT_EQ(failure.Hint(), "The trigger may never have come. Give more time by --max-time.");
    EXPECT_EQ(run_.slept, std::chrono::milliseconds(50));
}

TEST_F(AcquisitionTest, TheResourceInForceDecidesNotTheNameGiven) {
    run_.instrument.resourceInForce = "TCPIP0::10.0.0.1::4000::SOCKET";
    (void)AcquireFrom("MyScope");
    EXPECT_THAT(calls_, ::testing::Contains("StartSingleSequence"));
}

TEST_F(AcquisitionTest, ARecordWithoutATimeBaseIsNoSuccess) {
    for (const bool asIs : {false, true}) {
        arguments_.asIs = asIs;
        run_.instrument.waveforms["CH1"] = MakeWaveform("CH1", {0, 0, 0}, 0, 0);
        const Failure failure =
            ExpectFailure([this] { (void)AcquireFrom("VIRTUAL::PL7254C::INSTR"); });
        EXPECT_STREQ(failure.what(), "The transfer of CH1 broke off: its record has no time base.");
        EXPECT_EQ(failure.Hint(), "Try again; --timeout gives a slow connection more time.");
    }
}

TEST(LacksServiceRequest, IsTrueForSocketsOnly) {
    EXPECT_TRUE(LacksServiceRequest("TCPIP0::10.0.0.1::4000::SOCKET"));
    EXPECT_TRUE(LacksServiceRequest("tcpip::10.0.0.1::4000::socket "));
    EXPECT_FALSE(LacksServiceRequest("TCPIP::10.0.0.1::INSTR"));
    EXPECT_FALSE(LacksServiceRequest("VIRTUAL::PL7254C::INSTR"));
    EXPECT_FALSE(LacksServiceRequest(""));
}

}  // namespace
}  // namespace kestrion::cli
