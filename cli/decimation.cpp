#include "cli/decimation.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace kestrion::cli {
namespace {

constexpr std::size_t kPointsOfAColumn = 4;

// The first point of a column; that of the column after the last is the record's size.
std::size_t ColumnStart(std::size_t points, std::size_t columns, std::size_t column) {
    return points / columns * column + points % columns * column / columns;
}

}  // namespace

std::vector<std::size_t> PointsToDraw(std::span<const double> values, std::size_t columns) {
    std::vector<std::size_t> indices;
    if (values.size() <= kPointsOfAColumn * columns) {
        indices.resize(values.size());
        std::iota(indices.begin(), indices.end(), std::size_t{0});
        return indices;
    }
    indices.reserve(kPointsOfAColumn * columns);
    for (std::size_t column = 0; column < columns; ++column) {
        const std::size_t start = ColumnStart(values.size(), columns, column);
        const std::size_t end = ColumnStart(values.size(), columns, column + 1);
        const auto part = values.subspan(start, end - start);
        const auto [low, high] = std::minmax_element(part.begin(), part.end());
        std::array<std::size_t, kPointsOfAColumn> picked{
            start, start + static_cast<std::size_t>(low - part.begin()),
            start + static_cast<std::size_t>(high - part.begin()), end - 1};
        std::sort(picked.begin(), picked.end());
        indices.insert(indices.end(), picked.begin(), std::unique(picked.begin(), picked.end()));
    }
    return indices;
}

std::vector<Extremes> ColumnExtremes(std::span<const double> values, std::size_t columns) {
    const std::size_t count = std::min(columns, values.size());
    std::vector<Extremes> result;
    result.reserve(count);
    for (std::size_t column = 0; column < count; ++column) {
        const std::size_t start = ColumnStart(values.size(), count, column);
        const std::size_t end = ColumnStart(values.size(), count, column + 1);
        const auto part = values.subspan(start, end - start);
        const auto [low, high] = std::minmax_element(part.begin(), part.end());
        result.push_back({*low, *high});
    }
    return result;
}

}  // namespace kestrion::cli
