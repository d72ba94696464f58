#include "scope/waveform_transaction.h"

#include <algorithm>

#include "kestrion/interfaces/IKestrionAcquisition.h"
#include "kestrion/platform/error_info.h"

namespace kestrion {
namespace {

bool IsPaired(KestrionAcquisitionModeEnum mode) {
    return mode == KestrionAcquisitionModePeakDetect || mode == KestrionAcquisitionModeEnvelope;
}

bool IsSampled(KestrionAcquisitionModeEnum mode) {
    return mode == KestrionAcquisitionModeSample || mode == KestrionAcquisitionModeHiRes ||
           mode == KestrionAcquisitionModeAverage;
}

}  // namespace

WaveformTransaction::WaveformTransaction(MemberCall& call, const TransferPlan& plan, LONG source,
                                         std::string_view enumName)
    : plan_(plan), access_(call, enumName, source), curve_(call, access_.Steps()) {}

HRESULT WaveformTransaction::Run(WaveformSink& sink, double* initialX, double* xIncrement) {
    if (Begin() && Fetch(sink, initialX, xIncrement)) {
        Restore();
    }
    return Status();
}

bool WaveformTransaction::Begin() {
    return access_.HideHeader() && TurnZoomOn() && access_.RefuseAbsent(plan_.absentSource) &&
           access_.CheckSelected() && CheckMode();
}

bool WaveformTransaction::TurnZoomOn() {
    if (plan_.window != RecordWindow::kZoom) {
        return true;
    }
    LONG mode = 0;
    Steps().Write("ZOOM:MODE 1");
    Steps().QueryLong("ZOOM:MODE?", mode);
    return Good() && (mode == 1 || access_.End(kSilentlyRefused));
}

bool WaveformTransaction::CheckMode() {
    if (plan_.modes == AcceptedModes::kAny) {
        return true;
    }
    auto mode = KestrionAcquisitionModeSample;
    if (Failed(access_.Call().As<IKestrionAcquisition>().get_Mode(&mode))) {
        // An instrument that doesn't tell its mode is read all the same.
        (void)SetErrorInfo(0, nullptr);
        return true;
    }
    const bool accepted = plan_.modes == AcceptedModes::kPaired ? IsPaired(mode) : IsSampled(mode);
    return accepted || access_.EndWithReport([this] {
        return access_.Call().Errors().ReportInvalidAcquisitionType(
            "Invalid Acquisition Type error");
    });
}

bool WaveformTransaction::Fetch(WaveformSink& sink, double* initialX, double* xIncrement) {
    SetUp();
    curve_.Lock();
    curve_.ReadHeader();
    if (Good() && CountIsWrong()) {
        curve_.DiscardData();
        Restore();
        Steps().SetStatus(access_.Call().Errors().ReportPreviewState());
        return false;
    }
    ReadRecord(sink, initialX, xIncrement);
    return true;
}

bool WaveformTransaction::CountIsWrong() {
    switch (plan_.countTest) {
        case CountTest::kNone:
            return false;
        case CountTest::kRecord:
            return std::cmp_not_equal(AnsweredPoints(), recordLength_);
        case CountTest::kGivenWindow:
            break;
    }
    return std::cmp_not_equal(AnsweredPoints(), std::int64_t{plan_.stop} - plan_.start + 1);
}

std::uint64_t WaveformTransaction::AnsweredPoints() const {
    return pointWidth_ > 0 ? curve_.Length() / static_cast<std::uint64_t>(pointWidth_) : 0;
}

std::size_t WaveformTransaction::PointCount() const {
    // The width that was answered needn't be the one that is sent.
    return std::min<std::uint64_t>(AnsweredPoints(), curve_.Length() / PointWidth(record_.format));
}

void WaveformTransaction::ReadRecord(WaveformSink& sink, double* initialX, double* xIncrement) {
    record_.points = PointCount();
    if (!Good() || !sink.Prepare(record_.points) || !curve_.Allocate()) {
        return;
    }
    if (curve_.ReadData()) {
        QueryPreamble(xIncrement);
    }
    curve_.Unlock();
    if (!Good()) {
        return;
    }
    record_.bytes = curve_.Bytes();
    record_.xIncrement = *xIncrement;
    sink.Take(record_);
    curve_.Free();
    if (!plan_.offsetWithRecord) {
        QueryInitialX(access_.Call(), record_.xZero, *xIncrement, initialX);
    }
}

void WaveformTransaction::QueryPreamble(double* xIncrement) {
    StepSequence preamble(access_.Call());
    preamble.QueryDouble("WFMOUTPRE:XINCR?", *xIncrement);
    preamble.QueryDouble("WFMOUTPRE:XZERO?", record_.xZero);
    preamble.QueryDouble("WFMOUTPRE:YMULT?", record_.scale.yMult);
    preamble.QueryDouble("WFMOUTPRE:YZERO?", record_.scale.yZero);
    preamble.QueryDouble("WFMOUTPRE:YOFF?", record_.scale.yOffset);
    if (plan_.offsetWithRecord) {
        preamble.QueryLong("WFMOUTPRE:PT_OFF?", record_.pointOffset);
    }
    if (!preamble.Good()) {
        // What isn't answered stays zero.
        (void)SetErrorInfo(0, nullptr);
    }
}

void WaveformTransaction::Restore() {
    state_.Restore(Steps());
    access_.RestoreHeader();
}

}  // namespace kestrion
