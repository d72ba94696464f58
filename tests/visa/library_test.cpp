// The provider as a library of its own, loaded as a VISA client loads it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "visa/visa.h"

namespace visa_provider {
namespace {

// The library's file, unloaded at the end of each test.
class LibraryTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(library_) << dlerror(); }

    template <typename Function>
    Function Find(const char* name) {
        return reinterpret_cast<Function>(dlsym(library_.get(), name));
    }

  private:
    struct Unload {
        void operator()(void* library) const { dlclose(library); }
    };
    std::unique_ptr<void, Unload> library_{dlopen(KESTRION_VISA_FILE, RTLD_NOW | RTLD_LOCAL)};
};

TEST_F(LibraryTest, HasEveryFunction) {
    for (const char* name : {"viOpenDefaultRM",
                             "viGetDefaultRM",
                             "viOpen",
                             "viClose",
                             "viGetAttribute",
                             "viSetAttribute",
                             "viStatusDesc",
                             "viRead",
                             "viWrite",
                             "viReadAsync",
                             "viWriteAsync",
                             "viAssertTrigger",
                             "viReadSTB",
                             "viClear",
                             "viTerminate",
                             "viLock",
                             "viUnlock",
                             "viEnableEvent",
                             "viDisableEvent",
                             "viDiscardEvents",
                             "viWaitOnEvent",
                             "viInstallHandler",
                             "viUninstallHandler",
                             "viFindRsrc",
                             "viFindNext",
                             "viParseRsrc",
                             "viParseRsrcEx"}) {
        EXPECT_NE(Find<void*>(name), nullptr) << name;
    }
}

TEST_F(LibraryTest, QueryThroughTheLibrary) {
    const auto openManager = Find<ViStatus (*)(ViSession*)>("viGetDefaultRM");
    const auto open =
        Find<ViStatus (*)(ViSession, const char*, ViUInt32, ViUInt32, ViSession*)>("viOpen");
    const auto write =
        Find<ViStatus (*)(ViSession, const unsigned char*, ViUInt32, ViUInt32*)>("viWrite");
    const auto read = Find<ViStatus (*)(ViSession, unsigned char*, ViUInt32, ViUInt32*)>("viRead");
    const auto close = Find<ViStatus (*)(ViObject)>("viClose");
    ViSession manager = VI_NULL;
    ASSERT_EQ(openManager(&manager), VI_SUCCESS);
    ViSession session = VI_NULL;
    ASSERT_EQ(open(manager, "VIRTUAL::PL7254C::INSTR", 0, 2000, &session), VI_SUCCESS);
    EXPECT_EQ(write(session, reinterpret_cast<const unsigned char*>("*IDN?\n"), 6, nullptr),
              VI_SUCCESS);
    unsigned char answer[256] = {};
    ViUInt32 count = 0;
    EXPECT_EQ(read(session, answer, sizeof(answer), &count), VI_SUCCESS);
    EXPECT_NE(std::string(answer, answer + count).find("PL7254C"), std::string::npos);
    EXPECT_EQ(close(manager), VI_SUCCESS);
}

}  // namespace
}  // namespace visa_provider
