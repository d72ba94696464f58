// Fuzz target: lists of text elements. The input is a line with "<kind> <size of the pieces>
// <elements> <separators>", where the separators are all that follows the third blank, and then the
// response. The kind "text" reads tokens.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "io/element.h"
#include "io/list_transfer.h"
#include "platform/text.h"
#include "tests/fuzz/element_kinds.h"
#include "tests/fuzz/instrument.h"
#include "tests/fuzz/property.h"

namespace kestrion {
namespace {

using fuzz::Require;

constexpr std::uint32_t kWholeResponse = 8192;
constexpr std::size_t kLongestNumber = 100;

struct Request {
    std::string_view kind;
    std::uint32_t pieceSize = 1;
    std::int32_t count = 0;
    std::string_view separators;
};

Request ParseRequest(std::string_view line) {
    fuzz::Words words(line);
    Request request;
    request.kind = words.Next();
    request.pieceSize = words.NextNumber() % 64 + 1;
    request.count = static_cast<std::int32_t>(words.NextNumber() % 2048);
    request.separators = words.Rest();
    request.separators.remove_prefix(request.separators.empty() ? 0 : 1);
    return request;
}

struct Outcome {
    HRESULT status = S_OK;
    std::vector<std::string> elements;
    std::string rest;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

bool IsKnownFailure(HRESULT status) {
    return status == E_UNEXPECTED || status == kIoErrorStatus || status == fuzz::kNothingMoreCame;
}

void CheckOutcome(const Outcome& outcome, std::int32_t actual, const Request& request) {
    Require(actual >= 0 && actual <= request.count, "no more elements than are asked for");
    Require(outcome.status == S_OK || outcome.status == IoStatusMoreData ||
                IsKnownFailure(outcome.status),
            "a list is read or ends in a known failure");
    Require(outcome.status != S_OK || outcome.rest.empty() || request.count == actual,
            "a complete response leaves nothing", outcome.rest);
}

Outcome ReadNumbers(const Request& request, ElementKind kind, std::string_view response,
                    std::uint32_t pieceSize) {
    const std::size_t width = ElementWidth(kind);
    // Exactly as much memory as the elements take.
    const std::unique_ptr<BYTE[]> memory(new BYTE[static_cast<std::size_t>(request.count) * width]);
    fuzz::BufferedResponse source(response, pieceSize);
    Outcome outcome;
    std::int32_t actual = 0;
    outcome.status = ReadNumberList(source.Buffer(), source.Reporter(), kind, memory.get(),
                                    request.count, request.separators, &actual);
    for (std::size_t i = 0; i < static_cast<std::size_t>(actual); ++i) {
        outcome.elements.emplace_back(reinterpret_cast<const char*>(memory.get()) + i * width,
                                      width);
    }
    outcome.rest = source.Drain();
    CheckOutcome(outcome, actual, request);
    return outcome;
}

Outcome ReadTokens(const Request& request, std::string_view response, std::uint32_t pieceSize) {
    std::vector<std::string> texts(static_cast<std::size_t>(request.count), "former");
    fuzz::BufferedResponse source(response, pieceSize);
    Outcome outcome;
    std::int32_t actual = 0;
    outcome.status =
        ReadTokenList(source.Buffer(), texts.data(), request.count, request.separators, &actual);
    texts.resize(static_cast<std::size_t>(std::max(actual, 0)));
    outcome.elements = std::move(texts);
    outcome.rest = source.Drain();
    CheckOutcome(outcome, actual, request);
    return outcome;
}

// The response cut at commas, if it is such a list: numbers of moderate length with white space
// around them.
std::optional<std::vector<double>> NumbersOfModel(std::string_view response) {
    std::vector<double> numbers;
    for (;;) {
        const std::size_t end = response.find(',');
        const std::string number(Trim(response.substr(0, end)));
        const bool plain = !number.empty() && number.size() < kLongestNumber &&
                           number.find_first_not_of("0123456789+-.eE") == std::string::npos &&
                           number.find_first_of("0123456789") != std::string::npos;
        char* rest = nullptr;
        const double value = plain ? std::strtod(number.c_str(), &rest) : 0;
        if (!plain || *rest != '\0' || std::isinf(value)) {
            return std::nullopt;
        }
        numbers.push_back(value);
        if (end == std::string_view::npos) {
            return numbers;
        }
        response.remove_prefix(end + 1);
    }
}

template <typename T>
bool Fits(double value) {
    return value >= static_cast<double>(std::numeric_limits<T>::lowest()) &&
           value <= static_cast<double>(std::numeric_limits<T>::max());
}

bool FitsKind(ElementKind kind, double value) {
    switch (kind) {
        case ElementKind::kByte:
            return Fits<BYTE>(value);
        case ElementKind::kShort:
            return Fits<SHORT>(value);
        case ElementKind::kLong:
            return Fits<LONG>(value);
        case ElementKind::kFloat: {
            const double magnitude = std::abs(value);
            const bool tooSmall =
                magnitude >= 2.2250738585072014e-308 && magnitude < 1.1754943508222875e-38;
            return magnitude <= 3.4028234663852886e+38 && !tooSmall;
        }
        default:
            return true;
    }
}

template <typename T>
std::string Bytes(T value) {
    std::string bytes(sizeof(T), '\0');
    std::memcpy(bytes.data(), &value, sizeof(T));
    return bytes;
}

std::string BytesOfModel(ElementKind kind, double value) {
    switch (kind) {
        case ElementKind::kByte:
            return Bytes(static_cast<BYTE>(value));
        case ElementKind::kShort:
            return Bytes(static_cast<SHORT>(value));
        case ElementKind::kLong:
            return Bytes(static_cast<LONG>(value));
        case ElementKind::kFloat:
            return Bytes(static_cast<FLOAT>(value));
        default:
            return Bytes(value);
    }
}

void CheckPlainList(const Outcome& outcome, const Request& request, ElementKind kind,
                    std::string_view response) {
    const auto numbers = NumbersOfModel(response);
    if (request.separators != "," || !numbers) {
        return;
    }
    std::vector<std::string> expected;
    bool fits = true;
    for (const double number : *numbers) {
        if (expected.size() == static_cast<std::size_t>(request.count)) {
            break;
        }
        fits = FitsKind(kind, number);
        if (!fits) {
            break;
        }
        expected.push_back(BytesOfModel(kind, number));
    }
    Require(outcome.elements == expected, "the elements are those between the commas", response);
    Require(Failed(outcome.status) == !fits, "a list fails where an element doesn't fit", response);
}

// White space in front of a token is skipped; a token ends at a separator or with the response.
std::vector<std::string> TokensOfModel(const Request& request, std::string_view rest) {
    std::vector<std::string> tokens;
    while (tokens.size() < static_cast<std::size_t>(request.count)) {
        while (!rest.empty() && IsSpace(rest.front())) {
            rest.remove_prefix(1);
        }
        const std::size_t end = rest.find_first_of(request.separators);
        tokens.emplace_back(rest.substr(0, end));
        if (end == std::string_view::npos || end + 1 == rest.size()) {
            break;
        }
        rest.remove_prefix(end + 1);
    }
    return tokens;
}

void CheckTokens(const Request& request, std::string_view response) {
    const Outcome whole = ReadTokens(request, response, kWholeResponse);
    const Outcome pieces = ReadTokens(request, response, request.pieceSize);
    Require(whole == pieces, "tokens don't depend on the pieces", response);
    Require(whole.elements == TokensOfModel(request, response), "tokens are those of the model",
            response);
}

// Whole numbers are read as they were written.
void CheckWritten(const Outcome& outcome, ElementKind kind) {
    if (outcome.elements.empty() || kind == ElementKind::kFloat || kind == ElementKind::kDouble) {
        return;
    }
    std::string values;
    for (const std::string& element : outcome.elements) {
        values += element;
    }
    const auto count = static_cast<std::int32_t>(outcome.elements.size());
    fuzz::BufferedResponse sink("", kWholeResponse);
    Require(WriteNumberList(sink.Buffer(), kind, values.data(), count, ",", true) == S_OK,
            "a list is written");
    const Request request{.kind = {}, .pieceSize = 1, .count = count, .separators = ","};
    const Outcome again = ReadNumbers(request, kind, sink.Device().Written(), kWholeResponse);
    Require(!Failed(again.status) && again.elements == outcome.elements,
            "a list is read as it was written", sink.Device().Written());
}

}  // namespace
}  // namespace kestrion

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrion;
    std::string_view response = fuzz::AsText(data, size);
    const Request request = ParseRequest(fuzz::TakeLine(response));
    if (request.kind == "text") {
        CheckTokens(request, response);
        return 0;
    }
    const ElementKind kind = fuzz::KindOfWord(request.kind);
    const Outcome whole = ReadNumbers(request, kind, response, kWholeResponse);
    const Outcome pieces = ReadNumbers(request, kind, response, request.pieceSize);
    Require(whole == pieces, "numbers don't depend on the pieces", response);
    CheckPlainList(whole, request, kind, response);
    CheckWritten(whole, kind);
    return 0;
}
