// Start-up and shut-down of the root, in their fixed order.
#include <array>
#include <string>
#include <utility>

#include "core/driver.h"
#include "core/trace_writer.h"
#include "kestrion/interfaces/IIviDriverUtility.h"
#include "platform/text.h"
#include "tables/repeated_capability_data.h"

namespace kestrion {
namespace {

struct FlagOption {
    std::string_view name;
    bool byDefault;
};

// In the order of DriverFlag.
constexpr std::array<FlagOption, kDriverFlagCount> kFlagOptions = {{
    {"cache", true},
    {"interchangecheck", false},
    {"queryinstrstatus", false},
    {"rangecheck", true},
    {"recordcoercions", false},
    {"simulate", false},
}};

// The field at `index` of an identity answer, trimmed; empty where the answer has fewer.
std::string IdentityField(std::string_view answer, std::size_t index) {
    for (; index > 0; --index) {
        const std::size_t comma = answer.find(',');
        if (comma == std::string_view::npos) {
            return {};
        }
        answer.remove_prefix(comma + 1);
    }
    return std::string(Trim(answer.substr(0, answer.find(','))));
}

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

HRESULT CDriver::Initialize(const std::string* resourceName, bool idQuery, bool reset,
                            std::string_view optionString) {
    if (resourceName == nullptr) {
        return reporter_.ReportInvalidValue("Initialize", "ResourceName", ValueText(0), {});
    }
    if (initialized_) {
        return reporter_.ReportAlreadyInitialized();
    }
    if (const HRESULT status = Configure(*resourceName, optionString); Failed(status)) {
        return status;
    }
    if (Flag(DriverFlag::kInterchangeCheck) && !Metadata().supportsInterchangeCheck) {
        return reporter_.ReportUnknownOptionValue(
            ValueText(true), "Interchange checking is not supported by the driver.");
    }
    if (const HRESULT status = StartTrace(); Failed(status)) {
        return status;
    }
    if (const HRESULT status = OpenSession(); Failed(status)) {
        // A half-open session would keep its buffers and the resource manager.
        (void)CloseSession();
        return status;
    }
    initialized_ = true;
    const HRESULT status = ConnectInstrument(idQuery, reset);
    if (Failed(status)) {
        DropChildren();
        (void)CloseSession();
        initialized_ = false;
    }
    return status;
}

HRESULT CDriver::Configure(const std::string& resourceName, std::string_view optionString) {
    {
        const std::lock_guard guard(stateLock_);
        optionString_ = optionString;
        resourceDescriptor_.clear();
        logicalName_.clear();
        driverSetup_.clear();
        identity_ = {};
    }
    configuration_.Clear();
    SetInstrumentModel({});
    for (std::size_t i = 0; i < kDriverFlagCount; ++i) {
        flags_[i] = kFlagOptions[i].byDefault;
    }
    if (const HRESULT status = LoadConfiguration(resourceName, optionString); Failed(status)) {
        return status;
    }
    if (IsSimulating() && GetText(identity_.model).empty()) {
        SetInstrumentModel(Metadata().defaultModel);
    }
    for (std::size_t i = 0; i < kDriverFlagCount; ++i) {
        initialFlags_[i] = flags_[i];
    }
    return S_OK;
}

HRESULT CDriver::ProcessOptionString(std::string_view text) {
    if (text.empty()) {
        return S_OK;
    }
    const OptionText parts = SplitDriverSetup(text);
    if (parts.driverSetup.has_value()) {
        if (const HRESULT status = ProcessDriverSetup(*parts.driverSetup); Failed(status)) {
            return status;
        }
    }
    for (const auto& [name, value] : SplitPairs(parts.options)) {
        if (const HRESULT status = ProcessInitOption(name, value); Failed(status)) {
            return status;
        }
    }
    return S_OK;
}

HRESULT CDriver::ProcessInitOption(std::string_view name, std::string_view value) {
    if (name.empty() || value.empty()) {
        return reporter_.ReportInvalidValue(
            "ProcessInitOption", name.empty() ? "strNameIn" : "strValueIn", ValueText(0), {});
    }
    for (std::size_t i = 0; i < kDriverFlagCount; ++i) {
        if (!EqualsIgnoreCase(name, kFlagOptions[i].name)) {
            continue;
        }
        const std::optional<bool> flag = ParseBoolean(value);
        if (!flag.has_value()) {
            return reporter_.ReportUnknownOptionValue(value);
        }
        flags_[i] = *flag;
    }
    configuration_.SetInitOption(name, value);
    return S_OK;
}

HRESULT CDriver::ProcessDriverSetup(std::string_view text) {
    SetText(driverSetup_, text);
    configuration_.ClearDriverSetupOptions();
    std::string pairs(text);
    ReplaceAll(pairs, "NumPhases:", "NumPhases=");
    for (const auto& [name, value] : SplitPairs(pairs)) {
        if (const HRESULT status = ProcessDriverSetupOption(name, value); Failed(status)) {
            return status;
        }
    }
    return S_OK;
}

HRESULT CDriver::ProcessDriverSetupOption(std::string_view name, std::string_view value) {
    const auto is = [name](std::string_view option) { return EqualsIgnoreCase(name, option); };
    const std::optional<bool> flag = ParseBoolean(value);
    if ((is("Trace") || is("TraceArray")) && !flag.has_value()) {
        return reporter_.ReportUnknownOptionValue(value);
    }
    if (is("Model")) {
        SetInstrumentModel(value);
    } else if (is("Trace")) {
        if (const HRESULT status = trace_->SetEnabled(*flag); Failed(status)) {
            return status;
        }
    } else if (is("TraceName")) {
        trace_->traceName = value;
    } else if (is("TraceSizeMax")) {
        trace_->sizeMax = ParseInteger(value);
    } else if (is("TraceArray")) {
        trace_->traceArrays = *flag;
    } else if (is("TraceArraySizeMax")) {
        trace_->arraySizeMax = ParseInteger(value);
    } else if (is("TraceSaveInterval")) {
        trace_->saveInterval = ParseInteger(value);
    } else if (is("TraceTransform")) {
        trace_->transformName = value;
    }
    configuration_.SetDriverSetupOption(name, value);
    return S_OK;
}

HRESULT CDriver::StartTrace() {
    trace_->identifier = Metadata().identifier;
    return trace_->enabled ? trace_->Start() : S_OK;
}

HRESULT CDriver::SelectVisa(std::string_view resource, const visa::FunctionTable*& functions) {
    VisaSelection selection = environment_.chooseVisa(resource);
    if (selection.chosen == nullptr) {
        return reporter_.ReportIoError(selection.error);
    }
    functions = &selection.chosen->Functions();
    const std::lock_guard guard(stateLock_);
    visaLibrary_ = std::move(selection.chosen);
    return S_OK;
}

HRESULT CDriver::OpenSession() {
    if (IsSimulating()) {
        return S_OK;
    }
    const std::string resource = ResourceDescriptor();
    HRESULT status = session_.Initialize(resource, this, &reporter_, this);
    if (status == MakeStatus(0x80047060)) {
        status = reporter_.ReportUnknownResource("Resource descriptor = " + resource + ".");
    }
    if (Failed(status)) {
        NameStoreTrouble(status);
    }
    return status;
}

void CDriver::NameStoreTrouble(HRESULT status) {
    const StoreReport store = configuration_.GetStoreReport();
    if (!store.broken) {
        return;
    }
    // What was opened may be a logical name, which nobody could know without the store.
    ComPtr<IErrorInfo> error;
    BstrPtr text;
    if (GetErrorInfo(0, error.Out()) == S_OK) {
        (void)error->GetDescription(text.Out());
    }
    (void)reporter_.RaiseWithStatus(status,
                                    text.Utf8() + "\r\nConfiguration store: " + store.reason + ".");
}

HRESULT CDriver::CloseSession() {
    const HRESULT status = session_.Close();
    const std::lock_guard guard(stateLock_);
    visaLibrary_ = nullptr;
    return status;
}

HRESULT CDriver::ConnectInstrument(bool idQuery, bool reset) {
    if (const HRESULT status = QueryIdentity(); Failed(status)) {
        return status;
    }
    if (idQuery && !IsKnownModel()) {
        return reporter_.ReportIdQueryFailed("Unrecognized model: " + GetInstrumentModel() + ".");
    }
    if (const HRESULT status = BuildChildren(); Failed(status)) {
        return status;
    }
    if (const HRESULT status = InitializeInstrument(); Failed(status)) {
        return status;
    }
    const HRESULT prepared =
        VisitChildren([](CRepCap& child) { return child.InitializeInstrument(); });
    if (Failed(prepared) || !reset) {
        return prepared;
    }
    const HRESULT status = Face<IIviDriverUtility>()->Reset();
    return Failed(status) ? reporter_.ReportResetFailed() : status;
}

HRESULT CDriver::QueryIdentity() {
    if (IsSimulating()) {
        return S_OK;
    }
    std::string answer;
    if (const HRESULT status = session_.QueryString("*IDN?", &answer); Failed(status)) {
        return status;
    }
    SetInstrumentModel(IdentityField(answer, 1));
    const std::lock_guard guard(stateLock_);
    identity_.answer = answer;
    identity_.manufacturer = IdentityField(answer, 0);
    identity_.serial = IdentityField(answer, 2);
    identity_.firmware = IdentityField(answer, 3);
    return S_OK;
}

HRESULT CDriver::BuildChildren() {
    for (const RepeatedCapabilityData& capability : AllRepeatedCapabilities()) {
        std::vector<std::unique_ptr<CRepCap>> instances;
        for (const std::string_view name : capability.physicalNames) {
            instances.push_back(environment_.makeRepCap(
                *this, capability.className, static_cast<std::int32_t>(instances.size()), name));
        }
        const std::lock_guard guard(stateLock_);
        children_[capability.className] = std::move(instances);
    }
    return S_OK;
}

void CDriver::DropChildren() {
    // Those that nobody holds go away when this ends, behind the lock.
    std::vector<std::unique_ptr<CRepCap>> gone;
    const std::lock_guard guard(stateLock_);
    for (auto& [className, instances] : children_) {
        for (auto& instance : instances) {
            instance->Detach();
            (instance->IsHeld() ? orphans_ : gone).push_back(std::move(instance));
        }
    }
    children_.Clear();
}

HRESULT CDriver::InitializeInstrument() {
    if (!IsSimulating()) {
        // Instruments that don't know one of the two are served all the same.
        (void)session_.WriteString(std::string_view("HEAD OFF;:VERBOSE 1"), true);
    }
    return S_OK;
}

HRESULT CDriver::Close() {
    if (!initialized_) {
        return reporter_.ReportNotInitialized({});
    }
    personalities_.Clear();
    trace_->closing = true;
    const HRESULT closed = CloseSession();
    ClearCacheEntries();
    initialized_ = false;
    if (const HRESULT status = VisitChildren([](CRepCap& child) { return child.CloseNode(); });
        Failed(status)) {
        return status;
    }
    if (const HRESULT status = CloseNode(); Failed(status)) {
        return status;
    }
    DropChildren();
    return closed;
}

}  // namespace kestrion
