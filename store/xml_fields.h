// Reads the fields of a store's elements. Everything here throws StoreFileError for what isn't in
// order. Within this room only.
#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/configuration_store.h"
#include "store/xml_document.h"

namespace kestrion {

// The text in a child element without white space around it; empty where there is no such child.
[[nodiscard]] std::string TrimmedText(pugi::xml_node element, const char* field);
// The name of an element that has to have one.
[[nodiscard]] std::string RequiredName(pugi::xml_node element);
// "1", "true", "0" or "false" in a child element.
[[nodiscard]] bool RequiredBoolean(pugi::xml_node element, const char* field);

// Reads the collections of one document. What a collection holds belongs to it alone, apart from
// the sections of the store (IVI-3.5, sections 2.2 and 4): so nothing is read twice, and a small
// file can't stand for more than it holds.
class FieldReader {
  public:
    explicit FieldReader(const XmlDocument& document) : document_(document) {}

    // The elements of these kinds in the collection `collection` of an element, references
    // resolved. Others are skipped; two of the same name are an error.
    [[nodiscard]] std::vector<pugi::xml_node> Items(pugi::xml_node owner, const char* collection,
                                                    std::span<const std::string_view> kinds) const;

    [[nodiscard]] std::vector<DataComponent> DataComponents(pugi::xml_node owner);
    [[nodiscard]] std::vector<PhysicalName> PhysicalNames(pugi::xml_node owner);
    [[nodiscard]] std::vector<VirtualName> VirtualNames(pugi::xml_node owner);

  private:
    // Stands for an element whose collection is being read, and ends a walk that goes too deep.
    class Step {
      public:
        Step(FieldReader& reader, pugi::xml_node element);
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;
        ~Step() { reader_.path_.pop_back(); }

      private:
        FieldReader& reader_;
    };

    // Items that belong to their collection.
    [[nodiscard]] std::vector<pugi::xml_node> OwnItems(pugi::xml_node owner, const char* collection,
                                                       std::span<const std::string_view> kinds);
    [[nodiscard]] DataComponent ReadComponent(pugi::xml_node element);
    [[nodiscard]] PhysicalName ReadPhysicalName(pugi::xml_node element);
    [[nodiscard]] VirtualName ReadVirtualName(pugi::xml_node element);
    // Counts the indices that a range stands for.
    void CountIndices(pugi::xml_node range, std::int64_t min, std::int64_t max);

    const XmlDocument& document_;
    std::vector<pugi::xml_node> path_;
    std::set<const void*> owned_;
    std::int64_t indices_ = 0;
};

}  // namespace kestrion
