// Waveforms of every kind of source, held against the signals on the instrument's inputs.
#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

#include "tests/system/link_test.h"

namespace kestrion {
namespace {

using testing::Each;
using testing::SizeIs;

class WaveformFetchTest : public LinkTest {
  protected:
    Waveform Fetch(KestrionSourceEnum source) {
        Waveform waveform;
        EXPECT_EQ(client_.Fetch(source, waveform), S_OK) << TakeErrorText();
        return waveform;
    }
    void ShowAllChannels() { Send("SELECT:CH1 1;CH2 1;CH3 1;CH4 1"); }
};

TEST_P(WaveformFetchTest, EveryChannelCarriesItsSignal) {
    ShowAllChannels();
    client_.AcquireOnce(5000);
    const Waveform sine = Fetch(KestrionSourceCh1);
    const Waveform square = Fetch(KestrionSourceCh2);
    const Waveform serial = Fetch(KestrionSourceCh3);
    const Waveform noise = Fetch(KestrionSourceCh4);
    for (const Waveform* waveform : {&sine, &square, &serial, &noise}) {
        EXPECT_THAT(waveform->volts, SizeIs(5000));
        EXPECT_DOUBLE_EQ(waveform->xIncrement, 8e-7);
        EXPECT_DOUBLE_EQ(waveform->initialX, -2e-3);
    }
    ExpectSignal(sine, SineAt, 0.02);
    ExpectSignal(square, SquareAt, 0.04);
    ExpectSignal(serial, SerialAt, 0.04);
    const auto [least, greatest] = std::ranges::minmax(noise.volts);
    EXPECT_GT(least, -0.2 - 0.004);
    EXPECT_LT(least, -0.1);
    EXPECT_GT(greatest, 0.1);
    EXPECT_LT(greatest, 0.2 + 0.004);
}

TEST_P(WaveformFetchTest, ASerialTextComesBitByBit) {
    Send("SELECT:CH3 1");
    // Two rounds of 110 bits in 24 ms.
    EXPECT_EQ(client_.As<IKestrionHorizontal>()->put_HorizontalScale(2.4e-3), S_OK);
    client_.AcquireOnce(2400);
    const Waveform serial = Fetch(KestrionSourceCh3);
    EXPECT_DOUBLE_EQ(serial.xIncrement, 1e-5);
    ExpectSignal(serial, SerialAt, 0.04);
}

TEST_P(WaveformFetchTest, NoiseIsNewWithEachAcquisition) {
    Send("SELECT:CH4 1");
    client_.AcquireOnce(1000);
    const Waveform first = Fetch(KestrionSourceCh4);
    EXPECT_EQ(Fetch(KestrionSourceCh4).volts, first.volts);
    client_.AcquireOnce(1000);
    EXPECT_NE(Fetch(KestrionSourceCh4).volts, first.volts);
}

TEST_P(WaveformFetchTest, AveragesAndHighResolutionHaveLessNoise) {
    Send("SELECT:CH4 1;:CH4:SCALE 0.05");
    EXPECT_EQ(client_.As<IKestrionAcquisition>()->SetAverageMode(100), S_OK);
    client_.AcquireOnce(1000);
    // The root of a hundred is ten; a level is 2 mV.
    const Waveform averaged = Fetch(KestrionSourceCh4);
    EXPECT_THAT(averaged.volts, Each(testing::AllOf(testing::Ge(-0.022), testing::Le(0.022))));
    EXPECT_GT(std::ranges::max(averaged.volts), 0.01);
    SetMode(KestrionAcquisitionModeHiRes);
    client_.AcquireOnce(1000);
    const Waveform fine = Fetch(KestrionSourceCh4);
    EXPECT_THAT(fine.volts, Each(testing::AllOf(testing::Ge(-0.052), testing::Le(0.052))));
    EXPECT_GT(std::ranges::max(fine.volts), 0.025);
    ExpectSignal(Fetch(KestrionSourceCh1), SineAt, 0.02);
}

TEST_P(WaveformFetchTest, ScaleOffsetAndPositionMoveOnlyTheLevels) {
    const auto channel = client_.Channel("Channel1");
    EXPECT_EQ(channel->put_VerticalScale(0.3), S_OK);
    EXPECT_EQ(channel->put_Offset(0.25), S_OK);
    EXPECT_EQ(channel->put_Position(-0.5), S_OK);
    client_.AcquireOnce(1000);
    ExpectSignal(Fetch(KestrionSourceCh1), SineAt, 0.012);
}

TEST_P(WaveformFetchTest, WhatTheLevelsDoNotReachIsHeldAtTheirEnds) {
    EXPECT_EQ(client_.Channel("Channel1")->put_VerticalScale(0.1), S_OK);
    client_.AcquireOnce(1000);
    // 4 mV a level, -128 to 127.
    const auto held = [](double time) { return std::clamp(SineAt(time), -0.512, 0.508); };
    ExpectSignal(Fetch(KestrionSourceCh1), held, 0.004);
}

TEST_P(WaveformFetchTest, CouplingTakesTheMeanOrEverythingAway) {
    const auto channel = client_.Channel("Channel2");
    Send("SELECT:CH2 1");
    EXPECT_EQ(channel->put_Coupling(KestrionChannelCouplingAC), S_OK);
    client_.AcquireOnce(1000);
    const auto balanced = [](double time) { return SquareAt(time) - 1.65; };
    ExpectSignal(Fetch(KestrionSourceCh2), balanced, 0.04);
    EXPECT_EQ(channel->put_Coupling(KestrionChannelCouplingGND), S_OK);
    client_.AcquireOnce(1000);
    EXPECT_THAT(Fetch(KestrionSourceCh2).volts, Each(0.0));
}

TEST_P(WaveformFetchTest, TheTriggerIsTimeZeroWhereverItStands) {
    const auto horizontal = client_.As<IKestrionHorizontal>();
    EXPECT_EQ(horizontal->put_Position(20.0), S_OK);
    client_.AcquireOnce(1000);
    Waveform waveform = Fetch(KestrionSourceCh1);
    EXPECT_DOUBLE_EQ(waveform.initialX, -0.8e-3);
    ExpectSignal(waveform, SineAt, 0.02);
    // The falling crossing of 0.5 V, a twelfth of a period before half of one.
    Send("TRIGGER:A:EDGE:SLOPE FALL;:TRIGGER:A:LEVEL 0.5");
    client_.AcquireOnce(1000);
    waveform = Fetch(KestrionSourceCh1);
    EXPECT_DOUBLE_EQ(waveform.initialX, -0.8e-3);
    ExpectSignal(
        waveform, [](double time) { return SineAt(time + 5e-3 / 12); }, 0.02);
    // The trigger point, at 20 percent, is 300 us behind the trigger.
    Send("TRIGGER:A:EDGE:SLOPE RISE;:TRIGGER:A:LEVEL 0;:HORIZONTAL:DELAY:POSITION 20");
    EXPECT_EQ(horizontal->ConfigureDelayOn(300e-6), S_OK);
    client_.AcquireOnce(1000);
    waveform = Fetch(KestrionSourceCh1);
    EXPECT_DOUBLE_EQ(waveform.initialX, 300e-6 - 0.8e-3);
    ExpectSignal(waveform, SineAt, 0.02);
}

TEST_P(WaveformFetchTest, DigitisedLevelsBecomeVoltsByTheirScale) {
    EXPECT_EQ(client_.Channel("Channel1")->put_Offset(0.1), S_OK);
    EXPECT_EQ(client_.Channel("Channel1")->put_Position(1.0), S_OK);
    client_.AcquireOnce(2000);
    SafeArrayPtr array;
    double initialX = 0.0;
    double xIncrement = 0.0;
    double yZero = 0.0;
    double yMult = 0.0;
    double yOffset = 0.0;
    ASSERT_EQ(Transfer()->FetchWaveformDigitizedLevel(KestrionChannelCh1, array.Out(), &initialX,
                                                      &xIncrement, &yZero, &yMult, &yOffset),
              S_OK)
        << TakeErrorText();
    EXPECT_DOUBLE_EQ(initialX, -2e-3);
    EXPECT_DOUBLE_EQ(xIncrement, 2e-6);
    EXPECT_DOUBLE_EQ(yZero, 0.1);
    EXPECT_DOUBLE_EQ(yMult, 0.02);
    EXPECT_DOUBLE_EQ(yOffset, 25.0);
    const auto levels = array.Elements<LONG>();
    ASSERT_THAT(levels, SizeIs(2000));
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const double time = -2e-3 + static_cast<double>(i) * 2e-6;
        const double volts = (static_cast<double>(levels[i]) - 25.0) * 0.02 + 0.1;
        // Half a level is the worst that rounding does.
        ASSERT_NEAR(volts, SineAt(time), 0.01 + 1e-9) << i;
    }
}

TEST_P(WaveformFetchTest, MathIsComputedFromTheChannelsInFloatingPoint) {
    const struct {
        const char* definition;
        double (*expected)(double time);
    } kCases[] = {
        {"CH1-CH2", [](double time) { return SineAt(time) - SquareAt(time); }},
        {"CH1*CH1", [](double time) { return SineAt(time) * SineAt(time); }},
        {"2*(CH1+REF1)/4", [](double time) { return SineAt(time); }},
    };
    Send("SELECT:MATH1 1;CH2 1");
    for (const auto& [definition, expected] : kCases) {
        Send(std::string("MATH1:DEFINE \"") + definition + '"');
        client_.AcquireOnce(1000);
        const Waveform waveform = Fetch(KestrionSourceMath1);
        EXPECT_THAT(waveform.volts, SizeIs(1000));
        EXPECT_DOUBLE_EQ(waveform.initialX, -2e-3);
        EXPECT_DOUBLE_EQ(waveform.xIncrement, 4e-6);
        // Single precision of at most 4.3 V.
        ExpectSignal(waveform, expected, 1e-6);
    }
}

TEST_P(WaveformFetchTest, AReferenceHasItsOwnLengthAndTimes) {
    Send("SELECT:REF2 1");
    client_.AcquireOnce(4000);
    const Waveform waveform = Fetch(KestrionSourceRef2);
    EXPECT_THAT(waveform.volts, SizeIs(1000));
    EXPECT_DOUBLE_EQ(waveform.initialX, -2e-3);
    EXPECT_DOUBLE_EQ(waveform.xIncrement, 4e-6);
    ExpectSignal(waveform, SineAt, 0.02);
}

TEST_P(WaveformFetchTest, ATransferDoesNotDependOnTheSourceBeforeIt) {
    Send("SELECT:MATH1 1;CH2 1;REF1 1;:DATA:SOURCE MATH1");
    client_.AcquireOnce(1000);
    for (int round = 0; round < 2; ++round) {
        ExpectSignal(Fetch(KestrionSourceCh1), SineAt, 0.02);
        const std::string before = TransferSettings();
        ExpectSignal(
            Fetch(KestrionSourceMath1), [](double time) { return SineAt(time) - SquareAt(time); },
            1e-6);
        ExpectSignal(Fetch(KestrionSourceRef1), SineAt, 0.02);
        EXPECT_EQ(TransferSettings(), before);
    }
}

TEST_P(WaveformFetchTest, FloatsThatAProgramChoseDoNotDisturbAChannel) {
    Send("WFMOUTPRE:BN_FMT FP");
    client_.AcquireOnce(1000);
    const std::string before = TransferSettings();
    ExpectSignal(Fetch(KestrionSourceCh1), SineAt, 0.02);
    EXPECT_EQ(TransferSettings(), before);
}

TEST_P(WaveformFetchTest, TheClassGivesAChannelsRecord) {
    ShowAllChannels();
    client_.AcquireOnce(1000);
    const auto measurements = client_.As<IIviScopeMeasurements>();
    const BstrPtr name(std::string_view("Channel2"));
    ComPtr<IIviScopeMeasurement> measurement;
    ASSERT_EQ(measurements->get_Item(name.Get(), measurement.Out()), S_OK) << TakeErrorText();
    SAFEARRAY* array = nullptr;
    Waveform waveform;
    ASSERT_EQ(measurement->FetchWaveform(&array, &waveform.initialX, &waveform.xIncrement), S_OK)
        << TakeErrorText();
    const SafeArrayPtr owned(array);
    const auto elements = owned.Elements<double>();
    waveform.volts.assign(elements.begin(), elements.end());
    EXPECT_THAT(waveform.volts, SizeIs(1000));
    EXPECT_DOUBLE_EQ(waveform.initialX, -2e-3);
    ExpectSignal(waveform, SquareAt, 0.04);
}

TEST_P(WaveformFetchTest, OnlyANanIsSaidToBeNotInvalid) {
    client_.AcquireOnce(1000);
    const auto isInvalid = [this](double element) {
        VARIANT_BOOL invalid = 7;
        EXPECT_EQ(Transfer()->IsWaveformElementInvalid(element, &invalid), S_OK);
        VARIANT_BOOL byClass = 7;
        EXPECT_EQ(client_.As<IIviScopeMeasurements>()->IsWaveformElementInvalid(element, &byClass),
                  S_OK);
        EXPECT_EQ(byClass, invalid);
        return invalid;
    };
    EXPECT_EQ(isInvalid(Fetch(KestrionSourceCh1).volts.front()), VARIANT_TRUE);
    EXPECT_EQ(isInvalid(0.0), VARIANT_TRUE);
    EXPECT_EQ(isInvalid(std::numeric_limits<double>::quiet_NaN()), VARIANT_FALSE);
}

TEST_P(WaveformFetchTest, AModeOfPairsIsRefused) {
    for (const auto mode : {KestrionAcquisitionModePeakDetect, KestrionAcquisitionModeEnvelope,
                            KestrionAcquisitionModeWfmDB}) {
        SetMode(mode);
        const std::string before = TransferSettings();
        Waveform waveform;
        EXPECT_EQ(client_.Fetch(KestrionSourceCh1, waveform), kInvalidAcquisition);
        EXPECT_EQ(TakeErrorText(),
                  "Kestrion: Invalid acquisition type.\r\nInvalid Acquisition Type error");
        EXPECT_THAT(waveform.volts, SizeIs(0));
        EXPECT_EQ(TransferSettings(), before);
    }
}

INSTANTIATE_TEST_SUITE_P(Links, WaveformFetchTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
