// One transfer of a kind at a time on a link.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "visa/time_limit.h"

namespace visa_provider {

// Held by one thread at a time over the whole of a transfer, waits included. The same thread may
// take it again: an event handler that runs within a transfer may use the session.
class Turn {
  public:
    // False when another thread still had it at the deadline.
    [[nodiscard]] bool Take(const Deadline& deadline);
    void Give();

  private:
    std::mutex mutex_;
    std::condition_variable given_;
    std::thread::id owner_;
    int depth_ = 0;
};

// Takes a turn for a scope.
class TurnHolder {
  public:
    TurnHolder(Turn& turn, const Deadline& deadline)
        : turn_(turn.Take(deadline) ? &turn : nullptr) {}
    ~TurnHolder() {
        if (turn_) {
            turn_->Give();
        }
    }
    TurnHolder(const TurnHolder&) = delete;
    TurnHolder& operator=(const TurnHolder&) = delete;

    [[nodiscard]] explicit operator bool() const { return turn_ != nullptr; }

  private:
    Turn* turn_;
};

}  // namespace visa_provider
