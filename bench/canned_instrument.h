// An instrument that answers from a table, so that making an answer costs next to nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bench {

// One message as it went over the wire, without its newline, and the answer to it without its own;
// an empty answer stands for none, and for the block of a curve query.
struct Exchange {
    std::string message;
    std::string answer;
};

inline constexpr std::string_view kCurveQuery = "CURVE?";

// The state of one connection. One thread at a time.
class CannedInstrument {
  public:
    // The answer with its newline; empty for a setting and for the curve query. Lives until the
    // next message. Throws std::runtime_error for a query that isn't in the table, since a
    // benchmark that goes on would measure nonsense.
    [[nodiscard]] std::string_view Respond(std::string_view message);
    // The points of the record, one byte each: what the last HORIZONTAL:RECORDLENGTH set.
    [[nodiscard]] std::size_t RecordLength() const { return recordLength_; }

    // From now on exchanges are kept.
    void KeepLog() { keepsLog_ = true; }
    [[nodiscard]] const std::vector<Exchange>& Log() const { return log_; }

  private:
    [[nodiscard]] std::string_view Find(std::string_view message) const;

    std::size_t recordLength_ = 1000;
    std::string answer_;
    bool keepsLog_ = false;
    std::vector<Exchange> log_;
};

}  // namespace bench
