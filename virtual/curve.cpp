#include "virtual/curve.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <type_traits>
#include <utility>

#include "virtual/text.h"

namespace virtual_scope {
namespace {

constexpr auto kBlock = static_cast<std::int64_t>(kBlockPoints);

// The place of a level above the lowest. It is never negative, so that cutting off rounds.
double Place(const Digitiser& digitiser, double volts) {
    const double level = volts * digitiser.levelsPerVolt + digitiser.levelOfZero;
    return std::min(std::max(level, digitiser.low), digitiser.high) - digitiser.low + 0.5;
}

std::size_t TakeText(std::string_view& text, std::span<std::byte> target) {
    const std::size_t count = std::min(text.size(), target.size());
    std::memcpy(target.data(), text.data(), count);
    text.remove_prefix(count);
    return count;
}

std::uint8_t Reversed(std::uint8_t number) {
    return number;
}
std::uint16_t Reversed(std::uint16_t number) {
    return static_cast<std::uint16_t>((number << 8) | (number >> 8));
}
std::uint32_t Reversed(std::uint32_t number) {
    return (number << 24) | ((number & 0xFF00U) << 8) | ((number >> 8) & 0xFF00U) | (number >> 24);
}

// Writes the numbers in the byte order that is asked for.
template <typename Unsigned>
void Store(std::span<std::byte> target, std::span<Unsigned> numbers, ByteOrder order) {
    const bool hostIsLsbFirst = std::endian::native == std::endian::little;
    if (hostIsLsbFirst != (order == ByteOrder::kLsbFirst)) {
        for (Unsigned& number : numbers) {
            number = Reversed(number);
        }
    }
    std::memcpy(target.data(), numbers.data(), numbers.size_bytes());
}

}  // namespace

std::string BlockHeader(std::int64_t bytes) {
    const std::string count = std::to_string(bytes);
    std::string header = "#";
    header += std::to_string(count.size());
    header += count;
    return header;
}

PointMaker::PointMaker(const Record& record, const WaveformSource& source)
    : length_(record.length), sampler_(MakeSampler(record, source)) {}

std::span<const double> PointMaker::Block(std::int64_t point, std::int64_t& first) {
    first = point - point % kBlock;
    const std::span volts =
        std::span(volts_).first(static_cast<std::size_t>(std::min(kBlock, length_ - first)));
    sampler_->Sample(first, volts);
    return volts;
}

BinaryCurve::BinaryCurve(const Record& record, const WaveformSource& source,
                         const TransferFormat& format, const PointRange& range)
    : points_(record, source),
      format_(format),
      digitiser_(MakeDigitiser(record.channels.at(static_cast<std::size_t>(source.index)), format)),
      at_(range.first * format.width),
      left_(range.count * format.width),
      header_(BlockHeader(left_)),
      headerLeft_(header_) {}

std::size_t BinaryCurve::Read(std::span<std::byte> target) {
    std::size_t done = TakeText(headerLeft_, target);
    const std::int64_t blockBytes = kBlock * format_.width;
    while (done < target.size() && left_ > 0) {
        const std::int64_t block = at_ / blockBytes;
        if (block != encodedBlock_) {
            std::int64_t first = 0;
            Encode(points_.Block(block * kBlock, first));
            encodedBlock_ = block;
        }
        const std::int64_t within = at_ % blockBytes;
        const auto count = static_cast<std::size_t>(std::min(
            {blockBytes - within, left_, static_cast<std::int64_t>(target.size() - done)}));
        std::memcpy(target.data() + done, encoded_.data() + within, count);
        done += count;
        at_ += static_cast<std::int64_t>(count);
        left_ -= static_cast<std::int64_t>(count);
    }
    return done;
}

void BinaryCurve::Encode(std::span<const double> volts) {
    if (format_.format == NumberFormat::kFloat) {
        EncodeFloats(volts);
    } else if (format_.width == 1) {
        EncodeIntegers<std::uint8_t>(volts);
    } else if (format_.width == 2) {
        EncodeIntegers<std::uint16_t>(volts);
    } else {
        EncodeIntegers<std::uint32_t>(volts);
    }
}

void BinaryCurve::EncodeFloats(std::span<const double> volts) {
    std::array<std::uint32_t, kBlockPoints> bits;
    for (std::size_t i = 0; i < volts.size(); ++i) {
        bits[i] = std::bit_cast<std::uint32_t>(static_cast<float>(volts[i]));
    }
    Store(encoded_, std::span(bits).first(volts.size()), format_.order);
}

template <typename Unsigned>
void BinaryCurve::EncodeIntegers(std::span<const double> volts) {
    // The narrower conversion is several times as fast.
    using Whole = std::conditional_t<sizeof(Unsigned) < 4, std::int32_t, std::int64_t>;
    const Digitiser digitiser = digitiser_;
    const auto lowest = static_cast<Whole>(digitiser.low);
    std::array<Unsigned, kBlockPoints> levels;
    for (std::size_t i = 0; i < volts.size(); ++i) {
        levels[i] = static_cast<Unsigned>(static_cast<Whole>(Place(digitiser, volts[i])) + lowest);
    }
    Store(encoded_, std::span(levels).first(volts.size()), format_.order);
}

AsciiCurve::AsciiCurve(const Record& record, const WaveformSource& source,
                       const TransferFormat& format, const PointRange& range)
    : points_(record, source),
      floats_(format.format == NumberFormat::kFloat),
      digitiser_(MakeDigitiser(record.channels.at(static_cast<std::size_t>(source.index)), format)),
      next_(range.first),
      end_(range.first + range.count) {}

std::size_t AsciiCurve::Read(std::span<std::byte> target) {
    std::size_t done = 0;
    while (done < target.size() && !AtEnd()) {
        if (textLeft_.empty()) {
            FillText();
        }
        done += TakeText(textLeft_, target.subspan(done));
    }
    return done;
}

void AsciiCurve::FillText() {
    std::int64_t first = 0;
    const std::span<const double> volts = points_.Block(next_, first);
    const std::int64_t stop = std::min(end_, first + static_cast<std::int64_t>(volts.size()));
    text_.clear();
    for (; next_ < stop; ++next_) {
        const double value = volts[static_cast<std::size_t>(next_ - first)];
        text_ += floats_ ? FormatReal(value)
                         : std::to_string(static_cast<std::int64_t>(Place(digitiser_, value)) +
                                          static_cast<std::int64_t>(digitiser_.low));
        text_ += next_ + 1 == end_ ? "" : ",";
    }
    textLeft_ = text_;
}

}  // namespace virtual_scope
