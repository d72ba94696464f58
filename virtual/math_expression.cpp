#include "virtual/math_expression.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

#include "virtual/text.h"

namespace virtual_scope {
namespace {

constexpr int kDeepest = 32;  // parentheses and signs within each other

// Every function returns null after an error, which stays in `error_`.
class Parser {
  public:
    Parser(std::string_view text, int number, int channels)
        : text_(ToUpper(text)), rest_(text_), number_(number), channels_(channels) {}

    ScpiError Parse(MathPointer& result) {
        MathPointer sum = Sum();
        SkipBlanks();
        if (!rest_.empty()) {
            Fail(ScpiError::kInvalidExpression);
        }
        if (error_ == ScpiError::kNone) {
            result = std::move(sum);
        }
        return error_;
    }

  private:
    MathPointer Sum() {
        MathPointer left = Product();
        for (char sign = TakeOneOf("+-"); sign != '\0'; sign = TakeOneOf("+-")) {
            left = Operation(sign, std::move(left), Product());
        }
        return left;
    }

    MathPointer Product() {
        MathPointer left = Factor();
        for (char sign = TakeOneOf("*/"); sign != '\0'; sign = TakeOneOf("*/")) {
            left = Operation(sign, std::move(left), Factor());
        }
        return left;
    }

    MathPointer Factor() {
        if (++depth_ > kDeepest) {
            return Fail(ScpiError::kInvalidExpression);
        }
        MathPointer result = BareFactor();
        --depth_;
        return result;
    }

    MathPointer BareFactor() {
        if (TakeOneOf("-") != '\0') {
            return Operation('-', Number(0), Factor());
        }
        if (TakeOneOf("(") == '\0') {
            return Operand();
        }
        MathPointer inside = Sum();
        return TakeOneOf(")") == '\0' ? Fail(ScpiError::kInvalidExpression) : inside;
    }

    MathPointer Operand() {
        SkipBlanks();
        if (!rest_.empty() && (IsDigit(rest_.front()) || rest_.front() == '.')) {
            return Literal();
        }
        using enum MathNode::Kind;
        for (const auto& [word, kind] :
             {std::pair{"CH", kChannel}, std::pair{"REF", kReference}, std::pair{"MATH", kMath}}) {
            if (rest_.starts_with(word)) {
                rest_.remove_prefix(std::string_view(word).size());
                return Waveform(kind);
            }
        }
        return Fail(ScpiError::kInvalidExpression);
    }

    MathPointer Waveform(MathNode::Kind kind) {
        int number = 0;
        const auto [end, error] =
            std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        if (error != std::errc() || number < 1 || number > 4) {
            return Fail(ScpiError::kInvalidExpression);
        }
        if (number > channels_) {
            return Fail(ScpiError::kHardwareMissing);
        }
        if (kind == MathNode::Kind::kMath && number > number_) {
            return Fail(ScpiError::kInvalidExpression);
        }
        MathNode node;
        node.kind = kind;
        node.index = number - 1;
        return std::make_shared<const MathNode>(std::move(node));
    }

    MathPointer Literal() {
        double value = 0;
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        return error != std::errc() ? Fail(ScpiError::kInvalidExpression) : Number(value);
    }

    static MathPointer Number(double value) {
        MathNode node;
        node.number = value;
        return std::make_shared<const MathNode>(std::move(node));
    }

    MathPointer Operation(char sign, MathPointer left, MathPointer right) const {
        if (error_ != ScpiError::kNone) {
            return nullptr;
        }
        MathNode node;
        node.kind = MathNode::Kind::kOperation;
        node.operation = sign;
        node.left = std::move(left);
        node.right = std::move(right);
        return std::make_shared<const MathNode>(std::move(node));
    }

    MathPointer Fail(ScpiError error) {
        if (error_ == ScpiError::kNone) {
            error_ = error;
        }
        return nullptr;
    }

    void SkipBlanks() {
        while (!rest_.empty() && IsBlank(rest_.front())) {
            rest_.remove_prefix(1);
        }
    }

    char TakeOneOf(std::string_view signs) {
        SkipBlanks();
        if (rest_.empty() || signs.find(rest_.front()) == std::string_view::npos) {
            return '\0';
        }
        const char sign = rest_.front();
        rest_.remove_prefix(1);
        return sign;
    }

    std::string text_;
    std::string_view rest_;
    int number_;
    int channels_;
    int depth_ = 0;
    ScpiError error_ = ScpiError::kNone;
};

}  // namespace

ScpiError ParseMath(std::string_view text, int number, int channels, MathPointer& result) {
    return Parser(text, number, channels).Parse(result);
}

}  // namespace virtual_scope
