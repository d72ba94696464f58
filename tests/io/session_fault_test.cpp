// Every transaction with each of its VISA calls failing in turn: the status is the failure's, what
// was changed for the transaction is put back, nothing is lost, and the next call works.
#include <algorithm>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

struct Transaction {
    std::string name;
    std::string response;  // what waits in the instrument; END follows
    // `got` is what the caller has in the end.
    std::function<HRESULT(CVisaCSession&, std::string& got)> run;
    // The read that goes past the buffer, and what the caller gets when it gives one byte only.
    std::string directRead = {};
    std::string gotOfShortRead = {};
};

std::vector<Transaction> WritingTransactions() {
    return {
        {.name = "Printf",
         .response = "",
         .run = [](CVisaCSession& session, std::string&) { return session.Printf("CH%d ON", 1); }},
        {.name = "LongWrite",
         .response = "",
         .run =
             [](CVisaCSession& session, std::string&) {
                 return session.WriteString(std::string(9000, 'x'), true, 700);
             }},
        {.name = "WriteBlock",
         .response = "",
         .run =
             [](CVisaCSession& session, std::string&) {
                 const std::vector<SHORT> values(3000, 7);
                 return session.WriteBlock(values.data(), 3000, true, 700);
             }},
        {.name = "LockedStatusByte",
         .response = "",
         .run =
             [](CVisaCSession& session, std::string& got) {
                 BYTE value = 0;
                 HRESULT status = session.Lock(IoLockType::kExclusive, 1000, "", nullptr);
                 if (!Failed(status)) {
                     status = session.ReadStatusByte(&value);
                     const HRESULT unlocked = session.Unlock();
                     status = Failed(status) ? status : unlocked;
                 }
                 got = std::to_string(value);
                 return status;
             }},
        {.name = "WaitForServiceRequest",
         .response = "",
         .run =
             [](CVisaCSession& session, std::string&) {
                 HRESULT status =
                     session.EnableEvent(VisaEvent::kServiceRequest, VisaEventMechanism::kQueue);
                 visa::ViEvent context = 0;
                 if (!Failed(status)) {
                     status =
                         session.WaitOnEvent(VisaEvent::kServiceRequest, 1000, nullptr, &context);
                 }
                 if (context != 0) {
                     (void)session.GetFunctions().viClose(context);
                 }
                 const HRESULT disabled =
                     session.DisableEvent(VisaEvent::kServiceRequest, VisaEventMechanism::kQueue);
                 return Failed(status) ? status : disabled;
             }},
    };
}

std::vector<Transaction> ReadingTransactions() {
    return {
        {.name = "Queryf",
         .response = "1;2\n",
         .run =
             [](CVisaCSession& session, std::string& got) {
                 std::int32_t a = 0;
                 std::int32_t b = 0;
                 const HRESULT status = session.QueryfTimeout("X?", "%d;%d", 5000, &a, &b);
                 got = std::to_string(a) + " and " + std::to_string(b);
                 return status;
             }},
        {.name = "QueryString",
         .response = "text\n",
         .run = [](CVisaCSession& session,
                   std::string& got) { return session.QueryString("X?", &got, 5000); }},
        {.name = "QueryNumber",
         .response = "12\n",
         .run =
             [](CVisaCSession& session, std::string& got) {
                 DOUBLE value = 0;
                 const HRESULT status = session.QueryNumber("X?", &value, true, 5000);
                 got = std::to_string(value);
                 return status;
             }},
        {.name = "ScanfThatDropsALongRest",
         .response = "1," + std::string(6000, '9'),
         .run =
             [](CVisaCSession& session, std::string& got) {
                 std::int32_t value = 0;
                 const HRESULT status = session.ScanfTimeout("%d,", 5000, &value);
                 got = std::to_string(value);
                 return status;
             }},
        {.name = "ReadBlock",
         .response = "#45000" + std::string(5000, '\n') + "\n",
         .run =
             [](CVisaCSession& session, std::string& got) {
                 std::vector<BYTE> values(5000);
                 std::int32_t actual = 0;
                 const HRESULT status =
                     session.ReadBlock(values.data(), 5000, &actual, false, true, 700);
                 got = std::to_string(actual);
                 return status;
             },
         .directRead = "viRead(4999)",
         .gotOfShortRead = "2"},
        {.name = "ReadVariantBlock",
         .response = "#45000" + std::string(5000, 'v') + "\n",
         .run =
             [](CVisaCSession& session, std::string& got) {
                 SafeArrayPtr array;
                 const HRESULT status =
                     session.ReadBlock(array.Out(), ElementKind::kShort, true, true, 700);
                 got = array ? std::to_string(array.Elements<SHORT>().size()) : "none";
                 return status;
             },
         .directRead = "viRead(910)",
         .gotOfShortRead = "2045"},
        {.name = "ReadVariantList",
         .response = "1,2,3\n",
         .run =
             [](CVisaCSession& session, std::string& got) {
                 SafeArrayPtr array;
                 const HRESULT status = session.ReadList(array.Out(), ElementKind::kLong, ",", 700);
                 for (const LONG value : array ? array.Elements<LONG>() : std::span<LONG>()) {
                     got += std::to_string(value) + ' ';
                 }
                 return status;
             }},
        {.name = "ReadRaw",
         .response = "\n" + std::string(49, 'r'),
         .run =
             [](CVisaCSession& session, std::string& got) {
                 BYTE bytes[50];
                 std::uint32_t actual = 0;
                 const HRESULT status = session.ReadRaw(bytes, 50, &actual, 700);
                 got = std::to_string(actual);
                 return status;
             },
         .directRead = "viRead(50)",
         .gotOfShortRead = "1"},
    };
}

std::vector<Transaction> Transactions() {
    std::vector<Transaction> all = WritingTransactions();
    for (Transaction& transaction : ReadingTransactions()) {
        all.push_back(std::move(transaction));
    }
    return all;
}

// One instrument with a session on a socket, where the termination character is on.
struct Bench {
    Bench() {
        fake.SetInterfaceType(6);
        session.SetClosedReporter(&reporter);
    }
    HRESULT Open() {
        return session.Initialize("TCPIP0::scope::4000::SOCKET", &poller, &reporter, &formatter);
    }
    // Opens, and lets `transaction` begin with the call number 1.
    void Prepare(const Transaction& transaction) {
        ASSERT_EQ(Open(), S_OK);
        if (!transaction.response.empty()) {
            fake.Respond(transaction.response);
        }
        fake.RequestService();
        fake.ForgetCalls();
    }

    FakeVisa fake;
    RecordingReporter reporter;
    CountingPoller poller;
    SlopeFormatter formatter;
    CVisaCSession session{[this](std::string_view, const visa::FunctionTable*& functions) {
        functions = &fake.Table();
        return S_OK;
    }};
};

// The failures of these don't end a transaction: an unreadable time-out is left alone, and what is
// put back at the end is put back in passing.
bool IsForgiven(const std::string& call) {
    return call == "viGetAttribute(TMO_VALUE)" || call == "viSetAttribute(TMO_VALUE, 2000)" ||
           call == "viClose(event)";
}

void ExpectRestored(const Bench& bench, const std::string& failedCall) {
    if (failedCall != "viSetAttribute(TMO_VALUE, 2000)") {
        EXPECT_EQ(bench.fake.AttributeValue(kTimeoutAttribute), 2000U);
    }
    if (failedCall != "viSetAttribute(TERMCHAR_EN, 1)") {
        EXPECT_EQ(bench.fake.AttributeValue(kTermCharEnabledAttribute), 1U);
    }
    if (failedCall != "viSetAttribute(SEND_END_EN, 1)") {
        EXPECT_EQ(bench.fake.AttributeValue(kSendEndAttribute), 1U);
    }
    if (failedCall != "viUnlock()") {
        EXPECT_FALSE(bench.fake.Locked());
    }
}

// The session has nothing left of what was before. Nothing is open behind it.
void ExpectNextQueryWorks(Bench& bench) {
    bench.fake.Expect("NEXT?\n").Reply("7\n");
    std::int32_t value = 0;
    EXPECT_EQ(bench.session.Queryf("NEXT?", "%d", &value), S_OK);
    EXPECT_EQ(value, 7);
    EXPECT_TRUE(bench.fake.Finished());
    EXPECT_EQ(bench.session.Close(), S_OK);
    EXPECT_EQ(bench.fake.OpenObjects(), 0);
}

// A device clear brings any session back, with END where that could not be put back.
void ExpectNextCallWorks(Bench& bench) {
    ASSERT_EQ(bench.session.SetSendEndEnabled(true), S_OK);
    EXPECT_EQ(bench.session.Clear(), S_OK);
    ExpectNextQueryWorks(bench);
}

// How the transaction goes when nothing is wrong.
struct CleanRun {
    explicit CleanRun(const Transaction& transaction) {
        Bench bench;
        bench.Prepare(transaction);
        status = transaction.run(bench.session, got);
        calls = bench.fake.Calls();
    }
    HRESULT status = S_OK;
    std::string got;
    std::vector<std::string> calls;
};

// VISA's "connection lost", as it is mapped.
constexpr HRESULT kConnectionLost = MakeStatus(0x800400A6);

bool IsRead(const std::string& call) {
    return call.starts_with("viRead(");
}

bool IsTransfer(const std::string& call) {
    return IsRead(call) || call.starts_with("viWrite(");
}

// Whether the call needs the instrument itself, so that it is lost with the link.
bool NeedsInstrument(const std::string& call) {
    return IsTransfer(call) || call.starts_with("viReadSTB") || call.starts_with("viWaitOnEvent");
}

class SessionFaultTest : public testing::TestWithParam<Transaction> {
  protected:
    // Runs `each` for every VISA call of the transaction: with its number and its text, a new
    // bench on which nothing is wrong yet, and the run without a fault.
    template <typename Each>
    void ForEachCall(Each each) {
        const Transaction& transaction = GetParam();
        const CleanRun clean(transaction);
        ASSERT_GE(clean.status, 0);
        ASSERT_FALSE(clean.calls.empty());
        for (std::size_t i = 0; i < clean.calls.size(); ++i) {
            const int number = static_cast<int>(i) + 1;
            SCOPED_TRACE("call " + std::to_string(number) + ": " + clean.calls[i]);
            Bench bench;
            ASSERT_NO_FATAL_FAILURE(bench.Prepare(transaction));
            each(number, clean.calls[i], bench, clean);
        }
    }
};

void ExpectOneFails(Bench& bench, const Transaction& transaction, const std::string& failedCall,
                    HRESULT expected) {
    std::string got;
    const HRESULT status = transaction.run(bench.session, got);
    if (IsForgiven(failedCall)) {
        EXPECT_GE(status, 0);
    } else {
        EXPECT_EQ(status, expected);
        EXPECT_EQ(bench.poller.polls, 0);
    }
    if (failedCall != "viClose(event)") {
        EXPECT_EQ(bench.reporter.reports.size(), 1U);
    }
    ExpectRestored(bench, failedCall);
    ExpectNextCallWorks(bench);
}

TEST_P(SessionFaultTest, EachCallMayFail) {
    ForEachCall([](int number, const std::string& call, Bench& bench, const CleanRun&) {
        bench.fake.FailCall(number, kVisaIoError);
        ExpectOneFails(bench, GetParam(), call, kMappedIoError);
    });
}

TEST_P(SessionFaultTest, EachCallMayTimeOut) {
    ForEachCall([](int number, const std::string& call, Bench& bench, const CleanRun&) {
        bench.fake.FailCall(number, kVisaTimeout);
        ExpectOneFails(bench, GetParam(), call, kIoTimeoutStatus);
    });
}

TEST_P(SessionFaultTest, EachTransferMayTimeOutInItsMiddle) {
    ForEachCall([](int number, const std::string& call, Bench& bench, const CleanRun&) {
        if (!IsTransfer(call)) {
            return;  // it has no middle
        }
        bench.fake.DelayCall(number, call == "viRead(1)" ? 0 : 1);
        std::string got;
        EXPECT_EQ(GetParam().run(bench.session, got), kIoTimeoutStatus);
        EXPECT_THAT(bench.reporter.reports, testing::ElementsAre("ReportIoTimeout()"));
        EXPECT_EQ(bench.poller.polls, 0);
        ExpectRestored(bench, "");
        // The rest of the message or of the response is no part of what comes next.
        EXPECT_EQ(bench.session.Clear(), S_OK);
        ExpectNextQueryWorks(bench);
    });
}

TEST_P(SessionFaultTest, EachReadMayBeShort) {
    ForEachCall([](int number, const std::string& call, Bench& bench, const CleanRun& clean) {
        if (!IsRead(call)) {
            return;
        }
        bench.fake.ShortenCall(number, 1);
        std::string got;
        const HRESULT status = GetParam().run(bench.session, got);
        EXPECT_GE(status, 0);
        EXPECT_EQ(got, call == GetParam().directRead ? GetParam().gotOfShortRead : clean.got);
        EXPECT_THAT(bench.reporter.reports, testing::IsEmpty());
        ExpectRestored(bench, "");
        ExpectNextQueryWorks(bench);
    });
}

TEST_P(SessionFaultTest, EachWriteMayBeShort) {
    ForEachCall([](int number, const std::string& call, Bench& bench, const CleanRun&) {
        if (!call.starts_with("viWrite(")) {
            return;
        }
        bench.fake.ShortenCall(number, 1);
        std::string got;
        EXPECT_EQ(GetParam().run(bench.session, got), kIoErrorStatus);
        EXPECT_THAT(bench.reporter.reports,
                    testing::ElementsAre(testing::StartsWith(
                        "ReportIoError(Flush of formatted I/O write buffer only successfully "
                        "sent 1 of ")));
        EXPECT_EQ(bench.poller.polls, 0);
        ExpectRestored(bench, "");
        EXPECT_EQ(bench.session.Clear(), S_OK);
        ExpectNextQueryWorks(bench);
    });
}

TEST_P(SessionFaultTest, LinkMayBeCutBeforeEachCall) {
    ForEachCall([](int number, const std::string&, Bench& bench, const CleanRun& clean) {
        bench.fake.CutLink(number);
        const bool isNeeded =
            std::any_of(clean.calls.begin() + number - 1, clean.calls.end(), NeedsInstrument);
        std::string got;
        const HRESULT status = GetParam().run(bench.session, got);
        EXPECT_EQ(status, isNeeded ? kConnectionLost : clean.status);
        ExpectRestored(bench, "");
        // What comes next fails at once, and works when the session has been opened anew.
        std::int32_t value = 0;
        EXPECT_EQ(bench.session.Queryf("NEXT?", "%d", &value), kConnectionLost);
        (void)bench.session.Close();
        bench.fake.CutLink(0);
        ASSERT_EQ(bench.Open(), S_OK);
        EXPECT_EQ(bench.session.Clear(), S_OK);
        ExpectNextQueryWorks(bench);
    });
}

INSTANTIATE_TEST_SUITE_P(All, SessionFaultTest, testing::ValuesIn(Transactions()),
                         [](const testing::TestParamInfo<Transaction>& parameter) {
                             return parameter.param.name;
                         });

TEST(SessionOpeningFaultTest, EachCallMayFailAndTheNextOpeningWorks) {
    Bench clean;
    ASSERT_EQ(clean.Open(), S_OK);
    const int calls = clean.fake.CallCount();
    for (int n = 1; n <= calls; ++n) {
        Bench bench;
        bench.fake.FailCall(n, kVisaIoError);
        const HRESULT status = bench.Open();
        const std::string failedCall = bench.fake.Calls().at(static_cast<std::size_t>(n) - 1);
        SCOPED_TRACE(failedCall);
        if (failedCall == "viGetAttribute(RSRC_CLASS)" ||
            failedCall == "viGetAttribute(RSRC_NAME)") {
            EXPECT_EQ(status, S_OK);
        } else {
            EXPECT_EQ(status, kMappedIoError);
        }
        EXPECT_EQ(bench.session.Close(), S_OK);
        EXPECT_EQ(bench.fake.OpenObjects(), 0);
        ASSERT_EQ(bench.Open(), S_OK);
        ExpectNextCallWorks(bench);
    }
}

// Reads that come in small pieces
// ------------------------------------------------------------------

TEST(SessionPartialReadTest, ResponsesInPiecesOfAnySizeComeOutWhole) {
    for (const std::size_t piece : {1U, 2U, 3U, 7U, 4096U}) {
        SCOPED_TRACE(piece);
        Bench bench;
        ASSERT_EQ(bench.Open(), S_OK);
        bench.fake.LimitReads(piece, false);
        bench.fake.Expect("X?\n").Reply("-12.5;RISE\n");
        double value = 0;
        std::int32_t slope = 7;
        EXPECT_GE(bench.session.Queryf("X?", "%lf;%{Slope}s", &value, &slope), 0);
        EXPECT_EQ(value, -12.5);
        EXPECT_EQ(slope, 0);
    }
}

TEST(SessionPartialReadTest, PartOfAResponseAndThenATimeoutIsATimeout) {
    Bench bench;
    ASSERT_EQ(bench.Open(), S_OK);
    bench.fake.LimitReads(3, true);
    bench.fake.Respond("123456\n");
    std::string text;
    EXPECT_EQ(bench.session.ReadString(&text), kIoTimeoutStatus);
    EXPECT_THAT(bench.reporter.reports, testing::ElementsAre("ReportIoTimeout()"));
}

TEST(SessionPartialWriteTest, ShortWriteIsReportedAndTheNextMessageIsClean) {
    Bench bench;
    ASSERT_EQ(bench.Open(), S_OK);
    bench.fake.LimitWrites(2);
    EXPECT_EQ(bench.session.Printf("*RST"), kIoErrorStatus);
    EXPECT_THAT(bench.reporter.reports,
                testing::ElementsAre("ReportIoError(Flush of formatted I/O write buffer only "
                                     "successfully sent 2 of 5 bytes to the device.)"));
    EXPECT_EQ(bench.poller.polls, 0);
    bench.fake.LimitWrites(0);
    bench.fake.ForgetCalls();
    EXPECT_EQ(bench.session.Printf("*CLS"), S_OK);
    EXPECT_THAT(bench.fake.Calls(), testing::ElementsAre("viWrite(\"*CLS\\n\")"));
}

}  // namespace
}  // namespace kestrion
