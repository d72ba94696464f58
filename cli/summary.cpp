#include "cli/summary.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "cli/si_format.h"
#include "cli/statistics.h"
#include "cli/utf8.h"

namespace kestrion::cli {
namespace {

constexpr std::size_t kColumnGap = 2;

// The mean of a symmetric signal is a rounding error away from zero.
double WithoutRoundingError(double mean, const Statistics& statistics) {
    constexpr double kRelativeError = 1e-12;
    const double largest = std::max(std::abs(statistics.minimum), std::abs(statistics.maximum));
    return std::abs(mean) < kRelativeError * largest ? 0 : mean;
}

std::vector<std::string> SummaryRow(const Waveform& waveform) {
    if (waveform.volts.empty()) {
        return {waveform.source, "0", "none", "none", "none", "none", "none"};
    }
    const Statistics statistics = Describe(waveform.volts, waveform.xIncrement);
    return {waveform.source,
            fmt::format("{}", statistics.points),
            FormatSiShort(waveform.xIncrement, "s"),
            FormatSi(statistics.minimum, "V"),
            FormatSi(statistics.maximum, "V"),
            FormatSi(WithoutRoundingError(statistics.mean, statistics), "V"),
            statistics.frequency ? FormatSi(*statistics.frequency, "Hz") : "none"};
}

}  // namespace

std::string RenderIdentity(const InstrumentIdentity& instrument) {
    std::string text = instrument.manufacturer + " " + instrument.model;
    if (!instrument.serial.empty()) {
        text += ", serial number " + instrument.serial;
    }
    if (!instrument.firmware.empty()) {
        text += ", firmware " + instrument.firmware;
    }
    return text + "\n";
}

std::string RenderSummary(const Waveforms& waveforms) {
    std::vector<std::vector<std::string>> rows{
        {"Source", "Points", "Interval", "Minimum", "Maximum", "Mean", "Frequency"}};
    for (const Waveform& waveform : waveforms) {
        rows.push_back(SummaryRow(waveform));
    }
    return RenderTable(rows);
}

std::string RenderTable(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], CountCharacters(row[i]));
        }
    }
    std::string text;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(widths[i] - CountCharacters(row[i]), ' ');
            if (i == 0) {
                text += row[i] + padding;
            } else {
                text += std::string(kColumnGap, ' ') + padding + row[i];
            }
        }
        text += '\n';
    }
    return text;
}

}  // namespace kestrion::cli
