#include "cli/csv_writer.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace kestrion::cli {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 20;
// The longest shortest form of a double is "-2.2250738585072014e-308": 24 characters; one more for
// the separator behind it.
constexpr std::size_t kLongestField = 25;

class LineBuffer {
  public:
    LineBuffer(OutputFile& file, std::size_t fields) : file_(file), buffer_(kBufferSize) {
        rowSize_ = (fields + 1) * kLongestField;
    }

    void Number(double value) {
        char* const start = buffer_.data() + used_;
        const auto end = std::to_chars(start, buffer_.data() + buffer_.size(), value).ptr;
        used_ += static_cast<std::size_t>(end - start);
    }
    void Separator() { buffer_[used_++] = ','; }
    // True when the line made room by writing the buffer out.
    [[nodiscard]] bool EndLine() {
        buffer_[used_++] = '\n';
        if (buffer_.size() - used_ >= rowSize_) {
            return false;
        }
        Flush();
        return true;
    }
    void Flush() {
        file_.Write({buffer_.data(), used_});
        used_ = 0;
    }

  private:
    OutputFile& file_;
    std::vector<char> buffer_;
    std::size_t used_ = 0;
    std::size_t rowSize_ = 0;
};

std::string Header(const Waveforms& waveforms, bool sharedTime) {
    std::string line = sharedTime ? "time_s" : "";
    for (const Waveform& waveform : waveforms) {
        if (!sharedTime) {
            line += (line.empty() ? "" : ",") + waveform.source + "_time_s";
        }
        line += "," + waveform.source + "_V";
    }
    return line + "\n";
}

void SharedRow(LineBuffer& line, const Waveforms& waveforms, std::size_t row) {
    line.Number(waveforms.front().TimeAt(row));
    for (const Waveform& waveform : waveforms) {
        line.Separator();
        line.Number(waveform.volts[row]);
    }
}

void SeparateRow(LineBuffer& line, const Waveforms& waveforms, std::size_t row) {
    bool first = true;
    for (const Waveform& waveform : waveforms) {
        if (!first) {
            line.Separator();
        }
        first = false;
        if (row >= waveform.volts.size()) {
            line.Separator();
            continue;
        }
        line.Number(waveform.TimeAt(row));
        line.Separator();
        line.Number(waveform.volts[row]);
    }
}

}  // namespace

void WriteCsv(OutputFile& file, const Waveforms& waveforms, const WriterProgress& progress) {
    const bool sharedTime = ShareTimeAxis(waveforms);
    std::size_t rows = 0;
    for (const Waveform& waveform : waveforms) {
        rows = std::max(rows, waveform.volts.size());
    }
    file.Write(Header(waveforms, sharedTime));
    LineBuffer line(file, 2 * waveforms.size());
    for (std::size_t row = 0; row < rows; ++row) {
        if (sharedTime) {
            SharedRow(line, waveforms, row);
        } else {
            SeparateRow(line, waveforms, row);
        }
        if (line.EndLine()) {
            Tell(progress, row + 1, rows);
        }
    }
    line.Flush();
    Tell(progress, rows, rows);
}

}  // namespace kestrion::cli
