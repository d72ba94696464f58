#include "cli/npy_writer.h"

#include <gmock/gmock.h>

#include "tests/cli/failure_matcher.h"
#include "tests/cli/waveform_maker.h"
#include "tests/support/temporary_folder.h"

namespace kestrion::cli {
namespace {

std::string NpyOf(const Waveforms& waveforms) {
    const TemporaryFolder folder;
    OutputFile file(folder.File("a.npy"));
    WriteNpy(file, waveforms);
    file.Commit();
    return ReadFile(folder.File("a.npy"));
}

std::string SidecarOf(const Waveforms& waveforms, const InstrumentIdentity& identity) {
    const TemporaryFolder folder;
    OutputFile file(folder.File("a.json"));
    WriteNpySidecar(file, waveforms, identity);
    file.Commit();
    return ReadFile(folder.File("a.json"));
}

// 1.0 and -2.5 as little-endian IEEE 754 binary64.
const std::string kOne("\x00\x00\x00\x00\x00\x00\xF0\x3F", 8);
const std::string kMinusTwoAndAHalf("\x00\x00\x00\x00\x00\x00\x04\xC0", 8);

TEST(NpyWriter, OneSourceByteByByte) {
    // Magic, version 1.0, 118 bytes of header: 128 bytes up to the data.
    const std::string text = "{'descr': '<f8', 'fortran_order': False, 'shape': (2,), }";
    const std::string expected = std::string("\x93NUMPY\x01\x00\x76\x00", 10) + text +
                                 std::string(118 - text.size() - 1, ' ') + "\n" + kOne +
                                 kMinusTwoAndAHalf;
    EXPECT_EQ(NpyOf({MakeWaveform("CH1", {1, -2.5}, 0, 1)}), expected);
}

TEST(NpyWriter, SeveralSourcesAreRows) {
    const std::string bytes = NpyOf(
        {MakeWaveform("CH1", {1, 1, 1}, 0, 1), MakeWaveform("CH2", {-2.5, -2.5, -2.5}, 0, 1)});
    EXPECT_THAT(bytes, ::testing::HasSubstr("'shape': (2, 3), }"));
    ASSERT_EQ(bytes.size(), 128U + 48U);
    EXPECT_EQ(bytes.substr(128),
              kOne + kOne + kOne + kMinusTwoAndAHalf + kMinusTwoAndAHalf + kMinusTwoAndAHalf);
}

TEST(NpyWriter, TheDataStartsAtAMultipleOf64ForEveryShape) {
    for (const char* shape : {"1,", "100000000,", "12, 100000000"}) {
        const std::string header = NpyHeader(shape);
        EXPECT_EQ(header.size() % 64, 0U) << shape;
        EXPECT_EQ(header.back(), '\n');
        // The length of what follows the first ten bytes stands in the two before.
        EXPECT_EQ(
            static_cast<unsigned char>(header[8]) + 256U * static_cast<unsigned char>(header[9]),
            header.size() - 10);
    }
}

TEST(NpyWriter, ALongRecordIsWrittenInSeveralPieces) {
    std::vector<double> volts(std::size_t{3} << 20);
    volts.front() = 1;
    volts.back() = -2.5;
    const TemporaryFolder folder;
    OutputFile file(folder.File("a.npy"));
    std::vector<std::uint64_t> steps;
    WriteNpy(file, {MakeWaveform("CH1", volts, 0, 1)},
             [&](std::uint64_t done, std::uint64_t) { steps.push_back(done); });
    file.Commit();
    EXPECT_THAT(steps, ::testing::ElementsAre(1048576U, 2097152U, 3145728U));
    const std::string bytes = ReadFile(folder.File("a.npy"));
    ASSERT_EQ(bytes.size(), 128U + 8U * 3145728U);
    EXPECT_EQ(bytes.substr(128, 8), kOne);
    EXPECT_EQ(bytes.substr(bytes.size() - 8), kMinusTwoAndAHalf);
}

TEST(NpyWriter, RefusesSourcesWithDifferentTimeAxes) {
    const Waveforms waveforms{MakeWaveform("CH1", {1, 2}, 0, 1), MakeWaveform("REF1", {1}, 0, 1)};
    const TemporaryFolder folder;
    OutputFile file(folder.File("a.npy"));
    const Failure failure = ExpectFailure([&] { WriteNpy(file, waveforms); });
    EXPECT_STREQ(failure.what(),
                 "The sources don't share a time axis, which one array file needs.");
    EXPECT_EQ(failure.Hint(),
              "Write a CSV file, or capture each source into an array file of its own.");
    EXPECT_TRUE(FailureOf([&] { WriteNpySidecar(file, waveforms, {}); }).has_value());
}

TEST(NpySidecar, HoldsWhatTheArrayDoesNot) {
    EXPECT_EQ(SidecarOf({MakeWaveform("CH1", {1, 2}, -2e-6, 4e-10),
                         MakeWaveform("CH2", {1, 2}, -2e-6, 4e-10)},
                        {"Kestrion Instruments", "PL7254C", "C0\"1", "FV:10.8"}),
              "{\n"
              "  \"sources\": [\"CH1\", \"CH2\"],\n"
              "  \"points\": 2,\n"
              "  \"initial_x_s\": -2e-06,\n"
              "  \"x_increment_s\": 4e-10,\n"
              "  \"unit\": \"V\",\n"
              "  \"identity\": {\n"
              "    \"manufacturer\": \"Kestrion Instruments\",\n"
              "    \"model\": \"PL7254C\",\n"
              "    \"serial\": \"C0\\\"1\",\n"
              "    \"firmware\": \"FV:10.8\"\n"
              "  }\n"
              "}\n");
}

TEST(NpySidecar, TakesTheNameOfTheArray) {
    EXPECT_EQ(NpySidecarPath("run/a.npy"), "run/a.json");
    EXPECT_EQ(NpySidecarPath("run/a"), "run/a.json");
    EXPECT_EQ(NpySidecarPath("run/a.dat"), "run/a.dat.json");
}

}  // namespace
}  // namespace kestrion::cli
