#include "core/driver.h"

#include <algorithm>
#include <utility>

#include "core/status_error.h"
#include "core/trace_writer.h"
#include "platform/text.h"
#include "tables/enum_lookup.h"
#include "tables/model_families.h"

namespace kestrion {

CDriver::CDriver(DriverEnvironment environment)
    : environment_(std::move(environment)),
      reporter_(*this),
      session_([this](std::string_view resource, const visa::FunctionTable*& functions) {
          return SelectVisa(resource, functions);
      }),
      trace_(std::make_unique<TraceWriter>()),
      coercionQueue_(static_cast<std::size_t>(Metadata().maxCoercionRecords)) {
    session_.SetClosedReporter(&reporter_);
    SetFlag(DriverFlag::kCache, true);
    SetFlag(DriverFlag::kRangeCheck, true);
}

CDriver::~CDriver() = default;

ULONG CDriver::AddRef() {
    return ++count_;
}

ULONG CDriver::Release() {
    const ULONG count = --count_;
    if (count == 0) {
        // Held again while it shuts down: what runs then may count this object up and down.
        count_ = 1;
        if (initialized_) {
            (void)Close();
        }
        delete this;
    }
    return count;
}

std::string CDriver::GetText(const std::string& field) const {
    const std::lock_guard guard(stateLock_);
    return field;
}

void CDriver::SetText(std::string& field, std::string_view value) {
    const std::lock_guard guard(stateLock_);
    field = value;
}

CDriver::Identity CDriver::GetIdentity() const {
    const std::lock_guard guard(stateLock_);
    return identity_;
}

std::string CDriver::GetInstrumentModel() const {
    return initialized_ ? GetText(identity_.model) : std::string();
}

std::shared_ptr<const VisaLibrary> CDriver::GetVisaLibrary() const {
    const std::lock_guard guard(stateLock_);
    return visaLibrary_;
}

void CDriver::SetInstrumentModel(std::string_view model) {
    SetText(identity_.model, model);
    model_ = ModelFamilyTable::Instance().Find(model);
}

bool CDriver::InstrumentInFamily(std::string_view family) const {
    const ModelRecord* model = model_;
    return initialized_ && model != nullptr && model->IsIn(family);
}

bool CDriver::InstrumentIsModel(std::string_view model) const {
    const std::lock_guard guard(stateLock_);
    return initialized_ && identity_.model == model;
}

bool CDriver::IsModelInFamily(std::string_view model, std::string_view family) const {
    return ModelFamilyTable::Instance().IsModelInFamily(model, family);
}

std::vector<CRepCap*> CDriver::Instances(std::string_view className) const {
    const std::lock_guard guard(stateLock_);
    std::vector<CRepCap*> instances;
    if (const auto* found = children_.Find(className); found != nullptr) {
        std::ranges::transform(*found, std::back_inserter(instances),
                               [](const auto& instance) { return instance.get(); });
    }
    return instances;
}

std::vector<CRepCap*> CDriver::AllChildren() const {
    const std::lock_guard guard(stateLock_);
    std::vector<CRepCap*> all;
    for (const auto& [className, instances] : children_) {
        for (const auto& instance : instances) {
            all.push_back(instance.get());
        }
    }
    return all;
}

HRESULT CDriver::VisitChildren(FunctionRef<HRESULT(CRepCap&)> visit) {
    for (CRepCap* child : AllChildren()) {
        if (const HRESULT status = visit(*child); Failed(status)) {
            return status;
        }
    }
    return S_OK;
}

void CDriver::InvalidateAllAttributes() {
    InvalidateCacheEntries();
    (void)VisitChildren([](CRepCap& child) {
        child.InvalidateCacheEntries();
        return S_OK;
    });
}

HRESULT CDriver::ResetTree() {
    if (const HRESULT status = ResetNode(); Failed(status)) {
        return status;
    }
    return VisitChildren([](CRepCap& child) { return child.ResetNode(); });
}

void CDriver::ChildReleased(CChildNode* child) {
    std::unique_ptr<CRepCap> gone;
    const std::lock_guard guard(stateLock_);
    const auto orphan =
        std::ranges::find_if(orphans_, [child](const auto& held) { return held.get() == child; });
    if (orphan != orphans_.end() && !(*orphan)->IsHeld()) {
        gone = std::move(*orphan);
        orphans_.erase(orphan);
    }
}

HRESULT CDriver::PollInstrumentStatus() {
    if (!Flag(DriverFlag::kQueryInstrStatus)) {
        return S_OK;
    }
    // Query, device-dependent, execution and command errors of the event status register
    // (IEEE 488.2, 11.5.1).
    constexpr std::int32_t kErrorBits = 0x04 | 0x08 | 0x10 | 0x20;
    std::string answer;
    // The reply that has just been read may have left a character behind.
    HRESULT status = session_.FlushRead();
    if (Succeeded(status)) {
        status = session_.WriteStringNoPoll(std::string_view("*ESR?"), true);
    }
    if (Succeeded(status)) {
        status = session_.ReadStringNoPoll(&answer);
    }
    if (Failed(status)) {
        (void)session_.Clear();
    } else if ((ParseInteger(answer) & kErrorBits) != 0) {
        status = E_FAIL;
    }
    return Failed(status) ? reporter_.ReportInstrumentError() : S_OK;
}

const IEnumConverter* CDriver::FindEnumConverter(std::string_view name) const {
    const MethodDescriptor* method = callStack_.Current();
    if (method == nullptr) {
        throw StatusError(E_FAIL);
    }
    return GetEnumConverter(name, method->fullName);
}

HRESULT CDriver::ReportUnrecognizedEnum(std::string_view name) {
    return reporter_.ReportUnrecoverable("Unrecognized enum name '" + std::string(name) + "'.");
}

HRESULT CDriver::EnumToToken(std::string_view name, std::int32_t value, std::string& token) {
    if (const IEnumConverter* converter = FindEnumConverter(name); converter != nullptr) {
        return converter->ToToken(GetInstrumentModel(), value, token)
                   ? S_OK
                   : reporter_.ReportInvalidValue("nVal", ValueText(value), {});
    }
    for (const auto& [key, personality] : personalities_) {
        if (Succeeded(personality->EnumToToken(name, value, token))) {
            return S_OK;
        }
    }
    return ReportUnrecognizedEnum(name);
}

HRESULT CDriver::TokenToEnum(std::string_view name, std::string_view token, std::int32_t& value) {
    if (const IEnumConverter* converter = FindEnumConverter(name); converter != nullptr) {
        return converter->FromToken(GetInstrumentModel(), token, value)
                   ? S_OK
                   : reporter_.ReportUnexpectedResponse("Unexpected value '" + std::string(token) +
                                                        "' for enum '" + std::string(name) + "'.");
    }
    for (const auto& [key, personality] : personalities_) {
        if (Succeeded(personality->TokenToEnum(name, token, value))) {
            return S_OK;
        }
    }
    return ReportUnrecognizedEnum(name);
}

std::int32_t CDriver::GetMaxTokenLength(std::string_view name) {
    if (const IEnumConverter* converter = FindEnumConverter(name); converter != nullptr) {
        return converter->MaxTokenLength();
    }
    std::int32_t longest = 0;
    for (const auto& [key, personality] : personalities_) {
        longest = std::max(longest, personality->GetMaxTokenLength(name));
    }
    return longest;
}

void CDriver::AddPersonality(std::string_view name, IEnumFormatter& personality) {
    personalities_.Set(name, &personality);
}

HRESULT CDriver::ActivatePersonality(std::string_view) {
    return reporter_.ReportPersonalityNotInstalled();
}

}  // namespace kestrion
