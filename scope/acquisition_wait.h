// Waiting for an acquisition by service request.
#pragma once

#include <chrono>
#include <cstdint>

#include "core/member_call.h"

namespace kestrion {

// Outcome of an acquisition that a member started.
enum class AcquisitionOutcome {
    kReady,     // it ended, or it isn't waited for
    kTimedOut,  // the time was used up, or the link can't tell
};

// How members that wait differ.
struct WaitRules {
    // A wait that ends with a warning counts as a time-out, as one that fails does.
    bool warningsAreTimeouts = true;
    // How long an acquisition that isn't awaited runs before what it has is taken.
    std::chrono::milliseconds pauseWhileRunning{0};
};

// The service-request event of the connection. It stays enabled unless Disable is called: a member
// that ends early leaves it so, and the next one finds it enabled.
class ServiceRequestWait {
  public:
    explicit ServiceRequestWait(MemberCall& call, const WaitRules& rules = {});

    // Before anything else that can fail. A link without service requests isn't an error here: the
    // wait ends at once then.
    void Enable();
    void Disable();

    // Starts the acquisition. In single-sequence operation waits at most `maxTime` milliseconds,
    // -1 for ever; otherwise the running acquisition is taken as it stands.
    AcquisitionOutcome Acquire(LONG maxTime);
    // The same, but looks at the status byte every 100 ms, the first time after 100 ms, until it is
    // 1 and nothing else. The end of `maxTime` is a count of milliseconds that wraps: -1 lies in
    // the past.
    AcquisitionOutcome AcquireByPolling(LONG maxTime);

  private:
    // Whether the acquisition ends by itself. If not, it is set running.
    [[nodiscard]] bool IsSingleSequence();
    [[nodiscard]] bool WaitForRequest(LONG maxTime);
    [[nodiscard]] bool PollUntil(std::uint32_t end);

    MemberCall& call_;
    WaitRules rules_;
};

}  // namespace kestrion
