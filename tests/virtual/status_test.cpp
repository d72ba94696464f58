#include <gtest/gtest.h>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

TEST(EventStatus, PowerOnIsTheFirstEvent) {
    Bench bench;
    EXPECT_EQ(bench.Query("*ESR?"), "128");
    EXPECT_EQ(bench.Query("*ESR?"), "0");
}

TEST(EventStatus, EachClassOfErrorHasItsBit) {
    BareBench bench;
    bench.Write("NOSUCH");
    EXPECT_EQ(bench.Query("*ESR?"), "32");
    bench.Write("CH1:SCALE 100");
    EXPECT_EQ(bench.Query("*ESR?"), "16");
    bench.Write("*IDN?");
    bench.Write("HEADER 0");  // the response was not read
    EXPECT_EQ(bench.Query("*ESR?"), "4");
    for (int i = 0; i < 40; ++i) {
        bench.Write("NOSUCH");
    }
    EXPECT_EQ(bench.Query("*ESR?"), "40");  // the overflow is the device's own
}

TEST(EventStatus, TheDeviceEnableRegisterMasksEvents) {
    BareBench bench;
    bench.Write("DESE 1");
    bench.Write("NOSUCH");
    bench.Write("*OPC");
    EXPECT_EQ(bench.Query("*ESR?"), "1");
    EXPECT_EQ(bench.Error(), "-113,\"Undefined header\"");  // the queue is not masked
}

TEST(EventStatus, EnableRegistersCanBeReadBack) {
    Bench bench;
    EXPECT_EQ(bench.Query("DESE?;*ESE?;*SRE?"), ":DESE 255;0;0");
    bench.Write("HEADER OFF;:DESE 1;*ESE 60;*SRE 255");
    EXPECT_EQ(bench.Query("DESE?;*ESE?;*SRE?"), "1;60;191");  // bit 6 can't be enabled
}

TEST(EventStatus, ClearEmptiesEventsAndQueueAndKeepsTheEnables) {
    Bench bench;
    bench.Write("HEADER OFF;:NOSUCH;*ESE 32;*SRE 16;:DESE 33");
    bench.Write("*CLS");
    EXPECT_EQ(bench.Query("*ESR?"), "0");
    EXPECT_EQ(bench.Query("DESE?;*ESE?;*SRE?"), "33;32;16");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(EventStatus, ResetKeepsStatusAndTheFormOfTheAnswers) {
    BareBench bench;
    bench.Write("*ESE 1;*SRE 32;:DESE 3;:VERBOSE 0;:NOSUCH");
    bench.Write("*RST");
    EXPECT_EQ(bench.Query("*ESE?;*SRE?;:DESE?;:HEADER?;:VERBOSE?"), "1;32;3;0;0");
    EXPECT_EQ(bench.Error(), "-113,\"Undefined header\"");
}

TEST(StatusByte, TellsOfOutputAndEvents) {
    BareBench bench;
    EXPECT_EQ(bench.link().SerialPoll(), 0);
    bench.Write("*IDN?");
    EXPECT_EQ(bench.link().SerialPoll(), 16);
    bench.Read();
    EXPECT_EQ(bench.link().SerialPoll(), 0);
    bench.Write("*ESE 1;*OPC");
    EXPECT_EQ(bench.link().SerialPoll(), 32);
    EXPECT_EQ(bench.Query("*ESR?"), "1");
    EXPECT_EQ(bench.link().SerialPoll(), 0);
}

TEST(StatusByte, TheQueryGivesTheSummaryInBitSix) {
    BareBench bench;
    bench.Write("*ESE 1;*SRE 32;*OPC");
    EXPECT_EQ(bench.Query("*STB?"), "96");
    EXPECT_EQ(bench.link().SerialPoll(), 96);
    EXPECT_EQ(bench.Query("*STB?"), "96");  // the summary does not go away with the poll
    EXPECT_EQ(bench.Query("*OPC?;*STB?"), "1;112");
}

TEST(ServiceRequest, BeginsOnceForOneReason) {
    BareBench bench;
    int requests = 0;
    bench.link().SetServiceRequestHandler([&] { ++requests; });
    bench.Write("DESE 1;*ESE 1;*SRE 32;*CLS");
    EXPECT_EQ(requests, 0);
    bench.Write("*OPC");
    EXPECT_EQ(requests, 1);
    bench.Write("*OPC");
    EXPECT_EQ(requests, 1);
}

TEST(ServiceRequest, ThePollClearsItAndTheReasonStays) {
    BareBench bench;
    bench.Write("*ESE 1;*SRE 32;*OPC");
    EXPECT_EQ(bench.link().SerialPoll(), 0x60);
    EXPECT_EQ(bench.link().SerialPoll(), 0x20);
}

TEST(ServiceRequest, ANewReasonAfterThePollAsksAgain) {
    BareBench bench;
    int requests = 0;
    bench.link().SetServiceRequestHandler([&] { ++requests; });
    bench.Write("*ESE 1;*SRE 48;*OPC");
    EXPECT_EQ(bench.link().SerialPoll(), 0x60);
    bench.Write("*IDN?");
    EXPECT_EQ(requests, 2);
    EXPECT_EQ(bench.link().SerialPoll(), 0x70);
    bench.Read();
    EXPECT_EQ(bench.Query("*ESR?"), "1");
    EXPECT_EQ(requests, 3);  // that answer was a new reason, too
    bench.Write("*OPC");
    EXPECT_EQ(requests, 4);
}

TEST(ServiceRequest, IsWithdrawnWithItsReason) {
    BareBench bench;
    bench.Write("*ESE 1;*SRE 32;*OPC");
    bench.Write("*CLS");
    EXPECT_EQ(bench.link().SerialPoll(), 0);
}

TEST(ServiceRequest, EnablingAPresentReasonAsks) {
    BareBench bench;
    int requests = 0;
    bench.link().SetServiceRequestHandler([&] { ++requests; });
    bench.Write("*ESE 1;*OPC");
    EXPECT_EQ(requests, 0);
    bench.Write("*SRE 32");
    EXPECT_EQ(requests, 1);
}

TEST(ServiceRequest, TheHandlerMayUseTheLink) {
    BareBench bench;
    std::uint8_t polled = 0;
    bench.link().SetServiceRequestHandler([&] {
        polled = bench.link().SerialPoll();
        bench.link().SetServiceRequestHandler(nullptr);
    });
    bench.Write("*ESE 1;*SRE 32;*OPC");
    EXPECT_EQ(polled, 0x60);
    bench.Write("*CLS");
    bench.Write("*OPC");
    EXPECT_EQ(bench.link().SerialPoll(), 0x60);
}

TEST(ServiceRequest, EveryLinkHasItsOwn) {
    BareBench bench;
    const auto other = bench.instrument().Connect();
    int requests = 0;
    other->SetServiceRequestHandler([&] { ++requests; });
    bench.Write("*ESE 1;*SRE 48;*OPC");
    EXPECT_EQ(requests, 1);
    EXPECT_EQ(bench.link().SerialPoll(), 0x60);
    EXPECT_EQ(other->SerialPoll(), 0x60);
    bench.Write("*IDN?");  // output on one link is no reason on another
    EXPECT_EQ(requests, 1);
    EXPECT_EQ(other->SerialPoll(), 0x20);
}

}  // namespace
}  // namespace virtual_scope
