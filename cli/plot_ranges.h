// What ranges of time and voltage a set of waveforms covers.
#pragma once

#include "cli/axis.h"
#include "cli/waveform.h"

namespace kestrion::cli {

// From the first to the last time of any point, in seconds; around a single point, or none at all,
// a range of some width.
[[nodiscard]] Range TimeRange(const Waveforms& waveforms);
// From the lowest to the highest point with a margin, in volts; -1 V to 1 V without any point.
[[nodiscard]] Range VoltageRange(const Waveforms& waveforms);

}  // namespace kestrion::cli
