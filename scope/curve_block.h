// The instrument's answer to CURVE?: a block of bytes, read in one piece.
#pragma once

#include <cstdint>
#include <span>

#include "platform/storage.h"
#include "scope/step_sequence.h"

namespace kestrion {

// The steps in their order. Each does nothing once a step of the sequence failed, except that
// Unlock always gives a lock back. A member that ends before Unlock keeps the lock until the
// connection is closed.
class CurveBlock {
  public:
    CurveBlock(MemberCall& call, StepSequence& steps) : call_(call), steps_(steps) {}

    // Locks the instrument against other sessions. A lock that isn't granted stops nothing.
    void Lock();
    // Asks for the curve and reads the block's header. One that tells no length stands for none.
    void ReadHeader();
    // The length in bytes, from the header.
    [[nodiscard]] std::uint64_t Length() const { return length_; }
    // Room for the data and the line ending; false without memory, or beyond 32 bits.
    [[nodiscard]] bool Allocate();
    // Reads the data and the line ending in one read, however long the record is. A block that is
    // shorter or longer than its header says is reported as an unexpected response.
    [[nodiscard]] bool ReadData();
    // Reads the data and the line ending and keeps nothing: what stays unread would be taken for
    // the next answer. An instrument that sends less than announced is left alone.
    void DiscardData();
    void Unlock();
    [[nodiscard]] std::span<const std::uint8_t> Bytes() const { return {block_.Data(), length_}; }
    void Free() { block_ = Storage(); }

  private:
    HRESULT ReadLength();
    bool Unexpected(const char* what);

    MemberCall& call_;
    StepSequence& steps_;
    std::uint64_t length_ = 0;
    Storage block_;
    bool locked_ = false;
};

}  // namespace kestrion
