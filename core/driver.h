// The root of the tree: connection, options, identity, errors.
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "core/coercion_queue.h"
#include "core/configuration.h"
#include "core/error_reporter.h"
#include "core/function_ref.h"
#include "core/node.h"
#include "io/visa_c_session.h"
#include "io/visa_table.h"
#include "platform/clock.h"
#include "store/configuration_store.h"
#include "tables/model_families.h"

namespace kestrion {

class TraceWriter;

// The six options of the option string, in the order in which they are kept and restored.
enum class DriverFlag : std::uint8_t {
    kCache,
    kInterchangeCheck,
    kQueryInstrStatus,
    kRangeCheck,
    kRecordCoercions,
    kSimulate,
};
inline constexpr std::size_t kDriverFlagCount = 6;

// Makes one repeated capability instance of a class.
using RepCapFactory = std::function<std::unique_ptr<CRepCap>(
    CDriver& root, std::string_view className, std::int32_t index, std::string_view name)>;

// Chooses the VISA library of a resource.
using VisaChooser = std::function<VisaSelection(std::string_view resource)>;

// What the root is given from outside.
struct DriverEnvironment {
    RepCapFactory makeRepCap;
    VisaChooser chooseVisa;
    // Without one there is no configuration store.
    StoreOpener openStore = {};
    // Has to outlive the root.
    Clock* clock = nullptr;
};

class IEnumConverter;

// Where the personalities of an instrument are switched on, by name. This driver defines none.
struct IPersonalityHost {
    virtual HRESULT ActivatePersonality(std::string_view name) = 0;

  protected:
    ~IPersonalityHost() = default;
};

// Members of this class run inside the call frame, under the object's lock; what other objects of
// the tree ask while they hold theirs only is safe from any thread, as said below.
class CDriver : public CNode, public IEnumFormatter, public IPersonalityHost {
  public:
    explicit CDriver(DriverEnvironment environment);
    ~CDriver() override;

    // Counts. The last Release of an object that is still connected closes it first.
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // Start-up and shut-down; `resourceName` is null where the caller passed no text.
    HRESULT Initialize(const std::string* resourceName, bool idQuery, bool reset,
                       std::string_view optionString);
    HRESULT Close();

    // Steps of start-up. The first takes names, descriptor, options and driver setup from a session
    // of the configuration store; the others the configurable initial settings of a session or of a
    // module, of which "model" becomes the model of the instrument. Null is reported as invalid; a
    // store that can't be read on ends them with its own status.
    HRESULT LoadDriverConfiguration(const DriverSession* session);
    HRESULT LoadConfigurableInitialSettings(const DriverSession* session);
    HRESULT LoadConfigurableInitialSettings(const SoftwareModule* module);

    [[nodiscard]] CDriver& Root() override { return *this; }
    [[nodiscard]] bool IsRoot() const override { return true; }
    // Any thread.
    [[nodiscard]] bool IsInitialized() const override { return initialized_; }
    HRESULT InitializeInstrument() override;

    // Any thread.
    [[nodiscard]] CVisaCSession& Session() { return session_; }
    [[nodiscard]] CErrorReporter& Reporter() { return reporter_; }
    [[nodiscard]] CallStack& Calls() { return callStack_; }
    [[nodiscard]] Clock& SystemTime() { return *environment_.clock; }
    [[nodiscard]] TraceWriter& Trace() { return *trace_; }
    // For bodies that change a value for the instrument. Its records outlast Close.
    [[nodiscard]] CoercionQueue& GetCoercionQueue() { return coercionQueue_; }
    [[nodiscard]] bool Flag(DriverFlag flag) const { return flags_[SlotOf(flag)]; }
    void SetFlag(DriverFlag flag, bool value) { flags_[SlotOf(flag)] = value; }
    [[nodiscard]] bool InitialFlag(DriverFlag flag) const { return initialFlags_[SlotOf(flag)]; }
    [[nodiscard]] bool IsSimulating() const { return Flag(DriverFlag::kSimulate); }
    [[nodiscard]] const MethodDescriptor* GetCurrentMethod() override {
        return callStack_.Current();
    }

    // Those that every call makes look nothing up: the model's families were found when it became
    // known.
    [[nodiscard]] bool IsKnownModel() const final { return initialized_ && model_ != nullptr; }
    [[nodiscard]] bool InstrumentInFamily(std::string_view family) const final;
    [[nodiscard]] bool InstrumentIsModel(std::string_view model) const final;
    [[nodiscard]] bool IsModelInFamily(std::string_view model, std::string_view family) const final;

    // The instrument's identity and the options' texts, any thread.
    struct Identity {
        std::string answer, manufacturer, model, serial, firmware;
    };
    [[nodiscard]] Identity GetIdentity() const;
    // Empty while not initialized.
    [[nodiscard]] std::string GetInstrumentModel() const;
    [[nodiscard]] std::string LogicalName() const { return GetText(logicalName_); }
    [[nodiscard]] std::string ResourceDescriptor() const { return GetText(resourceDescriptor_); }
    [[nodiscard]] std::string DriverSetup() const { return GetText(driverSetup_); }
    // The options and settings of the last start-up, and the names of instances.
    [[nodiscard]] const Configuration& Settings() const { return configuration_; }
    // The VISA library in use, with the reason why; null while there is none.
    [[nodiscard]] std::shared_ptr<const VisaLibrary> GetVisaLibrary() const;

    // Instances of a capability, in order; empty for an unknown class. Any thread.
    [[nodiscard]] std::vector<CRepCap*> Instances(std::string_view className) const;

    // IInstrErrorPoller: asks the event status register, if the option says so.
    HRESULT PollInstrumentStatus() override;

    // IEnumFormatter, for the member that runs on the calling thread; outside of every member a
    // StatusError of E_FAIL. What the driver has no table for is asked of the personalities, in the
    // order of their map, and the first that doesn't fail has answered.
    HRESULT EnumToToken(std::string_view name, std::int32_t value, std::string& token) override;
    HRESULT TokenToEnum(std::string_view name, std::string_view token,
                        std::int32_t& value) override;
    std::int32_t GetMaxTokenLength(std::string_view name) override;

    HRESULT ActivatePersonality(std::string_view name) override;
    // Registers an active personality, which isn't owned; Close forgets it. Not while a member
    // runs.
    void AddPersonality(std::string_view name, IEnumFormatter& personality);

    // Walks over the tree, parents first.
    void InvalidateAllAttributes();
    HRESULT ResetTree();

    // A child that its last caller let go; it goes away if the tree has dropped it before.
    void ChildReleased(CChildNode* child);

  private:
    [[nodiscard]] static constexpr std::size_t SlotOf(DriverFlag flag) {
        return static_cast<std::size_t>(flag);
    }

    // The steps of start-up, in their order.
    HRESULT Configure(const std::string& resourceName, std::string_view optionString);
    HRESULT LoadConfiguration(const std::string& resourceName, std::string_view optionString);
    HRESULT ConfigureByStore(const ConfigurationStore& store, const std::string& resourceName,
                             std::string_view optionString);
    HRESULT ConfigureBySession(const DriverSession& session, std::string_view optionString);
    template <typename Owner>
    HRESULT LoadSettings(const Owner* owner, std::string_view function, std::string_view parameter);
    HRESULT LoadPhysicalNames(const SoftwareModule& module);
    HRESULT ProcessOptionString(std::string_view text);
    HRESULT ProcessInitOption(std::string_view name, std::string_view value);
    HRESULT ProcessDriverSetup(std::string_view text);
    HRESULT ProcessDriverSetupOption(std::string_view name, std::string_view value);
    HRESULT StartTrace();
    HRESULT OpenSession();
    // Puts the trouble with the configuration store behind the text of a failure to open.
    void NameStoreTrouble(HRESULT status);
    HRESULT SelectVisa(std::string_view resource, const visa::FunctionTable*& functions);
    HRESULT CloseSession();
    HRESULT QueryIdentity();
    HRESULT ConnectInstrument(bool idQuery, bool reset);
    HRESULT BuildChildren();
    void DropChildren();

    [[nodiscard]] std::string GetText(const std::string& field) const;
    void SetText(std::string& field, std::string_view value);
    // The model of the instrument, from the options or from the instrument itself.
    void SetInstrumentModel(std::string_view model);
    // What the member that runs on this thread has for an enumeration; null where it has nothing.
    [[nodiscard]] const IEnumConverter* FindEnumConverter(std::string_view name) const;
    HRESULT ReportUnrecognizedEnum(std::string_view name);
    // Calls `visit` for each child, in the order of the tree, until a negative status.
    HRESULT VisitChildren(FunctionRef<HRESULT(CRepCap&)> visit);
    [[nodiscard]] std::vector<CRepCap*> AllChildren() const;

    DriverEnvironment environment_;
    std::atomic<ULONG> count_{1};
    CallStack callStack_;
    CErrorReporter reporter_;
    CVisaCSession session_;
    std::unique_ptr<TraceWriter> trace_;
    CoercionQueue coercionQueue_;

    std::array<std::atomic<bool>, kDriverFlagCount> flags_;
    std::array<bool, kDriverFlagCount> initialFlags_{};
    std::atomic<bool> initialized_{false};
    // What the table of models says of the instrument's; null for a model that it doesn't have.
    std::atomic<const ModelRecord*> model_{nullptr};

    Configuration configuration_;
    HashMap<std::string, IEnumFormatter*> personalities_;

    // Guards the texts and the children below against members of other objects; held for a copy
    // only and never over I/O.
    mutable std::mutex stateLock_;
    std::string logicalName_;
    std::string resourceDescriptor_;
    std::string driverSetup_;
    std::string optionString_;
    Identity identity_;
    std::shared_ptr<const VisaLibrary> visaLibrary_;
    HashMap<std::string, std::vector<std::unique_ptr<CRepCap>>> children_;
    // Dropped by the tree while a caller still holds them.
    std::vector<std::unique_ptr<CRepCap>> orphans_;
};

}  // namespace kestrion
