#include "core/configuration.h"

#include <type_traits>
#include <utility>

#include "platform/text.h"

namespace kestrion {
namespace {

constexpr std::string_view kSettingsGroup = "Configurable Initial Settings";
constexpr std::string_view kQualifier = "!!";

std::string FindText(const OptionMap& options, std::string_view name) {
    const std::string* value = options.Find(ToLowerAscii(name));
    return value == nullptr ? std::string() : *value;
}

// VT_EMPTY for a component without a value of its own.
VariantPtr MakeVariant(const DataComponent& component) {
    VariantPtr variant;
    VARIANT* const out = variant.Out();
    if (const auto* text = std::get_if<std::string>(&component.value)) {
        out->bstrVal = MakeBstr(*text);
        out->vt = VT_BSTR;
    } else if (const auto* integer = std::get_if<std::int32_t>(&component.value)) {
        out->vt = VT_I4;
        out->lVal = *integer;
    } else if (const auto* real = std::get_if<double>(&component.value)) {
        out->vt = VT_R8;
        out->dblVal = *real;
    } else if (const auto* flag = std::get_if<bool>(&component.value)) {
        out->vt = VT_BOOL;
        out->boolVal = ToVariantBool(*flag);
    }
    return variant;
}

void AddComponents(const std::vector<DataComponent>& components,
                   HashMap<std::string, VariantPtr>& settings) {
    for (const DataComponent& component : components) {
        if (component.type == DataType::kStructure) {
            if (component.name == kSettingsGroup) {
                AddComponents(component.components, settings);
            }
            continue;
        }
        if (VariantPtr value = MakeVariant(component); value->vt != VT_EMPTY) {
            settings.Set(ToLowerAscii(component.name), std::move(value));
        }
    }
}

void AddVirtualName(const VirtualName& name, NameMap& names) {
    if (name.ranges.empty()) {
        names.AddVirtualName(name.name, name.mapsTo);
    }
    for (const VirtualRange& range : name.ranges) {
        // Wider than the indices, which may be the last of their type.
        std::int64_t mapped = range.startingPhysicalIndex;
        for (std::int64_t index = range.min; index <= range.max; ++index, ++mapped) {
            names.AddVirtualName(name.name + std::to_string(index),
                                 name.mapsTo + std::to_string(mapped));
        }
    }
}

void AddPhysicalName(const std::string& capability, std::string_view name, NameMap& names) {
    const std::size_t qualifier = name.find(kQualifier);
    const std::string_view unqualified =
        qualifier == std::string_view::npos ? name : name.substr(qualifier + kQualifier.size());
    names.AddPhysicalName(capability, unqualified, name);
}

void AddPhysicalNamesTo(const std::vector<PhysicalName>& physicalNames, NameMap& names) {
    for (const PhysicalName& name : physicalNames) {
        AddPhysicalName(name.repeatedCapability, name.name, names);
        for (const PhysicalRange& range : name.ranges) {
            for (std::int64_t index = range.min; index <= range.max; ++index) {
                AddPhysicalName(name.repeatedCapability, name.name + std::to_string(index), names);
            }
        }
        AddPhysicalNamesTo(name.nested, names);
    }
}

}  // namespace

void Configuration::Clear() {
    const std::lock_guard guard(lock_);
    storeReport_ = {};
    initOptions_.Clear();
    driverSetupOptions_.Clear();
    settings_.Clear();
    names_.ClearVirtualNames();
}

void Configuration::SetStoreReport(StoreReport report) {
    const std::lock_guard guard(lock_);
    storeReport_ = std::move(report);
}

StoreReport Configuration::GetStoreReport() const {
    const std::lock_guard guard(lock_);
    return storeReport_;
}

void Configuration::SetInitOption(std::string_view name, std::string_view value) {
    const std::lock_guard guard(lock_);
    initOptions_[ToLowerAscii(name)] = std::string(value);
}

std::string Configuration::GetInitOption(std::string_view name) const {
    const std::lock_guard guard(lock_);
    return FindText(initOptions_, name);
}

void Configuration::ClearDriverSetupOptions() {
    const std::lock_guard guard(lock_);
    driverSetupOptions_.Clear();
}

void Configuration::SetDriverSetupOption(std::string_view name, std::string_view value) {
    const std::lock_guard guard(lock_);
    driverSetupOptions_[ToLowerAscii(name)] = std::string(value);
}

std::string Configuration::GetDriverSetupOption(std::string_view name) const {
    const std::lock_guard guard(lock_);
    return FindText(driverSetupOptions_, name);
}

void Configuration::AddSettings(const std::vector<DataComponent>& components) {
    const std::lock_guard guard(lock_);
    AddComponents(components, settings_);
}

bool Configuration::ChangeSetting(std::string_view name, VARTYPE type, VariantPtr& value) const {
    const std::lock_guard guard(lock_);
    const VariantPtr* setting = settings_.Find(ToLowerAscii(name));
    return setting != nullptr && Succeeded(VariantChangeType(value.Out(), setting->Get(), 0, type));
}

bool Configuration::GetConfigBool(std::string_view name, bool& value) const {
    VariantPtr changed;
    if (!ChangeSetting(name, VT_BOOL, changed)) {
        return false;
    }
    value = changed->boolVal != VARIANT_FALSE;
    return true;
}

bool Configuration::GetConfigLong(std::string_view name, std::int32_t& value) const {
    VariantPtr changed;
    if (!ChangeSetting(name, VT_I4, changed)) {
        return false;
    }
    value = changed->lVal;
    return true;
}

bool Configuration::GetConfigDouble(std::string_view name, double& value) const {
    VariantPtr changed;
    if (!ChangeSetting(name, VT_R8, changed)) {
        return false;
    }
    value = changed->dblVal;
    return true;
}

bool Configuration::GetConfigString(std::string_view name, std::string& value) const {
    VariantPtr setting;
    if (!GetConfigVariant(name, setting) || setting->vt != VT_BSTR) {
        return false;
    }
    value = ToUtf8(setting->bstrVal);
    return true;
}

bool Configuration::GetConfigVariant(std::string_view name, VariantPtr& value) const {
    const std::lock_guard guard(lock_);
    const VariantPtr* setting = settings_.Find(ToLowerAscii(name));
    return setting != nullptr && Succeeded(VariantCopy(value.Out(), setting->Get()));
}

void Configuration::AddVirtualNames(const std::vector<VirtualName>& names) {
    const std::lock_guard guard(lock_);
    for (const VirtualName& name : names) {
        AddVirtualName(name, names_);
    }
}

void Configuration::AddPhysicalNames(const std::vector<PhysicalName>& names) {
    const std::lock_guard guard(lock_);
    AddPhysicalNamesTo(names, names_);
}

std::string Configuration::GetPhysicalName(std::string_view name) const {
    const std::lock_guard guard(lock_);
    return names_.GetPhysicalName(name);
}

std::string Configuration::GetVirtualName(std::string_view name) const {
    const std::lock_guard guard(lock_);
    return names_.GetVirtualName(name);
}

std::string Configuration::GetQualifiedPhysicalName(std::string_view capability,
                                                    std::string_view physicalName) const {
    const std::lock_guard guard(lock_);
    return names_.GetQualifiedPhysicalName(capability, physicalName);
}

}  // namespace kestrion
