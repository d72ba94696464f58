// The hint that spares asking the system about locks, and that it's never more than a hint.
#include "visa/linux/lock_notice.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <thread>

#include "tests/visa/lock_checks.h"
#include "visa/lock_file.h"

namespace visa_provider {
namespace {

using Part = LockFile::Part;
using Held = LockFile::Held;

// The 64-bit FNV-1a hash of a name in capitals.
std::uint64_t HashOf(const std::string& name) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : name) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    return hash;
}

class LockNoticeTest : public ::testing::Test {
  protected:
    // The numbers are shared with whatever runs on the computer; a name that is new shares its own
    // with hardly anything.
    std::string name_ = "NOTICE " + std::to_string(std::random_device()());
    LockNotice notice_{HashOf(name_)};
};

TEST_F(LockNoticeTest, NumberIsOneForAllWhoHaveItsHash) {
    ASSERT_TRUE(notice_.Exists());
    LockNotice other(HashOf(name_));
    const std::uint32_t before = notice_.Count();
    other.Raise();
    EXPECT_EQ(notice_.Count(), before + 1);
    notice_.Lower();
    EXPECT_EQ(other.Count(), before);
}

TEST_F(LockNoticeTest, LockIsSeenByWhoHasJustLooked) {
    testing::ExpectLockIsSeen(name_);
}

TEST_F(LockNoticeTest, EachHeldPartIsCountedOnceAndGivenBackOnce) {
    const std::uint32_t before = notice_.Count();
    auto file = LockFile::Open(name_);
    ASSERT_TRUE(file);
    file->GiveBack(Part::kResource);
    EXPECT_EQ(notice_.Count(), before);
    ASSERT_TRUE(file->TryHold(Part::kResource, Held::kShared));
    ASSERT_TRUE(file->TryHold(Part::kResource, Held::kAlone));
    ASSERT_TRUE(file->TryHold(Part::kAmongSharers, Held::kAlone));
    EXPECT_EQ(notice_.Count(), before + 2);
    file->GiveBack(Part::kResource);
    file->GiveBack(Part::kResource);
    EXPECT_EQ(notice_.Count(), before + 1);
    file.reset();
    EXPECT_EQ(notice_.Count(), before);
}

TEST_F(LockNoticeTest, WhatIsHeldForAMomentIsNotCounted) {
    const std::uint32_t before = notice_.Count();
    const auto file = LockFile::Open(name_);
    ASSERT_TRUE(file && file->TryHold(Part::kGuard, Held::kAlone));
    EXPECT_EQ(notice_.Count(), before);
}

TEST_F(LockNoticeTest, AttemptThatFailsLeavesNoCount) {
    const auto one = LockFile::Open(name_);
    const auto other = LockFile::Open(name_);
    ASSERT_TRUE(one && other && one->TryHold(Part::kResource, Held::kAlone));
    const std::uint32_t before = notice_.Count();
    EXPECT_FALSE(other->TryHold(Part::kResource, Held::kAlone));
    EXPECT_EQ(notice_.Count(), before);
}

// As of a process that ended without giving back.
TEST_F(LockNoticeTest, CountThatIsTooHighCostsTheShortcutAlone) {
    const auto file = LockFile::Open(name_);
    ASSERT_TRUE(file);
    notice_.Raise();
    EXPECT_TRUE(file->IsFreeOfOthers(Part::kResource));
    EXPECT_TRUE(file->IsFreeOfOthers(Part::kResource));
    notice_.Lower();
}

// As of a process that can't reach the memory.
TEST_F(LockNoticeTest, LockThatNobodyToldOfIsSeenAfterAWhile) {
    const auto one = LockFile::Open(name_);
    const auto other = LockFile::Open(name_);
    ASSERT_TRUE(one && other);
    ASSERT_TRUE(one->TryHold(Part::kResource, Held::kAlone));
    notice_.Lower();
    std::this_thread::sleep_for(LockFile::kNoticeAge);
    EXPECT_FALSE(other->IsFreeOfOthers(Part::kResource));
    notice_.Raise();
}

}  // namespace
}  // namespace visa_provider
