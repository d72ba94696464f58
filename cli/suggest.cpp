#include "cli/suggest.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "cli/ascii.h"

namespace kestrion::cli {
namespace {

// Characters to insert, remove or exchange on the way from `a` to `b`.
std::size_t Edits(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t exchanged = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.at(b.size());
}

}  // namespace

std::vector<std::string> Nearest(const std::string& given, const std::vector<std::string>& names,
                                 std::size_t most) {
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const std::string& name : names) {
        const std::size_t edits = Edits(ToUpper(given), ToUpper(name));
        if (edits * 3 <= std::max(given.size(), name.size())) {
            ranked.emplace_back(edits, name);
        }
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> result;
    for (std::size_t i = 0; i < std::min(most, ranked.size()); ++i) {
        result.push_back(ranked[i].second);
    }
    return result;
}

}  // namespace kestrion::cli
