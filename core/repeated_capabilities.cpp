#include "core/repeated_capabilities.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/text.h"

namespace kestrion {

HRESULT CountInstances(MemberCall& call, std::string_view className, LONG* count) {
    *count = static_cast<LONG>(call.Driver().Instances(className).size());
    return S_OK;
}

CRepCap* ChooseInstance(std::span<CRepCap* const> instances, std::string_view name) {
    if (instances.empty()) {
        return nullptr;
    }
    name = Trim(name);
    if (instances.size() == 1 && name.empty()) {
        return instances.front();
    }
    const std::string physical = instances.front()->GetPhysicalName(name);
    const auto found = std::ranges::find_if(instances, [&](const CRepCap* candidate) {
        return EqualsIgnoreCase(physical, candidate->PhysicalName());
    });
    return found == instances.end() ? nullptr : *found;
}

HRESULT FindInstance(MemberCall& call, std::string_view className, BSTR name, REFIID iid,
                     void** instance) {
    if (instance == nullptr) {
        return E_POINTER;
    }
    const std::vector<CRepCap*> instances = call.Driver().Instances(className);
    if (instances.empty()) {
        return E_UNEXPECTED;
    }
    CRepCap* found = ChooseInstance(instances, ToUtf8(name));
    return found == nullptr ? call.Errors().ReportUnknownPhysicalSelector()
                            : found->QueryInterface(iid, instance);
}

HRESULT NameInstance(MemberCall& call, std::string_view className, LONG index, BSTR* name) {
    if (name == nullptr) {
        return E_POINTER;
    }
    const std::vector<CRepCap*> instances = call.Driver().Instances(className);
    if (instances.empty()) {
        return E_UNEXPECTED;
    }
    if (index < 1 || static_cast<std::size_t>(index) > instances.size()) {
        return call.Errors().ReportInvalidValue("Index", ValueText(index), {});
    }
    const CRepCap& found = *instances[static_cast<std::size_t>(index) - 1];
    *name = MakeBstr(call.Driver().GetQualifiedPhysicalName(className, found.PhysicalName()));
    return S_OK;
}

}  // namespace kestrion
