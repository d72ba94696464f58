// The instrument's own language through the driver.
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

class DirectIoTest : public ScopeTest {
  protected:
    std::string Ask(std::string_view command) {
        const BstrPtr text(command);
        BstrPtr answer;
        EXPECT_EQ(As<IDirectIo>()->QueryString(text.Get(), answer.Out()), S_OK);
        return answer.Utf8();
    }
};

TEST_F(DirectIoTest, WritesOneLineWithItsTerminator) {
    Connect();
    fake.Expect("DISPLAY:STYLE 50%\n");
    const BstrPtr command(std::string_view("DISPLAY:STYLE 50%"));
    EXPECT_EQ(As<IDirectIo>()->WriteString(command.Get()), S_OK);
}

TEST_F(DirectIoTest, AnAnswerLongerThanTheBufferComesWhole) {
    Connect();
    const std::string longAnswer(10000, 'x');
    fake.Expect("LONG?\n").Reply(longAnswer + "\n");
    EXPECT_EQ(Ask("LONG?"), longAnswer);
}

TEST_F(DirectIoTest, BytesBeyondAsciiKeepTheirValue) {
    Connect();
    fake.Expect("NAME \xB5\n");
    const BstrPtr command(std::u16string_view(u"NAME \u00B5"));
    EXPECT_EQ(As<IDirectIo>()->WriteString(command.Get()), S_OK);
    fake.Expect("NAME?\n").Reply("\xB5s\n");
    EXPECT_EQ(Ask("NAME?"), "\xC2\xB5s");
}

TEST_F(DirectIoTest, TheTimeoutIsTheSessions) {
    Connect();
    LONG timeout = 0;
    EXPECT_EQ(As<IDirectIo>()->get_Timeout(&timeout), S_OK);
    EXPECT_EQ(timeout, 2000);
    EXPECT_EQ(As<IDirectIo>()->put_Timeout(7500), S_OK);
    EXPECT_EQ(As<IDirectIo>()->get_Timeout(&timeout), S_OK);
    EXPECT_EQ(timeout, 7500);
}

TEST_F(DirectIoTest, TellsWhichVisaLibraryAndWhy) {
    Connect();
    BstrPtr text;
    EXPECT_EQ(As<IDirectIo>()->get_VisaLibrary(text.Out()), S_OK);
    EXPECT_EQ(text.Utf8(), "scripted");
    EXPECT_EQ(As<IDirectIo>()->get_VisaLibraryReason(text.Out()), S_OK);
    EXPECT_EQ(text.Utf8(), "for a test");
}

TEST_F(DirectIoTest, TellsTheFamilyOfTheModel) {
    Connect("LK7254B");
    BstrPtr family;
    EXPECT_EQ(As<IDirectIo>()->get_InstrumentFamily(family.Out()), S_OK);
    EXPECT_EQ(family.Utf8(), "LarkB Series");
    EXPECT_EQ(scope->Close(), S_OK);
    Connect("ZZ0000");
    EXPECT_EQ(As<IDirectIo>()->get_InstrumentFamily(family.Out()), S_OK);
    EXPECT_EQ(family.Utf8(), "");
}

TEST_F(DirectIoTest, InSimulationThereIsNoConnection) {
    Simulate();
    const BstrPtr command(std::string_view("*IDN?"));
    BstrPtr answer;
    EXPECT_EQ(As<IDirectIo>()->QueryString(command.Get(), answer.Out()), MakeStatus(0x8004701D));
    EXPECT_EQ(As<IDirectIo>()->WriteString(command.Get()), MakeStatus(0x8004701D));
    EXPECT_EQ(As<IDirectIo>()->get_VisaLibrary(answer.Out()), S_OK);
    EXPECT_EQ(answer.Utf8(), "");
}

TEST_F(DirectIoTest, ALibraryThatCannotBeLoadedEndsInitializeWithTheReason) {
    visaProblem = "libnone.so: not found";
    EXPECT_EQ(Initialize("GPIB0::1::INSTR"), MakeStatus(0x80044214));
    EXPECT_EQ(ErrorText(), "Kestrion: I/O error: .\r\nlibnone.so: not found");
    visaProblem.clear();
    Connect();
}

}  // namespace
}  // namespace kestrion
