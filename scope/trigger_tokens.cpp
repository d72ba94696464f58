#include "scope/trigger_tokens.h"

#include "platform/text.h"
#include "tables/enum_lookup.h"

namespace kestrion {

HRESULT TokenSet::ToToken(MemberCall& call, std::int32_t value, std::string_view parameter,
                          std::string& token) const {
    const IEnumConverter* converter = GetEnumConverter(enumName_, memberKey_);
    if (converter == nullptr) {
        return E_UNEXPECTED;
    }
    return converter->ToToken(call.Driver().GetInstrumentModel(), value, token)
               ? S_OK
               : call.Errors().ReportInvalidValue(parameter, ValueText(value), {});
}

HRESULT TokenSet::FindValue(MemberCall& call, std::string_view reply, std::int32_t& value) const {
    const IEnumConverter* converter = GetEnumConverter(enumName_, memberKey_);
    if (converter == nullptr) {
        return E_UNEXPECTED;
    }
    if (converter->FromToken(call.Driver().GetInstrumentModel(), reply, value)) {
        return S_OK;
    }
    const std::string detail = "Unexpected value '" + std::string(Trim(reply)) + "' for enum '" +
                               std::string(enumName_) + "'.";
    return call.Errors().ReportUnexpectedResponse(detail);
}

}  // namespace kestrion
