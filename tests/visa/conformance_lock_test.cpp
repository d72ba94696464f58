// Conformance: locks. A virtual instrument belongs to the session that opened it, so there nobody
// else can be kept out; everything that a session sees of its own locks is the same.
#include <cstring>
#include <thread>

#include "tests/visa/conformance_fixture.h"

namespace published {
namespace {

class LockConformance : public ConformanceTest {
  protected:
    void SetUp() override {
        ConformanceTest::SetUp();
        other_ = OpenAnother();
    }
    ViStatus Exclusive(ViSession session, ViUInt32 timeout = 0) {
        return visa.viLock(session, VI_EXCLUSIVE_LOCK, timeout, nullptr, nullptr);
    }
    ViStatus Shared(ViSession session, const char* key, ViUInt32 timeout = 0) {
        return visa.viLock(session, VI_SHARED_LOCK, timeout, key, nullptr);
    }
    ViAccessMode State(ViSession session) {
        return Get<ViAccessMode>(session, VI_ATTR_RSRC_LOCK_STATE);
    }
    // What the other session gets where the first one's lock keeps it out.
    [[nodiscard]] static ViStatus Refused() {
        return IsSocket() ? VI_ERROR_RSRC_LOCKED : VI_SUCCESS;
    }

    ViSession other_ = VI_NULL;
};
INSTANTIATE_TEST_SUITE_P(Visa, LockConformance, Subjects(), NameOf);

TEST_P(LockConformance, ExclusiveLocksNest) {
    EXPECT_EQ(State(session_), VI_NO_LOCK);
    EXPECT_EQ(Exclusive(session_), VI_SUCCESS);
    EXPECT_EQ(Exclusive(session_), VI_SUCCESS_NESTED_EXCLUSIVE);
    EXPECT_EQ(State(session_), VI_EXCLUSIVE_LOCK);
    EXPECT_EQ(visa.viUnlock(session_), VI_SUCCESS_NESTED_EXCLUSIVE);
    EXPECT_EQ(State(session_), VI_EXCLUSIVE_LOCK);
    EXPECT_EQ(visa.viUnlock(session_), VI_SUCCESS);
    EXPECT_EQ(State(session_), VI_NO_LOCK);
    EXPECT_EQ(visa.viUnlock(session_), VI_ERROR_SESN_NLOCKED);
}

TEST_P(LockConformance, SharedLocksNestWithTheSameKey) {
    char key[256] = "";
    ASSERT_EQ(Shared(session_, "bench 7"), VI_SUCCESS);
    EXPECT_EQ(State(session_), VI_SHARED_LOCK);
    EXPECT_EQ(visa.viLock(session_, VI_SHARED_LOCK, 0, nullptr, key), VI_SUCCESS_NESTED_SHARED);
    EXPECT_STREQ(key, "bench 7");
    EXPECT_EQ(Shared(session_, "bench 7"), VI_SUCCESS_NESTED_SHARED);
    EXPECT_EQ(Shared(session_, "bench 8", VI_TMO_INFINITE), VI_ERROR_INV_ACCESS_KEY);
    EXPECT_EQ(visa.viUnlock(session_), VI_SUCCESS_NESTED_SHARED);
    EXPECT_EQ(visa.viUnlock(session_), VI_SUCCESS_NESTED_SHARED);
    EXPECT_EQ(visa.viUnlock(session_), VI_SUCCESS);
}

TEST_P(LockConformance, ExclusiveLockInsideOfASharedOne) {
    ASSERT_EQ(Shared(session_, "k"), VI_SUCCESS);
    EXPECT_EQ(Exclusive(session_), VI_SUCCESS);
    EXPECT_EQ(State(session_), VI_EXCLUSIVE_LOCK);
    EXPECT_EQ(Shared(session_, "k"), VI_ERROR_RSRC_LOCKED);  // no way back
    EXPECT_EQ(visa.viUnlock(session_), VI_SUCCESS_NESTED_SHARED);
    EXPECT_EQ(State(session_), VI_SHARED_LOCK);
    EXPECT_EQ(visa.viUnlock(session_), VI_SUCCESS);
}

TEST_P(LockConformance, KeysAreMadeGivenAndLimited) {
    char first[256] = "";
    char second[256] = "";
    ASSERT_EQ(visa.viLock(session_, VI_SHARED_LOCK, 0, nullptr, first), VI_SUCCESS);
    ASSERT_EQ(visa.viUnlock(session_), VI_SUCCESS);
    ASSERT_EQ(visa.viLock(session_, VI_SHARED_LOCK, 0, nullptr, second), VI_SUCCESS);
    ASSERT_EQ(visa.viUnlock(session_), VI_SUCCESS);
    EXPECT_GT(std::strlen(first), 0U);
    EXPECT_STRNE(first, second);
    EXPECT_EQ(Shared(session_, std::string(256, 'k').c_str()), VI_ERROR_INV_ACCESS_KEY);
    const std::string longest(255, 'k');
    ASSERT_EQ(visa.viLock(session_, VI_SHARED_LOCK, 0, longest.c_str(), first), VI_SUCCESS);
    EXPECT_EQ(first, longest);
}

TEST_P(LockConformance, ExclusiveLockTakesNoKeyAndGivesNone) {
    char key[256] = "before";
    const std::string tooLong(300, 'k');
    EXPECT_EQ(visa.viLock(session_, VI_EXCLUSIVE_LOCK, 0, tooLong.c_str(), key), VI_SUCCESS);
    EXPECT_STREQ(key, "");
}

TEST_P(LockConformance, OtherLockTypesAreRefused) {
    for (const ViAccessMode type : {0U, 3U, 4U, 0xFFFFFFFFU}) {
        EXPECT_EQ(visa.viLock(session_, type, 0, nullptr, nullptr), VI_ERROR_INV_LOCK_TYPE) << type;
    }
}

TEST_P(LockConformance, ExclusiveLockKeepsOthersOut) {
    ASSERT_EQ(Exclusive(session_), VI_SUCCESS);
    EXPECT_EQ(Write(session_, "A\n"), VI_SUCCESS);
    EXPECT_EQ(Write(other_, "A\n"), Refused());
    EXPECT_EQ(visa.viClear(other_), Refused());
    EXPECT_EQ(Exclusive(other_), Refused());
    EXPECT_EQ(State(other_), VI_EXCLUSIVE_LOCK);
    // The attributes of a session are its own.
    Set(other_, VI_ATTR_TMO_VALUE, 7);
    ASSERT_EQ(visa.viUnlock(session_), VI_SUCCESS);
    EXPECT_EQ(Write(other_, "A\n"), VI_SUCCESS);
}

TEST_P(LockConformance, SharedLockIsSharedWithItsKey) {
    ASSERT_EQ(Shared(session_, "k"), VI_SUCCESS);
    EXPECT_EQ(Write(other_, "A\n"), Refused());
    EXPECT_EQ(Shared(other_, "x"), IsSocket() ? VI_ERROR_INV_ACCESS_KEY : VI_SUCCESS);
    if (IsSocket()) {
        EXPECT_EQ(Shared(other_, nullptr), VI_ERROR_RSRC_LOCKED);
        EXPECT_EQ(Shared(other_, "k"), VI_SUCCESS);
    }
    EXPECT_EQ(Write(other_, "A\n"), VI_SUCCESS);
    EXPECT_EQ(Exclusive(other_), VI_SUCCESS);
    EXPECT_EQ(Write(session_, "A\n"), Refused());
}

TEST_P(LockConformance, WaitForALockEndsInATimeOutOrWithTheLock) {
    ASSERT_EQ(Exclusive(session_), VI_SUCCESS);
    EXPECT_EQ(Exclusive(other_, 20), IsSocket() ? VI_ERROR_TMO : VI_SUCCESS);
    std::thread owner([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(visa.viUnlock(session_), VI_SUCCESS);
    });
    EXPECT_GE(Exclusive(other_, 10000), VI_SUCCESS);
    owner.join();
    EXPECT_EQ(State(other_), VI_EXCLUSIVE_LOCK);
}

TEST_P(LockConformance, CloseGivesLocksBackAndEndsWaits) {
    ASSERT_EQ(Exclusive(session_), VI_SUCCESS);
    ASSERT_EQ(Exclusive(session_), VI_SUCCESS_NESTED_EXCLUSIVE);
    EXPECT_EQ(visa.viClose(session_), VI_SUCCESS);
    EXPECT_EQ(Exclusive(other_), VI_SUCCESS);
    EXPECT_EQ(visa.viLock(session_, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr), VI_ERROR_INV_OBJECT);
}

}  // namespace
}  // namespace published
