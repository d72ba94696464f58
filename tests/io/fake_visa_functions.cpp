// The functions of the scripted library. Each looks its fake up by the session's number, notes the
// call and plays the script.
#include "tests/io/fake_visa_functions.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

#include "tests/io/fake_visa.h"

namespace kestrion {

using namespace visa;  // the types of the table
using namespace fake_visa;

namespace {

struct NamedAttribute {
    ViAttr attribute;
    const char* name;
};
constexpr NamedAttribute kNames[] = {
    {0x3FFF0005, "MAX_QUEUE_LENGTH"}, {kSendEnd, "SEND_END_EN"},
    {kTermChar, "TERMCHAR"},          {0x3FFF001A, "TMO_VALUE"},
    {0x3FFF001C, "IO_PROT"},          {kTermCharEnabled, "TERMCHAR_EN"},
    {kInterfaceType, "INTF_TYPE"},    {0x3FFF0175, "RSRC_MANF_ID"},
    {0x3FFF0176, "INTF_NUM"},         {kResourceClass, "RSRC_CLASS"},
    {kResourceName, "RSRC_NAME"},     {0xBFFF00E9, "INTF_INST_NAME"},
    {0xBFFF0174, "RSRC_MANF_NAME"},
};

std::string Hex(std::uint64_t value) {
    char text[24];
    (void)std::snprintf(text, sizeof(text), "0x%llX", static_cast<unsigned long long>(value));
    return text;
}

std::string Name(ViAttr attribute) {
    for (const NamedAttribute& named : kNames) {
        if (named.attribute == attribute) {
            return named.name;
        }
    }
    return Hex(attribute);
}

// Session numbers of all fakes.
struct Registry {
    std::mutex mutex;
    std::map<ViObject, FakeVisa*> objects;
    ViObject next = 1;
};

Registry& TheRegistry() {
    static Registry registry;
    return registry;
}

FakeVisa* Find(ViObject object) {
    Registry& registry = TheRegistry();
    const std::scoped_lock lock(registry.mutex);
    const auto found = registry.objects.find(object);
    return found == registry.objects.end() ? nullptr : found->second;
}

ViObject Register(FakeVisa* fake) {
    Registry& registry = TheRegistry();
    const std::scoped_lock lock(registry.mutex);
    registry.objects[registry.next] = fake;
    return registry.next++;
}

void Unregister(const std::vector<ViObject>& objects) {
    Registry& registry = TheRegistry();
    const std::scoped_lock lock(registry.mutex);
    for (const ViObject object : objects) {
        registry.objects.erase(object);
    }
}

thread_local FakeVisa* opening = nullptr;

}  // namespace

class FakeVisaFunctions {
  public:
    static ViStatus OpenDefaultRM(ViSession* session) {
        FakeVisa* fake = opening;
        if (fake == nullptr) {
            return kIoError;
        }
        const ViStatus status = Note(fake, "viOpenDefaultRM", "");
        if (status == kOk) {
            *session = Add(fake);
        }
        return status;
    }

    static ViStatus Open(ViSession manager, const char* name, ViAccessMode mode, ViUInt32 timeout,
                         ViSession* session) {
        FakeVisa* fake = Find(manager);
        const ViStatus status =
            Note(fake, "viOpen",
                 Quote(name) + ", " + std::to_string(mode) + ", " + std::to_string(timeout));
        if (status == kOk) {
            *session = Add(fake);
            const std::scoped_lock lock(fake->mutex_);
            fake->texts_.try_emplace(kResourceName, name);
        }
        return status;
    }

    static ViStatus Close(ViObject object) {
        FakeVisa* fake = Find(object);
        const ViStatus status = Note(fake, "viClose", fake == nullptr ? "" : Role(*fake, object));
        if (fake == nullptr) {
            return status;
        }
        std::vector<ViObject> closed{object};
        {
            const std::scoped_lock lock(fake->mutex_);
            if (!fake->open_.empty() && fake->open_.front() == object) {
                closed = fake->open_;
            }
            std::erase_if(fake->open_, [&closed](ViObject open) {
                return std::ranges::find(closed, open) != closed.end();
            });
        }
        Unregister(closed);
        return status;
    }

    static ViStatus GetAttribute(ViObject object, ViAttr attribute, void* value) {
        FakeVisa* fake = Find(object);
        ViStatus status = Note(fake, "viGetAttribute", Name(attribute));
        if (status != kOk) {
            return status;
        }
        const std::scoped_lock lock(fake->mutex_);
        if (const auto failing = fake->failingAttributes_.find(attribute);
            failing != fake->failingAttributes_.end()) {
            return failing->second;
        }
        if (const auto text = fake->texts_.find(attribute); text != fake->texts_.end()) {
            std::memcpy(value, text->second.c_str(), text->second.size() + 1);
            return kOk;
        }
        const auto number = fake->attributes_.find(attribute);
        if (number == fake->attributes_.end()) {
            return kUnsupportedAttribute;
        }
        std::memcpy(value, &number->second.value, number->second.bytes);
        return kOk;
    }

    static ViStatus SetAttribute(ViObject object, ViAttr attribute, ViAttrState value) {
        FakeVisa* fake = Find(object);
        const ViStatus status =
            Note(fake, "viSetAttribute", Name(attribute) + ", " + std::to_string(value));
        if (status != kOk) {
            return status;
        }
        const std::scoped_lock lock(fake->mutex_);
        if (const auto failing = fake->failingAttributes_.find(attribute);
            failing != fake->failingAttributes_.end()) {
            return failing->second;
        }
        fake->attributes_.try_emplace(attribute, FakeVisa::Attribute{0, 8}).first->second.value =
            value;
        return kOk;
    }

    static ViStatus StatusDesc(ViObject object, ViStatus status, char* description) {
        std::string text = "Unknown object";
        if (FakeVisa* fake = Find(object)) {
            const std::scoped_lock lock(fake->mutex_);
            const auto found = fake->descriptions_.find(status);
            text = found == fake->descriptions_.end()
                       ? "VISA status " + Hex(static_cast<std::uint32_t>(status))
                       : found->second;
        }
        std::memcpy(description, text.c_str(), text.size() + 1);
        return kOk;
    }

    static ViStatus Read(ViSession session, ViUInt8* buffer, ViUInt32 count, ViUInt32* actual) {
        FakeVisa* fake = Find(session);
        *actual = 0;
        const ViStatus status = Note(fake, "viRead", std::to_string(count));
        if (fake != nullptr) {
            Callback(*fake);
        }
        if (status != kOk) {
            return status;
        }
        const std::scoped_lock lock(fake->mutex_);
        if (fake->responses_.empty()) {
            return kTimedOut;
        }
        auto& response = fake->responses_.front();
        const FakeVisa::Limit limit = fake->LimitOf(true);
        const bool limited = limit.bytes < count;
        std::size_t wanted = limited ? limit.bytes : count;
        bool atTermChar = false;
        if (Number(*fake, kTermCharEnabled) != 0) {
            const auto stop = response.bytes.find(static_cast<char>(Number(*fake, kTermChar)));
            if (stop != std::string::npos && stop < wanted) {
                wanted = stop + 1;
                atTermChar = true;
            }
        }
        const std::size_t given = std::min(wanted, response.bytes.size());
        std::memcpy(buffer, response.bytes.data(), given);
        *actual = static_cast<ViUInt32>(given);
        response.bytes.erase(0, given);
        // What a delay holds back comes later, its end too.
        const bool drained = response.bytes.empty() && !(limited && limit.timesOut);
        const bool end = response.end;
        if (drained) {
            fake->responses_.pop_front();
        }
        if (drained && end) {
            return kOk;
        }
        if (atTermChar) {
            return kTermCharRead;
        }
        if (limited && limit.timesOut) {
            return kTimedOut;
        }
        return given == count || limited ? kMaxCountRead : kTimedOut;
    }

    static ViStatus Write(ViSession session, const ViUInt8* buffer, ViUInt32 count,
                          ViUInt32* actual) {
        FakeVisa* fake = Find(session);
        *actual = 0;
        const std::string_view bytes(reinterpret_cast<const char*>(buffer), count);
        const ViStatus status = Note(fake, "viWrite", Quote(bytes));
        if (fake != nullptr) {
            Callback(*fake);
        }
        if (status != kOk) {
            return status;
        }
        const std::scoped_lock lock(fake->mutex_);
        const FakeVisa::Limit limit = fake->LimitOf(false);
        const std::size_t taken = std::min<std::size_t>(count, limit.bytes);
        *actual = static_cast<ViUInt32>(taken);
        fake->message_ += bytes.substr(0, taken);
        fake->written_ += bytes.substr(0, taken);
        if (limit.timesOut) {
            return kTimedOut;
        }
        if (Number(*fake, kSendEnd) == 0) {
            return kOk;
        }
        const std::size_t before = fake->mismatches_.size();
        fake->TakeMessage();
        return fake->mismatches_.size() == before ? kOk : kIoError;
    }

    static ViStatus ReadAsync(ViSession session, ViUInt8*, ViUInt32 count, ViJobId* job) {
        const ViStatus status = Note(Find(session), "viReadAsync", std::to_string(count));
        *job = 77;
        return status;
    }

    static ViStatus WriteAsync(ViSession session, const ViUInt8* buffer, ViUInt32 count,
                               ViJobId* job) {
        const std::string_view bytes(reinterpret_cast<const char*>(buffer), count);
        const ViStatus status = Note(Find(session), "viWriteAsync", Quote(bytes));
        *job = 78;
        return status;
    }

    static ViStatus AssertTrigger(ViSession session, ViUInt16 protocol) {
        return Note(Find(session), "viAssertTrigger", std::to_string(protocol));
    }

    static ViStatus ReadSTB(ViSession session, ViUInt16* value) {
        FakeVisa* fake = Find(session);
        const ViStatus status = Note(fake, "viReadSTB", "");
        if (status == kOk) {
            const std::scoped_lock lock(fake->mutex_);
            *value = fake->statusByte_;
        }
        return status;
    }

    static ViStatus Clear(ViSession session) {
        FakeVisa* fake = Find(session);
        const ViStatus status = Note(fake, "viClear", "");
        if (status == kOk) {
            const std::scoped_lock lock(fake->mutex_);
            fake->responses_.clear();
            fake->message_.clear();
        }
        return status;
    }

    static ViStatus Lock(ViSession session, ViAccessMode type, ViUInt32 timeout,
                         const char* requestedKey, char* accessKey) {
        FakeVisa* fake = Find(session);
        const std::string key = requestedKey == nullptr ? "null" : Quote(requestedKey);
        const ViStatus status = Note(
            fake, "viLock", std::to_string(type) + ", " + std::to_string(timeout) + ", " + key);
        if (status == kOk) {
            const std::scoped_lock lock(fake->mutex_);
            ++fake->locks_;
            if (accessKey != nullptr && type == 2) {
                std::strcpy(accessKey, requestedKey == nullptr ? "made-up key" : requestedKey);
            }
        }
        return status;
    }

    static ViStatus Unlock(ViSession session) {
        FakeVisa* fake = Find(session);
        const ViStatus status = Note(fake, "viUnlock", "");
        if (status != kOk) {
            return status;
        }
        const std::scoped_lock lock(fake->mutex_);
        if (fake->locks_ == 0) {
            return kNotLocked;
        }
        --fake->locks_;
        return kOk;
    }

    static ViStatus EnableEvent(ViSession session, ViEventType type, ViUInt16 mechanism,
                                ViEventFilter context) {
        FakeVisa* fake = Find(session);
        const ViStatus status =
            Note(fake, "viEnableEvent",
                 Hex(type) + ", " + std::to_string(mechanism) + ", " + std::to_string(context));
        if (status == kOk) {
            const std::scoped_lock lock(fake->mutex_);
            fake->eventsEnabled_ = true;
        }
        return status;
    }

    static ViStatus DisableEvent(ViSession session, ViEventType type, ViUInt16 mechanism) {
        FakeVisa* fake = Find(session);
        const ViStatus status =
            Note(fake, "viDisableEvent", Hex(type) + ", " + std::to_string(mechanism));
        if (status == kOk) {
            const std::scoped_lock lock(fake->mutex_);
            fake->eventsEnabled_ = false;
        }
        return status;
    }

    static ViStatus DiscardEvents(ViSession session, ViEventType type, ViUInt16 mechanism) {
        FakeVisa* fake = Find(session);
        const ViStatus status =
            Note(fake, "viDiscardEvents", Hex(type) + ", " + std::to_string(mechanism));
        if (status == kOk) {
            const std::scoped_lock lock(fake->mutex_);
            fake->pendingEvents_ = 0;
        }
        return status;
    }

    static ViStatus WaitOnEvent(ViSession session, ViEventType type, ViUInt32 timeout,
                                ViEventType* outType, ViEvent* outContext) {
        FakeVisa* fake = Find(session);
        const ViStatus status =
            Note(fake, "viWaitOnEvent", Hex(type) + ", " + std::to_string(timeout));
        if (status != kOk) {
            return status;
        }
        {
            const std::scoped_lock lock(fake->mutex_);
            if (!fake->eventsEnabled_) {
                return kEventsNotEnabled;
            }
            if (fake->pendingEvents_ == 0 || (type != kServiceRequest && type != kAllEvents)) {
                return kTimedOut;
            }
            --fake->pendingEvents_;
        }
        if (outType != nullptr) {
            *outType = kServiceRequest;
        }
        if (outContext != nullptr) {
            *outContext = Add(fake);
        }
        return kOk;
    }

    static ViStatus InstallHandler(ViSession session, ViEventType type, ViHndlr, void*) {
        return Note(Find(session), "viInstallHandler", Hex(type));
    }

    static ViStatus UninstallHandler(ViSession session, ViEventType type, ViHndlr, void*) {
        return Note(Find(session), "viUninstallHandler", Hex(type));
    }

  private:
    static ViStatus Note(FakeVisa* fake, std::string_view function, const std::string& arguments) {
        if (fake == nullptr) {
            return kInvalidObject;
        }
        return fake->Begin(std::string(function) + "(" + arguments + ")", function);
    }

    static ViObject Add(FakeVisa* fake) {
        const ViObject object = Register(fake);
        const std::scoped_lock lock(fake->mutex_);
        fake->open_.push_back(object);
        return object;
    }

    static std::string Role(const FakeVisa& fake, ViObject object) {
        const std::scoped_lock lock(fake.mutex_);
        if (!fake.open_.empty() && fake.open_.front() == object) {
            return "manager";
        }
        return fake.open_.size() > 1 && fake.open_[1] == object ? "instrument" : "event";
    }

    static std::uint64_t Number(const FakeVisa& fake, ViAttr attribute) {
        const auto found = fake.attributes_.find(attribute);
        return found == fake.attributes_.end() ? 0 : found->second.value;
    }

    static void Callback(FakeVisa& fake) {
        std::function<void()> callback;
        {
            const std::scoped_lock lock(fake.mutex_);
            callback = fake.onTransfer_;
        }
        if (callback) {
            callback();
        }
    }
};

namespace {

constexpr FunctionTable kTable{
    .viOpenDefaultRM = FakeVisaFunctions::OpenDefaultRM,
    .viOpen = FakeVisaFunctions::Open,
    .viClose = FakeVisaFunctions::Close,
    .viGetAttribute = FakeVisaFunctions::GetAttribute,
    .viSetAttribute = FakeVisaFunctions::SetAttribute,
    .viStatusDesc = FakeVisaFunctions::StatusDesc,
    .viRead = FakeVisaFunctions::Read,
    .viWrite = FakeVisaFunctions::Write,
    .viReadAsync = FakeVisaFunctions::ReadAsync,
    .viWriteAsync = FakeVisaFunctions::WriteAsync,
    .viAssertTrigger = FakeVisaFunctions::AssertTrigger,
    .viReadSTB = FakeVisaFunctions::ReadSTB,
    .viClear = FakeVisaFunctions::Clear,
    .viLock = FakeVisaFunctions::Lock,
    .viUnlock = FakeVisaFunctions::Unlock,
    .viEnableEvent = FakeVisaFunctions::EnableEvent,
    .viDisableEvent = FakeVisaFunctions::DisableEvent,
    .viDiscardEvents = FakeVisaFunctions::DiscardEvents,
    .viWaitOnEvent = FakeVisaFunctions::WaitOnEvent,
    .viInstallHandler = FakeVisaFunctions::InstallHandler,
    .viUninstallHandler = FakeVisaFunctions::UninstallHandler,
};

}  // namespace

const FunctionTable& fake_visa::Table() {
    return kTable;
}

void fake_visa::OpenNext(FakeVisa* fake) {
    opening = fake;
}

void fake_visa::Forget(FakeVisa* fake, const std::vector<ViObject>& objects) {
    if (opening == fake) {
        opening = nullptr;
    }
    Unregister(objects);
}

}  // namespace kestrion
