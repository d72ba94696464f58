// Fuzz target: the configuration store in its XML form. The input is the file.
#include <charconv>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <variant>

#include "platform/text.h"
#include "store/configuration_store.h"
#include "store/xml_store.h"
#include "tests/fuzz/property.h"

namespace kestrion {
namespace {

using fuzz::Require;

// More than a name of the store's own kinds can be nested, with the elements around it.
constexpr int kDeepest = 64;
constexpr std::int64_t kMostIndices = 200000;

// Anything but letters and digits as a reference to the character, so that a reader changes
// nothing.
std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        const char lower = ToLowerAscii(c);
        const auto code = static_cast<unsigned char>(c);
        const bool plain = (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || code >= 128;
        escaped += plain ? std::string(1, c) : "&#" + std::to_string(code) + ";";
    }
    return escaped;
}

std::string Field(const std::string& name, std::string_view text) {
    return "<" + name + ">" + Escaped(text) + "</" + name + ">";
}

std::string Field(const std::string& name, std::int32_t number) {
    return Field(name, std::to_string(number));
}

std::string Element(const std::string& name, const std::string& content) {
    return "<" + name + ">" + content + "</" + name + ">\n";
}

// Prints what a store holds in the store's own form. What is shared in one store is printed as
// often as it is used, which a store may not do, so each module and session gets a store of its
// own.
class Printer {
  public:
    std::string Store(const SoftwareModule& module) {
        return Element("IviConfigStore", Element("SoftwareModules", Module(module)));
    }
    std::string Store(const DriverSession& session) {
        std::string content;
        std::string text = Field("Name", "session");
        if (const auto module = session.Module()) {
            content += Element("SoftwareModules", Module(*module));
            text += "<IviSoftwareModuleRef idref=\"m\"/>";
        }
        if (const auto asset = session.Asset()) {
            text += Element("IviHardwareAsset",
                            Field("IOResourceDescriptor", asset->ioResourceDescriptor));
        }
        const SessionOptions options = session.Options();
        text += Field("Cache", options.cache) +
                Field("InterchangeCheck", options.interchangeCheck) +
                Field("QueryInstrStatus", options.queryInstrStatus) +
                Field("RangeCheck", options.rangeCheck) +
                Field("RecordCoercions", options.recordCoercions) +
                Field("Simulate", options.simulate) + Field("DriverSetup", session.DriverSetup()) +
                Components(session.DataComponents());
        std::string names;
        for (const VirtualName& name : session.VirtualNames()) {
            names += Virtual(name);
        }
        text += Element("VirtualNames", names);
        content += Element("DriverSessions", Element("IviDriverSession", text));
        return Element("IviConfigStore", content);
    }

  private:
    std::string Module(const SoftwareModule& module) {
        return "<IviSoftwareModule id=\"m\">" + Field("Name", module.Name()) +
               Components(module.DataComponents()) + Physical(module.PhysicalNames(), 1) +
               "</IviSoftwareModule>\n";
    }

    std::string Physical(const std::vector<PhysicalName>& names, int depth) {
        Require(depth <= kDeepest, "names are nested to a limit");
        std::string text;
        for (const PhysicalName& name : names) {
            std::string ranges;
            for (const PhysicalRange& range : name.ranges) {
                Count(range.min, range.max);
                ranges += Element("IviPhysicalRange",
                                  RangeName() + Field("Min", range.min) + Field("Max", range.max));
            }
            text +=
                Element("IviPhysicalName",
                        Field("Name", name.name) + Field("RCName", name.repeatedCapability) +
                            Element("PhysicalRanges", ranges) + Physical(name.nested, depth + 1));
        }
        return Element("PhysicalNames", text);
    }

    std::string Virtual(const VirtualName& name) {
        Require(!name.ranges.empty() || (!name.name.empty() && !name.mapsTo.empty()),
                "a name without ranges stands for itself");
        std::string ranges;
        for (const VirtualRange& range : name.ranges) {
            Count(range.min, range.max);
            ranges += Element("IviVirtualRange",
                              RangeName() + Field("Min", range.min) + Field("Max", range.max) +
                                  Field("StartingPhysicalIndex", range.startingPhysicalIndex));
        }
        return Element("IviVirtualName", Field("Name", name.name) + Field("MapTo", name.mapsTo) +
                                             Element("VirtualRanges", ranges));
    }

    std::string Components(const std::vector<DataComponent>& components, int depth = 1) {
        Require(depth <= kDeepest, "structures are nested to a limit");
        std::string text;
        for (const DataComponent& component : components) {
            Require(!component.name.empty(), "a component has a name");
            text += Component(component, depth);
        }
        return Element("DataComponents", text);
    }

    std::string Component(const DataComponent& component, int depth) {
        const std::string name = Field("Name", component.name);
        switch (component.type) {
            case DataType::kString:
                return Element("IviString",
                               name + Field("Value", std::get<std::string>(component.value)));
            case DataType::kInteger:
                return Element("IviInteger",
                               name + Field("Value", std::get<std::int32_t>(component.value)));
            case DataType::kReal: {
                char digits[64];
                const auto end = std::to_chars(digits, digits + sizeof(digits),
                                               std::get<double>(component.value));
                return Element("IviReal", name + Field("Value", std::string_view(digits, end.ptr)));
            }
            case DataType::kBoolean:
                return Element("IviBoolean",
                               name + Field("Value", std::get<bool>(component.value)));
            case DataType::kStructure:
                return Element("IviStructure", name + Components(component.components, depth + 1));
            case DataType::kApiReference:
                return Element("IviAPIReference", name);
            case DataType::kOther:
                break;
        }
        return Element("IviDataComponent", name);
    }

    // Ranges of a name may not share theirs.
    std::string RangeName() { return Field("Name", std::to_string(++ranges_)); }

    void Count(std::int64_t min, std::int64_t max) {
        indices_ += max < min ? 0 : max - min + 1;
        Require(indices_ <= kMostIndices, "the indices of a store have their limit");
    }

    int ranges_ = 0;
    std::int64_t indices_ = 0;
};

std::shared_ptr<const ConfigurationStore> Read(std::string_view bytes) {
    std::string reason;
    auto store = ReadXmlStore(bytes, reason);
    Require((store == nullptr) != reason.empty(), "a store is read, or there is a reason", reason);
    return store;
}

// The texts that stand in elements called Name.
std::set<std::string> NamesIn(std::string_view bytes) {
    constexpr std::string_view kOpen = "<Name>";
    std::set<std::string> names;
    for (std::size_t at = bytes.find(kOpen); at != std::string_view::npos;
         at = bytes.find(kOpen, at + 1)) {
        const std::string_view text = bytes.substr(at + kOpen.size());
        names.insert(std::string(Trim(text.substr(0, text.find('<')))));
    }
    return names;
}

void CheckModule(const ConfigurationStore& store, const std::string& name) {
    const auto module = store.FindSoftwareModule(name);
    if (module == nullptr) {
        return;
    }
    Require(module->Name() == name, "a module is found by its name", name);
    const std::string printed = Printer().Store(*module);
    const auto again = Read(printed);
    Require(again != nullptr, "a printed module is in order", printed);
    const auto same = again->FindSoftwareModule(name);
    Require(same != nullptr && Printer().Store(*same) == printed, "a printed module is the same",
            printed);
}

void CheckSession(const ConfigurationStore& store, const std::string& name) {
    const auto session = store.FindDriverSession(name);
    if (session == nullptr) {
        return;
    }
    const std::string printed = Printer().Store(*session);
    const auto again = Read(printed);
    Require(again != nullptr, "a printed session is in order", printed);
    const auto same = again->FindDriverSession("session");
    Require(same != nullptr && Printer().Store(*same) == printed, "a printed session is the same",
            printed);
}

}  // namespace
}  // namespace kestrion

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrion;
    const std::string_view bytes = fuzz::AsText(data, size);
    if (const auto store = Read(bytes)) {
        Require(store->FindSoftwareModule("") == nullptr && store->FindDriverSession("") == nullptr,
                "nothing is found without a name");
        for (const std::string& name : NamesIn(bytes)) {
            CheckModule(*store, name);
            CheckSession(*store, name);
        }
    }
    return 0;
}
