// Start-up and shut-down over a scripted instrument.
#include <gmock/gmock.h>

#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StartUpTest : public ScopeTest {
  protected:
    bool Initialized() {
        VARIANT_BOOL initialized = VARIANT_FALSE;
        EXPECT_EQ(scope->get_Initialized(&initialized), S_OK);
        EXPECT_TRUE(initialized == VARIANT_TRUE || initialized == VARIANT_FALSE);
        return initialized == VARIANT_TRUE;
    }
    std::string IdentityText(HRESULT (IIviDriverIdentity::*getter)(BSTR*)) {
        BstrPtr text;
        EXPECT_EQ((As<IIviDriverIdentity>().Get()->*getter)(text.Out()), S_OK);
        return text.Utf8();
    }
};

TEST_F(StartUpTest, SendsTheIdentityQueryAndThenTheHeaderCommand) {
    ExpectStartUp("PL7254C");
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(Initialize("GPIB0::1::INSTR"), S_OK);
    EXPECT_TRUE(Initialized());
    EXPECT_EQ(fake.Written(), "*IDN?\nHEAD OFF;:VERBOSE 1\n");
    EXPECT_THAT(fake.CallsOf("viOpen("), ElementsAre("viOpen(\"GPIB0::1::INSTR\", 0, 2000)"));
}

TEST_F(StartUpTest, InitializeTwiceIsRefusedAndLeavesTheConnectionWorking) {
    Connect();
    EXPECT_EQ(Initialize("GPIB0::2::INSTR", "simulate=true"), MakeStatus(0x80047061));
    EXPECT_EQ(ErrorText(), "Kestrion: The driver is already initialized.");
    VARIANT_BOOL simulate = VARIANT_TRUE;
    EXPECT_EQ(As<IIviDriverOperation>()->get_Simulate(&simulate), S_OK);
    EXPECT_EQ(simulate, VARIANT_FALSE);
    fake.Expect("ACQUIRE:STATE?\n").Reply("1\n");
    VARIANT_BOOL state = VARIANT_FALSE;
    EXPECT_EQ(As<IKestrionAcquisition>()->get_State(&state), S_OK);
    EXPECT_EQ(state, VARIANT_TRUE);
}

TEST_F(StartUpTest, ANullResourceNameIsAnInvalidValue) {
    EXPECT_EQ(scope->Initialize(nullptr, VARIANT_FALSE, VARIANT_FALSE, nullptr),
              MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Invalid value (0) for method Initialize, parameter ResourceName.");
    EXPECT_FALSE(Initialized());
}

TEST_F(StartUpTest, AnUnknownModelWithoutIdQueryRunsEverything) {
    Connect("ZZ0000");
    EXPECT_EQ(IdentityText(&IIviDriverIdentity::get_InstrumentModel), "ZZ0000");
    fake.Expect("ACQUIRE:MODE WFMDB\n");
    EXPECT_EQ(As<IKestrionAcquisition>()->put_Mode(KestrionAcquisitionModeWfmDB), S_OK);
}

TEST_F(StartUpTest, AnUnknownModelWithIdQueryFailsAndClosesTheSession) {
    fake.Expect("*IDN?\n").Reply("KESTRION,ZZ0000,1,1.0\n");
    EXPECT_EQ(Initialize("GPIB0::1::INSTR", "", true), MakeStatus(0x8004705E));
    EXPECT_EQ(ErrorText(), "Kestrion: Instrument ID query failed.\r\nUnrecognized model: ZZ0000.");
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(fake.OpenObjects(), 0);
}

TEST_F(StartUpTest, AKnownModelPassesTheIdQuery) {
    ExpectStartUp("HR5104");
    EXPECT_EQ(Initialize("GPIB0::1::INSTR", "", true), S_OK);
}

TEST_F(StartUpTest, SimulationTouchesNoSession) {
    Simulate();
    EXPECT_TRUE(Initialized());
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(IdentityText(&IIviDriverIdentity::get_InstrumentModel), "Kestrion");
}

TEST_F(StartUpTest, IdQueryInSimulationFailsWithTheDefaultModel) {
    EXPECT_EQ(Initialize("", "simulate=true", true), MakeStatus(0x8004705E));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Instrument ID query failed.\r\nUnrecognized model: Kestrion.");
    EXPECT_EQ(Initialize("", "simulate=true,DriverSetup=Model=PL7254C", true), S_OK);
}

TEST_F(StartUpTest, ResetInSimulationSendsNothing) {
    EXPECT_EQ(Initialize("", "simulate=true", false, true), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(StartUpTest, ResetRunsAfterTheHeaderCommand) {
    ExpectStartUp("PL7254C");
    fake.Expect("*RST;*OPC?\n").Reply("1\n");
    EXPECT_EQ(Initialize("GPIB0::1::INSTR", "", false, true), S_OK);
}

TEST_F(StartUpTest, AFailingResetEndsTheStartUp) {
    ExpectStartUp("PL7254C");
    fake.Expect("*RST;*OPC?\n");  // never answered
    EXPECT_EQ(Initialize("GPIB0::1::INSTR", "", false, true), MakeStatus(0x8004705F));
    EXPECT_EQ(ErrorText(), "Kestrion: Instrument reset failed.");
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(fake.OpenObjects(), 0);
}

TEST_F(StartUpTest, AShortIdentityLeavesTheMissingFieldsEmpty) {
    fake.Expect("*IDN?\n").Reply("A,B\n");
    fake.Expect("HEAD OFF;:VERBOSE 1\n");
    EXPECT_EQ(Initialize("GPIB0::1::INSTR"), S_OK);
    EXPECT_EQ(IdentityText(&IIviDriverIdentity::get_InstrumentManufacturer), "A");
    EXPECT_EQ(IdentityText(&IIviDriverIdentity::get_InstrumentModel), "B");
    EXPECT_EQ(IdentityText(&IIviDriverIdentity::get_InstrumentFirmwareRevision), "");
}

TEST_F(StartUpTest, IdentityFieldsAreTrimmed) {
    fake.Expect("*IDN?\n").Reply("  Maker One , PL7254C ,S1,  2.0 \n");
    fake.Expect("HEAD OFF;:VERBOSE 1\n");
    EXPECT_EQ(Initialize("GPIB0::1::INSTR", "", true), S_OK);
    EXPECT_EQ(IdentityText(&IIviDriverIdentity::get_InstrumentManufacturer), "Maker One");
    EXPECT_EQ(IdentityText(&IIviDriverIdentity::get_InstrumentFirmwareRevision), "2.0");
}

TEST_F(StartUpTest, AModelInTheOptionsIsOverwrittenByTheInstrument) {
    Connect("PL7254C", "DriverSetup=Model=HR5104");
    EXPECT_EQ(IdentityText(&IIviDriverIdentity::get_InstrumentModel), "PL7254C");
}

TEST_F(StartUpTest, AnInstrumentThatIsNotThereEndsWithVisasWords) {
    fake.FailFunction("viOpen", static_cast<visa::ViStatus>(0xBFFF0011));
    fake.SetDescription(static_cast<visa::ViStatus>(0xBFFF0011), "Nothing listens there.");
    EXPECT_EQ(Initialize("TCPIP0::h::1::SOCKET"), MakeStatus(0x80040011));
    EXPECT_EQ(ErrorText(), "Nothing listens there.");
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(fake.OpenObjects(), 0);

    fake.FailFunction("viOpen", 0);
    Connect();
    EXPECT_TRUE(Initialized());
}

TEST_F(StartUpTest, ASilentInstrumentEndsInATimeout) {
    fake.Expect("*IDN?\n");
    EXPECT_EQ(Initialize("GPIB0::1::INSTR"), MakeStatus(0x80044215));
    EXPECT_EQ(ErrorText(), "Kestrion: I/O timeout error: .");
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(fake.OpenObjects(), 0);
}

TEST_F(StartUpTest, TheResultOfTheHeaderCommandIsIgnored) {
    fake.Expect("*IDN?\n").Reply("A,B,C,D\n");
    // The calls before it: open, open, attributes of the link, then one write and one read.
    fake.OnTransfer([this] {
        if (fake.Written() == "*IDN?\n" && fake.CallsOf("viRead").size() == 1) {
            fake.FailFunction("viWrite", static_cast<visa::ViStatus>(0xBFFF003E));
        }
    });
    EXPECT_EQ(Initialize("GPIB0::1::INSTR"), S_OK);
    EXPECT_TRUE(Initialized());
    EXPECT_EQ(fake.CallsOf("viWrite").back(), "viWrite(\"HEAD OFF;:VERBOSE 1\\n\")");
}

TEST_F(StartUpTest, CloseAndInitializeAgainBuildsNewChildren) {
    Connect();
    const auto old = Channel("Channel1");
    EXPECT_EQ(scope->Close(), S_OK);
    EXPECT_FALSE(Initialized());
    EXPECT_EQ(fake.OpenObjects(), 0);
    double position = 0.0;
    EXPECT_EQ(old->get_Position(&position), MakeStatus(0x8004701D));

    Connect();
    EXPECT_EQ(old->get_Position(&position), MakeStatus(0x8004701D));
    EXPECT_EQ(ErrorText(), "Kestrion: A connection to the instrument has not been established.");
    const auto fresh = Channel("Channel1");
    EXPECT_NE(fresh.Get(), old.Get());
    fake.Expect("CH1:POSITION?\n").Reply("1.5\n");
    EXPECT_EQ(fresh->get_Position(&position), S_OK);
    EXPECT_EQ(position, 1.5);
}

TEST_F(StartUpTest, CloseWithoutAConnectionIsReported) {
    EXPECT_EQ(scope->Close(), MakeStatus(0x8004701D));
    EXPECT_EQ(ErrorText(), "Kestrion: A connection to the instrument has not been established.");
}

TEST_F(StartUpTest, AnObjectThatIsReleasedWhileConnectedClosesItself) {
    Connect();
    scope = {};
    EXPECT_EQ(fake.OpenObjects(), 0);
}

TEST_F(StartUpTest, AChildKeepsTheRootAlive) {
    Connect();
    const auto channel = Channel("Channel2");
    scope = {};
    fake.Expect("CH2:POSITION?\n").Reply("-2\n");
    double position = 0.0;
    EXPECT_EQ(channel->get_Position(&position), S_OK);
    EXPECT_EQ(position, -2.0);
}

TEST_F(StartUpTest, InitializedWithANullPointerIsReported) {
    EXPECT_EQ(scope->get_Initialized(nullptr), MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Null pointer passed for method get_Initialized, parameter val.");
}

}  // namespace
}  // namespace kestrion
