// One call on a session, as far as it may have to wait.
#pragma once

#include <atomic>

#include "visa/visa.h"

namespace visa_provider {

// How long a call may take, and whether viTerminate has ended it meanwhile. Any thread may stop it;
// who waits for something on behalf of the call looks at it after each wake-up.
class Call {
  public:
    // `timeout` in milliseconds, VI_TMO_INFINITE for no limit.
    explicit Call(ViUInt32 timeout) : timeout_(timeout) {}
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    [[nodiscard]] ViUInt32 Timeout() const { return timeout_; }
    [[nodiscard]] bool IsStopped() const { return stopped_; }
    void Stop() { stopped_ = true; }

  private:
    const ViUInt32 timeout_;
    std::atomic<bool> stopped_ = false;
};

}  // namespace visa_provider
