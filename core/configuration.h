// What a driver is told when it starts, by its option string and by the configuration store.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "core/option_string.h"
#include "kestrion/platform/variant.h"
#include "store/configuration_store.h"
#include "tables/hash_map.h"
#include "tables/name_map.h"

namespace kestrion {

// The store that a start-up found.
struct StoreReport {
    // The file of the store in use; empty where none is.
    std::string path;
    // Why that one, or why none, as the end of a sentence.
    std::string reason;
    // A store is there, but it can't be read.
    bool broken = false;
};

// Options and settings by name, in any case of A to Z, and the names of repeated capability
// instances. Any thread may call; nothing here waits for anything but memory.
class Configuration {
  public:
    // Empties all but the physical names: those tell of the driver itself and stay until a later
    // store tells otherwise.
    void Clear();

    void SetStoreReport(StoreReport report);
    [[nodiscard]] StoreReport GetStoreReport() const;

    void SetInitOption(std::string_view name, std::string_view value);
    // The option's value; empty where it wasn't given.
    [[nodiscard]] std::string GetInitOption(std::string_view name) const;

    // A driver setup takes the place of the one before.
    void ClearDriverSetupOptions();
    void SetDriverSetupOption(std::string_view name, std::string_view value);
    [[nodiscard]] std::string GetDriverSetupOption(std::string_view name) const;

    // Takes over the configurable initial settings of a session or module: each of these data
    // components, and those in the structure "Configurable Initial Settings". Other structures and
    // references to interfaces are left out; a later setting of the same name wins.
    void AddSettings(const std::vector<DataComponent>& components);
    // The setting changed to the type; false, with `value` as it was, where there is none or it
    // can't be changed. As a text only one that is a text.
    [[nodiscard]] bool GetConfigBool(std::string_view name, bool& value) const;
    [[nodiscard]] bool GetConfigLong(std::string_view name, std::int32_t& value) const;
    [[nodiscard]] bool GetConfigDouble(std::string_view name, double& value) const;
    [[nodiscard]] bool GetConfigString(std::string_view name, std::string& value) const;
    // A copy of the setting as it is.
    [[nodiscard]] bool GetConfigVariant(std::string_view name, VariantPtr& value) const;

    // A name with ranges stands for a name with each index; the mapped name counts along from the
    // range's starting index (IVI-3.5, section 2.9.3).
    void AddVirtualNames(const std::vector<VirtualName>& names);
    // The same for the names of the module, those below other names included. A name such as
    // "KestrionChannel!!Channel1" is the full name of "Channel1".
    void AddPhysicalNames(const std::vector<PhysicalName>& names);
    // See NameMap.
    [[nodiscard]] std::string GetPhysicalName(std::string_view name) const;
    [[nodiscard]] std::string GetVirtualName(std::string_view name) const;
    [[nodiscard]] std::string GetQualifiedPhysicalName(std::string_view capability,
                                                       std::string_view physicalName) const;

  private:
    [[nodiscard]] bool ChangeSetting(std::string_view name, VARTYPE type, VariantPtr& value) const;

    mutable std::mutex lock_;
    StoreReport storeReport_;
    OptionMap initOptions_;
    OptionMap driverSetupOptions_;
    HashMap<std::string, VariantPtr> settings_;
    NameMap names_;
};

}  // namespace kestrion
