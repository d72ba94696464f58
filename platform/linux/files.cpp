#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/text.h"

namespace kestrion {
namespace {

// The published status of a system error, so that callers see the same on every platform.
HRESULT StatusOf(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return MakeStatus(0x80070003U);
        case EMFILE:
        case ENFILE:
            return MakeStatus(0x80070004U);
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
        case ETXTBSY:
            return MakeStatus(0x80070005U);
        case EIO:
            return MakeStatus(0x8007001DU);
        case ENOSPC:
        case EDQUOT:
            return MakeStatus(0x80070070U);
        case ENAMETOOLONG:
            return MakeStatus(0x800700CEU);
        case EFBIG:
            return MakeStatus(0x800700DFU);
        default:
            return E_FAIL;
    }
}

HRESULT LastStatus() {
    return StatusOf(errno);
}

class DescriptorFile final : public OutputFile {
  public:
    explicit DescriptorFile(int descriptor) : descriptor_(descriptor) {}
    DescriptorFile(const DescriptorFile&) = delete;
    DescriptorFile& operator=(const DescriptorFile&) = delete;
    ~DescriptorFile() override { ::close(descriptor_); }

    HRESULT Write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
            if (written < 0 && errno == EINTR) {
                continue;
            }
            if (written < 0) {
                return LastStatus();
            }
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        return S_OK;
    }

    HRESULT Flush() override {
        // A pipe or a terminal has nothing to make safe, and says so with EINVAL.
        if (::fsync(descriptor_) == 0 || errno == EINVAL) {
            return S_OK;
        }
        return LastStatus();
    }

    HRESULT Size(std::uint64_t& size) override {
        struct stat found {};
        if (::fstat(descriptor_, &found) != 0) {
            return LastStatus();
        }
        size = static_cast<std::uint64_t>(found.st_size);
        return S_OK;
    }

  private:
    int descriptor_;
};

// Closes a descriptor that was opened for reading.
class ReadDescriptor {
  public:
    explicit ReadDescriptor(int descriptor) : descriptor_(descriptor) {}
    ReadDescriptor(const ReadDescriptor&) = delete;
    ReadDescriptor& operator=(const ReadDescriptor&) = delete;
    ~ReadDescriptor() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    [[nodiscard]] int Get() const { return descriptor_; }

  private:
    int descriptor_;
};

// The last error as a status, with its words as they stand within a sentence.
HRESULT LastStatus(std::string& reason) {
    const int error = errno;
    reason = std::generic_category().message(error);
    if (!reason.empty()) {
        reason.front() = ToLowerAscii(reason.front());
    }
    return StatusOf(error);
}

HRESULT TooLarge(std::uint64_t limit, std::string& reason) {
    reason = "it is larger than " + std::to_string(limit) + " bytes";
    return StatusOf(EFBIG);
}

}  // namespace

HRESULT ReadWholeFile(const std::string& path, std::uint64_t limit, std::string& content,
                      std::string& reason) {
    // A pipe without a writer must not hold the caller up.
    const ReadDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat found {};
    if (file.Get() < 0 || ::fstat(file.Get(), &found) != 0) {
        return LastStatus(reason);
    }
    if (!S_ISREG(found.st_mode)) {
        reason = S_ISDIR(found.st_mode) ? "it is a folder" : "it is no regular file";
        return StatusOf(EISDIR);
    }
    if (static_cast<std::uint64_t>(found.st_size) > limit) {
        return TooLarge(limit, reason);
    }
    std::string read;
    // The file may grow meanwhile, so that its size is only a guess; one byte more finds its end.
    read.resize(static_cast<std::size_t>(found.st_size) + 1);
    for (std::size_t length = 0;;) {
        const ssize_t count = ::read(file.Get(), read.data() + length, read.size() - length);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return LastStatus(reason);
        }
        length += static_cast<std::size_t>(count);
        if (length > limit) {
            return TooLarge(limit, reason);
        }
        if (count == 0) {
            read.resize(length);
            content = std::move(read);
            return S_OK;
        }
        if (length == read.size()) {
            read.resize(length * 2);
        }
    }
}

HRESULT CreateOutputFile(const std::string& path, std::unique_ptr<OutputFile>& file) {
    constexpr mode_t kReadableByAll = 0666;
    const int descriptor =
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kReadableByAll);
    if (descriptor < 0) {
        return LastStatus();
    }
    try {
        file = std::make_unique<DescriptorFile>(descriptor);
    } catch (const std::bad_alloc&) {
        ::close(descriptor);
        return E_OUTOFMEMORY;
    }
    return S_OK;
}

bool FileExists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error) && !std::filesystem::is_directory(path, error);
}

std::string CurrentDirectory() {
    std::error_code error;
    return std::filesystem::current_path(error).string();
}

std::string ResolvePath(std::string_view folder, std::string_view path) {
    const std::filesystem::path given(path);
    if (given.is_absolute()) {
        return std::string(path);
    }
    return (std::filesystem::path(folder) / given).lexically_normal().string();
}

std::string FolderOf(std::string_view path) {
    return std::filesystem::path(path).parent_path().string();
}

bool IsBareName(std::string_view path) {
    return path.find('/') == std::string_view::npos;
}

std::string_view ExtensionOf(std::string_view path) {
    const auto separator = path.rfind('/');
    const std::string_view name =
        separator == std::string_view::npos ? path : path.substr(separator + 1);
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot);
}

}  // namespace kestrion
