#include "cli/arguments.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <limits>
#include <set>

#include "cli/ascii.h"
#include "cli/failure.h"
#include "cli/help_texts.h"
#include "cli/npy_writer.h"
#include "cli/suggest.h"

namespace kestrion::cli {
namespace {

constexpr std::int32_t kMostMilliseconds = std::numeric_limits<std::int32_t>::max();

// Shows an option as "--points N", without what the parser knows of it besides.
class HelpFormatter : public CLI::Formatter {
  public:
    HelpFormatter() { column_width(kHelpColumn); }
    std::string make_option_opts(const CLI::Option* option) const override {
        const std::string type = option->get_type_name();
        return type.empty() ? "" : " " + type;
    }

  private:
    static constexpr std::size_t kHelpColumn = 28;
};

// A command's parser and the record that it fills.
class CommandLine {
  public:
    explicit CommandLine(const std::string& version) : app_("", "kestrion") {
        app_.description("Controls and reads oscilloscopes through the Kestrion driver.");
        app_.footer(kMainFooter);
        app_.set_version_flag("--version", "kestrion " + version, "Print the version");
        app_.set_help_flag("-h,--help", "Print this help");
        app_.formatter(std::make_shared<HelpFormatter>());
        app_.require_subcommand(0, 1);
        AddConnectionOptions();
        AddInfo();
        AddCapture();
        AddMeasure();
        AddScpi();
        AddModels();
    }

    Arguments Parse(std::vector<std::string> arguments) {
        // The parser takes its arguments from the back.
        std::reverse(arguments.begin(), arguments.end());
        try {
            app_.parse(std::move(arguments));
        } catch (const CLI::CallForHelp&) {
            return ShowText{app_.help()};
        } catch (const CLI::CallForVersion& version) {
            return ShowText{std::string(version.what()) + "\n"};
        } catch (const CLI::ExtrasError&) {
            throw ExplainExtra();
        } catch (const CLI::ParseError& error) {
            throw BadUsage(error.what(), HelpHint());
        }
        return Result();
    }

  private:
    void AddConnectionOptions() {
        app_.add_option("--resource", connection_.resource,
                        "VISA resource or logical name of the instrument "
                        "(VIRTUAL::PL7254C::INSTR)")
            ->type_name("RESOURCE");
        app_.add_option("--options", connection_.options,
                        "The driver's option string, such as simulate=true")
            ->type_name("TEXT");
        app_.add_option("--timeout", connection_.timeoutMilliseconds,
                        "Longest time of one exchange with the instrument, in milliseconds")
            ->check(CLI::Range(std::int32_t{1}, kMostMilliseconds).description(""))
            ->type_name("MS");
    }

    CLI::App* AddCommand(const std::string& name, const std::string& description,
                         const char* footer) {
        CLI::App* command = app_.add_subcommand(name, description);
        // Options that a command doesn't know go to the program, which has the common ones.
        command->fallthrough();
        command->footer(footer);
        return command;
    }

    void AddInfo() {
        info_ =
            AddCommand("info", "Tell who the instrument is and how it is connected", kInfoFooter);
    }

    void AddCapture() {
        capture_ =
            AddCommand("capture", "Acquire waveforms and write them to files", kCaptureFooter);
        capture_->add_option("--source", sourceLists_, "Sources, split by commas (CH1)")
            ->allow_extra_args(false)
            ->type_name("NAME[,NAME]");
        points_ = capture_
                      ->add_option("--points", captureArguments_.points,
                                   "Record length, 1000 to 100000000 points")
                      ->check(CLI::Range(kLeastPoints, kMostPoints).description(""))
                      ->type_name("N");
        auto* single =
            capture_->add_flag("--single", single_, "Make one new acquisition (the default)");
        capture_
            ->add_flag("--as-is", captureArguments_.asIs,
                       "Fetch the record that the instrument holds")
            ->excludes(single)
            ->excludes(points_);
        capture_
            ->add_option("--max-time", captureArguments_.maxTimeMilliseconds,
                         "Longest wait for the acquisition, in milliseconds (10000)")
            ->check(CLI::Range(std::int32_t{1}, kMostMilliseconds).description(""))
            ->type_name("MS");
        capture_->add_option("--csv", captureArguments_.csv, "Write comma-separated values")
            ->type_name("FILE");
        capture_->add_option("--npy", captureArguments_.npy, "Write a NumPy array")
            ->type_name("FILE");
        capture_->add_option("--svg", captureArguments_.svg, "Write a picture")->type_name("FILE");
        capture_->add_option("--title", captureArguments_.title, "Title of the picture")
            ->type_name("TEXT");
        capture_->add_flag("--no-plot", noPlot_, "No plot in the terminal");
    }

    void AddMeasure() {
        measure_ =
            AddCommand("measure", "Have the instrument measure its waveforms", kMeasureFooter);
        measure_->add_option("--source", sourceLists_, "Sources, split by commas (CH1)")
            ->allow_extra_args(false)
            ->type_name("NAME[,NAME]");
        auto* types = measure_->add_option("--type", typeLists_, "Measurements, split by commas")
                          ->allow_extra_args(false)
                          ->type_name("NAME[,NAME]");
        measure_->add_flag("--all", all_, "Every measurement")->excludes(types);
        measure_->add_flag("--as-is", measureArguments_.asIs,
                           "Measure the record that the instrument holds");
        measure_
            ->add_option("--max-time", measureArguments_.maxTimeMilliseconds,
                         "Longest wait for the acquisition, in milliseconds (10000)")
            ->check(CLI::Range(std::int32_t{1}, kMostMilliseconds).description(""))
            ->type_name("MS");
        measure_->add_flag("--json", measureArguments_.json, "Print JSON for other programs");
    }

    void AddScpi() {
        scpi_ = AddCommand("scpi", "Send commands in the instrument's own language", kScpiFooter);
        scpi_
            ->add_option("COMMAND", scpiArguments_.commands, "Commands and queries to send (*IDN?)")
            ->type_name("");
        auto* write = scpi_->add_flag("--write", write_, "Send only, whatever the command is");
        scpi_->add_flag("--query", query_, "Read a response, whatever the command is")
            ->excludes(write);
        scpi_->add_flag("--check", scpiArguments_.check,
                        "Read the instrument's error queue afterwards and fail if it has an entry");
    }

    void AddModels() {
        models_ = AddCommand("models", "List the instrument models that the driver supports",
                             kModelsFooter);
        models_->add_flag("--plain", modelsArguments_.plain, "One name a line");
    }

    // The command that was named, or the program itself.
    [[nodiscard]] const CLI::App& Chosen() const {
        const std::vector<CLI::App*> chosen = app_.get_subcommands();
        return chosen.empty() ? app_ : *chosen.front();
    }

    [[nodiscard]] std::string HelpHint() const {
        const std::string command = &Chosen() == &app_ ? "" : Chosen().get_name() + " ";
        return fmt::format("'kestrion {}--help' lists what is legal.", command);
    }

    [[nodiscard]] std::vector<std::string> LegalOptions() const {
        std::vector<std::string> names;
        for (const CLI::App* app : {&app_, &Chosen()}) {
            for (const CLI::Option* option : app->get_options()) {
                const std::string& name = option->get_name();
                if (name.starts_with("--") &&
                    std::find(names.begin(), names.end(), name) == names.end()) {
                    names.push_back(name);
                }
            }
        }
        return names;
    }

    [[nodiscard]] Failure ExplainExtra() const {
        const std::vector<std::string> extras = app_.remaining(true);
        const auto option = std::find_if(extras.begin(), extras.end(), [](const std::string& text) {
            return text.starts_with('-');
        });
        if (option != extras.end()) {
            const std::string name = option->substr(0, option->find('='));
            return BadUsage(fmt::format("Unknown option '{}'.", name),
                            Legal("options", name, LegalOptions()));
        }
        if (&Chosen() == &app_) {
            return BadUsage(fmt::format("Unknown command '{}'.", extras.front()),
                            Legal("commands", extras.front(), kCommands));
        }
        return BadUsage(fmt::format("Unexpected argument '{}'.", extras.front()), HelpHint());
    }

    [[nodiscard]] static std::string Legal(const std::string& what, const std::string& given,
                                           const std::vector<std::string>& names) {
        const std::vector<std::string> near = Nearest(given, names, 1);
        const std::string meant =
            near.empty() ? "" : fmt::format("Did you mean {}? ", near.front());
        return fmt::format("{}Legal {} are {}.", meant, what, Enumerate(names));
    }

    [[nodiscard]] Arguments Result() {
        CheckOptionString(connection_.options);
        if (capture_->parsed()) {
            return CaptureResult();
        }
        if (measure_->parsed()) {
            return MeasureResult();
        }
        if (scpi_->parsed()) {
            return ScpiResult();
        }
        if (models_->parsed()) {
            return modelsArguments_;
        }
        if (info_->parsed()) {
            return InfoArguments{connection_};
        }
        throw BadUsage("A command is missing.",
                       fmt::format("Legal commands are {}; 'kestrion --help' tells more.",
                                   Enumerate(kCommands)));
    }

    [[nodiscard]] CaptureArguments CaptureResult() {
        captureArguments_.connection = connection_;
        captureArguments_.plot = !noPlot_;
        captureArguments_.sources = Sources();
        CheckFiles();
        return captureArguments_;
    }

    [[nodiscard]] std::vector<Source> Sources() const {
        return ParseSources(sourceLists_.empty() ? "CH1" : Joined(sourceLists_));
    }

    // An option that is given several times is one list.
    [[nodiscard]] static std::string Joined(const std::vector<std::string>& lists) {
        return fmt::format("{}", fmt::join(lists, ","));
    }

    [[nodiscard]] MeasureArguments MeasureResult() {
        measureArguments_.connection = connection_;
        measureArguments_.sources = Sources();
        if (all_) {
            measureArguments_.measurements = AllMeasurements();
        } else {
            measureArguments_.measurements =
                typeLists_.empty() ? UsualMeasurements() : ParseMeasurements(Joined(typeLists_));
        }
        return measureArguments_;
    }

    void CheckFiles() const {
        for (const char* option : {"--csv", "--npy", "--svg"}) {
            const CLI::Option* file = capture_->get_option(option);
            if (file->count() > 0 && file->as<std::string>().empty()) {
                throw BadUsage(fmt::format("{} needs the name of a file.", option));
            }
        }
        std::vector<std::filesystem::path> files{captureArguments_.csv, captureArguments_.svg};
        if (!captureArguments_.npy.empty()) {
            files.push_back(captureArguments_.npy);
            files.push_back(NpySidecarPath(captureArguments_.npy));
        }
        std::set<std::filesystem::path> seen;
        for (const std::filesystem::path& file : files) {
            if (!file.empty() &&
                !seen.insert(std::filesystem::absolute(file).lexically_normal()).second) {
                throw BadUsage(fmt::format("'{}' would be written twice.", file.string()),
                               "The time base of a .npy file goes to a .json file beside it.");
            }
        }
    }

    [[nodiscard]] ScpiArguments ScpiResult() {
        scpiArguments_.connection = connection_;
        if (scpiArguments_.commands.empty()) {
            scpiArguments_.commands = {"*IDN?"};
        }
        if (write_) {
            scpiArguments_.mode = ScpiMode::kWrite;
        } else if (query_) {
            scpiArguments_.mode = ScpiMode::kQuery;
        }
        return scpiArguments_;
    }

    inline static const std::vector<std::string> kCommands{"info", "capture", "measure", "scpi",
                                                           "models"};

    CLI::App app_;
    CLI::App* info_ = nullptr;
    CLI::App* capture_ = nullptr;
    CLI::App* measure_ = nullptr;
    CLI::App* scpi_ = nullptr;
    CLI::App* models_ = nullptr;
    CLI::Option* points_ = nullptr;
    ConnectionArguments connection_;
    CaptureArguments captureArguments_;
    MeasureArguments measureArguments_;
    ScpiArguments scpiArguments_;
    ModelsArguments modelsArguments_;
    std::vector<std::string> sourceLists_;
    std::vector<std::string> typeLists_;
    bool all_ = false;
    bool single_ = false;
    bool noPlot_ = false;
    bool write_ = false;
    bool query_ = false;
};

}  // namespace

Arguments ParseArguments(const std::vector<std::string>& arguments, const std::string& version) {
    return CommandLine(version).Parse(arguments);
}

void CheckOptionString(const std::string& options) {
    static const std::vector<std::string> kNames{
        "Cache",      "InterchangeCheck", "QueryInstrStatus",
        "RangeCheck", "RecordCoercions",  "Simulate"};
    // The driver's setup is always the last item.
    const std::string upper = ToUpper(options);
    const std::string flags = options.substr(0, std::min(upper.find("DRIVERSETUP"), upper.size()));
    for (std::string_view item : Split(flags, ',')) {
        const std::string name(TrimBlanks(item.substr(0, item.find('='))));
        if (name.empty()) {
            continue;
        }
        const bool known = std::any_of(kNames.begin(), kNames.end(), [&](const std::string& legal) {
            return ToUpper(legal) == ToUpper(name);
        });
        if (!known) {
            throw BadUsage(fmt::format("Unknown driver option '{}'.", name),
                           fmt::format("Legal options are {} and, as the last one, DriverSetup, "
                                       "as in \"simulate=true,DriverSetup=Model=PL7254C\".",
                                       fmt::join(kNames, ", ")));
        }
    }
}

}  // namespace kestrion::cli
