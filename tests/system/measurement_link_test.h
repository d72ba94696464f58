// A fixture for measurements over each link: 10,000 points of 4 ms, the trigger at 40 percent, so
// that the record begins away from the sine's crossings; CH1 with levels of 8 mV, CH2 of 44 mV, so
// that 3.3 V are 75 of them.
#pragma once

#include "tests/system/link_test.h"
#include "tests/system/measured_record.h"

namespace kestrion {

// What stands for a value that there isn't.
inline constexpr double kNoValue = 9.91e37;

class MeasurementLinkTest : public LinkTest {
  protected:
    void SetUp() override {
        LinkTest::SetUp();
        Send(
            "SELECT:CH2 1;:CH1:SCALE 0.2;:CH2:SCALE 1.1;:HORIZONTAL:POSITION "
            "40;:MEASUREMENT:METHOD MINMAX");
        client_.AcquireOnce(10000);
    }
    Waveform Fetch(KestrionSourceEnum source) {
        Waveform waveform;
        EXPECT_EQ(client_.Fetch(source, waveform), S_OK) << TakeErrorText();
        return waveform;
    }
    ComPtr<IKestrionMeasurementImmediate> Immediate() {
        return client_.As<IKestrionMeasurementImmediate>();
    }
    ComPtr<IKestrionMeasurements> Measurements() { return client_.As<IKestrionMeasurements>(); }
    ComPtr<IKestrionMeasurement> Slot(int number) {
        const BstrPtr name("MeasurementSlot" + std::to_string(number));
        ComPtr<IKestrionMeasurement> slot;
        EXPECT_EQ(Measurements()->get_Item(name.Get(), slot.Out()), S_OK) << TakeErrorText();
        return slot;
    }
    ComPtr<IIviScopeMeasurement> ClassMeasurement(int channel) {
        const BstrPtr name("Channel" + std::to_string(channel));
        ComPtr<IIviScopeMeasurement> measurement;
        EXPECT_EQ(client_.As<IIviScopeMeasurements>()->get_Item(name.Get(), measurement.Out()),
                  S_OK)
            << TakeErrorText();
        return measurement;
    }
    double Measure(KestrionSourceEnum source, KestrionMeasurementTypeEnum type) {
        double value = -1.0;
        EXPECT_EQ(Immediate()->Configure(source, type), S_OK) << TakeErrorText();
        EXPECT_EQ(Immediate()->get_Value(&value), S_OK) << TakeErrorText();
        return value;
    }
    static double ValueOf(const ComPtr<IKestrionMeasurement>& slot) {
        double value = -1.0;
        EXPECT_EQ(slot->get_Value(&value), S_OK) << TakeErrorText();
        return value;
    }
};

}  // namespace kestrion
