#include "cli/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace kestrion::cli {

bool OutputIsTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

bool ErrorIsTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

std::size_t TerminalColumns() {
    constexpr std::size_t kDefault = 80;
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return kDefault;
    }
    return size.ws_col;
}

}  // namespace kestrion::cli
