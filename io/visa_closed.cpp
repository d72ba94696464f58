#include "io/visa_closed.h"

#include <algorithm>
#include <string_view>

#include "io/visa_numbers.h"

namespace kestrion::visa {
namespace {

template <typename... Args>
ViStatus Refuse(Args...) {
    return kErrorInvalidObject;
}

ViStatus Describe(ViObject /*object*/, ViStatus /*status*/, char* description) {
    constexpr std::string_view kText = "No VISA library is open for this session.";
    *std::copy(kText.begin(), kText.end(), description) = '\0';
    return kSuccess;
}

constexpr FunctionTable kClosed{
    .viOpenDefaultRM = Refuse,
    .viOpen = Refuse,
    .viClose = Refuse,
    .viGetAttribute = Refuse,
    .viSetAttribute = Refuse,
    .viStatusDesc = Describe,
    .viRead = Refuse,
    .viWrite = Refuse,
    .viReadAsync = Refuse,
    .viWriteAsync = Refuse,
    .viAssertTrigger = Refuse,
    .viReadSTB = Refuse,
    .viClear = Refuse,
    .viLock = Refuse,
    .viUnlock = Refuse,
    .viEnableEvent = Refuse,
    .viDisableEvent = Refuse,
    .viDiscardEvents = Refuse,
    .viWaitOnEvent = Refuse,
    .viInstallHandler = Refuse,
    .viUninstallHandler = Refuse,
};

}  // namespace

const FunctionTable& ClosedFunctions() {
    return kClosed;
}

}  // namespace kestrion::visa
