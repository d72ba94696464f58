// Finds the configuration store of the machine and reads it.
#pragma once

#include "platform/environment.h"
#include "store/configuration_store.h"

namespace kestrion {

// The environment variable that names the file of the store.
inline constexpr const char* kStoreVariable = "IVI_CONFIGURATION_STORE";
// The file's place in a folder for configuration files.
inline constexpr const char* kStoreFile = "kestrion/IviConfigurationStore.xml";

// What is asked of the system; replaced in tests.
struct StoreSeams {
    EnvironmentReader environment = ReadEnvironment;
};

// The store that the environment names; else that of the user; else that of the system. The first
// one that is there decides: where it can't be read there is no store, and nothing else is tried
// in its place. Any thread.
[[nodiscard]] StoreSelection OpenConfigurationStore(const StoreSeams& seams = {});

}  // namespace kestrion
