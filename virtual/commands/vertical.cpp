// CH<x> and D<x>: the inputs, their probes, and which waveforms are shown.
#include <algorithm>
#include <cmath>

#include "virtual/command_table.h"
#include "virtual/commands/families.h"
#include "virtual/oscilloscope.h"
#include "virtual/text.h"

namespace virtual_scope {
namespace {

constexpr std::string_view kBandwidths =
    "FULl=1E12|TWEnty=20E6|ONEfifty=150E6|TWOfifty=250E6|FIVe=500E6";
constexpr std::string_view kTerminations = "FIFty=50|MEG=1E6|1MEG=1E6";
constexpr std::string_view kInputModes = "A|B|COMmonmode|DIFferential";
constexpr Real kProbeOffset = {-100, 100, 0};
constexpr Real kLabelPlace = {-100, 100, 0};

void Restart(Oscilloscope& scope, int /*instance*/, const Value& /*value*/) {
    scope.RestartAcquisition();
}

// The limit that is in force: no channel has more than the model.
Value Bandwidth(Oscilloscope& scope, int channel) {
    return std::min(scope.settings().Number(SettingId::kChannelBandwidth, channel),
                    scope.model().bandwidth);
}

Value EnhancedState(Oscilloscope& scope, int channel) {
    return std::int64_t{scope.settings().IsOn(SettingId::kEnhancedBandwidth, channel)};
}

void ApplyEnhancedToAll(Oscilloscope& scope, int channel, const Value& value) {
    if (std::get<std::int64_t>(value) == 0) {
        return;
    }
    const std::int64_t enhanced = scope.settings().Whole(SettingId::kEnhancedBandwidth, channel);
    for (int other = 0; other < kMaxChannels; ++other) {
        scope.settings().Set(SettingId::kEnhancedBandwidth, other, enhanced);
    }
}

Value AttenuationInDecibels(Oscilloscope& scope, int channel) {
    return 20 * std::log10(scope.settings().Number(SettingId::kExternalAttenuation, channel));
}

void SetAttenuationInDecibels(Oscilloscope& scope, int channel, const Value& value) {
    scope.settings().Set(SettingId::kExternalAttenuation, channel,
                         std::pow(10.0, std::get<double>(value) / 20));
}

}  // namespace

std::vector<CommandRow> VerticalCommands() {
    using enum SettingId;
    return {
        CommandRow("CH<x>:SCAle", Real{1e-3, 10, 0.5})
            .As(kChannelScale)
            .Initially({0.5, 1.0, 1.0, 0.1})
            .Then(Restart),
        CommandRow("CH<x>:POSition", Real{-8, 8, 0}).As(kChannelPosition).Then(Restart),
        CommandRow("CH<x>:OFFSet", Real{-100, 100, 0}).As(kChannelOffset).Then(Restart),
        CommandRow("CH<x>:COUPling", Keyword{"AC|DC|GND|DCREJect", 1})
            .As(kChannelCoupling)
            .Then(Restart),
        CommandRow("CH<x>:DESKew", Real{-75e-9, 75e-9, 0}),
        CommandRow("CH<x>:TERmination", Real{50, 1e6, 50, kTerminations, true}),
        CommandRow("CH<x>:BANdwidth", Real{1e6, 1e12, 1e12, kBandwidths})
            .As(kChannelBandwidth)
            .Get(Bandwidth),
        CommandRow("CH<x>:BANdwidth:ENHanced", Keyword{"OFF|AUTO"}).As(kEnhancedBandwidth),
        CommandRow("CH<x>:BANdwidth:ENHanced:STATE?", Flag{}).Get(EnhancedState),
        CommandRow("CH<x>:BANdwidth:ENHanced:APPLYTOAll", Flag{}).Then(ApplyEnhancedToAll),
        CommandRow("CH<x>:LABel:NAMe", Text{"", 32}),
        CommandRow("CH<x>:LABel:XPOS", kLabelPlace),
        CommandRow("CH<x>:LABel:YPOS", kLabelPlace),
        CommandRow("CH<x>:PROBe:GAIN?", Real{1, 1, 1}),
        CommandRow("CH<x>:PROBe:RESistance?", Real{1e6, 1e6, 1e6}),
        CommandRow("CH<x>:PROBe:UNIts?", Text{"V"}),
        CommandRow("CH<x>:PROBe:ID:TYPe?", Text{"No probe detected"}),
        CommandRow("CH<x>:PROBe:ID:SERnumber?", Text{"N/A"}),
        CommandRow("CH<x>:PROBe:SIGnal", Keyword{"BYPass|PASS", 1}),
        CommandRow("CH<x>:PROBe:SET", Text{"", 100}),
        CommandRow("CH<x>:PROBe:INPUTMode", Keyword{kInputModes, 3}),
        CommandRow("CH<x>:PROBe:INPUTMode:CMOFFSet", kProbeOffset),
        CommandRow("CH<x>:PROBe:INPUTMode:DMOFFSet", kProbeOffset),
        CommandRow("CH<x>:PROBe:INPUTMode:AOFFSet", kProbeOffset),
        CommandRow("CH<x>:PROBe:INPUTMode:BOFFSet", kProbeOffset),
        CommandRow("CH<x>:PROBEFunc:EXTAtten", Real{1e-10, 1e10, 1}).As(kExternalAttenuation),
        CommandRow("CH<x>:PROBEFunc:EXTDBatten", Real{-200, 200, 0})
            .Get(AttenuationInDecibels)
            .Then(SetAttenuationInDecibels),
        CommandRow("CH<x>:PROBEFunc:EXTUnits", Text{"V", 10}),
        CommandRow("CH<x>:PROBECal?", Keyword{"FAIl|INITialized|PASS|RUNNing", 1}),
        CommandRow("CH<x>:PROBECOntrol", Keyword{"AUTO|MANual"}),
        CommandRow("CH<x>:ICAP:STATE", Flag{}).LackedBy(kOlderFamilies),
        CommandRow("WLENgth:VALue", Real{1, 1e5, 1550}).LackedBy(kElectricalFamilies),
        CommandRow("AUXin:COUPling", Keyword{"AC|DC|GND|DCREJect", 1}),
        CommandRow("AUXin:PROBe:SIGnal", Keyword{"BYPass|PASS", 1}),
        CommandRow("AUXin:PROBe:SET", Text{"", 100}),
        CommandRow("AUXin:PROBe:INPUTMode", Keyword{kInputModes, 3}),
        CommandRow("AUXin:PROBe:INPUTMode:CMOFFSet", kProbeOffset),
        CommandRow("AUXin:PROBe:INPUTMode:DMOFFSet", kProbeOffset),
        CommandRow("AUXin:PROBe:INPUTMode:AOFFSet", kProbeOffset),
        CommandRow("AUXin:PROBe:INPUTMode:BOFFSet", kProbeOffset),
        CommandRow("D<x>:POSition", Real{-8, 8, 0}),
        CommandRow("D<x>:LABel", Text{"", 32}),
        CommandRow("D<x>:THREshold", Real{-10, 10, 1.4}).As(kDigitalThreshold),
        CommandRow("SELect:CH<x>", Flag{})
            .As(kSelectChannel)
            .Initially({std::int64_t{1}, std::int64_t{0}, std::int64_t{0}, std::int64_t{0}}),
        CommandRow("SELect:MATH<x>", Flag{}).As(kSelectMath),
        CommandRow("SELect:REF<x>", Flag{}).As(kSelectReference),
        CommandRow("SELect:D<x>", Flag{}).As(kSelectDigital),
    };
}

}  // namespace virtual_scope
