#include "core/repeated_capabilities.h"

#include <string>

#include "platform/text.h"

namespace kestrion {

HRESULT CountInstances(MemberCall& call, std::string_view className, LONG* count) {
    *count = static_cast<LONG>(call.Driver().Instances(className).size());
    return S_OK;
}

HRESULT FindInstance(MemberCall& call, std::string_view className, BSTR name, REFIID iid,
                     void** instance) {
    const std::vector<CRepCap*> instances = call.Driver().Instances(className);
    if (instances.empty()) {
        return E_UNEXPECTED;
    }
    const std::string utf8 = ToUtf8(name);
    const std::string_view asked = Trim(utf8);
    if (instances.size() == 1 && asked.empty()) {
        return instances.front()->QueryInterface(iid, instance);
    }
    const std::string physical = call.Driver().GetPhysicalName(asked);
    for (CRepCap* candidate : instances) {
        if (EqualsIgnoreCase(physical, candidate->PhysicalName())) {
            return candidate->QueryInterface(iid, instance);
        }
    }
    return call.Errors().ReportUnknownPhysicalSelector();
}

HRESULT NameInstance(MemberCall& call, std::string_view className, LONG index, BSTR* name) {
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
