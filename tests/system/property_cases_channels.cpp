// The inputs, and the measurements.
#include "tests/system/property_cases.h"

namespace kestrion {

std::span<const PropertyCase> ChannelCases() {
    static constexpr PropertyCase kCases[] = {
        EachValue("IKestrionChannels.AUXInCoupling"),
        EachValue("IKestrionChannels.AUXInProbeSignal"),
        Quoted("IKestrionChannels.AUXInProbeSet", 100),

        // No channel has more than the model.
        Between("IKestrionChannel.Bandwidth", 1e6, 2.5e9).CutAbove(),
        // Full, 150 MHz, 250 MHz, 20 MHz, 500 MHz. What is full is up to the model.
        Written("IKestrionChannel.BandwidthEnum", "Bandwidth", {2.5e9, 150e6, 250e6, 20e6, 500e6})
            .Refusing(1, kNoSuchValue),
        Written("IKestrionChannel.BandwidthEnum", "Bandwidth", {1e9, 150e6, 250e6, 20e6, 500e6})
            .On({"HR5104"})
            .Refusing(2, kNoSuchValue)
            .Refusing(4, kNoSuchValue),
        Written("IKestrionChannel.BandwidthEnum", "Bandwidth", {500e6, 150e6, 250e6, 20e6, 500e6})
            .On({"HR5054B"})
            .Refusing(1, 2, kNoSuchValue),
        Written("IKestrionChannel.BandwidthEnum", "Bandwidth", {2.5e9, 150e6, 250e6, 20e6, 500e6})
            .On({"LK7254B"})
            .Refusing(1, kNoSuchValue)
            .Refusing(4, kNoSuchValue),
        EachValue("IKestrionChannel.Coupling"),
        Between("IKestrionChannel.Deskew", -75e-9, 75e-9),
        EachValue("IKestrionChannel.DisplayState"),
        Between("IKestrionChannel.ExternalAttenuation", 1e-10, 1e10),
        Between("IKestrionChannel.ExternalAttenuationDB", -200, 200),
        Quoted("IKestrionChannel.LabelName", 32),
        Between("IKestrionChannel.LabelPositionX", -100, 100),
        Between("IKestrionChannel.LabelPositionY", -100, 100),
        Between("IKestrionChannel.Offset", -100, 100),
        Between("IKestrionChannel.Position", -8, 8),
        Quoted("IKestrionChannel.ProbeFunctionExternalUnits", 10),
        Between("IKestrionChannel.VerticalScale", 1e-3, 10),
        EachValue("IKestrionChannel.Termination"),
        // The one wavelength of the instrument is no channel's to set, and only one family has it.
        EachValue("IKestrionChannel.WaveLength").On({"CR7404B"}).Refusing(0, 3, kToldByText),
        EachValue("IKestrionChannel.EnhancedBandwidth"),
        EachValue("IKestrionChannel.EnhancedBandwidthApplytoAll"),
        EachValue("IKestrionChannel.ProbeSignal"),
        Quoted("IKestrionChannel.ProbeSet", 100),
        EachValue("IKestrionChannel.ProbeControl"),
        EachValue("IKestrionChannel.MixCaptureState"),

        EachValue("IIviScopeChannel.Coupling"),
        EachValue("IIviScopeChannel.Enabled"),
        Between("IIviScopeChannel.InputFrequencyMax", 1e6, 2.5e9).CutAbove(),
        Between("IIviScopeChannel.InputImpedance", 50, 1e6),
        Between("IIviScopeChannel.Offset", -100, 100),
        Between("IIviScopeChannel.ProbeAttenuation", 1e-10, 1e10),
        Between("IIviScopeChannel.Range", 10e-3, 100),

        Between("IKestrionDigitalChannel.Position", -8, 8),
        Quoted("IKestrionDigitalChannel.Label", 32),
        EachValue("IKestrionDigitalChannel.State"),
        Between("IKestrionDigitalChannel.Threshold", -10, 10),
    };
    return kCases;
}

std::span<const PropertyCase> MeasurementCases() {
    static constexpr PropertyCase kCases[] = {
        EachValue("IKestrionMeasurements.AnnotationImmedState"),
        EachValue("IKestrionMeasurements.AnnotationState"),
        EachValue("IKestrionMeasurements.AnnotationType"),
        EachValue("IKestrionMeasurements.Gating"),
        // Without the numbered zoom areas.
        EachValue("IKestrionMeasurements.Gating").On({"HR5104"}).Refusing(3, 6, kNoSuchValue),
        EachValue("IKestrionMeasurements.Method"),
        EachValue("IKestrionMeasurements.Method").On({"HR5104"}).Refusing(2, kNoSuchValue),
        EachValue("IKestrionMeasurements.StatisticsMode"),

        EachValue("IKestrionMeasurementImmediate.DelayDirection"),
        EachValue("IKestrionMeasurementImmediate.DelayEdge1"),
        EachValue("IKestrionMeasurementImmediate.DelayEdge2"),
        EachValue("IKestrionMeasurementImmediate.Source1"),
        EachValue("IKestrionMeasurementImmediate.Source2"),
        EachValue("IKestrionMeasurementImmediate.Type"),
        EachValue("IKestrionMeasurementImmediate.Noise"),
        Between("IKestrionMeasurementImmediate.ReferenceLevelAbsoluteHigh", -1e6, 1e6),
        Between("IKestrionMeasurementImmediate.ReferenceLevelAbsoluteLow", -1e6, 1e6),
        Between("IKestrionMeasurementImmediate.ReferenceLevelAbsoluteMid", -1e6, 1e6),
        Between("IKestrionMeasurementImmediate.ReferenceLevelAbsoluteMid2", -1e6, 1e6),
        Between("IKestrionMeasurementImmediate.ReferenceLevelPercentHigh", 0, 100),
        Between("IKestrionMeasurementImmediate.ReferenceLevelPercentLow", 0, 100),
        Between("IKestrionMeasurementImmediate.ReferenceLevelPercentMid", 0, 100),
        Between("IKestrionMeasurementImmediate.ReferenceLevelPercentMid2", 0, 100),
        EachValue("IKestrionMeasurementImmediate.ReferenceLevelMethod"),
        EachValue("IKestrionMeasurementImmediate.ReferenceLevelUnit"),

        EachValue("IKestrionMeasurement.DelayDirection"),
        EachValue("IKestrionMeasurement.DelayEdge1"),
        EachValue("IKestrionMeasurement.DelayEdge2"),
        EachValue("IKestrionMeasurement.Source1"),
        EachValue("IKestrionMeasurement.Source2"),
        EachValue("IKestrionMeasurement.Type"),
        EachValue("IKestrionMeasurement.Noise"),
        EachValue("IKestrionMeasurement.State"),

        Between("IKestrionReferenceLevel.AbsoluteHigh", -1e6, 1e6),
        Between("IKestrionReferenceLevel.AbsoluteLow", -1e6, 1e6),
        Between("IKestrionReferenceLevel.AbsoluteMid", -1e6, 1e6),
        Between("IKestrionReferenceLevel.AbsoluteMid2", -1e6, 1e6),
        Between("IKestrionReferenceLevel.PercentHigh", 0, 100),
        Between("IKestrionReferenceLevel.PercentLow", 0, 100),
        Between("IKestrionReferenceLevel.PercentMid", 0, 100),
        Between("IKestrionReferenceLevel.PercentMid2", 0, 100),
        EachValue("IKestrionReferenceLevel.Method"),
        EachValue("IKestrionReferenceLevel.Unit"),

        Between("IIviScopeReferenceLevel.High", -1e6, 1e6),
        Between("IIviScopeReferenceLevel.Low", -1e6, 1e6),
        Between("IIviScopeReferenceLevel.Mid", -1e6, 1e6),
    };
    return kCases;
}

}  // namespace kestrion
