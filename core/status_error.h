// An exception that carries a status as far as the call frame, where it becomes the result.
#pragma once

#include <exception>

#include "kestrion/platform/types.h"

namespace kestrion {

class StatusError : public std::exception {
  public:
    explicit StatusError(HRESULT status) : status_(status) {}
    [[nodiscard]] HRESULT Status() const noexcept { return status_; }
    [[nodiscard]] const char* what() const noexcept override { return "a driver call failed"; }

  private:
    HRESULT status_;
};

// The status of the exception that is being handled.
[[nodiscard]] HRESULT CurrentExceptionStatus() noexcept;

}  // namespace kestrion
