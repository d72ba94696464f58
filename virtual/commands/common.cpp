// The common commands of IEEE 488.2, the status beside them, and the form of the answers.
#include <string>

#include "virtual/command_table.h"
#include "virtual/oscilloscope.h"
#include "virtual/text.h"

namespace virtual_scope {
namespace {

constexpr Integer kRegister = {0, 255, 0};

std::uint8_t Mask(const Value& value) {
    return static_cast<std::uint8_t>(std::get<std::int64_t>(value));
}

Outcome Identify(Oscilloscope& scope, const Call& /*call*/) {
    return Outcome::Answer("KESTRION," + std::string(scope.model().name) + ",V000001,1.0.0");
}

Outcome Reset(Oscilloscope& scope, const Call& /*call*/) {
    scope.Reset();
    return {};
}

Outcome ClearStatus(Oscilloscope& scope, const Call& /*call*/) {
    scope.ClearStatus();
    return {};
}

Outcome OperationComplete(Oscilloscope& scope, const Call& call) {
    if (!call.query) {
        scope.AnnounceCompletion();
        return {};
    }
    return scope.IsOperationPending() ? Outcome::Wait() : Outcome::Answer("1");
}

Outcome WaitToContinue(Oscilloscope& scope, const Call& /*call*/) {
    return scope.IsOperationPending() ? Outcome::Wait() : Outcome();
}

Outcome Trigger(Oscilloscope& scope, const Call& /*call*/) {
    scope.StartAcquisition();
    return {};
}

Value TakeEvents(Oscilloscope& scope, int /*instance*/) {
    return std::int64_t{scope.status().TakeEvents()};
}

Outcome StatusByte(Oscilloscope& scope, const Call& call) {
    const Status& status = scope.status();
    unsigned byte = status.Summary(call.messageAvailable);
    if ((byte & status.serviceEnable()) != 0) {
        byte |= kRequestService;
    }
    return Outcome::Answer(std::to_string(byte));
}

Outcome NextError(Oscilloscope& scope, const Call& /*call*/) {
    const ScpiError error = scope.status().TakeError();
    return Outcome::Answer(std::to_string(static_cast<int>(error)) + ',' + Quote(ErrorText(error)));
}

Value EventEnable(Oscilloscope& scope, int /*instance*/) {
    return std::int64_t{scope.status().eventEnable()};
}

void SetEventEnable(Oscilloscope& scope, int /*instance*/, const Value& value) {
    scope.status().setEventEnable(Mask(value));
}

Value ServiceEnable(Oscilloscope& scope, int /*instance*/) {
    return std::int64_t{scope.status().serviceEnable()};
}

void SetServiceEnable(Oscilloscope& scope, int /*instance*/, const Value& value) {
    scope.status().setServiceEnable(Mask(value));
}

Value DeviceEnable(Oscilloscope& scope, int /*instance*/) {
    return std::int64_t{scope.status().deviceEnable()};
}

void SetDeviceEnable(Oscilloscope& scope, int /*instance*/, const Value& value) {
    scope.status().setDeviceEnable(Mask(value));
}

}  // namespace

std::vector<CommandRow> CommonCommands() {
    return {
        CommandRow("*IDN?", NoValue{}).Run(Identify),
        CommandRow("*RST", NoValue{}).Run(Reset).SetOnly(),
        CommandRow("*CLS", NoValue{}).Run(ClearStatus).SetOnly(),
        CommandRow("*OPC", NoValue{}).Run(OperationComplete),
        CommandRow("*WAI", NoValue{}).Run(WaitToContinue).SetOnly(),
        CommandRow("*TRG", NoValue{}).Run(Trigger).SetOnly(),
        CommandRow("*ESE", kRegister).Get(EventEnable).Then(SetEventEnable),
        CommandRow("*ESR?", kRegister).Get(TakeEvents),
        CommandRow("*SRE", kRegister).Get(ServiceEnable).Then(SetServiceEnable),
        CommandRow("*STB?", NoValue{}).Run(StatusByte),
        CommandRow("*TST?", Integer{0, 0, 0}),
        CommandRow("*CAL?", Integer{0, 0, 0}),
        CommandRow("DESE", kRegister).Get(DeviceEnable).Then(SetDeviceEnable),
        CommandRow("SYSTem:ERRor[:NEXT]?", NoValue{}).Run(NextError),
        CommandRow("HEADer", Flag{.initial = true}).As(SettingId::kHeader),
        CommandRow("VERBose", Flag{.initial = true}).As(SettingId::kVerbose),
    };
}

}  // namespace virtual_scope
