#include "scope/pixmap_transfer.h"

#include <algorithm>
#include <array>
#include <span>

namespace kestrion {
namespace {

constexpr LONG kElementWidth = 8;

PixmapSize SizeFor(MemberCall& call) {
    constexpr std::array<std::string_view, 6> kSmall = {"Heron Series", "HeronB Series",
                                                        "Ibis Series",  "IbisB Series",
                                                        "Lark Series",  "LarkB Series"};
    return call.InstrumentInAnyFamily(kSmall) ? PixmapSize{.columns = 500, .rows = 200}
                                              : PixmapSize{.columns = 1000, .rows = 252};
}

double ElementAt(const std::uint8_t* bytes) {
    std::uint64_t value = 0;
    for (int i = 7; i >= 0; --i) {
        value = (value << 8) | bytes[i];
    }
    return static_cast<double>(static_cast<std::int64_t>(value));
}

}  // namespace

PixmapTransfer::PixmapTransfer(MemberCall& call, KestrionSourceEnum source, PixmapForm form)
    : form_(form),
      access_(call, "KestrionSourceEnum", source),
      curve_(call, access_.Steps()),
      size_(SizeFor(call)) {}

HRESULT PixmapTransfer::Run(SAFEARRAY** map) {
    if (!access_.HideHeader() || !access_.RefuseAbsent(AbsentSource::kSilent) ||
        !access_.CheckSelected() || !FindMap()) {
        return Steps().Status();
    }
    SetUp();
    curve_.Lock();
    curve_.ReadHeader();
    ReadMap(map);
    Restore();
    return Steps().Status();
}

// A source that isn't transferred with eight bytes an element has no map.
bool PixmapTransfer::FindMap() {
    LONG width = 0;
    Steps().QueryText("DATA:SOURCE?", source_);
    Steps().QueryText("WFMOUTPRE:BYT_OR?", byteOrder_);
    Steps().QueryText("WFMOUTPRE:ENCD?", encoding_);
    Steps().Write("DATA:SOURCE %$Cs", &access_.Name());
    Steps().QueryLong("WFMOUTPRE:BYT_NR?", width);
    if (!Steps().Good() || width == kElementWidth) {
        return Steps().Good();
    }
    return access_.EndWithReport([this] {
        Steps().Write("DATA:SOURCE %$Cs", &source_);
        return access_.Call().Errors().ReportInvalidAcquisitionType(
            "Invalid Acquisition Type error");
    });
}

void PixmapTransfer::SetUp() {
    // The instrument takes no-break spaces in these.
    Steps().Write(
        "WFMOUTPRE:ENCDG\xA0"
        "BIN");
    Steps().Write(
        "WFMOUTPRE:BYT_OR\xA0"
        "LSB");
    if (form_ == PixmapForm::kVector) {
        Steps().Write(
            "WFMOUTPRE:BN_FMT\xA0"
            "RP");
    }
    Steps().QueryLong("ACQ:STATE?", running_);
    if (running_ == 1) {
        Steps().Write("ACQ:STATE 0");
    }
}

SafeArrayPtr PixmapTransfer::MakeArray() const {
    const std::array<SAFEARRAYBOUND, 2> bounds = {{{size_.rows, 0}, {size_.columns, 0}}};
    return SafeArrayPtr(form_ == PixmapForm::kTable
                            ? SafeArrayCreate(VT_R8, 2, bounds.data())
                            : SafeArrayCreateVector(VT_R8, 0, size_.rows * size_.columns));
}

// Both forms have a column's rows side by side in storage, as the block has them.
void PixmapTransfer::Fill(SAFEARRAY* array) const {
    const std::span<const std::uint8_t> bytes = curve_.Bytes();
    auto* element = static_cast<double*>(array->pvData);
    const std::size_t count =
        std::min<std::size_t>(bytes.size() / kElementWidth, size_.rows * size_.columns);
    for (std::size_t i = 0; i < count; ++i) {
        element[i] = ElementAt(bytes.data() + i * kElementWidth);
    }
}

void PixmapTransfer::ReadMap(SAFEARRAY** map) {
    if (!Steps().Good()) {
        return;
    }
    SafeArrayPtr array = MakeArray();
    if (!array || !curve_.Allocate()) {
        return;
    }
    const bool complete = curve_.ReadData();
    curve_.Unlock();
    if (complete) {
        Fill(array.Get());
        *map = array.Detach();
    }
}

void PixmapTransfer::Restore() {
    if (running_ == 1) {
        Steps().Write("ACQ:STATE ON");
    }
    Steps().Write("DATA:SOURCE %$Cs", &source_);
    // The input's preamble, although the output's was asked for. Callers may count on either being
    // as this leaves it, so it stays.
    Steps().Write("WFMINPRE:BYT_OR %$Cs;ENCD %$Cs", &byteOrder_, &encoding_);
    access_.RestoreHeader();
}

}  // namespace kestrion
