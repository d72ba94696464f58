// Each measurement against what the fetched record gives.
#include <gmock/gmock.h>

#include <numeric>

#include "tests/system/measurement_link_test.h"

namespace kestrion {
namespace {

// How far a value from rounded points may be from one of the signal itself. A point is off by half
// a level, and where it crosses a level by that over the slope and by the time between points.
struct Tolerances {
    double level;
    double time;  // of one crossing

    [[nodiscard]] double Of(KestrionMeasurementTypeEnum type, double expected) const {
        switch (type) {
            case KestrionMeasurementTypeRise:
            case KestrionMeasurementTypeFall:
            case KestrionMeasurementTypePeriod:
            case KestrionMeasurementTypeNWidth:
            case KestrionMeasurementTypePWidth:
            case KestrionMeasurementTypeBurst:
                return 2 * time;
            case KestrionMeasurementTypeFrequency:
                return 2 * time * expected * expected;
            case KestrionMeasurementTypeNDuty:
            case KestrionMeasurementTypePDuty:
            case KestrionMeasurementTypePOvershoot:
            case KestrionMeasurementTypeNOvershoot:
                return 0.5;  // percent
            case KestrionMeasurementTypeSigma1:
            case KestrionMeasurementTypeSigma2:
            case KestrionMeasurementTypeSigma3:
                return 1.0;
            case KestrionMeasurementTypeArea:
                return 4e-3 * level / 2;
            case KestrionMeasurementTypeCArea:
                return 1e-3 * level / 2 + time * 1.0;
            case KestrionMeasurementTypePk2Pk:
            case KestrionMeasurementTypeAmplitude:
                return level;
            default:
                return level / 2;
        }
    }
};

// The sine's slope where the 10 and 90 percent levels are, 0.8 V from its middle, is 3770 V/s.
constexpr Tolerances kSine = {.level = 8e-3, .time = 4e-3 / 3770 + 4e-7};
// The square wave's edges lie between two points.
constexpr Tolerances kSquare = {.level = 44e-3, .time = 4e-7};

constexpr auto kLast = KestrionMeasurementTypeUndefined;

class MeasurementValueTest : public MeasurementLinkTest {
  protected:
    // By all roads there are to a value.
    void ExpectAll(KestrionSourceEnum source, const MeasuredRecord& record,
                   const Tolerances& tolerances) {
        const auto slot = Slot(3);
        const auto byClass = ClassMeasurement(source + 1);
        int measured = 0;
        for (LONG number = 0; number <= kLast; ++number) {
            const auto type = static_cast<KestrionMeasurementTypeEnum>(number);
            const auto expected = record.Value(type);
            // All points of a square wave are one deviation from its mean, so that it is up to
            // the roundings which of them are within.
            if (!expected ||
                (source == KestrionSourceCh2 && type == KestrionMeasurementTypeSigma1)) {
                continue;
            }
            ++measured;
            const double tolerance = tolerances.Of(type, *expected);
            EXPECT_NEAR(Measure(source, type), *expected, tolerance) << "type " << number;
            EXPECT_EQ(slot->Configure(source, type), S_OK) << TakeErrorText();
            EXPECT_NEAR(ValueOf(slot), *expected, tolerance) << "type " << number;
            if (number > IviScopeMeasurementPreshoot) {
                continue;
            }
            double value = -1.0;
            EXPECT_EQ(byClass->FetchWaveformMeasurement(
                          static_cast<IviScopeMeasurementEnum>(number), &value),
                      S_OK)
                << TakeErrorText();
            EXPECT_NEAR(value, *expected, tolerance) << "type " << number;
        }
        EXPECT_EQ(measured, source == KestrionSourceCh2 ? 27 : 28);
    }
};

TEST_P(MeasurementValueTest, OfTheSineByMinimumAndMaximum) {
    Send("MEASUREMENT:MEAS3:METHOD MINMAX");
    ExpectAll(KestrionSourceCh1, MeasuredRecord(Fetch(KestrionSourceCh1)), kSine);
}

TEST_P(MeasurementValueTest, OfTheSineByTheMeansOfItsHalves) {
    Send("MEASUREMENT:METHOD MEAN;:MEASUREMENT:MEAS3:METHOD MEAN");
    ExpectAll(KestrionSourceCh1,
              MeasuredRecord(Fetch(KestrionSourceCh1), {.method = KestrionMeasurementMethodMean}),
              kSine);
}

TEST_P(MeasurementValueTest, OfTheSquareWaveByItsHistogram) {
    Send("MEASUREMENT:METHOD HISTOGRAM;:MEASUREMENT:MEAS3:METHOD HISTOGRAM");
    ExpectAll(
        KestrionSourceCh2,
        MeasuredRecord(Fetch(KestrionSourceCh2), {.method = KestrionMeasurementMethodHistogram}),
        kSquare);
}

TEST_P(MeasurementValueTest, TheMostFrequentLevelsOfASineAreAtItsPeaks) {
    Send("MEASUREMENT:METHOD HISTOGRAM");
    const MeasuredRecord record(Fetch(KestrionSourceCh1),
                                {.method = KestrionMeasurementMethodHistogram});
    // The instrument's bins are as wide as a level, but begin elsewhere.
    EXPECT_NEAR(Measure(KestrionSourceCh1, KestrionMeasurementTypeHigh), record.Top(), 12e-3);
    EXPECT_NEAR(Measure(KestrionSourceCh1, KestrionMeasurementTypeLow), record.Bottom(), 12e-3);
}

TEST_P(MeasurementValueTest, ABurstOfBitsLastsFromTheFirstEdgeToTheLast) {
    Send("SELECT:CH3 1");
    const MeasuredRecord record(Fetch(KestrionSourceCh3));
    for (const auto type :
         {KestrionMeasurementTypeBurst, KestrionMeasurementTypePWidth,
          KestrionMeasurementTypeNWidth, KestrionMeasurementTypeMean, KestrionMeasurementTypeRMS}) {
        const double expected = record.Value(type).value_or(0.0);
        EXPECT_NEAR(Measure(KestrionSourceCh3, type), expected, kSquare.Of(type, expected)) << type;
    }
    // The shortest width is that of a bit.
    EXPECT_NEAR(std::fmod(record.Width(false) * 9600 + 0.5, 1.0), 0.5, 0.01);
}

TEST_P(MeasurementValueTest, NoiseIsMeasuredByItsPoints) {
    Send("SELECT:CH4 1");
    const MeasuredRecord record(Fetch(KestrionSourceCh4));
    for (const auto type : {KestrionMeasurementTypeMaximum, KestrionMeasurementTypeMinimum,
                            KestrionMeasurementTypeMean, KestrionMeasurementTypeRMS,
                            KestrionMeasurementTypeStdDev, KestrionMeasurementTypeMedian}) {
        EXPECT_NEAR(Measure(KestrionSourceCh4, type), record.Value(type).value_or(0.0), 2e-3)
            << type;
    }
    EXPECT_NEAR(Measure(KestrionSourceCh4, KestrionMeasurementTypeSigma1), record.Within(1), 1.5);
}

TEST_P(MeasurementValueTest, WhatNothingIsMeasuredOfHasNoValueAndGoodStatus) {
    const auto slot = Slot(1);
    int unmeasured = 0;
    for (LONG number = 0; number <= kLast; ++number) {
        const auto type = static_cast<KestrionMeasurementTypeEnum>(number);
        const bool needsMore = number == KestrionMeasurementTypeHits ||
                               number == KestrionMeasurementTypePeakHits ||
                               number >= KestrionMeasurementTypeWaveforms;
        if (!needsMore) {
            continue;
        }
        ++unmeasured;
        EXPECT_EQ(Measure(KestrionSourceCh1, type), kNoValue) << number;
        EXPECT_EQ(slot->Configure(KestrionSourceCh1, type), S_OK) << TakeErrorText();
        EXPECT_EQ(ValueOf(slot), kNoValue) << number;
    }
    EXPECT_EQ(unmeasured, 22);
    // A source that isn't shown, and one that is flat.
    EXPECT_EQ(Measure(KestrionSourceCh4, KestrionMeasurementTypeMean), kNoValue);
    EXPECT_EQ(Measure(KestrionSourceHistogram, KestrionMeasurementTypeMean), kNoValue);
    Send("CH1:COUPLING GND");
    client_.AcquireOnce(10000);
    for (const auto type : {KestrionMeasurementTypeFrequency, KestrionMeasurementTypeRise,
                            KestrionMeasurementTypeBurst, KestrionMeasurementTypePOvershoot}) {
        EXPECT_EQ(Measure(KestrionSourceCh1, type), kNoValue) << type;
    }
    double value = 0.0;
    EXPECT_EQ(ClassMeasurement(1)->FetchWaveformMeasurement(IviScopeMeasurementPeriod, &value),
              S_OK);
    EXPECT_EQ(value, kNoValue);
}

TEST_P(MeasurementValueTest, DelayIsFromAnEdgeToAnEdge) {
    const MeasuredRecord first(Fetch(KestrionSourceCh1));
    const MeasuredRecord second(Fetch(KestrionSourceCh2));
    const auto slot = Slot(2);
    Send("MEASUREMENT:MEAS2:METHOD MINMAX");
    constexpr auto kForwards = KestrionMeasurementDelayDirectionForwards;
    constexpr auto kBackwards = KestrionMeasurementDelayDirectionBackwards;
    for (const auto direction : {kForwards, kBackwards}) {
        for (const bool firstRises : {true, false}) {
            for (const bool secondRises : {true, false}) {
                const double from = first.EdgeTimes(firstRises).front();
                const auto to = second.EdgeTimes(secondRises);
                // Forwards the next one; half a point makes up for the roundings.
                const double next = *std::ranges::lower_bound(to, from - kSine.time);
                const double expected = (direction == kForwards ? next : to.back()) - from;
                const auto edge = [](bool rises) {
                    return rises ? KestrionMeasurementEdgeRise : KestrionMeasurementEdgeFall;
                };
                double value = -1.0;
                EXPECT_EQ(
                    Immediate()->ConfigureDelay(KestrionSourceCh1, KestrionSourceCh2, direction,
                                                edge(firstRises), edge(secondRises)),
                    S_OK)
                    << TakeErrorText();
                EXPECT_EQ(Immediate()->get_Value(&value), S_OK) << TakeErrorText();
                // The sine crosses where an edge of the square wave is; which of them is next
                // is for the roundings to say.
                const double period = direction == kForwards ? 1e-4 : 1.0;
                const double off = std::remainder(value - expected, period);
                EXPECT_NEAR(off, 0.0, kSine.time + kSquare.time);
                EXPECT_EQ(slot->ConfigureDelay(KestrionSourceCh1, KestrionSourceCh2, direction,
                                               edge(firstRises), edge(secondRises)),
                          S_OK)
                    << TakeErrorText();
                EXPECT_EQ(ValueOf(slot), value);
            }
        }
    }
}

TEST_P(MeasurementValueTest, PhaseIsTheShiftInDegrees) {
    std::vector<double> shifted;
    for (int i = 0; i < 1000; ++i) {
        // 60 degrees, a sixth of a period, behind CH1.
        shifted.push_back(SineAt(-1.6e-3 + i * 4e-6 - 1e-3 / 6));
    }
    const SafeArrayPtr array(SafeArrayCreateVector(VT_R8, 0, 1000));
    std::ranges::copy(shifted, array.Elements<double>().begin());
    ASSERT_EQ(
        Transfer()->WriteWaveformToReference(KestrionReferenceRef1, array.Get(), -1.6e-3, 4e-6),
        S_OK)
        << TakeErrorText();
    Send("SELECT:REF1 1;MATH1 1;:MATH1:DEFINE \"-CH1\";:MEASUREMENT:MEAS4:METHOD MINMAX");
    client_.AcquireOnce(10000);
    const auto slot = Slot(4);
    const struct {
        KestrionSourceEnum second;
        double degrees;
    } kCases[] = {{KestrionSourceRef1, 60.0}, {KestrionSourceMath1, 180.0}};
    for (const auto& [second, degrees] : kCases) {
        const double delay = MeasuredRecord(Fetch(second)).EdgeTimes(true).front() -
                             MeasuredRecord(Fetch(KestrionSourceCh1)).EdgeTimes(true).front();
        const double computed = 360.0 * delay / MeasuredRecord(Fetch(KestrionSourceCh1)).Period();
        const double tolerance = 360.0 * 2 * kSine.time / 1e-3;
        EXPECT_NEAR(std::fmod(computed + 360.0, 360.0), degrees, tolerance);
        double value = -1.0;
        EXPECT_EQ(Immediate()->ConfigurePhase(KestrionSourceCh1, second), S_OK) << TakeErrorText();
        EXPECT_EQ(Immediate()->get_Value(&value), S_OK) << TakeErrorText();
        EXPECT_NEAR(value, degrees, tolerance);
        EXPECT_EQ(slot->ConfigurePhase(KestrionSourceCh1, second), S_OK) << TakeErrorText();
        EXPECT_NEAR(ValueOf(slot), degrees, tolerance);
    }
}

TEST_P(MeasurementValueTest, ReadingAValueSetsSixFieldsAndTellsTheUnit) {
    // As the instrument says it, in its quotes.
    static constexpr const char* kHertz = "\"Hz\"";
    const auto expectFields = [](const auto& measurement) {
        double value = -1.0;
        BstrPtr unit;
        EXPECT_EQ(measurement->ReadValue(
                      KestrionSourceCh1, KestrionSourceCh2, KestrionMeasurementTypeFrequency,
                      KestrionMeasurementDelayDirectionBackwards, KestrionMeasurementEdgeFall,
                      KestrionMeasurementEdgeFall, &value, unit.Out()),
                  S_OK)
            << TakeErrorText();
        EXPECT_NEAR(value, 1000.0, 3.0);
        EXPECT_EQ(unit.Utf8(), kHertz);
        auto first = KestrionSourceHistogram;
        auto second = KestrionSourceHistogram;
        auto type = KestrionMeasurementTypeUndefined;
        auto direction = KestrionMeasurementDelayDirectionForwards;
        auto edge1 = KestrionMeasurementEdgeRise;
        auto edge2 = KestrionMeasurementEdgeRise;
        EXPECT_EQ(measurement->Read(&first, &second, &type, &direction, &edge1, &edge2), S_OK)
            << TakeErrorText();
        EXPECT_EQ(first, KestrionSourceCh1);
        EXPECT_EQ(second, KestrionSourceCh2);
        EXPECT_EQ(type, KestrionMeasurementTypeFrequency);
        EXPECT_EQ(direction, KestrionMeasurementDelayDirectionBackwards);
        EXPECT_EQ(edge1, KestrionMeasurementEdgeFall);
        EXPECT_EQ(edge2, KestrionMeasurementEdgeFall);
        BstrPtr units;
        EXPECT_EQ(measurement->get_Units(units.Out()), S_OK) << TakeErrorText();
        EXPECT_EQ(units.Utf8(), kHertz);
    };
    expectFields(Immediate());
    expectFields(Slot(8));
}

TEST_P(MeasurementValueTest, AClearedSlotMeasuresNothing) {
    const auto slot = Slot(5);
    EXPECT_EQ(slot->Configure(KestrionSourceCh1, KestrionMeasurementTypeMaximum), S_OK);
    EXPECT_NEAR(ValueOf(slot), 1.0, 8e-3);
    EXPECT_EQ(slot->Clear(), S_OK);
    auto type = KestrionMeasurementTypeRise;
    EXPECT_EQ(slot->get_Type(&type), S_OK);
    EXPECT_EQ(type, KestrionMeasurementTypeUndefined);
    EXPECT_EQ(ValueOf(slot), kNoValue);
}

INSTANTIATE_TEST_SUITE_P(Links, MeasurementValueTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
