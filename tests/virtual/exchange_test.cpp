#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

constexpr std::string_view kInterrupted = "-410,\"Query INTERRUPTED\"";
constexpr std::string_view kUnterminated = "-420,\"Query UNTERMINATED\"";

TEST(Exchange, AResponseMayBeReadByteByByte) {
    BareBench bench;
    bench.Write("DATA:START?");
    std::array<std::byte, 1> one{};
    ReadPiece piece = bench.link().Read(one);
    EXPECT_EQ(piece.count, 1U);
    EXPECT_FALSE(piece.end);
    EXPECT_EQ(one[0], std::byte{'1'});
    piece = bench.link().Read(one);
    EXPECT_EQ(piece.count, 1U);
    EXPECT_TRUE(piece.end);
    EXPECT_EQ(one[0], std::byte{'\n'});
    EXPECT_FALSE(bench.link().HasOutput());
}

TEST(Exchange, ANewMessageInterruptsAnUnreadResponse) {
    BareBench bench;
    bench.Write("*IDN?");
    EXPECT_EQ(bench.Query("DATA:START?"), "1");
    EXPECT_EQ(bench.Error(), kInterrupted);
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Exchange, APartlyReadResponseIsInterruptedToo) {
    BareBench bench;
    bench.Write("*IDN?");
    std::array<std::byte, 4> some{};
    EXPECT_EQ(bench.link().Read(some).count, 4U);
    EXPECT_EQ(bench.Query("DATA:START?"), "1");
    EXPECT_EQ(bench.Error(), kInterrupted);
}

TEST(Exchange, TheFirstByteOfAMessageInterrupts) {
    BareBench bench;
    bench.Write("*IDN?");
    bench.link().Write(std::as_bytes(std::span("D", 1)), false);
    EXPECT_FALSE(bench.link().HasOutput());
    bench.link().Clear();
    EXPECT_EQ(bench.Error(), kInterrupted);
}

TEST(Exchange, TwoMessagesInOneWriteAreTwoMessages) {
    BareBench bench;
    EXPECT_EQ(bench.Query("*IDN?\nDATA:START?\n"), "1");
    EXPECT_EQ(bench.Error(), kInterrupted);
    bench.Write("DATA:START 3\nDATA:STOP 4\n");
    EXPECT_EQ(bench.Query("DATA:START?;STOP?"), "3;4");
}

TEST(Exchange, ReadingWithoutAQueryGivesNothing) {
    BareBench bench;
    std::array<std::byte, 8> some{};
    const ReadPiece piece = bench.link().Read(some);
    EXPECT_EQ(piece.count, 0U);
    EXPECT_FALSE(piece.end);
    (void)bench.link().Read(some);  // the same reading, going on
    EXPECT_EQ(bench.Error(), kUnterminated);
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Exchange, ReadingBeforeTheEndOfAMessageGivesNothing) {
    BareBench bench;
    std::array<std::byte, 8> some{};
    bench.link().Write(std::as_bytes(std::span("*ID", 3)), false);
    EXPECT_EQ(bench.link().Read(some).count, 0U);
    EXPECT_EQ(bench.Query("N?"), "KESTRION,PL7254C,V000001,1.0.0");
    EXPECT_EQ(bench.Error(), kUnterminated);
}

TEST(Exchange, WaitingForAnOperationIsNoQueryError) {
    BareBench bench;
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON");
    bench.Write("*OPC?");
    std::array<std::byte, 8> some{};
    EXPECT_EQ(bench.link().Read(some).count, 0U);
    bench.Advance(std::chrono::seconds(1));
    EXPECT_EQ(bench.Read(), "1");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Exchange, TooManyAnswersDeadlock) {
    BareBench bench;
    std::string message = "*IDN?";
    while (message.size() < 60'000) {
        message += ";*IDN?";
    }
    EXPECT_EQ(bench.Query(message + ";:DATA:START 5"), "(nothing)");
    EXPECT_EQ(bench.Error(), "-430,\"Query DEADLOCKED\"");
    EXPECT_EQ(bench.Query("DATA:START?"), "5");  // commands are executed all the same
}

TEST(Exchange, DeviceClearEmptiesBothQueuesAndKeepsSettings) {
    BareBench bench;
    bench.Write("DATA:START 8;:ACQUIRE:STOPAFTER SEQUENCE;STATE ON");
    bench.Write("*IDN?;*WAI;:DATA:START 9");
    bench.link().Write(std::as_bytes(std::span("HEAD", 4)), false);
    bench.link().Clear();
    EXPECT_FALSE(bench.link().HasOutput());
    EXPECT_EQ(bench.Query("DATA:START?"), "8");
    bench.Advance(std::chrono::seconds(1));
    EXPECT_EQ(bench.Query("DATA:START?"), "8");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Exchange, LinksHaveResponsesOfTheirOwn) {
    BareBench bench;
    const auto other = bench.instrument().Connect();
    bench.Write("DATA:START 6;START?");
    Bench::WriteTo(*other, "DATA:START?;STOP?");
    EXPECT_EQ(bench.Read(), "6");
    EXPECT_EQ(Bench::ReadFrom(*other), "6;10000");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Exchange, OnAStreamAMessageWaitsForTheResponseBeforeIt) {
    BareBench bench;
    const auto stream = bench.instrument().Connect(ExchangeRule::kStream);
    Bench::WriteTo(*stream, "DATA:START?\nDATA:STOP 44\nDATA:STOP?\n");
    EXPECT_EQ(bench.Query("DATA:STOP?"), "10000");
    EXPECT_EQ(Bench::ReadFrom(*stream), "1");
    EXPECT_EQ(bench.Query("DATA:STOP?"), "44");
    EXPECT_EQ(Bench::ReadFrom(*stream), "44");
    EXPECT_FALSE(stream->HasOutput());
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(Exchange, LinksMayBeUsedFromThreadsOfTheirOwn) {
    const auto instrument = Instrument::Make("PL7254C");
    const auto work = [&instrument] {
        const auto link = instrument->Connect();
        const auto requests = std::make_shared<std::atomic<int>>(0);
        link->SetServiceRequestHandler([requests] { ++*requests; });
        for (int i = 0; i < 50; ++i) {
            Bench::WriteTo(*link, "*SRE 16;:ACQUIRE:STATE ON;*IDN?");
            link->Poll();
            (void)link->SerialPoll();
            (void)link->NextEvent();
            EXPECT_EQ(Bench::ReadFrom(*link, 8), "KESTRION,PL7254C,V000001,1.0.0");
        }
        EXPECT_GE(*requests, 50);
    };
    std::thread other(work);
    work();
    other.join();
}

TEST(Exchange, TooLongAMessageIsAnOverrun) {
    BareBench bench;
    bench.Write(std::string(MessageFramer::kMaxMessage + 1, 'x'));
    EXPECT_EQ(bench.Error(), "-363,\"Input buffer overrun\"");
}

TEST(Factory, KnowsItsModelsAndNoOthers) {
    EXPECT_EQ(ModelNames(),
              (std::vector<std::string>{"MR5104B", "MR71254C", "MR72304DX", "SW72004C", "SW73304D",
                                        "PL5034", "PL7254C", "PL72304DX", "PL77002SX", "CR7404B",
                                        "LK7254B", "LK7054", "IB6804B", "IB6404", "IB6124C",
                                        "HR5054B", "HR5052BE", "HR5104"}));
    for (const std::string& name : ModelNames()) {
        const auto link = MakeInstrument(name);
        ASSERT_NE(link, nullptr) << name;
        Bench::WriteTo(*link, "*IDN?");
        EXPECT_EQ(Bench::ReadFrom(*link), "KESTRION," + name + ",V000001,1.0.0");
    }
    EXPECT_EQ(MakeInstrument("pl7254c"), nullptr);
    EXPECT_EQ(MakeInstrument(""), nullptr);
    EXPECT_EQ(MakeInstrument("XX1", [] { return TimePoint(); }), nullptr);
}

}  // namespace
}  // namespace virtual_scope
