// What the sessions to one resource tell each other about its locks, in all processes of this
// computer.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

namespace visa_provider {

// A small file with parts that can be held, shared or alone, by each of the `LockFile` objects that
// were opened under its name, in whatever process they are. The system gives back what a process
// that ended held. It is gone with the last object. Thread-safe but for the key.
class LockFile {
  public:
    enum class Part : long {
        kResource = 0,  // alone: exclusive lock; shared: shared lock
        kAmongSharers,  // alone: exclusive lock of a session that has a shared one
        kGuard,         // alone: for the time in which the key is looked at and set
        kPresence,      // shared: the object exists
    };
    enum class Held { kNot, kShared, kAlone };

    // Null if the system has no place for such a file. The same resource gives the same file,
    // in capitals or not.
    [[nodiscard]] static std::unique_ptr<LockFile> Open(const std::string& resource);
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    // Takes a part at once, or not at all.
    [[nodiscard]] bool TryHold(Part part, Held how);
    void GiveBack(Part part);
    // How others hold the part.
    [[nodiscard]] Held HeldByOthers(Part part) const;
    // Whether nobody else holds a part that is held for long, as far as can be known without asking
    // the system each time: what a process tells that can't reach the memory in which the others
    // tell it is noticed within `kNoticeAge`.
    [[nodiscard]] bool IsFreeOfOthers(Part part);
    static constexpr std::chrono::milliseconds kNoticeAge{100};

    // The key of the shared locks; meaningful while somebody shares. Called with the guard held.
    [[nodiscard]] std::string Key() const;
    [[nodiscard]] bool SetKey(const std::string& key);

  private:
    struct Shortcut;

    LockFile(int handle, std::string name, std::uint64_t hash);

    const int handle_;
    const std::string name_;
    const std::unique_ptr<Shortcut> shortcut_;
};

}  // namespace visa_provider
