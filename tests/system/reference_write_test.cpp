// WriteWaveformToReference: what is written is what a fetch of the reference gives.
#include <gmock/gmock.h>

#include "tests/support/temporary_folder.h"
#include "tests/system/link_test.h"

namespace kestrion {
namespace {

using testing::ElementsAre;

class ReferenceWriteTest : public LinkTest {
  protected:
    HRESULT WriteArray(KestrionReferenceEnum reference, const std::vector<double>& volts,
                       double initialX, double xIncrement) {
        const SafeArrayPtr array(SafeArrayCreateVector(VT_R8, 0, static_cast<ULONG>(volts.size())));
        std::ranges::copy(volts, array.Elements<double>().begin());
        return Transfer()->WriteWaveformToReference(reference, array.Get(), initialX, xIncrement);
    }
    Waveform Fetch(KestrionSourceEnum source) {
        Waveform waveform;
        EXPECT_EQ(client_.Fetch(source, waveform), S_OK) << TakeErrorText();
        return waveform;
    }
    static std::vector<double> Ramp(std::size_t points) {
        std::vector<double> volts;
        for (std::size_t i = 0; i < points; ++i) {
            volts.push_back(0.1 * static_cast<double>(i) - 3.7);
        }
        return volts;
    }
    // Each as the nearest single-precision number.
    static void ExpectInSinglePrecision(const Waveform& waveform,
                                        const std::vector<double>& volts) {
        ASSERT_EQ(waveform.volts.size(), volts.size());
        for (std::size_t i = 0; i < volts.size(); ++i) {
            ASSERT_EQ(waveform.volts[i], static_cast<double>(static_cast<float>(volts[i]))) << i;
        }
    }
};

TEST_P(ReferenceWriteTest, EveryMemoryGivesBackWhatItGot) {
    Send("SELECT:REF1 1;REF2 1;REF3 1;REF4 1");
    client_.AcquireOnce(1000);
    constexpr std::size_t kPoints[] = {1, 7, 1000, 4096};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto volts = Ramp(kPoints[i]);
        ASSERT_EQ(WriteArray(static_cast<KestrionReferenceEnum>(i), volts, -0.25e-3, 2.5e-6), S_OK)
            << TakeErrorText();
    }
    for (std::size_t i = 0; i < 4; ++i) {
        const Waveform waveform =
            Fetch(static_cast<KestrionSourceEnum>(KestrionSourceRef1 + static_cast<LONG>(i)));
        ExpectInSinglePrecision(waveform, Ramp(kPoints[i]));
        EXPECT_DOUBLE_EQ(waveform.xIncrement, 2.5e-6);
        EXPECT_DOUBLE_EQ(waveform.initialX, -0.25e-3);
    }
}

TEST_P(ReferenceWriteTest, AFetchedRecordCanBeKept) {
    Send("SELECT:CH2 1;REF3 1");
    client_.AcquireOnce(5000);
    const Waveform square = Fetch(KestrionSourceCh2);
    ASSERT_EQ(WriteArray(KestrionReferenceRef3, square.volts, square.initialX, square.xIncrement),
              S_OK)
        << TakeErrorText();
    const Waveform kept = Fetch(KestrionSourceRef3);
    ExpectInSinglePrecision(kept, square.volts);
    EXPECT_DOUBLE_EQ(kept.xIncrement, square.xIncrement);
    EXPECT_DOUBLE_EQ(kept.initialX, square.initialX);
}

TEST_P(ReferenceWriteTest, LargeSmallAndNegativeNumbersPass) {
    Send("SELECT:REF1 1");
    const std::vector<double> volts = {0.0, -1e-30, 3.4e38, -2.5, 1.0 / 3.0, 123456789.0};
    ASSERT_EQ(WriteArray(KestrionReferenceRef1, volts, 0.0, 1.0), S_OK) << TakeErrorText();
    ExpectInSinglePrecision(Fetch(KestrionSourceRef1), volts);
}

TEST_P(ReferenceWriteTest, TimesAreKeptInWholePointsAndSixDigits) {
    Send("SELECT:REF1 1");
    // A third of a microsecond with six digits; the record begins 100.3 points before time zero.
    ASSERT_EQ(WriteArray(KestrionReferenceRef1, Ramp(10), -100.3 / 3e6, 1.0 / 3e6), S_OK)
        << TakeErrorText();
    Waveform waveform = Fetch(KestrionSourceRef1);
    EXPECT_DOUBLE_EQ(waveform.xIncrement, 3.33333e-7);
    EXPECT_DOUBLE_EQ(waveform.initialX, -3.33333e-5);
    // A record that begins behind time zero.
    ASSERT_EQ(WriteArray(KestrionReferenceRef1, Ramp(10), 2e-6, 1e-6), S_OK) << TakeErrorText();
    waveform = Fetch(KestrionSourceRef1);
    EXPECT_DOUBLE_EQ(waveform.initialX, 2e-6);
}

// What was the destination goes back as the source; all else is as it was.
TEST_P(ReferenceWriteTest, SettingsAreAsBeforeButForSourceAndDestination) {
    Send(
        "HEADER OFF;:DATA:DESTINATION REF2;SOURCE CH4;START 3;STOP 77;:WFMINPRE:BN_FMT RP;"
        "BYT_OR MSB;ENCDG ASC;BYT_NR 2;YMULT 0.5;PT_OFF 11;NR_PT 22;XINCR 3E-6");
    const std::string query =
        "HEADER?;:DATA:START?;STOP?;:WFMINPRE:BN_FMT?;BYT_OR?;ENCDG?;BYT_NR?;YMULT?;PT_OFF?;"
        "NR_PT?;XINCR?;:WFMOUTPRE:ENCDG?;BYT_OR?;BYT_NR?";
    const std::string before = Ask(query);
    ASSERT_EQ(WriteArray(KestrionReferenceRef4, Ramp(100), 0.0, 1e-6), S_OK) << TakeErrorText();
    EXPECT_EQ(Ask(query), before);
    EXPECT_EQ(Ask("DATA:SOURCE?;DESTINATION?"), "REF2;REF4");
}

TEST_P(ReferenceWriteTest, AReferenceMayBeUsedInMathAndMeasured) {
    Send("SELECT:REF1 1;MATH1 1;:MATH1:DEFINE \"CH1-REF1\"");
    std::vector<double> sine;
    for (int i = 0; i < 1000; ++i) {
        sine.push_back(SineAt(-2e-3 + i * 4e-6));
    }
    ASSERT_EQ(WriteArray(KestrionReferenceRef1, sine, -2e-3, 4e-6), S_OK) << TakeErrorText();
    client_.AcquireOnce(1000);
    ExpectSignal(
        Fetch(KestrionSourceMath1), [](double) { return 0.0; }, 1e-6);
    const auto immediate = client_.As<IKestrionMeasurementImmediate>();
    EXPECT_EQ(immediate->Configure(KestrionSourceRef1, KestrionMeasurementTypeFrequency), S_OK);
    double frequency = 0.0;
    EXPECT_EQ(immediate->get_Value(&frequency), S_OK) << TakeErrorText();
    EXPECT_NEAR(frequency, 1000.0, 0.1);
}

TEST_P(ReferenceWriteTest, LevelsOfAReferenceBecomeVolts) {
    Send("SELECT:REF2 1;:DATA:DESTINATION REF2");
    Send(
        "WFMINPRE:ENCDG ASC;BN_FMT RI;BYT_NR 1;NR_PT 5;PT_OFF 2;XINCR 1E-6;XZERO 4E-6;YMULT 0.02;"
        "YOFF 10;YZERO 0.5");
    Send("CURVE 0,10,60,-40,127");
    Waveform waveform = Fetch(KestrionSourceRef2);
    const auto near = [](double volts) { return testing::DoubleNear(volts, 1e-12); };
    EXPECT_THAT(waveform.volts,
                ElementsAre(near(0.3), near(0.5), near(1.5), near(-0.5), near(2.84)));
    EXPECT_DOUBLE_EQ(waveform.initialX, 2e-6);
    // A file of fewer than seven points has as much of the header.
    const TemporaryFolder folder;
    const BstrPtr path(folder.File("short.csv").string());
    ASSERT_EQ(Transfer()->SaveWaveformToFile(KestrionSourceRef2, path.Get(),
                                             KestrionWaveformFileFormatWithScaleFactor),
              S_OK)
        << TakeErrorText();
    EXPECT_EQ(ReadFile(folder.File("short.csv")),
              "\"Record Length\",5,\"Points\",       2e-06,         0.3\n"
              "\"Sample Interval\",       1e-06,\"s\",       3e-06,         0.5\n"
              "\"Trigger Point\",2,\"Points\",       4e-06,         1.5\n"
              "\"Trigger Time\",       4e-06,\"s\",       5e-06,        -0.5\n"
              ",,,       6e-06,        2.84\n");
}

TEST_P(ReferenceWriteTest, WhatIsNoArrayOfVoltsIsRefused) {
    const std::string before = TransferSettings();
    EXPECT_LT(Transfer()->WriteWaveformToReference(KestrionReferenceRef1, nullptr, 0.0, 1e-6), 0);
    const SafeArrayPtr whole(SafeArrayCreateVector(VT_I4, 0, 10));
    EXPECT_LT(Transfer()->WriteWaveformToReference(KestrionReferenceRef1, whole.Get(), 0.0, 1e-6),
              0);
    EXPECT_EQ(TransferSettings(), before);
}

INSTANTIATE_TEST_SUITE_P(Links, ReferenceWriteTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
