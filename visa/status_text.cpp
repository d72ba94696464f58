#include "visa/status_text.h"

namespace visa_provider {

namespace {

struct Row {
    ViStatus status;
    const char* text;
};

constexpr Row kTexts[] = {
    {VI_SUCCESS, "The operation completed."},
    {VI_SUCCESS_EVENT_EN, "The event is enabled already, for one of these mechanisms at least."},
    {VI_SUCCESS_EVENT_DIS, "The event is disabled already, for one of these mechanisms at least."},
    {VI_SUCCESS_QUEUE_EMPTY, "There was no event to discard."},
    {VI_SUCCESS_TERM_CHAR, "The read ended at the termination character."},
    {VI_SUCCESS_MAX_CNT, "The read ended because as many bytes came as were asked for."},
    {VI_SUCCESS_DEV_NPRESENT, "The session is open, but the instrument doesn't answer."},
    {VI_SUCCESS_TRIG_MAPPED, "The trigger lines are connected already."},
    {VI_SUCCESS_QUEUE_NEMPTY, "An event was taken, and more of its kind wait in the queue."},
    {VI_SUCCESS_NCHAIN, "The event was handled, and no further handler is to be called."},
    {VI_SUCCESS_NESTED_SHARED, "The session holds shared locks that are nested."},
    {VI_SUCCESS_NESTED_EXCLUSIVE, "The session holds exclusive locks that are nested."},
    {VI_SUCCESS_SYNC, "The asynchronous operation was done before the call returned."},
    {VI_WARN_QUEUE_OVERFLOW, "An event was taken, and others were lost since the queue was full."},
    {VI_WARN_CONFIG_NLOADED,
     "There is no stored configuration; the standard's defaults are in use."},
    {VI_WARN_NULL_OBJECT, "The handle is zero, so there was nothing to close."},
    {VI_WARN_NSUP_ATTR_STATE, "The attribute state is valid but has no effect here."},
    {VI_WARN_UNKNOWN_STATUS, "The status code is not a known one."},
    {VI_WARN_NSUP_BUF, "The buffer is not supported."},
    {VI_WARN_EXT_FUNC_NIMPL, "The operation completed, without its extended part."},
    {VI_WARN_SERVER_CERT_UNTRUSTED,
     "The connection is made, but nobody trusted vouches for the server's certificate."},
    {VI_WARN_SERVER_CERT_INV_SUBJECT,
     "The connection is made, but the server's certificate is for another host."},
    {VI_ERROR_SYSTEM_ERROR, "An unexpected failure inside the VISA provider."},
    {VI_ERROR_INV_OBJECT, "The handle is none of an open session, event or find list."},
    {VI_ERROR_RSRC_LOCKED, "Another session has locked the resource."},
    {VI_ERROR_INV_EXPR, "The search expression is not valid."},
    {VI_ERROR_RSRC_NFOUND,
     "The resource was not found: no such instrument or host, or nothing listens there."},
    {VI_ERROR_INV_RSRC_NAME, "The resource name is not valid; check its spelling."},
    {VI_ERROR_INV_ACC_MODE, "The access mode is not valid."},
    {VI_ERROR_TMO, "The time-out passed before the operation was complete."},
    {VI_ERROR_CLOSING_FAILED, "The handle could not be closed."},
    {VI_ERROR_INV_DEGREE, "The degree of the termination is not valid."},
    {VI_ERROR_INV_JOB_ID, "The job number is not one of a running job."},
    {VI_ERROR_NSUP_ATTR, "The object does not have this attribute."},
    {VI_ERROR_NSUP_ATTR_STATE, "The attribute cannot have this state."},
    {VI_ERROR_ATTR_READONLY, "The attribute is read-only."},
    {VI_ERROR_INV_LOCK_TYPE, "The lock type is neither exclusive nor shared."},
    {VI_ERROR_INV_ACCESS_KEY, "The access key is not the one of the resource's shared lock."},
    {VI_ERROR_INV_EVENT, "The resource does not have this event."},
    {VI_ERROR_INV_MECH, "The event mechanism is not valid."},
    {VI_ERROR_HNDLR_NINSTALLED, "No handler is installed for this event."},
    {VI_ERROR_INV_HNDLR_REF, "No such handler with this user handle is installed."},
    {VI_ERROR_INV_CONTEXT, "The event context is not valid; it has to be zero."},
    {VI_ERROR_NENABLED, "The session is not enabled for events of this kind."},
    {VI_ERROR_ABORT, "The operation was ended because its session was closed."},
    {VI_ERROR_RAW_WR_PROT_VIOL, "The protocol of a raw write was violated."},
    {VI_ERROR_RAW_RD_PROT_VIOL,
     "The protocol of a raw read was violated: the answer is not of the form that it has to be."},
    {VI_ERROR_OUTP_PROT_VIOL, "The instrument reports an error of the output protocol."},
    {VI_ERROR_INP_PROT_VIOL, "The instrument reports an error of the input protocol."},
    {VI_ERROR_BERR, "A bus error occurred."},
    {VI_ERROR_IN_PROGRESS, "Another asynchronous operation is running."},
    {VI_ERROR_INV_SETUP, "The operation is not possible with the attributes as they are set."},
    {VI_ERROR_QUEUE_ERROR, "The asynchronous operation could not be queued."},
    {VI_ERROR_ALLOC, "Memory or another means of the system ran out."},
    {VI_ERROR_IO, "The transfer failed."},
    {VI_ERROR_NSUP_OPER, "The object does not have this operation."},
    {VI_ERROR_USER_BUF, "A buffer or an output location is missing."},
    {VI_ERROR_RSRC_BUSY, "The resource cannot be reached just now."},
    {VI_ERROR_INV_PARAMETER, "The value of a parameter is not valid."},
    {VI_ERROR_INV_PROT, "The protocol is not valid here."},
    {VI_ERROR_NIMPL_OPER, "The operation is not implemented."},
    {VI_ERROR_SESN_NLOCKED, "The session holds no lock."},
    {VI_ERROR_LIBRARY_NFOUND, "A library that is needed was not found."},
    {VI_ERROR_NSUP_MECH, "The event does not have this mechanism."},
    {VI_ERROR_INTF_NUM_NCONFIG, "There is no interface of this number."},
    {VI_ERROR_CONN_LOST, "The connection to the instrument was lost."},
    {VI_ERROR_NPERMISSION, "The access was refused."},
    {VI_ERROR_INV_MASK, "The buffer mask is not valid."},
    {VI_ERROR_INV_FMT, "The format text is not valid."},
    {VI_ERROR_NSUP_FMT, "A format directive is not supported for its argument."},
    {VI_ERROR_LINE_IN_USE, "The trigger line is in use."},
    {VI_ERROR_LINE_NRESERVED, "The trigger line has not been reserved."},
    {VI_ERROR_NSUP_MODE, "The mode is not supported."},
    {VI_ERROR_SRQ_NOCCURRED, "The session has not received a service request."},
    {VI_ERROR_INV_SPACE, "The address space is not valid."},
    {VI_ERROR_INV_OFFSET, "The offset is not valid."},
    {VI_ERROR_INV_WIDTH, "The access width is not valid."},
    {VI_ERROR_NSUP_OFFSET, "The offset cannot be reached from this hardware."},
    {VI_ERROR_NSUP_VAR_WIDTH, "Source and destination cannot differ in width."},
    {VI_ERROR_WINDOW_NMAPPED, "No address window is mapped."},
    {VI_ERROR_RESP_PENDING, "An earlier response has not been fetched."},
    {VI_ERROR_NLISTENERS, "No device listens on the bus."},
    {VI_ERROR_NCIC, "The interface is not the controller in charge."},
    {VI_ERROR_NSYS_CNTLR, "The interface is not the system controller."},
    {VI_ERROR_INTR_PENDING, "An earlier interrupt has not been served."},
    {VI_ERROR_ASRL_PARITY, "A byte came with the wrong parity."},
    {VI_ERROR_ASRL_FRAMING, "A byte came without its stop bit."},
    {VI_ERROR_ASRL_OVERRUN, "Bytes were lost since they were not fetched in time."},
    {VI_ERROR_TRIG_NMAPPED, "The trigger lines are not connected."},
    {VI_ERROR_NSUP_ALIGN_OFFSET, "The offset does not suit the width of the access."},
    {VI_ERROR_NSUP_WIDTH, "The access width is not supported."},
    {VI_ERROR_INV_SIZE, "The size of the window is not valid."},
    {VI_ERROR_WINDOW_MAPPED, "An address window is mapped already."},
    {VI_ERROR_INV_LENGTH, "The length is not valid."},
    {VI_ERROR_INV_MODE, "The mode is not valid."},
    {VI_ERROR_MEM_NSHARED, "The device does not share memory."},
    {VI_ERROR_NSUP_INTR, "The interrupt is not supported."},
    {VI_ERROR_INV_LINE, "The line is not valid."},
    {VI_ERROR_FILE_ACCESS, "The file could not be opened."},
    {VI_ERROR_FILE_IO, "The file could not be read or written."},
    {VI_ERROR_NSUP_LINE, "The line is not supported."},
    {VI_ERROR_SERVER_CERT, "The server's certificate was not accepted."},
    {VI_ERROR_SERVER_CERT_UNTRUSTED, "Nobody trusted vouches for the server's certificate."},
    {VI_ERROR_SERVER_CERT_EXPIRED, "The server's certificate is out of date."},
    {VI_ERROR_SERVER_CERT_REVOKED, "The server's certificate was withdrawn."},
    {VI_ERROR_SERVER_CERT_INV_SUBJECT, "The server's certificate is for another host."},
};

std::string InHex(std::uint32_t value) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += kDigits[(value >> shift) & 0xF];
    }
    return text;
}

}  // namespace

std::string StatusText(ViStatus status, bool& isKnown) {
    for (const auto& row : kTexts) {
        if (row.status == status) {
            isKnown = true;
            return row.text;
        }
    }
    isKnown = false;
    return "Unknown status code " + InHex(static_cast<std::uint32_t>(status)) + ".";
}

}  // namespace visa_provider
