#include "visa/signal.h"

namespace visa_provider {

std::uint64_t Signal::Count() const {
    const std::lock_guard guard(mutex_);
    return count_;
}

void Signal::Raise() {
    {
        const std::lock_guard guard(mutex_);
        ++count_;
    }
    changed_.notify_all();
}

void Signal::WaitForChange(std::uint64_t seen, const Deadline& deadline) {
    std::unique_lock guard(mutex_);
    const auto hasChanged = [&] { return count_ != seen; };
    if (deadline) {
        changed_.wait_until(guard, *deadline, hasChanged);
    } else {
        changed_.wait(guard, hasChanged);
    }
}

}  // namespace visa_provider
