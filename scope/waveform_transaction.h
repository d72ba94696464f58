// The waveform transaction: what every member that brings a record over has in common.
#pragma once

#include <cstdint>

#include "kestrion/enums/KestrionSourceEnum.h"
#include "scope/curve_block.h"
#include "scope/transfer_state.h"
#include "scope/waveform_access.h"
#include "scope/waveform_sinks.h"

namespace kestrion {

// Which part of a record is asked for.
enum class RecordWindow : std::uint8_t {
    kWhole,
    kGiven,   // TransferPlan's start and stop, as they are
    kCursor,  // between the vertical bars
    kZoom,    // within the zoom area
};

// Which acquisition modes a member transfers.
enum class AcceptedModes : std::uint8_t {
    kSampled,  // sample, high resolution and average: one point in each interval
    kPaired,   // peak detect and envelope: two of them
    kAny,      // the mode isn't asked for
};

// How the points of a channel are asked for. A math, and a reference that holds them, comes in
// floating-point numbers in any case.
enum class IntegerPoints : std::uint8_t {
    kOneByte,
    kTwoBytes,
    kOneByteUnasked,  // without asking for the width first
    kAsAnswered,      // two bytes where the instrument insists on them
};

// What the number of points in the block has to be.
enum class CountTest : std::uint8_t { kRecord, kGivenWindow, kNone };

// How a member differs from FetchWaveform, which is this as it stands.
struct TransferPlan {
    AbsentSource absentSource = AbsentSource::kGoesOn;
    AcceptedModes modes = AcceptedModes::kSampled;
    // The record length of a math or a reference: limit and question in one line.
    bool lengthInOneLine = false;
    RecordWindow window = RecordWindow::kWhole;
    LONG start = 0;
    LONG stop = 0;
    IntegerPoints points = IntegerPoints::kOneByte;
    CountTest countTest = CountTest::kRecord;
    // The trigger's place is asked for in front of the conversion, as part of the record.
    bool offsetWithRecord = false;
};

// One transfer of one source, in one member, under the object's lock. The stages are called in the
// order in which they stand; where one gives false the member ends, with Status().
class WaveformTransaction {
  public:
    // `source` is a value of the enumeration with this name, by whose numbers the channels are the
    // first four. A value without a token is reported, and no stage does anything.
    WaveformTransaction(MemberCall& call, const TransferPlan& plan, LONG source,
                        std::string_view enumName = "KestrionSourceEnum");

    // All stages.
    HRESULT Run(WaveformSink& sink, double* initialX, double* xIncrement);

    // Turns headers off and tests source and mode.
    [[nodiscard]] bool Begin();
    // Sets the transfer up, reads the block and the preamble, and hands both to `sink`. A block of
    // another length than it has to have puts everything back and is reported, and the result is
    // false. Without memory nothing is handed over and nothing is reported.
    [[nodiscard]] bool Fetch(WaveformSink& sink, double* initialX, double* xIncrement);
    // Puts the transfer settings and the header back.
    void Restore();

    // For a member that ends in between: the header alone, and the status of a report behind it.
    [[nodiscard]] WaveformAccess& Access() { return access_; }
    [[nodiscard]] bool Good() { return Steps().Good(); }
    [[nodiscard]] HRESULT Status() { return Steps().Status(); }

  private:
    struct Window {
        LONG start;
        LONG stop;
    };

    [[nodiscard]] StepSequence& Steps() { return access_.Steps(); }
    [[nodiscard]] bool TurnZoomOn();
    [[nodiscard]] bool CheckMode();
    void SetUp();
    void FindRecordLength();
    void SetWindow();
    void WriteWindow(Window window);
    [[nodiscard]] Window CursorWindow();
    [[nodiscard]] Window ZoomWindow();
    void AskWidth();
    void ChooseEncoding();
    [[nodiscard]] bool CountIsWrong();
    [[nodiscard]] std::uint64_t AnsweredPoints() const;
    [[nodiscard]] std::size_t PointCount() const;
    void ReadRecord(WaveformSink& sink, double* initialX, double* xIncrement);
    void QueryPreamble(double* xIncrement);

    TransferPlan plan_;
    WaveformAccess access_;
    TransferState state_;
    CurveBlock curve_;
    LONG recordLength_ = 0;
    LONG pointWidth_ = 1;
    WaveformRecord record_;
};

}  // namespace kestrion
