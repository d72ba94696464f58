// A TCP connection to an instrument, as the system offers it.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include "visa/time_limit.h"
#include "visa/visa.h"

namespace visa_provider {

// What came of one attempt to send or receive.
enum class SocketState { kDone, kWouldBlock, kEnded, kFailed };

struct SocketResult {
    SocketState state = SocketState::kDone;
    std::size_t count = 0;  // bytes moved, with kDone only
};

// Sends and receives without blocking but for ReceiveSoon; the waits are calls of their own. One
// thread may receive while another sends, and any thread may shut the connection down.
class TcpSocket {
  public:
    // Looks `host` up and connects. `host` is a name, an IPv4 address or an IPv6 address in square
    // brackets. VI_ERROR_RSRC_NFOUND: no such host, or nobody listens there; VI_ERROR_TMO: no
    // answer by the deadline; VI_ERROR_ALLOC: the system is out of something.
    [[nodiscard]] static ViStatus Connect(const std::string& host, ViUInt16 port,
                                          const Deadline& deadline,
                                          std::unique_ptr<TcpSocket>& connected);
    ~TcpSocket();
    TcpSocket(const TcpSocket&) = delete;
    TcpSocket& operator=(const TcpSocket&) = delete;

    [[nodiscard]] SocketResult Receive(std::span<std::byte> target);
    // As Receive, and where nothing is there waits for at most `kSoon`, in the same system call.
    // `Wake` isn't noticed meanwhile; `ShutDown` is.
    [[nodiscard]] SocketResult ReceiveSoon(std::span<std::byte> target);
    static constexpr std::chrono::milliseconds kSoon{10};
    [[nodiscard]] SocketResult Send(std::span<const std::byte> bytes);

    // False when the deadline passed first. True also when the connection ended or `Wake` was
    // called.
    [[nodiscard]] bool WaitUntilReadable(const Deadline& deadline);
    [[nodiscard]] bool WaitUntilWritable(const Deadline& deadline);

    // Wakes whoever waits, and lets nobody sleep until `WakeOver` was called as often.
    void Wake();
    void WakeOver();

    // Ends the connection and wakes whoever waits on it.
    void ShutDown();

    [[nodiscard]] bool SetNoDelay(bool enabled);
    [[nodiscard]] bool SetKeepAlive(bool enabled);

    // The other side's address in numbers.
    [[nodiscard]] const std::string& PeerAddress() const { return peerAddress_; }

  private:
    TcpSocket(int handle, std::string peerAddress);

    const int handle_;
    const int waker_;  // readable while somebody is to be awake; -1 if the system had none
    const std::string peerAddress_;
};

}  // namespace visa_provider
