#include "store/xml_document.h"

#include <algorithm>
#include <functional>

#include "platform/text.h"

namespace kestrion {
namespace {

constexpr const char* kRootName = "IviConfigStore";
constexpr std::string_view kModuleReference = "IviSoftwareModuleRef";

// The published form is eight elements deep, structures and nested names apart.
constexpr int kMaxDepth = 100;
// An element takes some sixty bytes in memory and may take four in a file.
constexpr std::ptrdiff_t kMaxTags = 1'000'000;

std::string LineOf(std::string_view bytes, std::ptrdiff_t offset) {
    const auto end = std::clamp<std::ptrdiff_t>(offset, 0, std::ssize(bytes));
    return std::to_string(1 + std::count(bytes.begin(), bytes.begin() + end, '\n'));
}

bool IsElement(pugi::xml_node node) {
    return node.type() == pugi::node_element;
}

// Calls `visit` with each element and its depth, parents first, without recursion: a file may be as
// deep as it likes.
void VisitElements(pugi::xml_node root,
                   const std::function<void(pugi::xml_node, int depth)>& visit) {
    pugi::xml_node node = root;
    for (int depth = 1; depth > 0;) {
        if (IsElement(node)) {
            visit(node, depth);
        }
        if (node.first_child()) {
            node = node.first_child();
            ++depth;
            continue;
        }
        while (depth > 1 && !node.next_sibling()) {
            node = node.parent();
            --depth;
        }
        if (depth == 1) {
            return;
        }
        node = node.next_sibling();
    }
}

// The owner of a reference and where the reference leads.
std::string DescribeReference(pugi::xml_node element) {
    pugi::xml_node owner = element.parent();
    // A collection has nothing to be known by, but what it belongs to has.
    while (owner.parent() && !owner.child("Name")) {
        owner = owner.parent();
    }
    return Describe(owner) + " refers with " + element.name() + " to the id " +
           Quoted(element.attribute("idref").value());
}

// Whether a reference of one kind may lead to an element of another.
bool MayReferTo(std::string_view reference, std::string_view element) {
    if (reference == kModuleReference) {
        return element == "IviSoftwareModule";
    }
    // A driver session is a session.
    return reference == element || (reference == "IviSession" && element == "IviDriverSession");
}

}  // namespace

XmlDocument::XmlDocument(std::string_view bytes) {
    if (std::ranges::count(bytes, '<') > kMaxTags) {
        throw StoreFileError("it has more than " + std::to_string(kMaxTags) + " tags");
    }
    const pugi::xml_parse_result result = document_.load_buffer(bytes.data(), bytes.size());
    if (!result) {
        throw StoreFileError("line " + LineOf(bytes, result.offset) +
                             " is not well-formed XML: " + result.description());
    }
    CheckTree();
    CollectIds();
    CheckReferences();
}

void XmlDocument::CheckTree() const {
    if (std::string_view(Root().name()) != kRootName) {
        throw StoreFileError("its document element is " + Quoted(Root().name()) + " and not " +
                             Quoted(kRootName));
    }
    if (std::ranges::count_if(document_.children(), IsElement) != 1) {
        throw StoreFileError("it has more than one document element");
    }
    VisitElements(Root(), [](pugi::xml_node element, int depth) {
        if (depth > kMaxDepth) {
            throw StoreFileError("its elements are nested more than " + std::to_string(kMaxDepth) +
                                 " deep, at " + Quoted(element.name()));
        }
    });
}

void XmlDocument::CollectIds() {
    VisitElements(Root(), [this](pugi::xml_node element, int) {
        const pugi::xml_attribute id = element.attribute("id");
        if (!id) {
            return;
        }
        if (element.attribute("idref")) {
            throw StoreFileError(Describe(element) + " has an id of its own and an idref");
        }
        if (!elementsById_.try_emplace(id.value(), element).second) {
            throw StoreFileError("the id " + Quoted(id.value()) + " stands twice, at " +
                                 Describe(elementsById_[id.value()]) + " and at " +
                                 Describe(element));
        }
    });
}

void XmlDocument::CheckReferences() const {
    VisitElements(Root(), [this](pugi::xml_node element, int) {
        const pugi::xml_attribute reference = element.attribute("idref");
        if (!reference) {
            return;
        }
        const auto found = elementsById_.find(reference.value());
        if (found == elementsById_.end()) {
            throw StoreFileError(DescribeReference(element) + ", which no element has");
        }
        if (!MayReferTo(element.name(), found->second.name())) {
            throw StoreFileError(DescribeReference(element) + ", which belongs to " +
                                 Describe(found->second));
        }
    });
}

pugi::xml_node XmlDocument::Resolve(pugi::xml_node element) const {
    const pugi::xml_attribute reference = element.attribute("idref");
    return reference ? elementsById_.at(reference.value()) : element;
}

std::string Quoted(std::string_view text) {
    constexpr std::size_t kLongest = 60;
    if (text.size() <= kLongest) {
        return "'" + std::string(text) + "'";
    }
    text = text.substr(0, kLongest);
    // What begins behind the cut is left out as a whole.
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0x80U) != 0) {
        text.remove_suffix(1);
    }
    return "'" + std::string(text) + "...'";
}

std::string Describe(pugi::xml_node element) {
    std::string text = element.name();
    if (const std::string name = TextOf(element.child("Name")); !Trim(name).empty()) {
        text += " " + Quoted(Trim(name));
    }
    if (const pugi::xml_attribute id = element.attribute("id"); id) {
        text += " (id " + Quoted(id.value()) + ")";
    }
    return text;
}

pugi::xml_node OnlyChild(pugi::xml_node element, const char* name) {
    const pugi::xml_node first = element.child(name);
    if (first && first.next_sibling(name)) {
        throw StoreFileError(Describe(element) + " has more than one " + name);
    }
    return first;
}

std::string TextOf(pugi::xml_node element) {
    std::string text;
    for (const pugi::xml_node piece : element.children()) {
        if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata) {
            text += piece.value();
        }
    }
    return text;
}

}  // namespace kestrion
