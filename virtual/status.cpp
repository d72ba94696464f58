#include "virtual/status.h"

#include <utility>

namespace virtual_scope {
namespace {

std::uint8_t EventOf(ScpiError error) {
    const int number = static_cast<int>(error);
    if (number > -200) {
        return kCommandError;
    }
    if (number > -300) {
        return kExecutionError;
    }
    if (number > -400) {
        return kDeviceError;
    }
    return kQueryError;
}

}  // namespace

void Status::Report(ScpiError error) {
    SetEvent(EventOf(error));
    if (errors_.size() < kQueueLength) {
        errors_.push_back(error);
        return;
    }
    errors_.back() = ScpiError::kQueueOverflow;
    SetEvent(kDeviceError);
}

ScpiError Status::TakeError() {
    if (errors_.empty()) {
        return ScpiError::kNone;
    }
    const ScpiError oldest = errors_.front();
    errors_.pop_front();
    return oldest;
}

std::uint8_t Status::TakeEvents() {
    return std::exchange(events_, std::uint8_t{0});
}

void Status::Clear() {
    events_ = 0;
    errors_.clear();
}

std::uint8_t Status::Summary(bool messageAvailable) const {
    unsigned summary = 0;
    if (messageAvailable) {
        summary |= kMessageAvailable;
    }
    if ((events_ & eventEnable_) != 0) {
        summary |= kEventSummary;
    }
    return static_cast<std::uint8_t>(summary);
}

}  // namespace virtual_scope
