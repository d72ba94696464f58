#include "scope/waveform_access.h"

#include "scope/source_kind.h"

namespace kestrion {

WaveformAccess::WaveformAccess(MemberCall& call, std::string_view enumName, LONG source)
    : call_(call), source_(source), steps_(call) {
    steps_.SetStatus(call_.Driver().EnumToToken(enumName, source_, name_));
}

SourceKind WaveformAccess::Kind() const {
    if (source_ <= KestrionSourceCh4) {
        return SourceKind::kChannel;
    }
    const bool reference = source_ >= KestrionSourceRef1 && source_ <= KestrionSourceRef4;
    return reference ? SourceKind::kReference : SourceKind::kMath;
}

bool WaveformAccess::HideHeader() {
    steps_.QueryText("HEADER?", header_);
    steps_.Write("HEADER OFF");
    return steps_.Good();
}

void WaveformAccess::RestoreHeader() {
    steps_.Write("HEADER %$Cs", &header_);
}

bool WaveformAccess::End(HRESULT status) {
    return EndWithReport([status] { return status; });
}

bool WaveformAccess::RefuseAbsent(AbsentSource how) {
    if (how == AbsentSource::kGoesOn || !IsAbsentOnTwoChannels(source_) ||
        !call_.InstrumentHasTwoChannels()) {
        return true;
    }
    if (how == AbsentSource::kSilent) {
        return End(kSilentlyRefused);
    }
    return EndWithReport([this] {
        return call_.Errors().ReportDetail(message::kWaveformSourceRefused,
                                           "Waveform source not supported error.");
    });
}

bool WaveformAccess::CheckSelected() {
    LONG selected = 0;
    steps_.QueryLong("SELECT:" + name_ + "?", selected);
    if (!steps_.Good()) {
        return false;
    }
    return selected == 1 || EndWithReport([this] {
               return call_.Errors().ReportChannelNotEnabled("Channel Not Enabled error");
           });
}

}  // namespace kestrion
