// Gets waveforms from an instrument.
#pragma once

#include <chrono>
#include <functional>
#include <string_view>

#include "cli/arguments.h"
#include "cli/environment.h"
#include "cli/scope_client.h"
#include "cli/waveform.h"

namespace kestrion::cli {

// Called when a new phase of the work begins, with its name, such as "Acquiring".
using PhaseListener = std::function<void(std::string_view phase)>;

// True for links that carry bytes only: there the instrument can't ask for service, and the end of
// an acquisition is found by polling.
[[nodiscard]] bool LacksServiceRequest(std::string_view resource);

// Switches on those that are off.
void TurnOnSources(ScopeClient& client, const std::vector<Source>& sources);

// Starts a single acquisition and polls until it has stopped; throws Failure when it doesn't within
// `maxTime`.
void AcquireByPolling(ScopeClient& client, std::chrono::milliseconds maxTime, const Timing& timing);

// Switches on the sources that are off, sets the record length if one is asked for, makes a single
// acquisition (unless the record is wanted as it is) and fetches every source. One record for each
// source, in their order. Throws Failure with the driver's text, and when the acquisition doesn't
// end in the time given.
[[nodiscard]] Waveforms Acquire(ScopeClient& client, const CaptureArguments& arguments,
                                const Timing& timing, const PhaseListener& beginPhase);

}  // namespace kestrion::cli
