#include "visa/virtual_link.h"

#include <utility>

namespace visa_provider {

VirtualLink::VirtualLink(std::unique_ptr<virtual_scope::DeviceLink> device, std::string model,
                         std::shared_ptr<Signal> signal)
    : device_(std::move(device)), model_(std::move(model)), signal_(std::move(signal)) {
    // Only counted here: the instrument may be in the middle of one of its members, where the
    // listener's own calls would disturb it.
    device_->SetServiceRequestHandler([this] {
        ++serviceRequests_;
        signal_->Raise();
    });
}

VirtualLink::~VirtualLink() {
    device_->SetServiceRequestHandler(nullptr);
}

void VirtualLink::SetServiceRequestListener(std::function<void()> listener) {
    listener_ = std::move(listener);
}

void VirtualLink::PassServiceRequestsOn() {
    for (unsigned left = serviceRequests_.exchange(0); left > 0; --left) {
        if (listener_) {
            listener_();
        }
    }
}

void VirtualLink::DeviceChanged() {
    signal_->Raise();
    PassServiceRequestsOn();
}

Transfer VirtualLink::Write(std::span<const std::byte> bytes, bool sendEnd, const Call& /*call*/) {
    if (aborted_) {
        return {VI_ERROR_ABORT, 0};
    }
    device_->Write(bytes, sendEnd);
    DeviceChanged();
    return {VI_SUCCESS, bytes.size()};
}

// With a termination character the bytes are taken one by one: what is behind it has to stay in
// the instrument, where the status byte tells of it and a new message clears it.
virtual_scope::ReadPiece VirtualLink::Take(std::span<std::byte> target, const ReadRules& rules) {
    const auto piece = device_->Read(rules.terminator ? target.first(1) : target);
    PassServiceRequestsOn();
    return piece;
}

Transfer VirtualLink::Read(std::span<std::byte> target, const ReadRules& rules, const Call& call) {
    ProgressTimer timer(call.Timeout(), Clock::now());
    const TurnHolder turn(reading_, timer.Limit(), call);
    if (!turn) {
        return {NoTurn(call), 0};
    }
    std::size_t done = 0;
    while (done < target.size()) {
        const auto seen = signal_->Count();
        if (aborted_ || call.IsStopped()) {
            return {VI_ERROR_ABORT, done};
        }
        auto piece = Take(target.subspan(done), rules);
        Deadline next;
        if (piece.count == 0) {
            next = CatchUp();
            piece = Take(target.subspan(done), rules);
        }
        if (piece.count > 0) {
            done += piece.count;
            if (piece.end && rules.stopAtEnd) {
                return {VI_SUCCESS, done};
            }
            if (rules.terminator && target[done - 1] == *rules.terminator) {
                return {VI_SUCCESS_TERM_CHAR, done};
            }
            timer.Transferred(piece.count, Clock::now());
            continue;
        }
        if (HasPassed(timer.Limit(), Clock::now())) {
            return {VI_ERROR_TMO, done};
        }
        signal_->WaitForChange(seen, Earlier(timer.Limit(), next));
    }
    return {VI_SUCCESS_MAX_CNT, done};
}

ViStatus VirtualLink::ReadStatusByte(ViUInt16 /*protocol*/, const Call& /*call*/,
                                     ViUInt16& status) {
    if (aborted_) {
        return VI_ERROR_ABORT;
    }
    CatchUp();
    status = device_->SerialPoll();
    PassServiceRequestsOn();
    return VI_SUCCESS;
}

ViStatus VirtualLink::Trigger(ViUInt16 /*protocol*/, const Call& /*call*/) {
    if (aborted_) {
        return VI_ERROR_ABORT;
    }
    device_->Trigger();
    DeviceChanged();
    return VI_SUCCESS;
}

ViStatus VirtualLink::Clear(const Call& /*call*/) {
    if (aborted_) {
        return VI_ERROR_ABORT;
    }
    device_->Clear();
    DeviceChanged();
    return VI_SUCCESS;
}

bool VirtualLink::HasProtocol(ViUInt16 protocol) const {
    return protocol == VI_PROT_NORMAL;
}

std::optional<AttributeValue> VirtualLink::Attribute(ViAttr attribute) const {
    switch (attribute) {
        case VI_ATTR_TRIG_ID:
            return VI_TRIG_SW;
        // The session counts as one of a LAN instrument, so these have to be there (VPP-4.3, rule
        // 5.1.16); no network is in use.
        case VI_ATTR_TCPIP_ADDR:
        case VI_ATTR_TCPIP_HOSTNAME:
            return std::string();
        case VI_ATTR_TCPIP_DEVICE_NAME:
            return model_;
        case VI_ATTR_TCPIP_IS_HISLIP:
            return VI_FALSE;
        default:
            return std::nullopt;
    }
}

ViStatus VirtualLink::SetAttribute(ViAttr attribute, ViAttrState state) {
    if (attribute == VI_ATTR_TRIG_ID) {
        return static_cast<ViInt16>(state) == VI_TRIG_SW ? VI_SUCCESS : VI_ERROR_NSUP_ATTR_STATE;
    }
    return Attribute(attribute) ? VI_ERROR_ATTR_READONLY : VI_ERROR_NSUP_ATTR;
}

Deadline VirtualLink::CatchUp() {
    device_->Poll();
    PassServiceRequestsOn();
    return device_->NextEvent();
}

void VirtualLink::Interrupt() {
    reading_.Wake();
    signal_->Raise();
}

void VirtualLink::Abort() {
    aborted_ = true;
    signal_->Raise();
}

}  // namespace visa_provider
