#include "visa/linux/lock_notice.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <array>
#include <chrono>
#include <thread>

namespace visa_provider {

namespace {

constexpr key_t kKey = 0x4B535654;
constexpr int kEveryUser = 0666;
// Told apart by it from a segment that another program has under the key.
constexpr std::uint32_t kMark = 0x4C4E3031;

struct Segment {
    std::atomic<std::uint32_t> mark;
    std::array<std::atomic<std::uint32_t>, 1023> counts;
};
static_assert(sizeof(Segment) == 4096);
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);

// The system's memory is zero, and a number of zero is a number, so that nothing is constructed.
Segment* Attach(int handle) {
    void* const memory = handle < 0 ? nullptr : shmat(handle, nullptr, 0);
    return memory == nullptr || memory == reinterpret_cast<void*>(-1)
               ? nullptr
               : static_cast<Segment*>(memory);
}

// Whoever makes the segment marks it at once; another one who comes in between waits for it.
bool IsMarked(const Segment& segment) {
    constexpr int kAttempts = 20;
    for (int attempt = 0; attempt < kAttempts && segment.mark.load() == 0; ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return segment.mark.load() == kMark;
}

Segment* MakeOrFind() {
    if (Segment* made = Attach(shmget(kKey, sizeof(Segment), IPC_CREAT | IPC_EXCL | kEveryUser))) {
        made->mark = kMark;
        return made;
    }
    Segment* const found = Attach(shmget(kKey, sizeof(Segment), kEveryUser));
    if (found != nullptr && !IsMarked(*found)) {
        static_cast<void>(shmdt(found));
        return nullptr;
    }
    return found;
}

// Attached once for the process.
Segment* Shared() {
    static Segment* const segment = MakeOrFind();
    return segment;
}

}  // namespace

LockNotice::LockNotice(std::uint64_t hash)
    : count_(Shared() == nullptr ? nullptr : &Shared()->counts[hash % Shared()->counts.size()]) {}

void LockNotice::Raise() {
    if (count_ != nullptr) {
        ++*count_;
    }
}

void LockNotice::Lower() {
    if (count_ != nullptr) {
        --*count_;
    }
}

}  // namespace visa_provider
