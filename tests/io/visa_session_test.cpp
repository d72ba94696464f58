// The session over VISA: opening, attributes, statuses, locks and events.
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "io/visa_enums.h"
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

// Settings and attributes -------------------------------------------------------------------------

TEST_F(OpenVisaSessionTest, TimeoutPassesAsItIsAndMinusOneIsVisasInfinite) {
    EXPECT_EQ(session.SetTimeout(5000), S_OK);
    EXPECT_EQ(session.SetTimeout(-1), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viSetAttribute(TMO_VALUE, 5000)",
                                          "viSetAttribute(TMO_VALUE, 4294967295)"));
    std::int32_t milliseconds = 0;
    EXPECT_EQ(session.GetTimeout(&milliseconds), S_OK);
    EXPECT_EQ(milliseconds, -1);
}

TEST_F(OpenVisaSessionTest, TransportSettingsReachTheirAttributes) {
    BYTE character = 0;
    bool enabled = true;
    EXPECT_EQ(session.SetTerminationCharacter(13), S_OK);
    EXPECT_EQ(session.GetTerminationCharacter(&character), S_OK);
    EXPECT_EQ(character, 13);
    EXPECT_EQ(session.SetTerminationCharacterEnabled(false), S_OK);
    EXPECT_EQ(session.GetTerminationCharacterEnabled(&enabled), S_OK);
    EXPECT_FALSE(enabled);
    EXPECT_EQ(session.SetSendEndEnabled(true), S_OK);
    EXPECT_EQ(session.GetSendEndEnabled(&enabled), S_OK);
    EXPECT_TRUE(enabled);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viSetAttribute(TERMCHAR, 13)", "viGetAttribute(TERMCHAR)",
                            "viSetAttribute(TERMCHAR_EN, 0)", "viGetAttribute(TERMCHAR_EN)",
                            "viSetAttribute(SEND_END_EN, 1)", "viGetAttribute(SEND_END_EN)"));
}

TEST_F(OpenVisaSessionTest, NullOutPointersOfTheSettingsAreReportedByTheirNames) {
    EXPECT_EQ(session.GetTimeout(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetTerminationCharacter(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetTerminationCharacterEnabled(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetProtocol(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<bool*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::uint64_t*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::uint32_t*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::uint16_t*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::uint8_t*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::string*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.SetAttribute(1, static_cast<const char*>(nullptr)), kNullPointerStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportNullPointer(GetTimeout | plTimeout | )",
                            "ReportNullPointer(GetTerminationCharacter | pcTermChar | )",
                            "ReportNullPointer(GetTerminationCharacterEnabled | pbEnabled | )",
                            "ReportNullPointer(GetProtocol | peProtocol | )",
                            "ReportNullPointer(GetAttribute | pbValue | )",
                            "ReportNullPointer(GetAttribute | pullValue | )",
                            "ReportNullPointer(GetAttribute | pulValue | )",
                            "ReportNullPointer(GetAttribute | pusValue | )",
                            "ReportNullPointer(GetAttribute | puchValue | )",
                            "ReportNullPointer(GetAttribute | pstrValue | )",
                            "ReportNullPointer(SetAttribute | pszValue | )"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(OpenVisaSessionTest, AttributesAreReadInEveryWidth) {
    constexpr visa::ViAttr kSome = 0x3FFF1234;
    fake.SetAttributeValue(kSome, 0x1122334455667788, 8);
    std::uint64_t wide = 0;
    EXPECT_EQ(session.GetAttribute(kSome, &wide), S_OK);
    EXPECT_EQ(wide, 0x1122334455667788U);
    fake.SetAttributeValue(kSome, 0x55667788, 4);
    std::uint32_t number = 0;
    EXPECT_EQ(session.GetAttribute(kSome, &number), S_OK);
    EXPECT_EQ(number, 0x55667788U);
    fake.SetAttributeValue(kSome, 0x7788, 2);
    std::uint16_t small = 0;
    EXPECT_EQ(session.GetAttribute(kSome, &small), S_OK);
    EXPECT_EQ(small, 0x7788U);
    bool flag = false;
    EXPECT_EQ(session.GetAttribute(kSome, &flag), S_OK);
    EXPECT_TRUE(flag);
    fake.SetAttributeValue(kSome, 0x88, 1);
    std::uint8_t byte = 0;
    EXPECT_EQ(session.GetAttribute(kSome, &byte), S_OK);
    EXPECT_EQ(byte, 0x88U);
    std::string text;
    EXPECT_EQ(session.GetAttribute(0xBFFF0001, &text), S_OK);
    EXPECT_EQ(text, "INSTR");
}

TEST_F(OpenVisaSessionTest, AttributeWiderThanAskedForGivesItsLowBits) {
    fake.SetAttributeValue(0x3FFF1234, 0x1122334455667788, 8);
    std::uint8_t byte = 0;
    EXPECT_EQ(session.GetAttribute(0x3FFF1234, &byte), S_OK);
    EXPECT_EQ(byte, 0x88U);
}

TEST_F(OpenVisaSessionTest, AttributesAreSetInEveryWidth) {
    constexpr visa::ViAttr kSome = 0x3FFF1234;
    EXPECT_EQ(session.SetAttribute(kSome, true), S_OK);
    EXPECT_EQ(session.SetAttribute(kSome, std::uint64_t{0x1122334455667788}), S_OK);
    EXPECT_EQ(session.SetAttribute(kSome, std::uint32_t{0xFFFFFFFF}), S_OK);
    EXPECT_EQ(session.SetAttribute(kSome, std::uint16_t{65535}), S_OK);
    EXPECT_EQ(session.SetAttribute(kSome, std::uint8_t{255}), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viSetAttribute(0x3FFF1234, 1)",
                                          "viSetAttribute(0x3FFF1234, 1234605616436508552)",
                                          "viSetAttribute(0x3FFF1234, 4294967295)",
                                          "viSetAttribute(0x3FFF1234, 65535)",
                                          "viSetAttribute(0x3FFF1234, 255)"));
    const char* const text = "some text";
    EXPECT_EQ(session.SetAttribute(kSome, text), S_OK);
    EXPECT_EQ(fake.AttributeValue(kSome), reinterpret_cast<std::uintptr_t>(text));
}

TEST_F(OpenVisaSessionTest, FailedAttributeLeavesTheValue) {
    std::uint32_t value = 77;
    EXPECT_EQ(session.GetAttribute(0x3FFF9999, &value), MakeStatus(0x8004001D));
    EXPECT_EQ(value, 77U);
}

TEST_F(OpenVisaSessionTest, ProtocolsAreTranslatedBothWays) {
    for (int own = 0; own < 5; ++own) {
        EXPECT_EQ(session.SetProtocol(static_cast<VisaIoProtocol>(own)), S_OK);
        EXPECT_EQ(fake.AttributeValue(0x3FFF001C), static_cast<std::uint64_t>(own) + 1);
        auto back = VisaIoProtocol::kNormal;
        EXPECT_EQ(session.GetProtocol(&back), S_OK);
        EXPECT_EQ(static_cast<int>(back), own);
    }
}

TEST_F(OpenVisaSessionTest, UnknownProtocolIsRefusedInBothDirections) {
    EXPECT_EQ(session.SetProtocol(static_cast<VisaIoProtocol>(5)), kIoErrorStatus);
    fake.SetAttributeValue(0x3FFF001C, 6, 2);
    auto protocol = VisaIoProtocol::kNormal;
    EXPECT_EQ(session.GetProtocol(&protocol), kIoErrorStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoError(Unsupported VISA I/O protocol.)",
                                              "ReportIoError(Unsupported VISA I/O protocol.)"));
}

TEST_F(OpenVisaSessionTest, TriggerProtocolsAreTranslated) {
    IVisaCLowLevelIo* io = session.GetLowLevelIo();
    for (int own = 0; own < 4; ++own) {
        EXPECT_EQ(io->AssertTrigger(static_cast<VisaTriggerProtocol>(own)), S_OK);
    }
    EXPECT_EQ(io->AssertTrigger(static_cast<VisaTriggerProtocol>(4)), kIoErrorStatus);
    EXPECT_THAT(fake.Calls(), ElementsAre("viAssertTrigger(0)", "viAssertTrigger(1)",
                                          "viAssertTrigger(2)", "viAssertTrigger(5)"));
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoError(Unsupported VISA trigger protocol.)"));
}

TEST_F(OpenVisaSessionTest, InterfaceTypesAreTranslatedAndOthersAreUnknown) {
    IVisaCSessionInfo* info = session.GetSessionInfo();
    const std::vector<std::pair<std::uint16_t, int>> expected{
        {1, 0}, {2, 1}, {3, 2}, {4, 3}, {5, 4}, {6, 5}, {7, 6}, {8, 8}, {0, 8}, {99, 8}};
    for (const auto& [visaType, own] : expected) {
        fake.SetInterfaceType(visaType);
        auto type = VisaInterfaceType::kGpib;
        EXPECT_EQ(info->GetInterfaceType(&type), S_OK);
        EXPECT_EQ(static_cast<int>(type), own) << visaType;
    }
}

TEST_F(OpenVisaSessionTest, InterfaceTypeThatCannotBeReadIsUnknown) {
    fake.FailAttribute(0x3FFF0171, kVisaIoError);
    auto type = VisaInterfaceType::kGpib;
    EXPECT_EQ(session.GetInterfaceType(&type), kMappedIoError);
    EXPECT_EQ(static_cast<int>(type), 8);
    EXPECT_EQ(session.GetInterfaceType(nullptr), kNullPointerStatus);
}

TEST_F(OpenVisaSessionTest, SessionInformationComesFromItsAttributes) {
    IVisaCSessionInfo* info = session.GetSessionInfo();
    std::string text;
    std::uint16_t number = 0;
    EXPECT_EQ(info->GetResourceName(&text), S_OK);
    EXPECT_EQ(text, "TCPIP0::scope::INSTR");
    EXPECT_EQ(info->GetInterfaceName(&text), S_OK);
    EXPECT_EQ(text, "TCPIP0 (scripted)");
    EXPECT_EQ(info->GetResourceClass(&text), S_OK);
    EXPECT_EQ(text, "INSTR");
    EXPECT_EQ(info->GetManufacturerName(&text), S_OK);
    EXPECT_EQ(text, "Scripted maker");
    EXPECT_EQ(info->GetManufacturerId(&number), S_OK);
    EXPECT_EQ(number, 0x0FFF);
    EXPECT_EQ(info->GetInterfaceNumber(&number), S_OK);
    EXPECT_EQ(number, 0);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viGetAttribute(RSRC_NAME)", "viGetAttribute(INTF_INST_NAME)",
                            "viGetAttribute(RSRC_CLASS)", "viGetAttribute(RSRC_MANF_NAME)",
                            "viGetAttribute(RSRC_MANF_ID)", "viGetAttribute(INTF_NUM)"));
}

// Locks -------------------------------------------------------------------------------------------

TEST_F(OpenVisaSessionTest, LockTakesTypeTimeoutAndKeyAndGivesTheKeyThatWasGranted) {
    std::string key = "former";
    EXPECT_EQ(session.Lock(IoLockType::kExclusive, 1000, "", &key), S_OK);
    EXPECT_EQ(key, "");
    EXPECT_TRUE(fake.Locked());
    EXPECT_EQ(session.Unlock(), S_OK);
    EXPECT_FALSE(fake.Locked());
    EXPECT_EQ(session.Lock(IoLockType::kShared, -1, "bench 3", &key), S_OK);
    EXPECT_EQ(key, "bench 3");
    EXPECT_EQ(session.Unlock(), S_OK);
    EXPECT_EQ(session.Lock(IoLockType::kShared, 0, "", nullptr), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viLock(1, 1000, null)", "viUnlock()",
                                          "viLock(2, 4294967295, \"bench 3\")", "viUnlock()",
                                          "viLock(2, 0, null)"));
}

TEST_F(OpenVisaSessionTest, UnknownLockTypeIsRefused) {
    EXPECT_EQ(session.Lock(static_cast<IoLockType>(2), 0, "", nullptr), kIoErrorStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportIoError(Unsupported VISA session access mode.)"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(OpenVisaSessionTest, LockThatIsNotGrantedIsReported) {
    fake.FailFunction("viLock", VisaCode(0xBFFF000F));
    std::string key = "former";
    EXPECT_EQ(session.Lock(IoLockType::kExclusive, 1000, "", &key), MakeStatus(0x8004000F));
    EXPECT_EQ(key, "former");
}

// Events ------------------------------------------------------------------------------------------

TEST_F(OpenVisaSessionTest, EventsAndMechanismsAreTranslatedByTheirTables) {
    const std::vector<std::pair<int, std::string>> events{
        {0, "0x3FFF2009"},  {1, "0xBFFF200A"},  {2, "0x3FFF200B"},  {4, "0xBFFF200E"},
        {5, "0x3FFF2012"},  {6, "0x3FFF2013"},  {7, "0x3FFF2014"},  {8, "0x3FFF201D"},
        {9, "0x3FFF201E"},  {10, "0x3FFF2020"}, {11, "0xBFFF2021"}, {12, "0x3FFF2036"},
        {13, "0x3FFF2037"}, {14, "0x3FFF7FFF"}};
    const std::vector<std::pair<int, std::string>> mechanisms{
        {0, "1"}, {1, "2"}, {2, "4"}, {3, "65535"}};
    IVisaCEventManager* manager = session.GetEventManager();
    for (const auto& [event, visaEvent] : events) {
        for (const auto& [mechanism, visaMechanism] : mechanisms) {
            fake.ForgetCalls();
            const auto ownEvent = static_cast<VisaEvent>(event);
            const auto ownMechanism = static_cast<VisaEventMechanism>(mechanism);
            const std::string both = visaEvent + ", " + visaMechanism;
            EXPECT_EQ(manager->EnableEvent(ownEvent, ownMechanism), S_OK);
            EXPECT_EQ(manager->DisableEvent(ownEvent, ownMechanism), S_OK);
            EXPECT_EQ(manager->DiscardEvents(ownEvent, ownMechanism), S_OK);
            EXPECT_THAT(fake.Calls(), ElementsAre("viEnableEvent(" + both + ", 0)",
                                                  "viDisableEvent(" + both + ")",
                                                  "viDiscardEvents(" + both + ")"));
        }
    }
}

TEST_F(OpenVisaSessionTest, UnknownEventsAndMechanismsAreRefused) {
    IVisaCEventManager* manager = session.GetEventManager();
    const auto noEvent = static_cast<VisaEvent>(3);
    const auto noMechanism = static_cast<VisaEventMechanism>(4);
    EXPECT_EQ(manager->EnableEvent(noEvent, VisaEventMechanism::kQueue), kIoErrorStatus);
    EXPECT_EQ(manager->DisableEvent(static_cast<VisaEvent>(15), VisaEventMechanism::kQueue),
              kIoErrorStatus);
    EXPECT_EQ(manager->DiscardEvents(VisaEvent::kTrigger, noMechanism), kIoErrorStatus);
    EXPECT_EQ(manager->InstallHandler(noEvent, nullptr, nullptr), kIoErrorStatus);
    EXPECT_EQ(manager->UninstallHandler(noEvent, nullptr, nullptr), kIoErrorStatus);
    EXPECT_EQ(manager->WaitOnEvent(noEvent, 0, nullptr, nullptr), kIoErrorStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoError(Unsupported VISA event type.)",
                                              "ReportIoError(Unsupported VISA event type.)",
                                              "ReportIoError(Unsupported VISA event mechanism.)",
                                              "ReportIoError(Unsupported VISA event type.)",
                                              "ReportIoError(Unsupported VISA event type.)",
                                              "ReportIoError(Unsupported VISA event type.)"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(OpenVisaSessionTest, WaitGivesTheEventInTheDriversNumbersAndItsContext) {
    IVisaCEventManager* manager = session.GetEventManager();
    ASSERT_EQ(manager->EnableEvent(VisaEvent::kServiceRequest, VisaEventMechanism::kQueue), S_OK);
    fake.RequestService();
    auto event = VisaEvent::kIoCompletion;
    visa::ViEvent context = 0;
    EXPECT_EQ(manager->WaitOnEvent(VisaEvent::kAllEnabled, 500, &event, &context), S_OK);
    EXPECT_EQ(event, VisaEvent::kServiceRequest);
    EXPECT_NE(context, 0U);
    EXPECT_EQ(session.GetFunctions().viClose(context), 0);
    EXPECT_EQ(fake.Calls().at(1), "viWaitOnEvent(0x3FFF7FFF, 500)");
    EXPECT_EQ(fake.Calls().at(2), "viClose(event)");
}

TEST_F(OpenVisaSessionTest, WaitThatTimesOutIsReported) {
    IVisaCEventManager* manager = session.GetEventManager();
    ASSERT_EQ(manager->EnableEvent(VisaEvent::kServiceRequest, VisaEventMechanism::kQueue), S_OK);
    EXPECT_EQ(manager->WaitOnEvent(VisaEvent::kServiceRequest, -1, nullptr, nullptr),
              kIoTimeoutStatus);
    EXPECT_EQ(fake.Calls().back(), "viWaitOnEvent(0x3FFF200B, 4294967295)");
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoTimeout()"));
}

visa::ViStatus ForeignEvent(visa::ViSession, visa::ViEventType, visa::ViUInt32,
                            visa::ViEventType* type, visa::ViEvent* context) {
    *type = 0x3FFF2FFF;
    *context = 4711;
    return 0;
}

TEST_F(VisaSessionTest, EventOutsideOfTheTableIsRefusedAndItsContextStillGiven) {
    visa::FunctionTable table = fake.Table();
    table.viWaitOnEvent = ForeignEvent;
    CVisaCSession own([&table](std::string_view, const visa::FunctionTable*& functions) {
        functions = &table;
        return S_OK;
    });
    ASSERT_EQ(own.Initialize("x", &poller, &reporter, &formatter), S_OK);
    auto event = VisaEvent::kException;
    visa::ViEvent context = 0;
    EXPECT_EQ(own.WaitOnEvent(VisaEvent::kAllEnabled, 0, &event, &context), kIoErrorStatus);
    EXPECT_EQ(event, VisaEvent::kException);
    EXPECT_EQ(context, 4711U);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoError(Unsupported VISA event type.)"));
}

TEST_F(OpenVisaSessionTest, HandlersAndQueueLengthReachVisa) {
    IVisaCEventManager* manager = session.GetEventManager();
    EXPECT_EQ(manager->InstallHandler(VisaEvent::kServiceRequest, nullptr, nullptr), S_OK);
    EXPECT_EQ(manager->UninstallHandler(VisaEvent::kServiceRequest, nullptr, nullptr), S_OK);
    EXPECT_EQ(manager->SetMaxQueueLength(20), S_OK);
    std::uint32_t length = 0;
    EXPECT_EQ(manager->GetMaxQueueLength(&length), S_OK);
    EXPECT_EQ(length, 20U);
    EXPECT_EQ(manager->GetMaxQueueLength(nullptr), kNullPointerStatus);
    EXPECT_THAT(
        fake.Calls(),
        ElementsAre("viInstallHandler(0x3FFF200B)", "viUninstallHandler(0x3FFF200B)",
                    "viSetAttribute(MAX_QUEUE_LENGTH, 20)", "viGetAttribute(MAX_QUEUE_LENGTH)"));
}

TEST_F(VisaSessionTest, DirectAccessOfAClosedSessionIsSafe) {
    EXPECT_EQ(session.GetDirectIo()->GetInstrumentSession(), 0U);
    visa::ViUInt16 value = 0;
    EXPECT_EQ(session.GetDirectIo()->GetFunctions().viReadSTB(0, &value), VisaCode(0xBFFF000E));
}

// The tables that no operation here shows ---------------------------------------------------------

TEST(VisaEnums, AddressSpacesAndWidthsHaveTheirNumbers) {
    const int spaces[] = {1, 2, 3, 4, 10, 11, 12, 13, 14, 15, 16, 9};
    for (int own = 0; own < 12; ++own) {
        EXPECT_EQ(visa::ToVisa(visa::kAddressSpaces, std::int32_t{own}), spaces[own]);
    }
    EXPECT_EQ(visa::ToVisa(visa::kAddressSpaces, std::int32_t{99}), std::nullopt);
    EXPECT_EQ(visa::ToVisa(visa::kDataWidths, std::int32_t{0}), 1);
    EXPECT_EQ(visa::ToVisa(visa::kDataWidths, std::int32_t{1}), 2);
    EXPECT_EQ(visa::ToVisa(visa::kDataWidths, std::int32_t{2}), 4);
    EXPECT_TRUE(visa::ToVisa(visa::kDataWidths, std::int32_t{3}).has_value());
    EXPECT_EQ(visa::ToVisa(visa::kDataWidths, std::int32_t{4}), std::nullopt);
    EXPECT_EQ(visa::kUnsupportedAddressSpace, "Unsupported VISA address space.");
    EXPECT_EQ(visa::kUnsupportedDataWidth, "Unsupported VISA data width.");
}

}  // namespace
}  // namespace kestrion
