// The steps of start-up that read the configuration store.
#include "core/driver.h"
#include "platform/text.h"

namespace kestrion {
namespace {

// What errors name a reading function and its argument by.
struct ReaderNames {
    std::string_view function;
    std::string_view owner;
};
constexpr ReaderNames kSessionSettings = {"LoadDriverConfiguration", "spDriverSession"};
constexpr ReaderNames kModuleSettings = {"LoadConfigurableInitialSettings", "spSoftwareModule"};

// Says where a store stopped being readable; its own status stands.
HRESULT ReportUnreadable(CErrorReporter& reporter, const StoreReadError& error,
                         std::string_view function, std::string_view parameter) {
    std::string text;
    const std::string_view arguments[] = {"0", function, parameter};
    constexpr std::int32_t kInvalidValue = 8;
    (void)CErrorReporter::FormatMessage(kInvalidValue, arguments, text);
    return reporter.RaiseWithStatus(error.Status(), Trim(text));
}

}  // namespace

HRESULT CDriver::LoadConfiguration(const std::string& resourceName, std::string_view optionString) {
    const StoreSelection selection =
        environment_.openStore ? environment_.openStore() : StoreSelection{};
    configuration_.SetStoreReport(
        {.path = selection.store == nullptr ? std::string() : selection.path,
         .reason = selection.reason,
         .broken = selection.store == nullptr && !selection.path.empty()});
    if (selection.store == nullptr) {
        SetText(resourceDescriptor_, resourceName);
        return ProcessOptionString(optionString);
    }
    try {
        return ConfigureByStore(*selection.store, resourceName, optionString);
    } catch (const StoreReadError& error) {
        return ReportUnreadable(reporter_, error, kSessionSettings.function,
                                kSessionSettings.owner);
    }
}

HRESULT CDriver::ConfigureByStore(const ConfigurationStore& store, const std::string& resourceName,
                                  std::string_view optionString) {
    if (const auto session = store.FindDriverSession(resourceName); session != nullptr) {
        SetText(logicalName_, resourceName);
        return ConfigureBySession(*session, optionString);
    }
    SetText(resourceDescriptor_, resourceName);
    const auto module = store.FindSoftwareModule(Metadata().driverName);
    if (module == nullptr) {
        return reporter_.ReportUnrecoverable(
            "Software module could not be loaded from the IVI Configuration Store.");
    }
    if (const HRESULT status = LoadConfigurableInitialSettings(module.get()); Failed(status)) {
        return status;
    }
    if (const HRESULT status = ProcessOptionString(optionString); Failed(status)) {
        return status;
    }
    return LoadPhysicalNames(*module);
}

HRESULT CDriver::ConfigureBySession(const DriverSession& session, std::string_view optionString) {
    if (const HRESULT status = LoadDriverConfiguration(&session); Failed(status)) {
        return status;
    }
    if (const HRESULT status = LoadConfigurableInitialSettings(&session); Failed(status)) {
        return status;
    }
    if (const HRESULT status = ProcessOptionString(optionString); Failed(status)) {
        return status;
    }
    const auto module = session.Module();
    return module == nullptr ? S_OK : LoadPhysicalNames(*module);
}

HRESULT CDriver::LoadDriverConfiguration(const DriverSession* session) {
    if (session == nullptr) {
        return reporter_.ReportInvalidValue("LoadDriverConfiguration", "pDriverSession",
                                            ValueText(0), {});
    }
    try {
        configuration_.AddVirtualNames(session->VirtualNames());
        const auto asset = session->Asset();
        SetText(resourceDescriptor_, asset ? asset->ioResourceDescriptor : std::string());
        const SessionOptions options = session->Options();
        SetFlag(DriverFlag::kCache, options.cache);
        SetFlag(DriverFlag::kInterchangeCheck, options.interchangeCheck);
        SetFlag(DriverFlag::kQueryInstrStatus, options.queryInstrStatus);
        SetFlag(DriverFlag::kRangeCheck, options.rangeCheck);
        SetFlag(DriverFlag::kRecordCoercions, options.recordCoercions);
        SetFlag(DriverFlag::kSimulate, options.simulate);
        return ProcessDriverSetup(session->DriverSetup());
    } catch (const StoreReadError& error) {
        return ReportUnreadable(reporter_, error, kSessionSettings.function,
                                kSessionSettings.owner);
    }
}

HRESULT CDriver::LoadConfigurableInitialSettings(const DriverSession* session) {
    return LoadSettings(session, kSessionSettings.function, kSessionSettings.owner);
}

HRESULT CDriver::LoadConfigurableInitialSettings(const SoftwareModule* module) {
    return LoadSettings(module, kModuleSettings.function, kModuleSettings.owner);
}

template <typename Owner>
HRESULT CDriver::LoadSettings(const Owner* owner, std::string_view function,
                              std::string_view parameter) {
    if (owner == nullptr) {
        return reporter_.ReportInvalidValue(function, parameter, ValueText(0), {});
    }
    try {
        configuration_.AddSettings(owner->DataComponents());
    } catch (const StoreReadError& error) {
        return ReportUnreadable(reporter_, error, function, "spConfigSettings");
    }
    if (std::string model; configuration_.GetConfigString("model", model)) {
        SetInstrumentModel(model);
    }
    return S_OK;
}

HRESULT CDriver::LoadPhysicalNames(const SoftwareModule& module) {
    try {
        configuration_.AddPhysicalNames(module.PhysicalNames());
        return S_OK;
    } catch (const StoreReadError& error) {
        return ReportUnreadable(reporter_, error, kModuleSettings.function, kModuleSettings.owner);
    }
}

}  // namespace kestrion
