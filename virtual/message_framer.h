// Cuts the stream of incoming bytes into program messages.
#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>

namespace virtual_scope {

// A line feed or END closes a message; a line feed among the data of a definite length block does
// not. Not for several threads at once.
class MessageFramer {
  public:
    // The longest message that is kept, in bytes.
    static constexpr std::size_t kMaxMessage = std::size_t{4} << 20;

    // Takes bytes in; `end` says that END came with the last of them.
    void Feed(std::span<const std::byte> bytes, bool end);

    [[nodiscard]] bool HasMessage() const { return !messages_.empty(); }
    // The oldest whole message, without its terminator. Only while there is one.
    [[nodiscard]] std::string TakeMessage();
    // True while a message has begun that isn't whole.
    [[nodiscard]] bool InMessage() const { return !current_.empty() || overrun_; }
    // True once for each message that was too long and so was thrown away.
    [[nodiscard]] bool TakeOverrun();

    void Clear() { *this = MessageFramer(); }

  private:
    enum class Place { kText, kQuoted, kBlockStart, kBlockLength, kBlockData };

    void Take(char c);
    void TakeInBlock(char c);
    void Keep(char c);
    void Finish();

    Place place_ = Place::kText;
    char quote_ = 0;
    std::size_t lengthDigits_ = 0;
    std::size_t blockLeft_ = 0;
    bool overrun_ = false;
    int overruns_ = 0;
    std::string current_;
    std::deque<std::string> messages_;
};

}  // namespace virtual_scope
