// What a member of an interface is, as constant data: one for each entry point.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "kestrion/platform/types.h"

namespace kestrion {

// What stands for a repeated capability instance at the front of a property's template.
enum class Selector : std::uint8_t {
    kNone,
    kNumber,  // the instance's index plus one, as in "CH%d"
    kIndex,   // the instance's index as it stands, as in "D%d"
    kName,    // the physical name, as in "%s"
};

// Texts are views of literals. Templates are instrument bytes in the format language of io/.
struct MethodDescriptor {
    IID iid;                         // of the interface that has the member
    std::string_view interfaceName;  // "IKestrionAcquisition"
    std::string_view memberName;     // "get_Mode"
    // Interface and member without "get_" or "put_": the member key of enum tables, and the key of
    // simulated values.
    std::string_view fullName;  // "IKestrionAcquisition.Mode"
    // The template that the frame formats: a query or a set line; empty where a member has none.
    std::string_view command;
    // The reply format of a query; empty where there is none.
    std::string_view response;
    // What tells the interface from those that are like it and run the same hooks; empty where no
    // other is.
    const char* variant = "";
    Selector selector = Selector::kNone;
    // The families that refuse the member.
    std::span<const std::string_view> refusedFamilies;
    // False for the members that work before the driver is initialized.
    bool needsConnection = true;
    // True where simulation answers from memory.
    bool simulated = false;
};

}  // namespace kestrion
