// Tells the person at the terminal what a long command is doing.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>

namespace kestrion::cli {

// One line that is drawn over again, "Acquiring ... 3.2 s" or "Writing run.csv ... 42 %", and
// cleared at the end of the phase. A phase shorter than `patience` shows nothing. The elapsed time
// runs on while the caller waits for the instrument: a thread of this object redraws the line.
// Nothing else writes to the stream during a phase. One thread uses an object.
class Progress {
  public:
    static constexpr std::chrono::milliseconds kPatience{400};

    // Without `enabled` nothing is ever written and no thread is started.
    Progress(std::ostream& out, bool enabled, std::chrono::milliseconds patience = kPatience);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    // Ends the phase before, if there is one.
    void Begin(std::string_view phase);
    // From the first call on, the phase shows how much is done in place of the time.
    void Advance(std::uint64_t done, std::uint64_t total);
    void End();

  private:
    using Clock = std::chrono::steady_clock;

    void Run(const std::stop_token& stop);
    void Draw();
    void Clear();

    std::ostream& out_;
    bool enabled_;
    std::chrono::milliseconds patience_;
    // Guards all below, and the stream.
    std::mutex mutex_;
    std::condition_variable_any wake_;
    std::string phase_;
    Clock::time_point start_;
    std::optional<int> percent_;
    bool drawn_ = false;
    std::jthread thread_;
};

}  // namespace kestrion::cli
