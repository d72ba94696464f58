// Makes the root object out of its parts.
#pragma once

#include "core/driver.h"
#include "kestrion/interfaces/IKestrion.h"

namespace kestrion {

// What a driver in a program is made of: the system's clock, and VISA and the configuration store
// as the machine has them.
[[nodiscard]] DriverEnvironment SystemEnvironment();

// A root over `environment`, with one count for the caller. E_POINTER, E_OUTOFMEMORY.
[[nodiscard]] HRESULT CreateKestrion(DriverEnvironment environment, IKestrion** created);

}  // namespace kestrion
