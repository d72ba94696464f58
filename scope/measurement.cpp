// IKestrionMeasurements, IKestrionMeasurementImmediate and IKestrionMeasurement: what measurements
// do beyond their templates.
#include "core/member_call.h"
#include "generated/hooks/IKestrionMeasurement.h"
#include "generated/hooks/IKestrionMeasurementImmediate.h"
#include "generated/hooks/IKestrionMeasurements.h"
#include "scope/formatted_query.h"
#include "scope/measurement_refusals.h"

namespace kestrion::hooks {
namespace {

constexpr const char* kValueAndUnit = "%lg;%$Bs";

}  // namespace

namespace IKestrionMeasurements {

// This family has one zoom area.
HRESULT put_Gating(MemberCall& call, KestrionMeasurementGatingEnum val) {
    if (val >= KestrionMeasurementGatingZoom1 && val <= KestrionMeasurementGatingZoom4 &&
        call.InstrumentInFamily("Heron Series")) {
        return call.Errors().ReportValueNotSupported("Gating", "val");
    }
    return call.SendCommand();
}

HRESULT put_Method(MemberCall& call, KestrionMeasurementMethodEnum val) {
    if (val == KestrionMeasurementMethodMean && call.InstrumentInFamily("Heron Series")) {
        return call.Errors().ReportValueNotSupported("Method", "val");
    }
    return call.SendCommand();
}

}  // namespace IKestrionMeasurements

namespace IKestrionMeasurementImmediate {

HRESULT Configure(MemberCall& call, KestrionSourceEnum Source, KestrionMeasurementTypeEnum Type) {
    return ConfigureMeasurement(call, Source, Type, "MeasImmediate");
}

HRESULT ReadValue(MemberCall& call, KestrionSourceEnum, KestrionSourceEnum,
                  KestrionMeasurementTypeEnum, KestrionMeasurementDelayDirectionEnum,
                  KestrionMeasurementEdgeEnum, KestrionMeasurementEdgeEnum, double* Value,
                  BSTR* Units) {
    const HRESULT status = call.SendCommand();
    return Failed(status)
               ? status
               : QueryByFormat(call, "MEASUREMENT:IMMED:VALUE?;UNIT?", kValueAndUnit, Value, Units);
}

HRESULT put_Type(MemberCall& call, KestrionMeasurementTypeEnum val) {
    return MeasurementTypeIsRefused(call, val)
               ? call.Errors().ReportValueNotSupported("Type", "val")
               : call.SendCommand();
}

}  // namespace IKestrionMeasurementImmediate

namespace IKestrionMeasurement {

HRESULT Configure(MemberCall& call, KestrionSourceEnum Source, KestrionMeasurementTypeEnum Type) {
    return ConfigureMeasurement(call, Source, Type, "MeasSlot");
}

HRESULT ReadValue(MemberCall& call, KestrionSourceEnum, KestrionSourceEnum,
                  KestrionMeasurementTypeEnum, KestrionMeasurementDelayDirectionEnum,
                  KestrionMeasurementEdgeEnum, KestrionMeasurementEdgeEnum, double* Value,
                  BSTR* Units) {
    const HRESULT status = call.SendCommand();
    return Failed(status) ? status
                          : QueryByFormat(call, "MEASUREMENT:MEAS%d:VALUE?;UNIT?", kValueAndUnit,
                                          call.Node().Number(), Value, Units);
}

}  // namespace IKestrionMeasurement
}  // namespace kestrion::hooks
