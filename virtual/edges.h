// The edges of a waveform.
#pragma once

#include <span>
#include <vector>

namespace virtual_scope {

struct Edge {
    double place;  // in points from the first, between two of them
    bool rising;
};

// Where the points cross `level`, on straight lines between them. A crossing counts once the signal
// has gone on by `hysteresis`, and its place is the last crossing before that.
[[nodiscard]] std::vector<Edge> FindEdges(std::span<const double> points, double level,
                                          double hysteresis);

// How long an edge takes from one level to the other, in points: from the last crossing of `from`
// before the edge's place to the first of `to` behind it. Negative if one of them isn't there.
[[nodiscard]] double TransitionPoints(std::span<const double> points, const Edge& edge, double from,
                                      double to);

}  // namespace virtual_scope
