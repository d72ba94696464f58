// What the transcript tests of the waveform members share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/scope_fixture.h"

namespace kestrion {

class WaveformTest : public ScopeTest {
  protected:
    // The exchanges of a transfer, in parts, as an instrument with headers off answers them.
    void ExpectChecks(std::string_view source) {
        fake.Expect("HEADER?\n").Reply("0\n");
        fake.Expect("HEADER OFF\n");
        fake.Expect("SELECT:" + std::string(source) + "?\n").Reply("1\n");
        fake.Expect("ACQUIRE:MODE?\n").Reply("SAMPLE\n");
    }
    // The tests of a source on its way in, with the mode that the member asks for.
    void ExpectChecksInMode(std::string_view source, std::string_view mode) {
        ExpectHeaderOff();
        fake.Expect("SELECT:" + std::string(source) + "?\n").Reply("1\n");
        fake.Expect("ACQUIRE:MODE?\n").Reply(std::string(mode) + "\n");
    }
    void ExpectHeaderOff() {
        fake.Expect("HEADER?\n").Reply("0\n");
        fake.Expect("HEADER OFF\n");
    }
    void ExpectSavedState() {
        fake.Expect("DATA:SOURCE?\n").Reply("CH4\n");
        fake.Expect("DATA:START?\n").Reply("3\n");
        fake.Expect("DATA:STOP?\n").Reply("777\n");
        fake.Expect("WFMOUTPRE:BN_FMT?\n").Reply("RP\n");
        fake.Expect("WFMOUTPRE:BYT_OR?\n").Reply("MSB\n");
        fake.Expect("WFMOUTPRE:ENCD?\n").Reply("ASC\n");
        fake.Expect("WFMOUTPRE:BYT_NR?\n").Reply("2\n");
        fake.Expect("ACQUIRE:STATE?\n").Reply("0\n");
    }
    void ExpectChannelSetUp(std::string_view source, std::string_view points) {
        fake.Expect("DATA:SOURCE " + std::string(source) + "\n");
        fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply(std::string(points) + "\n");
        fake.Expect("DATA:START 1;STOP " + std::string(points) + "\n");
        fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("1\n");
        fake.Expect(
            "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
            "1\n");
    }
    // A math, or a reference that holds floating-point data.
    void ExpectFloatSetUp(std::string_view source, std::string_view points) {
        fake.Expect("DATA:SOURCE " + std::string(source) + "\n");
        fake.Expect("DATA:STOP 800000000\n");
        fake.Expect(":WFMOUTPRE:NR_PT?\n").Reply(std::string(points) + "\n");
        fake.Expect("DATA:START 1;STOP " + std::string(points) + "\n");
        fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("4\n");
        fake.Expect("WFMOUTPRE:ENCDG BIN;BN_FMT FP\n");
        fake.Expect(":WFMOUTPRE:BYT_OR LSB\n");
    }
    void ExpectPreamble() {
        fake.Expect("WFMOUTPRE:XINCR?\n").Reply("4.0E-7\n");
        fake.Expect("WFMOUTPRE:XZERO?\n").Reply("1.0E-3\n");
        fake.Expect("WFMOUTPRE:YMULT?\n").Reply("0.5\n");
        fake.Expect("WFMOUTPRE:YZERO?\n").Reply("0.25\n");
        fake.Expect("WFMOUTPRE:YOFF?\n").Reply("2\n");
        fake.Expect("WFMOUTPRE:PT_OFF?\n").Reply("500\n");
    }
    void ExpectRestore() {
        fake.Expect("DATA:SOURCE CH4;START 3;STOP 777\n");
        fake.Expect("WFMOUTPRE:BN_FMT RP;BYT_OR MSB;ENCD ASC;BYT_NR 2\n");
        fake.Expect("HEADER 0\n");
    }

    HRESULT Fetch(KestrionSourceEnum source) {
        return As<IKestrionWaveformTransfer>()->FetchWaveform(source, waveform.Out(), &initialX,
                                                              &xIncrement);
    }
    HRESULT Read(KestrionSourceEnum source, LONG maxTime) {
        return As<IKestrionWaveformTransfer>()->ReadWaveform(source, maxTime, waveform.Out(),
                                                             &initialX, &xIncrement);
    }
    std::vector<double> Volts() const {
        const auto elements = waveform.Elements<double>();
        return {elements.begin(), elements.end()};
    }

    SafeArrayPtr waveform;
    double initialX = -1.0;
    double xIncrement = -1.0;
};

}  // namespace kestrion
