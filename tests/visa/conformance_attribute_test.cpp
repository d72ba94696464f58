// Conformance: attributes.
#include <cstring>

#include "tests/visa/conformance_fixture.h"

namespace published {
namespace {

class AttributeConformance : public ConformanceTest {};
INSTANTIATE_TEST_SUITE_P(Visa, AttributeConformance, Subjects(), NameOf);

TEST_P(AttributeConformance, Defaults) {
    const auto session = Open(Resource());
    EXPECT_EQ(Get<ViBoolean>(session, VI_ATTR_TERMCHAR_EN), 0);
    EXPECT_EQ(Get<ViUInt32>(session, VI_ATTR_TMO_VALUE), 2000U);
    EXPECT_EQ(Get<ViUInt8>(session, VI_ATTR_TERMCHAR), 0x0A);
    EXPECT_EQ(Get<ViBoolean>(session, VI_ATTR_SEND_END_EN), 1);
    EXPECT_EQ(Get<ViUInt16>(session, VI_ATTR_IO_PROT), 1);
    EXPECT_EQ(Get<ViUInt32>(session, VI_ATTR_MAX_QUEUE_LENGTH), 50U);
    EXPECT_EQ(Get<ViUInt64>(session, VI_ATTR_USER_DATA_64), 0U);
    EXPECT_EQ(Get<ViUInt32>(session, VI_ATTR_RSRC_LOCK_STATE), 0U);
    EXPECT_EQ(Get<ViUInt16>(session, VI_ATTR_INTF_TYPE), 6);
    EXPECT_EQ(Get<ViUInt16>(session, VI_ATTR_INTF_NUM), 0);
    EXPECT_EQ(Get<ViUInt32>(session, VI_ATTR_RM_SESSION), manager_);
    EXPECT_EQ(Get<ViUInt32>(session, VI_ATTR_RSRC_SPEC_VERSION), 0x00700200U);
    EXPECT_EQ(Get<ViUInt32>(session, VI_ATTR_RSRC_IMPL_VERSION), 0x00300900U);
    EXPECT_EQ(GetText(session, VI_ATTR_RSRC_MANF_NAME), "Kestrion");
    EXPECT_EQ(Get<ViUInt16>(session, VI_ATTR_RSRC_MANF_ID), 0);
    EXPECT_EQ(Get<ViUInt16>(session, VI_ATTR_RD_BUF_OPER_MODE), 3);
    EXPECT_EQ(Get<ViUInt16>(session, VI_ATTR_WR_BUF_OPER_MODE), 2);
    EXPECT_EQ(Get<ViBoolean>(session, VI_ATTR_DMA_ALLOW_EN), 0);
    EXPECT_EQ(Get<ViBoolean>(session, VI_ATTR_FILE_APPEND_EN), 0);
}

TEST_P(AttributeConformance, SetAndGet) {
    struct Row {
        ViAttr attribute;
        ViAttrState state;
        unsigned width;
    };
    for (const auto& row :
         {Row{VI_ATTR_TMO_VALUE, 1234, 4}, Row{VI_ATTR_TMO_VALUE, 0, 4},
          Row{VI_ATTR_TMO_VALUE, 0xFFFFFFFF, 4}, Row{VI_ATTR_TERMCHAR, 255, 1},
          Row{VI_ATTR_TERMCHAR, 0, 1}, Row{VI_ATTR_TERMCHAR_EN, 1, 2},
          Row{VI_ATTR_TERMCHAR_EN, 0, 2}, Row{VI_ATTR_SEND_END_EN, 0, 2},
          Row{VI_ATTR_SEND_END_EN, 1, 2}, Row{VI_ATTR_MAX_QUEUE_LENGTH, 3, 4},
          Row{VI_ATTR_FILE_APPEND_EN, 1, 2}, Row{VI_ATTR_RD_BUF_OPER_MODE, 1, 2},
          Row{VI_ATTR_WR_BUF_OPER_MODE, 1, 2}, Row{VI_ATTR_USER_DATA_32, 0xCAFE0001, 4}}) {
        EXPECT_EQ(visa.viSetAttribute(session_, row.attribute, row.state), VI_SUCCESS)
            << std::hex << row.attribute;
        ViUInt64 value = 0;
        EXPECT_EQ(visa.viGetAttribute(session_, row.attribute, &value), VI_SUCCESS);
        ViUInt64 expected = 0;
        std::memcpy(&expected, &row.state, row.width);
        EXPECT_EQ(value, expected) << std::hex << row.attribute;
    }
}

TEST_P(AttributeConformance, MinusOneIsTheInfiniteTimeOut) {
    Set(session_, VI_ATTR_TMO_VALUE, static_cast<ViAttrState>(-1));
    EXPECT_EQ(Get<ViUInt32>(session_, VI_ATTR_TMO_VALUE), 0xFFFFFFFFU);
}

TEST_P(AttributeConformance, UserDataIsOneValueInTwoWidths) {
    Set(session_, VI_ATTR_USER_DATA_64, 0x0123456789ABCDEF);
    EXPECT_EQ(Get<ViUInt64>(session_, VI_ATTR_USER_DATA_64), 0x0123456789ABCDEFU);
    EXPECT_EQ(Get<ViUInt32>(session_, VI_ATTR_USER_DATA_32), 0x89ABCDEFU);
    Set(session_, VI_ATTR_USER_DATA_32, 5);
    EXPECT_EQ(Get<ViUInt64>(session_, VI_ATTR_USER_DATA_64), 5U);
}

TEST_P(AttributeConformance, StatesThatDoNotFitAreRefusedAndChangeNothing) {
    struct Row {
        ViAttr attribute;
        ViAttrState state;
    };
    for (const auto& row : {Row{VI_ATTR_TMO_VALUE, 0x100000000}, Row{VI_ATTR_TERMCHAR, 256},
                            Row{VI_ATTR_TERMCHAR_EN, 2}, Row{VI_ATTR_SEND_END_EN, 0xFFFF},
                            Row{VI_ATTR_FILE_APPEND_EN, 2}, Row{VI_ATTR_DMA_ALLOW_EN, 2},
                            Row{VI_ATTR_MAX_QUEUE_LENGTH, 0}, Row{VI_ATTR_RD_BUF_OPER_MODE, 2},
                            Row{VI_ATTR_WR_BUF_OPER_MODE, 3}, Row{VI_ATTR_IO_PROT, 0},
                            Row{VI_ATTR_IO_PROT, 2}, Row{VI_ATTR_IO_PROT, 0x10001}}) {
        ViUInt64 before = 0;
        ViUInt64 after = 0;
        EXPECT_EQ(visa.viGetAttribute(session_, row.attribute, &before), VI_SUCCESS);
        EXPECT_EQ(visa.viSetAttribute(session_, row.attribute, row.state), VI_ERROR_NSUP_ATTR_STATE)
            << std::hex << row.attribute << " " << row.state;
        EXPECT_EQ(visa.viGetAttribute(session_, row.attribute, &after), VI_SUCCESS);
        EXPECT_EQ(before, after) << std::hex << row.attribute;
    }
}

TEST_P(AttributeConformance, AllowingDmaHasNoEffect) {
    EXPECT_EQ(visa.viSetAttribute(session_, VI_ATTR_DMA_ALLOW_EN, VI_FALSE), VI_SUCCESS);
    EXPECT_EQ(visa.viSetAttribute(session_, VI_ATTR_DMA_ALLOW_EN, VI_TRUE),
              VI_WARN_NSUP_ATTR_STATE);
}

TEST_P(AttributeConformance, ReadOnlyAttributesAreRefused) {
    for (const ViAttr attribute :
         {VI_ATTR_RSRC_NAME, VI_ATTR_RSRC_CLASS, VI_ATTR_RSRC_IMPL_VERSION,
          VI_ATTR_RSRC_SPEC_VERSION, VI_ATTR_RSRC_MANF_NAME, VI_ATTR_RSRC_MANF_ID,
          VI_ATTR_RSRC_LOCK_STATE, VI_ATTR_RM_SESSION, VI_ATTR_INTF_TYPE, VI_ATTR_INTF_NUM,
          VI_ATTR_INTF_INST_NAME, VI_ATTR_TCPIP_ADDR, VI_ATTR_TCPIP_HOSTNAME, VI_ATTR_RD_BUF_SIZE,
          VI_ATTR_WR_BUF_SIZE}) {
        EXPECT_EQ(visa.viSetAttribute(session_, attribute, 1), VI_ERROR_ATTR_READONLY)
            << std::hex << attribute;
    }
}

TEST_P(AttributeConformance, AttributesOfOtherResourcesAreUnknown) {
    ViUInt64 value = 0;
    for (const ViAttr attribute :
         {VI_ATTR_GPIB_PRIMARY_ADDR, VI_ATTR_ASRL_BAUD, VI_ATTR_USB_SERIAL_NUM,
          VI_ATTR_SRC_BYTE_ORDER, VI_ATTR_DEST_BYTE_ORDER, VI_ATTR_SRC_INCREMENT,
          VI_ATTR_DEST_INCREMENT, VI_ATTR_EVENT_TYPE, VI_ATTR_JOB_ID, ViAttr{0},
          ViAttr{0xFFFFFFFF}}) {
        EXPECT_EQ(visa.viGetAttribute(session_, attribute, &value), VI_ERROR_NSUP_ATTR);
        EXPECT_EQ(visa.viSetAttribute(session_, attribute, 0), VI_ERROR_NSUP_ATTR);
    }
}

TEST_P(AttributeConformance, MissingLocationIsRefused) {
    EXPECT_EQ(visa.viGetAttribute(session_, VI_ATTR_TMO_VALUE, nullptr), VI_ERROR_USER_BUF);
}

TEST_P(AttributeConformance, QueueLengthIsReadOnlyOnceAnEventWasEnabled) {
    Set(session_, VI_ATTR_MAX_QUEUE_LENGTH, 7);
    ASSERT_EQ(visa.viEnableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE, 0), VI_SUCCESS);
    EXPECT_EQ(visa.viSetAttribute(session_, VI_ATTR_MAX_QUEUE_LENGTH, 8), VI_ERROR_ATTR_READONLY);
    ASSERT_EQ(visa.viDisableEvent(session_, VI_EVENT_IO_COMPLETION, VI_QUEUE), VI_SUCCESS);
    EXPECT_EQ(visa.viSetAttribute(session_, VI_ATTR_MAX_QUEUE_LENGTH, 8), VI_ERROR_ATTR_READONLY);
    EXPECT_EQ(Get<ViUInt32>(session_, VI_ATTR_MAX_QUEUE_LENGTH), 7U);
}

TEST_P(AttributeConformance, SendEndReachesTheInstrumentThatHasEnd) {
    ASSERT_EQ(Write(session_, "ECHO a\n"), VI_SUCCESS);
    Set(session_, VI_ATTR_SEND_END_EN, VI_FALSE);
    ASSERT_EQ(Write(session_, "ECHO b\n"), VI_SUCCESS);
    EXPECT_EQ(Read(session_, 100).bytes, "a\n");
    EXPECT_EQ(Read(session_, 100).bytes, "b\n");
    if (!IsSocket()) {
        EXPECT_EQ(WrittenToInstrument(), (std::vector<std::string>{"ECHO a\n<END>", "ECHO b\n"}));
    }
}

}  // namespace
}  // namespace published
