#include "platform/environment.h"

#include <cstdlib>
#include <string_view>

namespace kestrion {
namespace {

// A relative path counts as not given (XDG Base Directory Specification, version 0.8, section 2).
bool IsAbsolute(std::string_view path) {
    return path.starts_with('/');
}

std::string UserFolder(const EnvironmentReader& environment) {
    if (const auto given = environment("XDG_CONFIG_HOME"); given && IsAbsolute(*given)) {
        return *given;
    }
    const auto home = environment("HOME");
    return home && IsAbsolute(*home) ? *home + "/.config" : std::string();
}

std::vector<std::string> SystemFolders(const EnvironmentReader& environment) {
    const std::string given = environment("XDG_CONFIG_DIRS").value_or("/etc/xdg");
    std::vector<std::string> folders;
    for (std::string_view rest = given; !rest.empty();) {
        const std::size_t colon = rest.find(':');
        const std::string_view folder = rest.substr(0, colon);
        if (IsAbsolute(folder)) {
            folders.emplace_back(folder);
        }
        rest.remove_prefix(colon == std::string_view::npos ? rest.size() : colon + 1);
    }
    return folders;
}

}  // namespace

std::optional<std::string> ReadEnvironment(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') {
        return std::nullopt;
    }
    return value;
}

ConfigurationFolders FindConfigurationFolders(const EnvironmentReader& environment) {
    return {.user = UserFolder(environment), .system = SystemFolders(environment)};
}

}  // namespace kestrion
