// Statuses in words.
#pragma once

#include <string>

#include "visa/visa.h"

namespace visa_provider {

// A text for the status, at most 255 characters. For a status that the provider doesn't know the
// text has its number, and `isKnown` becomes false.
[[nodiscard]] std::string StatusText(ViStatus status, bool& isKnown);

}  // namespace visa_provider
