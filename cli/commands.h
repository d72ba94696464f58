// The program's commands. Each does its work and returns what goes to standard output; it throws
// Failure, and then nothing is printed there.
#pragma once

#include <memory>
#include <string>

#include "cli/arguments.h"
#include "cli/environment.h"

namespace kestrion::cli {

[[nodiscard]] std::string RunInfo(const InfoArguments& arguments, const Environment& environment);
[[nodiscard]] std::string RunCapture(const CaptureArguments& arguments,
                                     const Environment& environment);
[[nodiscard]] std::string RunMeasure(const MeasureArguments& arguments,
                                     const Environment& environment);
[[nodiscard]] std::string RunScpi(const ScpiArguments& arguments, const Environment& environment);
[[nodiscard]] std::string RunModels(const ModelsArguments& arguments,
                                    const Environment& environment);

// Connects as the arguments say. A failure carries a hint about what to try next.
[[nodiscard]] std::unique_ptr<ScopeClient> Connect(const ConnectionArguments& arguments,
                                                   const Environment& environment);

}  // namespace kestrion::cli
