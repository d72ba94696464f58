// IDirectIo: the instrument's own language, for what the driver has no member for.
#include <string>

#include "core/member_call.h"
#include "generated/hooks/IDirectIo.h"
#include "io/visa_table.h"
#include "platform/text.h"
#include "tables/model_families.h"

namespace kestrion::hooks::IDirectIo {
namespace {

std::string CommandBytes(BSTR command) {
    return NarrowToBytes(View(command));
}

}  // namespace

HRESULT WriteString(MemberCall& call, BSTR Command) {
    return call.Session().WriteString(std::string_view(CommandBytes(Command)), true);
}

HRESULT QueryString(MemberCall& call, BSTR Command, BSTR* Response) {
    std::string response;
    const HRESULT status = call.QueryText(CommandBytes(Command), response);
    if (Failed(status)) {
        return status;
    }
    *Response = MakeBstr(WidenBytes(response));
    return S_OK;
}

HRESULT get_Timeout(MemberCall& call, LONG* val) {
    return call.Session().GetTimeout(val);
}

HRESULT put_Timeout(MemberCall& call, LONG val) {
    return call.Session().SetTimeout(val);
}

HRESULT get_InstrumentFamily(MemberCall& call, BSTR* val) {
    *val = MakeBstr(ModelFamilyTable::Instance().FamilyOf(call.Driver().GetInstrumentModel()));
    return S_OK;
}

HRESULT get_VisaLibrary(MemberCall& call, BSTR* val) {
    const auto library = call.Driver().GetVisaLibrary();
    *val = MakeBstr(library == nullptr ? std::string_view() : std::string_view(library->Name()));
    return S_OK;
}

HRESULT get_VisaLibraryReason(MemberCall& call, BSTR* val) {
    const auto library = call.Driver().GetVisaLibrary();
    *val = MakeBstr(library == nullptr ? std::string_view() : std::string_view(library->Reason()));
    return S_OK;
}

HRESULT get_ConfigurationStore(MemberCall& call, BSTR* val) {
    *val = MakeBstr(call.Driver().Settings().GetStoreReport().path);
    return S_OK;
}

HRESULT get_ConfigurationStoreReason(MemberCall& call, BSTR* val) {
    *val = MakeBstr(call.Driver().Settings().GetStoreReport().reason);
    return S_OK;
}

}  // namespace kestrion::hooks::IDirectIo
