#include "bench/server.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "bench/cores.h"
#include "bench/linux/handle.h"

namespace bench {
namespace {

Handle Listen() {
    Handle listener(Checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
    const sockaddr_in address = LoopbackAddress(0);
    Checked(bind(listener.Get(), AsSystem(address), sizeof(address)), "bind");
    Checked(listen(listener.Get(), SOMAXCONN), "listen");
    return listener;
}

std::uint16_t PortOf(const Handle& listener) {
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    Checked(getsockname(listener.Get(), reinterpret_cast<sockaddr*>(&address), &size),
            "getsockname");
    return ntohs(address.sin_port);
}

// Waits for one connection.
Handle Accept(const Handle& listener) {
    Handle connection(Checked(accept4(listener.Get(), nullptr, nullptr, SOCK_CLOEXEC), "accept4"));
    SetNoDelay(connection.Get());
    return connection;
}

// False when the other side is gone.
bool SendAll(int socket, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool SendBlock(int socket, std::string_view block) {
    std::string header = std::to_string(block.size());
    header = "#" + std::to_string(header.size()) + header;
    iovec pieces[] = {{header.data(), header.size()},
                      {const_cast<char*>(block.data()), block.size()}};
    msghdr message{};
    message.msg_iov = pieces;
    message.msg_iovlen = 2;
    const ssize_t sent = sendmsg(socket, &message, MSG_NOSIGNAL | MSG_MORE);
    if (sent < static_cast<ssize_t>(header.size())) {
        return false;
    }
    block.remove_prefix(static_cast<std::size_t>(sent) - header.size());
    while (!block.empty()) {
        const ssize_t more = send(socket, block.data(), block.size(), MSG_NOSIGNAL | MSG_MORE);
        if (more <= 0) {
            return false;
        }
        block.remove_prefix(static_cast<std::size_t>(more));
    }
    return SendAll(socket, "\n");
}

bool Answer(int socket, CannedInstrument& instrument, std::string_view message,
            std::string_view block) {
    const std::string_view answer = instrument.Respond(message);
    if (message == kCurveQuery) {
        return SendBlock(socket, block.substr(0, instrument.RecordLength()));
    }
    return answer.empty() || SendAll(socket, answer);
}

// Until the other side closes the connection.
void Serve(const Handle& connection, CannedInstrument& instrument, std::string_view block) {
    char buffer[65536];
    std::size_t held = 0;
    for (;;) {
        const ssize_t count = recv(connection.Get(), buffer + held, sizeof(buffer) - held, 0);
        if (count <= 0) {
            return;
        }
        held += static_cast<std::size_t>(count);
        std::string_view text(buffer, held);
        for (std::size_t end = text.find('\n'); end != std::string_view::npos;
             end = text.find('\n')) {
            if (!Answer(connection.Get(), instrument, text.substr(0, end), block)) {
                return;
            }
            text.remove_prefix(end + 1);
        }
        std::memmove(buffer, text.data(), text.size());
        held = text.size();
    }
}

// Every level once, and again.
std::string MakeBlock(std::size_t size) {
    std::string block(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        block[i] = static_cast<char>(i * 7);
    }
    return block;
}

[[noreturn]] void RunServer(const Handle& listener, std::optional<int> core,
                            std::size_t longestRecord) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    try {
        if (core) {
            PinThisThread(*core);
        }
        const std::string block = MakeBlock(longestRecord);
        for (;;) {
            // Threads are on the core of the one that makes them.
            std::thread([connection = std::make_shared<Handle>(Accept(listener)), &block] {
                CannedInstrument instrument;
                Serve(*connection, instrument, block);
            }).detach();
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "server: %s\n", error.what());
    }
    _exit(1);
}

std::string ResourceOf(std::uint16_t port) {
    return "TCPIP0::127.0.0.1::" + std::to_string(port) + "::SOCKET";
}

}  // namespace

ServerProcess::ServerProcess(std::optional<int> core, std::size_t longestRecord) {
    const Handle listener = Listen();
    port_ = PortOf(listener);
    process_ = Checked(fork(), "fork");
    if (process_ == 0) {
        RunServer(listener, core, longestRecord);
    }
}

ServerProcess::~ServerProcess() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

std::string ServerProcess::ResourceName() const {
    return ResourceOf(port_);
}

std::vector<Exchange> RecordExchanges(
    const std::function<void(const std::string& resource)>& client, std::string_view mark) {
    const Handle listener = Listen();
    CannedInstrument instrument;
    instrument.KeepLog();
    const std::string block = MakeBlock(instrument.RecordLength());
    std::thread server([&] { Serve(Accept(listener), instrument, block); });
    client(ResourceOf(PortOf(listener)));
    server.join();
    const auto& log = instrument.Log();
    const auto last = std::find_if(log.rbegin(), log.rend(),
                                   [mark](const Exchange& one) { return one.message == mark; });
    return {last.base(), log.end()};
}

}  // namespace bench
