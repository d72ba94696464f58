// Where the files lie that the driver is installed with.
#pragma once

#include <string>
#include <string_view>

namespace kestrion {

// The folder of `file` among the driver's shared files, found from where this code was loaded: a
// tree that was installed may be moved as a whole. Empty if there is none.
[[nodiscard]] std::string SharedFolder(std::string_view file);

// The same for code in the library or program at `modulePath`, which is <prefix>/lib/libX.so or, on
// systems with several architectures, <prefix>/lib/<architecture>/libX.so.
[[nodiscard]] std::string SharedFolderOf(std::string_view modulePath, std::string_view file);

}  // namespace kestrion
