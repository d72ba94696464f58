// A plot of one waveform for the terminal, in braille dots.
#pragma once

#include <cstddef>
#include <string>

#include "cli/waveform.h"

namespace kestrion::cli {

// Lines ended by LF, none wider than `width` characters: a plot of `rows` rows, each character two
// dots wide and four high, with voltages at the left and times below. `width` below 40 counts as
// 40; `rows` is 2 or more. Empty for a waveform without points.
[[nodiscard]] std::string RenderBraille(const Waveform& waveform, std::size_t width,
                                        std::size_t rows);

}  // namespace kestrion::cli
