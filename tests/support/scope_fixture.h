// A driver object over a scripted VISA library: the fixture of transcript tests.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>

#include "core/driver.h"
#include "kestrion/kestrion.h"
#include "platform/clock.h"
#include "tests/io/fake_visa.h"

namespace kestrion {

// A clock that a test sets: sleeping moves it on.
class FakeClock final : public Clock {
  public:
    [[nodiscard]] std::chrono::steady_clock::time_point Now() const override { return now_; }
    [[nodiscard]] std::uint32_t TickCount() const override {
        return static_cast<std::uint32_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(now_.time_since_epoch()).count());
    }
    void Sleep(std::chrono::milliseconds duration) override { now_ += duration; }

  private:
    std::chrono::steady_clock::time_point now_{std::chrono::hours(1)};
};

// Every test ends with the script used up, and with nothing left open once the driver is gone.
class ScopeTest : public testing::Test {
  protected:
    ScopeTest();
    ~ScopeTest() override;
    void TearDown() override;

    // What the driver is made of here, for tests that make one of their own.
    DriverEnvironment Environment();

    // Initialize as a caller does it; the resource and the options are ASCII.
    HRESULT Initialize(std::string_view resource, std::string_view options = "",
                       bool idQuery = false, bool reset = false);
    // The exchanges of a start-up, expected of the instrument.
    void ExpectStartUp(std::string_view model);
    // A connected instrument of that model.
    void Connect(std::string_view model = "PL7254C", std::string_view options = "");
    // A driver without an instrument.
    void Simulate(std::string_view driverSetup = "");

    template <typename Interface>
    ComPtr<Interface> As() {
        auto found = Query<Interface>(scope.Get());
        EXPECT_TRUE(found);
        return found;
    }
    ComPtr<IKestrionChannel> Channel(std::string_view name);

    // The description of this thread's error object, which is taken; empty without one.
    static std::string ErrorText();

    FakeVisa fake;
    // Where set, no VISA library can be had, for this reason.
    std::string visaProblem;
    // What the next Initialize finds: no configuration store, unless a test puts one here.
    StoreSelection store{.store = nullptr, .path = "", .reason = "there is none in this test"};
    FakeClock clock;
    ComPtr<IKestrion> scope;
};

}  // namespace kestrion
