#include "scope/waveform_reference.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace kestrion {
namespace {

// Where the trigger stands in the record, in points: `initialX` is that far in front of it.
LONG TriggerOffset(double initialX, double xIncrement) {
    const double points = std::round(-initialX / xIncrement);
    if (std::isnan(points)) {
        return 0;
    }
    constexpr double kLeast = std::numeric_limits<LONG>::min();
    constexpr double kMost = std::numeric_limits<LONG>::max();
    return static_cast<LONG>(std::clamp(points, kLeast, kMost));
}

// Single precision, least significant byte first, on any processor.
std::vector<std::uint8_t> SinglePrecision(std::span<const double> volts) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(volts.size() * 4);
    for (const double value : volts) {
        const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
        for (int shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<std::uint8_t>(bits >> shift));
        }
    }
    return bytes;
}

}  // namespace

HRESULT ReferenceTransfer::Run(std::span<const double> volts, double initialX, double xIncrement) {
    if (!access_.HideHeader()) {
        return Steps().Status();
    }
    SaveState();
    SetUp(volts.size(), initialX, xIncrement);
    if (Steps().Good()) {
        Steps().SetStatus(WriteBlock(volts));
    }
    Restore();
    return Steps().Status();
}

void ReferenceTransfer::SaveState() {
    MemberCall& call = access_.Call();
    // What isn't answered is put back empty; only the last query decides.
    (void)call.QueryText("DATA:DESTINATION?", saved_.destination);
    (void)call.QueryText("DATA:START?", saved_.start);
    (void)call.QueryText("WFMINPRE:BN_FMT?", saved_.format);
    (void)call.QueryText("WFMINPRE:BYT_OR?", saved_.byteOrder);
    (void)call.QueryText("WFMINPRE:ENCD?", saved_.encoding);
    (void)call.QueryText("WFMINPRE:BYT_NR?", saved_.width);
    (void)call.QueryText("WFMINPRE:YMULT?", saved_.yMult);
    (void)call.QueryText("WFMINPRE:PT_OFF?", saved_.offset);
    (void)call.QueryText("WFMINPRE:NR_PT?", saved_.points);
    (void)call.QueryText("WFMINPRE:XINCR?", saved_.xIncrement);
    std::string running;
    Steps().SetStatus(call.QueryText("ACQUIRE:STATE?", running));
}

void ReferenceTransfer::SetUp(std::size_t points, double initialX, double xIncrement) {
    Steps().Write("DATA:DESTINATION %$Cs", &access_.Name());
    Steps().Write("WFMINPRE:NR_PT %d;PT_OFF %d", static_cast<LONG>(points),
                  TriggerOffset(initialX, xIncrement));
    Steps().Write("WFMINPRE:XINCR %g", xIncrement);
    Steps().Write("WFMINPRE:ENCDG BIN;BN_FMT FP;BYT_NR 4;YMULT 1.0");
    Steps().Write(":WFMINPRE:BYT_OR LSB");
}

HRESULT ReferenceTransfer::WriteBlock(std::span<const double> volts) {
    const std::vector<std::uint8_t> bytes = SinglePrecision(volts);
    const std::string length = std::to_string(bytes.size());
    const std::string header = "CURVE #" + std::to_string(length.size()) + length;
    auto& session = access_.Call().Session();
    if (bytes.empty()) {
        return session.WriteString(std::string_view(header), true);
    }
    const HRESULT status = session.WriteStringNoPoll(std::string_view(header), false);
    return Failed(status)
               ? status
               : session.WriteBytes(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr,
                                    true);
}

void ReferenceTransfer::Restore() {
    // What was the destination goes back as the source.
    Steps().Write("DATA:SOURCE %$Cs;START %$Cs", &saved_.destination, &saved_.start);
    Steps().Write(
        "WFMINPRE:BN_FMT %$Cs;BYT_OR %$Cs;ENCD %$Cs;BYT_NR %$Cs;YMULT %$Cs;PT_OFF %$Cs;"
        "NR_PT %$Cs;XINCR %$Cs",
        &saved_.format, &saved_.byteOrder, &saved_.encoding, &saved_.width, &saved_.yMult,
        &saved_.offset, &saved_.points, &saved_.xIncrement);
    access_.RestoreHeader();
}

}  // namespace kestrion
