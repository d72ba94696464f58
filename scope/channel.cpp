// IKestrionChannel: values that a family or a channel refuses.
#include <array>
#include <string_view>

#include "core/member_call.h"
#include "generated/hooks/IKestrionChannel.h"

namespace kestrion::hooks::IKestrionChannel {
namespace {

// Reports a value that the connected model doesn't have.
HRESULT ReportValueNotSupported(MemberCall& call, std::string_view value,
                                std::string_view parameter) {
    return call.Report(message::kValueNotSupported, {value, parameter, call.Method().memberName});
}

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

bool InAnyFamily(MemberCall& call, std::span<const std::string_view> families) {
    for (const std::string_view family : families) {
        if (call.InstrumentInFamily(family)) {
            return true;
        }
    }
    return false;
}

}  // namespace

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
    } else if (InAnyFamily(call, kNoFullBandwidthFamilies)) {
        refused = kMiddle;
    } else {
        refused = kOthers;
    }
    for (const BandwidthName& bandwidth : refused) {
        if (bandwidth.value == val) {
            return ReportValueNotSupported(call, bandwidth.name, "val");
        }
    }
    return call.SendCommand();
}

// One optical wavelength serves the whole instrument, so no channel may set it.
HRESULT put_WaveLength(MemberCall& call, KestrionChannelWavelengthEnum) {
    if (!call.InstrumentInFamily("Crake Series")) {
        return ReportValueNotSupported(call, "WaveLength", "val");
    }
    if (call.Node().Index() != -1) {
        return call.ReportDetail(message::kChannelRefused, "InstrSet");
    }
    return call.SendCommand();
}

}  // namespace kestrion::hooks::IKestrionChannel
