// A client on a TCP socket, as simple as can be.
#pragma once

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace virtual_scope {

class Client {
  public:
    explicit Client(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        connected_ =
            connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
        SetTimeout(10'000);
    }
    ~Client() { Close(); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    bool IsConnected() const { return connected_; }

    void Close() {
        if (socket_ >= 0) {
            close(socket_);
        }
        socket_ = -1;
    }
    void FinishWriting() { shutdown(socket_, SHUT_WR); }

    // Reading gives up after that time.
    void SetTimeout(int milliseconds) {
        const timeval time = {.tv_sec = milliseconds / 1000, .tv_usec = milliseconds % 1000 * 1000};
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
    }

    void Send(std::string_view text) {
        ASSERT_EQ(send(socket_, text.data(), text.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(text.size()));
    }

    // As many bytes, or fewer if the server closes or the time is over.
    std::string Receive(std::size_t size) {
        std::string data(size, '\0');
        std::size_t done = 0;
        while (done < size) {
            const ssize_t count = recv(socket_, data.data() + done, size - done, 0);
            if (count <= 0) {
                break;
            }
            done += static_cast<std::size_t>(count);
        }
        data.resize(done);
        return data;
    }

    // A line without its line feed; what there is of it if the server closes.
    std::string ReceiveLine() {
        std::string line;
        for (std::string one = Receive(1); !one.empty() && one != "\n"; one = Receive(1)) {
            line += one;
        }
        return line;
    }

    std::string Query(std::string_view text) {
        Send(std::string(text) + "\n");
        return ReceiveLine();
    }

    // The server has closed, and sent nothing before that.
    bool IsClosedByServer() {
        char c = 0;
        return recv(socket_, &c, 1, 0) == 0;
    }

  private:
    int socket_;
    bool connected_ = false;
};

}  // namespace virtual_scope
