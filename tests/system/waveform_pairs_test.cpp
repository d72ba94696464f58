// Records of pairs: peak detect and envelope.
#include <gmock/gmock.h>

#include <algorithm>
#include <numeric>

#include "tests/system/link_test.h"

namespace kestrion {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

struct Pairs {
    std::vector<double> least;
    std::vector<double> greatest;
    double initialX = 0.0;
    double xIncrement = 0.0;

    [[nodiscard]] double MeanSpan() const {
        const double sum = std::inner_product(greatest.begin(), greatest.end(), least.begin(), 0.0,
                                              std::plus<>(), std::minus<>());
        return sum / static_cast<double>(least.size());
    }
};

class WaveformPairsTest : public LinkTest {
  protected:
    HRESULT Fetch(KestrionSourceEnum source, Pairs& pairs) {
        SafeArrayPtr least;
        SafeArrayPtr greatest;
        const HRESULT status = Transfer()->FetchWaveformMinMax(source, least.Out(), greatest.Out(),
                                                               &pairs.initialX, &pairs.xIncrement);
        Keep(least, greatest, pairs);
        return status;
    }
    HRESULT Read(KestrionSourceEnum source, LONG maxTime, Pairs& pairs) {
        SafeArrayPtr least;
        SafeArrayPtr greatest;
        const HRESULT status = Transfer()->ReadWaveformMinMax(
            source, maxTime, least.Out(), greatest.Out(), &pairs.initialX, &pairs.xIncrement);
        Keep(least, greatest, pairs);
        return status;
    }
    static void Keep(const SafeArrayPtr& least, const SafeArrayPtr& greatest, Pairs& pairs) {
        const auto low = least.Elements<double>();
        const auto high = greatest.Elements<double>();
        pairs.least.assign(low.begin(), low.end());
        pairs.greatest.assign(high.begin(), high.end());
    }
    // Pair i is what the signal does in the time of points 2i and 2i + 1.
    template <typename Signal>
    static void ExpectExtremes(const Pairs& pairs, Signal signal, double tolerance) {
        for (std::size_t i = 0; i < pairs.least.size(); ++i) {
            double least = 1e9;
            double greatest = -1e9;
            for (int step = 0; step < 64; ++step) {
                const double point = 2.0 * static_cast<double>(i) + step / 32.0;
                const double volts = signal(pairs.initialX + point * pairs.xIncrement);
                least = std::min(least, volts);
                greatest = std::max(greatest, volts);
            }
            ASSERT_NEAR(pairs.least[i], least, tolerance) << i;
            ASSERT_NEAR(pairs.greatest[i], greatest, tolerance) << i;
        }
    }
};

TEST_P(WaveformPairsTest, PeakDetectHoldsTheExtremesOfEachPair) {
    SetMode(KestrionAcquisitionModePeakDetect);
    Send("SELECT:CH2 1;MATH1 1;:MATH1:DEFINE \"2*CH1\"");
    client_.AcquireOnce(1000);
    const std::string before = TransferSettings();
    Pairs sine;
    ASSERT_EQ(Fetch(KestrionSourceCh1, sine), S_OK) << TakeErrorText();
    ASSERT_THAT(sine.least, SizeIs(500));
    ASSERT_THAT(sine.greatest, SizeIs(500));
    EXPECT_DOUBLE_EQ(sine.initialX, -2e-3);
    EXPECT_DOUBLE_EQ(sine.xIncrement, 4e-6);
    ExpectExtremes(sine, SineAt, 0.02);
    Pairs square;
    ASSERT_EQ(Fetch(KestrionSourceCh2, square), S_OK) << TakeErrorText();
    ExpectExtremes(square, SquareAt, 0.04);
    // A quarter of a point's time is what the extremes are looked for in.
    Pairs twice;
    ASSERT_EQ(Fetch(KestrionSourceMath1, twice), S_OK) << TakeErrorText();
    ASSERT_THAT(twice.least, SizeIs(500));
    ExpectExtremes(
        twice, [](double time) { return 2 * SineAt(time); }, 2 * 6283.2 * 1e-6);
    EXPECT_EQ(TransferSettings(), before);
}

TEST_P(WaveformPairsTest, APointWithoutItsPairIsLeftOut) {
    SetMode(KestrionAcquisitionModePeakDetect);
    client_.AcquireOnce(1001);
    Pairs pairs;
    ASSERT_EQ(Fetch(KestrionSourceCh1, pairs), S_OK) << TakeErrorText();
    EXPECT_THAT(pairs.least, SizeIs(500));
    ExpectExtremes(pairs, SineAt, 0.02);
}

TEST_P(WaveformPairsTest, AnEnvelopeSpansItsAcquisitions) {
    Send("SELECT:CH4 1");
    const auto acquisition = client_.As<IKestrionAcquisition>();
    const auto span = [&](LONG acquisitions) {
        EXPECT_EQ(acquisition->SetEnvelopeMode(acquisitions), S_OK);
        client_.AcquireOnce(1000);
        Pairs pairs;
        EXPECT_EQ(Fetch(KestrionSourceCh4, pairs), S_OK) << TakeErrorText();
        EXPECT_THAT(pairs.least, SizeIs(500));
        return pairs.MeanSpan();
    };
    const double ofOne = span(1);
    const double ofMany = span(20);
    EXPECT_GT(ofMany, ofOne * 1.1);
    EXPECT_LT(ofMany, 0.4 + 0.008);
    // What is the same each time spans no more than within its pair.
    Pairs sine;
    ASSERT_EQ(Fetch(KestrionSourceCh1, sine), S_OK) << TakeErrorText();
    ExpectExtremes(sine, SineAt, 0.02);
}

TEST_P(WaveformPairsTest, AnEnvelopeWithoutATriggerCoversTheSignal) {
    Send("TRIGGER:A:LEVEL 5");
    EXPECT_EQ(client_.As<IKestrionAcquisition>()->SetEnvelopeMode(20), S_OK);
    client_.AcquireOnce(1000);
    Pairs pairs;
    ASSERT_EQ(Fetch(KestrionSourceCh1, pairs), S_OK) << TakeErrorText();
    // The sine begins somewhere else each time.
    EXPECT_GT(pairs.MeanSpan(), 1.0);
    EXPECT_GE(std::ranges::min(pairs.least), -1.02);
    EXPECT_LE(std::ranges::max(pairs.greatest), 1.02);
}

TEST_P(WaveformPairsTest, OtherModesAreRefused) {
    for (const auto mode : {KestrionAcquisitionModeSample, KestrionAcquisitionModeHiRes,
                            KestrionAcquisitionModeAverage}) {
        SetMode(mode);
        const std::string before = TransferSettings();
        Pairs pairs;
        EXPECT_EQ(Fetch(KestrionSourceCh1, pairs), kInvalidAcquisition);
        EXPECT_EQ(TakeErrorText(),
                  "Kestrion: Invalid acquisition type.\r\nInvalid Acquisition Type error");
        EXPECT_EQ(Read(KestrionSourceCh1, 1000, pairs), kInvalidAcquisition);
        EXPECT_THAT(pairs.least, IsEmpty());
        EXPECT_EQ(TransferSettings(), before);
    }
}

TEST_P(WaveformPairsTest, ReadingWhileRunningDoesNotWait) {
    SetMode(KestrionAcquisitionModePeakDetect);
    EXPECT_EQ(client_.As<IKestrionHorizontal>()->put_RecordLength(1000), S_OK);
    EXPECT_EQ(client_.As<IKestrionAcquisition>()->put_SingleSequence(VARIANT_FALSE), S_OK);
    Pairs pairs;
    // Without a moment to wait.
    ASSERT_EQ(Read(KestrionSourceCh1, 0, pairs), S_OK) << TakeErrorText();
    EXPECT_THAT(pairs.least, SizeIs(500));
    ExpectExtremes(pairs, SineAt, 0.02);
    EXPECT_EQ(Ask("ACQUIRE:STATE?"), "1");
}

// The loop looks for a status byte of exactly 1. With the events that the member itself enables the
// instrument's byte has bit 5 when the sequence is complete, which is not that.
TEST_P(WaveformPairsTest, ReadingASequenceEndsByTimeoutAlthoughItIsComplete) {
    SetMode(KestrionAcquisitionModePeakDetect);
    EXPECT_EQ(client_.As<IKestrionHorizontal>()->put_RecordLength(1000), S_OK);
    EXPECT_EQ(client_.As<IKestrionAcquisition>()->put_SingleSequence(VARIANT_TRUE), S_OK);
    const std::string before = TransferSettings();
    Pairs pairs;
    EXPECT_EQ(Read(KestrionSourceCh1, 150, pairs), kMaxTimeExceeded);
    EXPECT_EQ(TakeErrorText(), kMaxTimeText);
    EXPECT_THAT(pairs.least, IsEmpty());
    EXPECT_EQ(TransferSettings(), before);
    EXPECT_EQ(Ask("ACQUIRE:STATE?;NUMACQ?;:*ESR?"), "0;1;1");
    // The record is there.
    ASSERT_EQ(Fetch(KestrionSourceCh1, pairs), S_OK) << TakeErrorText();
    ExpectExtremes(pairs, SineAt, 0.02);
}

TEST_P(WaveformPairsTest, TheClassGivesAChannelsPairs) {
    SetMode(KestrionAcquisitionModePeakDetect);
    EXPECT_EQ(client_.As<IKestrionHorizontal>()->put_RecordLength(1000), S_OK);
    EXPECT_EQ(client_.As<IKestrionAcquisition>()->put_SingleSequence(VARIANT_FALSE), S_OK);
    const BstrPtr name(std::string_view("Channel1"));
    ComPtr<IIviScopeMeasurement> measurement;
    ASSERT_EQ(client_.As<IIviScopeMeasurements>()->get_Item(name.Get(), measurement.Out()), S_OK);
    for (const bool read : {false, true}) {
        SAFEARRAY* least = nullptr;
        SAFEARRAY* greatest = nullptr;
        Pairs pairs;
        const HRESULT status = read
                                   ? measurement->ReadWaveformMinMax(
                                         100, &least, &greatest, &pairs.initialX, &pairs.xIncrement)
                                   : measurement->FetchWaveformMinMax(
                                         &least, &greatest, &pairs.initialX, &pairs.xIncrement);
        ASSERT_EQ(status, S_OK) << TakeErrorText();
        const SafeArrayPtr ownedLeast(least);
        const SafeArrayPtr ownedGreatest(greatest);
        Keep(ownedLeast, ownedGreatest, pairs);
        EXPECT_THAT(pairs.least, SizeIs(500));
        ExpectExtremes(pairs, SineAt, 0.02);
    }
}

INSTANTIATE_TEST_SUITE_P(Links, WaveformPairsTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
