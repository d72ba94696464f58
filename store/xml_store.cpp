#include "store/xml_store.h"

#include <map>
#include <utility>

#include "store/xml_document.h"
#include "store/xml_fields.h"

namespace kestrion {
namespace {

constexpr std::string_view kModuleKind[] = {"IviSoftwareModule"};
constexpr std::string_view kAssetKind[] = {"IviHardwareAsset"};
constexpr std::string_view kSessionKinds[] = {"IviSession", "IviDriverSession"};
constexpr std::string_view kDriverSessionKind[] = {"IviDriverSession"};
constexpr std::string_view kLogicalNameKind[] = {"IviLogicalName"};

class XmlModule final : public SoftwareModule {
  public:
    XmlModule(FieldReader& fields, pugi::xml_node element)
        : name_(RequiredName(element)),
          physicalNames_(fields.PhysicalNames(element)),
          components_(fields.DataComponents(element)) {}

    [[nodiscard]] std::string Name() const override { return name_; }
    [[nodiscard]] std::vector<PhysicalName> PhysicalNames() const override {
        return physicalNames_;
    }
    [[nodiscard]] std::vector<DataComponent> DataComponents() const override { return components_; }

  private:
    std::string name_;
    std::vector<PhysicalName> physicalNames_;
    std::vector<DataComponent> components_;
};

class XmlSession final : public DriverSession {
  public:
    XmlSession(FieldReader& fields, pugi::xml_node element,
               std::shared_ptr<const HardwareAsset> asset,
               std::shared_ptr<const SoftwareModule> module)
        : asset_(std::move(asset)),
          module_(std::move(module)),
          virtualNames_(fields.VirtualNames(element)),
          components_(fields.DataComponents(element)),
          options_(ReadOptions(element)),
          driverSetup_(TextOf(OnlyChild(element, "DriverSetup"))) {}

    [[nodiscard]] std::optional<HardwareAsset> Asset() const override {
        return asset_ == nullptr ? std::nullopt : std::optional(*asset_);
    }
    [[nodiscard]] std::shared_ptr<const SoftwareModule> Module() const override { return module_; }
    [[nodiscard]] std::vector<VirtualName> VirtualNames() const override { return virtualNames_; }
    [[nodiscard]] std::vector<DataComponent> DataComponents() const override { return components_; }
    [[nodiscard]] SessionOptions Options() const override { return options_; }
    [[nodiscard]] std::string DriverSetup() const override { return driverSetup_; }

  private:
    static SessionOptions ReadOptions(pugi::xml_node element) {
        return {.cache = RequiredBoolean(element, "Cache"),
                .interchangeCheck = RequiredBoolean(element, "InterchangeCheck"),
                .queryInstrStatus = RequiredBoolean(element, "QueryInstrStatus"),
                .rangeCheck = RequiredBoolean(element, "RangeCheck"),
                .recordCoercions = RequiredBoolean(element, "RecordCoercions"),
                .simulate = RequiredBoolean(element, "Simulate")};
    }

    std::shared_ptr<const HardwareAsset> asset_;
    std::shared_ptr<const SoftwareModule> module_;
    std::vector<VirtualName> virtualNames_;
    std::vector<DataComponent> components_;
    SessionOptions options_;
    std::string driverSetup_;
};

template <typename Object>
using ByName = std::map<std::string, std::shared_ptr<const Object>, std::less<>>;

template <typename Object>
std::shared_ptr<const Object> Find(const ByName<Object>& objects, std::string_view name) {
    const auto found = objects.find(name);
    return found == objects.end() ? nullptr : found->second;
}

class XmlStore final : public ConfigurationStore {
  public:
    [[nodiscard]] std::shared_ptr<const DriverSession> FindDriverSession(
        std::string_view name) const override {
        auto session = Find(sessionsByLogicalName, name);
        return session != nullptr ? session : Find(sessionsByName, name);
    }
    [[nodiscard]] std::shared_ptr<const SoftwareModule> FindSoftwareModule(
        std::string_view name) const override {
        return Find(modules, name);
    }

    // Logical names of other sessions than a driver's are left out.
    ByName<DriverSession> sessionsByLogicalName;
    ByName<DriverSession> sessionsByName;
    ByName<SoftwareModule> modules;
};

// Builds the objects of a document, each once, however many refer to it.
class StoreBuilder {
  public:
    explicit StoreBuilder(const XmlDocument& document) : document_(document), fields_(document) {}

    std::shared_ptr<const XmlStore> Build() {
        auto store = std::make_shared<XmlStore>();
        const pugi::xml_node root = document_.Root();
        for (const pugi::xml_node element : fields_.Items(root, "SoftwareModules", kModuleKind)) {
            store->modules.emplace(RequiredName(element), Module(element));
        }
        // Their names have to be in order too.
        (void)fields_.Items(root, "HardwareAssets", kAssetKind);
        (void)fields_.Items(root, "Sessions", kSessionKinds);
        for (const pugi::xml_node element :
             fields_.Items(root, "DriverSessions", kDriverSessionKind)) {
            store->sessionsByName.emplace(RequiredName(element), Session(element));
        }
        for (const pugi::xml_node element : fields_.Items(root, "LogicalNames", kLogicalNameKind)) {
            const std::string name = RequiredName(element);
            if (auto session = SessionOf(element)) {
                store->sessionsByLogicalName.emplace(name, std::move(session));
            }
        }
        return store;
    }

  private:
    // Null for a logical name without a session or with one that is no driver's.
    std::shared_ptr<const DriverSession> SessionOf(pugi::xml_node logicalName) {
        for (const std::string_view kind : kSessionKinds) {
            const pugi::xml_node session = document_.Resolve(OnlyChild(logicalName, kind.data()));
            if (session.name() == kDriverSessionKind[0]) {
                return Session(session);
            }
        }
        return nullptr;
    }

    std::shared_ptr<const SoftwareModule> Module(pugi::xml_node element) {
        auto& module = modules_[element.internal_object()];
        if (module == nullptr) {
            module = std::make_shared<const XmlModule>(fields_, element);
        }
        return module;
    }

    std::shared_ptr<const DriverSession> Session(pugi::xml_node element) {
        auto& session = sessions_[element.internal_object()];
        if (session == nullptr) {
            const pugi::xml_node module = OnlyChild(element, "IviSoftwareModuleRef");
            session = std::make_shared<const XmlSession>(
                fields_, element, Asset(element),
                module ? Module(document_.Resolve(module)) : nullptr);
        }
        return session;
    }

    std::shared_ptr<const HardwareAsset> Asset(pugi::xml_node session) {
        const pugi::xml_node reference = OnlyChild(session, "IviHardwareAsset");
        if (!reference) {
            return nullptr;
        }
        const pugi::xml_node element = document_.Resolve(reference);
        auto& asset = assets_[element.internal_object()];
        if (asset == nullptr) {
            asset = std::make_shared<const HardwareAsset>(
                HardwareAsset{TrimmedText(element, "IOResourceDescriptor")});
        }
        return asset;
    }

    const XmlDocument& document_;
    FieldReader fields_;
    std::map<const void*, std::shared_ptr<const HardwareAsset>> assets_;
    std::map<const void*, std::shared_ptr<const SoftwareModule>> modules_;
    std::map<const void*, std::shared_ptr<const DriverSession>> sessions_;
};

}  // namespace

std::shared_ptr<const ConfigurationStore> ReadXmlStore(std::string_view bytes,
                                                       std::string& reason) {
    try {
        const XmlDocument document(bytes);
        return StoreBuilder(document).Build();
    } catch (const StoreFileError& error) {
        reason = error.what();
        return nullptr;
    }
}

}  // namespace kestrion
