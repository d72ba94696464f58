#include "scope/waveform_transaction.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <new>

#include "kestrion/interfaces/IKestrionAcquisition.h"
#include "kestrion/platform/error_info.h"
#include "scope/source_kind.h"

namespace kestrion {
namespace {

constexpr std::int32_t kLockTimeout = 1000;  // milliseconds
// Nothing above this is asked of a math waveform; the instrument holds it to what there is.
constexpr std::string_view kWholeRecord = "DATA:STOP 800000000";

bool IsTransferable(KestrionAcquisitionModeEnum mode) {
    return mode == KestrionAcquisitionModeSample || mode == KestrionAcquisitionModeHiRes ||
           mode == KestrionAcquisitionModeAverage;
}

// The digit of a block header, which is read as a hexadecimal one; anything else counts as none.
std::uint32_t HeaderDigit(std::uint8_t byte) {
    std::uint32_t digit = 0;
    const auto text = static_cast<char>(byte);
    (void)std::from_chars(&text, &text + 1, digit, 16);
    return digit;
}

}  // namespace

WaveformTransaction::WaveformTransaction(MemberCall& call, KestrionSourceEnum source)
    : call_(call),
      source_(source),
      kind_(source <= KestrionSourceCh4                                    ? SourceKind::kChannel
            : source >= KestrionSourceRef1 && source <= KestrionSourceRef4 ? SourceKind::kReference
                                                                           : SourceKind::kMath),
      steps_(call) {}

bool WaveformTransaction::Fail(HRESULT reported) {
    steps_.SetStatus(reported);
    return false;
}

bool WaveformTransaction::ResolveSource() {
    steps_.SetStatus(call_.Driver().EnumToToken("KestrionSourceEnum", source_, name_));
    return steps_.Good();
}

bool WaveformTransaction::HideHeader() {
    steps_.QueryText("HEADER?", saved_.header);
    steps_.Write("HEADER OFF");
    return steps_.Good();
}

bool WaveformTransaction::SourceIsAbsent() {
    return IsAbsentOnTwoChannels(source_) && call_.InstrumentHasTwoChannels();
}

bool WaveformTransaction::CheckSource() {
    LONG selected = 0;
    steps_.QueryLong("SELECT:" + name_ + "?", selected);
    if (!steps_.Good()) {
        return false;
    }
    if (selected != 1) {
        RestoreHeader();
        return Fail(call_.Errors().ReportChannelNotEnabled("Channel Not Enabled error"));
    }
    return true;
}

bool WaveformTransaction::CheckMode() {
    auto mode = KestrionAcquisitionModeSample;
    if (Failed(call_.As<IKestrionAcquisition>().get_Mode(&mode))) {
        // An instrument that doesn't tell its mode is read all the same.
        (void)SetErrorInfo(0, nullptr);
        return true;
    }
    if (!IsTransferable(mode)) {
        RestoreHeader();
        return Fail(call_.Errors().ReportInvalidAcquisitionType("Invalid Acquisition Type error"));
    }
    return true;
}

void WaveformTransaction::SaveState() {
    const auto keep = [this](std::string_view query, std::string& reply) {
        return call_.QueryText(query, reply);
    };
    // What isn't answered is put back empty; only the last query decides.
    (void)keep("DATA:SOURCE?", saved_.source);
    (void)keep("DATA:START?", saved_.start);
    (void)keep("DATA:STOP?", saved_.stop);
    (void)keep("WFMOUTPRE:BN_FMT?", saved_.format);
    (void)keep("WFMOUTPRE:BYT_OR?", saved_.byteOrder);
    (void)keep("WFMOUTPRE:ENCD?", saved_.encoding);
    (void)keep("WFMOUTPRE:BYT_NR?", saved_.width);
    std::string running;
    steps_.SetStatus(keep("ACQUIRE:STATE?", running));
}

void WaveformTransaction::FindRecordLength() {
    if (kind_ == SourceKind::kChannel) {
        steps_.QueryLong("HORIZONTAL:RECORDLENGTH?", recordLength_);
        return;
    }
    steps_.Write(kWholeRecord);
    steps_.QueryLong(":WFMOUTPRE:NR_PT?", recordLength_);
}

void WaveformTransaction::ChooseEncoding() {
    const bool floating =
        kind_ == SourceKind::kMath || (kind_ == SourceKind::kReference && pointWidth_ == 4);
    if (floating) {
        format_ = PointFormat::kFloatLittle;
        steps_.Write("WFMOUTPRE:ENCDG BIN;BN_FMT FP");
        steps_.Write(":WFMOUTPRE:BYT_OR LSB");
        return;
    }
    format_ = PointFormat::kInt8;
    // The instrument takes a no-break space here.
    steps_.Write(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1");
}

void WaveformTransaction::SetUp() {
    SaveState();
    steps_.Write("DATA:SOURCE %$Cs", &name_);
    FindRecordLength();
    steps_.Write("DATA:START 1;STOP %d", recordLength_);
    steps_.QueryLong("WFMOUTPRE:BYT_NR 1;BYT_NR?", pointWidth_);
    ChooseEncoding();
}

HRESULT WaveformTransaction::ReadBlockLength() {
    // Not followed by a look at the status: that would be a new query in front of the response.
    HRESULT status = call_.Session().WriteStringNoPoll(std::string_view("CURVE?"), true);
    std::array<std::uint8_t, 256> header{};
    std::uint32_t actual = 0;
    if (Succeeded(status)) {
        status = call_.Session().ReadRaw(header.data(), 2, &actual);
    }
    if (Failed(status)) {
        return status;
    }
    const std::uint32_t digits = actual == 2 ? HeaderDigit(header[1]) : 0;
    actual = 0;
    if (digits > 0) {
        status = call_.Session().ReadRaw(header.data(), digits, &actual);
    }
    const auto* text = reinterpret_cast<const char*>(header.data());
    (void)std::from_chars(text, text + actual, blockLength_);
    return status;
}

bool WaveformTransaction::ReadHeader(bool countTest) {
    countTested_ = countTest;
    // A lock that isn't granted stops nothing, so it isn't an error either.
    locked_ = Succeeded(call_.Session().Lock(IoLockType::kExclusive, kLockTimeout, "", nullptr));
    if (!locked_) {
        (void)SetErrorInfo(0, nullptr);
    }
    if (!steps_.Good()) {
        return true;
    }
    steps_.SetStatus(ReadBlockLength());
    if (!steps_.Good() || !countTest) {
        return true;
    }
    const std::uint64_t points =
        pointWidth_ > 0 ? blockLength_ / static_cast<std::uint64_t>(pointWidth_) : 0;
    if (recordLength_ >= 0 && points == static_cast<std::uint64_t>(recordLength_)) {
        return true;
    }
    Restore();
    return Fail(call_.Errors().ReportPreviewState());
}

bool WaveformTransaction::ReadBlock(std::uint8_t* block) {
    // The data and the line ending behind it, in one read, however long the record is.
    const auto wanted = static_cast<std::uint32_t>(blockLength_ + 1);
    std::uint32_t actual = 0;
    steps_.SetStatus(call_.Session().ReadRaw(block, wanted, &actual));
    if (!steps_.Good()) {
        return false;
    }
    if (actual < blockLength_) {
        return Fail(call_.Errors().ReportUnexpectedResponse(
            "The waveform block is shorter than announced."));
    }
    if (actual == wanted && block[blockLength_] != '\n') {
        return Fail(call_.Errors().ReportUnexpectedResponse(
            "The waveform block is longer than announced."));
    }
    // A raw socket can't tell that nothing follows.
    (void)call_.Session().EndResponse();
    return true;
}

void WaveformTransaction::QueryPreamble(double* xIncrement) {
    StepSequence preamble(call_);
    preamble.QueryDouble("WFMOUTPRE:XINCR?", *xIncrement);
    preamble.QueryDouble("WFMOUTPRE:XZERO?", xZero_);
    preamble.QueryDouble("WFMOUTPRE:YMULT?", scale_.yMult);
    preamble.QueryDouble("WFMOUTPRE:YZERO?", scale_.yZero);
    preamble.QueryDouble("WFMOUTPRE:YOFF?", scale_.yOffset);
}

void WaveformTransaction::QueryInitialX(double* initialX, double xIncrement) {
    LONG offset = 0;
    if (Succeeded(call_.QueryLong("WFMOUTPRE:PT_OFF?", offset))) {
        *initialX = xZero_ - offset * xIncrement;
    }
}

void WaveformTransaction::ReadPoints(SAFEARRAY** waveform, double* initialX, double* xIncrement) {
    const std::uint64_t available = blockLength_ / PointWidth(format_);
    const std::uint64_t points =
        countTested_ ? std::min<std::uint64_t>(static_cast<std::uint64_t>(recordLength_), available)
                     : available;
    if (!steps_.Good() || blockLength_ >= std::numeric_limits<std::uint32_t>::max()) {
        return;
    }
    std::unique_ptr<std::uint8_t[]> block(new (std::nothrow) std::uint8_t[blockLength_ + 1]);
    SafeArrayPtr volts(SafeArrayCreateVector(VT_R8, 0, static_cast<ULONG>(points)));
    if (block == nullptr || !volts) {
        return;
    }
    if (ReadBlock(block.get())) {
        QueryPreamble(xIncrement);
    }
    if (locked_) {
        (void)call_.Session().Unlock();
    }
    if (!steps_.Good()) {
        return;
    }
    ScaleToVolts({block.get(), blockLength_}, format_, scale_, volts.Elements<double>());
    block.reset();
    *waveform = volts.Detach();
    QueryInitialX(initialX, *xIncrement);
}

void WaveformTransaction::Restore() {
    steps_.Write("DATA:SOURCE %$Cs;START %$Cs;STOP %$Cs", &saved_.source, &saved_.start,
                 &saved_.stop);
    steps_.Write("WFMOUTPRE:BN_FMT %$Cs;BYT_OR %$Cs;ENCD %$Cs;BYT_NR %$Cs", &saved_.format,
                 &saved_.byteOrder, &saved_.encoding, &saved_.width);
    RestoreHeader();
}

void WaveformTransaction::RestoreHeader() {
    steps_.Write("HEADER %$Cs", &saved_.header);
}

}  // namespace kestrion
