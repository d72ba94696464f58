#include "scope/waveform_text.h"

#include <algorithm>
#include <array>

#include "core/function_ref.h"
#include "io/number_text.h"
#include "platform/clipboard.h"

namespace kestrion {
namespace {

constexpr std::size_t kClipboardPoints = 250000;
constexpr std::size_t kFileChunk = 65536;
// The lines of a file that have a text in front.
constexpr std::size_t kHeaderLines = 6;
// In front of the amplitude, behind the header, of a record in floating-point numbers: what C's
// printf makes of a time column with a comma in its format. Readers of these files expect it.
constexpr std::string_view kFloatingPointColumns = ",,,%12.9,g";

void AppendReal(std::string& text, double value, std::int64_t precision) {
    NumberDigits digits;
    FormatReal(value, {.letter = 'g', .width = 12, .precision = precision}, digits).AppendTo(text);
}

// As C's "%12.7g" and "%12.9g" do.
void AppendAmplitude(std::string& text, double volts) {
    AppendReal(text, volts, 7);
}
void AppendTime(std::string& text, double seconds) {
    AppendReal(text, seconds, 9);
}

// Scales the first `count` points, a few at a time, so that no array of all of them is needed.
void ForEachVolt(const WaveformRecord& record, std::size_t count,
                 FunctionRef<void(std::size_t index, double volts)> take) {
    std::array<double, 1024> volts;
    for (std::size_t done = 0; done < count;) {
        const std::size_t now = std::min(volts.size(), count - done);
        ScaleToVolts(record.bytes.subspan(done * PointWidth(record.format)), record.format,
                     record.scale, std::span(volts).first(now));
        for (std::size_t i = 0; i < now; ++i) {
            take(done + i, volts[i]);
        }
        done += now;
    }
}

// The first columns of a line, up to the comma in front of the time.
void AppendHeader(std::string& text, const WaveformRecord& record, std::size_t line) {
    switch (line) {
        case 0:
            text += "\"Record Length\"," + std::to_string(record.points) + ",\"Points\",";
            return;
        case 1:
            text += "\"Sample Interval\",";
            AppendTime(text, record.xIncrement);
            break;
        case 2:
            text += "\"Trigger Point\"," + std::to_string(record.pointOffset) + ",\"Points\",";
            return;
        case 3:
            text += "\"Trigger Time\",";
            AppendTime(text, record.xZero);
            break;
        case 5:
            // Spelled as in all files of this form.
            text += "\"Horizontial Offset\",";
            AppendTime(text, record.xZero);
            break;
        default:
            text += ",,,";
            return;
    }
    text += ",\"s\",";
}

}  // namespace

bool ClipboardSink::Prepare(std::size_t) {
    return true;
}

void ClipboardSink::Take(const WaveformRecord& record) {
    const std::size_t count = std::min(record.points, kClipboardPoints);
    std::string text(1, ' ');
    ForEachVolt(record, count, [&text](std::size_t, double volts) {
        AppendAmplitude(text, volts);
        text += '\n';
    });
    status_ = SystemClipboard().SetText(text, reason_);
    if (Succeeded(status_)) {
        points_ = static_cast<LONG>(count);
    }
}

bool TextFileSink::Prepare(std::size_t) {
    return true;
}

void TextFileSink::Take(const WaveformRecord& record) {
    if (kestrion::Failed(CreateOutputFile(path_, file_))) {
        failure_ = Failure::kOpen;
        return;
    }
    ForEachVolt(record, record.points, [this, &record](std::size_t index, double volts) {
        if (failure_ == Failure::kNone) {
            Append(record, index, volts);
            WriteGathered(kFileChunk);
        }
    });
    WriteGathered(1);
    file_.reset();
}

void TextFileSink::Append(const WaveformRecord& record, std::size_t index, double amplitude) {
    if (withScale_ && index >= kHeaderLines && record.format == PointFormat::kFloatLittle) {
        gathered_ += kFloatingPointColumns;
    } else if (withScale_) {
        AppendHeader(gathered_, record, index);
        const double first = record.xZero - record.pointOffset * record.xIncrement;
        AppendTime(gathered_, first + static_cast<double>(index) * record.xIncrement);
        gathered_ += ',';
    }
    AppendAmplitude(gathered_, amplitude);
    gathered_ += '\n';
}

void TextFileSink::WriteGathered(std::size_t least) {
    if (gathered_.size() < least || failure_ != Failure::kNone) {
        return;
    }
    if (kestrion::Failed(file_->Write(gathered_))) {
        failure_ = Failure::kWrite;
    }
    gathered_.clear();
}

}  // namespace kestrion
