// Applies a fault plan to one response on its way out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "virtual/server/fault_plan.h"

namespace virtual_scope {

class FaultInjector {
  public:
    explicit FaultInjector(const FaultPlan& plan) : plan_(plan) {}

    // Changes the next piece of the response; `end` says that it is the last. A block's header has
    // to lie within the first piece.
    void Apply(std::vector<std::byte>& piece, bool end);

    // The connection has to be closed once the piece is sent.
    [[nodiscard]] bool IsCut() const { return cut_; }

  private:
    void BendHeader(std::vector<std::byte>& piece);

    FaultPlan plan_;
    bool first_ = true;
    bool holdsBlock_ = false;
    bool cut_ = false;
    std::uint64_t passed_ = 0;
};

}  // namespace virtual_scope
