// An instrument behind a raw TCP socket.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "visa/link.h"
#include "visa/tcp_socket.h"
#include "visa/turn.h"

namespace visa_provider {

// A raw socket has no END, no status byte and no service request of its own. With the protocol
// VI_PROT_4882_STRS the trigger and the status byte are asked for with IEEE 488.2 messages.
class SocketLink final : public Link {
  public:
    // `host` is as in the resource name.
    SocketLink(std::unique_ptr<TcpSocket> socket, std::string host, ViUInt16 port);

    [[nodiscard]] Transfer Write(std::span<const std::byte> bytes, bool sendEnd,
                                 const Call& call) override;
    [[nodiscard]] Transfer Read(std::span<std::byte> target, const ReadRules& rules,
                                const Call& call) override;
    [[nodiscard]] ViStatus ReadStatusByte(ViUInt16 protocol, const Call& call,
                                          ViUInt16& status) override;
    [[nodiscard]] ViStatus Trigger(ViUInt16 protocol, const Call& call) override;
    [[nodiscard]] ViStatus Clear(const Call& call) override;
    [[nodiscard]] bool HasProtocol(ViUInt16 protocol) const override;
    [[nodiscard]] bool HasEnd() const override { return false; }
    [[nodiscard]] std::optional<AttributeValue> Attribute(ViAttr attribute) const override;
    [[nodiscard]] ViStatus SetAttribute(ViAttr attribute, ViAttrState state) override;
    [[nodiscard]] bool HasServiceRequests() const override { return false; }
    void SetServiceRequestListener(std::function<void()> /*listener*/) override {}
    Deadline CatchUp() override { return std::nullopt; }
    void Interrupt() override;
    void InterruptOver() override;
    void Abort() override;

  private:
    [[nodiscard]] ViStatus ReadSome(std::span<std::byte> target, const ReadRules& rules,
                                    const Deadline& deadline, const Call& call, std::size_t& count);
    [[nodiscard]] std::size_t TakeAhead(std::span<std::byte> target, const ReadRules& rules);
    [[nodiscard]] ViStatus Receive(std::span<std::byte> target, const Deadline& deadline,
                                   const Call& call, std::size_t& count);
    [[nodiscard]] ViStatus Ended(SocketState state) const;
    void KeepAhead(std::span<const std::byte> bytes);

    const std::unique_ptr<TcpSocket> socket_;
    const std::string host_;
    const ViUInt16 port_;
    std::atomic<bool> noDelay_ = true;
    std::atomic<bool> keepAlive_ = false;
    std::atomic<bool> aborted_ = false;

    // True from a message to the first wait for its answer.
    std::atomic<bool> answerDue_ = false;

    Turn reading_;
    Turn writing_;

    // What was received and not read yet; used by the thread whose turn it is to read.
    std::vector<std::byte> ahead_;
    std::size_t aheadStart_ = 0;
};

}  // namespace visa_provider
