// Exclusive and shared locks of a session on its resource (VPP-4.3, section 3.6).
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "visa/call.h"
#include "visa/lock_file.h"
#include "visa/signal.h"
#include "visa/visa.h"

namespace visa_provider {

// One session's locks. They count against those of every other session to the resource on this
// computer (VPP-4.3, rule 3.6.8), which the lock file tells of. Thread-safe.
class ResourceLock {
  public:
    // A resource that this session has alone: no other lock can stand against its own.
    ResourceLock() : alone_(true) {}
    // A resource that others may have too. A null file, for a system that has no place for one,
    // refuses every lock with VI_ERROR_ALLOC.
    explicit ResourceLock(std::unique_ptr<LockFile> file) : alone_(false), file_(std::move(file)) {}

    // Gives all locks back, and ends waits with VI_ERROR_ABORT, now and later.
    void Close();

    // Takes a lock of `type`, waiting for at most the call's time-out. `requestedKey` is empty when
    // the caller names none. `accessKey` becomes the key of a shared lock and empty for an
    // exclusive one.
    [[nodiscard]] ViStatus Acquire(ViAccessMode type, const Call& call,
                                   const std::string& requestedKey, std::string& accessKey);

    // Gives the innermost lock back.
    [[nodiscard]] ViStatus Release();

    // True when no lock of another session keeps this one from using the resource.
    [[nodiscard]] bool MayUse() const;

    // VI_NO_LOCK, VI_EXCLUSIVE_LOCK or VI_SHARED_LOCK, over all sessions.
    [[nodiscard]] ViAccessMode State() const;

    // Lets those who wait look whether their call was stopped.
    void Wake() { changed_.Raise(); }

  private:
    using Part = LockFile::Part;
    using Held = LockFile::Held;

    [[nodiscard]] ViStatus TryExclusive();
    [[nodiscard]] ViStatus TryShared(const std::string& requestedKey);
    [[nodiscard]] ViStatus JoinOrBeginSharing(const std::string& requestedKey);
    // What an attempt came to; `mayChange` when another session may let the next one succeed.
    [[nodiscard]] ViStatus TryOnce(ViAccessMode type, const std::string& requestedKey,
                                   std::string& accessKey, bool& mayChange);
    [[nodiscard]] bool TryHold(Part part, Held how);
    void GiveBack(Part part);
    [[nodiscard]] Held HeldByOthers(Part part) const;

    mutable std::mutex mutex_;
    Signal changed_;
    const bool alone_;
    const std::unique_ptr<LockFile> file_;
    unsigned exclusive_ = 0;
    unsigned shared_ = 0;
    std::string key_;  // of the shared lock, while there is one
    bool closed_ = false;
};

}  // namespace visa_provider
