// The session over the bundled VISA library as a program loads it: a socket and a virtual
// instrument, with responses that come late, in pieces or not at all.
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "io/visa_table.h"
#include "tests/io/session_fixture.h"
#include "tests/visa/loopback_server.h"

namespace kestrion {
namespace {

using visa_provider::testing::LoopbackServer;
using visa_provider::testing::Peer;

constexpr std::int32_t kSoon = 50;  // milliseconds, for what doesn't come

class SessionLinkTest : public testing::Test {
  protected:
    SessionLinkTest() {
        VisaSeams seams = VisaSeams::System();
        seams.getEnvironment = [](const char*) { return KESTRION_VISA_FILE; };
        VisaSelection selection = SelectVisaLibrary("TCPIP::h::1::SOCKET", {}, seams);
        library_ = selection.chosen;
        EXPECT_EQ(selection.error, "");
    }
    ~SessionLinkTest() override { EXPECT_EQ(session.Close(), S_OK); }

    HRESULT Open(const std::string& resource) {
        return session.Initialize(resource, &poller, &reporter, &formatter);
    }

    std::shared_ptr<const VisaLibrary> library_;
    RecordingReporter reporter;
    CountingPoller poller;
    SlopeFormatter formatter;
    CVisaCSession session{[this](std::string_view, const visa::FunctionTable*& functions) {
        functions = &library_->Functions();
        return S_OK;
    }};
};

// A server that answers "Q?" with 2, "ECHO <text>" with the text, and "LATE <text>" with the first
// part of the text, up to a '|', at once, and with the rest when the test says so.
class LateServer {
  public:
    LateServer() : server_([this](Peer& peer) { Serve(peer); }) {}

    [[nodiscard]] std::string Resource() const { return server_.Resource(); }
    // Sends the rest. When this returns, it is on its way and nothing stands in front of it.
    void SendRest() {
        go_.set_value();
        sent_.get_future().wait();
    }

  private:
    void Serve(Peer& peer) {
        while (const auto line = peer.ReceiveLine()) {
            if (*line == "Q?") {
                peer.Send("2\n");
            } else if (line->starts_with("ECHO ")) {
                peer.Send(line->substr(5) + "\n");
            } else if (line->starts_with("LATE ")) {
                const std::size_t cut = line->find('|');
                peer.Send(line->substr(5, cut - 5));
                go_.get_future().wait();
                peer.Send(line->substr(cut + 1) + "\n");
                sent_.set_value();
            } else if (*line == "HANGUP") {
                peer.Send("12");
                peer.Close();
                return;
            }
        }
    }

    std::promise<void> go_;
    std::promise<void> sent_;
    LoopbackServer server_;
};

class SocketSessionTest : public SessionLinkTest {
  protected:
    void SetUp() override { ASSERT_EQ(Open(server_.Resource()), S_OK); }

    std::int32_t AskForTwo() {
        std::int32_t value = 0;
        EXPECT_EQ(session.Queryf("Q?", "%d", &value), S_OK);
        return value;
    }

    LateServer server_;
};

TEST_F(SocketSessionTest, QueryGetsItsAnswer) {
    EXPECT_EQ(AskForTwo(), 2);
    EXPECT_EQ(poller.polls, 1);
}

TEST_F(SocketSessionTest, AnswerThatComesAfterItsTimeoutIsTakenForTheNextOne) {
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfTimeout("LATE |1", "%d", kSoon, &value), kIoTimeoutStatus);
    server_.SendRest();
    EXPECT_EQ(AskForTwo(), 1);
}

TEST_F(SocketSessionTest, DeviceClearDropsAnAnswerThatCameAfterItsTimeout) {
    std::int32_t value = 0;
    EXPECT_EQ(session.QueryfTimeout("LATE 5|1", "%d", kSoon, &value), kIoTimeoutStatus);
    server_.SendRest();
    EXPECT_EQ(session.Clear(), S_OK);
    EXPECT_EQ(AskForTwo(), 2);
}

TEST_F(SocketSessionTest, QueryDropsTheRestOfAnAnswerThatTimedOutBehindTheFirstBuffer) {
    ASSERT_EQ(session.WriteStringNoPoll("LATE " + std::string(5000, '9') + "|99", true), S_OK);
    std::vector<BYTE> bytes(6000);
    std::uint32_t actual = 0;
    EXPECT_EQ(session.ReadBytesNoPoll(bytes.data(), 6000, &actual, false, kSoon), kIoTimeoutStatus);
    EXPECT_EQ(actual, 4096U);
    server_.SendRest();
    EXPECT_EQ(AskForTwo(), 2);
}

TEST_F(SocketSessionTest, SettingsAreBackAfterATimeout) {
    BYTE bytes[10];
    EXPECT_EQ(session.ReadRaw(bytes, 10, nullptr, kSoon), kIoTimeoutStatus);
    std::int32_t timeout = 0;
    bool enabled = false;
    EXPECT_EQ(session.GetTimeout(&timeout), S_OK);
    EXPECT_EQ(timeout, 2000);
    EXPECT_EQ(session.GetTerminationCharacterEnabled(&enabled), S_OK);
    EXPECT_TRUE(enabled);
    EXPECT_EQ(session.GetSendEndEnabled(&enabled), S_OK);
    EXPECT_TRUE(enabled);
    EXPECT_EQ(AskForTwo(), 2);
}

TEST_F(SocketSessionTest, AnswersAroundTheReadBufferComeWholeAndLeaveNothing) {
    for (const std::size_t length : {4095U, 4096U, 4097U, 8191U, 8192U, 8193U}) {
        const std::string expected(length, 'e');
        std::string got;
        EXPECT_EQ(session.WriteStringNoPoll("ECHO " + expected, true), S_OK);
        EXPECT_EQ(session.Scanf("%$Ct", &got), S_OK);
        EXPECT_EQ(got, expected);
        EXPECT_EQ(AskForTwo(), 2);
    }
}

TEST_F(SocketSessionTest, ConnectionThatEndsInTheMiddleOfAnAnswerIsLostAndCanBeOpenedAnew) {
    constexpr HRESULT kConnectionLost = MakeStatus(0x800400A6);
    std::int32_t value = 0;
    EXPECT_EQ(session.Queryf("HANGUP", "%d", &value), kConnectionLost);
    EXPECT_EQ(session.Queryf("Q?", "%d", &value), kConnectionLost);
    EXPECT_EQ(session.Close(), S_OK);
    ASSERT_EQ(Open(server_.Resource()), S_OK);
    EXPECT_EQ(AskForTwo(), 2);
}

TEST_F(SessionLinkTest, BlockMayBeginWithTheTerminationCharacterAndBeFullOfIt) {
    const std::string data = "\n\nA\n\n\nB\n";
    LoopbackServer server([&data](Peer& peer) {
        while (peer.ReceiveLine()) {
            peer.Send("#18" + data + "\n");
        }
    });
    ASSERT_EQ(Open(server.Resource()), S_OK);
    for (int round = 0; round < 3; ++round) {
        std::string block(8, '\0');
        std::int32_t count = 8;
        EXPECT_EQ(session.Queryf("CURVE?", "%#b", &count, block.data()), IoStatusMoreData);
        EXPECT_EQ(block, data);
        EXPECT_EQ(count, 8);
        std::int32_t actual = 0;
        block.assign(8, '\0');
        EXPECT_EQ(session.FlushRead(), S_OK);
        EXPECT_EQ(session.WriteStringNoPoll("CURVE?", true), S_OK);
        EXPECT_GE(session.ReadBlock(reinterpret_cast<BYTE*>(block.data()), 8, &actual, false, true),
                  0);
        EXPECT_EQ(actual, 8);
        EXPECT_EQ(block, data);
        EXPECT_EQ(session.EndResponse(), S_OK);
    }
}

// The virtual instrument --------------------------------------------------------------------------

class VirtualSessionTest : public SessionLinkTest {
  protected:
    void SetUp() override {
        ASSERT_EQ(Open("VIRTUAL::INSTR"), S_OK);
        ASSERT_EQ(session.Printf("*ESE 5"), S_OK);
    }
    std::int32_t AskForFive() {
        std::int32_t value = 0;
        EXPECT_EQ(session.Queryf("*ESE?", "%d", &value), S_OK);
        return value;
    }
};

TEST_F(VirtualSessionTest, QueryThatInterruptsAnAnswerGetsItsOwn) {
    ASSERT_EQ(session.Printf("*IDN?"), S_OK);
    EXPECT_EQ(AskForFive(), 5);
}

TEST_F(VirtualSessionTest, DeviceClearDropsTheRestOfAnAnswer) {
    ASSERT_EQ(session.Printf("*IDN?"), S_OK);
    BYTE first = 0;
    EXPECT_EQ(session.ReadRaw(&first, 1, nullptr, kKeepTimeout), IoStatusMoreData);
    EXPECT_EQ(session.Clear(), S_OK);
    EXPECT_EQ(AskForFive(), 5);
}

TEST_F(VirtualSessionTest, ReadWithoutAnAnswerTimesOutAndTheNextQueryWorks) {
    std::string text;
    EXPECT_EQ(session.ReadString(&text, kSoon), kIoTimeoutStatus);
    EXPECT_EQ(AskForFive(), 5);
}

TEST_F(VirtualSessionTest, AnswerIsReadByteByByteToItsEnd) {
    ASSERT_EQ(session.Printf("*ESE?"), S_OK);
    BYTE byte = 0;
    EXPECT_EQ(session.ReadChar(&byte, false), S_OK);
    EXPECT_EQ(byte, '5');
    EXPECT_EQ(AskForFive(), 5);
}

}  // namespace
}  // namespace kestrion
