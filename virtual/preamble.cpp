#include "virtual/preamble.h"

#include <cmath>

namespace virtual_scope {
namespace {

constexpr double kLevelsPerDivision = 25;

// 2 to the power of 8 for each byte.
double Span(int bytes) {
    return std::exp2(8.0 * bytes);
}

}  // namespace

VerticalScale ScaleOf(const ChannelSetup& setup, const TransferFormat& format) {
    if (format.format == NumberFormat::kFloat) {
        return {};
    }
    const double perDivision = kLevelsPerDivision * Span(format.width - 1);
    const double middle = format.format == NumberFormat::kUnsigned ? Span(format.width) / 2 : 0.0;
    return {.multiplier = setup.scale / perDivision,
            .offset = setup.position * perDivision + middle,
            .zero = setup.offset};
}

Digitiser MakeDigitiser(const ChannelSetup& setup, const TransferFormat& format) {
    const VerticalScale scale = ScaleOf(setup, format);
    const double low = format.format == NumberFormat::kUnsigned ? 0.0 : -Span(format.width) / 2;
    return {.levelsPerVolt = 1 / scale.multiplier,
            .levelOfZero = scale.offset - scale.zero / scale.multiplier,
            .low = low,
            .high = low + Span(format.width) - 1};
}

}  // namespace virtual_scope
