// IKestrionMeasurements and IKestrionMeasurement: what measurements share, and the slots.
#include <gmock/gmock.h>

#include "tests/scope/measurement_test.h"

namespace kestrion {
namespace {

using testing::HasSubstr;

class MeasurementSlotTest : public MeasurementTest {};

TEST_F(MeasurementSlotTest, EightSlotsWhoseNumberIsTheIndexPlusOne) {
    Connect();
    LONG count = 0;
    EXPECT_EQ(Measurements()->get_Count(&count), S_OK);
    EXPECT_EQ(count, 8);
    BstrPtr name;
    EXPECT_EQ(Measurements()->get_Name(8, name.Out()), S_OK);
    EXPECT_EQ(name.Utf8(), "MeasurementSlot8");
    fake.Expect("MEASUREMENT:MEAS8:SOURCE1 CH4;TYPE RMS\n");
    EXPECT_EQ(Slot("MeasurementSlot8")->Configure(KestrionSourceCh4, KestrionMeasurementTypeRMS),
              S_OK);
}

TEST_F(MeasurementSlotTest, ConfigureDelayAndPhase) {
    Connect();
    fake.Expect(
        "MEASUREMENT:MEAS2:SOURCE1 CH1;SOURCE2 CH2;TYPE DELAY;DELAY:DIRECTION FORWARDS;"
        "EDGE1 FALL;EDGE2 RISE\n");
    EXPECT_EQ(Slot("MeasurementSlot2")
                  ->ConfigureDelay(KestrionSourceCh1, KestrionSourceCh2,
                                   KestrionMeasurementDelayDirectionForwards,
                                   KestrionMeasurementEdgeFall, KestrionMeasurementEdgeRise),
              S_OK);
    fake.Expect("MEASUREMENT:MEAS3:SOURCE1 MATH1;SOURCE2 REF1;TYPE PHASE\n");
    EXPECT_EQ(Slot("MeasurementSlot3")->ConfigurePhase(KestrionSourceMath1, KestrionSourceRef1),
              S_OK);
}

TEST_F(MeasurementSlotTest, ReadAndReadValue) {
    Connect();
    const auto slot = Slot("MeasurementSlot1");
    fake.Expect("MEASUREMENT:MEAS1:SOURCE1?;SOURCE2?;TYPE?;DELAY:DIRECTION?;EDGE1?;EDGE2?\n")
        .Reply("REF2;MATH4;DELAY;BACKWARDS;RISE;FALL\n");
    auto source1 = KestrionSourceCh1;
    auto source2 = KestrionSourceCh1;
    auto type = KestrionMeasurementTypeRise;
    auto direction = KestrionMeasurementDelayDirectionForwards;
    auto edge1 = KestrionMeasurementEdgeFall;
    auto edge2 = KestrionMeasurementEdgeRise;
    EXPECT_EQ(slot->Read(&source1, &source2, &type, &direction, &edge1, &edge2), S_OK);
    EXPECT_EQ(source1, KestrionSourceRef2);
    EXPECT_EQ(source2, KestrionSourceMath4);
    EXPECT_EQ(type, KestrionMeasurementTypeDelay);
    EXPECT_EQ(direction, KestrionMeasurementDelayDirectionBackwards);
    EXPECT_EQ(edge1, KestrionMeasurementEdgeRise);
    EXPECT_EQ(edge2, KestrionMeasurementEdgeFall);
    fake.Expect(
        "MEASUREMENT:MEAS1:SOURCE1 CH3;SOURCE2 CH4;TYPE PHASE;DELAY:DIRECTION BACKWARDS;"
        "EDGE1 RISE;EDGE2 RISE\n");
    fake.Expect("MEASUREMENT:MEAS1:VALUE?;UNIT?\n").Reply("-90.5;deg\n");
    double value = 0.0;
    BstrPtr units;
    EXPECT_EQ(
        slot->ReadValue(KestrionSourceCh3, KestrionSourceCh4, KestrionMeasurementTypePhase,
                        KestrionMeasurementDelayDirectionBackwards, KestrionMeasurementEdgeRise,
                        KestrionMeasurementEdgeRise, &value, units.Out()),
        S_OK);
    EXPECT_EQ(value, -90.5);
    EXPECT_EQ(units.Utf8(), "deg");
}

TEST_F(MeasurementSlotTest, ClearWritesUndefinedAsPartOfTheLine) {
    Connect();
    fake.Expect("MEASUREMENT:MEAS5:TYPE UNDEFINED\n");
    EXPECT_EQ(Slot("MeasurementSlot5")->Clear(), S_OK);
}

TEST_F(MeasurementSlotTest, StatisticsAndState) {
    Connect();
    const auto slot = Slot("MeasurementSlot4");
    LONG count = 0;
    double real = 0.0;
    fake.Expect("MEASUREMENT:MEAS4:COUNT?\n").Reply("37\n");
    EXPECT_EQ(slot->get_Count(&count), S_OK);
    EXPECT_EQ(count, 37);
    fake.Expect("MEASUREMENT:MEAS4:MAXIMUM?\n").Reply("4.0\n");
    EXPECT_EQ(slot->get_Maximum(&real), S_OK);
    EXPECT_EQ(real, 4.0);
    fake.Expect("MEASUREMENT:MEAS4:MEAN?\n").Reply("3.0\n");
    EXPECT_EQ(slot->get_Mean(&real), S_OK);
    EXPECT_EQ(real, 3.0);
    fake.Expect("MEASUREMENT:MEAS4:MINIMUM?\n").Reply("2.0\n");
    EXPECT_EQ(slot->get_Minimum(&real), S_OK);
    EXPECT_EQ(real, 2.0);
    fake.Expect("MEASUREMENT:MEAS4:STDDEV?\n").Reply("0.5\n");
    EXPECT_EQ(slot->get_StandardDeviation(&real), S_OK);
    EXPECT_EQ(real, 0.5);
    fake.Expect("MEASUREMENT:MEAS4:STATE 1\n");
    EXPECT_EQ(slot->put_State(VARIANT_TRUE), S_OK);
    fake.Expect("MEASUREMENT:MEAS4:STATE?\n").Reply("0\n");
    VARIANT_BOOL state = VARIANT_TRUE;
    EXPECT_EQ(slot->get_State(&state), S_OK);
    EXPECT_EQ(state, VARIANT_FALSE);
    fake.Expect("MEASUREMENT:STATISTICS:COUNT RESET\n");
    EXPECT_EQ(slot->Reset(), S_OK);
}

TEST_F(MeasurementSlotTest, Properties) {
    Connect();
    const auto slot = Slot("MeasurementSlot6");
    fake.Expect("MEASUREMENT:MEAS6:DELAY:DIRECTION FORWARDS\n");
    EXPECT_EQ(slot->put_DelayDirection(KestrionMeasurementDelayDirectionForwards), S_OK);
    fake.Expect("MEASUREMENT:MEAS6:DELAY:EDGE1 FALL\n");
    EXPECT_EQ(slot->put_DelayEdge1(KestrionMeasurementEdgeFall), S_OK);
    fake.Expect("MEASUREMENT:MEAS6:DELAY:EDGE2 RISE\n");
    EXPECT_EQ(slot->put_DelayEdge2(KestrionMeasurementEdgeRise), S_OK);
    fake.Expect("MEASUREMENT:MEAS6:SOURCE1 CH1\n");
    EXPECT_EQ(slot->put_Source1(KestrionSourceCh1), S_OK);
    fake.Expect("MEASUREMENT:MEAS6:SOURCE2?\n").Reply("CH4\n");
    auto source = KestrionSourceCh1;
    EXPECT_EQ(slot->get_Source2(&source), S_OK);
    EXPECT_EQ(source, KestrionSourceCh4);
    fake.Expect("MEASUREMENT:MEAS6:TYPE AMPLITUDE\n");
    EXPECT_EQ(slot->put_Type(KestrionMeasurementTypeAmplitude), S_OK);
    fake.Expect("MEASUREMENT:MEAS6:NOISE?\n").Reply("HIGH\n");
    auto noise = KestrionMeasurementNoiseLow;
    EXPECT_EQ(slot->get_Noise(&noise), S_OK);
    EXPECT_EQ(noise, KestrionMeasurementNoiseHigh);
    fake.Expect("MEASUREMENT:MEAS6:UNITS?\n").Reply("\"s\"\n");
    BstrPtr units;
    EXPECT_EQ(slot->get_Units(units.Out()), S_OK);
    EXPECT_EQ(units.Utf8(), "\"s\"");
    fake.Expect("MEASUREMENT:MEAS6:VALUE?\n").Reply("9.91E+37\n");
    double value = 0.0;
    EXPECT_EQ(slot->get_Value(&value), S_OK);
    EXPECT_DOUBLE_EQ(value, 9.91e37);
}

TEST_F(MeasurementSlotTest, ATwoChannelModelRefusesTheFourthReference) {
    Connect("PL77002SX");
    EXPECT_EQ(Slot("MeasurementSlot1")->Configure(KestrionSourceRef4, KestrionMeasurementTypeMean),
              MakeStatus(0x80020009));
    EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 245"));
}

// A type is refused on a model of both families, and each model is of one.
TEST_F(MeasurementSlotTest, TypesOfCommunicationSignalsGoToAModelOfOneHeronFamily) {
    Connect("HR5054B");
    fake.Expect("MEASUREMENT:MEAS1:SOURCE1 CH1;TYPE QFACTOR\n");
    EXPECT_EQ(
        Slot("MeasurementSlot1")->Configure(KestrionSourceCh1, KestrionMeasurementTypeQFactor),
        S_OK);
}

TEST_F(MeasurementSlotTest, SignalTypeOfASource) {
    Connect();
    fake.Expect("MEASUREMENT:SOURCE2:SIGTYPE EYE\n");
    EXPECT_EQ(Measurements()->SetSourceSignalType(KestrionMeasurementSource2,
                                                  KestrionMeasurementSignalTypeEye),
              S_OK);
    fake.Expect("MEASUREMENT:SOURCE1:SIGTYPE?\n").Reply("PULSE\n");
    auto type = KestrionMeasurementSignalTypeEye;
    EXPECT_EQ(Measurements()->GetSourceSignalType(KestrionMeasurementSource1, &type), S_OK);
    EXPECT_EQ(type, KestrionMeasurementSignalTypePulse);
}

TEST_F(MeasurementSlotTest, Annotations) {
    Connect();
    const auto measurements = Measurements();
    fake.Expect("MEASUREMENT:ANNOTATION:IMMEDSTATE 1\n");
    EXPECT_EQ(measurements->put_AnnotationImmedState(VARIANT_TRUE), S_OK);
    fake.Expect("MEASUREMENT:ANNOTATION:NUMX?\n").Reply("2\n");
    LONG number = 0;
    EXPECT_EQ(measurements->get_AnnotationNumX(&number), S_OK);
    EXPECT_EQ(number, 2);
    fake.Expect("MEASUREMENT:ANNOTATION:NUMY?\n").Reply("4\n");
    EXPECT_EQ(measurements->get_AnnotationNumY(&number), S_OK);
    EXPECT_EQ(number, 4);
    fake.Expect("MEASUREMENT:ANNOTATION:STATE MEAS8\n");
    EXPECT_EQ(measurements->put_AnnotationState(KestrionMeasurementAnnotationStateMeas8), S_OK);
    fake.Expect("MEASUREMENT:ANNOTATION:TYPE?\n").Reply("DETAILED\n");
    auto type = KestrionMeasurementAnnotationTypeStandard;
    EXPECT_EQ(measurements->get_AnnotationType(&type), S_OK);
    EXPECT_EQ(type, KestrionMeasurementAnnotationTypeDetailed);
    double where = 0.0;
    fake.Expect("MEASUREMENT:ANNOTATION:X1?\n").Reply("1.5E-6\n");
    EXPECT_EQ(measurements->get_AnnotationX(KestrionMeasurementAnnotation1, &where), S_OK);
    EXPECT_DOUBLE_EQ(where, 1.5e-6);
    fake.Expect("MEASUREMENT:ANNOTATION:Y6?\n").Reply("-0.25\n");
    EXPECT_EQ(measurements->get_AnnotationY(KestrionMeasurementAnnotation6, &where), S_OK);
    EXPECT_DOUBLE_EQ(where, -0.25);
    EXPECT_EQ(
        measurements->get_AnnotationY(static_cast<KestrionMeasurementAnnotationEnum>(6), &where),
        MakeStatus(0x80047010));
}

TEST_F(MeasurementSlotTest, GatingMethodAndStatistics) {
    Connect();
    const auto measurements = Measurements();
    const char* const gatings[] = {"OFF",   "ON",    "CURSOR", "ZOOM1",
                                   "ZOOM2", "ZOOM3", "ZOOM4",  "ZOOM"};
    int number = 0;
    for (const char* word : gatings) {
        fake.Expect("MEASUREMENT:GATING " + std::string(word) + "\n");
        EXPECT_EQ(measurements->put_Gating(static_cast<KestrionMeasurementGatingEnum>(number++)),
                  S_OK);
    }
    fake.Expect("MEASUREMENT:METHOD MEAN\n");
    EXPECT_EQ(measurements->put_Method(KestrionMeasurementMethodMean), S_OK);
    fake.Expect("MEASUREMENT:METHOD?\n").Reply("MINMAX\n");
    auto method = KestrionMeasurementMethodMean;
    EXPECT_EQ(measurements->get_Method(&method), S_OK);
    EXPECT_EQ(method, KestrionMeasurementMethodMinMax);
    fake.Expect("MEASUREMENT:STATISTICS:MODE VALUEMEAN\n");
    EXPECT_EQ(measurements->put_StatisticsMode(KestrionMeasurementStatisticsValueMean), S_OK);
    fake.Expect("MEASUREMENT:STATISTICS:COUNT RESET\n");
    EXPECT_EQ(measurements->Reset(), S_OK);
}

TEST_F(MeasurementSlotTest, TheHeronSeriesRefusesNumberedZoomAreasAndTheMeanMethod) {
    Connect("HR5104");
    const auto measurements = Measurements();
    for (const int gating : {3, 4, 5, 6}) {
        EXPECT_EQ(measurements->put_Gating(static_cast<KestrionMeasurementGatingEnum>(gating)),
                  MakeStatus(0x80047013))
            << gating;
        EXPECT_THAT(ErrorText(), HasSubstr("value Gating passed as the value for parameter val"));
    }
    EXPECT_EQ(measurements->put_Method(KestrionMeasurementMethodMean), MakeStatus(0x80047013));
    EXPECT_THAT(ErrorText(), HasSubstr("value Method passed as the value for parameter val"));
    fake.Expect("MEASUREMENT:GATING ZOOM\n");
    EXPECT_EQ(measurements->put_Gating(KestrionMeasurementGatingZoom), S_OK);
    fake.Expect("MEASUREMENT:METHOD MINMAX\n");
    EXPECT_EQ(measurements->put_Method(KestrionMeasurementMethodMinMax), S_OK);
}

TEST_F(MeasurementSlotTest, TheHeronBSeriesTakesThem) {
    Connect("HR5054B");
    fake.Expect("MEASUREMENT:GATING ZOOM2\n");
    EXPECT_EQ(Measurements()->put_Gating(KestrionMeasurementGatingZoom2), S_OK);
    fake.Expect("MEASUREMENT:METHOD MEAN\n");
    EXPECT_EQ(Measurements()->put_Method(KestrionMeasurementMethodMean), S_OK);
}

}  // namespace
}  // namespace kestrion
