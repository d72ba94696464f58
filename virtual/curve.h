// The answer to CURVe?, made while it is read.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "virtual/byte_source.h"
#include "virtual/preamble.h"
#include "virtual/record.h"

namespace virtual_scope {

// The part of a record that is sent; points are counted from 0.
struct PointRange {
    std::int64_t first = 0;
    std::int64_t count = 0;
};

// The beginning of a definite length block of that many bytes (IEEE 488.2, 8.7.9): "#41000".
[[nodiscard]] std::string BlockHeader(std::int64_t bytes);

// Makes the points of one block at a time.
class PointMaker {
  public:
    PointMaker(const Record& record, const WaveformSource& source);

    [[nodiscard]] std::int64_t length() const { return length_; }

    // The volts of the block with that point; `first` becomes the number of the block's first.
    [[nodiscard]] std::span<const double> Block(std::int64_t point, std::int64_t& first);

  private:
    std::int64_t length_;
    SamplerPointer sampler_;
    std::array<double, kBlockPoints> volts_{};
};

// A definite length block (IEEE 488.2, 8.7.9) with the points in binary.
class BinaryCurve final : public ByteSource {
  public:
    BinaryCurve(const Record& record, const WaveformSource& source, const TransferFormat& format,
                const PointRange& range);
    std::size_t Read(std::span<std::byte> target) override;
    [[nodiscard]] bool AtEnd() const override { return headerLeft_.empty() && left_ == 0; }

  private:
    void Encode(std::span<const double> volts);
    void EncodeFloats(std::span<const double> volts);
    template <typename Unsigned>
    void EncodeIntegers(std::span<const double> volts);

    PointMaker points_;
    TransferFormat format_;
    Digitiser digitiser_;
    std::int64_t at_;    // the data byte to send next, counted from the record's beginning
    std::int64_t left_;  // data bytes to send
    std::int64_t encodedBlock_ = -1;
    std::string header_;
    std::string_view headerLeft_;
    std::array<std::byte, kBlockPoints * 4> encoded_{};
};

// The points as numbers with commas between them.
class AsciiCurve final : public ByteSource {
  public:
    AsciiCurve(const Record& record, const WaveformSource& source, const TransferFormat& format,
               const PointRange& range);
    std::size_t Read(std::span<std::byte> target) override;
    [[nodiscard]] bool AtEnd() const override { return textLeft_.empty() && next_ == end_; }

  private:
    void FillText();

    PointMaker points_;
    bool floats_;
    Digitiser digitiser_;
    std::int64_t next_;
    std::int64_t end_;
    std::string text_;
    std::string_view textLeft_;
};

}  // namespace virtual_scope
