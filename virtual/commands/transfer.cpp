// DATa, WFMOutpre, WFMInpre and CURVe: waveforms on their way to a computer.
#include "virtual/transfer.h"

#include <span>
#include <string>
#include <utility>

#include "virtual/command_table.h"
#include "virtual/digital.h"
#include "virtual/oscilloscope.h"
#include "virtual/pixel_map.h"
#include "virtual/text.h"
#include "virtual/upload.h"

namespace virtual_scope {
namespace {

constexpr std::string_view kDataEncodings =
    "ASCIi|FAStest|RIBinary|RPBinary|FPBinary|SRIbinary|SRPbinary|SFPbinary";
constexpr std::string_view kDataSourceWords =
    "CH1|CH2|CH3|CH4|MATH1|MATH2|MATH3|MATH4|REF1|REF2|REF3|REF4|DIGitalall";
constexpr Keyword kEncoding = {"ASCii|BINary", 1};
constexpr Keyword kFormat = {"RI|RP|FP"};
constexpr Keyword kOrder = {"MSB|LSB"};
constexpr Integer kWidth = {1, 4, 1};
constexpr Integer kPoint = {1, INT32_MAX, 1};
constexpr Real kAnyReal = {-1e30, 1e30, 0};

// In the order of `kDataEncodings`.
enum class DataEncoding { kAscii, kFastest, kRi, kRp, kFp, kSri, kSrp, kSfp };

ScpiError CheckWidth(Oscilloscope& /*scope*/, int /*instance*/, const Value& value) {
    return std::get<std::int64_t>(value) == 3 ? ScpiError::kIllegalParameterValue
                                              : ScpiError::kNone;
}

// A point in floating point has four bytes, so that a narrower one is a level again.
void LeaveFloats(Oscilloscope& scope, int /*instance*/, const Value& value) {
    constexpr std::int64_t kFloatWidth = 4;
    const auto format = static_cast<NumberFormat>(scope.settings().Whole(SettingId::kOutputFormat));
    if (std::get<std::int64_t>(value) < kFloatWidth && format == NumberFormat::kFloat) {
        scope.settings().Set(SettingId::kOutputFormat, 0,
                             static_cast<std::int64_t>(NumberFormat::kSigned));
    }
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
    const std::string_view word = Split(kDataSourceWords, '|').at(source);
    return ToUpper(word) + ", " + FormatReal(duration) + " s, " +
           std::to_string(transfer.record.length) + " points";
}

std::unique_ptr<ByteSource> MakeCurve(const Oscilloscope& scope, const Transfer& transfer) {
    if (transfer.map) {
        return std::make_unique<MapCurve>(
            MakeMap(transfer.record, transfer.source.index, MapSizeOf(scope.model().family)),
            transfer.format.order);
    }
    if (transfer.source.kind == SourceKind::kDigital) {
        return std::make_unique<DigitalCurve>(transfer.record, transfer.format, transfer.range);
    }
    if (transfer.format.encoding == Encoding::kAscii) {
        return std::make_unique<AsciiCurve>(transfer.record, transfer.source, transfer.format,
                                            transfer.range);
    }
    return std::make_unique<BinaryCurve>(transfer.record, transfer.source, transfer.format,
                                         transfer.range);
}

Outcome SendCurve(const Oscilloscope& scope) {
    const Transfer transfer = CurrentTransfer(scope);
    if (!IsSourceSelected(scope, transfer.source)) {
        return ScpiError::kSettingsConflict;
    }
    Outcome outcome = Outcome::Answer("");
    outcome.reply->source = MakeCurve(scope, transfer);
    return outcome;
}

// Points for the reference memory that DATa:DESTination names.
Outcome ReceiveCurve(Oscilloscope& scope, std::span<const std::string> parameters) {
    StoredPointer waveform;
    const ScpiError error = ReadUpload(UploadFormatOf(scope.settings()), parameters, waveform);
    if (error == ScpiError::kNone) {
        const auto index = static_cast<int>(scope.settings().Whole(SettingId::kDataDestination));
        scope.SetReference(index, std::move(waveform));
    }
    return error;
}

Outcome Curve(Oscilloscope& scope, const Call& call) {
    return call.query ? SendCurve(scope) : ReceiveCurve(scope, call.parameters);
}

}  // namespace

std::vector<CommandRow> TransferCommands() {
    using enum SettingId;
    return {
        CommandRow("DATa:SOUrce", Keyword{kDataSourceWords}).As(kDataSource),
        CommandRow("DATa:DESTination", Keyword{"REF1|REF2|REF3|REF4"}).As(kDataDestination),
        CommandRow("DATa:STARt", kPoint).As(kDataStart),
        CommandRow("DATa:STOP", Integer{1, INT32_MAX, 10000}).As(kDataStop),
        CommandRow("DATa:ENCdg", Keyword{kDataEncodings})
            .Get(DataEncodingOf)
            .Then(ApplyDataEncoding),
        CommandRow("WFMOutpre:ENCdg", kEncoding).As(kOutputEncoding),
        CommandRow("WFMOutpre:BN_Fmt", kFormat).As(kOutputFormat).Get(FormatOf),
        CommandRow("WFMOutpre:BYT_Or", kOrder).As(kOutputOrder),
        CommandRow("WFMOutpre:BYT_Nr", kWidth)
            .As(kOutputWidth)
            .Check(CheckWidth)
            .Get(WidthOf)
            .Then(LeaveFloats),
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
        CommandRow("WFMInpre:BN_Fmt", kFormat).As(kInputFormat),
        CommandRow("WFMInpre:BYT_Or", kOrder).As(kInputOrder),
        CommandRow("WFMInpre:BYT_Nr", kWidth).As(kInputWidth).Check(CheckWidth),
        CommandRow("WFMInpre:NR_Pt", Integer{1, INT32_MAX, 1000}).As(kInputPoints),
        CommandRow("WFMInpre:PT_Fmt", Keyword{"Y|ENV"}),
        CommandRow("WFMInpre:PT_Off", Integer{INT32_MIN, INT32_MAX, 0}).As(kInputTrigger),
        CommandRow("WFMInpre:XINcr", Real{1e-30, 1e30, 4e-6}).As(kInputInterval),
        CommandRow("WFMInpre:XZEro", kAnyReal).As(kInputTimeZero),
        CommandRow("WFMInpre:XUNit", Text{"s", 10}),
        CommandRow("WFMInpre:YMUlt", Real{-1e30, 1e30, 1}).As(kInputMultiplier),
        CommandRow("WFMInpre:YOFf", kAnyReal).As(kInputOffset),
        CommandRow("WFMInpre:YZEro", kAnyReal).As(kInputZero),
        CommandRow("WFMInpre:YUNit", Text{"V", 10}),
        CommandRow("CURVe", NoValue{}).TakesAny().Run(Curve),
    };
}

}  // namespace virtual_scope
