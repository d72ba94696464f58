// The record of the digital channels, which come packed, all in one.
#pragma once

#include "kestrion/platform/safe_array.h"
#include "scope/curve_block.h"
#include "scope/transfer_state.h"

namespace kestrion {

inline constexpr int kDigitalChannelCount = 16;

// One transfer, in one member, under the object's lock.
class DigitalTransfer {
  public:
    explicit DigitalTransfer(MemberCall& call) : call_(call), steps_(call), curve_(call, steps_) {}

    // Long integers, one for each element of the record; the array is the caller's, and what
    // `packed` held is overwritten. Without memory nothing is handed over and nothing is reported.
    HRESULT Run(SAFEARRAY** packed, double* initialX, double* xIncrement);

  private:
    [[nodiscard]] bool AnyChannelIsOn();
    void SetUp();
    void ReadRecord(SAFEARRAY** packed, double* initialX, double* xIncrement);

    MemberCall& call_;
    StepSequence steps_;
    CurveBlock curve_;
    TransferState state_;
    std::string header_;
    LONG elementWidth_ = 0;
};

}  // namespace kestrion
