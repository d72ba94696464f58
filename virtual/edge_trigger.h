// Where an edge trigger puts the beginning of time into the signals.
#pragma once

#include <cstdint>
#include <optional>

#include "virtual/record.h"

namespace virtual_scope {

class Oscilloscope;

// In the order of the words of TRIGger:A:EDGE:SLOpe.
enum class TriggerSlope : std::uint8_t { kFall, kRise, kEither };

struct EdgeTrigger {
    bool isEdge = true;  // other types trigger at the beginning of the signals' own time
    int source = 0;      // in the order of the words of TRIGger:A:EDGE:SOUrce
    TriggerSlope slope = TriggerSlope::kRise;
    double level = 0;
};

// As the settings of this moment say.
[[nodiscard]] EdgeTrigger EdgeTriggerOf(const Oscilloscope& scope);

// The trigger in seconds of the signals' own time; nothing if the source never crosses the level.
// Either slope takes the rising one. The auxiliary input and the line trigger at 0.
[[nodiscard]] std::optional<double> FindTrigger(const Record& record, const EdgeTrigger& trigger);

// Half-way between the lowest and the highest value of a source.
[[nodiscard]] double MiddleOf(const Record& record, int source);

// Where a record begins that no trigger came for: at another place in each acquisition.
[[nodiscard]] double UntriggeredShift(std::uint64_t acquisition);

}  // namespace virtual_scope
