#include "virtual/transfer.h"

#include <algorithm>

#include "virtual/pixel_map.h"

namespace virtual_scope {
namespace {

constexpr int kFloatWidth = 4;
constexpr int kMapWidth = 8;
constexpr int kDigitalChannels = 16;

WaveformSource SelectedSource(const Settings& settings) {
    const auto keyword = static_cast<int>(settings.Whole(SettingId::kDataSource));
    return {.kind = static_cast<SourceKind>(keyword / kMaxChannels),
            .index = keyword % kMaxChannels};
}

TransferFormat SelectedFormat(const Settings& settings, const Record& record,
                              const WaveformSource& source) {
    TransferFormat format = {
        .encoding = static_cast<Encoding>(settings.Whole(SettingId::kOutputEncoding)),
        .format = static_cast<NumberFormat>(settings.Whole(SettingId::kOutputFormat)),
        .order = static_cast<ByteOrder>(settings.Whole(SettingId::kOutputOrder)),
        .width = static_cast<int>(settings.Whole(SettingId::kOutputWidth))};
    if (source.kind == SourceKind::kDigital) {  // no numbers but bits
        format.format = NumberFormat::kUnsigned;
        format.width = std::min(format.width, 2);
        return format;
    }
    // A waveform that is made of floats has no levels.
    const bool storedFloats = source.kind == SourceKind::kReference &&
                              record.references.at(static_cast<std::size_t>(source.index))->floats;
    if (source.kind == SourceKind::kMath || storedFloats) {
        format.format = NumberFormat::kFloat;
    }
    if (format.format == NumberFormat::kFloat) {
        format.width = kFloatWidth;
    }
    return format;
}

PointRange SelectedRange(const Settings& settings, std::int64_t length) {
    const std::int64_t start = settings.Whole(SettingId::kDataStart);
    const std::int64_t stop = settings.Whole(SettingId::kDataStop);
    const std::int64_t first = std::min(std::min(start, stop), length);
    const std::int64_t last = std::min(std::max(start, stop), length);
    return {.first = first - 1, .count = last - first + 1};
}

}  // namespace

Transfer CurrentTransfer(const Oscilloscope& scope) {
    const Settings& settings = scope.settings();
    const WaveformSource source = SelectedSource(settings);
    const Record current = scope.CurrentRecord();
    const Record record =
        source.kind == SourceKind::kReference ? ReferenceRecord(current, source.index) : current;
    Transfer transfer = {.source = source,
                         .record = record,
                         .format = SelectedFormat(settings, record, source),
                         .range = SelectedRange(settings, record.length),
                         .map = source.kind == SourceKind::kChannel && record.HoldsMap()};
    if (transfer.map) {
        const MapSize size = MapSizeOf(scope.model().family);
        transfer.format.width = kMapWidth;
        transfer.range = {.first = 0, .count = std::int64_t{size.columns} * size.rows};
    }
    return transfer;
}

bool IsSourceSelected(const Oscilloscope& scope, const WaveformSource& source) {
    switch (source.kind) {
        case SourceKind::kChannel:
            return scope.settings().IsOn(SettingId::kSelectChannel, source.index);
        case SourceKind::kMath:
            return scope.settings().IsOn(SettingId::kSelectMath, source.index);
        case SourceKind::kReference:
            return scope.settings().IsOn(SettingId::kSelectReference, source.index);
        case SourceKind::kDigital:
            break;
    }
    for (int channel = 0; channel < kDigitalChannels; ++channel) {
        if (scope.settings().IsOn(SettingId::kSelectDigital, channel)) {
            return true;
        }
    }
    return false;
}

}  // namespace virtual_scope
