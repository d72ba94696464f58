// Which processor core a thread runs on, so that a measurement is the same from run to run.
#pragma once

namespace bench {

// The client of every measurement runs on this core, and the server on it or on the other one.
inline constexpr int kClientCore = 0;
inline constexpr int kOtherCore = 1;

// Threads and processes that the calling one makes later inherit it. Throws std::system_error where
// the system has no such core.
void PinThisThread(int core);

}  // namespace bench
