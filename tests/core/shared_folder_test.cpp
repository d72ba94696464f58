#include "core/shared_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace kestrion {
namespace {

class SharedFolderTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "kestrion_XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        prefix_ = name;
        std::filesystem::create_directories(prefix_ / "share/kestrion");
        std::ofstream(prefix_ / "share/kestrion/a.xslt") << "here";
    }
    void TearDown() override { std::filesystem::remove_all(prefix_); }

    // Where the file is found for a module at this place below the prefix.
    [[nodiscard]] std::string FoundFrom(const char* module, const char* file = "a.xslt") const {
        return SharedFolderOf((prefix_ / module).string(), file);
    }
    [[nodiscard]] std::string Folder() const { return (prefix_ / "share/kestrion").string(); }

    std::filesystem::path prefix_;
};

TEST_F(SharedFolderTest, IsFoundFromALibraryOfThePrefix) {
    EXPECT_EQ(FoundFrom("lib/libkestrion.so.3"), Folder());
}

TEST_F(SharedFolderTest, IsFoundFromALibraryInTheFolderOfAnArchitecture) {
    EXPECT_EQ(FoundFrom("lib/x86_64-linux-gnu/libkestrion.so.3"), Folder());
}

TEST_F(SharedFolderTest, IsNotSearchedFurtherUp) {
    EXPECT_EQ(FoundFrom("other/lib/x86_64-linux-gnu/libkestrion.so.3"), "");
}

TEST_F(SharedFolderTest, TheNearerOneIsTaken) {
    std::filesystem::create_directories(prefix_ / "lib/share/kestrion");
    std::ofstream(prefix_ / "lib/share/kestrion/a.xslt") << "here too";
    EXPECT_EQ(FoundFrom("lib/x86_64-linux-gnu/libkestrion.so.3"),
              (prefix_ / "lib/share/kestrion").string());
}

TEST_F(SharedFolderTest, AFolderWithoutTheFileDoesNotCount) {
    EXPECT_EQ(FoundFrom("lib/libkestrion.so.3", "b.xslt"), "");
}

TEST_F(SharedFolderTest, AModuleThatIsNotKnownHasNone) {
    EXPECT_EQ(SharedFolderOf("", "a.xslt"), "");
}

TEST(SharedFolderOfThisBuildTest, HoldsTheStylesheetOfTheTrace) {
    const std::filesystem::path folder = SharedFolder("trace.xslt");
    EXPECT_TRUE(folder.is_absolute()) << folder;
    EXPECT_TRUE(folder.string().ends_with("/kestrion")) << folder;
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / "trace.xslt"));
    EXPECT_EQ(SharedFolder("no_such_file"), "");
}

}  // namespace
}  // namespace kestrion
