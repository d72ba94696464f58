#include "visa/socket_link.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>
#include <utility>

namespace visa_provider {

namespace {

// A request for fewer bytes than this is received in one go of this size and handed out from
// memory, since many small reads would cost a system call each.
constexpr std::size_t kSmallRead = 4096;

// With a termination character at most this much is received at once: what is behind the character
// has to be moved.
constexpr std::size_t kTerminatedRead = 65536;

// The first position behind the terminator; the size if it isn't there.
std::size_t EndOf(std::span<const std::byte> bytes, const std::optional<std::byte>& terminator) {
    if (!terminator || bytes.empty()) {
        return bytes.size();
    }
    const auto* found = static_cast<const std::byte*>(
        std::memchr(bytes.data(), std::to_integer<int>(*terminator), bytes.size()));
    return found ? static_cast<std::size_t>(found - bytes.data()) + 1 : bytes.size();
}

// A status byte as IEEE 488.2 sends it: a decimal number, blanks around it allowed.
std::optional<ViUInt16> StatusByteOf(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\r' || c == '\n' || c == '\t'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    ViUInt16 value = 0;
    const auto* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    if (error != std::errc{} || end != last || value > 255) {
        return std::nullopt;
    }
    return value;
}

std::span<const std::byte> AsBytes(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

}  // namespace

SocketLink::SocketLink(std::unique_ptr<TcpSocket> socket, std::string host, ViUInt16 port)
    : socket_(std::move(socket)), host_(std::move(host)), port_(port) {
    noDelay_ = socket_->SetNoDelay(true);
}

ViStatus SocketLink::Ended(SocketState state) const {
    if (aborted_) {
        return VI_ERROR_ABORT;
    }
    return state == SocketState::kEnded ? VI_ERROR_CONN_LOST : VI_ERROR_IO;
}

Transfer SocketLink::Write(std::span<const std::byte> bytes, bool /*sendEnd*/, const Call& call) {
    ProgressTimer timer(call.Timeout(), Clock::now());
    const TurnHolder turn(writing_, timer.Limit(), call);
    if (!turn) {
        return {NoTurn(call), 0};
    }
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        if (call.IsStopped()) {
            return {VI_ERROR_ABORT, sent};
        }
        const auto result = socket_->Send(bytes.subspan(sent));
        if (result.state == SocketState::kDone) {
            sent += result.count;
            answerDue_ = true;
            timer.Transferred(result.count, Clock::now());
        } else if (result.state != SocketState::kWouldBlock) {
            return {Ended(result.state), sent};
        } else if (!socket_->WaitUntilWritable(timer.Limit())) {
            return {VI_ERROR_TMO, sent};
        }
    }
    return {VI_SUCCESS, sent};
}

ViStatus SocketLink::Receive(std::span<std::byte> target, const Deadline& deadline,
                             const Call& call, std::size_t& count) {
    // Right behind a message the answer isn't there yet, and comes soon: one system call waits for
    // it and takes it.
    bool soon = answerDue_.exchange(false) && !HasPassed(deadline, Clock::now() + TcpSocket::kSoon);
    for (;;) {
        if (call.IsStopped()) {
            return VI_ERROR_ABORT;
        }
        const auto result =
            std::exchange(soon, false) ? socket_->ReceiveSoon(target) : socket_->Receive(target);
        if (result.state == SocketState::kDone) {
            count = result.count;
            return VI_SUCCESS;
        }
        if (result.state != SocketState::kWouldBlock) {
            return Ended(result.state);
        }
        if (!socket_->WaitUntilReadable(deadline)) {
            return VI_ERROR_TMO;
        }
    }
}

void SocketLink::KeepAhead(std::span<const std::byte> bytes) {
    ahead_.assign(bytes.begin(), bytes.end());
    aheadStart_ = 0;
}

std::size_t SocketLink::TakeAhead(std::span<std::byte> target, const ReadRules& rules) {
    const auto held = std::span<const std::byte>(ahead_).subspan(aheadStart_);
    const auto wanted = held.first(std::min(held.size(), target.size()));
    const std::size_t count = EndOf(wanted, rules.terminator);
    std::copy_n(wanted.begin(), count, target.begin());
    aheadStart_ += count;
    return count;
}

// Moves at least one byte to `target`, up to and with the first terminator.
ViStatus SocketLink::ReadSome(std::span<std::byte> target, const ReadRules& rules,
                              const Deadline& deadline, const Call& call, std::size_t& count) {
    if (aheadStart_ == ahead_.size() && target.size() < kSmallRead) {
        std::byte received[kSmallRead];
        std::size_t size = 0;
        if (const ViStatus status = Receive(received, deadline, call, size); status < 0) {
            return status;
        }
        KeepAhead(std::span<const std::byte>(received, size));
    }
    if (aheadStart_ < ahead_.size()) {
        count = TakeAhead(target, rules);
        return VI_SUCCESS;
    }
    const auto room =
        rules.terminator ? target.first(std::min(target.size(), kTerminatedRead)) : target;
    std::size_t size = 0;
    if (const ViStatus status = Receive(room, deadline, call, size); status < 0) {
        return status;
    }
    count = EndOf(room.first(size), rules.terminator);
    if (count < size) {
        KeepAhead(room.subspan(count, size - count));
    }
    return VI_SUCCESS;
}

Transfer SocketLink::Read(std::span<std::byte> target, const ReadRules& rules, const Call& call) {
    ProgressTimer timer(call.Timeout(), Clock::now());
    const TurnHolder turn(reading_, timer.Limit(), call);
    if (!turn) {
        return {NoTurn(call), 0};
    }
    std::size_t done = 0;
    while (done < target.size()) {
        if (aborted_) {
            return {VI_ERROR_ABORT, done};
        }
        std::size_t count = 0;
        if (const ViStatus status =
                ReadSome(target.subspan(done), rules, timer.Limit(), call, count);
            status < 0) {
            return {status, done};
        }
        done += count;
        if (rules.terminator && target[done - 1] == *rules.terminator) {
            return {VI_SUCCESS_TERM_CHAR, done};
        }
        timer.Transferred(count, Clock::now());
    }
    return {VI_SUCCESS_MAX_CNT, done};
}

ViStatus SocketLink::ReadStatusByte(ViUInt16 protocol, const Call& call, ViUInt16& status) {
    if (protocol != VI_PROT_4882_STRS) {
        return VI_ERROR_INV_SETUP;
    }
    // The turns are taken for both messages, so that no other read gets the answer.
    const Deadline deadline = DeadlineAfter(call.Timeout(), Clock::now());
    const TurnHolder reading(reading_, deadline, call);
    const TurnHolder writing(writing_, deadline, call);
    if (!reading || !writing) {
        return NoTurn(call);
    }
    if (const auto sent = Write(AsBytes("*STB?\n"), true, call); sent.status < 0) {
        return sent.status;
    }
    std::byte answer[32];
    const auto read = Read(answer, ReadRules{std::byte{'\n'}, true}, call);
    if (read.status < 0) {
        return read.status;
    }
    const auto value =
        StatusByteOf(std::string_view(reinterpret_cast<const char*>(answer), read.count));
    if (!value || read.status != VI_SUCCESS_TERM_CHAR) {
        return VI_ERROR_RAW_RD_PROT_VIOL;
    }
    status = *value;
    return VI_SUCCESS;
}

ViStatus SocketLink::Trigger(ViUInt16 protocol, const Call& call) {
    if (protocol != VI_PROT_4882_STRS) {
        return VI_ERROR_INV_SETUP;
    }
    return Write(AsBytes("*TRG\n"), true, call).status;
}

ViStatus SocketLink::Clear(const Call& call) {
    const Deadline deadline = DeadlineAfter(call.Timeout(), Clock::now());
    const TurnHolder turn(reading_, deadline, call);
    if (!turn) {
        return NoTurn(call);
    }
    ahead_.clear();
    aheadStart_ = 0;
    std::byte thrownAway[kTerminatedRead];
    for (;;) {
        const auto result = socket_->Receive(thrownAway);
        if (result.state == SocketState::kWouldBlock) {
            return VI_SUCCESS;
        }
        if (result.state != SocketState::kDone) {
            return Ended(result.state);
        }
        if (call.IsStopped()) {
            return VI_ERROR_ABORT;
        }
        // A peer that goes on sending would keep this here for ever.
        if (HasPassed(deadline, Clock::now())) {
            return VI_ERROR_TMO;
        }
    }
}

bool SocketLink::HasProtocol(ViUInt16 protocol) const {
    return protocol == VI_PROT_NORMAL || protocol == VI_PROT_4882_STRS;
}

std::optional<AttributeValue> SocketLink::Attribute(ViAttr attribute) const {
    switch (attribute) {
        case VI_ATTR_TCPIP_ADDR:
            return socket_->PeerAddress();
        case VI_ATTR_TCPIP_HOSTNAME:
            return host_;
        case VI_ATTR_TCPIP_PORT:
            return port_;
        case VI_ATTR_TCPIP_NODELAY:
            return FromBoolean(noDelay_);
        case VI_ATTR_TCPIP_KEEPALIVE:
            return FromBoolean(keepAlive_);
        default:
            return std::nullopt;
    }
}

ViStatus SocketLink::SetAttribute(ViAttr attribute, ViAttrState state) {
    if (attribute != VI_ATTR_TCPIP_NODELAY && attribute != VI_ATTR_TCPIP_KEEPALIVE) {
        return Attribute(attribute) ? VI_ERROR_ATTR_READONLY : VI_ERROR_NSUP_ATTR;
    }
    const auto enabled = ToBoolean(state);
    if (!enabled) {
        return VI_ERROR_NSUP_ATTR_STATE;
    }
    const bool isNoDelay = attribute == VI_ATTR_TCPIP_NODELAY;
    if (!(isNoDelay ? socket_->SetNoDelay(*enabled) : socket_->SetKeepAlive(*enabled))) {
        return VI_ERROR_NSUP_ATTR_STATE;
    }
    (isNoDelay ? noDelay_ : keepAlive_) = *enabled;
    return VI_SUCCESS;
}

void SocketLink::Interrupt() {
    reading_.Wake();
    writing_.Wake();
    socket_->Wake();
}

void SocketLink::InterruptOver() {
    socket_->WakeOver();
}

void SocketLink::Abort() {
    aborted_ = true;
    socket_->ShutDown();
}

}  // namespace visa_provider
