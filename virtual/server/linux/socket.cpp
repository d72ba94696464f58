#include "virtual/server/socket.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <system_error>

namespace virtual_scope {
namespace {

constexpr int kBacklog = 16;

struct AddressDeleter {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
using AddressList = std::unique_ptr<addrinfo, AddressDeleter>;

AddressList Resolve(const std::string& address, std::uint16_t port, std::string& error) {
    addrinfo hints{};
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    const int failure = getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &list);
    if (failure != 0) {
        error = gai_strerror(failure);
        return nullptr;
    }
    return AddressList(list);
}

std::string LastError() {
    return std::system_category().message(errno);
}

bool TryAgain() {
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

// Milliseconds to a point of time, rounded up so that a wait does not end before it; -1 for none.
int MillisecondsTo(std::optional<TimePoint> until) {
    if (!until) {
        return -1;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*until - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 1'000'000));
}

}  // namespace

Handle::~Handle() {
    if (IsOpen()) {
        close(descriptor_);
    }
}

StopSignal::StopSignal() : handle_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!handle_.IsOpen()) {
        throw std::system_error(errno, std::system_category(), "eventfd");
    }
}

void StopSignal::Raise() const {
    const std::uint64_t one = 1;
    // Can fail only when it has been raised more often than a counter of 64 bits holds.
    [[maybe_unused]] const auto written = write(handle_.get(), &one, sizeof one);
}

WaitResult Wait(const Handle& socket, Waiting what, const StopSignal& stop,
                std::optional<TimePoint> until) {
    const auto events = static_cast<short>(what == Waiting::kRead ? POLLIN : POLLOUT);
    std::array<pollfd, 2> entries = {{{.fd = stop.get(), .events = POLLIN, .revents = 0},
                                      {.fd = socket.get(), .events = events, .revents = 0}}};
    while (true) {
        const int count = poll(entries.data(), entries.size(), MillisecondsTo(until));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (entries[0].revents != 0) {
            return WaitResult::kStopped;
        }
        return count == 0 ? WaitResult::kTimedOut : WaitResult::kReady;
    }
}

Handle Listen(const std::string& address, std::uint16_t port, std::string& error) {
    const AddressList list = Resolve(address, port, error);
    if (!list) {
        return {};
    }
    Handle listener(socket(list->ai_family, list->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK,
                           list->ai_protocol));
    const int on = 1;
    if (!listener.IsOpen() ||
        setsockopt(listener.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        bind(listener.get(), list->ai_addr, list->ai_addrlen) != 0 ||
        listen(listener.get(), kBacklog) != 0) {
        error = LastError();
        return {};
    }
    return listener;
}

std::uint16_t LocalPort(const Handle& socket) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    if (getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        return 0;
    }
    // Both families keep the port in the same place.
    return ntohs(reinterpret_cast<const sockaddr_in*>(&address)->sin_port);
}

Handle Accept(const Handle& listener) {
    Handle client(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (client.IsOpen()) {
        // Answers are short and are waited for.
        const int on = 1;
        setsockopt(client.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    return client;
}

std::optional<std::size_t> Receive(const Handle& socket, std::span<std::byte> target) {
    const ssize_t count = recv(socket.get(), target.data(), target.size(), 0);
    if (count < 0) {
        return TryAgain() ? std::nullopt : std::optional<std::size_t>(0);
    }
    return static_cast<std::size_t>(count);
}

bool SendAll(const Handle& socket, std::span<const std::byte> bytes, const StopSignal& stop) {
    while (!bytes.empty()) {
        const ssize_t count = send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (!TryAgain() || Wait(socket, Waiting::kWrite, stop) != WaitResult::kReady) {
            return false;
        }
    }
    return true;
}

}  // namespace virtual_scope
