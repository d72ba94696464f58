// The file behind the locks, and a system that has no place for one.

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "visa/lock_file.h"
#include "visa/resource_lock.h"

namespace visa_provider {
namespace {

using Part = LockFile::Part;
using Held = LockFile::Held;

// A name that no resource has, and no other test run at the same time.
std::string Name(const char* test) {
    std::random_device random;
    return std::string("test of ") + test + std::to_string(random());
}

TEST(LockFileTest, PartsAreHeldAgainstOtherOpeningsOnly) {
    const std::string name = Name("parts");
    const auto one = LockFile::Open(name);
    const auto other = LockFile::Open(name);
    ASSERT_TRUE(one && other);
    EXPECT_TRUE(one->TryHold(Part::kResource, Held::kAlone));
    EXPECT_EQ(one->HeldByOthers(Part::kResource), Held::kNot);
    EXPECT_EQ(other->HeldByOthers(Part::kResource), Held::kAlone);
    EXPECT_EQ(other->HeldByOthers(Part::kAmongSharers), Held::kNot);
    EXPECT_FALSE(other->TryHold(Part::kResource, Held::kShared));
    one->GiveBack(Part::kResource);
    EXPECT_TRUE(other->TryHold(Part::kResource, Held::kShared));
    EXPECT_TRUE(one->TryHold(Part::kResource, Held::kShared));
    EXPECT_EQ(other->HeldByOthers(Part::kResource), Held::kShared);
    EXPECT_FALSE(one->TryHold(Part::kResource, Held::kAlone));
}

TEST(LockFileTest, CapitalsMakeNoOtherName) {
    const std::string name = Name("capitals");
    const auto one = LockFile::Open(name);
    const auto same = LockFile::Open("TEST OF CAPITALS" + name.substr(16));
    const auto other = LockFile::Open(name + "x");
    ASSERT_TRUE(one && same && other);
    ASSERT_TRUE(one->TryHold(Part::kResource, Held::kAlone));
    EXPECT_EQ(same->HeldByOthers(Part::kResource), Held::kAlone);
    EXPECT_EQ(other->HeldByOthers(Part::kResource), Held::kNot);
}

TEST(LockFileTest, KeyIsSeenByAll) {
    const std::string name = Name("key");
    const auto one = LockFile::Open(name);
    const auto other = LockFile::Open(name);
    ASSERT_TRUE(one && other);
    EXPECT_EQ(one->Key(), "");
    EXPECT_TRUE(one->SetKey(std::string(255, 'k')));
    EXPECT_EQ(other->Key(), std::string(255, 'k'));
    EXPECT_TRUE(other->SetKey("short"));
    EXPECT_EQ(one->Key(), "short");
}

TEST(LockFileTest, IsGoneWithItsLastOpening) {
    const std::string name = Name("end");
    auto one = LockFile::Open(name);
    auto other = LockFile::Open(name);
    ASSERT_TRUE(one && other);
    ASSERT_TRUE(one->SetKey("first"));
    one.reset();
    EXPECT_EQ(other->Key(), "first");
    other.reset();
    const auto again = LockFile::Open(name);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->Key(), "");
}

TEST(LockFileTest, ManyThreadsOpenAndCloseTheSameOne) {
    const std::string name = Name("threads");
    std::atomic<int> inside = 0;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                const auto file = LockFile::Open(name);
                if (!file) {
                    ++wrong;
                } else if (file->TryHold(Part::kResource, Held::kAlone)) {
                    wrong += inside.fetch_add(1);  // somebody has it on another file
                    --inside;
                }
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST(ResourceLockTest, WithoutAPlaceForTheFileLocksAreRefusedAndTheResourceIsFree) {
    ResourceLock lock(nullptr);
    const Call call(0);
    std::string key;
    EXPECT_EQ(lock.Acquire(VI_EXCLUSIVE_LOCK, call, "", key), VI_ERROR_ALLOC);
    EXPECT_EQ(lock.Acquire(VI_SHARED_LOCK, call, "k", key), VI_ERROR_ALLOC);
    EXPECT_EQ(lock.Acquire(7, call, "", key), VI_ERROR_INV_LOCK_TYPE);
    EXPECT_EQ(lock.Release(), VI_ERROR_SESN_NLOCKED);
    EXPECT_TRUE(lock.MayUse());
    EXPECT_EQ(lock.State(), VI_NO_LOCK);
}

TEST(ResourceLockTest, GuardThatIsNotGivenBackIsNotWaitedForLong) {
    const std::string name = Name("guard");
    const auto halted = LockFile::Open(name);
    ASSERT_TRUE(halted && halted->TryHold(Part::kGuard, Held::kAlone));
    ResourceLock lock(LockFile::Open(name));
    std::string key;
    EXPECT_EQ(lock.Acquire(VI_SHARED_LOCK, Call(0), "k", key), VI_ERROR_RSRC_LOCKED);
    halted->GiveBack(Part::kGuard);
    EXPECT_EQ(lock.Acquire(VI_SHARED_LOCK, Call(0), "k", key), VI_SUCCESS);
    EXPECT_EQ(key, "k");
}

TEST(ResourceLockTest, ClosedLockCannotBeTaken) {
    ResourceLock lock;
    std::string key;
    lock.Close();
    EXPECT_EQ(lock.Acquire(VI_EXCLUSIVE_LOCK, Call(VI_TMO_INFINITE), "", key), VI_ERROR_ABORT);
}

}  // namespace
}  // namespace visa_provider
