#include "virtual/message_framer.h"

#include <utility>

#include "virtual/text.h"

namespace virtual_scope {

void MessageFramer::Feed(std::span<const std::byte> bytes, bool end) {
    for (const std::byte b : bytes) {
        Take(static_cast<char>(b));
    }
    if (end && InMessage()) {
        Finish();
    }
}

std::string MessageFramer::TakeMessage() {
    std::string message = std::move(messages_.front());
    messages_.pop_front();
    return message;
}

bool MessageFramer::TakeOverrun() {
    if (overruns_ == 0) {
        return false;
    }
    --overruns_;
    return true;
}

void MessageFramer::Take(char c) {
    if (place_ == Place::kBlockData || place_ == Place::kBlockLength) {
        TakeInBlock(c);
        return;
    }
    if (c == '\n') {
        Finish();
        return;
    }
    // White space before a message belongs to nothing.
    if (IsBlank(c) && !InMessage()) {
        return;
    }
    if (place_ == Place::kQuoted) {
        place_ = c == quote_ ? Place::kText : Place::kQuoted;
    } else if (place_ == Place::kBlockStart && c >= '1' && c <= '9') {
        lengthDigits_ = static_cast<std::size_t>(c - '0');
        blockLeft_ = 0;
        place_ = Place::kBlockLength;
    } else if (c == '"' || c == '\'') {
        quote_ = c;
        place_ = Place::kQuoted;
    } else {
        place_ = c == '#' ? Place::kBlockStart : Place::kText;
    }
    Keep(c);
}

void MessageFramer::TakeInBlock(char c) {
    if (place_ == Place::kBlockData) {
        Keep(c);
        if (--blockLeft_ == 0) {
            place_ = Place::kText;
        }
        return;
    }
    if (!IsDigit(c)) {  // no block after all
        place_ = Place::kText;
        Take(c);
        return;
    }
    Keep(c);
    blockLeft_ = blockLeft_ * 10 + static_cast<std::size_t>(c - '0');
    if (--lengthDigits_ == 0) {
        place_ = blockLeft_ == 0 ? Place::kText : Place::kBlockData;
    }
}

void MessageFramer::Keep(char c) {
    if (current_.size() == kMaxMessage) {
        overrun_ = true;
        current_.clear();
    }
    if (!overrun_) {
        current_ += c;
    }
}

void MessageFramer::Finish() {
    if (overrun_) {
        ++overruns_;
    } else if (!current_.empty()) {
        messages_.push_back(std::move(current_));
    }
    current_.clear();
    overrun_ = false;
    place_ = Place::kText;
}

}  // namespace virtual_scope
