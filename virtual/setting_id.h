// The settings that other parts of the instrument look at.
#pragma once

#include <cstdint>

namespace virtual_scope {

enum class SettingId : std::uint8_t {
    kNone,
    // messages
    kHeader,
    kVerbose,
    // acquisition
    kStopAfter,
    kAcquisitionMode,
    kAverages,
    kEnvelopes,
    kEnhancedBits,
    // horizontal
    kRecordLength,
    kHorizontalScale,
    kHorizontalPosition,
    kDelayMode,
    kDelayTime,
    kDelayPosition,
    // vertical
    kChannelScale,
    kChannelPosition,
    kChannelOffset,
    kChannelCoupling,
    kChannelBandwidth,
    kEnhancedBandwidth,
    kExternalAttenuation,
    // what is on the screen
    kSelectChannel,
    kSelectMath,
    kSelectReference,
    // transfer
    kDataSource,
    kDataStart,
    kDataStop,
    kOutputEncoding,
    kOutputFormat,
    kOutputOrder,
    kOutputWidth,
    kCount
};

}  // namespace virtual_scope
