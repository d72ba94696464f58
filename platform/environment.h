// What the process finds around it: environment variables and folders for configuration files.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kestrion {

// Gives the value of an environment variable; nothing where it is unset or empty.
using EnvironmentReader = std::function<std::optional<std::string>(const char* name)>;

// The process's own environment. Any thread, as long as none changes it.
[[nodiscard]] std::optional<std::string> ReadEnvironment(const char* name);

// Where programs keep their configuration files, each below a folder of its own name. The folders
// may not be there. Paths are UTF-8, in the system's own notation.
struct ConfigurationFolders {
    std::string user;                 // empty where the system doesn't tell
    std::vector<std::string> system;  // the more important first
};
[[nodiscard]] ConfigurationFolders FindConfigurationFolders(const EnvironmentReader& environment);

}  // namespace kestrion
