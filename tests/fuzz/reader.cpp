// Fuzz target: the formatted reader. The input has three parts: a line with the format, a line with
// numbers (the size of the pieces in which the response comes, then what each `#` stands for), and
// the response.
#include "io/format_reader.h"

#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "io/format_grammar.h"
#include "io/format_spec.h"
#include "platform/text.h"
#include "tests/fuzz/instrument.h"
#include "tests/fuzz/property.h"
#include "tests/fuzz/read_targets.h"
#include "tests/fuzz/write_arguments.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

using fuzz::ReadTargets;
using fuzz::Require;

constexpr std::uint32_t kWholeResponse = 8192;
constexpr std::int64_t kMostOfCount = 100;

// Adds what each conversion of the format needs. False if the format isn't one, or asks for what
// can't be given.
bool AddTargets(std::string_view format, ReadTargets& targets) {
    std::vector<FormatSpec> specs;
    if (Tokenize(format, FormatDirection::kRead, specs) != S_OK) {
        return false;
    }
    for (const FormatSpec& spec : specs) {
        FormatConversion conversion;
        const ReadRow row{spec.row};
        const std::string_view piece = format.substr(spec.start, spec.length);
        if (row != ReadRow::kLiteral &&
            (ParseConversion(piece, FormatDirection::kRead, conversion) != S_OK ||
             !targets.Add(row, conversion))) {
            return false;
        }
    }
    return true;
}

bool IsKnownFailure(HRESULT status) {
    return status == E_UNEXPECTED || status == E_INVALIDARG || status == kFakeUnknownToken ||
           status == fuzz::kNothingMoreCame;
}

struct Outcome {
    HRESULT status = S_OK;
    std::string stored;
    std::string rest;
};

std::optional<Outcome> Read(std::string_view format, const std::vector<std::int32_t>& counts,
                            std::string_view response, std::uint32_t pieceSize) {
    ReadTargets targets(response.size(), counts);
    if (!AddTargets(format, targets)) {
        return std::nullopt;
    }
    fuzz::BufferedResponse source(response, pieceSize);
    FakeEnums enums;
    ArgCursor cursor(targets.Slots());
    Outcome outcome;
    outcome.status = FormatRead(source.Buffer(), format, cursor, &enums);
    Require(!cursor.Exhausted(), "no argument is taken that isn't there", format);
    const bool ended = outcome.status == S_OK || outcome.status == IoStatusMoreData;
    Require(ended || IsKnownFailure(outcome.status), "a read ends well or in a known failure");
    Require(targets.CountsFit(), "a count that is written back fits the memory", format);
    outcome.stored = targets.Describe();
    outcome.rest = source.Drain();
    return outcome;
}

void CheckAnyFormat(std::string_view format, const std::vector<std::int32_t>& counts,
                    std::string_view response, std::uint32_t pieceSize) {
    const std::optional<Outcome> whole = Read(format, counts, response, kWholeResponse);
    if (!whole) {
        return;
    }
    const std::optional<Outcome> pieces = Read(format, counts, response, pieceSize);
    // A direct read of more than there is waits in vain when all of the response was buffered, and
    // ends with the response when it wasn't.
    if (whole->status == fuzz::kNothingMoreCame || pieces->status == fuzz::kNothingMoreCame) {
        return;
    }
    Require(whole->status == pieces->status, "the status doesn't depend on the pieces", format);
    Require(whole->stored == pieces->stored, "what is stored doesn't depend on the pieces",
            whole->stored + "---\n" + pieces->stored);
    Require(whole->rest == pieces->rest, "what is left doesn't depend on the pieces",
            whole->rest + "---\n" + pieces->rest);
}

// Reads one value of type T by a format of one conversion.
template <typename T>
HRESULT ReadOne(std::string_view format, std::string_view response, std::uint32_t pieceSize,
                T& value) {
    fuzz::BufferedResponse source(response, pieceSize);
    const auto targets = PackArgs(&value);
    ArgCursor cursor(targets);
    return FormatRead(source.Buffer(), format, cursor, nullptr);
}

std::size_t Digits(std::string_view text) {
    return std::min(text.find_first_not_of("0123456789"), text.size());
}

// The number that the response begins with, if nothing behind it could be a part of it.
std::optional<std::string> PlainNumber(std::string_view text) {
    while (!text.empty() && IsSpace(text.front())) {
        text.remove_prefix(1);
    }
    const std::string_view start = text;
    text.remove_prefix(text.starts_with('-') || text.starts_with('+') ? 1 : 0);
    if (Digits(text) == 0) {
        return std::nullopt;
    }
    text.remove_prefix(Digits(text));
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        text.remove_prefix(Digits(text));
    }
    if (text.starts_with('e') || text.starts_with('E')) {
        text.remove_prefix(1);
        text.remove_prefix(text.starts_with('-') || text.starts_with('+') ? 1 : 0);
        if (Digits(text) == 0) {
            return std::nullopt;
        }
        text.remove_prefix(Digits(text));
    }
    if (!text.empty() && std::string_view("+-.eE").find(text.front()) != std::string_view::npos) {
        return std::nullopt;
    }
    return std::string(start.substr(0, start.size() - text.size()));
}

void CheckNumbers(std::string_view response, std::uint32_t pieceSize) {
    const std::optional<std::string> number = PlainNumber(response);
    if (!number) {
        return;
    }
    const double expected = std::strtod(number->c_str(), nullptr);
    double real = 0;
    const HRESULT status = ReadOne("%lf", response, pieceSize, real);
    Require(Failed(status) == std::isinf(expected), "a number is read unless it overflows",
            *number);
    Require(Failed(status) || real == expected, "a number is read as C reads it", *number);
    if (number->find_first_of(".eE") == std::string::npos && std::abs(expected) < 9.2e18) {
        std::int64_t whole = 0;
        Require(!Failed(ReadOne("%Id", response, pieceSize, whole)), "a whole number is read");
        Require(whole == std::strtoll(number->c_str(), nullptr, 10),
                "a whole number is read as C reads it", *number);
    }
}

void CheckText(std::string_view format, std::string_view response, std::uint32_t pieceSize,
               std::string_view expected) {
    std::string text;
    Require(!Failed(ReadOne(format, response, pieceSize, text)), "a text is read", format);
    Require(text == expected, "a text is read up to its end", text);
}

void CheckTexts(std::string_view response, std::uint32_t pieceSize) {
    if (response.empty()) {
        return;
    }
    CheckText("%$Ct", response, pieceSize, response);
    CheckText("%$C[^;]", response, pieceSize, response.substr(0, response.find(';')));
    const std::size_t line = response.find('\n');
    CheckText("%$CT", response, pieceSize,
              line == std::string_view::npos ? response : response.substr(0, line + 1));
    std::string_view word = response;
    while (!word.empty() && IsSpace(word.front())) {
        word.remove_prefix(1);
    }
    CheckText("%$Cs", response, pieceSize, word.substr(0, word.find(' ')));
}

}  // namespace
}  // namespace kestrion

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrion;
    std::string_view response = fuzz::AsText(data, size);
    const std::string_view format = fuzz::TakeLine(response);
    fuzz::Values numbers(fuzz::TakeLine(response));
    const auto pieceSize = static_cast<std::uint32_t>((numbers.NextInteger() & 63) + 1);
    std::vector<std::int32_t> counts;
    for (int i = 0; i < 4; ++i) {
        counts.push_back(static_cast<std::int32_t>(numbers.NextInteger() % kMostOfCount));
    }
    CheckAnyFormat(format, counts, response, pieceSize);
    CheckNumbers(response, pieceSize);
    CheckTexts(response, pieceSize);
    return 0;
}
