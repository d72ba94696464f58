#include "platform/module_path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "platform/loader.h"

namespace kestrion {
namespace {

void InThisProgram() {}

TEST(ModulePath, CodeOfTheProgramIsInTheProgram) {
    const std::string path = ModulePath(reinterpret_cast<const void*>(&InThisProgram));
    EXPECT_TRUE(std::filesystem::path(path).is_absolute()) << path;
    std::error_code error;
    EXPECT_TRUE(std::filesystem::equivalent(path, testing::internal::GetArgvs().front(), error))
        << path << ": " << error.message();
}

TEST(ModulePath, CodeOfALibraryIsInTheLibrary) {
    std::string reason;
    const auto library = SharedLibrary::Load("libm.so.6", reason);
    ASSERT_NE(library, nullptr) << reason;
    const std::filesystem::path path = ModulePath(library->Symbol("cos"));
    EXPECT_TRUE(path.is_absolute()) << path;
    EXPECT_TRUE(path.filename().string().starts_with("libm")) << path;
    EXPECT_TRUE(std::filesystem::is_regular_file(path));
    EXPECT_FALSE(std::filesystem::is_symlink(path));
}

TEST(ModulePath, AnAddressInNoFileHasNone) {
    EXPECT_EQ(ModulePath(nullptr), "");
    const auto onTheHeap = std::make_unique<int>(1);
    EXPECT_EQ(ModulePath(onTheHeap.get()), "");
}

}  // namespace
}  // namespace kestrion
