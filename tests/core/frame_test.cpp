// The call frame: the order of its checks, simulation, and one property from entry to wire.
#include <gmock/gmock.h>

#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr HRESULT kNotInitialized = MakeStatus(0x8004701D);

class FrameTest : public ScopeTest {
  protected:
    ComPtr<IKestrionAcquisition> Acquisition() { return As<IKestrionAcquisition>(); }
    ComPtr<IIviScopeAcquisition> ClassAcquisition() { return As<IIviScopeAcquisition>(); }
};

TEST_F(FrameTest, AnyMemberBeforeInitializeIsNotConnected) {
    auto mode = KestrionAcquisitionModeAverage;
    EXPECT_EQ(Acquisition()->get_Mode(&mode), kNotInitialized);
    EXPECT_EQ(ErrorText(), "Kestrion: A connection to the instrument has not been established.");
    // The test comes before the out parameter is touched.
    EXPECT_EQ(mode, KestrionAcquisitionModeAverage);
    EXPECT_EQ(Acquisition()->get_Mode(nullptr), kNotInitialized);
    EXPECT_EQ(As<IIviDriverUtility>()->Reset(), kNotInitialized);
    BstrPtr text;
    EXPECT_EQ(As<IIviDriverOperation>()->get_LogicalName(text.Out()), kNotInitialized);
}

TEST_F(FrameTest, InterfacesOfAnObjectThatIsNotConnectedCanBeAskedFor) {
    EXPECT_TRUE(As<IIviDriver>());
    EXPECT_TRUE(As<IIviScope>());
    EXPECT_TRUE(As<ISupportErrorInfo>());
    EXPECT_EQ(Query<IUnknown>(Acquisition().Get()).Get(), Query<IUnknown>(scope.Get()).Get());
    void* none = &none;
    const GUID unknown{1, 2, 3, {4}};
    EXPECT_EQ(scope->QueryInterface(unknown, &none), E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(scope->QueryInterface(kInterfaceId<IKestrion>, nullptr), E_POINTER);
}

TEST_F(FrameTest, ErrorInformationIsPromisedForTheMainInterfaceOnly) {
    EXPECT_EQ(As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(kInterfaceId<IKestrion>), S_OK);
    EXPECT_EQ(As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(kInterfaceId<IIviScope>),
              S_FALSE);
}

TEST_F(FrameTest, ANullOutPointerNamesMemberAndParameter) {
    Connect();
    EXPECT_EQ(Acquisition()->get_Mode(nullptr), MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(), "Kestrion: Null pointer passed for method get_Mode, parameter val.");
    double x = 0.0;
    EXPECT_EQ(As<IKestrionWaveformTransfer>()->FetchWaveform(KestrionSourceCh1, nullptr, &x, &x),
              MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Null pointer passed for method FetchWaveform, parameter WaveformArray.");
}

TEST_F(FrameTest, TheErrorObjectNamesTheInterfaceOfTheMember) {
    Connect();
    EXPECT_EQ(Acquisition()->get_Mode(nullptr), MakeStatus(0x80047058));
    ComPtr<IErrorInfo> error;
    ASSERT_EQ(GetErrorInfo(0, error.Out()), S_OK);
    GUID iid{};
    EXPECT_EQ(error->GetGUID(&iid), S_OK);
    EXPECT_EQ(iid, kInterfaceId<IKestrionAcquisition>);
}

TEST_F(FrameTest, ACallThatSucceedsLeavesNoErrorOfAnEarlierOne) {
    Connect();
    EXPECT_EQ(Acquisition()->get_Mode(nullptr), MakeStatus(0x80047058));
    fake.Expect("ACQUIRE:MODE?\n").Reply("SAMPLE\n");
    auto mode = KestrionAcquisitionModeAverage;
    EXPECT_EQ(Acquisition()->get_Mode(&mode), S_OK);
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(FrameTest, AnOutParameterIsZeroedBeforeABodyThatFails) {
    Connect();
    fake.Expect("ACQUIRE:NUMAVG?\n").Reply("none\n");
    LONG averages = 99;
    EXPECT_EQ(Acquisition()->get_NumberAverages(&averages), E_UNEXPECTED);
    EXPECT_EQ(averages, 0);
}

// The slice: IIviScopeAcquisition.Type over IKestrionAcquisition.Mode.

TEST_F(FrameTest, ClassAttributeInSimulationIsZeroBeforeAnyPut) {
    Simulate();
    auto type = IviScopeAcquisitionTypeAverage;
    EXPECT_EQ(ClassAcquisition()->get_Type(&type), S_OK);
    EXPECT_EQ(static_cast<int>(type), 0);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(FrameTest, ClassAttributeInSimulationKeepsAValueThatTheClassHasNoNameFor) {
    Simulate();
    EXPECT_EQ(ClassAcquisition()->put_Type(static_cast<IviScopeAcquisitionTypeEnum>(5)), S_OK);
    auto type = IviScopeAcquisitionTypeNormal;
    EXPECT_EQ(ClassAcquisition()->get_Type(&type), S_OK);
    EXPECT_EQ(static_cast<int>(type), 5);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(FrameTest, AResetInSimulationReturnsAttributesToZero) {
    Simulate();
    EXPECT_EQ(ClassAcquisition()->put_NumberOfAverages(7), S_OK);
    LONG averages = 0;
    EXPECT_EQ(ClassAcquisition()->get_NumberOfAverages(&averages), S_OK);
    EXPECT_EQ(averages, 7);
    EXPECT_EQ(As<IIviDriverUtility>()->Reset(), S_OK);
    EXPECT_EQ(ClassAcquisition()->get_NumberOfAverages(&averages), S_OK);
    EXPECT_EQ(averages, 0);
}

TEST_F(FrameTest, CloseForgetsWhatSimulationKept) {
    Simulate();
    EXPECT_EQ(ClassAcquisition()->put_NumberOfAverages(7), S_OK);
    EXPECT_EQ(scope->Close(), S_OK);
    Simulate();
    LONG averages = 1;
    EXPECT_EQ(ClassAcquisition()->get_NumberOfAverages(&averages), S_OK);
    EXPECT_EQ(averages, 0);
}

TEST_F(FrameTest, AnInstrumentMemberInSimulationIsNotConnected) {
    Simulate();
    auto mode = KestrionAcquisitionModeSample;
    EXPECT_EQ(Acquisition()->get_Mode(&mode), kNotInitialized);
    EXPECT_EQ(ErrorText(), "Kestrion: A connection to the instrument has not been established.");
    SAFEARRAY* waveform = nullptr;
    double x = 0.0;
    EXPECT_EQ(As<IKestrionWaveformTransfer>()->FetchWaveform(KestrionSourceCh1, &waveform, &x, &x),
              kNotInitialized);
    EXPECT_EQ(waveform, nullptr);
}

TEST_F(FrameTest, EveryModeIsReadFromItsToken) {
    Connect();
    const std::pair<const char*, int> modes[] = {{"SAMPLE", 0},   {"PEAKDETECT", 1}, {"HIRES", 2},
                                                 {"ENVELOPE", 3}, {"AVERAGE", 4},    {"WFMDB", 5}};
    for (const auto& [token, value] : modes) {
        fake.Expect("ACQUIRE:MODE?\n").Reply(std::string(token) + "\n");
        auto mode = KestrionAcquisitionModeSample;
        EXPECT_EQ(Acquisition()->get_Mode(&mode), S_OK) << token;
        EXPECT_EQ(static_cast<int>(mode), value) << token;
    }
}

TEST_F(FrameTest, EveryModeIsSentAsItsToken) {
    Connect();
    const std::pair<const char*, int> modes[] = {{"SAMPLE", 0},   {"PEAKDETECT", 1}, {"HIRES", 2},
                                                 {"ENVELOPE", 3}, {"AVERAGE", 4},    {"WFMDB", 5}};
    for (const auto& [token, value] : modes) {
        fake.Expect("ACQUIRE:MODE " + std::string(token) + "\n");
        EXPECT_EQ(Acquisition()->put_Mode(static_cast<KestrionAcquisitionModeEnum>(value)), S_OK)
            << token;
    }
}

TEST_F(FrameTest, ATokenWithoutAValueIsAnUnexpectedResponse) {
    Connect();
    fake.Expect("ACQUIRE:MODE?\n").Reply("FASTER\n");
    auto mode = KestrionAcquisitionModeAverage;
    EXPECT_EQ(Acquisition()->get_Mode(&mode), MakeStatus(0x80047059));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Unexpected response from the instrument.\r\n"
              "Unexpected value 'FASTER' for enum 'KestrionAcquisitionModeEnum'.");
    EXPECT_EQ(mode, KestrionAcquisitionModeSample);
}

TEST_F(FrameTest, AValueWithoutATokenSendsNothing) {
    Connect();
    EXPECT_EQ(Acquisition()->put_Mode(static_cast<KestrionAcquisitionModeEnum>(6)),
              MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (6) for method put_Mode, parameter nVal.");
    // Nothing of the command that couldn't be formatted is left behind.
    fake.Expect("ACQUIRE:MODE SAMPLE\n");
    EXPECT_EQ(Acquisition()->put_Mode(KestrionAcquisitionModeSample), S_OK);
}

TEST_F(FrameTest, ClassTypeGoesThroughTheInstrumentMember) {
    Connect();
    fake.Expect("ACQUIRE:MODE?\n").Reply("AVERAGE\n");
    auto type = IviScopeAcquisitionTypeNormal;
    EXPECT_EQ(ClassAcquisition()->get_Type(&type), S_OK);
    EXPECT_EQ(static_cast<int>(type), 4);
    fake.Expect("ACQUIRE:MODE ENVELOPE\n");
    EXPECT_EQ(ClassAcquisition()->put_Type(static_cast<IviScopeAcquisitionTypeEnum>(3)), S_OK);
}

TEST_F(FrameTest, ClassTypeHasNoNameForWaveformDatabase) {
    Connect();
    fake.Expect("ACQUIRE:MODE?\n").Reply("WFMDB\n");
    auto type = IviScopeAcquisitionTypeAverage;
    EXPECT_EQ(ClassAcquisition()->get_Type(&type), MakeStatus(0x80047059));
    EXPECT_EQ(ErrorText(), "Kestrion: Unexpected response from the instrument.");
}

TEST_F(FrameTest, TheErrorTextOfANestedMemberNamesTheInnermost) {
    Connect();
    EXPECT_EQ(ClassAcquisition()->put_Type(static_cast<IviScopeAcquisitionTypeEnum>(9)),
              MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (9) for method put_Mode, parameter nVal.");
}

TEST_F(FrameTest, WaveformDatabaseIsRefusedByOneFamily) {
    Connect("HR5054B");
    EXPECT_EQ(Acquisition()->put_Mode(KestrionAcquisitionModeWfmDB), MakeStatus(0x80020009));
    EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 236"));
    fake.Expect("ACQUIRE:MODE AVERAGE\n");
    EXPECT_EQ(Acquisition()->put_Mode(KestrionAcquisitionModeAverage), S_OK);
}

TEST_F(FrameTest, AnInstrumentStatusPollFollowsASendWhenAskedFor) {
    fake.Expect("*IDN?\n").Reply("KESTRION,PL7254C,1,1\n");
    fake.Expect("*ESR?\n").Reply("0\n");
    fake.Expect("HEAD OFF;:VERBOSE 1\n");
    fake.Expect("*ESR?\n").Reply("0\n");
    ASSERT_EQ(Initialize("GPIB0::1::INSTR", "queryinstrstatus=true"), S_OK);
    fake.Expect("ACQUIRE:STATE ON\n");
    fake.Expect("*ESR?\n").Reply("1\n");
    EXPECT_EQ(Acquisition()->Start(), S_OK);
    fake.Expect("ACQUIRE:STATE OFF\n");
    fake.Expect("*ESR?\n").Reply("36\n");
    EXPECT_EQ(Acquisition()->Stop(), MakeStatus(0x80047001));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Instrument error detected.  Use ErrorQuery() to determine error(s).");
}

TEST_F(FrameTest, ANumberLeavesNothingBehindForTheStatusPoll) {
    Connect();
    EXPECT_EQ(As<IIviDriverOperation>()->put_QueryInstrumentStatus(VARIANT_TRUE), S_OK);
    // A reply that ends in a digit that would read as an error bit.
    fake.Expect("ACQUIRE:NUMAVG?\n").Reply("64\n");
    fake.Expect("*ESR?\n").Reply("0\n");
    LONG averages = 0;
    EXPECT_EQ(Acquisition()->get_NumberAverages(&averages), S_OK) << ErrorText();
    EXPECT_EQ(averages, 64);
}

TEST_F(FrameTest, ANumberLeavesNothingBehindForATextOrABlock) {
    Connect();
    fake.Expect("ACQUIRE:NUMAVG?\n").Reply("64\n");
    LONG averages = 0;
    EXPECT_EQ(Acquisition()->get_NumberAverages(&averages), S_OK);
    fake.Expect("*OPT?\n").Reply("none\n");
    const BstrPtr query(std::string_view("*OPT?"));
    BstrPtr answer;
    EXPECT_EQ(As<IDirectIo>()->QueryString(query.Get(), answer.Out()), S_OK);
    EXPECT_EQ(answer.Utf8(), "none");
    fake.Expect("ACQUIRE:NUMAVG?\n").Reply("32\n");
    EXPECT_EQ(Acquisition()->get_NumberAverages(&averages), S_OK);
    fake.Expect("*TST?\n").Reply("0\n");
    LONG result = 9;
    EXPECT_EQ(As<IIviDriverUtility>()->SelfTest(&result, answer.Out()), S_OK);
    EXPECT_EQ(result, 0);
}

TEST_F(FrameTest, ReferencesAreTheSameObject) {
    Connect();
    ComPtr<IKestrionAcquisition> acquisition;
    EXPECT_EQ(scope->get_Acquisition(acquisition.Out()), S_OK);
    EXPECT_EQ(Query<IUnknown>(acquisition.Get()).Get(), Query<IUnknown>(scope.Get()).Get());
    ComPtr<IIviScopeAcquisition> classAcquisition;
    EXPECT_EQ(As<IIviScope>()->get_Acquisition(classAcquisition.Out()), S_OK);
    EXPECT_TRUE(classAcquisition);
}

TEST_F(FrameTest, AnInterfaceThatAnObjectLacksIsNull) {
    Connect();
    void* trigger = &clock;
    EXPECT_EQ(Channel("Channel1")->QueryInterface(kInterfaceId<IIviScopeTrigger>, &trigger),
              E_NOINTERFACE);
    EXPECT_EQ(trigger, nullptr);
}

}  // namespace
}  // namespace kestrion
