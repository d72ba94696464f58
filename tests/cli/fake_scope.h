// A scope without a driver: it notes what it is asked and fails where a test wants it to.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "cli/environment.h"
#include "cli/failure.h"
#include "cli/program.h"
#include "cli/scope_client.h"
#include "tests/cli/waveform_maker.h"

namespace kestrion::cli {

// What the fake answers, and the calls that it has got. It outlives the clients.
struct FakeInstrument {
    // "Open VIRTUAL::PL7254C::INSTR [simulate=true]", "Fetch CH1" and so on.
    std::vector<std::string> calls;
    // The call that begins with this text fails with the text behind it.
    std::map<std::string, std::string> failures;
    std::set<std::string> sourcesOn{"CH1"};
    // The resource that the driver reports; the one given to Open where it is empty.
    std::string resourceInForce;
    StoreDetails store{.path = "", .reason = "there is none here"};
    std::map<std::string, Waveform> waveforms;
    std::map<std::string, std::string> responses;
    // By source and measurement, "CH1 frequency"; 1 V where there is none.
    std::map<std::string, MeasuredValue> measured;
    // Polls that still find the acquisition running.
    int pollsWhileAcquiring = 0;
    InstrumentError error;
    std::vector<std::string> models{"HR5104", "PL7254C", "PL7054", "MR5104B"};
};

class FakeScope : public ScopeClient {
  public:
    explicit FakeScope(FakeInstrument& instrument) : fake_(instrument) {}
    ~FakeScope() override { fake_.calls.emplace_back("Close"); }

    void Open(const std::string& resource, const std::string& options) override {
        resource_ = resource;
        simulated_ = options == "simulate=true";
        Note("Open " + resource + " [" + options + "]");
    }
    void SetTimeout(std::int32_t milliseconds) override {
        Note("SetTimeout " + std::to_string(milliseconds));
    }
    InstrumentIdentity Instrument() override {
        Note("Instrument");
        return {"Kestrion Instruments", "PL7254C", simulated_ ? "" : "V000042", "1.2.3",
                "Plover Series"};
    }
    DriverIdentity Driver() override {
        return {"IVI driver for Kestrion Instruments oscilloscopes [Compiled for 64-bit.]",
                "Kestrion",
                "3.9.0.0",
                "Kestrion Instruments",
                3,
                0};
    }
    ConnectionDetails Connection() override {
        ConnectionDetails details;
        details.resource = fake_.resourceInForce.empty() ? resource_ : fake_.resourceInForce;
        details.options = {{"Cache", true}, {"Simulate", simulated_}};
        details.simulated = simulated_;
        if (!simulated_) {
            details.visaLibrary = "bundled";
            details.visaLibraryReason = "the resource is virtual";
        }
        return details;
    }
    StoreDetails Store() override { return fake_.store; }
    std::vector<std::string> SupportedModels() override {
        Note("SupportedModels");
        return fake_.models;
    }
    bool IsOn(Source source) override { return fake_.sourcesOn.contains(SourceName(source)); }
    void TurnOn(Source source) override { Note("TurnOn " + SourceName(source)); }
    void SetRecordLength(std::int32_t points) override {
        Note("SetRecordLength " + std::to_string(points));
    }
    void SelectSingleSequence() override { Note("SelectSingleSequence"); }
    void StartSingleSequence() override { Note("StartSingleSequence"); }
    bool IsAcquiring() override {
        Note("IsAcquiring");
        return fake_.pollsWhileAcquiring-- > 0;
    }
    Waveform Fetch(Source source) override {
        Note("Fetch " + SourceName(source));
        return Record(source);
    }
    Waveform Read(Source source, std::int32_t maxTimeMilliseconds) override {
        Note("Read " + SourceName(source) + " " + std::to_string(maxTimeMilliseconds));
        return Record(source);
    }
    MeasuredValue Measure(Source source, const Measurement& what) override {
        const std::string name = SourceName(source) + " " + std::string(what.name);
        Note("Measure " + name);
        const auto found = fake_.measured.find(name);
        return found != fake_.measured.end() ? found->second : MeasuredValue{1.0, "V"};
    }
    void Write(const std::string& command) override { Note("Write " + command); }
    std::string Query(const std::string& command) override {
        Note("Query " + command);
        return fake_.responses[command];
    }
    InstrumentError NextError() override {
        Note("NextError");
        return fake_.error;
    }

  private:
    void Note(const std::string& call) {
        fake_.calls.push_back(call);
        for (const auto& [begin, text] : fake_.failures) {
            if (call.starts_with(begin)) {
                throw Failure(text);
            }
        }
    }

    [[nodiscard]] Waveform Record(Source source) {
        const auto found = fake_.waveforms.find(SourceName(source));
        return found != fake_.waveforms.end()
                   ? found->second
                   : MakeWaveform(SourceName(source), {0, 1, 0, -1}, 0, 1e-3);
    }

    FakeInstrument& fake_;
    std::string resource_;
    bool simulated_ = false;
};

// Runs the program against a fake instrument, with a clock that moves by sleeping only.
class FakeRun {
  public:
    FakeInstrument instrument;
    bool outIsTerminal = false;
    std::chrono::milliseconds slept{0};

    [[nodiscard]] Timing FakeTiming() {
        return {.now = [this] { return std::chrono::steady_clock::time_point(slept); },
                .sleep = [this](std::chrono::milliseconds time) { slept += time; }};
    }

    int Run(const std::vector<std::string>& arguments) {
        const Environment environment{
            .out = out_,
            .err = err_,
            .outIsTerminal = outIsTerminal,
            .errIsTerminal = false,
            .columns = 60,
            .version = "3.9.0",
            .makeClient = [this] { return std::make_unique<FakeScope>(instrument); },
            .timing = FakeTiming()};
        return cli::Run(arguments, environment);
    }
    [[nodiscard]] std::string Out() const { return out_.str(); }
    [[nodiscard]] std::string Err() const { return err_.str(); }
    // Makes writing to standard output fail.
    void BreakOutput() { out_.setstate(std::ios::badbit); }

  private:
    std::ostringstream out_;
    std::ostringstream err_;
};

}  // namespace kestrion::cli
