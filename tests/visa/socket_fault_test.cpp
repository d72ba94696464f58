// The wait for an answer, in which calls of the system, and what happens without some of them.
#include <gmock/gmock.h>
#include <sys/socket.h>

#include <memory>
#include <vector>

#include "tests/visa/session_fixture.h"
#include "tests/visa/system_faults.h"

namespace visa_provider::testing {
namespace {

using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;

class SocketFaultTest : public VisaTest {
  protected:
    void TearDown() override {
        VisaTest::TearDown();
        server_.reset();
        Faults() = {};
    }
    void Connect() {
        server_ = std::make_unique<LoopbackServer>(AnswerAll);
        session_ = Open(server_->Resource());
    }
    // The flags of the receives that a read takes.
    std::vector<int> FlagsOfRead(std::size_t count, ReadResult& read) const {
        std::vector<int> flags;
        ReceiveFlags() = &flags;
        read = Read(session_, count);
        ReceiveFlags() = nullptr;
        return flags;
    }

    ViSession session_ = VI_NULL;

  private:
    std::unique_ptr<LoopbackServer> server_;
};

TEST_F(SocketFaultTest, AnswerIsWaitedForAndTakenInOneCall) {
    Connect();
    ReadResult read;
    // How soon the answer comes is up to the machine; that the first call waits for it isn't.
    ASSERT_EQ(Write(session_, "*IDN?\n"), VI_SUCCESS);
    const auto flags = FlagsOfRead(14, read);
    EXPECT_EQ(read.bytes, "KESTRION,TEST\n");
    ASSERT_THAT(flags, Not(IsEmpty()));
    EXPECT_EQ(flags.front(), 0);
    // Only right behind a message.
    ASSERT_EQ(Write(session_, "ECHO a\n"), VI_SUCCESS);
    EXPECT_EQ(FlagsOfRead(2, read).front(), 0);
    Set(session_, VI_ATTR_TMO_VALUE, 20);
    EXPECT_THAT(FlagsOfRead(1, read), Each(MSG_DONTWAIT));
    EXPECT_EQ(read.status, VI_ERROR_TMO);
}

TEST_F(SocketFaultTest, TimeOutThatIsShorterThanThatWaitIsKept) {
    Connect();
    for (const ViUInt32 timeout : {ViUInt32{VI_TMO_IMMEDIATE}, ViUInt32{1}, ViUInt32{9}}) {
        Set(session_, VI_ATTR_TMO_VALUE, timeout);
        ASSERT_EQ(Write(session_, "NOTHING\n"), VI_SUCCESS);
        ReadResult read;
        EXPECT_THAT(FlagsOfRead(1, read), Each(MSG_DONTWAIT)) << timeout;
        EXPECT_EQ(read.status, VI_ERROR_TMO) << timeout;
        EXPECT_EQ(read.bytes, "") << timeout;
    }
}

TEST_F(SocketFaultTest, SystemWithoutATimeForReceivingWaitsInCallsOfTheirOwn) {
    Faults().receiveTimeFails = true;
    const int failedBefore = FailedCalls();
    Connect();
    EXPECT_EQ(FailedCalls(), failedBefore + 1);
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(Write(session_, "*IDN?\n"), VI_SUCCESS);
        EXPECT_EQ(Read(session_, 14).bytes, "KESTRION,TEST\n");
    }
    Set(session_, VI_ATTR_TMO_VALUE, 30);
    ASSERT_EQ(Write(session_, "NOTHING\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 1).status, VI_ERROR_TMO);
}

// A read can't be woken by viTerminate then, but its time-out ends it.
TEST_F(SocketFaultTest, SystemWithoutAWakerStillTransfersAndTimesOut) {
    Faults().eventfdFails = true;
    const int failedBefore = FailedCalls();
    Connect();
    EXPECT_GT(FailedCalls(), failedBefore);
    ASSERT_EQ(Write(session_, "*IDN?\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 14).bytes, "KESTRION,TEST\n");
    EXPECT_EQ(viTerminate(session_, VI_NULL, VI_NULL), VI_SUCCESS);
    Set(session_, VI_ATTR_TMO_VALUE, 30);
    EXPECT_EQ(Read(session_, 1).status, VI_ERROR_TMO);
}

}  // namespace
}  // namespace visa_provider::testing
