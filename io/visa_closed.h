// What stands in the place of a VISA library while there is none.
#pragma once

#include "io/visa_api.h"

namespace kestrion::visa {

// A table whose every function answers VI_ERROR_INV_OBJECT, so that a session without a library
// has functions to call. It lives as long as the process.
[[nodiscard]] const FunctionTable& ClosedFunctions();

}  // namespace kestrion::visa
