// ACQuire and its neighbours: what is acquired, and when.
#include "virtual/acquisition.h"

#include "virtual/command_table.h"
#include "virtual/commands/families.h"
#include "virtual/oscilloscope.h"

namespace virtual_scope {
namespace {

constexpr std::string_view kModes = "SAMple|PEAKdetect|HIRes|ENVelope|AVErage|WFMDB";

void Restart(Oscilloscope& scope, int /*instance*/, const Value& /*value*/) {
    scope.RestartAcquisition();
}

Value IsRunning(Oscilloscope& scope, int /*instance*/) {
    return std::int64_t{scope.acquisition().IsRunning()};
}

void StartOrStop(Oscilloscope& scope, int /*instance*/, const Value& value) {
    if (std::get<std::int64_t>(value) != 0) {
        scope.StartAcquisition();
    } else {
        scope.StopAcquisition();
    }
}

// One family has no waveform database.
ScpiError CheckMode(Oscilloscope& scope, int /*instance*/, const Value& value) {
    const auto mode = static_cast<AcquisitionMode>(std::get<std::int64_t>(value));
    return mode == AcquisitionMode::kWaveformDatabase && scope.model().family == Family::kHeronB
               ? ScpiError::kSettingsConflict
               : ScpiError::kNone;
}

Value CompletedAcquisitions(Oscilloscope& scope, int /*instance*/) {
    return static_cast<std::int64_t>(scope.CompletedAcquisitions());
}

Value EnhancedState(Oscilloscope& scope, int /*instance*/) {
    return std::int64_t{scope.settings().IsOn(SettingId::kEnhancedBits)};
}

// The scales that show the signals on the inputs, which are those of power-on.
void AutoSet(Oscilloscope& scope, int /*instance*/, const Value& /*value*/) {
    for (const SettingId id :
         {SettingId::kChannelScale, SettingId::kChannelPosition, SettingId::kChannelOffset,
          SettingId::kChannelCoupling, SettingId::kHorizontalScale, SettingId::kHorizontalPosition,
          SettingId::kDelayMode}) {
        scope.settings().Reset(id);
    }
    scope.StartAcquisition();
}

}  // namespace

std::vector<CommandRow> AcquisitionCommands() {
    using enum SettingId;
    return {
        CommandRow("ACQuire:STATE", Flag{.onWord = "RUN", .offWord = "STOP"})
            .Get(IsRunning)
            .Then(StartOrStop),
        CommandRow("ACQuire:STOPAfter", Keyword{"RUNSTop|SEQuence"}).As(kStopAfter).Then(Restart),
        CommandRow("ACQuire:MODe", Keyword{kModes})
            .As(kAcquisitionMode)
            .Check(CheckMode)
            .Then(Restart),
        CommandRow("ACQuire:NUMAVg", Integer{2, 10240, 16}).As(kAverages).Then(Restart),
        CommandRow("ACQuire:NUMENv", Integer{1, 2'000'000'000, 10}).As(kEnvelopes).Then(Restart),
        CommandRow("ACQuire:NUMACq?", Integer{0, INT64_MAX, 0}).Get(CompletedAcquisitions),
        CommandRow("ACQuire:NUMSAMples", Integer{5000, 2'147'400'000, 16000}),
        CommandRow("ACQuire:NUMFRAMESACQuired?", Integer{0, INT64_MAX, 0}),
        CommandRow("ACQuire:SAMPLINGMode", Keyword{"RT|ET|IT"}),
        CommandRow("ACQuire:REPEt", Flag{}),
        CommandRow("ACQuire:MAGnivu", Flag{}),
        CommandRow("ACQuire:ENHANCEDEnob", Keyword{"OFF|AUTO"})
            .As(kEnhancedBits)
            .LackedBy(kOlderFamilies),
        CommandRow("ACQuire:ENHANCEDEnob:STATE?", Flag{})
            .Get(EnhancedState)
            .LackedBy(kOlderFamilies),
        CommandRow("AUTOSet", Keyword{"EXECute"}).SetOnly().Then(AutoSet),
        CommandRow("DENSEACQ:STATE", Flag{}).As(kDenseAcquisition).Then(Restart),
    };
}

}  // namespace virtual_scope
