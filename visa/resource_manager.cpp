#include "visa/resource_manager.h"

#include <utility>

#include "visa/instrument_catalog.h"
#include "visa/provider_info.h"
#include "visa/socket_link.h"
#include "visa/virtual_link.h"

namespace visa_provider {

namespace {

// The host's name, where the resource gives one; VI_ATTR_TCPIP_HOSTNAME is empty for an address.
std::string HostNameOf(const ResourceName& name, const TcpSocket& socket) {
    const bool isAddress = name.host.front() == '[' || name.host == socket.PeerAddress();
    return isAddress ? std::string() : name.host;
}

ViStatus OpenSocket(ViSession manager, const ResourceName& name, ViUInt32 timeout,
                    std::shared_ptr<Session>& opened) {
    std::unique_ptr<TcpSocket> socket;
    const ViStatus status =
        TcpSocket::Connect(name.host, name.port, DeadlineAfter(timeout, Clock::now()), socket);
    if (status < 0) {
        return status;
    }
    auto hostName = HostNameOf(name, *socket);
    auto link = std::make_unique<SocketLink>(std::move(socket), std::move(hostName), name.port);
    opened =
        std::make_shared<Session>(manager, name, std::move(link), std::make_shared<Signal>(),
                                  std::make_unique<ResourceLock>(LockFile::Open(name.Canonical())));
    return VI_SUCCESS;
}

// Each session has an instrument of its own, and so a lock of its own.
ViStatus OpenVirtual(ViSession manager, ResourceName name, std::shared_ptr<Session>& opened) {
    const auto catalog = CurrentInstrumentCatalog();
    name.model = FindModel(catalog, name.model);
    auto device = name.model.empty() ? nullptr : catalog.make(name.model);
    if (!device) {
        return VI_ERROR_RSRC_NFOUND;
    }
    auto changed = std::make_shared<Signal>();
    auto link = std::make_unique<VirtualLink>(std::move(device), name.model, changed);
    opened = std::make_shared<Session>(manager, std::move(name), std::move(link),
                                       std::move(changed), std::make_unique<ResourceLock>());
    return VI_SUCCESS;
}

}  // namespace

std::optional<AttributeValue> ResourceManager::Attribute(ViAttr attribute) const {
    switch (attribute) {
        case VI_ATTR_RSRC_NAME:
            return std::string();  // VPP-4.3, rule 4.2.1
        case VI_ATTR_RSRC_CLASS:
            return std::string("RM");
        case VI_ATTR_RM_SESSION:
            return VI_NULL;  // VPP-4.3, rule 4.2.2
        case VI_ATTR_RSRC_LOCK_STATE:
            return VI_NO_LOCK;
        case VI_ATTR_MAX_QUEUE_LENGTH:
            return maxQueueLength_.load();
        case VI_ATTR_USER_DATA_32:
            return static_cast<ViUInt32>(userData_.load());
        case VI_ATTR_USER_DATA_64:
            return userData_.load();
        default:
            return ProviderAttribute(attribute);
    }
}

ViStatus ResourceManager::SetAttribute(ViAttr attribute, ViAttrState state) {
    switch (attribute) {
        case VI_ATTR_MAX_QUEUE_LENGTH: {
            const auto length = ToUInt32(state);
            if (!length || *length == 0) {
                return VI_ERROR_NSUP_ATTR_STATE;
            }
            maxQueueLength_ = *length;
            return VI_SUCCESS;
        }
        case VI_ATTR_USER_DATA_32:
            userData_ = static_cast<ViUInt32>(state);
            return VI_SUCCESS;
        case VI_ATTR_USER_DATA_64:
            userData_ = state;
            return VI_SUCCESS;
        default:
            return Object::SetAttribute(attribute, state);
    }
}

ViStatus OpenSession(ViSession manager, std::string_view name, ViUInt32 timeout,
                     std::shared_ptr<Session>& opened) {
    ResourceName parsed;
    if (const ViStatus status = ParseResourceName(name, parsed); status < 0) {
        return status;
    }
    if (parsed.kind == ResourceKind::kVirtual) {
        return OpenVirtual(manager, std::move(parsed), opened);
    }
    return OpenSocket(manager, parsed, timeout, opened);
}

}  // namespace visa_provider
