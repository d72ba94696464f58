#include "tables/name_map.h"

#include "platform/text.h"

namespace kestrion {
namespace {

constexpr std::string_view kQualifier = "!!";

std::string Qualify(std::string_view capability, std::string_view name) {
    return std::string(capability).append(kQualifier).append(name);
}

std::string FindOr(const HashMap<std::string, std::string>& map, std::string_view key,
                   std::string_view fallback) {
    const std::string* found = map.Find(key);
    return found == nullptr ? std::string(fallback) : *found;
}

}  // namespace

void NameMap::AddVirtualName(std::string_view virtualName, std::string_view mappedName) {
    virtualNames_.Set(ToLowerAscii(virtualName), std::string(mappedName));
    reverseVirtualNames_.Set(ToLowerAscii(mappedName), std::string(virtualName));
}

void NameMap::AddPhysicalName(std::string_view capability, std::string_view physicalName,
                              std::string_view qualifiedName) {
    physicalNames_.Set(Qualify(capability, physicalName), std::string(qualifiedName));
}

void NameMap::Clear() {
    ClearVirtualNames();
    physicalNames_.Clear();
}

void NameMap::ClearVirtualNames() {
    virtualNames_.Clear();
    reverseVirtualNames_.Clear();
}

std::string NameMap::GetPhysicalName(std::string_view name) const {
    std::string physical = FindOr(virtualNames_, ToLowerAscii(name), name);
    if (const auto at = physical.find(kQualifier); at != std::string::npos) {
        physical.erase(0, at + kQualifier.size());
    }
    return physical;
}

std::string NameMap::GetVirtualName(std::string_view name) const {
    return FindOr(reverseVirtualNames_, ToLowerAscii(name), name);
}

std::string NameMap::GetQualifiedPhysicalName(std::string_view capability,
                                              std::string_view physicalName) const {
    return FindOr(physicalNames_, Qualify(capability, physicalName), physicalName);
}

}  // namespace kestrion
