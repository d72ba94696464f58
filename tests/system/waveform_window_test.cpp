// Parts of a record, and records in two bytes a point.
#include <gmock/gmock.h>

#include "tests/system/link_test.h"

namespace kestrion {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kPreviewText = "Kestrion: Preview State,Acquire the Waveform.";

class WaveformWindowTest : public LinkTest {
  protected:
    using Member = HRESULT (STDMETHODCALLTYPE IKestrionWaveformTransfer::*)(KestrionSourceEnum,
                                                                            SAFEARRAY**, double*,
                                                                            double*);

    HRESULT Call(Member member, KestrionSourceEnum source) {
        SafeArrayPtr array;
        const HRESULT status = (Transfer().Get()->*member)(source, array.Out(), &waveform_.initialX,
                                                           &waveform_.xIncrement);
        const auto elements = array.Elements<double>();
        waveform_.volts.assign(elements.begin(), elements.end());
        return status;
    }
    HRESULT FetchPart(KestrionSourceEnum source, LONG start, LONG stop) {
        SafeArrayPtr array;
        const HRESULT status = Transfer()->FetchWaveformStartStop(
            source, start, stop, array.Out(), &waveform_.initialX, &waveform_.xIncrement);
        const auto elements = array.Elements<double>();
        waveform_.volts.assign(elements.begin(), elements.end());
        return status;
    }
    // A part that isn't the whole record: the transfer is put back, and refused.
    void ExpectRefused(Member member, KestrionSourceEnum source) {
        const std::string before = TransferSettings();
        EXPECT_EQ(Call(member, source), kPreviewState);
        EXPECT_EQ(TakeErrorText(), kPreviewText);
        EXPECT_THAT(waveform_.volts, IsEmpty());
        EXPECT_EQ(TransferSettings(), before);
    }

    static constexpr Member kCursor = &IKestrionWaveformTransfer::FetchWaveformWithinCursor;
    static constexpr Member kZoom = &IKestrionWaveformTransfer::FetchWaveformWithinZoom;
    static constexpr Member kHighResolution =
        &IKestrionWaveformTransfer::FetchWaveformHighResolution;

    Waveform waveform_;
};

TEST_P(WaveformWindowTest, StartAndStopCutThePointsOut) {
    client_.AcquireOnce(2000);
    Waveform whole;
    ASSERT_EQ(client_.Fetch(KestrionSourceCh1, whole), S_OK) << TakeErrorText();
    const std::string before = TransferSettings();
    ASSERT_EQ(FetchPart(KestrionSourceCh1, 501, 1250), S_OK) << TakeErrorText();
    ASSERT_THAT(waveform_.volts, SizeIs(750));
    EXPECT_TRUE(
        std::equal(waveform_.volts.begin(), waveform_.volts.end(), whole.volts.begin() + 500));
    // The time is that of the whole record's first point.
    EXPECT_DOUBLE_EQ(waveform_.initialX, -2e-3);
    EXPECT_DOUBLE_EQ(waveform_.xIncrement, 2e-6);
    EXPECT_EQ(TransferSettings(), before);
    ASSERT_EQ(FetchPart(KestrionSourceCh1, 2000, 2000), S_OK) << TakeErrorText();
    ASSERT_THAT(waveform_.volts, SizeIs(1));
    EXPECT_EQ(waveform_.volts[0], whole.volts[1999]);
    ASSERT_EQ(FetchPart(KestrionSourceCh1, 1, 2000), S_OK) << TakeErrorText();
    EXPECT_EQ(waveform_.volts, whole.volts);
}

TEST_P(WaveformWindowTest, APartOfAMathWaveformComesInFloats) {
    Send("SELECT:MATH1 1;:MATH1:DEFINE \"CH1*3\"");
    client_.AcquireOnce(1000);
    ASSERT_EQ(FetchPart(KestrionSourceMath1, 401, 600), S_OK) << TakeErrorText();
    ASSERT_THAT(waveform_.volts, SizeIs(200));
    for (std::size_t i = 0; i < 200; ++i) {
        const double time = -2e-3 + static_cast<double>(i + 400) * 4e-6;
        ASSERT_NEAR(waveform_.volts[i], 3 * SineAt(time), 1e-6) << i;
    }
}

TEST_P(WaveformWindowTest, WhatReachesBeyondTheRecordIsRefused) {
    client_.AcquireOnce(1000);
    for (const LONG stop : {1001, 5000}) {
        EXPECT_EQ(FetchPart(KestrionSourceCh1, 901, stop), kPreviewState);
        EXPECT_EQ(TakeErrorText(), kPreviewText);
        EXPECT_THAT(waveform_.volts, IsEmpty());
    }
    // The instrument sends them the other way round, the count is negative.
    EXPECT_EQ(FetchPart(KestrionSourceCh1, 900, 801), kPreviewState);
    EXPECT_EQ(TakeErrorText(), kPreviewText);
    EXPECT_EQ(FetchPart(KestrionSourceCh1, 901, 1000), S_OK) << TakeErrorText();
    EXPECT_THAT(waveform_.volts, SizeIs(100));
}

TEST_P(WaveformWindowTest, CursorsAroundTheWholeRecordGiveIt) {
    client_.AcquireOnce(1000);
    // Points are counted from 1, the bars' places from 0: the second point's time begins it.
    Send("CURSOR:VBARS:POSITION1 -1.994E-3;POSITION2 2.002E-3");
    const std::string before = TransferSettings();
    ASSERT_EQ(Call(kCursor, KestrionSourceCh1), S_OK) << TakeErrorText();
    EXPECT_THAT(waveform_.volts, SizeIs(1000));
    EXPECT_DOUBLE_EQ(waveform_.initialX, -2e-3);
    EXPECT_DOUBLE_EQ(waveform_.xIncrement, 4e-6);
    ExpectSignal(waveform_, SineAt, 0.02);
    EXPECT_EQ(TransferSettings(), before);
    EXPECT_EQ(Ask("CURSOR:SOURCE?"), "CH1");
    // In either order.
    Send("CURSOR:VBARS:POSITION1 2.002E-3;POSITION2 -1.994E-3");
    ASSERT_EQ(Call(kCursor, KestrionSourceCh1), S_OK) << TakeErrorText();
    ExpectSignal(waveform_, SineAt, 0.02);
}

TEST_P(WaveformWindowTest, CursorsWithinTheRecordAreRefused) {
    client_.AcquireOnce(1000);
    Send("CURSOR:VBARS:POSITION1 -1E-3;POSITION2 1E-3");
    ExpectRefused(kCursor, KestrionSourceCh1);
    Send("SELECT:MATH1 1");
    ExpectRefused(kCursor, KestrionSourceMath1);
    Waveform whole;
    ASSERT_EQ(client_.Fetch(KestrionSourceCh1, whole), S_OK) << TakeErrorText();
    EXPECT_THAT(whole.volts, SizeIs(1000));
}

TEST_P(WaveformWindowTest, AZoomOfTheWholeRecordGivesItAndStaysOn) {
    client_.AcquireOnce(1000);
    EXPECT_EQ(Ask("ZOOM:MODE?"), "0");
    const std::string before = TransferSettings();
    ASSERT_EQ(Call(kZoom, KestrionSourceCh1), S_OK) << TakeErrorText();
    EXPECT_THAT(waveform_.volts, SizeIs(1000));
    EXPECT_DOUBLE_EQ(waveform_.initialX, -2e-3);
    ExpectSignal(waveform_, SineAt, 0.02);
    EXPECT_EQ(TransferSettings(), before);
    EXPECT_EQ(Ask("ZOOM:MODE?"), "1");
}

TEST_P(WaveformWindowTest, AZoomIntoTheRecordIsRefused) {
    client_.AcquireOnce(1000);
    Send("ZOOM:CH1:HORIZONTAL:SCALE 4;POSITION 50");
    ExpectRefused(kZoom, KestrionSourceCh1);
    EXPECT_EQ(Ask("ZOOM:MODE?"), "1");
    // An area that hangs over an end is held to the record, and is a part of it again.
    Send("ZOOM:CH1:HORIZONTAL:SCALE 2;POSITION 100");
    ExpectRefused(kZoom, KestrionSourceCh1);
}

TEST_P(WaveformWindowTest, HighResolutionOfAChannelSeesTwiceTheCount) {
    client_.AcquireOnce(1000);
    ExpectRefused(kHighResolution, KestrionSourceCh1);
}

TEST_P(WaveformWindowTest, HighResolutionOfFloatsIsTheFloats) {
    Send("SELECT:MATH1 1;:MATH1:DEFINE \"CH1/3\"");
    client_.AcquireOnce(1000);
    const std::string before = TransferSettings();
    ASSERT_EQ(Call(kHighResolution, KestrionSourceMath1), S_OK) << TakeErrorText();
    EXPECT_THAT(waveform_.volts, SizeIs(1000));
    ExpectSignal(
        waveform_, [](double time) { return SineAt(time) / 3; }, 1e-7);
    EXPECT_EQ(TransferSettings(), before);
}

TEST_P(WaveformWindowTest, ASourceThatIsOffIsRefusedByEach) {
    client_.AcquireOnce(1000);
    const std::string before = TransferSettings();
    for (const Member member : {kCursor, kZoom, kHighResolution}) {
        EXPECT_EQ(Call(member, KestrionSourceCh3), kChannelNotEnabled);
        EXPECT_EQ(TakeErrorText(),
                  "Kestrion: Specified channel is not enabled.\r\nChannel Not Enabled error");
    }
    EXPECT_EQ(FetchPart(KestrionSourceRef1, 1, 10), kChannelNotEnabled);
    EXPECT_EQ(TransferSettings(), before);
}

INSTANTIATE_TEST_SUITE_P(Links, WaveformWindowTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
