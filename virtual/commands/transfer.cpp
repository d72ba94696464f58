// DATa, WFMOutpre, WFMInpre and CURVe: waveforms on their way to a computer.
#include "virtual/transfer.h"

#include <string>

#include "virtual/command_table.h"
#include "virtual/oscilloscope.h"
#include "virtual/text.h"

namespace virtual_scope {
namespace {

constexpr std::string_view kDataEncodings =
    "ASCIi|FAStest|RIBinary|RPBinary|FPBinary|SRIbinary|SRPbinary|SFPbinary";
constexpr Keyword kEncoding = {"ASCii|BINary", 1};
constexpr Keyword kFormat = {"RI|RP|FP"};
constexpr Keyword kOrder = {"MSB|LSB"};
constexpr Integer kWidth = {1, 4, 1};
constexpr Integer kPoint = {1, INT32_MAX, 1};
constexpr Real kAnyReal = {-1e30, 1e30, 0};

// In the order of `kDataEncodings`.
enum class DataEncoding { kAscii, kFastest, kRi, kRp, kFp, kSri, kSrp, kSfp };

ScpiError CheckSource(Oscilloscope& scope, int /*instance*/, const Value& value) {
    const auto index = static_cast<int>(std::get<std::int64_t>(value) % kMaxChannels);
    return index < scope.model().channels ? ScpiError::kNone : ScpiError::kHardwareMissing;
}

ScpiError CheckWidth(Oscilloscope& /*scope*/, int /*instance*/, const Value& value) {
    return std::get<std::int64_t>(value) == 3 ? ScpiError::kIllegalParameterValue
                                              : ScpiError::kNone;
}

// One word for what WFMOutpre says in three.
void ApplyDataEncoding(Oscilloscope& scope, int /*instance*/, const Value& value) {
    using enum DataEncoding;
    const auto encoding = static_cast<DataEncoding>(std::get<std::int64_t>(value));
    Settings& settings = scope.settings();
    const bool ascii = encoding == kAscii;
    settings.Set(SettingId::kOutputEncoding, 0, std::int64_t{!ascii});
    if (ascii) {
        return;
    }
    const bool isUnsigned = encoding == kRp || encoding == kSrp;
    const bool isFloat = encoding == kFp || encoding == kSfp;
    const bool lsbFirst = encoding == kSri || encoding == kSrp || encoding == kSfp;
    settings.Set(SettingId::kOutputFormat, 0, std::int64_t{isFloat ? 2 : isUnsigned ? 1 : 0});
    settings.Set(SettingId::kOutputOrder, 0, std::int64_t{lsbFirst});
}

Value DataEncodingOf(Oscilloscope& scope, int /*instance*/) {
    using enum DataEncoding;
    const Settings& settings = scope.settings();
    if (settings.Whole(SettingId::kOutputEncoding) == 0) {
        return static_cast<std::int64_t>(kAscii);
    }
    const bool lsbFirst = settings.IsOn(SettingId::kOutputOrder);
    return static_cast<std::int64_t>(lsbFirst ? kSri : kRi) +
           settings.Whole(SettingId::kOutputFormat);
}

Value FormatOf(Oscilloscope& scope, int /*instance*/) {
    return static_cast<std::int64_t>(CurrentTransfer(scope).format.format);
}

Value WidthOf(Oscilloscope& scope, int /*instance*/) {
    return std::int64_t{CurrentTransfer(scope).format.width};
}

Value PointCount(Oscilloscope& scope, int /*instance*/) {
    return CurrentTransfer(scope).range.count;
}

Value PointFormat(Oscilloscope& scope, int /*instance*/) {
    return std::int64_t{CurrentTransfer(scope).record.HoldsPairs()};
}

Value Interval(Oscilloscope& scope, int /*instance*/) {
    return CurrentTransfer(scope).record.axis.interval;
}

Value TimeZero(Oscilloscope& scope, int /*instance*/) {
    return CurrentTransfer(scope).record.axis.zero;
}

Value TriggerPoint(Oscilloscope& scope, int /*instance*/) {
    return CurrentTransfer(scope).record.axis.trigger;
}

Value LevelMultiplier(Oscilloscope& scope, int /*instance*/) {
    return CurrentTransfer(scope).Scale().multiplier;
}

Value LevelOffset(Oscilloscope& scope, int /*instance*/) {
    return CurrentTransfer(scope).Scale().offset;
}

Value LevelZero(Oscilloscope& scope, int /*instance*/) {
    return CurrentTransfer(scope).Scale().zero;
}

Value Description(Oscilloscope& scope, int /*instance*/) {
    const Transfer transfer = CurrentTransfer(scope);
    const auto source = static_cast<std::size_t>(scope.settings().Whole(SettingId::kDataSource));
    const double duration =
        static_cast<double>(transfer.record.length) * transfer.record.axis.interval;
    return std::string(Split(kSourceWords, '|').at(source)) + ", " + FormatReal(duration) + " s, " +
           std::to_string(transfer.record.length) + " points";
}

Outcome Curve(Oscilloscope& scope, const Call& /*call*/) {
    const Transfer transfer = CurrentTransfer(scope);
    if (!IsSourceSelected(scope, transfer.source)) {
        return ScpiError::kSettingsConflict;
    }
    Outcome outcome = Outcome::Answer("");
    if (transfer.format.encoding == Encoding::kAscii) {
        outcome.reply->source = std::make_unique<AsciiCurve>(transfer.record, transfer.source,
                                                             transfer.format, transfer.range);
    } else {
        outcome.reply->source = std::make_unique<BinaryCurve>(transfer.record, transfer.source,
                                                              transfer.format, transfer.range);
    }
    return outcome;
}

}  // namespace

std::vector<CommandRow> TransferCommands() {
    using enum SettingId;
    return {
        CommandRow("DATa:SOUrce", Keyword{kSourceWords}).As(kDataSource).Check(CheckSource),
        CommandRow("DATa:DESTination", Keyword{"REF1|REF2|REF3|REF4"}).Check(CheckSource),
        CommandRow("DATa:STARt", kPoint).As(kDataStart),
        CommandRow("DATa:STOP", Integer{1, INT32_MAX, 10000}).As(kDataStop),
        CommandRow("DATa:ENCdg", Keyword{kDataEncodings})
            .Get(DataEncodingOf)
            .Then(ApplyDataEncoding),
        CommandRow("WFMOutpre:ENCdg", kEncoding).As(kOutputEncoding),
        CommandRow("WFMOutpre:BN_Fmt", kFormat).As(kOutputFormat).Get(FormatOf),
        CommandRow("WFMOutpre:BYT_Or", kOrder).As(kOutputOrder),
        CommandRow("WFMOutpre:BYT_Nr", kWidth).As(kOutputWidth).Check(CheckWidth).Get(WidthOf),
        CommandRow("WFMOutpre:NR_Pt?", kPoint).Get(PointCount),
        CommandRow("WFMOutpre:PT_Fmt?", Keyword{"Y|ENV"}).Get(PointFormat),
        CommandRow("WFMOutpre:PT_Off?", kPoint).Get(TriggerPoint),
        CommandRow("WFMOutpre:XINcr?", kAnyReal).Get(Interval),
        CommandRow("WFMOutpre:XZEro?", kAnyReal).Get(TimeZero),
        CommandRow("WFMOutpre:XUNit?", Text{"s"}),
        CommandRow("WFMOutpre:YMUlt?", kAnyReal).Get(LevelMultiplier),
        CommandRow("WFMOutpre:YOFf?", kAnyReal).Get(LevelOffset),
        CommandRow("WFMOutpre:YZEro?", kAnyReal).Get(LevelZero),
        CommandRow("WFMOutpre:YUNit?", Text{"V"}),
        CommandRow("WFMOutpre:WFId?", Text{}).Get(Description),
        CommandRow("WFMInpre:ENCdg", kEncoding),
        CommandRow("WFMInpre:BN_Fmt", kFormat),
        CommandRow("WFMInpre:BYT_Or", kOrder),
        CommandRow("WFMInpre:BYT_Nr", kWidth).Check(CheckWidth),
        CommandRow("WFMInpre:NR_Pt", Integer{1, INT32_MAX, 1000}),
        CommandRow("WFMInpre:PT_Fmt", Keyword{"Y|ENV"}),
        CommandRow("WFMInpre:PT_Off", Integer{INT32_MIN, INT32_MAX, 0}),
        CommandRow("WFMInpre:XINcr", Real{1e-30, 1e30, 4e-6}),
        CommandRow("WFMInpre:XZEro", kAnyReal),
        CommandRow("WFMInpre:XUNit", Text{"s", 10}),
        CommandRow("WFMInpre:YMUlt", Real{-1e30, 1e30, 1}),
        CommandRow("WFMInpre:YOFf", kAnyReal),
        CommandRow("WFMInpre:YZEro", kAnyReal),
        CommandRow("WFMInpre:YUNit", Text{"V", 10}),
        CommandRow("CURVe?", NoValue{}).Run(Curve),
    };
}

}  // namespace virtual_scope
