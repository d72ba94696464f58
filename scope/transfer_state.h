// The transfer settings of the instrument, which every transfer changes and puts back.
#pragma once

#include <string>

#include "scope/step_sequence.h"

namespace kestrion {

class TransferState {
  public:
    // Keeps the settings as the instrument answers. What isn't answered is put back empty: only
    // whether the acquisition runs has to be, or the sequence fails.
    void Save(MemberCall& call, StepSequence& steps);
    void Restore(StepSequence& steps) const;

  private:
    std::string source_, start_, stop_, format_, byteOrder_, encoding_, width_;
};

// Asks where the trigger stands in the record, in points, and gives the time of the first point in
// seconds. Without an answer `initialX` stays as it is, and that is no error.
void QueryInitialX(MemberCall& call, double xZero, double xIncrement, double* initialX);

}  // namespace kestrion
