// IKestrionTriggerAEdge and IKestrionTriggerBEdge.
#include "tests/scope/trigger_test.h"

namespace kestrion {
namespace {

class TriggerEdgeTest : public TriggerTest {
  protected:
    ComPtr<IKestrionTriggerAEdge> A() { return As<IKestrionTriggerAEdge>(); }
    ComPtr<IKestrionTriggerBEdge> B() { return As<IKestrionTriggerBEdge>(); }

    template <typename Edge>
    void CheckShared(const ComPtr<Edge>& edge, const std::string& root) {
        CheckReal(edge, &Edge::get_Level, &Edge::put_Level, root + ":LEVEL");
        CheckWrittenWords(edge, &Edge::put_LevelEnum, root + ":LEVEL", kLogicFamilies);
        CheckWords(edge, &Edge::get_Slope, &Edge::put_Slope, root + ":EDGE:SLOPE", kSlopes);
        CheckWords(edge, &Edge::get_Source, &Edge::put_Source, root + ":EDGE:SOURCE",
                   {{"CH1", 0}, {"CH2", 1}, {"CH3", 2}, {"CH4", 3}, {"AUXILIARY", 4}, {"LINE", 5}});
        fake.Expect(root + " SETLEVEL\n");
        EXPECT_EQ(edge->ConfigureLevelTo50Percent(), S_OK);
    }
};

TEST_F(TriggerEdgeTest, AConfiguresTypeLevelSourceSlopeAndCoupling) {
    Connect();
    fake.Expect("TRIGGER:A:TYPE EDGE;LEVEL 0.5;EDGE:SOURCE CH2;SLOPE RISE;COUPLING DC\n");
    EXPECT_EQ(A()->Configure(KestrionTriggerSourceCh2, 0.5, KestrionTriggerSlopeRise,
                             KestrionTriggerAEdgeCouplingDC),
              S_OK);
}

TEST_F(TriggerEdgeTest, BConfiguresWithoutAType) {
    Connect();
    fake.Expect("TRIGGER:B:LEVEL 0.5;EDGE:SOURCE AUXILIARY;SLOPE FALL;COUPLING NOISEREJ\n");
    EXPECT_EQ(B()->Configure(KestrionTriggerSourceAux, 0.5, KestrionTriggerSlopeFall,
                             KestrionTriggerBEdgeCouplingNoiseReject),
              S_OK);
}

TEST_F(TriggerEdgeTest, BothAreReadInOneQuery) {
    Connect();
    auto source = KestrionTriggerSourceLine;
    double level = 0.0;
    auto slope = KestrionTriggerSlopeFall;
    auto couplingA = KestrionTriggerAEdgeCouplingAC;
    fake.Expect("TRIGGER:A:LEVEL?;EDGE:SOURCE?;SLOPE?;COUPLING?\n").Reply("1.4;CH3;RISE;HFREJ\n");
    EXPECT_EQ(A()->Read(&source, &level, &slope, &couplingA), S_OK);
    EXPECT_EQ(source, KestrionTriggerSourceCh3);
    EXPECT_EQ(level, 1.4);
    EXPECT_EQ(slope, KestrionTriggerSlopeRise);
    EXPECT_EQ(couplingA, KestrionTriggerAEdgeCouplingHFReject);
    auto couplingB = KestrionTriggerBEdgeCouplingAC;
    fake.Expect("TRIGGER:B:LEVEL?;EDGE:SOURCE?;SLOPE?;COUPLING?\n").Reply("-2.0;CH1;FALL;DC\n");
    EXPECT_EQ(B()->Read(&source, &level, &slope, &couplingB), S_OK);
    EXPECT_EQ(source, KestrionTriggerSourceCh1);
    EXPECT_EQ(level, -2.0);
    EXPECT_EQ(slope, KestrionTriggerSlopeFall);
    EXPECT_EQ(couplingB, KestrionTriggerBEdgeCouplingDC);
}

TEST_F(TriggerEdgeTest, PropertiesOfA) {
    Connect();
    CheckShared(A(), "TRIGGER:A");
    CheckWords(A(), &IKestrionTriggerAEdge::get_Coupling, &IKestrionTriggerAEdge::put_Coupling,
               "TRIGGER:A:EDGE:COUPLING",
               {{"AC", 0}, {"DC", 1}, {"HFREJ", 3}, {"LFREJ", 4}, {"NOISEREJ", 5}});
}

TEST_F(TriggerEdgeTest, PropertiesOfB) {
    Connect();
    CheckShared(B(), "TRIGGER:B");
    CheckWords(B(), &IKestrionTriggerBEdge::get_Coupling, &IKestrionTriggerBEdge::put_Coupling,
               "TRIGGER:B:EDGE:COUPLING", {{"AC", 0}, {"DC", 1}, {"NOISEREJ", 2}});
}

TEST_F(TriggerEdgeTest, EitherSlopeIsRefusedOnOldFamiliesBeforeAnythingIsSent) {
    Connect("LK7054");
    ExpectNumberRefused(A()->put_Slope(KestrionTriggerSlopeEither), "241");
    ExpectNumberRefused(B()->put_Slope(KestrionTriggerSlopeEither), "241");
    ExpectNumberRefused(B()->Configure(KestrionTriggerSourceCh1, 0.0, KestrionTriggerSlopeEither,
                                       KestrionTriggerBEdgeCouplingDC),
                        "241");
    fake.Expect("TRIGGER:A:EDGE:SLOPE RISE\n");
    EXPECT_EQ(A()->put_Slope(KestrionTriggerSlopeRise), S_OK);
}

TEST_F(TriggerEdgeTest, AReportsEitherSlopeOnOldFamiliesAndSendsTheLineAllTheSame) {
    Connect("HR5104");
    fake.Expect("TRIGGER:A:TYPE EDGE;LEVEL 0.5;EDGE:SOURCE CH1;SLOPE EITHER;COUPLING AC\n");
    EXPECT_EQ(A()->Configure(KestrionTriggerSourceCh1, 0.5, KestrionTriggerSlopeEither,
                             KestrionTriggerAEdgeCouplingAC),
              S_OK);
    EXPECT_THAT(ErrorText(), testing::HasSubstr("value KestrionTriggerSlopeEither passed as the "
                                                "value for parameter Slope in method Configure."));
}

class EitherSlopeTest : public TriggerTest, public testing::WithParamInterface<const char*> {};

TEST_P(EitherSlopeTest, IsWrittenOnFourFamilies) {
    Connect(GetParam());
    fake.Expect("TRIGGER:A:EDGE:SLOPE EITHER\n");
    EXPECT_EQ(As<IKestrionTriggerAEdge>()->put_Slope(KestrionTriggerSlopeEither), S_OK);
    fake.Expect("TRIGGER:B:EDGE:SLOPE EITHER\n");
    EXPECT_EQ(As<IKestrionTriggerBEdge>()->put_Slope(KestrionTriggerSlopeEither), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Families, EitherSlopeTest,
                         testing::Values("LK7254B", "PL7254C", "MR5104B", "SW72004C"));

TEST_F(TriggerEdgeTest, AModelOfTwoChannelsRefusesTheOthersAsSources) {
    Connect(kTwoChannels);
    ExpectNumberRefused(A()->put_Source(KestrionTriggerSourceCh3), "245");
    ExpectNumberRefused(A()->put_Source(KestrionTriggerSourceCh4), "245");
    ExpectNumberRefused(A()->Configure(KestrionTriggerSourceCh4, 0.5, KestrionTriggerSlopeRise,
                                       KestrionTriggerAEdgeCouplingAC),
                        "245");
    fake.Expect("TRIGGER:A:EDGE:SOURCE CH2\n");
    EXPECT_EQ(A()->put_Source(KestrionTriggerSourceCh2), S_OK);
    fake.Expect("TRIGGER:A:EDGE:SOURCE AUXILIARY\n");
    EXPECT_EQ(A()->put_Source(KestrionTriggerSourceAux), S_OK);
    // The B event takes what it is given.
    fake.Expect("TRIGGER:B:EDGE:SOURCE CH3\n");
    EXPECT_EQ(B()->put_Source(KestrionTriggerSourceCh3), S_OK);
}

}  // namespace
}  // namespace kestrion
