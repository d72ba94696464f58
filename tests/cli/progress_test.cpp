#include "cli/progress.h"

#include <gmock/gmock.h>

#include <sstream>
#include <thread>

namespace kestrion::cli {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

// A stream that can be asked from this thread what another thread has written so far.
class WatchedStream : private std::stringbuf, public std::ostream {
  public:
    WatchedStream() : std::ostream(static_cast<std::stringbuf*>(this)) {}

    [[nodiscard]] std::string Text() {
        const std::lock_guard lock(mutex_);
        return text_;
    }
    void WaitFor(const std::string& part) {
        while (Text().find(part) == std::string::npos) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

  private:
    int sync() override {
        const std::lock_guard lock(mutex_);
        text_ += str();
        str("");
        return 0;
    }

    std::mutex mutex_;
    std::string text_;
};

constexpr std::chrono::milliseconds kAtOnce{0};

TEST(Progress, DisabledItWritesNothing) {
    std::ostringstream out;
    {
        Progress progress(out, false, kAtOnce);
        progress.Begin("Acquiring");
        progress.Advance(1, 2);
        progress.End();
        progress.Begin("Writing");
    }
    EXPECT_EQ(out.str(), "");
}

TEST(Progress, ShowsThePhaseWithItsTimeAndClearsTheLine) {
    WatchedStream out;
    Progress progress(out, true, kAtOnce);
    progress.Begin("Acquiring");
    out.WaitFor("Acquiring ... 0.");
    progress.End();
    EXPECT_THAT(out.Text(), HasSubstr(" s"));
    EXPECT_THAT(out.Text(), EndsWith("\r\x1b[K"));
}

TEST(Progress, ShowsPercentOnceTheAmountIsKnown) {
    WatchedStream out;
    Progress progress(out, true, kAtOnce);
    progress.Begin("Writing run.csv");
    progress.Advance(21, 50);
    out.WaitFor("Writing run.csv ... 42 %");
    progress.End();
    EXPECT_THAT(out.Text(), EndsWith("\r\x1b[K"));
}

TEST(Progress, ANewPhaseReplacesTheOneBefore) {
    WatchedStream out;
    Progress progress(out, true, kAtOnce);
    progress.Begin("Acquiring");
    out.WaitFor("Acquiring");
    progress.Begin("Transferring CH1");
    out.WaitFor("Transferring CH1 ... 0.");
    progress.End();
    EXPECT_THAT(out.Text(), EndsWith("\r\x1b[K"));
}

TEST(Progress, AShortPhaseShowsNothing) {
    std::ostringstream out;
    {
        Progress progress(out, true, std::chrono::hours(1));
        progress.Begin("Acquiring");
        progress.Begin("Writing");
    }
    EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace kestrion::cli
