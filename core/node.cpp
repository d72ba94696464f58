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

FormattedCommand& CNode::PushCommand() {
    if (runningCommands_ == commands_.size()) {
        commands_.emplace_back();
    }
    FormattedCommand& pushed = commands_[runningCommands_++];
    pushed.command.clear();
    pushed.response = {};
    return pushed;
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

std::string CNode::GetInitOption(std::string_view name) {
    return Root().Settings().GetInitOption(name);
}

std::string CNode::GetDriverSetupOption(std::string_view name) {
    return Root().Settings().GetDriverSetupOption(name);
}

bool CNode::GetConfigBool(std::string_view name, bool& value) {
    return Root().Settings().GetConfigBool(name, value);
}

bool CNode::GetConfigLong(std::string_view name, std::int32_t& value) {
    return Root().Settings().GetConfigLong(name, value);
}

bool CNode::GetConfigDouble(std::string_view name, double& value) {
    return Root().Settings().GetConfigDouble(name, value);
}

bool CNode::GetConfigString(std::string_view name, std::string& value) {
    return Root().Settings().GetConfigString(name, value);
}

bool CNode::GetConfigVariant(std::string_view name, VariantPtr& value) {
    return Root().Settings().GetConfigVariant(name, value);
}

std::string CNode::GetPhysicalName(std::string_view name) {
    return Root().Settings().GetPhysicalName(name);
}

std::string CNode::GetVirtualName(std::string_view name) {
    return Root().Settings().GetVirtualName(name);
}

std::string CNode::GetQualifiedPhysicalName(std::string_view capability,
                                            std::string_view physicalName) {
    return Root().Settings().GetQualifiedPhysicalName(capability, physicalName);
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

bool CChildNode::IsKnownModel() const {
    return root_.IsKnownModel();
}

bool CChildNode::InstrumentInFamily(std::string_view family) const {
    return root_.InstrumentInFamily(family);
}

bool CChildNode::InstrumentIsModel(std::string_view model) const {
    return root_.InstrumentIsModel(model);
}

bool CChildNode::IsModelInFamily(std::string_view model, std::string_view family) const {
    return root_.IsModelInFamily(model, family);
}

std::string CRepCap::GetFullName() {
    if (fullName_.empty()) {
        std::string path = Root().GetFullName();
        if (!path.empty()) {
            path += '.';
        }
        fullName_ = path + className_ + "[" + GetVirtualName(physicalName_) + "]";
    }
    return fullName_;
}

}  // namespace kestrion
