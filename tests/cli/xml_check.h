// A small check that a text is well-formed XML, enough for the documents of this program: elements,
// attributes, character data and a declaration; no comments and no character-data sections.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrion::cli {

class XmlCheck {
  public:
    // Empty if `document` is well-formed, else what is wrong.
    static std::string Problem(std::string_view document) { return XmlCheck(document).Check(); }

  private:
    explicit XmlCheck(std::string_view document) : rest_(document) {}

    std::string Check() {
        if (rest_.starts_with("<?xml ")) {
            rest_.remove_prefix(std::min(rest_.size(), rest_.find("?>") + 2));
        }
        std::size_t roots = 0;
        while (!rest_.empty() && problem_.empty()) {
            if (rest_.front() == '<') {
                roots += open_.empty() ? 1U : 0U;
                Tag();
            } else {
                CharacterData();
            }
        }
        if (problem_.empty() && (!open_.empty() || roots != 1)) {
            problem_ = "not exactly one closed root element";
        }
        return problem_;
    }

    void CharacterData() {
        const std::string_view text = rest_.substr(0, rest_.find('<'));
        if (open_.empty() && text.find_first_not_of(" \n") != std::string_view::npos) {
            problem_ = "text outside of the root element";
        }
        CheckReferences(text);
        rest_.remove_prefix(text.size());
    }

    void CheckReferences(std::string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (static_cast<unsigned char>(text[i]) < 0x20 && text[i] != '\n' && text[i] != '\t' &&
                text[i] != '\r') {
                problem_ = "control character";
            }
            if (text[i] != '&') {
                continue;
            }
            const std::string_view name = text.substr(i, text.find(';', i) + 1 - i);
            if (name != "&amp;" && name != "&lt;" && name != "&gt;" && name != "&quot;" &&
                name != "&apos;") {
                problem_ = "unknown reference: " + std::string(text.substr(i, 10));
            }
        }
    }

    void Tag() {
        const std::size_t end = rest_.find('>');
        if (end == std::string_view::npos) {
            problem_ = "unclosed tag";
            return;
        }
        std::string_view tag = rest_.substr(1, end - 1);
        rest_.remove_prefix(end + 1);
        if (tag.starts_with('/')) {
            if (open_.empty() || open_.back() != tag.substr(1)) {
                problem_ = "unexpected end tag: " + std::string(tag);
                return;
            }
            open_.pop_back();
            return;
        }
        const bool empty = tag.ends_with('/');
        tag = tag.substr(0, tag.size() - (empty ? 1 : 0));
        const std::string_view name = tag.substr(0, tag.find(' '));
        Attributes(tag.substr(name.size()));
        if (!empty) {
            open_.emplace_back(name);
        }
    }

    void Attributes(std::string_view text) {
        std::vector<std::string> names;
        while (text.find_first_not_of(' ') != std::string_view::npos) {
            text.remove_prefix(text.find_first_not_of(' '));
            const std::size_t equals = text.find("=\"");
            const std::size_t end = equals == std::string_view::npos ? std::string_view::npos
                                                                     : text.find('"', equals + 2);
            if (end == std::string_view::npos) {
                problem_ = "bad attribute: " + std::string(text);
                return;
            }
            const std::string name(text.substr(0, equals));
            for (const std::string& earlier : names) {
                problem_ = earlier == name ? "attribute given twice: " + name : problem_;
            }
            names.push_back(name);
            const std::string_view value = text.substr(equals + 2, end - equals - 2);
            problem_ = value.find('<') == std::string_view::npos ? problem_ : "< in an attribute";
            CheckReferences(value);
            text.remove_prefix(end + 1);
        }
    }

    std::string_view rest_;
    std::vector<std::string> open_;
    std::string problem_;
};

}  // namespace kestrion::cli
