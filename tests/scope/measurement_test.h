// What the transcript tests of measurements share.
#pragma once

#include <string_view>

#include "tests/support/scope_fixture.h"

namespace kestrion {

class MeasurementTest : public ScopeTest {
  protected:
    ComPtr<IKestrionMeasurements> Measurements() {
        ComPtr<IKestrionMeasurements> measurements;
        EXPECT_EQ(scope->get_Measurements(measurements.Out()), S_OK);
        return measurements;
    }
    ComPtr<IKestrionMeasurementImmediate> Immediate() {
        ComPtr<IKestrionMeasurementImmediate> immediate;
        EXPECT_EQ(Measurements()->get_Immediate(immediate.Out()), S_OK);
        return immediate;
    }
    ComPtr<IKestrionMeasurement> Slot(std::string_view name) {
        ComPtr<IKestrionMeasurement> slot;
        const BstrPtr text(name);
        EXPECT_EQ(Measurements()->get_Item(text.Get(), slot.Out()), S_OK);
        return slot;
    }
};

}  // namespace kestrion
