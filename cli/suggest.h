// What a misspelt name may have been meant to be.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kestrion::cli {

// Up to `most` of `names` that are the fewest edits away from `given`, nearest first, names equally
// near in their own order. One that needs more edits than a third of its length isn't near. Letter
// case is ignored.
[[nodiscard]] std::vector<std::string> Nearest(const std::string& given,
                                               const std::vector<std::string>& names,
                                               std::size_t most);

}  // namespace kestrion::cli
