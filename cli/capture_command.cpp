#include <fmt/format.h>

#include "cli/acquisition.h"
#include "cli/braille_plot.h"
#include "cli/commands.h"
#include "cli/csv_writer.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/npy_writer.h"
#include "cli/output_file.h"
#include "cli/progress.h"
#include "cli/si_format.h"
#include "cli/summary.h"
#include "cli/svg_plot.h"

namespace kestrion::cli {
namespace {

constexpr std::size_t kRowsOfOnePlot = 15;
constexpr std::size_t kRowsOfSeveral = 8;

// The driver knows what went wrong, this program what its user can do about it.
std::string CaptureHint(std::string_view text) {
    if (text.find("Acquire the Waveform") != std::string_view::npos) {
        return "The instrument holds no complete record for this source. Leave out --as-is to "
               "acquire one.";
    }
    if (text.find("Maximum time exceeded") != std::string_view::npos) {
        return "The trigger may never have come. Give more time by --max-time.";
    }
    if (text.find("Invalid acquisition type") != std::string_view::npos) {
        return "A capture needs the acquisition mode sample, high resolution or average: "
               "kestrion scpi \"ACQUIRE:MODE SAMPLE\"";
    }
    return {};
}

// Asked before the acquisition, which may take long and can't be had again.
void CheckOutputs(const CaptureArguments& arguments) {
    if (!arguments.csv.empty()) {
        CheckWritable(arguments.csv);
    }
    if (!arguments.npy.empty()) {
        CheckWritable(arguments.npy);
        CheckWritable(NpySidecarPath(arguments.npy));
    }
    if (!arguments.svg.empty()) {
        CheckWritable(arguments.svg);
    }
}

Waveforms AcquireWithHints(ScopeClient& client, const CaptureArguments& arguments,
                           const Environment& environment, Progress& progress) {
    try {
        return Acquire(client, arguments, environment.timing,
                       [&](std::string_view phase) { progress.Begin(phase); });
    } catch (const Failure& failure) {
        const std::string hint =
            failure.Hint().empty() ? CaptureHint(failure.what()) : failure.Hint();
        throw Failure(failure.what(), hint, failure.ExitCode());
    }
}

PlotTexts TextsFor(const CaptureArguments& arguments, const Waveforms& waveforms,
                   const InstrumentIdentity& identity) {
    std::string names;
    for (const Waveform& waveform : waveforms) {
        names += (names.empty() ? "" : ", ") + waveform.source;
    }
    PlotTexts texts;
    texts.title = arguments.title.empty() ? names : arguments.title;
    texts.subtitle = fmt::format("{} {} · {} points · {} per point", identity.manufacturer,
                                 identity.model, waveforms.front().volts.size(),
                                 FormatSiShort(waveforms.front().xIncrement, "s"));
    return texts;
}

// Writes every file that is asked for, and gives them their names when all are complete.
class FileWriter {
  public:
    FileWriter(const Waveforms& waveforms, Progress& progress)
        : waveforms_(waveforms), progress_(progress) {}

    void Write(const CaptureArguments& arguments, const InstrumentIdentity& identity) {
        if (!arguments.csv.empty()) {
            WriteCsv(Begin(arguments.csv), waveforms_, Listener());
        }
        if (!arguments.npy.empty()) {
            WriteNpy(Begin(arguments.npy), waveforms_, Listener());
            WriteNpySidecar(Begin(NpySidecarPath(arguments.npy)), waveforms_, identity);
        }
        if (!arguments.svg.empty()) {
            Begin(arguments.svg)
                .Write(RenderSvg(TextsFor(arguments, waveforms_, identity), waveforms_));
        }
        interrupt_.Check();
        progress_.End();
        for (const auto& file : files_) {
            file->Commit();
        }
    }

  private:
    OutputFile& Begin(const std::filesystem::path& target) {
        interrupt_.Check();
        progress_.Begin(fmt::format("Writing {}", target.string()));
        return *files_.emplace_back(std::make_unique<OutputFile>(target));
    }

    [[nodiscard]] WriterProgress Listener() {
        return [this](std::uint64_t done, std::uint64_t total) {
            interrupt_.Check();
            progress_.Advance(done, total);
        };
    }

    const Waveforms& waveforms_;
    Progress& progress_;
    InterruptGuard interrupt_;
    std::vector<std::unique_ptr<OutputFile>> files_;
};

std::string Plots(const Waveforms& waveforms, std::size_t columns) {
    const std::size_t rows = waveforms.size() == 1 ? kRowsOfOnePlot : kRowsOfSeveral;
    std::string text;
    for (const Waveform& waveform : waveforms) {
        text += fmt::format("\n{}\n", waveform.source) + RenderBraille(waveform, columns, rows);
    }
    return text;
}

}  // namespace

std::string RunCapture(const CaptureArguments& arguments, const Environment& environment) {
    CheckOutputs(arguments);
    const std::unique_ptr<ScopeClient> client = Connect(arguments.connection, environment);
    if (client->Connection().simulated) {
        throw Failure("A simulated session has no waveforms.",
                      "Leave out simulate=true; VIRTUAL::PL7254C::INSTR, the resource without "
                      "--resource, needs no instrument either.");
    }
    Progress progress(environment.err, environment.errIsTerminal);
    const Waveforms waveforms = AcquireWithHints(*client, arguments, environment, progress);
    const InstrumentIdentity identity = client->Instrument();
    FileWriter(waveforms, progress).Write(arguments, identity);

    std::string text = RenderIdentity(identity) + RenderSummary(waveforms);
    if (arguments.plot && environment.outIsTerminal) {
        text += Plots(waveforms, environment.columns);
    }
    return text;
}

}  // namespace kestrion::cli
