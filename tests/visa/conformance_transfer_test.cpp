// Conformance: reads and writes.
#include <thread>

#include "tests/visa/conformance_fixture.h"

namespace published {
namespace {

class TransferConformance : public ConformanceTest {};
INSTANTIATE_TEST_SUITE_P(Visa, TransferConformance, Subjects(), NameOf);

TEST_P(TransferConformance, QueryGetsTheWholeResponse) {
    ASSERT_EQ(Write(session_, "*IDN?\n"), VI_SUCCESS);
    const auto read = Read(session_, 1024);
    EXPECT_EQ(read.status, EndStatus());
    EXPECT_EQ(read.bytes, "KESTRION,TEST\n");
}

TEST_P(TransferConformance, EndOrTerminatorWinsOverAFullBuffer) {
    ASSERT_EQ(Write(session_, "*IDN?\n"), VI_SUCCESS);
    const auto read = Read(session_, 14);
    EXPECT_EQ(read.status, EndStatus());
    EXPECT_EQ(read.bytes, "KESTRION,TEST\n");
}

TEST_P(TransferConformance, EndWinsOverTheTerminator) {
    Set(session_, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    ASSERT_EQ(Write(session_, "*IDN?\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 100).status, IsSocket() ? VI_SUCCESS_TERM_CHAR : VI_SUCCESS);
}

TEST_P(TransferConformance, FullBufferEndsTheReadAndTheRestComesNext) {
    ASSERT_EQ(Write(session_, "*IDN?\n"), VI_SUCCESS);
    const auto first = Read(session_, 8);
    EXPECT_EQ(first.status, VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(first.bytes, "KESTRION");
    const auto second = Read(session_, 100);
    EXPECT_EQ(second.status, EndStatus());
    EXPECT_EQ(second.bytes, ",TEST\n");
}

TEST_P(TransferConformance, OneByteAtATime) {
    ASSERT_EQ(Write(session_, "ECHO 0123\n"), VI_SUCCESS);
    for (const char expected : {'0', '1', '2', '3'}) {
        const auto read = Read(session_, 1);
        EXPECT_EQ(read.status, VI_SUCCESS_MAX_CNT);
        EXPECT_EQ(read.bytes, std::string(1, expected));
    }
    const auto last = Read(session_, 1);
    EXPECT_EQ(last.status, EndStatus());
    EXPECT_EQ(last.bytes, "\n");
}

TEST_P(TransferConformance, ReadOfNoBytesNeedsNoneAndNoBuffer) {
    ViUInt32 count = 7;
    EXPECT_EQ(visa.viRead(session_, nullptr, 0, &count), VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(count, 0U);
}

TEST_P(TransferConformance, WriteOfNoBytesSendsNothing) {
    ViUInt32 count = 7;
    EXPECT_EQ(visa.viWrite(session_, nullptr, 0, &count), VI_SUCCESS);
    EXPECT_EQ(count, 0U);
}

TEST_P(TransferConformance, TerminatorStopsInFrontOfWhatIsBehindIt) {
    Set(session_, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    Set(session_, VI_ATTR_TERMCHAR, ';');
    ASSERT_EQ(Write(session_, "ECHO one;two;three\n"), VI_SUCCESS);
    const auto first = Read(session_, 100);
    EXPECT_EQ(first.status, VI_SUCCESS_TERM_CHAR);
    EXPECT_EQ(first.bytes, "one;");
    const auto second = Read(session_, 100);
    EXPECT_EQ(second.status, VI_SUCCESS_TERM_CHAR);
    EXPECT_EQ(second.bytes, "two;");
    // The rest is read by count, since another character ends the read now.
    const auto third = Read(session_, 5);
    EXPECT_EQ(third.status, VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(third.bytes, "three");
}

TEST_P(TransferConformance, TerminatorCountsWhenTheBufferIsFullWithIt) {
    Set(session_, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    Set(session_, VI_ATTR_TERMCHAR, 'B');
    ASSERT_EQ(Write(session_, "ECHO ABC\n"), VI_SUCCESS);
    const auto read = Read(session_, 2);
    EXPECT_EQ(read.status, VI_SUCCESS_TERM_CHAR);
    EXPECT_EQ(read.bytes, "AB");
}

TEST_P(TransferConformance, DisabledTerminatorIsAByteLikeAnyOther) {
    Set(session_, VI_ATTR_TERMCHAR_EN, VI_FALSE);
    Set(session_, VI_ATTR_TERMCHAR, 'B');
    ASSERT_EQ(Write(session_, "ECHO ABC\n"), VI_SUCCESS);
    const auto read = Read(session_, 3);
    EXPECT_EQ(read.status, VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(read.bytes, "ABC");
}

TEST_P(TransferConformance, TerminatorOfTheHighestByteValue) {
    Set(session_, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    Set(session_, VI_ATTR_TERMCHAR, 0xFF);
    ASSERT_EQ(Write(session_,
                    "ECHO A\xFF"
                    "B\n"),
              VI_SUCCESS);
    const auto read = Read(session_, 100);
    EXPECT_EQ(read.status, VI_SUCCESS_TERM_CHAR);
    EXPECT_EQ(read.bytes, "A\xFF");
}

TEST_P(TransferConformance, LengthsAroundTheReadAhead) {
    for (const std::size_t length : {4094U, 4095U, 4096U, 4097U, 8191U, 8192U}) {
        ASSERT_EQ(Write(session_, "BLOCK " + std::to_string(length) + "\n"), VI_SUCCESS);
        const auto read = Read(session_, 16384);
        EXPECT_EQ(read.status, EndStatus()) << length;
        EXPECT_EQ(read.bytes, Letters(length) + "\n") << length;
    }
}

TEST_P(TransferConformance, LengthsAroundTheReadAheadInPiecesOf4096) {
    for (const std::size_t length : {4094U, 4095U, 4096U, 4097U, 8191U, 8192U}) {
        ASSERT_EQ(Write(session_, "BLOCK " + std::to_string(length) + "\n"), VI_SUCCESS);
        std::string all;
        ReadResult read{VI_SUCCESS_MAX_CNT, {}};
        while (read.status == VI_SUCCESS_MAX_CNT) {
            read = Read(session_, 4096);
            all += read.bytes;
        }
        EXPECT_EQ(read.status, EndStatus()) << length;
        EXPECT_EQ(all, Letters(length) + "\n") << length;
    }
}

TEST_P(TransferConformance, TenMegabytesInOneRead) {
    constexpr std::size_t kLength = 10'000'000;
    Set(session_, VI_ATTR_TERMCHAR_EN, VI_FALSE);
    ASSERT_EQ(Write(session_, "BLOCK 10000000\n"), VI_SUCCESS);
    const auto read = Read(session_, kLength + 1);
    EXPECT_EQ(read.status, IsSocket() ? VI_SUCCESS_MAX_CNT : VI_SUCCESS);
    EXPECT_TRUE(read.bytes == Letters(kLength) + "\n");
}

TEST_P(TransferConformance, SmallHeaderThenLargeBlock) {
    Set(session_, VI_ATTR_TERMCHAR_EN, VI_FALSE);
    ASSERT_EQ(Write(session_, "BLOCK 300000\n"), VI_SUCCESS);
    const auto header = Read(session_, 2);
    EXPECT_EQ(header.bytes, "AB");
    const auto rest = Read(session_, 299999);
    EXPECT_EQ(rest.bytes.size(), 299999U);
    EXPECT_TRUE(header.bytes + rest.bytes == Letters(300000) + "\n");
}

TEST_P(TransferConformance, LargeReadUpToTheTerminatorInTheMiddleOfABlock) {
    Set(session_, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    Set(session_, VI_ATTR_TERMCHAR, '!');
    ASSERT_EQ(Write(session_, "ECHO " + Letters(200000) + "!" + Letters(200000) + "\n"),
              VI_SUCCESS);
    const auto first = Read(session_, 500000);
    EXPECT_EQ(first.status, VI_SUCCESS_TERM_CHAR);
    EXPECT_TRUE(first.bytes == Letters(200000) + "!");
    Set(session_, VI_ATTR_TERMCHAR, '\n');
    const auto second = Read(session_, 500000);
    EXPECT_EQ(second.status, EndStatus());
    EXPECT_TRUE(second.bytes == Letters(200000) + "\n");
}

TEST_P(TransferConformance, SilentInstrumentEndsInATimeOut) {
    Set(session_, VI_ATTR_TMO_VALUE, 50);
    ASSERT_EQ(Write(session_, "NOTHING\n"), VI_SUCCESS);
    const auto read = Read(session_, 100);
    EXPECT_EQ(read.status, VI_ERROR_TMO);
    EXPECT_EQ(read.bytes, "");
}

TEST_P(TransferConformance, ImmediateTimeOutDoesNotWait) {
    Set(session_, VI_ATTR_TMO_VALUE, VI_TMO_IMMEDIATE);
    EXPECT_EQ(Read(session_, 100).status, VI_ERROR_TMO);
}

TEST_P(TransferConformance, TimeOutGivesWhatCame) {
    Set(session_, VI_ATTR_TERMCHAR_EN, VI_FALSE);
    if (!IsSocket()) {
        Set(session_, VI_ATTR_SUPPRESS_END_EN, VI_TRUE);
    }
    ASSERT_EQ(Write(session_, "ECHO part\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 1).bytes, "p");  // so that the response is there
    Set(session_, VI_ATTR_TMO_VALUE, 30);
    const auto read = Read(session_, 100);
    EXPECT_EQ(read.status, VI_ERROR_TMO);
    EXPECT_EQ(read.bytes, "art\n");
}

TEST_P(TransferConformance, SessionWorksAfterATimeOut) {
    Set(session_, VI_ATTR_TMO_VALUE, 20);
    EXPECT_EQ(Read(session_, 100).status, VI_ERROR_TMO);
    Set(session_, VI_ATTR_TMO_VALUE, 5000);
    ASSERT_EQ(Write(session_, "ECHO again\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 100).bytes, "again\n");
}

TEST_P(TransferConformance, InfiniteTimeOutWaitsForTheAnswer) {
    Set(session_, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
    std::thread writer([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        EXPECT_EQ(Write(session_, "ECHO late\n"), VI_SUCCESS);
    });
    const auto read = Read(session_, 100);
    writer.join();
    EXPECT_EQ(read.status, EndStatus());
    EXPECT_EQ(read.bytes, "late\n");
}

TEST_P(TransferConformance, CountsMayBeLeftOut) {
    const auto* text = reinterpret_cast<const ViByte*>("*IDN?\n");
    EXPECT_EQ(visa.viWrite(session_, text, 6, nullptr), VI_SUCCESS);
    ViByte buffer[32] = {};
    EXPECT_EQ(visa.viRead(session_, buffer, 32, nullptr), EndStatus());
    EXPECT_STREQ(reinterpret_cast<const char*>(buffer), "KESTRION,TEST\n");
}

TEST_P(TransferConformance, NullBuffersAreRefused) {
    ViUInt32 count = 7;
    EXPECT_EQ(visa.viRead(session_, nullptr, 1, &count), VI_ERROR_USER_BUF);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(visa.viWrite(session_, nullptr, 1, &count), VI_ERROR_USER_BUF);
    EXPECT_EQ(visa.viReadAsync(session_, nullptr, 1, nullptr), VI_ERROR_USER_BUF);
    EXPECT_EQ(visa.viWriteAsync(session_, nullptr, 1, nullptr), VI_ERROR_USER_BUF);
    EXPECT_EQ(visa.viReadSTB(session_, nullptr), VI_ERROR_USER_BUF);
}

TEST_P(TransferConformance, ClearDropsTheUnreadResponse) {
    ASSERT_EQ(Write(session_, "ECHO old\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 1).bytes, "o");  // so that the response is there
    EXPECT_EQ(visa.viClear(session_), VI_SUCCESS);
    ASSERT_EQ(Write(session_, "ECHO new\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 100).bytes, "new\n");
}

TEST_P(TransferConformance, OperationsOnAManagerOrAnEventAreRefused) {
    ViByte buffer[4];
    ViUInt16 status = 0;
    EXPECT_EQ(visa.viRead(manager_, buffer, 4, nullptr), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(visa.viWrite(manager_, buffer, 4, nullptr), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(visa.viClear(manager_), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(visa.viReadSTB(manager_, &status), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(visa.viAssertTrigger(manager_, 0), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(visa.viLock(manager_, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(visa.viEnableEvent(manager_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0),
              VI_ERROR_NSUP_OPER);
}

TEST_P(TransferConformance, EveryFunctionRefusesAHandleThatIsNone) {
    constexpr ViSession kNone = 0x7FFF0000;
    ViByte buffer[4];
    char text[256];
    ViUInt16 status = 0;
    ViSession session = 0;
    ViEventType type = 0;
    ViEvent event = 0;
    EXPECT_EQ(visa.viOpen(kNone, "VIRTUAL::INSTR", 0, 0, &session), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viClose(kNone), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viGetAttribute(kNone, VI_ATTR_TMO_VALUE, text), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viSetAttribute(kNone, VI_ATTR_TMO_VALUE, 1), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viStatusDesc(kNone, VI_SUCCESS, text), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viRead(kNone, buffer, 4, nullptr), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viWrite(kNone, buffer, 4, nullptr), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viReadAsync(kNone, buffer, 4, nullptr), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viWriteAsync(kNone, buffer, 4, nullptr), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viAssertTrigger(kNone, 0), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viReadSTB(kNone, &status), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viClear(kNone), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viLock(kNone, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viUnlock(kNone), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viEnableEvent(kNone, VI_EVENT_SERVICE_REQ, VI_QUEUE, 0), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viDisableEvent(kNone, VI_EVENT_SERVICE_REQ, VI_QUEUE), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viDiscardEvents(kNone, VI_EVENT_SERVICE_REQ, VI_QUEUE), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viWaitOnEvent(kNone, VI_EVENT_SERVICE_REQ, 0, &type, &event),
              VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viInstallHandler(kNone, VI_EVENT_SERVICE_REQ, nullptr, nullptr),
              VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viUninstallHandler(kNone, VI_EVENT_SERVICE_REQ, nullptr, nullptr),
              VI_ERROR_INV_OBJECT);
}

}  // namespace
}  // namespace published
