// One line of text for each message that passes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

namespace virtual_scope {

// Makes lines of the bytes of one direction. A block becomes its header and its length:
// "#9100000000 <100000000 bytes>"; a byte that isn't printable becomes \x and two digits.
class LineShortener {
  public:
    // What is longer is cut, with "..." at the end.
    static constexpr std::size_t kMaxLine = 500;

    // Takes a piece of a message in. A line feed outside of a block closes the message: `emit` is
    // called with its line.
    template <typename Emit>
    void Feed(std::span<const std::byte> piece, Emit emit);

  private:
    void Add(std::string_view text);
    // Takes in what is not part of a block's data; true if it closes the message.
    bool Take(char c);
    void TakeHeader(char c);

    enum class Place { kText, kQuoted, kSign, kLength, kData };

    std::string line_;
    Place place_ = Place::kText;
    char quote_ = 0;
    int digitsLeft_ = 0;
    std::uint64_t length_ = 0;
    std::uint64_t dataLeft_ = 0;
};

// Writes the lines of all connections. May be used from any thread; the stream has to outlive it
// and belongs to it meanwhile.
class MessageLog {
  public:
    explicit MessageLog(std::ostream& out) : out_(out) {}

    // `direction` is "->" for what comes from the client and "<-" for what goes to it.
    void Write(int connection, std::string_view direction, std::string_view line);

  private:
    std::mutex mutex_;
    std::ostream& out_;
};

template <typename Emit>
void LineShortener::Feed(std::span<const std::byte> piece, Emit emit) {
    while (!piece.empty()) {
        if (place_ == Place::kData) {
            const std::uint64_t count = dataLeft_ < piece.size() ? dataLeft_ : piece.size();
            dataLeft_ -= count;
            piece = piece.subspan(static_cast<std::size_t>(count));
            place_ = dataLeft_ == 0 ? Place::kText : Place::kData;
            continue;
        }
        if (Take(static_cast<char>(piece.front()))) {
            emit(std::string_view(line_));
            *this = LineShortener();
        }
        piece = piece.subspan(1);
    }
}

}  // namespace virtual_scope
