#include "tests/visa/conformance_fixture.h"

#include <dlfcn.h>

#include <mutex>
#include <utility>

#include "visa/functions.h"
#include "visa/instrument_catalog.h"

namespace published {

namespace {

using visa_provider::testing::AnswerAll;
using visa_provider::testing::LoopbackServer;
using visa_provider::testing::ScriptedDevice;

constexpr Functions kLinked{
    .viOpenDefaultRM = visa_provider::viOpenDefaultRM,
    .viOpen = visa_provider::viOpen,
    .viClose = visa_provider::viClose,
    .viGetAttribute = visa_provider::viGetAttribute,
    .viSetAttribute = visa_provider::viSetAttribute,
    .viStatusDesc = visa_provider::viStatusDesc,
    .viRead = visa_provider::viRead,
    .viWrite = visa_provider::viWrite,
    .viReadAsync = visa_provider::viReadAsync,
    .viWriteAsync = visa_provider::viWriteAsync,
    .viAssertTrigger = visa_provider::viAssertTrigger,
    .viReadSTB = visa_provider::viReadSTB,
    .viClear = visa_provider::viClear,
    .viLock = visa_provider::viLock,
    .viUnlock = visa_provider::viUnlock,
    .viEnableEvent = visa_provider::viEnableEvent,
    .viDisableEvent = visa_provider::viDisableEvent,
    .viDiscardEvents = visa_provider::viDiscardEvents,
    .viWaitOnEvent = visa_provider::viWaitOnEvent,
    .viInstallHandler = visa_provider::viInstallHandler,
    .viUninstallHandler = visa_provider::viUninstallHandler,
};

template <typename Function>
void Find(void* library, const char* name, Function*& entry) {
    entry = reinterpret_cast<Function*>(dlsym(library, name));
    EXPECT_NE(entry, nullptr) << name;
}

// Stays loaded: its threads, if it ever had some, may outlive a test.
const Functions& OfTheFile() {
    static const Functions functions = [] {
        void* library = dlopen(KESTRION_VISA_FILE, RTLD_NOW | RTLD_LOCAL);
        EXPECT_NE(library, nullptr) << dlerror();
        Functions found{};
        Find(library, "viOpenDefaultRM", found.viOpenDefaultRM);
        Find(library, "viOpen", found.viOpen);
        Find(library, "viClose", found.viClose);
        Find(library, "viGetAttribute", found.viGetAttribute);
        Find(library, "viSetAttribute", found.viSetAttribute);
        Find(library, "viStatusDesc", found.viStatusDesc);
        Find(library, "viRead", found.viRead);
        Find(library, "viWrite", found.viWrite);
        Find(library, "viReadAsync", found.viReadAsync);
        Find(library, "viWriteAsync", found.viWriteAsync);
        Find(library, "viAssertTrigger", found.viAssertTrigger);
        Find(library, "viReadSTB", found.viReadSTB);
        Find(library, "viClear", found.viClear);
        Find(library, "viLock", found.viLock);
        Find(library, "viUnlock", found.viUnlock);
        Find(library, "viEnableEvent", found.viEnableEvent);
        Find(library, "viDisableEvent", found.viDisableEvent);
        Find(library, "viDiscardEvents", found.viDiscardEvents);
        Find(library, "viWaitOnEvent", found.viWaitOnEvent);
        Find(library, "viInstallHandler", found.viInstallHandler);
        Find(library, "viUninstallHandler", found.viUninstallHandler);
        return found;
    }();
    return functions;
}

}  // namespace

// The instruments behind both links.
class ConformanceTest::Instruments {
  public:
    Instruments() {
        former_ = visa_provider::SetInstrumentCatalog(
            {[] { return std::vector<std::string>{"SCRIPTED"}; },
             [this](std::string_view /*model*/) {
                 const std::lock_guard guard(mutex_);
                 record_ = std::make_shared<ScriptedDevice::Record>();
                 return std::make_unique<ScriptedDevice>(record_);
             }});
    }
    ~Instruments() { visa_provider::SetInstrumentCatalog(former_); }
    Instruments(const Instruments&) = delete;
    Instruments& operator=(const Instruments&) = delete;

    [[nodiscard]] std::string SocketResource() const { return server_.Resource(); }
    [[nodiscard]] std::vector<std::string> Written() {
        const std::lock_guard guard(mutex_);
        const std::lock_guard ofRecord(record_->mutex);
        return record_->writes;
    }

  private:
    LoopbackServer server_{AnswerAll};
    visa_provider::InstrumentCatalog former_;
    std::mutex mutex_;
    std::shared_ptr<ScriptedDevice::Record> record_;
};

ConformanceTest::ConformanceTest()
    : visa(GetParam() == Subject::kSocketOfTheFile ? OfTheFile() : kLinked),
      instruments_(std::make_unique<Instruments>()) {}

ConformanceTest::~ConformanceTest() = default;

void ConformanceTest::SetUp() {
    ASSERT_EQ(visa.viOpenDefaultRM(&manager_), VI_SUCCESS);
    session_ = OpenAnother();
    ASSERT_NE(session_, VI_NULL);
}

void ConformanceTest::TearDown() {
    EXPECT_EQ(visa.viClose(manager_), VI_SUCCESS);
}

std::string ConformanceTest::Resource() const {
    return IsSocket() ? instruments_->SocketResource() : "VIRTUAL::SCRIPTED::INSTR";
}

ViSession ConformanceTest::Open(const std::string& resource) {
    ViSession session = VI_NULL;
    EXPECT_EQ(visa.viOpen(manager_, resource.c_str(), VI_NO_LOCK, 5000, &session), VI_SUCCESS)
        << resource;
    return session;
}

ViSession ConformanceTest::OpenAnother() {
    const ViSession session = Open(Resource());
    if (IsSocket()) {
        Set(session, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    }
    return session;
}

ViStatus ConformanceTest::Write(ViSession session, std::string_view text) {
    ViUInt32 count = 0;
    const ViStatus status = visa.viWrite(session, reinterpret_cast<const ViByte*>(text.data()),
                                         static_cast<ViUInt32>(text.size()), &count);
    if (status >= 0) {
        EXPECT_EQ(count, text.size());
    }
    return status;
}

ReadResult ConformanceTest::Read(ViSession session, std::size_t count) {
    std::string buffer(count, '\0');
    ViUInt32 actual = 0xFFFFFFFF;
    const ViStatus status = visa.viRead(session, reinterpret_cast<ViByte*>(buffer.data()),
                                        static_cast<ViUInt32>(count), &actual);
    if (actual > count) {
        ADD_FAILURE() << "The count is " << actual << " of " << count;
        actual = 0;
    }
    buffer.resize(actual);
    return {status, std::move(buffer)};
}

void ConformanceTest::Complete(int times) {
    for (int i = 0; i < times; ++i) {
        ASSERT_EQ(visa.viWriteAsync(session_, nullptr, 0, nullptr), VI_SUCCESS_SYNC);
    }
}

std::string ConformanceTest::GetText(ViObject object, ViAttr attribute) {
    char text[256] = "";
    EXPECT_EQ(visa.viGetAttribute(object, attribute, text), VI_SUCCESS);
    return text;
}

void ConformanceTest::Set(ViObject object, ViAttr attribute, ViAttrState state) {
    EXPECT_EQ(visa.viSetAttribute(object, attribute, state), VI_SUCCESS);
}

std::vector<std::string> ConformanceTest::WrittenToInstrument() const {
    return instruments_->Written();
}

std::string NameOf(const ::testing::TestParamInfo<Subject>& info) {
    switch (info.param) {
        case Subject::kSocket:
            return "Socket";
        case Subject::kVirtual:
            return "Virtual";
        case Subject::kSocketOfTheFile:
            break;
    }
    return "SocketOfTheFile";
}

}  // namespace published
