// Conformance: asynchronous transfers and their completions.
#include <thread>

#include "tests/visa/conformance_events.h"

namespace published {
namespace {

using ::testing::ElementsAre;

class CompletionConformance : public EventConformanceTest {};
INSTANTIATE_TEST_SUITE_P(Visa, CompletionConformance, Subjects(), NameOf);

TEST_P(CompletionConformance, AsynchronousWriteAndRead) {
    ASSERT_EQ(visa.viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    const auto* query = reinterpret_cast<const ViByte*>("*IDN?\n");
    ViByte answer[64] = {};
    ViJobId writeJob = 0;
    ViJobId readJob = 0;
    EXPECT_EQ(visa.viWriteAsync(session_, query, 6, &writeJob), VI_SUCCESS_SYNC);
    EXPECT_EQ(visa.viReadAsync(session_, answer, 64, &readJob), VI_SUCCESS_SYNC);
    EXPECT_NE(writeJob, 0U);
    EXPECT_NE(readJob, 0U);
    EXPECT_NE(writeJob, readJob);

    ViEvent event = VI_NULL;
    ASSERT_EQ(visa.viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, &event),
              VI_SUCCESS_QUEUE_NEMPTY);
    EXPECT_EQ(Get<ViInt32>(event, VI_ATTR_STATUS), VI_SUCCESS);
    EXPECT_EQ(Get<ViUInt32>(event, VI_ATTR_JOB_ID), writeJob);
    EXPECT_EQ(Get<const void*>(event, VI_ATTR_BUFFER), query);
    EXPECT_EQ(Get<ViUInt64>(event, VI_ATTR_RET_COUNT), 6U);
    EXPECT_EQ(GetText(event, VI_ATTR_OPER_NAME), "viWriteAsync");
    EXPECT_EQ(visa.viClose(event), VI_SUCCESS);

    ASSERT_EQ(visa.viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, &event), VI_SUCCESS);
    EXPECT_EQ(Get<ViUInt32>(event, VI_ATTR_EVENT_TYPE), VI_EVENT_IO_COMPLETION);
    EXPECT_EQ(Get<ViInt32>(event, VI_ATTR_STATUS), EndStatus());
    EXPECT_EQ(Get<ViUInt32>(event, VI_ATTR_JOB_ID), readJob);
    EXPECT_EQ(Get<const void*>(event, VI_ATTR_BUFFER), answer);
    EXPECT_EQ(Get<ViUInt32>(event, VI_ATTR_RET_COUNT_32), 14U);
    EXPECT_EQ(GetText(event, VI_ATTR_OPER_NAME), "viReadAsync");
    EXPECT_EQ(visa.viSetAttribute(event, VI_ATTR_STATUS, 0), VI_ERROR_ATTR_READONLY);
    EXPECT_EQ(visa.viSetAttribute(event, VI_ATTR_TMO_VALUE, 0), VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(visa.viClose(event), VI_SUCCESS);
}

TEST_P(CompletionConformance, FailureIsToldInTheEvent) {
    Set(session_, VI_ATTR_TMO_VALUE, 10);
    ASSERT_EQ(visa.viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    ViByte answer[8] = {};
    EXPECT_EQ(visa.viReadAsync(session_, answer, 8, nullptr), VI_SUCCESS_SYNC);
    ViEvent event = VI_NULL;
    ASSERT_EQ(visa.viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, &event), VI_SUCCESS);
    EXPECT_EQ(Get<ViInt32>(event, VI_ATTR_STATUS), VI_ERROR_TMO);
    EXPECT_EQ(Get<ViUInt64>(event, VI_ATTR_RET_COUNT_64), 0U);
}

TEST_P(CompletionConformance, HandlerGetsTheCompletion) {
    Calls calls{visa};
    Install<7>(calls);
    ASSERT_EQ(Enable(VI_HNDLR), VI_SUCCESS);
    EXPECT_EQ(visa.viWriteAsync(session_, reinterpret_cast<const ViByte*>("A\n"), 2, nullptr),
              VI_SUCCESS_SYNC);
    ASSERT_THAT(calls.handlers, ElementsAre(7));
    EXPECT_EQ(calls.session, session_);
    EXPECT_EQ(calls.typeOfContext, VI_EVENT_IO_COMPLETION);
}

TEST_P(CompletionConformance, WaitInAnotherThreadEndsWithTheCompletion) {
    ASSERT_EQ(visa.viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    std::thread waiter([this] {
        EXPECT_EQ(
            visa.viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, VI_TMO_INFINITE, nullptr, nullptr),
            VI_SUCCESS);
    });
    EXPECT_EQ(visa.viWriteAsync(session_, reinterpret_cast<const ViByte*>("A\n"), 2, nullptr),
              VI_SUCCESS_SYNC);
    waiter.join();
}

TEST_P(CompletionConformance, TransferInPartsIsToldWithItsCount) {
    ASSERT_EQ(Enable(VI_QUEUE), VI_SUCCESS);
    ASSERT_EQ(Write(session_, "ECHO 0123456789\n"), VI_SUCCESS);
    ViByte part[4] = {};
    ASSERT_EQ(visa.viReadAsync(session_, part, 4, nullptr), VI_SUCCESS_SYNC);
    ViEvent event = VI_NULL;
    ASSERT_EQ(visa.viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, &event), VI_SUCCESS);
    EXPECT_EQ(Get<ViStatus>(event, VI_ATTR_STATUS), VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(Get<ViUInt64>(event, VI_ATTR_RET_COUNT), 4U);
    EXPECT_EQ(visa.viClose(event), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 100).bytes, "456789\n");
}

}  // namespace
}  // namespace published
