// The times of a record's points.
#pragma once

#include <cstdint>

namespace virtual_scope {

struct TimeAxis {
    double zero = 0;           // time of the trigger point, in seconds after the trigger
    std::int64_t trigger = 0;  // number of the trigger point
    double interval = 1;       // seconds between two points

    [[nodiscard]] double At(std::int64_t point) const {
        return zero + static_cast<double>(point - trigger) * interval;
    }
};

}  // namespace virtual_scope
