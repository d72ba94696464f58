// Conformance: opening, closing, handles and the texts of statuses.
#include <gmock/gmock.h>

#include <atomic>
#include <cstring>
#include <map>
#include <set>
#include <thread>

#include "tests/visa/conformance_fixture.h"

namespace published {
namespace {

class CloseConformance : public ConformanceTest {};
INSTANTIATE_TEST_SUITE_P(Visa, CloseConformance, Subjects(), NameOf);

TEST_P(CloseConformance, HandleOfAClosedSessionStandsForNothing) {
    ASSERT_EQ(visa.viClose(session_), VI_SUCCESS);
    EXPECT_EQ(visa.viClose(session_), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(Write(session_, "A\n"), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(Read(session_, 1).status, VI_ERROR_INV_OBJECT);
}

TEST_P(CloseConformance, ZeroIsNoHandle) {
    EXPECT_EQ(visa.viClose(VI_NULL), VI_WARN_NULL_OBJECT);
    EXPECT_EQ(Write(VI_NULL, "A\n"), VI_ERROR_INV_OBJECT);
}

TEST_P(CloseConformance, ManagerTakesItsSessionsAndEventsAlong) {
    ASSERT_EQ(visa.viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    Complete();
    ViEvent event = VI_NULL;
    ASSERT_EQ(visa.viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, 0, nullptr, &event), VI_SUCCESS);
    ViSession other = VI_NULL;
    ASSERT_EQ(visa.viOpenDefaultRM(&other), VI_SUCCESS);
    ASSERT_EQ(visa.viClose(manager_), VI_SUCCESS);
    EXPECT_EQ(visa.viClose(session_), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viClose(event), VI_ERROR_INV_OBJECT);
    manager_ = other;
    session_ = OpenAnother();
    EXPECT_NE(session_, VI_NULL);
}

TEST_P(CloseConformance, ManagersAreIndependent) {
    ViSession other = VI_NULL;
    ASSERT_EQ(visa.viOpenDefaultRM(&other), VI_SUCCESS);
    EXPECT_NE(other, manager_);
    EXPECT_EQ(visa.viClose(other), VI_SUCCESS);
    ASSERT_EQ(Write(session_, "ECHO still\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 100).bytes, "still\n");
}

TEST_P(CloseConformance, OpenRefusesWhatItCannotTake) {
    const std::string resource = Resource();
    ViSession session = 99;
    EXPECT_EQ(visa.viOpen(manager_, nullptr, VI_NO_LOCK, 0, &session), VI_ERROR_INV_RSRC_NAME);
    EXPECT_EQ(session, VI_NULL);
    EXPECT_EQ(visa.viOpen(manager_, "no name", VI_NO_LOCK, 0, &session), VI_ERROR_INV_RSRC_NAME);
    EXPECT_EQ(visa.viOpen(manager_, resource.c_str(), 8, 0, &session), VI_ERROR_INV_ACC_MODE);
    EXPECT_EQ(visa.viOpen(manager_, resource.c_str(), VI_NO_LOCK, 0, nullptr), VI_ERROR_USER_BUF);
    EXPECT_EQ(visa.viOpen(session_, resource.c_str(), VI_NO_LOCK, 0, &session), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(visa.viOpen(VI_NULL, resource.c_str(), VI_NO_LOCK, 0, &session), VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viOpenDefaultRM(nullptr), VI_ERROR_USER_BUF);
}

TEST_P(CloseConformance, OpenMayLockAndAskForAConfiguration) {
    const std::string resource = Resource();
    ViSession session = VI_NULL;
    ASSERT_EQ(visa.viOpen(manager_, resource.c_str(), VI_EXCLUSIVE_LOCK, 2000, &session),
              VI_SUCCESS);
    EXPECT_EQ(Get<ViAccessMode>(session, VI_ATTR_RSRC_LOCK_STATE), VI_EXCLUSIVE_LOCK);
    EXPECT_EQ(visa.viUnlock(session), VI_SUCCESS);
    ASSERT_EQ(visa.viOpen(manager_, resource.c_str(), VI_LOAD_CONFIG, 2000, &session),
              VI_WARN_CONFIG_NLOADED);
    EXPECT_EQ(visa.viUnlock(session), VI_ERROR_SESN_NLOCKED);
}

TEST_P(CloseConformance, CloseEndsAReadThatWaits) {
    Set(session_, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
    std::atomic<bool> started = false;
    std::thread reader([&] {
        ViByte buffer[16];
        started = true;
        // The session may be closed before the read begins as well.
        EXPECT_THAT(visa.viRead(session_, buffer, 16, nullptr),
                    ::testing::AnyOf(VI_ERROR_ABORT, VI_ERROR_INV_OBJECT));
    });
    while (!started) {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(visa.viClose(session_), VI_SUCCESS);
    reader.join();
}

TEST_P(CloseConformance, CloseEndsSeveralReadsAndAWaitForAnEvent) {
    Set(session_, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
    ASSERT_EQ(visa.viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    const auto anyEnd = ::testing::AnyOf(VI_ERROR_ABORT, VI_ERROR_INV_OBJECT);
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            ViByte buffer[16];
            EXPECT_THAT(visa.viRead(session_, buffer, 16, nullptr), anyEnd);
        });
        threads.emplace_back([&] {
            EXPECT_THAT(visa.viWaitOnEvent(session_, VI_EVENT_IO_COMPLETION, VI_TMO_INFINITE,
                                           nullptr, nullptr),
                        anyEnd);
        });
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(visa.viClose(manager_), VI_SUCCESS);
    for (auto& thread : threads) {
        thread.join();
    }
    ASSERT_EQ(visa.viOpenDefaultRM(&manager_), VI_SUCCESS);  // for the end of the test
}

TEST_P(CloseConformance, ManyThreadsOpenUseAndClose) {
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this, i] {
            for (int round = 0; round < 10; ++round) {
                const auto session = OpenAnother();
                const std::string text = std::to_string(i * 100 + round);
                EXPECT_EQ(Write(session, "ECHO " + text + "\n"), VI_SUCCESS);
                EXPECT_EQ(Read(session, 100).bytes, text + "\n");
                EXPECT_EQ(visa.viClose(session), VI_SUCCESS);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST_P(CloseConformance, WritesOfManyThreadsStayWhole) {
    Set(session_, VI_ATTR_TMO_VALUE, 5000);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this, i] {
            for (int round = 0; round < 20; ++round) {
                EXPECT_EQ(
                    Write(session_, "ECHO " + std::string(100, static_cast<char>('a' + i)) + "\n"),
                    VI_SUCCESS);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    std::map<char, int> lines;
    for (int i = 0; i < 80; ++i) {
        const auto read = Read(session_, 1000);
        ASSERT_EQ(read.status, EndStatus());
        ASSERT_EQ(read.bytes, std::string(100, read.bytes.front()) + "\n");
        ++lines[read.bytes.front()];
    }
    EXPECT_EQ(lines, (std::map<char, int>{{'a', 20}, {'b', 20}, {'c', 20}, {'d', 20}}));
}

// Texts of statuses
// --------------------------------------------------------------------------------

// Table 3.3.1 of VPP-4.3.2, all of it.
constexpr ViStatus kStatuses[] = {VI_SUCCESS,
                                  VI_SUCCESS_EVENT_EN,
                                  VI_SUCCESS_EVENT_DIS,
                                  VI_SUCCESS_QUEUE_EMPTY,
                                  VI_SUCCESS_TERM_CHAR,
                                  VI_SUCCESS_MAX_CNT,
                                  VI_SUCCESS_DEV_NPRESENT,
                                  VI_SUCCESS_TRIG_MAPPED,
                                  VI_SUCCESS_QUEUE_NEMPTY,
                                  VI_SUCCESS_NCHAIN,
                                  VI_SUCCESS_NESTED_SHARED,
                                  VI_SUCCESS_NESTED_EXCLUSIVE,
                                  VI_SUCCESS_SYNC,
                                  VI_WARN_QUEUE_OVERFLOW,
                                  VI_WARN_CONFIG_NLOADED,
                                  VI_WARN_NULL_OBJECT,
                                  VI_WARN_NSUP_ATTR_STATE,
                                  VI_WARN_UNKNOWN_STATUS,
                                  VI_WARN_NSUP_BUF,
                                  VI_WARN_EXT_FUNC_NIMPL,
                                  VI_WARN_SERVER_CERT_UNTRUSTED,
                                  VI_WARN_SERVER_CERT_INV_SUBJECT,
                                  VI_ERROR_SYSTEM_ERROR,
                                  VI_ERROR_INV_OBJECT,
                                  VI_ERROR_RSRC_LOCKED,
                                  VI_ERROR_INV_EXPR,
                                  VI_ERROR_RSRC_NFOUND,
                                  VI_ERROR_INV_RSRC_NAME,
                                  VI_ERROR_INV_ACC_MODE,
                                  VI_ERROR_TMO,
                                  VI_ERROR_CLOSING_FAILED,
                                  VI_ERROR_INV_DEGREE,
                                  VI_ERROR_INV_JOB_ID,
                                  VI_ERROR_NSUP_ATTR,
                                  VI_ERROR_NSUP_ATTR_STATE,
                                  VI_ERROR_ATTR_READONLY,
                                  VI_ERROR_INV_LOCK_TYPE,
                                  VI_ERROR_INV_ACCESS_KEY,
                                  VI_ERROR_INV_EVENT,
                                  VI_ERROR_INV_MECH,
                                  VI_ERROR_HNDLR_NINSTALLED,
                                  VI_ERROR_INV_HNDLR_REF,
                                  VI_ERROR_INV_CONTEXT,
                                  VI_ERROR_NENABLED,
                                  VI_ERROR_ABORT,
                                  VI_ERROR_RAW_WR_PROT_VIOL,
                                  VI_ERROR_RAW_RD_PROT_VIOL,
                                  VI_ERROR_OUTP_PROT_VIOL,
                                  VI_ERROR_INP_PROT_VIOL,
                                  VI_ERROR_BERR,
                                  VI_ERROR_IN_PROGRESS,
                                  VI_ERROR_INV_SETUP,
                                  VI_ERROR_QUEUE_ERROR,
                                  VI_ERROR_ALLOC,
                                  VI_ERROR_INV_MASK,
                                  VI_ERROR_IO,
                                  VI_ERROR_INV_FMT,
                                  VI_ERROR_NSUP_FMT,
                                  VI_ERROR_LINE_IN_USE,
                                  VI_ERROR_LINE_NRESERVED,
                                  VI_ERROR_NSUP_MODE,
                                  VI_ERROR_SRQ_NOCCURRED,
                                  VI_ERROR_INV_SPACE,
                                  VI_ERROR_INV_OFFSET,
                                  VI_ERROR_INV_WIDTH,
                                  VI_ERROR_NSUP_OFFSET,
                                  VI_ERROR_NSUP_VAR_WIDTH,
                                  VI_ERROR_WINDOW_NMAPPED,
                                  VI_ERROR_RESP_PENDING,
                                  VI_ERROR_NLISTENERS,
                                  VI_ERROR_NCIC,
                                  VI_ERROR_NSYS_CNTLR,
                                  VI_ERROR_NSUP_OPER,
                                  VI_ERROR_INTR_PENDING,
                                  VI_ERROR_ASRL_PARITY,
                                  VI_ERROR_ASRL_FRAMING,
                                  VI_ERROR_ASRL_OVERRUN,
                                  VI_ERROR_TRIG_NMAPPED,
                                  VI_ERROR_NSUP_ALIGN_OFFSET,
                                  VI_ERROR_USER_BUF,
                                  VI_ERROR_RSRC_BUSY,
                                  VI_ERROR_NSUP_WIDTH,
                                  VI_ERROR_INV_PARAMETER,
                                  VI_ERROR_INV_PROT,
                                  VI_ERROR_INV_SIZE,
                                  VI_ERROR_WINDOW_MAPPED,
                                  VI_ERROR_NIMPL_OPER,
                                  VI_ERROR_INV_LENGTH,
                                  VI_ERROR_INV_MODE,
                                  VI_ERROR_SESN_NLOCKED,
                                  VI_ERROR_MEM_NSHARED,
                                  VI_ERROR_LIBRARY_NFOUND,
                                  VI_ERROR_NSUP_INTR,
                                  VI_ERROR_INV_LINE,
                                  VI_ERROR_FILE_ACCESS,
                                  VI_ERROR_FILE_IO,
                                  VI_ERROR_NSUP_LINE,
                                  VI_ERROR_NSUP_MECH,
                                  VI_ERROR_INTF_NUM_NCONFIG,
                                  VI_ERROR_CONN_LOST,
                                  VI_ERROR_NPERMISSION,
                                  VI_ERROR_SERVER_CERT,
                                  VI_ERROR_SERVER_CERT_UNTRUSTED,
                                  VI_ERROR_SERVER_CERT_EXPIRED,
                                  VI_ERROR_SERVER_CERT_REVOKED,
                                  VI_ERROR_SERVER_CERT_INV_SUBJECT};

TEST_P(CloseConformance, EveryStatusHasATextOfItsOwn) {
    std::set<std::string> texts;
    for (const ViStatus status : kStatuses) {
        char text[256] = "";
        EXPECT_EQ(visa.viStatusDesc(session_, status, text), VI_SUCCESS) << std::hex << status;
        EXPECT_GT(std::strlen(text), 10U) << std::hex << status;
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
    EXPECT_EQ(texts.size(), 106U);  // 107 names, of which two are for one number
}

TEST_P(CloseConformance, UnknownStatusHasAValidTextToo) {
    char text[256] = "";
    EXPECT_EQ(visa.viStatusDesc(session_, Status(0xBFFF0FFF), text), VI_WARN_UNKNOWN_STATUS);
    EXPECT_GT(std::strlen(text), 10U);
}

TEST_P(CloseConformance, TextIsGivenForEveryKindOfHandle) {
    char text[256] = "";
    EXPECT_EQ(visa.viStatusDesc(manager_, VI_ERROR_TMO, text), VI_SUCCESS);
    EXPECT_EQ(visa.viStatusDesc(session_, VI_ERROR_TMO, text), VI_SUCCESS);
    EXPECT_EQ(visa.viStatusDesc(session_, VI_ERROR_TMO, nullptr), VI_ERROR_USER_BUF);
    // Whatever is returned, the text is valid (VPP-4.3, rule 3.4.4).
    char other[256] = "";
    EXPECT_EQ(visa.viStatusDesc(VI_NULL, VI_ERROR_TMO, other), VI_ERROR_INV_OBJECT);
    EXPECT_STREQ(other, text);
}

}  // namespace
}  // namespace published
