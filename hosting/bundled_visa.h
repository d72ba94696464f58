// The VISA provider that is linked into the driver, as a table.
#pragma once

#include "io/visa_table.h"

namespace kestrion {

// Lives as long as the process.
[[nodiscard]] const BundledVisa& GetBundledVisa();

}  // namespace kestrion
