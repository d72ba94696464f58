#include "core/shared_folder.h"

#include "platform/files.h"
#include "platform/module_path.h"

namespace kestrion {
namespace {

// The folders above that of the module that may be the prefix of the installation.
constexpr int kPrefixLevels = 2;

}  // namespace

std::string SharedFolder(std::string_view file) {
    // Any address in this module serves; a variable's needs no cast from a function.
    static const char here = 0;
    return SharedFolderOf(ModulePath(&here), file);
}

std::string SharedFolderOf(std::string_view modulePath, std::string_view file) {
    if (modulePath.empty()) {
        return {};
    }
    std::string prefix = FolderOf(modulePath);
    for (int level = 0; level < kPrefixLevels; ++level) {
        prefix = FolderOf(prefix);
        std::string folder = ResolvePath(prefix, KESTRION_SHARED_FOLDER);
        if (FileExists(ResolvePath(folder, file))) {
            return folder;
        }
    }
    return {};
}

}  // namespace kestrion
