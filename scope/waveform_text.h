// Records as text: lines for the clipboard and for files.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/files.h"
#include "scope/waveform_sinks.h"

namespace kestrion {

// One blank, and a line for each point, on the system's clipboard: 250000 points at most.
class ClipboardSink final : public WaveformSink {
  public:
    bool Prepare(std::size_t points) override;
    void Take(const WaveformRecord& record) override;

    // How many points are on the clipboard.
    [[nodiscard]] LONG Points() const { return points_; }
    // What the clipboard said, once the record was taken.
    [[nodiscard]] HRESULT Status() const { return status_; }
    [[nodiscard]] const std::string& Reason() const { return reason_; }

  private:
    LONG points_ = 0;
    HRESULT status_ = S_OK;
    std::string reason_;
};

// A text file with a line for each point: amplitudes alone, or a header with times and amplitudes
// beside it. A file that was there is replaced. Lines don't depend on the locale.
class TextFileSink final : public WaveformSink {
  public:
    enum class Failure : std::uint8_t { kNone, kOpen, kWrite };

    TextFileSink(std::string path, bool withScale)
        : path_(std::move(path)), withScale_(withScale) {}
    bool Prepare(std::size_t points) override;
    void Take(const WaveformRecord& record) override;

    [[nodiscard]] Failure Failed() const { return failure_; }

  private:
    void Append(const WaveformRecord& record, std::size_t index, double amplitude);
    // Writes what has gathered, once it is worth it.
    void WriteGathered(std::size_t least);

    std::string path_;
    bool withScale_;
    std::unique_ptr<OutputFile> file_;
    std::string gathered_;
    Failure failure_ = Failure::kNone;
};

}  // namespace kestrion
