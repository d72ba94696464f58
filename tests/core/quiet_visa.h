// A VISA library that gives one answer to every query and allocates nothing, for tests that count
// what a call costs.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "io/visa_api.h"

namespace kestrion::test {

// One at a time: the functions of the table have no place for an object.
class QuietVisa {
  public:
    // What is counted.
    enum Function : std::size_t { kWrite, kRead, kOther, kFunctionCount };
    using Counts = std::array<int, kFunctionCount>;

    QuietVisa();
    QuietVisa(const QuietVisa&) = delete;
    QuietVisa& operator=(const QuietVisa&) = delete;
    ~QuietVisa();

    // Only opening, closing, reading, writing and attributes do anything; the rest is refused.
    [[nodiscard]] const visa::FunctionTable& Table() const;
    // The response of each viRead from now on, with END; the text has to live as long.
    void AnswerWith(std::string_view response);
    // Calls since the last ForgetCalls.
    [[nodiscard]] Counts Calls() const;
    void ForgetCalls();
};

}  // namespace kestrion::test
