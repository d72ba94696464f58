// A format taken apart, and kept for the next time that it runs.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "io/format_grammar.h"
#include "io/format_spec.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// A literal run or a conversion.
struct FormatPiece {
    std::int32_t row = 0;         // a WriteRow or a ReadRow
    std::string_view text;        // what a literal run stands for: two percent signs are one
    FormatConversion conversion;  // its arguments aren't filled in
    HRESULT status = S_OK;        // of taking the conversion apart; fails when the piece runs
};

// The pieces of a format in their order. Doesn't change, and owns the text that they refer to.
class FormatPlan {
  public:
    FormatPlan(std::string_view format, FormatDirection direction);
    FormatPlan(const FormatPlan&) = delete;
    FormatPlan& operator=(const FormatPlan&) = delete;

    // E_UNEXPECTED for a format that isn't of the language; it has no pieces.
    [[nodiscard]] HRESULT Status() const { return status_; }
    [[nodiscard]] std::span<const FormatPiece> Pieces() const { return pieces_; }
    [[nodiscard]] bool IsOf(std::string_view format, FormatDirection direction) const {
        return direction_ == direction && format_ == format;
    }

  private:
    const std::string format_;
    const FormatDirection direction_;
    std::vector<FormatPiece> pieces_;
    HRESULT status_ = S_OK;
};

// The plan of a format for as long as it runs. A driver says few things, and says them often: each
// thread keeps the plans of the formats that it ran last, and taking a format apart costs it
// several times what running it does. A plan that is out isn't kept, so that a format which runs
// within another, or within itself, has one of its own.
class BorrowedPlan {
  public:
    // Throws std::bad_alloc only.
    BorrowedPlan(std::string_view format, FormatDirection direction);
    BorrowedPlan(const BorrowedPlan&) = delete;
    BorrowedPlan& operator=(const BorrowedPlan&) = delete;
    ~BorrowedPlan();

    [[nodiscard]] const FormatPlan* operator->() const { return plan_.get(); }

  private:
    std::unique_ptr<const FormatPlan>* place_;  // where it goes back to; null for nowhere
    std::unique_ptr<const FormatPlan> plan_;
};

}  // namespace kestrion
