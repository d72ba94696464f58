// The driver as a program uses it: the shared library through its public headers.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "kestrion/kestrion.h"

namespace bench {

// Throws what the driver says of the member that failed last on this thread.
inline void Check(HRESULT status) {
    if (!kestrion::Failed(status)) {
        return;
    }
    kestrion::ComPtr<IErrorInfo> error;
    kestrion::BstrPtr text;
    if (GetErrorInfo(0, error.Out()) == S_OK) {
        (void)error->GetDescription(text.Out());
    }
    throw std::runtime_error("the driver failed: " + text.Utf8());
}

class DriverClient {
  public:
    // Makes the object and initialises it.
    explicit DriverClient(std::string_view resource, std::string_view options = {}) {
        Check(kestrion::CreateKestrion(scope_.Out()));
        const kestrion::BstrPtr name(resource);
        const kestrion::BstrPtr text(options);
        Check(scope_->Initialize(name.Get(), VARIANT_FALSE, VARIANT_FALSE, text.Get()));
    }
    DriverClient(const DriverClient&) = delete;
    DriverClient& operator=(const DriverClient&) = delete;
    ~DriverClient() { (void)scope_->Close(); }

    template <typename Interface>
    [[nodiscard]] kestrion::ComPtr<Interface> As() {
        auto found = kestrion::Query<Interface>(scope_.Get());
        if (!found) {
            throw std::runtime_error("the driver lacks an interface");
        }
        return found;
    }

  private:
    kestrion::ComPtr<IKestrion> scope_;
};

}  // namespace bench
