#include "tests/visa/loopback_server.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>

namespace visa_provider::testing {

namespace {

sockaddr_in LocalAddress(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

std::uint16_t Bind(int handle) {
    auto address = LocalAddress(0);
    socklen_t size = sizeof(address);
    if (bind(handle, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        getsockname(handle, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        std::abort();
    }
    return ntohs(address.sin_port);
}

}  // namespace

Peer::~Peer() {
    close(handle_);
}

std::optional<std::string> Peer::ReceiveLine() {
    std::size_t searched = 0;
    for (;;) {
        const auto end = received_.find('\n', searched);
        if (end != std::string::npos) {
            auto line = received_.substr(0, end);
            received_.erase(0, end + 1);
            return line;
        }
        searched = received_.size();
        char buffer[65536];
        const ssize_t count = recv(handle_, buffer, sizeof(buffer), 0);
        if (count <= 0) {
            return std::nullopt;
        }
        received_.append(buffer, static_cast<std::size_t>(count));
    }
}

void Peer::ReceiveUntilGone() {
    char buffer[4096];
    while (recv(handle_, buffer, sizeof(buffer), 0) > 0) {
    }
}

bool Peer::Send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void Peer::Close() {
    shutdown(handle_, SHUT_WR);
}

void Peer::Reset() {
    const linger noLinger{1, 0};
    setsockopt(handle_, SOL_SOCKET, SO_LINGER, &noLinger, sizeof(noLinger));
    // With the linger time of zero, disconnecting sends a reset; the handle stays valid.
    sockaddr none{};
    none.sa_family = AF_UNSPEC;
    static_cast<void>(connect(handle_, &none, sizeof(none)));
}

void Peer::ShutDown() {
    shutdown(handle_, SHUT_RDWR);
}

LoopbackServer::LoopbackServer(Script script) : script_(std::move(script)) {
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    port_ = Bind(listener_);
    if (listen(listener_, 16) != 0) {
        std::abort();
    }
    acceptor_ = std::thread([this] { AcceptClients(); });
}

LoopbackServer::~LoopbackServer() {
    {
        const std::lock_guard guard(mutex_);
        stopped_ = true;
        for (const auto& peer : peers_) {
            peer->ShutDown();
        }
    }
    shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    for (auto& script : scripts_) {
        script.join();
    }
    close(listener_);
}

void LoopbackServer::AcceptClients() {
    for (;;) {
        const int handle = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (handle < 0) {
            return;
        }
        auto peer = std::make_unique<Peer>(handle);
        const std::lock_guard guard(mutex_);
        if (stopped_) {
            return;
        }
        peers_.push_back(std::move(peer));
        scripts_.emplace_back([this, one = peers_.back().get()] { script_(*one); });
    }
}

std::string LoopbackServer::Resource() const {
    return "TCPIP0::127.0.0.1::" + std::to_string(port_) + "::SOCKET";
}

SilentListener::SilentListener() : handle_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    port_ = Bind(handle_);
    if (listen(handle_, 0) != 0) {
        std::abort();
    }
}

SilentListener::~SilentListener() {
    close(handle_);
}

std::uint16_t FreePort() {
    const int handle = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto port = Bind(handle);
    close(handle);
    return port;
}

}  // namespace visa_provider::testing
