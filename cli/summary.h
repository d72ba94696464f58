// The numbers that a capture prints.
#pragma once

#include <string>
#include <vector>

#include "cli/scope_client.h"
#include "cli/waveform.h"

namespace kestrion::cli {

// One line that says which instrument it is, ended by LF; what isn't known is left out.
[[nodiscard]] std::string RenderIdentity(const InstrumentIdentity& instrument);

// A table with a line for each waveform: source, points, interval, minimum, maximum, mean and
// frequency, in columns, each line ended by LF.
[[nodiscard]] std::string RenderSummary(const Waveforms& waveforms);

// Lines of cells, the columns aligned: the first to the left, the others to the right.
[[nodiscard]] std::string RenderTable(const std::vector<std::vector<std::string>>& rows);

}  // namespace kestrion::cli
