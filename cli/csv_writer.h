// Waveforms as comma-separated values.
#pragma once

#include "cli/output_file.h"
#include "cli/waveform.h"
#include "cli/writer_progress.h"

namespace kestrion::cli {

// Writes one header line, "time_s,CH1_V,CH2_V", and a line for each point, ended by LF. Sources
// that don't share a time axis have a time column each, "CH1_time_s,CH1_V,MATH1_time_s,MATH1_V",
// and a shorter one's fields stay empty at the end. Times are in seconds from the trigger. Numbers
// are the shortest text that reads back as the same double, in no locale. `waveforms` isn't empty.
// The memory used doesn't depend on the number of points. Throws Failure; the caller commits.
void WriteCsv(OutputFile& file, const Waveforms& waveforms, const WriterProgress& progress = {});

}  // namespace kestrion::cli
