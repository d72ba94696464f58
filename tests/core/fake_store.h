// A configuration store that a test puts together, and that fails where the test says.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/configuration_store.h"

namespace kestrion {

// What a store failed to read; S_OK where it reads everything.
struct FakeFailures {
    HRESULT find = S_OK;
    HRESULT asset = S_OK;
    HRESULT module = S_OK;
    HRESULT virtualNames = S_OK;
    HRESULT components = S_OK;
    HRESULT options = S_OK;
    HRESULT driverSetup = S_OK;
    HRESULT physicalNames = S_OK;
};

// Gives `value`, or throws where `status` is a failure.
template <typename T>
T ReadOrFail(HRESULT status, const T& value) {
    if (Failed(status)) {
        throw StoreReadError(status);
    }
    return value;
}

class FakeModule final : public SoftwareModule {
  public:
    [[nodiscard]] std::string Name() const override { return "Kestrion"; }
    [[nodiscard]] std::vector<PhysicalName> PhysicalNames() const override {
        return ReadOrFail(failures.physicalNames, physicalNames);
    }
    [[nodiscard]] std::vector<DataComponent> DataComponents() const override {
        return ReadOrFail(failures.components, components);
    }

    std::vector<PhysicalName> physicalNames;
    std::vector<DataComponent> components;
    FakeFailures failures;
};

class FakeSession final : public DriverSession {
  public:
    [[nodiscard]] std::optional<HardwareAsset> Asset() const override {
        return ReadOrFail(failures.asset, asset);
    }
    [[nodiscard]] std::shared_ptr<const SoftwareModule> Module() const override {
        return ReadOrFail(failures.module, std::shared_ptr<const SoftwareModule>(module));
    }
    [[nodiscard]] std::vector<VirtualName> VirtualNames() const override {
        return ReadOrFail(failures.virtualNames, virtualNames);
    }
    [[nodiscard]] std::vector<DataComponent> DataComponents() const override {
        return ReadOrFail(failures.components, components);
    }
    [[nodiscard]] SessionOptions Options() const override {
        return ReadOrFail(failures.options, options);
    }
    [[nodiscard]] std::string DriverSetup() const override {
        return ReadOrFail(failures.driverSetup, driverSetup);
    }

    std::optional<HardwareAsset> asset;
    std::shared_ptr<FakeModule> module;
    std::vector<VirtualName> virtualNames;
    std::vector<DataComponent> components;
    // As a session is when it is new.
    SessionOptions options{.cache = true, .rangeCheck = true};
    std::string driverSetup;
    FakeFailures failures;
};

// One session under the logical name "MyScope", and the module "Kestrion".
class FakeStore final : public ConfigurationStore {
  public:
    [[nodiscard]] std::shared_ptr<const DriverSession> FindDriverSession(
        std::string_view name) const override {
        const auto found = name == "MyScope" ? session : nullptr;
        return ReadOrFail(failures.find, std::shared_ptr<const DriverSession>(found));
    }
    [[nodiscard]] std::shared_ptr<const SoftwareModule> FindSoftwareModule(
        std::string_view name) const override {
        return name == "Kestrion" ? module : nullptr;
    }

    std::shared_ptr<FakeSession> session = std::make_shared<FakeSession>();
    std::shared_ptr<FakeModule> module = std::make_shared<FakeModule>();
    FakeFailures failures;
};

inline DataComponent TextSetting(std::string name, std::string value) {
    return {.name = std::move(name),
            .type = DataType::kString,
            .value = std::move(value),
            .components = {}};
}

inline DataComponent IntegerSetting(std::string name, std::int32_t value) {
    return {.name = std::move(name), .type = DataType::kInteger, .value = value, .components = {}};
}

inline DataComponent Structure(std::string name, std::vector<DataComponent> components) {
    return {.name = std::move(name),
            .type = DataType::kStructure,
            .value = {},
            .components = std::move(components)};
}

}  // namespace kestrion
