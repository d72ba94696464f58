#include "virtual/command_tree.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include "virtual/text.h"

namespace virtual_scope {
namespace {

constexpr std::string_view kNumberMark = "<x>";

// The digits at the end of a word as a number; -1 when there are none that make sense.
int TakeNumber(std::string_view& word) {
    std::size_t at = word.size();
    while (at > 0 && IsDigit(word[at - 1])) {
        --at;
    }
    int number = -1;
    const auto result = std::from_chars(word.data() + at, word.data() + word.size(), number);
    if (result.ec != std::errc()) {
        return -1;
    }
    word = word.substr(0, at);
    return number;
}

bool IsPerChannel(std::string_view mnemonic) {
    return mnemonic == "CH" || mnemonic == "MATH" || mnemonic == "REF";
}

}  // namespace

NumberRange RangeOf(std::string_view longMnemonic) {
    struct Row {
        std::string_view mnemonic;
        NumberRange range;
    };
    constexpr auto kRanges = std::to_array<Row>({{"D", {0, 16}},
                                                 {"POSITION", {1, 2}},
                                                 {"SOURCE", {1, 2}},
                                                 {"X", {1, 6}},
                                                 {"Y", {1, 6}},
                                                 {"MEAS", {1, 8}}});
    const auto found = std::ranges::find(kRanges, longMnemonic, &Row::mnemonic);
    return found == kRanges.end() ? NumberRange{1, 4} : found->range;
}

std::vector<std::string> ExpandNotation(std::string_view notation) {
    if (notation.ends_with('?')) {
        notation.remove_suffix(1);
    }
    const std::size_t open = notation.find_first_of("[{");
    if (open == std::string_view::npos) {
        return {std::string(notation)};
    }
    const bool optional = notation[open] == '[';
    const std::size_t close = notation.find(optional ? ']' : '}', open);
    std::vector<std::string_view> choices = Split(notation.substr(open + 1, close - open - 1), '|');
    if (optional) {
        choices.emplace_back("");
    }
    std::vector<std::string> paths;
    for (const std::string_view choice : choices) {
        std::string path(notation.substr(0, open));
        path.append(choice).append(notation.substr(close + 1));
        std::ranges::move(ExpandNotation(path), std::back_inserter(paths));
    }
    return paths;
}

int InstanceCount(const CommandRow& row) {
    const std::string path = ExpandNotation(row.notation).front();
    const std::size_t mark = path.find(kNumberMark);
    if (mark == std::string::npos) {
        return 1;
    }
    const std::string_view before = std::string_view(path).substr(0, mark);
    return RangeOf(ToUpper(before.substr(before.rfind(':') + 1))).count;
}

CommandTree::CommandTree(std::span<const CommandRow> rows) : rows_(rows) {
    for (const CommandRow& row : rows) {
        for (const std::string& path : ExpandNotation(row.notation)) {
            Insert(path, row);
        }
    }
}

void CommandTree::Insert(std::string_view path, const CommandRow& row) {
    Node* node = &root_;
    for (std::string_view mnemonic : Split(path, ':')) {
        const bool numbered = mnemonic.ends_with(kNumberMark);
        if (numbered) {
            mnemonic.remove_suffix(kNumberMark.size());
        }
        const auto known = std::ranges::find_if(node->children, [&](const auto& child) {
            return child->mnemonic == mnemonic && child->numbered == numbered;
        });
        if (known == node->children.end()) {
            auto child = std::make_unique<Node>();
            child->mnemonic = mnemonic;
            child->numbered = numbered;
            node->children.push_back(std::move(child));
            node = node->children.back().get();
        } else {
            node = known->get();
        }
    }
    if (node->row != nullptr) {
        throw std::logic_error("two lines of the command table mean " + std::string(path));
    }
    node->row = &row;
}

const CommandTree::Node* CommandTree::FindChild(const Node& parent, std::string_view word,
                                                HeaderMatch& match) {
    std::string_view bare = word;
    const int number = TakeNumber(bare);
    const Node* between = nullptr;
    bool ambiguous = false;
    const auto take = [&](const Node& child) {
        if (child.numbered) {
            match.number = number;
        }
        return &child;
    };
    for (const auto& child : parent.children) {
        const std::string_view name = child->numbered ? bare : word;
        if ((child->numbered && number < 0) || !MatchesMnemonic(child->mnemonic, name)) {
            continue;
        }
        if (name == FormatMnemonic(child->mnemonic, false) ||
            name == FormatMnemonic(child->mnemonic, true)) {
            return take(*child);
        }
        ambiguous = between != nullptr;
        between = child.get();
    }
    return between == nullptr || ambiguous ? nullptr : take(*between);
}

HeaderMatch CommandTree::Find(std::span<const std::string> words) const {
    HeaderMatch match;
    const Node* node = &root_;
    for (const std::string& word : words) {
        node = FindChild(*node, word, match);
        if (node == nullptr) {
            return match;
        }
        std::string suffix;
        if (node->numbered) {
            const NumberRange range = RangeOf(ToUpper(node->mnemonic));
            match.firstNumber = range.first;
            match.perChannel = IsPerChannel(node->mnemonic);
            if (match.number < range.first || match.number >= range.first + range.count) {
                match.error = ScpiError::kSuffixOutOfRange;
                return match;
            }
            suffix = std::to_string(match.number);
        }
        match.longHeader += ':' + FormatMnemonic(node->mnemonic, true) + suffix;
        match.shortHeader += ':' + FormatMnemonic(node->mnemonic, false) + suffix;
    }
    if (node->row == nullptr) {
        return match;
    }
    match.row = node->row;
    match.rowNumber = static_cast<std::size_t>(node->row - rows_.data());
    match.error = ScpiError::kNone;
    return match;
}

}  // namespace virtual_scope
