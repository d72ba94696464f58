#include <fmt/format.h>

#include "cli/acquisition.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/instrument_hint.h"
#include "cli/json.h"
#include "cli/progress.h"
#include "cli/si_format.h"
#include "cli/summary.h"

namespace kestrion::cli {
namespace {

// What was measured, a row for each measurement with a value for each source.
using Results = std::vector<std::vector<MeasuredValue>>;

MeasuredValue MeasureOne(ScopeClient& client, Source source, const Measurement& what) {
    try {
        return client.Measure(source, what);
    } catch (const Failure& failure) {
        throw Failure(fmt::format("{}\nMeasurement = {} of {}", failure.what(), what.name,
                                  SourceName(source)),
                      HintFromInstrument(client, "--timeout gives the instrument more time."),
                      failure.ExitCode());
    }
}

Results MeasureAll(ScopeClient& client, const MeasureArguments& arguments,
                   const Environment& environment) {
    Progress progress(environment.err, environment.errIsTerminal);
    TurnOnSources(client, arguments.sources);
    if (!arguments.asIs) {
        progress.Begin("Acquiring");
        AcquireByPolling(client, std::chrono::milliseconds(arguments.maxTimeMilliseconds),
                         environment.timing);
    }
    Results results(arguments.measurements.size());
    for (const Source source : arguments.sources) {
        progress.Begin(fmt::format("Measuring {}", SourceName(source)));
        for (std::size_t i = 0; i < results.size(); ++i) {
            results[i].push_back(MeasureOne(client, source, arguments.measurements[i]));
        }
    }
    return results;
}

// Prefixes go with units of physics; "0.5 %" isn't "500 m%".
bool TakesPrefixes(std::string_view unit) {
    return !unit.empty() && unit.find('%') == std::string_view::npos;
}

std::string ValueText(const MeasuredValue& measured) {
    if (!measured.value) {
        return "none";
    }
    if (TakesPrefixes(measured.unit)) {
        return FormatSi(*measured.value, measured.unit);
    }
    return fmt::format("{:#.4g}{}{}", *measured.value, measured.unit.empty() ? "" : " ",
                       measured.unit);
}

std::string RenderResults(const MeasureArguments& arguments, const Results& results) {
    std::vector<std::vector<std::string>> rows{{"Measurement"}};
    for (const Source source : arguments.sources) {
        rows.front().push_back(SourceName(source));
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
        std::vector<std::string>& row = rows.emplace_back();
        row.emplace_back(arguments.measurements[i].title);
        for (const MeasuredValue& measured : results[i]) {
            row.push_back(ValueText(measured));
        }
    }
    return RenderTable(rows);
}

std::string JsonResults(const MeasureArguments& arguments, const InstrumentIdentity& identity,
                        const Results& results) {
    std::string text = "{\n  \"identity\": {\n";
    text += fmt::format("    \"manufacturer\": {},\n", JsonText(identity.manufacturer));
    text += fmt::format("    \"model\": {},\n", JsonText(identity.model));
    text += fmt::format("    \"serial\": {},\n", JsonText(identity.serial));
    text += fmt::format("    \"firmware\": {}\n", JsonText(identity.firmware));
    text += "  },\n  \"measurements\": [";
    const char* separator = "\n";
    for (std::size_t column = 0; column < arguments.sources.size(); ++column) {
        for (std::size_t row = 0; row < results.size(); ++row) {
            const MeasuredValue& measured = results[row][column];
            text += fmt::format(
                "{}    {{\"source\": {}, \"measurement\": {}, \"value\": {}, \"unit\": {}}}",
                separator, JsonText(SourceName(arguments.sources[column])),
                JsonText(arguments.measurements[row].name),
                measured.value ? JsonNumber(*measured.value) : "null", JsonText(measured.unit));
            separator = ",\n";
        }
    }
    return text + "\n  ]\n}\n";
}

}  // namespace

std::string RunMeasure(const MeasureArguments& arguments, const Environment& environment) {
    const std::unique_ptr<ScopeClient> client = Connect(arguments.connection, environment);
    if (client->Connection().simulated) {
        throw Failure("A simulated session has nothing to measure.",
                      "Leave out simulate=true; VIRTUAL::PL7254C::INSTR, the resource without "
                      "--resource, needs no instrument either.");
    }
    const Results results = MeasureAll(*client, arguments, environment);
    const InstrumentIdentity identity = client->Instrument();
    if (arguments.json) {
        return JsonResults(arguments, identity, results);
    }
    return RenderIdentity(identity) + RenderResults(arguments, results);
}

}  // namespace kestrion::cli
