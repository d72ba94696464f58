#include "virtual/server/connection.h"

#include <array>
#include <utility>

#include "virtual/server/fault_injector.h"

namespace virtual_scope {

Connection::Connection(const Handle& socket, std::unique_ptr<DeviceLink> link,
                       const StopSignal& stop, std::function<FaultPlan()> faults, MessageLog* log,
                       int number)
    : socket_(socket),
      link_(std::move(link)),
      stop_(stop),
      faults_(std::move(faults)),
      log_(log),
      number_(number) {}

void Connection::Run() {
    while (SendResponses() && TakeRequests()) {
    }
}

bool Connection::SendResponses() {
    while (link_->HasOutput()) {
        if (!SendResponse()) {
            return false;
        }
    }
    return true;
}

bool Connection::SendResponse() {
    FaultInjector faults(faults_());
    bool end = false;
    while (!end) {
        piece_.resize(kPiece);
        const ReadPiece read = link_->Read(piece_);
        if (read.count == 0) {  // the rest of the response comes when an operation has ended
            break;
        }
        piece_.resize(read.count);
        end = read.end;
        Log(responseLine_, "<-", piece_);
        faults.Apply(piece_, end);
        if (!SendAll(socket_, piece_, stop_) || faults.IsCut()) {
            return false;
        }
    }
    return true;
}

bool Connection::TakeRequests() {
    switch (Wait(socket_, Waiting::kRead, stop_, link_->NextEvent())) {
        case WaitResult::kStopped:
            return false;
        case WaitResult::kTimedOut:
            link_->Poll();
            return true;
        case WaitResult::kReady:
            break;
    }
    std::array<std::byte, 65536> buffer;
    const auto count = Receive(socket_, buffer);
    if (!count) {
        return true;
    }
    const std::span received = std::span<const std::byte>(buffer).first(*count);
    Log(requestLine_, "->", received);
    link_->Write(received, false);
    return *count > 0;
}

void Connection::Log(LineShortener& line, std::string_view direction,
                     std::span<const std::byte> bytes) {
    if (log_ != nullptr) {
        line.Feed(bytes, [&](std::string_view text) { log_->Write(number_, direction, text); });
    }
}

}  // namespace virtual_scope
