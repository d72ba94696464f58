#include "cli/braille_plot.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <vector>

#include "cli/axis.h"
#include "cli/decimation.h"
#include "cli/plot_ranges.h"
#include "cli/utf8.h"

namespace kestrion::cli {
namespace {

constexpr std::size_t kLeastWidth = 40;
constexpr std::size_t kDotColumns = 2;
constexpr std::size_t kDotRows = 4;
// The bit of each dot of a braille character, by row and column of the dot.
constexpr std::array<std::array<std::uint8_t, kDotColumns>, kDotRows> kDotBits{
    {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}}};

// A canvas of dots, the first row at the top.
class Canvas {
  public:
    Canvas(std::size_t columns, std::size_t rows)
        : columns_(columns), rows_(rows), cells_(columns * rows) {}

    [[nodiscard]] std::size_t DotWidth() const { return columns_ * kDotColumns; }
    [[nodiscard]] std::size_t DotHeight() const { return rows_ * kDotRows; }

    void VerticalLine(std::size_t x, std::size_t top, std::size_t bottom) {
        for (std::size_t y = top; y <= bottom; ++y) {
            cells_[y / kDotRows * columns_ + x / kDotColumns] |=
                kDotBits[y % kDotRows][x % kDotColumns];
        }
    }

    [[nodiscard]] std::string Row(std::size_t row) const {
        std::string text;
        for (std::size_t column = 0; column < columns_; ++column) {
            // U+2800 plus the bits, in UTF-8.
            const std::uint8_t bits = cells_[row * columns_ + column];
            text += '\xE2';
            text += static_cast<char>(0xA0U | (bits >> 6U));
            text += static_cast<char>(0x80U | (bits & 0x3FU));
        }
        return text;
    }

  private:
    std::size_t columns_;
    std::size_t rows_;
    std::vector<std::uint8_t> cells_;
};

std::size_t DotRow(const Axis& axis, double volts, std::size_t height) {
    const double fromTop = (1 - axis.Position(volts)) * static_cast<double>(height);
    return static_cast<std::size_t>(std::clamp(fromTop, 0.0, static_cast<double>(height) - 1));
}

void Draw(Canvas& canvas, const Axis& axis, const Waveform& waveform) {
    const std::vector<Extremes> columns = ColumnExtremes(waveform.volts, canvas.DotWidth());
    // A record with fewer points than dots is stretched over the width.
    const std::size_t width = canvas.DotWidth();
    std::size_t previousHigh = 0;
    std::size_t previousLow = 0;
    for (std::size_t x = 0; x < width; ++x) {
        const Extremes& extremes = columns[x * columns.size() / width];
        const std::size_t high = DotRow(axis, extremes.high, canvas.DotHeight());
        const std::size_t low = DotRow(axis, extremes.low, canvas.DotHeight());
        // A column that lies wholly below or above the one before reaches up or down to it.
        const std::size_t top = x > 0 && high > previousLow ? previousLow + 1 : high;
        const std::size_t bottom = x > 0 && low < previousHigh ? previousHigh - 1 : low;
        canvas.VerticalLine(x, top, bottom);
        previousHigh = high;
        previousLow = low;
    }
}

// Labels by the row that they stand in.
std::map<std::size_t, std::string> RowLabels(const Axis& axis, std::size_t rows) {
    std::map<std::size_t, std::string> labels;
    for (double tick : axis.Ticks()) {
        labels[DotRow(axis, tick, rows * kDotRows) / kDotRows] =
            fmt::format("{} {}V", axis.Label(tick), axis.PrefixSymbol());
    }
    return labels;
}

// The times at the low end, in the middle and at the high end of the range.
std::array<std::string, 3> TimeTexts(const Range& times) {
    constexpr double kNothing = 1e-3;
    constexpr double kFar = 1e-4;
    const double middle = times.low + times.Span() / 2;
    // A record far from the trigger shows how far it is, and the others relative to that.
    if (times.Span() < kFar * std::max(std::abs(times.low), std::abs(times.high))) {
        return {FormatSiShort(times.low, "s"), "+" + FormatSiShort(times.Span() / 2, "s"),
                "+" + FormatSiShort(times.Span(), "s")};
    }
    // A time that is next to nothing beside the whole range is shown as the trigger.
    const auto text = [&](double time) {
        return FormatSiShort(std::abs(time) < times.Span() * kNothing ? 0 : time, "s");
    };
    return {text(times.low), text(middle), text(times.high)};
}

// The times of both ends and of the middle, under the columns that they belong to.
std::string TimeLine(const Range& times, std::size_t columns) {
    const auto [first, middle, last] = TimeTexts(times);
    const std::size_t firstEnd = CountCharacters(first);
    const std::size_t middleStart = (columns - std::min(columns, CountCharacters(middle))) / 2;
    const std::size_t middleEnd = middleStart + CountCharacters(middle);
    const std::size_t lastStart = columns - std::min(columns, CountCharacters(last));
    if (firstEnd >= middleStart || middleEnd >= lastStart) {
        return first;
    }
    return first + std::string(middleStart - firstEnd, ' ') + middle +
           std::string(lastStart - middleEnd, ' ') + last;
}

}  // namespace

std::string RenderBraille(const Waveform& waveform, std::size_t width, std::size_t rows) {
    if (waveform.volts.empty()) {
        return {};
    }
    const Waveforms waveforms{waveform};
    const Axis axis(VoltageRange(waveforms), static_cast<int>(rows) / 3 + 1);
    const std::map<std::size_t, std::string> labels = RowLabels(axis, rows);
    std::size_t labelWidth = 0;
    for (const auto& [row, label] : labels) {
        labelWidth = std::max(labelWidth, CountCharacters(label));
    }

    const std::size_t columns = std::max(width, kLeastWidth) - labelWidth - 2;
    Canvas canvas(columns, rows);
    Draw(canvas, axis, waveform);

    std::string text;
    for (std::size_t row = 0; row < rows; ++row) {
        const auto label = labels.find(row);
        const std::string shown = label == labels.end() ? "" : label->second;
        text += std::string(labelWidth - CountCharacters(shown), ' ') + shown;
        text += label == labels.end() ? " │" : " ┤";
        text += canvas.Row(row) + "\n";
    }
    text += std::string(labelWidth + 1, ' ') + "└";
    for (std::size_t i = 0; i < columns; ++i) {
        text += "─";
    }
    return text + "\n" + std::string(labelWidth + 2, ' ') +
           TimeLine(TimeRange(waveforms), columns) + "\n";
}

}  // namespace kestrion::cli
