// Formatted text, strings and bytes through a session: what goes out, what is read, who is asked.
#include <cstring>
#include <string>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class IoSessionTest : public OpenSessionFixture {};
class ClosedIoSessionTest : public SessionFixture {};

// Closed sessions ---------------------------------------------------------------------------------

TEST_F(ClosedIoSessionTest, EveryKindOfOperationIsRefusedAsNotInitialized) {
    session.SetClosedReporter(&reporter);
    std::string text;
    BYTE byte = 0;
    std::int32_t number = 0;
    bool flag = false;
    std::uint32_t size = 0;
    DOUBLE values[2] = {};
    SAFEARRAY* array = nullptr;
    const HRESULT results[] = {session.ReadStatusByte(&byte),
                               session.Clear(),
                               session.GetReadTerminator(&text),
                               session.SetReadTerminator("x"),
                               session.GetWriteTerminator(&text),
                               session.SetWriteTerminator("x"),
                               session.GetByteSwap(&flag),
                               session.SetByteSwap(false),
                               session.SetTimeout(1),
                               session.GetTimeout(&number),
                               session.SetTerminationCharacter(1),
                               session.GetTerminationCharacter(&byte),
                               session.SetTerminationCharacterEnabled(true),
                               session.GetTerminationCharacterEnabled(&flag),
                               session.SetBufferSize(IoBufferKind::kBoth, 1),
                               session.GetReadBufferSize(&size),
                               session.GetWriteBufferSize(&size),
                               session.FlushWrite(true),
                               session.FlushRead(),
                               session.Lock(IoLockType::kExclusive, 1, "", &text),
                               session.Unlock(),
                               session.PollInstrumentStatus(),
                               session.Printf("*RST"),
                               session.PrintfNoFlush("*RST"),
                               session.Scanf("%d", &number),
                               session.ScanfNoFlush("%d", &number),
                               session.Queryf("X?", "%d", &number),
                               session.QueryfNoPoll("X?", "%d", &number),
                               session.VQueryScanf("X?", "%d", kKeepTimeout, {}),
                               session.QueryString("X?", &text),
                               session.QueryNumber("X?", &values[0], true),
                               session.QueryList("X?", values, 2, &number, ","),
                               session.WriteBytes(&byte, 1, &size, true),
                               session.WriteChar('x', true),
                               session.WriteString("x", true),
                               session.WriteNumber(LONG{1}, true),
                               session.CommandWriteNumber("X ", LONG{1}, true),
                               session.WriteList(values, 2, ",", true),
                               session.WriteBlock(values, 2, true),
                               session.ReadBytes(&byte, 1, &size, true),
                               session.ReadChar(&byte, true),
                               session.ReadRaw(&byte, 1, &size),
                               session.EndResponse(),
                               session.ReadString(&text),
                               session.ReadNumber(&values[0], true),
                               session.ReadList(values, 2, &number, ","),
                               session.ReadBlock(values, 2, &number, true, true),
                               session.ReadBlock(&array, ElementKind::kByte, true, true),
                               session.LowLevelRead(&byte, 1, &size, 5000),
                               session.LowLevelWrite(&byte, 1, &size, 5000),
                               session.GetProtocol(nullptr),
                               session.EnableEvent(VisaEvent::kTrigger, VisaEventMechanism::kQueue),
                               session.WaitOnEvent(VisaEvent::kTrigger, 0, nullptr, nullptr),
                               session.AssertTrigger(VisaTriggerProtocol::kDefault),
                               session.GetResourceName(&text)};
    std::size_t index = 0;
    for (const HRESULT result : results) {
        EXPECT_EQ(result, MakeStatus(0x8004701D)) << index;
        ++index;
    }
    ASSERT_EQ(reporter.reports.size(), index);
    for (const std::string& report : reporter.reports) {
        EXPECT_EQ(report, "ReportNotInitialized()");
    }
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(ClosedIoSessionTest, WithoutAReporterTheStatusComesAlone) {
    EXPECT_EQ(session.Printf("*RST"), MakeStatus(0x8004701D));
    EXPECT_THAT(reporter.reports, IsEmpty());
}

TEST_F(ClosedIoSessionTest, OperationsAfterCloseAreRefused) {
    ASSERT_EQ(Open(), S_OK);
    ASSERT_EQ(session.Close(), S_OK);
    session.SetClosedReporter(&reporter);
    EXPECT_EQ(session.Printf("*RST"), kNotInitializedStatus);
    EXPECT_THAT(fake.Written(), IsEmpty());
}

// Printf ------------------------------------------------------------------------------------------

TEST_F(IoSessionTest, PrintfSendsWithTheTerminatorAndPolls) {
    EXPECT_EQ(session.Printf("CH%d:SCALE %g", 2, 0.5), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"CH2:SCALE 0.5\\n\")"));
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(IoSessionTest, PrintfHandsTheFormatterToItsFormat) {
    EXPECT_EQ(session.Printf("SLOPE %{Slope}s", 1), S_OK);
    EXPECT_EQ(fake.Written(), "SLOPE FALL\n");
}

TEST_F(IoSessionTest, PrintfWithAnEmptyFormatSendsNothingAndPolls) {
    EXPECT_EQ(session.Printf(""), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(IoSessionTest, PrintfNoFlushKeepsItsTextForTheNextMessage) {
    EXPECT_EQ(session.PrintfNoFlush("A%d;", 1), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(poller.polls, 0);
    EXPECT_EQ(session.Printf("B"), S_OK);
    EXPECT_EQ(fake.Written(), "A1;B\n");
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(IoSessionTest, PrintfOfARefusedFormatNeitherSendsNorPolls) {
    EXPECT_EQ(session.Printf("50%"), E_UNEXPECTED);
    EXPECT_EQ(session.Printf("%s", static_cast<const char*>(nullptr)), E_INVALIDARG);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, PrintfWhoseWriteFailsDoesNotPoll) {
    fake.FailFunction("viWrite", kVisaIoError);
    EXPECT_EQ(session.Printf("*RST"), kMappedIoError);
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, FailedPollIsTheResult) {
    poller.answer = MakeStatus(0x80047001);
    EXPECT_EQ(session.Printf("*RST"), MakeStatus(0x80047001));
}

TEST_F(IoSessionTest, VPrintfTakesPackedArguments) {
    const auto args = PackArgs(7, "seven");
    EXPECT_EQ(session.VPrintf("%d %s", args), S_OK);
    EXPECT_EQ(session.VPrintfNoFlush("%d %s", args), S_OK);
    EXPECT_EQ(fake.Written(), "7 seven\n");
    EXPECT_EQ(session.FlushWrite(true), S_OK);
    EXPECT_EQ(fake.Written(), "7 seven\n7 seven\n");
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(IoSessionTest, LineFeedInTheFormatEndsTheMessageOnlyOnce) {
    EXPECT_EQ(session.Printf("*CLS;*RST\n"), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"*CLS;*RST\\n\")"));
}

// Scanf -------------------------------------------------------------------------------------------

TEST_F(IoSessionTest, ScanfReadsThrowsTheRestAwayAndPolls) {
    fake.Respond("12,rest\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.Scanf("%d", &value), S_OK);
    EXPECT_EQ(value, 12);
    EXPECT_EQ(poller.polls, 1);
    fake.Respond("new\n");
    std::string text;
    EXPECT_EQ(session.ReadStringNoPoll(&text), S_OK);
    EXPECT_EQ(text, "new");
}

TEST_F(IoSessionTest, ScanfNoFlushLeavesTheRestForTheNextRead) {
    fake.Respond("12,rest\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.ScanfNoFlush("%d,", &value), IoStatusMoreData);
    EXPECT_EQ(poller.polls, 0);
    std::string text;
    EXPECT_EQ(session.ReadStringNoPoll(&text), S_OK);
    EXPECT_EQ(text, "rest");
}

TEST_F(IoSessionTest, ScanfThatDoesNotMatchDoesNotPoll) {
    fake.Respond("ABC\n");
    std::int32_t value = 77;
    EXPECT_EQ(session.Scanf("%d", &value), E_UNEXPECTED);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, ScanfTimeoutRunsUnderItsTimeout) {
    fake.Respond("12\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.ScanfTimeout("%d", 5000, &value), S_OK);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viGetAttribute(TMO_VALUE)", "viSetAttribute(TMO_VALUE, 5000)",
                            "viRead(4096)", "viSetAttribute(TMO_VALUE, 2000)"));
    fake.Respond("13\n");
    EXPECT_EQ(session.ScanfTimeoutNoFlush("%d", 5000, &value), S_OK);
    EXPECT_EQ(value, 13);
}

// Queryf ------------------------------------------------------------------------------------------

TEST_F(IoSessionTest, QueryfTakesItsArgumentsForTheCommandFirst) {
    fake.Expect("CH2:SCALE?\n").Reply("0.5;RISE\n");
    double scale = 0;
    std::int32_t slope = 7;
    EXPECT_EQ(session.Queryf("CH%d:SCALE?", "%lf;%{Slope}s", 2, &scale, &slope), S_OK);
    EXPECT_EQ(scale, 0.5);
    EXPECT_EQ(slope, 0);
    EXPECT_EQ(poller.polls, 1);
    EXPECT_TRUE(fake.Finished());
}

TEST_F(IoSessionTest, QueryScanfSendsItsCommandAsItStands) {
    fake.Expect("100%d\\;%%?\n").Reply("2.5;7\n");
    double scale = 0.0;
    std::int32_t count = 0;
    const auto targets = PackArgs(&scale, &count);
    EXPECT_EQ(session.VQueryScanf("100%d\\;%%?", "%lf;%d", kKeepTimeout, targets), S_OK);
    EXPECT_EQ(scale, 2.5);
    EXPECT_EQ(count, 7);
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(IoSessionTest, QueryScanfDiscardsWhatIsLeftOfAnEarlierResponse) {
    fake.Expect("A?\n").Reply("1;2\n");
    fake.Expect("B?\n").Reply("5\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.Queryf("A?", "%d", &value), IoStatusMoreData);
    const auto targets = PackArgs(&value);
    EXPECT_EQ(session.VQueryScanf("B?", "%d", kKeepTimeout, targets), S_OK);
    EXPECT_EQ(value, 5);
}

TEST_F(IoSessionTest, QueryScanfWhoseWriteFailsNeitherReadsNorPolls) {
    fake.FailFunction("viWrite", kVisaIoError);
    std::int32_t value = 3;
    const auto targets = PackArgs(&value);
    EXPECT_EQ(session.VQueryScanf("X?", "%d", kKeepTimeout, targets), kMappedIoError);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, QueryfNoPollDoesNotPoll) {
    fake.Expect("X?\n").Reply("1\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfNoPoll("X?", "%d", &value), S_OK);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, QueryDiscardsWhatAScanfLeftIncludingBytesStillInTheInstrument) {
    fake.Respond("1," + std::string(4095, '9') + "\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.ScanfNoFlush("%d,", &value), IoStatusMoreData);
    fake.ForgetCalls();
    fake.Expect("X?\n").Reply("2\n");
    EXPECT_EQ(session.Queryf("X?", "%d", &value), S_OK);
    EXPECT_EQ(value, 2);
    EXPECT_THAT(fake.Calls(), ElementsAre("viRead(1000)", "viWrite(\"X?\\n\")", "viRead(4096)"));
}

TEST_F(IoSessionTest, QueryDiscardsWhatTheFormerQueryLeftInTheBufferWithoutAnyRead) {
    fake.Expect("A?\n").Reply("1;2\n");
    fake.Expect("B?\n").Reply("3\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.Queryf("A?", "%d", &value), IoStatusMoreData);
    EXPECT_EQ(session.Queryf("B?", "%d", &value), S_OK);
    EXPECT_EQ(value, 3);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"A?\\n\")", "viRead(4096)",
                                          "viWrite(\"B?\\n\")", "viRead(4096)"));
}

TEST_F(IoSessionTest, QueryfTimeoutRunsAllStepsUnderItsTimeoutAndRestoresTheFormerOne) {
    fake.Expect("X?\n").Reply("1\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfTimeout("X?", "%d", 5000, &value), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viGetAttribute(TMO_VALUE)",
                                          "viSetAttribute(TMO_VALUE, 5000)", "viWrite(\"X?\\n\")",
                                          "viRead(4096)", "viSetAttribute(TMO_VALUE, 2000)"));
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(IoSessionTest, QueryfTimeoutRestoresTheTimeoutWhenTheCommandFormatFails) {
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfTimeoutNoPoll("50%", "%d", 5000, &value), E_UNEXPECTED);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viGetAttribute(TMO_VALUE)", "viSetAttribute(TMO_VALUE, 5000)",
                            "viSetAttribute(TMO_VALUE, 2000)"));
}

TEST_F(IoSessionTest, QueryfTimeoutRestoresTheTimeoutWhenTheReadFails) {
    fake.Expect("X?\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfTimeout("X?", "%d", 5000, &value), kIoTimeoutStatus);
    EXPECT_EQ(fake.AttributeValue(kTimeoutAttribute), 2000U);
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, KeptTimeoutTouchesNoAttribute) {
    fake.Expect("X?\n").Reply("1\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfTimeout("X?", "%d", -2, &value), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"X?\\n\")", "viRead(4096)"));
}

TEST_F(IoSessionTest, TimeoutOfMinusOneIsApplied) {
    fake.Expect("X?\n").Reply("1\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfTimeout("X?", "%d", -1, &value), S_OK);
    EXPECT_EQ(fake.Calls().at(1), "viSetAttribute(TMO_VALUE, 4294967295)");
}

TEST_F(IoSessionTest, TimeoutThatCannotBeReadIsNotOverridden) {
    fake.FailFunction("viGetAttribute", kVisaIoError);
    fake.Expect("X?\n").Reply("1\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfTimeout("X?", "%d", 5000, &value), S_OK);
    EXPECT_EQ(value, 1);
    EXPECT_THAT(fake.CallsOf("viSetAttribute"), IsEmpty());
}

TEST_F(IoSessionTest, TimeoutThatCannotBeSetEndsTheCall) {
    fake.FailFunction("viSetAttribute", kVisaIoError);
    EXPECT_EQ(session.WriteString("X", true, 5000), kMappedIoError);
    EXPECT_THAT(fake.Written(), IsEmpty());
}

TEST_F(IoSessionTest, PollRunsAfterTheTimeoutIsRestored) {
    class TimeoutReader final : public IInstrErrorPoller {
      public:
        explicit TimeoutReader(FakeVisa& visa) : visa_(visa) {}
        HRESULT PollInstrumentStatus() override {
            seen = visa_.AttributeValue(kTimeoutAttribute);
            return S_OK;
        }
        std::uint64_t seen = 0;

      private:
        FakeVisa& visa_;
    } reader(fake);
    ASSERT_EQ(session.Initialize("x", &reader, &reporter, &formatter), S_OK);
    EXPECT_EQ(session.WriteString("X", true, 5000), S_OK);
    EXPECT_EQ(reader.seen, 2000U);
}

TEST_F(IoSessionTest, PollerMayUseTheSessionItself) {
    class Asker final : public IInstrErrorPoller {
      public:
        explicit Asker(CVisaCSession& session) : session_(session) {}
        HRESULT PollInstrumentStatus() override {
            return session_.QueryStringNoPoll("*ESR?", &answer);
        }
        std::string answer;

      private:
        CVisaCSession& session_;
    } asker(session);
    ASSERT_EQ(session.Initialize("x", &asker, &reporter, &formatter), S_OK);
    fake.Expect("*RST\n");
    fake.Expect("*ESR?\n").Reply("1\n");
    EXPECT_EQ(session.Printf("*RST"), S_OK);
    EXPECT_EQ(asker.answer, "1");
}

// Strings -----------------------------------------------------------------------------------------

TEST_F(IoSessionTest, QueryStringSendsAndReadsWithoutDiscarding) {
    fake.Expect("*IDN?\n").Reply("MAKER,MODEL,1,1.0\n");
    std::string text;
    EXPECT_EQ(session.QueryString("*IDN?", &text), S_OK);
    EXPECT_EQ(text, "MAKER,MODEL,1,1.0");
    EXPECT_EQ(poller.polls, 1);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"*IDN?\\n\")", "viRead(4096)"));
}

TEST_F(IoSessionTest, QueryStringReadsFirstWhatAnEarlierReadLeft) {
    fake.Respond("1,rest\n");
    std::int32_t value = 0;
    EXPECT_EQ(session.ScanfNoFlush("%d,", &value), IoStatusMoreData);
    std::string text;
    EXPECT_EQ(session.QueryStringNoPoll("X?", &text), S_OK);
    EXPECT_EQ(text, "rest");
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, QueryStringIntoACountedTextWidensEachByte) {
    fake.Expect("X?\n").Reply("5 \xB5s\n");
    BstrPtr text;
    EXPECT_EQ(session.QueryString("X?", text.Out()), S_OK);
    EXPECT_EQ(text.View(), u"5 \u00B5s");
}

TEST_F(IoSessionTest, ReadStringGivesOneBufferAndLeavesTheRest) {
    fake.Respond(std::string(5000, 'a') + "\n");
    std::string text;
    EXPECT_EQ(session.ReadString(&text), IoStatusMoreData);
    EXPECT_EQ(text, std::string(4096, 'a'));
    EXPECT_EQ(session.ReadString(&text), S_OK);
    EXPECT_EQ(text, std::string(904, 'a'));
    EXPECT_EQ(poller.polls, 2);
}

TEST_F(IoSessionTest, ReadStringOfResponsesAroundOneBuffer) {
    std::string text;
    fake.Respond(std::string(4095, 'a') + "\n");
    EXPECT_EQ(session.ReadStringNoPoll(&text), S_OK);
    EXPECT_EQ(text.size(), 4095U);
    fake.Respond(std::string(4096, 'a') + "\n");
    EXPECT_EQ(session.ReadStringNoPoll(&text), IoStatusMoreData);
    EXPECT_EQ(text.size(), 4096U);
    EXPECT_EQ(session.ReadStringNoPoll(&text), S_OK);
    EXPECT_EQ(text, "");
}

TEST_F(IoSessionTest, ReadStringOfANullTargetIsReported) {
    EXPECT_EQ(session.ReadString(static_cast<BSTR*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.ReadString(static_cast<std::string*>(nullptr)), kNullPointerStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportNullPointer(ReadString | pbstrResult | )",
                                              "ReportNullPointer(ReadString | pstrResult | )"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(IoSessionTest, ReadStringWithoutMemoryIsReported) {
    sessionMemoryIsOut = true;
    std::string text;
    EXPECT_EQ(session.ReadString(&text), kOutOfMemoryStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportOutOfMemory(Couldn't allocate temporary buffer.)"));
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, ReadStringThatTimesOutGivesNoText) {
    std::string text = "former";
    EXPECT_EQ(session.ReadString(&text), kIoTimeoutStatus);
    EXPECT_EQ(text, "");
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, WriteStringWithoutFlushDoesNotPollAndLeavesWithTheNextFlush) {
    EXPECT_EQ(session.WriteString("A", false), S_OK);
    EXPECT_EQ(poller.polls, 0);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_EQ(session.WriteString("B", true), S_OK);
    EXPECT_EQ(poller.polls, 1);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"AB\\n\")"));
}

TEST_F(IoSessionTest, WriteStringTakesCountedAndWideText) {
    const BstrPtr counted(std::u16string_view(u"BYT_NR\u00A01"));
    EXPECT_EQ(session.WriteString(counted.Get(), true), S_OK);
    EXPECT_EQ(session.WriteStringNoPoll(std::u16string_view(u"\u20AC"), true), S_OK);
    EXPECT_EQ(session.WriteStringNoPoll(BSTR{nullptr}, true), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"BYT_NR\\xA01\\n\")", "viWrite(\"?\\n\")"));
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(IoSessionTest, WriteStringUnderATimeout) {
    EXPECT_EQ(session.WriteStringNoPoll("A", true, 300), S_OK);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viGetAttribute(TMO_VALUE)", "viSetAttribute(TMO_VALUE, 300)",
                            "viWrite(\"A\\n\")", "viSetAttribute(TMO_VALUE, 2000)"));
}

// Bytes -------------------------------------------------------------------------------------------

TEST_F(IoSessionTest, BytesPollOnlyWhenTheyLeave) {
    const BYTE bytes[] = {'A', 0, 0xFF};
    std::uint32_t actual = 0;
    EXPECT_EQ(session.WriteBytes(bytes, 3, &actual, false), S_OK);
    EXPECT_EQ(actual, 3U);
    EXPECT_EQ(poller.polls, 0);
    EXPECT_EQ(session.WriteBytes(bytes, 1, &actual, true), S_OK);
    EXPECT_EQ(poller.polls, 1);
    EXPECT_THAT(fake.Calls(), ElementsAre("viWrite(\"A\\x00\\xFFA\\n\")"));
}

TEST_F(IoSessionTest, WriteCharAndReadCharAreOneByteEachWithoutAPoll) {
    EXPECT_EQ(session.WriteChar('A', true), S_OK);
    fake.Respond("XY\n");
    BYTE byte = 0;
    EXPECT_EQ(session.ReadChar(&byte, false), IoStatusMoreData);
    EXPECT_EQ(byte, 'X');
    EXPECT_EQ(session.ReadChar(&byte, true), S_OK);
    EXPECT_EQ(byte, 'Y');
    EXPECT_EQ(poller.polls, 0);
    EXPECT_EQ(fake.Written(), "A\n");
}

TEST_F(IoSessionTest, ArraysAreWrittenAndRead) {
    SafeArrayPtr array(SafeArrayCreateVector(VT_UI1, 0, 2));
    std::memcpy(array.Elements<BYTE>().data(), "OK", 2);
    EXPECT_EQ(session.WriteBytes(array.Get(), true), S_OK);
    EXPECT_EQ(fake.Written(), "OK\n");
    fake.Respond("XYZ\n");
    SafeArrayPtr read;
    EXPECT_EQ(session.ReadBytes(read.Out(), 2, false), IoStatusMoreData);
    EXPECT_THAT(read.Elements<BYTE>(), ElementsAre('X', 'Y'));
    EXPECT_EQ(session.ReadBytesNoPoll(read.Out(), 2, false), S_OK);
    EXPECT_THAT(read.Elements<BYTE>(), ElementsAre('Z'));
    EXPECT_EQ(poller.polls, 2);
}

TEST_F(IoSessionTest, ArraysThatAreNoPlainListOfBytesAreRefused) {
    const SafeArrayPtr shifted(SafeArrayCreateVector(VT_UI1, 1, 2));
    const SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    const SafeArrayPtr table(SafeArrayCreate(VT_UI1, 2, bounds));
    const SafeArrayPtr shorts(SafeArrayCreateVector(VT_I2, 0, 2));
    EXPECT_EQ(session.WriteBytes(static_cast<SAFEARRAY*>(nullptr), true), kInvalidValueStatus);
    EXPECT_EQ(session.WriteBytes(table.Get(), true), kInvalidValueStatus);
    EXPECT_EQ(session.WriteBytes(shifted.Get(), true), kInvalidValueStatus);
    EXPECT_EQ(session.WriteBytes(shorts.Get(), true), kInvalidValueStatus);
    EXPECT_THAT(
        reporter.reports,
        ElementsAre("ReportInvalidValue(psa | <Unknown Value> | SAFEARRAY is NULL.)",
                    "ReportInvalidValue(psa | <Unknown Value> | SAFEARRAY is not "
                    "one-dimensional.)",
                    "ReportInvalidValue(psa | <Unknown Value> | SAFEARRAY is not zero-based.)",
                    "ReportInvalidValue(psa | <Unknown Value> | SAFEARRAY was not of the expected "
                    "type.)"));
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, ReadBytesPollsAndKeepsItsStatus) {
    fake.Respond("ABC\n");
    BYTE bytes[2];
    std::uint32_t actual = 0;
    EXPECT_EQ(session.ReadBytes(bytes, 2, &actual, false), IoStatusMoreData);
    EXPECT_EQ(actual, 2U);
    EXPECT_EQ(poller.polls, 1);
}

// Raw reads ---------------------------------------------------------------------------------------

TEST_F(IoSessionTest, RawReadIsOneVisaReadWhenNothingIsBuffered) {
    const std::string data(100000, '\n');
    fake.Respond(data);
    std::string target(100000, '?');
    std::uint32_t actual = 0;
    EXPECT_EQ(session.ReadRaw(reinterpret_cast<BYTE*>(target.data()), 100000, &actual), S_OK);
    EXPECT_EQ(actual, 100000U);
    EXPECT_EQ(target, data);
    EXPECT_THAT(fake.Calls(), ElementsAre("viGetAttribute(TERMCHAR_EN)", "viRead(100000)"));
    EXPECT_EQ(poller.polls, 0);
}

TEST_F(IoSessionTest, AResponseThatTheCallerKnowsToBeOverIsNotReadOn) {
    ASSERT_EQ(session.SetTerminationCharacterEnabled(true), S_OK);
    fake.Respond("abc\n", false);
    BYTE target[4];
    std::uint32_t actual = 0;
    // Without END the link says that more may follow.
    EXPECT_EQ(session.ReadRaw(target, 4, &actual), IoStatusMoreData);
    EXPECT_EQ(session.EndResponse(), S_OK);
    fake.ForgetCalls();
    EXPECT_EQ(session.FlushRead(), S_OK);
    EXPECT_THAT(fake.CallsOf("viRead"), testing::IsEmpty());
}

TEST_F(IoSessionTest, RawReadsOfABlockOnASocketKeepTheTerminationCharacterOff) {
    ASSERT_EQ(session.SetTerminationCharacterEnabled(true), S_OK);
    fake.ForgetCalls();
    fake.Respond("#15\n\n\n\n\n\n", false);
    BYTE bytes[10];
    std::uint32_t actual = 0;
    EXPECT_EQ(session.ReadRaw(bytes, 2, &actual), IoStatusMoreData);
    EXPECT_EQ(session.ReadRaw(bytes, 1, &actual), IoStatusMoreData);
    EXPECT_EQ(session.ReadRaw(bytes, 6, &actual), IoStatusMoreData);
    EXPECT_EQ(actual, 6U);
    EXPECT_THAT(fake.CallsOf("viRead"), ElementsAre("viRead(2)", "viRead(1)", "viRead(6)"));
    EXPECT_EQ(fake.AttributeValue(kTermCharEnabledAttribute), 1U);
}

TEST_F(IoSessionTest, RawReadOfNullIsReported) {
    EXPECT_EQ(session.ReadRaw(nullptr, 2, nullptr), kNullPointerStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportNullPointer(pBuf | )"));
}

// Settings ----------------------------------------------------------------------------------------

TEST_F(IoSessionTest, FlushesRunUnderTheirTimeout) {
    EXPECT_EQ(session.WriteStringNoPoll("A", false), S_OK);
    EXPECT_EQ(session.FlushWrite(true, 700), S_OK);
    EXPECT_EQ(session.FlushRead(800), S_OK);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viGetAttribute(TMO_VALUE)", "viSetAttribute(TMO_VALUE, 700)",
                            "viWrite(\"A\\n\")", "viSetAttribute(TMO_VALUE, 2000)",
                            "viGetAttribute(TMO_VALUE)", "viSetAttribute(TMO_VALUE, 800)",
                            "viSetAttribute(TMO_VALUE, 2000)"));
}

TEST_F(IoSessionTest, FlushWithoutEndSendsThePieceAloneAndRestoresEnd) {
    EXPECT_EQ(session.WriteStringNoPoll("A", false), S_OK);
    EXPECT_EQ(session.FlushWrite(false), S_OK);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viGetAttribute(SEND_END_EN)", "viSetAttribute(SEND_END_EN, 0)",
                            "viWrite(\"A\")", "viSetAttribute(SEND_END_EN, 1)"));
}

TEST_F(IoSessionTest, BufferSizesAreThoseOfTheBuffer) {
    EXPECT_EQ(session.SetBufferSize(IoBufferKind::kRead, 100), S_OK);
    std::uint32_t size = 0;
    EXPECT_EQ(session.GetReadBufferSize(&size), S_OK);
    EXPECT_EQ(size, 100U);
    EXPECT_EQ(session.GetWriteBufferSize(&size), S_OK);
    EXPECT_EQ(size, 4096U);
    fake.Respond("A\n");
    std::string text;
    EXPECT_EQ(session.ReadString(&text), S_OK);
    EXPECT_EQ(fake.Calls().back(), "viRead(100)");
}

TEST_F(IoSessionTest, ByteSwapIsOnAtFirst) {
    bool swap = false;
    EXPECT_EQ(session.GetByteSwap(&swap), S_OK);
    EXPECT_TRUE(swap);
    EXPECT_EQ(session.SetByteSwap(false), S_OK);
    EXPECT_EQ(session.GetByteSwap(&swap), S_OK);
    EXPECT_FALSE(swap);
}

TEST_F(IoSessionTest, NullOutPointersOfTheSettingsAreReported) {
    EXPECT_EQ(session.GetReadTerminator(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetWriteTerminator(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetByteSwap(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetReadBufferSize(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetWriteBufferSize(nullptr), kNullPointerStatus);
}

TEST_F(IoSessionTest, WriteTerminatorWithoutMemoryLeavesTheFormerOne) {
    sessionMemoryIsOut = true;
    EXPECT_EQ(session.SetWriteTerminator("\r\n"), kOutOfMemoryStatus);
    std::string text;
    EXPECT_EQ(session.GetWriteTerminator(&text), S_OK);
    EXPECT_EQ(text, "\n");
}

TEST_F(IoSessionTest, PollInstrumentStatusAsksThePollerOnce) {
    poller.answer = MakeStatus(0x80047001);
    EXPECT_EQ(session.PollInstrumentStatus(), MakeStatus(0x80047001));
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(IoSessionTest, DeviceClearLeavesTheSessionUsable) {
    fake.Respond("old\n");
    EXPECT_EQ(session.Clear(), S_OK);
    fake.Expect("X?\n").Reply("new\n");
    std::string text;
    EXPECT_EQ(session.QueryString("X?", &text), S_OK);
    EXPECT_EQ(text, "new");
}

}  // namespace
}  // namespace kestrion
