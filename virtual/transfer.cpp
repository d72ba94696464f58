#include "virtual/transfer.h"

#include <algorithm>

namespace virtual_scope {
namespace {

constexpr int kFloatWidth = 4;

WaveformSource SelectedSource(const Settings& settings) {
    const auto keyword = static_cast<int>(settings.Whole(SettingId::kDataSource));
    return {.kind = static_cast<SourceKind>(keyword / kMaxChannels),
            .index = keyword % kMaxChannels};
}

TransferFormat SelectedFormat(const Settings& settings, const WaveformSource& source) {
    TransferFormat format = {
        .encoding = static_cast<Encoding>(settings.Whole(SettingId::kOutputEncoding)),
        .format = static_cast<NumberFormat>(settings.Whole(SettingId::kOutputFormat)),
        .order = static_cast<ByteOrder>(settings.Whole(SettingId::kOutputOrder)),
        .width = static_cast<int>(settings.Whole(SettingId::kOutputWidth))};
    // A math waveform is made of floats and has no levels.
    if (source.kind == SourceKind::kMath) {
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
    const Record record =
        source.kind == SourceKind::kReference ? ReferenceRecord() : scope.CurrentRecord();
    return {.source = source,
            .record = record,
            .format = SelectedFormat(settings, source),
            .range = SelectedRange(settings, record.length)};
}

bool IsSourceSelected(const Oscilloscope& scope, const WaveformSource& source) {
    switch (source.kind) {
        case SourceKind::kChannel:
            return scope.settings().IsOn(SettingId::kSelectChannel, source.index);
        case SourceKind::kMath:
            return scope.settings().IsOn(SettingId::kSelectMath, source.index);
        case SourceKind::kReference:
            return scope.settings().IsOn(SettingId::kSelectReference, source.index);
    }
    return false;
}

}  // namespace virtual_scope
