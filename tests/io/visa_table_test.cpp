#include "io/visa_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

visa::ViStatus OpenDefaultRM(visa::ViSession* session) {
    *session = 4711;
    return 0;
}

const char* const kFunctions[] = {
    "viOpenDefaultRM",   "viOpen",         "viClose",         "viGetAttribute", "viSetAttribute",
    "viStatusDesc",      "viRead",         "viWrite",         "viReadAsync",    "viWriteAsync",
    "viAssertTrigger",   "viReadSTB",      "viClear",         "viLock",         "viUnlock",
    "viEnableEvent",     "viDisableEvent", "viDiscardEvents", "viWaitOnEvent",  "viInstallHandler",
    "viUninstallHandler"};

// Has every function but one.
class FakeLibrary final : public SharedLibrary {
  public:
    explicit FakeLibrary(std::string lacking) : lacking_(std::move(lacking)) {}
    void* Symbol(const char* name) const override {
        for (const char* const known : kFunctions) {
            if (std::string(known) == name && lacking_ != name) {
                return reinterpret_cast<void*>(&OpenDefaultRM);
            }
        }
        return nullptr;
    }

  private:
    std::string lacking_;
};

class VisaTableTest : public testing::Test {
  protected:
    VisaSelection Select(std::string_view resource) {
        const VisaSeams seams{
            [this](const char* variable) {
                EXPECT_STREQ(variable, "KESTRION_VISA_LIBRARY");
                return environment.empty() ? nullptr : environment.c_str();
            },
            [this](const std::string& name, std::string& reason) -> std::unique_ptr<SharedLibrary> {
                loads.push_back(name);
                const auto found = libraries.find(name);
                if (found == libraries.end()) {
                    reason = "no file " + name;
                    return nullptr;
                }
                return std::make_unique<FakeLibrary>(found->second);
            }};
        return SelectVisaLibrary(resource, bundled, seams);
    }

    visa::FunctionTable bundledTable{};
    BundledVisa bundled{&bundledTable, "bundled provider"};
    std::string environment;
    std::map<std::string, std::string> libraries;  // name and the function that it lacks
    std::vector<std::string> loads;
};

TEST_F(VisaTableTest, VirtualResourceTakesTheBundledLibraryWhateverElseThereIs) {
    environment = "/opt/libvisa-of-a-maker.so";
    libraries["libvisa.so.0"] = "";
    for (const char* const resource : {"VIRTUAL::PL7254C::INSTR", "virtual", "Virtual::x::INSTR"}) {
        const VisaSelection selection = Select(resource);
        ASSERT_NE(selection.chosen, nullptr) << resource;
        EXPECT_EQ(selection.chosen->Name(), "bundled provider");
        EXPECT_EQ(selection.chosen->Reason(), "the resource name begins with VIRTUAL");
    }
    EXPECT_THAT(loads, IsEmpty());
}

TEST_F(VisaTableTest, ResourceThatOnlyHoldsTheWordIsNotVirtual) {
    libraries["libvisa.so.0"] = "";
    for (const char* const resource : {"TCPIP::VIRTUAL::INSTR", "VIRTUA", ""}) {
        const VisaSelection selection = Select(resource);
        ASSERT_NE(selection.chosen, nullptr) << resource;
        EXPECT_EQ(selection.chosen->Name(), "libvisa.so.0");
    }
}

TEST_F(VisaTableTest, EnvironmentNamesTheLibrary) {
    environment = "/opt/libvisa-of-a-maker.so";
    libraries["/opt/libvisa-of-a-maker.so"] = "";
    libraries["libvisa.so.0"] = "";
    const VisaSelection selection = Select("TCPIP::h::INSTR");
    ASSERT_NE(selection.chosen, nullptr);
    EXPECT_EQ(selection.chosen->Name(), "/opt/libvisa-of-a-maker.so");
    EXPECT_EQ(selection.chosen->Reason(),
              "the environment variable KESTRION_VISA_LIBRARY names it");
    EXPECT_THAT(loads, ElementsAre("/opt/libvisa-of-a-maker.so"));
    visa::ViSession session = 0;
    EXPECT_EQ(selection.chosen->Functions().viOpenDefaultRM(&session), 0);
    EXPECT_EQ(session, 4711U);
}

TEST_F(VisaTableTest, EnvironmentNamesTheBundledLibraryByItsWord) {
    environment = "bundled";
    libraries["libvisa.so.0"] = "";
    const VisaSelection selection = Select("TCPIP::h::INSTR");
    ASSERT_NE(selection.chosen, nullptr);
    EXPECT_EQ(selection.chosen->Name(), "bundled provider");
    EXPECT_EQ(selection.chosen->Reason(),
              "the environment variable KESTRION_VISA_LIBRARY names it");
    EXPECT_THAT(loads, IsEmpty());
}

TEST_F(VisaTableTest, NamedLibraryThatCannotBeLoadedIsAnErrorWithTheLoadersReason) {
    environment = "missing.so";
    libraries["libvisa.so.0"] = "";
    const VisaSelection selection = Select("TCPIP::h::INSTR");
    EXPECT_EQ(selection.chosen, nullptr);
    EXPECT_EQ(selection.error,
              "The VISA library 'missing.so', which KESTRION_VISA_LIBRARY names, can't be used: no "
              "file missing.so. Name another library or 'bundled', or unset the variable.");
    EXPECT_THAT(loads, ElementsAre("missing.so"));
}

TEST_F(VisaTableTest, NamedLibraryThatLacksAFunctionIsAnErrorForEachFunction) {
    environment = "old.so";
    for (const char* const function : kFunctions) {
        libraries["old.so"] = function;
        const VisaSelection selection = Select("TCPIP::h::INSTR");
        EXPECT_EQ(selection.chosen, nullptr) << function;
        EXPECT_THAT(selection.error, HasSubstr(std::string("it lacks ") + function + "."));
    }
}

TEST_F(VisaTableTest, InstalledLibrariesAreTriedInTheirOrder) {
    libraries["libvisa.so"] = "";
    const VisaSelection selection = Select("TCPIP::h::INSTR");
    ASSERT_NE(selection.chosen, nullptr);
    EXPECT_EQ(selection.chosen->Name(), "libvisa.so");
    EXPECT_EQ(selection.chosen->Reason(), "it is installed on this system");
    EXPECT_THAT(loads, ElementsAre("libvisa.so.0", "libvisa.so"));
}

TEST_F(VisaTableTest, InstalledLibraryThatLacksAFunctionIsPassedOver) {
    libraries["libvisa.so.0"] = "viReadSTB";
    libraries["libvisa.so"] = "";
    const VisaSelection selection = Select("TCPIP::h::INSTR");
    ASSERT_NE(selection.chosen, nullptr);
    EXPECT_EQ(selection.chosen->Name(), "libvisa.so");
}

TEST_F(VisaTableTest, BundledLibraryIsTheLastAndSaysWhatWasTried) {
    libraries["libvisa.so.0"] = "viReadSTB";
    const VisaSelection selection = Select("TCPIP::h::INSTR");
    ASSERT_NE(selection.chosen, nullptr);
    EXPECT_EQ(selection.chosen->Name(), "bundled provider");
    EXPECT_EQ(selection.chosen->Reason(),
              "no VISA library is installed on this system (libvisa.so.0: it lacks viReadSTB; "
              "libvisa.so: no file libvisa.so)");
}

TEST_F(VisaTableTest, WithoutAnyLibraryTheErrorSaysWhatWasTried) {
    bundled = {};
    EXPECT_EQ(Select("TCPIP::h::INSTR").error,
              "No VISA library is installed on this system (libvisa.so.0: no file libvisa.so.0; "
              "libvisa.so: no file libvisa.so). This program has no bundled VISA library.");
    EXPECT_EQ(Select("VIRTUAL::x::INSTR").error, "This program has no bundled VISA library.");
    EXPECT_EQ(Select("VIRTUAL::x::INSTR").chosen, nullptr);
}

TEST_F(VisaTableTest, EmptyVariableIsNoName) {
    const VisaSeams seams{[](const char*) { return ""; },
                          [](const std::string&, std::string& reason) {
                              reason = "not there";
                              return std::unique_ptr<SharedLibrary>();
                          }};
    const VisaSelection selection = SelectVisaLibrary("TCPIP::h::INSTR", bundled, seams);
    ASSERT_NE(selection.chosen, nullptr);
    EXPECT_EQ(selection.chosen->Name(), "bundled provider");
}

TEST_F(VisaTableTest, SystemSeamsReachTheLoaderAndTheEnvironment) {
    const VisaSeams seams = VisaSeams::System();
    std::string reason;
    EXPECT_EQ(seams.load("no-such-library-anywhere.so", reason), nullptr);
    EXPECT_THAT(reason, HasSubstr("no-such-library-anywhere.so"));
    EXPECT_EQ(seams.getEnvironment("KESTRION_NO_SUCH_VARIABLE"), nullptr);
}

}  // namespace
}  // namespace kestrion
