// Where the store is looked for, with folders of the tests' own.
#include "store/store_location.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "tests/store/sample_store.h"
#include "tests/support/temporary_folder.h"

namespace kestrion {
namespace {

class StoreLocationTest : public testing::Test {
  protected:
    void SetUp() override {
        variables_["XDG_CONFIG_HOME"] = folder_ + "/user";
        variables_["XDG_CONFIG_DIRS"] = folder_ + "/first:" + folder_ + "/second";
    }

    // The path of a store in one of the folders.
    [[nodiscard]] std::string StoreIn(const std::string& name) const {
        return folder_ + "/" + name + "/kestrion/IviConfigurationStore.xml";
    }
    void Write(const std::string& path, std::string_view bytes) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }
    StoreSelection Open() {
        return OpenConfigurationStore(
            {.environment = [this](const char* name) -> std::optional<std::string> {
                const auto found = variables_.find(name);
                return found == variables_.end() ? std::nullopt : std::optional(found->second);
            }});
    }
    // The store in force is that one.
    void ExpectStore(const std::string& path, const std::string& reason) {
        const StoreSelection selection = Open();
        ASSERT_NE(selection.store, nullptr) << selection.reason;
        EXPECT_NE(selection.store->FindDriverSession("MyScope"), nullptr);
        EXPECT_EQ(selection.path, path);
        EXPECT_EQ(selection.reason, reason);
    }
    void ExpectNone(const std::string& path, const std::string& reason) {
        const StoreSelection selection = Open();
        EXPECT_EQ(selection.store, nullptr);
        EXPECT_EQ(selection.path, path);
        EXPECT_EQ(selection.reason, reason);
    }

    const TemporaryFolder temporary_;
    const std::string folder_ = temporary_.Path().string();
    std::map<std::string, std::string> variables_;
};

TEST_F(StoreLocationTest, TheEnvironmentNamesTheStore) {
    Write(StoreIn("user"), "<IviConfigStore/>");
    variables_["IVI_CONFIGURATION_STORE"] = SampleStorePath();
    ExpectStore(SampleStorePath(), "the environment variable IVI_CONFIGURATION_STORE names it");
}

TEST_F(StoreLocationTest, TheUsersComesBeforeTheSystems) {
    Write(StoreIn("second"), SampleStore());
    ExpectStore(StoreIn("second"), "it is in the system's configuration folder");
    Write(StoreIn("first"), SampleStore());
    ExpectStore(StoreIn("first"), "it is in the system's configuration folder");
    Write(StoreIn("user"), SampleStore());
    ExpectStore(StoreIn("user"), "it is in the user's configuration folder");
}

TEST_F(StoreLocationTest, WhereThereIsNoneItIsSaidWhereItWasLookedFor) {
    ExpectNone("",
               "the environment variable IVI_CONFIGURATION_STORE isn't set, and there is neither " +
                   StoreIn("user") + " nor " + StoreIn("first") + " nor " + StoreIn("second"));
    variables_ = {{"XDG_CONFIG_DIRS", "none"}};
    ExpectNone("", "the environment variable IVI_CONFIGURATION_STORE isn't set");
}

TEST_F(StoreLocationTest, ANamedStoreThatIsNotThereIsNotReplacedByAnother) {
    Write(StoreIn("user"), SampleStore());
    variables_["IVI_CONFIGURATION_STORE"] = folder_ + "/none.xml";
    ExpectNone(folder_ + "/none.xml", "'" + folder_ +
                                          "/none.xml' can't be used: there is no such file, but "
                                          "the environment variable IVI_CONFIGURATION_STORE names "
                                          "it");
}

TEST_F(StoreLocationTest, ABrokenStoreIsNotReplacedByAnother) {
    Write(StoreIn("first"), SampleStore());
    Write(StoreIn("user"), "<IviConfigStore>");
    const StoreSelection selection = Open();
    EXPECT_EQ(selection.store, nullptr);
    EXPECT_EQ(selection.path, StoreIn("user"));
    EXPECT_EQ(selection.reason.find("'" + StoreIn("user") +
                                    "' can't be used: line 1 is not well-formed XML: "),
              0U)
        << selection.reason;
}

TEST_F(StoreLocationTest, AFolderIsNoStore) {
    variables_["IVI_CONFIGURATION_STORE"] = folder_;
    ExpectNone(folder_, "'" + folder_ + "' can't be used: it is a folder");
}

TEST_F(StoreLocationTest, AFileBeyondTheLimitIsNotRead) {
    const std::string path = folder_ + "/large.xml";
    Write(path, "<IviConfigStore/>");
    std::filesystem::resize_file(path, 16U * 1024 * 1024 + 1);
    variables_["IVI_CONFIGURATION_STORE"] = path;
    ExpectNone(path, "'" + path + "' can't be used: it is larger than 16777216 bytes");
}

TEST_F(StoreLocationTest, TheProcessItselfIsAskedByDefault) {
    ASSERT_EQ(setenv("IVI_CONFIGURATION_STORE", SampleStorePath().c_str(), 1), 0);
    const StoreSelection selection = OpenConfigurationStore();
    ASSERT_EQ(unsetenv("IVI_CONFIGURATION_STORE"), 0);
    EXPECT_NE(selection.store, nullptr) << selection.reason;
    EXPECT_EQ(selection.path, SampleStorePath());
}

}  // namespace
}  // namespace kestrion
