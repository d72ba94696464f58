#include "platform/loader.h"

#include <gtest/gtest.h>

namespace kestrion {
namespace {

TEST(Loader, FindsAnExportedFunction) {
    std::string reason;
    const auto library = SharedLibrary::Load("libm.so.6", reason);
    ASSERT_NE(library, nullptr) << reason;
    EXPECT_NE(library->Symbol("cos"), nullptr);
    EXPECT_EQ(library->Symbol("noSuchFunctionInThere"), nullptr);
}

TEST(Loader, SaysWhyALibraryCannotBeLoaded) {
    std::string reason;
    EXPECT_EQ(SharedLibrary::Load("libNoSuchLibrary.so.0", reason), nullptr);
    EXPECT_NE(reason.find("libNoSuchLibrary.so.0"), std::string::npos) << reason;
}

}  // namespace
}  // namespace kestrion
