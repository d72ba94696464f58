// Status words and sentinels that the whole of the instrument I/O shares.
#pragma once

#include "kestrion/platform/types.h"

namespace kestrion {

// Success, with more of the same response to come. 0 from a read means that the response is
// complete. The formatted reader goes on for as long as the status is exactly this.
inline constexpr HRESULT IoStatusMoreData = 0x00040102;

// A time-out argument that leaves the session's time-out alone. Other values are milliseconds that
// hold for one call; -1 is VISA's infinite.
inline constexpr std::int32_t kKeepTimeout = -2;

}  // namespace kestrion
