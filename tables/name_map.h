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
    // What an instance of a capability ("KestrionChannel") is called.
    void AddQualifiedName(std::string_view capability, std::string_view physicalName,
                          std::string_view name);
    void Clear();
    // Empties only what AddVirtualName filled.
    void ClearVirtualNames();

    // The name that a virtual name stands for, or the name itself; of a result with "!!" only what
    // stands behind the first one.
    [[nodiscard]] std::string VirtualToPhysical(std::string_view name) const;
    // The virtual name of a physical one, or the name itself.
    [[nodiscard]] std::string PhysicalToVirtual(std::string_view name) const;
    // The name given for the capability's instance, exactly, or the physical name.
    [[nodiscard]] std::string QualifiedVirtualName(std::string_view capability,
                                                   std::string_view physicalName) const;

  private:
    HashMap<std::string, std::string> virtualNames_;         // by virtual name in lower case
    HashMap<std::string, std::string> reverseVirtualNames_;  // by mapped name in lower case
    HashMap<std::string, std::string> physicalNames_;        // by "<capability>!!<physical name>"
};

}  // namespace kestrion
