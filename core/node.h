// The tree of driver objects: the root and its repeated capability instances.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "core/cache_entry.h"
#include "core/call_stack.h"
#include "io/partners.h"
#include "kestrion/platform/error_info.h"
#include "kestrion/platform/unknown.h"
#include "kestrion/platform/variant.h"
#include "tables/hash_map.h"

namespace kestrion {

class CDriver;
class TraceWriter;

// The command and the reply format of a member that is running on a node.
struct FormattedCommand {
    std::string command;
    std::string_view response;
};

// Any object of the hierarchy: one component object with one lock and many interfaces, each of
// them a face that hands its members to the node.
class CNode : public IUnknown, public IInstrErrorPoller, public ICallContextProvider {
  public:
    CNode(const CNode&) = delete;
    CNode& operator=(const CNode&) = delete;
    virtual ~CNode();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;

    // The face of this object for an interface, not counted; null where it has none.
    [[nodiscard]] virtual void* FindFace(REFIID iid) = 0;

    template <typename Interface>
    [[nodiscard]] Interface* Face() {
        return static_cast<Interface*>(FindFace(kInterfaceId<Interface>));
    }

    // The root of the tree; the root's own is itself.
    [[nodiscard]] virtual CDriver& Root() = 0;
    [[nodiscard]] virtual bool IsRoot() const = 0;
    // True between a successful start-up and Close.
    [[nodiscard]] virtual bool IsInitialized() const = 0;
    // Where calls are traced; null on a child while the driver isn't initialized.
    [[nodiscard]] TraceWriter* GetTraceWriter();
    // What start-up was told by options and configuration store, and the names of instances that
    // the store gave: every object asks the root for them. Any thread; see Configuration.
    [[nodiscard]] std::string GetInitOption(std::string_view name);
    [[nodiscard]] std::string GetDriverSetupOption(std::string_view name);
    [[nodiscard]] bool GetConfigBool(std::string_view name, bool& value);
    [[nodiscard]] bool GetConfigLong(std::string_view name, std::int32_t& value);
    [[nodiscard]] bool GetConfigDouble(std::string_view name, double& value);
    [[nodiscard]] bool GetConfigString(std::string_view name, std::string& value);
    [[nodiscard]] bool GetConfigVariant(std::string_view name, VariantPtr& value);
    [[nodiscard]] std::string GetPhysicalName(std::string_view name);
    [[nodiscard]] std::string GetVirtualName(std::string_view name);
    [[nodiscard]] std::string GetQualifiedPhysicalName(std::string_view capability,
                                                       std::string_view physicalName);
    // Which instrument is connected, as every object asks it; any thread. Names compare exactly,
    // and one that isn't known is no failure but false. All but the last are false while the driver
    // isn't initialized.
    [[nodiscard]] virtual bool IsKnownModel() const = 0;
    [[nodiscard]] virtual bool InstrumentInFamily(std::string_view family) const = 0;
    [[nodiscard]] virtual bool InstrumentIsModel(std::string_view model) const = 0;
    [[nodiscard]] virtual bool IsModelInFamily(std::string_view model,
                                               std::string_view family) const = 0;
    // The path of this object in error and trace texts; the root's is empty.
    [[nodiscard]] virtual std::string GetFullName() { return {}; }
    // What a connected instrument needs before the first member; a negative status ends start-up.
    virtual HRESULT InitializeInstrument() { return S_OK; }
    // Part of the reset walk over the tree.
    virtual HRESULT ResetNode() { return S_OK; }
    // Part of the shut-down walk over the tree.
    virtual HRESULT CloseNode() { return S_OK; }

    // For the template arguments of a repeated capability: index plus one, the index, the name.
    [[nodiscard]] virtual std::int32_t Number() const { return 0; }
    [[nodiscard]] virtual std::int32_t Index() const { return -1; }
    [[nodiscard]] virtual const char* Name() const { return ""; }

    // The one critical section of the object, held for the whole of a member.
    [[nodiscard]] std::recursive_mutex& Mutex() { return mutex_; }

    // The commands of the members that run, innermost on top. Under the object's lock.
    //
    // A command to be filled, which is empty; it stays where it is until it is popped.
    [[nodiscard]] FormattedCommand& PushCommand();
    void PopCommand() { --runningCommands_; }
    // Null while no member has one.
    [[nodiscard]] FormattedCommand* TopCommand() {
        return runningCommands_ == 0 ? nullptr : &commands_[runningCommands_ - 1];
    }

    // The entry of an attribute, made on first use. One entry has one type. Under the object's
    // lock.
    template <typename T>
    [[nodiscard]] CCacheEntry<T>& GetCacheEntry(std::string_view name) {
        std::unique_ptr<CCacheEntryBase>& entry = CacheSlot(name);
        if (entry == nullptr) {
            entry = std::make_unique<CCacheEntry<T>>();
        }
        return static_cast<CCacheEntry<T>&>(*entry);
    }
    void InvalidateCacheEntries();
    void ClearCacheEntries();

  protected:
    CNode();

  private:
    // Says for the node that failures of its main interface leave an error object.
    class ErrorInfoFace final : public ISupportErrorInfo {
      public:
        explicit ErrorInfoFace(CNode& node) : node_(node) {}
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
            return node_.QueryInterface(iid, object);
        }
        ULONG STDMETHODCALLTYPE AddRef() override { return node_.AddRef(); }
        ULONG STDMETHODCALLTYPE Release() override { return node_.Release(); }
        HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
            return iid == node_.MainInterface() ? S_OK : S_FALSE;
        }

      private:
        CNode& node_;
    };

    [[nodiscard]] virtual IID MainInterface() const = 0;
    [[nodiscard]] std::unique_ptr<CCacheEntryBase>& CacheSlot(std::string_view name);

    std::recursive_mutex mutex_;
    ErrorInfoFace errorInfoFace_;
    // Those above the running ones keep their memory for the next calls.
    std::deque<FormattedCommand> commands_;
    std::size_t runningCommands_ = 0;
    HashMap<std::string, std::unique_ptr<CCacheEntryBase>> cacheEntries_;
};

// A node below the root. Its counts are those of its callers only: the tree owns it without one,
// and as long as a caller holds it, it holds the root. So a caller that drops the root without
// closing it leaks nothing, and a child that is held over Close lives on and fails in order.
class CChildNode : public CNode {
  public:
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    [[nodiscard]] CDriver& Root() override { return root_; }
    [[nodiscard]] bool IsRoot() const override { return false; }
    // False from the moment that the tree dropped the child, whatever becomes of the root.
    [[nodiscard]] bool IsInitialized() const override;
    HRESULT PollInstrumentStatus() override;
    [[nodiscard]] const MethodDescriptor* GetCurrentMethod() override;
    [[nodiscard]] bool IsKnownModel() const override;
    [[nodiscard]] bool InstrumentInFamily(std::string_view family) const override;
    [[nodiscard]] bool InstrumentIsModel(std::string_view model) const override;
    [[nodiscard]] bool IsModelInFamily(std::string_view model,
                                       std::string_view family) const override;

    // The tree drops the child.
    void Detach() { attached_ = false; }
    [[nodiscard]] bool IsHeld() const { return callers_ != 0; }

  protected:
    explicit CChildNode(CDriver& root) : root_(root) {}

  private:
    CDriver& root_;
    std::atomic<ULONG> callers_{0};
    std::atomic<bool> attached_{true};
};

// One instance of a repeated capability.
class CRepCap : public CChildNode {
  public:
    // `index` counts from 0 within the capability.
    CRepCap(CDriver& root, std::string_view className, std::int32_t index,
            std::string_view physicalName)
        : CChildNode(root), className_(className), physicalName_(physicalName), index_(index) {}

    [[nodiscard]] std::int32_t Number() const override { return index_ + 1; }
    [[nodiscard]] std::int32_t Index() const override { return index_; }
    [[nodiscard]] const char* Name() const override { return physicalName_.c_str(); }
    [[nodiscard]] std::string_view PhysicalName() const { return physicalName_; }
    // The class and the virtual name, as in "KestrionChannel[Channel1]", behind the parent's path.
    // Made when it is first asked for and then kept. Under the object's lock.
    [[nodiscard]] std::string GetFullName() override;

    // A capability whose class has no interface yet still has its instances.
    [[nodiscard]] void* FindFace(REFIID) override { return nullptr; }

  private:
    [[nodiscard]] IID MainInterface() const override { return {}; }

    std::string className_;
    std::string physicalName_;
    std::int32_t index_;
    std::string fullName_;
};

}  // namespace kestrion
