#include "core/node.h"

#include "core/driver.h"

namespace kestrion {

CNode::CNode() : errorInfoFace_(*this) {}

CNode::~CNode() = default;

HRESULT CNode::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    if (iid == kInterfaceId<IUnknown>) {
        *object = static_cast<IUnknown*>(this);
    } else if (iid == kInterfaceId<ISupportErrorInfo>) {
        *object = static_cast<ISupportErrorInfo*>(&errorInfoFace_);
    } else {
        *object = FindFace(iid);
    }
    if (*object == nullptr) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

void CNode::PushCommand(FormattedCommand& command) {
    command.below = topCommand_;
    topCommand_ = &command;
}

void CNode::PopCommand() {
    topCommand_ = topCommand_->below;
}

std::unique_ptr<CCacheEntryBase>& CNode::CacheSlot(std::string_view name) {
    return cacheEntries_[name];
}

void CNode::InvalidateCacheEntries() {
    const std::lock_guard lock(mutex_);
    for (auto& [name, entry] : cacheEntries_) {
        entry->Invalidate();
    }
}

void CNode::ClearCacheEntries() {
    cacheEntries_.Clear();
}

TraceWriter* CNode::GetTraceWriter() {
    return IsRoot() || IsInitialized() ? &Root().Trace() : nullptr;
}

ULONG CChildNode::AddRef() {
    const ULONG count = ++callers_;
    if (count == 1) {
        root_.AddRef();
    }
    return count;
}

ULONG CChildNode::Release() {
    // The child may go away in ChildReleased, and the root with it in Release.
    CDriver& root = root_;
    const ULONG count = --callers_;
    if (count == 0) {
        root.ChildReleased(this);
        root.Release();
    }
    return count;
}

bool CChildNode::IsInitialized() const {
    return attached_ && root_.IsInitialized();
}

HRESULT CChildNode::PollInstrumentStatus() {
    return IsInitialized() ? root_.PollInstrumentStatus() : S_OK;
}

const MethodDescriptor* CChildNode::GetCurrentMethod() {
    return root_.GetCurrentMethod();
}

const std::string& CRepCap::GetFullName() {
    if (fullName_.empty()) {
        fullName_ = className_ + "[" + physicalName_ + "]";
    }
    return fullName_;
}

}  // namespace kestrion
