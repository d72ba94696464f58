// Fuzz target: the formatted writer. The input is a line of values, separated by commas, and then
// the format, which gets arguments of the kinds that it asks for, made from the values.
#include "io/format_writer.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "io/format_grammar.h"
#include "io/format_reader.h"
#include "io/format_spec.h"
#include "tests/fuzz/instrument.h"
#include "tests/fuzz/property.h"
#include "tests/fuzz/write_arguments.h"
#include "tests/fuzz/write_model.h"
#include "tests/io/memory_buffer.h"

namespace kestrion {
namespace {

using fuzz::Require;
using fuzz::WriteArguments;

// Stands behind the last argument, and has to stay there.
constexpr std::int32_t kBehindTheLast = 0x5EA1;

// A format with its arguments, and what the model says that it writes.
struct Case {
    WriteArguments arguments;
    std::optional<std::string> expected = "";
};

std::string LiteralOfModel(std::string_view piece) {
    return piece == "%%" ? "%" : std::string(piece);
}

// Nothing if the format isn't one, or asks for what can't be given.
std::optional<Case> MakeCase(std::string_view format, std::string_view line, bool skipArrays) {
    std::vector<FormatSpec> specs;
    if (Tokenize(format, FormatDirection::kWrite, specs) != S_OK) {
        return std::nullopt;
    }
    Case made;
    fuzz::Values values(line);
    for (const FormatSpec& spec : specs) {
        const WriteRow row{spec.row};
        const std::string_view piece = format.substr(spec.start, spec.length);
        if (skipArrays && fuzz::IsWriteArrayRow(row)) {
            continue;
        }
        std::optional<std::string> text;
        if (row == WriteRow::kLiteral) {
            text = LiteralOfModel(piece);
        } else {
            FormatConversion conversion;
            if (ParseConversion(piece, FormatDirection::kWrite, conversion) != S_OK ||
                !made.arguments.Add(row, conversion, values)) {
                return std::nullopt;
            }
            text = fuzz::TextOfModel(row, made.arguments.Conversions().back(),
                                     made.arguments.Given().back());
        }
        if (text && made.expected) {
            *made.expected += *text;
        } else {
            made.expected.reset();
        }
    }
    return made;
}

bool IsKnownFailure(HRESULT status) {
    return status == E_UNEXPECTED || status == E_INVALIDARG || status == kFakeUnknownValue ||
           status == fuzz::kTookEnough;
}

// Writes through the driver's buffer and returns what the instrument got.
HRESULT Write(std::string_view format, ArgCursor& cursor, bool skipArrays, std::string& written) {
    FakeEnums enums;
    fuzz::BufferedResponse sink("", 4096);
    HRESULT status = FormatWrite(sink.Buffer(), format, cursor, &enums, skipArrays);
    if (status == S_OK) {
        status = sink.Buffer().FlushWrite(true);
    }
    written = sink.Device().Written();
    return status;
}

void CheckCase(std::string_view format, std::string_view line, bool skipArrays) {
    const std::optional<Case> made = MakeCase(format, line, skipArrays);
    if (!made) {
        return;
    }
    std::vector<ArgSlot> slots = made->arguments.Slots();
    slots.emplace_back(kBehindTheLast);
    ArgCursor cursor(slots);
    std::string written;
    const HRESULT status = Write(format, cursor, skipArrays, written);
    Require(!cursor.Exhausted(), "no argument is taken that isn't there", format);
    Require(status == S_OK || IsKnownFailure(status), "a write ends well or in a known failure");
    if (status == S_OK) {
        Require(cursor.Next().Integer() == kBehindTheLast, "every argument is taken", format);
    }
    if (!made->expected || made->expected->size() > fuzz::kMostWritten) {
        return;
    }
    Require(status == S_OK, "what the model writes is written", format);
    Require(written == *made->expected || written == *made->expected + "\n",
            "what is written is what the model writes", "got " + written);
}

// Arguments that are missing are null or 0: refused, or written as 0, but never followed.
void CheckWithoutArguments(std::string_view format, std::string_view line) {
    const std::optional<Case> made = MakeCase(format, line, false);
    if (!made) {
        return;
    }
    const std::span<const ArgSlot> slots = made->arguments.Slots();
    for (const std::size_t given : {std::size_t{0}, slots.size() / 2}) {
        ArgCursor cursor(slots.first(given));
        std::string written;
        const HRESULT status = Write(format, cursor, false, written);
        Require(status == S_OK || IsKnownFailure(status), "missing arguments are no disaster");
    }
}

// A decimal number can be read again, and so can the numeric forms of what isn't negative.
void CheckNumberIsReadAgain(std::int64_t number) {
    struct Pair {
        std::string_view write;
        std::string_view read;
    };
    constexpr Pair kDecimal[] = {
        {"%Id", "%Id"}, {"%+Id", "%Id"}, {"%-30Id", "%Id"}, {"%030Id", "%Id"}};
    constexpr Pair kForms[] = {{"%@1Id", "%@1Id"}, {"%@HId", "%@HIu"}, {"%@QId", "%@QIu"}};
    const auto check = [number](const Pair& pair) {
        const auto slots = PackArgs(number);
        ArgCursor cursor(slots);
        std::string written;
        Require(Write(pair.write, cursor, false, written) == S_OK, "a number is written");
        fuzz::BufferedResponse source(written, 4096, "\n");
        std::int64_t again = 0;
        const auto targets = PackArgs(&again);
        ArgCursor targetCursor(targets);
        Require(!Failed(FormatRead(source.Buffer(), pair.read, targetCursor, nullptr)),
                "a written number is read", written);
        Require(again == number, "a written number is read as itself", written);
    };
    std::ranges::for_each(kDecimal, check);
    // These go through a double.
    if (number >= 0 && number <= std::int64_t{1} << 52U) {
        std::ranges::for_each(kForms, check);
    }
}

}  // namespace
}  // namespace kestrion

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view format = kestrion::fuzz::AsText(data, size);
    const std::string_view line = kestrion::fuzz::TakeLine(format);
    kestrion::CheckCase(format, line, false);
    kestrion::CheckCase(format, line, true);
    kestrion::CheckWithoutArguments(format, line);
    kestrion::CheckNumberIsReadAgain(kestrion::fuzz::Values(line).NextInteger());
    return 0;
}
