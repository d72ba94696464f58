// Service requests and completions of asynchronous operations: handlers and suspended handlers.
#include <gmock/gmock.h>

#include <thread>

#include "tests/visa/event_fixture.h"

namespace visa_provider::testing {

using ::testing::ElementsAre;

// Reads the status byte and an answer on the session, as a handler of a driver does.
ViStatus HandleByReading(ViSession session, ViEventType /*type*/, ViEvent /*context*/,
                         ViAddr userHandle) {
    ViUInt16 status = 0;
    EXPECT_EQ(viReadSTB(session, &status), VI_SUCCESS);
    EXPECT_EQ(status & 0x40, 0x40);
    const auto* query = reinterpret_cast<const ViByte*>("ECHO inside\n");
    EXPECT_EQ(viWrite(session, query, 12, nullptr), VI_SUCCESS);
    ViByte buffer[32] = {};
    EXPECT_EQ(viRead(session, buffer, 32, nullptr), VI_SUCCESS);
    static_cast<std::string*>(userHandle)->assign(reinterpret_cast<const char*>(buffer));
    return VI_SUCCESS;
}

ViStatus HandleByClosing(ViSession session, ViEventType /*type*/, ViEvent /*context*/,
                         ViAddr /*userHandle*/) {
    EXPECT_EQ(viClose(session), VI_SUCCESS);
    return VI_SUCCESS;
}

ViStatus HandleByThrowing(ViSession /*session*/, ViEventType /*type*/, ViEvent /*context*/,
                          ViAddr /*userHandle*/) {
    throw 1;
}

TEST_F(EventTest, HandlerIsCalled) {
    Calls calls;
    Install<1>(calls);
    Request();
    EXPECT_TRUE(calls.list.empty());
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    Request(2);
    ASSERT_THAT(calls.Handlers(), ElementsAre(1, 1));
    EXPECT_EQ(calls.list[0].session, session_);
    EXPECT_EQ(calls.list[0].type, kRequest);
    EXPECT_EQ(calls.list[0].typeOfContext, kRequest);
    EXPECT_EQ(viClose(calls.lastContext), VI_ERROR_INV_OBJECT);  // closed after the handler
    ASSERT_EQ(Disable(VI_HNDLR), VI_SUCCESS);
    Request();
    EXPECT_EQ(calls.list.size(), 2U);
}

TEST_F(EventTest, HandlersAreCalledTheLastOneFirst) {
    Calls calls;
    Install<1>(calls);
    Install<2>(calls);
    Install<3>(calls);
    Install<4>(calls);
    Install<2>(calls);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    Request();
    EXPECT_THAT(calls.Handlers(), ElementsAre(2, 4, 3, 2, 1));
}

TEST_F(EventTest, HandlerMayKeepTheOthersFromBeingCalled) {
    Calls calls;
    calls.answer = VI_SUCCESS_NCHAIN;
    Install<1>(calls);
    Install<2>(calls);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    Request();
    EXPECT_THAT(calls.Handlers(), ElementsAre(2));
}

TEST_F(EventTest, QueueAndHandlerBothGetTheEvent) {
    Calls calls;
    Install<1>(calls);
    ASSERT_EQ(Enable(VI_QUEUE | VI_HNDLR), VI_SUCCESS);
    Request();
    EXPECT_THAT(calls.Handlers(), ElementsAre(1));
    EXPECT_EQ(Wait(), VI_SUCCESS);
}

TEST_F(EventTest, HandlerIsCalledWhileAWaitGoesOn) {
    Calls calls;
    Install<1>(calls);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    ASSERT_EQ(Write(session_, "SRQLATER 5\nLATER 20 done\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 100).bytes, "done\n");
    EXPECT_THAT(calls.Handlers(), ElementsAre(1));
}

TEST_F(EventTest, HandlerMayUseTheSessionFromWithinAWriteAndARead) {
    std::string answer;
    ASSERT_EQ(viInstallHandler(session_, kRequest, HandleByReading, &answer), VI_SUCCESS);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    Request();
    EXPECT_EQ(answer, "inside\n");
    answer.clear();
    ASSERT_EQ(Write(session_, "SRQLATER 5\nLATER 20 done\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 100).bytes, "done\n");
    EXPECT_EQ(answer, "inside\n");
}

TEST_F(EventTest, HandlerMayCloseTheSession) {
    ASSERT_EQ(viInstallHandler(session_, kRequest, HandleByClosing, nullptr), VI_SUCCESS);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    const auto record = LastRecord();
    EXPECT_EQ(Write(session_, "SRQ\n"), VI_SUCCESS);
    EXPECT_FALSE(record->isAlive);
    EXPECT_EQ(viClose(session_), VI_ERROR_INV_OBJECT);
}

TEST_F(EventTest, ExceptionOfAHandlerDoesNotPass) {
    ASSERT_EQ(viInstallHandler(session_, kRequest, HandleByThrowing, nullptr), VI_SUCCESS);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    EXPECT_EQ(Write(session_, "SRQ\n"), VI_ERROR_SYSTEM_ERROR);
    ASSERT_EQ(Disable(VI_HNDLR), VI_SUCCESS);
    EXPECT_EQ(Write(session_, "SRQ\n"), VI_SUCCESS);
}

TEST_F(EventTest, CallbackNeedsAHandler) {
    EXPECT_EQ(Enable(VI_HNDLR), VI_ERROR_HNDLR_NINSTALLED);
    EXPECT_EQ(Enable(VI_SUSPEND_HNDLR), VI_ERROR_HNDLR_NINSTALLED);
    EXPECT_EQ(Enable(VI_QUEUE | VI_HNDLR), VI_ERROR_HNDLR_NINSTALLED);
    EXPECT_EQ(Wait(), VI_ERROR_NENABLED);  // the queue wasn't enabled either
}

TEST_F(EventTest, SuspendedEventsAreHandledWhenHandlingGoesOn) {
    Calls calls;
    Install<1>(calls);
    ASSERT_EQ(Enable(VI_SUSPEND_HNDLR), VI_SUCCESS);
    Request(2);
    EXPECT_TRUE(calls.list.empty());
    EXPECT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    EXPECT_THAT(calls.Handlers(), ElementsAre(1, 1));
    Request();
    EXPECT_THAT(calls.Handlers(), ElementsAre(1, 1, 1));
}

TEST_F(EventTest, SuspendedEventsAreSwitchedForAllEnabledEvents) {
    Calls calls;
    Install<1>(calls);
    ASSERT_EQ(Enable(VI_SUSPEND_HNDLR), VI_SUCCESS);
    Request();
    EXPECT_EQ(viEnableEvent(session_, VI_ALL_ENABLED_EVENTS, VI_HNDLR, 0), VI_SUCCESS);
    EXPECT_THAT(calls.Handlers(), ElementsAre(1));
}

TEST_F(EventTest, SuspendedEventsMayBeDiscarded) {
    Calls calls;
    Install<1>(calls);
    ASSERT_EQ(Enable(VI_SUSPEND_HNDLR), VI_SUCCESS);
    Request(2);
    EXPECT_EQ(viDiscardEvents(session_, kRequest, VI_QUEUE), VI_SUCCESS_QUEUE_EMPTY);
    EXPECT_EQ(viDiscardEvents(session_, kRequest, VI_SUSPEND_HNDLR), VI_SUCCESS);
    EXPECT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    EXPECT_TRUE(calls.list.empty());
}

TEST_F(EventTest, SuspendedEventsAreLimitedToo) {
    Set(session_, VI_ATTR_MAX_QUEUE_LENGTH, 2);
    Calls calls;
    Install<1>(calls);
    ASSERT_EQ(Enable(VI_SUSPEND_HNDLR | VI_QUEUE), VI_SUCCESS);
    Request(4);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    EXPECT_EQ(calls.list.size(), 2U);
}

TEST_F(EventTest, UninstallOfAHandler) {
    Calls calls;
    Calls others;
    EXPECT_EQ(viUninstallHandler(session_, kRequest, Handle<1>, &calls), VI_ERROR_HNDLR_NINSTALLED);
    Install<1>(calls);
    Install<1>(others);
    Install<2>(calls);
    EXPECT_EQ(viUninstallHandler(session_, kRequest, Handle<2>, &others), VI_ERROR_INV_HNDLR_REF);
    EXPECT_EQ(viUninstallHandler(session_, kRequest, Handle<1>, &calls), VI_SUCCESS);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    Request();
    EXPECT_THAT(calls.Handlers(), ElementsAre(2));
    EXPECT_THAT(others.Handlers(), ElementsAre(1));
}

TEST_F(EventTest, UninstallOfAllHandlersWithAUserHandle) {
    Calls calls;
    Calls others;
    Install<1>(calls);
    Install<2>(calls);
    Install<3>(others);
    EXPECT_EQ(viUninstallHandler(session_, kRequest, VI_ANY_HNDLR, &calls), VI_SUCCESS);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    Request();
    EXPECT_TRUE(calls.list.empty());
    EXPECT_THAT(others.Handlers(), ElementsAre(3));
}

TEST_F(EventTest, UninstallOfTheLastHandlerDisablesHandling) {
    Calls calls;
    Install<1>(calls);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    ASSERT_EQ(viUninstallHandler(session_, kRequest, Handle<1>, &calls), VI_SUCCESS);
    EXPECT_EQ(Disable(VI_HNDLR), VI_SUCCESS_EVENT_DIS);
}

TEST_F(EventTest, NoHandlerCannotBeInstalled) {
    EXPECT_EQ(viInstallHandler(session_, kRequest, VI_ANY_HNDLR, nullptr), VI_ERROR_INV_HNDLR_REF);
}

using CompletionTest = LinkTest;
INSTANTIATE_TEST_SUITE_P(Links, CompletionTest,
                         ::testing::Values(LinkKind::kSocket, LinkKind::kVirtual), NameOf);

TEST_P(CompletionTest, AsynchronousWriteAndRead) {
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    const auto* query = reinterpret_cast<const ViByte*>("*IDN?\n");
    ViByte answer[64] = {};
    ViJobId writeJob = 0;
    ViJobId readJob = 0;
    EXPECT_EQ(viWriteAsync(session_, query, 6, &writeJob), VI_SUCCESS_SYNC);
    EXPECT_EQ(viReadAsync(session_, answer, 64, &readJob), VI_SUCCESS_SYNC);
    EXPECT_NE(writeJob, 0U);
    EXPECT_NE(readJob, 0U);
    EXPECT_NE(writeJob, readJob);

    ViEvent event = VI_NULL;
    ASSERT_EQ(viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, &event),
              VI_SUCCESS_QUEUE_NEMPTY);
    EXPECT_EQ(Get<ViInt32>(event, VI_ATTR_STATUS), VI_SUCCESS);
    EXPECT_EQ(Get<ViUInt32>(event, VI_ATTR_JOB_ID), writeJob);
    EXPECT_EQ(Get<const void*>(event, VI_ATTR_BUFFER), query);
    EXPECT_EQ(Get<ViUInt64>(event, VI_ATTR_RET_COUNT), 6U);
    EXPECT_EQ(GetText(event, VI_ATTR_OPER_NAME), "viWriteAsync");
    EXPECT_EQ(viClose(event), VI_SUCCESS);

    ASSERT_EQ(viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, &event), VI_SUCCESS);
    EXPECT_EQ(Get<ViUInt32>(event, VI_ATTR_EVENT_TYPE), VI_EVENT_IO_COMPLETION);
    EXPECT_EQ(Get<ViInt32>(event, VI_ATTR_STATUS), EndStatus());
    EXPECT_EQ(Get<ViUInt32>(event, VI_ATTR_JOB_ID), readJob);
    EXPECT_EQ(Get<const void*>(event, VI_ATTR_BUFFER), answer);
    EXPECT_EQ(Get<ViUInt32>(event, VI_ATTR_RET_COUNT_32), 14U);
    EXPECT_EQ(GetText(event, VI_ATTR_OPER_NAME), "viReadAsync");
    EXPECT_EQ(viSetAttribute(event, VI_ATTR_STATUS, 0), VI_ERROR_ATTR_READONLY);
    EXPECT_EQ(viSetAttribute(event, VI_ATTR_TMO_VALUE, 0), VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(viClose(event), VI_SUCCESS);
}

TEST_P(CompletionTest, FailureIsToldInTheEvent) {
    Set(session_, VI_ATTR_TMO_VALUE, 10);
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    ViByte answer[8] = {};
    EXPECT_EQ(viReadAsync(session_, answer, 8, nullptr), VI_SUCCESS_SYNC);
    ViEvent event = VI_NULL;
    ASSERT_EQ(viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, &event), VI_SUCCESS);
    EXPECT_EQ(Get<ViInt32>(event, VI_ATTR_STATUS), VI_ERROR_TMO);
    EXPECT_EQ(Get<ViUInt64>(event, VI_ATTR_RET_COUNT_64), 0U);
}

TEST_P(CompletionTest, HandlerGetsTheCompletion) {
    Calls calls;
    ASSERT_EQ(viInstallHandler(session_, VI_EVENT_IO_COMPLETION, Handle<7>, &calls), VI_SUCCESS);
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_HNDLR, 0), VI_SUCCESS);
    EXPECT_EQ(viWriteAsync(session_, reinterpret_cast<const ViByte*>("A\n"), 2, nullptr),
              VI_SUCCESS_SYNC);
    ASSERT_THAT(calls.Handlers(), ElementsAre(7));
    EXPECT_EQ(calls.list[0].typeOfContext, VI_EVENT_IO_COMPLETION);
}

TEST_P(CompletionTest, WaitInAnotherThreadEndsWithTheCompletion) {
    ASSERT_EQ(viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    std::thread waiter([this] {
        EXPECT_EQ(
            viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, VI_TMO_INFINITE, nullptr, nullptr),
            VI_SUCCESS);
    });
    EXPECT_EQ(viWriteAsync(session_, reinterpret_cast<const ViByte*>("A\n"), 2, nullptr),
              VI_SUCCESS_SYNC);
    waiter.join();
}

}  // namespace visa_provider::testing
