// The edges of both events: slopes and sources that a model lacks.
#include "core/member_call.h"
#include "generated/hooks/IKestrionTriggerAEdge.h"
#include "generated/hooks/IKestrionTriggerBEdge.h"
#include "scope/trigger_families.h"

namespace kestrion::hooks {
namespace {

bool LacksSlope(MemberCall& call, KestrionTriggerSlopeEnum slope) {
    return slope == KestrionTriggerSlopeEither && !HasSharedLogicInputs(call);
}

bool LacksSource(MemberCall& call, KestrionTriggerSourceEnum source) {
    return (source == KestrionTriggerSourceCh3 || source == KestrionTriggerSourceCh4) &&
           call.InstrumentHasTwoChannels();
}

HRESULT PutSlope(MemberCall& call, KestrionTriggerSlopeEnum slope) {
    if (LacksSlope(call, slope)) {
        return call.Errors().ReportDetail(message::kSlopeRefused, "InstrSet", {"Slope"});
    }
    return call.SendCommand();
}

}  // namespace

namespace IKestrionTriggerAEdge {

// A slope that the model lacks is reported, and the line goes out all the same: the instrument
// takes the rest of it.
HRESULT Configure(MemberCall& call, KestrionTriggerSourceEnum Source, double,
                  KestrionTriggerSlopeEnum Slope, KestrionTriggerAEdgeCouplingEnum) {
    if (LacksSource(call, Source)) {
        return call.Errors().ReportDetail(message::kChannelRefused, "Configure", {"Source"});
    }
    if (LacksSlope(call, Slope)) {
        (void)call.Errors().ReportValueNotSupported("KestrionTriggerSlopeEither", "Slope",
                                                    "Configure");
    }
    return call.SendCommand();
}

HRESULT put_Slope(MemberCall& call, KestrionTriggerSlopeEnum val) {
    return PutSlope(call, val);
}

HRESULT put_Source(MemberCall& call, KestrionTriggerSourceEnum val) {
    if (LacksSource(call, val)) {
        return call.Errors().ReportDetail(message::kChannelRefused, "InstrSet", {"Source"});
    }
    return call.SendCommand();
}

}  // namespace IKestrionTriggerAEdge

namespace IKestrionTriggerBEdge {

HRESULT Configure(MemberCall& call, KestrionTriggerSourceEnum, double,
                  KestrionTriggerSlopeEnum Slope, KestrionTriggerBEdgeCouplingEnum) {
    if (LacksSlope(call, Slope)) {
        return call.Errors().ReportDetail(message::kSlopeRefused, "Configure", {"Slope"});
    }
    return call.SendCommand();
}

HRESULT put_Slope(MemberCall& call, KestrionTriggerSlopeEnum val) {
    return PutSlope(call, val);
}

}  // namespace IKestrionTriggerBEdge

}  // namespace kestrion::hooks
