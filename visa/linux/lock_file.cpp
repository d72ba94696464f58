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
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <thread>

#include "visa/linux/lock_notice.h"
#include "visa/resource_name.h"
#include "visa/time_limit.h"

namespace visa_provider {

namespace {

// Every user may lock.
constexpr mode_t kMode = 0666;
constexpr std::size_t kKeySize = 256;
// How often a file that somebody removes at this moment is opened anew, and how long after.
constexpr int kAttempts = 10000;
constexpr std::chrono::milliseconds kPause{1};

// 64-bit FNV-1a.
std::uint64_t HashOf(const std::string& text) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    }
    return hash;
}

std::string FileName(std::uint64_t hash) {
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

// The parts that are held for longer than a moment have a place in the notice.
bool IsNoticed(LockFile::Part part) {
    return part == LockFile::Part::kResource || part == LockFile::Part::kAmongSharers;
}

}  // namespace

// What is known without asking the file. Its numbers are changed under the lock of the session that
// the file belongs to; `askedAt` by whoever looks.
struct LockFile::Shortcut {
    explicit Shortcut(std::uint64_t hash) : notice(hash) {}
    ~Shortcut() {
        for (const auto& part : held) {
            if (part) {
                notice.Lower();
            }
        }
    }
    Shortcut(const Shortcut&) = delete;
    Shortcut& operator=(const Shortcut&) = delete;

    [[nodiscard]] std::atomic<bool>& Holds(Part part) {
        return held[static_cast<std::size_t>(part)];
    }
    [[nodiscard]] bool NobodyElseNoticed() const {
        return notice.Exists() && notice.Count() == (held[0] ? 1U : 0U) + (held[1] ? 1U : 0U);
    }

    LockNotice notice;
    std::array<std::atomic<bool>, 2> held{};
    std::atomic<Clock::rep> askedAt = 0;  // 0: never
};

std::unique_ptr<LockFile> LockFile::Open(const std::string& resource) {
    const std::uint64_t hash = HashOf(InCapitals(resource));
    std::string name = FileName(hash);
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
            return std::unique_ptr<LockFile>(new LockFile(handle, std::move(name), hash));
        }
        close(handle);
        // The one who removes it may have to wait for a processor first.
        std::this_thread::sleep_for(kPause);
    }
    return nullptr;
}

LockFile::LockFile(int handle, std::string name, std::uint64_t hash)
    : handle_(handle), name_(std::move(name)), shortcut_(std::make_unique<Shortcut>(hash)) {}

LockFile::~LockFile() {
    // Nobody can be present who opens the file from here on: see Open.
    if (TryLock(handle_, Part::kPresence, F_WRLCK)) {
        static_cast<void>(shm_unlink(name_.c_str()));
    }
    close(handle_);
}

bool LockFile::TryHold(Part part, Held how) {
    const short type = how == Held::kAlone ? F_WRLCK : F_RDLCK;
    if (!IsNoticed(part) || shortcut_->Holds(part)) {
        return TryLock(handle_, part, type);
    }
    // Told before it is so: nobody may see the lock and not the notice.
    shortcut_->notice.Raise();
    if (!TryLock(handle_, part, type)) {
        shortcut_->notice.Lower();
        return false;
    }
    shortcut_->Holds(part) = true;
    return true;
}

void LockFile::GiveBack(Part part) {
    static_cast<void>(TryLock(handle_, part, F_UNLCK));
    if (IsNoticed(part) && shortcut_->Holds(part).exchange(false)) {
        shortcut_->notice.Lower();
    }
}

bool LockFile::IsFreeOfOthers(Part part) {
    const Clock::rep now = Clock::now().time_since_epoch().count();
    const Clock::rep asked = shortcut_->askedAt;
    if (asked != 0 && now - asked < Clock::duration(kNoticeAge).count() &&
        shortcut_->NobodyElseNoticed()) {
        return true;
    }
    const bool isFree = HeldByOthers(part) == Held::kNot;
    shortcut_->askedAt = isFree ? now : 0;
    return isFree;
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
