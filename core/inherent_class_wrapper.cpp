// IIviClassWrapper: the C session that a wrapper would stand on. This driver stands on none.
#include "core/member_call.h"
#include "generated/hooks/IIviClassWrapper.h"

namespace kestrion::hooks::IIviClassWrapper {

HRESULT AttachToExistingCSession(MemberCall& call, LONG) {
    return call.Errors().ReportMethodNotSupported();
}

HRESULT get_NativeCHandle(MemberCall& call, LONG*) {
    return call.Errors().ReportPropertyNotSupported();
}

}  // namespace kestrion::hooks::IIviClassWrapper
