#include "virtual/output_queue.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace virtual_scope {

bool OutputQueue::Add(Reply reply) {
    Part part;
    part.text = (open_ ? ";" : "") + reply.text;
    part.source = std::move(reply.source);
    messageText_ += part.text.size();
    open_ = true;
    parts_.push_back(std::move(part));
    return messageText_ <= kMaxText;
}

void OutputQueue::EndMessage() {
    if (open_) {
        Part part;
        part.text = "\n";
        part.end = true;
        parts_.push_back(std::move(part));
    }
    open_ = false;
    messageText_ = 0;
}

ReadPiece OutputQueue::Read(std::span<std::byte> target) {
    ReadPiece piece;
    while (!parts_.empty() && piece.count < target.size() && !piece.end) {
        piece.count += ReadPart(target.subspan(piece.count), piece.end);
    }
    return piece;
}

std::size_t OutputQueue::ReadPart(std::span<std::byte> target, bool& end) {
    Part& part = parts_.front();
    std::size_t done = std::min(target.size(), part.text.size() - part.taken);
    std::memcpy(target.data(), part.text.data() + part.taken, done);
    part.taken += done;
    if (part.source && part.taken == part.text.size()) {
        done += part.source->Read(target.subspan(done));
    }
    if (part.taken == part.text.size() && (!part.source || part.source->AtEnd())) {
        end = part.end;
        parts_.pop_front();
    }
    return done;
}

void OutputQueue::Clear() {
    parts_.clear();
    messageText_ = 0;
    open_ = false;
}

}  // namespace virtual_scope
