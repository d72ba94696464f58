#include "cli/program.h"

#include <exception>
#include <new>

#include "cli/arguments.h"
#include "cli/ascii.h"
#include "cli/commands.h"
#include "cli/failure.h"

namespace kestrion::cli {
namespace {

// Picks the command by the type of its arguments.
class Dispatcher {
  public:
    explicit Dispatcher(const Environment& environment) : environment_(environment) {}

    std::string operator()(const InfoArguments& arguments) const {
        return RunInfo(arguments, environment_);
    }
    std::string operator()(const CaptureArguments& arguments) const {
        return RunCapture(arguments, environment_);
    }
    std::string operator()(const MeasureArguments& arguments) const {
        return RunMeasure(arguments, environment_);
    }
    std::string operator()(const ScpiArguments& arguments) const {
        return RunScpi(arguments, environment_);
    }
    std::string operator()(const ModelsArguments& arguments) const {
        return RunModels(arguments, environment_);
    }
    std::string operator()(const ShowText& text) const { return text.text; }

  private:
    const Environment& environment_;
};

void Print(std::ostream& err, std::string_view text, std::string_view hint) {
    err << "kestrion: " << TrimBlanks(text) << '\n';
    if (!hint.empty()) {
        err << "hint: " << hint << '\n';
    }
    err.flush();
}

int RunOrThrow(const std::vector<std::string>& arguments, const Environment& environment) {
    const Arguments parsed = ParseArguments(arguments, environment.version);
    environment.out << std::visit(Dispatcher(environment), parsed) << std::flush;
    if (!environment.out) {
        throw Failure("Cannot write to standard output.");
    }
    return kExitSuccess;
}

}  // namespace

int Run(const std::vector<std::string>& arguments, const Environment& environment) {
    try {
        return RunOrThrow(arguments, environment);
    } catch (const Failure& failure) {
        Print(environment.err, failure.what(), failure.Hint());
        return failure.ExitCode();
    } catch (const std::bad_alloc&) {
        Print(environment.err, "Not enough memory.", "Try a shorter record by --points.");
        return kExitFailure;
    } catch (const std::exception& error) {
        Print(environment.err, error.what(), {});
        return kExitFailure;
    }
}

}  // namespace kestrion::cli
