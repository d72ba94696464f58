#include "core/error_reporter.h"

#include <gtest/gtest.h>

#include "kestrion/platform/error_info.h"

namespace kestrion {
namespace {

constexpr MethodDescriptor kMethod{
    .iid = {0x11111111, 0x2222, 0x3333, {4, 4, 4, 4, 5, 5, 5, 5}},
    .interfaceName = "ISome",
    .memberName = "get_Thing",
    .fullName = "ISome.Thing",
    .command = "",
    .response = "",
    .refusedFamilies = {},
};

class FixedContext final : public ICallContextProvider {
  public:
    const MethodDescriptor* method = &kMethod;
    [[nodiscard]] const MethodDescriptor* GetCurrentMethod() override { return method; }
};

class ErrorReporterTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(SetErrorInfo(0, nullptr), S_OK); }
    void TearDown() override { ASSERT_EQ(SetErrorInfo(0, nullptr), S_OK); }

    // Takes the thread's error object; null without one.
    ComPtr<IErrorInfo> Taken() {
        ComPtr<IErrorInfo> error;
        EXPECT_GE(GetErrorInfo(0, error.Out()), 0);
        return error;
    }
    std::string Description() {
        const auto error = Taken();
        BstrPtr text;
        if (error) {
            EXPECT_EQ(error->GetDescription(text.Out()), S_OK);
        }
        return text.Utf8();
    }

    FixedContext context_;
    CErrorReporter reporter_{context_};
};

TEST_F(ErrorReporterTest, FillsEveryFieldOfTheErrorObject) {
    EXPECT_EQ(reporter_.Report(44, {"get_Paired"}), MakeStatus(0x80044216));
    const auto error = Taken();
    ASSERT_TRUE(error);
    GUID iid{};
    BstrPtr text;
    DWORD context = 0;
    EXPECT_EQ(error->GetGUID(&iid), S_OK);
    EXPECT_EQ(iid, kMethod.iid);
    EXPECT_EQ(error->GetSource(text.Out()), S_OK);
    EXPECT_EQ(text.View(), u"Kestrion.Kestrion");
    EXPECT_EQ(error->GetDescription(text.Out()), S_OK);
    EXPECT_EQ(text.View(),
              u"Kestrion: Instrument model does not support this feature: get_Paired.");
    EXPECT_EQ(error->GetHelpFile(text.Out()), S_OK);
    EXPECT_EQ(text.View(), u"Kestrion.chm");
    EXPECT_EQ(error->GetHelpContext(&context), S_OK);
    EXPECT_EQ(context, 1215U);
}

TEST_F(ErrorReporterTest, AMessageWithoutHelpContextNamesNoHelpFile) {
    EXPECT_EQ(reporter_.Report(12), MakeStatus(0x8004701D));
    const auto error = Taken();
    ASSERT_TRUE(error);
    BstrPtr text;
    DWORD context = 9;
    EXPECT_EQ(error->GetHelpFile(text.Out()), S_OK);
    EXPECT_EQ(text.View(), u"");
    EXPECT_EQ(error->GetHelpContext(&context), S_OK);
    EXPECT_EQ(context, 0U);
}

TEST_F(ErrorReporterTest, DetailStandsBehindACarriageReturnAndLineFeed) {
    EXPECT_EQ(reporter_.ReportDetail(51, "Maximum Acquisition timeout exceeded."),
              MakeStatus(0x80042003));
    EXPECT_EQ(Description(),
              "Kestrion: Maximum time exceeded before the operation completed.\r\n"
              "Maximum Acquisition timeout exceeded.");
    EXPECT_EQ(reporter_.ReportDetail(51, ""), MakeStatus(0x80042003));
    EXPECT_EQ(Description(), "Kestrion: Maximum time exceeded before the operation completed.");
}

TEST_F(ErrorReporterTest, ArgumentsAreInsertedInTheirPlaces) {
    EXPECT_EQ(reporter_.Report(8, {"7", "put_Mode", "nVal"}), MakeStatus(0x80047010));
    EXPECT_EQ(Description(), "Kestrion: Invalid value (7) for method put_Mode, parameter nVal.");
    EXPECT_EQ(reporter_.Report(22, {"get_Mode", "val"}), MakeStatus(0x80047058));
    EXPECT_EQ(Description(), "Kestrion: Null pointer passed for method get_Mode, parameter val.");
}

TEST_F(ErrorReporterTest, ACodeWithoutARowIsAnInternalError) {
    EXPECT_EQ(reporter_.ReportDetail(236, "InstrSet", {"Val"}), MakeStatus(0x80020009));
    const auto error = Taken();
    ASSERT_TRUE(error);
    BstrPtr text;
    EXPECT_EQ(error->GetDescription(text.Out()), S_OK);
    EXPECT_TRUE(text.View().starts_with(
        u"Internal Error: Unable to retrieve and format error message from message "
        u"table.\nResource ID = 236\nLanguage ID = 0\nReason = '"));
    EXPECT_TRUE(text.View().ends_with(u"'"));
    GUID iid = kMethod.iid;
    DWORD context = 1;
    EXPECT_EQ(error->GetGUID(&iid), S_OK);
    EXPECT_EQ(iid, GUID{});
    EXPECT_EQ(error->GetHelpContext(&context), S_OK);
    EXPECT_EQ(context, 0U);
}

TEST_F(ErrorReporterTest, SuccessDoesNotGoWithAnErrorObject) {
    EXPECT_EQ(reporter_.Report(1), MakeStatus(0x80020009));
    EXPECT_EQ(Description(), "Kestrion: Success.");
}

TEST_F(ErrorReporterTest, AWarningStaysAWarningAndLeavesAnErrorObject) {
    EXPECT_EQ(reporter_.Report(53), 0x00042001);
    EXPECT_EQ(Description(), "Kestrion: One of the elements in the waveform array is invalid.");
}

TEST_F(ErrorReporterTest, IoErrorsTakeTheWordsOfTheLayerBelow) {
    EXPECT_EQ(reporter_.RaiseWithStatus(MakeStatus(0x800400A6), "The connection is lost."),
              MakeStatus(0x800400A6));
    EXPECT_EQ(reporter_.ReportIoError("while reading"), MakeStatus(0x80044214));
    EXPECT_EQ(Description(), "Kestrion: I/O error: The connection is lost..\r\nwhile reading");
    EXPECT_EQ(reporter_.ReportIoTimeout(""), MakeStatus(0x80044215));
    EXPECT_EQ(Description(), "Kestrion: I/O timeout error: .");
}

TEST_F(ErrorReporterTest, RaiseWithStatusKeepsTheMessageAsItStands) {
    EXPECT_EQ(reporter_.RaiseWithStatus(MakeStatus(0x80040011), "Not there %1"),
              MakeStatus(0x80040011));
    EXPECT_EQ(Description(), "Not there %1");
}

TEST_F(ErrorReporterTest, TheMethodComesFromTheRunningCall) {
    EXPECT_EQ(reporter_.ReportNullPointer("pBuf", ""), MakeStatus(0x80047058));
    EXPECT_EQ(Description(), "Kestrion: Null pointer passed for method get_Thing, parameter pBuf.");
    context_.method = nullptr;
    EXPECT_EQ(reporter_.ReportNullPointer("pBuf", ""), MakeStatus(0x80047058));
    EXPECT_EQ(Description(), "Kestrion: Null pointer passed for method , parameter pBuf.");
}

TEST_F(ErrorReporterTest, TextsBeyondAsciiArrive) {
    EXPECT_EQ(reporter_.Report(19, {"\xC2\xB5s"}), MakeStatus(0x8004704C));
    EXPECT_EQ(Description(), "Kestrion: The \xC2\xB5s value in the option string is unknown.");
}

}  // namespace
}  // namespace kestrion
