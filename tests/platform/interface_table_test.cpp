#include "kestrion/platform/interface_table.h"

#include <gtest/gtest.h>

#include "kestrion/platform/error_info.h"

namespace kestrion {
namespace {

ULONG CountOf(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

TEST(InterfaceTable, HoldsOneCountUntilRevoked) {
    ComPtr<ICreateErrorInfo> object;
    ASSERT_EQ(CreateErrorInfo(object.Out()), S_OK);
    DWORD cookie = 0;
    ASSERT_EQ(RegisterInterface(object.Get(), kInterfaceId<ICreateErrorInfo>, &cookie), S_OK);
    EXPECT_NE(cookie, 0U);
    EXPECT_EQ(CountOf(object.Get()), 2U);

    void* found = nullptr;
    ASSERT_EQ(GetInterface(cookie, kInterfaceId<IErrorInfo>, &found), S_OK);
    EXPECT_EQ(CountOf(object.Get()), 3U);
    static_cast<IErrorInfo*>(found)->Release();

    EXPECT_EQ(RevokeInterface(cookie), S_OK);
    EXPECT_EQ(CountOf(object.Get()), 1U);
    EXPECT_EQ(RevokeInterface(cookie), E_INVALIDARG);
}

TEST(InterfaceTable, RefusesWhatItDoesNotKnow) {
    void* found = &found;
    EXPECT_EQ(GetInterface(0, kInterfaceId<IUnknown>, &found), E_INVALIDARG);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(GetInterface(0, kInterfaceId<IUnknown>, nullptr), E_POINTER);
    DWORD cookie = 9;
    EXPECT_EQ(RegisterInterface(nullptr, kInterfaceId<IUnknown>, &cookie), E_INVALIDARG);
    EXPECT_EQ(cookie, 0U);
    ComPtr<ICreateErrorInfo> object;
    ASSERT_EQ(CreateErrorInfo(object.Out()), S_OK);
    EXPECT_EQ(RegisterInterface(object.Get(), kInterfaceId<ISupportErrorInfo>, &cookie),
              E_NOINTERFACE);
    EXPECT_EQ(RegisterInterface(object.Get(), kInterfaceId<IUnknown>, nullptr), E_POINTER);
}

}  // namespace
}  // namespace kestrion
