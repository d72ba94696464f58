// Locks where the shared memory that tells of them can't be had.
#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>

#include "tests/visa/lock_checks.h"
#include "tests/visa/system_faults.h"
#include "visa/linux/lock_notice.h"

namespace visa_provider::testing {
namespace {

constexpr std::size_t kSize = 4096;
constexpr std::uint32_t kMark = 0x4C4E3031;

// The memory is looked for once in a process, so that each test has one of its own.
void InAProcessOfItsOwn(const std::function<void()>& code) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            code();
            std::_Exit(::testing::Test::HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}

// A segment that goes with its last user, whose first number is `mark`.
class Segment {
  public:
    explicit Segment(std::uint32_t mark) : handle_(shmget(IPC_PRIVATE, kSize, IPC_CREAT | 0600)) {
        memory_ = static_cast<std::atomic<std::uint32_t>*>(shmat(handle_, nullptr, 0));
        *memory_ = mark;
        shmctl(handle_, IPC_RMID, nullptr);
    }
    ~Segment() { shmdt(memory_); }
    Segment(const Segment&) = delete;
    Segment& operator=(const Segment&) = delete;

    [[nodiscard]] int Handle() const { return handle_; }
    [[nodiscard]] std::atomic<std::uint32_t>& Mark() { return *memory_; }
    [[nodiscard]] int Users() const {
        shmid_ds about{};
        return shmctl(handle_, IPC_STAT, &about) == 0 ? static_cast<int>(about.shm_nattch) : -1;
    }

  private:
    int handle_;
    std::atomic<std::uint32_t>* memory_;
};

// Somebody else's segment is under the key.
void GiveAsExisting(const Segment& segment) {
    Faults().shmget = [handle = segment.Handle()](key_t, std::size_t, int flags) {
        if ((flags & IPC_EXCL) != 0) {
            errno = EEXIST;
            return -1;
        }
        return handle;
    };
}

// A name that no resource has, and no other test run at the same time.
std::string AnyResource() {
    return "test of the notice " + std::to_string(std::random_device()());
}

// Nothing can be told in shared memory, and locks are seen all the same.
void ExpectNoNotice() {
    LockNotice notice(7);
    EXPECT_FALSE(notice.Exists());
    notice.Raise();
    notice.Lower();
    ExpectLockIsSeen(AnyResource());
}

TEST(LockNoticeFaultDeathTest, SystemThatGivesNoMemory) {
    InAProcessOfItsOwn([] {
        int asked = 0;
        Faults().shmget = [&asked](key_t key, std::size_t size, int) {
            EXPECT_EQ(key, 0x4B535654);
            EXPECT_EQ(size, kSize);
            ++asked;
            errno = ENOSPC;
            return -1;
        };
        ExpectNoNotice();
        EXPECT_EQ(asked, 2);  // to make it and to find it, and never again
    });
}

TEST(LockNoticeFaultDeathTest, SegmentThatCanNotBeAttached) {
    InAProcessOfItsOwn([] {
        Faults().shmatFails = true;
        Faults().shmget = [](key_t, std::size_t, int) { return 1; };
        ExpectNoNotice();
    });
}

TEST(LockNoticeFaultDeathTest, SegmentOfAnotherProgramIsLeftAlone) {
    InAProcessOfItsOwn([] {
        Segment segment(0x12345678);
        GiveAsExisting(segment);
        ExpectNoNotice();
        EXPECT_EQ(segment.Mark(), 0x12345678U);
        EXPECT_EQ(segment.Users(), 1);
    });
}

TEST(LockNoticeFaultDeathTest, MakerThatNeverMarksItsSegmentIsNotWaitedForForEver) {
    InAProcessOfItsOwn([] {
        Segment segment(0);
        GiveAsExisting(segment);
        int sleeps = 0;
        Faults().sleep = [&sleeps] { ++sleeps; };
        ExpectNoNotice();
        EXPECT_EQ(sleeps, 20);
        EXPECT_EQ(segment.Users(), 1);
    });
}

TEST(LockNoticeFaultDeathTest, MakerThatMarksItsSegmentLaterIsWaitedFor) {
    InAProcessOfItsOwn([] {
        Segment segment(0);
        GiveAsExisting(segment);
        int sleeps = 0;
        Faults().sleep = [&] {
            if (++sleeps == 3) {
                segment.Mark() = kMark;
            }
        };
        EXPECT_TRUE(LockNotice(7).Exists());
        EXPECT_EQ(sleeps, 3);
        EXPECT_EQ(segment.Users(), 2);
        ExpectLockIsSeen(AnyResource());
    });
}

TEST(LockNoticeFaultDeathTest, SegmentThatWasMadeIsMarked) {
    InAProcessOfItsOwn([] {
        Segment segment(0);
        Faults().shmget = [&segment](key_t, std::size_t, int flags) {
            EXPECT_NE(flags & IPC_EXCL, 0);
            return segment.Handle();
        };
        EXPECT_TRUE(LockNotice(7).Exists());
        EXPECT_EQ(segment.Mark(), kMark);
    });
}

}  // namespace
}  // namespace visa_provider::testing
