// Finds the line of the command table that a header means.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "virtual/command_row.h"

namespace virtual_scope {

// What a header was found to be. Without a row, `error` says why.
struct HeaderMatch {
    const CommandRow* row = nullptr;
    std::size_t rowNumber = 0;
    int number = -1;          // as in the header: 2 for CH2; -1 when there is none
    int firstNumber = 1;      // the lowest that the mnemonic has
    bool perChannel = false;  // the number is that of a CH, MATH or REF
    std::string longHeader;   // the whole path, as an answer gives it: ":CH2:SCALE"
    std::string shortHeader;  // ":CH2:SCA"
    ScpiError error = ScpiError::kUndefinedHeader;
};

// Numbers of a mnemonic such as CH<x>: D from 0 to 15; POSITION and SOURCE from 1 to 2; X and Y,
// the places of an annotation, from 1 to 6; MEAS from 1 to 8; all others from 1 to 4.
struct NumberRange {
    int first;
    int count;
};
[[nodiscard]] NumberRange RangeOf(std::string_view longMnemonic);

// Every way of writing the notation as a plain path: its optional parts with and without, each of
// its alternatives. A closing '?' is gone.
[[nodiscard]] std::vector<std::string> ExpandNotation(std::string_view notation);

// The instances that a line has: 4 for CH<x>, 1 for one without a number.
[[nodiscard]] int InstanceCount(const CommandRow& row);

// Read-only once made, so that any thread may ask.
class CommandTree {
  public:
    // `rows` have to live as long as the tree.
    explicit CommandTree(std::span<const CommandRow> rows);

    // `words` are in capitals, from the root. An exact short or long form goes before a length
    // between the two; of the latter, the header has to mean one command only.
    [[nodiscard]] HeaderMatch Find(std::span<const std::string> words) const;

  private:
    struct Node {
        std::string mnemonic;  // as in the notation, without the number
        bool numbered = false;
        const CommandRow* row = nullptr;
        std::vector<std::unique_ptr<Node>> children;
    };

    void Insert(std::string_view path, const CommandRow& row);
    [[nodiscard]] static const Node* FindChild(const Node& parent, std::string_view word,
                                               HeaderMatch& match);

    std::span<const CommandRow> rows_;
    Node root_;
};

}  // namespace virtual_scope
