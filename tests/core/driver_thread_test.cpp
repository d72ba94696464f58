// Eight threads on one driver: the root through several interfaces, and its channels.
#include <gmock/gmock.h>

#include <atomic>
#include <barrier>
#include <functional>
#include <thread>
#include <vector>

#include "core/driver.h"
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::IsEmpty;

constexpr int kThreads = 8;
constexpr int kRounds = 60;

class DriverThreadTest : public ScopeTest {
  protected:
    // Runs `work` on eight threads that begin together; the argument counts them from 0.
    static void OnEightThreads(const std::function<void(int)>& work) {
        std::barrier start(kThreads);
        std::vector<std::jthread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([&start, &work, i] {
                start.arrive_and_wait();
                work(i);
            });
        }
    }

    // An instrument that answers a query with a number that only this query has.
    void AnswerQueries() {
        fake.AnswerWith([](std::string_view message) -> std::string {
            if (message.starts_with("*IDN?")) {
                return "KESTRION,PL7254C,1,1\n";
            }
            if (message.starts_with("*ESR?")) {
                return "0\n";
            }
            if (message.starts_with("ACQUIRE:NUMAVG?")) {
                return "16\n";
            }
            if (message.starts_with("ACQUIRE:NUMENV?")) {
                return "32\n";
            }
            if (message.starts_with("ACQUIRE:MODE?")) {
                return "HIRES\n";
            }
            if (message.starts_with("CH") && message.find(":OFFSET?") != std::string_view::npos) {
                return std::string(1, message[2]) + ".5\n";
            }
            return {};
        });
    }

    // The wire, message by message: a query is followed by the read of its response, nothing
    // stands between, and every read belongs to the query before it.
    void ExpectWholeQueries() {
        std::string_view before;
        int queries = 0;
        const std::vector<std::string> calls = fake.Calls();
        for (const std::string& call : calls) {
            const bool isRead = call.starts_with("viRead(");
            const bool afterQuery = before.starts_with("viWrite(") && before.ends_with("?\\n\")");
            EXPECT_EQ(isRead, afterQuery) << before << " then " << call;
            queries += isRead ? 1 : 0;
            before = call;
        }
        EXPECT_FALSE(before.ends_with("?\\n\")"));
        EXPECT_GT(queries, 0);
    }

    ComPtr<IKestrionChannel> ChannelOf(int number) {
        return Channel("Channel" + std::to_string(number));
    }

    // One round of a thread: odd ones work on the root, even ones on a channel of their own.
    void WorkRound(int thread, std::atomic<int>& wrong) {
        if (thread % 2 == 0) {
            const int number = thread / 2 + 1;
            double offset = 0.0;
            if (channels_[static_cast<std::size_t>(number - 1)]->get_Offset(&offset) != S_OK ||
                offset != number + 0.5) {
                ++wrong;
            }
            if (channels_[static_cast<std::size_t>(number - 1)]->put_Offset(0.25) != S_OK) {
                ++wrong;
            }
            return;
        }
        LONG averages = 0;
        LONG envelopes = 0;
        auto mode = KestrionAcquisitionModeSample;
        if (acquisition_->get_NumberAverages(&averages) != S_OK || averages != 16 ||
            acquisition_->get_NumberEnvelopes(&envelopes) != S_OK || envelopes != 32 ||
            acquisition_->get_Mode(&mode) != S_OK || mode != KestrionAcquisitionModeHiRes ||
            acquisition_->put_NumberAverages(thread) != S_OK) {
            ++wrong;
        }
    }

    void HoldInterfaces() {
        acquisition_ = As<IKestrionAcquisition>();
        for (int i = 1; i <= 4; ++i) {
            channels_.push_back(ChannelOf(i));
            ASSERT_TRUE(channels_.back());
        }
    }

    void TearDown() override {
        channels_.clear();
        acquisition_ = {};
        ScopeTest::TearDown();
    }

    ComPtr<IKestrionAcquisition> acquisition_;
    std::vector<ComPtr<IKestrionChannel>> channels_;
};

TEST_F(DriverThreadTest, EveryQueryIsWholeOnTheWire) {
    AnswerQueries();
    ASSERT_EQ(Initialize("GPIB0::1::INSTR"), S_OK);
    HoldInterfaces();
    fake.ForgetCalls();
    std::atomic<int> wrong{0};
    OnEightThreads([&](int thread) {
        for (int i = 0; i < kRounds; ++i) {
            WorkRound(thread, wrong);
        }
    });
    EXPECT_EQ(wrong, 0);
    ExpectWholeQueries();
    // Four threads ask three times and set once in a round, four ask once and set once.
    EXPECT_EQ(fake.CallsOf("viWrite").size(), static_cast<std::size_t>(kRounds * 4 * (4 + 2)));
    EXPECT_EQ(fake.CallsOf("viRead").size(), static_cast<std::size_t>(kRounds * 4 * (3 + 1)));
}

TEST_F(DriverThreadTest, TheStatusPollStaysBehindItsOwnOperation) {
    AnswerQueries();
    ASSERT_EQ(Initialize("GPIB0::1::INSTR", "queryinstrstatus=true"), S_OK);
    HoldInterfaces();
    fake.ForgetCalls();
    std::atomic<int> wrong{0};
    OnEightThreads([&](int thread) {
        for (int i = 0; i < kRounds; ++i) {
            WorkRound(thread, wrong);
        }
    });
    EXPECT_EQ(wrong, 0);
    ExpectWholeQueries();
    // Each message of a member is followed by one poll, and two polls never follow one another.
    bool polled = true;
    for (const std::string& call : fake.CallsOf("viWrite")) {
        const bool isPoll = call == "viWrite(\"*ESR?\\n\")";
        EXPECT_EQ(isPoll, !polled) << call;
        polled = isPoll;
    }
    EXPECT_TRUE(polled);
}

TEST_F(DriverThreadTest, ErrorsAreThoseOfTheThreadThatMadeThem) {
    AnswerQueries();
    ASSERT_EQ(Initialize("GPIB0::1::INSTR"), S_OK);
    HoldInterfaces();
    std::atomic<int> wrong{0};
    OnEightThreads([&](int thread) {
        for (int i = 0; i < kRounds; ++i) {
            HRESULT status = S_OK;
            std::string expected;
            if (thread % 2 == 0) {
                status = channels_[static_cast<std::size_t>(thread / 2)]->get_Offset(nullptr);
                expected = "Kestrion: Null pointer passed for method get_Offset, parameter val.";
            } else {
                status =
                    acquisition_->put_Mode(static_cast<KestrionAcquisitionModeEnum>(thread + 100));
                expected = "Kestrion: Invalid value (" + std::to_string(thread + 100) +
                           ") for method put_Mode, parameter nVal.";
            }
            if (Succeeded(status) || ErrorText() != expected) {
                ++wrong;
            }
        }
        EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
    });
    EXPECT_EQ(wrong, 0);
}

TEST_F(DriverThreadTest, SimulatedAttributesOptionsAndCollectionsAtOnce) {
    Simulate("Model=PL7254C");
    const auto attributes = As<IIviScopeAcquisition>();
    const auto options = As<IIviDriverOperation>();
    ComPtr<IKestrionChannels> collection;
    ASSERT_EQ(scope->get_Channels(collection.Out()), S_OK);
    std::atomic<int> wrong{0};
    OnEightThreads([&](int thread) {
        const BstrPtr name(std::string_view("channel3"));
        for (int i = 0; i < kRounds; ++i) {
            HRESULT status = S_OK;
            LONG number = 0;
            BstrPtr text;
            ComPtr<IKestrionChannel> channel;
            switch (thread % 4) {
                case 0:
                    status = attributes->put_NumberOfAverages(i);
                    break;
                case 1:
                    status = attributes->get_NumberOfAverages(&number);
                    break;
                case 2:
                    status = collection->get_Item(name.Get(), channel.Out());
                    break;
                default:
                    status = options->put_RangeCheck(i % 2 == 0 ? VARIANT_TRUE : VARIANT_FALSE);
                    if (status == S_OK) {
                        status = options->get_DriverSetup(text.Out());
                    }
                    break;
            }
            wrong += status == S_OK ? 0 : 1;
        }
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(DriverThreadTest, CloseUnderRunningCallsEndsThemInOrder) {
    AnswerQueries();
    ASSERT_EQ(Initialize("GPIB0::1::INSTR"), S_OK);
    HoldInterfaces();
    constexpr HRESULT kNotInitialized = MakeStatus(0x8004701D);
    std::atomic<int> wrong{0};
    OnEightThreads([&](int thread) {
        for (int i = 0; i < kRounds / 2; ++i) {
            if (thread == 7) {
                if (scope->Close() != S_OK || Initialize("GPIB0::1::INSTR") != S_OK) {
                    ++wrong;
                }
                continue;
            }
            double offset = 0.0;
            LONG averages = 0;
            const HRESULT status =
                thread % 2 == 0
                    ? channels_[static_cast<std::size_t>(thread / 2)]->get_Offset(&offset)
                    : acquisition_->get_NumberAverages(&averages);
            // A child of an earlier connection stays dropped; the root is connected or not.
            if (status != S_OK && status != kNotInitialized) {
                ++wrong;
            }
        }
        EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
    });
    EXPECT_EQ(wrong, 0);
    double offset = 0.0;
    EXPECT_EQ(channels_[0]->get_Offset(&offset), kNotInitialized);
    EXPECT_EQ(ChannelOf(1)->get_Offset(&offset), S_OK);
    EXPECT_EQ(offset, 1.5);
}

}  // namespace
}  // namespace kestrion
