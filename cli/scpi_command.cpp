#include <fmt/format.h>

#include "cli/ascii.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/instrument_hint.h"

namespace kestrion::cli {
namespace {

bool IsQuery(const std::string& command, ScpiMode mode) {
    if (mode == ScpiMode::kByQuestionMark) {
        return command.find('?') != std::string::npos;
    }
    return mode == ScpiMode::kQuery;
}

std::string Query(ScopeClient& client, const std::string& command) {
    try {
        return std::string(TrimBlanks(client.Query(command))) + "\n";
    } catch (const Failure& failure) {
        throw Failure(fmt::format("{}\nCommand = {}", failure.what(), command),
                      HintFromInstrument(client,
                                         "Does the instrument know this query? --timeout "
                                         "gives it more time to answer."),
                      failure.ExitCode());
    }
}

void Write(ScopeClient& client, const std::string& command) {
    try {
        client.Write(command);
    } catch (const Failure& failure) {
        throw Failure(fmt::format("{}\nCommand = {}", failure.what(), command), failure.Hint(),
                      failure.ExitCode());
    }
}

void CheckErrorQueue(ScopeClient& client) {
    const InstrumentError error = client.NextError();
    if (error.code != 0) {
        throw Failure(
            fmt::format("The instrument's error queue has an entry: {}", ErrorText(error)));
    }
}

}  // namespace

std::string RunScpi(const ScpiArguments& arguments, const Environment& environment) {
    const std::unique_ptr<ScopeClient> client = Connect(arguments.connection, environment);
    std::string responses;
    for (const std::string& command : arguments.commands) {
        if (IsQuery(command, arguments.mode)) {
            responses += Query(*client, command);
        } else {
            Write(*client, command);
        }
    }
    if (arguments.check) {
        CheckErrorQueue(*client);
    }
    return responses;
}

}  // namespace kestrion::cli
