// How a waveform transaction sets the instrument up: source, length, window and encoding.
#include <algorithm>
#include <cmath>
#include <limits>

#include "scope/waveform_transaction.h"

namespace kestrion {
namespace {

// Truncates toward zero. A window of an instrument that answers nonsense ends at what a number of
// points can be.
LONG WholePoints(double points) {
    if (std::isnan(points)) {
        return 0;
    }
    constexpr double kLeast = std::numeric_limits<LONG>::min();
    constexpr double kMost = std::numeric_limits<LONG>::max();
    return static_cast<LONG>(std::clamp(points, kLeast, kMost));
}

}  // namespace

void WaveformTransaction::SetUp() {
    state_.Save(access_.Call(), Steps());
    Steps().Write("DATA:SOURCE %$Cs", &access_.Name());
    FindRecordLength();
    SetWindow();
    AskWidth();
    ChooseEncoding();
}

void WaveformTransaction::FindRecordLength() {
    if (access_.Kind() == SourceKind::kChannel) {
        Steps().QueryLong("HORIZONTAL:RECORDLENGTH?", recordLength_);
        return;
    }
    // Nothing above this is asked of a math waveform; the instrument holds it to what there is.
    if (plan_.lengthInOneLine) {
        Steps().QueryLong("DATA:STOP 800000000;:WFMOUTPRE:NR_PT?", recordLength_);
        return;
    }
    Steps().Write("DATA:STOP 800000000");
    Steps().QueryLong(":WFMOUTPRE:NR_PT?", recordLength_);
}

void WaveformTransaction::SetWindow() {
    switch (plan_.window) {
        case RecordWindow::kWhole:
            return WriteWindow({1, recordLength_});
        case RecordWindow::kGiven:
            return WriteWindow({plan_.start, plan_.stop});
        case RecordWindow::kCursor:
            return WriteWindow(CursorWindow());
        case RecordWindow::kZoom:
            return WriteWindow(ZoomWindow());
    }
}

void WaveformTransaction::WriteWindow(Window window) {
    Steps().Write("DATA:START %d;STOP %d", window.start, window.stop);
}

WaveformTransaction::Window WaveformTransaction::CursorWindow() {
    double first = 0.0;
    double second = 0.0;
    double interval = 0.0;
    LONG trigger = 0;
    Steps().Write("CURSOR:SOURCE %$Cs", &access_.Name());
    Steps().QueryDouble("CURSOR:VBARS:POS1?", first);
    Steps().QueryDouble("CURSOR:VBARS:POS2?", second);
    WriteWindow({1, recordLength_});
    Steps().QueryDouble("WFMOUTPRE:XINCR?", interval);
    Steps().QueryLong("WFMOUTPRE:PT_OFF?", trigger);
    // Bars are told in seconds from the trigger.
    const auto [start, stop] = std::minmax({WholePoints((trigger * interval + first) / interval),
                                            WholePoints((trigger * interval + second) / interval)});
    return {start, stop};
}

WaveformTransaction::Window WaveformTransaction::ZoomWindow() {
    double position = 0.0;  // of the middle, in per cent of the record
    double factor = 0.0;
    Steps().QueryDouble("ZOOM:" + access_.Name() + ":HORIZONTAL:POSITION?", position);
    Steps().QueryDouble("ZOOM:" + access_.Name() + ":HORIZONTAL:SCALE?", factor);
    const double half = recordLength_ / factor * 0.5;
    const double centre = recordLength_ * position / 100.0;
    return {std::max<LONG>(WholePoints(centre - half), 1),
            std::min(WholePoints(centre + half), recordLength_)};
}

void WaveformTransaction::AskWidth() {
    if (plan_.points != IntegerPoints::kOneByteUnasked) {
        pointWidth_ = 0;
        Steps().QueryLong("WFMOUTPRE:BYT_NR 1;BYT_NR?", pointWidth_);
    }
}

void WaveformTransaction::ChooseEncoding() {
    const SourceKind kind = access_.Kind();
    if (kind == SourceKind::kMath || (kind == SourceKind::kReference && pointWidth_ == 4)) {
        record_.format = PointFormat::kFloatLittle;
        Steps().Write("WFMOUTPRE:ENCDG BIN;BN_FMT FP");
        Steps().Write(":WFMOUTPRE:BYT_OR LSB");
        return;
    }
    const bool twoBytes = plan_.points == IntegerPoints::kTwoBytes ||
                          (plan_.points == IntegerPoints::kAsAnswered && pointWidth_ == 2);
    record_.format = twoBytes ? PointFormat::kInt16Little : PointFormat::kInt8;
    // The instrument takes a no-break space here.
    if (plan_.points == IntegerPoints::kTwoBytes) {
        Steps().Write(
            "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
            "2");
        Steps().Write(":WFMOUTPRE:BYT_OR LSB");
        return;
    }
    Steps().Write(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1");
}

}  // namespace kestrion
