// When acquisitions begin and end. Time is handed in, so that nothing here waits.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "virtual/device_link.h"

namespace virtual_scope {

// The time that acquisitions take on this instrument's clock.
struct AcquisitionTiming {
    std::chrono::nanoseconds single{};    // one acquisition
    std::chrono::nanoseconds sequence{};  // all acquisitions of a single sequence
    std::uint64_t acquisitions = 1;       // how many a single sequence has
    bool triggered = true;                // otherwise acquisitions wait until a trigger is forced
};

// A record takes its duration, held to 50 ms so that a person does not wait for a slow time base,
// and a millisecond until the trigger comes.
[[nodiscard]] AcquisitionTiming TimingOf(double recordSeconds, std::int64_t acquisitions);

// Not for several threads at once.
class Acquisition {
  public:
    void StartContinuous(TimePoint now, const AcquisitionTiming& timing);
    void StartSequence(TimePoint now, const AcquisitionTiming& timing);
    void Stop(TimePoint now);
    // Ends what waits for a trigger: a sequence at once, and a continuous acquisition has one
    // record.
    void Force(TimePoint now);

    // Ends a sequence whose time is over; true if it did.
    bool Update(TimePoint now);

    [[nodiscard]] bool IsRunning() const { return state_ != State::kStopped; }
    [[nodiscard]] bool IsSequenceRunning() const { return state_ == State::kSequence; }
    [[nodiscard]] bool IsWaiting() const { return IsRunning() && !timing_.triggered; }
    // Nothing while no sequence is running, or while it waits for a trigger.
    [[nodiscard]] std::optional<TimePoint> SequenceEnd() const;

    // Acquisitions completed since the start.
    [[nodiscard]] std::uint64_t Completed(TimePoint now) const;

  private:
    enum class State { kStopped, kContinuous, kSequence };

    void Start(State state, TimePoint now, const AcquisitionTiming& timing);

    State state_ = State::kStopped;
    TimePoint start_;
    AcquisitionTiming timing_;
    std::uint64_t completed_ = 0;  // when stopped; while waiting, those that were forced
};

}  // namespace virtual_scope
