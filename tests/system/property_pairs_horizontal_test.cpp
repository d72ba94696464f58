// The time base.
#include "tests/system/property_pairs.h"

namespace kestrion {
namespace {

class PairsOfHorizontal : public PropertyPairs {};

TEST_P(PairsOfHorizontal, PositionScaleAndLength) {
    Open();
    const auto horizontal = client_.As<IKestrionHorizontal>();
    constexpr auto kPut = &IKestrionHorizontal::Configure;
    constexpr auto kRead = &IKestrionHorizontal::Read;
    PutAndRead(*horizontal, kPut, kRead, 0.0, 10e-12, 1000);
    PutAndRead(*horizontal, kPut, kRead, 100.0, 1000.0, 100'000'000);
    PutAndRead(*horizontal, kPut, kRead, 12.5, 2e-6, 5000);
}

TEST_P(PairsOfHorizontal, ModelOfTheTimeBase) {
    Open();
    const auto horizontal = client_.As<IKestrionHorizontal>();
    // The length is put last and stays; the rate that follows is points over ten divisions.
    constexpr auto kPut = &IKestrionHorizontal::ConfigureHorizontalModel;
    constexpr auto kRead = &IKestrionHorizontal::ReadHorizontalModel;
    PutAndRead(*horizontal, kPut, kRead, 1000, 1e6, 1e-3, 10000);
    PutAndRead(*horizontal, kPut, kRead, 100'000'000, 5e9, 1e-6, 50000);
}

TEST_P(PairsOfHorizontal, DelayIsSwitchedWithItsTime) {
    Open();
    const auto horizontal = client_.As<IKestrionHorizontal>();
    for (const double time : {-1e6, 2.5e-9}) {
        EXPECT_EQ(horizontal->ConfigureDelayOn(time), S_OK) << TakeErrorText();
        ExpectGet(*horizontal, &IKestrionHorizontal::get_DelayMode, VARIANT_TRUE);
        ExpectGet(*horizontal, &IKestrionHorizontal::get_DelayTime, time);
        EXPECT_EQ(horizontal->ConfigureDelayOff(), S_OK) << TakeErrorText();
        ExpectGet(*horizontal, &IKestrionHorizontal::get_DelayMode, VARIANT_FALSE);
    }
}

TEST_P(PairsOfHorizontal, RecordOfTheClass) {
    Open();
    const auto acquisition = client_.As<IIviScopeAcquisition>();
    EXPECT_EQ(acquisition->ConfigureRecord(1e-3, 2000, 0.25), S_OK) << TakeErrorText();
    ExpectInstrumentError(0);
    ExpectGet(*acquisition, &IIviScopeAcquisition::get_TimePerRecord, 1e-3);
    ExpectGet(*acquisition, &IIviScopeAcquisition::get_NumberOfPointsMin, 2000);
    ExpectGet(*client_.As<IKestrionHorizontal>(), &IKestrionHorizontal::get_DelayTime, 0.25);
}

TEST_P(PairsOfHorizontal, ModesWithTheirNumbers) {
    Open();
    const auto acquisition = client_.As<IKestrionAcquisition>();
    EXPECT_EQ(acquisition->SetAverageMode(2), S_OK) << TakeErrorText();
    ExpectGet(*acquisition, &IKestrionAcquisition::get_Mode, KestrionAcquisitionModeAverage);
    ExpectGet(*acquisition, &IKestrionAcquisition::get_NumberAverages, 2);
    EXPECT_EQ(acquisition->SetEnvelopeMode(5), S_OK) << TakeErrorText();
    ExpectGet(*acquisition, &IKestrionAcquisition::get_Mode, KestrionAcquisitionModeEnvelope);
    ExpectGet(*acquisition, &IKestrionAcquisition::get_NumberEnvelopes, 5);
    EXPECT_EQ(acquisition->SetMaximumEnvelopes(), S_OK) << TakeErrorText();
    ExpectGet(*acquisition, &IKestrionAcquisition::get_NumberEnvelopes, 2'000'000'000);
    EXPECT_EQ(acquisition->SetWfmDBMode(5000), S_OK) << TakeErrorText();
    ExpectGet(*acquisition, &IKestrionAcquisition::get_Mode, KestrionAcquisitionModeWfmDB);
    ExpectGet(*acquisition, &IKestrionAcquisition::get_NumberSamples, 5000);
}

INSTANTIATE_TEST_SUITE_P(Links, PairsOfHorizontal, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
