// Which file the running code was loaded from.
#pragma once

#include <string>

namespace kestrion {

// The library or program that holds `address`, such as that of a function, as an absolute path
// without links. Empty where the system doesn't tell, or when no file holds the address. Any
// thread.
[[nodiscard]] std::string ModulePath(const void* address);

}  // namespace kestrion
