#include <gmock/gmock.h>

#include <cstring>
#include <thread>

#include "tests/visa/session_fixture.h"

namespace visa_provider::testing {

// Sessions to one socket resource, of which some lock.
class LockTest : public VisaTest {
  protected:
    void SetUp() override {
        VisaTest::SetUp();
        server_ = std::make_unique<LoopbackServer>(AnswerAll);
        one_ = Open(server_->Resource());
        other_ = Open(server_->Resource());
        third_ = Open(server_->Resource());
    }

    void TearDown() override {
        VisaTest::TearDown();
        server_.reset();
    }

    static ViStatus Exclusive(ViSession session, ViUInt32 timeout = 0) {
        return viLock(session, VI_EXCLUSIVE_LOCK, timeout, nullptr, nullptr);
    }
    static ViStatus Shared(ViSession session, const char* key, ViUInt32 timeout = 0) {
        return viLock(session, VI_SHARED_LOCK, timeout, key, nullptr);
    }
    static ViUInt32 State(ViSession session) {
        return Get<ViUInt32>(session, VI_ATTR_RSRC_LOCK_STATE);
    }
    static bool CanUse(ViSession session) {
        const ViStatus status = Write(session, "NOTHING\n");
        EXPECT_THAT(status, ::testing::AnyOf(VI_SUCCESS, VI_ERROR_RSRC_LOCKED));
        return status == VI_SUCCESS;
    }

    std::unique_ptr<LoopbackServer> server_;
    ViSession one_ = VI_NULL;
    ViSession other_ = VI_NULL;
    ViSession third_ = VI_NULL;
};

TEST_F(LockTest, ExclusiveLockKeepsOthersOut) {
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    EXPECT_TRUE(CanUse(one_));
    EXPECT_FALSE(CanUse(other_));
    EXPECT_EQ(State(one_), VI_EXCLUSIVE_LOCK);
    EXPECT_EQ(State(other_), VI_EXCLUSIVE_LOCK);
    EXPECT_EQ(viUnlock(one_), VI_SUCCESS);
    EXPECT_TRUE(CanUse(other_));
    EXPECT_EQ(State(other_), VI_NO_LOCK);
}

TEST_F(LockTest, EveryOperationRespectsTheLock) {
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    ViByte buffer[4] = {};
    ViUInt16 status = 0;
    ViJobId job = 99;
    EXPECT_EQ(viRead(other_, buffer, 4, nullptr), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(viWrite(other_, buffer, 4, nullptr), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(viReadAsync(other_, buffer, 4, &job), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(viWriteAsync(other_, buffer, 4, &job), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(viAssertTrigger(other_, 0), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(viReadSTB(other_, &status), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(viClear(other_), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(job, 99U);
    // Attributes of the session itself stay free.
    EXPECT_EQ(viSetAttribute(other_, VI_ATTR_TMO_VALUE, 5), VI_SUCCESS);
}

TEST_F(LockTest, LockOfAnotherSessionCannotBeGivenBack) {
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    EXPECT_EQ(viUnlock(other_), VI_ERROR_SESN_NLOCKED);
    EXPECT_FALSE(CanUse(other_));
}

TEST_F(LockTest, LockThatIsTakenIsRefusedAtOnceOrAfterTheTimeOut) {
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    EXPECT_EQ(Exclusive(other_, VI_TMO_IMMEDIATE), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(Shared(other_, nullptr, VI_TMO_IMMEDIATE), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(Exclusive(other_, 20), VI_ERROR_TMO);
    EXPECT_EQ(Shared(other_, "key", 20), VI_ERROR_TMO);
}

TEST_F(LockTest, WaitEndsWhenTheLockIsGivenBack) {
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    std::thread waiter([this] { EXPECT_EQ(Exclusive(other_, VI_TMO_INFINITE), VI_SUCCESS); });
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(viUnlock(one_), VI_SUCCESS);
    waiter.join();
    EXPECT_FALSE(CanUse(one_));
}

TEST_F(LockTest, CloseOfTheSessionGivesItsLocksBack) {
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS_NESTED_EXCLUSIVE);
    EXPECT_EQ(viClose(one_), VI_SUCCESS);
    EXPECT_EQ(State(other_), VI_NO_LOCK);
    EXPECT_EQ(Exclusive(other_), VI_SUCCESS);
}

TEST_F(LockTest, CloseEndsAWaitForALock) {
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    std::thread waiter([this] {
        EXPECT_THAT(Exclusive(other_, VI_TMO_INFINITE),
                    ::testing::AnyOf(VI_ERROR_ABORT, VI_ERROR_INV_OBJECT));
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(viClose(other_), VI_SUCCESS);
    waiter.join();
}

TEST_F(LockTest, SharedLockIsSharedWithTheKey) {
    char key[256] = "";
    ASSERT_EQ(viLock(one_, VI_SHARED_LOCK, 0, nullptr, key), VI_SUCCESS);
    EXPECT_GT(std::strlen(key), 0U);
    EXPECT_EQ(State(other_), VI_SHARED_LOCK);
    EXPECT_FALSE(CanUse(other_));
    char same[256] = "";
    EXPECT_EQ(viLock(other_, VI_SHARED_LOCK, 0, key, same), VI_SUCCESS);
    EXPECT_STREQ(same, key);
    EXPECT_TRUE(CanUse(one_));
    EXPECT_TRUE(CanUse(other_));
    EXPECT_FALSE(CanUse(third_));
    EXPECT_EQ(viUnlock(one_), VI_SUCCESS);
    EXPECT_FALSE(CanUse(one_));
    EXPECT_TRUE(CanUse(other_));
    EXPECT_EQ(viUnlock(other_), VI_SUCCESS);
    EXPECT_TRUE(CanUse(third_));
}

TEST_F(LockTest, GeneratedKeysDiffer) {
    char first[256] = "";
    char second[256] = "";
    ASSERT_EQ(viLock(one_, VI_SHARED_LOCK, 0, nullptr, first), VI_SUCCESS);
    ASSERT_EQ(viUnlock(one_), VI_SUCCESS);
    ASSERT_EQ(viLock(one_, VI_SHARED_LOCK, 0, "", second), VI_SUCCESS);
    EXPECT_STRNE(first, second);
}

TEST_F(LockTest, RequestedKeyBecomesTheKey) {
    char key[256] = "";
    ASSERT_EQ(viLock(one_, VI_SHARED_LOCK, 0, "bench 7", key), VI_SUCCESS);
    EXPECT_STREQ(key, "bench 7");
    EXPECT_EQ(Shared(other_, "bench 8"), VI_ERROR_INV_ACCESS_KEY);
    EXPECT_EQ(Shared(other_, nullptr), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(Shared(other_, "bench 7"), VI_SUCCESS);
}

TEST_F(LockTest, OneOfTheSharersMayLockExclusively) {
    ASSERT_EQ(Shared(one_, "k"), VI_SUCCESS);
    ASSERT_EQ(Shared(other_, "k"), VI_SUCCESS);
    EXPECT_EQ(Exclusive(one_), VI_SUCCESS);
    EXPECT_EQ(State(other_), VI_EXCLUSIVE_LOCK);
    EXPECT_TRUE(CanUse(one_));
    EXPECT_FALSE(CanUse(other_));
    EXPECT_EQ(Exclusive(other_), VI_ERROR_RSRC_LOCKED);
    EXPECT_EQ(Shared(other_, "k"), VI_SUCCESS_NESTED_SHARED);
    EXPECT_EQ(Shared(third_, "k"), VI_SUCCESS);
    EXPECT_FALSE(CanUse(third_));
    EXPECT_EQ(viUnlock(one_), VI_SUCCESS_NESTED_SHARED);
    EXPECT_TRUE(CanUse(other_));
    EXPECT_EQ(State(one_), VI_SHARED_LOCK);
}

TEST_F(LockTest, ExclusiveOwnerCannotTurnToShared) {
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    EXPECT_EQ(Shared(one_, nullptr, VI_TMO_INFINITE), VI_ERROR_RSRC_LOCKED);
    ASSERT_EQ(viUnlock(one_), VI_SUCCESS);
    ASSERT_EQ(Shared(one_, "k"), VI_SUCCESS);
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    EXPECT_EQ(Shared(one_, "k", VI_TMO_INFINITE), VI_ERROR_RSRC_LOCKED);
}

TEST_F(LockTest, SharedLockKeepsExclusiveOnesOfOthersOut) {
    ASSERT_EQ(Shared(one_, "k"), VI_SUCCESS);
    EXPECT_EQ(Exclusive(other_), VI_ERROR_RSRC_LOCKED);
}

TEST_F(LockTest, ResourceIsTheSameInAnyCaseAndUnderAnotherManager) {
    ViSession manager = VI_NULL;
    ASSERT_EQ(viOpenDefaultRM(&manager), VI_SUCCESS);
    const auto name = "tcpip::127.0.0.1::" + std::to_string(server_->Port()) + "::socket";
    ViSession session = VI_NULL;
    ASSERT_EQ(viOpen(manager, name.c_str(), 0, 2000, &session), VI_SUCCESS);
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    EXPECT_FALSE(CanUse(session));
    EXPECT_EQ(viClose(manager), VI_SUCCESS);
}

TEST_F(LockTest, OtherResourceIsNotLocked) {
    LoopbackServer elsewhere(AnswerAll);
    const auto session = Open(elsewhere.Resource());
    ASSERT_EQ(Exclusive(one_), VI_SUCCESS);
    EXPECT_TRUE(CanUse(session));
    EXPECT_EQ(viClose(session), VI_SUCCESS);
}

TEST_F(LockTest, VirtualInstrumentsAreLockedEachForItself) {
    const auto one = OpenVirtual();
    const auto other = OpenVirtual();
    EXPECT_EQ(Exclusive(one), VI_SUCCESS);
    EXPECT_EQ(Exclusive(one), VI_SUCCESS_NESTED_EXCLUSIVE);
    EXPECT_EQ(State(one), VI_EXCLUSIVE_LOCK);
    EXPECT_TRUE(CanUse(other));
    EXPECT_EQ(State(other), VI_NO_LOCK);
    EXPECT_EQ(viUnlock(one), VI_SUCCESS_NESTED_EXCLUSIVE);
    EXPECT_EQ(viUnlock(one), VI_SUCCESS);
}

}  // namespace visa_provider::testing
