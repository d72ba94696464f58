// Waveforms as a NumPy array file.
#pragma once

#include <filesystem>
#include <string>

#include "cli/output_file.h"
#include "cli/scope_client.h"
#include "cli/waveform.h"
#include "cli/writer_progress.h"

namespace kestrion::cli {

// Writes the array of volts as little-endian 64-bit floating-point numbers, straight from the
// points' storage: of shape (points,) for one source and (sources, points) for several. The header
// is that of format version 1.0, its data aligned to 64 bytes as the format asks. `waveforms` isn't
// empty. Throws Failure, also for sources that don't share a time axis; the caller commits.
void WriteNpy(OutputFile& file, const Waveforms& waveforms, const WriterProgress& progress = {});

// The array file holds no time base, so a JSON text beside it does: "sources", "points",
// "initial_x_s", "x_increment_s", "unit" and "identity". The same conditions hold.
void WriteNpySidecar(OutputFile& file, const Waveforms& waveforms,
                     const InstrumentIdentity& identity);

// "run1.npy" gives "run1.json"; a name without that ending gets ".json" at its end.
[[nodiscard]] std::filesystem::path NpySidecarPath(const std::filesystem::path& array);

// The header of an array file, from the magic bytes to the line end; `dimensions` is the content of
// the shape's parentheses, such as "1000," or "2, 1000".
[[nodiscard]] std::string NpyHeader(const std::string& dimensions);

}  // namespace kestrion::cli
