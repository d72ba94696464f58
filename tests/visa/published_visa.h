// The VISA C interface as the standard prints it, typed from there and not from the code under
// test: numbers and types of VPP-4.3.2, tables 3.1.1, 3.3.1, 3.4.1, 3.5.1 and 3.6.1, and the
// signatures of table 3.2.1 of the functions that the driver calls.
#pragma once

#include <cstdint>

namespace published {

using ViByte = unsigned char;
using ViChar = char;
using ViUInt8 = std::uint8_t;
using ViInt16 = std::int16_t;
using ViUInt16 = std::uint16_t;
using ViInt32 = std::int32_t;
using ViUInt32 = std::uint32_t;
using ViUInt64 = std::uint64_t;
using ViBoolean = ViUInt16;
using ViStatus = ViInt32;
using ViObject = ViUInt32;
using ViSession = ViObject;
using ViEvent = ViObject;
using ViAttr = ViUInt32;
using ViAttrState = ViUInt64;  // as wide as a pointer
using ViEventType = ViUInt32;
using ViEventFilter = ViUInt32;
using ViAccessMode = ViUInt32;
using ViJobId = ViUInt32;
using ViAddr = void*;
using ViHndlr = ViStatus (*)(ViSession, ViEventType, ViEvent, ViAddr);

inline constexpr ViUInt32 VI_NULL = 0;
inline constexpr ViBoolean VI_TRUE = 1;
inline constexpr ViBoolean VI_FALSE = 0;
inline constexpr ViUInt32 VI_TMO_IMMEDIATE = 0;
inline constexpr ViUInt32 VI_TMO_INFINITE = 0xFFFFFFFF;
inline constexpr ViAccessMode VI_NO_LOCK = 0;
inline constexpr ViAccessMode VI_EXCLUSIVE_LOCK = 1;
inline constexpr ViAccessMode VI_SHARED_LOCK = 2;
inline constexpr ViAccessMode VI_LOAD_CONFIG = 4;
inline constexpr ViUInt16 VI_QUEUE = 1;
inline constexpr ViUInt16 VI_HNDLR = 2;
inline constexpr ViUInt16 VI_SUSPEND_HNDLR = 4;
inline constexpr ViUInt16 VI_ALL_MECH = 0xFFFF;
inline constexpr ViHndlr VI_ANY_HNDLR = nullptr;
inline constexpr ViUInt16 VI_PROT_NORMAL = 1;
inline constexpr ViUInt16 VI_PROT_4882_STRS = 4;

constexpr ViStatus Status(std::uint32_t bits) {
    return static_cast<ViStatus>(bits);
}

inline constexpr ViStatus VI_SUCCESS = 0;
inline constexpr ViStatus VI_SUCCESS_EVENT_EN = Status(0x3FFF0002);
inline constexpr ViStatus VI_SUCCESS_EVENT_DIS = Status(0x3FFF0003);
inline constexpr ViStatus VI_SUCCESS_QUEUE_EMPTY = Status(0x3FFF0004);
inline constexpr ViStatus VI_SUCCESS_TERM_CHAR = Status(0x3FFF0005);
inline constexpr ViStatus VI_SUCCESS_MAX_CNT = Status(0x3FFF0006);
inline constexpr ViStatus VI_SUCCESS_DEV_NPRESENT = Status(0x3FFF007D);
inline constexpr ViStatus VI_SUCCESS_TRIG_MAPPED = Status(0x3FFF007E);
inline constexpr ViStatus VI_SUCCESS_QUEUE_NEMPTY = Status(0x3FFF0080);
inline constexpr ViStatus VI_SUCCESS_NCHAIN = Status(0x3FFF0098);
inline constexpr ViStatus VI_SUCCESS_NESTED_SHARED = Status(0x3FFF0099);
inline constexpr ViStatus VI_SUCCESS_NESTED_EXCLUSIVE = Status(0x3FFF009A);
inline constexpr ViStatus VI_SUCCESS_SYNC = Status(0x3FFF009B);
inline constexpr ViStatus VI_WARN_QUEUE_OVERFLOW = Status(0x3FFF000C);
inline constexpr ViStatus VI_WARN_CONFIG_NLOADED = Status(0x3FFF0077);
inline constexpr ViStatus VI_WARN_NULL_OBJECT = Status(0x3FFF0082);
inline constexpr ViStatus VI_WARN_NSUP_ATTR_STATE = Status(0x3FFF0084);
inline constexpr ViStatus VI_WARN_UNKNOWN_STATUS = Status(0x3FFF0085);
inline constexpr ViStatus VI_WARN_NSUP_BUF = Status(0x3FFF0088);
inline constexpr ViStatus VI_WARN_EXT_FUNC_NIMPL = Status(0x3FFF00A9);
inline constexpr ViStatus VI_WARN_SERVER_CERT_UNTRUSTED = Status(0x3FFF00F0);
inline constexpr ViStatus VI_WARN_SERVER_CERT_INV_SUBJECT = Status(0x3FFF00F1);
inline constexpr ViStatus VI_ERROR_SYSTEM_ERROR = Status(0xBFFF0000);
inline constexpr ViStatus VI_ERROR_INV_OBJECT = Status(0xBFFF000E);
inline constexpr ViStatus VI_ERROR_INV_SESSION = Status(0xBFFF000E);
inline constexpr ViStatus VI_ERROR_RSRC_LOCKED = Status(0xBFFF000F);
inline constexpr ViStatus VI_ERROR_INV_EXPR = Status(0xBFFF0010);
inline constexpr ViStatus VI_ERROR_RSRC_NFOUND = Status(0xBFFF0011);
inline constexpr ViStatus VI_ERROR_INV_RSRC_NAME = Status(0xBFFF0012);
inline constexpr ViStatus VI_ERROR_INV_ACC_MODE = Status(0xBFFF0013);
inline constexpr ViStatus VI_ERROR_TMO = Status(0xBFFF0015);
inline constexpr ViStatus VI_ERROR_CLOSING_FAILED = Status(0xBFFF0016);
inline constexpr ViStatus VI_ERROR_INV_DEGREE = Status(0xBFFF001B);
inline constexpr ViStatus VI_ERROR_INV_JOB_ID = Status(0xBFFF001C);
inline constexpr ViStatus VI_ERROR_NSUP_ATTR = Status(0xBFFF001D);
inline constexpr ViStatus VI_ERROR_NSUP_ATTR_STATE = Status(0xBFFF001E);
inline constexpr ViStatus VI_ERROR_ATTR_READONLY = Status(0xBFFF001F);
inline constexpr ViStatus VI_ERROR_INV_LOCK_TYPE = Status(0xBFFF0020);
inline constexpr ViStatus VI_ERROR_INV_ACCESS_KEY = Status(0xBFFF0021);
inline constexpr ViStatus VI_ERROR_INV_EVENT = Status(0xBFFF0026);
inline constexpr ViStatus VI_ERROR_INV_MECH = Status(0xBFFF0027);
inline constexpr ViStatus VI_ERROR_HNDLR_NINSTALLED = Status(0xBFFF0028);
inline constexpr ViStatus VI_ERROR_INV_HNDLR_REF = Status(0xBFFF0029);
inline constexpr ViStatus VI_ERROR_INV_CONTEXT = Status(0xBFFF002A);
inline constexpr ViStatus VI_ERROR_NENABLED = Status(0xBFFF002F);
inline constexpr ViStatus VI_ERROR_ABORT = Status(0xBFFF0030);
inline constexpr ViStatus VI_ERROR_RAW_WR_PROT_VIOL = Status(0xBFFF0034);
inline constexpr ViStatus VI_ERROR_RAW_RD_PROT_VIOL = Status(0xBFFF0035);
inline constexpr ViStatus VI_ERROR_OUTP_PROT_VIOL = Status(0xBFFF0036);
inline constexpr ViStatus VI_ERROR_INP_PROT_VIOL = Status(0xBFFF0037);
inline constexpr ViStatus VI_ERROR_BERR = Status(0xBFFF0038);
inline constexpr ViStatus VI_ERROR_IN_PROGRESS = Status(0xBFFF0039);
inline constexpr ViStatus VI_ERROR_INV_SETUP = Status(0xBFFF003A);
inline constexpr ViStatus VI_ERROR_QUEUE_ERROR = Status(0xBFFF003B);
inline constexpr ViStatus VI_ERROR_ALLOC = Status(0xBFFF003C);
inline constexpr ViStatus VI_ERROR_INV_MASK = Status(0xBFFF003D);
inline constexpr ViStatus VI_ERROR_IO = Status(0xBFFF003E);
inline constexpr ViStatus VI_ERROR_INV_FMT = Status(0xBFFF003F);
inline constexpr ViStatus VI_ERROR_NSUP_FMT = Status(0xBFFF0041);
inline constexpr ViStatus VI_ERROR_LINE_IN_USE = Status(0xBFFF0042);
inline constexpr ViStatus VI_ERROR_LINE_NRESERVED = Status(0xBFFF0043);
inline constexpr ViStatus VI_ERROR_NSUP_MODE = Status(0xBFFF0046);
inline constexpr ViStatus VI_ERROR_SRQ_NOCCURRED = Status(0xBFFF004A);
inline constexpr ViStatus VI_ERROR_INV_SPACE = Status(0xBFFF004E);
inline constexpr ViStatus VI_ERROR_INV_OFFSET = Status(0xBFFF0051);
inline constexpr ViStatus VI_ERROR_INV_WIDTH = Status(0xBFFF0052);
inline constexpr ViStatus VI_ERROR_NSUP_OFFSET = Status(0xBFFF0054);
inline constexpr ViStatus VI_ERROR_NSUP_VAR_WIDTH = Status(0xBFFF0055);
inline constexpr ViStatus VI_ERROR_WINDOW_NMAPPED = Status(0xBFFF0057);
inline constexpr ViStatus VI_ERROR_RESP_PENDING = Status(0xBFFF0059);
inline constexpr ViStatus VI_ERROR_NLISTENERS = Status(0xBFFF005F);
inline constexpr ViStatus VI_ERROR_NCIC = Status(0xBFFF0060);
inline constexpr ViStatus VI_ERROR_NSYS_CNTLR = Status(0xBFFF0061);
inline constexpr ViStatus VI_ERROR_NSUP_OPER = Status(0xBFFF0067);
inline constexpr ViStatus VI_ERROR_INTR_PENDING = Status(0xBFFF0068);
inline constexpr ViStatus VI_ERROR_ASRL_PARITY = Status(0xBFFF006A);
inline constexpr ViStatus VI_ERROR_ASRL_FRAMING = Status(0xBFFF006B);
inline constexpr ViStatus VI_ERROR_ASRL_OVERRUN = Status(0xBFFF006C);
inline constexpr ViStatus VI_ERROR_TRIG_NMAPPED = Status(0xBFFF006E);
inline constexpr ViStatus VI_ERROR_NSUP_ALIGN_OFFSET = Status(0xBFFF0070);
inline constexpr ViStatus VI_ERROR_USER_BUF = Status(0xBFFF0071);
inline constexpr ViStatus VI_ERROR_RSRC_BUSY = Status(0xBFFF0072);
inline constexpr ViStatus VI_ERROR_NSUP_WIDTH = Status(0xBFFF0076);
inline constexpr ViStatus VI_ERROR_INV_PARAMETER = Status(0xBFFF0078);
inline constexpr ViStatus VI_ERROR_INV_PROT = Status(0xBFFF0079);
inline constexpr ViStatus VI_ERROR_INV_SIZE = Status(0xBFFF007B);
inline constexpr ViStatus VI_ERROR_WINDOW_MAPPED = Status(0xBFFF0080);
inline constexpr ViStatus VI_ERROR_NIMPL_OPER = Status(0xBFFF0081);
inline constexpr ViStatus VI_ERROR_INV_LENGTH = Status(0xBFFF0083);
inline constexpr ViStatus VI_ERROR_INV_MODE = Status(0xBFFF0091);
inline constexpr ViStatus VI_ERROR_SESN_NLOCKED = Status(0xBFFF009C);
inline constexpr ViStatus VI_ERROR_MEM_NSHARED = Status(0xBFFF009D);
inline constexpr ViStatus VI_ERROR_LIBRARY_NFOUND = Status(0xBFFF009E);
inline constexpr ViStatus VI_ERROR_NSUP_INTR = Status(0xBFFF009F);
inline constexpr ViStatus VI_ERROR_INV_LINE = Status(0xBFFF00A0);
inline constexpr ViStatus VI_ERROR_FILE_ACCESS = Status(0xBFFF00A1);
inline constexpr ViStatus VI_ERROR_FILE_IO = Status(0xBFFF00A2);
inline constexpr ViStatus VI_ERROR_NSUP_LINE = Status(0xBFFF00A3);
inline constexpr ViStatus VI_ERROR_NSUP_MECH = Status(0xBFFF00A4);
inline constexpr ViStatus VI_ERROR_INTF_NUM_NCONFIG = Status(0xBFFF00A5);
inline constexpr ViStatus VI_ERROR_CONN_LOST = Status(0xBFFF00A6);
inline constexpr ViStatus VI_ERROR_NPERMISSION = Status(0xBFFF00A8);
inline constexpr ViStatus VI_ERROR_SERVER_CERT = Status(0xBFFF00B0);
inline constexpr ViStatus VI_ERROR_SERVER_CERT_UNTRUSTED = Status(0xBFFF00B1);
inline constexpr ViStatus VI_ERROR_SERVER_CERT_EXPIRED = Status(0xBFFF00B2);
inline constexpr ViStatus VI_ERROR_SERVER_CERT_REVOKED = Status(0xBFFF00B3);
inline constexpr ViStatus VI_ERROR_SERVER_CERT_INV_SUBJECT = Status(0xBFFF00B4);

inline constexpr ViAttr VI_ATTR_RSRC_CLASS = 0xBFFF0001;
inline constexpr ViAttr VI_ATTR_RSRC_NAME = 0xBFFF0002;
inline constexpr ViAttr VI_ATTR_RSRC_IMPL_VERSION = 0x3FFF0003;
inline constexpr ViAttr VI_ATTR_RSRC_LOCK_STATE = 0x3FFF0004;
inline constexpr ViAttr VI_ATTR_MAX_QUEUE_LENGTH = 0x3FFF0005;
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
inline constexpr ViAttr VI_ATTR_GPIB_PRIMARY_ADDR = 0x3FFF0172;
inline constexpr ViAttr VI_ATTR_ASRL_BAUD = 0x3FFF0021;
inline constexpr ViAttr VI_ATTR_USB_SERIAL_NUM = 0xBFFF01A0;
inline constexpr ViAttr VI_ATTR_JOB_ID = 0x3FFF4006;
inline constexpr ViAttr VI_ATTR_EVENT_TYPE = 0x3FFF4010;
inline constexpr ViAttr VI_ATTR_STATUS = 0x3FFF4025;
inline constexpr ViAttr VI_ATTR_BUFFER = 0x3FFF4027;
inline constexpr ViAttr VI_ATTR_OPER_NAME = 0xBFFF4042;
inline constexpr ViAttr VI_ATTR_USER_DATA_32 = 0x3FFF0007;
inline constexpr ViAttr VI_ATTR_USER_DATA_64 = 0x3FFF000A;
inline constexpr ViAttr VI_ATTR_USER_DATA = VI_ATTR_USER_DATA_64;
inline constexpr ViAttr VI_ATTR_RET_COUNT_32 = 0x3FFF4026;
inline constexpr ViAttr VI_ATTR_RET_COUNT_64 = 0x3FFF4028;
inline constexpr ViAttr VI_ATTR_RET_COUNT = VI_ATTR_RET_COUNT_64;

inline constexpr ViEventType VI_EVENT_IO_COMPLETION = 0x3FFF2009;
inline constexpr ViEventType VI_EVENT_TRIG = 0xBFFF200A;
inline constexpr ViEventType VI_EVENT_SERVICE_REQ = 0x3FFF200B;
inline constexpr ViEventType VI_EVENT_EXCEPTION = 0xBFFF200E;
inline constexpr ViEventType VI_EVENT_GPIB_CIC = 0x3FFF2012;
inline constexpr ViEventType VI_ALL_ENABLED_EVENTS = 0x3FFF7FFF;

// The functions that the driver calls, and the tests: nothing else of a VISA library.
struct Functions {
    ViStatus (*viOpenDefaultRM)(ViSession* session);
    ViStatus (*viOpen)(ViSession manager, const ViChar* name, ViAccessMode mode, ViUInt32 timeout,
                       ViSession* session);
    ViStatus (*viClose)(ViObject object);
    ViStatus (*viGetAttribute)(ViObject object, ViAttr attribute, void* state);
    ViStatus (*viSetAttribute)(ViObject object, ViAttr attribute, ViAttrState state);
    ViStatus (*viStatusDesc)(ViObject object, ViStatus status, ViChar* description);
    ViStatus (*viRead)(ViSession session, ViByte* buffer, ViUInt32 count, ViUInt32* actual);
    ViStatus (*viWrite)(ViSession session, const ViByte* buffer, ViUInt32 count, ViUInt32* actual);
    ViStatus (*viReadAsync)(ViSession session, ViByte* buffer, ViUInt32 count, ViJobId* job);
    ViStatus (*viWriteAsync)(ViSession session, const ViByte* buffer, ViUInt32 count, ViJobId* job);
    ViStatus (*viAssertTrigger)(ViSession session, ViUInt16 protocol);
    ViStatus (*viReadSTB)(ViSession session, ViUInt16* status);
    ViStatus (*viClear)(ViSession session);
    ViStatus (*viLock)(ViSession session, ViAccessMode type, ViUInt32 timeout,
                       const ViChar* requestedKey, ViChar* accessKey);
    ViStatus (*viUnlock)(ViSession session);
    ViStatus (*viEnableEvent)(ViSession session, ViEventType type, ViUInt16 mechanism,
                              ViEventFilter context);
    ViStatus (*viDisableEvent)(ViSession session, ViEventType type, ViUInt16 mechanism);
    ViStatus (*viDiscardEvents)(ViSession session, ViEventType type, ViUInt16 mechanism);
    ViStatus (*viWaitOnEvent)(ViSession session, ViEventType type, ViUInt32 timeout,
                              ViEventType* outType, ViEvent* outContext);
    ViStatus (*viInstallHandler)(ViSession session, ViEventType type, ViHndlr handler, ViAddr user);
    ViStatus (*viUninstallHandler)(ViSession session, ViEventType type, ViHndlr handler,
                                   ViAddr user);
};

}  // namespace published
