// Start-up with a configuration store: logical names, initial settings and names of instances.
#include <gmock/gmock.h>

#include "hosting/objects.h"
#include "store/xml_store.h"
#include "tests/core/fake_store.h"
#include "tests/store/sample_store.h"
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kResource = "GPIB0::1::INSTR";

class StoreStartUpTest : public ScopeTest {
  protected:
    StoreStartUpTest() {
        store = {.store = fakeStore, .path = "/etc/store.xml", .reason = "a test put it there"};
        fakeStore->session->asset = HardwareAsset{"GPIB0::7::INSTR"};
    }

    void UseSample() {
        std::string reason;
        store.store = ReadXmlStore(SampleStore(), reason);
        ASSERT_NE(store.store, nullptr) << reason;
    }
    FakeSession& Session() { return *fakeStore->session; }

    bool Flag(HRESULT (IIviDriverOperation::*getter)(VARIANT_BOOL*)) {
        VARIANT_BOOL value = 7;
        EXPECT_EQ((As<IIviDriverOperation>().Get()->*getter)(&value), S_OK);
        return value == VARIANT_TRUE;
    }
    std::string Text(HRESULT (IIviDriverOperation::*getter)(BSTR*)) {
        BstrPtr text;
        EXPECT_EQ((As<IIviDriverOperation>().Get()->*getter)(text.Out()), S_OK);
        return text.Utf8();
    }
    std::string Text(HRESULT (IDirectIo::*getter)(BSTR*)) {
        BstrPtr text;
        EXPECT_EQ((As<IDirectIo>().Get()->*getter)(text.Out()), S_OK);
        return text.Utf8();
    }
    std::string Descriptor() { return Text(&IIviDriverOperation::get_IoResourceDescriptor); }
    std::string LogicalName() { return Text(&IIviDriverOperation::get_LogicalName); }
    std::string Model() {
        BstrPtr text;
        EXPECT_EQ(As<IIviDriverIdentity>()->get_InstrumentModel(text.Out()), S_OK);
        return text.Utf8();
    }
    std::string ChannelName(LONG index) {
        BstrPtr name;
        EXPECT_EQ(As<IKestrionChannels>()->get_Name(index, name.Out()), S_OK);
        return name.Utf8();
    }
    HRESULT FindChannel(std::string_view name, ComPtr<IKestrionChannel>& channel) {
        const BstrPtr text(name);
        return As<IKestrionChannels>()->get_Item(text.Get(), channel.Out());
    }
    // The channel of that name is the one of that physical name.
    void ExpectChannel(std::string_view name, std::string_view physicalName) {
        ComPtr<IKestrionChannel> found;
        ASSERT_EQ(FindChannel(name, found), S_OK) << name;
        EXPECT_EQ(found.Get(), Channel(physicalName).Get()) << name;
    }

    std::shared_ptr<FakeStore> fakeStore = std::make_shared<FakeStore>();
};

TEST_F(StoreStartUpTest, WithoutAStoreTheResourceNameIsADescriptor) {
    store = {.store = nullptr, .path = "", .reason = "there is none"};
    ExpectStartUp("PL7254C");
    EXPECT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_THAT(fake.CallsOf("viOpen("), ElementsAre("viOpen(\"MyScope\", 0, 2000)"));
    EXPECT_EQ(Descriptor(), "MyScope");
    EXPECT_EQ(LogicalName(), "");
}

TEST_F(StoreStartUpTest, AStoreThatCannotBeOpenedIsAsNone) {
    store = {.store = nullptr, .path = "/etc/store.xml", .reason = "'/etc/store.xml' is broken"};
    ExpectStartUp("PL7254C");
    EXPECT_EQ(Initialize(kResource), S_OK);
    EXPECT_EQ(Descriptor(), kResource);
    EXPECT_EQ(LogicalName(), "");
}

TEST_F(StoreStartUpTest, ALogicalNameOpensTheDescriptorOfItsSession) {
    ExpectStartUp("PL7254C");
    EXPECT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_THAT(fake.CallsOf("viOpen("), ElementsAre("viOpen(\"GPIB0::7::INSTR\", 0, 2000)"));
    EXPECT_EQ(Descriptor(), "GPIB0::7::INSTR");
    EXPECT_EQ(LogicalName(), "MyScope");
}

TEST_F(StoreStartUpTest, TheOptionsOfTheSessionTakeThePlaceOfTheDefaults) {
    Session().options = {.queryInstrStatus = true, .recordCoercions = true, .simulate = true};
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_THAT(fake.Calls(), IsEmpty());
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_Cache));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_InterchangeCheck));
    EXPECT_TRUE(Flag(&IIviDriverOperation::get_QueryInstrumentStatus));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_RangeCheck));
    EXPECT_TRUE(Flag(&IIviDriverOperation::get_RecordCoercions));
    EXPECT_TRUE(Flag(&IIviDriverOperation::get_Simulate));
}

TEST_F(StoreStartUpTest, TheOptionStringHasTheLastWord) {
    Session().options = {.cache = true, .rangeCheck = false, .simulate = true};
    ExpectStartUp("PL7254C");
    ASSERT_EQ(Initialize("MyScope", "simulate=false,cache=0"), S_OK);
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_Simulate));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_Cache));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_RangeCheck)) << "the session's";
}

TEST_F(StoreStartUpTest, ResetWithDefaultsGoesBackToTheOptionsOfTheSession) {
    Session().options = {.cache = false, .rangeCheck = false, .simulate = true};
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_EQ(As<IIviDriverOperation>()->put_Cache(VARIANT_TRUE), S_OK);
    EXPECT_EQ(As<IIviDriverUtility>()->ResetWithDefaults(), S_OK);
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_Cache));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_RangeCheck));
}

TEST_F(StoreStartUpTest, ASessionWithoutAnAssetLeavesTheDescriptorEmpty) {
    Session().asset.reset();
    Session().options.simulate = true;
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_EQ(Descriptor(), "");
    EXPECT_EQ(LogicalName(), "MyScope");
}

TEST_F(StoreStartUpTest, TheDriverSetupOfTheSessionIsProcessed) {
    Session().options.simulate = true;
    Session().driverSetup = "Model=HR5104,NumPhases:3,Shape = Round";
    const auto root = ComPtr<CDriver>::Attach(new Kestrion(Environment()));
    const std::string name = "MyScope";
    ASSERT_EQ(root->Initialize(&name, false, false, ""), S_OK);
    EXPECT_EQ(root->DriverSetup(), "Model=HR5104,NumPhases:3,Shape = Round");
    EXPECT_EQ(root->GetInstrumentModel(), "HR5104");
    EXPECT_EQ(root->GetDriverSetupOption("numphases"), "3");
    EXPECT_EQ(root->GetDriverSetupOption("shape"), "Round");
    EXPECT_EQ(root->GetInitOption("shape"), "");
    EXPECT_EQ(root->Close(), S_OK);
}

TEST_F(StoreStartUpTest, ADriverSetupInTheOptionStringTakesThePlaceOfTheSessions) {
    Session().options.simulate = true;
    Session().driverSetup = "Shape=Round,Colour=Blue";
    const auto root = ComPtr<CDriver>::Attach(new Kestrion(Environment()));
    const std::string name = "MyScope";
    ASSERT_EQ(root->Initialize(&name, false, false, "DriverSetup=Shape=Flat"), S_OK);
    EXPECT_EQ(root->DriverSetup(), "Shape=Flat");
    EXPECT_EQ(root->GetDriverSetupOption("shape"), "Flat");
    EXPECT_EQ(root->GetDriverSetupOption("colour"), "");
    EXPECT_EQ(root->Close(), S_OK);
}

TEST_F(StoreStartUpTest, ABadBooleanInTheDriverSetupOfTheSessionIsNamed) {
    Session().driverSetup = "Trace=maybe";
    EXPECT_EQ(Initialize("MyScope"), MakeStatus(0x8004704C));
    EXPECT_EQ(ErrorText(), "Kestrion: The maybe value in the option string is unknown.");
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(StoreStartUpTest, InterchangeCheckingIsRefusedInASessionToo) {
    Session().options.interchangeCheck = true;
    EXPECT_EQ(Initialize("MyScope"), MakeStatus(0x8004704C));
    EXPECT_EQ(ErrorText(),
              "Kestrion: The True value in the option string is unknown.\r\n"
              "Interchange checking is not supported by the driver.");
    Session().options.simulate = true;
    EXPECT_EQ(Initialize("MyScope", "interchangecheck=false"), S_OK);
}

TEST_F(StoreStartUpTest, ADataComponentModelIsTheModelOfTheInstrument) {
    Session().options.simulate = true;
    Session().components = {TextSetting("Model", "PL7054C")};
    ASSERT_EQ(Initialize("MyScope", "", true), S_OK) << "a model that the driver knows";
    EXPECT_EQ(Model(), "PL7054C");
}

TEST_F(StoreStartUpTest, AModelThatIsNoTextIsNotTaken) {
    Session().options.simulate = true;
    Session().components = {IntegerSetting("Model", 7054)};
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_EQ(Model(), "Kestrion");
}

TEST_F(StoreStartUpTest, SettingsComeBehindTheDriverSetupAndBeforeTheOptions) {
    Session().options.simulate = true;
    Session().driverSetup = "Model=HR5104";
    Session().components = {
        Structure("Configurable Initial Settings", {TextSetting("MODEL", "PL7054C")})};
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_EQ(Model(), "PL7054C");
    EXPECT_EQ(scope->Close(), S_OK);
    ASSERT_EQ(Initialize("MyScope", "DriverSetup=Model=LK7254B"), S_OK);
    EXPECT_EQ(Model(), "LK7254B");
}

TEST_F(StoreStartUpTest, TheModelOfTheInstrumentWinsOverThatOfTheStore) {
    Session().components = {TextSetting("Model", "PL7054C")};
    ExpectStartUp("HR5104");
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_EQ(Model(), "HR5104");
}

TEST_F(StoreStartUpTest, ADescriptorGetsTheSettingsOfTheModule) {
    fakeStore->module->components = {TextSetting("Model", "PL7054C")};
    ASSERT_EQ(Initialize(kResource, "simulate=true"), S_OK);
    EXPECT_EQ(Descriptor(), kResource);
    EXPECT_EQ(LogicalName(), "");
    EXPECT_EQ(Model(), "PL7054C");
    EXPECT_EQ(scope->Close(), S_OK);
    // The options come later.
    ASSERT_EQ(Initialize(kResource, "simulate=true,DriverSetup=Model=HR5104"), S_OK);
    EXPECT_EQ(Model(), "HR5104");
}

TEST_F(StoreStartUpTest, ASessionDoesNotGetTheSettingsOfItsModule) {
    Session().options.simulate = true;
    Session().module = fakeStore->module;
    fakeStore->module->components = {TextSetting("Model", "PL7054C")};
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_EQ(Model(), "Kestrion");
}

TEST_F(StoreStartUpTest, AStoreWithNeitherSessionNorModuleFails) {
    fakeStore->module = nullptr;
    for (const char* options : {"", "simulate=true"}) {
        EXPECT_EQ(Initialize(kResource, options), MakeStatus(0x80047000));
        EXPECT_EQ(ErrorText(),
                  "Kestrion: Unrecoverable failure.\r\n"
                  "Software module could not be loaded from the IVI Configuration Store.");
    }
    EXPECT_THAT(fake.Calls(), IsEmpty());
    ExpectStartUp("PL7254C");
    EXPECT_EQ(Initialize("MyScope"), S_OK) << "a session needs no module";
}

TEST_F(StoreStartUpTest, ABadOptionEndsTheStartBehindTheModulesSettings) {
    EXPECT_EQ(Initialize(kResource, "simulate=yes"), MakeStatus(0x8004704C));
    EXPECT_EQ(Initialize("MyScope", "simulate=yes"), MakeStatus(0x8004704C));
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(StoreStartUpTest, TheStoreIsLookedForAtEachStartAndNotInBetween) {
    int opened = 0;
    DriverEnvironment environment = Environment();
    environment.openStore = [&] {
        ++opened;
        return store;
    };
    const auto root = ComPtr<CDriver>::Attach(new Kestrion(std::move(environment)));
    const std::string name = "MyScope";
    Session().options.simulate = true;
    EXPECT_EQ(root->Initialize(&name, false, false, ""), S_OK);
    EXPECT_EQ(root->Initialize(&name, false, false, ""), MakeStatus(0x80047061));
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(root->Close(), S_OK);
    EXPECT_EQ(root->Initialize(&name, false, false, ""), S_OK);
    EXPECT_EQ(opened, 2);
    EXPECT_EQ(root->Close(), S_OK);
}

TEST_F(StoreStartUpTest, WithoutAnOpenerThereIsNoStore) {
    DriverEnvironment environment = Environment();
    environment.openStore = nullptr;
    const auto root = ComPtr<CDriver>::Attach(new Kestrion(std::move(environment)));
    const std::string name = "MyScope";
    EXPECT_EQ(root->Initialize(&name, false, false, "simulate=true"), S_OK);
    EXPECT_EQ(root->ResourceDescriptor(), "MyScope");
    EXPECT_EQ(root->Close(), S_OK);
}

TEST_F(StoreStartUpTest, NothingOfASessionReachesTheNextStart) {
    UseSample();
    ExpectStartUp("PL7254C");
    ASSERT_EQ(Initialize("MyScope", "queryinstrstatus=false"), S_OK);
    ExpectChannel("Probe", "Channel3");
    ASSERT_EQ(scope->Close(), S_OK);
    store = {.store = nullptr, .path = "", .reason = ""};
    ASSERT_EQ(Initialize(kResource, "simulate=true"), S_OK);
    EXPECT_EQ(LogicalName(), "");
    EXPECT_EQ(Text(&IIviDriverOperation::get_DriverSetup), "");
    EXPECT_EQ(Model(), "Kestrion");
    EXPECT_TRUE(Flag(&IIviDriverOperation::get_RangeCheck));
    ComPtr<IKestrionChannel> channel;
    EXPECT_EQ(FindChannel("Probe", channel), MakeStatus(0x80047067));
}

TEST_F(StoreStartUpTest, VirtualNamesFindTheirChannels) {
    UseSample();
    ExpectStartUp("PL7254C");
    ASSERT_EQ(Initialize("MyScope", "queryinstrstatus=false"), S_OK);
    ExpectChannel("Probe", "Channel3");
    ExpectChannel(" PROBE ", "Channel3");
    ExpectChannel("Input1", "Channel1");
    ExpectChannel("input2", "Channel2");
    ExpectChannel("10", "Channel3");
    ExpectChannel("11", "Channel4");
    ExpectChannel("Channel3", "Channel3");
    ExpectChannel("KestrionChannel!!Channel2", "Channel2");
    for (const char* name : {"Input", "Input3", "12", ""}) {
        ComPtr<IKestrionChannel> channel;
        EXPECT_EQ(FindChannel(name, channel), MakeStatus(0x80047067)) << name;
    }
    fake.Expect("CH3:OFFSET 0.5\n");
    EXPECT_EQ(Channel("Probe")->put_Offset(0.5), S_OK);
}

TEST_F(StoreStartUpTest, AVirtualNameWinsOverAPhysicalOneOfTheSameLetters) {
    Session().options.simulate = true;
    Session().virtualNames = {{.name = "Channel1", .mapsTo = "Channel4", .ranges = {}}};
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    ExpectChannel("channel1", "Channel4");
}

TEST_F(StoreStartUpTest, InstancesKeepTheirNameUnlessTheModuleQualifiesIt) {
    Session().options.simulate = true;
    Session().virtualNames = {{.name = "Probe", .mapsTo = "Channel1", .ranges = {}}};
    Session().module = fakeStore->module;
    fakeStore->module->physicalNames = {{.name = "Channel",
                                         .repeatedCapability = "KestrionChannel",
                                         .ranges = {{.min = 1, .max = 3}},
                                         .nested = {}},
                                        {.name = "KestrionChannel!!Channel4",
                                         .repeatedCapability = "KestrionChannel",
                                         .ranges = {},
                                         .nested = {}}};
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_EQ(ChannelName(1), "Channel1");
    EXPECT_EQ(ChannelName(3), "Channel3");
    EXPECT_EQ(ChannelName(4), "KestrionChannel!!Channel4");
    // The name of an instance leads back to it.
    ExpectChannel(ChannelName(4), "Channel4");
}

TEST_F(StoreStartUpTest, ADescriptorGetsThePhysicalNamesOfTheModule) {
    fakeStore->module->physicalNames = {{.name = "KestrionChannel!!Channel4",
                                         .repeatedCapability = "KestrionChannel",
                                         .ranges = {},
                                         .nested = {}}};
    ASSERT_EQ(Initialize(kResource, "simulate=true"), S_OK);
    EXPECT_EQ(ChannelName(4), "KestrionChannel!!Channel4");
}

class StoreNodeTest : public StoreStartUpTest {
  protected:
    void SetUp() override {
        UseSample();
        root = ComPtr<CDriver>::Attach(new Kestrion(Environment()));
        const std::string name = "MyScope";
        ASSERT_EQ(root->Initialize(&name, false, false, "simulate=true,colour=Blue"), S_OK);
        ASSERT_EQ(root->Instances("KestrionChannel").size(), 4U);
        third = root->Instances("KestrionChannel")[2];
    }
    void TearDown() override {
        EXPECT_EQ(root->Close(), S_OK);
        root = {};
        StoreStartUpTest::TearDown();
    }

    ComPtr<CDriver> root;
    CRepCap* third = nullptr;
};

TEST_F(StoreNodeTest, AnInstanceAsksTheRootForSettings) {
    for (CNode* node : {static_cast<CNode*>(third), static_cast<CNode*>(root.Get())}) {
        std::string text;
        EXPECT_TRUE(node->GetConfigString("Model", text));
        EXPECT_EQ(text, "PL7054C");
        std::int32_t integer = 0;
        EXPECT_TRUE(node->GetConfigLong("SettlingTime", integer));
        EXPECT_EQ(integer, -40);
        double real = 0.0;
        EXPECT_TRUE(node->GetConfigDouble("ProbeFactor", real));
        EXPECT_EQ(real, 0.25);
        bool flag = false;
        EXPECT_TRUE(node->GetConfigBool("WarmStart", flag));
        EXPECT_TRUE(flag);
        VariantPtr value;
        EXPECT_TRUE(node->GetConfigVariant("warmstart", value));
        EXPECT_EQ(value->vt, VT_BOOL);
        EXPECT_FALSE(node->GetConfigVariant("Scope", value)) << "a reference to an interface";
        EXPECT_FALSE(node->GetConfigVariant("Author", value)) << "the module's";
    }
}

TEST_F(StoreNodeTest, AnInstanceAsksTheRootForOptionsAndNames) {
    for (CNode* node : {static_cast<CNode*>(third), static_cast<CNode*>(root.Get())}) {
        EXPECT_EQ(node->GetInitOption("COLOUR"), "Blue");
        EXPECT_EQ(node->GetDriverSetupOption("shape"), "Round");
        EXPECT_EQ(node->GetPhysicalName("probe"), "Channel3");
        EXPECT_EQ(node->GetVirtualName("CHANNEL3"), "Probe");
        EXPECT_EQ(node->GetVirtualName("KestrionChannel!!Channel4"), "11");
        EXPECT_EQ(node->GetQualifiedPhysicalName("KestrionChannel", "Channel3"), "Channel3");
    }
}

TEST_F(StoreNodeTest, TheFullNameHasTheClassAndTheVirtualName) {
    EXPECT_EQ(root->GetFullName(), "");
    EXPECT_EQ(root->Instances("KestrionChannel")[1]->GetFullName(), "KestrionChannel[Input2]");
    EXPECT_EQ(root->Instances("KestrionMath")[0]->GetFullName(), "KestrionMath[Math1]");
}

TEST_F(StoreNodeTest, TheFullNameIsKeptWhenNamesChange) {
    EXPECT_EQ(third->GetFullName(), "KestrionChannel[Probe]");
    Session().virtualNames = {{.name = "Other", .mapsTo = "Channel3", .ranges = {}},
                              {.name = "First", .mapsTo = "Channel1", .ranges = {}}};
    ASSERT_EQ(root->LoadDriverConfiguration(&Session()), S_OK);
    EXPECT_EQ(third->GetVirtualName("Channel3"), "Other");
    EXPECT_EQ(third->GetFullName(), "KestrionChannel[Probe]");
    EXPECT_EQ(root->Instances("KestrionChannel")[0]->GetFullName(), "KestrionChannel[First]");
}

class StoreReportTest : public StoreStartUpTest {};

TEST_F(StoreReportTest, TellsWhichStoreAndWhy) {
    Session().options.simulate = true;
    ASSERT_EQ(Initialize("MyScope"), S_OK);
    EXPECT_EQ(Text(&IDirectIo::get_ConfigurationStore), "/etc/store.xml");
    EXPECT_EQ(Text(&IDirectIo::get_ConfigurationStoreReason), "a test put it there");
}

TEST_F(StoreReportTest, TellsWhyNoneIsUsed) {
    store = {.store = nullptr, .path = "/etc/store.xml", .reason = "'/etc/store.xml' is broken"};
    ASSERT_EQ(Initialize(kResource, "simulate=true"), S_OK);
    EXPECT_EQ(Text(&IDirectIo::get_ConfigurationStore), "");
    EXPECT_EQ(Text(&IDirectIo::get_ConfigurationStoreReason), "'/etc/store.xml' is broken");
}

TEST_F(StoreReportTest, TellsItWithoutAConnectionAsWell) {
    EXPECT_EQ(Text(&IDirectIo::get_ConfigurationStoreReason), "");
    fakeStore->module = nullptr;
    EXPECT_EQ(Initialize(kResource), MakeStatus(0x80047000));
    EXPECT_EQ(Text(&IDirectIo::get_ConfigurationStore), "/etc/store.xml");
    EXPECT_EQ(As<IDirectIo>()->get_ConfigurationStore(nullptr), MakeStatus(0x80047058));
}

TEST_F(StoreReportTest, AFailureToOpenTellsOfABrokenStore) {
    fake.FailFunction("viOpen", static_cast<visa::ViStatus>(0xBFFF0011));
    fake.SetDescription(static_cast<visa::ViStatus>(0xBFFF0011), "Nothing listens there.");
    store = {.store = nullptr, .path = "/etc/store.xml", .reason = "'/etc/store.xml' is broken"};
    EXPECT_EQ(Initialize("MyScope"), MakeStatus(0x80040011));
    EXPECT_EQ(ErrorText(),
              "Nothing listens there.\r\nConfiguration store: '/etc/store.xml' is broken.");
    // Where there is none to be had, VISA's words are enough.
    store = {.store = nullptr, .path = "", .reason = "there is none"};
    EXPECT_EQ(Initialize("MyScope"), MakeStatus(0x80040011));
    EXPECT_EQ(ErrorText(), "Nothing listens there.");
}

class UnreadableStoreTest : public StoreStartUpTest {
  protected:
    // The status of a start, and what names the place behind it.
    void ExpectFailure(std::string_view resource, std::string_view function,
                       std::string_view parameter) {
        EXPECT_EQ(Initialize(resource, "simulate=true"), kGone);
        EXPECT_EQ(ErrorText(), "Kestrion: Invalid value (0) for method " + std::string(function) +
                                   ", parameter " + std::string(parameter) + ".");
        VARIANT_BOOL initialized = VARIANT_TRUE;
        EXPECT_EQ(scope->get_Initialized(&initialized), S_OK);
        EXPECT_EQ(initialized, VARIANT_FALSE);
    }

    static constexpr HRESULT kGone = static_cast<HRESULT>(0x800706BA);
};

TEST_F(UnreadableStoreTest, EveryReadOfASessionKeepsItsStatusAndNamesTheFunction) {
    for (HRESULT FakeFailures::*failing :
         {&FakeFailures::virtualNames, &FakeFailures::asset, &FakeFailures::options,
          &FakeFailures::driverSetup, &FakeFailures::module}) {
        Session().failures = {};
        Session().failures.*failing = kGone;
        ExpectFailure("MyScope", "LoadDriverConfiguration", "spDriverSession");
    }
    Session().failures = {};
    Session().failures.components = kGone;
    ExpectFailure("MyScope", "LoadDriverConfiguration", "spConfigSettings");
    Session().failures = {};
    EXPECT_EQ(Initialize("MyScope", "simulate=true"), S_OK);
}

TEST_F(UnreadableStoreTest, EveryReadOfAModuleKeepsItsStatusAndNamesTheFunction) {
    fakeStore->module->failures.components = kGone;
    ExpectFailure(kResource, "LoadConfigurableInitialSettings", "spConfigSettings");
    fakeStore->module->failures = {};
    fakeStore->module->failures.physicalNames = kGone;
    ExpectFailure(kResource, "LoadConfigurableInitialSettings", "spSoftwareModule");
    Session().module = fakeStore->module;
    ExpectFailure("MyScope", "LoadConfigurableInitialSettings", "spSoftwareModule");
}

TEST_F(UnreadableStoreTest, ALookUpThatFailsEndsTheStart) {
    fakeStore->failures.find = kGone;
    ExpectFailure(kResource, "LoadDriverConfiguration", "spDriverSession");
}

TEST_F(UnreadableStoreTest, NullOwnersAreInvalidValues) {
    const auto root = ComPtr<CDriver>::Attach(new Kestrion(Environment()));
    EXPECT_EQ(root->LoadDriverConfiguration(nullptr), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Invalid value (0) for method LoadDriverConfiguration, parameter "
              "pDriverSession.");
    EXPECT_EQ(root->LoadConfigurableInitialSettings(static_cast<const DriverSession*>(nullptr)),
              MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Invalid value (0) for method LoadDriverConfiguration, parameter "
              "spDriverSession.");
    EXPECT_EQ(root->LoadConfigurableInitialSettings(static_cast<const SoftwareModule*>(nullptr)),
              MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Invalid value (0) for method LoadConfigurableInitialSettings, parameter "
              "spSoftwareModule.");
}

}  // namespace
}  // namespace kestrion
