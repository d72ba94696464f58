// What a run of the program uses of its surroundings, so that tests can put theirs in place.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "cli/scope_client.h"

namespace kestrion::cli {

// A monotonic time and a sleep.
struct Timing {
    std::function<std::chrono::steady_clock::time_point()> now;
    std::function<void(std::chrono::milliseconds)> sleep;
};

struct Environment {
    std::ostream& out;
    std::ostream& err;
    bool outIsTerminal = false;
    bool errIsTerminal = false;
    // Width of the terminal in characters.
    std::size_t columns = 80;
    std::string version;
    std::function<std::unique_ptr<ScopeClient>()> makeClient;
    Timing timing;
};

}  // namespace kestrion::cli
