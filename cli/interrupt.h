// Ctrl-C while files are being written.
#pragma once

#include <csignal>

namespace kestrion::cli {

// While one is alive, the interrupt signal is only noted, so that the files under way can be
// removed before the program ends. One object at a time.
class InterruptGuard {
  public:
    InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    ~InterruptGuard();

    // Throws Failure with kExitInterrupted if the signal came.
    void Check() const;

  private:
    using Handler = void (*)(int);
    Handler previous_;
};

}  // namespace kestrion::cli
