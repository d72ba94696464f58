// A file of the store's published form as a tree: elements of which some have an id, and elements
// that refer to one by it. Within this room only.
#pragma once

#include <cstddef>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kestrion {

// What is wrong with a file, as the end of a sentence.
class StoreFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A parsed file in which each id stands once and each reference leads to an element of its kind.
class XmlDocument {
  public:
    // Throws StoreFileError for anything else.
    explicit XmlDocument(std::string_view bytes);

    [[nodiscard]] pugi::xml_node Root() const { return document_.document_element(); }
    // The element itself, or the one that it refers to.
    [[nodiscard]] pugi::xml_node Resolve(pugi::xml_node element) const;

  private:
    void CheckTree() const;
    void CollectIds();
    void CheckReferences() const;

    pugi::xml_document document_;
    std::unordered_map<std::string_view, pugi::xml_node> elementsById_;
};

// The element in words: its kind with its name, and else with its id.
[[nodiscard]] std::string Describe(pugi::xml_node element);

// A text of the file as errors show it: in quotes, and shortened where it is long.
[[nodiscard]] std::string Quoted(std::string_view text);

// The child element called `name`, empty without one. Throws StoreFileError where there are
// several.
[[nodiscard]] pugi::xml_node OnlyChild(pugi::xml_node element, const char* name);

// The text in an element, as it stands; empty for an empty node.
[[nodiscard]] std::string TextOf(pugi::xml_node element);

}  // namespace kestrion
