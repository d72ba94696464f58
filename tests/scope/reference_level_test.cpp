// Reference levels: those at the top of the tree, those of a slot, and the class's three.
#include <gmock/gmock.h>

#include "tests/scope/measurement_test.h"

namespace kestrion {
namespace {

using testing::ElementsAre;

class ReferenceLevelTest : public MeasurementTest {
  protected:
    ComPtr<IKestrionReferenceLevel> LevelsOf(std::string_view slot) {
        ComPtr<IKestrionReferenceLevel> levels;
        EXPECT_EQ(Slot(slot)->get_ReferenceLevel(levels.Out()), S_OK);
        return levels;
    }

    KestrionMeasurementMethodEnum method = KestrionMeasurementMethodHistogram;
    KestrionMeasurementUnitEnum unit = KestrionMeasurementUnitAbsolute;
    double read[4] = {-1.0, -1.0, -1.0, -1.0};
};

TEST_F(ReferenceLevelTest, TheUnitStandsTwiceInTheLineThatConfigures) {
    Connect();
    fake.Expect(
        "MEASUREMENT:METHOD MINMAX;REFLEVEL:METHOD PERCENT;PERCENT:HIGH 90;LOW 10;MID 50;MID2 "
        "45\n");
    EXPECT_EQ(Immediate()->ConfigureReferenceLevel(KestrionMeasurementMethodMinMax,
                                                   KestrionMeasurementUnitPercent, 90.0, 10.0, 50.0,
                                                   45.0),
              S_OK);
    fake.Expect(
        "MEASUREMENT:MEAS3:METHOD HISTOGRAM;REFLEVEL:METHOD ABSOLUTE;ABSOLUTE:HIGH 1.5;LOW -1.5;"
        "MID 0;MID2 0.25\n");
    EXPECT_EQ(LevelsOf("MeasurementSlot3")
                  ->Configure(KestrionMeasurementMethodHistogram, KestrionMeasurementUnitAbsolute,
                              1.5, -1.5, 0.0, 0.25),
              S_OK);
}

TEST_F(ReferenceLevelTest, ReadingTakesTheUnitAsABranchOfItsSecondQuery) {
    Connect();
    fake.Expect("MEASUREMENT:METHOD?;REFLEVEL:METHOD?\n").Reply("MEAN;PERCENT\n");
    fake.Expect("MEASUREMENT:REFLEVEL:PERCENT:HIGH?;LOW?;MID?;MID2?\n").Reply("90;10;50;45\n");
    EXPECT_EQ(
        Immediate()->ReadReferenceLevel(&method, &unit, &read[0], &read[1], &read[2], &read[3]),
        S_OK);
    EXPECT_EQ(method, KestrionMeasurementMethodMean);
    EXPECT_EQ(unit, KestrionMeasurementUnitPercent);
    EXPECT_THAT(read, ElementsAre(90.0, 10.0, 50.0, 45.0));
    fake.Expect("MEASUREMENT:MEAS7:METHOD?;REFLEVEL:METHOD?\n").Reply("MINMAX;ABSOLUTE\n");
    fake.Expect("MEASUREMENT:MEAS7:REFLEVEL:ABSOLUTE:HIGH?;LOW?;MID?;MID2?\n")
        .Reply("1.5;-1.5;0.0;0.25\n");
    EXPECT_EQ(
        LevelsOf("MeasurementSlot7")->Read(&method, &unit, &read[0], &read[1], &read[2], &read[3]),
        S_OK);
    EXPECT_EQ(method, KestrionMeasurementMethodMinMax);
    EXPECT_EQ(unit, KestrionMeasurementUnitAbsolute);
    EXPECT_THAT(read, ElementsAre(1.5, -1.5, 0.0, 0.25));
}

TEST_F(ReferenceLevelTest, WithoutAUnitThereIsNoSecondQuery) {
    Connect();
    fake.Expect("MEASUREMENT:METHOD?;REFLEVEL:METHOD?\n").Reply("MEAN;DECIBEL\n");
    EXPECT_EQ(
        Immediate()->ReadReferenceLevel(&method, &unit, &read[0], &read[1], &read[2], &read[3]),
        MakeStatus(0x80047059));
    EXPECT_THAT(read, ElementsAre(0.0, 0.0, 0.0, 0.0));
    fake.Expect("MEASUREMENT:MEAS1:METHOD?;REFLEVEL:METHOD?\n").Reply("MEDIUM;PERCENT\n");
    EXPECT_EQ(
        LevelsOf("MeasurementSlot1")->Read(&method, &unit, &read[0], &read[1], &read[2], &read[3]),
        MakeStatus(0x80047059));
}

TEST_F(ReferenceLevelTest, LevelsAtTheTopOfTheTree) {
    Connect();
    const auto immediate = Immediate();
    fake.Expect("MEASUREMENT:REFLEVEL:ABSOLUTE:HIGH 1\n");
    EXPECT_EQ(immediate->put_ReferenceLevelAbsoluteHigh(1.0), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:ABSOLUTE:LOW 2\n");
    EXPECT_EQ(immediate->put_ReferenceLevelAbsoluteLow(2.0), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:ABSOLUTE:MID 3\n");
    EXPECT_EQ(immediate->put_ReferenceLevelAbsoluteMid(3.0), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:ABSOLUTE:MID2 4\n");
    EXPECT_EQ(immediate->put_ReferenceLevelAbsoluteMid2(4.0), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:PERCENT:HIGH 5\n");
    EXPECT_EQ(immediate->put_ReferenceLevelPercentHigh(5.0), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:PERCENT:LOW 6\n");
    EXPECT_EQ(immediate->put_ReferenceLevelPercentLow(6.0), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:PERCENT:MID 7\n");
    EXPECT_EQ(immediate->put_ReferenceLevelPercentMid(7.0), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:PERCENT:MID2?\n").Reply("8.5\n");
    double value = 0.0;
    EXPECT_EQ(immediate->get_ReferenceLevelPercentMid2(&value), S_OK);
    EXPECT_EQ(value, 8.5);
    fake.Expect("MEASUREMENT:METHOD HISTOGRAM\n");
    EXPECT_EQ(immediate->put_ReferenceLevelMethod(KestrionMeasurementMethodHistogram), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:METHOD?\n").Reply("PERCENT\n");
    EXPECT_EQ(immediate->get_ReferenceLevelUnit(&unit), S_OK);
    EXPECT_EQ(unit, KestrionMeasurementUnitPercent);
}

TEST_F(ReferenceLevelTest, LevelsOfASlot) {
    Connect();
    const auto levels = LevelsOf("MeasurementSlot2");
    fake.Expect("MEASUREMENT:MEAS2:REFLEVEL:ABSOLUTE:HIGH 1\n");
    EXPECT_EQ(levels->put_AbsoluteHigh(1.0), S_OK);
    fake.Expect("MEASUREMENT:MEAS2:REFLEVEL:ABSOLUTE:LOW 2\n");
    EXPECT_EQ(levels->put_AbsoluteLow(2.0), S_OK);
    fake.Expect("MEASUREMENT:MEAS2:REFLEVEL:ABSOLUTE:MID 3\n");
    EXPECT_EQ(levels->put_AbsoluteMid(3.0), S_OK);
    fake.Expect("MEASUREMENT:MEAS2:REFLEVEL:ABSOLUTE:MID2 4\n");
    EXPECT_EQ(levels->put_AbsoluteMid2(4.0), S_OK);
    fake.Expect("MEASUREMENT:MEAS2:REFLEVEL:PERCENT:HIGH 5\n");
    EXPECT_EQ(levels->put_PercentHigh(5.0), S_OK);
    fake.Expect("MEASUREMENT:MEAS2:REFLEVEL:PERCENT:LOW 6\n");
    EXPECT_EQ(levels->put_PercentLow(6.0), S_OK);
    fake.Expect("MEASUREMENT:MEAS2:REFLEVEL:PERCENT:MID 7\n");
    EXPECT_EQ(levels->put_PercentMid(7.0), S_OK);
    fake.Expect("MEASUREMENT:MEAS2:REFLEVEL:PERCENT:MID2 8\n");
    EXPECT_EQ(levels->put_PercentMid2(8.0), S_OK);
    fake.Expect("MEASUREMENT:MEAS2:METHOD?\n").Reply("MEAN\n");
    EXPECT_EQ(levels->get_Method(&method), S_OK);
    EXPECT_EQ(method, KestrionMeasurementMethodMean);
    fake.Expect("MEASUREMENT:MEAS2:REFLEVEL:METHOD ABSOLUTE\n");
    EXPECT_EQ(levels->put_Unit(KestrionMeasurementUnitAbsolute), S_OK);
}

TEST_F(ReferenceLevelTest, TheClassHasThreeAbsoluteLevels) {
    Connect();
    ComPtr<IIviScopeReferenceLevel> levels;
    ASSERT_EQ(As<IIviScope>()->get_ReferenceLevel(levels.Out()), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:ABSOLUTE:LOW -0.5;MID 0.25;HIGH 1\n");
    EXPECT_EQ(levels->Configure(-0.5, 0.25, 1.0), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:ABSOLUTE:HIGH 2\n");
    EXPECT_EQ(levels->put_High(2.0), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:ABSOLUTE:LOW 0.5\n");
    EXPECT_EQ(levels->put_Low(0.5), S_OK);
    fake.Expect("MEASUREMENT:REFLEVEL:ABSOLUTE:MID?\n").Reply("1.25\n");
    double mid = 0.0;
    EXPECT_EQ(levels->get_Mid(&mid), S_OK);
    EXPECT_EQ(mid, 1.25);
}

TEST_F(ReferenceLevelTest, TheClassIsSimulated) {
    Simulate();
    const auto levels = As<IIviScopeReferenceLevel>();
    EXPECT_EQ(levels->put_High(2.0), S_OK);
    double high = 0.0;
    EXPECT_EQ(levels->get_High(&high), S_OK);
    EXPECT_EQ(high, 2.0);
    EXPECT_THAT(fake.Calls(), testing::IsEmpty());
}

}  // namespace
}  // namespace kestrion
