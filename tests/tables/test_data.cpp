// The data that the tables are tested with: small, and with every peculiarity that data can have.
#include <array>

#include "tables/enum_data.h"
#include "tables/family_data.h"
#include "tables/repeated_capability_data.h"

namespace kestrion {
namespace {

using Text = std::string_view;
using Texts = std::span<const Text>;

constexpr Text kOne[] = {"1"};
constexpr Text kZero[] = {"0"};
constexpr Text kOn[] = {"1", " ON"};
constexpr Text kOff[] = {"0", " OFF"};
constexpr Text kOneOn[] = {"1, ON"};
constexpr Text kZeroOff[] = {"0, OFF"};
constexpr EnumRow kDigitRows[] = {{1, kOne}, {-1, kOne}, {0, kZero}};
constexpr EnumRow kBlankRows[] = {{1, kOn}, {-1, kOn}, {0, kOff}};
constexpr EnumRow kCommaRows[] = {{1, kOneOn}, {-1, kOneOn}, {0, kZeroOff}};
constexpr Text kDigitKeys[] = {"IKestrionCursor.Paired", "IKestrionChannel.Enabled"};
constexpr Text kBlankKeys[] = {"IKestrionBus.State"};
constexpr Text kCommaKeys[] = {"IIviScopeChannel.Configure"};
constexpr EnumTable kBooleanTables[] = {
    {kDigitKeys, kDigitRows}, {kBlankKeys, kBlankRows}, {kCommaKeys, kCommaRows}};

constexpr Text kAc[] = {"AC"};
constexpr Text kDc[] = {"DC"};
constexpr Text kDcReject[] = {"DCREJECT", "DCREJ"};
constexpr EnumRow kCouplingRows[] = {{0, kAc}, {1, kDc}};
constexpr EnumRow kWideCouplingRows[] = {{0, kAc}, {1, kDc}, {2, kDcReject}};
constexpr Text kCouplingKeys[] = {"IKestrionChannel.Coupling"};
constexpr Text kWideCouplingKeys[] = {"IKestrionChannel.Configure", "IKestrionChannel.Read"};
constexpr EnumTable kCouplingTables[] = {{kCouplingKeys, kCouplingRows},
                                         {kWideCouplingKeys, kWideCouplingRows}};

constexpr Text kSolid[] = {"SOLID"};
constexpr EnumRow kLinestyleRows[] = {{0, kSolid}};
constexpr Text kLinestyleKeys[] = {"IKestrionCursor.Linestyle"};
constexpr EnumTable kLinestyleTables[] = {{kLinestyleKeys, kLinestyleRows}};

// Shares its short name with an enumeration that stands behind it.
constexpr Text kSharedKestrion[] = {"DRIVER"};
constexpr EnumRow kSharedKestrionRows[] = {{0, kSharedKestrion}};
constexpr Text kSharedKestrionKeys[] = {"IKestrionTrigger.Type"};
constexpr EnumTable kSharedKestrionTables[] = {{kSharedKestrionKeys, kSharedKestrionRows}};
constexpr Text kSharedClass[] = {"CLASS"};
constexpr EnumRow kSharedClassRows[] = {{0, kSharedClass}};
constexpr Text kSharedClassKeys[] = {"IIviScopeTrigger.Type"};
constexpr EnumTable kSharedClassTables[] = {{kSharedClassKeys, kSharedClassRows}};

constexpr EnumData kEnums[] = {
    {"VARIANT_BOOL", "", kBooleanTables},
    {"KestrionChannelCouplingEnum", "ChannelCoupling", kCouplingTables},
    {"KestrionCursorLinestyleEnum", "CursorLinestyle", kLinestyleTables},
    {"KestrionTriggerTypeEnum", "TriggerType", kSharedKestrionTables},
    {"KestrionTimeOutEnum", "TimeOut", {}},
    {"IviScopeTriggerTypeEnum", "TriggerType", kSharedClassTables},
    {"IviScopeVerticalCouplingEnum", "VerticalCoupling", kCouplingTables},
};

constexpr Text kLark[] = {"LK7054", "LK7104"};
constexpr Text kLarkB[] = {"LK7254B"};
constexpr Text kIbis[] = {"IB6404", "IB6124C"};
constexpr Text kHeronB[] = {"HR5054B", "HR5052BE"};
constexpr FamilyData kFamilies[] = {{"LarkB Series", kLarkB},
                                    {"Lark Series", kLark},
                                    {"Ibis Series", kIbis},
                                    {"HeronB Series", kHeronB}};

}  // namespace

std::span<const EnumData> AllEnums() {
    return kEnums;
}

std::span<const FamilyData> AllFamilies() {
    return kFamilies;
}

std::string_view SupportedInstrumentModels() {
    return "HR5054B,HR5052BE,IB6404,IB6124C,LK7054,LK7104,LK7254B";
}

std::span<const RepeatedCapabilityData> AllRepeatedCapabilities() {
    return {};
}

}  // namespace kestrion
