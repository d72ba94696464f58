#include "kestrion/platform/error_info.h"

#include <gtest/gtest.h>

#include <thread>

namespace kestrion {
namespace {

constexpr GUID kSomeInterface{0x01020304, 0x0506, 0x0708, {1, 2, 3, 4, 5, 6, 7, 8}};

ComPtr<IErrorInfo> Make(const char16_t* description) {
    ComPtr<ICreateErrorInfo> created;
    EXPECT_EQ(CreateErrorInfo(created.Out()), S_OK);
    EXPECT_EQ(created->SetGUID(kSomeInterface), S_OK);
    EXPECT_EQ(created->SetSource(u"Kestrion.Kestrion"), S_OK);
    EXPECT_EQ(created->SetDescription(description), S_OK);
    EXPECT_EQ(created->SetHelpFile(u"Kestrion.chm"), S_OK);
    EXPECT_EQ(created->SetHelpContext(1215), S_OK);
    return Query<IErrorInfo>(created.Get());
}

TEST(ErrorInfo, GivesBackEveryField) {
    const auto error = Make(u"went wrong");
    GUID iid{};
    BstrPtr text;
    DWORD context = 0;
    EXPECT_EQ(error->GetGUID(&iid), S_OK);
    EXPECT_EQ(iid, kSomeInterface);
    EXPECT_EQ(error->GetSource(text.Out()), S_OK);
    EXPECT_EQ(text.View(), u"Kestrion.Kestrion");
    EXPECT_EQ(error->GetDescription(text.Out()), S_OK);
    EXPECT_EQ(text.View(), u"went wrong");
    EXPECT_EQ(error->GetHelpFile(text.Out()), S_OK);
    EXPECT_EQ(text.View(), u"Kestrion.chm");
    EXPECT_EQ(error->GetHelpContext(&context), S_OK);
    EXPECT_EQ(context, 1215U);
    EXPECT_EQ(error->GetGUID(nullptr), E_POINTER);
    EXPECT_EQ(error->GetSource(nullptr), E_POINTER);
}

TEST(ErrorInfo, IsTakenOffTheThreadByGet) {
    ASSERT_EQ(SetErrorInfo(0, Make(u"once").Get()), S_OK);
    ComPtr<IErrorInfo> taken;
    EXPECT_EQ(GetErrorInfo(0, taken.Out()), S_OK);
    BstrPtr text;
    EXPECT_EQ(taken->GetDescription(text.Out()), S_OK);
    EXPECT_EQ(text.View(), u"once");
    EXPECT_EQ(GetErrorInfo(0, taken.Out()), S_FALSE);
    EXPECT_FALSE(taken);
}

TEST(ErrorInfo, BelongsToOneThread) {
    ASSERT_EQ(SetErrorInfo(0, Make(u"mine").Get()), S_OK);
    std::thread([] {
        ComPtr<IErrorInfo> other;
        EXPECT_EQ(GetErrorInfo(0, other.Out()), S_FALSE);
        EXPECT_EQ(SetErrorInfo(0, Make(u"its own").Get()), S_OK);
    }).join();
    EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
    ComPtr<IErrorInfo> cleared;
    EXPECT_EQ(GetErrorInfo(0, cleared.Out()), S_FALSE);
}

TEST(ErrorInfo, ReservedWordMustBeZero) {
    ComPtr<IErrorInfo> error;
    EXPECT_EQ(SetErrorInfo(1, nullptr), E_INVALIDARG);
    EXPECT_EQ(GetErrorInfo(1, error.Out()), E_INVALIDARG);
    EXPECT_EQ(GetErrorInfo(0, nullptr), E_POINTER);
    EXPECT_EQ(CreateErrorInfo(nullptr), E_POINTER);
}

TEST(ErrorInfo, KeepsOneIdentityOverItsFaces) {
    ComPtr<ICreateErrorInfo> created;
    ASSERT_EQ(CreateErrorInfo(created.Out()), S_OK);
    const auto face = Query<IErrorInfo>(created.Get());
    EXPECT_EQ(Query<IUnknown>(face.Get()).Get(), Query<IUnknown>(created.Get()).Get());
    EXPECT_FALSE(Query<ISupportErrorInfo>(created.Get()));
}

}  // namespace
}  // namespace kestrion
