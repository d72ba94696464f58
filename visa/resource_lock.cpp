#include "visa/resource_lock.h"

#include <algorithm>
#include <random>

#include "visa/resource_name.h"

namespace visa_provider {

namespace {

// A requested key has fewer characters than this (VPP-4.3, rule 3.6.17).
constexpr std::size_t kKeyLimit = 256;

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

bool ResourceLock::OtherHasExclusive(Holder holder) const {
    return std::ranges::any_of(holders_, [holder](const auto& entry) {
        return entry.first != holder && entry.second.exclusive > 0;
    });
}

bool ResourceLock::OtherHasShared(Holder holder) const {
    return std::ranges::any_of(holders_, [holder](const auto& entry) {
        return entry.first != holder && entry.second.shared > 0;
    });
}

ViStatus ResourceLock::TryExclusive(Holder holder, Counts& own) {
    if (own.exclusive > 0) {
        ++own.exclusive;
        return VI_SUCCESS_NESTED_EXCLUSIVE;
    }
    if (OtherHasExclusive(holder) || (own.shared == 0 && OtherHasShared(holder))) {
        return VI_ERROR_RSRC_LOCKED;
    }
    ++own.exclusive;
    return VI_SUCCESS;
}

ViStatus ResourceLock::TryShared(Holder holder, Counts& own, const std::string& requestedKey) {
    if (own.exclusive > 0) {
        return VI_ERROR_RSRC_LOCKED;  // no way back from exclusive to shared (rule 3.6.12)
    }
    if (own.shared > 0) {
        if (!requestedKey.empty() && requestedKey != key_) {
            return VI_ERROR_INV_ACCESS_KEY;
        }
        ++own.shared;
        return VI_SUCCESS_NESTED_SHARED;
    }
    if (OtherHasShared(holder)) {
        if (requestedKey.empty()) {
            return VI_ERROR_RSRC_LOCKED;
        }
        if (requestedKey != key_) {
            return VI_ERROR_INV_ACCESS_KEY;
        }
    } else if (OtherHasExclusive(holder)) {
        return VI_ERROR_RSRC_LOCKED;
    } else {
        key_ = requestedKey.empty() ? NewKey() : requestedKey;
    }
    ++own.shared;
    return VI_SUCCESS;
}

ViStatus ResourceLock::Acquire(Holder holder, ViAccessMode type, ViUInt32 timeout,
                               const std::string& requestedKey, std::string& accessKey) {
    if (type != VI_EXCLUSIVE_LOCK && type != VI_SHARED_LOCK) {
        return VI_ERROR_INV_LOCK_TYPE;
    }
    if (type == VI_SHARED_LOCK && requestedKey.size() >= kKeyLimit) {
        return VI_ERROR_INV_ACCESS_KEY;
    }
    const Deadline deadline = DeadlineAfter(timeout, Clock::now());
    for (;;) {
        const auto seen = changed_.Count();
        ViStatus status = VI_SUCCESS;
        {
            const std::lock_guard guard(mutex_);
            const auto entry = holders_.find(holder);
            if (entry == holders_.end()) {
                return VI_ERROR_ABORT;
            }
            auto& own = entry->second;
            const bool isExclusive = type == VI_EXCLUSIVE_LOCK;
            const bool mayWait = isExclusive || (own.exclusive == 0 && own.shared == 0);
            status = isExclusive ? TryExclusive(holder, own) : TryShared(holder, own, requestedKey);
            if (status >= 0) {
                accessKey = isExclusive ? std::string() : key_;
                return status;
            }
            // What the session itself holds doesn't go away while it waits.
            if (!mayWait) {
                return status;
            }
        }
        if (HasPassed(deadline, Clock::now())) {
            const bool gaveUpAfterWait =
                timeout != VI_TMO_IMMEDIATE && status == VI_ERROR_RSRC_LOCKED;
            return gaveUpAfterWait ? VI_ERROR_TMO : status;
        }
        changed_.WaitForChange(seen, deadline);
    }
}

ViStatus ResourceLock::Release(Holder holder) {
    ViStatus status = VI_SUCCESS;
    {
        const std::lock_guard guard(mutex_);
        const auto entry = holders_.find(holder);
        if (entry == holders_.end()) {
            return VI_ERROR_SESN_NLOCKED;
        }
        auto& own = entry->second;
        if (own.exclusive == 0 && own.shared == 0) {
            return VI_ERROR_SESN_NLOCKED;
        }
        --(own.exclusive > 0 ? own.exclusive : own.shared);
        if (own.exclusive > 0) {
            status = VI_SUCCESS_NESTED_EXCLUSIVE;
        } else if (own.shared > 0) {
            status = VI_SUCCESS_NESTED_SHARED;
        }
    }
    changed_.Raise();
    return status;
}

void ResourceLock::Join(Holder holder) {
    const std::lock_guard guard(mutex_);
    holders_.try_emplace(holder);
}

void ResourceLock::Leave(Holder holder) {
    {
        const std::lock_guard guard(mutex_);
        holders_.erase(holder);
    }
    changed_.Raise();
}

bool ResourceLock::MayUse(Holder holder) const {
    const std::lock_guard guard(mutex_);
    if (OtherHasExclusive(holder)) {
        return false;
    }
    if (!OtherHasShared(holder)) {
        return true;
    }
    const auto own = holders_.find(holder);
    return own != holders_.end() && (own->second.shared > 0 || own->second.exclusive > 0);
}

ViAccessMode ResourceLock::State() const {
    const std::lock_guard guard(mutex_);
    if (OtherHasExclusive(nullptr)) {
        return VI_EXCLUSIVE_LOCK;
    }
    return OtherHasShared(nullptr) ? VI_SHARED_LOCK : VI_NO_LOCK;
}

std::shared_ptr<ResourceLock> LockOfResource(const std::string& name) {
    struct Registry {
        std::mutex mutex;
        std::map<std::string, std::weak_ptr<ResourceLock>> locks;
    };
    static auto& registry = *new Registry;  // as long-lived as the sessions
    const std::lock_guard guard(registry.mutex);
    std::erase_if(registry.locks, [](const auto& entry) { return entry.second.expired(); });
    auto& known = registry.locks[InCapitals(name)];
    auto lock = known.lock();
    if (!lock) {
        lock = std::make_shared<ResourceLock>();
        known = lock;
    }
    return lock;
}

}  // namespace visa_provider
