// What families and models refuse of measurements.
#pragma once

#include "core/member_call.h"
#include "kestrion/enums/KestrionMeasurementTypeEnum.h"
#include "kestrion/enums/KestrionSourceEnum.h"

namespace kestrion {

// Whether the instrument is known to lack a measurement.
[[nodiscard]] bool MeasurementTypeIsRefused(MemberCall& call, KestrionMeasurementTypeEnum type);

// Sends the running command, unless the instrument lacks the measurement, which `object` names in
// the report, or the source.
HRESULT ConfigureMeasurement(MemberCall& call, KestrionSourceEnum source,
                             KestrionMeasurementTypeEnum type, std::string_view object);

}  // namespace kestrion
