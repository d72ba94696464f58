// Standards of the communication and serial triggers that only some families know.
#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "core/member_call.h"
#include "generated/hooks/IKestrionTriggerCommunication.h"
#include "generated/hooks/IKestrionTriggerSerial.h"

namespace kestrion::hooks {
namespace {

// Fast serial standards came with these.
constexpr std::array<std::string_view, 3> kFastFamilies = {"Plover Series", "Swift Series",
                                                           "Merlin Series"};
constexpr std::array<std::string_view, 3> kFastSerialFamilies = {"LarkB Series", "Plover Series",
                                                                 "Merlin Series"};

// The standards from `first` to `last` are for these families alone.
struct StandardRange {
    int first;
    int last;
    std::span<const std::string_view> families;
};

constexpr StandardRange kCommunication[] = {
    {KestrionTriggerCommunicationStandardSAS1500, KestrionTriggerCommunicationStandardSAS3000,
     kFastFamilies},
    {KestrionTriggerCommunicationStandardFBDIMM3200, KestrionTriggerCommunicationStandardFBDIMM4000,
     kFastFamilies},
    {KestrionTriggerCommunicationStandardFBDIMM4800, KestrionTriggerCommunicationStandardVIDEO2970,
     kFastFamilies},
    {KestrionTriggerCommunicationStandardPCIe5000, KestrionTriggerCommunicationStandardUSB5000,
     kFastFamilies},
};
constexpr StandardRange kSerial[] = {
    {KestrionTriggerSerialStandardFC4250, KestrionTriggerSerialStandardFC4250, kFastSerialFamilies},
};

HRESULT SendStandard(MemberCall& call, std::span<const StandardRange> ranges, int standard) {
    const auto range = std::ranges::find_if(ranges, [standard](const StandardRange& candidate) {
        return standard >= candidate.first && standard <= candidate.last;
    });
    if (range != ranges.end() && !call.InstrumentInAnyFamily(range->families)) {
        return call.Errors().ReportValueNotSupported(ValueText(standard), "Standard");
    }
    return call.SendCommand();
}

}  // namespace

namespace IKestrionTriggerCommunication {

HRESULT Configure(MemberCall& call, KestrionChannelEnum, double,
                  KestrionTriggerCommunicationSourceTypeEnum,
                  KestrionTriggerCommunicationStandardEnum Standard,
                  KestrionTriggerCommunicationClockPolarityEnum) {
    return SendStandard(call, kCommunication, Standard);
}

HRESULT put_Standard(MemberCall& call, KestrionTriggerCommunicationStandardEnum val) {
    return SendStandard(call, kCommunication, val);
}

}  // namespace IKestrionTriggerCommunication

namespace IKestrionTriggerSerial {

HRESULT Configure(MemberCall& call, KestrionChannelEnum, KestrionTriggerSerialCodeEnum,
                  KestrionTriggerSerialStandardEnum Standard, KestrionTriggerSerialDataFormatEnum,
                  BSTR) {
    return SendStandard(call, kSerial, Standard);
}

HRESULT put_Standard(MemberCall& call, KestrionTriggerSerialStandardEnum val) {
    return SendStandard(call, kSerial, val);
}

}  // namespace IKestrionTriggerSerial

}  // namespace kestrion::hooks
