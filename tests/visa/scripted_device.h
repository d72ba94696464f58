// An instrument for tests: small, exact, and able to tell what was done to it.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "virtual/device_link.h"

namespace visa_provider::testing {

// What both this instrument and the test server answer to a program message, its line feed left
// out: "*IDN?", "ECHO <text>", "BLOCK <count>"; nothing to anything else.
std::string ResponseTo(std::string_view message);

// What "BLOCK" answers, without the line feed at its end: letters in their order, over and over.
std::string Letters(std::size_t count);

class Peer;

// Answers a client of a LoopbackServer as ResponseTo says, until it is gone.
void AnswerAll(Peer& peer);

// Answers as above, with END on the line feed. Further messages:
//   "LATER <ms> <text>"   the text comes after that time
//   "SRQ"                 service is requested at once
//   "SRQLATER <ms>"       service is requested after that time
//   "STB <n>"             the status byte from now on, without bit 6
class ScriptedDevice final : public virtual_scope::DeviceLink {
  public:
    // What was done to the instrument; shared with the test, outlives the instrument.
    struct Record {
        std::mutex mutex;
        std::vector<std::string> writes;  // each with "<END>" behind it when END came
        int polls = 0;
        int clears = 0;
        int triggers = 0;
        bool isAlive = true;
    };

    explicit ScriptedDevice(std::shared_ptr<Record> record);
    ~ScriptedDevice() override;

    void Write(std::span<const std::byte> bytes, bool end) override;
    virtual_scope::ReadPiece Read(std::span<std::byte> target) override;
    bool HasOutput() override;
    std::uint8_t SerialPoll() override;
    void Clear() override;
    void Trigger() override;
    void SetServiceRequestHandler(std::function<void()> handler) override;
    void Poll() override;
    std::optional<virtual_scope::TimePoint> NextEvent() override;

    // From outside, as a person at the front panel would cause it.
    void RequestService();

  private:
    void Execute(std::string_view message);
    void Respond(std::string response);
    void DropFirstResponse();

    const std::shared_ptr<Record> record_;
    std::mutex mutex_;
    std::string input_;
    std::deque<std::string> responses_;  // each with its line feed
    std::size_t taken_ = 0;              // bytes of the first that were read
    std::uint8_t statusByte_ = 0;
    bool requestsService_ = false;
    bool requestDue_ = false;
    std::multimap<virtual_scope::TimePoint, std::string> later_;
    std::function<void()> handler_;
};

}  // namespace visa_provider::testing
