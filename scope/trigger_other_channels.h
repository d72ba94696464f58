// Runts and windows while the channels that are not their source are in a state: of the pairs CH1,
// CH2 and CH3, CH4 the one that the source isn't in.
#pragma once

#include <string_view>

#include "core/member_call.h"
#include "kestrion/enums.h"

namespace kestrion {

// A type of pulse as the body of one of its members knows it. Texts are literals.
struct PulseLogic {
    const char* pulse;           // as its path names it
    bool ownPathsOnOldFamilies;  // inputs stand with the pulse where families don't share them
};

enum class OtherChannel { kFirst, kSecond };

// A model of two channels has no others: the running member is refused there.
HRESULT ReadOtherInput(MemberCall& call, const PulseLogic& logic, OtherChannel which,
                       KestrionTriggerWindowLogicInputEnum* state);
HRESULT WriteOtherInput(MemberCall& call, const PulseLogic& logic, OtherChannel which,
                        KestrionTriggerWindowLogicInputEnum state);
// Thresholds are in volts.
HRESULT ReadOtherThreshold(MemberCall& call, const PulseLogic& logic, OtherChannel which,
                           double* threshold);
HRESULT WriteOtherThreshold(MemberCall& call, const PulseLogic& logic, OtherChannel which,
                            double threshold);

struct OtherInput {
    KestrionTriggerWindowLogicInputEnum state;
    double threshold;
};
// Has the pulse trigger only while both are in their states.
HRESULT ConfigureOtherChannels(MemberCall& call, const PulseLogic& logic, const OtherInput& first,
                               const OtherInput& second);

}  // namespace kestrion
