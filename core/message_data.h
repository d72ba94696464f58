// The driver's messages and its identity as plain data, which the generator makes from the model.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "kestrion/platform/types.h"

namespace kestrion {

// One message: %1 to %3 in the text are its arguments.
struct MessageData {
    std::int32_t code;
    HRESULT status;
    std::uint32_t helpContext;
    std::string_view text;  // begins with "Kestrion: " and ends in CR LF, as in the resource
};

// The messages, lowest code first.
[[nodiscard]] std::span<const MessageData> AllMessages();

// What the driver says of itself.
struct DriverMetadata {
    std::string_view driverName;
    std::string_view identifier;
    std::string_view vendor;
    std::string_view description;
    std::string_view revision;
    std::string_view groupCapabilities;
    std::string_view supportedInstrumentModels;
    std::string_view defaultModel;
    std::int32_t specificationMajorVersion;
    std::int32_t specificationMinorVersion;
    bool supportsInterchangeCheck;
    bool supportsIdQuery;
    bool supportsReset;
    bool supportsSelfTest;
    bool supportsErrorQuery;
    std::int32_t selfTestTimeout;  // milliseconds, as the next two
    std::int32_t disableTimeout;
    std::int32_t resetTimeout;
    std::int32_t maxCoercionRecords;
    std::string_view progId;  // of the root class
    std::string_view helpFile;
};

[[nodiscard]] const DriverMetadata& Metadata();

}  // namespace kestrion
