#include "visa/turn.h"

namespace visa_provider {

bool Turn::Take(const Deadline& deadline) {
    const auto self = std::this_thread::get_id();
    std::unique_lock guard(mutex_);
    const auto isFree = [&] { return depth_ == 0 || owner_ == self; };
    if (!deadline) {
        given_.wait(guard, isFree);
    } else if (!given_.wait_until(guard, *deadline, isFree)) {
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
    given_.notify_one();
}

}  // namespace visa_provider
