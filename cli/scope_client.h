// What the commands need of an oscilloscope, in plain C++. The one implementation for real use
// stands on the driver's object interfaces; tests put one of their own here.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cli/measurement.h"
#include "cli/source.h"
#include "cli/waveform.h"

namespace kestrion::cli {

// Who answers at the other end; a field is empty where the instrument doesn't tell.
struct InstrumentIdentity {
    std::string manufacturer;
    std::string model;
    std::string serial;
    std::string firmware;
    std::string family = {};  // empty for a model that the driver doesn't know
};

struct DriverIdentity {
    std::string description;
    std::string identifier;
    std::string revision;
    std::string vendor;
    int specificationMajor = 0;
    int specificationMinor = 0;
};

struct OptionFlag {
    std::string name;
    bool on = false;
};

// The connection as the driver sees it.
struct ConnectionDetails {
    std::string resource;
    // Empty when the resource wasn't given by a logical name.
    std::string logicalName;
    std::string driverSetup;
    std::vector<OptionFlag> options;
    bool simulated = false;
    // The library that carries the connection and why that one; empty in simulation.
    std::string visaLibrary;
    std::string visaLibraryReason;
};

// The configuration store in which logical names are looked up.
struct StoreDetails {
    // The file; empty where no store is used.
    std::string path;
    // Why that one, or why none.
    std::string reason;
};

// An entry of the instrument's error queue; 0 means that the queue is empty.
struct InstrumentError {
    int code = 0;
    std::string text;
};

// One session with an instrument. Every member throws Failure with the driver's own text. Members
// are called by one thread at a time. The destructor closes the session.
class ScopeClient {
  public:
    virtual ~ScopeClient() = default;

    // `options` is the driver's option string. Called once, before the others.
    virtual void Open(const std::string& resource, const std::string& options) = 0;
    // The time that one exchange with the instrument may take.
    virtual void SetTimeout(std::int32_t milliseconds) = 0;

    [[nodiscard]] virtual InstrumentIdentity Instrument() = 0;
    [[nodiscard]] virtual DriverIdentity Driver() = 0;
    [[nodiscard]] virtual ConnectionDetails Connection() = 0;
    // Of the last Open, also of one that failed.
    [[nodiscard]] virtual StoreDetails Store() = 0;
    [[nodiscard]] virtual std::vector<std::string> SupportedModels() = 0;

    [[nodiscard]] virtual bool IsOn(Source source) = 0;
    virtual void TurnOn(Source source) = 0;
    virtual void SetRecordLength(std::int32_t points) = 0;

    // Makes the next acquisition stop by itself when its record is complete.
    virtual void SelectSingleSequence() = 0;
    // The same, and starts it without waiting for it.
    virtual void StartSingleSequence() = 0;
    [[nodiscard]] virtual bool IsAcquiring() = 0;

    // The record that the instrument holds for `source`.
    [[nodiscard]] virtual Waveform Fetch(Source source) = 0;
    // Starts an acquisition, waits for its end by service request, and fetches.
    [[nodiscard]] virtual Waveform Read(Source source, std::int32_t maxTimeMilliseconds) = 0;

    // Measures the record that the instrument holds for `source`.
    [[nodiscard]] virtual MeasuredValue Measure(Source source, const Measurement& what) = 0;

    // One command line or query in the instrument's own language.
    virtual void Write(const std::string& command) = 0;
    [[nodiscard]] virtual std::string Query(const std::string& command) = 0;
    // Takes the oldest entry off the instrument's error queue.
    [[nodiscard]] virtual InstrumentError NextError() = 0;
};

// A client over the driver, not yet connected.
[[nodiscard]] std::unique_ptr<ScopeClient> MakeScopeClient();
// The driver's version, "3.9.0".
[[nodiscard]] std::string DriverVersion();

}  // namespace kestrion::cli
