// The time of day, and who is running, for records that people read.
#pragma once

#include <cstdint>

namespace kestrion {

// A moment, by the clock on the wall.
struct WallTime {
    std::int64_t secondsSinceEpoch;  // of 1970-01-01 00:00 UTC
    // The same in the local time zone; the month and the day count from 1.
    int year;
    int month;
    int day;
    int hour;
    int minute;
    int second;
    int millisecond;
};

// Any thread may ask these.
[[nodiscard]] WallTime CurrentWallTime();
[[nodiscard]] std::uint32_t CurrentProcessNumber();
[[nodiscard]] std::uint32_t CurrentThreadNumber();

}  // namespace kestrion
