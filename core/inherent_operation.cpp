// IIviDriverOperation: the driver's options and what a program asks of its bookkeeping.
#include "core/member_call.h"
#include "generated/hooks/IIviDriverOperation.h"

namespace kestrion::hooks::IIviDriverOperation {
namespace {

HRESULT GetFlag(MemberCall& call, DriverFlag flag, VARIANT_BOOL* val) {
    *val = ToVariantBool(call.Driver().Flag(flag));
    return S_OK;
}

HRESULT PutFlag(MemberCall& call, DriverFlag flag, VARIANT_BOOL val) {
    call.Driver().SetFlag(flag, val != 0);
    return S_OK;
}

HRESULT GiveText(BSTR* val, std::string_view text) {
    *val = MakeBstr(text);
    return S_OK;
}

}  // namespace

HRESULT get_Cache(MemberCall& call, VARIANT_BOOL* val) {
    return GetFlag(call, DriverFlag::kCache, val);
}

HRESULT put_Cache(MemberCall& call, VARIANT_BOOL val) {
    return PutFlag(call, DriverFlag::kCache, val);
}

HRESULT get_InterchangeCheck(MemberCall& call, VARIANT_BOOL* val) {
    return GetFlag(call, DriverFlag::kInterchangeCheck, val);
}

HRESULT put_InterchangeCheck(MemberCall& call, VARIANT_BOOL val) {
    if (val != 0 && !Metadata().supportsInterchangeCheck) {
        return call.Errors().ReportValueNotSupported("VARIANT_TRUE", "val");
    }
    return PutFlag(call, DriverFlag::kInterchangeCheck, val);
}

HRESULT get_QueryInstrumentStatus(MemberCall& call, VARIANT_BOOL* val) {
    return GetFlag(call, DriverFlag::kQueryInstrStatus, val);
}

HRESULT put_QueryInstrumentStatus(MemberCall& call, VARIANT_BOOL val) {
    return PutFlag(call, DriverFlag::kQueryInstrStatus, val);
}

HRESULT get_RangeCheck(MemberCall& call, VARIANT_BOOL* val) {
    return GetFlag(call, DriverFlag::kRangeCheck, val);
}

HRESULT put_RangeCheck(MemberCall& call, VARIANT_BOOL val) {
    return PutFlag(call, DriverFlag::kRangeCheck, val);
}

HRESULT get_RecordCoercions(MemberCall& call, VARIANT_BOOL* val) {
    return GetFlag(call, DriverFlag::kRecordCoercions, val);
}

HRESULT put_RecordCoercions(MemberCall& call, VARIANT_BOOL val) {
    return PutFlag(call, DriverFlag::kRecordCoercions, val);
}

HRESULT get_Simulate(MemberCall& call, VARIANT_BOOL* val) {
    return GetFlag(call, DriverFlag::kSimulate, val);
}

HRESULT put_Simulate(MemberCall& call, VARIANT_BOOL val) {
    // A driver that started in simulation has no connection to go on with.
    if (val == 0 && call.Driver().InitialFlag(DriverFlag::kSimulate)) {
        return call.Errors().ReportCannotChangeSimulation();
    }
    return PutFlag(call, DriverFlag::kSimulate, val);
}

HRESULT get_DriverSetup(MemberCall& call, BSTR* val) {
    return GiveText(val, call.Driver().DriverSetup());
}

HRESULT get_LogicalName(MemberCall& call, BSTR* val) {
    return GiveText(val, call.Driver().LogicalName());
}

HRESULT get_IoResourceDescriptor(MemberCall& call, BSTR* val) {
    return GiveText(val, call.Driver().ResourceDescriptor());
}

HRESULT InvalidateAllAttributes(MemberCall& call) {
    call.Driver().InvalidateAllAttributes();
    return S_OK;
}

HRESULT ClearInterchangeWarnings(MemberCall& call) {
    return call.Errors().ReportMethodNotSupported();
}

HRESULT ResetInterchangeCheck(MemberCall& call) {
    return call.Errors().ReportMethodNotSupported();
}

HRESULT GetNextInterchangeWarning(MemberCall& call, BSTR*) {
    return call.Errors().ReportMethodNotSupported();
}

HRESULT GetNextCoercionRecord(MemberCall& call, BSTR* val) {
    const bool recording = call.Driver().Flag(DriverFlag::kRecordCoercions);
    return GiveText(val, recording ? call.Driver().GetCoercionQueue().Take() : std::string());
}

}  // namespace kestrion::hooks::IIviDriverOperation
