// What the measurements are taken of: the settings of one, and the points of its sources.
#pragma once

#include "virtual/measure.h"
#include "virtual/oscilloscope.h"
#include "virtual/record.h"

namespace virtual_scope {

// The settings of the immediate measurement or of the slots; the instance is the slot.
struct MeasurementIds {
    SettingId source1, source2, type, direction, edge1, edge2, method, unit;
    SettingId percentHigh, percentLow, percentMid, percentMid2;
    SettingId absoluteHigh, absoluteLow, absoluteMid, absoluteMid2;
};

extern const MeasurementIds kImmediateIds;
extern const MeasurementIds kSlotIds;

// The measurement of the acquisition that came so many before the newest. `kNotANumber` for a
// waveform that is not on the screen. Of a record of more than a million points, as many are
// measured, at even distances.
[[nodiscard]] double MeasureNow(const Oscilloscope& scope, const MeasurementIds& ids, int instance,
                                std::uint64_t acquisitionsAgo = 0);

struct Statistics {
    double minimum = kNotANumber;
    double maximum = kNotANumber;
    double mean = kNotANumber;
    double deviation = kNotANumber;
};

// Over the acquisitions since the statistics began, but at most the last 32 of them.
[[nodiscard]] Statistics StatisticsOf(const Oscilloscope& scope, const MeasurementIds& ids,
                                      int instance);

}  // namespace virtual_scope
