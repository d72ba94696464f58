// The response messages of one link, from the first byte to END.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <span>
#include <string>

#include "virtual/byte_source.h"
#include "virtual/command_row.h"
#include "virtual/device_link.h"

namespace virtual_scope {

// Holds text, and sources of bytes that are made while they are read. Not for several threads at
// once.
class OutputQueue {
  public:
    // The most text that one response may have, in bytes; the data of a source doesn't count.
    static constexpr std::size_t kMaxText = std::size_t{1} << 18;

    // Adds the response of one query to the message; false if the message grew too long.
    [[nodiscard]] bool Add(Reply reply);
    // Ends the message, if there is anything in it.
    void EndMessage();

    // At most one message is read at a time.
    ReadPiece Read(std::span<std::byte> target);

    [[nodiscard]] bool IsEmpty() const { return parts_.empty(); }
    // A message has begun that hasn't ended.
    [[nodiscard]] bool IsMessageOpen() const { return open_; }
    void Clear();

  private:
    struct Part {
        std::string text;
        std::size_t taken = 0;
        std::unique_ptr<ByteSource> source;  // comes after the text
        bool end = false;                    // END comes with the last byte
    };

    // Reads from the first part, and drops it when nothing is left in it.
    std::size_t ReadPart(std::span<std::byte> target, bool& end);

    std::deque<Part> parts_;
    std::size_t messageText_ = 0;
    bool open_ = false;
};

}  // namespace virtual_scope
