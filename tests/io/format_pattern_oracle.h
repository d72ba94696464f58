// A slow matcher of the published notation of the format patterns, which the tokenizer is held
// against. It shares no code with it.
//
// The notation: a character stands for itself and `\` makes the next one literal; [abc], [^abc] and
// [a-z] are sets; ( ) groups; ? * + repeat the element in front; `|` chooses between the one
// element in front and the one behind, which binds tighter than a sequence; `\` with one of the
// letters a b c d h q w z is an abbreviation.
#pragma once

#include <bitset>
#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kestrion {

class FormatPattern {
  public:
    explicit FormatPattern(std::string_view pattern);

    // Length of the match at `start` of `text`, the first that backtracking finds; npos for none.
    [[nodiscard]] std::size_t Match(std::string_view text, std::size_t start) const;

    // Appends a text that matches, chosen at random.
    void Generate(std::mt19937& random, std::string& text) const;

  private:
    enum class Kind { kSet, kSequence, kChoice, kRepeat };
    struct Node {
        Kind kind = Kind::kSequence;
        std::bitset<256> set;
        std::string samples;  // members of the set to generate texts from
        std::vector<std::unique_ptr<Node>> parts;
        std::size_t least = 0;
        std::size_t most = 0;
    };
    using NodePtr = std::unique_ptr<Node>;
    // What has to match behind a node; refers to a callable that outlives the call.
    class Continue {
      public:
        template <typename Callable>
        Continue(const Callable& callable)  // NOLINT(google-explicit-constructor)
            : callable_(&callable), call_([](const void* target, std::size_t end) {
                  return (*static_cast<const Callable*>(target))(end);
              }) {}
        bool operator()(std::size_t end) const { return call_(callable_, end); }

      private:
        const void* callable_;
        bool (*call_)(const void*, std::size_t);
    };

    static NodePtr ParseSequence(std::string_view& rest);
    static NodePtr ParseElement(std::string_view& rest);
    static NodePtr ParseAtom(std::string_view& rest);
    static NodePtr ParseSet(std::string_view& rest);
    static NodePtr MakeSet(const std::bitset<256>& set);
    static NodePtr MakeLiteral(char c);
    static NodePtr ParseEscape(std::string_view& rest);
    static bool MatchNode(const Node& node, std::string_view text, std::size_t at, Continue next);
    static bool MatchSequence(const Node& node, std::size_t part, std::string_view text,
                              std::size_t at, Continue next);
    static bool MatchRepeat(const Node& node, std::size_t done, std::string_view text,
                            std::size_t at, Continue next);
    static void GenerateNode(const Node& node, std::mt19937& random, std::string& text);

    NodePtr root_;
};

}  // namespace kestrion
