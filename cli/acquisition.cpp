#include "cli/acquisition.h"

#include <fmt/format.h>

#include "cli/ascii.h"
#include "cli/failure.h"

namespace kestrion::cli {
namespace {

constexpr std::chrono::milliseconds kPollInterval{5};

// The driver takes a transfer that broke off behind its data for a success and leaves zeros where
// the scale should be: numbers that look like a record and are none.
Waveform Complete(Waveform waveform) {
    if (!(waveform.xIncrement > 0)) {
        throw Failure(fmt::format("The transfer of {} broke off: its record has no time base.",
                                  waveform.source),
                      "Try again; --timeout gives a slow connection more time.");
    }
    return waveform;
}

void FetchInto(Waveforms& waveforms, ScopeClient& client, Source source,
               const PhaseListener& beginPhase) {
    beginPhase(fmt::format("Transferring {}", SourceName(source)));
    waveforms.push_back(Complete(client.Fetch(source)));
}

}  // namespace

void TurnOnSources(ScopeClient& client, const std::vector<Source>& sources) {
    for (const Source source : sources) {
        if (!client.IsOn(source)) {
            client.TurnOn(source);
        }
    }
}

void AcquireByPolling(ScopeClient& client, std::chrono::milliseconds maxTime,
                      const Timing& timing) {
    client.StartSingleSequence();
    const auto deadline = timing.now() + maxTime;
    while (client.IsAcquiring()) {
        if (timing.now() >= deadline) {
            throw Failure(fmt::format("No complete acquisition within {} ms.", maxTime.count()),
                          "The trigger may never have come. Give more time by --max-time.");
        }
        timing.sleep(kPollInterval);
    }
}

bool LacksServiceRequest(std::string_view resource) {
    return ToUpper(TrimBlanks(resource)).ends_with("::SOCKET");
}

Waveforms Acquire(ScopeClient& client, const CaptureArguments& arguments, const Timing& timing,
                  const PhaseListener& beginPhase) {
    TurnOnSources(client, arguments.sources);
    if (arguments.points) {
        client.SetRecordLength(*arguments.points);
    }
    Waveforms waveforms;
    std::size_t next = 0;
    if (!arguments.asIs) {
        if (LacksServiceRequest(client.Connection().resource)) {
            beginPhase("Acquiring");
            AcquireByPolling(client, std::chrono::milliseconds(arguments.maxTimeMilliseconds),
                             timing);
        } else {
            client.SelectSingleSequence();
            // One call of the driver acquires and transfers the first source.
            const Source first = arguments.sources[next++];
            beginPhase(fmt::format("Acquiring and transferring {}", SourceName(first)));
            waveforms.push_back(Complete(client.Read(first, arguments.maxTimeMilliseconds)));
        }
    }
    for (; next < arguments.sources.size(); ++next) {
        FetchInto(waveforms, client, arguments.sources[next], beginPhase);
    }
    return waveforms;
}

}  // namespace kestrion::cli
