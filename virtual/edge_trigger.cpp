#include "virtual/edge_trigger.h"

#include <cmath>

#include "virtual/commands/trigger_rows.h"
#include "virtual/digital.h"
#include "virtual/oscilloscope.h"
#include "virtual/signals.h"

namespace virtual_scope {
namespace {

constexpr int kFirstDigital = 6;  // of the words of the source: four channels, AUXiliary and LINE

}  // namespace

EdgeTrigger EdgeTriggerOf(const Oscilloscope& scope) {
    const Settings& settings = scope.settings();
    const auto type = static_cast<TriggerType>(settings.Whole(SettingId::kTriggerType));
    return {.isEdge = type == TriggerType::kEdge,
            .source = static_cast<int>(settings.Whole(SettingId::kEdgeSource)),
            .slope = static_cast<TriggerSlope>(settings.Whole(SettingId::kEdgeSlope)),
            .level = settings.Number(SettingId::kTriggerLevel)};
}

std::optional<double> FindTrigger(const Record& record, const EdgeTrigger& trigger) {
    if (!trigger.isEdge) {
        return 0.0;
    }
    const bool rising = trigger.slope != TriggerSlope::kFall;
    if (trigger.source < kMaxChannels) {
        return CrossingOfChannel(record, trigger.source, trigger.level, rising);
    }
    if (trigger.source < kFirstDigital) {
        return 0.0;
    }
    return DigitalEdge(trigger.source - kFirstDigital, rising);
}

double MiddleOf(const Record& record, int source) {
    if (source >= kMaxChannels) {
        return 0;
    }
    const VoltRange range = RangeOfChannel(record, source);
    return (range.low + range.high) / 2;
}

double UntriggeredShift(std::uint64_t acquisition) {
    constexpr double kGoldenRatio = 0.6180339887498949;  // leaves no two places close together
    constexpr double kSpread = 1e-3;
    const double turns = kGoldenRatio * static_cast<double>(acquisition % 1'000'000 + 1);
    return kSpread * (turns - std::floor(turns));
}

}  // namespace virtual_scope
