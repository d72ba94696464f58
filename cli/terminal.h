// What standard output and standard error are connected to.
#pragma once

#include <cstddef>

namespace kestrion::cli {

[[nodiscard]] bool OutputIsTerminal();
[[nodiscard]] bool ErrorIsTerminal();
// Width of the terminal at standard output in characters; 80 where there is none or it doesn't
// tell.
[[nodiscard]] std::size_t TerminalColumns();

}  // namespace kestrion::cli
