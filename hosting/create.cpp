#include "hosting/create.h"

#include <utility>

#include "core/status_error.h"
#include "hosting/bundled_visa.h"
#include "hosting/objects.h"
#include "kestrion/kestrion.h"
#include "store/store_location.h"

namespace kestrion {

DriverEnvironment SystemEnvironment() {
    return {
        .makeRepCap = MakeRepCap,
        .chooseVisa =
            [](std::string_view resource) { return SelectVisaLibrary(resource, GetBundledVisa()); },
        .openStore = [] { return OpenConfigurationStore(); },
        .clock = &SystemClock()};
}

HRESULT CreateKestrion(DriverEnvironment environment, IKestrion** created) {
    if (created == nullptr) {
        return E_POINTER;
    }
    *created = nullptr;
    try {
        const auto root = ComPtr<CDriver>::Attach(new Kestrion(std::move(environment)));
        void* found = nullptr;
        const HRESULT status = root->QueryInterface(kInterfaceId<IKestrion>, &found);
        *created = static_cast<IKestrion*>(found);
        return status;
    } catch (...) {
        return CurrentExceptionStatus();
    }
}

HRESULT CreateKestrion(IKestrion** created) {
    return CreateKestrion(SystemEnvironment(), created);
}

const char* Version() {
    return KESTRION_VERSION;
}

}  // namespace kestrion
