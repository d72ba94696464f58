// The floor: a client of plain sockets, which does what has to be done and nothing else.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "bench/canned_instrument.h"

namespace bench {

class BareClient {
  public:
    // Connects to the loopback address, with TCP_NODELAY. Throws std::system_error, as all of it.
    explicit BareClient(std::uint16_t port);
    BareClient(const BareClient&) = delete;
    BareClient& operator=(const BareClient&) = delete;
    ~BareClient();

    // A message with its newline.
    void Send(std::string_view message);
    // An answer up to its newline; lives until the next one.
    [[nodiscard]] std::string_view ReceiveLine();
    // Fills `target`, in one call of the system unless a signal comes.
    void ReceiveAll(std::span<char> target);
    // Sends each message, and receives the answer to each query before the next. `messages` end
    // with their newline; a curve query ends the exchange: its answer is left to the caller.
    void Exchange(std::span<const bench::Exchange> messages);

  private:
    int socket_;
    std::array<char, 4096> line_;
};

// Adds to each message its newline, as Exchange wants it.
[[nodiscard]] std::vector<Exchange> WithNewlines(std::vector<Exchange> exchanges);

}  // namespace bench
