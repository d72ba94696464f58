#include "io/format_plan.h"

#include <array>
#include <cstddef>
#include <functional>
#include <utility>

namespace kestrion {
namespace {

using Place = std::unique_ptr<const FormatPlan>;

// A format has one place, that of its hash, and pushes out what another one left there. The command
// lines of a program are far fewer than the places. Longer formats are taken apart each time: they
// would keep more memory than they save time.
constexpr std::size_t kPlaces = 256;
constexpr std::size_t kLongestKept = 1024;

// Literal text has the same row in both directions.
constexpr std::int32_t kLiteralRow = static_cast<std::int32_t>(WriteRow::kLiteral);
static_assert(kLiteralRow == static_cast<std::int32_t>(ReadRow::kLiteral));

// True once the thread has thrown its plans away. An object that it destroys still later may run
// formats, too.
thread_local bool isOver = false;

struct Plans {
    std::array<Place, kPlaces> places;

    ~Plans() { isOver = true; }
};

Place* PlaceOf(std::string_view format, FormatDirection direction) {
    if (isOver || format.size() > kLongestKept) {
        return nullptr;
    }
    thread_local Plans plans;
    const std::size_t hash = std::hash<std::string_view>{}(format);
    return &plans.places[(hash + static_cast<std::size_t>(direction)) % kPlaces];
}

}  // namespace

FormatPlan::FormatPlan(std::string_view format, FormatDirection direction)
    : format_(format), direction_(direction) {
    std::vector<FormatSpec> specs;
    status_ = Tokenize(format_, direction, specs);
    if (Failed(status_)) {
        return;
    }
    pieces_.resize(specs.size());
    for (std::size_t i = 0; i < specs.size(); ++i) {
        FormatPiece& piece = pieces_[i];
        piece.row = specs[i].row;
        piece.text = std::string_view(format_).substr(specs[i].start, specs[i].length);
        if (piece.row != kLiteralRow) {
            piece.status = ParseConversion(piece.text, direction, piece.conversion);
        } else if (piece.text.starts_with('%')) {
            piece.text.remove_prefix(1);
        }
    }
}

BorrowedPlan::BorrowedPlan(std::string_view format, FormatDirection direction)
    : place_(PlaceOf(format, direction)) {
    if (place_ != nullptr && *place_ != nullptr && (*place_)->IsOf(format, direction)) {
        plan_ = std::move(*place_);
    } else {
        plan_ = std::make_unique<const FormatPlan>(format, direction);
    }
}

BorrowedPlan::~BorrowedPlan() {
    if (place_ != nullptr) {
        *place_ = std::move(plan_);
    }
}

}  // namespace kestrion
