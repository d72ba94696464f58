// IIviComponentIdentity and IIviDriverIdentity: what the driver and the instrument are.
#include <string>

#include "core/member_call.h"
#include "generated/hooks/IIviComponentIdentity.h"
#include "generated/hooks/IIviDriverIdentity.h"

namespace kestrion::hooks {
namespace {

HRESULT GiveText(BSTR* val, std::string_view text) {
    *val = MakeBstr(text);
    return S_OK;
}

}  // namespace

namespace IIviComponentIdentity {

HRESULT get_Description(MemberCall&, BSTR* val) {
    return GiveText(val, std::string(Metadata().description) + " [Compiled for 64-bit.]");
}

HRESULT get_Identifier(MemberCall&, BSTR* val) {
    return GiveText(val, Metadata().identifier);
}

HRESULT get_Revision(MemberCall&, BSTR* val) {
    return GiveText(val, Metadata().revision);
}

HRESULT get_Vendor(MemberCall&, BSTR* val) {
    return GiveText(val, Metadata().vendor);
}

}  // namespace IIviComponentIdentity

namespace IIviDriverIdentity {

HRESULT get_GroupCapabilities(MemberCall&, BSTR* val) {
    return GiveText(val, Metadata().groupCapabilities);
}

HRESULT get_InstrumentFirmwareRevision(MemberCall& call, BSTR* val) {
    return GiveText(val, call.IsSimulating() ? "Sim" + std::string(Metadata().revision)
                                             : call.Driver().GetIdentity().firmware);
}

HRESULT get_InstrumentManufacturer(MemberCall& call, BSTR* val) {
    return GiveText(val, call.IsSimulating() ? std::string(Metadata().vendor)
                                             : call.Driver().GetIdentity().manufacturer);
}

HRESULT get_InstrumentModel(MemberCall& call, BSTR* val) {
    return GiveText(val, call.Driver().GetIdentity().model);
}

HRESULT get_SpecificationMajorVersion(MemberCall&, LONG* val) {
    *val = Metadata().specificationMajorVersion;
    return S_OK;
}

HRESULT get_SpecificationMinorVersion(MemberCall&, LONG* val) {
    *val = Metadata().specificationMinorVersion;
    return S_OK;
}

HRESULT get_SupportedInstrumentModels(MemberCall&, BSTR* val) {
    return GiveText(val, Metadata().supportedInstrumentModels);
}

}  // namespace IIviDriverIdentity
}  // namespace kestrion::hooks
