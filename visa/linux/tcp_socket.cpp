#include "visa/tcp_socket.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "visa/host_lookup.h"

namespace visa_provider {

namespace {

// The rest of the time for poll(): rounded up, so that it doesn't spin through the last fraction
// of a millisecond; at most a minute at once, since an int holds no more than 24 days.
int PollTime(const Deadline& deadline) {
    constexpr std::chrono::milliseconds kLongest(60000);
    if (!deadline) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now());
    return static_cast<int>(std::clamp(left, std::chrono::milliseconds(0), kLongest).count());
}

// A waker below 0 is left out, as poll() does.
bool WaitFor(int handle, short events, const Deadline& deadline, int waker = -1) {
    pollfd entries[] = {{handle, events, 0}, {waker, POLLIN, 0}};
    for (;;) {
        const int ready = poll(entries, 2, PollTime(deadline));
        if (ready > 0) {
            return entries[0].revents != 0 || !HasPassed(deadline, Clock::now());
        }
        if (ready < 0 && errno != EINTR) {
            return true;  // the next attempt to move bytes tells what is wrong
        }
        if (HasPassed(deadline, Clock::now())) {
            return false;
        }
    }
}

ViStatus ConnectStatus(int error) {
    switch (error) {
        case 0:
            return VI_SUCCESS;
        case ETIMEDOUT:
            return VI_ERROR_TMO;
        case EMFILE:
        case ENFILE:
        case ENOMEM:
        case ENOBUFS:
            return VI_ERROR_ALLOC;
        default:
            return VI_ERROR_RSRC_NFOUND;
    }
}

const sockaddr* AsSystem(const SocketAddress& address) {
    return reinterpret_cast<const sockaddr*>(address.data());
}

std::string InNumbers(const SocketAddress& address) {
    char text[NI_MAXHOST] = "";
    if (getnameinfo(AsSystem(address), static_cast<socklen_t>(address.size()), text, sizeof(text),
                    nullptr, 0, NI_NUMERICHOST) != 0) {
        return {};
    }
    return text;
}

// A socket that is closed again unless it is released.
class Handle {
  public:
    explicit Handle(int value) : value_(value) {}
    ~Handle() {
        if (value_ >= 0) {
            close(value_);
        }
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    [[nodiscard]] int Get() const { return value_; }
    [[nodiscard]] int Release() { return std::exchange(value_, -1); }

  private:
    int value_;
};

ViStatus ConnectTo(const Handle& handle, const SocketAddress& address, const Deadline& deadline) {
    if (handle.Get() < 0) {
        return ConnectStatus(errno);
    }
    if (connect(handle.Get(), AsSystem(address), static_cast<socklen_t>(address.size())) == 0) {
        return VI_SUCCESS;
    }
    if (errno != EINPROGRESS && errno != EINTR) {
        return ConnectStatus(errno);
    }
    if (!WaitFor(handle.Get(), POLLOUT, deadline)) {
        return VI_ERROR_TMO;
    }
    int error = 0;
    socklen_t size = sizeof(error);
    if (getsockopt(handle.Get(), SOL_SOCKET, SO_ERROR, &error, &size) != 0) {
        return ConnectStatus(errno);
    }
    return ConnectStatus(error);
}

// The deadline of the next attempt: what is left, shared among the addresses that are left, so
// that a first address that never answers leaves time for the others.
Deadline ShareOf(const Deadline& deadline, std::size_t attemptsLeft) {
    if (!deadline) {
        return deadline;
    }
    const auto now = Clock::now();
    return now + (*deadline - now) / static_cast<Clock::rep>(attemptsLeft);
}

SocketResult ResultOf(ssize_t moved) {
    if (moved >= 0) {
        return {SocketState::kDone, static_cast<std::size_t>(moved)};
    }
    switch (errno) {
        case EAGAIN:
        case EINTR:
            return {SocketState::kWouldBlock, 0};
        case EPIPE:
        case ECONNRESET:
        case ECONNABORTED:
        case ETIMEDOUT:  // keep-alive found the other side gone
        case ENETDOWN:
        case ENETUNREACH:
        case EHOSTUNREACH:
            return {SocketState::kEnded, 0};
        default:
            return {SocketState::kFailed, 0};
    }
}

SocketResult Received(ssize_t moved, std::span<const std::byte> target) {
    const auto result = ResultOf(moved);
    if (result.state == SocketState::kDone && result.count == 0 && !target.empty()) {
        return {SocketState::kEnded, 0};
    }
    return result;
}

bool SetFlag(int handle, int level, int option, bool enabled) {
    const int value = enabled ? 1 : 0;
    return setsockopt(handle, level, option, &value, sizeof(value)) == 0;
}

std::string WithoutBrackets(const std::string& host) {
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']') {
        return host.substr(1, host.size() - 2);
    }
    return host;
}

}  // namespace

ViStatus TcpSocket::Connect(const std::string& host, ViUInt16 port, const Deadline& deadline,
                            std::unique_ptr<TcpSocket>& connected) {
    const auto found = LookUpHost(WithoutBrackets(host), port, deadline);
    if (found.status < 0) {
        return found.status;
    }

    ViStatus worst = VI_ERROR_RSRC_NFOUND;
    std::size_t left = found.addresses.size();
    for (const auto& address : found.addresses) {
        Handle handle(socket(AsSystem(address)->sa_family,
                             SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP));
        const ViStatus status = ConnectTo(handle, address, ShareOf(deadline, left--));
        if (status == VI_SUCCESS) {
            connected.reset(new TcpSocket(handle.Get(), InNumbers(address)));
            static_cast<void>(handle.Release());
            return VI_SUCCESS;
        }
        if (status != VI_ERROR_RSRC_NFOUND) {
            worst = status;
        }
    }
    return worst;
}

TcpSocket::TcpSocket(int handle, std::string peerAddress)
    : handle_(handle),
      waker_(eventfd(0, EFD_SEMAPHORE | EFD_NONBLOCK | EFD_CLOEXEC)),
      peerAddress_(std::move(peerAddress)) {
    // Each call says for itself whether it waits. Should the time not be set, none does.
    const timeval soon = {0, std::chrono::microseconds(kSoon).count()};
    if (setsockopt(handle_, SOL_SOCKET, SO_RCVTIMEO, &soon, sizeof(soon)) == 0) {
        static_cast<void>(fcntl(handle_, F_SETFL, fcntl(handle_, F_GETFL) & ~O_NONBLOCK));
    }
}

TcpSocket::~TcpSocket() {
    close(handle_);
    if (waker_ >= 0) {
        close(waker_);
    }
}

SocketResult TcpSocket::Receive(std::span<std::byte> target) {
    return Received(recv(handle_, target.data(), target.size(), MSG_DONTWAIT), target);
}

SocketResult TcpSocket::ReceiveSoon(std::span<std::byte> target) {
    return Received(recv(handle_, target.data(), target.size(), 0), target);
}

SocketResult TcpSocket::Send(std::span<const std::byte> bytes) {
    // Without the flag, a peer that went away would end the process with a signal.
    return ResultOf(send(handle_, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL));
}

bool TcpSocket::WaitUntilReadable(const Deadline& deadline) {
    return WaitFor(handle_, POLLIN, deadline, waker_);
}

bool TcpSocket::WaitUntilWritable(const Deadline& deadline) {
    return WaitFor(handle_, POLLOUT, deadline, waker_);
}

void TcpSocket::Wake() {
    static_cast<void>(eventfd_write(waker_, 1));
}

void TcpSocket::WakeOver() {
    eventfd_t one = 0;
    static_cast<void>(eventfd_read(waker_, &one));
}

void TcpSocket::ShutDown() {
    shutdown(handle_, SHUT_RDWR);
}

bool TcpSocket::SetNoDelay(bool enabled) {
    return SetFlag(handle_, IPPROTO_TCP, TCP_NODELAY, enabled);
}

bool TcpSocket::SetKeepAlive(bool enabled) {
    return SetFlag(handle_, SOL_SOCKET, SO_KEEPALIVE, enabled);
}

}  // namespace visa_provider
