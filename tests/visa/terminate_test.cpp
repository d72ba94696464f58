// viTerminate, over each kind of link.
#include <gmock/gmock.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tests/visa/session_fixture.h"
#include "visa/running_calls.h"

namespace visa_provider::testing {

class TerminateTest : public VisaTest, public ::testing::WithParamInterface<bool> {
  protected:
    void SetUp() override {
        VisaTest::SetUp();
        server_ = std::make_unique<LoopbackServer>(AnswerAll);
        session_ = GetParam() ? Open(server_->Resource()) : OpenVirtual();
        Set(session_, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
        Set(session_, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    }
    void TearDown() override {
        VisaTest::TearDown();
        server_.reset();
    }
    // Ends whatever runs on the session, until `thread` is done.
    void TerminateUntilDone(std::thread& thread, const std::atomic<bool>& done) const {
        while (!done) {
            EXPECT_EQ(viTerminate(session_, VI_NULL, VI_NULL), VI_SUCCESS);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        thread.join();
    }
    void ExpectSessionWorks() {
        ASSERT_EQ(Write(session_, "ECHO on\n"), VI_SUCCESS);
        EXPECT_EQ(Read(session_, 100).bytes, "on\n");
    }

    std::unique_ptr<LoopbackServer> server_;
    ViSession session_ = VI_NULL;
};
INSTANTIATE_TEST_SUITE_P(Links, TerminateTest, ::testing::Bool(),
                         [](const auto& link) { return link.param ? "Socket" : "Virtual"; });

TEST_P(TerminateTest, EndsAReadThatWaits) {
    std::atomic<bool> done = false;
    std::thread reader([&] {
        ViByte buffer[16];
        ViUInt32 count = 7;
        EXPECT_EQ(viRead(session_, buffer, 16, &count), VI_ERROR_ABORT);
        EXPECT_EQ(count, 0U);
        done = true;
    });
    TerminateUntilDone(reader, done);
    ExpectSessionWorks();
}

// Right behind a message the wait for its answer is another one.
TEST_P(TerminateTest, EndsAReadBehindAMessageThatGetsNoAnswer) {
    std::atomic<bool> done = false;
    ASSERT_EQ(Write(session_, "NOTHING\n"), VI_SUCCESS);
    std::thread reader([&] {
        EXPECT_EQ(Read(session_, 16).status, VI_ERROR_ABORT);
        done = true;
    });
    TerminateUntilDone(reader, done);
    ExpectSessionWorks();
}

TEST_P(TerminateTest, EndsThoseThatWaitForTheirTurnToo) {
    std::atomic<int> ended = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            ViByte buffer[16];
            EXPECT_EQ(viRead(session_, buffer, 16, nullptr), VI_ERROR_ABORT);
            ++ended;
        });
    }
    while (ended < 3) {
        EXPECT_EQ(viTerminate(session_, VI_NULL, VI_NULL), VI_SUCCESS);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    for (auto& reader : readers) {
        reader.join();
    }
    ExpectSessionWorks();
}

TEST_P(TerminateTest, EndsAWaitForAnEvent) {
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    std::atomic<bool> done = false;
    std::thread waiter([&] {
        EXPECT_EQ(
            viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, VI_TMO_INFINITE, nullptr, nullptr),
            VI_ERROR_ABORT);
        done = true;
    });
    TerminateUntilDone(waiter, done);
    ExpectSessionWorks();
}

TEST_P(TerminateTest, EndsTheJobThatItNamesWithACompletion) {
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    std::atomic<ViJobId> job = 0;
    std::atomic<bool> done = false;
    ViJobId jobOfRead = 0;
    std::thread reader([&] {
        ViByte buffer[16];
        // Known before the transfer begins: the other thread asks with it until it is there.
        EXPECT_EQ(viReadAsync(session_, buffer, 16, &jobOfRead), VI_SUCCESS_SYNC);
        job = jobOfRead;
        done = true;
    });
    // Jobs count up from 1.
    while (!done) {
        EXPECT_THAT(viTerminate(session_, VI_NULL, 1),
                    ::testing::AnyOf(VI_SUCCESS, VI_ERROR_INV_JOB_ID));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    reader.join();
    EXPECT_EQ(job, 1U);
    ViEvent event = VI_NULL;
    ASSERT_EQ(viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, &event), VI_SUCCESS);
    EXPECT_EQ(Get<ViStatus>(event, VI_ATTR_STATUS), VI_ERROR_ABORT);
    EXPECT_EQ(Get<ViJobId>(event, VI_ATTR_JOB_ID), 1U);
    EXPECT_EQ(viTerminate(session_, VI_NULL, 1), VI_ERROR_INV_JOB_ID);
    ExpectSessionWorks();
}

TEST_P(TerminateTest, NothingToEndIsASuccessAndWrongArgumentsAreNot) {
    EXPECT_EQ(viTerminate(session_, VI_NULL, VI_NULL), VI_SUCCESS);
    EXPECT_EQ(viTerminate(session_, 1, VI_NULL), VI_ERROR_INV_DEGREE);
    EXPECT_EQ(viTerminate(session_, VI_NULL, 12345), VI_ERROR_INV_JOB_ID);
    EXPECT_EQ(viTerminate(manager_, VI_NULL, VI_NULL), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(viTerminate(0x7FFF0000, VI_NULL, VI_NULL), VI_ERROR_INV_OBJECT);
}

using TerminateLockTest = VisaTest;

TEST_F(TerminateLockTest, EndsAWaitForALock) {
    LoopbackServer server(AnswerAll);
    const auto owner = Open(server.Resource());
    const auto session = Open(server.Resource());
    ASSERT_EQ(viLock(owner, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr), VI_SUCCESS);
    std::atomic<bool> done = false;
    std::thread waiter([&] {
        EXPECT_EQ(viLock(session, VI_EXCLUSIVE_LOCK, VI_TMO_INFINITE, nullptr, nullptr),
                  VI_ERROR_ABORT);
        done = true;
    });
    while (!done) {
        EXPECT_EQ(viTerminate(session, VI_NULL, VI_NULL), VI_SUCCESS);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    waiter.join();
    ASSERT_EQ(viUnlock(owner), VI_SUCCESS);
    EXPECT_EQ(viLock(session, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr), VI_SUCCESS);
    EXPECT_EQ(viClose(session), VI_SUCCESS);
    EXPECT_EQ(viClose(owner), VI_SUCCESS);
}

TEST(RunningCallsTest, InterruptsEachCallOnceAndTellsWhenItIsOver) {
    int interrupts = 0;
    int over = 0;
    RunningCalls calls([&] { ++interrupts; }, [&] { ++over; });
    EXPECT_TRUE(calls.Stop(VI_NULL));
    EXPECT_FALSE(calls.Stop(3));
    {
        const RunningCall plain(calls, 10, 0);
        {
            const RunningCall job(calls, 20, 3);
            EXPECT_EQ(job.Timeout(), 20U);
            EXPECT_TRUE(calls.Stop(3));
            EXPECT_TRUE(calls.Stop(3));
            EXPECT_TRUE(job.IsStopped());
            EXPECT_FALSE(plain.IsStopped());
            EXPECT_EQ(interrupts, 1);
            EXPECT_EQ(over, 0);
        }
        EXPECT_EQ(over, 1);
        EXPECT_TRUE(calls.Stop(VI_NULL));
        EXPECT_TRUE(plain.IsStopped());
    }
    EXPECT_EQ(interrupts, 2);
    EXPECT_EQ(over, 2);
}

}  // namespace visa_provider::testing
