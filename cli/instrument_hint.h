// What the instrument itself has to say when it doesn't answer.
#pragma once

#include <string>

#include "cli/scope_client.h"

namespace kestrion::cli {

// "-113, Undefined header".
[[nodiscard]] std::string ErrorText(const InstrumentError& error);

// A hint from the instrument's error queue, whose oldest entry it takes; `otherwise` where the
// queue is empty or can't be asked either.
[[nodiscard]] std::string HintFromInstrument(ScopeClient& client, const std::string& otherwise);

}  // namespace kestrion::cli
