#include "cli/progress.h"

#include <fmt/format.h>

namespace kestrion::cli {
namespace {

constexpr std::chrono::milliseconds kRedrawInterval{200};
// Back to the start of the line, and erase it.
constexpr std::string_view kEraseLine = "\r\x1b[K";

}  // namespace

Progress::Progress(std::ostream& out, bool enabled, std::chrono::milliseconds patience)
    : out_(out), enabled_(enabled), patience_(patience) {}

Progress::~Progress() {
    End();
}

void Progress::Begin(std::string_view phase) {
    End();
    if (!enabled_) {
        return;
    }
    phase_ = phase;
    start_ = Clock::now();
    percent_.reset();
    thread_ = std::jthread([this](const std::stop_token& stop) { Run(stop); });
}

void Progress::Advance(std::uint64_t done, std::uint64_t total) {
    if (!enabled_ || total == 0) {
        return;
    }
    const std::lock_guard lock(mutex_);
    percent_ = static_cast<int>(static_cast<double>(done) / static_cast<double>(total) * 100);
}

void Progress::End() {
    if (!thread_.joinable()) {
        return;
    }
    thread_.request_stop();
    thread_.join();
    Clear();
}

void Progress::Run(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    wake_.wait_until(lock, stop, start_ + patience_, [] { return false; });
    while (!stop.stop_requested()) {
        Draw();
        wake_.wait_for(lock, stop, kRedrawInterval, [] { return false; });
    }
}

void Progress::Draw() {
    const std::chrono::duration<double> elapsed = Clock::now() - start_;
    const std::string state =
        percent_ ? fmt::format("{} %", *percent_) : fmt::format("{:.1f} s", elapsed.count());
    out_ << kEraseLine << phase_ << " ... " << state << std::flush;
    drawn_ = true;
}

void Progress::Clear() {
    if (drawn_) {
        out_ << kEraseLine << std::flush;
    }
    drawn_ = false;
}

}  // namespace kestrion::cli
