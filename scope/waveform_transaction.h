// The waveform transaction: what every member that brings a waveform over has in common.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/member_call.h"
#include "kestrion/enums/KestrionSourceEnum.h"
#include "scope/step_sequence.h"
#include "scope/waveform_scaling.h"

namespace kestrion {

// One transfer of one source. The stages are called in the order in which they stand; a member
// leaves out what it doesn't have. Stages that can end the member return false, and the result is
// Status() then. All of it runs under the object's lock, in one member.
class WaveformTransaction {
  public:
    WaveformTransaction(MemberCall& call, KestrionSourceEnum source);

    // The instrument's name of the source; false for a value that the member has no token for.
    bool ResolveSource();
    // Keeps the header state and turns headers off.
    bool HideHeader();
    // True for a source that a two-channel model lacks.
    [[nodiscard]] bool SourceIsAbsent();
    // The source has to be on, and the acquisition mode one of sample, high resolution and average.
    bool CheckSource();
    bool CheckMode();

    // Keeps the transfer settings and sets up the transfer of the whole record.
    void SetUp();
    // Takes the lock, asks for the curve and reads its header. With `countTest` a block of another
    // length than the record's puts everything back and is reported, and the result is false.
    bool ReadHeader(bool countTest);
    // Reads block and preamble, gives the lock back, and hands the points and the times to the
    // caller. Without memory nothing is handed over and nothing is reported. The lock is given back
    // here alone: a member that fails before the block keeps it until the connection is closed.
    void ReadPoints(SAFEARRAY** waveform, double* initialX, double* xIncrement);
    // Puts the transfer settings and the header back.
    void Restore();
    // The header alone: what members that end early put back.
    void RestoreHeader();

    [[nodiscard]] HRESULT Status() const { return steps_.Status(); }
    [[nodiscard]] StepSequence& Steps() { return steps_; }

  private:
    enum class SourceKind : std::uint8_t { kChannel, kMath, kReference };

    // What the transfer changes and puts back, as the instrument answered.
    struct SavedState {
        std::string header, source, start, stop, format, byteOrder, encoding, width;
    };

    void SaveState();
    void FindRecordLength();
    void ChooseEncoding();
    HRESULT ReadBlockLength();
    bool ReadBlock(std::uint8_t* block);
    void QueryPreamble(double* xIncrement);
    void QueryInitialX(double* initialX, double xIncrement);
    bool Fail(HRESULT reported);

    MemberCall& call_;
    KestrionSourceEnum source_;
    SourceKind kind_;
    std::string name_;
    SavedState saved_;
    StepSequence steps_;
    PointFormat format_ = PointFormat::kInt8;
    LONG recordLength_ = 0;
    LONG pointWidth_ = 0;
    std::uint64_t blockLength_ = 0;
    bool countTested_ = false;
    bool locked_ = false;
    double xZero_ = 0.0;
    VerticalScale scale_;
};

}  // namespace kestrion
