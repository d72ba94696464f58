// A session to a virtual instrument that requests service, and handlers that note their calls.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/visa/session_fixture.h"

namespace visa_provider::testing {

inline constexpr ViEventType kRequest = VI_EVENT_SERVICE_REQ;

// What a handler was called with, in order.
struct Call {
    int handler;
    ViSession session;
    ViEventType type;
    ViUInt32 typeOfContext;
};

struct Calls {
    std::vector<Call> list;
    ViEvent lastContext = VI_NULL;

    [[nodiscard]] std::vector<int> Handlers() const {
        std::vector<int> handlers;
        for (const auto& call : list) {
            handlers.push_back(call.handler);
        }
        return handlers;
    }
};

template <int kNumber>
ViStatus Handle(ViSession session, ViEventType type, ViEvent context, ViAddr userHandle) {
    auto& calls = *static_cast<Calls*>(userHandle);
    ViUInt32 typeOfContext = 0;
    EXPECT_EQ(viGetAttribute(context, VI_ATTR_EVENT_TYPE, &typeOfContext), VI_SUCCESS);
    calls.list.push_back({kNumber, session, type, typeOfContext});
    calls.lastContext = context;
    return VI_SUCCESS;
}

class EventTest : public VisaTest {
  protected:
    void SetUp() override {
        VisaTest::SetUp();
        session_ = OpenVirtual();
    }

    [[nodiscard]] ViStatus Enable(ViUInt16 mechanism) const {
        return viEnableEvent(session_, kRequest, mechanism, 0);
    }
    [[nodiscard]] ViStatus Disable(ViUInt16 mechanism) const {
        return viDisableEvent(session_, kRequest, mechanism);
    }
    void Request(int times = 1) const {
        for (int i = 0; i < times; ++i) {
            ASSERT_EQ(Write(session_, "SRQ\n"), VI_SUCCESS);
        }
    }
    [[nodiscard]] ViStatus Wait(ViUInt32 timeout = 0) const {
        return viWaitOnEvent(session_, kRequest, timeout, nullptr, nullptr);
    }
    template <int kNumber>
    void Install(Calls& calls) const {
        ASSERT_EQ(viInstallHandler(session_, kRequest, Handle<kNumber>, &calls), VI_SUCCESS);
    }

    ViSession session_ = VI_NULL;
};

}  // namespace visa_provider::testing
