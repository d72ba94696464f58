// Every transaction with each of its VISA calls failing in turn: the status is the failure's, what
// was changed for the transaction is put back, nothing is lost, and the next call works.
#include <functional>
#include <string>
#include <vector>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

struct Transaction {
    std::string name;
    std::string response;  // what waits in the instrument; END follows
    std::function<HRESULT(CVisaCSession&)> run;
};

std::vector<Transaction> Transactions() {
    return {
        {"Printf", "", [](CVisaCSession& session) { return session.Printf("CH%d ON", 1); }},
        {"LongWrite", "",
         [](CVisaCSession& session) {
             return session.WriteString(std::string(9000, 'x'), true, 700);
         }},
        {"Queryf", "1;2\n",
         [](CVisaCSession& session) {
             std::int32_t a = 0;
             std::int32_t b = 0;
             return session.QueryfTimeout("X?", "%d;%d", 5000, &a, &b);
         }},
        {"QueryString", "text\n",
         [](CVisaCSession& session) {
             std::string text;
             return session.QueryString("X?", &text, 5000);
         }},
        {"QueryNumber", "12\n",
         [](CVisaCSession& session) {
             DOUBLE value = 0;
             return session.QueryNumber("X?", &value, true, 5000);
         }},
        {"ScanfThatDropsALongRest", "1," + std::string(6000, '9'),
         [](CVisaCSession& session) {
             std::int32_t value = 0;
             return session.ScanfTimeout("%d,", 5000, &value);
         }},
        {"WriteBlock", "",
         [](CVisaCSession& session) {
             const std::vector<SHORT> values(3000, 7);
             return session.WriteBlock(values.data(), 3000, true, 700);
         }},
        {"ReadBlock", "#45000" + std::string(5000, '\n') + "\n",
         [](CVisaCSession& session) {
             std::vector<BYTE> values(5000);
             return session.ReadBlock(values.data(), 5000, nullptr, false, true, 700);
         }},
        {"ReadVariantBlock", "#45000" + std::string(5000, 'v') + "\n",
         [](CVisaCSession& session) {
             SafeArrayPtr array;
             return session.ReadBlock(array.Out(), ElementKind::kShort, true, true, 700);
         }},
        {"ReadVariantList", "1,2,3\n",
         [](CVisaCSession& session) {
             SafeArrayPtr array;
             return session.ReadList(array.Out(), ElementKind::kLong, ",", 700);
         }},
        {"ReadRaw", std::string(50, '\n'),
         [](CVisaCSession& session) {
             BYTE bytes[50];
             return session.ReadRaw(bytes, 50, nullptr, 700);
         }},
        {"LockedStatusByte", "",
         [](CVisaCSession& session) {
             BYTE value = 0;
             HRESULT status = session.Lock(IoLockType::kExclusive, 1000, "", nullptr);
             if (!Failed(status)) {
                 status = session.ReadStatusByte(&value);
                 const HRESULT unlocked = session.Unlock();
                 status = Failed(status) ? status : unlocked;
             }
             return status;
         }},
        {"WaitForServiceRequest", "",
         [](CVisaCSession& session) {
             HRESULT status =
                 session.EnableEvent(VisaEvent::kServiceRequest, VisaEventMechanism::kQueue);
             visa::ViEvent context = 0;
             if (!Failed(status)) {
                 status = session.WaitOnEvent(VisaEvent::kServiceRequest, 1000, nullptr, &context);
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

// A device clear and a flush of both sides bring any session back.
void ExpectNextCallWorks(Bench& bench) {
    ASSERT_EQ(bench.session.SetSendEndEnabled(true), S_OK);
    EXPECT_EQ(bench.session.FlushWrite(true), S_OK);
    EXPECT_EQ(bench.session.Clear(), S_OK);
    (void)bench.session.FlushRead();
    bench.fake.Expect("NEXT?\n").Reply("7\n");
    std::int32_t value = 0;
    EXPECT_EQ(bench.session.Queryf("NEXT?", "%d", &value), S_OK);
    EXPECT_EQ(value, 7);
    EXPECT_TRUE(bench.fake.Finished());
    EXPECT_EQ(bench.session.Close(), S_OK);
    EXPECT_EQ(bench.fake.OpenObjects(), 0);
}

class SessionFaultTest : public testing::TestWithParam<Transaction> {};

TEST_P(SessionFaultTest, EachCallMayFail) {
    const Transaction& transaction = GetParam();
    Bench clean;
    ASSERT_NO_FATAL_FAILURE(clean.Prepare(transaction));
    ASSERT_GE(transaction.run(clean.session), 0);
    const int calls = clean.fake.CallCount();
    ASSERT_GT(calls, 0);
    for (int n = 1; n <= calls; ++n) {
        for (const bool timeout : {false, true}) {
            Bench bench;
            ASSERT_NO_FATAL_FAILURE(bench.Prepare(transaction));
            bench.fake.FailCall(n, timeout ? kVisaTimeout : kVisaIoError);
            const HRESULT status = transaction.run(bench.session);
            const std::string failedCall = bench.fake.Calls().at(static_cast<std::size_t>(n) - 1);
            SCOPED_TRACE("call " + std::to_string(n) + ": " + failedCall);
            if (IsForgiven(failedCall)) {
                EXPECT_GE(status, 0);
            } else {
                EXPECT_EQ(status, timeout ? kIoTimeoutStatus : kMappedIoError);
                EXPECT_EQ(bench.poller.polls, 0);
            }
            if (failedCall != "viClose(event)") {
                EXPECT_EQ(bench.reporter.reports.size(), 1U);
            }
            ExpectRestored(bench, failedCall);
            ExpectNextCallWorks(bench);
        }
    }
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
