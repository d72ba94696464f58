// The configuration store in the published XML form (IVI-3.5, section 26 and the example in its
// appendix A).
//
// What is read: the sections LogicalNames, DriverSessions, Sessions, HardwareAssets and
// SoftwareModules of an IviConfigStore, each an empty list where it is left out; an element with an
// idref stands for the one with that id. What a driver doesn't ask for is skipped.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "store/configuration_store.h"

namespace kestrion {

// The largest file that is taken for a store.
inline constexpr std::uint64_t kMaxStoreBytes = 16U << 20U;

// Reads a whole store; `bytes` may be anything. Null with the reason, as the end of a sentence,
// where it isn't in order: no XML or of another kind, an id or a name that stands twice, a
// reference that leads nowhere, to an element of another kind or back to itself, a value that isn't
// of its type or is missing, or more of anything than a store can reasonably hold.
[[nodiscard]] std::shared_ptr<const ConfigurationStore> ReadXmlStore(std::string_view bytes,
                                                                     std::string& reason);

}  // namespace kestrion
