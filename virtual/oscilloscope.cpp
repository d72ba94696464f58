#include "virtual/oscilloscope.h"

#include <array>
#include <utility>

#include "virtual/command_table.h"
#include "virtual/edge_trigger.h"
#include "virtual/text.h"

namespace virtual_scope {
namespace {

int InstanceOf(const HeaderMatch& match) {
    return match.number < 0 ? 0 : match.number - match.firstNumber;
}

// The value is a word such as CH3, MATH4 or REF3 for a waveform that the model does not have.
bool NamesMissingChannel(const Spec& spec, const Value& value, int channels) {
    const auto* keyword = std::get_if<Keyword>(&spec);
    if (keyword == nullptr) {
        return false;
    }
    const std::string_view word =
        Split(keyword->words, '|').at(static_cast<std::size_t>(std::get<std::int64_t>(value)));
    for (const std::string_view kind : {"CH", "MATH", "REF"}) {
        const bool numbered = word.size() == kind.size() + 1 && IsDigit(word.back());
        if (numbered && word.starts_with(kind)) {
            return word.back() - '0' > channels;
        }
    }
    return false;
}

}  // namespace

Oscilloscope::Oscilloscope(const Model& model, std::function<TimePoint()> clock)
    : model_(model), clock_(std::move(clock)), settings_(TheCommandTable().rows) {
    references_.fill(InitialReference());
    SetInitialMath();
    StartAcquisition();
    completedRecord_ = MakeRecord(0);
}

Outcome Oscilloscope::Execute(const ProgramUnit& unit, HeaderPath& path, bool messageAvailable) {
    const HeaderMatch match = Find(unit, path);
    ScpiError error = unit.error != ScpiError::kNone ? unit.error : match.error;
    if (error == ScpiError::kNone) {
        error = CheckForm(unit, match);
    }
    Outcome outcome(error);
    if (error == ScpiError::kNone) {
        outcome = Run(unit, match, messageAvailable);
    }
    if (outcome.error != ScpiError::kNone) {
        status_.Report(outcome.error);
    }
    return outcome;
}

HeaderMatch Oscilloscope::Find(const ProgramUnit& unit, HeaderPath& path) const {
    if (unit.error != ScpiError::kNone) {
        return {};
    }
    if (unit.IsCommon()) {
        return TheCommandTable().tree.Find(unit.words);
    }
    HeaderPath words = unit.fromRoot ? HeaderPath() : path;
    words.insert(words.end(), unit.words.begin(), unit.words.end());
    HeaderMatch match = TheCommandTable().tree.Find(words);
    if (match.row != nullptr) {
        words.pop_back();
        path = std::move(words);
    }
    return match;
}

ScpiError Oscilloscope::CheckForm(const ProgramUnit& unit, const HeaderMatch& match) const {
    const CommandRow& row = *match.row;
    if (unit.query ? row.setOnly : row.IsQueryOnly()) {
        return ScpiError::kUndefinedHeader;
    }
    const bool takesValue = !unit.query && !std::holds_alternative<NoValue>(row.spec);
    const bool takesAny = !unit.query && row.takesAny;
    if (!takesAny && unit.parameters.size() > (takesValue ? 1U : 0U)) {
        return ScpiError::kParameterNotAllowed;
    }
    if ((takesValue || takesAny) && unit.parameters.empty()) {
        return ScpiError::kMissingParameter;
    }
    if (match.perChannel && match.number > model_.channels) {
        return ScpiError::kHardwareMissing;
    }
    if ((row.lackedBy & Families(model_.family)) != 0) {
        return ScpiError::kSettingsConflict;
    }
    return row.refuse == nullptr ? ScpiError::kNone : row.refuse(*this, InstanceOf(match));
}

Outcome Oscilloscope::Run(const ProgramUnit& unit, const HeaderMatch& match,
                          bool messageAvailable) {
    const int instance = InstanceOf(match);
    Outcome outcome;
    if (match.row->run != nullptr) {
        outcome = match.row->run(*this, {.instance = instance,
                                         .query = unit.query,
                                         .messageAvailable = messageAvailable,
                                         .parameters = unit.parameters});
    } else if (unit.query) {
        outcome = Ask(match, instance);
    } else {
        outcome = Store(unit, match, instance);
    }
    if (outcome.reply && !unit.IsCommon()) {
        AddHeader(match, *outcome.reply);
    }
    return outcome;
}

Outcome Oscilloscope::Ask(const HeaderMatch& match, int instance) {
    const CommandRow& row = *match.row;
    const Value value =
        row.get != nullptr ? row.get(*this, instance) : settings_.Get(match.rowNumber, instance);
    return Outcome::Answer(FormatValue(row.spec, value, settings_.IsOn(SettingId::kVerbose)));
}

Outcome Oscilloscope::Store(const ProgramUnit& unit, const HeaderMatch& match, int instance) {
    const CommandRow& row = *match.row;
    Value value;
    ScpiError error = ParseValue(row.spec, unit.parameters.front(), value);
    if (error == ScpiError::kNone && NamesMissingChannel(row.spec, value, model_.channels)) {
        error = ScpiError::kHardwareMissing;
    }
    if (error == ScpiError::kNone && row.check != nullptr) {
        error = row.check(*this, instance, value);
    }
    if (error != ScpiError::kNone) {
        return error;
    }
    settings_.Set(match.rowNumber, instance, value);
    if (row.then != nullptr) {
        row.then(*this, instance, value);
    }
    return {};
}

void Oscilloscope::AddHeader(const HeaderMatch& match, Reply& reply) const {
    if (!settings_.IsOn(SettingId::kHeader)) {
        return;
    }
    const bool verbose = settings_.IsOn(SettingId::kVerbose);
    reply.text.insert(0, (verbose ? match.longHeader : match.shortHeader) + ' ');
}

void Oscilloscope::CatchUp() {
    if (!acquisition_.Update(clock_())) {
        return;
    }
    completedRecord_ = MakeRecord(AcquisitionNumber());
    if (std::exchange(announceCompletion_, false)) {
        status_.SetEvent(kOperationComplete);
    }
}

void Oscilloscope::Reset() {
    announceCompletion_ = false;
    settings_.Reset();
    SetInitialMath();
    StartAcquisition();
    ResetStatistics();
}

void Oscilloscope::ClearStatus() {
    announceCompletion_ = false;
    status_.Clear();
}

void Oscilloscope::AnnounceCompletion() {
    if (IsOperationPending()) {
        announceCompletion_ = true;
        return;
    }
    status_.SetEvent(kOperationComplete);
}

void Oscilloscope::StartAcquisition() {
    earlier_ += CompletedAcquisitions();
    if (settings_.IsOn(SettingId::kStopAfter)) {
        acquisition_.StartSequence(clock_(), Timing());
    } else {
        acquisition_.StartContinuous(clock_(), Timing());
    }
}

void Oscilloscope::StopAcquisition() {
    if (!acquisition_.IsRunning()) {
        return;
    }
    const bool continuous = !acquisition_.IsSequenceRunning();
    acquisition_.Stop(clock_());
    if (continuous) {
        completedRecord_ = MakeRecord(AcquisitionNumber());
    }
    // A sequence that was broken off is no longer pending.
    if (std::exchange(announceCompletion_, false)) {
        status_.SetEvent(kOperationComplete);
    }
}

void Oscilloscope::RestartAcquisition() {
    if (acquisition_.IsRunning()) {
        StartAcquisition();
    }
}

void Oscilloscope::ForceTrigger() {
    const bool waited = acquisition_.IsWaiting();
    acquisition_.Force(clock_());
    if (waited && !acquisition_.IsSequenceRunning()) {
        completedRecord_ = MakeRecord(AcquisitionNumber());
    }
    CatchUp();
}

std::uint64_t Oscilloscope::StatisticsCount() const {
    return AcquisitionNumber() - statisticsStart_;
}

void Oscilloscope::ResetStatistics() {
    statisticsStart_ = AcquisitionNumber();
}

void Oscilloscope::SetMath(int index, MathPointer definition) {
    math_.at(static_cast<std::size_t>(index)) = std::move(definition);
    completedRecord_.math = math_;
}

void Oscilloscope::SetReference(int index, StoredPointer waveform) {
    references_.at(static_cast<std::size_t>(index)) = std::move(waveform);
    completedRecord_.references = references_;
}

void Oscilloscope::SetInitialMath() {
    for (int i = 0; i < model_.channels; ++i) {
        const std::string& text = settings_.String(SettingId::kMathDefinition, i);
        MathPointer definition;
        if (ParseMath(text, i, model_.channels, definition) == ScpiError::kNone) {
            SetMath(i, std::move(definition));
        }
    }
}

std::uint64_t Oscilloscope::CompletedAcquisitions() const {
    return acquisition_.Completed(clock_());
}

Record Oscilloscope::CurrentRecord() const {
    if (acquisition_.IsRunning() && !acquisition_.IsSequenceRunning() &&
        !acquisition_.IsWaiting()) {
        return MakeRecord(AcquisitionNumber());
    }
    return completedRecord_;
}

std::int64_t Oscilloscope::AcquisitionsOf(AcquisitionMode mode) const {
    switch (mode) {
        case AcquisitionMode::kAverage:
            return settings_.Whole(SettingId::kAverages);
        case AcquisitionMode::kEnvelope:
            return settings_.Whole(SettingId::kEnvelopes);
        default:
            return 1;
    }
}

AcquisitionTiming Oscilloscope::Timing() const {
    const auto mode = static_cast<AcquisitionMode>(settings_.Whole(SettingId::kAcquisitionMode));
    const std::int64_t acquisitions = AcquisitionsOf(mode);
    AcquisitionTiming timing =
        TimingOf(kDivisions * settings_.Number(SettingId::kHorizontalScale), acquisitions);
    const bool waits = settings_.IsOn(SettingId::kTriggerMode);
    timing.triggered = !waits || FindTrigger(MakeRecord(0), EdgeTriggerOf(*this)).has_value();
    return timing;
}

Record Oscilloscope::MakeRecord(std::uint64_t acquisition) const {
    Record record;
    record.acquisition = acquisition;
    record.length = settings_.Whole(SettingId::kRecordLength);
    record.mode = static_cast<AcquisitionMode>(settings_.Whole(SettingId::kAcquisitionMode));
    record.acquisitions = AcquisitionsOf(record.mode);
    record.dense = settings_.IsOn(SettingId::kDenseAcquisition);
    const auto length = static_cast<double>(record.length);
    record.axis.interval = kDivisions * settings_.Number(SettingId::kHorizontalScale) / length;
    const bool delayed = settings_.IsOn(SettingId::kDelayMode);
    record.axis.zero = delayed ? settings_.Number(SettingId::kDelayTime) : 0.0;
    const double percent =
        settings_.Number(delayed ? SettingId::kDelayPosition : SettingId::kHorizontalPosition);
    record.axis.trigger = static_cast<std::int64_t>(length * percent / 100);
    for (int i = 0; i < kMaxChannels; ++i) {
        record.channels.at(static_cast<std::size_t>(i)) = {
            .scale = settings_.Number(SettingId::kChannelScale, i),
            .position = settings_.Number(SettingId::kChannelPosition, i),
            .offset = settings_.Number(SettingId::kChannelOffset, i),
            .coupling = static_cast<Coupling>(settings_.Whole(SettingId::kChannelCoupling, i))};
    }
    for (std::size_t i = 0; i < record.thresholds.size(); ++i) {
        record.thresholds[i] = settings_.Number(SettingId::kDigitalThreshold, static_cast<int>(i));
    }
    record.math = math_;
    record.references = references_;
    const std::optional<double> trigger = FindTrigger(record, EdgeTriggerOf(*this));
    record.triggered = trigger.has_value();
    record.shift = trigger.value_or(UntriggeredShift(acquisition));
    return record;
}

}  // namespace virtual_scope
