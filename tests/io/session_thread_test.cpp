// Several threads on one session.
#include <atomic>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

class SessionThreadTest : public OpenSessionFixture {};

TEST_F(SessionThreadTest, QueriesOfSeveralThreadsDoNotMix) {
    fake.AnswerWith([](std::string_view message) {
        return std::string(message.substr(5, message.find('?') - 5)) + "\n";
    });
    constexpr int kThreads = 4;
    constexpr int kQueries = 100;
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < kQueries; ++i) {
                const std::int32_t sent = t * 1000 + i;
                std::int32_t back = -1;
                if (Failed(session.QueryfNoPoll("ECHO %d?", "%d", sent, &back)) || back != sent) {
                    ++wrong;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(fake.CallsOf("viWrite").size(), static_cast<std::size_t>(kThreads * kQueries));
}

TEST_F(SessionThreadTest, CloseWaitsForTheOperationThatRuns) {
    std::promise<void> closing;
    std::thread closer;
    std::atomic<bool> started{false};
    fake.OnTransfer([&] {
        if (started.exchange(true)) {
            return;
        }
        // In the middle of the query, behind the write's call.
        closer = std::thread([&] {
            closing.set_value();
            EXPECT_EQ(session.Close(), S_OK);
        });
        closing.get_future().wait();
    });
    fake.Respond("12\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfNoPoll("X?", "%d", &value), S_OK);
    EXPECT_EQ(value, 12);
    closer.join();
    EXPECT_THAT(fake.Calls(),
                testing::ElementsAre("viWrite(\"X?\\n\")", "viRead(4096)", "viClose(manager)"));
    EXPECT_EQ(session.Printf("*RST"), kNotInitializedStatus);
}

TEST_F(SessionThreadTest, OpeningsOnSeveralThreadsReachTheirOwnInstruments) {
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t, &wrong] {
            FakeVisa own;
            CountingPoller ownPoller;
            RecordingReporter ownReporter;
            SlopeFormatter ownFormatter;
            CVisaCSession other([&own](std::string_view, const visa::FunctionTable*& functions) {
                functions = &own.Table();
                return S_OK;
            });
            own.Expect("WHO?\n").Reply(std::to_string(t) + "\n");
            std::int32_t value = -1;
            if (Failed(other.Initialize("x", &ownPoller, &ownReporter, &ownFormatter)) ||
                Failed(other.Queryf("WHO?", "%d", &value)) || value != t) {
                ++wrong;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

std::promise<void>* waiting = nullptr;
std::promise<void>* written = nullptr;

visa::ViStatus WaitUntilWritten(visa::ViSession, visa::ViEventType, visa::ViUInt32,
                                visa::ViEventType* type, visa::ViEvent*) {
    waiting->set_value();
    *type = 0x3FFF200B;
    return written->get_future().wait_for(std::chrono::seconds(20)) == std::future_status::ready
               ? 0
               : VisaCode(0xBFFF0015);
}

TEST_F(SessionThreadTest, WaitForAnEventLeavesTheSessionToOtherThreads) {
    std::promise<void> waitingPromise;
    std::promise<void> writtenPromise;
    waiting = &waitingPromise;
    written = &writtenPromise;
    visa::FunctionTable table = fake.Table();
    table.viWaitOnEvent = WaitUntilWritten;
    CVisaCSession own([&table](std::string_view, const visa::FunctionTable*& functions) {
        functions = &table;
        return S_OK;
    });
    ASSERT_EQ(own.Initialize("x", &poller, &reporter, &formatter), S_OK);
    auto result = std::async(std::launch::async, [&own] {
        auto event = VisaEvent::kTrigger;
        const HRESULT status = own.WaitOnEvent(VisaEvent::kAllEnabled, -1, &event, nullptr);
        return event == VisaEvent::kServiceRequest ? status : E_FAIL;
    });
    waitingPromise.get_future().wait();
    EXPECT_EQ(own.Printf("*TRG"), S_OK);
    writtenPromise.set_value();
    EXPECT_EQ(result.get(), S_OK);
}

}  // namespace
}  // namespace kestrion
