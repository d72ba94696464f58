#include "virtual/acquisition.h"

#include <algorithm>

namespace virtual_scope {
namespace {

constexpr std::chrono::nanoseconds kTriggerLatency = std::chrono::milliseconds(1);
constexpr std::chrono::nanoseconds kLongest = std::chrono::milliseconds(50);

std::chrono::nanoseconds Limited(double seconds) {
    const double longest = std::chrono::duration<double>(kLongest).count();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
        std::chrono::duration<double>(std::min(seconds, longest)));
}

}  // namespace

AcquisitionTiming TimingOf(double recordSeconds, std::int64_t acquisitions) {
    return {
        .single = Limited(recordSeconds) + kTriggerLatency,
        .sequence = Limited(recordSeconds * static_cast<double>(acquisitions)) + kTriggerLatency,
        .acquisitions = static_cast<std::uint64_t>(acquisitions),
        .triggered = true};
}

void Acquisition::StartContinuous(TimePoint now, const AcquisitionTiming& timing) {
    Start(State::kContinuous, now, timing);
}

void Acquisition::StartSequence(TimePoint now, const AcquisitionTiming& timing) {
    Start(State::kSequence, now, timing);
}

void Acquisition::Start(State state, TimePoint now, const AcquisitionTiming& timing) {
    state_ = state;
    start_ = now;
    timing_ = timing;
    completed_ = 0;
}

void Acquisition::Stop(TimePoint now) {
    completed_ = Completed(now);
    state_ = State::kStopped;
}

void Acquisition::Force(TimePoint now) {
    if (!IsWaiting()) {
        return;
    }
    if (state_ == State::kContinuous) {
        ++completed_;
        return;
    }
    timing_.triggered = true;
    start_ = now - timing_.sequence;
}

bool Acquisition::Update(TimePoint now) {
    if (state_ != State::kSequence || IsWaiting() || now < start_ + timing_.sequence) {
        return false;
    }
    completed_ = timing_.acquisitions;
    state_ = State::kStopped;
    return true;
}

std::optional<TimePoint> Acquisition::SequenceEnd() const {
    if (state_ != State::kSequence || IsWaiting()) {
        return std::nullopt;
    }
    return start_ + timing_.sequence;
}

std::uint64_t Acquisition::Completed(TimePoint now) const {
    if (IsWaiting()) {
        return completed_;
    }
    switch (state_) {
        case State::kContinuous:
            return static_cast<std::uint64_t>((now - start_) / timing_.single);
        case State::kSequence:  // its acquisitions count when it has ended
            return now < start_ + timing_.sequence ? 0 : timing_.acquisitions;
        case State::kStopped:
            break;
    }
    return completed_;
}

}  // namespace virtual_scope
