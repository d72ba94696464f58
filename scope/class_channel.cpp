// IIviScopeChannel: the oscilloscope class's view of a vertical channel.
#include "core/member_call.h"
#include "generated/hooks/IIviScopeChannel.h"
#include "kestrion/interfaces/IKestrionChannel.h"

namespace kestrion::hooks::IIviScopeChannel {
namespace {

// The divisions of a range. Configure counts those of the screen; the property counts two more,
// as users of either have come to know them.
constexpr double kDivisions = 10.0;
constexpr double kConfiguredDivision = 0.125;

}  // namespace

HRESULT get_Range(MemberCall& call, double* val) {
    double scale = 0.0;
    const HRESULT status = call.As<::IKestrionChannel>().get_VerticalScale(&scale);
    if (Succeeded(status)) {
        *val = scale * kDivisions;
    }
    return status;
}

HRESULT put_Range(MemberCall& call, double val) {
    return call.As<::IKestrionChannel>().put_VerticalScale(val / kDivisions);
}

HRESULT Configure(MemberCall& call, double Range, double Offset,
                  IviScopeVerticalCouplingEnum Coupling, double ProbeAttenuation,
                  VARIANT_BOOL Enabled) {
    if (call.IsSimulating()) {
        return S_OK;
    }
    const std::int32_t number = call.Node().Number();
    return call.Write(
        "CH%d:SCALE %g;OFFSET %g;COUPLING %{VerticalCoupling}s;PROBEFUNC:EXTATTEN %g;"
        ":SELECT:CH%d %{VARIANT_BOOL}s",
        number, Range * kConfiguredDivision, Offset, Coupling, ProbeAttenuation, number, Enabled);
}

}  // namespace kestrion::hooks::IIviScopeChannel
