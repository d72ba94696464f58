// The calls that run on one session, for viTerminate.
#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include "visa/call.h"

namespace visa_provider {

// Thread-safe. A call is listed for as long as its RunningCall lives.
class RunningCalls {
  public:
    // `interrupt` is called for each call that is stopped and wakes it, `over` when a stopped one
    // has returned; both are called with the list's lock held.
    RunningCalls(std::function<void()> interrupt, std::function<void()> over)
        : interrupt_(std::move(interrupt)), over_(std::move(over)) {}

    // Stops the call of that job, or every call for VI_NULL. False when there is no such job.
    [[nodiscard]] bool Stop(ViJobId job);

  private:
    friend class RunningCall;

    struct Entry {
        Call* call;
        ViJobId job;
    };

    const std::function<void()> interrupt_;
    const std::function<void()> over_;
    std::mutex mutex_;
    std::vector<Entry> entries_;
};

// A call that is listed. `job` is 0 for one that has no job number.
class RunningCall : public Call {
  public:
    RunningCall(RunningCalls& calls, ViUInt32 timeout, ViJobId job);
    ~RunningCall();

  private:
    RunningCalls& calls_;
};

}  // namespace visa_provider
