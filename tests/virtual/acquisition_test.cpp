#include <gtest/gtest.h>

#include <chrono>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

// With the time base of power-on a record lasts 4 ms, and the trigger takes 1 ms.
constexpr auto kOneAcquisition = milliseconds(5);

TEST(AcquisitionControl, PowerOnState) {
    Bench bench;
    bench.Write("HEADER OFF");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;STOPAFTER?;MODE?"), "1;RUNSTOP;SAMPLE");
    EXPECT_EQ(bench.Query("SELECT:CH1?;CH2?;CH3?;CH4?"), "1;0;0;0");
    EXPECT_EQ(bench.Query("HORIZONTAL:RECORDLENGTH?;SCALE?;DIVISIONS?"), "10000;400.0000E-6;10");
}

TEST(AcquisitionControl, ModesAnswerInWords) {
    BareBench bench;
    for (const char* mode : {"SAMPLE", "PEAKDETECT", "HIRES", "ENVELOPE", "AVERAGE", "WFMDB"}) {
        EXPECT_EQ(bench.Query(std::string("ACQUIRE:MODE ") + mode + ";MODE?"), mode);
    }
}

TEST(AcquisitionControl, RunningCountsAcquisitions) {
    BareBench bench;
    EXPECT_EQ(bench.Query("ACQUIRE:NUMACQ?"), "0");
    bench.Advance(kOneAcquisition - microseconds(1));
    EXPECT_EQ(bench.Query("ACQUIRE:NUMACQ?"), "0");
    bench.Advance(microseconds(1));
    EXPECT_EQ(bench.Query("ACQUIRE:NUMACQ?"), "1");
    bench.Advance(3 * kOneAcquisition);
    EXPECT_EQ(bench.Query("ACQUIRE:NUMACQ?"), "4");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "1");
}

TEST(AcquisitionControl, StoppingHoldsTheCountAndStartingBeginsAnew) {
    BareBench bench;
    bench.Advance(2 * kOneAcquisition);
    bench.Write("ACQUIRE:STATE STOP");
    bench.Advance(2 * kOneAcquisition);
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;NUMACQ?"), "0;2");
    bench.Write("ACQUIRE:STATE RUN");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;NUMACQ?"), "1;0");
}

TEST(AcquisitionControl, ASequenceEndsByItself) {
    BareBench bench;
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;NUMACQ?"), "1;0");
    bench.Advance(kOneAcquisition - microseconds(1));
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "1");
    bench.Advance(microseconds(1));
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;NUMACQ?"), "0;1");
    bench.Advance(kOneAcquisition);
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;NUMACQ?"), "0;1");
}

// CH1 in pairs: how many of its 100 levels lie between the two, on average.
double MeanSpan(Bench& bench) {
    const std::string data = bench.Query("CURVE?").substr(6);
    double sum = 0;
    for (std::size_t i = 0; i + 1 < data.size(); i += 2) {
        sum += static_cast<signed char>(data[i + 1]) - static_cast<signed char>(data[i]);
    }
    return sum / 500;
}

TEST(AcquisitionControl, AnEnvelopeWithoutATriggerSpansTheSignal) {
    BareBench bench;
    bench.Write("HORIZONTAL:RECORDLENGTH 1000;:DATA:STOP 1000;:ACQUIRE:MODE ENVELOPE;NUMENV 4");
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON");
    bench.Advance(std::chrono::seconds(1));
    EXPECT_LT(MeanSpan(bench), 5);
    // Each acquisition begins somewhere else in the sine.
    bench.Write("TRIGGER:A:LEVEL 5;:ACQUIRE:STATE ON");
    bench.Advance(std::chrono::seconds(1));
    EXPECT_GT(MeanSpan(bench), 50);
}

TEST(AcquisitionControl, TheNextEventIsTheEndOfTheSequence) {
    BareBench bench;
    EXPECT_EQ(bench.link().NextEvent(), std::nullopt);
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON");
    EXPECT_EQ(bench.link().NextEvent(), TimePoint(std::chrono::seconds(1000) + kOneAcquisition));
    bench.Advance(kOneAcquisition);
    EXPECT_EQ(bench.link().NextEvent(), std::nullopt);
}

TEST(AcquisitionControl, NoSequenceTakesLongerThanAPersonNotices) {
    BareBench bench;
    bench.Write("HORIZONTAL:SCALE 10");
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON");
    bench.Advance(milliseconds(51) - microseconds(1));
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "1");
    bench.Advance(microseconds(1));
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "0");
}

TEST(AcquisitionControl, AverageAndEnvelopeSequencesHaveManyAcquisitions) {
    BareBench bench;
    bench.Write("ACQUIRE:STATE OFF;STOPAFTER SEQUENCE;MODE AVERAGE;NUMAVG 8;STATE ON");
    bench.Advance(milliseconds(33) - microseconds(1));  // eight records and one trigger
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;NUMACQ?"), "1;0");
    bench.Advance(microseconds(1));
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;NUMACQ?"), "0;8");
    bench.Write("ACQUIRE:MODE ENVELOPE;NUMENV 2000000000;STATE ON");
    bench.Advance(milliseconds(51));
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;NUMACQ?"), "0;2000000000");
}

TEST(AcquisitionControl, SequenceModeStopsARunningAcquisition) {
    BareBench bench;
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "1");
    bench.Advance(kOneAcquisition);
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "0");
    bench.Write("ACQUIRE:STOPAFTER RUNSTOP");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "0");
}

TEST(AcquisitionControl, OperationCompleteComesWithTheEndOfTheSequence) {
    BareBench bench;
    int requests = 0;
    bench.link().SetServiceRequestHandler([&] { ++requests; });
    bench.Write("ACQUIRE:REPET 0;STATE 0");
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE");
    bench.Write("DESE 1;*ESE 1;*SRE 32;*CLS");
    bench.Write("ACQUIRE:STATE 1");
    bench.Write("*OPC");
    EXPECT_EQ(requests, 0);
    EXPECT_EQ(bench.link().SerialPoll(), 0);
    bench.Advance(kOneAcquisition);
    EXPECT_EQ(requests, 1);
    EXPECT_EQ(bench.link().SerialPoll(), 0x60);
    EXPECT_EQ(bench.Query("*ESR?"), "1");
}

TEST(AcquisitionControl, APollThatFindsTheEndStillTellsTheHandler) {
    TimePoint now;
    const auto link = MakeInstrument("PL7254C", [&] { return now; });
    int requests = 0;
    link->SetServiceRequestHandler([&] { ++requests; });
    Bench::WriteTo(*link, "*CLS;*ESE 1;*SRE 32;:ACQUIRE:STOPAFTER SEQUENCE;STATE 1;*OPC");
    now += kOneAcquisition;
    EXPECT_EQ(link->SerialPoll(), 0x60);
    EXPECT_EQ(requests, 1);
}

TEST(AcquisitionControl, OperationCompleteIsAtOnceWhileRunningFreely) {
    BareBench bench;
    bench.Write("*OPC");
    EXPECT_EQ(bench.Query("*ESR?"), "1");
    EXPECT_EQ(bench.Query("*OPC?"), "1");
}

TEST(AcquisitionControl, TheOperationCompleteQueryWaits) {
    BareBench bench;
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON");
    bench.Write("*OPC?");
    EXPECT_FALSE(bench.link().HasOutput());
    bench.Advance(kOneAcquisition);
    EXPECT_EQ(bench.Read(), "1");
}

TEST(AcquisitionControl, WaitToContinueHoldsTheRestOfTheMessageAndTheNextOnes) {
    BareBench bench;
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON;*WAI;:DATA:START 7");
    bench.Write("DATA:STOP 9");
    const auto other = bench.instrument().Connect();
    Bench::WriteTo(*other, "DATA:START?;STOP?");
    EXPECT_EQ(Bench::ReadFrom(*other), "1;10000");
    bench.Advance(kOneAcquisition);
    EXPECT_EQ(bench.Query("DATA:START?;STOP?"), "7;9");
}

TEST(AcquisitionControl, ClearingTheStatusForgetsThePendingAnnouncement) {
    BareBench bench;
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON;*OPC;*CLS");
    bench.Advance(kOneAcquisition);
    EXPECT_EQ(bench.Query("*ESR?"), "0");
}

TEST(AcquisitionControl, BreakingASequenceOffCompletesTheOperation) {
    BareBench bench;
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON;*OPC");
    EXPECT_EQ(bench.Query("*ESR?"), "0");
    bench.Write("ACQUIRE:STATE OFF");
    EXPECT_EQ(bench.Query("*ESR?"), "1");
    EXPECT_EQ(bench.Query("ACQUIRE:NUMACQ?"), "0");
}

TEST(AcquisitionControl, TheTriggersStartAnAcquisition) {
    BareBench bench;
    bench.Write("ACQUIRE:STATE OFF");
    bench.Write("*TRG");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "1");
    bench.Write("ACQUIRE:STATE OFF");
    bench.link().Trigger();
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "1");
}

TEST(AcquisitionControl, ResetRunsAnewWithAllSettingsInitial) {
    BareBench bench;
    bench.Write("ACQUIRE:STOPAFTER SEQUENCE;STATE ON;:CH1:SCALE 0.1;:SELECT:CH2 1;:DATA:START 5");
    EXPECT_EQ(bench.Query("*RST;*OPC?"), "1");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?;STOPAFTER?"), "1;RUNSTOP");
    EXPECT_EQ(bench.Query("CH1:SCALE?;:SELECT:CH2?;:DATA:START?"), "500.0000E-3;0;1");
}

TEST(AcquisitionControl, AutosetBringsTheSignalsBack) {
    BareBench bench;
    bench.Write("CH1:SCALE 10;POSITION 5;OFFSET 3;:HORIZONTAL:SCALE 1E-9;RECORDLENGTH 2000");
    bench.Write("ACQUIRE:STATE OFF;:AUTOSET EXECUTE");
    EXPECT_EQ(bench.Query("CH1:SCALE?;POSITION?;OFFSET?"), "500.0000E-3;0.0000;0.0000");
    EXPECT_EQ(bench.Query("HORIZONTAL:SCALE?;RECORDLENGTH?"), "400.0000E-6;2000");
    EXPECT_EQ(bench.Query("ACQUIRE:STATE?"), "1");
}

}  // namespace
}  // namespace virtual_scope
