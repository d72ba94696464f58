// The command line, checked.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/measurement.h"
#include "cli/source.h"

namespace kestrion::cli {

inline constexpr std::int32_t kLeastPoints = 1000;
inline constexpr std::int32_t kMostPoints = 100000000;

// What every command that connects is told about the instrument.
struct ConnectionArguments {
    std::string resource = "VIRTUAL::PL7254C::INSTR";
    // The driver's option string.
    std::string options;
    std::optional<std::int32_t> timeoutMilliseconds;
};

struct InfoArguments {
    ConnectionArguments connection;
};

struct CaptureArguments {
    ConnectionArguments connection;
    std::vector<Source> sources;
    std::optional<std::int32_t> points;
    // Fetch what the instrument holds in place of a new acquisition.
    bool asIs = false;
    std::int32_t maxTimeMilliseconds = 10000;
    std::filesystem::path csv;
    std::filesystem::path npy;
    std::filesystem::path svg;
    std::string title;
    bool plot = true;
};

struct MeasureArguments {
    ConnectionArguments connection;
    std::vector<Source> sources;
    std::vector<Measurement> measurements;
    // Measure what the instrument holds in place of a new acquisition.
    bool asIs = false;
    std::int32_t maxTimeMilliseconds = 10000;
    // For other programs.
    bool json = false;
};

enum class ScpiMode { kByQuestionMark, kWrite, kQuery };

struct ScpiArguments {
    ConnectionArguments connection;
    std::vector<std::string> commands;
    ScpiMode mode = ScpiMode::kByQuestionMark;
    // Read the instrument's error queue afterwards.
    bool check = false;
};

struct ModelsArguments {
    // One name a line, for other programs.
    bool plain = false;
};

// Help or the version was asked for: this is it.
struct ShowText {
    std::string text;
};

using Arguments = std::variant<InfoArguments, CaptureArguments, MeasureArguments, ScpiArguments,
                               ModelsArguments, ShowText>;

// `arguments` is the command line without the program's name. Throws Failure with kExitUsage, whose
// text says what is wrong and what would be legal.
[[nodiscard]] Arguments ParseArguments(const std::vector<std::string>& arguments,
                                       const std::string& version);

// Throws bad usage for an option name that the driver doesn't have: it would silently ignore it.
// What follows "DriverSetup=" is the driver's and isn't looked at.
void CheckOptionString(const std::string& options);

}  // namespace kestrion::cli
