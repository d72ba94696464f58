// IIviDriver: start-up, shut-down and the state of the connection.
#include <string>

#include "core/member_call.h"
#include "generated/hooks/IIviDriver.h"
#include "platform/text.h"

namespace kestrion::hooks::IIviDriver {

HRESULT Initialize(MemberCall& call, BSTR ResourceName, VARIANT_BOOL IdQuery, VARIANT_BOOL Reset,
                   BSTR OptionString) {
    const std::string resource = ToUtf8(ResourceName);
    return call.Driver().Initialize(ResourceName == nullptr ? nullptr : &resource, IdQuery != 0,
                                    Reset != 0, ToUtf8(OptionString));
}

HRESULT Close(MemberCall& call) {
    return call.Driver().Close();
}

HRESULT get_Initialized(MemberCall& call, VARIANT_BOOL* val) {
    *val = ToVariantBool(call.Driver().IsInitialized());
    return S_OK;
}

}  // namespace kestrion::hooks::IIviDriver
