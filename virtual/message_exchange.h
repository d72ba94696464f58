// The message exchange of one link (IEEE 488.2, chapter 6): program messages in, responses out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "virtual/device_link.h"
#include "virtual/message_framer.h"
#include "virtual/oscilloscope.h"
#include "virtual/output_queue.h"
#include "virtual/program_message.h"

namespace virtual_scope {

// What becomes of a message that comes while a response is unread.
enum class ExchangeRule : std::uint8_t {
    // The response is lost, a query error: the rule of a bus, where each reading is asked for.
    kInterrupt,
    // The message waits until the response is read: the rule of a stream, whose other side cannot
    // see what is on the way.
    kStream,
};

// Not for several threads at once.
class MessageExchange {
  public:
    MessageExchange(Oscilloscope& scope, ExchangeRule rule) : scope_(scope), rule_(rule) {}

    void Write(std::span<const std::byte> bytes, bool end);
    ReadPiece Read(std::span<std::byte> target);
    void Clear();

    // Goes on with what waits, for the end of an operation or for the reading of a response.
    void Continue();

    [[nodiscard]] bool HasOutput() const { return !output_.IsEmpty(); }
    // A message is being executed or waits for that.
    [[nodiscard]] bool IsBusy() const { return executing_ || framer_.HasMessage(); }

    // Sees whether the status has a new reason for a service request; true if a request begins.
    [[nodiscard]] bool UpdateServiceRequest();
    // The status byte with RQS, which is cleared.
    [[nodiscard]] std::uint8_t SerialPoll();

  private:
    void BeginMessage();
    void ExecuteUnits();
    void Respond(Reply reply);
    void DropResponse(ScpiError reason);

    Oscilloscope& scope_;
    ExchangeRule rule_;
    MessageFramer framer_;
    OutputQueue output_;

    // The message that is being executed.
    bool executing_ = false;
    std::vector<ProgramUnit> units_;
    std::size_t nextUnit_ = 0;
    HeaderPath path_;
    bool deadlocked_ = false;  // its responses are thrown away

    bool unterminatedReported_ = false;  // since the last message
    std::uint8_t reasons_ = 0;           // enabled bits of the status byte, as last seen
    bool requesting_ = false;            // RQS
};

}  // namespace virtual_scope
