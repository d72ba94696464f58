#include "hosting/bundled_visa.h"

#include "visa/functions.h"

namespace kestrion {

const BundledVisa& GetBundledVisa() {
    static constexpr visa::FunctionTable kFunctions = {
        .viOpenDefaultRM = visa_provider::viOpenDefaultRM,
        .viOpen = visa_provider::viOpen,
        .viClose = visa_provider::viClose,
        .viGetAttribute = visa_provider::viGetAttribute,
        .viSetAttribute = visa_provider::viSetAttribute,
        .viStatusDesc = visa_provider::viStatusDesc,
        .viRead = visa_provider::viRead,
        .viWrite = visa_provider::viWrite,
        .viReadAsync = visa_provider::viReadAsync,
        .viWriteAsync = visa_provider::viWriteAsync,
        .viAssertTrigger = visa_provider::viAssertTrigger,
        .viReadSTB = visa_provider::viReadSTB,
        .viClear = visa_provider::viClear,
        .viLock = visa_provider::viLock,
        .viUnlock = visa_provider::viUnlock,
        .viEnableEvent = visa_provider::viEnableEvent,
        .viDisableEvent = visa_provider::viDisableEvent,
        .viDiscardEvents = visa_provider::viDiscardEvents,
        .viWaitOnEvent = visa_provider::viWaitOnEvent,
        .viInstallHandler = visa_provider::viInstallHandler,
        .viUninstallHandler = visa_provider::viUninstallHandler,
    };
    static const BundledVisa kBundled{.functions = &kFunctions, .name = "bundled provider"};
    return kBundled;
}

}  // namespace kestrion
