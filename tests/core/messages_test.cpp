// Every message of the driver: its status, help context and words.
#include <gmock/gmock.h>

#include <functional>
#include <string_view>
#include <vector>

#include "core/error_reporter.h"
#include "kestrion/platform/bstr.h"
#include "kestrion/platform/error_info.h"

namespace kestrion {
namespace {

struct Message {
    std::int32_t code;
    std::uint32_t status;
    std::uint32_t helpContext;
    const char* text;
};

constexpr Message kMessages[] = {
    {1, 0, 0, "Success."},
    {2, 0x80047000, 0, "Unrecoverable failure."},
    {3, 0x80047001, 0, "Instrument error detected.  Use ErrorQuery() to determine error(s)."},
    {4, 0x80047002, 0, "Cannot open file."},
    {5, 0x80047003, 0, "Error reading file."},
    {6, 0x80047004, 0, "Error writing file."},
    {7, 0x8004700B, 0, "The path name is invalid."},
    {8, 0x80047010, 0, "Invalid value (%1) for method %2, parameter %3."},
    {9, 0x80047011, 0, "Does not support this class-compliant feature: method %1."},
    {10, 0x80047012, 0, "Does not support this class-compliant feature: property %1."},
    {11, 0x80047013, 0,
     "Does not support this class-compliant feature: (enumeration) value %1 passed as the value "
     "for parameter %2 in method %3."},
    {12, 0x8004701D, 0, "A connection to the instrument has not been established."},
    {13, 0x80047020, 0, "Unknown channel name."},
    {14, 0x80047023, 0, "Too many files are opened."},
    {15, 0x80047044, 0, "A channel name is required."},
    {16, 0x80047049, 0, "The option string is missing an option name."},
    {17, 0x8004704A, 0, "The option string is missing an option value."},
    {18, 0x8004704B, 0, "The %1 name in the option string is unknown."},
    {19, 0x8004704C, 0, "The %1 value in the option string is unknown."},
    {20, 0x80047056, 0, "Could not allocate necessary memory."},
    {21, 0x80047057, 0, "Operation in progress."},
    {22, 0x80047058, 0, "Null pointer passed for method %1, parameter %2."},
    {23, 0x80047059, 0, "Unexpected response from the instrument."},
    {24, 0x8004705B, 0, "File not found."},
    {25, 0x8004705C, 0, "Invalid file format."},
    {26, 0x8004705D, 0, "The instrument status is not available."},
    {27, 0x8004705E, 0, "Instrument ID query failed."},
    {28, 0x8004705F, 0, "Instrument reset failed."},
    {29, 0x80047060, 0, "Unknown resource."},
    {30, 0x80047061, 0, "The driver is already initialized."},
    {31, 0x80047062, 0, "The simulation state cannot be changed."},
    {32, 0x80047063, 0,
     "The number of levels in the selector is not valid for the %1 repeated capability."},
    {33, 0x80047064, 0, "The range %1 is not valid for the repeated capability %2."},
    {34, 0x80047065, 0, "Unknown name in selector."},
    {35, 0x80047066, 0, "The repeated capability selector is badly-formed."},
    {36, 0x80047067, 0, "Unknown physical repeated capability selector."},
    {37, 0x00047065, 0, "ID Query is not supported by this instrument."},
    {38, 0x00047066, 0, "Reset is not supported by this instrument."},
    {39, 0x00047067, 0, "Self test is not supported by this instrument."},
    {40, 0x00047068, 0, "Error query is not supported by this instrument."},
    {41, 0x00047069, 0, "Firmware revision query is not supported by this instrument."},
    {42, 0x80044214, 1215, "I/O error: %1."},
    {43, 0x80044215, 1215, "I/O timeout error: %1."},
    {44, 0x80044216, 1215, "Instrument model does not support this feature: %1."},
    {45, 0x80044211, 1215, "Personality is not active."},
    {47, 0x80044212, 1215, "Personality is not installed."},
    {48, 0x80044217, 1215, "Preview State,Acquire the Waveform."},
    {49, 0x80042001, 2, "Specified channel is not enabled."},
    {50, 0x80042002, 2, "Unable to perform desired measurement operation."},
    {51, 0x80042003, 2, "Maximum time exceeded before the operation completed."},
    {52, 0x80042004, 2, "Invalid acquisition type."},
    {53, 0x00042001, 2, "One of the elements in the waveform array is invalid."},
};

TEST(Messages, EveryRowHasItsStatusItsHelpContextAndItsWords) {
    const std::span<const MessageData> messages = AllMessages();
    ASSERT_EQ(messages.size(), std::size(kMessages));
    for (std::size_t i = 0; i < messages.size(); ++i) {
        const Message& expected = kMessages[i];
        EXPECT_EQ(messages[i].code, expected.code);
        EXPECT_EQ(messages[i].status, MakeStatus(expected.status)) << expected.code;
        EXPECT_EQ(messages[i].helpContext, expected.helpContext) << expected.code;
        EXPECT_EQ(messages[i].text, "Kestrion: " + std::string(expected.text) + "\r\n")
            << expected.code;
    }
}

class NoContext final : public ICallContextProvider {
  public:
    [[nodiscard]] const MethodDescriptor* GetCurrentMethod() override { return nullptr; }
};

std::string TakenDescription() {
    ComPtr<IErrorInfo> error;
    BstrPtr text;
    if (GetErrorInfo(0, error.Out()) == S_OK) {
        EXPECT_EQ(error->GetDescription(text.Out()), S_OK);
    }
    return text.Utf8();
}

TEST(Messages, EachIsRaisedWithItsStatusAndItsHelp) {
    NoContext context;
    CErrorReporter reporter(context);
    for (const Message& expected : kMessages) {
        const HRESULT status =
            expected.code == 1 ? MakeStatus(0x80020009) : MakeStatus(expected.status);
        EXPECT_EQ(reporter.Report(expected.code), status) << expected.code;
        ComPtr<IErrorInfo> error;
        ASSERT_EQ(GetErrorInfo(0, error.Out()), S_OK) << expected.code;
        DWORD helpContext = 99;
        EXPECT_EQ(error->GetHelpContext(&helpContext), S_OK);
        EXPECT_EQ(helpContext, expected.helpContext) << expected.code;
        BstrPtr file;
        EXPECT_EQ(error->GetHelpFile(file.Out()), S_OK);
        EXPECT_EQ(file.Utf8(), expected.helpContext == 0 ? "" : "Kestrion.chm") << expected.code;
    }
}

TEST(Messages, NumbersWithoutAMessageAreInternalErrors) {
    NoContext context;
    CErrorReporter reporter(context);
    for (const std::int32_t code : {0, -1, 46, 54, 236, 240, 241, 245, 246}) {
        EXPECT_EQ(reporter.Report(code), MakeStatus(0x80020009)) << code;
        EXPECT_THAT(TakenDescription(),
                    testing::StartsWith("Internal Error: Unable to retrieve and format error "
                                        "message from message table.\nResource ID = " +
                                        std::to_string(code) + "\nLanguage ID = 0\nReason = '"))
            << code;
    }
}

// Arguments are put in by their numbers, as they stand.

std::string Insert(std::string_view text, std::initializer_list<std::string_view> arguments) {
    return InsertArguments(text, arguments);
}

TEST(InsertArguments, GoesByNumberAndNotByPlace) {
    EXPECT_EQ(Insert("%2 before %1", {"one", "two"}), "two before one");
    EXPECT_EQ(Insert("%1%1", {"x"}), "xx");
}

TEST(InsertArguments, DoesNotReadTheArgumentsAgain) {
    EXPECT_EQ(Insert("%1 and %2", {"%2", "50 %"}), "%2 and 50 %");
}

TEST(InsertArguments, LeavesOutWhatIsNotThere) {
    EXPECT_EQ(Insert("a %1 b %3 c", {"x"}), "a x b  c");
    EXPECT_EQ(Insert("", {"x"}), "");
}

TEST(InsertArguments, TakesNumbersOfTwoDigits) {
    EXPECT_EQ(Insert("%10.%11", {"1", "2", "3", "4", "5", "6", "7", "8", "9", "ten"}), "ten.");
    EXPECT_EQ(Insert("%123", {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"}),
              "123");
}

TEST(InsertArguments, KnowsTheEscapesOfMessageResources) {
    EXPECT_EQ(Insert("100%%", {"x"}), "100%");
    EXPECT_EQ(Insert("a%nb", {}), "a\r\nb");
    EXPECT_EQ(Insert("a%!%.% b", {}), "a!. b");
    EXPECT_EQ(Insert("seen%0 not seen", {}), "seen");
    EXPECT_EQ(Insert("ends in %", {"x"}), "ends in %");
}

// The named operations: each has its message, takes a detail, and puts its arguments in place.

struct Operation {
    const char* name;
    std::function<HRESULT(CErrorReporter&)> run;
    std::uint32_t status;
    const char* text;
};

const std::vector<Operation>& Operations() {
    using R = CErrorReporter;
    static const std::vector<Operation> operations = {
        {"ReportNotSupportedByModel",
         [](R& r) { return r.ReportNotSupportedByModel("get_Paired", "D"); }, 0x80044216,
         "Instrument model does not support this feature: get_Paired."},
        {"ReportPersonalityNotActive", [](R& r) { return r.ReportPersonalityNotActive("D"); },
         0x80044211, "Personality is not active."},
        {"ReportPersonalityNotInstalled", [](R& r) { return r.ReportPersonalityNotInstalled("D"); },
         0x80044212, "Personality is not installed."},
        {"ReportMethodNotSupported",
         [](R& r) { return r.ReportMethodNotSupported("LockObject", "D"); }, 0x80047011,
         "Does not support this class-compliant feature: method LockObject."},
        {"ReportPropertyNotSupported",
         [](R& r) { return r.ReportPropertyNotSupported("get_X", "D"); }, 0x80047012,
         "Does not support this class-compliant feature: property get_X."},
        {"ReportInvalidValue",
         [](R& r) { return r.ReportInvalidValue("Name", "Index", ValueText(-4), "D"); }, 0x80047010,
         "Invalid value (-4) for method Name, parameter Index."},
        {"ReportNullPointer",
         [](R& r) { return r.ReportNullPointer("SelfTest", "TestMessage", "D"); }, 0x80047058,
         "Null pointer passed for method SelfTest, parameter TestMessage."},
        {"ReportValueNotSupported",
         [](R& r) { return r.ReportValueNotSupported("VARIANT_TRUE", "val", "put_X", "D"); },
         0x80047013,
         "Does not support this class-compliant feature: (enumeration) value VARIANT_TRUE passed "
         "as the value for parameter val in method put_X."},
        {"ReportAlreadyInitialized", [](R& r) { return r.ReportAlreadyInitialized("D"); },
         0x80047061, "The driver is already initialized."},
        {"ReportNotInitialized", [](R& r) { return r.ReportNotInitialized("D"); }, 0x8004701D,
         "A connection to the instrument has not been established."},
        {"ReportCannotChangeSimulation", [](R& r) { return r.ReportCannotChangeSimulation("D"); },
         0x80047062, "The simulation state cannot be changed."},
        {"ReportMissingOptionName", [](R& r) { return r.ReportMissingOptionName("D"); }, 0x80047049,
         "The option string is missing an option name."},
        {"ReportMissingOptionValue", [](R& r) { return r.ReportMissingOptionValue("D"); },
         0x8004704A, "The option string is missing an option value."},
        {"ReportUnknownOptionName", [](R& r) { return r.ReportUnknownOptionName("speed", "D"); },
         0x8004704B, "The speed name in the option string is unknown."},
        {"ReportUnknownOptionValue", [](R& r) { return r.ReportUnknownOptionValue("yes", "D"); },
         0x8004704C, "The yes value in the option string is unknown."},
        {"ReportUnknownResource", [](R& r) { return r.ReportUnknownResource("D"); }, 0x80047060,
         "Unknown resource."},
        {"ReportIdQueryFailed", [](R& r) { return r.ReportIdQueryFailed("D"); }, 0x8004705E,
         "Instrument ID query failed."},
        {"ReportResetFailed", [](R& r) { return r.ReportResetFailed("D"); }, 0x8004705F,
         "Instrument reset failed."},
        {"ReportUnknownChannel", [](R& r) { return r.ReportUnknownChannel("D"); }, 0x80047020,
         "Unknown channel name."},
        {"ReportChannelNameRequired", [](R& r) { return r.ReportChannelNameRequired("D"); },
         0x80047044, "A channel name is required."},
        {"ReportBadSelector", [](R& r) { return r.ReportBadSelector("D"); }, 0x80047066,
         "The repeated capability selector is badly-formed."},
        {"ReportBadSelectorLevels", [](R& r) { return r.ReportBadSelectorLevels("Channel", "D"); },
         0x80047063,
         "The number of levels in the selector is not valid for the Channel repeated capability."},
        {"ReportBadRange", [](R& r) { return r.ReportBadRange("3-1", "Channel", "D"); }, 0x80047064,
         "The range 3-1 is not valid for the repeated capability Channel."},
        {"ReportUnknownNameInSelector", [](R& r) { return r.ReportUnknownNameInSelector("D"); },
         0x80047065, "Unknown name in selector."},
        {"ReportUnknownPhysicalSelector", [](R& r) { return r.ReportUnknownPhysicalSelector("D"); },
         0x80047067, "Unknown physical repeated capability selector."},
        {"ReportInstrumentError", [](R& r) { return r.ReportInstrumentError("D"); }, 0x80047001,
         "Instrument error detected.  Use ErrorQuery() to determine error(s)."},
        {"ReportUnexpectedResponse", [](R& r) { return r.ReportUnexpectedResponse("D"); },
         0x80047059, "Unexpected response from the instrument."},
        {"ReportStatusNotAvailable", [](R& r) { return r.ReportStatusNotAvailable("D"); },
         0x8004705D, "The instrument status is not available."},
        {"ReportOperationInProgress", [](R& r) { return r.ReportOperationInProgress("D"); },
         0x80047057, "Operation in progress."},
        {"ReportPreviewState", [](R& r) { return r.ReportPreviewState("D"); }, 0x80044217,
         "Preview State,Acquire the Waveform."},
        {"ReportChannelNotEnabled", [](R& r) { return r.ReportChannelNotEnabled("D"); }, 0x80042001,
         "Specified channel is not enabled."},
        {"ReportMeasurementFailed", [](R& r) { return r.ReportMeasurementFailed("D"); }, 0x80042002,
         "Unable to perform desired measurement operation."},
        {"ReportMaxTimeExceeded", [](R& r) { return r.ReportMaxTimeExceeded("D"); }, 0x80042003,
         "Maximum time exceeded before the operation completed."},
        {"ReportInvalidAcquisitionType", [](R& r) { return r.ReportInvalidAcquisitionType("D"); },
         0x80042004, "Invalid acquisition type."},
        {"ReportCannotOpenFile", [](R& r) { return r.ReportCannotOpenFile("D"); }, 0x80047002,
         "Cannot open file."},
        {"ReportReadError", [](R& r) { return r.ReportReadError("D"); }, 0x80047003,
         "Error reading file."},
        {"ReportWriteError", [](R& r) { return r.ReportWriteError("D"); }, 0x80047004,
         "Error writing file."},
        {"ReportInvalidPath", [](R& r) { return r.ReportInvalidPath("D"); }, 0x8004700B,
         "The path name is invalid."},
        {"ReportTooManyFiles", [](R& r) { return r.ReportTooManyFiles("D"); }, 0x80047023,
         "Too many files are opened."},
        {"ReportFileNotFound", [](R& r) { return r.ReportFileNotFound("D"); }, 0x8004705B,
         "File not found."},
        {"ReportInvalidFileFormat", [](R& r) { return r.ReportInvalidFileFormat("D"); }, 0x8004705C,
         "Invalid file format."},
        {"ReportOutOfMemory", [](R& r) { return r.ReportOutOfMemory("D"); }, 0x80047056,
         "Could not allocate necessary memory."},
        {"ReportUnrecoverable", [](R& r) { return r.ReportUnrecoverable("D"); }, 0x80047000,
         "Unrecoverable failure."},
        {"ReportIdQueryNotSupported", [](R& r) { return r.ReportIdQueryNotSupported("D"); },
         0x00047065, "ID Query is not supported by this instrument."},
        {"ReportResetNotSupported", [](R& r) { return r.ReportResetNotSupported("D"); }, 0x00047066,
         "Reset is not supported by this instrument."},
        {"ReportSelfTestNotSupported", [](R& r) { return r.ReportSelfTestNotSupported("D"); },
         0x00047067, "Self test is not supported by this instrument."},
        {"ReportErrorQueryNotSupported", [](R& r) { return r.ReportErrorQueryNotSupported("D"); },
         0x00047068, "Error query is not supported by this instrument."},
        {"ReportFirmwareQueryNotSupported",
         [](R& r) { return r.ReportFirmwareQueryNotSupported("D"); }, 0x00047069,
         "Firmware revision query is not supported by this instrument."},
        {"ReportInvalidWaveformElement", [](R& r) { return r.ReportInvalidWaveformElement("D"); },
         0x00042001, "One of the elements in the waveform array is invalid."},
        {"ReportIoError", [](R& r) { return r.ReportIoError("D"); }, 0x80044214, "I/O error: ."},
        {"ReportIoTimeout", [](R& r) { return r.ReportIoTimeout("D"); }, 0x80044215,
         "I/O timeout error: ."},
    };
    return operations;
}

TEST(NamedReports, EachRaisesItsMessageWithTheDetailBehindIt) {
    NoContext context;
    CErrorReporter reporter(context);
    for (const Operation& operation : Operations()) {
        EXPECT_EQ(operation.run(reporter), MakeStatus(operation.status)) << operation.name;
        EXPECT_EQ(TakenDescription(), "Kestrion: " + std::string(operation.text) + "\r\nD")
            << operation.name;
    }
}

TEST(NamedReports, ValuesAreShownAsText) {
    EXPECT_EQ(ValueText(true), "True");
    EXPECT_EQ(ValueText(false), "False");
    EXPECT_EQ(ValueText(0), "0");
    EXPECT_EQ(ValueText(-2147483647 - 1), "-2147483648");
    EXPECT_EQ(ValueText(0.25), "0.25");
    EXPECT_EQ(ValueText(1e300), "1e+300");
}

constexpr MethodDescriptor kRunning{
    .iid = {},
    .interfaceName = "ISome",
    .memberName = "put_Thing",
    .fullName = "ISome.Thing",
    .command = "",
    .response = "",
    .refusedFamilies = {},
};

class RunningMember final : public ICallContextProvider {
  public:
    [[nodiscard]] const MethodDescriptor* GetCurrentMethod() override { return &kRunning; }
};

TEST(NamedReports, TheMethodIsTheRunningOneWhereNoneIsNamed) {
    RunningMember context;
    CErrorReporter reporter(context);
    EXPECT_EQ(reporter.ReportMethodNotSupported(), MakeStatus(0x80047011));
    EXPECT_EQ(TakenDescription(),
              "Kestrion: Does not support this class-compliant feature: method put_Thing.");
    EXPECT_EQ(reporter.ReportPropertyNotSupported(), MakeStatus(0x80047012));
    EXPECT_EQ(TakenDescription(),
              "Kestrion: Does not support this class-compliant feature: property put_Thing.");
    EXPECT_EQ(reporter.ReportInvalidValue("val", ValueText(true), {}), MakeStatus(0x80047010));
    EXPECT_EQ(TakenDescription(),
              "Kestrion: Invalid value (True) for method put_Thing, parameter val.");
    EXPECT_EQ(reporter.ReportValueNotSupported("7", "val"), MakeStatus(0x80047013));
    EXPECT_EQ(TakenDescription(),
              "Kestrion: Does not support this class-compliant feature: (enumeration) value 7 "
              "passed as the value for parameter val in method put_Thing.");
}

}  // namespace
}  // namespace kestrion
