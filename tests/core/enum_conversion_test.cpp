// Enumerations of a format for the member that runs: what has a token, what is reported, and who is
// asked when the driver has no table.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "core/status_error.h"
#include "generated/members/IKestrionAcquisition.h"
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

constexpr auto kUnrecoverable = static_cast<HRESULT>(0x80047000U);
constexpr auto kInvalidValue = static_cast<HRESULT>(0x80047010U);
constexpr auto kUnexpectedResponse = static_cast<HRESULT>(0x80047059U);

constexpr MethodDescriptor Member(std::string_view memberName, std::string_view memberKey) {
    return {.iid = {},
            .interfaceName = "IKestrionChannel",
            .memberName = memberName,
            .fullName = memberKey,
            .command = {},
            .response = {},
            .refusedFamilies = {}};
}

constexpr MethodDescriptor kPutCoupling = Member("put_Coupling", "IKestrionChannel.Coupling");
constexpr MethodDescriptor kPutOffset = Member("put_Offset", "IKestrionChannel.Offset");

// Knows one enumeration, of which 4 is "FOUR"; its answers come with the given status.
class Personality final : public IEnumFormatter {
  public:
    explicit Personality(HRESULT status, std::int32_t longest = 0)
        : status_(status), longest_(longest) {}

    HRESULT EnumToToken(std::string_view name, std::int32_t value, std::string& token) override {
        ++asked;
        if (Succeeded(status_)) {
            EXPECT_EQ(name, "ExtraEnum");
            EXPECT_EQ(value, 4);
            token = "FOUR";
        }
        return status_;
    }
    HRESULT TokenToEnum(std::string_view name, std::string_view token,
                        std::int32_t& value) override {
        ++asked;
        if (Succeeded(status_)) {
            EXPECT_EQ(name, "ExtraEnum");
            EXPECT_EQ(token, "FOUR");
            value = 4;
        }
        return status_;
    }
    std::int32_t GetMaxTokenLength(std::string_view) override {
        ++asked;
        return longest_;
    }

    int asked = 0;

  private:
    HRESULT status_;
    std::int32_t longest_;
};

class EnumConversionTest : public ScopeTest {
  protected:
    void SetUp() override {
        // Every driver object is its own identity.
        root_ = static_cast<CDriver*>(Query<IUnknown>(scope.Get()).Get());
    }

    CDriver& Root() { return *root_; }

    HRESULT ToToken(const MethodDescriptor& member, std::string_view name, std::int32_t number) {
        const CallStack::Entry running(Root().Calls(), member);
        token = "before";
        return Root().EnumToToken(name, number, token);
    }
    HRESULT ToValue(const MethodDescriptor& member, std::string_view name, std::string_view text) {
        const CallStack::Entry running(Root().Calls(), member);
        value = 77;
        return Root().TokenToEnum(name, text, value);
    }
    std::int32_t Longest(const MethodDescriptor& member, std::string_view name) {
        const CallStack::Entry running(Root().Calls(), member);
        return Root().GetMaxTokenLength(name);
    }

    std::string token;
    std::int32_t value = 0;

  private:
    CDriver* root_ = nullptr;
};

TEST_F(EnumConversionTest, TheRunningMemberDecidesWhichTableIsMeant) {
    constexpr auto kEnhanced =
        Member("put_EnhancedBandwidth", "IKestrionChannel.EnhancedBandwidth");
    constexpr auto kState =
        Member("get_BandWidthEnhancedState", "IKestrionChannel.BandWidthEnhancedState");
    EXPECT_EQ(ToToken(kEnhanced, "KestrionChannelEnhancedBandwidthEnum", 1), S_OK);
    EXPECT_EQ(token, "AUTO");
    EXPECT_EQ(ToToken(kState, "KestrionChannelEnhancedBandwidthEnum", 1), S_OK);
    EXPECT_EQ(token, "1");
    EXPECT_EQ(ToValue(kState, "ChannelEnhancedBandwidth", " 1\n"), S_OK);
    EXPECT_EQ(value, 1);
}

TEST_F(EnumConversionTest, OfNestedMembersTheInnermostDecides) {
    const CallStack::Entry outer(Root().Calls(), kPutOffset);
    EXPECT_EQ(ToToken(kPutCoupling, "ChannelCoupling", 1), S_OK);
    EXPECT_EQ(token, "DC");
}

TEST_F(EnumConversionTest, GetterAndSetterMeetInOneTable) {
    EXPECT_EQ(members::IKestrionAcquisition::get_Mode.fullName, "IKestrionAcquisition.Mode");
    EXPECT_EQ(members::IKestrionAcquisition::put_Mode.fullName, "IKestrionAcquisition.Mode");
    EXPECT_EQ(members::IKestrionAcquisition::SetAverageMode.fullName,
              "IKestrionAcquisition.SetAverageMode");
    EXPECT_EQ(ToToken(members::IKestrionAcquisition::put_Mode, "AcquisitionMode", 2), S_OK);
    EXPECT_EQ(token, "HIRES");
    EXPECT_EQ(ToValue(members::IKestrionAcquisition::get_Mode, "AcquisitionMode", "HIRES"), S_OK);
    EXPECT_EQ(value, 2);
}

TEST_F(EnumConversionTest, AValueWithoutATokenIsInvalidAndLeavesTheTokenAlone) {
    EXPECT_EQ(ToToken(kPutCoupling, "ChannelCoupling", 4), kInvalidValue);
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (4) for method put_Coupling, parameter nVal.");
    EXPECT_EQ(token, "before");
    EXPECT_EQ(ToToken(kPutCoupling, "ChannelCoupling", -1), kInvalidValue);
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (-1) for method put_Coupling, parameter nVal.");
}

TEST_F(EnumConversionTest, ATokenWithoutAValueIsUnexpectedAndLeavesTheValueAlone) {
    EXPECT_EQ(ToValue(kPutCoupling, "ChannelCoupling", "dc"), kUnexpectedResponse);
    EXPECT_EQ(ErrorText(),
              "Kestrion: Unexpected response from the instrument.\r\n"
              "Unexpected value 'dc' for enum 'ChannelCoupling'.");
    EXPECT_EQ(value, 77);
}

TEST_F(EnumConversionTest, AnEnumerationIsUnrecognizedWhereTheMemberIsNotListed) {
    EXPECT_EQ(ToToken(kPutOffset, "ChannelCoupling", 1), kUnrecoverable);
    EXPECT_EQ(ErrorText(),
              "Kestrion: Unrecoverable failure.\r\nUnrecognized enum name 'ChannelCoupling'.");
    EXPECT_EQ(token, "before");
    EXPECT_EQ(ToValue(kPutOffset, "ChannelCoupling", "DC"), kUnrecoverable);
    EXPECT_EQ(ErrorText(),
              "Kestrion: Unrecoverable failure.\r\nUnrecognized enum name 'ChannelCoupling'.");
    EXPECT_EQ(value, 77);
}

TEST_F(EnumConversionTest, WhatNoCommandCarriesIsUnrecognized) {
    for (const std::string name : {"TimeOut", "KestrionTimeOutEnum", "IviScopeAcquisitionType",
                                   "UtilityExCalibrationStatus", "Nothing", ""}) {
        EXPECT_EQ(ToToken(kPutCoupling, name, 0), kUnrecoverable) << name;
        EXPECT_EQ(ErrorText(),
                  "Kestrion: Unrecoverable failure.\r\nUnrecognized enum name '" + name + "'.");
    }
}

TEST_F(EnumConversionTest, TheLongestTokenOfAnUnknownNameIsZeroAndNothingIsReported) {
    EXPECT_EQ(Longest(kPutCoupling, "ChannelCoupling"), 8) << "DCREJECT";
    EXPECT_EQ(Longest(kPutCoupling, "Nothing"), 0);
    EXPECT_EQ(Longest(kPutOffset, "ChannelCoupling"), 0);
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(EnumConversionTest, OutsideOfEveryMemberIsAFailureOfItsOwn) {
    const auto statusOf = [](const auto& call) {
        try {
            call();
        } catch (const StatusError& error) {
            return error.Status();
        }
        return S_OK;
    };
    EXPECT_EQ(statusOf([&] { (void)Root().EnumToToken("ChannelCoupling", 1, token); }),
              static_cast<HRESULT>(0x80004005U));
    EXPECT_EQ(statusOf([&] { (void)Root().TokenToEnum("ChannelCoupling", "DC", value); }),
              static_cast<HRESULT>(0x80004005U));
    EXPECT_EQ(statusOf([&] { (void)Root().GetMaxTokenLength("ChannelCoupling"); }),
              static_cast<HRESULT>(0x80004005U));
}

TEST_F(EnumConversionTest, APersonalityAnswersForANameThatTheDriverDoesNotKnow) {
    Personality personality(S_OK, 4);
    Root().AddPersonality("Extra", personality);
    EXPECT_EQ(ToToken(kPutCoupling, "ExtraEnum", 4), S_OK);
    EXPECT_EQ(token, "FOUR");
    EXPECT_EQ(ToValue(kPutCoupling, "ExtraEnum", "FOUR"), S_OK);
    EXPECT_EQ(value, 4);
    EXPECT_EQ(Longest(kPutCoupling, "ExtraEnum"), 4);
    EXPECT_EQ(personality.asked, 3);
}

TEST_F(EnumConversionTest, APersonalityIsNotAskedForWhatTheDriverHas) {
    Personality personality(S_OK, 99);
    Root().AddPersonality("Extra", personality);
    EXPECT_EQ(ToToken(kPutCoupling, "ChannelCoupling", 4), kInvalidValue);
    EXPECT_EQ(ToValue(kPutCoupling, "ChannelCoupling", "FOUR"), kUnexpectedResponse);
    EXPECT_EQ(Longest(kPutCoupling, "ChannelCoupling"), 8);
    EXPECT_EQ(personality.asked, 0);
}

TEST_F(EnumConversionTest, TheFirstPersonalityThatDoesNotFailHasAnswered) {
    // In the order of their map, which is that of the names' hashes here: 'A' is 65, 'B' 66,
    // 'C' 67.
    Personality failing(E_FAIL, 3);
    Personality warning(S_FALSE, 9);
    Personality last(S_OK, 5);
    Root().AddPersonality("C", last);
    Root().AddPersonality("B", warning);
    Root().AddPersonality("A", failing);
    EXPECT_EQ(ToToken(kPutCoupling, "ExtraEnum", 4), S_OK);
    EXPECT_EQ(failing.asked, 1);
    EXPECT_EQ(warning.asked, 1);
    EXPECT_EQ(last.asked, 0);
    EXPECT_EQ(ToValue(kPutCoupling, "ExtraEnum", "FOUR"), S_OK);
    EXPECT_EQ(last.asked, 0);
    EXPECT_EQ(Longest(kPutCoupling, "ExtraEnum"), 9) << "all of them are asked";
    EXPECT_EQ(last.asked, 1);
}

TEST_F(EnumConversionTest, WhenEveryPersonalityFailsTheNameIsUnrecognized) {
    Personality first(E_FAIL, -7);
    Personality second(E_NOTIMPL, -8);
    Root().AddPersonality("First", first);
    Root().AddPersonality("Second", second);
    EXPECT_EQ(ToToken(kPutCoupling, "ExtraEnum", 4), kUnrecoverable);
    EXPECT_EQ(ErrorText(),
              "Kestrion: Unrecoverable failure.\r\nUnrecognized enum name 'ExtraEnum'.");
    EXPECT_EQ(ToValue(kPutCoupling, "ExtraEnum", "FOUR"), kUnrecoverable);
    EXPECT_EQ(Longest(kPutCoupling, "ExtraEnum"), 0) << "no length is below zero";
    EXPECT_EQ(first.asked, 3);
    EXPECT_EQ(second.asked, 3);
}

TEST_F(EnumConversionTest, CloseForgetsThePersonalities) {
    Simulate();
    Personality personality(S_OK, 4);
    Root().AddPersonality("Extra", personality);
    EXPECT_EQ(scope->Close(), S_OK);
    EXPECT_EQ(ToToken(kPutCoupling, "ExtraEnum", 4), kUnrecoverable);
    EXPECT_EQ(personality.asked, 0);
}

}  // namespace
}  // namespace kestrion
