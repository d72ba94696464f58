// What the socket code of the benchmarks shares.
#pragma once

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

namespace bench {

// Owns a file descriptor.
class Handle {
  public:
    explicit Handle(int value) : value_(value) {}
    Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Handle& operator=(Handle&&) = delete;
    ~Handle() {
        if (value_ >= 0) {
            close(value_);
        }
    }
    [[nodiscard]] int Get() const { return value_; }

  private:
    int value_;
};

// The result of a system call; a failed one throws with the name of the call.
inline int Checked(int result, const char* call) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), call);
    }
    return result;
}

inline sockaddr_in LoopbackAddress(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

inline const sockaddr* AsSystem(const sockaddr_in& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

inline void SetNoDelay(int socket) {
    const int on = 1;
    Checked(setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on)), "setsockopt");
}

}  // namespace bench
