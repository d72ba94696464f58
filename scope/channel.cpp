// IKestrionChannel: values that a family or a channel refuses.
#include <array>
#include <string_view>

#include "core/member_call.h"
#include "generated/hooks/IKestrionChannel.h"
#include "kestrion/platform/error_info.h"
#include "scope/formatted_query.h"

namespace kestrion::hooks::IKestrionChannel {
namespace {

struct BandwidthName {
    KestrionChannelBandwidthEnum value;
    std::string_view name;
};
constexpr BandwidthName kTwofifty = {KestrionChannelBandwidthTwofifty,
                                     "KestrionChannelBandwidthTwofifty"};
constexpr BandwidthName kOnefifty = {KestrionChannelBandwidthOnefifty,
                                     "KestrionChannelBandwidthOnefifty"};
constexpr BandwidthName kFive = {KestrionChannelBandwidthFive, "KestrionChannelBandwidthFive"};

constexpr std::array<std::string_view, 6> kNoFullBandwidthFamilies = {
    "Lark Series", "LarkB Series", "Ibis Series", "IbisB Series", "IbisC Series", "Crake Series"};

}  // namespace

HRESULT Configure(MemberCall& call, double, double, double, double, KestrionChannelCouplingEnum,
                  KestrionChannelTerminationEnum, KestrionChannelBandwidthEnum Bandwidth,
                  VARIANT_BOOL) {
    if (call.Node().Number() > 2 && call.InstrumentHasTwoChannels()) {
        return call.Errors().ReportDetail(message::kChannelRefused, "Configure");
    }
    const bool refused =
        Bandwidth == KestrionChannelBandwidthOnefifty ||
        (Bandwidth == KestrionChannelBandwidthTwofifty && call.InstrumentInFamily("Heron Series"));
    return refused ? call.Errors().ReportValueNotSupported("Configure", "Channel")
                   : call.SendCommand();
}

HRESULT Read(MemberCall& call, double* Position, double* Scale, double* Offset, double* Deskew,
             KestrionChannelCouplingEnum* Coupling, KestrionChannelTerminationEnum* Termination,
             double* Bandwidth, VARIANT_BOOL* DisplayState) {
    // What can't be read of the settings stays zero; the display state decides.
    if (Failed(call.QueryFormatted(kKeepTimeout, Position, Scale, Offset, Deskew, Coupling,
                                   Termination, Bandwidth))) {
        (void)SetErrorInfo(0, nullptr);
    }
    return QueryByFormat(call, ":SELECT:CH%d?", "%{VARIANT_BOOL}[^;]", call.Node().Number(),
                         DisplayState);
}

HRESULT put_BandwidthEnum(MemberCall& call, KestrionChannelBandwidthEnum val) {
    std::span<const BandwidthName> refused;
    static constexpr std::array kHeronB = {kTwofifty, kOnefifty};
    static constexpr std::array kHeron = {kTwofifty, kFive};
    static constexpr std::array kMiddle = {kOnefifty, kFive};
    static constexpr std::array kOthers = {kOnefifty};
    if (call.InstrumentInFamily("HeronB Series")) {
        refused = kHeronB;
    } else if (call.InstrumentInFamily("Heron Series")) {
        refused = kHeron;
    } else if (call.InstrumentInAnyFamily(kNoFullBandwidthFamilies)) {
        refused = kMiddle;
    } else {
        refused = kOthers;
    }
    for (const BandwidthName& bandwidth : refused) {
        if (bandwidth.value == val) {
            return call.Errors().ReportValueNotSupported(bandwidth.name, "val");
        }
    }
    return call.SendCommand();
}

// One optical wavelength serves the whole instrument, so no channel may set it.
HRESULT put_WaveLength(MemberCall& call, KestrionChannelWavelengthEnum) {
    if (!call.InstrumentInFamily("Crake Series")) {
        return call.Errors().ReportValueNotSupported("WaveLength", "val");
    }
    if (call.Node().Index() != -1) {
        return call.Errors().ReportDetail(message::kChannelRefused, "InstrSet");
    }
    return call.SendCommand();
}

}  // namespace kestrion::hooks::IKestrionChannel
