#include <gtest/gtest.h>

#include <future>
#include <sstream>

#include "tests/virtual/client.h"
#include "virtual/server/socket_server.h"

namespace virtual_scope {
namespace {

std::unique_ptr<SocketServer> StartServer(ServerOptions options = {}) {
    std::string error;
    auto server = SocketServer::Start(options, error);
    EXPECT_NE(server, nullptr) << error;
    return server;
}

// Waits until the server has as many clients; false if it takes too long.
bool WaitForClients(SocketServer& server, int count) {
    for (int i = 0; i < 1000 && server.ClientCount() != count; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return server.ClientCount() == count;
}

TEST(Server, TellsItsAddress) {
    const auto server = StartServer();
    EXPECT_NE(server->port(), 0);
    EXPECT_EQ(server->ResourceName(),
              "TCPIP0::127.0.0.1::" + std::to_string(server->port()) + "::SOCKET");
    const auto everywhere = StartServer({.address = "0.0.0.0"});
    EXPECT_EQ(everywhere->ResourceName(),
              "TCPIP0::127.0.0.1::" + std::to_string(everywhere->port()) + "::SOCKET");
}

TEST(Server, RefusesAnUnknownModelAndNamesTheOthers) {
    std::string error;
    EXPECT_EQ(SocketServer::Start({.model = "XX1"}, error), nullptr);
    EXPECT_EQ(error,
              "unknown model XX1; the models are MR5104B, MR71254C, MR72304DX, SW72004C, SW73304D, "
              "PL5034, PL7254C, PL72304DX, PL77002SX, CR7404B, LK7254B, LK7054, IB6804B, IB6404, "
              "IB6124C, HR5054B, HR5052BE, HR5104");
}

TEST(Server, TellsWhyItCannotListen) {
    const auto server = StartServer();
    std::string error;
    EXPECT_EQ(SocketServer::Start({.port = server->port()}, error), nullptr);
    EXPECT_EQ(error, "cannot listen on 127.0.0.1, port " + std::to_string(server->port()) +
                         ": Address already in use");
    EXPECT_EQ(SocketServer::Start({.address = "no.such.host.invalid"}, error), nullptr);
    EXPECT_TRUE(error.starts_with("cannot listen on no.such.host.invalid, port 0: ")) << error;
}

TEST(Server, AnswersQueries) {
    const auto server = StartServer({.model = "MR5104B"});
    Client client(server->port());
    EXPECT_EQ(client.Query("*IDN?"), "KESTRION,MR5104B,V000001,1.0.0");
    EXPECT_EQ(client.Query("HEAD OFF;:VERBOSE 1;:HEADER?"), "0");
}

TEST(Server, TakesCarriageReturnsForWhiteSpace) {
    const auto server = StartServer();
    Client client(server->port());
    client.Send("*IDN?\r\n");
    EXPECT_EQ(client.ReceiveLine(), "KESTRION,PL7254C,V000001,1.0.0");
}

TEST(Server, MessagesMayComeInPiecesOrManyAtOnce) {
    const auto server = StartServer();
    Client client(server->port());
    for (const char* piece : {"HEAD", "ER OFF\nDATA:STA", "RT 3", "\n"}) {
        client.Send(piece);
    }
    client.Send("DATA:START?\nDATA:STOP?\nSYSTEM:ERROR?\n");
    EXPECT_EQ(client.ReceiveLine(), "3");
    EXPECT_EQ(client.ReceiveLine(), "10000");
    EXPECT_EQ(client.ReceiveLine(), "0,\"No error\"");
}

TEST(Server, AnswersThatWaitForAnOperationComeByThemselves) {
    const auto server = StartServer();
    Client client(server->port());
    client.Send("HEADER OFF;:ACQUIRE:STOPAFTER SEQUENCE;STATE ON\n*OPC?\nACQUIRE:STATE?\n");
    EXPECT_EQ(client.ReceiveLine(), "1");
    EXPECT_EQ(client.ReceiveLine(), "0");
}

TEST(Server, ClientsShareTheInstrumentAndNotTheAnswers) {
    const auto server = StartServer();
    Client first(server->port());
    Client second(server->port());
    EXPECT_EQ(first.Query("HEADER OFF;:DATA:START 5;START?"), "5");
    for (int i = 0; i < 20; ++i) {
        first.Send("DATA:START?\n");
        second.Send("DATA:STOP?;START?\n");
        EXPECT_EQ(second.ReceiveLine(), "10000;5");
        EXPECT_EQ(first.ReceiveLine(), "5");
    }
}

TEST(Server, AClientThatReadsSlowlyDoesNotHoldUpOthers) {
    const auto server = StartServer();
    Client slow(server->port());
    slow.Send("HEADER OFF;:HORIZONTAL:RECORDLENGTH 50000000;:DATA:STOP 50000000;:CURVE?\n");
    EXPECT_EQ(slow.Receive(10), "#850000000");
    Client other(server->port());
    EXPECT_EQ(other.Query("*IDN?"), "KESTRION,PL7254C,V000001,1.0.0");
}

TEST(Server, LongBlocksArriveWhole) {
    const auto server = StartServer();
    Client client(server->port());
    client.Send("HEADER OFF;:HORIZONTAL:RECORDLENGTH 5000000;:DATA:STOP 5000000\n");
    client.Send("CURVE?\n*IDN?\n");
    EXPECT_EQ(client.Receive(9), "#75000000");
    const std::string data = client.Receive(5'000'000);
    ASSERT_EQ(data.size(), 5'000'000U);
    EXPECT_EQ(data[2'500'000], 0);
    EXPECT_EQ(data[2'812'500], 50);  // a quarter of a millisecond after the trigger
    EXPECT_EQ(client.ReceiveLine(), "");
    EXPECT_EQ(client.ReceiveLine(), "KESTRION,PL7254C,V000001,1.0.0");
}

TEST(Server, AVanishingClientLeavesTheServerInOrder) {
    const auto server = StartServer();
    {
        Client client(server->port());
        client.Send("HEADER OFF;:HORIZONTAL:RECORDLENGTH 50000000;:DATA:STOP 50000000;:CURVE?\n");
        EXPECT_EQ(client.Receive(10), "#850000000");
    }
    EXPECT_TRUE(WaitForClients(*server, 0));
    Client next(server->port());
    EXPECT_EQ(next.Query("HORIZONTAL:RECORDLENGTH?"), "50000000");
}

TEST(Server, AnUnfinishedMessageGoesWithItsClient) {
    const auto server = StartServer();
    {
        Client client(server->port());
        client.Send("DATA:START 9\nDATA:STOP 7");
        client.FinishWriting();
        EXPECT_TRUE(client.IsClosedByServer());
    }
    Client next(server->port());
    EXPECT_EQ(next.Query("HEADER OFF;:DATA:START?;STOP?;:SYSTEM:ERROR?"), "9;10000;0,\"No error\"");
}

TEST(Server, AClientThatOnlyReadsOnGetsItsAnswer) {
    const auto server = StartServer();
    Client client(server->port());
    client.Send("*IDN?\n");
    client.FinishWriting();
    EXPECT_EQ(client.ReceiveLine(), "KESTRION,PL7254C,V000001,1.0.0");
    EXPECT_TRUE(client.IsClosedByServer());
}

TEST(Server, OnceEndsWithTheFirstClient) {
    const auto server = StartServer({.once = true});
    {
        Client client(server->port());
        EXPECT_EQ(client.Query("*OPC?"), "1");
    }
    server->Wait();
    EXPECT_EQ(server->ClientCount(), 0);
}

TEST(Server, StoppingEndsConnectionsThatAreIdleOrStuck) {
    auto server = StartServer();
    Client idle(server->port());
    EXPECT_EQ(idle.Query("*OPC?"), "1");
    Client stuck(server->port());
    stuck.Send("HEADER OFF;:HORIZONTAL:RECORDLENGTH 50000000;:DATA:STOP 50000000;:CURVE?\n");
    EXPECT_EQ(stuck.Receive(10), "#850000000");
    const std::uint16_t port = server->port();
    server.reset();
    EXPECT_TRUE(idle.IsClosedByServer());
    EXPECT_FALSE(Client(port).IsConnected());
}

TEST(Server, ItsInstrumentCanBeReachedPastTheNetwork) {
    const auto server = StartServer();
    Client client(server->port());
    EXPECT_EQ(client.Query("HEADER OFF;:DATA:START 12;START?"), "12");
    const auto link = server->instrument().Connect();
    const std::string_view query = "DATA:START?";
    link->Write(std::as_bytes(std::span(query)), true);
    std::array<std::byte, 3> answer{};
    EXPECT_EQ(link->Read(answer).count, 3U);
    EXPECT_EQ(answer[0], std::byte{'1'});
    EXPECT_EQ(answer[1], std::byte{'2'});
}

TEST(Server, LogsOneLineForEachMessage) {
    std::ostringstream log;
    auto server = StartServer({.log = &log});
    {
        Client client(server->port());
        EXPECT_EQ(client.Query("HEADER OFF;*OPC?"), "1");
        client.Send("CURVE?\n");
        EXPECT_EQ(client.Receive(10'008).size(), 10'008U);
    }
    EXPECT_TRUE(WaitForClients(*server, 0));
    Client second(server->port());
    EXPECT_EQ(second.Query("*ESR?"), "128");
    server.reset();
    EXPECT_EQ(log.str(),
              "1 -> HEADER OFF;*OPC?\n"
              "1 <- 1\n"
              "1 -> CURVE?\n"
              "1 <- #510000 <10000 bytes>\n"
              "2 -> *ESR?\n"
              "2 <- 128\n");
}

}  // namespace
}  // namespace virtual_scope
