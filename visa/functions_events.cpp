// Events.
#include "visa/functions.h"
#include "visa/guard.h"

namespace visa_provider {

ViStatus viEnableEvent(ViSession session, ViEventType type, ViUInt16 mechanism,
                       ViEventFilter context) {
    return WithSession("viEnableEvent", session, [&](Session& found) {
        if (context != VI_NULL) {
            return VI_ERROR_INV_CONTEXT;
        }
        return found.Events().Enable(type, mechanism);
    });
}

ViStatus viDisableEvent(ViSession session, ViEventType type, ViUInt16 mechanism) {
    return WithSession("viDisableEvent", session,
                       [&](Session& found) { return found.Events().Disable(type, mechanism); });
}

ViStatus viDiscardEvents(ViSession session, ViEventType type, ViUInt16 mechanism) {
    return WithSession("viDiscardEvents", session,
                       [&](Session& found) { return found.Events().Discard(type, mechanism); });
}

ViStatus viWaitOnEvent(ViSession session, ViEventType type, ViUInt32 timeout, ViPEventType outType,
                       ViPEvent outContext) {
    if (outType) {
        *outType = 0;
    }
    if (outContext) {
        *outContext = VI_NULL;
    }
    return WithSession("viWaitOnEvent", session, [&](Session& found) {
        Occurrence taken;
        const ViStatus status = found.WaitOnEvent(type, timeout, taken);
        if (status < 0) {
            return status;
        }
        if (outType) {
            *outType = taken.type;
        }
        if (outContext) {
            auto context = std::make_shared<EventContext>(std::move(taken));
            *outContext = ObjectTable::Instance().Insert(context, found.Manager());
        }
        return status;
    });
}

ViStatus viInstallHandler(ViSession session, ViEventType type, ViHndlr handler, ViAddr userHandle) {
    return WithSession("viInstallHandler", session, [&](Session& found) {
        return found.Events().InstallHandler(type, Handler{handler, userHandle});
    });
}

ViStatus viUninstallHandler(ViSession session, ViEventType type, ViHndlr handler,
                            ViAddr userHandle) {
    return WithSession("viUninstallHandler", session, [&](Session& found) {
        return found.Events().UninstallHandler(type, Handler{handler, userHandle});
    });
}

}  // namespace visa_provider
