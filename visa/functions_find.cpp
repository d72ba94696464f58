// Searching for resources, and taking their names apart.
#include "visa/find_list.h"
#include "visa/functions.h"
#include "visa/guard.h"
#include "visa/instrument_catalog.h"
#include "visa/resource_manager.h"
#include "visa/resource_name.h"
#include "visa/resource_pattern.h"

namespace visa_provider {

namespace {

// Only virtual instruments can be found: which hosts have a socket open, nobody knows.
std::vector<std::string> FindNames(const ResourcePattern& pattern) {
    std::vector<std::string> names;
    for (auto& model : CurrentInstrumentCatalog().models()) {
        ResourceName name;
        name.kind = ResourceKind::kVirtual;
        name.model = std::move(model);
        auto canonical = name.Canonical();
        if (pattern.Matches(canonical)) {
            names.push_back(std::move(canonical));
        }
    }
    return names;
}

// As ParseResourceName, with the model's name as its catalogue has it.
ViStatus ParseKnown(ViConstRsrc text, ResourceName& name) {
    if (!text) {
        return VI_ERROR_INV_RSRC_NAME;
    }
    if (const ViStatus status = ParseResourceName(text, name); status < 0) {
        return status;
    }
    if (name.kind != ResourceKind::kVirtual) {
        return VI_SUCCESS;
    }
    name.model = FindModel(CurrentInstrumentCatalog(), name.model);
    return name.model.empty() ? VI_ERROR_RSRC_NFOUND : VI_SUCCESS;
}

}  // namespace

ViStatus viFindRsrc(ViSession manager, ViConstString expression, ViPFindList list, ViPUInt32 count,
                    ViChar* name) {
    return WithObject<ResourceManager>("viFindRsrc", manager, [&](ResourceManager&) {
        if (!name) {
            return VI_ERROR_USER_BUF;
        }
        const auto pattern =
            expression ? ResourcePattern::Parse(expression) : std::optional<ResourcePattern>();
        if (!pattern) {
            return VI_ERROR_INV_EXPR;
        }
        auto names = FindNames(*pattern);
        if (names.empty()) {
            return VI_ERROR_RSRC_NFOUND;
        }
        if (count) {
            *count = static_cast<ViUInt32>(names.size());
        }
        auto found = std::make_shared<FindList>(std::move(names));
        StoreText(found->Next().value_or(""), name);
        if (list) {
            *list = ObjectTable::Instance().Insert(found, manager);
        }
        return VI_SUCCESS;
    });
}

ViStatus viFindNext(ViFindList list, ViChar* name) {
    return WithObject<FindList>("viFindNext", list, [&](FindList& found) {
        if (!name) {
            return VI_ERROR_USER_BUF;
        }
        const auto next = found.Next();
        if (!next) {
            return VI_ERROR_RSRC_NFOUND;
        }
        StoreText(*next, name);
        return VI_SUCCESS;
    });
}

ViStatus viParseRsrc(ViSession manager, ViConstRsrc name, ViPUInt16 interfaceType,
                     ViPUInt16 interfaceNumber) {
    return viParseRsrcEx(manager, name, interfaceType, interfaceNumber, nullptr, nullptr, nullptr);
}

ViStatus viParseRsrcEx(ViSession manager, ViConstRsrc name, ViPUInt16 interfaceType,
                       ViPUInt16 interfaceNumber, ViChar* resourceClass, ViChar* expandedName,
                       ViChar* alias) {
    return WithObject<ResourceManager>("viParseRsrcEx", manager, [&](ResourceManager&) {
        if (!interfaceType || !interfaceNumber) {
            return VI_ERROR_USER_BUF;
        }
        ResourceName parsed;
        if (const ViStatus status = ParseKnown(name, parsed); status < 0) {
            return status;
        }
        *interfaceType = VI_INTF_TCPIP;
        *interfaceNumber = parsed.board;
        if (resourceClass) {
            StoreText(parsed.Class(), resourceClass);
        }
        if (expandedName) {
            StoreText(parsed.Canonical(), expandedName);
        }
        if (alias) {
            StoreText({}, alias);  // there are no aliases (VPP-4.3, rule 4.3.23)
        }
        return VI_SUCCESS;
    });
}

}  // namespace visa_provider
