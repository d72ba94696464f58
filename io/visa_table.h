// Chooses and loads the VISA library that a session talks through.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "io/visa_api.h"
#include "platform/loader.h"

namespace kestrion {

// The environment variable that names a VISA library, and the word that names the bundled one.
inline constexpr const char* kVisaLibraryVariable = "KESTRION_VISA_LIBRARY";
inline constexpr std::string_view kBundledWord = "bundled";
// A resource that begins so, in upper or lower case, belongs to the bundled library always.
inline constexpr std::string_view kVirtualPrefix = "VIRTUAL";

// The VISA functions that are linked into the program. The table has to outlive every session; a
// null one means that there are none.
struct BundledVisa {
    const visa::FunctionTable* functions = nullptr;
    std::string name;
};

// A loaded library. The functions are valid while it lives. Immutable, so any thread may use it.
class VisaLibrary {
  public:
    VisaLibrary(const visa::FunctionTable& functions, std::string name, std::string reason,
                std::unique_ptr<SharedLibrary> library);

    [[nodiscard]] const visa::FunctionTable& Functions() const { return functions_; }
    // Which library it is, and why it was chosen, for a person to read.
    [[nodiscard]] const std::string& Name() const { return name_; }
    [[nodiscard]] const std::string& Reason() const { return reason_; }

  private:
    // Null for the bundled one.
    std::unique_ptr<SharedLibrary> library_;
    visa::FunctionTable functions_;
    std::string name_;
    std::string reason_;
};

// What the choice asks of the system; replaced in tests.
struct VisaSeams {
    // The variable's value, or null.
    std::function<const char*(const char* variable)> getEnvironment;
    // The library, or null with the reason.
    std::function<std::unique_ptr<SharedLibrary>(const std::string& name, std::string& reason)>
        load;

    [[nodiscard]] static VisaSeams System();
};

// Either a library or the text of what went wrong.
struct VisaSelection {
    std::shared_ptr<const VisaLibrary> chosen;
    std::string error;
};

// The library for a resource: the bundled one for VIRTUAL resources; else the one that the
// environment names; else the one that the system has; else the bundled one. A named library that
// can't be used is an error, with the reason: nothing else is tried in its place.
[[nodiscard]] VisaSelection SelectVisaLibrary(std::string_view resource, const BundledVisa& bundled,
                                              const VisaSeams& seams = VisaSeams::System());

}  // namespace kestrion
