// IKestrionMeasurementImmediate: the measurement that takes no slot.
#include <gmock/gmock.h>

#include "tests/scope/measurement_test.h"

namespace kestrion {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class MeasurementImmediateTest : public MeasurementTest {};

TEST_F(MeasurementImmediateTest, Configure) {
    Connect();
    fake.Expect("MEASUREMENT:IMMED:SOURCE1 CH2;TYPE FREQUENCY\n");
    EXPECT_EQ(Immediate()->Configure(KestrionSourceCh2, KestrionMeasurementTypeFrequency), S_OK);
    fake.Expect("MEASUREMENT:IMMED:SOURCE1 HISTOGRAM;TYPE PEAKHITS\n");
    EXPECT_EQ(Immediate()->Configure(KestrionSourceHistogram, KestrionMeasurementTypePeakHits),
              S_OK);
}

TEST_F(MeasurementImmediateTest, ConfigureDelayAndPhase) {
    Connect();
    fake.Expect(
        "MEASUREMENT:IMMED:SOURCE1 CH1;SOURCE2 MATH3;TYPE DELAY;DELAY:DIRECTION BACKWARDS;"
        "EDGE1 RISE;EDGE2 FALL\n");
    EXPECT_EQ(Immediate()->ConfigureDelay(KestrionSourceCh1, KestrionSourceMath3,
                                          KestrionMeasurementDelayDirectionBackwards,
                                          KestrionMeasurementEdgeRise, KestrionMeasurementEdgeFall),
              S_OK);
    fake.Expect("MEASUREMENT:IMMED:SOURCE1 REF4;SOURCE2 CH3;TYPE PHASE\n");
    EXPECT_EQ(Immediate()->ConfigurePhase(KestrionSourceRef4, KestrionSourceCh3), S_OK);
}

TEST_F(MeasurementImmediateTest, AReadValueSetsSixFieldsSoThatALaterReadFindsThem) {
    Connect();
    fake.Expect(
        "MEASUREMENT:IMMED:SOURCE1 CH1;SOURCE2 CH2;TYPE PK2PK;DELAY:DIRECTION FORWARDS;"
        "EDGE1 FALL;EDGE2 RISE\n");
    fake.Expect("MEASUREMENT:IMMED:VALUE?;UNIT?\n").Reply("1.0240E+0;\"V\"\n");
    double value = 0.0;
    BstrPtr units;
    EXPECT_EQ(Immediate()->ReadValue(
                  KestrionSourceCh1, KestrionSourceCh2, KestrionMeasurementTypePk2Pk,
                  KestrionMeasurementDelayDirectionForwards, KestrionMeasurementEdgeFall,
                  KestrionMeasurementEdgeRise, &value, units.Out()),
              S_OK);
    EXPECT_DOUBLE_EQ(value, 1.024);
    EXPECT_EQ(units.Utf8(), "\"V\"");

    fake.Expect("MEASUREMENT:IMMED:SOURCE1?;SOURCE2?;TYPE?;DELAY:DIRECTION?;EDGE1?;EDGE2?\n")
        .Reply("CH1;CH2;PK2PK;FORWARDS;FALL;RISE\n");
    auto source1 = KestrionSourceHistogram;
    auto source2 = KestrionSourceHistogram;
    auto type = KestrionMeasurementTypeUndefined;
    auto direction = KestrionMeasurementDelayDirectionBackwards;
    auto edge1 = KestrionMeasurementEdgeRise;
    auto edge2 = KestrionMeasurementEdgeFall;
    EXPECT_EQ(Immediate()->Read(&source1, &source2, &type, &direction, &edge1, &edge2), S_OK);
    EXPECT_EQ(source1, KestrionSourceCh1);
    EXPECT_EQ(source2, KestrionSourceCh2);
    EXPECT_EQ(type, KestrionMeasurementTypePk2Pk);
    EXPECT_EQ(direction, KestrionMeasurementDelayDirectionForwards);
    EXPECT_EQ(edge1, KestrionMeasurementEdgeFall);
    EXPECT_EQ(edge2, KestrionMeasurementEdgeRise);
}

TEST_F(MeasurementImmediateTest, AReadValueThatCantBeWrittenAsksForNothing) {
    Connect();
    fake.ForgetCalls();
    double value = 1.0;
    BstrPtr units;
    EXPECT_EQ(Immediate()->ReadValue(
                  static_cast<KestrionSourceEnum>(13), KestrionSourceCh2,
                  KestrionMeasurementTypePk2Pk, KestrionMeasurementDelayDirectionForwards,
                  KestrionMeasurementEdgeFall, KestrionMeasurementEdgeRise, &value, units.Out()),
              MakeStatus(0x80047010));
    EXPECT_THAT(fake.CallsOf("viWrite"), IsEmpty());
    fake.FailFunction("viWrite", static_cast<visa::ViStatus>(0xBFFF003E));
    EXPECT_TRUE(Failed(Immediate()->ReadValue(
        KestrionSourceCh1, KestrionSourceCh2, KestrionMeasurementTypePk2Pk,
        KestrionMeasurementDelayDirectionForwards, KestrionMeasurementEdgeFall,
        KestrionMeasurementEdgeRise, &value, units.Out())));
    EXPECT_THAT(fake.CallsOf("viWrite"), testing::SizeIs(1));
    EXPECT_EQ(value, 0.0);
    fake.FailFunction("viWrite", 0);
}

TEST_F(MeasurementImmediateTest, AVeryLargeValueIsHandedBackWithAGoodStatus) {
    Connect();
    fake.Expect("MEASUREMENT:IMMED:VALUE?\n").Reply("9.9100E+37\n");
    double value = 0.0;
    EXPECT_EQ(Immediate()->get_Value(&value), S_OK);
    EXPECT_DOUBLE_EQ(value, 9.91e37);
}

TEST_F(MeasurementImmediateTest, Properties) {
    Connect();
    const auto immediate = Immediate();
    fake.Expect("MEASUREMENT:IMMED:DELAY:DIRECTION?\n").Reply("BACKWARDS\n");
    auto direction = KestrionMeasurementDelayDirectionForwards;
    EXPECT_EQ(immediate->get_DelayDirection(&direction), S_OK);
    EXPECT_EQ(direction, KestrionMeasurementDelayDirectionBackwards);
    fake.Expect("MEASUREMENT:IMMED:DELAY:EDGE1 RISE\n");
    EXPECT_EQ(immediate->put_DelayEdge1(KestrionMeasurementEdgeRise), S_OK);
    fake.Expect("MEASUREMENT:IMMED:DELAY:EDGE2?\n").Reply("RISE\n");
    auto edge = KestrionMeasurementEdgeFall;
    EXPECT_EQ(immediate->get_DelayEdge2(&edge), S_OK);
    EXPECT_EQ(edge, KestrionMeasurementEdgeRise);
    fake.Expect("MEASUREMENT:IMMED:SOURCE1?\n").Reply("HIS\n");
    auto source = KestrionSourceCh1;
    EXPECT_EQ(immediate->get_Source1(&source), S_OK);
    EXPECT_EQ(source, KestrionSourceHistogram);
    fake.Expect("MEASUREMENT:IMMED:SOURCE2 MATH1\n");
    EXPECT_EQ(immediate->put_Source2(KestrionSourceMath1), S_OK);
    fake.Expect("MEASUREMENT:IMMED:NOISE LOW\n");
    EXPECT_EQ(immediate->put_Noise(KestrionMeasurementNoiseLow), S_OK);
    fake.Expect("MEASUREMENT:IMMED:UNITS?\n").Reply("\"Hz\"\n");
    BstrPtr units;
    EXPECT_EQ(immediate->get_Units(units.Out()), S_OK);
    EXPECT_EQ(units.Utf8(), "\"Hz\"");
}

TEST_F(MeasurementImmediateTest, WordsOfEveryType) {
    Connect();
    const auto immediate = Immediate();
    const char* const words[] = {
        "RISE",       "FALL",         "FREQUENCY",  "PERIOD",    "RMS",      "PK2PK",
        "MAXIMUM",    "MINIMUM",      "HIGH",       "LOW",       "MEAN",     "NWIDTH",
        "PWIDTH",     "NDUTY",        "PDUTY",      "AMPLITUDE", "CRMS",     "CMEAN",
        "POVERSHOOT", "NOVERSHOOT",   "AREA",       "CAREA",     "BURST",    "DELAY",
        "PHASE",      "HITS",         "MEDIAN",     "PEAKHITS",  "SIGMA1",   "SIGMA2",
        "SIGMA3",     "STDDEV",       "WAVEFORMS",  "EYEHEIGHT", "EYEWIDTH", "PTOP",
        "PBASE",      "EXTINCTRATIO", "EXTINCTPCT", "EXTINCTDB", "PCTCROSS", "PCROSS",
        "TCROSS",     "QFACTOR",      "SNRATIO",    "PKPKNOISE", "RMSNOISE", "PKPKJITTER",
        "RMSJITTER",  "SIXSIGMAJIT",  "DISTDUTY",   "UNDEFINED"};
    static_assert(std::size(words) == 52);
    int number = 0;
    for (const char* word : words) {
        const auto type = static_cast<KestrionMeasurementTypeEnum>(number++);
        fake.Expect("MEASUREMENT:IMMED:TYPE " + std::string(word) + "\n");
        EXPECT_EQ(immediate->put_Type(type), S_OK);
        fake.Expect("MEASUREMENT:IMMED:TYPE?\n").Reply(std::string(word) + "\n");
        auto read = static_cast<KestrionMeasurementTypeEnum>(99);
        EXPECT_EQ(immediate->get_Type(&read), S_OK);
        EXPECT_EQ(read, type);
    }
}

// A type is refused on a model of both families, and each model is of one.
TEST_F(MeasurementImmediateTest, TypesOfCommunicationSignalsGoToAModelOfOneHeronFamily) {
    Connect("HR5104");
    fake.Expect("MEASUREMENT:IMMED:SOURCE1 CH1;TYPE EYEHEIGHT\n");
    EXPECT_EQ(Immediate()->Configure(KestrionSourceCh1, KestrionMeasurementTypeEyeHeight), S_OK);
    fake.Expect("MEASUREMENT:IMMED:TYPE DISTDUTY\n");
    EXPECT_EQ(Immediate()->put_Type(KestrionMeasurementTypeDutyCycleDistortion), S_OK);
}

TEST_F(MeasurementImmediateTest, ATwoChannelModelRefusesTheThirdAndFourthOfEachKind) {
    Connect("PL77002SX");
    for (const int source : {2, 3, 6, 7, 10, 11}) {
        EXPECT_EQ(Immediate()->Configure(static_cast<KestrionSourceEnum>(source),
                                         KestrionMeasurementTypeMean),
                  MakeStatus(0x80020009))
            << source;
        EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 245"));
    }
    for (const auto& [source, word] : {std::pair(1, "CH2"), std::pair(5, "MATH2"),
                                       std::pair(9, "REF2"), std::pair(12, "HISTOGRAM")}) {
        fake.Expect("MEASUREMENT:IMMED:SOURCE1 " + std::string(word) + ";TYPE MEAN\n");
        EXPECT_EQ(Immediate()->Configure(static_cast<KestrionSourceEnum>(source),
                                         KestrionMeasurementTypeMean),
                  S_OK);
    }
}

}  // namespace
}  // namespace kestrion
