// IIviDriverUtility: reset, self test and the instrument's error queue.
#include <array>
#include <string>
#include <string_view>

#include "core/member_call.h"
#include "generated/hooks/IIviDriverUtility.h"
#include "kestrion/interfaces/IIviDriverOperation.h"
#include "platform/text.h"

namespace kestrion::hooks::IIviDriverUtility {
namespace {

// Resets the instrument and waits for its answer that it is done.
HRESULT ResetInstrument(MemberCall& call, std::int32_t timeout) {
    if (call.IsSimulating()) {
        return S_OK;
    }
    LONG done = 0;
    return call.QueryLong("*RST;*OPC?", done, timeout);
}

HRESULT ResetAll(MemberCall& call) {
    if (const HRESULT status = ResetInstrument(call, Metadata().resetTimeout); Failed(status)) {
        return status;
    }
    if (const HRESULT status = call.Driver().ResetTree(); Failed(status)) {
        return status;
    }
    call.Driver().InvalidateAllAttributes();
    return S_OK;
}

// Puts the options of Initialize back, each through its own member.
HRESULT RestoreInitialOptions(MemberCall& call) {
    using Operation = ::IIviDriverOperation;
    struct Option {
        DriverFlag flag;
        HRESULT (Operation::*put)(VARIANT_BOOL);
    };
    static constexpr std::array<Option, kDriverFlagCount> kOptions = {{
        {DriverFlag::kCache, &Operation::put_Cache},
        {DriverFlag::kInterchangeCheck, &Operation::put_InterchangeCheck},
        {DriverFlag::kQueryInstrStatus, &Operation::put_QueryInstrumentStatus},
        {DriverFlag::kRangeCheck, &Operation::put_RangeCheck},
        {DriverFlag::kRecordCoercions, &Operation::put_RecordCoercions},
        {DriverFlag::kSimulate, &Operation::put_Simulate},
    }};
    auto& operation = call.As<Operation>();
    for (const Option& option : kOptions) {
        const bool value = call.Driver().InitialFlag(option.flag);
        if (const HRESULT status = (operation.*option.put)(ToVariantBool(value)); Failed(status)) {
            return status;
        }
    }
    return S_OK;
}

void FreeText(BSTR* text) {
    SysFreeString(*text);
    *text = nullptr;
}

// Takes a flag away for as long as the guard lives.
class FlagOff {
  public:
    FlagOff(CDriver& driver, DriverFlag flag)
        : driver_(driver), flag_(flag), saved_(driver.Flag(flag)) {
        driver_.SetFlag(flag_, false);
    }
    FlagOff(const FlagOff&) = delete;
    FlagOff& operator=(const FlagOff&) = delete;
    ~FlagOff() { driver_.SetFlag(flag_, saved_); }

  private:
    CDriver& driver_;
    DriverFlag flag_;
    bool saved_;
};

std::string_view TrimQuotes(std::string_view text) {
    text = Trim(text);
    while (!text.empty() && text.back() == '"') {
        text.remove_suffix(1);
    }
    while (!text.empty() && text.front() == '"') {
        text.remove_prefix(1);
    }
    return Trim(text);
}

}  // namespace

// A reset is how this driver brings an instrument to rest.
HRESULT Disable(MemberCall& call) {
    return ResetInstrument(call, Metadata().disableTimeout);
}

HRESULT Reset(MemberCall& call) {
    return ResetAll(call);
}

HRESULT ResetWithDefaults(MemberCall& call) {
    if (const HRESULT status = ResetAll(call); Failed(status)) {
        return status;
    }
    return RestoreInitialOptions(call);
}

HRESULT SelfTest(MemberCall& call, LONG* TestResult, BSTR* TestMessage) {
    if (TestMessage == nullptr) {
        return call.Errors().ReportNullPointer("TestMessage", {});
    }
    FreeText(TestMessage);
    if (TestResult == nullptr) {
        return call.Errors().ReportNullPointer("TestResult", {});
    }
    *TestResult = 0;
    if (!call.IsSimulating()) {
        const HRESULT status = call.QueryLong("*TST?", *TestResult, Metadata().selfTestTimeout);
        if (Failed(status)) {
            return status;
        }
    }
    *TestMessage =
        MakeBstr(std::string_view(*TestResult == 0 ? "Selftest passed" : "Selftest failed"));
    return S_OK;
}

HRESULT ErrorQuery(MemberCall& call, LONG* ErrorCode, BSTR* ErrorMessage) {
    if (ErrorMessage == nullptr) {
        return call.Errors().ReportNullPointer("ErrorMessage", {});
    }
    FreeText(ErrorMessage);
    if (ErrorCode == nullptr) {
        return call.Errors().ReportNullPointer("ErrorCode", {});
    }
    *ErrorCode = 0;
    if (call.IsSimulating()) {
        *ErrorMessage = MakeBstr(std::string_view("No error."));
        return S_OK;
    }
    // The query of an error isn't itself followed by a look at the status.
    const FlagOff unpolled(call.Driver(), DriverFlag::kQueryInstrStatus);
    std::string text;
    const HRESULT status = call.Session().Queryf(":SYST:ERR?", "%d,%$Ct", ErrorCode, &text);
    if (Failed(status)) {
        return call.Errors().ReportUnexpectedResponse({});
    }
    *ErrorMessage = MakeBstr(WidenBytes(TrimQuotes(text)));
    return S_OK;
}

HRESULT LockObject(MemberCall& call) {
    return call.Errors().ReportMethodNotSupported();
}

HRESULT UnlockObject(MemberCall& call) {
    return call.Errors().ReportMethodNotSupported();
}

}  // namespace kestrion::hooks::IIviDriverUtility
