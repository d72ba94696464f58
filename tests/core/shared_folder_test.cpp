#include "core/shared_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/temporary_folder.h"

namespace kestrion {
namespace {

class SharedFolderTest : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::create_directories(prefix_ / "share/kestrion");
        std::ofstream(prefix_ / "share/kestrion/a.xslt") << "here";
    }

    // Where the file is found for a module at this place below the prefix.
    [[nodiscard]] std::string FoundFrom(const char* module, const char* file = "a.xslt") const {
        return SharedFolderOf((prefix_ / module).string(), file);
    }
    [[nodiscard]] std::string Folder() const { return (prefix_ / "share/kestrion").string(); }

    const TemporaryFolder folder_;
    const std::filesystem::path prefix_ = folder_.Path();
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
