// The status structure of IEEE 488.2 (chapter 11) with the error queue of SCPI beside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

#include "virtual/scpi_error.h"

namespace virtual_scope {

// Bits of the standard event status register (IEEE 488.2, 11.5.1.1).
enum EventBit : std::uint8_t {
    kOperationComplete = 0x01,
    kQueryError = 0x04,
    kDeviceError = 0x08,
    kExecutionError = 0x10,
    kCommandError = 0x20,
    kPowerOn = 0x80,
};

// Bits of the status byte (IEEE 488.2, 11.2.1).
enum StatusBit : std::uint8_t {
    kMessageAvailable = 0x10,
    kEventSummary = 0x20,
    kRequestService = 0x40,  // the master summary in an answer to *STB?
};

// One instrument's status. Not for several threads at once.
class Status {
  public:
    static constexpr std::size_t kQueueLength = 32;

    // Enters an event; those that the device event enable register masks go unnoticed.
    void SetEvent(std::uint8_t bits) { events_ |= static_cast<std::uint8_t>(bits & deviceEnable_); }

    // Enters an error into the queue and its class into the event register. The last place of a
    // full queue tells of the overflow.
    void Report(ScpiError error);

    // The oldest error, which leaves the queue; `kNone` when the queue is empty.
    [[nodiscard]] ScpiError TakeError();

    // The event register, which reading empties.
    [[nodiscard]] std::uint8_t TakeEvents();

    // What *CLS does to the registers and to the error queue.
    void Clear();

    // The status byte without bit 6. `messageAvailable` tells of the asking link's output queue.
    [[nodiscard]] std::uint8_t Summary(bool messageAvailable) const;

    [[nodiscard]] std::uint8_t eventEnable() const { return eventEnable_; }
    [[nodiscard]] std::uint8_t deviceEnable() const { return deviceEnable_; }
    [[nodiscard]] std::uint8_t serviceEnable() const { return serviceEnable_; }
    void setEventEnable(std::uint8_t mask) { eventEnable_ = mask; }
    void setDeviceEnable(std::uint8_t mask) { deviceEnable_ = mask; }
    // Bit 6 can't be a reason of its own for a request (IEEE 488.2, 11.3.2.3).
    void setServiceEnable(std::uint8_t mask) {
        serviceEnable_ = static_cast<std::uint8_t>(mask & ~kRequestService);
    }

  private:
    std::uint8_t events_ = kPowerOn;
    std::uint8_t eventEnable_ = 0;
    std::uint8_t deviceEnable_ = 0xFF;
    std::uint8_t serviceEnable_ = 0;
    std::deque<ScpiError> errors_;
};

}  // namespace virtual_scope
