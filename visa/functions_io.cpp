// The basic I/O operations.
#include <cstddef>
#include <span>

#include "visa/functions.h"
#include "visa/guard.h"

namespace visa_provider {

namespace {

std::span<std::byte> Target(ViPBuf buffer, ViUInt32 count) {
    return std::as_writable_bytes(std::span(buffer, count));
}

std::span<const std::byte> Source(ViConstBuf buffer, ViUInt32 count) {
    return std::as_bytes(std::span(buffer, count));
}

// Gives a transfer's count and status to the caller.
ViStatus Report(const Transfer& transfer, ViPUInt32 actual) {
    if (actual) {
        *actual = static_cast<ViUInt32>(transfer.count);
    }
    return transfer.status;
}

}  // namespace

ViStatus viRead(ViSession session, ViPBuf buffer, ViUInt32 count, ViPUInt32 actual) {
    if (actual) {
        *actual = 0;
    }
    return WithSession("viRead", session, [&](Session& found) {
        if (!buffer && count > 0) {
            return VI_ERROR_USER_BUF;
        }
        return Report(found.Read(Target(buffer, count)), actual);
    });
}

ViStatus viWrite(ViSession session, ViConstBuf buffer, ViUInt32 count, ViPUInt32 actual) {
    if (actual) {
        *actual = 0;
    }
    return WithSession("viWrite", session, [&](Session& found) {
        if (!buffer && count > 0) {
            return VI_ERROR_USER_BUF;
        }
        return Report(found.Write(Source(buffer, count)), actual);
    });
}

ViStatus viReadAsync(ViSession session, ViPBuf buffer, ViUInt32 count, ViPJobId job) {
    return WithSession("viReadAsync", session, [&](Session& found) {
        if (!buffer && count > 0) {
            return VI_ERROR_USER_BUF;
        }
        return found.ReadAsync(Target(buffer, count), job);
    });
}

ViStatus viWriteAsync(ViSession session, ViConstBuf buffer, ViUInt32 count, ViPJobId job) {
    return WithSession("viWriteAsync", session, [&](Session& found) {
        if (!buffer && count > 0) {
            return VI_ERROR_USER_BUF;
        }
        return found.WriteAsync(Source(buffer, count), job);
    });
}

ViStatus viAssertTrigger(ViSession session, ViUInt16 protocol) {
    return WithSession("viAssertTrigger", session,
                       [&](Session& found) { return found.Trigger(protocol); });
}

ViStatus viReadSTB(ViSession session, ViPUInt16 status) {
    return WithSession("viReadSTB", session, [&](Session& found) {
        if (!status) {
            return VI_ERROR_USER_BUF;
        }
        return found.ReadStatusByte(*status);
    });
}

ViStatus viClear(ViSession session) {
    return WithSession("viClear", session, [](Session& found) { return found.Clear(); });
}

}  // namespace visa_provider
