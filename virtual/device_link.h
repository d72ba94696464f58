// How a link reaches an instrument in software: the message exchange of IEEE 488.1 and 488.2 as
// plain calls. A bus driver, a socket server and a test all stand behind this one seam.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace virtual_scope {

using TimePoint = std::chrono::steady_clock::time_point;

// What one read took out of the output queue.
struct ReadPiece {
    std::size_t count = 0;  // bytes stored
    bool end = false;       // END came with the last of them
};

// One instrument. All members may be called from any thread; each is whole. No member blocks: a
// caller that waits asks `NextEvent` how long nothing can change by itself, and looks again then.
class DeviceLink {
  public:
    virtual ~DeviceLink() = default;

    // Hands over bytes of a program message. `end` says that END came with the last byte; a line
    // feed ends a message too.
    virtual void Write(std::span<const std::byte> bytes, bool end) = 0;

    // Takes at most `target.size()` bytes of the response; a count of 0 means that there is none
    // yet.
    virtual ReadPiece Read(std::span<std::byte> target) = 0;

    // True while the output queue holds anything.
    [[nodiscard]] virtual bool HasOutput() = 0;

    // Serial poll: the status byte with RQS in bit 6, which the poll clears.
    [[nodiscard]] virtual std::uint8_t SerialPoll() = 0;

    // Device clear: both queues are emptied and the parser starts anew; settings stay.
    virtual void Clear() = 0;

    // The group execute trigger.
    virtual void Trigger() = 0;

    // Called, without any lock of the instrument held, each time that the instrument begins to
    // request service. Null takes the handler away; a call on another thread may be under way
    // meanwhile. It may be called from within any member.
    virtual void SetServiceRequestHandler(std::function<void()> handler) = 0;

    // Lets time-driven states (an acquisition that ends) catch up with the clock.
    virtual void Poll() = 0;

    // When `Poll` should be called next; nothing when no state changes by itself.
    [[nodiscard]] virtual std::optional<TimePoint> NextEvent() = 0;
};

// The names of the models that can be made, in a fixed order.
[[nodiscard]] std::vector<std::string> ModelNames();

// Makes an instrument in its power-on state; null for a model name that isn't known.
// Model names are compared exactly.
[[nodiscard]] std::unique_ptr<DeviceLink> MakeInstrument(std::string_view model);

}  // namespace virtual_scope
