#include "virtual/upload.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "virtual/text.h"

namespace virtual_scope {
namespace {

constexpr double kLevelsPerDivision = 25;

// The data of a definite length block; nothing if it isn't whole.
std::optional<std::string_view> DataOf(std::string_view block) {
    if (block.size() < 2 || block[1] < '1' || block[1] > '9') {
        return std::nullopt;
    }
    const auto digits = static_cast<std::size_t>(block[1] - '0');
    const std::string_view number = block.substr(2, digits);
    std::size_t count = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), count);
    block.remove_prefix(std::min(block.size(), 2 + digits));
    if (error != std::errc() || end != number.data() + number.size() || block.size() < count) {
        return std::nullopt;
    }
    return block.substr(0, count);
}

double NumberOf(std::string_view bytes, const UploadFormat& format) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t place = format.order == ByteOrder::kMsbFirst ? i : bytes.size() - 1 - i;
        bits = (bits << 8) | static_cast<unsigned char>(bytes[place]);
    }
    switch (format.format) {
        case NumberFormat::kFloat:
            return static_cast<double>(std::bit_cast<float>(bits));
        case NumberFormat::kUnsigned:
            return bits;
        case NumberFormat::kSigned:
            break;
    }
    const std::size_t unused = 32 - 8 * bytes.size();
    return static_cast<double>(static_cast<std::int32_t>(bits << unused) >> unused);
}

ScpiError ReadBlock(const UploadFormat& format, std::string_view block,
                    std::vector<double>& numbers) {
    if (format.format == NumberFormat::kFloat && format.width != 4) {
        return ScpiError::kSettingsConflict;
    }
    const auto data = DataOf(block);
    const auto width = static_cast<std::size_t>(format.width);
    if (!data || data->empty() || data->size() % width != 0) {
        return ScpiError::kInvalidBlockData;
    }
    for (std::size_t at = 0; at < data->size(); at += width) {
        numbers.push_back(NumberOf(data->substr(at, width), format));
    }
    return ScpiError::kNone;
}

ScpiError ReadNumbers(std::span<const std::string> parameters, std::vector<double>& numbers) {
    for (const std::string& parameter : parameters) {
        const auto number = ParseNumber(parameter);
        if (!number) {
            return ScpiError::kDataTypeError;
        }
        numbers.push_back(*number);
    }
    return ScpiError::kNone;
}

}  // namespace

UploadFormat UploadFormatOf(const Settings& settings) {
    using enum SettingId;
    return {.format = static_cast<NumberFormat>(settings.Whole(kInputFormat)),
            .order = static_cast<ByteOrder>(settings.Whole(kInputOrder)),
            .width = static_cast<int>(settings.Whole(kInputWidth)),
            .points = settings.Whole(kInputPoints),
            .axis = {.zero = settings.Number(kInputTimeZero),
                     .trigger = settings.Whole(kInputTrigger),
                     .interval = settings.Number(kInputInterval)},
            .scale = {.multiplier = settings.Number(kInputMultiplier),
                      .offset = settings.Number(kInputOffset),
                      .zero = settings.Number(kInputZero)}};
}

ScpiError ReadUpload(const UploadFormat& format, std::span<const std::string> parameters,
                     StoredPointer& waveform) {
    const VerticalScale& scale = format.scale;
    if (scale.multiplier == 0) {
        return ScpiError::kSettingsConflict;
    }
    std::vector<double> numbers;
    const bool isBlock = parameters.size() == 1 && parameters.front().starts_with('#');
    const ScpiError error =
        isBlock ? ReadBlock(format, parameters.front(), numbers) : ReadNumbers(parameters, numbers);
    if (error != ScpiError::kNone) {
        return error;
    }
    if (static_cast<std::int64_t>(numbers.size()) > format.points) {
        numbers.resize(static_cast<std::size_t>(format.points));
    }
    for (double& number : numbers) {
        number = (number - scale.offset) * scale.multiplier + scale.zero;
    }
    auto stored = std::make_shared<StoredWaveform>();
    stored->axis = format.axis;
    stored->volts = std::move(numbers);
    stored->floats = format.format == NumberFormat::kFloat;
    // The levels of one byte, as `ScaleOf` gives them back.
    const double finer = format.width == 1 ? 1.0 : format.width == 2 ? 256.0 : 16777216.0;
    const double middle = format.format == NumberFormat::kUnsigned ? 128.0 : 0.0;
    stored->scale = scale.multiplier * kLevelsPerDivision * finer;
    stored->position = (scale.offset / finer - middle) / kLevelsPerDivision;
    stored->offset = scale.zero;
    waveform = std::move(stored);
    return ScpiError::kNone;
}

}  // namespace virtual_scope
