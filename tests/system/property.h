// What can be written of the object model, as data: the tables that the build makes of the model.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kestrion/platform/component.h"

namespace kestrion {

// A value of a property. A LONG is also the number of an enumeration's value.
using PropertyValue = std::variant<LONG, double, bool, std::string>;

enum class PropertyKind { kLong, kDouble, kBool, kText, kEnum, kOther };

struct Property {
    std::string_view name;  // "Mode"
    PropertyKind kind;
    bool hasIndex;                  // there are several values, told apart by a number
    std::span<const LONG> values;   // of an enumeration: what the member may have
    std::span<const LONG> indexes;  // of the enumeration that tells the values apart
    // Null where there is none, or where it isn't called with one value and at most one number.
    HRESULT (*get)(IUnknown& object, LONG index, PropertyValue& value);
    HRESULT (*put)(IUnknown& object, LONG index, const PropertyValue& value);
};

// A class of instances.
struct PropertyNode {
    std::string_view first;  // the physical name of the first instance, and of the last
    std::string_view last;
    // The instance of that name; null for none.
    ComPtr<IUnknown> (*find)(IUnknown& root, std::string_view name);
};

struct PropertyInterface {
    std::string_view name;     // "IKestrionAcquisition"
    const PropertyNode* node;  // null for the root
    std::span<const Property> properties;
};

// Every interface that has a property that can be written.
[[nodiscard]] std::vector<PropertyInterface> AllPropertyInterfaces();

}  // namespace kestrion
