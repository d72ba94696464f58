// IKestrionHorizontal: what is worked out of several settings.
#include "core/member_call.h"
#include "generated/hooks/IKestrionHorizontal.h"

namespace kestrion::hooks::IKestrionHorizontal {

// The time of the whole record: divisions times scale.
HRESULT get_Duration(MemberCall& call, double* val) {
    double divisions = 0.0;
    double scale = 0.0;
    const HRESULT status = call.QueryFormatted(kKeepTimeout, &divisions, &scale);
    if (Succeeded(status)) {
        *val = divisions * scale;
    }
    return status;
}

}  // namespace kestrion::hooks::IKestrionHorizontal
