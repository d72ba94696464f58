// A waveform that a program sends to a reference memory: CURVe with the settings of WFMInpre.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "virtual/preamble.h"
#include "virtual/scpi_error.h"
#include "virtual/settings.h"
#include "virtual/stored_waveform.h"
#include "virtual/time_axis.h"

namespace virtual_scope {

struct UploadFormat {
    NumberFormat format = NumberFormat::kSigned;
    ByteOrder order = ByteOrder::kMsbFirst;
    int width = 1;
    std::int64_t points = 0;  // at most so many are stored
    TimeAxis axis;
    VerticalScale scale;  // of a level as it is sent
};

[[nodiscard]] UploadFormat UploadFormatOf(const Settings& settings);

// Makes a waveform of a definite length block, or of numbers that are parted by commas.
// `kInvalidBlockData` for a block that is cut short or holds no whole number of points,
// `kDataTypeError` for what is no number, `kSettingsConflict` for floats that don't have 4 bytes,
// and for a scale of nothing.
[[nodiscard]] ScpiError ReadUpload(const UploadFormat& format,
                                   std::span<const std::string> parameters,
                                   StoredPointer& waveform);

}  // namespace virtual_scope
