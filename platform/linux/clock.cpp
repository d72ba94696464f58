#include "platform/clock.h"

#include <thread>

namespace kestrion {
namespace {

class SteadyClock final : public Clock {
  public:
    std::chrono::steady_clock::time_point Now() const override {
        return std::chrono::steady_clock::now();
    }
    std::uint32_t TickCount() const override {
        const auto since = Now().time_since_epoch();
        return static_cast<std::uint32_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(since).count());
    }
    void Sleep(std::chrono::milliseconds duration) override {
        std::this_thread::sleep_for(duration);
    }
};

}  // namespace

Clock& SystemClock() {
    static SteadyClock clock;
    return clock;
}

}  // namespace kestrion
