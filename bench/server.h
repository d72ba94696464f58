// The instrument of the benchmarks behind a TCP port on the loopback address. Driver and floor are
// served by the same code and get the same bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bench/canned_instrument.h"

namespace bench {

// A server in a process of its own, which ends with this object and with the process that made it.
// Each connection has a thread and a state.
class ServerProcess {
  public:
    // On that core, or on any; with a block of so many bytes to answer curve queries from. Call it
    // before the process has other threads. Throws std::system_error.
    ServerProcess(std::optional<int> core, std::size_t longestRecord);
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;
    ~ServerProcess();

    [[nodiscard]] std::uint16_t Port() const { return port_; }
    [[nodiscard]] std::string ResourceName() const;

  private:
    std::uint16_t port_ = 0;
    int process_ = 0;
};

// What `client` sends over one connection to the instrument that it is given, and what is answered:
// behind its last message `mark`, or everything if `mark` never comes.
[[nodiscard]] std::vector<Exchange> RecordExchanges(
    const std::function<void(const std::string& resource)>& client, std::string_view mark);

}  // namespace bench
