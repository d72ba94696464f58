// A plot of waveforms as an SVG picture.
#pragma once

#include <string>
#include <string_view>

#include "cli/waveform.h"

namespace kestrion::cli {

struct PlotTexts {
    std::string title;
    // A smaller line under the title; may be empty.
    std::string subtitle;
};

// The whole document: one trace for each waveform over common axes, a legend, zero lines and a
// marker at the trigger. Long records are drawn by the extremes of each pixel column, so that peaks
// survive and the size stays within some hundred kilobytes. Texts may hold anything; what XML
// doesn't allow becomes U+FFFD. Waveforms without points are in the legend only.
[[nodiscard]] std::string RenderSvg(const PlotTexts& texts, const Waveforms& waveforms);

// Text for element content and attribute values.
[[nodiscard]] std::string EscapeXml(std::string_view text);

}  // namespace kestrion::cli
