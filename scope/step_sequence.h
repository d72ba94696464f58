// A run of instrument steps with one status: once a step fails the later ones are left out.
#pragma once

#include <string>
#include <string_view>

#include "core/member_call.h"

namespace kestrion {

class StepSequence {
  public:
    explicit StepSequence(MemberCall& call) : call_(call) {}

    [[nodiscard]] bool Good() const { return Succeeded(status_); }
    [[nodiscard]] HRESULT Status() const { return status_; }
    void SetStatus(HRESULT status) { status_ = status; }

    // Each of these does nothing after a failure. Out values keep what they hold then.
    template <typename... T>
    void Write(std::string_view format, T... arguments) {
        if (Good()) {
            status_ = call_.Write(format, arguments...);
        }
    }
    void QueryText(std::string_view command, std::string& reply) {
        if (Good()) {
            status_ = call_.QueryText(command, reply);
        }
    }
    void QueryLong(std::string_view command, LONG& value) {
        if (Good()) {
            status_ = call_.QueryLong(command, value);
        }
    }
    void QueryDouble(std::string_view command, double& value) {
        if (Good()) {
            status_ = call_.QueryDouble(command, value);
        }
    }

  private:
    MemberCall& call_;
    HRESULT status_ = S_OK;
};

}  // namespace kestrion
