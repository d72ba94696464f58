// How much memory this process has taken.
#pragma once

namespace bench {

// The largest resident size so far, in KiB. Throws std::runtime_error where the system doesn't
// tell.
[[nodiscard]] long PeakResidentKib();

}  // namespace bench
