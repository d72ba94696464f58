// A session to one instrument.
#pragma once

#include <atomic>
#include <memory>
#include <span>

#include "visa/events.h"
#include "visa/link.h"
#include "visa/object.h"
#include "visa/resource_lock.h"
#include "visa/resource_name.h"
#include "visa/running_calls.h"
#include "visa/signal.h"

namespace visa_provider {

// Joins the link with what every session has: attributes, locks and events. Made in a shared_ptr,
// which each call holds while it runs, so that a session may be closed under a call that waits.
class Session final : public Object, public std::enable_shared_from_this<Session> {
  public:
    // `changed` is raised by the link too, when it has something new for a thread that waits.
    Session(ViSession manager, ResourceName name, std::unique_ptr<Link> link,
            std::shared_ptr<Signal> changed, std::unique_ptr<ResourceLock> lock);

    [[nodiscard]] std::optional<AttributeValue> Attribute(ViAttr attribute) const override;
    [[nodiscard]] ViStatus SetAttribute(ViAttr attribute, ViAttrState state) override;
    void Close() override;
    // Raises VI_EVENT_EXCEPTION.
    void TellFailure(ViStatus status, const char* operation) override;

    // The basic operations; VI_ERROR_RSRC_LOCKED while another session has the resource locked.
    // `job` is the number of an asynchronous one.
    [[nodiscard]] Transfer Read(std::span<std::byte> target, ViJobId job = 0);
    [[nodiscard]] Transfer Write(std::span<const std::byte> bytes, ViJobId job = 0);
    [[nodiscard]] ViStatus ReadAsync(std::span<std::byte> target, ViJobId* job);
    [[nodiscard]] ViStatus WriteAsync(std::span<const std::byte> bytes, ViJobId* job);
    [[nodiscard]] ViStatus Trigger(ViUInt16 protocol);
    [[nodiscard]] ViStatus ReadStatusByte(ViUInt16& status);
    [[nodiscard]] ViStatus Clear();

    // Ends the call of that job, or all that run on the session for VI_NULL, with VI_ERROR_ABORT.
    // VI_ERROR_INV_JOB_ID when no such job runs.
    [[nodiscard]] ViStatus Terminate(ViJobId job);

    // As in class ResourceLock.
    [[nodiscard]] ViStatus Lock(ViAccessMode type, ViUInt32 timeout,
                                const std::string& requestedKey, std::string& accessKey);
    [[nodiscard]] ViStatus Unlock();

    // Waits for an event to come into the queue. VI_ERROR_TMO when none came in time.
    [[nodiscard]] ViStatus WaitOnEvent(ViEventType type, ViUInt32 timeout, Occurrence& taken);
    [[nodiscard]] SessionEvents& Events() { return events_; }

    // The resource manager that the session was opened with.
    [[nodiscard]] ViSession Manager() const { return manager_; }

  private:
    [[nodiscard]] std::optional<AttributeValue> TemplateAttribute(ViAttr attribute) const;
    [[nodiscard]] std::optional<AttributeValue> MessageAttribute(ViAttr attribute) const;
    [[nodiscard]] ViStatus SetFlag(std::atomic<bool>& flag, ViAttrState state);
    [[nodiscard]] ViStatus SetBufferMode(std::atomic<ViUInt16>& mode, ViAttrState state,
                                         ViUInt16 other);
    [[nodiscard]] ViStatus SetDmaAllowed(ViAttrState state);
    [[nodiscard]] ViStatus SetProtocol(ViAttrState state);
    [[nodiscard]] ReadRules RulesOfRead() const;
    [[nodiscard]] ViStatus Complete(const Transfer& transfer, ViJobId job, const void* buffer,
                                    const char* operation);
    void CallHandlers(const Occurrence& occurrence, const std::vector<Handler>& handlers);

    const ViSession manager_;
    const ResourceName name_;
    const std::shared_ptr<Signal> changed_;
    const std::unique_ptr<ResourceLock> lock_;
    SessionEvents events_;
    const std::unique_ptr<Link> link_;
    RunningCalls calls_;
    std::atomic<bool> closed_ = false;

    std::atomic<ViUInt32> timeout_ = 2000;
    std::atomic<ViUInt8> terminator_ = ViUInt8{'\n'};
    std::atomic<bool> terminatorEnabled_ = false;
    std::atomic<bool> sendEnd_ = true;
    std::atomic<bool> suppressEnd_ = false;
    std::atomic<bool> appendsToFile_ = false;
    std::atomic<ViUInt16> protocol_ = VI_PROT_NORMAL;
    std::atomic<ViUInt16> readBufferMode_ = VI_FLUSH_DISABLE;
    std::atomic<ViUInt16> writeBufferMode_ = VI_FLUSH_WHEN_FULL;
    std::atomic<ViUInt64> userData_ = 0;
    std::atomic<ViJobId> lastJob_ = 0;
};

}  // namespace visa_provider
