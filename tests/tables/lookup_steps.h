// Counts the steps of look-ups that ignore case, for code that promises how many it takes.
#pragma once

#include <cstddef>

namespace kestrion::test {

struct LookupSteps {
    std::size_t hashes = 0;       // look-ups
    std::size_t comparisons = 0;  // keys that they were compared with

    bool operator==(const LookupSteps&) const = default;
};

// What this thread has taken so far. The program has to be linked by kestrion_count_steps().
[[nodiscard]] LookupSteps TakenSteps();

// What `code` takes.
template <typename Code>
[[nodiscard]] LookupSteps CountSteps(Code code) {
    const LookupSteps before = TakenSteps();
    code();
    const LookupSteps after = TakenSteps();
    return {after.hashes - before.hashes, after.comparisons - before.comparisons};
}

}  // namespace kestrion::test
