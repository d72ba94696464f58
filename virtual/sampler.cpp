#include "virtual/sampler.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace virtual_scope {
namespace {

// A point that lies on an edge belongs to what comes after it; the products that give its place
// are off by less than this, in halves of a period or in bits.
constexpr double kEdgeTolerance = 1e-7;

// What is left of `value` after whole multiples of `period`: 0 <= result < period.
double Reduce(double value, double period) {
    const double rest = value - period * std::floor(value / period);
    return rest < period ? rest : 0.0;
}

std::uint32_t Mix(std::uint32_t value) {
    value ^= value >> 16;
    value *= 0x7FEB352DU;
    value ^= value >> 15;
    value *= 0x846CA68BU;
    value ^= value >> 16;
    return value;
}

}  // namespace

void ConstantSampler::Sample(std::int64_t /*first*/, std::span<double> volts) const {
    std::ranges::fill(volts, volts_);
}

SineSampler::SineSampler(const TimeAxis& axis, double frequency, double amplitude)
    : axis_(axis), frequency_(frequency), amplitude_(amplitude) {
    for (std::size_t i = 0; i < kBlockPoints; ++i) {
        const double turns = Reduce(frequency * axis.interval * static_cast<double>(i), 1.0);
        sine_[i] = std::sin(2 * std::numbers::pi * turns);
        cosine_[i] = std::cos(2 * std::numbers::pi * turns);
    }
}

void SineSampler::Sample(std::int64_t first, std::span<double> volts) const {
    const double turns = Reduce(frequency_ * axis_.At(first), 1.0);
    const double sine = amplitude_ * std::sin(2 * std::numbers::pi * turns);
    const double cosine = amplitude_ * std::cos(2 * std::numbers::pi * turns);
    for (std::size_t i = 0; i < volts.size(); ++i) {
        volts[i] = sine * cosine_[i] + cosine * sine_[i];
    }
}

void SquareSampler::Sample(std::int64_t first, std::span<double> volts) const {
    const double start = Reduce(2 * frequency_ * axis_.At(first) + kEdgeTolerance, 2.0);
    const double step = 2 * frequency_ * axis_.interval;
    for (std::size_t i = 0; i < volts.size(); ++i) {
        const auto half = static_cast<std::int32_t>(start + step * static_cast<double>(i));
        volts[i] = (half & 1) == 0 ? high_ : low_;
    }
}

SerialSampler::SerialSampler(const TimeAxis& axis, double baud, std::string_view text, double low,
                             double high)
    : axis_(axis), baud_(baud) {
    for (const std::uint8_t bit : LineBits(text)) {
        levels_.push_back(bit == 0 ? low : high);
    }
}

void SerialSampler::Sample(std::int64_t first, std::span<double> volts) const {
    const auto round = static_cast<std::uint32_t>(levels_.size());
    const double start = Reduce(baud_ * axis_.At(first) + kEdgeTolerance, round);
    const double step = baud_ * axis_.interval;
    for (std::size_t i = 0; i < volts.size(); ++i) {
        auto bit = static_cast<std::uint32_t>(start + step * static_cast<double>(i));
        if (bit >= round) {
            bit %= round;
        }
        volts[i] = levels_[bit];
    }
}

std::vector<std::uint8_t> SerialSampler::LineBits(std::string_view text) {
    constexpr std::size_t kPause = 10;
    std::vector<std::uint8_t> bits;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        bits.push_back(0);
        for (int bit = 0; bit < 8; ++bit) {
            bits.push_back((code >> bit) & 1U);
        }
        bits.push_back(1);
    }
    bits.insert(bits.end(), kPause, 1);
    return bits;
}

NoiseSampler::NoiseSampler(std::uint64_t acquisition, double amplitude)
    : seed_(Mix(static_cast<std::uint32_t>(acquisition) + 1)), amplitude_(amplitude) {}

void NoiseSampler::Sample(std::int64_t first, std::span<double> volts) const {
    const auto base = static_cast<std::uint32_t>(first);
    const double unit = amplitude_ / 65535.0;
    for (std::size_t i = 0; i < volts.size(); ++i) {
        const std::uint32_t bits = Mix((base + static_cast<std::uint32_t>(i)) ^ seed_);
        // The sum of two uniform halves.
        const auto sum = static_cast<std::int32_t>((bits & 0xFFFFU) + (bits >> 16));
        volts[i] = unit * static_cast<double>(sum - 65535);
    }
}

OperationSampler::OperationSampler(char operation, SamplerPointer left, SamplerPointer right)
    : operation_(operation), left_(std::move(left)), right_(std::move(right)) {}

void OperationSampler::Sample(std::int64_t first, std::span<double> volts) const {
    std::array<double, kBlockPoints> other;
    left_->Sample(first, volts);
    right_->Sample(first, std::span(other).first(volts.size()));
    for (std::size_t i = 0; i < volts.size(); ++i) {
        switch (operation_) {
            case '+':
                volts[i] += other[i];
                break;
            case '-':
                volts[i] -= other[i];
                break;
            case '*':
                volts[i] *= other[i];
                break;
            default:
                volts[i] = other[i] == 0 ? 0.0 : volts[i] / other[i];
                break;
        }
    }
}

void ExtremeSampler::Sample(std::int64_t first, std::span<double> volts) const {
    constexpr auto kFine = static_cast<std::size_t>(kFinePoints);
    constexpr std::size_t kPointsOfBlock = kBlockPoints / kFine;
    std::array<double, kBlockPoints> fine;
    for (std::size_t done = 0; done < volts.size(); done += kPointsOfBlock) {
        const std::span part = volts.subspan(done, std::min(kPointsOfBlock, volts.size() - done));
        const std::span finePart = std::span(fine).first(part.size() * kFine);
        const std::int64_t fineFirst = (first + static_cast<std::int64_t>(done)) * kFinePoints;
        for (std::size_t sampler = 0; sampler < fine_.size(); ++sampler) {
            fine_[sampler]->Sample(fineFirst, finePart);
            // A last point without its pair stands for itself.
            for (std::size_t i = 0; i < part.size(); i += 2) {
                const std::size_t points = std::min<std::size_t>(2, part.size() - i);
                const auto [least, greatest] =
                    std::ranges::minmax(finePart.subspan(i * kFine, points * kFine));
                part[i] = sampler == 0 ? least : std::min(part[i], least);
                if (points == 2) {
                    part[i + 1] = sampler == 0 ? greatest : std::max(part[i + 1], greatest);
                }
            }
        }
    }
}

}  // namespace virtual_scope
