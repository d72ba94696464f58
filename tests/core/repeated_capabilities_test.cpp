// Collections and their instances.
#include "core/repeated_capabilities.h"

#include <array>
#include <string>
#include <tuple>

#include "core/frame.h"
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

class ChannelsTest : public ScopeTest {
  protected:
    ComPtr<IKestrionChannels> Channels() { return As<IKestrionChannels>(); }
    HRESULT Item(std::string_view name, ComPtr<IKestrionChannel>& channel) {
        const BstrPtr text(name);
        return Channels()->get_Item(text.Get(), channel.Out());
    }
};

TEST_F(ChannelsTest, ThereAreFourOnEveryModel) {
    Simulate("Model=PL77002SX");
    LONG count = 0;
    EXPECT_EQ(Channels()->get_Count(&count), S_OK);
    EXPECT_EQ(count, 4);
}

TEST_F(ChannelsTest, ItemIgnoresCaseAndSurroundingSpace) {
    Simulate();
    ComPtr<IKestrionChannel> first;
    ComPtr<IKestrionChannel> same;
    ASSERT_EQ(Item("Channel1", first), S_OK);
    for (const char* name : {"channel1", "CHANNEL1", "  Channel1\t"}) {
        ASSERT_EQ(Item(name, same), S_OK) << name;
        EXPECT_EQ(same.Get(), first.Get()) << name;
    }
    ASSERT_EQ(Item("Channel2", same), S_OK);
    EXPECT_NE(same.Get(), first.Get());
}

TEST_F(ChannelsTest, AQualifiedNameStandsForWhatFollows) {
    Simulate();
    ComPtr<IKestrionChannel> plain;
    ComPtr<IKestrionChannel> qualified;
    ASSERT_EQ(Item("Channel2", plain), S_OK);
    ASSERT_EQ(Item("Channel!!Channel2", qualified), S_OK);
    EXPECT_EQ(qualified.Get(), plain.Get());
}

TEST_F(ChannelsTest, AnUnknownOrEmptyNameIsReported) {
    Simulate();
    for (const char* name : {"", "Channel5", "Channel", "Math1"}) {
        ComPtr<IKestrionChannel> channel;
        EXPECT_EQ(Item(name, channel), MakeStatus(0x80047067)) << name;
        EXPECT_EQ(ErrorText(), "Kestrion: Unknown physical repeated capability selector.");
        EXPECT_FALSE(channel);
    }
    ComPtr<IKestrionChannel> channel;
    EXPECT_EQ(Channels()->get_Item(nullptr, channel.Out()), MakeStatus(0x80047067));
}

TEST_F(ChannelsTest, NamesCountFromOne) {
    Simulate();
    BstrPtr name;
    EXPECT_EQ(Channels()->get_Name(1, name.Out()), S_OK);
    EXPECT_EQ(name.Utf8(), "Channel1");
    EXPECT_EQ(Channels()->get_Name(4, name.Out()), S_OK);
    EXPECT_EQ(name.Utf8(), "Channel4");
    EXPECT_EQ(Channels()->get_Name(0, name.Out()), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (0) for method get_Name, parameter Index.");
    EXPECT_EQ(Channels()->get_Name(5, name.Out()), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (5) for method get_Name, parameter Index.");
}

TEST_F(ChannelsTest, EachChannelSendsItsOwnNumber) {
    Connect();
    fake.Expect("CH1:OFFSET 0.5\n");
    EXPECT_EQ(Channel("Channel1")->put_Offset(0.5), S_OK);
    fake.Expect("CH4:OFFSET -0.25\n");
    EXPECT_EQ(Channel("Channel4")->put_Offset(-0.25), S_OK);
}

TEST_F(ChannelsTest, AChannelIsAnObjectOfItsOwn) {
    Simulate();
    const auto channel = Channel("Channel1");
    EXPECT_FALSE(Query<IKestrionAcquisition>(channel.Get()));
    EXPECT_NE(Query<IUnknown>(channel.Get()).Get(), Query<IUnknown>(scope.Get()).Get());
    EXPECT_EQ(Query<ISupportErrorInfo>(channel.Get())
                  ->InterfaceSupportsErrorInfo(kInterfaceId<IKestrionChannel>),
              S_OK);
}

TEST_F(ChannelsTest, ANullResultIsReportedUnderItsName) {
    Simulate();
    const BstrPtr name(std::string_view("Channel1"));
    EXPECT_EQ(Channels()->get_Item(name.Get(), nullptr), MakeStatus(0x80047058));
    EXPECT_EQ(ErrorText(), "Kestrion: Null pointer passed for method get_Item, parameter val.");
    EXPECT_EQ(Channels()->get_Name(1, nullptr), MakeStatus(0x80047058));
    EXPECT_EQ(Channels()->get_Count(nullptr), MakeStatus(0x80047058));
}

// The root's instances, and bodies of collections beside those of interfaces.
class InstancesTest : public ScopeTest {
  protected:
    void SetUp() override { root_ = static_cast<CDriver*>(Query<IUnknown>(scope.Get()).Get()); }

    CDriver& Root() { return *root_; }
    HRESULT Run(MemberBody body) {
        const MethodDescriptor method = {.iid = {},
                                         .interfaceName = "IThings",
                                         .memberName = "get_Item",
                                         .fullName = "IThings.Item",
                                         .command = {},
                                         .response = {},
                                         .refusedFamilies = {}};
        return RunMember(Root(), method, {}, body);
    }

  private:
    CDriver* root_ = nullptr;
};

TEST_F(InstancesTest, EightCapabilitiesHaveTheirInstancesOnEveryModel) {
    const std::tuple<const char*, const char*, int, std::size_t> capabilities[] = {
        {"KestrionSearch", "Search", 1, 8},
        {"KestrionBus", "Bus", 1, 16},
        {"KestrionDigitalChannel", "DigitalChannel", 0, 16},
        {"KestrionChannel", "Channel", 1, 4},
        {"KestrionMath", "Math", 1, 4},
        {"KestrionMeasurementSlot", "MeasurementSlot", 1, 8},
        {"KestrionReference", "Reference", 1, 4}};
    for (const char* model : {"HR5052", "PL77002SX", "FREE1234"}) {
        Simulate(std::string("Model=") + model);
        for (const auto& [className, prefix, first, count] : capabilities) {
            const auto instances = Root().Instances(className);
            ASSERT_EQ(instances.size(), count) << className;
            for (std::size_t i = 0; i < count; ++i) {
                const int index = static_cast<int>(i);
                EXPECT_EQ(instances[i]->PhysicalName(), prefix + std::to_string(first + index));
                EXPECT_EQ(instances[i]->Index(), index);
                EXPECT_EQ(instances[i]->Number(), index + 1);
            }
        }
        const auto scopes = Root().Instances("KestrionMultiScopeIdentity");
        ASSERT_EQ(scopes.size(), 2U);
        EXPECT_EQ(scopes[0]->PhysicalName(), "A");
        EXPECT_EQ(scopes[1]->PhysicalName(), "B");
        EXPECT_EQ(scope->Close(), S_OK);
    }
}

TEST_F(InstancesTest, AnUnknownClassHasNoneAndItsMembersFail) {
    Simulate();
    const HRESULT status = Run([](MemberCall& call) {
        LONG count = 7;
        EXPECT_EQ(CountInstances(call, "KestrionThing", &count), S_OK);
        EXPECT_EQ(count, 0);
        const BstrPtr name(std::string_view("Thing1"));
        void* found = nullptr;
        EXPECT_EQ(FindInstance(call, "KestrionThing", name.Get(), kInterfaceId<IUnknown>, &found),
                  static_cast<HRESULT>(0x8000FFFFU));
        BSTR text = nullptr;
        EXPECT_EQ(NameInstance(call, "KestrionThing", 1, &text), static_cast<HRESULT>(0x8000FFFFU));
        return S_OK;
    });
    EXPECT_EQ(status, S_OK);
}

TEST_F(InstancesTest, ANullResultOfABodyIsAPointerError) {
    Simulate();
    const HRESULT status = Run([](MemberCall& call) {
        const BstrPtr name(std::string_view("Channel1"));
        for (const char* className : {"KestrionChannel", "KestrionThing"}) {
            EXPECT_EQ(
                FindInstance(call, className, name.Get(), kInterfaceId<IKestrionChannel>, nullptr),
                static_cast<HRESULT>(0x80004003U));
            EXPECT_EQ(NameInstance(call, className, 0, nullptr), static_cast<HRESULT>(0x80004003U));
        }
        return S_OK;
    });
    EXPECT_EQ(status, S_OK);
}

TEST_F(InstancesTest, TheInstanceIsAskedForTheInterfaceAndItsStatusIsReturned) {
    Simulate();
    const HRESULT status = Run([](MemberCall& call) {
        const BstrPtr name(std::string_view("Channel1"));
        void* found = nullptr;
        EXPECT_EQ(FindInstance(call, "KestrionChannel", name.Get(),
                               kInterfaceId<IKestrionAcquisition>, &found),
                  E_NOINTERFACE);
        EXPECT_EQ(found, nullptr);
        return S_OK;
    });
    EXPECT_EQ(status, S_OK);
}

TEST_F(InstancesTest, TheOnlyInstanceNeedsNoName) {
    Simulate();
    CRepCap only(Root(), "KestrionThing", 0, "Thing1");
    const std::array<CRepCap*, 1> one = {&only};
    EXPECT_EQ(ChooseInstance(one, ""), &only);
    EXPECT_EQ(ChooseInstance(one, " \t\r\n"), &only);
    EXPECT_EQ(ChooseInstance(one, " thing1 "), &only);
    EXPECT_EQ(ChooseInstance(one, "KestrionThing!!Thing1"), &only);
    EXPECT_EQ(ChooseInstance(one, "Thing2"), nullptr);
}

TEST_F(InstancesTest, OfSeveralInstancesNoneIsMeantByAnEmptyName) {
    Simulate();
    CRepCap first(Root(), "KestrionThing", 0, "Thing1");
    CRepCap second(Root(), "KestrionThing", 1, "Thing2");
    const std::array<CRepCap*, 2> two = {&first, &second};
    EXPECT_EQ(ChooseInstance(two, ""), nullptr);
    EXPECT_EQ(ChooseInstance(two, "THING2"), &second);
    EXPECT_EQ(ChooseInstance({}, ""), nullptr);
}

TEST_F(InstancesTest, TheFirstInstanceOfANameIsTaken) {
    Simulate();
    CRepCap first(Root(), "KestrionThing", 0, "Thing");
    CRepCap second(Root(), "KestrionThing", 1, "THING");
    const std::array<CRepCap*, 2> two = {&first, &second};
    EXPECT_EQ(ChooseInstance(two, "THING"), &first);
}

TEST_F(InstancesTest, TheFullNameIsTheClassAndTheName) {
    Simulate();
    EXPECT_EQ(Root().GetFullName(), "");
    EXPECT_EQ(Root().Instances("KestrionChannel")[0]->GetFullName(), "KestrionChannel[Channel1]");
    EXPECT_EQ(Root().Instances("KestrionDigitalChannel")[0]->GetFullName(),
              "KestrionDigitalChannel[DigitalChannel0]");
    EXPECT_EQ(Root().Instances("KestrionMultiScopeIdentity")[1]->GetFullName(),
              "KestrionMultiScopeIdentity[B]");
}

}  // namespace
}  // namespace kestrion
