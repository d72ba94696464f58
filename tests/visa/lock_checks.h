// What holds for locks with and without the shared memory that tells of them.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "visa/lock_file.h"

namespace visa_provider::testing {

// A lock of the resource is seen at once, by the other and not by its holder, and so is its end.
inline void ExpectLockIsSeen(const std::string& resource) {
    constexpr auto kPart = LockFile::Part::kResource;
    const auto one = LockFile::Open(resource);
    const auto other = LockFile::Open(resource);
    ASSERT_TRUE(one && other);
    EXPECT_TRUE(other->IsFreeOfOthers(kPart));
    ASSERT_TRUE(one->TryHold(kPart, LockFile::Held::kAlone));
    EXPECT_FALSE(other->IsFreeOfOthers(kPart));
    EXPECT_TRUE(one->IsFreeOfOthers(kPart));
    one->GiveBack(kPart);
    EXPECT_TRUE(other->IsFreeOfOthers(kPart));
}

}  // namespace visa_provider::testing
