#include "virtual/server/socket_server.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "virtual/server/connection.h"

namespace virtual_scope {

std::unique_ptr<SocketServer> SocketServer::Start(const ServerOptions& options,
                                                  std::string& error) {
    auto instrument = Instrument::Make(options.model);
    if (!instrument) {
        error = fmt::format("unknown model {}; the models are {}", options.model,
                            fmt::join(ModelNames(), ", "));
        return nullptr;
    }
    std::string reason;
    Handle listener = Listen(options.address, options.port, reason);
    if (!listener.IsOpen()) {
        error =
            fmt::format("cannot listen on {}, port {}: {}", options.address, options.port, reason);
        return nullptr;
    }
    return std::unique_ptr<SocketServer>(
        new SocketServer(options, std::move(instrument), std::move(listener)));
}

SocketServer::SocketServer(const ServerOptions& options, std::shared_ptr<Instrument> instrument,
                           Handle listener)
    : address_(options.address),
      once_(options.once),
      instrument_(std::move(instrument)),
      listener_(std::move(listener)),
      port_(LocalPort(listener_)),
      faults_(options.faults) {
    if (options.log != nullptr) {
        log_ = std::make_unique<MessageLog>(*options.log);
    }
    acceptor_ = std::thread([this] { AcceptClients(); });
}

SocketServer::~SocketServer() {
    RequestStop();
    Wait();
}

std::string SocketServer::ResourceName() const {
    // Nobody can connect to the address that stands for all of them.
    const std::string& host = address_ == "0.0.0.0" ? "127.0.0.1" : address_;
    return fmt::format("TCPIP0::{}::{}::SOCKET", host, port_);
}

void SocketServer::SetFaults(const FaultPlan& faults) {
    const std::lock_guard guard(mutex_);
    faults_ = faults;
}

FaultPlan SocketServer::Faults() {
    const std::lock_guard guard(mutex_);
    return faults_;
}

void SocketServer::Wait() {
    if (acceptor_.joinable()) {
        acceptor_.join();
    }
}

int SocketServer::ClientCount() {
    const std::lock_guard guard(mutex_);
    return static_cast<int>(std::ranges::count(clients_, false, &Client::done));
}

void SocketServer::AcceptClients() {
    int number = 0;
    while (virtual_scope::Wait(listener_, Waiting::kRead, stop_) == WaitResult::kReady) {
        Handle socket = Accept(listener_);
        if (!socket.IsOpen()) {
            continue;
        }
        JoinClients(true);
        const std::lock_guard guard(mutex_);
        Client& client = clients_.emplace_back();
        client.thread = std::thread(
            [this, &client, held = std::move(socket), id = ++number] { Serve(client, held, id); });
    }
    JoinClients(false);
}

void SocketServer::Serve(Client& client, const Handle& socket, int number) {
    Connection(
        socket, instrument_->Connect(ExchangeRule::kStream), stop_, [this] { return Faults(); },
        log_.get(), number)
        .Run();
    {
        const std::lock_guard guard(mutex_);
        client.done = true;
    }
    if (once_) {
        RequestStop();
    }
}

void SocketServer::JoinClients(bool onlyDone) {
    std::list<Client> leaving;
    {
        const std::lock_guard guard(mutex_);
        for (auto it = clients_.begin(); it != clients_.end();) {
            const auto next = std::next(it);
            if (!onlyDone || it->done) {
                leaving.splice(leaving.end(), clients_, it);
            }
            it = next;
        }
    }
    for (Client& client : leaving) {
        client.thread.join();
    }
}

}  // namespace virtual_scope
