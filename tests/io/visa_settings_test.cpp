// The session over VISA: settings, attributes, information and locks.
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "io/visa_enums.h"
#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VisaSettingsTest : public OpenSessionFixture {};

// Settings and attributes -------------------------------------------------------------------------

TEST_F(VisaSettingsTest, TimeoutPassesAsItIsAndMinusOneIsVisasInfinite) {
    EXPECT_EQ(session.SetTimeout(5000), S_OK);
    EXPECT_EQ(session.SetTimeout(-1), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viSetAttribute(TMO_VALUE, 5000)",
                                          "viSetAttribute(TMO_VALUE, 4294967295)"));
    std::int32_t milliseconds = 0;
    EXPECT_EQ(session.GetTimeout(&milliseconds), S_OK);
    EXPECT_EQ(milliseconds, -1);
}

TEST_F(VisaSettingsTest, TransportSettingsReachTheirAttributes) {
    BYTE character = 0;
    bool enabled = true;
    EXPECT_EQ(session.SetTerminationCharacter(13), S_OK);
    EXPECT_EQ(session.GetTerminationCharacter(&character), S_OK);
    EXPECT_EQ(character, 13);
    EXPECT_EQ(session.SetTerminationCharacterEnabled(false), S_OK);
    EXPECT_EQ(session.GetTerminationCharacterEnabled(&enabled), S_OK);
    EXPECT_FALSE(enabled);
    EXPECT_EQ(session.SetSendEndEnabled(true), S_OK);
    EXPECT_EQ(session.GetSendEndEnabled(&enabled), S_OK);
    EXPECT_TRUE(enabled);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viSetAttribute(TERMCHAR, 13)", "viGetAttribute(TERMCHAR)",
                            "viSetAttribute(TERMCHAR_EN, 0)", "viGetAttribute(TERMCHAR_EN)",
                            "viSetAttribute(SEND_END_EN, 1)", "viGetAttribute(SEND_END_EN)"));
}

TEST_F(VisaSettingsTest, NullOutPointersOfTheSettingsAreReportedByTheirNames) {
    EXPECT_EQ(session.GetTimeout(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetTerminationCharacter(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetTerminationCharacterEnabled(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetProtocol(nullptr), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<bool*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::uint64_t*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::uint32_t*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::uint16_t*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::uint8_t*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.GetAttribute(1, static_cast<std::string*>(nullptr)), kNullPointerStatus);
    EXPECT_EQ(session.SetAttribute(1, static_cast<const char*>(nullptr)), kNullPointerStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportNullPointer(GetTimeout | plTimeout | )",
                            "ReportNullPointer(GetTerminationCharacter | pcTermChar | )",
                            "ReportNullPointer(GetTerminationCharacterEnabled | pbEnabled | )",
                            "ReportNullPointer(GetProtocol | peProtocol | )",
                            "ReportNullPointer(GetAttribute | pbValue | )",
                            "ReportNullPointer(GetAttribute | pullValue | )",
                            "ReportNullPointer(GetAttribute | pulValue | )",
                            "ReportNullPointer(GetAttribute | pusValue | )",
                            "ReportNullPointer(GetAttribute | puchValue | )",
                            "ReportNullPointer(GetAttribute | pstrValue | )",
                            "ReportNullPointer(SetAttribute | pszValue | )"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(VisaSettingsTest, AttributesAreReadInEveryWidth) {
    constexpr visa::ViAttr kSome = 0x3FFF1234;
    fake.SetAttributeValue(kSome, 0x1122334455667788, 8);
    std::uint64_t wide = 0;
    EXPECT_EQ(session.GetAttribute(kSome, &wide), S_OK);
    EXPECT_EQ(wide, 0x1122334455667788U);
    fake.SetAttributeValue(kSome, 0x55667788, 4);
    std::uint32_t number = 0;
    EXPECT_EQ(session.GetAttribute(kSome, &number), S_OK);
    EXPECT_EQ(number, 0x55667788U);
    fake.SetAttributeValue(kSome, 0x7788, 2);
    std::uint16_t small = 0;
    EXPECT_EQ(session.GetAttribute(kSome, &small), S_OK);
    EXPECT_EQ(small, 0x7788U);
    bool flag = false;
    EXPECT_EQ(session.GetAttribute(kSome, &flag), S_OK);
    EXPECT_TRUE(flag);
    fake.SetAttributeValue(kSome, 0x88, 1);
    std::uint8_t byte = 0;
    EXPECT_EQ(session.GetAttribute(kSome, &byte), S_OK);
    EXPECT_EQ(byte, 0x88U);
    std::string text;
    EXPECT_EQ(session.GetAttribute(0xBFFF0001, &text), S_OK);
    EXPECT_EQ(text, "INSTR");
}

TEST_F(VisaSettingsTest, AttributeWiderThanAskedForGivesItsLowBits) {
    fake.SetAttributeValue(0x3FFF1234, 0x1122334455667788, 8);
    std::uint8_t byte = 0;
    EXPECT_EQ(session.GetAttribute(0x3FFF1234, &byte), S_OK);
    EXPECT_EQ(byte, 0x88U);
}

TEST_F(VisaSettingsTest, AttributesAreSetInEveryWidth) {
    constexpr visa::ViAttr kSome = 0x3FFF1234;
    EXPECT_EQ(session.SetAttribute(kSome, true), S_OK);
    EXPECT_EQ(session.SetAttribute(kSome, std::uint64_t{0x1122334455667788}), S_OK);
    EXPECT_EQ(session.SetAttribute(kSome, std::uint32_t{0xFFFFFFFF}), S_OK);
    EXPECT_EQ(session.SetAttribute(kSome, std::uint16_t{65535}), S_OK);
    EXPECT_EQ(session.SetAttribute(kSome, std::uint8_t{255}), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viSetAttribute(0x3FFF1234, 1)",
                                          "viSetAttribute(0x3FFF1234, 1234605616436508552)",
                                          "viSetAttribute(0x3FFF1234, 4294967295)",
                                          "viSetAttribute(0x3FFF1234, 65535)",
                                          "viSetAttribute(0x3FFF1234, 255)"));
    const char* const text = "some text";
    EXPECT_EQ(session.SetAttribute(kSome, text), S_OK);
    EXPECT_EQ(fake.AttributeValue(kSome), reinterpret_cast<std::uintptr_t>(text));
}

TEST_F(VisaSettingsTest, FailedAttributeLeavesTheValue) {
    std::uint32_t value = 77;
    EXPECT_EQ(session.GetAttribute(0x3FFF9999, &value), MakeStatus(0x8004001D));
    EXPECT_EQ(value, 77U);
}

TEST_F(VisaSettingsTest, ProtocolsAreTranslatedBothWays) {
    for (int own = 0; own < 5; ++own) {
        EXPECT_EQ(session.SetProtocol(static_cast<VisaIoProtocol>(own)), S_OK);
        EXPECT_EQ(fake.AttributeValue(0x3FFF001C), static_cast<std::uint64_t>(own) + 1);
        auto back = VisaIoProtocol::kNormal;
        EXPECT_EQ(session.GetProtocol(&back), S_OK);
        EXPECT_EQ(static_cast<int>(back), own);
    }
}

TEST_F(VisaSettingsTest, UnknownProtocolIsRefusedInBothDirections) {
    EXPECT_EQ(session.SetProtocol(static_cast<VisaIoProtocol>(5)), kIoErrorStatus);
    fake.SetAttributeValue(0x3FFF001C, 6, 2);
    auto protocol = VisaIoProtocol::kNormal;
    EXPECT_EQ(session.GetProtocol(&protocol), kIoErrorStatus);
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoError(Unsupported VISA I/O protocol.)",
                                              "ReportIoError(Unsupported VISA I/O protocol.)"));
}

TEST_F(VisaSettingsTest, TriggerProtocolsAreTranslated) {
    IVisaCLowLevelIo* io = session.GetLowLevelIo();
    for (int own = 0; own < 4; ++own) {
        EXPECT_EQ(io->AssertTrigger(static_cast<VisaTriggerProtocol>(own)), S_OK);
    }
    EXPECT_EQ(io->AssertTrigger(static_cast<VisaTriggerProtocol>(4)), kIoErrorStatus);
    EXPECT_THAT(fake.Calls(), ElementsAre("viAssertTrigger(0)", "viAssertTrigger(1)",
                                          "viAssertTrigger(2)", "viAssertTrigger(5)"));
    EXPECT_THAT(reporter.reports, ElementsAre("ReportIoError(Unsupported VISA trigger protocol.)"));
}

TEST_F(VisaSettingsTest, InterfaceTypesAreTranslatedAndOthersAreUnknown) {
    IVisaCSessionInfo* info = session.GetSessionInfo();
    const std::vector<std::pair<std::uint16_t, int>> expected{
        {1, 0}, {2, 1}, {3, 2}, {4, 3}, {5, 4}, {6, 5}, {7, 6}, {8, 8}, {0, 8}, {99, 8}};
    for (const auto& [visaType, own] : expected) {
        fake.SetInterfaceType(visaType);
        auto type = VisaInterfaceType::kGpib;
        EXPECT_EQ(info->GetInterfaceType(&type), S_OK);
        EXPECT_EQ(static_cast<int>(type), own) << visaType;
    }
}

TEST_F(VisaSettingsTest, InterfaceTypeThatCannotBeReadIsUnknown) {
    fake.FailAttribute(0x3FFF0171, kVisaIoError);
    auto type = VisaInterfaceType::kGpib;
    EXPECT_EQ(session.GetInterfaceType(&type), kMappedIoError);
    EXPECT_EQ(static_cast<int>(type), 8);
    EXPECT_EQ(session.GetInterfaceType(nullptr), kNullPointerStatus);
}

TEST_F(VisaSettingsTest, SessionInformationComesFromItsAttributes) {
    IVisaCSessionInfo* info = session.GetSessionInfo();
    std::string text;
    std::uint16_t number = 0;
    EXPECT_EQ(info->GetResourceName(&text), S_OK);
    EXPECT_EQ(text, "TCPIP0::scope::INSTR");
    EXPECT_EQ(info->GetInterfaceName(&text), S_OK);
    EXPECT_EQ(text, "TCPIP0 (scripted)");
    EXPECT_EQ(info->GetResourceClass(&text), S_OK);
    EXPECT_EQ(text, "INSTR");
    EXPECT_EQ(info->GetManufacturerName(&text), S_OK);
    EXPECT_EQ(text, "Scripted maker");
    EXPECT_EQ(info->GetManufacturerId(&number), S_OK);
    EXPECT_EQ(number, 0x0FFF);
    EXPECT_EQ(info->GetInterfaceNumber(&number), S_OK);
    EXPECT_EQ(number, 0);
    EXPECT_THAT(fake.Calls(),
                ElementsAre("viGetAttribute(RSRC_NAME)", "viGetAttribute(INTF_INST_NAME)",
                            "viGetAttribute(RSRC_CLASS)", "viGetAttribute(RSRC_MANF_NAME)",
                            "viGetAttribute(RSRC_MANF_ID)", "viGetAttribute(INTF_NUM)"));
}

// Locks -------------------------------------------------------------------------------------------

TEST_F(VisaSettingsTest, LockTakesTypeTimeoutAndKeyAndGivesTheKeyThatWasGranted) {
    std::string key = "former";
    EXPECT_EQ(session.Lock(IoLockType::kExclusive, 1000, "", &key), S_OK);
    EXPECT_EQ(key, "");
    EXPECT_TRUE(fake.Locked());
    EXPECT_EQ(session.Unlock(), S_OK);
    EXPECT_FALSE(fake.Locked());
    EXPECT_EQ(session.Lock(IoLockType::kShared, -1, "bench 3", &key), S_OK);
    EXPECT_EQ(key, "bench 3");
    EXPECT_EQ(session.Unlock(), S_OK);
    EXPECT_EQ(session.Lock(IoLockType::kShared, 0, "", nullptr), S_OK);
    EXPECT_THAT(fake.Calls(), ElementsAre("viLock(1, 1000, null)", "viUnlock()",
                                          "viLock(2, 4294967295, \"bench 3\")", "viUnlock()",
                                          "viLock(2, 0, null)"));
}

TEST_F(VisaSettingsTest, UnknownLockTypeIsRefused) {
    EXPECT_EQ(session.Lock(static_cast<IoLockType>(2), 0, "", nullptr), kIoErrorStatus);
    EXPECT_THAT(reporter.reports,
                ElementsAre("ReportIoError(Unsupported VISA session access mode.)"));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(VisaSettingsTest, LockThatIsNotGrantedIsReported) {
    fake.FailFunction("viLock", VisaCode(0xBFFF000F));
    std::string key = "former";
    EXPECT_EQ(session.Lock(IoLockType::kExclusive, 1000, "", &key), MakeStatus(0x8004000F));
    EXPECT_EQ(key, "former");
}

// The tables that no operation here shows ---------------------------------------------------------

TEST(VisaEnums, AddressSpacesAndWidthsHaveTheirNumbers) {
    const int spaces[] = {1, 2, 3, 4, 10, 11, 12, 13, 14, 15, 16, 9};
    for (int own = 0; own < 12; ++own) {
        EXPECT_EQ(visa::ToVisa(visa::kAddressSpaces, VisaAddressSpace{own}), spaces[own]);
    }
    EXPECT_EQ(visa::ToVisa(visa::kAddressSpaces, VisaAddressSpace{99}), std::nullopt);
    EXPECT_EQ(visa::ToVisa(visa::kDataWidths, VisaDataWidth{0}), 1);
    EXPECT_EQ(visa::ToVisa(visa::kDataWidths, VisaDataWidth{1}), 2);
    EXPECT_EQ(visa::ToVisa(visa::kDataWidths, VisaDataWidth{2}), 4);
    EXPECT_TRUE(visa::ToVisa(visa::kDataWidths, VisaDataWidth{3}).has_value());
    EXPECT_EQ(visa::ToVisa(visa::kDataWidths, VisaDataWidth{4}), std::nullopt);
    EXPECT_EQ(visa::kUnsupportedAddressSpace, "Unsupported VISA address space.");
    EXPECT_EQ(visa::kUnsupportedDataWidth, "Unsupported VISA data width.");
}

}  // namespace
}  // namespace kestrion
