// What the option string does to a driver.
#include <fstream>
#include <iterator>

#include "hosting/objects.h"
#include "tests/support/scope_fixture.h"
#include "tests/support/temporary_folder.h"

namespace kestrion {
namespace {

class DriverOptionsTest : public ScopeTest {
  protected:
    bool Flag(HRESULT (IIviDriverOperation::*getter)(VARIANT_BOOL*)) {
        VARIANT_BOOL value = 7;
        EXPECT_EQ((As<IIviDriverOperation>().Get()->*getter)(&value), S_OK);
        EXPECT_TRUE(value == VARIANT_TRUE || value == VARIANT_FALSE);
        return value == VARIANT_TRUE;
    }
    std::string Model() {
        BstrPtr text;
        EXPECT_EQ(As<IIviDriverIdentity>()->get_InstrumentModel(text.Out()), S_OK);
        return text.Utf8();
    }
};

TEST_F(DriverOptionsTest, DefaultsOfTheSixFlags) {
    Connect();
    EXPECT_TRUE(Flag(&IIviDriverOperation::get_Cache));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_InterchangeCheck));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_QueryInstrumentStatus));
    EXPECT_TRUE(Flag(&IIviDriverOperation::get_RangeCheck));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_RecordCoercions));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_Simulate));
}

TEST_F(DriverOptionsTest, ThreeSpellingsOfSimulateAreTheSame) {
    for (const char* options : {"Simulate=true", "SIMULATE=VI_TRUE", "simulate=1"}) {
        ASSERT_EQ(Initialize("", options), S_OK) << options;
        EXPECT_TRUE(Flag(&IIviDriverOperation::get_Simulate)) << options;
        ASSERT_EQ(scope->Close(), S_OK);
    }
}

TEST_F(DriverOptionsTest, ABadFlagValueFailsAndIsNamed) {
    EXPECT_EQ(Initialize("", "simulate=yes"), MakeStatus(0x8004704C));
    EXPECT_EQ(ErrorText(), "Kestrion: The yes value in the option string is unknown.");
}

TEST_F(DriverOptionsTest, OptionsAndDriverSetupTogether) {
    ASSERT_EQ(Initialize("", "simulate=true,cache=false,DriverSetup=Model=X"), S_OK);
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_Cache));
    EXPECT_EQ(Model(), "X");
    BstrPtr setup;
    EXPECT_EQ(As<IIviDriverOperation>()->get_DriverSetup(setup.Out()), S_OK);
    EXPECT_EQ(setup.Utf8(), "Model=X");
}

TEST_F(DriverOptionsTest, AnOptionInsideDriverSetupHasNoEffectAsAnOption) {
    Connect("PL7254C", "DriverSetup=Model=X,simulate=true");
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_Simulate));
}

TEST_F(DriverOptionsTest, AnUnknownNameIsNoError) {
    ASSERT_EQ(Initialize("", "simulate=true,colour=blue,DriverSetup=Shape=round"), S_OK);
}

TEST_F(DriverOptionsTest, ANameOrAValueOfBlanksIsAnInvalidValue) {
    EXPECT_EQ(Initialize("", "simulate=true, =x"), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Invalid value (0) for method ProcessInitOption, parameter strNameIn.");
    EXPECT_EQ(Initialize("", "cache= "), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Invalid value (0) for method ProcessInitOption, parameter strValueIn.");
}

TEST_F(DriverOptionsTest, ANameWithoutAValueIsIgnored) {
    for (const char* options : {"cache", "cache=", "=true", "cache,simulate=true", ",,=x"}) {
        if (std::string_view(options).find("simulate") == std::string_view::npos) {
            ExpectStartUp("PL7254C");
        }
        EXPECT_EQ(Initialize("GPIB0::1::INSTR", options), S_OK) << options;
        EXPECT_TRUE(Flag(&IIviDriverOperation::get_Cache)) << options;
        EXPECT_EQ(scope->Close(), S_OK);
    }
}

TEST_F(DriverOptionsTest, EveryFlagTakesTheThreeFormsOfTrueAndOfFalse) {
    struct Option {
        const char* name;
        HRESULT (IIviDriverOperation::*get)(VARIANT_BOOL*);
    };
    const Option options[] = {
        {"cache", &IIviDriverOperation::get_Cache},
        {"QueryInstrStatus", &IIviDriverOperation::get_QueryInstrumentStatus},
        {"RANGECHECK", &IIviDriverOperation::get_RangeCheck},
        {"recordCoercions", &IIviDriverOperation::get_RecordCoercions},
    };
    for (const Option& option : options) {
        for (const char* value :
             {"true", "VI_TRUE", "1", "false", "VI_FALSE", "0", "TRUE", "False"}) {
            const std::string text =
                "simulate=true," + std::string(option.name) + "=" + std::string(value);
            ASSERT_EQ(Initialize("", text), S_OK) << text;
            const char first = value[0] == 'V' ? value[3] : value[0];
            EXPECT_EQ(Flag(option.get), first == 't' || first == 'T' || first == '1') << text;
            ASSERT_EQ(scope->Close(), S_OK);
        }
    }
}

TEST_F(DriverOptionsTest, ABadValueOfAnyFlagIsNamedAndEndsTheStartUp) {
    for (const char* name : {"cache", "interchangecheck", "queryinstrstatus", "rangecheck",
                             "recordcoercions", "simulate"}) {
        EXPECT_EQ(Initialize("GPIB0::1::INSTR", std::string(name) + "=2"), MakeStatus(0x8004704C))
            << name;
        EXPECT_EQ(ErrorText(), "Kestrion: The 2 value in the option string is unknown.") << name;
        EXPECT_TRUE(fake.Calls().empty());
    }
}

TEST_F(DriverOptionsTest, NumPhasesMayBeWrittenWithAColon) {
    const auto root = ComPtr<CDriver>::Attach(new Kestrion(Environment()));
    const std::string resource = "GPIB0::1::INSTR";
    ASSERT_EQ(root->Initialize(&resource, false, false,
                               "simulate=true,colour=Blue,DriverSetup=NumPhases:3, Shape=Round"),
              S_OK);
    EXPECT_EQ(root->GetDriverSetupOption("NumPhases"), "3");
    EXPECT_EQ(root->GetDriverSetupOption("numphases"), "3");
    EXPECT_EQ(root->GetDriverSetupOption("shape"), "Round");
    EXPECT_EQ(root->GetDriverSetupOption("colour"), "");
    EXPECT_EQ(root->GetInitOption("COLOUR"), "Blue");
    EXPECT_EQ(root->GetInitOption("shape"), "");
    EXPECT_EQ(root->Close(), S_OK);
}

TEST_F(DriverOptionsTest, ATraceIsWrittenWhereTheOptionsSay) {
    const TemporaryFolder folder;
    const std::string file = folder.File("run.xml").string();
    ASSERT_EQ(Initialize("", "simulate=true,cache=false,DriverSetup=Model=X,Trace=true,TraceName=" +
                                 folder.File("run").string()),
              S_OK);
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_Cache));
    EXPECT_EQ(Model(), "X");
    EXPECT_EQ(scope->Close(), S_OK);
    std::ifstream stream(file);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_NE(text.find("<TraceRecords>"), std::string::npos) << text;
    EXPECT_NE(text.find("Name=\"get_Cache\""), std::string::npos) << text;
    EXPECT_NE(text.find("Name=\"Close\""), std::string::npos) << text;
    EXPECT_NE(text.find("</TraceRecords>"), std::string::npos) << text;
}

TEST_F(DriverOptionsTest, ABadTraceValueFailsAndIsNamed) {
    EXPECT_EQ(Initialize("", "simulate=true,DriverSetup=Trace=maybe"), MakeStatus(0x8004704C));
    EXPECT_EQ(ErrorText(), "Kestrion: The maybe value in the option string is unknown.");
}

TEST_F(DriverOptionsTest, InterchangeCheckingIsRefusedAtStartUp) {
    EXPECT_EQ(Initialize("", "simulate=true,interchangecheck=true"), MakeStatus(0x8004704C));
    EXPECT_EQ(ErrorText(),
              "Kestrion: The True value in the option string is unknown.\r\n"
              "Interchange checking is not supported by the driver.");
}

TEST_F(DriverOptionsTest, FlagsOfOneInitializeDoNotReachTheNext) {
    ASSERT_EQ(Initialize("", "simulate=true,rangecheck=false,recordcoercions=1"), S_OK);
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_RangeCheck));
    EXPECT_TRUE(Flag(&IIviDriverOperation::get_RecordCoercions));
    ASSERT_EQ(scope->Close(), S_OK);
    ASSERT_EQ(Initialize("", "simulate=true"), S_OK);
    EXPECT_TRUE(Flag(&IIviDriverOperation::get_RangeCheck));
    EXPECT_FALSE(Flag(&IIviDriverOperation::get_RecordCoercions));
}

}  // namespace
}  // namespace kestrion
