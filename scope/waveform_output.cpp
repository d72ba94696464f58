// IKestrionWaveformTransfer: intensity maps, digital records, text and reference memories.
#include <cmath>
#include <string>

#include "generated/hooks/IKestrionWaveformTransfer.h"
#include "io/variant_array.h"
#include "kestrion/interfaces/IKestrionWaveformTransfer.h"
#include "platform/clipboard.h"
#include "platform/storage.h"
#include "platform/text.h"
#include "scope/digital_transfer.h"
#include "scope/pixmap_transfer.h"
#include "scope/waveform_reference.h"
#include "scope/waveform_text.h"
#include "scope/waveform_transaction.h"

namespace kestrion::hooks::IKestrionWaveformTransfer {
namespace {

// Elements of a record by the bit of one digital channel: 1 where it is set.
void TakeBit(int channel, std::span<const LONG> packed, std::span<LONG> bits) {
    const auto mask = static_cast<LONG>(std::pow(2.0, channel));
    for (std::size_t i = 0; i < packed.size(); ++i) {
        bits[i] = (packed[i] & mask) > 0 ? 1 : 0;
    }
}

HRESULT ReportFile(MemberCall& call, TextFileSink::Failure failure, const std::string& path) {
    switch (failure) {
        case TextFileSink::Failure::kNone:
            break;
        case TextFileSink::Failure::kOpen:
            return call.Errors().ReportCannotOpenFile(path);
        case TextFileSink::Failure::kWrite:
            return call.Errors().ReportWriteError(path);
    }
    return S_OK;
}

}  // namespace

HRESULT GetPixmapWaveformData(MemberCall& call, KestrionSourceEnum WaveformSource,
                              SAFEARRAY** WaveformArray) {
    return PixmapTransfer(call, WaveformSource, PixmapForm::kTable).Run(WaveformArray);
}

HRESULT GetPixmapWaveformDataEx(MemberCall& call, KestrionSourceEnum WaveformSource,
                                SAFEARRAY** WaveformArray, LONG* MaxCols, LONG* MaxRows) {
    PixmapTransfer transfer(call, WaveformSource, PixmapForm::kVector);
    SAFEARRAY* map = nullptr;
    const HRESULT status = transfer.Run(&map);
    if (map != nullptr) {
        *WaveformArray = map;
        *MaxCols = static_cast<LONG>(transfer.Size().columns);
        *MaxRows = static_cast<LONG>(transfer.Size().rows);
    }
    return status;
}

HRESULT FetchDigitalAllWaveform(MemberCall& call, SAFEARRAY** WaveformArray, double* InitialX,
                                double* XIncrement) {
    return DigitalTransfer(call).Run(WaveformArray, InitialX, XIncrement);
}

HRESULT FetchDigitalWaveform(MemberCall& call, KestrionDigitalChannelEnum Source,
                             SAFEARRAY** WaveformArray, double* InitialX, double* XIncrement) {
    std::string name;
    StepSequence steps(call);
    steps.SetStatus(call.Driver().EnumToToken("KestrionDigitalChannelEnum", Source, name));
    LONG selected = 0;
    steps.QueryLong("SELECT:" + name + "?", selected);
    if (!steps.Good()) {
        return steps.Status();
    }
    if (selected != 1) {
        return call.Errors().ReportChannelNotEnabled("DigitalChannel Not Enabled error");
    }
    SafeArrayPtr packed;
    const HRESULT status = call.As<::IKestrionWaveformTransfer>().FetchDigitalAllWaveform(
        packed.Out(), InitialX, XIncrement);
    if (Failed(status) || !packed) {
        return status;
    }
    const std::span<const LONG> elements = packed.Elements<LONG>();
    SafeArrayPtr bits(CreateVectorToFill(VT_I4, static_cast<ULONG>(elements.size())));
    if (!bits) {
        return status;
    }
    TakeBit(Source, elements, bits.Elements<LONG>());
    *WaveformArray = bits.Detach();
    return status;
}

// The limits are taken for what they may mean one day: the whole record is copied.
HRESULT CopyWaveformToClipboard(MemberCall& call, KestrionSourceEnum WaveformSource, LONG, LONG,
                                LONG* PointsCopied) {
    const TransferPlan plan = {.absentSource = AbsentSource::kReported,
                               .countTest = CountTest::kNone};
    *PointsCopied = 0;
    ClipboardSink sink;
    double initialX = 0.0;
    double xIncrement = 0.0;
    const HRESULT status =
        WaveformTransaction(call, plan, WaveformSource).Run(sink, &initialX, &xIncrement);
    *PointsCopied = sink.Points();
    if (Failed(status) || Succeeded(sink.Status())) {
        return status;
    }
    if (sink.Status() == kNoClipboard) {
        return call.Errors().ReportMethodNotSupported(call.Method().memberName,
                                                      "No clipboard: " + sink.Reason() + ".");
    }
    return call.Errors().ReportUnrecoverable("The clipboard took no text: " + sink.Reason() + ".");
}

HRESULT SaveWaveformToFile(MemberCall& call, KestrionSourceEnum WaveformSource, BSTR FileName,
                           KestrionWaveformFileFormatEnum FileFormat) {
    const TransferPlan plan = {.modes = AcceptedModes::kAny,
                               .lengthInOneLine = true,
                               .points = IntegerPoints::kAsAnswered,
                               .offsetWithRecord = true};
    if (FileFormat != KestrionWaveformFileFormatWithoutScaleFactor &&
        FileFormat != KestrionWaveformFileFormatWithScaleFactor) {
        return call.Errors().ReportInvalidValue("FileFormat", ValueText(FileFormat), {});
    }
    const std::string path = Utf16ToUtf8(View(FileName));
    TextFileSink sink(path, FileFormat == KestrionWaveformFileFormatWithScaleFactor);
    double initialX = 0.0;
    double xIncrement = 0.0;
    const HRESULT status =
        WaveformTransaction(call, plan, WaveformSource).Run(sink, &initialX, &xIncrement);
    if (Failed(status) || sink.Failed() == TextFileSink::Failure::kNone) {
        return status;
    }
    return ReportFile(call, sink.Failed(), path);
}

HRESULT WriteWaveformToReference(MemberCall& call, KestrionReferenceEnum WaveformReference,
                                 SAFEARRAY* WaveformArray, double InitialX, double XIncrement) {
    if (WaveformArray == nullptr) {
        return call.Errors().ReportNullPointer("WaveformArray", {});
    }
    VARTYPE kind = VT_EMPTY;
    if (SafeArrayGetDim(WaveformArray) != 1 || Failed(SafeArrayGetVartype(WaveformArray, &kind)) ||
        kind != VT_R8) {
        return call.Errors().ReportInvalidValue("WaveformArray", {}, {});
    }
    // What a block's header can say in nine digits, four bytes a point.
    constexpr std::uint32_t kMostPoints = 249999999;
    const std::uint32_t points = VectorLength(WaveformArray);
    if (points > kMostPoints) {
        return call.Errors().ReportInvalidValue("WaveformArray", std::to_string(points), {});
    }
    return ReferenceTransfer(call, WaveformReference)
        .Run({static_cast<const double*>(WaveformArray->pvData), points}, InitialX, XIncrement);
}

}  // namespace kestrion::hooks::IKestrionWaveformTransfer
