// A system for the trace to run on, in which the time stands still and files are texts.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/trace_writer.h"

namespace kestrion::test {

// What has become of a file, and how it is to fail.
struct FakeFile {
    std::string content;
    int flushes = 0;
    bool isOpen = true;
    std::uint64_t extraSize = 0;
    HRESULT writeStatus = S_OK;
    HRESULT flushStatus = S_OK;
    HRESULT sizeStatus = S_OK;
};

class FakeTraceHost final : public TraceHost {
  public:
    // 2024-03-09 14:05:07.089, at 1000 seconds since the epoch.
    WallTime now{1000, 2024, 3, 9, 14, 5, 7, 89};
    // Returned by Counter() and stepped afterwards.
    mutable std::uint64_t counter = 5000;
    std::uint64_t counterStep = 250;
    std::uint64_t frequency = 1000;
    std::string directory = "/data/run";
    std::string sharedFolder;
    std::set<std::string> existing;
    HRESULT createStatus = S_OK;
    HRESULT firstWriteStatus = S_OK;

    // Every file that was created, and its path.
    mutable std::vector<std::string> paths;
    mutable std::vector<std::shared_ptr<FakeFile>> files;

    [[nodiscard]] WallTime Now() const override { return now; }
    [[nodiscard]] std::uint64_t Counter() const override;
    [[nodiscard]] std::uint64_t CounterFrequency() const override { return frequency; }
    [[nodiscard]] std::string CurrentDirectory() const override { return directory; }
    [[nodiscard]] std::string SharedFolder() const override { return sharedFolder; }
    [[nodiscard]] bool FileExists(const std::string& path) const override {
        return existing.contains(path);
    }
    [[nodiscard]] HRESULT CreateOutputFile(const std::string& path,
                                           std::unique_ptr<OutputFile>& file) const override;

    // The latest file.
    [[nodiscard]] FakeFile& File() const { return *files.back(); }
    [[nodiscard]] const std::string& Content() const { return files.back()->content; }
};

// The document that Start() begins, without a stylesheet.
inline constexpr std::string_view kDocumentBegin =
    "<?xml version=\"1.0\"?>\r\n"
    "<TraceRecords>\r\n";

}  // namespace kestrion::test
