// Service requests of a virtual instrument: enabling, queue and waits.
#include <thread>

#include "tests/visa/event_fixture.h"

namespace visa_provider::testing {

TEST_F(EventTest, QueueGivesTheEvent) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    Request();
    ViEventType type = 0;
    ViEvent context = VI_NULL;
    EXPECT_EQ(viWaitOnEvent(session_, kRequest, 0, &type, &context), VI_SUCCESS);
    EXPECT_EQ(type, kRequest);
    EXPECT_NE(context, VI_NULL);
    EXPECT_EQ(Get<ViUInt32>(context, VI_ATTR_EVENT_TYPE), kRequest);
    ViUInt64 value = 0;
    EXPECT_EQ(viGetAttribute(context, VI_ATTR_JOB_ID, &value), VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(viGetAttribute(context, VI_ATTR_TMO_VALUE, &value), VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(viSetAttribute(context, VI_ATTR_EVENT_TYPE, 0), VI_ERROR_ATTR_READONLY);
    EXPECT_EQ(viRead(context, nullptr, 0, nullptr), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(viClose(context), VI_SUCCESS);
    EXPECT_EQ(viClose(context), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(Wait(), VI_ERROR_TMO);
}

TEST_F(EventTest, ContextOutlivesItsSession) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    Request();
    ViEvent context = VI_NULL;
    ASSERT_EQ(viWaitOnEvent(session_, kRequest, 0, nullptr, &context), VI_SUCCESS);
    EXPECT_EQ(viClose(session_), VI_SUCCESS);
    EXPECT_EQ(Get<ViUInt32>(context, VI_ATTR_EVENT_TYPE), kRequest);
    EXPECT_EQ(viClose(context), VI_SUCCESS);
}

TEST_F(EventTest, NothingIsQueuedWhileDisabled) {
    Request();
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_TMO);
}

TEST_F(EventTest, WaitWithoutEnableIsRefused) {
    EXPECT_EQ(Wait(VI_TMO_INFINITE), VI_ERROR_NENABLED);
    EXPECT_EQ(viWaitOnEvent(session_, VI_ALL_ENABLED_EVENTS, VI_TMO_INFINITE, nullptr, nullptr),
              VI_ERROR_NENABLED);
}

TEST_F(EventTest, QueuedEventsStayWhenTheEventIsDisabled) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    Request(2);
    EXPECT_EQ(Disable(VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_SUCCESS_QUEUE_NEMPTY);
    EXPECT_EQ(Wait(), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_NENABLED);
}

TEST_F(EventTest, FailedWaitGivesZeros) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    ViEventType type = 99;
    ViEvent context = 99;
    EXPECT_EQ(viWaitOnEvent(session_, kRequest, 0, &type, &context), VI_ERROR_TMO);
    EXPECT_EQ(type, 0U);
    EXPECT_EQ(context, 0U);
}

TEST_F(EventTest, EventThatComesWhileWaiting) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    ASSERT_EQ(Write(session_, "SRQLATER 20\n"), VI_SUCCESS);
    const int before = LastRecord()->polls;
    EXPECT_EQ(Wait(5000), VI_SUCCESS);
    // Sleeping, not asking again and again: once at first, once when it's due, and little more.
    EXPECT_LE(LastRecord()->polls - before, 6);
}

TEST_F(EventTest, EventThatDoesNotComeIsATimeOutWithoutBusyWaiting) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    const int before = LastRecord()->polls;
    EXPECT_EQ(Wait(50), VI_ERROR_TMO);
    EXPECT_LE(LastRecord()->polls - before, 4);
}

TEST_F(EventTest, AnswerThatComesLaterIsReadWithoutBusyWaiting) {
    ASSERT_EQ(Write(session_, "LATER 30 done\n"), VI_SUCCESS);
    const int before = LastRecord()->polls;
    EXPECT_EQ(Read(session_, 100).bytes, "done\n");
    EXPECT_LE(LastRecord()->polls - before, 6);
}

TEST_F(EventTest, EventThatAnotherThreadCauses) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    std::thread waiter([this] { EXPECT_EQ(Wait(VI_TMO_INFINITE), VI_SUCCESS); });
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    Request();
    waiter.join();
}

TEST_F(EventTest, EventThatTheInstrumentCausesByItself) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    std::thread waiter([this] { EXPECT_EQ(Wait(VI_TMO_INFINITE), VI_SUCCESS); });
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    LastDevice().RequestService();
    waiter.join();
}

TEST_F(EventTest, ReaderThatWaitsLetsTheEventHappenForAnotherThread) {
    Set(session_, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    std::thread reader([this] { EXPECT_EQ(Read(session_, 100).bytes, "done\n"); });
    ASSERT_EQ(Write(session_, "SRQLATER 10\nLATER 20 done\n"), VI_SUCCESS);
    EXPECT_EQ(Wait(5000), VI_SUCCESS);
    reader.join();
}

TEST_F(EventTest, DisableEndsAWaitInAnotherThread) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    std::thread waiter([this] { EXPECT_EQ(Wait(VI_TMO_INFINITE), VI_ERROR_NENABLED); });
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(Disable(VI_QUEUE), VI_SUCCESS);
    waiter.join();
}

TEST_F(EventTest, StatusByteTellsOfTheRequestOnce) {
    ASSERT_EQ(Write(session_, "STB 33\n"), VI_SUCCESS);
    Request();
    ViUInt16 status = 0;
    EXPECT_EQ(viReadSTB(session_, &status), VI_SUCCESS);
    EXPECT_EQ(status, 0x61);
    EXPECT_EQ(viReadSTB(session_, &status), VI_SUCCESS);
    EXPECT_EQ(status, 0x21);
}

TEST_F(EventTest, TriggerAndClearReachTheInstrument) {
    EXPECT_EQ(viAssertTrigger(session_, VI_TRIG_PROT_DEFAULT), VI_SUCCESS);
    EXPECT_EQ(viAssertTrigger(session_, 1), VI_ERROR_INV_PROT);
    EXPECT_EQ(viClear(session_), VI_SUCCESS);
    EXPECT_EQ(LastRecord()->triggers, 1);
    EXPECT_EQ(LastRecord()->clears, 1);
}

TEST_F(EventTest, EnableAndDisableTellWhatWasSo) {
    Calls calls;
    Install<1>(calls);
    EXPECT_EQ(Disable(VI_QUEUE), VI_SUCCESS_EVENT_DIS);
    EXPECT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Enable(VI_QUEUE), VI_SUCCESS_EVENT_EN);
    EXPECT_EQ(Enable(VI_QUEUE | VI_HNDLR), VI_SUCCESS_EVENT_EN);
    EXPECT_EQ(Enable(VI_HNDLR), VI_SUCCESS_EVENT_EN);
    EXPECT_EQ(Enable(VI_SUSPEND_HNDLR), VI_SUCCESS);
    EXPECT_EQ(Enable(VI_SUSPEND_HNDLR), VI_SUCCESS_EVENT_EN);
    EXPECT_EQ(Disable(VI_HNDLR), VI_SUCCESS);  // either name takes the callback mechanism off
    EXPECT_EQ(Disable(VI_SUSPEND_HNDLR), VI_SUCCESS_EVENT_DIS);
    EXPECT_EQ(Disable(VI_ALL_MECH), VI_SUCCESS_EVENT_DIS);  // the queue was still on
    EXPECT_EQ(Enable(VI_QUEUE | VI_SUSPEND_HNDLR), VI_SUCCESS);
    EXPECT_EQ(Disable(VI_ALL_MECH), VI_SUCCESS);
}

TEST_F(EventTest, MechanismsThatAreNone) {
    Calls calls;
    Install<1>(calls);
    for (const int mechanism : {0, 6, 7, 8, 9, 0x8000, 0xFFFF}) {
        EXPECT_EQ(Enable(static_cast<ViUInt16>(mechanism)), VI_ERROR_INV_MECH) << mechanism;
    }
    for (const int mechanism : {0, 8, 9, 0x8000}) {
        EXPECT_EQ(Disable(static_cast<ViUInt16>(mechanism)), VI_ERROR_INV_MECH) << mechanism;
        EXPECT_EQ(viDiscardEvents(session_, kRequest, static_cast<ViUInt16>(mechanism)),
                  VI_ERROR_INV_MECH)
            << mechanism;
    }
}

TEST_F(EventTest, EventsThatTheInstrumentDoesNotHave) {
    for (const ViEventType type : {VI_EVENT_TRIG, ViEventType{0x3FFF2012}, ViEventType{0}}) {
        EXPECT_EQ(viEnableEvent(session_, type, VI_QUEUE, 0), VI_ERROR_INV_EVENT);
        EXPECT_EQ(viDisableEvent(session_, type, VI_QUEUE), VI_ERROR_INV_EVENT);
        EXPECT_EQ(viDiscardEvents(session_, type, VI_QUEUE), VI_ERROR_INV_EVENT);
        EXPECT_EQ(viWaitOnEvent(session_, type, 0, nullptr, nullptr), VI_ERROR_INV_EVENT);
        EXPECT_EQ(viInstallHandler(session_, type, Handle<1>, nullptr), VI_ERROR_INV_EVENT);
        EXPECT_EQ(viUninstallHandler(session_, type, Handle<1>, nullptr), VI_ERROR_INV_EVENT);
    }
    EXPECT_EQ(viInstallHandler(session_, VI_ALL_ENABLED_EVENTS, Handle<1>, nullptr),
              VI_ERROR_INV_EVENT);
}

TEST_F(EventTest, DiscardEmptiesTheQueue) {
    Set(session_, VI_ATTR_MAX_QUEUE_LENGTH, 2);
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(viDiscardEvents(session_, kRequest, VI_QUEUE), VI_SUCCESS_QUEUE_EMPTY);
    Request(3);
    EXPECT_EQ(viDiscardEvents(session_, kRequest, VI_SUSPEND_HNDLR), VI_SUCCESS_QUEUE_EMPTY);
    EXPECT_EQ(viDiscardEvents(session_, kRequest, VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_TMO);
    Request();
    EXPECT_EQ(Wait(), VI_SUCCESS);  // the overflow is forgotten with what it was about
}

TEST_F(EventTest, AllEnabledEvents) {
    EXPECT_EQ(viDisableEvent(session_, VI_ALL_ENABLED_EVENTS, VI_QUEUE), VI_SUCCESS_EVENT_DIS);
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    Request();
    EXPECT_EQ(viWriteAsync(session_, nullptr, 0, nullptr), VI_SUCCESS_SYNC);
    ViEventType type = 0;
    EXPECT_EQ(viWaitOnEvent(session_, VI_ALL_ENABLED_EVENTS, 0, &type, nullptr),
              VI_SUCCESS_QUEUE_NEMPTY);
    EXPECT_EQ(type, kRequest);
    EXPECT_EQ(viWaitOnEvent(session_, VI_ALL_ENABLED_EVENTS, 0, &type, nullptr), VI_SUCCESS);
    EXPECT_EQ(type, VI_EVENT_IO_COMPLETION);
    EXPECT_EQ(viWaitOnEvent(session_, VI_ALL_ENABLED_EVENTS, 0, nullptr, nullptr), VI_ERROR_TMO);
    Request();
    EXPECT_EQ(viDiscardEvents(session_, VI_ALL_ENABLED_EVENTS, VI_ALL_MECH), VI_SUCCESS);
    EXPECT_EQ(viDisableEvent(session_, VI_ALL_ENABLED_EVENTS, VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(Wait(), VI_ERROR_NENABLED);
}

TEST_F(EventTest, WaitForOneTypeLeavesTheOther) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    EXPECT_EQ(viWriteAsync(session_, nullptr, 0, nullptr), VI_SUCCESS_SYNC);
    Request();
    EXPECT_EQ(Wait(), VI_SUCCESS);
    EXPECT_EQ(viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, nullptr), VI_SUCCESS);
}

}  // namespace visa_provider::testing
