#include "virtual/measure_points.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "virtual/curve.h"
#include "virtual/transfer.h"

namespace virtual_scope {
namespace {

constexpr std::int64_t kMostPoints = 1'000'000;
constexpr std::uint64_t kStatisticsDepth = 32;
constexpr std::int64_t kHistogramSource = 12;  // of the words of a source: it has no waveform

// In the order of the words of MEASUrement:GATing; from `kZoom1` on it is a zoom area.
enum class Gating : std::uint8_t { kOff, kOn, kCursor, kZoom1 };

struct Gate {
    std::int64_t first;
    std::int64_t end;
};

Gate Held(double first, double last, std::int64_t length) {
    const auto most = static_cast<double>(length);
    return {static_cast<std::int64_t>(std::clamp(std::ceil(first), 0.0, most)),
            static_cast<std::int64_t>(std::clamp(std::floor(last) + 1, 0.0, most))};
}

Gate CursorGate(const Settings& settings, const Record& record) {
    const auto placeOf = [&](int cursor) {
        const double time = settings.Number(SettingId::kCursorTime, cursor);
        return (time - record.axis.At(0)) / record.axis.interval;
    };
    const auto [first, last] = std::minmax({placeOf(0), placeOf(1)});
    return Held(first, last, record.length);
}

Gate ZoomGate(const Settings& settings, const Record& record, const WaveformSource& source) {
    using enum SettingId;
    constexpr std::pair<SettingId, SettingId> kIds[] = {
        {kZoomChannelPosition, kZoomChannelScale},
        {kZoomMathPosition, kZoomMathScale},
        {kZoomReferencePosition, kZoomReferenceScale}};
    const auto [position, scale] = kIds[static_cast<std::size_t>(source.kind)];
    const auto length = static_cast<double>(record.length);
    const double centre = length * settings.Number(position, source.index) / 100;
    const double half = length / settings.Number(scale, source.index) / 2;
    return Held(centre - half, centre + half - 1, record.length);
}

Gate GateOf(const Settings& settings, const Record& record, const WaveformSource& source) {
    const auto gating = static_cast<Gating>(settings.Whole(SettingId::kGating));
    switch (gating) {
        case Gating::kOff:
            return {0, record.length};
        case Gating::kOn:
        case Gating::kCursor:
            return CursorGate(settings, record);
        default:
            return ZoomGate(settings, record, source);
    }
}

// The same time in fewer points.
void Thin(Record& record) {
    const std::int64_t step = (record.length + kMostPoints - 1) / kMostPoints;
    if (step == 1) {
        return;
    }
    record.axis.zero = record.axis.At(0);
    record.axis.trigger = 0;
    record.axis.interval *= static_cast<double>(step);
    record.length /= step;
}

MeasuredPoints PointsOf(const Oscilloscope& scope, std::int64_t word, std::uint64_t ago) {
    MeasuredPoints points;
    const WaveformSource source = {.kind = static_cast<SourceKind>(word / kMaxChannels),
                                   .index = static_cast<int>(word % kMaxChannels)};
    if (word == kHistogramSource || !IsSourceSelected(scope, source)) {
        return points;
    }
    Record record = scope.CurrentRecord().Earlier(ago);
    if (source.kind == SourceKind::kReference) {
        record = ReferenceRecord(record, source.index);
    }
    Thin(record);
    const Gate gate = GateOf(scope.settings(), record, source);
    points.start = record.axis.At(gate.first);
    points.interval = record.axis.interval;
    PointMaker maker(record, source);
    for (std::int64_t at = gate.first; at < gate.end;) {
        std::int64_t first = 0;
        const std::span<const double> block = maker.Block(at, first);
        const std::int64_t stop =
            std::min(gate.end, first + static_cast<std::int64_t>(block.size()));
        points.volts.insert(points.volts.end(), block.begin() + (at - first),
                            block.begin() + (stop - first));
        at = stop;
    }
    return points;
}

LevelSetup SetupOf(const Settings& settings, const MeasurementIds& ids, int instance) {
    const auto number = [&](SettingId id) { return settings.Number(id, instance); };
    return {.method = static_cast<LevelMethod>(settings.Whole(ids.method, instance)),
            .unit = static_cast<LevelUnit>(settings.Whole(ids.unit, instance)),
            .percent = {number(ids.percentHigh), number(ids.percentLow), number(ids.percentMid),
                        number(ids.percentMid2)},
            .absolute = {number(ids.absoluteHigh), number(ids.absoluteLow), number(ids.absoluteMid),
                         number(ids.absoluteMid2)}};
}

}  // namespace

const MeasurementIds kImmediateIds = {
    SettingId::kImmediateSource1,      SettingId::kImmediateSource2,
    SettingId::kImmediateType,         SettingId::kImmediateDirection,
    SettingId::kImmediateEdge1,        SettingId::kImmediateEdge2,
    SettingId::kImmediateMethod,       SettingId::kImmediateUnit,
    SettingId::kImmediatePercentHigh,  SettingId::kImmediatePercentLow,
    SettingId::kImmediatePercentMid,   SettingId::kImmediatePercentMid2,
    SettingId::kImmediateAbsoluteHigh, SettingId::kImmediateAbsoluteLow,
    SettingId::kImmediateAbsoluteMid,  SettingId::kImmediateAbsoluteMid2};

const MeasurementIds kSlotIds = {
    SettingId::kSlotSource1,      SettingId::kSlotSource2,     SettingId::kSlotType,
    SettingId::kSlotDirection,    SettingId::kSlotEdge1,       SettingId::kSlotEdge2,
    SettingId::kSlotMethod,       SettingId::kSlotUnit,        SettingId::kSlotPercentHigh,
    SettingId::kSlotPercentLow,   SettingId::kSlotPercentMid,  SettingId::kSlotPercentMid2,
    SettingId::kSlotAbsoluteHigh, SettingId::kSlotAbsoluteLow, SettingId::kSlotAbsoluteMid,
    SettingId::kSlotAbsoluteMid2};

double MeasureNow(const Oscilloscope& scope, const MeasurementIds& ids, int instance,
                  std::uint64_t acquisitionsAgo) {
    const Settings& settings = scope.settings();
    const auto type = static_cast<MeasurementType>(settings.Whole(ids.type, instance));
    const LevelSetup setup = SetupOf(settings, ids, instance);
    const auto points = [&](SettingId source) {
        return PointsOf(scope, settings.Whole(source, instance), acquisitionsAgo);
    };
    if (type == MeasurementType::kDelay) {
        return MeasureDelay(points(ids.source1), points(ids.source2), setup,
                            {.firstRises = settings.IsOn(ids.edge1, instance),
                             .secondRises = settings.IsOn(ids.edge2, instance),
                             .backwards = settings.IsOn(ids.direction, instance)});
    }
    if (type == MeasurementType::kPhase) {
        return MeasurePhase(points(ids.source1), points(ids.source2), setup);
    }
    return Measure(type, points(ids.source1), setup);
}

Statistics StatisticsOf(const Oscilloscope& scope, const MeasurementIds& ids, int instance) {
    const std::uint64_t count = std::min(scope.StatisticsCount(), kStatisticsDepth);
    std::vector<double> values;
    for (std::uint64_t ago = 0; ago < count; ++ago) {
        const double value = MeasureNow(scope, ids, instance, ago);
        if (value != kNotANumber) {
            values.push_back(value);
        }
    }
    if (values.empty()) {
        return {};
    }
    const auto [minimum, maximum] = std::ranges::minmax(values);
    const auto number = static_cast<double>(values.size());
    double sum = 0;
    double squares = 0;
    for (const double value : values) {
        sum += value - minimum;
        squares += (value - minimum) * (value - minimum);
    }
    const double variance = squares / number - (sum / number) * (sum / number);
    return {.minimum = minimum,
            .maximum = maximum,
            .mean = minimum + sum / number,
            .deviation = std::sqrt(std::max(variance, 0.0))};
}

}  // namespace virtual_scope
