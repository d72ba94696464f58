// Calls of the system that fail when a test says so. For a program that is linked with
// -Wl,--wrap=CALL for each of them.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <vector>

namespace visa_provider::testing {

// What the calls do. All of them are the system's own until a test sets something.
struct SystemFaults {
    // Stands for shmget(): the handle of a segment, or -1. Empty: the system's.
    std::function<int(key_t key, std::size_t size, int flags)> shmget;
    bool shmatFails = false;
    bool receiveTimeFails = false;  // setsockopt() with SO_RCVTIMEO
    bool eventfdFails = false;
    // Stands for nanosleep(). Empty: the system's.
    std::function<void()> sleep;
};

// Set before other threads run, and again when they are gone.
SystemFaults& Faults();

// How many calls have failed because of `receiveTimeFails` or `eventfdFails` so far.
int FailedCalls();

// Where the flags of each recv() of the calling thread go; null for nowhere.
std::vector<int>*& ReceiveFlags();

}  // namespace visa_provider::testing
