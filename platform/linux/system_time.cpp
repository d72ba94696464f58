#include "platform/system_time.h"

#include <unistd.h>

#include <chrono>
#include <ctime>

namespace kestrion {

WallTime CurrentWallTime() {
    using std::chrono::milliseconds;
    using std::chrono::seconds;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto whole = std::chrono::floor<seconds>(now);
    const auto rest = std::chrono::duration_cast<milliseconds>(now - whole);
    const std::time_t time = whole.count();
    std::tm local{};
    (void)localtime_r(&time, &local);
    return {.secondsSinceEpoch = whole.count(),
            .year = local.tm_year + 1900,
            .month = local.tm_mon + 1,
            .day = local.tm_mday,
            .hour = local.tm_hour,
            .minute = local.tm_min,
            .second = local.tm_sec,
            .millisecond = static_cast<int>(rest.count())};
}

std::uint32_t CurrentProcessNumber() {
    return static_cast<std::uint32_t>(::getpid());
}

std::uint32_t CurrentThreadNumber() {
    return static_cast<std::uint32_t>(::gettid());
}

}  // namespace kestrion
