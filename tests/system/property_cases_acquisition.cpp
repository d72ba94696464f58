// Acquisition, time base, and what the driver itself keeps.
#include "tests/system/property_cases.h"

namespace kestrion {
namespace {

void AcquireUntilStopped(ScopeClient& client) {
    EXPECT_EQ(client.As<IKestrionAcquisition>()->put_RunStop(VARIANT_TRUE), S_OK);
}

// The rate follows from the record length and the scale: with 10000 points and 10 divisions, a
// scale of 1000 s is a rate of 1 Hz, and one of 10 ps is one of 100 THz.
void UseTenThousandPoints(ScopeClient& client) {
    EXPECT_EQ(client.As<IKestrionHorizontal>()->put_RecordLength(10000), S_OK);
}

}  // namespace

std::span<const PropertyCase> DriverCases() {
    static constexpr PropertyCase kCases[] = {
        EachValue("IIviDriverOperation.Cache"),
        // Interchangeability isn't checked.
        EachValue("IIviDriverOperation.InterchangeCheck").Refusing(1, kNoSuchValue),
        EachValue("IIviDriverOperation.QueryInstrumentStatus"),
        EachValue("IIviDriverOperation.RangeCheck"),
        EachValue("IIviDriverOperation.RecordCoercions"),
        EachValue("IIviDriverOperation.Simulate"),
    };
    return kCases;
}

std::span<const PropertyCase> AcquisitionCases() {
    static constexpr PropertyCase kCases[] = {
        // Points are always filled in.
        EachValue("IIviScopeAcquisition.Interpolation").Refusing(1, kNoSuchValue),
        Between("IIviScopeAcquisition.NumberOfAverages", 2, 10240),
        Between("IIviScopeAcquisition.NumberOfEnvelopes", 1, 2'000'000'000),
        Between("IIviScopeAcquisition.NumberOfPointsMin", 1000, 100'000'000),
        Between("IIviScopeAcquisition.TimePerRecord", 100e-12, 10'000),
        EachValue("IIviScopeAcquisition.Type"),

        EachValue("IKestrionAcquisition.EquivalentTimeMode"),
        EachValue("IKestrionAcquisition.DenseAcquisitionMode"),
        EachValue("IKestrionAcquisition.Mode"),
        // Without the waveform database.
        EachValue("IKestrionAcquisition.Mode").On({"HR5054B"}).Refusing(5, kToldByText),
        Between("IKestrionAcquisition.NumberAverages", 2, 10240),
        Between("IKestrionAcquisition.NumberEnvelopes", 1, 2'000'000'000),
        Between("IKestrionAcquisition.NumberSamples", 5000, 2'147'400'000),
        EachValue("IKestrionAcquisition.RollMode"),
        EachValue("IKestrionAcquisition.RunStop"),
        EachValue("IKestrionAcquisition.SamplingMode"),
        EachValue("IKestrionAcquisition.SingleSequence"),
        EachValue("IKestrionAcquisition.State").After(AcquireUntilStopped),
        EachValue("IKestrionAcquisition.FineScanState"),
        EachValue("IKestrionAcquisition.EnhancedENOBType"),

        EachValue("IKestrionHorizontal.DelayMode"),
        Between("IKestrionHorizontal.DelayTime", -1e6, 1e6),
        Between("IKestrionHorizontal.HorizontalScale", 10e-12, 1000),
        Between("IKestrionHorizontal.Position", 0, 100),
        Between("IKestrionHorizontal.RecordLength", 1000, 100'000'000),
        Between("IKestrionHorizontal.ReferencePoint", 0, 100),
        Between("IKestrionHorizontal.Resolution", 1000, 100'000'000),
        EachValue("IKestrionHorizontal.RollMode"),
        Between("IKestrionHorizontal.SampleRate", 1, 100e12).After(UseTenThousandPoints),
        Between("IKestrionHorizontal.TriggerPosition", 0, 100),
        Quoted("IKestrionHorizontal.UnitsString", 10),
        Between("IKestrionHorizontal.AutoLimitRecordLength", 1000, 100'000'000),
        EachValue("IKestrionHorizontal.HorizontalModel"),
        Between("IKestrionHorizontal.HorizontalModelRecordLength", 1000, 100'000'000),
        Between("IKestrionHorizontal.HorizontalModelSampleRate", 1, 100e12)
            .After(UseTenThousandPoints),
        Between("IKestrionHorizontal.HorizontalModelScale", 10e-12, 1000),
        Between("IKestrionHorizontal.DigitalFineScanPosition", 0, 100),
    };
    return kCases;
}

}  // namespace kestrion
