// The types and numbers of the VISA C interface, as far as this provider uses them, under their
// published names. They are constants of a namespace, not macros, so that they can stand beside
// those of another VISA in one program.
#pragma once

#include <cstdint>

namespace visa_provider {

// Types: VPP-4.3.2, tables 3.1.1 and 3.1.2. Their widths are fixed on every system.
using ViUInt8 = std::uint8_t;
using ViUInt16 = std::uint16_t;
using ViInt16 = std::int16_t;
using ViUInt32 = std::uint32_t;
using ViInt32 = std::int32_t;
using ViUInt64 = std::uint64_t;
using ViByte = unsigned char;
using ViChar = char;
using ViBoolean = ViUInt16;
using ViAddr = void*;
using ViBuf = ViByte*;
using ViPBuf = ViByte*;
using ViConstBuf = const ViByte*;
using ViString = ViChar*;
using ViConstString = const ViChar*;
using ViConstRsrc = ViConstString;
using ViConstKeyId = ViConstString;
using ViStatus = ViInt32;
using ViVersion = ViUInt32;
using ViObject = ViUInt32;
using ViSession = ViObject;
using ViEvent = ViObject;
using ViFindList = ViObject;
using ViAttr = ViUInt32;
using ViEventType = ViUInt32;
using ViEventFilter = ViUInt32;
using ViAccessMode = ViUInt32;
using ViJobId = ViUInt32;
using ViPSession = ViSession*;
using ViPEvent = ViEvent*;
using ViPEventType = ViEventType*;
using ViPFindList = ViFindList*;
using ViPJobId = ViJobId*;
using ViPUInt16 = ViUInt16*;
using ViPUInt32 = ViUInt32*;
using ViHndlr = ViStatus (*)(ViSession, ViEventType, ViEvent, ViAddr);
// As wide as a pointer (VPP-4.3.2, appendix A.2).
using ViAttrState = std::uintptr_t;

// General values: VPP-4.3.2, table 3.6.1 and appendix A.1.
inline constexpr ViUInt32 VI_NULL = 0;
inline constexpr ViBoolean VI_TRUE = 1;
inline constexpr ViBoolean VI_FALSE = 0;
inline constexpr ViUInt32 VI_TMO_IMMEDIATE = 0;
inline constexpr ViUInt32 VI_TMO_INFINITE = 0xFFFFFFFF;
inline constexpr ViUInt32 VI_NO_LOCK = 0;
inline constexpr ViUInt32 VI_EXCLUSIVE_LOCK = 1;
inline constexpr ViUInt32 VI_SHARED_LOCK = 2;
inline constexpr ViUInt32 VI_LOAD_CONFIG = 4;
inline constexpr ViUInt16 VI_INTF_TCPIP = 6;
inline constexpr ViUInt16 VI_PROT_NORMAL = 1;
inline constexpr ViUInt16 VI_PROT_4882_STRS = 4;
inline constexpr ViUInt16 VI_TRIG_PROT_DEFAULT = 0;
inline constexpr ViInt16 VI_TRIG_SW = -1;
inline constexpr ViUInt16 VI_FLUSH_ON_ACCESS = 1;
inline constexpr ViUInt16 VI_FLUSH_WHEN_FULL = 2;
inline constexpr ViUInt16 VI_FLUSH_DISABLE = 3;
inline constexpr ViUInt16 VI_QUEUE = 1;
inline constexpr ViUInt16 VI_HNDLR = 2;
inline constexpr ViUInt16 VI_SUSPEND_HNDLR = 4;
inline constexpr ViUInt16 VI_ALL_MECH = 0xFFFF;
inline constexpr ViHndlr VI_ANY_HNDLR = nullptr;
inline constexpr ViVersion VI_SPEC_VERSION = 0x00700200;

namespace detail {
constexpr ViStatus Status(std::uint32_t bits) {
    return static_cast<ViStatus>(bits);
}
}  // namespace detail

// Completion codes: VPP-4.3.2, table 3.3.1.
inline constexpr ViStatus VI_SUCCESS = 0;
inline constexpr ViStatus VI_SUCCESS_EVENT_EN = detail::Status(0x3FFF0002);
inline constexpr ViStatus VI_SUCCESS_EVENT_DIS = detail::Status(0x3FFF0003);
inline constexpr ViStatus VI_SUCCESS_QUEUE_EMPTY = detail::Status(0x3FFF0004);
inline constexpr ViStatus VI_SUCCESS_TERM_CHAR = detail::Status(0x3FFF0005);
inline constexpr ViStatus VI_SUCCESS_MAX_CNT = detail::Status(0x3FFF0006);
inline constexpr ViStatus VI_WARN_QUEUE_OVERFLOW = detail::Status(0x3FFF000C);
inline constexpr ViStatus VI_WARN_CONFIG_NLOADED = detail::Status(0x3FFF0077);
inline constexpr ViStatus VI_SUCCESS_DEV_NPRESENT = detail::Status(0x3FFF007D);
inline constexpr ViStatus VI_SUCCESS_TRIG_MAPPED = detail::Status(0x3FFF007E);
inline constexpr ViStatus VI_SUCCESS_QUEUE_NEMPTY = detail::Status(0x3FFF0080);
inline constexpr ViStatus VI_WARN_NULL_OBJECT = detail::Status(0x3FFF0082);
inline constexpr ViStatus VI_WARN_NSUP_ATTR_STATE = detail::Status(0x3FFF0084);
inline constexpr ViStatus VI_WARN_UNKNOWN_STATUS = detail::Status(0x3FFF0085);
inline constexpr ViStatus VI_WARN_NSUP_BUF = detail::Status(0x3FFF0088);
inline constexpr ViStatus VI_SUCCESS_NCHAIN = detail::Status(0x3FFF0098);
inline constexpr ViStatus VI_SUCCESS_NESTED_SHARED = detail::Status(0x3FFF0099);
inline constexpr ViStatus VI_SUCCESS_NESTED_EXCLUSIVE = detail::Status(0x3FFF009A);
inline constexpr ViStatus VI_SUCCESS_SYNC = detail::Status(0x3FFF009B);
inline constexpr ViStatus VI_WARN_EXT_FUNC_NIMPL = detail::Status(0x3FFF00A9);
inline constexpr ViStatus VI_WARN_SERVER_CERT_UNTRUSTED = detail::Status(0x3FFF00F0);
inline constexpr ViStatus VI_WARN_SERVER_CERT_INV_SUBJECT = detail::Status(0x3FFF00F1);

// Error codes: VPP-4.3.2, table 3.3.1.
inline constexpr ViStatus VI_ERROR_SYSTEM_ERROR = detail::Status(0xBFFF0000);
inline constexpr ViStatus VI_ERROR_INV_OBJECT = detail::Status(0xBFFF000E);
inline constexpr ViStatus VI_ERROR_INV_SESSION = detail::Status(0xBFFF000E);
inline constexpr ViStatus VI_ERROR_RSRC_LOCKED = detail::Status(0xBFFF000F);
inline constexpr ViStatus VI_ERROR_INV_EXPR = detail::Status(0xBFFF0010);
inline constexpr ViStatus VI_ERROR_RSRC_NFOUND = detail::Status(0xBFFF0011);
inline constexpr ViStatus VI_ERROR_INV_RSRC_NAME = detail::Status(0xBFFF0012);
inline constexpr ViStatus VI_ERROR_INV_ACC_MODE = detail::Status(0xBFFF0013);
inline constexpr ViStatus VI_ERROR_TMO = detail::Status(0xBFFF0015);
inline constexpr ViStatus VI_ERROR_CLOSING_FAILED = detail::Status(0xBFFF0016);
inline constexpr ViStatus VI_ERROR_INV_DEGREE = detail::Status(0xBFFF001B);
inline constexpr ViStatus VI_ERROR_INV_JOB_ID = detail::Status(0xBFFF001C);
inline constexpr ViStatus VI_ERROR_NSUP_ATTR = detail::Status(0xBFFF001D);
inline constexpr ViStatus VI_ERROR_NSUP_ATTR_STATE = detail::Status(0xBFFF001E);
inline constexpr ViStatus VI_ERROR_ATTR_READONLY = detail::Status(0xBFFF001F);
inline constexpr ViStatus VI_ERROR_INV_LOCK_TYPE = detail::Status(0xBFFF0020);
inline constexpr ViStatus VI_ERROR_INV_ACCESS_KEY = detail::Status(0xBFFF0021);
inline constexpr ViStatus VI_ERROR_INV_EVENT = detail::Status(0xBFFF0026);
inline constexpr ViStatus VI_ERROR_INV_MECH = detail::Status(0xBFFF0027);
inline constexpr ViStatus VI_ERROR_HNDLR_NINSTALLED = detail::Status(0xBFFF0028);
inline constexpr ViStatus VI_ERROR_INV_HNDLR_REF = detail::Status(0xBFFF0029);
inline constexpr ViStatus VI_ERROR_INV_CONTEXT = detail::Status(0xBFFF002A);
inline constexpr ViStatus VI_ERROR_NENABLED = detail::Status(0xBFFF002F);
inline constexpr ViStatus VI_ERROR_ABORT = detail::Status(0xBFFF0030);
inline constexpr ViStatus VI_ERROR_RAW_WR_PROT_VIOL = detail::Status(0xBFFF0034);
inline constexpr ViStatus VI_ERROR_RAW_RD_PROT_VIOL = detail::Status(0xBFFF0035);
inline constexpr ViStatus VI_ERROR_OUTP_PROT_VIOL = detail::Status(0xBFFF0036);
inline constexpr ViStatus VI_ERROR_INP_PROT_VIOL = detail::Status(0xBFFF0037);
inline constexpr ViStatus VI_ERROR_BERR = detail::Status(0xBFFF0038);
inline constexpr ViStatus VI_ERROR_IN_PROGRESS = detail::Status(0xBFFF0039);
inline constexpr ViStatus VI_ERROR_INV_SETUP = detail::Status(0xBFFF003A);
inline constexpr ViStatus VI_ERROR_QUEUE_ERROR = detail::Status(0xBFFF003B);
inline constexpr ViStatus VI_ERROR_ALLOC = detail::Status(0xBFFF003C);
inline constexpr ViStatus VI_ERROR_INV_MASK = detail::Status(0xBFFF003D);
inline constexpr ViStatus VI_ERROR_IO = detail::Status(0xBFFF003E);
inline constexpr ViStatus VI_ERROR_INV_FMT = detail::Status(0xBFFF003F);
inline constexpr ViStatus VI_ERROR_NSUP_FMT = detail::Status(0xBFFF0041);
inline constexpr ViStatus VI_ERROR_LINE_IN_USE = detail::Status(0xBFFF0042);
inline constexpr ViStatus VI_ERROR_LINE_NRESERVED = detail::Status(0xBFFF0043);
inline constexpr ViStatus VI_ERROR_NSUP_MODE = detail::Status(0xBFFF0046);
inline constexpr ViStatus VI_ERROR_SRQ_NOCCURRED = detail::Status(0xBFFF004A);
inline constexpr ViStatus VI_ERROR_INV_SPACE = detail::Status(0xBFFF004E);
inline constexpr ViStatus VI_ERROR_INV_OFFSET = detail::Status(0xBFFF0051);
inline constexpr ViStatus VI_ERROR_INV_WIDTH = detail::Status(0xBFFF0052);
inline constexpr ViStatus VI_ERROR_NSUP_OFFSET = detail::Status(0xBFFF0054);
inline constexpr ViStatus VI_ERROR_NSUP_VAR_WIDTH = detail::Status(0xBFFF0055);
inline constexpr ViStatus VI_ERROR_WINDOW_NMAPPED = detail::Status(0xBFFF0057);
inline constexpr ViStatus VI_ERROR_RESP_PENDING = detail::Status(0xBFFF0059);
inline constexpr ViStatus VI_ERROR_NLISTENERS = detail::Status(0xBFFF005F);
inline constexpr ViStatus VI_ERROR_NCIC = detail::Status(0xBFFF0060);
inline constexpr ViStatus VI_ERROR_NSYS_CNTLR = detail::Status(0xBFFF0061);
inline constexpr ViStatus VI_ERROR_NSUP_OPER = detail::Status(0xBFFF0067);
inline constexpr ViStatus VI_ERROR_INTR_PENDING = detail::Status(0xBFFF0068);
inline constexpr ViStatus VI_ERROR_ASRL_PARITY = detail::Status(0xBFFF006A);
inline constexpr ViStatus VI_ERROR_ASRL_FRAMING = detail::Status(0xBFFF006B);
inline constexpr ViStatus VI_ERROR_ASRL_OVERRUN = detail::Status(0xBFFF006C);
inline constexpr ViStatus VI_ERROR_TRIG_NMAPPED = detail::Status(0xBFFF006E);
inline constexpr ViStatus VI_ERROR_NSUP_ALIGN_OFFSET = detail::Status(0xBFFF0070);
inline constexpr ViStatus VI_ERROR_USER_BUF = detail::Status(0xBFFF0071);
inline constexpr ViStatus VI_ERROR_RSRC_BUSY = detail::Status(0xBFFF0072);
inline constexpr ViStatus VI_ERROR_NSUP_WIDTH = detail::Status(0xBFFF0076);
inline constexpr ViStatus VI_ERROR_INV_PARAMETER = detail::Status(0xBFFF0078);
inline constexpr ViStatus VI_ERROR_INV_PROT = detail::Status(0xBFFF0079);
inline constexpr ViStatus VI_ERROR_INV_SIZE = detail::Status(0xBFFF007B);
inline constexpr ViStatus VI_ERROR_WINDOW_MAPPED = detail::Status(0xBFFF0080);
inline constexpr ViStatus VI_ERROR_NIMPL_OPER = detail::Status(0xBFFF0081);
inline constexpr ViStatus VI_ERROR_INV_LENGTH = detail::Status(0xBFFF0083);
inline constexpr ViStatus VI_ERROR_INV_MODE = detail::Status(0xBFFF0091);
inline constexpr ViStatus VI_ERROR_SESN_NLOCKED = detail::Status(0xBFFF009C);
inline constexpr ViStatus VI_ERROR_MEM_NSHARED = detail::Status(0xBFFF009D);
inline constexpr ViStatus VI_ERROR_LIBRARY_NFOUND = detail::Status(0xBFFF009E);
inline constexpr ViStatus VI_ERROR_NSUP_INTR = detail::Status(0xBFFF009F);
inline constexpr ViStatus VI_ERROR_INV_LINE = detail::Status(0xBFFF00A0);
inline constexpr ViStatus VI_ERROR_FILE_ACCESS = detail::Status(0xBFFF00A1);
inline constexpr ViStatus VI_ERROR_FILE_IO = detail::Status(0xBFFF00A2);
inline constexpr ViStatus VI_ERROR_NSUP_LINE = detail::Status(0xBFFF00A3);
inline constexpr ViStatus VI_ERROR_NSUP_MECH = detail::Status(0xBFFF00A4);
inline constexpr ViStatus VI_ERROR_INTF_NUM_NCONFIG = detail::Status(0xBFFF00A5);
inline constexpr ViStatus VI_ERROR_CONN_LOST = detail::Status(0xBFFF00A6);
inline constexpr ViStatus VI_ERROR_NPERMISSION = detail::Status(0xBFFF00A8);
inline constexpr ViStatus VI_ERROR_SERVER_CERT = detail::Status(0xBFFF00B0);
inline constexpr ViStatus VI_ERROR_SERVER_CERT_UNTRUSTED = detail::Status(0xBFFF00B1);
inline constexpr ViStatus VI_ERROR_SERVER_CERT_EXPIRED = detail::Status(0xBFFF00B2);
inline constexpr ViStatus VI_ERROR_SERVER_CERT_REVOKED = detail::Status(0xBFFF00B3);
inline constexpr ViStatus VI_ERROR_SERVER_CERT_INV_SUBJECT = detail::Status(0xBFFF00B4);

// Attributes of sessions: VPP-4.3.2, table 3.4.1.
inline constexpr ViAttr VI_ATTR_RSRC_CLASS = 0xBFFF0001;
inline constexpr ViAttr VI_ATTR_RSRC_NAME = 0xBFFF0002;
inline constexpr ViAttr VI_ATTR_RSRC_IMPL_VERSION = 0x3FFF0003;
inline constexpr ViAttr VI_ATTR_RSRC_LOCK_STATE = 0x3FFF0004;
inline constexpr ViAttr VI_ATTR_MAX_QUEUE_LENGTH = 0x3FFF0005;
inline constexpr ViAttr VI_ATTR_USER_DATA_32 = 0x3FFF0007;
inline constexpr ViAttr VI_ATTR_USER_DATA_64 = 0x3FFF000A;
inline constexpr ViAttr VI_ATTR_SEND_END_EN = 0x3FFF0016;
inline constexpr ViAttr VI_ATTR_TERMCHAR = 0x3FFF0018;
inline constexpr ViAttr VI_ATTR_TMO_VALUE = 0x3FFF001A;
inline constexpr ViAttr VI_ATTR_IO_PROT = 0x3FFF001C;
inline constexpr ViAttr VI_ATTR_DMA_ALLOW_EN = 0x3FFF001E;
inline constexpr ViAttr VI_ATTR_RD_BUF_OPER_MODE = 0x3FFF002A;
inline constexpr ViAttr VI_ATTR_RD_BUF_SIZE = 0x3FFF002B;
inline constexpr ViAttr VI_ATTR_WR_BUF_OPER_MODE = 0x3FFF002D;
inline constexpr ViAttr VI_ATTR_WR_BUF_SIZE = 0x3FFF002E;
inline constexpr ViAttr VI_ATTR_SUPPRESS_END_EN = 0x3FFF0036;
inline constexpr ViAttr VI_ATTR_TERMCHAR_EN = 0x3FFF0038;
inline constexpr ViAttr VI_ATTR_DEST_BYTE_ORDER = 0x3FFF003A;
inline constexpr ViAttr VI_ATTR_SRC_BYTE_ORDER = 0x3FFF003D;
inline constexpr ViAttr VI_ATTR_SRC_INCREMENT = 0x3FFF0040;
inline constexpr ViAttr VI_ATTR_DEST_INCREMENT = 0x3FFF0041;
inline constexpr ViAttr VI_ATTR_RM_SESSION = 0x3FFF00C4;
inline constexpr ViAttr VI_ATTR_INTF_INST_NAME = 0xBFFF00E9;
inline constexpr ViAttr VI_ATTR_RSRC_SPEC_VERSION = 0x3FFF0170;
inline constexpr ViAttr VI_ATTR_INTF_TYPE = 0x3FFF0171;
inline constexpr ViAttr VI_ATTR_RSRC_MANF_NAME = 0xBFFF0174;
inline constexpr ViAttr VI_ATTR_RSRC_MANF_ID = 0x3FFF0175;
inline constexpr ViAttr VI_ATTR_INTF_NUM = 0x3FFF0176;
inline constexpr ViAttr VI_ATTR_TRIG_ID = 0x3FFF0177;
inline constexpr ViAttr VI_ATTR_FILE_APPEND_EN = 0x3FFF0192;
inline constexpr ViAttr VI_ATTR_TCPIP_ADDR = 0xBFFF0195;
inline constexpr ViAttr VI_ATTR_TCPIP_HOSTNAME = 0xBFFF0196;
inline constexpr ViAttr VI_ATTR_TCPIP_PORT = 0x3FFF0197;
inline constexpr ViAttr VI_ATTR_TCPIP_DEVICE_NAME = 0xBFFF0199;
inline constexpr ViAttr VI_ATTR_TCPIP_NODELAY = 0x3FFF019A;
inline constexpr ViAttr VI_ATTR_TCPIP_KEEPALIVE = 0x3FFF019B;
inline constexpr ViAttr VI_ATTR_TCPIP_IS_HISLIP = 0x3FFF0303;

// Attributes of events: VPP-4.3.2, table 3.4.1.
inline constexpr ViAttr VI_ATTR_JOB_ID = 0x3FFF4006;
inline constexpr ViAttr VI_ATTR_EVENT_TYPE = 0x3FFF4010;
inline constexpr ViAttr VI_ATTR_STATUS = 0x3FFF4025;
inline constexpr ViAttr VI_ATTR_RET_COUNT_32 = 0x3FFF4026;
inline constexpr ViAttr VI_ATTR_BUFFER = 0x3FFF4027;
inline constexpr ViAttr VI_ATTR_RET_COUNT_64 = 0x3FFF4028;
inline constexpr ViAttr VI_ATTR_OPER_NAME = 0xBFFF4042;

// The names without a width stand for the width of a pointer (VPP-4.3.2, appendix A.2).
inline constexpr bool kWideAddresses = sizeof(void*) == 8;
inline constexpr ViAttr VI_ATTR_USER_DATA =
    kWideAddresses ? VI_ATTR_USER_DATA_64 : VI_ATTR_USER_DATA_32;
inline constexpr ViAttr VI_ATTR_RET_COUNT =
    kWideAddresses ? VI_ATTR_RET_COUNT_64 : VI_ATTR_RET_COUNT_32;

// Event types: VPP-4.3.2, table 3.5.1.
inline constexpr ViEventType VI_EVENT_IO_COMPLETION = 0x3FFF2009;
inline constexpr ViEventType VI_EVENT_TRIG = 0xBFFF200A;
inline constexpr ViEventType VI_EVENT_SERVICE_REQ = 0x3FFF200B;
inline constexpr ViEventType VI_EVENT_EXCEPTION = 0xBFFF200E;
inline constexpr ViEventType VI_ALL_ENABLED_EVENTS = 0x3FFF7FFF;

}  // namespace visa_provider
