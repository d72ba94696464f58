// Waveforms with points typed by hand.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/waveform.h"

namespace kestrion::cli {

inline Waveform MakeWaveform(std::string source, std::vector<double> volts, double initialX,
                             double xIncrement) {
    const auto storage = std::make_shared<const std::vector<double>>(std::move(volts));
    return {std::move(source), *storage, initialX, xIncrement, storage};
}

}  // namespace kestrion::cli
