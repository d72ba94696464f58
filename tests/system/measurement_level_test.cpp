// Reference levels, gates and statistics of measurements.
#include <gmock/gmock.h>

#include "tests/system/measurement_link_test.h"

namespace kestrion {
namespace {

constexpr auto kMinMax = KestrionMeasurementMethodMinMax;
constexpr auto kPercent = KestrionMeasurementUnitPercent;
constexpr auto kAbsolute = KestrionMeasurementUnitAbsolute;

class MeasurementLevelTest : public MeasurementLinkTest {
  protected:
    ComPtr<IKestrionReferenceLevel> LevelsOf(int slot) {
        ComPtr<IKestrionReferenceLevel> levels;
        EXPECT_EQ(Slot(slot)->get_ReferenceLevel(levels.Out()), S_OK) << TakeErrorText();
        return levels;
    }
    static double RiseOf(const ComPtr<IKestrionMeasurement>& slot) {
        EXPECT_EQ(slot->Configure(KestrionSourceCh1, KestrionMeasurementTypeRise), S_OK);
        return ValueOf(slot);
    }
    // Of two crossings of the sine at that height, with half a level of 8 mV and a point of 400 ns.
    static double Tolerance(double volts) {
        const double slope = 2 * std::numbers::pi * 1000.0 * std::sqrt(1.0 - volts * volts);
        return 2 * (4e-3 / slope + 4e-7);
    }
};

TEST_P(MeasurementLevelTest, PercentMovesTheRiseTime) {
    const Waveform waveform = Fetch(KestrionSourceCh1);
    const auto slot = Slot(1);
    const auto levels = LevelsOf(1);
    const struct {
        double high;
        double low;
    } kCases[] = {{90, 10}, {80, 20}, {60, 45}};
    for (const auto& [high, low] : kCases) {
        const MeasuredRecord record(waveform, {.high = high, .low = low});
        const double tolerance = Tolerance(std::max(high / 50 - 1, 1 - low / 50));
        EXPECT_EQ(Immediate()->ConfigureReferenceLevel(kMinMax, kPercent, high, low, 50, 50), S_OK)
            << TakeErrorText();
        EXPECT_NEAR(Measure(KestrionSourceCh1, KestrionMeasurementTypeRise),
                    record.Transition(true), tolerance);
        EXPECT_NEAR(Measure(KestrionSourceCh1, KestrionMeasurementTypeFall),
                    record.Transition(false), tolerance);
        EXPECT_EQ(levels->Configure(kMinMax, kPercent, high, low, 50, 50), S_OK) << TakeErrorText();
        EXPECT_NEAR(RiseOf(slot), record.Transition(true), tolerance);
    }
    // A slot's levels and the immediate measurement's are two things.
    EXPECT_EQ(levels->Configure(kMinMax, kPercent, 90, 10, 50, 50), S_OK);
    EXPECT_GT(RiseOf(slot), 2 * Measure(KestrionSourceCh1, KestrionMeasurementTypeRise));
}

TEST_P(MeasurementLevelTest, AbsoluteLevelsAreVolts) {
    // From -0.5 V to 0.5 V a sine takes a sixth of its period.
    EXPECT_EQ(Immediate()->ConfigureReferenceLevel(kMinMax, kAbsolute, 0.5, -0.5, 0.0, 0.0), S_OK)
        << TakeErrorText();
    EXPECT_NEAR(Measure(KestrionSourceCh1, KestrionMeasurementTypeRise), 1e-3 / 6, 1e-8);
    const MeasuredRecord record(Fetch(KestrionSourceCh1), {.high = 75, .low = 25});
    EXPECT_NEAR(record.Transition(true), 1e-3 / 6, Tolerance(0.5));
    // The same through the class's levels; the middle one widens the positive width.
    const auto byClass = client_.As<IIviScopeReferenceLevel>();
    EXPECT_EQ(byClass->Configure(-0.25, -0.5, 0.25), S_OK) << TakeErrorText();
    EXPECT_NEAR(Measure(KestrionSourceCh1, KestrionMeasurementTypePWidth), 1e-3 * 2 / 3, 1e-8);
    double value = 0.0;
    EXPECT_EQ(byClass->get_Low(&value), S_OK);
    EXPECT_DOUBLE_EQ(value, -0.25);
    EXPECT_EQ(byClass->get_Mid(&value), S_OK);
    EXPECT_DOUBLE_EQ(value, -0.5);
    EXPECT_EQ(byClass->get_High(&value), S_OK);
    EXPECT_DOUBLE_EQ(value, 0.25);
}

TEST_P(MeasurementLevelTest, LevelsOutOfTheSignalsReachLeaveNothingToMeasure) {
    EXPECT_EQ(Immediate()->ConfigureReferenceLevel(kMinMax, kAbsolute, 1.5, -1.5, 0.0, 0.0), S_OK);
    EXPECT_EQ(Measure(KestrionSourceCh1, KestrionMeasurementTypeRise), kNoValue);
    EXPECT_NEAR(Measure(KestrionSourceCh1, KestrionMeasurementTypePeriod), 1e-3, 1e-8);
    EXPECT_EQ(Immediate()->put_ReferenceLevelAbsoluteMid(2.0), S_OK);
    EXPECT_EQ(Measure(KestrionSourceCh1, KestrionMeasurementTypePeriod), kNoValue);
}

TEST_P(MeasurementLevelTest, TheMethodMovesThemToo) {
    const Waveform waveform = Fetch(KestrionSourceCh1);
    const auto slot = Slot(6);
    const auto levels = LevelsOf(6);
    std::vector<double> rises;
    for (const auto method : {kMinMax, KestrionMeasurementMethodMean}) {
        const MeasuredRecord record(waveform, {.method = method});
        EXPECT_EQ(Measurements()->put_Method(method), S_OK) << TakeErrorText();
        EXPECT_EQ(levels->put_Method(method), S_OK) << TakeErrorText();
        const double rise = Measure(KestrionSourceCh1, KestrionMeasurementTypeRise);
        EXPECT_NEAR(rise, record.Transition(true), Tolerance(0.8));
        EXPECT_DOUBLE_EQ(RiseOf(slot), rise);
        rises.push_back(rise);
    }
    EXPECT_LT(rises[1], 0.7 * rises[0]);
}

TEST_P(MeasurementLevelTest, TheSecondSourceHasAMiddleOfItsOwn) {
    // From the square wave's first rising edge to the sine's crossing of 0.5 V, 1/12 of a period
    // behind that of 0 V.
    EXPECT_EQ(Immediate()->ConfigureReferenceLevel(kMinMax, kAbsolute, 0.9, -0.9, 1.65, 0.5), S_OK);
    EXPECT_EQ(Immediate()->ConfigureDelay(KestrionSourceCh2, KestrionSourceCh1,
                                          KestrionMeasurementDelayDirectionForwards,
                                          KestrionMeasurementEdgeRise, KestrionMeasurementEdgeRise),
              S_OK);
    double value = -1.0;
    EXPECT_EQ(Immediate()->get_Value(&value), S_OK) << TakeErrorText();
    const MeasuredRecord square(Fetch(KestrionSourceCh2));
    const MeasuredRecord sine(Fetch(KestrionSourceCh1), {.mid = 75.0});
    EXPECT_NEAR(value, sine.EdgeTimes(true).front() - square.EdgeTimes(true).front(),
                Tolerance(0.5));
    EXPECT_NEAR(std::remainder(value, 1e-4), std::remainder(1e-3 / 12, 1e-4), 4e-7);
}

TEST_P(MeasurementLevelTest, WhatWasConfiguredIsRead) {
    auto method = KestrionMeasurementMethodHistogram;
    auto unit = kPercent;
    double high = 0.0;
    double low = 0.0;
    double mid = 0.0;
    double mid2 = 0.0;
    EXPECT_EQ(
        Immediate()->ConfigureReferenceLevel(KestrionMeasurementMethodMean, kAbsolute, 3, -1, 1, 2),
        S_OK);
    EXPECT_EQ(LevelsOf(7)->Configure(kMinMax, kPercent, 85, 15, 45, 55), S_OK);
    EXPECT_EQ(Immediate()->ReadReferenceLevel(&method, &unit, &high, &low, &mid, &mid2), S_OK)
        << TakeErrorText();
    EXPECT_EQ(method, KestrionMeasurementMethodMean);
    EXPECT_EQ(unit, kAbsolute);
    EXPECT_THAT((std::vector{high, low, mid, mid2}), testing::ElementsAre(3, -1, 1, 2));
    EXPECT_EQ(LevelsOf(7)->Read(&method, &unit, &high, &low, &mid, &mid2), S_OK) << TakeErrorText();
    EXPECT_EQ(method, kMinMax);
    EXPECT_EQ(unit, kPercent);
    EXPECT_THAT((std::vector{high, low, mid, mid2}), testing::ElementsAre(85, 15, 45, 55));
}

TEST_P(MeasurementLevelTest, AGateLeavesPartOfTheRecord) {
    const Waveform whole = Fetch(KestrionSourceCh1);
    const auto part = [&whole](std::size_t first, std::size_t end) {
        Waveform waveform = whole;
        waveform.initialX += static_cast<double>(first) * whole.xIncrement;
        waveform.volts.assign(whole.volts.begin() + static_cast<std::ptrdiff_t>(first),
                              whole.volts.begin() + static_cast<std::ptrdiff_t>(end));
        return MeasuredRecord(waveform);
    };
    const auto expectPart = [this](const MeasuredRecord& record) {
        for (const auto type : {KestrionMeasurementTypeMaximum, KestrionMeasurementTypeMinimum,
                                KestrionMeasurementTypeMean, KestrionMeasurementTypeRMS}) {
            EXPECT_NEAR(Measure(KestrionSourceCh1, type), record.Value(type).value_or(0.0), 4e-3)
                << type;
            EXPECT_EQ(Slot(1)->Configure(KestrionSourceCh1, type), S_OK);
            EXPECT_NEAR(ValueOf(Slot(1)), record.Value(type).value_or(0.0), 4e-3) << type;
        }
    };
    // From -0.3 ms to 0.1 ms: points 3250 to 4250 of 400 ns, the trigger is point 4000.
    Send("CURSOR:VBARS:POSITION1 1E-4;POSITION2 -3E-4");
    for (const auto gating : {KestrionMeasurementGatingCursor, KestrionMeasurementGatingOn}) {
        EXPECT_EQ(Measurements()->put_Gating(gating), S_OK) << TakeErrorText();
        expectPart(part(3250, 4251));
    }
    // An eighth of the record around 30 percent of it.
    Send("ZOOM:CH1:HORIZONTAL:POSITION 30;SCALE 8");
    for (const auto gating : {KestrionMeasurementGatingZoom, KestrionMeasurementGatingZoom1}) {
        EXPECT_EQ(Measurements()->put_Gating(gating), S_OK) << TakeErrorText();
        expectPart(part(2375, 3625));
    }
    EXPECT_EQ(Measurements()->put_Gating(KestrionMeasurementGatingOff), S_OK);
    expectPart(part(0, 10000));
    // Bars beside the record.
    Send("CURSOR:VBARS:POSITION1 1;POSITION2 2");
    EXPECT_EQ(Measurements()->put_Gating(KestrionMeasurementGatingCursor), S_OK);
    EXPECT_EQ(Measure(KestrionSourceCh1, KestrionMeasurementTypeMean), kNoValue);
}

TEST_P(MeasurementLevelTest, StatisticsAreThoseOfTheAcquisitions) {
    Send("SELECT:CH4 1");
    const auto slot = Slot(2);
    EXPECT_EQ(slot->Configure(KestrionSourceCh4, KestrionMeasurementTypeMaximum), S_OK);
    client_.AcquireOnce(1000);
    EXPECT_EQ(slot->Reset(), S_OK);
    LONG count = -1;
    EXPECT_EQ(slot->get_Count(&count), S_OK) << TakeErrorText();
    EXPECT_EQ(count, 0);
    std::vector<double> maxima;
    for (int round = 0; round < 5; ++round) {
        client_.AcquireOnce(1000);
        maxima.push_back(MeasuredRecord(Fetch(KestrionSourceCh4)).Greatest());
    }
    double mean = 0.0;
    for (const double maximum : maxima) {
        mean += maximum / 5;
    }
    double variance = 0.0;
    for (const double maximum : maxima) {
        variance += (maximum - mean) * (maximum - mean) / 5;
    }
    double value = 0.0;
    EXPECT_EQ(slot->get_Count(&count), S_OK) << TakeErrorText();
    EXPECT_EQ(count, 5);
    // Half a level of 4 mV.
    EXPECT_EQ(slot->get_Minimum(&value), S_OK) << TakeErrorText();
    EXPECT_NEAR(value, std::ranges::min(maxima), 2e-3);
    EXPECT_EQ(slot->get_Maximum(&value), S_OK) << TakeErrorText();
    EXPECT_NEAR(value, std::ranges::max(maxima), 2e-3);
    EXPECT_EQ(slot->get_Mean(&value), S_OK) << TakeErrorText();
    EXPECT_NEAR(value, mean, 2e-3);
    EXPECT_EQ(slot->get_StandardDeviation(&value), S_OK) << TakeErrorText();
    EXPECT_NEAR(value, std::sqrt(variance), 2e-3);
    EXPECT_GT(value, 0.0);
    EXPECT_EQ(Measurements()->Reset(), S_OK);
    EXPECT_EQ(slot->get_Count(&count), S_OK);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(slot->get_Mean(&value), S_OK);
    EXPECT_EQ(value, kNoValue);
}

TEST_P(MeasurementLevelTest, StatisticsOfWhatIsTheSameEachTime) {
    const auto slot = Slot(1);
    Send("MEASUREMENT:MEAS1:METHOD MINMAX");
    EXPECT_EQ(slot->Configure(KestrionSourceCh1, KestrionMeasurementTypePeriod), S_OK);
    EXPECT_EQ(slot->Reset(), S_OK);
    for (int round = 0; round < 3; ++round) {
        client_.AcquireOnce(10000);
    }
    double value = 0.0;
    for (const auto member : {&IKestrionMeasurement::get_Minimum, &IKestrionMeasurement::get_Mean,
                              &IKestrionMeasurement::get_Maximum}) {
        EXPECT_EQ((slot.Get()->*member)(&value), S_OK) << TakeErrorText();
        EXPECT_NEAR(value, 1e-3, 1e-8);
    }
    EXPECT_EQ(slot->get_StandardDeviation(&value), S_OK) << TakeErrorText();
    EXPECT_NEAR(value, 0.0, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Links, MeasurementLevelTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
