// A TCP server on this machine for tests: what it says to each client is a script.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace visa_provider::testing {

// The server's end of one connection. All members return at once when the server stops.
class Peer {
  public:
    explicit Peer(int handle) : handle_(handle) {}
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    // The next line without its line feed; none when the client is gone.
    std::optional<std::string> ReceiveLine();
    // Waits until the client is gone.
    void ReceiveUntilGone();
    // False when the client is gone.
    bool Send(std::string_view bytes);
    // Ends the connection in order, or with a reset.
    void Close();
    void Reset();
    void ShutDown();

  private:
    const int handle_;
    std::string received_;
};

// Runs `script` in a thread of its own for each client.
class LoopbackServer {
  public:
    using Script = std::function<void(Peer&)>;

    explicit LoopbackServer(Script script);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    [[nodiscard]] std::uint16_t Port() const { return port_; }
    [[nodiscard]] std::string Resource() const;

  private:
    void AcceptClients();

    const Script script_;
    int listener_ = -1;
    std::uint16_t port_ = 0;
    std::mutex mutex_;
    bool stopped_ = false;
    std::vector<std::unique_ptr<Peer>> peers_;
    std::vector<std::thread> scripts_;
    std::thread acceptor_;
};

// Listens with a queue for one client and accepts none.
class SilentListener {
  public:
    SilentListener();
    ~SilentListener();
    SilentListener(const SilentListener&) = delete;
    SilentListener& operator=(const SilentListener&) = delete;

    [[nodiscard]] std::uint16_t Port() const { return port_; }

  private:
    int handle_ = -1;
    std::uint16_t port_ = 0;
};

// A port of 127.0.0.1 on which nobody listens.
std::uint16_t FreePort();

}  // namespace visa_provider::testing
