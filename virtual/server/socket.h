// The few socket calls that the server needs. Nothing here ever raises a signal, and every failure
// of a peer is an ordinary result.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "virtual/device_link.h"

namespace virtual_scope {

// A descriptor of the system, closed at the end.
class Handle {
  public:
    Handle() = default;
    explicit Handle(int descriptor) : descriptor_(descriptor) {}
    Handle(Handle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~Handle();

    [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int get() const { return descriptor_; }

  private:
    int descriptor_ = -1;
};

// Ends all waits, for good, once it has been raised.
class StopSignal {
  public:
    StopSignal();
    // May be called from any thread, and from a signal handler.
    void Raise() const;
    [[nodiscard]] int get() const { return handle_.get(); }

  private:
    Handle handle_;
};

enum class Waiting { kRead, kWrite };
enum class WaitResult { kReady, kTimedOut, kStopped };

// Waits until the socket can be read or written without blocking. Ready, too, when the peer is
// gone: the next call tells.
[[nodiscard]] WaitResult Wait(const Handle& socket, Waiting what, const StopSignal& stop,
                              std::optional<TimePoint> until = std::nullopt);

// A listening socket; not open, with the reason in `error`, when there can't be one. Port 0 takes
// a free one.
[[nodiscard]] Handle Listen(const std::string& address, std::uint16_t port, std::string& error);
[[nodiscard]] std::uint16_t LocalPort(const Handle& socket);

// The next client; not open if it is gone already.
[[nodiscard]] Handle Accept(const Handle& listener);

// Bytes received, 0 when the peer has closed or is gone; nothing when there are none yet.
[[nodiscard]] std::optional<std::size_t> Receive(const Handle& socket, std::span<std::byte> target);

// Sends all, waiting for a slow peer; false when the peer is gone or the wait was stopped.
[[nodiscard]] bool SendAll(const Handle& socket, std::span<const std::byte> bytes,
                           const StopSignal& stop);

}  // namespace virtual_scope
