// The way to one instrument, below a session: what differs from one kind of connection to another.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

#include "visa/attribute_value.h"
#include "visa/call.h"
#include "visa/time_limit.h"
#include "visa/visa.h"

namespace visa_provider {

// How a transfer went: its status and the bytes that got through, also when it failed.
struct Transfer {
    ViStatus status = VI_SUCCESS;
    std::size_t count = 0;
};

// When a read ends, apart from a full buffer.
struct ReadRules {
    std::optional<std::byte> terminator;
    bool stopAtEnd = true;
};

// All members may be called from any thread. Only reads, writes and what is made of them wait, for
// at most the time-out of their call (VI_ERROR_TMO), or until the call is stopped or `Abort`
// (VI_ERROR_ABORT).
class Link {
  public:
    virtual ~Link() = default;

    // Sends all of the bytes. `sendEnd`: END comes with the last one, where the connection has END.
    [[nodiscard]] virtual Transfer Write(std::span<const std::byte> bytes, bool sendEnd,
                                         const Call& call) = 0;

    // VI_SUCCESS at END, VI_SUCCESS_TERM_CHAR at the terminator, VI_SUCCESS_MAX_CNT when `target`
    // is full; of several, the first of this list. Bytes behind the end of the read stay for the
    // next one. VI_ERROR_CONN_LOST when the connection ended.
    [[nodiscard]] virtual Transfer Read(std::span<std::byte> target, const ReadRules& rules,
                                        const Call& call) = 0;

    // `protocol` is the state of VI_ATTR_IO_PROT.
    [[nodiscard]] virtual ViStatus ReadStatusByte(ViUInt16 protocol, const Call& call,
                                                  ViUInt16& status) = 0;
    [[nodiscard]] virtual ViStatus Trigger(ViUInt16 protocol, const Call& call) = 0;
    [[nodiscard]] virtual ViStatus Clear(const Call& call) = 0;

    // True for a state of VI_ATTR_IO_PROT that this link offers.
    [[nodiscard]] virtual bool HasProtocol(ViUInt16 protocol) const = 0;

    // True when the instrument can send END with a byte.
    [[nodiscard]] virtual bool HasEnd() const = 0;

    // The attributes that only this kind of link has; as in class Object.
    [[nodiscard]] virtual std::optional<AttributeValue> Attribute(ViAttr attribute) const = 0;
    [[nodiscard]] virtual ViStatus SetAttribute(ViAttr attribute, ViAttrState state) = 0;

    // True when the instrument can request service.
    [[nodiscard]] virtual bool HasServiceRequests() const = 0;

    // Set once, before the link is used: called for each service request, in the thread whose
    // call on the link brought it about, with no lock of the link held.
    virtual void SetServiceRequestListener(std::function<void()> listener) = 0;

    // Lets the instrument catch up with the clock. Returns the moment at which to call this again
    // while waiting; none if nothing changes by itself.
    virtual Deadline CatchUp() = 0;

    // Wakes those who wait, so that a call that was stopped sees it; `InterruptOver` once for each,
    // when the stopped call has returned.
    virtual void Interrupt() = 0;
    virtual void InterruptOver() = 0;

    // Ends what waits on the link, now and later, with VI_ERROR_ABORT.
    virtual void Abort() = 0;
};

}  // namespace visa_provider
