// The virtual instrument, inside the process.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "virtual/device_link.h"
#include "visa/link.h"
#include "visa/signal.h"
#include "visa/turn.h"

namespace visa_provider {

// A message-based instrument with END, status byte, trigger and service request. The instrument
// has no thread: it moves on when a call reaches it, and a thread that waits here calls its `Poll`
// whenever it says that something will happen, and sleeps in between.
class VirtualLink final : public Link {
  public:
    // `signal` is raised when the instrument may have something new for a thread that waits.
    VirtualLink(std::unique_ptr<virtual_scope::DeviceLink> device, std::string model,
                std::shared_ptr<Signal> signal);
    ~VirtualLink() override;
    VirtualLink(const VirtualLink&) = delete;
    VirtualLink& operator=(const VirtualLink&) = delete;

    [[nodiscard]] Transfer Write(std::span<const std::byte> bytes, bool sendEnd,
                                 const Call& call) override;
    [[nodiscard]] Transfer Read(std::span<std::byte> target, const ReadRules& rules,
                                const Call& call) override;
    [[nodiscard]] ViStatus ReadStatusByte(ViUInt16 protocol, const Call& call,
                                          ViUInt16& status) override;
    [[nodiscard]] ViStatus Trigger(ViUInt16 protocol, const Call& call) override;
    [[nodiscard]] ViStatus Clear(const Call& call) override;
    [[nodiscard]] bool HasProtocol(ViUInt16 protocol) const override;
    [[nodiscard]] bool HasEnd() const override { return true; }
    [[nodiscard]] std::optional<AttributeValue> Attribute(ViAttr attribute) const override;
    [[nodiscard]] ViStatus SetAttribute(ViAttr attribute, ViAttrState state) override;
    [[nodiscard]] bool HasServiceRequests() const override { return true; }
    void SetServiceRequestListener(std::function<void()> listener) override;
    Deadline CatchUp() override;
    void Interrupt() override;
    void InterruptOver() override {}
    void Abort() override;

  private:
    [[nodiscard]] virtual_scope::ReadPiece Take(std::span<std::byte> target,
                                                const ReadRules& rules);
    void DeviceChanged();
    void PassServiceRequestsOn();

    const std::unique_ptr<virtual_scope::DeviceLink> device_;
    const std::string model_;
    const std::shared_ptr<Signal> signal_;
    std::function<void()> listener_;
    std::atomic<unsigned> serviceRequests_ = 0;  // told by the instrument, not passed on yet
    std::atomic<bool> aborted_ = false;
    Turn reading_;
};

}  // namespace visa_provider
