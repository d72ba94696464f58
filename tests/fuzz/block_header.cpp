// Fuzz target: headers of binary blocks, and the elements behind them. The input is a line with
// "<kind> <size of the pieces> <elements of the target> [seek] [flush]" and then the response.
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "io/block_transfer.h"
#include "io/element.h"
#include "io/format_block.h"
#include "io/format_reader.h"
#include "tests/fuzz/element_kinds.h"
#include "tests/fuzz/instrument.h"
#include "tests/fuzz/property.h"

namespace kestrion {
namespace {

using fuzz::Require;

struct Request {
    ElementKind kind = ElementKind::kByte;
    std::uint32_t pieceSize = 1;
    std::uint32_t capacity = 0;
    bool seek = false;
    bool flush = false;
};

Request ParseRequest(std::string_view line) {
    fuzz::Words words(line);
    Request request;
    request.kind = fuzz::KindOfWord(words.Next());
    request.pieceSize = words.NextNumber() % 64 + 1;
    request.capacity = words.NextNumber() % 2048;
    for (std::string_view word = words.Next(); !word.empty(); word = words.Next()) {
        request.seek = request.seek || word == "seek";
        request.flush = request.flush || word == "flush";
    }
    return request;
}

// A header as the standard has it: where its data begin, and how long they are.
struct Header {
    std::size_t end = 0;
    std::uint64_t length = 0;
};

std::optional<Header> HeaderOfModel(std::string_view text, bool seek) {
    const std::size_t start = seek ? text.find('#') : 0;
    if (start >= text.size() || text[start] != '#' || start + 1 >= text.size()) {
        return std::nullopt;
    }
    const char count = text[start + 1];
    if (count < '1' || count > '9') {
        return std::nullopt;
    }
    const std::string_view digits = text.substr(start + 2, static_cast<std::size_t>(count - '0'));
    if (digits.size() != static_cast<std::size_t>(count - '0') ||
        digits.find_first_not_of("0123456789") != std::string_view::npos) {
        return std::nullopt;
    }
    return Header{start + 2 + digits.size(), std::stoull(std::string(digits))};
}

// The elements at the front of the data, in the host's order.
std::string ElementsOfModel(std::string_view data, const Header& header, std::uint32_t capacity,
                            std::uint32_t width) {
    const std::uint64_t most =
        std::min<std::uint64_t>(header.length, std::uint64_t{capacity} * width);
    std::string bytes(data.substr(0, static_cast<std::size_t>(most)));
    bytes.resize(bytes.size() / width * width);
    for (std::size_t at = 0; at < bytes.size(); at += width) {
        std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                     bytes.begin() + static_cast<std::ptrdiff_t>(at + width));
    }
    return bytes;
}

// Exactly as much memory as the elements take.
std::unique_ptr<BYTE[]> NewMemory(std::uint32_t capacity, std::uint32_t width) {
    return std::unique_ptr<BYTE[]>(new BYTE[std::size_t{capacity} * width]);
}

std::string Elements(const std::unique_ptr<BYTE[]>& memory, std::uint32_t count,
                     std::uint32_t width) {
    return {reinterpret_cast<const char*>(memory.get()), std::size_t{count} * width};
}

// The road of the session's block reads.
void CheckSession(const Request& request, std::string_view response) {
    const std::optional<Header> expected = HeaderOfModel(response, request.seek);
    fuzz::BufferedResponse source(response, request.pieceSize);
    std::uint32_t length = 0;
    const HRESULT header =
        ReadBlockHeader(source.Buffer(), source.Reporter(), request.seek, &length);
    Require(Failed(header) != expected.has_value(), "headers are those of the model", response);
    if (!expected) {
        Require(header == kUnexpectedResponseStatus || header == fuzz::kNothingMoreCame,
                "a missing header is an unexpected response");
        return;
    }
    Require(length == expected->length, "a header's length is that of its digits", response);
    const std::string_view data = response.substr(expected->end);
    Require((header == IoStatusMoreData) == !data.empty(), "the status tells whether data follow");

    const std::uint32_t width = ElementWidth(request.kind);
    const auto memory = NewMemory(request.capacity, width);
    std::uint32_t actual = 0;
    const HRESULT status = ReadBlockElements(source.Buffer(), header, request.kind, memory.get(),
                                             request.capacity, length, request.flush, &actual);
    Require(actual <= request.capacity, "no more elements than there is room for");
    const std::string elements = ElementsOfModel(data, *expected, request.capacity, width);
    Require(Elements(memory, actual, width) == elements, "elements are those of the model");
    Require(!Failed(status) || status == fuzz::kNothingMoreCame, "a read ends or waits in vain");
    const bool complete = expected->length <= data.size();
    Require(!Failed(status) || !complete || request.flush, "a complete block is read");
    if (status == IoStatusMoreData && !request.flush) {
        const std::uint64_t taken =
            std::min<std::uint64_t>(length, std::uint64_t{request.capacity} * width);
        Require(source.Drain() == data.substr(static_cast<std::size_t>(taken)),
                "what isn't asked for stays");
    }
}

// The road of the format language: the block is gone afterwards.
void CheckFormat(const Request& request, std::string_view response) {
    const std::optional<Header> expected = HeaderOfModel(response, false);
    const bool indefinite = response.starts_with("#0");
    const std::uint32_t width = ElementWidth(request.kind);
    const auto memory = NewMemory(request.capacity, width);
    auto count = static_cast<std::int32_t>(request.capacity);
    const auto targets = PackArgs(&count, memory.get());
    ArgCursor cursor(targets);
    fuzz::BufferedResponse source(response, request.pieceSize);
    const std::string format = std::string("%#") + fuzz::BlockLetter(request.kind) + "b";
    const HRESULT status = FormatRead(source.Buffer(), format, cursor, nullptr);
    if (request.capacity == 0 || (!expected && !indefinite)) {
        Require(Failed(status), "without room or header nothing is read");
        return;
    }
    if (Failed(status)) {
        Require(status == fuzz::kNothingMoreCame, "only what doesn't come is missing");
        Require(indefinite || expected->length > response.size() - expected->end,
                "a complete block is read");
        return;
    }
    const Header header = indefinite ? Header{2, response.size()} : *expected;
    const std::string_view data = response.substr(header.end);
    const std::string elements = ElementsOfModel(data, header, request.capacity, width);
    Require(count >= 0 && Elements(memory, static_cast<std::uint32_t>(count), width) == elements,
            "elements are those of the model");
    if (!indefinite && status == IoStatusMoreData) {
        Require(source.Drain() == data.substr(static_cast<std::size_t>(header.length)),
                "what follows the block stays");
    }
}

// What is written as a header is read as it was meant.
void CheckWrittenHeader(std::uint64_t length) {
    const std::optional<BlockHeader> header = FormatBlockHeader(length);
    Require(header.has_value() == (length <= 999'999'999), "nine digits are the most");
    if (header) {
        const std::optional<Header> again = HeaderOfModel(header->Text(), false);
        Require(again && again->length == length && again->end == header->Text().size(),
                "a header says its length", header->Text());
    }
}

}  // namespace
}  // namespace kestrion

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrion;
    std::string_view response = fuzz::AsText(data, size);
    const Request request = ParseRequest(fuzz::TakeLine(response));
    CheckSession(request, response);
    CheckFormat(request, response);
    std::uint64_t length = 0;
    for (const char c : response.substr(0, 4)) {
        length = length * 256 + static_cast<unsigned char>(c);
    }
    CheckWrittenHeader(length);
    return 0;
}
