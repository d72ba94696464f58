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

}  // namespace visa_provider::testing
