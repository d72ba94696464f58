// The trace of a driver object: which calls it records, and how long its file lives.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "core/shared_folder.h"
#include "tests/platform/allocation_count.h"
#include "tests/support/scope_fixture.h"
#include "tests/support/temporary_folder.h"

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr HRESULT kUnexpected = static_cast<HRESULT>(0x8000FFFFU);
constexpr std::string_view kDocumentEnd = "</TraceRecords>\r\n";

class DriverTraceTest : public ScopeTest {
  protected:
    // The driver's own options for a trace into a file of the test's folder.
    [[nodiscard]] std::string Traced(std::string_view name, std::string_view more = "") const {
        return "DriverSetup=Trace=true,TraceName=" + folder_.File(name).string() +
               std::string(more);
    }
    HRESULT Simulated(std::string_view driverSetup) {
        return Initialize("", "simulate=true," + std::string(driverSetup));
    }
    [[nodiscard]] std::string Content(std::string_view name) const {
        std::ifstream stream(folder_.File(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    // The values of an attribute of every element of that name, in the order of the file.
    [[nodiscard]] std::vector<std::string> Values(std::string_view name, std::string_view element,
                                                  std::string_view attribute) const {
        const std::string content = Content(name);
        const std::string tag = "<" + std::string(element) + " ";
        const std::string key = " " + std::string(attribute) + "=\"";
        std::vector<std::string> values;
        for (auto at = content.find(tag); at != std::string::npos; at = content.find(tag, at + 1)) {
            const auto from = content.find(key, at) + key.size();
            values.push_back(content.substr(from, content.find('"', from) - from));
        }
        return values;
    }
    [[nodiscard]] std::vector<std::string> Calls(std::string_view name) const {
        return Values(name, "Method", "Name");
    }
    VARIANT_BOOL Simulate() {
        VARIANT_BOOL value = VARIANT_FALSE;
        EXPECT_EQ(As<IIviDriverOperation>()->get_Simulate(&value), S_OK);
        return value;
    }

    TemporaryFolder folder_;
};

TEST_F(DriverTraceTest, CloseIsTheLastRecordAndEndsTheFile) {
    ASSERT_EQ(Simulated(Traced("run.xml")), S_OK);
    Simulate();
    EXPECT_THAT(Content("run.xml"), Not(HasSubstr("</TraceRecords>")));
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_THAT(Calls("run.xml"), ElementsAre("get_Simulate", "Close"));
    EXPECT_THAT(Content("run.xml"), EndsWith("</Method>\r\n</TraceRecords>\r\n"));
}

TEST_F(DriverTraceTest, AClassMemberHoldsTheRecordOfTheMemberItCalls) {
    Connect("PL7254C", Traced("run.xml"));
    fake.Expect("ACQUIRE:MODE?\n").Reply("HIRES\n");
    auto type = IviScopeAcquisitionTypeNormal;
    EXPECT_EQ(As<IIviScopeAcquisition>()->get_Type(&type), S_OK);
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_THAT(Calls("run.xml"), ElementsAre("get_Type", "get_Mode", "Close"));
    EXPECT_THAT(Values("run.xml", "Method", "Interface"),
                ElementsAre("IIviScopeAcquisition", "IKestrionAcquisition", "IIviDriver"));
    const std::string content = Content("run.xml");
    EXPECT_THAT(content, HasSubstr("\r\n\t<Method Name=\"get_Mode\""));
    EXPECT_THAT(content, HasSubstr("\r\n\t</Method>\r\n\t<Parameter Name=\"val\" "
                                   "Direction=\"Out\" Value=\"2\" DataType=\"Int32\"/>\r\n"
                                   "\t<HRESULT Value=\"0x00000000\"/>\r\n\t<Execution "));
}

TEST_F(DriverTraceTest, InSimulationAClassMemberCallsNoOther) {
    ASSERT_EQ(Simulated(Traced("run.xml")), S_OK);
    auto type = IviScopeAcquisitionTypeNormal;
    EXPECT_EQ(As<IIviScopeAcquisition>()->get_Type(&type), S_OK);
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_THAT(Calls("run.xml"), ElementsAre("get_Type", "Close"));
}

TEST_F(DriverTraceTest, AFailureIsRecordedWithItsTextAndTheCallerStillFindsIt) {
    ASSERT_EQ(Simulated(Traced("run.xml")), S_OK);
    EXPECT_EQ(As<IIviDriverUtility>()->LockObject(), MakeStatus(0x80047011));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Does not support this class-compliant feature: method LockObject.");
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_THAT(Values("run.xml", "HRESULT", "Value"), ElementsAre("0x80047011", "0x00000000"));
    EXPECT_THAT(Content("run.xml"),
                HasSubstr("Message=\"Kestrion: Does not support this class-compliant feature: "
                          "method LockObject.\"/>"));
}

TEST_F(DriverTraceTest, ACallWithANullPointerLeavesNoRecord) {
    ASSERT_EQ(Simulated(Traced("run.xml")), S_OK);
    EXPECT_EQ(As<IIviDriverOperation>()->get_Simulate(nullptr), MakeStatus(0x80047058));
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_THAT(Calls("run.xml"), ElementsAre("Close"));
}

TEST_F(DriverTraceTest, ACallWithoutAConnectionLeavesNoRecord) {
    fake.FailFunction("viOpen", static_cast<visa::ViStatus>(0xBFFF0011));
    ASSERT_EQ(Initialize("GPIB0::1::INSTR", Traced("run.xml")), MakeStatus(0x80040011));
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(As<IIviDriverOperation>()->get_Simulate(&value), MakeStatus(0x8004701D));
    EXPECT_EQ(scope->Close(), MakeStatus(0x8004701D));
    EXPECT_THAT(Calls("run.xml"), IsEmpty());
    scope = {};
    EXPECT_THAT(Content("run.xml"), EndsWith("<TraceRecords>\r\n</TraceRecords>\r\n"));
}

TEST_F(DriverTraceTest, AFileThatCannotBeOpenedEndsTheStartUpWithTheSystemsStatus) {
    EXPECT_EQ(Initialize("GPIB0::1::INSTR", Traced("no_such_folder/run.xml")),
              MakeStatus(0x80070003));
    VARIANT_BOOL initialized = VARIANT_TRUE;
    EXPECT_EQ(scope->get_Initialized(&initialized), S_OK);
    EXPECT_EQ(initialized, VARIANT_FALSE);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(DriverTraceTest, AFailedStartUpLeavesTheFileOpenUntilTheNextStart) {
    fake.FailFunction("viOpen", static_cast<visa::ViStatus>(0xBFFF0011));
    ASSERT_EQ(Initialize("GPIB0::1::INSTR", Traced("a.xml")), MakeStatus(0x80040011));
    EXPECT_THAT(Content("a.xml"), EndsWith("<TraceRecords>\r\n"));

    fake.FailFunction("viOpen", 0);
    EXPECT_EQ(Initialize("GPIB0::1::INSTR", Traced("b.xml")), kUnexpected);
    EXPECT_FALSE(std::filesystem::exists(folder_.File("b.xml")));
    EXPECT_THAT(Calls("a.xml"), ElementsAre("Initialize"));
    EXPECT_THAT(Values("a.xml", "HRESULT", "Value"), ElementsAre("0x8000FFFF"));
    EXPECT_THAT(Content("a.xml"), EndsWith(kDocumentEnd));

    Connect("PL7254C", Traced("c.xml"));
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_THAT(Calls("c.xml"), ElementsAre("Close"));
}

TEST_F(DriverTraceTest, AFailedStartUpLeavesTheFileOpenUntilClose) {
    fake.FailFunction("viOpen", static_cast<visa::ViStatus>(0xBFFF0011));
    ASSERT_EQ(Initialize("GPIB0::1::INSTR", Traced("run.xml")), MakeStatus(0x80040011));
    fake.FailFunction("viOpen", 0);
    Connect("PL7254C", "DriverSetup=Trace=false");
    Simulate();
    EXPECT_THAT(Content("run.xml"), Not(EndsWith(kDocumentEnd)));
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_THAT(Calls("run.xml"), ElementsAre("Initialize")) << "the one that switched it off";
    EXPECT_THAT(Content("run.xml"), EndsWith(kDocumentEnd));
}

TEST_F(DriverTraceTest, SwitchingOffATraceThatHasStoppedEndsTheStartUp) {
    ASSERT_EQ(Simulated(Traced("run.xml")), S_OK);
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_EQ(Simulated("DriverSetup=Trace=false"), kUnexpected);
    VARIANT_BOOL initialized = VARIANT_TRUE;
    EXPECT_EQ(scope->get_Initialized(&initialized), S_OK);
    EXPECT_EQ(initialized, VARIANT_FALSE);
}

TEST_F(DriverTraceTest, TheSettingsOutliveCloseAndEachStartUpHasItsFile) {
    ASSERT_EQ(Simulated(Traced("a.xml")), S_OK);
    ASSERT_EQ(scope->Close(), S_OK);
    ASSERT_EQ(Simulated("DriverSetup=TraceName=" + folder_.File("b").string()), S_OK);
    Simulate();
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_THAT(Calls("a.xml"), ElementsAre("Close"));
    EXPECT_THAT(Calls("b.xml"), ElementsAre("get_Simulate", "Close"));
}

TEST_F(DriverTraceTest, TheSizeLimitLeavesNewCallsOutAndCloseEndsTheFile) {
    ASSERT_EQ(Simulated(Traced("run.xml", ",TraceSizeMax=1,TraceSaveInterval=0")), S_OK);
    Simulate();
    Simulate();
    ASSERT_EQ(scope->Close(), S_OK);
    EXPECT_THAT(Calls("run.xml"), ElementsAre("get_Simulate"));
    EXPECT_THAT(Content("run.xml"), EndsWith("</Method>\r\n</TraceRecords>\r\n"));
}

TEST_F(DriverTraceTest, AnObjectThatIsReleasedWhileConnectedEndsItsFile) {
    ASSERT_EQ(Simulated(Traced("run.xml")), S_OK);
    Simulate();
    scope = {};
    EXPECT_THAT(Calls("run.xml"), ElementsAre("get_Simulate"));
    EXPECT_THAT(Content("run.xml"), EndsWith("</Method>\r\n</TraceRecords>\r\n"));
}

TEST_F(DriverTraceTest, WithoutANameTheFileIsNamedByTheDriverAndTheTime) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.Path());
    const HRESULT status = Simulated("DriverSetup=Trace=true");
    std::filesystem::current_path(before);
    ASSERT_EQ(status, S_OK);
    ASSERT_EQ(scope->Close(), S_OK);
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
        std::string name = entry.path().filename().string();
        for (char& c : name) {
            c = c >= '0' && c <= '9' ? '9' : c;
        }
        names.push_back(name);
    }
    EXPECT_THAT(names, ElementsAre("Kestrion_9999-99-99_99-99-99.xml"));
}

TEST_F(DriverTraceTest, TheFileNamesTheStylesheetOfThisBuild) {
    ASSERT_EQ(Simulated(Traced("run.xml")), S_OK);
    ASSERT_EQ(scope->Close(), S_OK);
    const std::string folder = SharedFolder("trace.xslt");
    ASSERT_NE(folder, "");
    EXPECT_THAT(Content("run.xml"),
                HasSubstr("<?xml-stylesheet type=\"text/xsl\" href=\"file:\\\\" + folder +
                          "/trace.xslt\"?>\r\n<TraceRecords>\r\n"));
}

TEST_F(DriverTraceTest, WithTheTraceOffACallAllocatesNothing) {
    ASSERT_EQ(Simulated("DriverSetup=Model=PL7254C"), S_OK);
    const auto operation = As<IIviDriverOperation>();
    VARIANT_BOOL value = VARIANT_FALSE;
    ASSERT_EQ(operation->get_Simulate(&value), S_OK);
    HRESULT status = E_FAIL;
    EXPECT_EQ(test::CountAllocations([&] { status = operation->get_Simulate(&value); }), 0U);
    EXPECT_EQ(status, S_OK);
}

}  // namespace
}  // namespace kestrion
