#include "scope/waveform_sinks.h"

#include "platform/storage.h"

namespace kestrion {
namespace {

bool Create(VARTYPE kind, std::size_t elements, SafeArrayPtr& array) {
    array = SafeArrayPtr(CreateVectorToFill(kind, static_cast<ULONG>(elements)));
    return static_cast<bool>(array);
}

}  // namespace

bool VoltsSink::Prepare(std::size_t points) {
    return Create(VT_R8, points, volts_);
}

void VoltsSink::Take(const WaveformRecord& record) {
    ScaleToVolts(record.bytes, record.format, record.scale, volts_.Elements<double>());
    *target_ = volts_.Detach();
}

bool PairsSink::Prepare(std::size_t points) {
    return Create(VT_R8, points / 2, first_) && Create(VT_R8, points / 2, second_);
}

void PairsSink::Take(const WaveformRecord& record) {
    ScalePairsToVolts(record.bytes, record.format, record.scale, first_.Elements<double>(),
                      second_.Elements<double>());
    *minimum_ = first_.Detach();
    *maximum_ = second_.Detach();
}

bool LevelsSink::Prepare(std::size_t points) {
    return Create(VT_I4, points, levels_);
}

void LevelsSink::Take(const WaveformRecord& record) {
    const std::uint8_t* byte = record.bytes.data();
    for (LONG& level : levels_.Elements<LONG>()) {
        level = static_cast<std::int8_t>(*byte++);
    }
    *scale_.yZero = record.scale.yZero;
    *scale_.yMult = record.scale.yMult;
    *scale_.yOffset = record.scale.yOffset;
    *target_ = levels_.Detach();
}

}  // namespace kestrion
