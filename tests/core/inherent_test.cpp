// The members that every driver of this kind has.
#include <gmock/gmock.h>

#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

class InherentTest : public ScopeTest {
  protected:
    CDriver& Root() { return *static_cast<CDriver*>(Query<IUnknown>(scope.Get()).Get()); }
    ComPtr<IIviDriverUtility> Utility() { return As<IIviDriverUtility>(); }
    ComPtr<IIviDriverOperation> Operation() { return As<IIviDriverOperation>(); }
    template <typename Interface>
    std::string Text(HRESULT (Interface::*getter)(BSTR*)) {
        BstrPtr text;
        EXPECT_EQ((As<Interface>().Get()->*getter)(text.Out()), S_OK);
        return text.Utf8();
    }
};

TEST_F(InherentTest, IdentityOfTheDriver) {
    Simulate("Model=PL7254C");
    EXPECT_EQ(Text(&IIviComponentIdentity::get_Description),
              "IVI driver for Kestrion Instruments oscilloscopes [Compiled for 64-bit.]");
    EXPECT_EQ(Text(&IIviComponentIdentity::get_Identifier), "Kestrion");
    EXPECT_EQ(Text(&IIviComponentIdentity::get_Revision), "3.9.0.0");
    EXPECT_EQ(Text(&IIviComponentIdentity::get_Vendor), "Kestrion Instruments");
    EXPECT_EQ(Text(&IIviDriverIdentity::get_GroupCapabilities),
              "IviScopeBase,IviScopeInterpolation,IviScopeRuntTrigger,IviScopeGlitchTrigger,"
              "IviScopeWidthTrigger,IviScopeWaveformMeas,IviScopeMinMaxWaveform,"
              "IviScopeProbeAutoSense,IviScopeContinuousAcquisition,"
              "IviScopeAverageAcquisition,IviScopeSampleMode,IviScopeTriggerModifier,"
              "IviScopeAutoSetup");
    EXPECT_EQ(Text(&IIviDriverIdentity::get_InstrumentFirmwareRevision), "Sim3.9.0.0");
    EXPECT_EQ(Text(&IIviDriverIdentity::get_InstrumentManufacturer), "Kestrion Instruments");
    EXPECT_EQ(Text(&IIviDriverIdentity::get_InstrumentModel), "PL7254C");
    LONG major = 0;
    LONG minor = 9;
    EXPECT_EQ(As<IIviDriverIdentity>()->get_SpecificationMajorVersion(&major), S_OK);
    EXPECT_EQ(As<IIviDriverIdentity>()->get_SpecificationMinorVersion(&minor), S_OK);
    EXPECT_EQ(major, 3);
    EXPECT_EQ(minor, 0);
}

TEST_F(InherentTest, SupportedModelsAreOneListOf115) {
    Simulate();
    const std::string models = Text(&IIviDriverIdentity::get_SupportedInstrumentModels);
    EXPECT_EQ(std::ranges::count(models, ','), 114);
    EXPECT_EQ(models.find(' '), std::string::npos);
    EXPECT_TRUE(models.starts_with("HR5"));
    EXPECT_EQ(As<IIviDriverIdentity>()->get_SupportedInstrumentModels(nullptr),
              MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Null pointer passed for method get_SupportedInstrumentModels, "
              "parameter val.");
}

TEST_F(InherentTest, IdentityOfTheInstrument) {
    Connect("MR5104B");
    EXPECT_EQ(Text(&IIviDriverIdentity::get_InstrumentManufacturer), "KESTRION");
    EXPECT_EQ(Text(&IIviDriverIdentity::get_InstrumentModel), "MR5104B");
    EXPECT_EQ(Text(&IIviDriverIdentity::get_InstrumentFirmwareRevision), "1.0.0");
    EXPECT_EQ(Text(&IIviDriverOperation::get_IoResourceDescriptor), "GPIB0::1::INSTR");
    EXPECT_EQ(Text(&IIviDriverOperation::get_LogicalName), "");
}

TEST_F(InherentTest, ResetAndDisableSendOneLineAndWaitForItsAnswer) {
    Connect();
    fake.Expect("*RST;*OPC?\n").Reply("1\n");
    EXPECT_EQ(Utility()->Reset(), S_OK);
    fake.Expect("*RST;*OPC?\n").Reply("1\n");
    EXPECT_EQ(Utility()->Disable(), S_OK);
    // The time-out of the operation holds for the call only.
    EXPECT_EQ(fake.AttributeValue(0x3FFF001A), 2000U);
}

TEST_F(InherentTest, ResetWithDefaultsRestoresTheFlagsOfInitialize) {
    Connect("PL7254C", "recordcoercions=true");
    EXPECT_EQ(Operation()->put_RangeCheck(VARIANT_FALSE), S_OK);
    EXPECT_EQ(Operation()->put_RecordCoercions(VARIANT_FALSE), S_OK);
    fake.Expect("*RST;*OPC?\n").Reply("1\n");
    EXPECT_EQ(Utility()->ResetWithDefaults(), S_OK);
    VARIANT_BOOL flag = VARIANT_FALSE;
    EXPECT_EQ(Operation()->get_RangeCheck(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_TRUE);
    EXPECT_EQ(Operation()->get_RecordCoercions(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_TRUE);
}

TEST_F(InherentTest, SimulationCannotBeLeftButEntered) {
    Simulate();
    EXPECT_EQ(Operation()->put_Simulate(VARIANT_FALSE), MakeStatus(0x80047062));
    EXPECT_EQ(ErrorText(), "Kestrion: The simulation state cannot be changed.");
    EXPECT_EQ(scope->Close(), S_OK);
    Connect();
    EXPECT_EQ(Operation()->put_Simulate(VARIANT_TRUE), S_OK);
    EXPECT_EQ(As<IIviScopeAcquisition>()->put_NumberOfAverages(3), S_OK);
    EXPECT_EQ(Operation()->put_Simulate(VARIANT_FALSE), S_OK);
}

TEST_F(InherentTest, InterchangeCheckingIsAValueThatIsNotSupported) {
    Simulate();
    EXPECT_EQ(Operation()->put_InterchangeCheck(VARIANT_TRUE), MakeStatus(0x80047013));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Does not support this class-compliant feature: (enumeration) value "
              "VARIANT_TRUE passed as the value for parameter val in method "
              "put_InterchangeCheck.");
    EXPECT_EQ(Operation()->put_InterchangeCheck(VARIANT_FALSE), S_OK);
}

TEST_F(InherentTest, MembersThatThisDriverDoesNotSupport) {
    Simulate();
    EXPECT_EQ(Utility()->LockObject(), MakeStatus(0x80047011));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Does not support this class-compliant feature: method LockObject.");
    EXPECT_EQ(Utility()->UnlockObject(), MakeStatus(0x80047011));
    EXPECT_EQ(Operation()->ClearInterchangeWarnings(), MakeStatus(0x80047011));
    EXPECT_EQ(Operation()->ResetInterchangeCheck(), MakeStatus(0x80047011));
    BstrPtr text;
    EXPECT_EQ(Operation()->GetNextInterchangeWarning(text.Out()), MakeStatus(0x80047011));
    EXPECT_EQ(text.Get(), nullptr);
}

TEST_F(InherentTest, TheNextInterchangeWarningNeedsAPlaceFirst) {
    Simulate();
    EXPECT_EQ(Operation()->GetNextInterchangeWarning(nullptr), MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Null pointer passed for method GetNextInterchangeWarning, parameter "
              "pbstrWarning.");
}

TEST_F(InherentTest, ThereIsNoCSessionBelow) {
    Simulate();
    const auto wrapper = As<IIviClassWrapper>();
    EXPECT_EQ(wrapper->AttachToExistingCSession(1), MakeStatus(0x80047011));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Does not support this class-compliant feature: method "
              "AttachToExistingCSession.");
    LONG handle = 7;
    EXPECT_EQ(wrapper->get_NativeCHandle(&handle), MakeStatus(0x80047012));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Does not support this class-compliant feature: property "
              "get_NativeCHandle.");
    EXPECT_EQ(handle, 0);
}

TEST_F(InherentTest, WithoutACoercionThereIsNoRecord) {
    Connect("PL7254C", "recordcoercions=true");
    EXPECT_EQ(Text(&IIviDriverOperation::GetNextCoercionRecord), "");
    EXPECT_EQ(Operation()->GetNextCoercionRecord(nullptr), MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Null pointer passed for method GetNextCoercionRecord, parameter val.");
}

TEST_F(InherentTest, CoercionRecordsComeOldestFirstWhileTheOptionIsOn) {
    Simulate();
    Root().GetCoercionQueue().Add("first");
    Root().GetCoercionQueue().Add("second");
    EXPECT_EQ(Text(&IIviDriverOperation::GetNextCoercionRecord), "");
    EXPECT_EQ(Operation()->put_RecordCoercions(VARIANT_TRUE), S_OK);
    EXPECT_EQ(Text(&IIviDriverOperation::GetNextCoercionRecord), "first");
    // The queue outlasts the connection.
    EXPECT_EQ(scope->Close(), S_OK);
    ASSERT_EQ(Initialize("GPIB0::1::INSTR", "simulate=true,recordcoercions=true"), S_OK);
    EXPECT_EQ(Text(&IIviDriverOperation::GetNextCoercionRecord), "second");
    EXPECT_EQ(Text(&IIviDriverOperation::GetNextCoercionRecord), "");
}

TEST_F(InherentTest, AFullCoercionQueueThrowsTheOldestAway) {
    Simulate();
    EXPECT_EQ(Operation()->put_RecordCoercions(VARIANT_TRUE), S_OK);
    for (int i = 0; i <= 1000; ++i) {
        Root().GetCoercionQueue().Add(std::to_string(i));
    }
    EXPECT_EQ(Text(&IIviDriverOperation::GetNextCoercionRecord), "1");
}

TEST_F(InherentTest, SelfTestTellsTheResultInWords) {
    Connect();
    LONG result = 9;
    BstrPtr text;
    fake.Expect("*TST?\n").Reply("0\n");
    EXPECT_EQ(Utility()->SelfTest(&result, text.Out()), S_OK);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(text.Utf8(), "Selftest passed");
    fake.Expect("*TST?\n").Reply("5\n");
    EXPECT_EQ(Utility()->SelfTest(&result, text.Out()), S_OK);
    EXPECT_EQ(result, 5);
    EXPECT_EQ(text.Utf8(), "Selftest failed");
}

TEST_F(InherentTest, SelfTestChecksTheTextFirst) {
    Simulate();
    LONG result = 9;
    EXPECT_EQ(Utility()->SelfTest(&result, nullptr), MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Null pointer passed for method SelfTest, parameter TestMessage.");
    EXPECT_EQ(result, 9);
    BstrPtr text;
    EXPECT_EQ(Utility()->SelfTest(nullptr, text.Out()), MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Null pointer passed for method SelfTest, parameter TestResult.");
    EXPECT_EQ(Utility()->SelfTest(&result, text.Out()), S_OK);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(text.Utf8(), "Selftest passed");
}

TEST_F(InherentTest, ErrorQueryTakesTheQuotesOff) {
    Connect();
    fake.Expect(":SYST:ERR?\n").Reply("-113,\"Undefined header\"\n");
    LONG code = 0;
    BstrPtr text;
    EXPECT_EQ(Utility()->ErrorQuery(&code, text.Out()), S_OK);
    EXPECT_EQ(code, -113);
    EXPECT_EQ(text.Utf8(), "Undefined header");
}

TEST_F(InherentTest, ErrorQueryInSimulationSendsNothing) {
    Simulate();
    LONG code = 7;
    BstrPtr text;
    EXPECT_EQ(Utility()->ErrorQuery(&code, text.Out()), S_OK);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(text.Utf8(), "No error.");
    EXPECT_EQ(Utility()->ErrorQuery(&code, nullptr), MakeStatus(0x80047058));
    EXPECT_EQ(Utility()->ErrorQuery(nullptr, text.Out()), MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Null pointer passed for method ErrorQuery, parameter ErrorCode.");
}

TEST_F(InherentTest, StatusPollingIsOnAgainAfterAnErrorQueryThatFailed) {
    Connect();
    EXPECT_EQ(Operation()->put_QueryInstrumentStatus(VARIANT_TRUE), S_OK);
    fake.Expect(":SYST:ERR?\n");  // never answered, and not polled
    LONG code = 0;
    BstrPtr text;
    EXPECT_EQ(Utility()->ErrorQuery(&code, text.Out()), MakeStatus(0x80047059));
    EXPECT_EQ(ErrorText(), "Kestrion: Unexpected response from the instrument.");
    VARIANT_BOOL flag = VARIANT_FALSE;
    EXPECT_EQ(Operation()->get_QueryInstrumentStatus(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_TRUE);
}

}  // namespace
}  // namespace kestrion
