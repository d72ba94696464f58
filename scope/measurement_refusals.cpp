#include "scope/measurement_refusals.h"

#include "scope/source_kind.h"

namespace kestrion {

bool MeasurementTypeIsRefused(MemberCall& call, KestrionMeasurementTypeEnum type) {
    // Eye diagrams and what else is measured of communication signals. The test is for a model that
    // is of both families; as long as each is of one, the instrument itself has to refuse.
    return type >= KestrionMeasurementTypeEyeHeight && type != KestrionMeasurementTypeUndefined &&
           call.InstrumentInFamily("Heron Series") && call.InstrumentInFamily("HeronB Series");
}

HRESULT ConfigureMeasurement(MemberCall& call, KestrionSourceEnum source,
                             KestrionMeasurementTypeEnum type, std::string_view object) {
    if (MeasurementTypeIsRefused(call, type)) {
        return call.Errors().ReportValueNotSupported("Configure", object);
    }
    if (IsAbsentOnTwoChannels(source) && call.InstrumentHasTwoChannels()) {
        return call.Errors().ReportDetail(message::kChannelRefused, "InstrSet", {"Source"});
    }
    return call.SendCommand();
}

}  // namespace kestrion
