// Fuzz target: cutting formats into pieces and taking the pieces apart. The input is the format.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "io/format_grammar.h"
#include "io/format_spec.h"
#include "tests/fuzz/property.h"
#include "tests/io/format_patterns.h"

namespace kestrion {
namespace {

using fuzz::Require;
using Pieces = std::vector<FormatSpec>;

// The oracle goes back in runs of characters that several elements of a pattern can take.
constexpr std::size_t kLongestForOracle = 80;

std::optional<Pieces> Cut(std::string_view format, FormatDirection direction) {
    Pieces pieces;
    const HRESULT status = Tokenize(format, direction, pieces);
    Require(status == S_OK || status == E_UNEXPECTED, "a format is cut or refused", format);
    if (status != S_OK) {
        return std::nullopt;
    }
    return pieces;
}

void CheckLiteral(std::string_view piece) {
    Require(piece == "%%" || piece.find('%') == std::string_view::npos,
            "literal text has no single percent sign", piece);
}

void CheckNumber(const SpecNumber& number, std::string_view piece) {
    const bool given = number.source == NumberSource::kSpec;
    Require(given ? number.value >= 0 && number.value <= INT32_MAX : number.value == -1,
            "a number of a piece has 31 bits", piece);
}

bool IsPartOf(std::string_view part, std::string_view whole) {
    return part.empty() || (part.data() >= whole.data() &&
                            part.data() + part.size() <= whole.data() + whole.size());
}

void CheckConversion(std::string_view piece, FormatDirection direction) {
    Require(piece.size() > 1 && piece.front() == '%', "a conversion begins with its sign", piece);
    FormatConversion conversion;
    const HRESULT status = ParseConversion(piece, direction, conversion);
    Require(status == S_OK || status == E_INVALIDARG, "a piece is taken apart", piece);
    const char last = piece.back() == ']' ? '[' : piece.back();
    Require(conversion.letter == last, "the letter is the piece's last", piece);
    Require(IsPartOf(conversion.enumName, piece) && IsPartOf(conversion.separators, piece) &&
                IsPartOf(conversion.set, piece),
            "texts of a conversion lie in its piece", piece);
    Require(conversion.enumName.empty() ==
                (piece.find('{') == std::string_view::npos || piece.find('{') > piece.find('[')),
            "an enumeration has its name", piece);
    if (status == S_OK) {
        CheckNumber(conversion.width, piece);
        CheckNumber(conversion.precision, piece);
        CheckNumber(conversion.count, piece);
    }
}

void CheckPieces(std::string_view format, FormatDirection direction, const Pieces& pieces) {
    const std::int32_t rows = direction == FormatDirection::kWrite ? kWriteRowCount : kReadRowCount;
    std::size_t end = 0;
    for (const FormatSpec& spec : pieces) {
        Require(spec.start == end && spec.length > 0, "pieces stand behind each other", format);
        end += spec.length;
        Require(end <= format.size(), "pieces lie in the format", format);
        Require(spec.row >= 0 && spec.row < rows, "a piece has a row of its direction", format);
        const std::string_view piece = format.substr(spec.start, spec.length);
        if (spec.row == 0) {
            CheckLiteral(piece);
        } else {
            CheckConversion(piece, direction);
        }
        const std::optional<Pieces> alone = Cut(piece, direction);
        Require(alone == Pieces{{spec.row, 0, spec.length}}, "a piece alone is the same", piece);
    }
    Require(end == format.size(), "pieces cover the format", format);
}

void Check(std::string_view format, FormatDirection direction, const FormatOracle& oracle) {
    const std::optional<Pieces> pieces = Cut(format, direction);
    if (pieces) {
        CheckPieces(format, direction, *pieces);
    }
    if (format.size() <= kLongestForOracle) {
        Require(oracle.Cut(format) == pieces, "the published patterns cut it so", format);
    }
}

}  // namespace
}  // namespace kestrion

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrion;
    static const FormatOracle writeOracle(kWritePatterns);
    static const FormatOracle readOracle(kReadPatterns);
    const std::string_view format = fuzz::AsText(data, size);
    Check(format, FormatDirection::kWrite, writeOracle);
    Check(format, FormatDirection::kRead, readOracle);
    return 0;
}
