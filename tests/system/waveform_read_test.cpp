// ReadWaveform: acquiring first, with its wait and its time-outs.
#include <gmock/gmock.h>

#include "tests/system/link_test.h"

namespace kestrion {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class WaveformReadTest : public LinkTest {
  protected:
    void SetUp() override {
        LinkTest::SetUp();
        EXPECT_EQ(client_.As<IKestrionHorizontal>()->put_RecordLength(1000), S_OK);
    }
    void SetSingle(bool single) {
        EXPECT_EQ(client_.As<IKestrionAcquisition>()->put_SingleSequence(ToVariantBool(single)),
                  S_OK);
    }
    // Nothing crosses that level, and nothing is acquired without a trigger.
    void WaitForNoTrigger() { Send("TRIGGER:A:MODE NORMAL;:TRIGGER:A:LEVEL 5"); }
    void ExpectTimeout(LONG maxTime) {
        Waveform waveform;
        EXPECT_EQ(client_.Read(KestrionSourceCh1, maxTime, waveform), kMaxTimeExceeded);
        EXPECT_EQ(TakeErrorText(), kMaxTimeText);
        EXPECT_THAT(waveform.volts, IsEmpty());
    }
};

TEST_P(WaveformReadTest, ASequenceEndsWithItsRecordWhereTheLinkHasServiceRequests) {
    SetSingle(true);
    const std::string before = TransferSettings();
    if (IsSocket()) {
        // No service request comes over a socket, whatever the instrument does.
        ExpectTimeout(100);
        EXPECT_EQ(TransferSettings(), before);
        return;
    }
    Waveform waveform;
    ASSERT_EQ(client_.Read(KestrionSourceCh1, 5000, waveform), S_OK) << TakeErrorText();
    EXPECT_THAT(waveform.volts, SizeIs(1000));
    EXPECT_DOUBLE_EQ(waveform.initialX, -2e-3);
    EXPECT_DOUBLE_EQ(waveform.xIncrement, 4e-6);
    ExpectSignal(waveform, SineAt, 0.02);
    EXPECT_EQ(TransferSettings(), before);
    EXPECT_EQ(Ask("ACQUIRE:STATE?;NUMACQ?"), "0;1");
    // What the wait needs stays set.
    EXPECT_EQ(Ask("*ESE?;:*SRE?"), "1;32");
}

TEST_P(WaveformReadTest, ARunningAcquisitionIsTakenAsItStands) {
    SetSingle(false);
    const std::string before = TransferSettings();
    for (const LONG maxTime : {0, 5000}) {
        Waveform waveform;
        ASSERT_EQ(client_.Read(KestrionSourceCh1, maxTime, waveform), S_OK) << TakeErrorText();
        EXPECT_THAT(waveform.volts, SizeIs(1000));
        ExpectSignal(waveform, SineAt, 0.02);
        EXPECT_EQ(Ask("ACQUIRE:STATE?"), "1");
    }
    EXPECT_EQ(TransferSettings(), before);
}

TEST_P(WaveformReadTest, AStoppedAcquisitionIsStartedAndNotAwaited) {
    SetSingle(false);
    EXPECT_EQ(client_.As<IKestrionAcquisition>()->Stop(), S_OK);
    WaitForNoTrigger();
    Waveform waveform;
    ASSERT_EQ(client_.Read(KestrionSourceCh1, 0, waveform), S_OK) << TakeErrorText();
    // No trigger came since: what was there before.
    ExpectSignal(waveform, SineAt, 0.02);
    EXPECT_EQ(Ask("ACQUIRE:STATE?"), "1");
}

TEST_P(WaveformReadTest, WithoutATriggerTheTimeRunsOut) {
    SetSingle(true);
    const std::string before = TransferSettings();
    WaitForNoTrigger();
    ExpectTimeout(50);
    EXPECT_EQ(TransferSettings(), before);
    EXPECT_EQ(Ask("ACQUIRE:STATE?;NUMACQ?"), "1;0");
    // The next members find everything in order.
    Waveform waveform;
    EXPECT_EQ(client_.Fetch(KestrionSourceCh1, waveform), S_OK) << TakeErrorText();
    Send("TRIGGER:A:LEVEL 0");
    client_.AcquireOnce(1000);
    ASSERT_EQ(client_.Fetch(KestrionSourceCh1, waveform), S_OK) << TakeErrorText();
    ExpectSignal(waveform, SineAt, 0.02);
}

// The wait that ran out leaves its request behind: the next read breaks the sequence off, which
// completes it, and takes that for the end of the one it starts.
TEST_P(WaveformReadTest, TheReadBehindATimeoutGivesTheRecordFromBefore) {
    SetSingle(true);
    client_.AcquireOnce(1000);
    WaitForNoTrigger();
    ExpectTimeout(20);
    if (IsSocket()) {
        ExpectTimeout(20);
        return;
    }
    Waveform waveform;
    ASSERT_EQ(client_.Read(KestrionSourceCh1, 5000, waveform), S_OK) << TakeErrorText();
    ExpectSignal(waveform, SineAt, 0.02);
    EXPECT_EQ(Ask("ACQUIRE:STATE?;NUMACQ?"), "1;0");
}

TEST_P(WaveformReadTest, AfterATimeoutASequenceCanBeReadAgain) {
    if (IsSocket()) {
        SetSingle(true);
        ExpectTimeout(10);
        SetSingle(false);
    } else {
        SetSingle(true);
        WaitForNoTrigger();
        ExpectTimeout(20);
        Send("ACQUIRE:STATE 0;:*CLS;:TRIGGER:A:LEVEL 0");
    }
    for (int round = 0; round < 3; ++round) {
        Waveform waveform;
        ASSERT_EQ(client_.Read(KestrionSourceCh1, 5000, waveform), S_OK) << TakeErrorText();
        EXPECT_THAT(waveform.volts, SizeIs(1000));
        ExpectSignal(waveform, SineAt, 0.02);
        EXPECT_EQ(Ask("ACQUIRE:STATE?"), IsSocket() ? "1" : "0") << round;
    }
}

TEST_P(WaveformReadTest, ASourceThatIsOffEndsBeforeAnythingIsAcquired) {
    SetSingle(true);
    client_.AcquireOnce(1000);
    Waveform waveform;
    EXPECT_EQ(client_.Read(KestrionSourceCh3, 1000, waveform), kChannelNotEnabled);
    EXPECT_EQ(TakeErrorText(),
              "Kestrion: Specified channel is not enabled.\r\nChannel Not Enabled error");
    EXPECT_EQ(Ask("ACQUIRE:STATE?;NUMACQ?"), "0;1");
}

TEST_P(WaveformReadTest, MathAndReferencesAreReadToo) {
    SetSingle(false);
    Send("SELECT:MATH1 1;REF1 1;:MATH1:DEFINE \"CH1+1\"");
    Waveform waveform;
    ASSERT_EQ(client_.Read(KestrionSourceMath1, 1000, waveform), S_OK) << TakeErrorText();
    ExpectSignal(
        waveform, [](double time) { return SineAt(time) + 1; }, 1e-6);
    ASSERT_EQ(client_.Read(KestrionSourceRef1, 1000, waveform), S_OK) << TakeErrorText();
    ExpectSignal(waveform, SineAt, 0.02);
}

TEST_P(WaveformReadTest, TheClassReadsAChannel) {
    SetSingle(!IsSocket());
    const BstrPtr name(std::string_view("Channel1"));
    ComPtr<IIviScopeMeasurement> measurement;
    ASSERT_EQ(client_.As<IIviScopeMeasurements>()->get_Item(name.Get(), measurement.Out()), S_OK);
    SAFEARRAY* array = nullptr;
    Waveform waveform;
    ASSERT_EQ(measurement->ReadWaveform(5000, &array, &waveform.initialX, &waveform.xIncrement),
              S_OK)
        << TakeErrorText();
    const SafeArrayPtr owned(array);
    const auto elements = owned.Elements<double>();
    waveform.volts.assign(elements.begin(), elements.end());
    EXPECT_THAT(waveform.volts, SizeIs(1000));
    ExpectSignal(waveform, SineAt, 0.02);
}

INSTANTIATE_TEST_SUITE_P(Links, WaveformReadTest, testing::Bool(), LinkName);

// The seventh character of the model's name says that it has two channels.
class TwoChannelReadTest : public LinkTest {
  protected:
    [[nodiscard]] std::string Model() const override { return "PL77002SX"; }
};

TEST_P(TwoChannelReadTest, AChannelThatTheModelLacksIsRefusedInEachMembersWay) {
    LONG points = -1;
    SafeArrayPtr array;
    SafeArrayPtr other;
    double initialX = 0.0;
    double xIncrement = 0.0;
    const auto transfer = Transfer();
    const auto start = KestrionSourceCh3;
    EXPECT_EQ(transfer->ReadWaveform(start, 10, array.Out(), &initialX, &xIncrement), 1);
    EXPECT_EQ(
        transfer->ReadWaveformMinMax(start, 10, array.Out(), other.Out(), &initialX, &xIncrement),
        1);
    EXPECT_EQ(transfer->FetchWaveformWithinCursor(start, array.Out(), &initialX, &xIncrement), 1);
    EXPECT_EQ(transfer->FetchWaveformWithinZoom(start, array.Out(), &initialX, &xIncrement), 1);
    EXPECT_EQ(transfer->GetPixmapWaveformData(start, array.Out()), 1);
    EXPECT_EQ(TakeErrorText(), "");
    // The number has no text in the driver's table.
    const auto expectReported = [](HRESULT status) {
        EXPECT_LT(status, 0);
        EXPECT_THAT(TakeErrorText(), testing::HasSubstr("Resource ID = 246"));
    };
    expectReported(
        transfer->FetchWaveformMinMax(start, array.Out(), other.Out(), &initialX, &xIncrement));
    expectReported(
        transfer->FetchWaveformStartStop(start, 1, 10, array.Out(), &initialX, &xIncrement));
    expectReported(
        transfer->FetchWaveformHighResolution(start, array.Out(), &initialX, &xIncrement));
    expectReported(transfer->CopyWaveformToClipboard(start, 1, 10, &points));
    EXPECT_EQ(array.Get(), nullptr);
    ExpectNoInstrumentError();
    EXPECT_EQ(Ask("HEADER?"), "0");
    Waveform waveform;
    client_.AcquireOnce(1000);
    ASSERT_EQ(client_.Fetch(KestrionSourceCh1, waveform), S_OK) << TakeErrorText();
    ExpectSignal(waveform, SineAt, 0.02);
}

INSTANTIATE_TEST_SUITE_P(Links, TwoChannelReadTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
