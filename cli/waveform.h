// A waveform as it came from the instrument.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kestrion::cli {

struct Waveform {
    // "CH1".
    std::string source;
    // One value for each point, in volts; the view lives as long as `storage`.
    std::span<const double> volts;
    // Time of the first point in seconds, 0 being the trigger.
    double initialX = 0;
    // Seconds from one point to the next.
    double xIncrement = 0;
    // Keeps the points alive, whatever holds them.
    std::shared_ptr<const void> storage;

    [[nodiscard]] double TimeAt(std::size_t point) const {
        return initialX + static_cast<double>(point) * xIncrement;
    }
};

using Waveforms = std::vector<Waveform>;

// True if every waveform has the points of the first one at the very same times.
[[nodiscard]] inline bool ShareTimeAxis(const Waveforms& waveforms) {
    for (const Waveform& waveform : waveforms) {
        const Waveform& first = waveforms.front();
        if (waveform.volts.size() != first.volts.size() || waveform.initialX != first.initialX ||
            waveform.xIncrement != first.xIncrement) {
            return false;
        }
    }
    return true;
}

}  // namespace kestrion::cli
