// One instrument and the links to it.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "virtual/device_link.h"
#include "virtual/message_exchange.h"
#include "virtual/oscilloscope.h"

namespace virtual_scope {

using Clock = std::function<TimePoint()>;

class InstrumentLink;

// Every link has a message exchange and a service request of its own; settings, status registers
// and acquisitions are the instrument's. All members may be called from any thread.
class Instrument : public std::enable_shared_from_this<Instrument> {
  public:
    // An instrument in its power-on state that takes the time from `clock`; null for a model name
    // that isn't known. The clock is called under the instrument's lock.
    [[nodiscard]] static std::shared_ptr<Instrument> Make(std::string_view model,
                                                          Clock clock = &SteadyNow);
    ~Instrument();
    Instrument(const Instrument&) = delete;
    Instrument& operator=(const Instrument&) = delete;

    // A new link, which keeps the instrument alive.
    [[nodiscard]] std::unique_ptr<DeviceLink> Connect(ExchangeRule rule = ExchangeRule::kInterrupt);

  private:
    friend class InstrumentLink;

    using Handlers = std::vector<std::function<void()>>;

    static TimePoint SteadyNow() { return std::chrono::steady_clock::now(); }

    Instrument(const Model& model, Clock clock);

    // Runs `work` with the time caught up, then tells the links that begin to request service.
    // `work` runs under the lock, the handlers without it.
    template <typename Work>
    auto Locked(Work work);
    // Catches up with the clock, and adds the handlers of the links that begin to request service.
    void Settle(Handlers& handlers);

    std::mutex mutex_;
    Oscilloscope scope_;
    std::vector<InstrumentLink*> links_;
};

// As `MakeInstrument`, with the time taken from `clock`.
[[nodiscard]] std::unique_ptr<DeviceLink> MakeInstrument(std::string_view model, Clock clock);

}  // namespace virtual_scope
