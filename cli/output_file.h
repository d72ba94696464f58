// A file that appears under its name only when it is complete.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>

namespace kestrion::cli {

// Writes to a temporary name in the folder of the target. Without Commit, the destructor removes
// it and leaves what stood under the target's name untouched. A target that is there and is no
// regular file (a device, a pipe) is written directly. Every failure throws Failure, which names
// the target and the system's reason.
class OutputFile {
  public:
    explicit OutputFile(const std::filesystem::path& target);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    void Write(std::string_view bytes);
    // Flushes, closes and gives the file its name.
    void Commit();

    [[nodiscard]] const std::filesystem::path& Target() const { return target_; }

  private:
    struct Closer {
        void operator()(std::FILE* file) const { (void)std::fclose(file); }
    };

    void OpenTemporary();
    void OpenDirectly();

    std::filesystem::path target_;
    // Empty when the target is written directly, and after Commit.
    std::filesystem::path temporary_;
    std::unique_ptr<std::FILE, Closer> file_;
};

// Throws what the constructor of OutputFile would throw, and leaves nothing behind: asked before
// the work begins whose result is to be written.
void CheckWritable(const std::filesystem::path& target);

}  // namespace kestrion::cli
