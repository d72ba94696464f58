// Serves an instrument to clients on TCP, each message ended by a line feed.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>

#include "virtual/instrument.h"
#include "virtual/server/fault_plan.h"
#include "virtual/server/message_log.h"
#include "virtual/server/socket.h"

namespace virtual_scope {

struct ServerOptions {
    std::string model = "PL7254C";
    std::string address = "127.0.0.1";
    std::uint16_t port = 0;       // 0 takes a free one
    std::ostream* log = nullptr;  // gets one line for each message; has to outlive the server
    bool once = false;            // the server ends when its first client leaves
    FaultPlan faults = {};
};

// One instrument for any number of clients at once. Each of them has a link of its own, so that an
// answer goes to the one that asked; settings, status and acquisitions are shared. A client that
// leaves takes its unread answers and its unfinished message along.
class SocketServer {
  public:
    // Listens and serves from threads of its own; null, with the reason in `error`, when the model
    // isn't known or the address can't be listened on.
    [[nodiscard]] static std::unique_ptr<SocketServer> Start(const ServerOptions& options,
                                                             std::string& error);
    // Ends all connections.
    ~SocketServer();
    SocketServer(const SocketServer&) = delete;
    SocketServer& operator=(const SocketServer&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }
    // The VISA address: "TCPIP0::127.0.0.1::4000::SOCKET".
    [[nodiscard]] std::string ResourceName() const;
    // The instrument that is served, for links that go past the network.
    [[nodiscard]] Instrument& instrument() { return *instrument_; }

    // Any thread may call.
    void SetFaults(const FaultPlan& faults);

    // Asks the server to end. May be called from any thread, and from a signal handler.
    void RequestStop() { stop_.Raise(); }
    // Returns when the server has been asked to end; one thread at a time.
    void Wait();
    // Clients that are connected.
    [[nodiscard]] int ClientCount();

  private:
    struct Client {
        std::thread thread;
        bool done = false;
    };

    SocketServer(const ServerOptions& options, std::shared_ptr<Instrument> instrument,
                 Handle listener);

    void AcceptClients();
    void Serve(Client& client, const Handle& socket, int number);
    void JoinClients(bool onlyDone);
    [[nodiscard]] FaultPlan Faults();

    std::string address_;
    bool once_;
    std::shared_ptr<Instrument> instrument_;
    Handle listener_;
    std::uint16_t port_;
    StopSignal stop_;
    std::unique_ptr<MessageLog> log_;

    std::mutex mutex_;
    FaultPlan faults_;
    std::list<Client> clients_;
    std::thread acceptor_;
};

}  // namespace virtual_scope
