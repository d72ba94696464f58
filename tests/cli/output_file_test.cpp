#include "cli/output_file.h"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "tests/cli/failure_matcher.h"
#include "tests/support/temporary_folder.h"

namespace kestrion::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(OutputFile, AppearsWithItsContentOnCommit) {
    const TemporaryFolder folder;
    OutputFile file(folder.File("a.txt"));
    file.Write("one ");
    file.Write("two");
    EXPECT_FALSE(std::filesystem::exists(folder.File("a.txt")));
    file.Commit();
    EXPECT_EQ(ReadFile(folder.File("a.txt")), "one two");
    EXPECT_THAT(folder.Names(), ElementsAre("a.txt"));
}

TEST(OutputFile, WithoutCommitNothingStaysBehind) {
    const TemporaryFolder folder;
    {
        OutputFile file(folder.File("a.txt"));
        file.Write("half");
        EXPECT_EQ(folder.Names().size(), 1U);
    }
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(OutputFile, AnOlderFileStaysUntilCommit) {
    const TemporaryFolder folder;
    WriteFile(folder.File("a.txt"), "old");
    {
        OutputFile abandoned(folder.File("a.txt"));
        abandoned.Write("new");
    }
    EXPECT_EQ(ReadFile(folder.File("a.txt")), "old");
    OutputFile file(folder.File("a.txt"));
    file.Write("new");
    file.Commit();
    EXPECT_EQ(ReadFile(folder.File("a.txt")), "new");
}

TEST(OutputFile, ASymbolicLinkStaysALink) {
    const TemporaryFolder folder;
    WriteFile(folder.File("target"), "old");
    std::filesystem::create_symlink(folder.File("target"), folder.File("link"));
    OutputFile file(folder.File("link"));
    file.Write("new");
    file.Commit();
    EXPECT_TRUE(std::filesystem::is_symlink(folder.File("link")));
    EXPECT_EQ(ReadFile(folder.File("target")), "new");
}

TEST(OutputFile, AMissingFolderIsNamed) {
    const TemporaryFolder folder;
    const std::string target = folder.File("none/a.txt").string();
    const Failure failure = ExpectFailure([&] { OutputFile file(target); });
    EXPECT_EQ(failure.what(), "Cannot write '" + target + "': No such file or directory.");
    EXPECT_EQ(failure.ExitCode(), 1);
}

TEST(OutputFile, AFolderIsNoFile) {
    const TemporaryFolder folder;
    const Failure failure = ExpectFailure([&] { OutputFile file(folder.Path()); });
    EXPECT_EQ(failure.what(), "Cannot write '" + folder.Path().string() + "': Is a directory.");
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(OutputFile, APathBelowAFileCannotBeWritten) {
    const TemporaryFolder folder;
    WriteFile(folder.File("file"), "x");
    const std::string target = folder.File("file/a.txt").string();
    EXPECT_EQ(ExpectFailure([&] { OutputFile file(target); }).what(),
              "Cannot write '" + target + "': Not a directory.");
}

TEST(OutputFile, ADeviceIsWrittenDirectlyAndStaysADevice) {
    OutputFile file("/dev/null");
    file.Write("x");
    file.Commit();
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(OutputFile, AFullDeviceFailsAtCommitAtTheLatest) {
    OutputFile file("/dev/full");
    const Failure failure = ExpectFailure([&] {
        file.Write("x");
        file.Commit();
    });
    EXPECT_STREQ(failure.what(), "Cannot write '/dev/full': No space left on device.");
}

// Limits the size of the files that this process may write.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before_), 0);
        const rlimit limit{bytes, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &before_), 0);
        (void)std::signal(SIGXFSZ, handler_);
    }

  private:
    rlimit before_{};
    void (*handler_)(int);
};

TEST(OutputFile, AFailureInTheMiddleLeavesNothingBehind) {
    const TemporaryFolder folder;
    {
        const FileSizeLimit limit(100000);
        OutputFile file(folder.File("a.txt"));
        const std::string block(60000, 'x');
        const Failure failure = ExpectFailure([&] {
            file.Write(block);
            file.Write(block);
            file.Commit();
        });
        EXPECT_EQ(failure.what(),
                  "Cannot write '" + folder.File("a.txt").string() + "': File too large.");
    }
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(CheckWritable, LeavesNothingBehindAndTouchesNothing) {
    const TemporaryFolder folder;
    CheckWritable(folder.File("new.txt"));
    EXPECT_THAT(folder.Names(), IsEmpty());
    WriteFile(folder.File("old.txt"), "old");
    CheckWritable(folder.File("old.txt"));
    EXPECT_EQ(ReadFile(folder.File("old.txt")), "old");
    EXPECT_TRUE(FailureOf([&] { CheckWritable(folder.File("none/a.txt")); }).has_value());
}

}  // namespace
}  // namespace kestrion::cli
