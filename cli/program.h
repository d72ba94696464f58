// The program, apart from its process.
#pragma once

#include <string>
#include <vector>

#include "cli/environment.h"

namespace kestrion::cli {

// Runs the command line `arguments` (without the program's name) and returns the exit code: 0 for
// success, 1 when the instrument, the driver or the system refused, 2 for bad usage. On failure
// standard error gets "kestrion: " with the reason and a hint, and standard output nothing.
[[nodiscard]] int Run(const std::vector<std::string>& arguments, const Environment& environment);

}  // namespace kestrion::cli
