#include "visa/session.h"

#include <algorithm>
#include <utility>

#include "visa/object_table.h"

namespace visa_provider {

namespace {

std::vector<ViEventType> SupportedEvents(const Link& link) {
    if (link.HasServiceRequests()) {
        return {VI_EVENT_IO_COMPLETION, VI_EVENT_SERVICE_REQ};
    }
    return {VI_EVENT_IO_COMPLETION};
}

// Job numbers count up; 0 stands for no job (VPP-4.3, rule 6.1.13).
ViJobId NextJob(std::atomic<ViJobId>& last) {
    ViJobId job = ++last;
    while (job == 0) {
        job = ++last;
    }
    return job;
}

// The event context that handlers get. It is the provider's to close when they are done (VPP-4.3,
// rule 3.7.27).
class HandlerContext {
  public:
    HandlerContext(const Occurrence& occurrence, ViSession manager)
        : handle_(ObjectTable::Instance().Insert(std::make_shared<EventContext>(occurrence),
                                                 manager)) {}
    ~HandlerContext() { static_cast<void>(ObjectTable::Instance().Remove(handle_)); }
    HandlerContext(const HandlerContext&) = delete;
    HandlerContext& operator=(const HandlerContext&) = delete;

    [[nodiscard]] ViEvent Handle() const { return handle_; }

  private:
    const ViEvent handle_;
};

}  // namespace

Session::Session(ViSession manager, ResourceName name, std::unique_ptr<Link> link,
                 std::shared_ptr<Signal> changed, std::unique_ptr<ResourceLock> lock)
    : manager_(manager),
      name_(std::move(name)),
      changed_(std::move(changed)),
      lock_(std::move(lock)),
      events_(SupportedEvents(*link), changed_,
              [this](const Occurrence& occurrence, const std::vector<Handler>& handlers) {
                  CallHandlers(occurrence, handlers);
              }),
      link_(std::move(link)),
      calls_([this] { link_->Interrupt(); }, [this] { link_->InterruptOver(); }) {
    link_->SetServiceRequestListener([this] {
        events_.Raise(Occurrence{VI_EVENT_SERVICE_REQ, std::nullopt, std::nullopt});
    });
}

void Session::Close() {
    closed_ = true;
    lock_->Close();
    link_->Abort();
    changed_->Raise();
}

void Session::TellFailure(ViStatus status, const char* operation) {
    // A handler that fails itself would call itself for ever.
    thread_local bool isTelling = false;
    if (isTelling || closed_) {
        return;
    }
    isTelling = true;
    struct Over {
        ~Over() { isTelling = false; }
    } const over;
    events_.Raise(Occurrence{VI_EVENT_EXCEPTION, std::nullopt, Failure{status, operation}});
}

ViStatus Session::Terminate(ViJobId job) {
    if (!calls_.Stop(job)) {
        return VI_ERROR_INV_JOB_ID;
    }
    lock_->Wake();
    changed_->Raise();
    return VI_SUCCESS;
}

ReadRules Session::RulesOfRead() const {
    ReadRules rules;
    if (terminatorEnabled_) {
        rules.terminator = static_cast<std::byte>(terminator_.load());
    }
    rules.stopAtEnd = !suppressEnd_;
    return rules;
}

Transfer Session::Read(std::span<std::byte> target, ViJobId job) {
    if (!lock_->MayUse()) {
        return {VI_ERROR_RSRC_LOCKED, 0};
    }
    const RunningCall call(calls_, timeout_, job);
    return link_->Read(target, RulesOfRead(), call);
}

Transfer Session::Write(std::span<const std::byte> bytes, ViJobId job) {
    if (!lock_->MayUse()) {
        return {VI_ERROR_RSRC_LOCKED, 0};
    }
    if (bytes.empty()) {
        return {VI_SUCCESS, 0};  // END can't be sent without a byte
    }
    const RunningCall call(calls_, timeout_, job);
    return link_->Write(bytes, sendEnd_, call);
}

ViStatus Session::Complete(const Transfer& transfer, ViJobId job, const void* buffer,
                           const char* operation) {
    IoCompletion completion;
    completion.status = transfer.status;
    completion.job = job;
    // The attribute has no const: the buffer of a write is given back as the caller gave it.
    completion.buffer = const_cast<void*>(buffer);
    completion.count = transfer.count;
    completion.operation = operation;
    events_.Raise(Occurrence{VI_EVENT_IO_COMPLETION, std::move(completion), std::nullopt});
    return VI_SUCCESS_SYNC;
}

ViStatus Session::ReadAsync(std::span<std::byte> target, ViJobId* job) {
    if (!lock_->MayUse()) {
        return VI_ERROR_RSRC_LOCKED;
    }
    const ViJobId number = NextJob(lastJob_);
    if (job) {
        *job = number;  // known before the transfer begins (VPP-4.3, rule 6.1.8)
    }
    return Complete(Read(target, number), number, target.data(), "viReadAsync");
}

ViStatus Session::WriteAsync(std::span<const std::byte> bytes, ViJobId* job) {
    if (!lock_->MayUse()) {
        return VI_ERROR_RSRC_LOCKED;
    }
    const ViJobId number = NextJob(lastJob_);
    if (job) {
        *job = number;
    }
    return Complete(Write(bytes, number), number, bytes.data(), "viWriteAsync");
}

ViStatus Session::Trigger(ViUInt16 protocol) {
    if (!lock_->MayUse()) {
        return VI_ERROR_RSRC_LOCKED;
    }
    if (protocol != VI_TRIG_PROT_DEFAULT) {
        return VI_ERROR_INV_PROT;
    }
    const RunningCall call(calls_, timeout_, 0);
    return link_->Trigger(protocol_, call);
}

ViStatus Session::ReadStatusByte(ViUInt16& status) {
    if (!lock_->MayUse()) {
        return VI_ERROR_RSRC_LOCKED;
    }
    const RunningCall call(calls_, timeout_, 0);
    return link_->ReadStatusByte(protocol_, call, status);
}

ViStatus Session::Clear() {
    if (!lock_->MayUse()) {
        return VI_ERROR_RSRC_LOCKED;
    }
    const RunningCall call(calls_, timeout_, 0);
    return link_->Clear(call);
}

ViStatus Session::Lock(ViAccessMode type, ViUInt32 timeout, const std::string& requestedKey,
                       std::string& accessKey) {
    const RunningCall call(calls_, timeout, 0);
    return lock_->Acquire(type, call, requestedKey, accessKey);
}

ViStatus Session::Unlock() {
    return lock_->Release();
}

ViStatus Session::WaitOnEvent(ViEventType type, ViUInt32 timeout, Occurrence& taken) {
    const RunningCall call(calls_, timeout, 0);
    const Deadline deadline = DeadlineAfter(timeout, Clock::now());
    for (;;) {
        const auto seen = changed_->Count();
        const Deadline next = link_->CatchUp();
        if (closed_ || call.IsStopped()) {
            return VI_ERROR_ABORT;
        }
        const ViStatus status = events_.Take(type, taken);
        if (status != VI_ERROR_TMO || HasPassed(deadline, Clock::now())) {
            return status;
        }
        changed_->WaitForChange(seen, Earlier(deadline, next));
    }
}

void Session::CallHandlers(const Occurrence& occurrence, const std::vector<Handler>& handlers) {
    const HandlerContext context(occurrence, manager_);
    for (const auto& handler : handlers) {
        if (handler.function(Handle(), occurrence.type, context.Handle(), handler.userHandle) ==
            VI_SUCCESS_NCHAIN) {
            return;
        }
    }
}

}  // namespace visa_provider
