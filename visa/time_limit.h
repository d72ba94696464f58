// How long something may take, told as a moment of the steady clock.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>

#include "visa/visa.h"

namespace visa_provider {

using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;

// The moment at which a wait ends; without one it never does.
using Deadline = std::optional<TimePoint>;

// `milliseconds` after `now`; none for VI_TMO_INFINITE.
[[nodiscard]] inline Deadline DeadlineAfter(ViUInt32 milliseconds, TimePoint now) {
    if (milliseconds == VI_TMO_INFINITE) {
        return std::nullopt;
    }
    return now + std::chrono::milliseconds(milliseconds);
}

[[nodiscard]] inline bool HasPassed(const Deadline& deadline, TimePoint now) {
    return deadline && now >= *deadline;
}

// The one that comes first.
[[nodiscard]] inline Deadline Earlier(const Deadline& one, const Deadline& other) {
    if (!one) {
        return other;
    }
    if (!other) {
        return one;
    }
    return *one < *other ? one : other;
}

// The time-out of a transfer. It starts with the transfer and starts anew with each `kStep` bytes
// that got through, so that it cuts off a peer that stands still or trickles, not a long record.
class ProgressTimer {
  public:
    static constexpr std::size_t kStep = 65536;

    ProgressTimer(ViUInt32 milliseconds, TimePoint now)
        : milliseconds_(milliseconds), limit_(DeadlineAfter(milliseconds, now)) {}

    // Tells that `bytes` more got through.
    void Transferred(std::size_t bytes, TimePoint now) {
        sinceStart_ += bytes;
        if (sinceStart_ < kStep) {
            return;
        }
        sinceStart_ = 0;
        limit_ = DeadlineAfter(milliseconds_, now);
    }

    [[nodiscard]] const Deadline& Limit() const { return limit_; }

  private:
    ViUInt32 milliseconds_;
    Deadline limit_;
    std::size_t sinceStart_ = 0;
};

}  // namespace visa_provider
