// What a raw socket alone does.
#include <atomic>
#include <thread>

#include "tests/visa/session_fixture.h"
#include "visa/tcp_socket.h"

namespace visa_provider::testing {

class SocketTest : public VisaTest {
  protected:
    // A session to a server with this script.
    ViSession OpenTo(LoopbackServer::Script script) {
        server_ = std::make_unique<LoopbackServer>(std::move(script));
        return Open(server_->Resource());
    }

    // Waits for the script to end: for tests whose script uses variables of the test.
    void StopServer() { server_.reset(); }

    void TearDown() override {
        VisaTest::TearDown();
        StopServer();
    }

  private:
    std::unique_ptr<LoopbackServer> server_;
};

TEST_F(SocketTest, ReadWithoutTerminatorEndsWithTheCountOnly) {
    const auto session = OpenTo(AnswerAll);
    ASSERT_EQ(Write(session, "*IDN?\n"), VI_SUCCESS);
    const auto read = Read(session, 14);
    EXPECT_EQ(read.status, VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(read.bytes, "KESTRION,TEST\n");
}

TEST_F(SocketTest, PeerThatClosesInTheMiddleOfAResponse) {
    const auto session = OpenTo([](Peer& peer) {
        peer.ReceiveLine();
        peer.Send("#41000half");
        peer.Close();
        peer.ReceiveUntilGone();
    });
    ASSERT_EQ(Write(session, "CURVE?\n"), VI_SUCCESS);
    const auto read = Read(session, 1006);
    EXPECT_EQ(read.status, VI_ERROR_CONN_LOST);
    EXPECT_EQ(read.bytes, "#41000half");
    EXPECT_EQ(Read(session, 1).status, VI_ERROR_CONN_LOST);
}

TEST_F(SocketTest, PeerThatClosesInTheMiddleOfALargeRead) {
    const auto session = OpenTo([](Peer& peer) {
        peer.ReceiveLine();
        peer.Send(Letters(100000));
        peer.Close();
        peer.ReceiveUntilGone();
    });
    ASSERT_EQ(Write(session, "CURVE?\n"), VI_SUCCESS);
    const auto read = Read(session, 200000);
    EXPECT_EQ(read.status, VI_ERROR_CONN_LOST);
    EXPECT_TRUE(read.bytes == Letters(100000));
}

TEST_F(SocketTest, BytesThatCameBeforeTheEndAreStillReadInPieces) {
    const auto session = OpenTo([](Peer& peer) {
        peer.Send("abc");
        peer.Close();
        peer.ReceiveUntilGone();
    });
    EXPECT_EQ(Read(session, 1).bytes, "a");
    EXPECT_EQ(Read(session, 2).bytes, "bc");
    EXPECT_EQ(Read(session, 1).status, VI_ERROR_CONN_LOST);
}

TEST_F(SocketTest, ConnectionThatIsResetIsLost) {
    std::atomic<bool> isReset = false;
    const auto session = OpenTo([&](Peer& peer) {
        peer.ReceiveLine();
        peer.Reset();
        isReset = true;
    });
    ASSERT_EQ(Write(session, "*RST\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session, 10).status, VI_ERROR_CONN_LOST);
    while (!isReset) {
        std::this_thread::yield();
    }
    // Without care this would end the process with a signal.
    EXPECT_EQ(Write(session, "*RST\n"), VI_ERROR_CONN_LOST);
    EXPECT_EQ(Write(session, "*RST\n"), VI_ERROR_CONN_LOST);
    EXPECT_EQ(viClear(session), VI_ERROR_CONN_LOST);
    StopServer();
}

TEST_F(SocketTest, PeerThatTricklesIsCutOff) {
    const auto session = OpenTo([](Peer& peer) {
        while (peer.Send("x")) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    });
    Set(session, VI_ATTR_TMO_VALUE, 40);
    const auto read = Read(session, 100000);
    EXPECT_EQ(read.status, VI_ERROR_TMO);
    EXPECT_LT(read.bytes.size(), 65536U);
    EXPECT_EQ(read.bytes, std::string(read.bytes.size(), 'x'));
}

TEST_F(SocketTest, PeerThatDoesNotReadEndsAWriteInATimeOut) {
    std::atomic<bool> isOver = false;
    const auto session = OpenTo([&](Peer& peer) {
        while (!isOver) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        peer.ShutDown();
    });
    Set(session, VI_ATTR_TMO_VALUE, 50);
    const std::string block = Letters(64'000'000);  // more than the system keeps on the way
    ViUInt32 count = 0;
    EXPECT_EQ(viWrite(session, reinterpret_cast<const ViByte*>(block.data()), 64'000'000, &count),
              VI_ERROR_TMO);
    EXPECT_GT(count, 0U);
    EXPECT_LT(count, 64'000'000U);
    isOver = true;
    StopServer();
}

TEST_F(SocketTest, LargeWriteArrivesWhole) {
    std::atomic<std::size_t> length = 0;
    const auto session = OpenTo([&](Peer& peer) {
        if (const auto line = peer.ReceiveLine()) {
            length = line->size();
        }
        peer.Send("done\n");
        peer.ReceiveUntilGone();
    });
    ASSERT_EQ(Write(session, Letters(20'000'000) + "\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session, 5).bytes, "done\n");
    EXPECT_EQ(length, 20'000'000U);
    StopServer();
}

TEST_F(SocketTest, StatusByteAndTriggerNeedTheMessageProtocol) {
    const auto session = OpenTo(AnswerAll);
    ViUInt16 status = 0;
    EXPECT_EQ(viReadSTB(session, &status), VI_ERROR_INV_SETUP);
    EXPECT_EQ(viAssertTrigger(session, VI_TRIG_PROT_DEFAULT), VI_ERROR_INV_SETUP);
}

TEST_F(SocketTest, StatusByteIsAskedForWithAMessage) {
    std::string seen;
    const auto session = OpenTo([&](Peer& peer) {
        for (const char* answer :
             {"65\n", "+0\r\n", " 255 \n", "256\n", "\n", "x\n", "-1\n", "3 4\n"}) {
            const auto line = peer.ReceiveLine();
            if (!line) {
                return;
            }
            seen = *line;
            peer.Send(answer);
        }
        peer.ReceiveUntilGone();
    });
    Set(session, VI_ATTR_IO_PROT, VI_PROT_4882_STRS);
    ViUInt16 status = 999;
    EXPECT_EQ(viReadSTB(session, &status), VI_SUCCESS);
    EXPECT_EQ(status, 65);
    EXPECT_EQ(viReadSTB(session, &status), VI_SUCCESS);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(viReadSTB(session, &status), VI_SUCCESS);
    EXPECT_EQ(status, 255);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(viReadSTB(session, &status), VI_ERROR_RAW_RD_PROT_VIOL) << i;
    }
    EXPECT_EQ(status, 255);
    StopServer();
    EXPECT_EQ(seen, "*STB?");
}

TEST_F(SocketTest, StatusByteThatDoesNotComeIsATimeOut) {
    const auto session = OpenTo([](Peer& peer) { peer.ReceiveUntilGone(); });
    Set(session, VI_ATTR_IO_PROT, VI_PROT_4882_STRS);
    Set(session, VI_ATTR_TMO_VALUE, 20);
    ViUInt16 status = 0;
    EXPECT_EQ(viReadSTB(session, &status), VI_ERROR_TMO);
}

TEST_F(SocketTest, TriggerIsAMessage) {
    const auto session = OpenTo([](Peer& peer) {
        if (const auto line = peer.ReceiveLine()) {
            peer.Send("got " + *line + "\n");
        }
        peer.ReceiveUntilGone();
    });
    Set(session, VI_ATTR_IO_PROT, VI_PROT_4882_STRS);
    EXPECT_EQ(viAssertTrigger(session, 5), VI_ERROR_INV_PROT);
    EXPECT_EQ(viAssertTrigger(session, VI_TRIG_PROT_DEFAULT), VI_SUCCESS);
    EXPECT_EQ(Read(session, 9).bytes, "got *TRG\n");
}

TEST_F(SocketTest, ClearThrowsAwayWhatCame) {
    std::atomic<bool> wasSent = false;
    const auto session = OpenTo([&](Peer& peer) {
        peer.Send("old answer\n");
        wasSent = true;
        AnswerAll(peer);
    });
    while (!wasSent) {
        std::this_thread::yield();
    }
    EXPECT_EQ(Read(session, 3).bytes, "old");
    EXPECT_EQ(viClear(session), VI_SUCCESS);
    ASSERT_EQ(Write(session, "ECHO new\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session, 4).bytes, "new\n");
    StopServer();
}

TEST_F(SocketTest, ClearEndsAlthoughThePeerNeverStops) {
    const auto session = OpenTo([](Peer& peer) {
        while (peer.Send(Letters(100000))) {
        }
    });
    Set(session, VI_ATTR_TMO_VALUE, 30);
    // Either the socket is empty for a moment, or the time-out ends it.
    const ViStatus status = viClear(session);
    EXPECT_TRUE(status == VI_SUCCESS || status == VI_ERROR_TMO) << status;
}

TEST_F(SocketTest, WriteWhileAnotherThreadReads) {
    const auto session = OpenTo(AnswerAll);
    Set(session, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
    std::thread reader([&] { EXPECT_EQ(Read(session, 5).bytes, "done\n"); });
    EXPECT_EQ(Write(session, "ECHO done\n"), VI_SUCCESS);
    reader.join();
}

// Longer than the first call waits for an answer.
TEST_F(SocketTest, AnswerThatComesLate) {
    const auto session = OpenTo([](Peer& peer) {
        while (peer.ReceiveLine()) {
            std::this_thread::sleep_for(4 * TcpSocket::kSoon);
            peer.Send("late\n");
        }
    });
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(Write(session, "VALUE?\n"), VI_SUCCESS);
        EXPECT_EQ(Read(session, 5).bytes, "late\n");
    }
}

TEST_F(SocketTest, SecondReaderWaitsForItsTurnWithinItsTimeOut) {
    const auto session = OpenTo(AnswerAll);
    Set(session, VI_ATTR_TMO_VALUE, 5000);
    std::atomic<bool> isReading = false;
    std::thread reader([&] {
        isReading = true;
        ReadResult read;
        do {
            read = Read(session, 5);  // again, should it have begun with the short time-out
        } while (read.status == VI_ERROR_TMO);
        EXPECT_EQ(read.bytes, "done\n");
    });
    while (!isReading) {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    Set(session, VI_ATTR_TMO_VALUE, 20);
    EXPECT_EQ(Read(session, 5).status, VI_ERROR_TMO);
    EXPECT_EQ(Write(session, "ECHO done\n"), VI_SUCCESS);
    reader.join();
}

TEST_F(SocketTest, ServiceRequestIsNoEventOfASocket) {
    const auto session = OpenTo(AnswerAll);
    EXPECT_EQ(viEnableEvent(session, VI_EVENT_SERVICE_REQ, VI_QUEUE, 0), VI_ERROR_INV_EVENT);
    EXPECT_EQ(viWaitOnEvent(session, VI_EVENT_SERVICE_REQ, 0, nullptr, nullptr),
              VI_ERROR_INV_EVENT);
}

}  // namespace visa_provider::testing
