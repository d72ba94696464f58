// The events of one session (VPP-4.3, section 3.7).
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "visa/object.h"
#include "visa/signal.h"
#include "visa/visa.h"

namespace visa_provider {

// How an asynchronous operation ended.
struct IoCompletion {
    ViStatus status = VI_SUCCESS;
    ViJobId job = 0;
    ViAddr buffer = nullptr;
    std::size_t count = 0;
    std::string operation;
};

// What a function of the session failed with.
struct Failure {
    ViStatus status = VI_SUCCESS;
    const char* operation = "";  // its name, a literal
};

// One occurrence of an event.
struct Occurrence {
    ViEventType type = 0;
    std::optional<IoCompletion> completion;  // with VI_EVENT_IO_COMPLETION only
    std::optional<Failure> failure;          // with VI_EVENT_EXCEPTION only
};

// What a handle of an event stands for: an occurrence that was handed to the application.
class EventContext final : public Object {
  public:
    explicit EventContext(Occurrence occurrence) : occurrence_(std::move(occurrence)) {}
    [[nodiscard]] std::optional<AttributeValue> Attribute(ViAttr attribute) const override;

  private:
    const Occurrence occurrence_;
};

struct Handler {
    ViHndlr function = nullptr;
    ViAddr userHandle = nullptr;
    bool operator==(const Handler&) const = default;
};

// Queue and callback mechanism of a session. All members may be called from any thread; handlers
// are called with no lock held, so that they may call any member.
class SessionEvents {
  public:
    // Calls the handlers for an occurrence, the first one of the list first.
    using Deliver = std::function<void(const Occurrence&, const std::vector<Handler>&)>;

    static constexpr ViUInt32 kDefaultQueueLength = 50;

    // `supported` are the types that the session has beside VI_EVENT_EXCEPTION, which every one has
    // and which knows no mechanism but VI_HNDLR; `changed` is raised with each occurrence.
    SessionEvents(const std::vector<ViEventType>& supported, std::shared_ptr<Signal> changed,
                  Deliver deliver);

    [[nodiscard]] ViStatus Enable(ViEventType type, ViUInt16 mechanism);
    [[nodiscard]] ViStatus Disable(ViEventType type, ViUInt16 mechanism);
    [[nodiscard]] ViStatus Discard(ViEventType type, ViUInt16 mechanism);
    [[nodiscard]] ViStatus InstallHandler(ViEventType type, const Handler& handler);
    // A null function stands for every handler with that user handle.
    [[nodiscard]] ViStatus UninstallHandler(ViEventType type, const Handler& handler);

    // Takes the oldest queued occurrence of the type. VI_ERROR_TMO when there is none yet,
    // VI_ERROR_NENABLED when none can come.
    [[nodiscard]] ViStatus Take(ViEventType type, Occurrence& taken);

    // Tells of an occurrence: queues it and calls the handlers, as far as that is enabled.
    void Raise(const Occurrence& occurrence);

    // The most occurrences that each of the two mechanisms keeps. It can be set until the first
    // `Enable` (VPP-4.3, rules 3.2.5 and 3.2.6).
    [[nodiscard]] ViUInt32 MaxQueueLength() const;
    [[nodiscard]] ViStatus SetMaxQueueLength(ViUInt32 length);

  private:
    enum class Callback { kDisabled, kHandling, kSuspended };

    struct TypeState {
        bool queues = false;
        bool hasOverflowed = false;
        Callback callback = Callback::kDisabled;
        std::vector<Handler> handlers;  // in the order of their installation
    };

    [[nodiscard]] bool IsKnown(ViEventType type) const;
    [[nodiscard]] std::vector<ViEventType> Concerned(ViEventType type) const;
    [[nodiscard]] bool EnableQueue(ViEventType type);
    [[nodiscard]] bool EnableCallback(ViEventType type, Callback mode);
    [[nodiscard]] bool HandOutOneSuspended(ViEventType type, std::unique_lock<std::mutex>& guard);
    [[nodiscard]] bool Keep(std::deque<Occurrence>& list, const Occurrence& occurrence) const;

    const std::shared_ptr<Signal> changed_;
    const Deliver deliver_;

    mutable std::mutex mutex_;
    std::map<ViEventType, TypeState> types_;
    std::deque<Occurrence> queue_;
    std::deque<Occurrence> suspended_;
    ViUInt32 maxLength_ = kDefaultQueueLength;
    bool wasEnabled_ = false;
};

}  // namespace visa_provider
