// MEASUrement: the immediate measurement, the slots, their reference levels and statistics.
#include <string>

#include "virtual/command_table.h"
#include "virtual/commands/rows.h"
#include "virtual/measure_points.h"

namespace virtual_scope {
namespace {

constexpr std::string_view kSources =
    "CH1|CH2|CH3|CH4|MATH1|MATH2|MATH3|MATH4|REF1|REF2|REF3|REF4|HIStogram";
constexpr Keyword kMethod = {"HIStogram|MINMax|MEAN"};
constexpr Keyword kUnit = {"ABSolute|PERCent", 1};
constexpr Keyword kEdge = {"FALL|RISe", 1};
constexpr std::string_view kGatings = "OFF|ON|CURSor|ZOOM1|ZOOM2|ZOOM3|ZOOM4|ZOOM";
constexpr std::string_view kAnnotated = "OFF|MEAS1|MEAS2|MEAS3|MEAS4|MEAS5|MEAS6|MEAS7|MEAS8";
constexpr Real kValue = {-1e38, 1e38, 0};
constexpr Real kLevel = {-1e6, 1e6, 0};

// The older of the two Heron families has fewer methods and gates.
ScpiError CheckMethod(Oscilloscope& scope, int /*instance*/, const Value& value) {
    const bool mean = static_cast<LevelMethod>(std::get<std::int64_t>(value)) == LevelMethod::kMean;
    return mean && scope.model().family == Family::kHeron ? ScpiError::kSettingsConflict
                                                          : ScpiError::kNone;
}

ScpiError CheckGating(Oscilloscope& scope, int /*instance*/, const Value& value) {
    const std::int64_t gating = std::get<std::int64_t>(value);
    const bool numberedZoom = gating >= 3 && gating <= 6;
    return numberedZoom && scope.model().family == Family::kHeron ? ScpiError::kSettingsConflict
                                                                  : ScpiError::kNone;
}

constexpr Real Percent(double initial) {
    return {0, 100, initial};
}

template <const MeasurementIds& ids>
Value ValueOf(Oscilloscope& scope, int instance) {
    return MeasureNow(scope, ids, instance);
}

template <const MeasurementIds& ids>
Value UnitsOf(Oscilloscope& scope, int instance) {
    const auto type = static_cast<MeasurementType>(scope.settings().Whole(ids.type, instance));
    return std::string(UnitOf(type));
}

template <double Statistics::*field>
Value StatisticOf(Oscilloscope& scope, int slot) {
    return StatisticsOf(scope, kSlotIds, slot).*field;
}

Value CountOf(Oscilloscope& scope, int /*slot*/) {
    return static_cast<std::int64_t>(scope.StatisticsCount());
}

void ResetCount(Oscilloscope& scope, int /*instance*/, const Value& /*value*/) {
    scope.ResetStatistics();
}

// What the immediate measurement and the slots have in common.
template <const MeasurementIds& ids>
std::vector<CommandRow> SubjectRows(MeasurementType type) {
    return {
        CommandRow("SOUrce1", Keyword{kSources}).As(ids.source1),
        CommandRow("SOUrce2", Keyword{kSources, 1}).As(ids.source2),
        CommandRow("TYPe", Keyword{kMeasurementWords, static_cast<std::int64_t>(type)})
            .As(ids.type),
        CommandRow("DELay:DIREction", Keyword{"FORWards|BACKWards"}).As(ids.direction),
        CommandRow("DELay:EDGE1", kEdge).As(ids.edge1),
        CommandRow("DELay:EDGE2", kEdge).As(ids.edge2),
        CommandRow("NOISe", Keyword{"HIGH|LOW"}),
        CommandRow("VALue?", kValue).Get(ValueOf<ids>),
        CommandRow("UNIts?", Text{}).Get(UnitsOf<ids>),
    };
}

std::vector<CommandRow> LevelRows(const MeasurementIds& ids) {
    return {
        CommandRow("METHod", kMethod).As(ids.method).Check(CheckMethod),
        CommandRow("REFLevel:METHod", kUnit).As(ids.unit),
        CommandRow("REFLevel:PERCent:HIGH", Percent(90)).As(ids.percentHigh),
        CommandRow("REFLevel:PERCent:LOW", Percent(10)).As(ids.percentLow),
        CommandRow("REFLevel:PERCent:MID", Percent(50)).As(ids.percentMid),
        CommandRow("REFLevel:PERCent:MID2", Percent(50)).As(ids.percentMid2),
        CommandRow("REFLevel:ABSolute:HIGH", kLevel).As(ids.absoluteHigh),
        CommandRow("REFLevel:ABSolute:LOW", kLevel).As(ids.absoluteLow),
        CommandRow("REFLevel:ABSolute:MID", kLevel).As(ids.absoluteMid),
        CommandRow("REFLevel:ABSolute:MID2", kLevel).As(ids.absoluteMid2),
    };
}

std::vector<CommandRow> SlotRows() {
    return {
        CommandRow("STATE", Flag{}),
        CommandRow("COUNt?", Integer{0, INT64_MAX, 0}).Get(CountOf),
        CommandRow("MAXimum?", kValue).Get(StatisticOf<&Statistics::maximum>),
        CommandRow("MEAN?", kValue).Get(StatisticOf<&Statistics::mean>),
        CommandRow("MINImum?", kValue).Get(StatisticOf<&Statistics::minimum>),
        CommandRow("STDdev?", kValue).Get(StatisticOf<&Statistics::deviation>),
    };
}

}  // namespace

std::vector<CommandRow> MeasurementCommands() {
    std::vector<CommandRow> rows = {
        CommandRow("MEASUrement:GATing", Keyword{kGatings})
            .As(SettingId::kGating)
            .Check(CheckGating),
        CommandRow("MEASUrement:SOUrce<x>:SIGType", Keyword{"PULSe|EYE"}),
        CommandRow("MEASUrement:STATIstics:MODe", Keyword{"OFF|ALL|VALUEMean|MINMax|MEANSTDdev"}),
        CommandRow("MEASUrement:STATIstics:COUNt", Keyword{"RESET"}).SetOnly().Then(ResetCount),
        CommandRow("MEASUrement:ANNOTation:IMMEDSTATE", Flag{}),
        CommandRow("MEASUrement:ANNOTation:STATE", Keyword{kAnnotated}),
        CommandRow("MEASUrement:ANNOTation:TYPe", Keyword{"STANdard|DETAILed"}),
        CommandRow("MEASUrement:ANNOTation:NUMX?", Integer{0, 6, 0}),
        CommandRow("MEASUrement:ANNOTation:NUMY?", Integer{0, 6, 0}),
        CommandRow("MEASUrement:ANNOTation:X<x>?", kValue),
        CommandRow("MEASUrement:ANNOTation:Y<x>?", kValue),
    };
    Append(Under("MEASUrement:IMMed:", SubjectRows<kImmediateIds>(MeasurementType::kPeriod)), rows);
    Append(Under("MEASUrement:", LevelRows(kImmediateIds)), rows);
    Append(Under("MEASUrement:MEAS<x>:", SubjectRows<kSlotIds>(MeasurementType::kUndefined)), rows);
    Append(Under("MEASUrement:MEAS<x>:", LevelRows(kSlotIds)), rows);
    Append(Under("MEASUrement:MEAS<x>:", SlotRows()), rows);
    return rows;
}

}  // namespace virtual_scope
