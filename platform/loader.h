// Loads a library at run time.
#pragma once

#include <memory>
#include <string>

namespace kestrion {

// A loaded library. Symbols are valid while it lives.
class SharedLibrary {
  public:
    virtual ~SharedLibrary() = default;
    // The address of an exported function, or null.
    [[nodiscard]] virtual void* Symbol(const char* name) const = 0;

    // Loads by path or by the system's search order; null with the system's reason in `reason`.
    [[nodiscard]] static std::unique_ptr<SharedLibrary> Load(const std::string& name,
                                                             std::string& reason);
};

}  // namespace kestrion
