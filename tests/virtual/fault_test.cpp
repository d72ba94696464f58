#include <gtest/gtest.h>

#include "tests/virtual/client.h"
#include "virtual/server/block_header.h"
#include "virtual/server/fault_injector.h"
#include "virtual/server/socket_server.h"

namespace virtual_scope {
namespace {

class Faults : public testing::Test {
  protected:
    Faults() {
        std::string error;
        server_ = SocketServer::Start({}, error);
        client_ = std::make_unique<Client>(server_->port());
        EXPECT_EQ(client_->Query("HEADER OFF;:DATA:START 501;STOP 510;*OPC?"), "1");
    }

    std::unique_ptr<SocketServer> server_;
    std::unique_ptr<Client> client_;
};

TEST_F(Faults, WithoutAPlanABlockIsInOrder) {
    client_->Send("CURVE?\n");
    const std::string response = client_->Receive(15);
    EXPECT_EQ(response.substr(0, 4), "#210");
    EXPECT_EQ(response.back(), '\n');
}

TEST_F(Faults, SilenceLosesAnswersAndNothingElse) {
    server_->SetFaults({.silent = true});
    client_->SetTimeout(100);
    EXPECT_EQ(client_->Query("*IDN?;:DATA:START 4"), "");
    server_->SetFaults({});
    client_->SetTimeout(10'000);
    EXPECT_EQ(client_->Query("DATA:START?"), "4");
}

TEST_F(Faults, TheConnectionIsCutWithinAResponse) {
    server_->SetFaults({.cutAfter = 6});
    EXPECT_EQ(client_->Query("*OPC?"), "1");  // short enough to pass
    client_->Send("CURVE?\n");
    const std::string response = client_->Receive(100);
    EXPECT_EQ(response.size(), 6U);
    EXPECT_EQ(response.substr(0, 4), "#210");
}

TEST_F(Faults, TheConnectionIsCutBeforeAResponse) {
    server_->SetFaults({.cutAfter = 0});
    client_->Send("*IDN?\n");
    EXPECT_TRUE(client_->IsClosedByServer());
}

TEST_F(Faults, TheHeaderLies) {
    server_->SetFaults({.lengthError = 5});
    client_->Send("CURVE?\n");
    EXPECT_EQ(client_->Receive(15).substr(0, 4), "#215");
    server_->SetFaults({.lengthError = -3});
    client_->Send("CURVE?\n");
    EXPECT_EQ(client_->Receive(14).substr(0, 3), "#17");
    server_->SetFaults({.lengthError = -1000});
    client_->Send("CURVE?\n");
    EXPECT_EQ(client_->Receive(14).substr(0, 3), "#10");
}

TEST_F(Faults, MoreDataComeThanAnnounced) {
    server_->SetFaults({.surplusBytes = 3});
    client_->Send("CURVE?\n");
    const std::string response = client_->Receive(18);
    EXPECT_EQ(response.substr(0, 4), "#210");
    EXPECT_EQ(response.substr(14), "xxx\n");
    EXPECT_EQ(client_->Query("*OPC?"), "1");  // no block, no surplus
}

TEST(FaultInjector, CountsOverAllPieces) {
    FaultInjector injector({.cutAfter = 5});
    std::vector<std::byte> piece(3);
    injector.Apply(piece, false);
    EXPECT_EQ(piece.size(), 3U);
    EXPECT_FALSE(injector.IsCut());
    piece.resize(3);
    injector.Apply(piece, true);
    EXPECT_EQ(piece.size(), 2U);
    EXPECT_TRUE(injector.IsCut());
}

std::optional<BlockHeader> Find(std::string_view text) {
    return FindBlockHeader(std::as_bytes(std::span(text)));
}

TEST(BlockHeader, IsFoundOutsideOfStrings) {
    const auto header = Find(":CH1:LABEL \"#13\";:CURVE #3100abc");
    ASSERT_TRUE(header.has_value());
    EXPECT_EQ(header->begin, 24U);
    EXPECT_EQ(header->size, 5U);
    EXPECT_EQ(header->length, 100U);
}

TEST(BlockHeader, IsNotFoundWhereThereIsNone) {
    for (const char* text : {"", "#", "#0abc", "#A1", "#31", "#2x1", "\"#13", "1,2"}) {
        EXPECT_FALSE(Find(text).has_value()) << text;
    }
}

}  // namespace
}  // namespace virtual_scope
