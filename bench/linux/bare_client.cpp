#include "bench/bare_client.h"

#include <stdexcept>

#include "bench/linux/handle.h"

namespace bench {

BareClient::BareClient(std::uint16_t port)
    : socket_(Checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    const sockaddr_in address = LoopbackAddress(port);
    Checked(connect(socket_, AsSystem(address), sizeof(address)), "connect");
    SetNoDelay(socket_);
}

BareClient::~BareClient() {
    close(socket_);
}

void BareClient::Send(std::string_view message) {
    const ssize_t sent = send(socket_, message.data(), message.size(), MSG_NOSIGNAL);
    if (sent != static_cast<ssize_t>(message.size())) {
        throw std::runtime_error("a message was not sent whole");
    }
}

std::string_view BareClient::ReceiveLine() {
    std::size_t held = 0;
    do {
        const ssize_t count = recv(socket_, line_.data() + held, line_.size() - held, 0);
        if (count <= 0) {
            throw std::runtime_error("the server is gone");
        }
        held += static_cast<std::size_t>(count);
    } while (line_[held - 1] != '\n');
    return {line_.data(), held - 1};
}

void BareClient::ReceiveAll(std::span<char> target) {
    while (!target.empty()) {
        const ssize_t count = recv(socket_, target.data(), target.size(), MSG_WAITALL);
        if (count <= 0) {
            throw std::runtime_error("the server is gone");
        }
        target = target.subspan(static_cast<std::size_t>(count));
    }
}

void BareClient::Exchange(std::span<const bench::Exchange> messages) {
    for (const auto& [message, answer] : messages) {
        Send(message);
        if (!answer.empty()) {
            (void)ReceiveLine();
        }
    }
}

std::vector<Exchange> WithNewlines(std::vector<Exchange> exchanges) {
    for (Exchange& exchange : exchanges) {
        exchange.message += '\n';
    }
    return exchanges;
}

}  // namespace bench
