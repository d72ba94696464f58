#include "visa/turn.h"

namespace visa_provider {

bool Turn::Take(const Deadline& deadline, const Call& call) {
    const auto self = std::this_thread::get_id();
    std::unique_lock guard(mutex_);
    const auto isFree = [&] { return depth_ == 0 || owner_ == self; };
    const auto isOver = [&] { return isFree() || call.IsStopped(); };
    if (!deadline) {
        given_.wait(guard, isOver);
    } else {
        static_cast<void>(given_.wait_until(guard, *deadline, isOver));
    }
    if (!isFree() || call.IsStopped()) {
        return false;
    }
    owner_ = self;
    ++depth_;
    return true;
}

void Turn::Give() {
    {
        const std::lock_guard guard(mutex_);
        --depth_;
    }
    given_.notify_all();  // one alone might have been stopped
}

void Turn::Wake() {
    {
        // Nobody may be between the look at its call and its sleep.
        const std::lock_guard guard(mutex_);
    }
    given_.notify_all();
}

}  // namespace visa_provider
