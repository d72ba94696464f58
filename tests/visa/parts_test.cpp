// The small parts that everything else is built of.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <thread>

#include "visa/attribute_value.h"
#include "visa/object_table.h"
#include "visa/signal.h"
#include "visa/time_limit.h"
#include "visa/turn.h"

namespace visa_provider {
namespace {

using std::chrono::milliseconds;

const TimePoint kStart{std::chrono::seconds(1000)};

TEST(ProgressTimerTest, StartsWithTheTransfer) {
    const ProgressTimer timer(100, kStart);
    EXPECT_EQ(timer.Limit(), kStart + milliseconds(100));
}

TEST(ProgressTimerTest, LongTransferAtASteadyPaceIsNotCutOff) {
    ProgressTimer timer(100, kStart);
    auto now = kStart;
    for (int i = 0; i < 1000; ++i) {
        now += milliseconds(50);
        ASSERT_FALSE(HasPassed(timer.Limit(), now));
        timer.Transferred(65536, now);
        ASSERT_EQ(timer.Limit(), now + milliseconds(100));
    }
}

TEST(ProgressTimerTest, TricklingBytesDoNotStartItAnew) {
    ProgressTimer timer(100, kStart);
    for (int i = 1; i <= 65535; ++i) {
        timer.Transferred(1, kStart + milliseconds(90));
    }
    EXPECT_EQ(timer.Limit(), kStart + milliseconds(100));
    timer.Transferred(1, kStart + milliseconds(95));
    EXPECT_EQ(timer.Limit(), kStart + milliseconds(195));
    timer.Transferred(65535, kStart + milliseconds(190));
    EXPECT_EQ(timer.Limit(), kStart + milliseconds(195));
}

TEST(ProgressTimerTest, InfiniteAndImmediate) {
    EXPECT_EQ(ProgressTimer(VI_TMO_INFINITE, kStart).Limit(), std::nullopt);
    EXPECT_TRUE(HasPassed(ProgressTimer(VI_TMO_IMMEDIATE, kStart).Limit(), kStart));
}

TEST(DeadlineTest, LongestFiniteTimeOut) {
    EXPECT_EQ(DeadlineAfter(0xFFFFFFFE, kStart), kStart + milliseconds(4294967294));
}

TEST(DeadlineTest, TheEarlierOne) {
    const Deadline late = kStart + milliseconds(2);
    EXPECT_EQ(Earlier(kStart, late), kStart);
    EXPECT_EQ(Earlier(late, kStart), kStart);
    EXPECT_EQ(Earlier(std::nullopt, late), late);
    EXPECT_EQ(Earlier(late, std::nullopt), late);
    EXPECT_EQ(Earlier(std::nullopt, std::nullopt), std::nullopt);
}

TEST(SignalTest, ChangeBetweenLookAndSleepIsNotMissed) {
    Signal signal;
    const auto seen = signal.Count();
    signal.Raise();
    signal.WaitForChange(seen, std::nullopt);  // would never return otherwise
    EXPECT_NE(signal.Count(), seen);
}

TEST(SignalTest, WaitEndsAtTheDeadline) {
    Signal signal;
    const auto deadline = Clock::now() + milliseconds(10);
    signal.WaitForChange(signal.Count(), deadline);
    EXPECT_GE(Clock::now(), deadline);
}

const Call kCall(0);

TEST(TurnTest, OtherThreadGetsItOnlyAfterwards) {
    Turn turn;
    ASSERT_TRUE(turn.Take(std::nullopt, kCall));
    std::thread([&] { EXPECT_FALSE(turn.Take(Clock::now(), kCall)); }).join();
    std::atomic<bool> hasIt = false;
    std::thread other([&] {
        hasIt = turn.Take(std::nullopt, kCall);
        turn.Give();
    });
    turn.Give();
    other.join();
    EXPECT_TRUE(hasIt);
}

TEST(TurnTest, SameThreadMayTakeItAgain) {
    Turn turn;
    ASSERT_TRUE(turn.Take(std::nullopt, kCall));
    ASSERT_TRUE(turn.Take(Clock::now(), kCall));
    turn.Give();
    std::thread([&] { EXPECT_FALSE(turn.Take(Clock::now(), kCall)); }).join();
    turn.Give();
    std::thread([&] {
        EXPECT_TRUE(turn.Take(Clock::now(), kCall));
        turn.Give();
    }).join();
}

TEST(TurnTest, CallThatIsStoppedDoesNotGetIt) {
    Turn turn;
    Call call(0);
    ASSERT_TRUE(turn.Take(std::nullopt, kCall));
    std::thread other([&] { EXPECT_FALSE(turn.Take(std::nullopt, call)); });
    call.Stop();
    turn.Wake();
    other.join();
    EXPECT_EQ(NoTurn(call), VI_ERROR_ABORT);
    EXPECT_EQ(NoTurn(kCall), VI_ERROR_TMO);
    turn.Give();
}

TEST(AttributeValueTest, ThirtyTwoBitsAlsoWhenSignExtended) {
    EXPECT_EQ(ToUInt32(0), 0U);
    EXPECT_EQ(ToUInt32(0xFFFFFFFF), 0xFFFFFFFFU);
    EXPECT_EQ(ToUInt32(static_cast<ViAttrState>(-1)), 0xFFFFFFFFU);
    EXPECT_EQ(ToUInt32(static_cast<ViAttrState>(-2)), 0xFFFFFFFEU);
    if (kWideAddresses) {
        EXPECT_EQ(ToUInt32(static_cast<ViAttrState>(0x100000000)), std::nullopt);
        EXPECT_EQ(ToUInt32(static_cast<ViAttrState>(0xFFFFFFFF00000000)), std::nullopt);
    }
}

TEST(AttributeValueTest, SmallNumbersHaveToFit) {
    EXPECT_EQ(ToUInt8(255), ViUInt8{255});
    EXPECT_EQ(ToUInt8(256), std::nullopt);
    EXPECT_EQ(ToUInt16(65535), ViUInt16{65535});
    EXPECT_EQ(ToUInt16(65536), std::nullopt);
}

TEST(AttributeValueTest, BooleansAreOneAndZeroOnly) {
    EXPECT_EQ(ToBoolean(1), true);
    EXPECT_EQ(ToBoolean(0), false);
    EXPECT_EQ(ToBoolean(2), std::nullopt);
    EXPECT_EQ(ToBoolean(0xFFFF), std::nullopt);
}

TEST(AttributeValueTest, LongTextIsCutTo255Characters) {
    char target[300];
    std::memset(target, '?', sizeof(target));
    StoreValue(std::string(300, 'x'), target);
    EXPECT_EQ(std::strlen(target), 255U);
    EXPECT_EQ(target[256], '?');
}

TEST(AttributeValueTest, EachTypeWritesItsOwnWidth) {
    const auto bytesWritten = [](const AttributeValue& value) {
        unsigned char target[16];
        std::memset(target, 0xEE, sizeof(target));
        StoreValue(value, target);
        int count = 16;
        while (count > 0 && target[count - 1] == 0xEE) {
            --count;
        }
        return count;
    };
    EXPECT_EQ(bytesWritten(ViUInt8{1}), 1);
    EXPECT_EQ(bytesWritten(ViUInt16{1}), 2);
    EXPECT_EQ(bytesWritten(ViInt16{-1}), 2);
    EXPECT_EQ(bytesWritten(ViUInt32{1}), 4);
    EXPECT_EQ(bytesWritten(ViUInt64{1}), 8);
}

class PlainObject final : public Object {
  public:
    [[nodiscard]] std::optional<AttributeValue> Attribute(ViAttr /*attribute*/) const override {
        return std::nullopt;
    }
};

TEST(ObjectTableTest, HandlesAreNeverZeroAndNotReusedSoon) {
    ObjectTable table;
    const auto first = table.Insert(std::make_shared<PlainObject>(), 0);
    EXPECT_NE(first, 0U);
    EXPECT_EQ(table.Remove(first).size(), 1U);
    for (int i = 0; i < 1000; ++i) {
        const auto next = table.Insert(std::make_shared<PlainObject>(), 0);
        EXPECT_NE(next, first);
        EXPECT_EQ(table.Remove(next).size(), 1U);
    }
    EXPECT_EQ(table.Find(first), nullptr);
    EXPECT_TRUE(table.Remove(first).empty());
}

TEST(ObjectTableTest, OwnerTakesWhatItOwnsAlong) {
    ObjectTable table;
    const auto owner = table.Insert(std::make_shared<PlainObject>(), 0);
    const auto other = table.Insert(std::make_shared<PlainObject>(), 0);
    const auto owned = table.Insert(std::make_shared<PlainObject>(), owner);
    const auto alien = table.Insert(std::make_shared<PlainObject>(), other);
    EXPECT_EQ(table.Remove(owner).size(), 2U);
    EXPECT_EQ(table.Find(owned), nullptr);
    EXPECT_NE(table.Find(alien), nullptr);
    EXPECT_EQ(table.Insert(std::make_shared<PlainObject>(), owner), 0U);
}

}  // namespace
}  // namespace visa_provider
