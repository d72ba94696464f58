// The attributes of a session: VPP-4.3, tables 3.2.1 and 5.1.2 and section 5.6.2.
#include "visa/object_table.h"
#include "visa/provider_info.h"
#include "visa/session.h"

namespace visa_provider {

std::optional<AttributeValue> Session::TemplateAttribute(ViAttr attribute) const {
    switch (attribute) {
        case VI_ATTR_RSRC_NAME:
            return name_.Canonical();
        case VI_ATTR_RSRC_CLASS:
            return name_.Class();
        case VI_ATTR_RM_SESSION:
            return manager_;
        case VI_ATTR_RSRC_LOCK_STATE:
            return lock_->State();
        case VI_ATTR_MAX_QUEUE_LENGTH:
            return events_.MaxQueueLength();
        case VI_ATTR_USER_DATA_32:
            return static_cast<ViUInt32>(userData_.load());
        case VI_ATTR_USER_DATA_64:
            return userData_.load();
        case VI_ATTR_INTF_TYPE:
            return VI_INTF_TCPIP;
        case VI_ATTR_INTF_NUM:
            return name_.board;
        case VI_ATTR_INTF_INST_NAME:
            return name_.InterfaceName();
        default:
            return ProviderAttribute(attribute);
    }
}

std::optional<AttributeValue> Session::MessageAttribute(ViAttr attribute) const {
    switch (attribute) {
        case VI_ATTR_TMO_VALUE:
            return timeout_.load();
        case VI_ATTR_TERMCHAR:
            return terminator_.load();
        case VI_ATTR_TERMCHAR_EN:
            return FromBoolean(terminatorEnabled_);
        case VI_ATTR_SEND_END_EN:
            return FromBoolean(sendEnd_);
        case VI_ATTR_IO_PROT:
            return protocol_.load();
        case VI_ATTR_FILE_APPEND_EN:
            return FromBoolean(appendsToFile_);
        case VI_ATTR_DMA_ALLOW_EN:
            return VI_FALSE;
        case VI_ATTR_RD_BUF_OPER_MODE:
            return readBufferMode_.load();
        case VI_ATTR_WR_BUF_OPER_MODE:
            return writeBufferMode_.load();
        case VI_ATTR_RD_BUF_SIZE:
        case VI_ATTR_WR_BUF_SIZE:
            return ViUInt32{0};  // the provider has no formatted I/O, and so no buffers for it
        case VI_ATTR_SUPPRESS_END_EN:
            if (link_->HasEnd()) {
                return FromBoolean(suppressEnd_);
            }
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<AttributeValue> Session::Attribute(ViAttr attribute) const {
    if (auto value = TemplateAttribute(attribute)) {
        return value;
    }
    if (auto value = MessageAttribute(attribute)) {
        return value;
    }
    return link_->Attribute(attribute);
}

ViStatus Session::SetFlag(std::atomic<bool>& flag, ViAttrState state) {
    const auto value = ToBoolean(state);
    if (!value) {
        return VI_ERROR_NSUP_ATTR_STATE;
    }
    flag = *value;
    return VI_SUCCESS;
}

// Every mode attribute knows "on access" and one mode of its own.
ViStatus Session::SetBufferMode(std::atomic<ViUInt16>& mode, ViAttrState state, ViUInt16 other) {
    if (state != VI_FLUSH_ON_ACCESS && state != other) {
        return VI_ERROR_NSUP_ATTR_STATE;
    }
    mode = static_cast<ViUInt16>(state);
    return VI_SUCCESS;
}

// No link has DMA: allowing it has no effect, which is a warning (VPP-4.3, rules 5.1.32 and 5.6.3).
ViStatus Session::SetDmaAllowed(ViAttrState state) {
    const auto allowed = ToBoolean(state);
    if (!allowed) {
        return VI_ERROR_NSUP_ATTR_STATE;
    }
    return *allowed ? VI_WARN_NSUP_ATTR_STATE : VI_SUCCESS;
}

ViStatus Session::SetProtocol(ViAttrState state) {
    const auto protocol = ToUInt16(state);
    if (!protocol || !link_->HasProtocol(*protocol)) {
        return VI_ERROR_NSUP_ATTR_STATE;
    }
    protocol_ = *protocol;
    return VI_SUCCESS;
}

ViStatus Session::SetAttribute(ViAttr attribute, ViAttrState state) {
    switch (attribute) {
        case VI_ATTR_TMO_VALUE:
        case VI_ATTR_MAX_QUEUE_LENGTH: {
            const auto number = ToUInt32(state);
            if (!number) {
                return VI_ERROR_NSUP_ATTR_STATE;
            }
            if (attribute == VI_ATTR_MAX_QUEUE_LENGTH) {
                return events_.SetMaxQueueLength(*number);
            }
            timeout_ = *number;
            return VI_SUCCESS;
        }
        case VI_ATTR_TERMCHAR: {
            const auto character = ToUInt8(state);
            if (!character) {
                return VI_ERROR_NSUP_ATTR_STATE;
            }
            terminator_ = *character;
            return VI_SUCCESS;
        }
        case VI_ATTR_USER_DATA_32:
            userData_ = static_cast<ViUInt32>(state);
            return VI_SUCCESS;
        case VI_ATTR_USER_DATA_64:
            userData_ = state;
            return VI_SUCCESS;
        case VI_ATTR_TERMCHAR_EN:
            return SetFlag(terminatorEnabled_, state);
        case VI_ATTR_SEND_END_EN:
            return SetFlag(sendEnd_, state);
        case VI_ATTR_FILE_APPEND_EN:
            return SetFlag(appendsToFile_, state);
        case VI_ATTR_SUPPRESS_END_EN:
            return link_->HasEnd() ? SetFlag(suppressEnd_, state) : VI_ERROR_NSUP_ATTR;
        case VI_ATTR_DMA_ALLOW_EN:
            return SetDmaAllowed(state);
        case VI_ATTR_RD_BUF_OPER_MODE:
            return SetBufferMode(readBufferMode_, state, VI_FLUSH_DISABLE);
        case VI_ATTR_WR_BUF_OPER_MODE:
            return SetBufferMode(writeBufferMode_, state, VI_FLUSH_WHEN_FULL);
        case VI_ATTR_IO_PROT:
            return SetProtocol(state);
        default:
            break;
    }
    if (TemplateAttribute(attribute) || MessageAttribute(attribute)) {
        return VI_ERROR_ATTR_READONLY;
    }
    return link_->SetAttribute(attribute, state);
}

}  // namespace visa_provider
