// The session over VISA: opening and closing, statuses, reading and writing.
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VisaSessionTest : public SessionFixture {};
class OpenVisaSessionTest : public OpenSessionFixture {};

// Opening and closing -----------------------------------------------------------------------------

TEST_F(VisaSessionTest, InitializeOpensManagerAndInstrumentAndAsksForTheInterface) {
    ASSERT_EQ(session.Initialize("GPIB0::7::INSTR", &poller, &reporter, &formatter), S_OK);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viOpenDefaultRM()", "viOpen(\"GPIB0::7::INSTR\", 0, 2000)",
                            "viGetAttribute(INTF_TYPE)", "viGetAttribute(RSRC_CLASS)",
                            "viGetAttribute(RSRC_NAME)"));
    EXPECT_NE(session.GetInstrumentSession(), 0U);
    EXPECT_EQ(&session.GetFunctions(), &fake.Table());
}

TEST_F(VisaSessionTest, InitializeHandsTheResourceToTheSelector) {
    std::string asked;
    CVisaCSession own([&](std::string_view resource, const visa::FunctionTable*& functions) {
        asked = resource;
        functions = &fake.Table();
        return S_OK;
    });
    EXPECT_EQ(own.Initialize("USB0::1::2::3::INSTR", &poller, &reporter, &formatter), S_OK);
    EXPECT_EQ(asked, "USB0::1::2::3::INSTR");
}

TEST_F(VisaSessionTest, SocketOverTcpipGetsTerminationCharacterThenEnableThenSendEnd) {
    fake.SetInterfaceType(6);
    ASSERT_EQ(session.Initialize("TCPIP0::scope::4000::SOCKET", &poller, &reporter, &formatter),
              S_OK);
    EXPECT_THAT(fake.CallsOf("viSetAttribute"),
                ElementsAre("viSetAttribute(TERMCHAR, 10)", "viSetAttribute(TERMCHAR_EN, 1)",
                            "viSetAttribute(SEND_END_EN, 1)"));
}

TEST_F(VisaSessionTest, ClassOfSocketAloneCountsOnTcpip) {
    fake.SetInterfaceType(6);
    fake.SetResourceClass("SOCKET");
    fake.SetResourceName("an alias");
    ASSERT_EQ(session.Initialize("an alias", &poller, &reporter, &formatter), S_OK);
    EXPECT_EQ(fake.CallsOf("viSetAttribute").size(), 3U);
}

TEST_F(VisaSessionTest, SerialLineGetsTheSameAsASocket) {
    fake.SetInterfaceType(4);
    ASSERT_EQ(session.Initialize("ASRL1::INSTR", &poller, &reporter, &formatter), S_OK);
    EXPECT_THAT(fake.CallsOf("viSetAttribute"),
                ElementsAre("viSetAttribute(TERMCHAR, 10)", "viSetAttribute(TERMCHAR_EN, 1)",
                            "viSetAttribute(SEND_END_EN, 1)"));
}

TEST_F(VisaSessionTest, InterfacesWithAMessageEndOfTheirOwnAreLeftAlone) {
    const std::vector<std::pair<std::uint16_t, const char*>> interfaces{
        {1, "GPIB0::7::INSTR"},   {6, "TCPIP0::scope::INSTR"}, {7, "USB0::1::2::3::INSTR"},
        {5, "PXI0::1::INSTR"},    {2, "VXI0::1::INSTR"},       {3, "GPIB-VXI0::9::INSTR"},
        {99, "OTHER0::1::INSTR"}, {1, "GPIB0::7::SOCKET"}};
    for (const auto& [type, resource] : interfaces) {
        FakeVisa own;
        own.SetInterfaceType(type);
        CVisaCSession other([&own](std::string_view, const visa::FunctionTable*& functions) {
            functions = &own.Table();
            return S_OK;
        });
        EXPECT_EQ(other.Initialize(resource, &poller, &reporter, &formatter), S_OK) << resource;
        EXPECT_THAT(own.CallsOf("viSetAttribute"), IsEmpty()) << resource;
    }
}

TEST_F(VisaSessionTest, UnreadableResourceClassOrNameMakesASocketUnknown) {
    fake.SetInterfaceType(6);
    fake.FailAttribute(0xBFFF0001, VisaCode(0xBFFF001D));
    EXPECT_EQ(session.Initialize("TCPIP0::scope::4000::SOCKET", &poller, &reporter, &formatter),
              S_OK);
    EXPECT_THAT(fake.CallsOf("viSetAttribute"), IsEmpty());
}

TEST_F(VisaSessionTest, UnreadableInterfaceTypeEndsTheOpening) {
    fake.FailAttribute(0x3FFF0171, VisaCode(0xBFFF001D));
    EXPECT_EQ(session.Initialize("TCPIP0::scope::4000::SOCKET", &poller, &reporter, &formatter),
              MakeStatus(0x8004001D));
    EXPECT_THAT(fake.CallsOf("viSetAttribute"), IsEmpty());
}

TEST_F(VisaSessionTest, MessageEndStopsAtTheFirstSettingThatFails) {
    fake.FailAttribute(kTermCharEnabledAttribute, kVisaIoError);
    EXPECT_EQ(session.Initialize("TCPIP0::scope::4000::SOCKET", &poller, &reporter, &formatter),
              kMappedIoError);
    EXPECT_THAT(fake.CallsOf("viSetAttribute"),
                ElementsAre("viSetAttribute(TERMCHAR, 10)", "viSetAttribute(TERMCHAR_EN, 1)"));
}

TEST_F(VisaSessionTest, NullPartnersAreRefusedWithoutAnyCall) {
    EXPECT_EQ(session.Initialize("x", nullptr, &reporter, &formatter), E_POINTER);
    EXPECT_EQ(session.Initialize("x", &poller, nullptr, &formatter), E_POINTER);
    EXPECT_EQ(session.Initialize("x", &poller, &reporter, nullptr), E_POINTER);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(VisaSessionTest, OpeningWithoutMemoryIsReportedAndLeavesTheSessionClosed) {
    sessionMemoryIsOut = true;
    EXPECT_EQ(session.Initialize("x", &poller, &reporter, &formatter), kOutOfMemoryStatus);
    EXPECT_THAT(
        reporter.reports,
        ElementsAre(
            "ReportOutOfMemory(Failed to create the formatted I/O read and write buffers.)"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(session.Clear(), kNotInitializedStatus);
}

TEST_F(VisaSessionTest, SelectorThatFailsEndsTheOpeningWithItsStatus) {
    CVisaCSession own(
        [](std::string_view, const visa::FunctionTable*&) { return MakeStatus(0x80047060); });
    EXPECT_EQ(own.Initialize("x", &poller, &reporter, &formatter), MakeStatus(0x80047060));
    EXPECT_EQ(own.Clear(), MakeStatus(0x8004000E));
    EXPECT_THAT(reporter.reports,
                ElementsAre("RaiseWithStatus(No VISA library is open for this session.)"));
    EXPECT_EQ(own.Close(), S_OK);
    EXPECT_EQ(own.Clear(), kNotInitializedStatus);
}

TEST_F(VisaSessionTest, SelectorThatGivesNoTableIsAnInconsistency) {
    CVisaCSession own([](std::string_view, const visa::FunctionTable*&) { return S_OK; });
    EXPECT_EQ(own.Initialize("x", &poller, &reporter, &formatter), E_UNEXPECTED);
}

TEST_F(VisaSessionTest, ResourceManagerThatDoesNotOpenEndsTheOpening) {
    fake.FailFunction("viOpenDefaultRM", VisaCode(0xBFFF0000));
    EXPECT_EQ(Open(), MakeStatus(0x80040000));
    EXPECT_EQ(session.Close(), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(VisaSessionTest, InstrumentThatDoesNotOpenIsReportedInVisasWordsAndLeavesNothingOpen) {
    fake.FailFunction("viOpen", VisaCode(0xBFFF0011));
    fake.SetDescription(VisaCode(0xBFFF0011), "Insufficient location information");
    EXPECT_EQ(Open(), MakeStatus(0x80040011));
    EXPECT_THAT(reporter.reports,
                ElementsAre("RaiseWithStatus(Insufficient location information)"));
    EXPECT_EQ(fake.OpenObjects(), 1);
    EXPECT_EQ(session.Close(), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viClose(manager)"));
    EXPECT_EQ(fake.OpenObjects(), 0);
}

TEST_F(VisaSessionTest, WarningFromTheOpeningIsSuccess) {
    fake.FailFunction("viSetAttribute", VisaCode(0x3FFF0084));
    EXPECT_EQ(session.Initialize("TCPIP0::scope::4000::SOCKET", &poller, &reporter, &formatter),
              MakeStatus(0x00040084));
    EXPECT_THAT(reporter.reports, IsEmpty());
}

TEST_F(OpenVisaSessionTest, CloseClosesTheManagerAndForgetsTheNumbers) {
    EXPECT_EQ(session.Close(), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viClose(manager)"));
    EXPECT_EQ(session.GetInstrumentSession(), 0U);
    EXPECT_EQ(fake.OpenObjects(), 0);
}

TEST_F(OpenVisaSessionTest, CloseTwiceIsHarmless) {
    EXPECT_EQ(session.Close(), S_OK);
    EXPECT_EQ(session.Close(), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viClose(manager)"));
}

TEST_F(VisaSessionTest, CloseOfASessionThatWasNeverOpenIsHarmless) {
    EXPECT_EQ(session.Close(), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(OpenVisaSessionTest, CloseThatFailsTellsAndClosesAllTheSame) {
    fake.FailFunction("viClose", VisaCode(0xBFFF0016));
    EXPECT_EQ(session.Close(), MakeStatus(0x80040016));
    EXPECT_EQ(session.GetInstrumentSession(), 0U);
    EXPECT_EQ(session.Clear(), kNotInitializedStatus);
}

TEST_F(OpenVisaSessionTest, InitializeOnAnOpenSessionClosesTheFormerOne) {
    EXPECT_EQ(session.Initialize("TCPIP0::other::INSTR", &poller, &reporter, &formatter), S_OK);
    EXPECT_EQ(fake.Calls().front(), "viClose(manager)");
    EXPECT_EQ(fake.OpenObjects(), 2);
}

TEST_F(VisaSessionTest, DestructionClosesWhatIsOpen) {
    {
        CVisaCSession own([this](std::string_view, const visa::FunctionTable*& functions) {
            functions = &fake.Table();
            return S_OK;
        });
        ASSERT_EQ(own.Initialize("x", &poller, &reporter, &formatter), S_OK);
        EXPECT_EQ(fake.OpenObjects(), 2);
    }
    EXPECT_EQ(fake.OpenObjects(), 0);
}

TEST_F(OpenVisaSessionTest, TerminatorsSurviveCloseAndGoToTheNextBuffer) {
    ASSERT_EQ(session.SetWriteTerminator("\r\n"), S_OK);
    ASSERT_EQ(session.SetReadTerminator(";"), S_OK);
    ASSERT_EQ(session.Close(), S_OK);
    ASSERT_EQ(Open(), S_OK);
    std::string text;
    EXPECT_EQ(session.GetWriteTerminator(&text), S_OK);
    EXPECT_EQ(text, "\r\n");
    EXPECT_EQ(session.GetReadTerminator(&text), S_OK);
    EXPECT_EQ(text, ";");
    fake.Respond("AB;");
    EXPECT_EQ(session.QueryStringNoPoll("X?", &text), S_OK);
    EXPECT_EQ(text, "AB");
    EXPECT_EQ(fake.Written(), "X?\r\n");
}

// Status mapping ----------------------------------------------------------------------------------

TEST_F(OpenVisaSessionTest, StatusZeroIsZero) {
    EXPECT_EQ(session.MapStatus(0), S_OK);
}

TEST_F(OpenVisaSessionTest, WarningsKeepTheirLowBits) {
    EXPECT_EQ(session.MapStatus(VisaCode(0x3FFF0006)), 0x00040006);
    EXPECT_EQ(session.MapStatus(VisaCode(0x3FFF0005)), 0x00040005);
    EXPECT_EQ(session.MapStatus(VisaCode(0x3FFF009B)), 0x0004009B);
    EXPECT_THAT(reporter.reports, IsEmpty());
}

TEST_F(OpenVisaSessionTest, TimeoutIsReportedAsOneWithAnEmptyText) {
    EXPECT_EQ(session.MapStatus(kVisaTimeout), kIoTimeoutStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoTimeout()"));
}

TEST_F(OpenVisaSessionTest, ErrorIsReportedUnderItsMappedStatusInVisasWords) {
    fake.SetDescription(VisaCode(0xBFFF000F), "The resource is locked.");
    EXPECT_EQ(session.MapStatus(VisaCode(0xBFFF000F)), MakeStatus(0x8004000F));
    EXPECT_THAT(reporter.reports, ElementsAre("RaiseWithStatus(The resource is locked.)"));
}

// Reading and writing -----------------------------------------------------------------------------

TEST_F(OpenVisaSessionTest, CountReachedIsMoreDataAndTheBufferGoesOnReading) {
    fake.Respond(std::string(5000, 'z') + "\n");
    BYTE bytes[6000];
    std::uint32_t actual = 0;
    EXPECT_EQ(session.LowLevelReadNoPoll(bytes, 4, &actual, -2), IoStatusMoreData);
    EXPECT_EQ(actual, 4U);
    EXPECT_EQ(session.ReadBytesNoPoll(bytes, 6000, &actual, false), S_OK);
    EXPECT_EQ(actual, 4996U);
    EXPECT_THAT(fake.Calls(), ElementsAre("viRead(4)", "viRead(4096)", "viRead(4096)"));
}

TEST_F(OpenVisaSessionTest, TerminationCharacterEndsAResponseAsEndDoes) {
    ASSERT_EQ(session.SetTerminationCharacterEnabled(true), S_OK);
    fake.Respond("AB\n", false);
    BYTE bytes[10];
    std::uint32_t actual = 0;
    EXPECT_EQ(session.LowLevelReadNoPoll(bytes, 10, &actual, -2), S_OK);
    EXPECT_EQ(actual, 3U);
}

TEST_F(OpenVisaSessionTest, TimeoutOfAReadIsReportedAndCountsTheBytesThatCame) {
    fake.Respond("AB", false);
    BYTE bytes[10];
    std::uint32_t actual = 0;
    EXPECT_EQ(session.LowLevelReadNoPoll(bytes, 10, &actual, -2), kIoTimeoutStatus);
    EXPECT_EQ(actual, 2U);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoTimeout()"));
}

TEST_F(OpenVisaSessionTest, OtherWarningsOfAReadStayWhatTheyAre) {
    fake.FailFunction("viRead", VisaCode(0x3FFF009B));
    BYTE byte = 0;
    EXPECT_EQ(session.LowLevelReadNoPoll(&byte, 1, nullptr, -2), 0x0004009B);
}

TEST_F(OpenVisaSessionTest, WriteSetsTheActualOnSuccessOnly) {
    const BYTE bytes[] = {'A', 'B'};
    std::uint32_t actual = 77;
    fake.FailFunction("viWrite", kVisaIoError);
    EXPECT_EQ(session.LowLevelWriteNoPoll(bytes, 2, &actual, -2), kMappedIoError);
    EXPECT_EQ(actual, 77U);
    fake.FailFunction("viWrite", 0);
    EXPECT_EQ(session.LowLevelWriteNoPoll(bytes, 2, &actual, -2), S_OK);
    EXPECT_EQ(actual, 2U);
    EXPECT_EQ(fake.Calls().back(), "viWrite(\"AB\")");
}

TEST_F(OpenVisaSessionTest, NullBuffersOfTheLowLevelFamilyAreReportedByTheirNames) {
    std::uint32_t actual = 0;
    SAFEARRAY** noArray = nullptr;
    EXPECT_EQ(session.LowLevelReadNoPoll(static_cast<BYTE*>(nullptr), 1, &actual, -2),
              kNullPointerStatus);
    EXPECT_EQ(session.LowLevelReadNoPoll(noArray, 1, -2), kNullPointerStatus);
    EXPECT_EQ(session.LowLevelReadStringNoPoll(static_cast<std::string*>(nullptr), 1, -2),
              kNullPointerStatus);
    EXPECT_EQ(session.LowLevelReadStringNoPoll(static_cast<BSTR*>(nullptr), 1, -2),
              kNullPointerStatus);
    EXPECT_EQ(session.LowLevelWriteNoPoll(static_cast<const BYTE*>(nullptr), 1, &actual, -2),
              kNullPointerStatus);
    EXPECT_EQ(session.LowLevelWriteNoPoll(static_cast<SAFEARRAY*>(nullptr), &actual, -2),
              kNullPointerStatus);
    EXPECT_EQ(session.LowLevelWriteStringNoPoll(static_cast<BSTR>(nullptr), &actual, -2),
              kNullPointerStatus);
    EXPECT_EQ(session.LowLevelWriteStringNoPoll(std::string_view(), &actual, -2),
              kNullPointerStatus);
    EXPECT_EQ(session.ReadStatusByte(nullptr), kNullPointerStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportNullPointer(LowLevelReadNoPoll | pBuf | )",
                            "ReportNullPointer(LowLevelReadNoPoll | ppsaBuf | )",
                            "ReportNullPointer(LowLevelReadStringNoPoll | pBuf | )",
                            "ReportNullPointer(LowLevelReadStringNoPoll | pbstrBuf | )",
                            "ReportNullPointer(LowLevelWriteNoPoll | pBuf | )",
                            "ReportNullPointer(LowLevelWriteNoPoll | psaBuf | )",
                            "ReportNullPointer(LowLevelWriteStringNoPoll | bstrBuf | )",
                            "ReportNullPointer(LowLevelWriteStringNoPoll | pBuf | )",
                            "ReportNullPointer(ReadStatusBte | psStatusByte | )"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(OpenVisaSessionTest, LowLevelFormsReadArraysAndTextsOfWhatCame) {
    fake.Respond("ABC");
    SafeArrayPtr array;
    EXPECT_EQ(session.LowLevelReadNoPoll(array.Out(), 10, -2), S_OK);
    EXPECT_THAT(array.Elements<BYTE>(), ElementsAre('A', 'B', 'C'));
    fake.Respond("D\xA0");
    BstrPtr wide;
    EXPECT_EQ(session.LowLevelReadStringNoPoll(wide.Out(), 10, -2), S_OK);
    EXPECT_EQ(wide.View(), u"D\u00A0");
    fake.Respond(std::string(3000, 'q'));
    std::string text;
    EXPECT_EQ(session.LowLevelReadStringNoPoll(&text, 5000, -2), S_OK);
    EXPECT_EQ(text, std::string(3000, 'q'));
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(OpenVisaSessionTest, LongLowLevelTextWithoutMemoryFails) {
    sessionMemoryIsOut = true;
    std::string text;
    EXPECT_EQ(session.LowLevelReadStringNoPoll(&text, 1008, -2), E_OUTOFMEMORY);
    fake.Respond("A");
    EXPECT_EQ(session.LowLevelReadStringNoPoll(&text, 1007, -2), S_OK);
}

TEST_F(OpenVisaSessionTest, PolledLowLevelFormsPollOnceEachAfterSuccess) {
    BYTE bytes[4] = {'A', 'B', 'C', 'D'};
    std::uint32_t actual = 0;
    SafeArrayPtr array(SafeArrayCreateVector(VT_UI1, 0, 2));
    std::memcpy(array.Elements<BYTE>().data(), "XY", 2);
    const BstrPtr wide(std::u16string_view(u"WIDE"));
    EXPECT_EQ(session.LowLevelWrite(bytes, 4, &actual, -2), S_OK);
    EXPECT_EQ(session.LowLevelWrite(array.Get(), 9, &actual, -2), S_OK);
    EXPECT_EQ(actual, 2U);
    EXPECT_EQ(session.LowLevelWriteString(wide.Get(), 3, -2), S_OK);
    EXPECT_EQ(session.LowLevelWriteString("TEXT", 9, -2), S_OK);
    EXPECT_EQ(poller.polls, 4);
    EXPECT_THAT(fake.CallsOf("viWrite"), ElementsAre("viWrite(\"ABCD\")", "viWrite(\"XY\")",
                                                     "viWrite(\"WID\")", "viWrite(\"TEXT\")"));
    for (int i = 0; i < 4; ++i) {
        fake.Respond("r");
    }
    BstrPtr readWide;
    std::string text;
    EXPECT_EQ(session.LowLevelRead(bytes, 4, &actual, -2), S_OK);
    EXPECT_EQ(session.LowLevelRead(array.Out(), 4, -2), S_OK);
    EXPECT_EQ(session.LowLevelReadString(readWide.Out(), 4, -2), S_OK);
    EXPECT_EQ(session.LowLevelReadString(&text, 4, -2), S_OK);
    EXPECT_EQ(poller.polls, 8);
    EXPECT_EQ(session.LowLevelReadString(&text, 4, -2), kIoTimeoutStatus);
    EXPECT_EQ(poller.polls, 8);
}

TEST_F(OpenVisaSessionTest, UnpolledLowLevelWritesTakeArraysAndTexts) {
    SafeArrayPtr array(SafeArrayCreateVector(VT_UI1, 0, 2));
    std::memcpy(array.Elements<BYTE>().data(), "XY", 2);
    const BstrPtr wide(std::u16string_view(u"W\u00B5"));
    std::uint32_t actual = 0;
    EXPECT_EQ(session.LowLevelWriteNoPoll(array.Get(), &actual, -2), S_OK);
    EXPECT_EQ(session.LowLevelWriteStringNoPoll(wide.Get(), &actual, -2), S_OK);
    EXPECT_EQ(session.LowLevelWriteStringNoPoll("T", &actual, -2), S_OK);
    EXPECT_EQ(actual, 1U);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viWrite(\"XY\")", "viWrite(\"W\\xB5\")", "viWrite(\"T\")"));
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(OpenVisaSessionTest, AsynchronousTransfersGiveTheirJob) {
    BYTE bytes[3] = {'A', 'B', 'C'};
    visa::ViJobId job = 0;
    IVisaCLowLevelIo* io = session.GetLowLevelIo();
    EXPECT_EQ(io->ReadAsync(bytes, 3, &job), S_OK);
    EXPECT_EQ(job, 77U);
    EXPECT_EQ(io->WriteAsync(bytes, 3, &job), S_OK);
    EXPECT_EQ(job, 78U);
    SafeArrayPtr array(SafeArrayCreateVector(VT_UI1, 0, 2));
    std::memcpy(array.Elements<BYTE>().data(), "XY", 2);
    EXPECT_EQ(io->WriteAsync(array.Get(), &job), S_OK);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viReadAsync(3)", "viWriteAsync(\"ABC\")", "viWriteAsync(\"XY\")"));
}

TEST_F(OpenVisaSessionTest, AsynchronousTransfersRefuseNull) {
    visa::ViJobId job = 0;
    EXPECT_EQ(session.ReadAsync(nullptr, 3, &job), kNullPointerStatus);
    EXPECT_EQ(session.WriteAsync(static_cast<const BYTE*>(nullptr), 3, &job), kNullPointerStatus);
    EXPECT_EQ(session.WriteAsync(static_cast<SAFEARRAY*>(nullptr), &job), kInvalidValueStatus);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(OpenVisaSessionTest, StatusByteAndClearAreOneCallEach) {
    fake.SetStatusByte(0x21);
    BYTE value = 0;
    EXPECT_EQ(session.ReadStatusByte(&value), S_OK);
    EXPECT_EQ(value, 0x21);
    EXPECT_EQ(session.Clear(), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viReadSTB()", "viClear()"));
}

TEST_F(VisaSessionTest, DirectAccessOfAClosedSessionIsSafe) {
    EXPECT_EQ(session.GetDirectIo()->GetInstrumentSession(), 0U);
    visa::ViUInt16 value = 0;
    EXPECT_EQ(session.GetDirectIo()->GetFunctions().viReadSTB(0, &value), VisaCode(0xBFFF000E));
}

}  // namespace
}  // namespace kestrion
