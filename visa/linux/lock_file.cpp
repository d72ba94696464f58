// The file is a POSIX shared memory object, which every user's processes find under the same name
// and which is empty again after a restart. Its parts are bytes under "open file description"
// locks: those belong to the one opening of the file, so that two sessions of a process keep each
// other out as two processes do.
#include "visa/lock_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <thread>

#include "visa/resource_name.h"

namespace visa_provider {

namespace {

// Every user may lock.
constexpr mode_t kMode = 0666;
constexpr std::size_t kKeySize = 256;
// How often a file that somebody removes at this moment is opened anew, and how long after.
constexpr int kAttempts = 10000;
constexpr std::chrono::milliseconds kPause{1};

// A file name for a resource: 64-bit FNV-1a of the name in capitals.
std::string FileName(const std::string& resource) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : InCapitals(resource)) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    }
    constexpr char kDigits[] = "0123456789abcdef";
    std::string name = "/kestrion-visa-";
    for (int shift = 60; shift >= 0; shift -= 4) {
        name += kDigits[(hash >> shift) & 0xF];
    }
    return name;
}

// -1 with errno as the system left it.
int OpenOrMake(const std::string& name) {
    // Opening comes first: the system may refuse to make what another user has made already.
    int handle = shm_open(name.c_str(), O_RDWR, 0);
    if (handle < 0 && errno == ENOENT) {
        handle = shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, kMode);
        if (handle >= 0) {
            static_cast<void>(fchmod(handle, kMode));  // whatever the process masks out
        }
    }
    return handle;
}

bool IsGone(int handle) {
    struct stat status {};
    return fstat(handle, &status) != 0 || status.st_nlink == 0;
}

struct flock OneByte(LockFile::Part part, short type) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    // The key stands at the beginning of the file.
    lock.l_start = static_cast<off_t>(kKeySize) + static_cast<off_t>(part);
    lock.l_len = 1;
    return lock;
}

bool TryLock(int handle, LockFile::Part part, short type) {
    struct flock lock = OneByte(part, type);
    return fcntl(handle, F_OFD_SETLK, &lock) == 0;
}

}  // namespace

std::unique_ptr<LockFile> LockFile::Open(const std::string& resource) {
    std::string name = FileName(resource);
    // Whoever has the file last may be about to remove it, or have done so since the opening.
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const int handle = OpenOrMake(name);
        if (handle < 0) {
            if (errno == EEXIST) {
                continue;  // made by somebody else since the first try
            }
            return nullptr;
        }
        if (TryLock(handle, Part::kPresence, F_RDLCK) && !IsGone(handle)) {
            return std::unique_ptr<LockFile>(new LockFile(handle, std::move(name)));
        }
        close(handle);
        // The one who removes it may have to wait for a processor first.
        std::this_thread::sleep_for(kPause);
    }
    return nullptr;
}

LockFile::LockFile(int handle, std::string name) : handle_(handle), name_(std::move(name)) {}

LockFile::~LockFile() {
    // Nobody can be present who opens the file from here on: see Open.
    if (TryLock(handle_, Part::kPresence, F_WRLCK)) {
        static_cast<void>(shm_unlink(name_.c_str()));
    }
    close(handle_);
}

bool LockFile::TryHold(Part part, Held how) {
    return TryLock(handle_, part, how == Held::kAlone ? F_WRLCK : F_RDLCK);
}

void LockFile::GiveBack(Part part) {
    static_cast<void>(TryLock(handle_, part, F_UNLCK));
}

LockFile::Held LockFile::HeldByOthers(Part part) const {
    struct flock lock = OneByte(part, F_WRLCK);
    if (fcntl(handle_, F_OFD_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) {
        return Held::kNot;
    }
    return lock.l_type == F_RDLCK ? Held::kShared : Held::kAlone;
}

std::string LockFile::Key() const {
    std::array<char, kKeySize> key{};
    static_cast<void>(pread(handle_, key.data(), key.size(), 0));
    key.back() = '\0';
    return key.data();
}

bool LockFile::SetKey(const std::string& key) {
    std::array<char, kKeySize> padded{};
    key.copy(padded.data(), padded.size() - 1);
    return pwrite(handle_, padded.data(), padded.size(), 0) == static_cast<ssize_t>(padded.size());
}

}  // namespace visa_provider
