#include "tests/support/scope_fixture.h"

#include <gmock/gmock.h>

#include <memory>

#include "hosting/create.h"
#include "hosting/objects.h"

namespace kestrion {

ScopeTest::ScopeTest() {
    EXPECT_EQ(CreateKestrion(Environment(), scope.Out()), S_OK);
    EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
}

ScopeTest::~ScopeTest() = default;

DriverEnvironment ScopeTest::Environment() {
    DriverEnvironment environment;
    environment.makeRepCap = MakeRepCap;
    environment.clock = &clock;
    environment.openStore = [this] { return store; };
    environment.chooseVisa = [this](std::string_view) {
        if (!visaProblem.empty()) {
            return VisaSelection{nullptr, visaProblem};
        }
        return VisaSelection{
            std::make_shared<const VisaLibrary>(fake.Table(), "scripted", "for a test", nullptr),
            {}};
    };
    return environment;
}

void ScopeTest::TearDown() {
    EXPECT_TRUE(fake.Finished());
    EXPECT_THAT(fake.Mismatches(), testing::IsEmpty());
    scope = {};
    EXPECT_EQ(fake.OpenObjects(), 0);
    EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
}

HRESULT ScopeTest::Initialize(std::string_view resource, std::string_view options, bool idQuery,
                              bool reset) {
    const BstrPtr name(resource);
    const BstrPtr text(options);
    return scope->Initialize(name.Get(), ToVariantBool(idQuery), ToVariantBool(reset), text.Get());
}

void ScopeTest::ExpectStartUp(std::string_view model) {
    fake.Expect("*IDN?\n").Reply("KESTRION," + std::string(model) + ",V000001,1.0.0\n");
    fake.Expect("HEAD OFF;:VERBOSE 1\n");
}

void ScopeTest::Connect(std::string_view model, std::string_view options) {
    ExpectStartUp(model);
    ASSERT_EQ(Initialize("GPIB0::1::INSTR", options), S_OK);
    ASSERT_TRUE(fake.Finished());
}

void ScopeTest::Simulate(std::string_view driverSetup) {
    std::string options = "simulate=true";
    if (!driverSetup.empty()) {
        options.append(",DriverSetup=").append(driverSetup);
    }
    ASSERT_EQ(Initialize("GPIB0::1::INSTR", options), S_OK);
}

ComPtr<IKestrionChannel> ScopeTest::Channel(std::string_view name) {
    ComPtr<IKestrionChannels> channels;
    EXPECT_EQ(scope->get_Channels(channels.Out()), S_OK);
    ComPtr<IKestrionChannel> channel;
    const BstrPtr text(name);
    EXPECT_EQ(channels->get_Item(text.Get(), channel.Out()), S_OK);
    return channel;
}

std::string ScopeTest::ErrorText() {
    ComPtr<IErrorInfo> error;
    BstrPtr description;
    if (GetErrorInfo(0, error.Out()) == S_OK) {
        EXPECT_EQ(error->GetDescription(description.Out()), S_OK);
    }
    return description.Utf8();
}

}  // namespace kestrion
