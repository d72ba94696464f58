// What a driver asks of an IVI configuration store, whoever keeps it and in whatever form: driver
// sessions by logical name, software modules, and what these hold (IVI-3.5, section 2).
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kestrion/platform/types.h"

namespace kestrion {

// Texts are UTF-8.

// The indices from `min` to `max`, both included; none where `max` is the smaller.
struct PhysicalRange {
    std::int32_t min = 0;
    std::int32_t max = 0;
};

// An instance of a repeated capability as the software module names it. With ranges the name is the
// beginning of several names, each ending with an index.
struct PhysicalName {
    std::string name;
    std::string repeatedCapability;
    std::vector<PhysicalRange> ranges;
    std::vector<PhysicalName> nested;
};

// The same, where the name that is mapped to counts from `startingPhysicalIndex`.
struct VirtualRange {
    std::int32_t min = 0;
    std::int32_t max = 0;
    std::int32_t startingPhysicalIndex = 0;
};

// A name that the user gave to an instance, and the physical name that it stands for.
struct VirtualName {
    std::string name;
    std::string mapsTo;
    std::vector<VirtualRange> ranges;
};

enum class DataType : std::uint8_t {
    kString,
    kInteger,
    kReal,
    kBoolean,
    kStructure,
    kApiReference,
    kOther,
};

// A value under a name, or several of them.
struct DataComponent {
    std::string name;
    DataType type = DataType::kOther;
    // Of the type, and empty for the last three.
    std::variant<std::monostate, std::string, std::int32_t, double, bool> value;
    // Of a structure.
    std::vector<DataComponent> components;
};

struct HardwareAsset {
    std::string ioResourceDescriptor;
};

// The six options, in the order in which drivers keep them.
struct SessionOptions {
    bool cache = false;
    bool interchangeCheck = false;
    bool queryInstrStatus = false;
    bool rangeCheck = false;
    bool recordCoercions = false;
    bool simulate = false;
};

// Thrown by the operations below where a store can't be read on.
class StoreReadError final : public std::exception {
  public:
    explicit StoreReadError(HRESULT status) : status_(status) {}
    // Negative.
    [[nodiscard]] HRESULT Status() const noexcept { return status_; }
    [[nodiscard]] const char* what() const noexcept override {
        return "the configuration store can't be read";
    }

  private:
    HRESULT status_;
};

// Objects of a store don't change and may be used by any thread, also after the store is gone.
// Collections are in the order of the store.

class SoftwareModule {
  public:
    virtual ~SoftwareModule() = default;
    [[nodiscard]] virtual std::string Name() const = 0;
    [[nodiscard]] virtual std::vector<PhysicalName> PhysicalNames() const = 0;
    [[nodiscard]] virtual std::vector<DataComponent> DataComponents() const = 0;
};

class DriverSession {
  public:
    virtual ~DriverSession() = default;
    // Nothing where the session has none.
    [[nodiscard]] virtual std::optional<HardwareAsset> Asset() const = 0;
    // Null where the session has none.
    [[nodiscard]] virtual std::shared_ptr<const SoftwareModule> Module() const = 0;
    [[nodiscard]] virtual std::vector<VirtualName> VirtualNames() const = 0;
    [[nodiscard]] virtual std::vector<DataComponent> DataComponents() const = 0;
    [[nodiscard]] virtual SessionOptions Options() const = 0;
    [[nodiscard]] virtual std::string DriverSetup() const = 0;
};

class ConfigurationStore {
  public:
    virtual ~ConfigurationStore() = default;
    // The driver session that a logical name refers to; else the one that has the name itself
    // (IVI-3.5, section 7.4.2). Names compare exactly. Null where there is neither.
    [[nodiscard]] virtual std::shared_ptr<const DriverSession> FindDriverSession(
        std::string_view name) const = 0;
    // Null where there is no module of that name.
    [[nodiscard]] virtual std::shared_ptr<const SoftwareModule> FindSoftwareModule(
        std::string_view name) const = 0;
};

// A store, or the reason why there is none.
struct StoreSelection {
    std::shared_ptr<const ConfigurationStore> store;
    // The file; empty where none was found.
    std::string path;
    // Why that store was chosen or can't be used, as the end of a sentence, for a person to read.
    std::string reason;
};

// Opens the store that is in force. Called at each start of a driver.
using StoreOpener = std::function<StoreSelection()>;

}  // namespace kestrion
