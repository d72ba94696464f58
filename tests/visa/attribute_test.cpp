// Attributes that a kind of session has for itself.
#include "tests/visa/session_fixture.h"

namespace visa_provider::testing {

using AttributeTest = VisaTest;

TEST_F(AttributeTest, OfASocket) {
    LoopbackServer server(AnswerAll);
    const auto name = "tcpip3::127.0.0.1::" + std::to_string(server.Port()) + "::socket";
    const auto session = Open(name);
    EXPECT_EQ(GetText(session, VI_ATTR_RSRC_NAME),
              "TCPIP3::127.0.0.1::" + std::to_string(server.Port()) + "::SOCKET");
    EXPECT_EQ(GetText(session, VI_ATTR_RSRC_CLASS), "SOCKET");
    EXPECT_EQ(GetText(session, VI_ATTR_INTF_INST_NAME), "TCPIP3 (raw socket to 127.0.0.1)");
    EXPECT_EQ(Get<ViUInt16>(session, VI_ATTR_INTF_NUM), 3);
    EXPECT_EQ(GetText(session, VI_ATTR_TCPIP_ADDR), "127.0.0.1");
    EXPECT_EQ(GetText(session, VI_ATTR_TCPIP_HOSTNAME), "");
    EXPECT_EQ(Get<ViUInt16>(session, VI_ATTR_TCPIP_PORT), server.Port());
    EXPECT_EQ(viSetAttribute(session, VI_ATTR_TCPIP_PORT, 1), VI_ERROR_ATTR_READONLY);
    EXPECT_EQ(Get<ViBoolean>(session, VI_ATTR_TERMCHAR_EN), 0);
    for (const auto attribute : {VI_ATTR_TCPIP_NODELAY, VI_ATTR_TCPIP_KEEPALIVE}) {
        EXPECT_EQ(Get<ViBoolean>(session, attribute), attribute == VI_ATTR_TCPIP_NODELAY ? 1 : 0);
        Set(session, attribute, VI_FALSE);
        EXPECT_EQ(Get<ViBoolean>(session, attribute), 0);
        Set(session, attribute, VI_TRUE);
        EXPECT_EQ(Get<ViBoolean>(session, attribute), 1);
        EXPECT_EQ(viSetAttribute(session, attribute, 2), VI_ERROR_NSUP_ATTR_STATE);
    }
    EXPECT_EQ(viSetAttribute(session, VI_ATTR_IO_PROT, VI_PROT_4882_STRS), VI_SUCCESS);
    EXPECT_EQ(viSetAttribute(session, VI_ATTR_SUPPRESS_END_EN, VI_TRUE), VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(viSetAttribute(session, VI_ATTR_TRIG_ID, 0), VI_ERROR_NSUP_ATTR);
}

TEST_F(AttributeTest, OfAVirtualInstrument) {
    const auto session = Open("virtual::scripted::instr");
    EXPECT_EQ(GetText(session, VI_ATTR_RSRC_NAME), "VIRTUAL::SCRIPTED::INSTR");
    EXPECT_EQ(GetText(session, VI_ATTR_RSRC_CLASS), "INSTR");
    EXPECT_EQ(GetText(session, VI_ATTR_INTF_INST_NAME), "Virtual instrument SCRIPTED");
    EXPECT_EQ(GetText(session, VI_ATTR_TCPIP_ADDR), "");
    EXPECT_EQ(GetText(session, VI_ATTR_TCPIP_HOSTNAME), "");
    EXPECT_EQ(GetText(session, VI_ATTR_TCPIP_DEVICE_NAME), "SCRIPTED");
    EXPECT_EQ(Get<ViBoolean>(session, VI_ATTR_TCPIP_IS_HISLIP), 0);
    EXPECT_EQ(viSetAttribute(session, VI_ATTR_TCPIP_DEVICE_NAME, 0), VI_ERROR_ATTR_READONLY);
    EXPECT_EQ(Get<ViInt16>(session, VI_ATTR_TRIG_ID), -1);
    EXPECT_EQ(viSetAttribute(session, VI_ATTR_TRIG_ID, static_cast<ViAttrState>(-1)), VI_SUCCESS);
    EXPECT_EQ(viSetAttribute(session, VI_ATTR_TRIG_ID, 0), VI_ERROR_NSUP_ATTR_STATE);
    EXPECT_EQ(viSetAttribute(session, VI_ATTR_IO_PROT, VI_PROT_4882_STRS),
              VI_ERROR_NSUP_ATTR_STATE);
    EXPECT_EQ(viSetAttribute(session, VI_ATTR_TCPIP_PORT, 1), VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(Get<ViBoolean>(session, VI_ATTR_TERMCHAR_EN), 0);
    EXPECT_EQ(Get<ViBoolean>(session, VI_ATTR_SUPPRESS_END_EN), 0);
}

TEST_F(AttributeTest, SuppressedEndDoesNotEndTheRead) {
    const auto session = OpenVirtual();
    Set(session, VI_ATTR_SUPPRESS_END_EN, VI_TRUE);
    ASSERT_EQ(Write(session, "ECHO a\nECHO b\n"), VI_SUCCESS);
    const auto read = Read(session, 4);
    EXPECT_EQ(read.status, VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(read.bytes, "a\nb\n");
}

TEST_F(AttributeTest, OfAManager) {
    EXPECT_EQ(GetText(manager_, VI_ATTR_RSRC_NAME), "");
    EXPECT_EQ(GetText(manager_, VI_ATTR_RSRC_CLASS), "RM");
    EXPECT_EQ(GetText(manager_, VI_ATTR_RSRC_MANF_NAME), "Kestrion");
    EXPECT_EQ(Get<ViUInt32>(manager_, VI_ATTR_RM_SESSION), 0U);
    EXPECT_EQ(Get<ViUInt32>(manager_, VI_ATTR_RSRC_SPEC_VERSION), 0x00700200U);
    EXPECT_EQ(Get<ViUInt32>(manager_, VI_ATTR_RSRC_LOCK_STATE), 0U);
    Set(manager_, VI_ATTR_USER_DATA, 77);
    EXPECT_EQ(Get<ViUInt64>(manager_, VI_ATTR_USER_DATA), 77U);
    Set(manager_, VI_ATTR_USER_DATA_32, 78);
    EXPECT_EQ(Get<ViUInt32>(manager_, VI_ATTR_USER_DATA_32), 78U);
    Set(manager_, VI_ATTR_MAX_QUEUE_LENGTH, 9);
    EXPECT_EQ(Get<ViUInt32>(manager_, VI_ATTR_MAX_QUEUE_LENGTH), 9U);
    EXPECT_EQ(viSetAttribute(manager_, VI_ATTR_MAX_QUEUE_LENGTH, 0), VI_ERROR_NSUP_ATTR_STATE);
    EXPECT_EQ(viSetAttribute(manager_, VI_ATTR_RSRC_NAME, 0), VI_ERROR_ATTR_READONLY);
    EXPECT_EQ(viSetAttribute(manager_, VI_ATTR_TMO_VALUE, 0), VI_ERROR_NSUP_ATTR);
}

}  // namespace visa_provider::testing
