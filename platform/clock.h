// Time for code that waits: a seam, so that a test of a long wait takes no time.
#pragma once

#include <chrono>
#include <cstdint>

namespace kestrion {

// A clock that can be waited on. The system's is thread-safe; a test's is what the test makes it.
class Clock {
  public:
    virtual ~Clock() = default;
    // A steady time, for differences only.
    [[nodiscard]] virtual std::chrono::steady_clock::time_point Now() const = 0;
    // Milliseconds since some start, wrapping at 32 bits.
    [[nodiscard]] virtual std::uint32_t TickCount() const = 0;
    // Blocks the calling thread for at least this long.
    virtual void Sleep(std::chrono::milliseconds duration) = 0;
};

// The system's clock, which lives as long as the process.
[[nodiscard]] Clock& SystemClock();

}  // namespace kestrion
