// The trigger: the events and their sequence, the edges, the oscilloscope class's view.
#include "tests/system/property_cases.h"

namespace kestrion {

std::span<const PropertyCase> TriggerCases() {
    static constexpr PropertyCase kCases[] = {
        EachValue("IKestrionTrigger.ABSequence"),
        Between("IKestrionTrigger.AHoldoffTime", 250e-9, 12),
        Between("IKestrionTrigger.AuxLevel", -100, 100),
        Written("IKestrionTrigger.AuxLevelEnum", "AuxLevel", {-1.3, 1.4}),
        EachValue("IKestrionTrigger.BBy"),
        Between("IKestrionTrigger.BDelayTime", 3.2e-9, 3e6),
        Between("IKestrionTrigger.BLevel", -100, 100),
        Written("IKestrionTrigger.BLevelEnum", "BLevel", {-1.3, 1.4}),
        EachValue("IKestrionTrigger.BResetSource"),
        EachValue("IKestrionTrigger.BResetState"),
        Between("IKestrionTrigger.BResetThreshold", -100, 100),
        Between("IKestrionTrigger.BResetTimeout", 100e-12, 1e6),
        EachValue("IKestrionTrigger.BResetTransition"),
        EachValue("IKestrionTrigger.BResetType"),
        EachValue("IKestrionTrigger.BType"),
        Between("IKestrionTrigger.EventCount", 1, 10'000'000),
        EachValue("IKestrionTrigger.HoldoffMode"),
        EachValue("IKestrionTrigger.LevelSourcePreference"),
        EachValue("IKestrionTrigger.Mode"),
        // Windows and videos are for some families, and serial buses are chosen with the bus.
        EachValue("IKestrionTrigger.Type")
            .Refusing(12, 13, kNoSuchValue)
            .Refusing(15, 18, kInvalidValue),
        EachValue("IKestrionTrigger.Type")
            .On({"LK7254B"})
            .Refusing(13, kNoSuchValue)
            .Refusing(15, 18, kInvalidValue),
        EachValue("IKestrionTrigger.Type")
            .On({"HR5104"})
            .Refusing(11, kNoSuchValue)
            .Refusing(15, 18, kInvalidValue),

        EachValue("IKestrionTriggerAEdge.Coupling"),
        Between("IKestrionTriggerAEdge.Level", -100, 100),
        Written("IKestrionTriggerAEdge.LevelEnum", "Level", {-1.3, 1.4}),
        EachValue("IKestrionTriggerAEdge.Slope").On({"PL7254C", "LK7254B"}),
        EachValue("IKestrionTriggerAEdge.Slope")
            .On({"HR5104", "HR5052BE"})
            .Refusing(2, kToldByText),
        EachValue("IKestrionTriggerAEdge.Source"),
        EachValue("IKestrionTriggerAEdge.Source").On({"PL77002SX"}).Refusing(2, 3, kToldByText),

        EachValue("IKestrionTriggerBEdge.Coupling"),
        Between("IKestrionTriggerBEdge.Level", -100, 100),
        Written("IKestrionTriggerBEdge.LevelEnum", "Level", {-1.3, 1.4}),
        EachValue("IKestrionTriggerBEdge.Slope").On({"PL7254C", "LK7254B"}),
        EachValue("IKestrionTriggerBEdge.Slope").On({"HR5104"}).Refusing(2, kToldByText),
        EachValue("IKestrionTriggerBEdge.Source"),
    };
    return kCases;
}

std::span<const PropertyCase> ClassTriggerCases() {
    static constexpr PropertyCase kCases[] = {
        EachValue("IIviScopeTrigger.Continuous"),
        EachValue("IIviScopeTrigger.Coupling"),
        Between("IIviScopeTrigger.Holdoff", 250e-9, 12),
        Between("IIviScopeTrigger.Level", -100, 100),
        // The instrument doesn't look for a level by itself.
        EachValue("IIviScopeTrigger.Modifier").Refusing(3, kNoSuchValue),
        OneOf("IIviScopeTrigger.Source", {"CH1", "CH4", "AUXILIARY", "LINE", "D0", "D15"}),
        // Without video, and never at once.
        EachValue("IIviScopeTrigger.Type").Refusing(5, 6, kNoSuchValue),
        EachValue("IIviScopeTrigger.Type").On({"HR5104"}).Refusing(6, kNoSuchValue),
        Absent("IIviScopeTriggerAcLine.Slope", kNoSuchProperty),
        EachValue("IIviScopeTriggerEdge.Slope"),
        EachValue("IIviScopeTriggerGlitch.Condition"),
        EachValue("IIviScopeTriggerGlitch.Polarity"),
        Between("IIviScopeTriggerGlitch.Width", 100e-12, 1e6),
        EachValue("IIviScopeTriggerRunt.Polarity"),
        Between("IIviScopeTriggerRunt.ThresholdHigh", -100, 100),
        Between("IIviScopeTriggerRunt.ThresholdLow", -100, 100),
        Absent("IIviScopeTriggerTv.Event", kNoSuchProperty),
        Absent("IIviScopeTriggerTv.LineNumber", kNoSuchProperty),
        Absent("IIviScopeTriggerTv.Polarity", kNoSuchProperty),
        Absent("IIviScopeTriggerTv.SignalFormat", kNoSuchProperty),
        EachValue("IIviScopeTriggerWidth.Condition"),
        EachValue("IIviScopeTriggerWidth.Polarity").Refusing(3, kNoSuchValue),
        Between("IIviScopeTriggerWidth.ThresholdHigh", 100e-12, 1e6),
        Between("IIviScopeTriggerWidth.ThresholdLow", 100e-12, 1e6),
    };
    return kCases;
}

std::span<const PropertyCase> LogicTriggerCases() {
    // The last input stands elsewhere on the older families.
    static constexpr PropertyCase::Models kOldAndNew = {"PL7254C", "LK7254B", "LK7054", "HR5104"};
    static constexpr PropertyCase kCases[] = {
        EachValue("IKestrionTriggerPattern.ChannelLogic").On(kOldAndNew),
        Between("IKestrionTriggerPattern.ChannelThreshold", -100, 100),
        EachValue("IKestrionTriggerPattern.Condition"),
        Between("IKestrionTriggerPattern.LessThanTime", 100e-12, 1e6),
        Between("IKestrionTriggerPattern.MoreThanTime", 100e-12, 1e6),
        EachValue("IKestrionTriggerPattern.Type"),

        EachValue("IKestrionTriggerSetuphold.ClockEdge"),
        EachValue("IKestrionTriggerSetuphold.ClockSource"),
        Between("IKestrionTriggerSetuphold.ClockThreshold", -100, 100),
        EachValue("IKestrionTriggerSetuphold.DataSource"),
        Between("IKestrionTriggerSetuphold.DataThreshold", -100, 100),
        Between("IKestrionTriggerSetuphold.HoldTime", -1e-9, 100e-9),
        Between("IKestrionTriggerSetuphold.SetupTime", -100e-9, 100e-9),

        EachValue("IKestrionTriggerState.ChannelLogic").On(kOldAndNew),
        Between("IKestrionTriggerState.ChannelThreshold", -100, 100),
        EachValue("IKestrionTriggerState.ClockEdge").On({"PL7254C", "LK7054", "PL77002SX"}),
        EachValue("IKestrionTriggerState.Condition"),
        EachValue("IKestrionTriggerState.Type"),

        EachValue("IKestrionTriggerBPattern.ChannelLogic").On(kOldAndNew),
        Between("IKestrionTriggerBPattern.ChannelThreshold", -100, 100),
        EachValue("IKestrionTriggerBPattern.Condition"),
        Between("IKestrionTriggerBPattern.LessThanTime", 100e-12, 1e6),
        Between("IKestrionTriggerBPattern.MoreThanTime", 100e-12, 1e6),
        EachValue("IKestrionTriggerBPattern.Type"),

        EachValue("IKestrionTriggerBSetuphold.ClockEdge"),
        EachValue("IKestrionTriggerBSetuphold.ClockSource"),
        Between("IKestrionTriggerBSetuphold.ClockThreshold", -100, 100),
        EachValue("IKestrionTriggerBSetuphold.DataSource"),
        Between("IKestrionTriggerBSetuphold.DataThreshold", -100, 100),
        Between("IKestrionTriggerBSetuphold.HoldTime", -1e-9, 100e-9),
        Between("IKestrionTriggerBSetuphold.SetupTime", -100e-9, 100e-9),

        EachValue("IKestrionTriggerBState.ChannelLogic").On(kOldAndNew),
        Between("IKestrionTriggerBState.ChannelThreshold", -100, 100),
        EachValue("IKestrionTriggerBState.ClockEdge").On({"PL7254C", "LK7054", "PL77002SX"}),
        EachValue("IKestrionTriggerBState.Condition"),
        EachValue("IKestrionTriggerBState.Type"),
    };
    return kCases;
}

std::span<const PropertyCase> SerialTriggerCases() {
    static constexpr PropertyCase kCases[] = {
        EachValue("IKestrionTriggerCommunication.ClockPolarity"),
        EachValue("IKestrionTriggerCommunication.Code"),
        Between("IKestrionTriggerCommunication.Level", -100, 100),
        Written("IKestrionTriggerCommunication.LevelEnum", "Level", {-1.3, 1.4}),
        EachValue("IKestrionTriggerCommunication.PulseForm"),
        EachValue("IKestrionTriggerCommunication.Source"),
        EachValue("IKestrionTriggerCommunication.SourceType"),
        EachValue("IKestrionTriggerCommunication.Standard").On({"PL7254C", "SW72004C", "MR71254C"}),
        // From 52 on the standards are for the newest families.
        EachValue("IKestrionTriggerCommunication.Standard")
            .On({"LK7254B", "HR5104"})
            .Refusing(52, 70, kNoSuchValue),
        Between("IKestrionTriggerCommunication.ThresholdHigh", -100, 100),
        Between("IKestrionTriggerCommunication.ThresholdLow", -100, 100),

        Between("IKestrionTriggerSerial.ClockLevel", -100, 100),
        Written("IKestrionTriggerSerial.ClockLevelEnum", "ClockLevel", {-1.3, 1.4}),
        EachValue("IKestrionTriggerSerial.ClockPolarity"),
        EachValue("IKestrionTriggerSerial.ClockSource"),
        EachValue("IKestrionTriggerSerial.Code"),
        EachValue("IKestrionTriggerSerial.DataFormat"),
        EachValue("IKestrionTriggerSerial.ErrorType"),
        Quoted("IKestrionTriggerSerial.Pattern", 256),
        EachValue("IKestrionTriggerSerial.Source"),
        EachValue("IKestrionTriggerSerial.Standard").On({"PL7254C", "LK7254B"}),
        EachValue("IKestrionTriggerSerial.Standard").On({"SW72004C"}).Refusing(17, kNoSuchValue),

        // The one family with a video trigger.
        EachValue("IKestrionTriggerVideo.Field").On({"HR5104"}),
        EachValue("IKestrionTriggerVideo.Format").On({"HR5104"}),
        Between("IKestrionTriggerVideo.HoldoffField", 0, 8.5).On({"HR5104"}),
        Between("IKestrionTriggerVideo.Line", 1, 3000).On({"HR5104"}),
        EachValue("IKestrionTriggerVideo.Polarity").On({"HR5104"}),
        EachValue("IKestrionTriggerVideo.ScanRate").On({"HR5104"}),
        EachValue("IKestrionTriggerVideo.ScanType").On({"HR5104"}),
        EachValue("IKestrionTriggerVideo.Source").On({"HR5104"}),
    };
    return kCases;
}

}  // namespace kestrion
