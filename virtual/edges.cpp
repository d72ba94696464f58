#include "virtual/edges.h"

#include <cmath>
#include <cstddef>

namespace virtual_scope {
namespace {

// Where the line from a point to the next one has the level.
double Between(std::span<const double> points, std::size_t point, double level) {
    const double step = points[point + 1] - points[point];
    return static_cast<double>(point) + (step == 0 ? 0.0 : (level - points[point]) / step);
}

bool Crosses(double from, double to, double level, bool rising) {
    return rising ? from < level && to >= level : from > level && to <= level;
}

}  // namespace

std::vector<Edge> FindEdges(std::span<const double> points, double level, double hysteresis) {
    enum class Side { kUnknown, kBelow, kAbove };
    std::vector<Edge> edges;
    Side side = Side::kUnknown;
    double lastCrossing = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i > 0 && (Crosses(points[i - 1], points[i], level, true) ||
                      Crosses(points[i - 1], points[i], level, false))) {
            lastCrossing = Between(points, i - 1, level);
        }
        const Side now = points[i] >= level + hysteresis   ? Side::kAbove
                         : points[i] <= level - hysteresis ? Side::kBelow
                                                           : side;
        if (now != side && side != Side::kUnknown) {
            edges.push_back({lastCrossing, now == Side::kAbove});
        }
        side = now;
    }
    return edges;
}

double TransitionPoints(std::span<const double> points, const Edge& edge, double from, double to) {
    const auto last = static_cast<std::ptrdiff_t>(points.size()) - 2;
    const auto start = static_cast<std::ptrdiff_t>(std::floor(edge.place));
    std::ptrdiff_t before = start;
    std::ptrdiff_t after = start;
    const auto crosses = [&](std::ptrdiff_t at, double level) {
        const auto point = static_cast<std::size_t>(at);
        return Crosses(points[point], points[point + 1], level, edge.rising);
    };
    while (before >= 0 && !crosses(before, from)) {
        --before;
    }
    while (after <= last && !crosses(after, to)) {
        ++after;
    }
    if (before < 0 || after > last) {
        return -1;
    }
    return Between(points, static_cast<std::size_t>(after), to) -
           Between(points, static_cast<std::size_t>(before), from);
}

}  // namespace virtual_scope
