// An array of volts to a reference memory of the instrument.
#pragma once

#include <span>
#include <string>

#include "kestrion/enums/KestrionReferenceEnum.h"
#include "scope/waveform_access.h"

namespace kestrion {

// One transfer, in one member, under the object's lock.
class ReferenceTransfer {
  public:
    ReferenceTransfer(MemberCall& call, KestrionReferenceEnum reference)
        : access_(call, "KestrionReferenceEnum", reference) {}

    // `initialX` is the time of the first point and `xIncrement` the time between points, in
    // seconds. The points travel in single precision.
    HRESULT Run(std::span<const double> volts, double initialX, double xIncrement);

  private:
    // What the transfer changes and puts back, as the instrument answered.
    struct SavedState {
        std::string destination, start, format, byteOrder, encoding, width, yMult, offset, points,
            xIncrement;
    };

    [[nodiscard]] StepSequence& Steps() { return access_.Steps(); }
    void SaveState();
    void SetUp(std::size_t points, double initialX, double xIncrement);
    [[nodiscard]] HRESULT WriteBlock(std::span<const double> volts);
    void Restore();

    WaveformAccess access_;
    SavedState saved_;
};

}  // namespace kestrion
