#include "cli/npy_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>

#include "cli/failure.h"
#include "cli/json.h"

namespace kestrion::cli {
namespace {

// The header says '<f8' and the points go out as they lie in memory.
static_assert(std::endian::native == std::endian::little,
              "points are written without swapping their bytes");

constexpr std::size_t kChunkPoints = std::size_t{1} << 20;
// Magic bytes, two version bytes and the 16-bit length of what follows.
constexpr std::size_t kPreambleSize = 10;
constexpr std::size_t kAlignment = 64;

std::size_t CommonPoints(const Waveforms& waveforms) {
    if (!ShareTimeAxis(waveforms)) {
        throw Failure("The sources don't share a time axis, which one array file needs.",
                      "Write a CSV file, or capture each source into an array file of its own.");
    }
    return waveforms.front().volts.size();
}

std::string_view BytesOf(std::span<const double> values) {
    return {reinterpret_cast<const char*>(values.data()), values.size_bytes()};
}

}  // namespace

std::string NpyHeader(const std::string& dimensions) {
    std::string text =
        fmt::format("{{'descr': '<f8', 'fortran_order': False, 'shape': ({}), }}", dimensions);
    const std::size_t unpadded = kPreambleSize + text.size() + 1;
    text.append((kAlignment - unpadded % kAlignment) % kAlignment, ' ');
    text += '\n';

    std::string header("\x93NUMPY\x01\x00", 8);
    header += static_cast<char>(text.size() & 0xFFU);
    header += static_cast<char>(text.size() >> 8U);
    return header + text;
}

void WriteNpy(OutputFile& file, const Waveforms& waveforms, const WriterProgress& progress) {
    const std::size_t points = CommonPoints(waveforms);
    file.Write(NpyHeader(waveforms.size() == 1 ? fmt::format("{},", points)
                                               : fmt::format("{}, {}", waveforms.size(), points)));
    const std::size_t total = points * waveforms.size();
    std::size_t done = 0;
    for (const Waveform& waveform : waveforms) {
        for (std::size_t start = 0; start < points; start += kChunkPoints) {
            const std::size_t count = std::min(kChunkPoints, points - start);
            file.Write(BytesOf(waveform.volts.subspan(start, count)));
            done += count;
            Tell(progress, done, total);
        }
    }
}

void WriteNpySidecar(OutputFile& file, const Waveforms& waveforms,
                     const InstrumentIdentity& identity) {
    const std::size_t points = CommonPoints(waveforms);
    std::string sources;
    for (const Waveform& waveform : waveforms) {
        sources += (sources.empty() ? "" : ", ") + JsonText(waveform.source);
    }
    std::string text = "{\n";
    text += fmt::format("  \"sources\": [{}],\n", sources);
    text += fmt::format("  \"points\": {},\n", points);
    text += fmt::format("  \"initial_x_s\": {},\n", JsonNumber(waveforms.front().initialX));
    text += fmt::format("  \"x_increment_s\": {},\n", JsonNumber(waveforms.front().xIncrement));
    text += "  \"unit\": \"V\",\n";
    text += "  \"identity\": {\n";
    text += fmt::format("    \"manufacturer\": {},\n", JsonText(identity.manufacturer));
    text += fmt::format("    \"model\": {},\n", JsonText(identity.model));
    text += fmt::format("    \"serial\": {},\n", JsonText(identity.serial));
    text += fmt::format("    \"firmware\": {}\n", JsonText(identity.firmware));
    file.Write(text + "  }\n}\n");
}

std::filesystem::path NpySidecarPath(const std::filesystem::path& array) {
    std::filesystem::path path = array;
    if (array.extension() == ".npy") {
        return path.replace_extension(".json");
    }
    return path += ".json";
}

}  // namespace kestrion::cli
