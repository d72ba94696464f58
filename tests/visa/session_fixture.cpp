#include "tests/visa/session_fixture.h"

namespace visa_provider::testing {

std::unique_ptr<virtual_scope::DeviceLink> VisaTest::MakeInstrument() {
    const std::lock_guard guard(mutex_);
    record_ = std::make_shared<ScriptedDevice::Record>();
    auto device = std::make_unique<ScriptedDevice>(record_);
    device_ = device.get();
    return device;
}

std::shared_ptr<ScriptedDevice::Record> VisaTest::LastRecord() {
    const std::lock_guard guard(mutex_);
    return record_;
}

ScriptedDevice& VisaTest::LastDevice() {
    const std::lock_guard guard(mutex_);
    return *device_;
}

void VisaTest::SetUp() {
    former_ = SetInstrumentCatalog(
        {[] {
             return std::vector<std::string>{"PL7254C", "SCRIPTED", "Mixed-Case"};
         },
         [this](std::string_view /*model*/) { return MakeInstrument(); }});
    ASSERT_EQ(viOpenDefaultRM(&manager_), VI_SUCCESS);
}

void VisaTest::TearDown() {
    EXPECT_EQ(viClose(manager_), VI_SUCCESS);
    SetInstrumentCatalog(former_);
}

ViSession VisaTest::Open(const std::string& resource) {
    ViSession session = VI_NULL;
    EXPECT_EQ(viOpen(manager_, resource.c_str(), VI_NO_LOCK, 5000, &session), VI_SUCCESS)
        << resource;
    return session;
}

ViStatus VisaTest::Write(ViSession session, std::string_view text) {
    ViUInt32 count = 0;
    const ViStatus status = viWrite(session, reinterpret_cast<const ViByte*>(text.data()),
                                    static_cast<ViUInt32>(text.size()), &count);
    if (status >= 0) {
        EXPECT_EQ(count, text.size());
    }
    return status;
}

ReadResult VisaTest::Read(ViSession session, std::size_t count) {
    std::string buffer(count, '\0');
    ViUInt32 actual = 0xFFFFFFFF;
    const ViStatus status = viRead(session, reinterpret_cast<ViByte*>(buffer.data()),
                                   static_cast<ViUInt32>(count), &actual);
    if (actual > count) {
        ADD_FAILURE() << "The count is " << actual << " of " << count;
        actual = 0;
    }
    buffer.resize(actual);
    return {status, std::move(buffer)};
}

std::string VisaTest::GetText(ViSession object, ViAttr attribute) {
    char text[256] = "";
    EXPECT_EQ(viGetAttribute(object, attribute, text), VI_SUCCESS);
    return text;
}

void VisaTest::Set(ViSession object, ViAttr attribute, ViAttrState state) {
    EXPECT_EQ(viSetAttribute(object, attribute, state), VI_SUCCESS);
}

}  // namespace visa_provider::testing
