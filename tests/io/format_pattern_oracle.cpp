#include "tests/io/format_pattern_oracle.h"

#include <limits>
#include <stdexcept>

namespace kestrion {
namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

std::string_view Abbreviation(char letter) {
    switch (letter) {
        case 'a':
            return "([a-zA-Z0-9])";
        case 'b':
            return "([ \t])";
        case 'c':
            return "([a-zA-Z])";
        case 'd':
            return "([0-9])";
        case 'h':
            return "([0-9a-fA-F])";
        case 'q':
            return "(\"[^\"]*\")|('[^']*')";
        case 'w':
            return "([a-zA-Z]+)";
        case 'z':
            return "([0-9]+)";
        default:
            return "";
    }
}

std::size_t Byte(char c) {
    return static_cast<unsigned char>(c);
}

char Take(std::string_view& rest) {
    if (rest.empty()) {
        throw std::invalid_argument("The pattern ends too early.");
    }
    const char c = rest.front();
    rest.remove_prefix(1);
    return c;
}

}  // namespace

FormatPattern::FormatPattern(std::string_view pattern) {
    root_ = ParseSequence(pattern);
    if (!pattern.empty()) {
        throw std::invalid_argument("The pattern has a bracket too many.");
    }
}

// Elements up to a closing bracket or the end. Elements with `|` between them are one choice.
FormatPattern::NodePtr FormatPattern::ParseSequence(std::string_view& rest) {
    NodePtr sequence = std::make_unique<Node>();
    while (!rest.empty() && rest.front() != ')') {
        NodePtr element = ParseElement(rest);
        if (!rest.empty() && rest.front() == '|') {
            NodePtr choice = std::make_unique<Node>();
            choice->kind = Kind::kChoice;
            choice->parts.push_back(std::move(element));
            while (!rest.empty() && rest.front() == '|') {
                rest.remove_prefix(1);
                choice->parts.push_back(ParseElement(rest));
            }
            element = std::move(choice);
        }
        sequence->parts.push_back(std::move(element));
    }
    return sequence;
}

FormatPattern::NodePtr FormatPattern::ParseElement(std::string_view& rest) {
    NodePtr element = ParseAtom(rest);
    while (!rest.empty() && (rest.front() == '?' || rest.front() == '*' || rest.front() == '+')) {
        const char sign = Take(rest);
        NodePtr repeat = std::make_unique<Node>();
        repeat->kind = Kind::kRepeat;
        repeat->least = sign == '+' ? 1 : 0;
        repeat->most = sign == '?' ? 1 : kNoLimit;
        repeat->parts.push_back(std::move(element));
        element = std::move(repeat);
    }
    return element;
}

FormatPattern::NodePtr FormatPattern::ParseAtom(std::string_view& rest) {
    const char c = Take(rest);
    if (c == '(') {
        NodePtr group = ParseSequence(rest);
        if (Take(rest) != ')') {
            throw std::invalid_argument("The pattern has an open group.");
        }
        return group;
    }
    if (c == '[') {
        return ParseSet(rest);
    }
    if (c == '\\') {
        return ParseEscape(rest);
    }
    return MakeLiteral(c);
}

FormatPattern::NodePtr FormatPattern::ParseEscape(std::string_view& rest) {
    const char c = Take(rest);
    std::string_view expansion = Abbreviation(c);
    if (!expansion.empty()) {
        return ParseSequence(expansion);
    }
    return MakeLiteral(c);
}

FormatPattern::NodePtr FormatPattern::MakeLiteral(char c) {
    std::bitset<256> set;
    set.set(Byte(c));
    return MakeSet(set);
}

FormatPattern::NodePtr FormatPattern::MakeSet(const std::bitset<256>& set) {
    NodePtr node = std::make_unique<Node>();
    node->kind = Kind::kSet;
    node->set = set;
    for (std::size_t byte = 1; byte < 256; ++byte) {
        // Printable characters, the tab and one byte above ASCII.
        if (set.test(byte) && ((byte >= 32 && byte < 127) || byte == 9 || byte == 160)) {
            node->samples += static_cast<char>(byte);
        }
    }
    return node;
}

FormatPattern::NodePtr FormatPattern::ParseSet(std::string_view& rest) {
    std::bitset<256> set;
    const bool negated = !rest.empty() && rest.front() == '^';
    if (negated) {
        Take(rest);
    }
    for (char c = Take(rest); c != ']'; c = Take(rest)) {
        const std::size_t from = Byte(c == '\\' ? Take(rest) : c);
        std::size_t to = from;
        if (rest.size() > 1 && rest[0] == '-' && rest[1] != ']') {
            Take(rest);
            to = Byte(Take(rest));
        }
        for (std::size_t byte = from; byte <= to; ++byte) {
            set.set(byte);
        }
    }
    if (negated) {
        set.flip();
    }
    return MakeSet(set);
}

bool FormatPattern::MatchNode(const Node& node, std::string_view text, std::size_t at,
                              Continue next) {
    switch (node.kind) {
        case Kind::kSet:
            return at < text.size() && node.set.test(Byte(text[at])) && next(at + 1);
        case Kind::kSequence:
            return MatchSequence(node, 0, text, at, next);
        case Kind::kChoice:
            for (const NodePtr& part : node.parts) {
                if (MatchNode(*part, text, at, next)) {
                    return true;
                }
            }
            return false;
        case Kind::kRepeat:
            return MatchRepeat(node, 0, text, at, next);
    }
    return false;
}

bool FormatPattern::MatchSequence(const Node& node, std::size_t part, std::string_view text,
                                  std::size_t at, Continue next) {
    if (part == node.parts.size()) {
        return next(at);
    }
    const auto rest = [&](std::size_t end) {
        return MatchSequence(node, part + 1, text, end, next);
    };
    return MatchNode(*node.parts[part], text, at, rest);
}

// Takes as many as it can and gives back one by one.
bool FormatPattern::MatchRepeat(const Node& node, std::size_t done, std::string_view text,
                                std::size_t at, Continue next) {
    if (done < node.most) {
        const auto another = [&](std::size_t end) {
            return end != at && MatchRepeat(node, done + 1, text, end, next);
        };
        if (MatchNode(*node.parts[0], text, at, another)) {
            return true;
        }
    }
    return done >= node.least && next(at);
}

std::size_t FormatPattern::Match(std::string_view text, std::size_t start) const {
    std::size_t length = std::string_view::npos;
    const auto found = [&](std::size_t end) {
        length = end - start;
        return true;
    };
    MatchNode(*root_, text, start, found);
    return length;
}

void FormatPattern::Generate(std::mt19937& random, std::string& text) const {
    GenerateNode(*root_, random, text);
}

void FormatPattern::GenerateNode(const Node& node, std::mt19937& random, std::string& text) {
    switch (node.kind) {
        case Kind::kSet:
            text += node.samples[random() % node.samples.size()];
            break;
        case Kind::kSequence:
            for (const NodePtr& part : node.parts) {
                GenerateNode(*part, random, text);
            }
            break;
        case Kind::kChoice:
            GenerateNode(*node.parts[random() % node.parts.size()], random, text);
            break;
        case Kind::kRepeat: {
            const std::size_t span = node.most == kNoLimit ? 3 : 2;
            for (std::size_t i = node.least + random() % span; i > 0; --i) {
                GenerateNode(*node.parts[0], random, text);
            }
            break;
        }
    }
}

}  // namespace kestrion
