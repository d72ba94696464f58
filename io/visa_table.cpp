#include "io/visa_table.h"

#include <array>
#include <cstdlib>
#include <utility>

#include "platform/text.h"

namespace kestrion {
namespace {

// Where a VISA implementation is installed (VPP-4.3.2, section 4: the name of the shared library).
constexpr std::array<const char*, 2> kSystemNames{"libvisa.so.0", "libvisa.so"};

constexpr std::string_view kNoBundled = "This program has no bundled VISA library.";

// Fills `entry` with the function; its name goes to `missing` if the library lacks it.
template <typename Function>
void Resolve(const SharedLibrary& library, const char* name, Function*& entry,
             std::string& missing) {
    entry = reinterpret_cast<Function*>(library.Symbol(name));
    if (entry == nullptr) {
        missing += missing.empty() ? "" : ", ";
        missing += name;
    }
}

// The names of the functions that the library lacks, separated by commas; empty if it has all.
std::string ResolveAll(const SharedLibrary& library, visa::FunctionTable& table) {
    std::string missing;
    Resolve(library, "viOpenDefaultRM", table.viOpenDefaultRM, missing);
    Resolve(library, "viOpen", table.viOpen, missing);
    Resolve(library, "viClose", table.viClose, missing);
    Resolve(library, "viGetAttribute", table.viGetAttribute, missing);
    Resolve(library, "viSetAttribute", table.viSetAttribute, missing);
    Resolve(library, "viStatusDesc", table.viStatusDesc, missing);
    Resolve(library, "viRead", table.viRead, missing);
    Resolve(library, "viWrite", table.viWrite, missing);
    Resolve(library, "viReadAsync", table.viReadAsync, missing);
    Resolve(library, "viWriteAsync", table.viWriteAsync, missing);
    Resolve(library, "viAssertTrigger", table.viAssertTrigger, missing);
    Resolve(library, "viReadSTB", table.viReadSTB, missing);
    Resolve(library, "viClear", table.viClear, missing);
    Resolve(library, "viLock", table.viLock, missing);
    Resolve(library, "viUnlock", table.viUnlock, missing);
    Resolve(library, "viEnableEvent", table.viEnableEvent, missing);
    Resolve(library, "viDisableEvent", table.viDisableEvent, missing);
    Resolve(library, "viDiscardEvents", table.viDiscardEvents, missing);
    Resolve(library, "viWaitOnEvent", table.viWaitOnEvent, missing);
    Resolve(library, "viInstallHandler", table.viInstallHandler, missing);
    Resolve(library, "viUninstallHandler", table.viUninstallHandler, missing);
    return missing;
}

// Loads a library by name; `error` says why it can't be used.
std::shared_ptr<const VisaLibrary> Load(const std::string& name, const std::string& reason,
                                        const VisaSeams& seams, std::string& error) {
    std::unique_ptr<SharedLibrary> library = seams.load(name, error);
    if (library == nullptr) {
        return nullptr;
    }
    visa::FunctionTable table{};
    const std::string missing = ResolveAll(*library, table);
    if (!missing.empty()) {
        error = "it lacks " + missing;
        return nullptr;
    }
    return std::make_shared<const VisaLibrary>(table, name, reason, std::move(library));
}

VisaSelection UseBundled(const BundledVisa& bundled, const std::string& reason) {
    if (bundled.functions == nullptr) {
        return {nullptr, std::string(kNoBundled)};
    }
    return {std::make_shared<const VisaLibrary>(*bundled.functions, bundled.name, reason, nullptr),
            ""};
}

VisaSelection UseNamed(const std::string& name, const BundledVisa& bundled,
                       const VisaSeams& seams) {
    const std::string reason =
        std::string("the environment variable ") + kVisaLibraryVariable + " names it";
    if (name == kBundledWord) {
        return UseBundled(bundled, reason);
    }
    std::string error;
    auto library = Load(name, reason, seams, error);
    if (library == nullptr) {
        return {nullptr, "The VISA library '" + name + "', which " + kVisaLibraryVariable +
                             " names, can't be used: " + error + ". Name another library or '" +
                             std::string(kBundledWord) + "', or unset the variable."};
    }
    return {std::move(library), ""};
}

VisaSelection UseInstalled(const BundledVisa& bundled, const VisaSeams& seams) {
    std::string tried;
    for (const char* name : kSystemNames) {
        std::string error;
        auto library = Load(name, "it is installed on this system", seams, error);
        if (library != nullptr) {
            return {std::move(library), ""};
        }
        tried += (tried.empty() ? "" : "; ") + std::string(name) + ": " + error;
    }
    VisaSelection selection =
        UseBundled(bundled, "no VISA library is installed on this system (" + tried + ")");
    if (selection.chosen == nullptr) {
        selection.error = "No VISA library is installed on this system (" + tried + "). " +
                          std::string(kNoBundled);
    }
    return selection;
}

}  // namespace

VisaLibrary::VisaLibrary(const visa::FunctionTable& functions, std::string name, std::string reason,
                         std::unique_ptr<SharedLibrary> library)
    : library_(std::move(library)),
      functions_(functions),
      name_(std::move(name)),
      reason_(std::move(reason)) {}

VisaSeams VisaSeams::System() {
    return {[](const char* variable) -> const char* { return std::getenv(variable); },
            [](const std::string& name, std::string& reason) {
                return SharedLibrary::Load(name, reason);
            }};
}

VisaSelection SelectVisaLibrary(std::string_view resource, const BundledVisa& bundled,
                                const VisaSeams& seams) {
    if (EqualsIgnoreCase(resource.substr(0, kVirtualPrefix.size()), kVirtualPrefix)) {
        return UseBundled(bundled, "the resource name begins with VIRTUAL");
    }
    const char* named = seams.getEnvironment(kVisaLibraryVariable);
    if (named != nullptr && *named != '\0') {
        return UseNamed(named, bundled, seams);
    }
    return UseInstalled(bundled, seams);
}

}  // namespace kestrion
