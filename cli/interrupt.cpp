#include "cli/interrupt.h"

#include "cli/failure.h"

namespace kestrion::cli {
namespace {

volatile std::sig_atomic_t interrupted = 0;

void NoteInterrupt(int) {
    interrupted = 1;
}

}  // namespace

InterruptGuard::InterruptGuard() : previous_(std::signal(SIGINT, &NoteInterrupt)) {
    interrupted = 0;
}

InterruptGuard::~InterruptGuard() {
    if (previous_ != SIG_ERR) {
        (void)std::signal(SIGINT, previous_);
    }
}

void InterruptGuard::Check() const {
    if (interrupted != 0) {
        throw Failure("Interrupted; the unfinished file was removed.", {}, kExitInterrupted);
    }
}

}  // namespace kestrion::cli
