// What becomes of a transferred record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "kestrion/platform/safe_array.h"
#include "scope/waveform_scaling.h"

namespace kestrion {

// A record as it came: the block with at least `points` points, and the preamble.
struct WaveformRecord {
    std::span<const std::uint8_t> bytes;
    PointFormat format = PointFormat::kInt8;
    std::size_t points = 0;
    VerticalScale scale;
    double xZero = 0.0;       // seconds
    double xIncrement = 0.0;  // seconds
    LONG pointOffset = 0;     // 0 unless the member asks for it in front of the points
};

// Where a transaction puts its record: Prepare before the block is read, Take behind it.
class WaveformSink {
  public:
    // Makes room for that many points; false without memory, and nothing is read then.
    [[nodiscard]] virtual bool Prepare(std::size_t points) = 0;
    virtual void Take(const WaveformRecord& record) = 0;

  protected:
    ~WaveformSink() = default;
};

// One array of volts. The caller owns it; what `target` held is overwritten.
class VoltsSink final : public WaveformSink {
  public:
    explicit VoltsSink(SAFEARRAY** target) : target_(target) {}
    bool Prepare(std::size_t points) override;
    void Take(const WaveformRecord& record) override;

  private:
    SAFEARRAY** target_;
    SafeArrayPtr volts_;
};

// The first points of pairs in one array of volts, the second in another; a point without a second
// is dropped.
class PairsSink final : public WaveformSink {
  public:
    PairsSink(SAFEARRAY** minimum, SAFEARRAY** maximum) : minimum_(minimum), maximum_(maximum) {}
    bool Prepare(std::size_t points) override;
    void Take(const WaveformRecord& record) override;

  private:
    SAFEARRAY** minimum_;
    SAFEARRAY** maximum_;
    SafeArrayPtr first_;
    SafeArrayPtr second_;
};

// Where a member hands over the scale by which levels become volts.
struct LevelScale {
    double* yZero;
    double* yMult;
    double* yOffset;
};

// Signed one-byte points as they are, in an array of long integers, and the scale beside them.
class LevelsSink final : public WaveformSink {
  public:
    LevelsSink(SAFEARRAY** target, const LevelScale& scale) : target_(target), scale_(scale) {}
    bool Prepare(std::size_t points) override;
    void Take(const WaveformRecord& record) override;

  private:
    SAFEARRAY** target_;
    LevelScale scale_;
    SafeArrayPtr levels_;
};

}  // namespace kestrion
