// Pulses as both events.
#include "tests/system/property_cases.h"

namespace kestrion {
namespace {

// The inputs A and B are the two channels that are not the source.
template <typename Trigger>
void FromChannel2(ScopeClient& client) {
    EXPECT_EQ(client.As<Trigger>()->put_Source(KestrionChannelCh2), S_OK);
}
template <typename Trigger>
void FromChannel3(ScopeClient& client) {
    EXPECT_EQ(client.As<Trigger>()->put_Source(KestrionChannelCh3), S_OK);
}

}  // namespace

std::span<const PropertyCase> PulseTriggerCases() {
    // A window has inputs of its own on the older families.
    static constexpr PropertyCase::Models kOldAndNew = {"PL7254C", "LK7254B", "LK7054", "HR5104"};
    static constexpr PropertyCase kCases[] = {
        EachValue("IKestrionTriggerGlitch.Condition"),
        Between("IKestrionTriggerGlitch.Level", -100, 100),
        Written("IKestrionTriggerGlitch.LevelEnum", "Level", {-1.3, 1.4}),
        EachValue("IKestrionTriggerGlitch.Polarity"),
        EachValue("IKestrionTriggerGlitch.Qualify"),
        EachValue("IKestrionTriggerGlitch.Source"),
        Between("IKestrionTriggerGlitch.Width", 100e-12, 1e6),

        EachValue("IKestrionTriggerRunt.ChAInput").After(FromChannel2<IKestrionTriggerRunt>),
        EachValue("IKestrionTriggerRunt.ChBInput").After(FromChannel2<IKestrionTriggerRunt>),
        Between("IKestrionTriggerRunt.ChAThreshold", -100, 100)
            .After(FromChannel2<IKestrionTriggerRunt>),
        Between("IKestrionTriggerRunt.ChBThreshold", -100, 100)
            .After(FromChannel2<IKestrionTriggerRunt>),
        EachValue("IKestrionTriggerRunt.ChAInput").After(FromChannel3<IKestrionTriggerRunt>),
        EachValue("IKestrionTriggerRunt.ChBInput").After(FromChannel3<IKestrionTriggerRunt>),
        Between("IKestrionTriggerRunt.ChAThreshold", -100, 100)
            .After(FromChannel3<IKestrionTriggerRunt>),
        Between("IKestrionTriggerRunt.ChBThreshold", -100, 100)
            .After(FromChannel3<IKestrionTriggerRunt>),
        EachValue("IKestrionTriggerRunt.Condition"),
        EachValue("IKestrionTriggerRunt.Polarity"),
        EachValue("IKestrionTriggerRunt.Qualify"),
        EachValue("IKestrionTriggerRunt.Source"),
        Between("IKestrionTriggerRunt.ThresholdHigh", -100, 100),
        Between("IKestrionTriggerRunt.ThresholdLow", -100, 100),
        Between("IKestrionTriggerRunt.Width", 100e-12, 1e6),

        Between("IKestrionTriggerTimeout.Level", -100, 100),
        Written("IKestrionTriggerTimeout.LevelEnum", "Level", {-1.3, 1.4}),
        EachValue("IKestrionTriggerTimeout.Polarity"),
        EachValue("IKestrionTriggerTimeout.Qualify"),
        EachValue("IKestrionTriggerTimeout.Source"),
        Between("IKestrionTriggerTimeout.Time", 100e-12, 1e6),

        EachValue("IKestrionTriggerTransition.Condition"),
        Between("IKestrionTriggerTransition.DeltaTime", 100e-12, 1e6),
        EachValue("IKestrionTriggerTransition.Polarity"),
        EachValue("IKestrionTriggerTransition.Qualify"),
        EachValue("IKestrionTriggerTransition.Source"),
        Between("IKestrionTriggerTransition.ThresholdHigh", -100, 100),
        Between("IKestrionTriggerTransition.ThresholdLow", -100, 100),

        EachValue("IKestrionTriggerWidth.Condition"),
        Between("IKestrionTriggerWidth.HighLimit", 100e-12, 1e6),
        Between("IKestrionTriggerWidth.Level", -100, 100),
        Written("IKestrionTriggerWidth.LevelEnum", "Level", {-1.3, 1.4}),
        Between("IKestrionTriggerWidth.LowLimit", 100e-12, 1e6),
        EachValue("IKestrionTriggerWidth.Polarity"),
        EachValue("IKestrionTriggerWidth.Qualify"),
        EachValue("IKestrionTriggerWidth.Source"),

        EachValue("IKestrionTriggerWindow.ChAInput")
            .On(kOldAndNew)
            .After(FromChannel2<IKestrionTriggerWindow>),
        EachValue("IKestrionTriggerWindow.ChBInput")
            .On(kOldAndNew)
            .After(FromChannel2<IKestrionTriggerWindow>),
        Between("IKestrionTriggerWindow.ChAThreshold", -100, 100)
            .On(kOldAndNew)
            .After(FromChannel2<IKestrionTriggerWindow>),
        Between("IKestrionTriggerWindow.ChBThreshold", -100, 100)
            .On(kOldAndNew)
            .After(FromChannel2<IKestrionTriggerWindow>),
        EachValue("IKestrionTriggerWindow.ChAInput")
            .On(kOldAndNew)
            .After(FromChannel3<IKestrionTriggerWindow>),
        EachValue("IKestrionTriggerWindow.ChBInput")
            .On(kOldAndNew)
            .After(FromChannel3<IKestrionTriggerWindow>),
        Between("IKestrionTriggerWindow.ChAThreshold", -100, 100)
            .On(kOldAndNew)
            .After(FromChannel3<IKestrionTriggerWindow>),
        Between("IKestrionTriggerWindow.ChBThreshold", -100, 100)
            .On(kOldAndNew)
            .After(FromChannel3<IKestrionTriggerWindow>),
        EachValue("IKestrionTriggerWindow.Condition"),
        EachValue("IKestrionTriggerWindow.Qualify"),
        EachValue("IKestrionTriggerWindow.Source"),
        Between("IKestrionTriggerWindow.ThresholdHigh", -100, 100),
        Between("IKestrionTriggerWindow.ThresholdLow", -100, 100),
        EachValue("IKestrionTriggerWindow.Type"),
        Between("IKestrionTriggerWindow.Width", 100e-12, 1e6),

        EachValue("IKestrionTriggerBGlitch.Condition"),
        Between("IKestrionTriggerBGlitch.Level", -100, 100),
        Written("IKestrionTriggerBGlitch.LevelEnum", "Level", {-1.3, 1.4}),
        EachValue("IKestrionTriggerBGlitch.Polarity"),
        EachValue("IKestrionTriggerBGlitch.Qualify"),
        EachValue("IKestrionTriggerBGlitch.Source"),
        Between("IKestrionTriggerBGlitch.Width", 100e-12, 1e6),

        EachValue("IKestrionTriggerBRunt.ChAInput").After(FromChannel2<IKestrionTriggerBRunt>),
        EachValue("IKestrionTriggerBRunt.ChBInput").After(FromChannel2<IKestrionTriggerBRunt>),
        Between("IKestrionTriggerBRunt.ChAThreshold", -100, 100)
            .After(FromChannel2<IKestrionTriggerBRunt>),
        Between("IKestrionTriggerBRunt.ChBThreshold", -100, 100)
            .After(FromChannel2<IKestrionTriggerBRunt>),
        EachValue("IKestrionTriggerBRunt.ChAInput").After(FromChannel3<IKestrionTriggerBRunt>),
        EachValue("IKestrionTriggerBRunt.ChBInput").After(FromChannel3<IKestrionTriggerBRunt>),
        Between("IKestrionTriggerBRunt.ChAThreshold", -100, 100)
            .After(FromChannel3<IKestrionTriggerBRunt>),
        Between("IKestrionTriggerBRunt.ChBThreshold", -100, 100)
            .After(FromChannel3<IKestrionTriggerBRunt>),
        EachValue("IKestrionTriggerBRunt.Condition"),
        EachValue("IKestrionTriggerBRunt.Polarity"),
        EachValue("IKestrionTriggerBRunt.Qualify"),
        EachValue("IKestrionTriggerBRunt.Source"),
        Between("IKestrionTriggerBRunt.ThresholdHigh", -100, 100),
        Between("IKestrionTriggerBRunt.ThresholdLow", -100, 100),
        Between("IKestrionTriggerBRunt.Width", 100e-12, 1e6),

        Between("IKestrionTriggerBTimeout.Level", -100, 100),
        Written("IKestrionTriggerBTimeout.LevelEnum", "Level", {-1.3, 1.4}),
        EachValue("IKestrionTriggerBTimeout.Polarity"),
        EachValue("IKestrionTriggerBTimeout.Qualify"),
        EachValue("IKestrionTriggerBTimeout.Source"),
        Between("IKestrionTriggerBTimeout.Time", 100e-12, 1e6),

        EachValue("IKestrionTriggerBTransition.Condition"),
        Between("IKestrionTriggerBTransition.DeltaTime", 100e-12, 1e6),
        EachValue("IKestrionTriggerBTransition.Polarity"),
        EachValue("IKestrionTriggerBTransition.Qualify"),
        EachValue("IKestrionTriggerBTransition.Source"),
        Between("IKestrionTriggerBTransition.ThresholdHigh", -100, 100),
        Between("IKestrionTriggerBTransition.ThresholdLow", -100, 100),

        EachValue("IKestrionTriggerBWidth.Condition"),
        Between("IKestrionTriggerBWidth.HighLimit", 100e-12, 1e6),
        Between("IKestrionTriggerBWidth.Level", -100, 100),
        Written("IKestrionTriggerBWidth.LevelEnum", "Level", {-1.3, 1.4}),
        Between("IKestrionTriggerBWidth.LowLimit", 100e-12, 1e6),
        EachValue("IKestrionTriggerBWidth.Polarity"),
        EachValue("IKestrionTriggerBWidth.Qualify"),
        EachValue("IKestrionTriggerBWidth.Source"),

        EachValue("IKestrionTriggerBWindow.ChAInput")
            .On(kOldAndNew)
            .After(FromChannel2<IKestrionTriggerBWindow>),
        EachValue("IKestrionTriggerBWindow.ChBInput")
            .On(kOldAndNew)
            .After(FromChannel2<IKestrionTriggerBWindow>),
        Between("IKestrionTriggerBWindow.ChAThreshold", -100, 100)
            .On(kOldAndNew)
            .After(FromChannel2<IKestrionTriggerBWindow>),
        Between("IKestrionTriggerBWindow.ChBThreshold", -100, 100)
            .On(kOldAndNew)
            .After(FromChannel2<IKestrionTriggerBWindow>),
        EachValue("IKestrionTriggerBWindow.ChAInput")
            .On(kOldAndNew)
            .After(FromChannel3<IKestrionTriggerBWindow>),
        EachValue("IKestrionTriggerBWindow.ChBInput")
            .On(kOldAndNew)
            .After(FromChannel3<IKestrionTriggerBWindow>),
        Between("IKestrionTriggerBWindow.ChAThreshold", -100, 100)
            .On(kOldAndNew)
            .After(FromChannel3<IKestrionTriggerBWindow>),
        Between("IKestrionTriggerBWindow.ChBThreshold", -100, 100)
            .On(kOldAndNew)
            .After(FromChannel3<IKestrionTriggerBWindow>),
        EachValue("IKestrionTriggerBWindow.Condition"),
        EachValue("IKestrionTriggerBWindow.Qualify"),
        EachValue("IKestrionTriggerBWindow.Source"),
        Between("IKestrionTriggerBWindow.ThresholdHigh", -100, 100),
        Between("IKestrionTriggerBWindow.ThresholdLow", -100, 100),
        EachValue("IKestrionTriggerBWindow.Type"),
        Between("IKestrionTriggerBWindow.Width", 100e-12, 1e6),
    };
    return kCases;
}

}  // namespace kestrion
