#include "io/format_grammar.h"

#include <array>
#include <cstddef>
#include <span>

#include "io/byte_set.h"

namespace kestrion {
namespace {

// Every conversion is tried against many rows, so that the sets are asked often.
constexpr ByteSet kBlanks(" \t");
constexpr ByteSet kDigits("0123456789");
constexpr ByteSet kZero("0");
constexpr ByteSet kNumericForms("123HQB");
constexpr ByteSet kFlags(" -+0");
constexpr ByteSet kSeparatorLetters(",;:strn");
constexpr ByteSet kNameCharacters(
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_");
constexpr ByteSet kIntegerLengths("lhbI");
constexpr ByteSet kIntegers("dioux");
constexpr ByteSet kRealLengths("lL");
constexpr ByteSet kReals("feEgG");
constexpr ByteSet kBlockLengths("hlzZI");
constexpr ByteSet kRawLengths("hlI");
constexpr ByteSet kQuotes("qQ");

// Walks along the format. An element that may be absent moves on if it is there; an element that
// has to be there also tells whether it was.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : text_(text) {}

    [[nodiscard]] std::size_t Position() const { return at_; }
    [[nodiscard]] char Peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }
    bool Take(char c) {
        const bool there = at_ < text_.size() && text_[at_] == c;
        at_ += there ? 1U : 0U;
        return there;
    }
    bool TakeAny(const ByteSet& set) {
        const bool there = at_ < text_.size() && set.Has(text_[at_]);
        at_ += there ? 1U : 0U;
        return there;
    }
    // Zero or more of the set; tells whether there was one.
    bool TakeRun(const ByteSet& set) {
        const std::size_t from = at_;
        while (TakeAny(set)) {
        }
        return at_ != from;
    }
    bool TakeWord(std::string_view word) {
        const bool there = text_.substr(at_).starts_with(word);
        at_ += there ? word.size() : 0;
        return there;
    }
    // All up to `stop`, which has to come and stays.
    bool TakeUpTo(char stop) {
        const std::size_t found = text_.find(stop, at_);
        if (found == std::string_view::npos) {
            return false;
        }
        at_ = found;
        return true;
    }
    // Up to the next `stop` or the end; tells whether anything was taken.
    bool TakeAllBut(char stop) {
        const std::size_t from = at_;
        const std::size_t found = text_.find(stop, at_);
        at_ = found == std::string_view::npos ? text_.size() : found;
        return at_ != from;
    }
    void Blanks() { TakeRun(kBlanks); }
    bool Digits() { return TakeRun(kDigits); }

  private:
    std::string_view text_;
    std::size_t at_ = 0;
};

// A step of a row. It moves on over what it matches and says whether the row can still match.
using Step = bool (*)(Scanner&);

bool Literal(Scanner& s) {
    return s.Peek() == '%' ? s.TakeWord("%%") : s.TakeAllBut('%');
}

bool Percent(Scanner& s) {
    if (!s.Take('%')) {
        return false;
    }
    s.Blanks();
    return true;
}

// `@1` to `@B`.
bool NumericForm(Scanner& s) {
    if (s.Take('@')) {
        if (!s.TakeAny(kNumericForms)) {
            return false;
        }
        s.Blanks();
    }
    return true;
}

// Digits, or `*` with zeros in front of it.
bool NumberWidth(Scanner& s) {
    const bool zeros = s.TakeRun(kZero);
    if (s.Take('*') || s.Digits() || zeros) {
        s.Blanks();
    }
    return true;
}

bool Precision(Scanner& s) {
    if (s.Take('.')) {
        if (!s.Digits() && !s.Take('*')) {
            return false;
        }
        s.Blanks();
    }
    return true;
}

// Flags, numeric form, width and precision of a number.
bool WriteNumber(Scanner& s) {
    char last = '\0';  // the last flag that isn't a blank
    while (s.Peek() == ' ' || s.Peek() == '-' || s.Peek() == '+' || s.Peek() == '0') {
        last = s.Peek() == ' ' ? last : s.Peek();
        s.TakeAny(kFlags);
    }
    if (s.Peek() == '\t') {
        // A tab ends the flags, and only a width may have blanks behind it: the zeros in front of
        // the tab have to be that width.
        s.Blanks();
        return last == '0' && Precision(s);
    }
    return NumericForm(s) && NumberWidth(s) && Precision(s);
}

// A count or width that stands for itself or is taken from the arguments.
template <char fromArguments>
bool Count(Scanner& s) {
    if (s.Digits() || s.Take(fromArguments)) {
        s.Blanks();
    }
    return true;
}

// `-`, width and precision of a text.
bool WriteText(Scanner& s) {
    s.Take('-');
    s.Blanks();
    return Count<'*'>(s) && Precision(s);
}

bool Suppress(Scanner& s) {
    if (s.Take('*')) {
        s.Blanks();
    }
    return true;
}

bool VariantArray(Scanner& s) {
    if (s.TakeWord("$S")) {
        s.Blanks();
    }
    return true;
}

// The array part: separator, element count, `$S`.
bool WriteArray(Scanner& s) {
    if (!s.Take(',') && !(s.Take('(') && s.TakeAny(kSeparatorLetters) && s.Take(')'))) {
        return false;
    }
    s.Blanks();
    return Count<'*'>(s) && VariantArray(s);
}

bool ReadArray(Scanner& s) {
    if (!s.Take(',') && !(s.Take('(') && s.TakeRun(kSeparatorLetters) && s.Take(')'))) {
        return false;
    }
    s.Blanks();
    return Count<'#'>(s) && VariantArray(s);
}

bool EnumName(Scanner& s) {
    if (!s.Take('{')) {
        return false;
    }
    s.Blanks();
    if (!s.TakeRun(kNameCharacters)) {
        return false;
    }
    s.Blanks();
    if (!s.Take('}')) {
        return false;
    }
    s.Blanks();
    return true;
}

// The kind of the text argument.
bool TextKind(Scanner& s) {
    if (s.TakeWord("$B") || s.TakeWord("$C")) {
        s.Blanks();
    }
    return true;
}

bool ByteOrder(Scanner& s) {
    if (s.TakeWord("!ob") || s.TakeWord("!ol")) {
        s.Blanks();
    }
    return true;
}

bool IntegerEnd(Scanner& s) {
    s.TakeAny(kIntegerLengths);
    return s.TakeAny(kIntegers);
}

bool RealEnd(Scanner& s) {
    s.TakeAny(kRealLengths);
    return s.TakeAny(kReals);
}

bool DefiniteBlockEnd(Scanner& s) {
    s.TakeAny(kBlockLengths);
    return s.Take('b');
}

bool IndefiniteBlockEnd(Scanner& s) {
    s.TakeAny(kBlockLengths);
    return s.Take('B');
}

bool RawEnd(Scanner& s) {
    s.TakeAny(kRawLengths);
    return s.Take('y');
}

bool QuotedEnd(Scanner& s) {
    s.TakeAny(kQuotes);
    return s.Take('s');
}

template <char letter>
bool End(Scanner& s) {
    return s.Take(letter);
}

bool SetEnd(Scanner& s) {
    return s.Take('[') && s.TakeUpTo(']') && s.Take(']');
}

using Row = std::array<Step, 8>;

constexpr Row kWriteRows[] = {
    {Literal},
    {Percent, WriteNumber, IntegerEnd},
    {Percent, WriteNumber, WriteArray, IntegerEnd},
    {Percent, WriteNumber, RealEnd},
    {Percent, WriteNumber, WriteArray, RealEnd},
    {Percent, Count<'*'>, VariantArray, DefiniteBlockEnd},
    {Percent, Count<'*'>, VariantArray, IndefiniteBlockEnd},
    {Percent, Count<'*'>, ByteOrder, VariantArray, RawEnd},
    {Percent, WriteText, End<'c'>},
    {Percent, WriteText, TextKind, QuotedEnd},
    {Percent, WriteText, WriteArray, TextKind, QuotedEnd},
    {Percent, EnumName, WriteText, QuotedEnd},
    {Percent, EnumName, WriteText, WriteArray, QuotedEnd},
};
static_assert(std::size(kWriteRows) == kWriteRowCount);

constexpr Row kReadRows[] = {
    {Literal},
    {Percent, Suppress, NumericForm, Count<'#'>, IntegerEnd},
    {Percent, Suppress, NumericForm, Count<'#'>, ReadArray, IntegerEnd},
    {Percent, Suppress, NumericForm, Count<'#'>, RealEnd},
    {Percent, Suppress, NumericForm, Count<'#'>, ReadArray, RealEnd},
    {Percent, Suppress, Count<'#'>, VariantArray, DefiniteBlockEnd},
    {Percent, Suppress, Count<'#'>, ByteOrder, VariantArray, RawEnd},
    {Percent, Suppress, Count<'#'>, End<'c'>},
    {Percent, Suppress, Count<'#'>, TextKind, End<'T'>},
    {Percent, Suppress, Count<'#'>, TextKind, End<'t'>},
    {Percent, Suppress, Count<'#'>, TextKind, End<'s'>},
    {Percent, Suppress, Count<'#'>, TextKind, SetEnd},
    {Percent, Suppress, Count<'#'>, ReadArray, TextKind, QuotedEnd},
    {Percent, EnumName, Suppress, Count<'#'>, QuotedEnd},
    {Percent, EnumName, Suppress, Count<'#'>, SetEnd},
    {Percent, EnumName, Suppress, Count<'#'>, ReadArray, QuotedEnd},
};
static_assert(std::size(kReadRows) == kReadRowCount);

// The rows that begin with the name of an enumeration stand at the end.
constexpr std::size_t kFirstNamedWriteRow = static_cast<std::size_t>(WriteRow::kEnum);
constexpr std::size_t kFirstNamedReadRow = static_cast<std::size_t>(ReadRow::kEnum);

// The first row that `text` may match at all, by the first character that tells. No row with a name
// matches text without one, nor the other way round.
std::size_t FirstRow(std::string_view text, std::size_t firstNamed) {
    if (text.front() != '%' || text.starts_with("%%")) {
        return 0;
    }
    const std::size_t told = text.find_first_not_of(" \t", 1);
    return told != std::string_view::npos && text[told] == '{' ? firstNamed : 1;
}

// The length of the row's match at the start of `text`, 0 for none. No row can match two lengths.
std::size_t MatchRow(const Row& row, std::string_view text) {
    Scanner scanner(text);
    for (const Step step : row) {
        if (step == nullptr) {
            break;
        }
        if (!step(scanner)) {
            return 0;
        }
    }
    return scanner.Position();
}

}  // namespace

HRESULT Tokenize(std::string_view format, FormatDirection direction,
                 std::vector<FormatSpec>& specs) {
    const std::span<const Row> rows =
        direction == FormatDirection::kWrite ? std::span<const Row>(kWriteRows) : kReadRows;
    const std::size_t firstNamed =
        direction == FormatDirection::kWrite ? kFirstNamedWriteRow : kFirstNamedReadRow;
    specs.clear();
    std::size_t start = 0;
    while (start < format.size()) {
        const std::string_view rest = format.substr(start);
        std::size_t length = 0;
        std::size_t row = FirstRow(rest, firstNamed);
        while (row < rows.size() && (length = MatchRow(rows[row], rest)) == 0) {
            ++row;
        }
        if (length == 0) {
            return E_UNEXPECTED;
        }
        specs.push_back({static_cast<std::int32_t>(row), static_cast<std::uint32_t>(start),
                         static_cast<std::uint32_t>(length)});
        start += length;
    }
    return S_OK;
}

}  // namespace kestrion
