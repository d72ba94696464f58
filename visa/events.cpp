#include "visa/events.h"

#include <algorithm>
#include <utility>

namespace visa_provider {

namespace {

constexpr ViUInt16 kAllBits = VI_QUEUE | VI_HNDLR | VI_SUSPEND_HNDLR;

bool IsMechanismToEnable(ViUInt16 mechanism) {
    const bool bothModes = (mechanism & VI_HNDLR) != 0 && (mechanism & VI_SUSPEND_HNDLR) != 0;
    return mechanism != 0 && (mechanism & ~kAllBits) == 0 && !bothModes;
}

bool IsMechanism(ViUInt16 mechanism) {
    return mechanism == VI_ALL_MECH || (mechanism != 0 && (mechanism & ~kAllBits) == 0);
}

auto OfType(ViEventType type) {
    return [type](const Occurrence& occurrence) { return occurrence.type == type; };
}

std::optional<AttributeValue> CompletionAttribute(const IoCompletion& completion,
                                                  ViAttr attribute) {
    switch (attribute) {
        case VI_ATTR_STATUS:
            return completion.status;
        case VI_ATTR_JOB_ID:
            return completion.job;
        case VI_ATTR_BUFFER:
            return completion.buffer;
        case VI_ATTR_RET_COUNT_32:
            return static_cast<ViUInt32>(completion.count);
        case VI_ATTR_RET_COUNT_64:
            return static_cast<ViUInt64>(completion.count);
        case VI_ATTR_OPER_NAME:
            return completion.operation;
        default:
            return std::nullopt;
    }
}

std::optional<AttributeValue> FailureAttribute(const Failure& failure, ViAttr attribute) {
    switch (attribute) {
        case VI_ATTR_STATUS:
            return failure.status;
        case VI_ATTR_OPER_NAME:
            return std::string(failure.operation);
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<AttributeValue> EventContext::Attribute(ViAttr attribute) const {
    if (attribute == VI_ATTR_EVENT_TYPE) {
        return occurrence_.type;
    }
    if (occurrence_.failure) {
        return FailureAttribute(*occurrence_.failure, attribute);
    }
    return occurrence_.completion ? CompletionAttribute(*occurrence_.completion, attribute)
                                  : std::nullopt;
}

SessionEvents::SessionEvents(const std::vector<ViEventType>& supported,
                             std::shared_ptr<Signal> changed, Deliver deliver)
    : changed_(std::move(changed)), deliver_(std::move(deliver)) {
    for (const auto type : supported) {
        types_.emplace(type, TypeState{});
    }
    types_.emplace(VI_EVENT_EXCEPTION, TypeState{});
}

bool SessionEvents::IsKnown(ViEventType type) const {
    return type == VI_ALL_ENABLED_EVENTS || types_.contains(type);
}

// The types that a call is about: the one that it names, or all that are enabled in some way.
std::vector<ViEventType> SessionEvents::Concerned(ViEventType type) const {
    if (type != VI_ALL_ENABLED_EVENTS) {
        return {type};
    }
    std::vector<ViEventType> enabled;
    for (const auto& [known, state] : types_) {
        if (state.queues || state.callback != Callback::kDisabled) {
            enabled.push_back(known);
        }
    }
    return enabled;
}

// True when it was enabled before.
bool SessionEvents::EnableQueue(ViEventType type) {
    const std::lock_guard guard(mutex_);
    return std::exchange(types_.at(type).queues, true);
}

// Hands the oldest suspended occurrence of the type to the handlers, without the lock; false when
// there is none.
bool SessionEvents::HandOutOneSuspended(ViEventType type, std::unique_lock<std::mutex>& guard) {
    const auto found = std::ranges::find_if(suspended_, OfType(type));
    if (found == suspended_.end()) {
        return false;
    }
    const Occurrence occurrence = std::move(*found);
    suspended_.erase(found);
    const auto& installed = types_.at(type).handlers;
    const std::vector<Handler> handlers(installed.rbegin(), installed.rend());
    guard.unlock();
    deliver_(occurrence, handlers);
    guard.lock();
    return true;
}

// True when it was enabled in this mode before. What was kept while suspended goes to the handlers
// before the mode changes (VPP-4.3, rule 3.7.14).
bool SessionEvents::EnableCallback(ViEventType type, Callback mode) {
    std::unique_lock guard(mutex_);
    if (mode == Callback::kHandling && types_.at(type).callback != mode) {
        while (HandOutOneSuspended(type, guard)) {
        }
    }
    return std::exchange(types_.at(type).callback, mode) == mode;
}

ViStatus SessionEvents::Enable(ViEventType type, ViUInt16 mechanism) {
    const bool callback = (mechanism & (VI_HNDLR | VI_SUSPEND_HNDLR)) != 0;
    std::vector<ViEventType> concerned;
    {
        const std::lock_guard guard(mutex_);
        if (!IsKnown(type)) {
            return VI_ERROR_INV_EVENT;
        }
        if (!IsMechanismToEnable(mechanism)) {
            return VI_ERROR_INV_MECH;
        }
        if (type == VI_EVENT_EXCEPTION && mechanism != VI_HNDLR) {
            return VI_ERROR_NSUP_MECH;  // VPP-4.3, section 3.7.2
        }
        concerned = Concerned(type);
        if (mechanism != VI_HNDLR) {
            std::erase(concerned, VI_EVENT_EXCEPTION);
        }
        const auto hasNoHandler = [this](ViEventType one) {
            return types_.at(one).handlers.empty();
        };
        if (callback && std::ranges::any_of(concerned, hasNoHandler)) {
            return VI_ERROR_HNDLR_NINSTALLED;
        }
        wasEnabled_ = true;
    }
    bool wasOn = false;
    for (const auto one : concerned) {
        if ((mechanism & VI_QUEUE) != 0 && EnableQueue(one)) {
            wasOn = true;
        }
        const auto mode = (mechanism & VI_HNDLR) != 0 ? Callback::kHandling : Callback::kSuspended;
        if (callback && EnableCallback(one, mode)) {
            wasOn = true;
        }
    }
    return wasOn ? VI_SUCCESS_EVENT_EN : VI_SUCCESS;
}

ViStatus SessionEvents::Disable(ViEventType type, ViUInt16 mechanism) {
    bool wasOff = false;
    {
        const std::lock_guard guard(mutex_);
        if (!IsKnown(type)) {
            return VI_ERROR_INV_EVENT;
        }
        if (!IsMechanism(mechanism)) {
            return VI_ERROR_INV_MECH;
        }
        const auto concerned = Concerned(type);
        wasOff = concerned.empty();
        for (const auto one : concerned) {
            auto& state = types_.at(one);
            if ((mechanism & VI_QUEUE) != 0 && !std::exchange(state.queues, false)) {
                wasOff = true;
            }
            // Either name of the callback mechanism disables it, whatever its mode.
            if ((mechanism & (VI_HNDLR | VI_SUSPEND_HNDLR)) != 0 &&
                std::exchange(state.callback, Callback::kDisabled) == Callback::kDisabled) {
                wasOff = true;
            }
        }
    }
    changed_->Raise();  // a thread that waits for the event has to give up
    return wasOff ? VI_SUCCESS_EVENT_DIS : VI_SUCCESS;
}

ViStatus SessionEvents::Discard(ViEventType type, ViUInt16 mechanism) {
    const std::lock_guard guard(mutex_);
    if (!IsKnown(type)) {
        return VI_ERROR_INV_EVENT;
    }
    if (!IsMechanism(mechanism)) {
        return VI_ERROR_INV_MECH;
    }
    std::size_t discarded = 0;
    for (const auto one : Concerned(type)) {
        if ((mechanism & VI_QUEUE) != 0) {
            discarded += std::erase_if(queue_, OfType(one));
            types_.at(one).hasOverflowed = false;
        }
        if ((mechanism & VI_SUSPEND_HNDLR) != 0) {
            discarded += std::erase_if(suspended_, OfType(one));
        }
    }
    return discarded == 0 ? VI_SUCCESS_QUEUE_EMPTY : VI_SUCCESS;
}

ViStatus SessionEvents::InstallHandler(ViEventType type, const Handler& handler) {
    const std::lock_guard guard(mutex_);
    const auto state = types_.find(type);
    if (state == types_.end()) {
        return VI_ERROR_INV_EVENT;
    }
    if (handler.function == VI_ANY_HNDLR) {
        return VI_ERROR_INV_HNDLR_REF;
    }
    state->second.handlers.push_back(handler);
    return VI_SUCCESS;
}

ViStatus SessionEvents::UninstallHandler(ViEventType type, const Handler& handler) {
    const std::lock_guard guard(mutex_);
    const auto found = types_.find(type);
    if (found == types_.end()) {
        return VI_ERROR_INV_EVENT;
    }
    auto& state = found->second;
    if (state.handlers.empty()) {
        return VI_ERROR_HNDLR_NINSTALLED;
    }
    const auto removed = std::erase_if(state.handlers, [&handler](const Handler& installed) {
        return installed.userHandle == handler.userHandle &&
               (handler.function == VI_ANY_HNDLR || installed.function == handler.function);
    });
    if (removed == 0) {
        return VI_ERROR_INV_HNDLR_REF;
    }
    // VPP-4.3, rule 3.7.26: no handling without a handler.
    if (state.handlers.empty() && state.callback == Callback::kHandling) {
        state.callback = Callback::kDisabled;
    }
    return VI_SUCCESS;
}

ViStatus SessionEvents::Take(ViEventType type, Occurrence& taken) {
    const std::lock_guard guard(mutex_);
    if (!IsKnown(type)) {
        return VI_ERROR_INV_EVENT;
    }
    const auto matches = [type](const Occurrence& occurrence) {
        return type == VI_ALL_ENABLED_EVENTS || occurrence.type == type;
    };
    const auto found = std::ranges::find_if(queue_, matches);
    if (found == queue_.end()) {
        const bool mayCome = std::ranges::any_of(types_, [type](const auto& entry) {
            return entry.second.queues && (type == VI_ALL_ENABLED_EVENTS || entry.first == type);
        });
        return mayCome ? VI_ERROR_TMO : VI_ERROR_NENABLED;
    }
    taken = std::move(*found);
    queue_.erase(found);
    if (std::exchange(types_.at(taken.type).hasOverflowed, false)) {
        return VI_WARN_QUEUE_OVERFLOW;
    }
    return std::ranges::any_of(queue_, matches) ? VI_SUCCESS_QUEUE_NEMPTY : VI_SUCCESS;
}

// When the list is full, the newest occurrence is the one that is lost (VPP-4.3, rule 3.7.5).
bool SessionEvents::Keep(std::deque<Occurrence>& list, const Occurrence& occurrence) const {
    if (list.size() >= maxLength_) {
        return false;
    }
    list.push_back(occurrence);
    return true;
}

void SessionEvents::Raise(const Occurrence& occurrence) {
    std::vector<Handler> handlers;
    {
        const std::lock_guard guard(mutex_);
        auto& state = types_.at(occurrence.type);
        if (state.queues && !Keep(queue_, occurrence)) {
            state.hasOverflowed = true;
        }
        if (state.callback == Callback::kSuspended) {
            static_cast<void>(Keep(suspended_, occurrence));
        }
        if (state.callback == Callback::kHandling) {
            handlers.assign(state.handlers.rbegin(), state.handlers.rend());
        }
    }
    changed_->Raise();
    if (!handlers.empty()) {
        deliver_(occurrence, handlers);
    }
}

ViUInt32 SessionEvents::MaxQueueLength() const {
    const std::lock_guard guard(mutex_);
    return maxLength_;
}

ViStatus SessionEvents::SetMaxQueueLength(ViUInt32 length) {
    const std::lock_guard guard(mutex_);
    if (wasEnabled_) {
        return VI_ERROR_ATTR_READONLY;
    }
    if (length == 0) {
        return VI_ERROR_NSUP_ATTR_STATE;
    }
    maxLength_ = length;
    return VI_SUCCESS;
}

}  // namespace visa_provider
