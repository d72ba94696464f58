// What ends a command early: a text for the person at the terminal and the program's exit code.
#pragma once

#include <stdexcept>
#include <string>

namespace kestrion::cli {

inline constexpr int kExitSuccess = 0;
// The instrument, the driver or the system refused.
inline constexpr int kExitFailure = 1;
// The command line itself is wrong.
inline constexpr int kExitUsage = 2;
// Ended by Ctrl-C: 128 plus the number of the signal, as shells report it.
inline constexpr int kExitInterrupted = 130;

class Failure : public std::runtime_error {
  public:
    // `text` says what went wrong and where; it may have several lines. `hint` says what to do
    // next and may be empty.
    explicit Failure(const std::string& text, std::string hint = {}, int exitCode = kExitFailure)
        : std::runtime_error(text), hint_(std::move(hint)), exitCode_(exitCode) {}

    [[nodiscard]] const std::string& Hint() const { return hint_; }
    [[nodiscard]] int ExitCode() const { return exitCode_; }

  private:
    std::string hint_;
    int exitCode_;
};

// A command line that can't be carried out.
[[nodiscard]] inline Failure BadUsage(const std::string& text, std::string hint = {}) {
    return Failure(text, std::move(hint), kExitUsage);
}

}  // namespace kestrion::cli
