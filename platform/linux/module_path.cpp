#include "platform/module_path.h"

#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <system_error>

namespace kestrion {

std::string ModulePath(const void* address) {
    Dl_info symbol{};
    void* entry = nullptr;
    if (dladdr1(address, &symbol, &entry, RTLD_DL_LINKMAP) == 0 || entry == nullptr) {
        return {};
    }
    // The program itself stands in the list without a name.
    const std::filesystem::path name(static_cast<const link_map*>(entry)->l_name);
    std::error_code error;
    const std::filesystem::path path =
        std::filesystem::canonical(name.empty() ? "/proc/self/exe" : name, error);
    return error ? std::string() : path.string();
}

}  // namespace kestrion
