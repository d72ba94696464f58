// Files for code that writes them or reads a whole one, and the few questions about paths that go
// with it. Paths are UTF-8, in the system's own notation.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "kestrion/platform/types.h"

namespace kestrion {

// A file that is written from front to end; closed when it is destroyed. One caller at a time.
// Failures are the system's, in the published form 0x8007xxxx, or E_FAIL for an uncommon one.
class OutputFile {
  public:
    virtual ~OutputFile() = default;
    // Writes all of it or fails.
    [[nodiscard]] virtual HRESULT Write(std::string_view bytes) = 0;
    // Returns when what was written is safe on the device.
    [[nodiscard]] virtual HRESULT Flush() = 0;
    // Bytes in the file.
    [[nodiscard]] virtual HRESULT Size(std::uint64_t& size) = 0;
};

// Opens a file that others may read meanwhile, in place of one that was there.
[[nodiscard]] HRESULT CreateOutputFile(const std::string& path, std::unique_ptr<OutputFile>& file);

// Reads a whole file of at most `limit` bytes into `content`. Folders, pipes and devices are no
// files here, so that this neither waits nor goes on for ever. A failure leaves `content` alone,
// says why in `reason`, as in "permission denied", and has a status as above: 0x80070003 where
// there is no such file, 0x800700DF for one beyond the limit.
[[nodiscard]] HRESULT ReadWholeFile(const std::string& path, std::uint64_t limit,
                                    std::string& content, std::string& reason);

// Whether there is something to read at `path` that isn't a folder.
[[nodiscard]] bool FileExists(const std::string& path);

// The process's current directory; empty when it is gone.
[[nodiscard]] std::string CurrentDirectory();

// `path` as it is when it is absolute; else joined to `folder`, without "." and "..".
[[nodiscard]] std::string ResolvePath(std::string_view folder, std::string_view path);
// The folder of a path, without the last separator; empty for a bare name.
[[nodiscard]] std::string FolderOf(std::string_view path);
// Whether a path is a file name and nothing else.
[[nodiscard]] bool IsBareName(std::string_view path);
// From the last dot of the file name on, the dot included; empty without one.
[[nodiscard]] std::string_view ExtensionOf(std::string_view path);

}  // namespace kestrion
