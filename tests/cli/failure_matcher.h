// Checks what a failing call throws.
#pragma once

#include <gmock/gmock.h>

#include <optional>

#include "cli/failure.h"

namespace kestrion::cli {

// Calls `action` and gives the Failure that it throws; none if it doesn't throw one.
template <typename Action>
std::optional<Failure> FailureOf(Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure;
    }
    return {};
}

// FailureOf with a test failure in place of an empty result.
template <typename Action>
Failure ExpectFailure(Action action) {
    const std::optional<Failure> failure = FailureOf(action);
    EXPECT_TRUE(failure.has_value()) << "nothing was thrown";
    return failure.value_or(Failure("nothing was thrown", {}, -1));
}

}  // namespace kestrion::cli
