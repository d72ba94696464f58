// Finds the converter that belongs to an enumeration's name in a format and to the member that
// runs.
//
// Which tokens are legal is a fact of one command, not of the enumeration, so an enumeration has a
// table for each member, or for each group of members, and none for all the others.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "tables/enum_converter.h"
#include "tables/enum_data.h"
#include "tables/hash_map.h"

namespace kestrion {

// An index over enumerations. Converters are made when they are first asked for; a later question
// for the same one takes two look-ups and allocates nothing. Any thread may ask.
class EnumLookup {
  public:
    // The data has to outlive the lookup.
    explicit EnumLookup(std::span<const EnumData> enums);
    ~EnumLookup();

    // `enumName`: the short name, the type's name, the type's name without "Enum" or the short name
    // with it; VARIANT_BOOL answers to that name alone. Of two enumerations with one name the first
    // wins. `memberKey`: "IKestrionChannel.Coupling"; an empty one stands for the first table.
    // Case doesn't count in either. Null for an unknown name and for a member that the enumeration
    // doesn't list. The converter lives as long as the lookup.
    [[nodiscard]] const IEnumConverter* Find(std::string_view enumName,
                                             std::string_view memberKey) const;

  private:
    struct Enumeration;

    void AddNames(const EnumData& data, std::size_t index);

    HashMap<std::string, std::size_t, IgnoreCaseHashTraits> names_;
    std::unique_ptr<Enumeration[]> enumerations_;
};

// The same over AllEnums(), in an index that is made on first use and stays until the library goes.
[[nodiscard]] const IEnumConverter* GetEnumConverter(std::string_view enumName,
                                                     std::string_view memberKey);

}  // namespace kestrion
