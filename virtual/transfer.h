// What the next transfer of a waveform will deliver, after the settings of DATa and WFMOutpre.
#pragma once

#include "virtual/curve.h"
#include "virtual/oscilloscope.h"
#include "virtual/preamble.h"
#include "virtual/record.h"

namespace virtual_scope {

struct Transfer {
    WaveformSource source;
    Record record;
    TransferFormat format;
    PointRange range;
    bool map = false;  // counts of the places of the screen instead of points

    // The vertical scale of the source, in the words of the preamble.
    [[nodiscard]] VerticalScale Scale() const {
        if (source.kind == SourceKind::kDigital) {
            return {};
        }
        return ScaleOf(record.channels.at(static_cast<std::size_t>(source.index)), format);
    }
};

// DATa:STARt and DATa:STOP are taken in either order and held to the record.
[[nodiscard]] Transfer CurrentTransfer(const Oscilloscope& scope);

// The source is on the screen; others have no data to send.
[[nodiscard]] bool IsSourceSelected(const Oscilloscope& scope, const WaveformSource& source);

}  // namespace virtual_scope
