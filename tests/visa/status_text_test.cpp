#include <cstring>
#include <set>

#include "tests/visa/session_fixture.h"

namespace visa_provider::testing {

using StatusTextTest = VisaTest;

// Every status that the functions of the standard list for what this provider implements.
constexpr ViStatus kStatuses[] = {VI_SUCCESS,
                                  VI_SUCCESS_EVENT_EN,
                                  VI_SUCCESS_EVENT_DIS,
                                  VI_SUCCESS_QUEUE_EMPTY,
                                  VI_SUCCESS_TERM_CHAR,
                                  VI_SUCCESS_MAX_CNT,
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
                                  VI_ERROR_SYSTEM_ERROR,
                                  VI_ERROR_INV_OBJECT,
                                  VI_ERROR_RSRC_LOCKED,
                                  VI_ERROR_INV_EXPR,
                                  VI_ERROR_RSRC_NFOUND,
                                  VI_ERROR_INV_RSRC_NAME,
                                  VI_ERROR_INV_ACC_MODE,
                                  VI_ERROR_TMO,
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
                                  VI_ERROR_RAW_RD_PROT_VIOL,
                                  VI_ERROR_INV_SETUP,
                                  VI_ERROR_ALLOC,
                                  VI_ERROR_IO,
                                  VI_ERROR_NSUP_OPER,
                                  VI_ERROR_USER_BUF,
                                  VI_ERROR_INV_PROT,
                                  VI_ERROR_SESN_NLOCKED,
                                  VI_ERROR_CONN_LOST};

TEST_F(StatusTextTest, EveryStatusHasATextOfItsOwn) {
    std::set<std::string> texts;
    for (const ViStatus status : kStatuses) {
        char text[256] = "";
        EXPECT_EQ(viStatusDesc(manager_, status, text), VI_SUCCESS) << std::hex << status;
        EXPECT_GT(std::strlen(text), 10U);
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
}

TEST_F(StatusTextTest, TimeOutInWords) {
    char text[256] = "";
    EXPECT_EQ(viStatusDesc(OpenVirtual(), static_cast<ViStatus>(0xBFFF0015), text), VI_SUCCESS);
    EXPECT_STREQ(text, "The time-out passed before the operation was complete.");
}

TEST_F(StatusTextTest, UnknownStatusHasATextWithItsNumber) {
    char text[256] = "";
    EXPECT_EQ(viStatusDesc(manager_, static_cast<ViStatus>(0xBFFF0FFF), text),
              VI_WARN_UNKNOWN_STATUS);
    EXPECT_STREQ(text, "Unknown status code 0xBFFF0FFF.");
}

TEST_F(StatusTextTest, TextIsGivenWithoutAHandleToo) {
    char text[256] = "";
    EXPECT_EQ(viStatusDesc(VI_NULL, VI_ERROR_TMO, text), VI_ERROR_INV_OBJECT);
    EXPECT_STREQ(text, "The time-out passed before the operation was complete.");
}

TEST_F(StatusTextTest, MissingBufferIsRefused) {
    EXPECT_EQ(viStatusDesc(manager_, VI_SUCCESS, nullptr), VI_ERROR_USER_BUF);
}

}  // namespace visa_provider::testing
