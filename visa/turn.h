// One transfer of a kind at a time on a link.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "visa/call.h"
#include "visa/time_limit.h"

namespace visa_provider {

// Held by one thread at a time over the whole of a transfer, waits included. The same thread may
// take it again: an event handler that runs within a transfer may use the session.
class Turn {
  public:
    // False when another thread still had it at the deadline, or when `call` was stopped first.
    [[nodiscard]] bool Take(const Deadline& deadline, const Call& call);
    void Give();
    // Lets those who wait look whether their call was stopped.
    void Wake();

  private:
    std::mutex mutex_;
    std::condition_variable given_;
    std::thread::id owner_;
    int depth_ = 0;
};

// Takes a turn for a scope.
class TurnHolder {
  public:
    TurnHolder(Turn& turn, const Deadline& deadline, const Call& call)
        : turn_(turn.Take(deadline, call) ? &turn : nullptr) {}
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

// What a call answers that didn't get its turn.
[[nodiscard]] inline ViStatus NoTurn(const Call& call) {
    return call.IsStopped() ? VI_ERROR_ABORT : VI_ERROR_TMO;
}

}  // namespace visa_provider
