// What is on the inputs: CH1 a sine of 1 kHz and 1 V, CH2 a square wave of 10 kHz from 0 V to 3.3
// V, CH3 a text at 9600 baud with levels of 0 V and 3.3 V, CH4 noise within 0.2 V of 0 V.
#pragma once

#include <optional>

#include "virtual/record.h"

namespace virtual_scope {

struct VoltRange {
    double low = 0;
    double high = 0;
};

// The lowest and the highest value of a channel's signal, coupled as the record says.
[[nodiscard]] VoltRange RangeOfChannel(const Record& record, int channel);

// When the channel's signal crosses the level, in seconds of the signal's own time. Nothing if it
// never does. Noise, which crosses its levels at any time, counts as crossing them at 0.
[[nodiscard]] std::optional<double> CrossingOfChannel(const Record& record, int channel,
                                                      double level, bool rising);

// The signal as the record has it: at the record's time t it is at its own time t + `shift`.
[[nodiscard]] SamplerPointer MakeChannelSampler(const Record& record, int channel);

}  // namespace virtual_scope
