// What the conformance tests of events have in common: the completion of an asynchronous transfer
// is the event that every link has.
#pragma once

#include <gmock/gmock.h>

#include <vector>

#include "tests/visa/conformance_fixture.h"

namespace published {

// What the handlers were called with.
struct Calls {
    const Functions& visa;
    std::vector<int> handlers = {};  // numbers, in the order of the calls
    ViSession session = VI_NULL;     // of the last call, as what follows
    ViEventType type = 0;
    ViEventType typeOfContext = 0;
    ViStatus status = VI_SUCCESS;  // of what the context tells
    std::string operation = {};
    ViEvent context = VI_NULL;
    ViStatus answer = VI_SUCCESS;
};

// Each instance is a handler of its own; its user handle is a Calls.
template <int kNumber>
ViStatus Handle(ViSession session, ViEventType type, ViEvent context, ViAddr userHandle) {
    auto& calls = *static_cast<Calls*>(userHandle);
    char operation[256] = "";
    EXPECT_EQ(calls.visa.viGetAttribute(context, VI_ATTR_EVENT_TYPE, &calls.typeOfContext),
              VI_SUCCESS);
    EXPECT_EQ(calls.visa.viGetAttribute(context, VI_ATTR_STATUS, &calls.status), VI_SUCCESS);
    EXPECT_EQ(calls.visa.viGetAttribute(context, VI_ATTR_OPER_NAME, operation), VI_SUCCESS);
    calls.operation = operation;
    calls.handlers.push_back(kNumber);
    calls.session = session;
    calls.type = type;
    calls.context = context;
    return calls.answer;
}

class EventConformanceTest : public ConformanceTest {
  protected:
    [[nodiscard]] ViStatus Enable(ViUInt16 mechanism,
                                  ViEventType type = VI_EVENT_IO_COMPLETION) const {
        return visa.viEnableEvent(session_, type, mechanism, 0);
    }
    [[nodiscard]] ViStatus Disable(ViUInt16 mechanism,
                                   ViEventType type = VI_EVENT_IO_COMPLETION) const {
        return visa.viDisableEvent(session_, type, mechanism);
    }
    [[nodiscard]] ViStatus Discard(ViUInt16 mechanism,
                                   ViEventType type = VI_EVENT_IO_COMPLETION) const {
        return visa.viDiscardEvents(session_, type, mechanism);
    }
    [[nodiscard]] ViStatus Wait(ViEventType type = VI_EVENT_IO_COMPLETION,
                                ViUInt32 timeout = 0) const {
        return visa.viWaitOnEvent(session_, type, timeout, nullptr, nullptr);
    }
    template <int kNumber>
    void Install(Calls& calls, ViEventType type = VI_EVENT_IO_COMPLETION) const {
        ASSERT_EQ(visa.viInstallHandler(session_, type, Handle<kNumber>, &calls), VI_SUCCESS);
    }
};

}  // namespace published
