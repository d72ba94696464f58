// Conformance: the queue and the handlers of events.
#include <thread>

#include "tests/visa/conformance_events.h"

namespace published {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EventConformance : public EventConformanceTest {};
INSTANTIATE_TEST_SUITE_P(Visa, EventConformance, Subjects(), NameOf);

// Queue -------------------------------------------------------------------------------------------

TEST_P(EventConformance, EnableAndDisableTellWhatWasSo) {
    EXPECT_EQ(Disable(VI_QUEUE), VI_SUCCESS_EVENT_DIS);
    EXPECT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Enable(VI_QUEUE), VI_SUCCESS_EVENT_EN);
    EXPECT_EQ(Disable(VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Disable(VI_ALL_MECH), VI_SUCCESS_EVENT_DIS);
}

TEST_P(EventConformance, WaitNeedsTheEventEnabled) {
    Complete();
    EXPECT_EQ(Wait(), VI_ERROR_NENABLED);
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_TMO);
    Complete();
    EXPECT_EQ(Wait(), VI_SUCCESS);
}

TEST_P(EventConformance, WaitThatFailsGivesNoEvent) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    ViEventType type = 5;
    ViEvent context = 5;
    EXPECT_EQ(visa.viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 20, &type, &context),
              VI_ERROR_TMO);
    EXPECT_EQ(type, 0U);
    EXPECT_EQ(context, VI_NULL);
}

TEST_P(EventConformance, WhatIsQueuedStaysWhenTheEventIsDisabled) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    Complete(2);
    ASSERT_EQ(Disable(VI_QUEUE), VI_SUCCESS);
    Complete();
    EXPECT_EQ(Wait(), VI_SUCCESS_QUEUE_NEMPTY);
    EXPECT_EQ(Wait(), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_NENABLED);
}

TEST_P(EventConformance, QueueHoldsItsLengthAndTellsOfTheRest) {
    Set(session_, VI_ATTR_MAX_QUEUE_LENGTH, 3);
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    Complete(5);
    EXPECT_EQ(Wait(), VI_WARN_QUEUE_OVERFLOW);
    EXPECT_EQ(Wait(), VI_SUCCESS_QUEUE_NEMPTY);
    EXPECT_EQ(Wait(), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_TMO);
}

TEST_P(EventConformance, QueueOfOneHoldsOne) {
    Set(session_, VI_ATTR_MAX_QUEUE_LENGTH, 1);
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    Complete();
    EXPECT_EQ(Wait(), VI_SUCCESS);
    Complete(2);
    EXPECT_EQ(Wait(), VI_WARN_QUEUE_OVERFLOW);
    EXPECT_EQ(Wait(), VI_ERROR_TMO);
}

TEST_P(EventConformance, QueueHoldsFiftyByDefault) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    Complete(51);
    EXPECT_EQ(Wait(), VI_WARN_QUEUE_OVERFLOW);
    for (int i = 1; i < 49; ++i) {
        EXPECT_EQ(Wait(), VI_SUCCESS_QUEUE_NEMPTY) << i;
    }
    EXPECT_EQ(Wait(), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_TMO);
}

TEST_P(EventConformance, DiscardEmptiesTheQueue) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Discard(VI_QUEUE), VI_SUCCESS_QUEUE_EMPTY);
    Complete(3);
    EXPECT_EQ(Discard(VI_SUSPEND_HNDLR), VI_SUCCESS_QUEUE_EMPTY);
    EXPECT_EQ(Discard(VI_ALL_MECH), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_TMO);
}

TEST_P(EventConformance, ContextsOutliveTheirSessionUntilTheyAreClosed) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    Complete();
    ViEventType type = 0;
    ViEvent context = VI_NULL;
    ASSERT_EQ(visa.viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, &type, &context), VI_SUCCESS);
    EXPECT_EQ(type, VI_EVENT_IO_COMPLETION);
    ASSERT_EQ(visa.viClose(session_), VI_SUCCESS);
    EXPECT_EQ(Get<ViEventType>(context, VI_ATTR_EVENT_TYPE), VI_EVENT_IO_COMPLETION);
    EXPECT_EQ(visa.viSetAttribute(context, VI_ATTR_EVENT_TYPE, 0), VI_ERROR_ATTR_READONLY);
    EXPECT_EQ(visa.viClose(context), VI_SUCCESS);
    EXPECT_EQ(visa.viClose(context), VI_ERROR_INV_OBJECT);
}

TEST_P(EventConformance, WaitForAllEnabledTakesTheOldest) {
    EXPECT_EQ(Wait(VI_ALL_ENABLED_EVENTS), VI_ERROR_NENABLED);
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    Complete();
    ViEventType type = 0;
    EXPECT_EQ(visa.viWaitOnEvent(session_, VI_ALL_ENABLED_EVENTS, 0, &type, nullptr), VI_SUCCESS);
    EXPECT_EQ(type, VI_EVENT_IO_COMPLETION);
    Complete();
    EXPECT_EQ(Discard(VI_QUEUE, VI_ALL_ENABLED_EVENTS), VI_SUCCESS);
    EXPECT_EQ(Disable(VI_QUEUE, VI_ALL_ENABLED_EVENTS), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_NENABLED);
}

TEST_P(EventConformance, WaitEndsWithTheEventThatAnotherThreadCauses) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    std::thread other([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        Complete();
    });
    EXPECT_EQ(Wait(VI_EVENT_IO_COMPLETION, VI_TMO_INFINITE), VI_SUCCESS);
    other.join();
}

TEST_P(EventConformance, DisableEndsAWait) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    std::thread other([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(Disable(VI_QUEUE), VI_SUCCESS);
    });
    EXPECT_EQ(Wait(VI_EVENT_IO_COMPLETION, VI_TMO_INFINITE), VI_ERROR_NENABLED);
    other.join();
}

// What is refused ---------------------------------------------------------------------------------

TEST_P(EventConformance, MechanismsThatAreNoneAreRefused) {
    for (const int mechanism : {0, VI_HNDLR | VI_SUSPEND_HNDLR, 8, 0x4000}) {
        EXPECT_EQ(Enable(static_cast<ViUInt16>(mechanism)), VI_ERROR_INV_MECH) << mechanism;
    }
    for (const int mechanism : {0, 8, 0x4000}) {
        EXPECT_EQ(Disable(static_cast<ViUInt16>(mechanism)), VI_ERROR_INV_MECH) << mechanism;
        EXPECT_EQ(Discard(static_cast<ViUInt16>(mechanism)), VI_ERROR_INV_MECH) << mechanism;
    }
}

TEST_P(EventConformance, EventsOfOtherInterfacesAreRefused) {
    for (const ViEventType type : {VI_EVENT_TRIG, VI_EVENT_GPIB_CIC, ViEventType{0}}) {
        Calls calls{visa};
        EXPECT_EQ(Enable(VI_QUEUE, type), VI_ERROR_INV_EVENT);
        EXPECT_EQ(Disable(VI_QUEUE, type), VI_ERROR_INV_EVENT);
        EXPECT_EQ(Discard(VI_QUEUE, type), VI_ERROR_INV_EVENT);
        EXPECT_EQ(Wait(type), VI_ERROR_INV_EVENT);
        EXPECT_EQ(visa.viInstallHandler(session_, type, Handle<1>, &calls), VI_ERROR_INV_EVENT);
        EXPECT_EQ(visa.viUninstallHandler(session_, type, Handle<1>, &calls), VI_ERROR_INV_EVENT);
    }
}

TEST_P(EventConformance, ServiceRequestIsAnEventOfWhatCanRequestService) {
    EXPECT_EQ(Enable(VI_QUEUE, VI_EVENT_SERVICE_REQ), IsSocket() ? VI_ERROR_INV_EVENT : VI_SUCCESS);
}

TEST_P(EventConformance, ContextOfEnableHasToBeZero) {
    EXPECT_EQ(visa.viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 1),
              VI_ERROR_INV_CONTEXT);
}

// Handlers ----------------------------------------------------------------------------------------

TEST_P(EventConformance, CallbackNeedsAHandler) {
    EXPECT_EQ(Enable(VI_HNDLR), VI_ERROR_HNDLR_NINSTALLED);
    EXPECT_EQ(Enable(VI_SUSPEND_HNDLR), VI_ERROR_HNDLR_NINSTALLED);
    EXPECT_EQ(visa.viInstallHandler(session_, VI_EVENT_IO_COMPLETION, VI_ANY_HNDLR, nullptr),
              VI_ERROR_INV_HNDLR_REF);
}

TEST_P(EventConformance, HandlersAreCalledTheLastOneFirst) {
    Calls calls{visa};
    Install<1>(calls);
    Install<2>(calls);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    Complete();
    EXPECT_THAT(calls.handlers, ElementsAre(2, 1));
    EXPECT_EQ(calls.session, session_);
    EXPECT_EQ(calls.type, VI_EVENT_IO_COMPLETION);
    EXPECT_EQ(calls.typeOfContext, VI_EVENT_IO_COMPLETION);
    EXPECT_EQ(calls.operation, "viWriteAsync");
    // The provider closes the context of a handler (VPP-4.3, rule 3.7.27).
    EXPECT_EQ(visa.viClose(calls.context), VI_ERROR_INV_OBJECT);
}

TEST_P(EventConformance, HandlerMayKeepTheOthersFromBeingCalled) {
    Calls calls{visa};
    Install<1>(calls);
    Install<2>(calls);
    calls.answer = VI_SUCCESS_NCHAIN;
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    Complete();
    EXPECT_THAT(calls.handlers, ElementsAre(2));
}

TEST_P(EventConformance, QueueAndHandlerAreIndependent) {
    Calls calls{visa};
    Install<1>(calls);
    ASSERT_EQ(Enable(VI_QUEUE | VI_HNDLR), VI_SUCCESS);
    Complete();
    EXPECT_THAT(calls.handlers, ElementsAre(1));
    EXPECT_EQ(Disable(VI_HNDLR), VI_SUCCESS);
    Complete();
    EXPECT_THAT(calls.handlers, ElementsAre(1));
    EXPECT_EQ(Wait(), VI_SUCCESS_QUEUE_NEMPTY);
    EXPECT_EQ(Wait(), VI_SUCCESS);
}

TEST_P(EventConformance, SuspendedEventsAreHandledWhenHandlingGoesOn) {
    Calls calls{visa};
    Install<1>(calls);
    ASSERT_EQ(Enable(VI_SUSPEND_HNDLR), VI_SUCCESS);
    Complete(3);
    EXPECT_THAT(calls.handlers, IsEmpty());
    EXPECT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    EXPECT_THAT(calls.handlers, ElementsAre(1, 1, 1));
    EXPECT_EQ(Enable(VI_SUSPEND_HNDLR), VI_SUCCESS);
    Complete(2);
    EXPECT_EQ(Discard(VI_SUSPEND_HNDLR), VI_SUCCESS);
    EXPECT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    EXPECT_EQ(calls.handlers.size(), 3U);
}

TEST_P(EventConformance, HandlersAreUninstalledByFunctionAndUserHandle) {
    Calls one{visa};
    Calls other{visa};
    const auto uninstall = [this](ViHndlr handler, Calls& calls) {
        return visa.viUninstallHandler(session_, VI_EVENT_IO_COMPLETION, handler, &calls);
    };
    EXPECT_EQ(uninstall(Handle<1>, one), VI_ERROR_HNDLR_NINSTALLED);
    Install<1>(one);
    Install<2>(one);
    Install<1>(other);
    EXPECT_EQ(uninstall(Handle<3>, one), VI_ERROR_INV_HNDLR_REF);
    EXPECT_EQ(uninstall(Handle<2>, other), VI_ERROR_INV_HNDLR_REF);
    EXPECT_EQ(uninstall(VI_ANY_HNDLR, one), VI_SUCCESS);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    Complete();
    EXPECT_THAT(one.handlers, IsEmpty());
    EXPECT_THAT(other.handlers, ElementsAre(1));
    // No handling without a handler (VPP-4.3, rule 3.7.26).
    EXPECT_EQ(uninstall(Handle<1>, other), VI_SUCCESS);
    EXPECT_EQ(Disable(VI_HNDLR), VI_SUCCESS_EVENT_DIS);
}

// Exceptions --------------------------------------------------------------------------------------

TEST_P(EventConformance, ExceptionTellsOfEachFunctionThatFails) {
    Calls calls{visa};
    Install<1>(calls, VI_EVENT_EXCEPTION);
    ASSERT_EQ(Enable(VI_HNDLR, VI_EVENT_EXCEPTION), VI_SUCCESS);
    EXPECT_EQ(visa.viUnlock(session_), VI_ERROR_SESN_NLOCKED);
    EXPECT_THAT(calls.handlers, ElementsAre(1));
    EXPECT_EQ(calls.session, session_);
    EXPECT_EQ(calls.type, VI_EVENT_EXCEPTION);
    EXPECT_EQ(calls.typeOfContext, VI_EVENT_EXCEPTION);
    EXPECT_EQ(calls.status, VI_ERROR_SESN_NLOCKED);
    EXPECT_EQ(calls.operation, "viUnlock");
    EXPECT_EQ(visa.viClose(calls.context), VI_ERROR_INV_OBJECT);

    Set(session_, VI_ATTR_TMO_VALUE, 5);
    EXPECT_EQ(Read(session_, 1).status, VI_ERROR_TMO);
    EXPECT_EQ(calls.status, VI_ERROR_TMO);
    EXPECT_EQ(calls.operation, "viRead");
    ViUInt64 value = 0;
    EXPECT_EQ(visa.viGetAttribute(session_, 0, &value), VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(calls.operation, "viGetAttribute");
    EXPECT_EQ(visa.viSetAttribute(session_, VI_ATTR_RSRC_NAME, 0), VI_ERROR_ATTR_READONLY);
    EXPECT_EQ(calls.operation, "viSetAttribute");
    EXPECT_EQ(Wait(), VI_ERROR_NENABLED);
    EXPECT_EQ(calls.operation, "viWaitOnEvent");
    EXPECT_EQ(visa.viLock(session_, 7, 0, nullptr, nullptr), VI_ERROR_INV_LOCK_TYPE);
    EXPECT_EQ(calls.operation, "viLock");
    EXPECT_EQ(calls.handlers.size(), 6U);
}

TEST_P(EventConformance, SuccessAndWarningsAreNoExceptions) {
    Calls calls{visa};
    Install<1>(calls, VI_EVENT_EXCEPTION);
    ASSERT_EQ(Enable(VI_HNDLR, VI_EVENT_EXCEPTION), VI_SUCCESS);
    EXPECT_EQ(Enable(VI_HNDLR, VI_EVENT_EXCEPTION), VI_SUCCESS_EVENT_EN);
    ASSERT_EQ(Write(session_, "*IDN?\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 3).status, VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(Disable(VI_HNDLR, VI_EVENT_EXCEPTION), VI_SUCCESS);
    EXPECT_EQ(visa.viUnlock(session_), VI_ERROR_SESN_NLOCKED);
    EXPECT_THAT(calls.handlers, IsEmpty());
}

TEST_P(EventConformance, TransferThatFailsAsynchronouslyIsNoException) {
    Calls calls{visa};
    Install<1>(calls, VI_EVENT_EXCEPTION);
    ASSERT_EQ(Enable(VI_HNDLR, VI_EVENT_EXCEPTION), VI_SUCCESS);
    Set(session_, VI_ATTR_TMO_VALUE, 5);
    ViByte buffer[4];
    EXPECT_EQ(visa.viReadAsync(session_, buffer, 4, nullptr), VI_SUCCESS_SYNC);
    EXPECT_THAT(calls.handlers, IsEmpty());
    EXPECT_EQ(visa.viReadAsync(session_, nullptr, 4, nullptr), VI_ERROR_USER_BUF);
    EXPECT_THAT(calls.handlers, ElementsAre(1));
    EXPECT_EQ(calls.operation, "viReadAsync");
}

TEST_P(EventConformance, ExceptionsKnowHandlersOnly) {
    Calls calls{visa};
    EXPECT_EQ(Enable(VI_HNDLR, VI_EVENT_EXCEPTION), VI_ERROR_HNDLR_NINSTALLED);
    Install<1>(calls, VI_EVENT_EXCEPTION);
    EXPECT_EQ(Enable(VI_QUEUE, VI_EVENT_EXCEPTION), VI_ERROR_NSUP_MECH);
    EXPECT_EQ(Enable(VI_SUSPEND_HNDLR, VI_EVENT_EXCEPTION), VI_ERROR_NSUP_MECH);
    EXPECT_EQ(Enable(VI_QUEUE | VI_HNDLR, VI_EVENT_EXCEPTION), VI_ERROR_NSUP_MECH);
    EXPECT_EQ(Wait(VI_EVENT_EXCEPTION), VI_ERROR_NENABLED);
    // All events together leave this one where it can't follow.
    ASSERT_EQ(Enable(VI_HNDLR, VI_EVENT_EXCEPTION), VI_SUCCESS);
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Enable(VI_QUEUE, VI_ALL_ENABLED_EVENTS), VI_SUCCESS_EVENT_EN);
    EXPECT_EQ(visa.viUnlock(session_), VI_ERROR_SESN_NLOCKED);
    EXPECT_THAT(calls.handlers, ElementsAre(1));
    EXPECT_EQ(Wait(), VI_ERROR_TMO);
}

ViStatus FailOnce(ViSession session, ViEventType, ViEvent, ViAddr userHandle) {
    auto& calls = *static_cast<Calls*>(userHandle);
    calls.handlers.push_back(9);
    EXPECT_EQ(calls.visa.viUnlock(session), VI_ERROR_SESN_NLOCKED);
    return VI_SUCCESS;
}

TEST_P(EventConformance, FailureInsideOfAnExceptionHandlerIsNotToldAgain) {
    Calls calls{visa};
    ASSERT_EQ(visa.viInstallHandler(session_, VI_EVENT_EXCEPTION, FailOnce, &calls), VI_SUCCESS);
    ASSERT_EQ(Enable(VI_HNDLR, VI_EVENT_EXCEPTION), VI_SUCCESS);
    EXPECT_EQ(visa.viUnlock(session_), VI_ERROR_SESN_NLOCKED);
    EXPECT_THAT(calls.handlers, ElementsAre(9));
    EXPECT_EQ(visa.viUnlock(session_), VI_ERROR_SESN_NLOCKED);
    EXPECT_THAT(calls.handlers, ElementsAre(9, 9));
}

// Status byte, trigger and clear ------------------------------------------------------------------

TEST_P(EventConformance, StatusByteAndTriggerAsTheLinkHasThem) {
    ViUInt16 status = 0xFFFF;
    if (IsSocket()) {
        // A bare socket has neither, unless messages may stand for them.
        EXPECT_EQ(visa.viReadSTB(session_, &status), VI_ERROR_INV_SETUP);
        EXPECT_EQ(visa.viAssertTrigger(session_, 0), VI_ERROR_INV_SETUP);
    } else {
        ASSERT_EQ(Write(session_, "STB 5\n"), VI_SUCCESS);
        EXPECT_EQ(visa.viReadSTB(session_, &status), VI_SUCCESS);
        EXPECT_EQ(status, 5);
        EXPECT_EQ(visa.viAssertTrigger(session_, 0), VI_SUCCESS);
    }
    EXPECT_EQ(visa.viAssertTrigger(session_, 1), VI_ERROR_INV_PROT);
}

TEST_P(EventConformance, ClearLeavesTheSettingsOfTheSession) {
    Set(session_, VI_ATTR_TMO_VALUE, 4321);
    Set(session_, VI_ATTR_TERMCHAR, ';');
    EXPECT_EQ(visa.viClear(session_), VI_SUCCESS);
    EXPECT_EQ(Get<ViUInt32>(session_, VI_ATTR_TMO_VALUE), 4321U);
    EXPECT_EQ(Get<ViUInt8>(session_, VI_ATTR_TERMCHAR), ';');
}

}  // namespace
}  // namespace published
