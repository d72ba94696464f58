// The signals on the inputs, sampled in blocks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "virtual/time_axis.h"

namespace virtual_scope {

// Points are made in blocks on a fixed grid, so that a point does not depend on where the reading
// began.
inline constexpr std::size_t kBlockPoints = 512;

class Sampler {
  public:
    Sampler() = default;
    Sampler(const Sampler&) = delete;
    Sampler& operator=(const Sampler&) = delete;
    virtual ~Sampler() = default;

    // The volts of the points from `first`, a multiple of `kBlockPoints`; at most as many points.
    virtual void Sample(std::int64_t first, std::span<double> volts) const = 0;
};

using SamplerPointer = std::unique_ptr<Sampler>;

class ConstantSampler final : public Sampler {
  public:
    explicit ConstantSampler(double volts) : volts_(volts) {}
    void Sample(std::int64_t first, std::span<double> volts) const override;

  private:
    double volts_;
};

// amplitude * sin(2 pi frequency t)
class SineSampler final : public Sampler {
  public:
    SineSampler(const TimeAxis& axis, double frequency, double amplitude);
    void Sample(std::int64_t first, std::span<double> volts) const override;

  private:
    TimeAxis axis_;
    double frequency_;
    double amplitude_;
    // Sine and cosine of the phase from the beginning of a block: by the addition theorem a block
    // costs one sine and one cosine, without an error that grows along the record.
    std::array<double, kBlockPoints> sine_{};
    std::array<double, kBlockPoints> cosine_{};
};

// High for the first half of each period, which begins at t = 0, low for the second.
class SquareSampler final : public Sampler {
  public:
    SquareSampler(const TimeAxis& axis, double frequency, double low, double high)
        : axis_(axis), frequency_(frequency), low_(low), high_(high) {}
    void Sample(std::int64_t first, std::span<double> volts) const override;

  private:
    TimeAxis axis_;
    double frequency_;
    double low_;
    double high_;
};

// A text on an asynchronous line, 8 data bits, no parity, one stop bit, over and over, with a pause
// of ten bits after it. The line idles high; the first start bit begins at t = 0.
class SerialSampler final : public Sampler {
  public:
    SerialSampler(const TimeAxis& axis, double baud, std::string_view text, double low,
                  double high);
    void Sample(std::int64_t first, std::span<double> volts) const override;

    // The line's levels, 1 for high, one for each bit time of one round.
    [[nodiscard]] static std::vector<std::uint8_t> LineBits(std::string_view text);

  private:
    TimeAxis axis_;
    double baud_;
    std::vector<double> levels_;  // volts, one for each bit time
};

// Noise of a triangular distribution within plus and minus `amplitude`. A point depends on its
// number and the number of the acquisition only.
class NoiseSampler final : public Sampler {
  public:
    NoiseSampler(std::uint64_t acquisition, double amplitude);
    void Sample(std::int64_t first, std::span<double> volts) const override;

  private:
    std::uint32_t seed_;
    double amplitude_;
};

// Two signals, point by point: left + right, and likewise with - * /. A quotient whose divisor is 0
// is 0.
class OperationSampler final : public Sampler {
  public:
    OperationSampler(char operation, SamplerPointer left, SamplerPointer right);
    void Sample(std::int64_t first, std::span<double> volts) const override;

  private:
    char operation_;
    SamplerPointer left_;
    SamplerPointer right_;
};

// The finer points that lie in the time of one point, where extremes are looked for.
inline constexpr std::int64_t kFinePoints = 4;

// Pairs of the least and the greatest value that the signals have in the time of a pair, of the
// finer points of each of them.
class ExtremeSampler final : public Sampler {
  public:
    explicit ExtremeSampler(std::vector<SamplerPointer> fine) : fine_(std::move(fine)) {}
    void Sample(std::int64_t first, std::span<double> volts) const override;

  private:
    std::vector<SamplerPointer> fine_;
};

}  // namespace virtual_scope
