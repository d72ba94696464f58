#include "visa/running_calls.h"

namespace visa_provider {

bool RunningCalls::Stop(ViJobId job) {
    const std::lock_guard guard(mutex_);
    bool found = job == VI_NULL;
    for (const Entry& entry : entries_) {
        if (job != VI_NULL && entry.job != job) {
            continue;
        }
        found = true;
        if (!entry.call->IsStopped()) {
            entry.call->Stop();
            interrupt_();
        }
    }
    return found;
}

RunningCall::RunningCall(RunningCalls& calls, ViUInt32 timeout, ViJobId job)
    : Call(timeout), calls_(calls) {
    const std::lock_guard guard(calls_.mutex_);
    calls_.entries_.push_back({this, job});
}

RunningCall::~RunningCall() {
    const std::lock_guard guard(calls_.mutex_);
    std::erase_if(calls_.entries_, [this](const auto& entry) { return entry.call == this; });
    if (IsStopped()) {
        calls_.over_();
    }
}

}  // namespace visa_provider
