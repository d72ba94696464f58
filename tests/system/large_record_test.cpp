// A record of 100,000,000 points: the program that captures it stays within its memory.
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>

#include "tests/support/temporary_folder.h"
#include "tests/system/scope_client.h"

namespace kestrion {
namespace {

// The block and the array of doubles are 0.9 GB; this is what both and the program may take.
constexpr long kResidentLimitKib = 1258291;  // 1.2 GiB

struct Ended {
    int exitCode = -1;
    long residentKib = 0;
};

Ended RunProgram(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawn(&child, argv[0], nullptr, nullptr, argv.data(), environ) != 0) {
        return {};
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status)) {
        return {};
    }
    return {WEXITSTATUS(status), usage.ru_maxrss};
}

class LargeRecordTest : public testing::Test {
  protected:
    TemporaryFolder folder_;
};

TEST_F(LargeRecordTest, AHundredMillionPointsAreCapturedWithinTheMemory) {
    const auto server = Serve();
    const std::filesystem::path file = folder_.File("record.npy");
    const Ended ended =
        RunProgram({KESTRION_PROGRAM, "capture", "--resource", server->ResourceName(), "--points",
                    "100000000", "--npy", file.string(), "--no-plot"});
    ASSERT_EQ(ended.exitCode, 0);
    EXPECT_LE(ended.residentKib, kResidentLimitKib);
    RecordProperty("resident_kib", std::to_string(ended.residentKib));
    // 100,000,000 doubles behind a header of 128 bytes.
    EXPECT_EQ(std::filesystem::file_size(file), 800000128U);
}

}  // namespace
}  // namespace kestrion
