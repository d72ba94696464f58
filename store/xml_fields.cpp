#include "store/xml_fields.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "platform/text.h"

namespace kestrion {
namespace {

// Structures within structures and names below names.
constexpr std::size_t kMaxNesting = 64;
// The indices of all ranges of a store. Each becomes a name of its own in a driver.
constexpr std::int64_t kMaxIndices = 200'000;
constexpr std::size_t kMaxNameBytes = 256;

// The elements that are data components, in the order of DataType.
constexpr std::string_view kComponentKinds[] = {
    "IviString",    "IviInteger",      "IviReal",         "IviBoolean",
    "IviStructure", "IviAPIReference", "IviDataComponent"};
constexpr std::string_view kPhysicalNameKind[] = {"IviPhysicalName"};
constexpr std::string_view kPhysicalRangeKind[] = {"IviPhysicalRange"};
constexpr std::string_view kVirtualNameKind[] = {"IviVirtualName"};
constexpr std::string_view kVirtualRangeKind[] = {"IviVirtualRange"};

template <typename T>
std::optional<T> ParseWhole(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    T number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

std::optional<bool> ParseFlag(std::string_view text) {
    if (text == "1" || text == "true") {
        return true;
    }
    return text == "0" || text == "false" ? std::optional(false) : std::nullopt;
}

StoreFileError BadField(pugi::xml_node element, const char* field, std::string_view text,
                        const char* wanted) {
    if (!element.child(field)) {
        return StoreFileError(Describe(element) + " has no " + field);
    }
    return StoreFileError("the " + std::string(field) + " of " + Describe(element) + " is " +
                          Quoted(text) + " and not " + wanted);
}

template <typename T, typename Parse>
T Required(pugi::xml_node element, const char* field, const char* wanted, const Parse& parse) {
    const std::string text = TrimmedText(element, field);
    const std::optional<T> value = parse(text);
    if (!value.has_value()) {
        throw BadField(element, field, text, wanted);
    }
    return *value;
}

std::int32_t RequiredInteger(pugi::xml_node element, const char* field) {
    return Required<std::int32_t>(element, field, "an integer of 32 bits",
                                  ParseWhole<std::int32_t>);
}

double RequiredReal(pugi::xml_node element, const char* field) {
    return Required<double>(element, field, "a number", ParseWhole<double>);
}

// An element is named by its kind, or by the kind's base with the kind as its schema type.
DataType TypeOf(pugi::xml_node element) {
    const pugi::xml_attribute derived = element.attribute("xsi:type");
    const std::string_view kind = derived ? derived.value() : element.name();
    const auto* const found = std::ranges::find(kComponentKinds, kind);
    return found == std::end(kComponentKinds) ? DataType::kOther
                                              : static_cast<DataType>(found - kComponentKinds);
}

// A name of an instance, which may be empty.
std::string InstanceName(pugi::xml_node element, const char* field) {
    std::string name = TrimmedText(element, field);
    if (name.size() > kMaxNameBytes) {
        throw StoreFileError("the " + std::string(field) + " of " + Describe(element) +
                             " is longer than " + std::to_string(kMaxNameBytes) + " bytes");
    }
    return name;
}

}  // namespace

std::string TrimmedText(pugi::xml_node element, const char* field) {
    return std::string(Trim(TextOf(OnlyChild(element, field))));
}

std::string RequiredName(pugi::xml_node element) {
    std::string name = TrimmedText(element, "Name");
    if (name.empty()) {
        throw StoreFileError(Describe(element) + " has no Name");
    }
    return name;
}

bool RequiredBoolean(pugi::xml_node element, const char* field) {
    return Required<bool>(element, field, "0, 1, true or false", ParseFlag);
}

FieldReader::Step::Step(FieldReader& reader, pugi::xml_node element) : reader_(reader) {
    if (reader.path_.size() == kMaxNesting) {
        throw StoreFileError(Describe(element) + " is nested more than " +
                             std::to_string(kMaxNesting) + " deep");
    }
    reader.path_.push_back(element);
}

std::vector<pugi::xml_node> FieldReader::Items(pugi::xml_node owner, const char* collection,
                                               std::span<const std::string_view> kinds) const {
    std::vector<pugi::xml_node> items;
    std::set<std::string> names;
    for (const pugi::xml_node child : OnlyChild(owner, collection).children()) {
        const pugi::xml_node item = document_.Resolve(child);
        if (std::ranges::find(kinds, item.name()) == kinds.end()) {
            continue;
        }
        const std::string name = TrimmedText(item, "Name");
        if (!names.insert(name).second) {
            throw StoreFileError("two elements in the " + std::string(collection) + " of " +
                                 Describe(owner) + " have the name " + Quoted(name));
        }
        items.push_back(item);
    }
    return items;
}

std::vector<pugi::xml_node> FieldReader::OwnItems(pugi::xml_node owner, const char* collection,
                                                  std::span<const std::string_view> kinds) {
    std::vector<pugi::xml_node> items = Items(owner, collection, kinds);
    for (const pugi::xml_node item : items) {
        if (std::ranges::find(path_, item) != path_.end()) {
            throw StoreFileError(Describe(item) + " contains itself");
        }
        if (!owned_.insert(item.internal_object()).second) {
            throw StoreFileError(Describe(item) + " stands in more than one collection");
        }
    }
    return items;
}

void FieldReader::CountIndices(pugi::xml_node range, std::int64_t min, std::int64_t max) {
    indices_ += std::max<std::int64_t>(max - min + 1, 0);
    if (indices_ > kMaxIndices) {
        throw StoreFileError("with " + Describe(range) + ", from " + std::to_string(min) + " to " +
                             std::to_string(max) + ", its ranges have more than " +
                             std::to_string(kMaxIndices) + " indices");
    }
}

std::vector<DataComponent> FieldReader::DataComponents(pugi::xml_node owner) {
    const Step step(*this, owner);
    std::vector<DataComponent> components;
    for (const pugi::xml_node element : OwnItems(owner, "DataComponents", kComponentKinds)) {
        components.push_back(ReadComponent(element));
    }
    return components;
}

DataComponent FieldReader::ReadComponent(pugi::xml_node element) {
    DataComponent component;
    component.name = RequiredName(element);
    component.type = TypeOf(element);
    switch (component.type) {
        case DataType::kString:
            component.value = TextOf(OnlyChild(element, "Value"));
            break;
        case DataType::kInteger:
            component.value = RequiredInteger(element, "Value");
            break;
        case DataType::kReal:
            component.value = RequiredReal(element, "Value");
            break;
        case DataType::kBoolean:
            component.value = RequiredBoolean(element, "Value");
            break;
        case DataType::kStructure:
            component.components = DataComponents(element);
            break;
        case DataType::kApiReference:
        case DataType::kOther:
            break;
    }
    return component;
}

std::vector<PhysicalName> FieldReader::PhysicalNames(pugi::xml_node owner) {
    const Step step(*this, owner);
    std::vector<PhysicalName> names;
    for (const pugi::xml_node element : OwnItems(owner, "PhysicalNames", kPhysicalNameKind)) {
        names.push_back(ReadPhysicalName(element));
    }
    return names;
}

PhysicalName FieldReader::ReadPhysicalName(pugi::xml_node element) {
    PhysicalName name;
    name.name = InstanceName(element, "Name");
    name.repeatedCapability = InstanceName(element, "RCName");
    for (const pugi::xml_node range : OwnItems(element, "PhysicalRanges", kPhysicalRangeKind)) {
        name.ranges.push_back(
            {.min = RequiredInteger(range, "Min"), .max = RequiredInteger(range, "Max")});
        CountIndices(range, name.ranges.back().min, name.ranges.back().max);
    }
    name.nested = PhysicalNames(element);
    return name;
}

std::vector<VirtualName> FieldReader::VirtualNames(pugi::xml_node owner) {
    std::vector<VirtualName> names;
    for (const pugi::xml_node element : OwnItems(owner, "VirtualNames", kVirtualNameKind)) {
        names.push_back(ReadVirtualName(element));
    }
    return names;
}

VirtualName FieldReader::ReadVirtualName(pugi::xml_node element) {
    VirtualName name;
    name.name = InstanceName(element, "Name");
    name.mapsTo = InstanceName(element, "MapTo");
    for (const pugi::xml_node range : OwnItems(element, "VirtualRanges", kVirtualRangeKind)) {
        name.ranges.push_back(
            {.min = RequiredInteger(range, "Min"),
             .max = RequiredInteger(range, "Max"),
             .startingPhysicalIndex = RequiredInteger(range, "StartingPhysicalIndex")});
        CountIndices(range, name.ranges.back().min, name.ranges.back().max);
    }
    // A name without ranges has to stand for itself (IVI-3.5, section 2.9.3).
    if (name.ranges.empty() && (name.name.empty() || name.mapsTo.empty())) {
        throw StoreFileError(Describe(element) + " has neither ranges nor both a Name and a MapTo");
    }
    return name;
}

}  // namespace kestrion
