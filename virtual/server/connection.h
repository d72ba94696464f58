// One client of the server.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "virtual/device_link.h"
#include "virtual/server/fault_plan.h"
#include "virtual/server/message_log.h"
#include "virtual/server/socket.h"

namespace virtual_scope {

class Connection {
  public:
    // What is sent at once: large enough that a long record moves in few calls.
    static constexpr std::size_t kPiece = std::size_t{1} << 20;

    // `log` may be null. `faults` is asked at the beginning of each response.
    Connection(const Handle& socket, std::unique_ptr<DeviceLink> link, const StopSignal& stop,
               std::function<FaultPlan()> faults, MessageLog* log, int number);

    // Serves until the client leaves or the server stops.
    void Run();

  private:
    // False when the connection is over.
    bool SendResponses();
    bool SendResponse();
    bool TakeRequests();
    void Log(LineShortener& line, std::string_view direction, std::span<const std::byte> bytes);

    const Handle& socket_;
    std::unique_ptr<DeviceLink> link_;
    const StopSignal& stop_;
    std::function<FaultPlan()> faults_;
    MessageLog* log_;
    int number_;
    LineShortener requestLine_;
    LineShortener responseLine_;
    std::vector<std::byte> piece_;
};

}  // namespace virtual_scope
