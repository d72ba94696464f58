// The names that a configuration gives to repeated capability instances, beside their own.
#pragma once

#include <string>
#include <string_view>

#include "tables/hash_map.h"

namespace kestrion {

// Names are UTF-8. One caller at a time.
class NameMap {
  public:
    // `virtualName` stands for `mappedName`, and back, in any case of A to Z; a later pair wins.
    // The mapped name may be qualified, as in "Channel!!Channel2".
    void AddVirtualName(std::string_view virtualName, std::string_view mappedName);
    // An instance of a capability ("KestrionChannel") by its physical name and the name that it
    // has in full, which may be a qualified one.
    void AddPhysicalName(std::string_view capability, std::string_view physicalName,
                         std::string_view qualifiedName);
    void Clear();
    // Empties only what AddVirtualName filled.
    void ClearVirtualNames();

    // The name that a virtual name stands for, or the name itself; of a result with "!!" only what
    // stands behind the first one.
    [[nodiscard]] std::string GetPhysicalName(std::string_view name) const;
    // The virtual name of a physical one, or the name itself.
    [[nodiscard]] std::string GetVirtualName(std::string_view name) const;
    // The full name of the capability's instance, found exactly, or the physical name.
    [[nodiscard]] std::string GetQualifiedPhysicalName(std::string_view capability,
                                                       std::string_view physicalName) const;

  private:
    HashMap<std::string, std::string> virtualNames_;         // by virtual name in lower case
    HashMap<std::string, std::string> reverseVirtualNames_;  // by mapped name in lower case
    HashMap<std::string, std::string> physicalNames_;        // by "<capability>!!<physical name>"
};

}  // namespace kestrion
