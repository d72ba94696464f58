#include "virtual/server/message_log.h"

#include <fmt/format.h>

namespace virtual_scope {
namespace {

constexpr std::string_view kCut = "...";

bool IsPrintable(char c) {
    return c >= ' ' && c <= '~';
}

}  // namespace

void LineShortener::Add(std::string_view text) {
    if (line_.size() + text.size() <= kMaxLine) {
        line_ += text;
    } else if (!line_.ends_with(kCut)) {
        line_ += kCut;
    }
}

bool LineShortener::Take(char c) {
    if (c == '\n') {
        return true;
    }
    if (place_ == Place::kSign || place_ == Place::kLength) {
        TakeHeader(c);
    } else if (place_ == Place::kQuoted) {
        place_ = c == quote_ ? Place::kText : Place::kQuoted;
    } else if (c == '"' || c == '\'') {
        quote_ = c;
        place_ = Place::kQuoted;
    } else if (c == '#') {
        place_ = Place::kSign;
    }
    Add(IsPrintable(c) ? std::string(1, c)
                       : fmt::format("\\x{:02X}", static_cast<unsigned char>(c)));
    if (place_ == Place::kData) {
        Add(fmt::format(" <{} bytes>", length_));
        place_ = dataLeft_ == 0 ? Place::kText : Place::kData;
    }
    return false;
}

void LineShortener::TakeHeader(char c) {
    if (place_ == Place::kSign && c >= '1' && c <= '9') {
        digitsLeft_ = c - '0';
        length_ = 0;
        place_ = Place::kLength;
        return;
    }
    if (place_ == Place::kSign || c < '0' || c > '9') {
        place_ = Place::kText;
        return;
    }
    length_ = length_ * 10 + static_cast<std::uint64_t>(c - '0');
    if (--digitsLeft_ == 0) {
        dataLeft_ = length_;
        place_ = Place::kData;
    }
}

void MessageLog::Write(int connection, std::string_view direction, std::string_view line) {
    const std::lock_guard guard(mutex_);
    out_ << fmt::format("{} {} {}\n", connection, direction, line);
    out_.flush();
}

}  // namespace virtual_scope
