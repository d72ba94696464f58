// How a writer tells how far it is.
#pragma once

#include <cstdint>
#include <functional>

namespace kestrion::cli {

// Called now and then with the amount done and the amount in all, in a unit of the writer's own.
// What it throws ends the writing. May be empty.
using WriterProgress = std::function<void(std::uint64_t done, std::uint64_t total)>;

inline void Tell(const WriterProgress& progress, std::uint64_t done, std::uint64_t total) {
    if (progress) {
        progress(done, total);
    }
}

}  // namespace kestrion::cli
