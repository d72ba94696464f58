#include "cli/output_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <random>
#include <system_error>

#include "cli/failure.h"

namespace kestrion::cli {
namespace {

namespace fs = std::filesystem;

Failure CannotWrite(const fs::path& target, const std::string& reason) {
    return Failure(fmt::format("Cannot write '{}': {}.", target.string(), reason));
}

Failure CannotWrite(const fs::path& target, int error) {
    return CannotWrite(target, std::generic_category().message(error));
}

// The file behind a symbolic link, so that the link stays a link.
fs::path ResolveLink(const fs::path& target) {
    std::error_code error;
    if (!fs::is_symlink(target, error)) {
        return target;
    }
    fs::path resolved = fs::weakly_canonical(target, error);
    return error ? target : resolved;
}

}  // namespace

OutputFile::OutputFile(const fs::path& target) : target_(ResolveLink(target)) {
    std::error_code error;
    const fs::file_status status = fs::status(target_, error);
    if (fs::is_directory(status)) {
        throw CannotWrite(target_, EISDIR);
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        OpenDirectly();
    } else {
        OpenTemporary();
    }
}

OutputFile::~OutputFile() {
    file_.reset();
    if (!temporary_.empty()) {
        std::error_code ignored;
        fs::remove(temporary_, ignored);
    }
}

void OutputFile::OpenTemporary() {
    constexpr int kAttempts = 100;
    std::random_device random;
    int error = EEXIST;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        fs::path name = target_;
        name += fmt::format(".{:08x}.part", random());
        // "x" refuses a file that is there, so that no two writers share a name.
        file_.reset(std::fopen(name.string().c_str(), "wbx"));
        if (file_) {
            temporary_ = std::move(name);
            return;
        }
        error = errno;
        if (error != EEXIST) {
            break;
        }
    }
    throw CannotWrite(target_, error);
}

void OutputFile::OpenDirectly() {
    file_.reset(std::fopen(target_.string().c_str(), "wb"));
    if (!file_) {
        throw CannotWrite(target_, errno);
    }
}

void OutputFile::Write(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
        throw CannotWrite(target_, errno);
    }
}

void OutputFile::Commit() {
    // Closing writes what is still buffered, so it can fail as a write does.
    if (std::fclose(file_.release()) != 0) {
        throw CannotWrite(target_, errno);
    }
    if (temporary_.empty()) {
        return;
    }
    std::error_code error;
    fs::rename(temporary_, target_, error);
    if (error) {
        throw CannotWrite(target_, error.message());
    }
    temporary_.clear();
}

void CheckWritable(const fs::path& target) {
    const OutputFile probe(target);
}

}  // namespace kestrion::cli
