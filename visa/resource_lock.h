// Exclusive and shared locks of a resource among its sessions (VPP-4.3, section 3.6).
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "visa/signal.h"
#include "visa/visa.h"

namespace visa_provider {

// The locks of one resource. A holder is a session, told by its address. Thread-safe.
class ResourceLock {
  public:
    using Holder = const void*;

    // Makes a session one of those that the resource has. Before `Join` and after `Leave` it can't
    // have a lock.
    void Join(Holder holder);

    // Gives all locks of a session that is closed back, and ends its waits with VI_ERROR_ABORT.
    void Leave(Holder holder);

    // Takes a lock of `type` for `holder`, waiting for at most `timeout` milliseconds.
    // `requestedKey` is empty when the caller names none. `accessKey` becomes the key of a shared
    // lock and empty for an exclusive one.
    [[nodiscard]] ViStatus Acquire(Holder holder, ViAccessMode type, ViUInt32 timeout,
                                   const std::string& requestedKey, std::string& accessKey);

    // Gives the innermost lock of `holder` back.
    [[nodiscard]] ViStatus Release(Holder holder);

    // True when no lock of another session keeps `holder` from using the resource.
    [[nodiscard]] bool MayUse(Holder holder) const;

    // VI_NO_LOCK, VI_EXCLUSIVE_LOCK or VI_SHARED_LOCK, over all sessions.
    [[nodiscard]] ViAccessMode State() const;

  private:
    struct Counts {
        unsigned exclusive = 0;
        unsigned shared = 0;
    };

    [[nodiscard]] ViStatus TryExclusive(Holder holder, Counts& own);
    [[nodiscard]] ViStatus TryShared(Holder holder, Counts& own, const std::string& requestedKey);
    [[nodiscard]] bool OtherHasExclusive(Holder holder) const;
    [[nodiscard]] bool OtherHasShared(Holder holder) const;

    mutable std::mutex mutex_;
    Signal changed_;
    std::map<Holder, Counts> holders_;
    std::string key_;  // of the shared locks, while there are any
};

// The lock that all sessions of the process to the resource `name` have in common. Names that
// differ in capitals only are the same.
[[nodiscard]] std::shared_ptr<ResourceLock> LockOfResource(const std::string& name);

}  // namespace visa_provider
