// What threads that wait on a session sleep on.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "visa/time_limit.h"

namespace visa_provider {

// Counts changes. A waiter notes the count, looks whether what it waits for is there, and sleeps
// only while the count stays: so a change between the look and the sleep isn't missed.
class Signal {
  public:
    [[nodiscard]] std::uint64_t Count() const;

    // Tells all waiters that something changed.
    void Raise();

    // Sleeps until the count differs from `seen` or the deadline has passed.
    void WaitForChange(std::uint64_t seen, const Deadline& deadline);

  private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::uint64_t count_ = 0;
};

}  // namespace visa_provider
