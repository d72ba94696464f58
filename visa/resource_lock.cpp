#include "visa/resource_lock.h"

#include <random>
#include <thread>
#include <utility>

#include "visa/time_limit.h"

namespace visa_provider {

namespace {

// A requested key has fewer characters than this (VPP-4.3, rule 3.6.17).
constexpr std::size_t kKeyLimit = 256;

// Other processes can't wake those who wait here, so they look this often.
constexpr std::chrono::milliseconds kLookAgain(2);

// A key that no other host makes: 128 random bits.
std::string NewKey() {
    constexpr char kDigits[] = "0123456789abcdef";
    std::random_device random;
    std::string key = "kestrion-";
    for (int i = 0; i < 32; ++i) {
        key += kDigits[random() % 16];
    }
    return key;
}

}  // namespace

bool ResourceLock::TryHold(Part part, Held how) {
    return !file_ || file_->TryHold(part, how);
}

void ResourceLock::GiveBack(Part part) {
    if (file_) {
        file_->GiveBack(part);
    }
}

LockFile::Held ResourceLock::HeldByOthers(Part part) const {
    return file_ ? file_->HeldByOthers(part) : Held::kNot;
}

ViStatus ResourceLock::TryExclusive() {
    if (exclusive_ > 0) {
        ++exclusive_;
        return VI_SUCCESS_NESTED_EXCLUSIVE;
    }
    if (!TryHold(shared_ > 0 ? Part::kAmongSharers : Part::kResource, Held::kAlone)) {
        return VI_ERROR_RSRC_LOCKED;
    }
    ++exclusive_;
    return VI_SUCCESS;
}

// Called with the file's guard held.
ViStatus ResourceLock::JoinOrBeginSharing(const std::string& requestedKey) {
    std::string key = requestedKey;
    switch (HeldByOthers(Part::kResource)) {
        case Held::kAlone:
            return VI_ERROR_RSRC_LOCKED;
        case Held::kShared:
            if (requestedKey.empty()) {
                return VI_ERROR_RSRC_LOCKED;
            }
            if (requestedKey != file_->Key()) {
                return VI_ERROR_INV_ACCESS_KEY;
            }
            break;
        case Held::kNot:
            if (key.empty()) {
                key = NewKey();
            }
            if (file_ && !file_->SetKey(key)) {
                return VI_ERROR_ALLOC;
            }
    }
    if (!TryHold(Part::kResource, Held::kShared)) {
        return VI_ERROR_RSRC_LOCKED;  // somebody took it exclusively meanwhile
    }
    key_ = std::move(key);
    return VI_SUCCESS;
}

ViStatus ResourceLock::TryShared(const std::string& requestedKey) {
    if (exclusive_ > 0) {
        return VI_ERROR_RSRC_LOCKED;  // no way back from exclusive to shared (rule 3.6.12)
    }
    if (shared_ > 0) {
        if (!requestedKey.empty() && requestedKey != key_) {
            return VI_ERROR_INV_ACCESS_KEY;
        }
        ++shared_;
        return VI_SUCCESS_NESTED_SHARED;
    }
    // The guard is held for moments only. A process that was halted with it is not waited for.
    constexpr int kAttempts = 100;
    for (int attempt = 0; !TryHold(Part::kGuard, Held::kAlone); ++attempt) {
        if (attempt == kAttempts) {
            return VI_ERROR_RSRC_LOCKED;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    const ViStatus status = JoinOrBeginSharing(requestedKey);
    GiveBack(Part::kGuard);
    if (status >= 0) {
        ++shared_;
    }
    return status;
}

ViStatus ResourceLock::TryOnce(ViAccessMode type, const std::string& requestedKey,
                               std::string& accessKey, bool& mayChange) {
    const std::lock_guard guard(mutex_);
    mayChange = false;
    if (closed_) {
        return VI_ERROR_ABORT;
    }
    const bool isExclusive = type == VI_EXCLUSIVE_LOCK;
    // What the session itself holds doesn't go away while it waits.
    mayChange = isExclusive || (exclusive_ == 0 && shared_ == 0);
    const ViStatus status = isExclusive ? TryExclusive() : TryShared(requestedKey);
    if (status >= 0) {
        accessKey = isExclusive ? std::string() : key_;
    }
    return status;
}

ViStatus ResourceLock::Acquire(ViAccessMode type, const Call& call, const std::string& requestedKey,
                               std::string& accessKey) {
    if (type != VI_EXCLUSIVE_LOCK && type != VI_SHARED_LOCK) {
        return VI_ERROR_INV_LOCK_TYPE;
    }
    if (type == VI_SHARED_LOCK && requestedKey.size() >= kKeyLimit) {
        return VI_ERROR_INV_ACCESS_KEY;
    }
    if (!alone_ && !file_) {
        return VI_ERROR_ALLOC;  // better refused than held against nobody
    }
    const Deadline deadline = DeadlineAfter(call.Timeout(), Clock::now());
    for (;;) {
        const auto seen = changed_.Count();
        if (call.IsStopped()) {
            return VI_ERROR_ABORT;
        }
        bool mayChange = false;
        const ViStatus status = TryOnce(type, requestedKey, accessKey, mayChange);
        if (status >= 0 || !mayChange) {
            return status;
        }
        if (HasPassed(deadline, Clock::now())) {
            const bool gaveUpAfterWait =
                call.Timeout() != VI_TMO_IMMEDIATE && status == VI_ERROR_RSRC_LOCKED;
            return gaveUpAfterWait ? VI_ERROR_TMO : status;
        }
        changed_.WaitForChange(seen, Earlier(deadline, Clock::now() + kLookAgain));
    }
}

ViStatus ResourceLock::Release() {
    const std::lock_guard guard(mutex_);
    if (exclusive_ > 0) {
        if (--exclusive_ == 0) {
            GiveBack(shared_ > 0 ? Part::kAmongSharers : Part::kResource);
        }
    } else if (shared_ > 0) {
        if (--shared_ == 0) {
            GiveBack(Part::kResource);
        }
    } else {
        return VI_ERROR_SESN_NLOCKED;
    }
    if (exclusive_ > 0) {
        return VI_SUCCESS_NESTED_EXCLUSIVE;
    }
    return shared_ > 0 ? VI_SUCCESS_NESTED_SHARED : VI_SUCCESS;
}

void ResourceLock::Close() {
    {
        const std::lock_guard guard(mutex_);
        closed_ = true;
        exclusive_ = 0;
        shared_ = 0;
        GiveBack(Part::kAmongSharers);
        GiveBack(Part::kResource);
    }
    changed_.Raise();
}

bool ResourceLock::MayUse() const {
    const std::lock_guard guard(mutex_);
    if (exclusive_ > 0) {
        return true;
    }
    return !file_ || file_->IsFreeOfOthers(shared_ > 0 ? Part::kAmongSharers : Part::kResource);
}

ViAccessMode ResourceLock::State() const {
    const std::lock_guard guard(mutex_);
    const Held resource = HeldByOthers(Part::kResource);
    if (exclusive_ > 0 || resource == Held::kAlone ||
        HeldByOthers(Part::kAmongSharers) == Held::kAlone) {
        return VI_EXCLUSIVE_LOCK;
    }
    return shared_ > 0 || resource == Held::kShared ? VI_SHARED_LOCK : VI_NO_LOCK;
}

}  // namespace visa_provider
