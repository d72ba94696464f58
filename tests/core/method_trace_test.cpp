#include "core/method_trace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "core/parameter.h"
#include "kestrion/platform/bstr.h"
#include "kestrion/platform/error_info.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/variant.h"
#include "tests/core/fake_trace_host.h"
#include "tests/platform/allocation_count.h"

namespace kestrion {
namespace {

using test::FakeTraceHost;
using test::kDocumentBegin;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr HRESULT kFailure = static_cast<HRESULT>(0x80047017U);

std::size_t Count(const std::string& text, std::string_view part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

void SetError(std::u16string_view description) {
    ComPtr<ICreateErrorInfo> created;
    ASSERT_EQ(CreateErrorInfo(created.Out()), S_OK);
    ASSERT_EQ(created->SetDescription(std::u16string(description).c_str()), S_OK);
    ASSERT_EQ(SetErrorInfo(0, Query<IErrorInfo>(created.Get()).Get()), S_OK);
}

class MethodTraceTest : public testing::Test {
  protected:
    void SetUp() override {
        (void)SetErrorInfo(0, nullptr);
        writer_.enabled = true;
        ASSERT_EQ(writer_.Start(), S_OK);
    }
    void TearDown() override { (void)SetErrorInfo(0, nullptr); }

    template <typename Records>
    void Call(const Records& records, HRESULT status = S_OK) {
        const CMethodTrace trace(&writer_, "IKestrionAcquisition", "get_Mode", &status, records);
    }
    void Call(HRESULT status = S_OK) { Call(Parameters(), status); }

    // The records, with the thread's number taken out.
    std::string Body() const {
        EXPECT_TRUE(host_.Content().starts_with(kDocumentBegin));
        constexpr std::string_view kThread = "Thread=\"";
        std::string body = host_.Content().substr(kDocumentBegin.size());
        for (std::size_t at = body.find(kThread); at != std::string::npos;
             at = body.find(kThread, at)) {
            at += kThread.size();
            const std::size_t digits = body.find_first_not_of("0123456789", at) - at;
            EXPECT_GT(digits, 0U);
            body.replace(at, digits, "N");
        }
        return body;
    }
    // The one "Parameter" that a call with this record writes, with what is in it.
    std::string ParameterText(const ParameterRecord& record) {
        Call(Parameters(record));
        const std::string body = Body();
        EXPECT_EQ(Count(body, "<Parameter "), 1U);
        const auto from = body.find("<Parameter ");
        const auto to = body.find("\t<HRESULT");
        return body.substr(from, to - from);
    }

    FakeTraceHost host_;
    TraceWriter writer_{host_};
};

TEST_F(MethodTraceTest, AGetterWritesMethodOutParameterStatusAndExecution) {
    LONG val = 0;
    {
        const HRESULT status = S_OK;
        const auto records = Parameters(Out("val", &val));
        const CMethodTrace trace(&writer_, "IKestrionAcquisition", "get_Mode", &status, records);
        val = 3;
    }
    EXPECT_EQ(Body(),
              "<Method Name=\"get_Mode\" Interface=\"IKestrionAcquisition\" "
              "StartTime=\"14:5:7:89\" Thread=\"N\" Timestamp=\"5000\">\r\n"
              "\t<Parameter Name=\"val\" Direction=\"Out\" Value=\"3\" DataType=\"Int32\"/>\r\n"
              "\t<HRESULT Value=\"0x00000000\"/>\r\n"
              "\t<Execution ExecutionTime=\"2.500000e-01\"/>\r\n"
              "</Method>\r\n");
}

TEST_F(MethodTraceTest, ASetterWritesItsParameterAtEntry) {
    {
        const HRESULT status = S_OK;
        const auto records = Parameters(In("val", LONG{5}));
        const CMethodTrace trace(&writer_, "IKestrionAcquisition", "put_Mode", &status, records);
        EXPECT_THAT(
            host_.Content(),
            testing::EndsWith(
                "\t<Parameter Name=\"val\" Direction=\"In\" Value=\"5\" DataType=\"Int32\"/>\r\n"));
    }
    const std::string body = Body();
    EXPECT_EQ(Count(body, "<Parameter "), 1U);
    EXPECT_LT(body.find("<Parameter "), body.find("<HRESULT "));
}

TEST_F(MethodTraceTest, AnInOutParameterIsWrittenAtBothEndsWithItsValueThen) {
    LONG val = 1;
    {
        const HRESULT status = S_OK;
        const auto records = Parameters(InOut("val", &val));
        const CMethodTrace trace(&writer_, "I", "M", &status, records);
        val = 2;
    }
    const std::string body = Body();
    const auto before = body.find("Direction=\"InOut\" Value=\"1\"");
    const auto after = body.find("Direction=\"InOut\" Value=\"2\"");
    EXPECT_NE(before, std::string::npos);
    EXPECT_NE(after, std::string::npos);
    EXPECT_LT(before, after);
}

TEST_F(MethodTraceTest, ParametersKeepTheirOrderWithinEachEnd) {
    LONG first = 0;
    LONG second = 0;
    Call(Parameters(Out("a", &first), In("b", 1.0), Out("c", &second), In("d", 2.0)));
    const std::string body = Body();
    std::vector<std::size_t> places;
    for (const char* name : {"Name=\"b\"", "Name=\"d\"", "Name=\"a\"", "Name=\"c\"", "<HRESULT"}) {
        places.push_back(body.find(name));
    }
    EXPECT_TRUE(std::ranges::is_sorted(places)) << body;
}

TEST_F(MethodTraceTest, TheStatusIsTheOneAtExit) {
    {
        HRESULT status = S_OK;
        const CMethodTrace trace(&writer_, "I", "M", &status, Parameters());
        status = kFailure;
    }
    EXPECT_THAT(Body(), HasSubstr("<HRESULT Value=\"0x80047017\"/>"));
}

TEST_F(MethodTraceTest, AFailingCallHasTheMessageOfTheErrorObject) {
    SetError(u"Unexpected <response> from the instrument.\r\n");
    Call(kFailure);
    EXPECT_THAT(Body(), HasSubstr("<HRESULT Value=\"0x80047017\" Message=\"Unexpected "
                                  "&lt;response&gt; from the instrument.&#13;&#10;\"/>"));
}

TEST_F(MethodTraceTest, TheErrorObjectIsStillThereForTheCaller) {
    SetError(u"Kept.");
    Call(kFailure);
    ComPtr<IErrorInfo> error;
    ASSERT_EQ(GetErrorInfo(0, error.Out()), S_OK);
    BstrPtr description;
    ASSERT_EQ(error->GetDescription(description.Out()), S_OK);
    EXPECT_EQ(description.Utf8(), "Kept.");
}

TEST_F(MethodTraceTest, AFailingCallWithoutAnErrorObjectHasNoMessage) {
    Call(kFailure);
    EXPECT_THAT(Body(), Not(HasSubstr("Message")));
}

TEST_F(MethodTraceTest, ASuccessfulCallHasNoMessage) {
    SetError(u"Left over.");
    Call(S_OK);
    Call(S_FALSE);
    EXPECT_THAT(Body(), Not(HasSubstr("Message")));
    EXPECT_THAT(Body(), HasSubstr("<HRESULT Value=\"0x00000001\"/>"));
    ComPtr<IErrorInfo> error;
    EXPECT_EQ(GetErrorInfo(0, error.Out()), S_OK);
}

TEST_F(MethodTraceTest, ANestedCallStandsInsideOfTheOuterOne) {
    {
        const HRESULT status = S_OK;
        const CMethodTrace outer(&writer_, "IIviScopeAcquisition", "get_Type", &status,
                                 Parameters());
        const CMethodTrace inner(&writer_, "IKestrionAcquisition", "get_Mode", &status,
                                 Parameters());
    }
    EXPECT_EQ(Body(),
              "<Method Name=\"get_Type\" Interface=\"IIviScopeAcquisition\" "
              "StartTime=\"14:5:7:89\" Thread=\"N\" Timestamp=\"5000\">\r\n"
              "\t<Method Name=\"get_Mode\" Interface=\"IKestrionAcquisition\" "
              "StartTime=\"14:5:7:89\" Thread=\"N\" Timestamp=\"5250\">\r\n"
              "\t\t<HRESULT Value=\"0x00000000\"/>\r\n"
              "\t\t<Execution ExecutionTime=\"2.500000e-01\"/>\r\n"
              "\t</Method>\r\n"
              "\t<HRESULT Value=\"0x00000000\"/>\r\n"
              "\t<Execution ExecutionTime=\"7.500000e-01\"/>\r\n"
              "</Method>\r\n");
}

TEST_F(MethodTraceTest, RecordsThatInterleaveLoseTheirNestingButNotTheirTags) {
    const HRESULT status = S_OK;
    const HRESULT failure = kFailure;
    std::optional<CMethodTrace> first(std::in_place, &writer_, "I", "First", &status, Parameters());
    std::optional<CMethodTrace> second(std::in_place, &writer_, "I", "Second", &failure,
                                       Parameters());
    first.reset();
    second.reset();
    EXPECT_EQ(Body(),
              "<Method Name=\"First\" Interface=\"I\" "
              "StartTime=\"14:5:7:89\" Thread=\"N\" Timestamp=\"5000\">\r\n"
              "\t<Method Name=\"Second\" Interface=\"I\" "
              "StartTime=\"14:5:7:89\" Thread=\"N\" Timestamp=\"5250\">\r\n"
              "\t\t<HRESULT Value=\"0x00000000\"/>\r\n"
              "\t\t<Execution ExecutionTime=\"5.000000e-01\"/>\r\n"
              "\t</Method>\r\n"
              "\t<HRESULT Value=\"0x80047017\"/>\r\n"
              "\t<Execution ExecutionTime=\"5.000000e-01\"/>\r\n"
              "</Method>\r\n");
}

TEST_F(MethodTraceTest, OfMoreThanTwentyFiveRecordsTheFirstAreWritten) {
    std::array<ParameterRecord, 26> records;
    records.fill(In("kept", LONG{1}));
    records.back() = In("dropped", LONG{1});
    Call(records);
    EXPECT_EQ(Count(Body(), "Name=\"kept\""), 25U);
    EXPECT_THAT(Body(), Not(HasSubstr("dropped")));
}

TEST_F(MethodTraceTest, TheThreadIsTheCallersDecimalNumber) {
    Call();
    EXPECT_THAT(host_.Content(),
                HasSubstr("Thread=\"" + std::to_string(CurrentThreadNumber()) + "\""));
}

// Values of every kind.

TEST_F(MethodTraceTest, WritesWholeNumbersInDecimal) {
    EXPECT_EQ(ParameterText(In("v", LONG{-7})),
              "<Parameter Name=\"v\" Direction=\"In\" Value=\"-7\" DataType=\"Int32\"/>\r\n");
}

TEST_F(MethodTraceTest, WritesTheOtherWidthsOfNumbers) {
    Call(Parameters(In("v", LONGLONG{-5000000000}), In("v", std::uint64_t{18446744073709551615U}),
                    In("v", ULONG{4294967295U}), In("v", BYTE{200})));
    const std::string body = Body();
    EXPECT_THAT(body, HasSubstr("Value=\"-5000000000\" DataType=\"Int64\""));
    EXPECT_THAT(body, HasSubstr("Value=\"18446744073709551615\" DataType=\"UInt64\""));
    EXPECT_THAT(body, HasSubstr("Value=\"4294967295\" DataType=\"UInt32\""));
    EXPECT_THAT(body, HasSubstr("Value=\"200\" DataType=\"Byte\""));
}

TEST_F(MethodTraceTest, WritesRealNumbersWithFifteenDigits) {
    Call(Parameters(In("a", 0.1), In("b", 1.0 / 3.0), In("c", 1e-9), In("d", -2.5e20), In("e", 4.0),
                    In("f", 0.1F), In("g", std::numeric_limits<double>::infinity())));
    const std::string body = Body();
    EXPECT_THAT(body, HasSubstr("\"a\" Direction=\"In\" Value=\"0.1\" DataType=\"Double\""));
    EXPECT_THAT(body, HasSubstr("\"b\" Direction=\"In\" Value=\"0.333333333333333\""));
    EXPECT_THAT(body, HasSubstr("\"c\" Direction=\"In\" Value=\"1e-09\""));
    EXPECT_THAT(body, HasSubstr("\"d\" Direction=\"In\" Value=\"-2.5e+20\""));
    EXPECT_THAT(body, HasSubstr("\"e\" Direction=\"In\" Value=\"4\""));
    EXPECT_THAT(
        body, HasSubstr("\"f\" Direction=\"In\" Value=\"0.100000001490116\" DataType=\"Single\""));
    EXPECT_THAT(body, HasSubstr("\"g\" Direction=\"In\" Value=\"inf\""));
}

TEST_F(MethodTraceTest, WritesBooleansByTheirWords) {
    Call(Parameters(In("a", VARIANT_TRUE), In("b", VARIANT_FALSE), In("c", VARIANT_BOOL{1})));
    const std::string body = Body();
    EXPECT_THAT(body, HasSubstr("\"a\" Direction=\"In\" Value=\"true\" DataType=\"Boolean\""));
    EXPECT_THAT(body, HasSubstr("\"b\" Direction=\"In\" Value=\"false\" DataType=\"Boolean\""));
    EXPECT_THAT(body, HasSubstr("\"c\" Direction=\"In\" Value=\"true\" DataType=\"Boolean\""));
}

TEST_F(MethodTraceTest, WritesTextAsItStands) {
    const BstrPtr text(u"Ch\u00E4nnel \"1\" ]]>\x01");
    EXPECT_EQ(ParameterText(In("v", text.Get())),
              "<Parameter Name=\"v\" Direction=\"In\" "
              "Value=\"Ch\u00E4nnel &quot;1&quot; ]]&gt;\uFFFD\" DataType=\"String\"/>\r\n");
}

TEST_F(MethodTraceTest, AnEmptyTextIsNotANullOne) {
    const BstrPtr empty(u"");
    Call(Parameters(In("a", empty.Get()), In("b", BSTR{nullptr})));
    EXPECT_THAT(Body(), HasSubstr("\"a\" Direction=\"In\" Value=\"\" DataType=\"String\""));
    EXPECT_THAT(Body(), HasSubstr("\"b\" Direction=\"In\" Value=\"(null)\" DataType=\"String\""));
}

TEST_F(MethodTraceTest, AnInterfaceIsThereOrNull) {
    ComPtr<ICreateErrorInfo> object;
    ASSERT_EQ(CreateErrorInfo(object.Out()), S_OK);
    ICreateErrorInfo* none = nullptr;
    Call(Parameters(In("a", object.Get()), Out("b", &none)));
    EXPECT_THAT(Body(),
                HasSubstr("\"a\" Direction=\"In\" Value=\"(interface)\" DataType=\"IUnknown\""));
    EXPECT_THAT(Body(),
                HasSubstr("\"b\" Direction=\"Out\" Value=\"(null)\" DataType=\"IUnknown\""));
}

TEST_F(MethodTraceTest, AVariantIsThereOrEmpty) {
    VARIANT full{};
    full.vt = VT_I4;
    VARIANT empty{};
    Call(Parameters(Out("a", &full), Out("b", &empty)));
    EXPECT_THAT(Body(),
                HasSubstr("\"a\" Direction=\"Out\" Value=\"(variant)\" DataType=\"VARIANT\""));
    EXPECT_THAT(Body(),
                HasSubstr("\"b\" Direction=\"Out\" Value=\"(empty)\" DataType=\"VARIANT\""));
}

TEST_F(MethodTraceTest, AnythingElseIsUnknown) {
    ParameterRecord record = In("v", LONG{1});
    record.kind = 99;
    EXPECT_EQ(ParameterText(record),
              "<Parameter Name=\"v\" Direction=\"In\" Value=\"(unknown)\" "
              "DataType=\"(unknown)\"/>\r\n");
}

TEST_F(MethodTraceTest, EachKindHasItsName) {
    struct Row {
        VARTYPE kind;
        const char* name;
    };
    constexpr Row kRows[] = {{VT_I2, "Int16"},        {VT_I4, "Int32"},
                             {VT_I8, "Int64"},        {VT_UI2, "UInt16"},
                             {VT_UI4, "UInt32"},      {VT_UI8, "UInt64"},
                             {VT_R4, "Single"},       {VT_R8, "Double"},
                             {VT_BOOL, "Boolean"},    {VT_UI1, "Byte"},
                             {VT_I1, "Char"},         {VT_BSTR, "String"},
                             {VT_VARIANT, "VARIANT"}, {VT_DISPATCH, "IDispatch"},
                             {VT_UNKNOWN, "IUnknown"}};
    VARIANT zero{};
    for (const Row& row : kRows) {
        ParameterRecord record = Out("v", &zero);
        record.kind = row.kind;
        Call(Parameters(record));
        EXPECT_THAT(Body(), HasSubstr("DataType=\"" + std::string(row.name) + "\"/>"));
    }
    EXPECT_THAT(Body(), Not(HasSubstr("unknown")));
}

TEST_F(MethodTraceTest, EachKindOfArrayHasItsNameWithBrackets) {
    const std::pair<VARTYPE, const char*> kinds[] = {
        {VT_I2, "Int16[]"},         {VT_I4, "Int32[]"},
        {VT_I8, "Int64[]"},         {VT_UI2, "UInt16[]"},
        {VT_UI4, "UInt32[]"},       {VT_UI8, "UInt64[]"},
        {VT_R4, "Single[]"},        {VT_R8, "Double[]"},
        {VT_BOOL, "Boolean[]"},     {VT_UI1, "Byte[]"},
        {VT_I1, "Char[]"},          {VT_BSTR, "String[]"},
        {VT_VARIANT, "VARIANT[]"},  {VT_DISPATCH, "IDispatch[]"},
        {VT_UNKNOWN, "IUnknown[]"}, {VARTYPE{99}, "(unknown)"}};
    SAFEARRAY* none = nullptr;
    for (const auto& [kind, name] : kinds) {
        Call(Parameters(OutArray("out", &none, kind), InArray("in", none, kind)));
        EXPECT_EQ(Count(Body(), "DataType=\"" + std::string(name) + "\"/>"), 2U) << name;
    }
}

TEST_F(MethodTraceTest, AnArrayThatTheBodyMadeIsWrittenAtExit) {
    writer_.traceArrays = true;
    SafeArrayPtr array;
    SAFEARRAY* target = nullptr;
    {
        const HRESULT status = S_OK;
        const auto records = Parameters(OutArray("val", &target, VT_I4));
        const CMethodTrace trace(&writer_, "I", "M", &status, records);
        array = SafeArrayPtr(SafeArrayCreateVector(VT_I4, 0, 2));
        array.Elements<LONG>()[1] = 7;
        target = array.Get();
    }
    EXPECT_THAT(Body(), HasSubstr("NumDims=\"1\" DimSizes=\"2\" DataType=\"Int32[]\">\r\n"
                                  "\t\t<Element Value=\"0\"/>\r\n"
                                  "\t\t<Element Value=\"7\"/>\r\n"));
}

TEST_F(MethodTraceTest, ANullTargetIsNull) {
    EXPECT_EQ(ParameterText(Out("v", static_cast<LONG*>(nullptr))),
              "<Parameter Name=\"v\" Direction=\"Out\" Value=\"(null)\" DataType=\"Int32\"/>\r\n");
}

TEST_F(MethodTraceTest, NamesFromOutsideAreEscaped) {
    const HRESULT status = S_OK;
    { const CMethodTrace trace(&writer_, "I<\">", "M&", &status, Parameters()); }
    EXPECT_THAT(Body(), HasSubstr("Name=\"M&amp;\" Interface=\"I&lt;&quot;&gt;\""));
}

// Arrays.

TEST_F(MethodTraceTest, AnArrayIsWrittenWithoutItsElementsWhenThatIsOff) {
    SafeArrayPtr array(SafeArrayCreateVector(VT_R8, 0, 1000));
    SAFEARRAY* raw = array.Get();
    EXPECT_EQ(ParameterText(Out("v", &raw)),
              "<Parameter Name=\"v\" Direction=\"Out\" NumDims=\"1\" DimSizes=\"1000\" "
              "DataType=\"Double[]\"/>\r\n");
}

TEST_F(MethodTraceTest, AnArrayIsWrittenUpToTheLimitWhenElementsAreOn) {
    writer_.traceArrays = true;
    SafeArrayPtr array(SafeArrayCreateVector(VT_R8, 5, 1000));
    for (std::size_t i = 0; i < 1000; ++i) {
        array.Elements<double>()[i] = static_cast<double>(i) / 2;
    }
    const std::string text = ParameterText(In("v", array.Get()));
    EXPECT_EQ(Count(text, "<Element "), 10U);
    EXPECT_EQ(text,
              "<Parameter Name=\"v\" Direction=\"In\" NumDims=\"1\" DimSizes=\"1000\" "
              "DataType=\"Double[]\">\r\n"
              "\t\t<Element Value=\"0\"/>\r\n"
              "\t\t<Element Value=\"0.5\"/>\r\n"
              "\t\t<Element Value=\"1\"/>\r\n"
              "\t\t<Element Value=\"1.5\"/>\r\n"
              "\t\t<Element Value=\"2\"/>\r\n"
              "\t\t<Element Value=\"2.5\"/>\r\n"
              "\t\t<Element Value=\"3\"/>\r\n"
              "\t\t<Element Value=\"3.5\"/>\r\n"
              "\t\t<Element Value=\"4\"/>\r\n"
              "\t\t<Element Value=\"4.5\"/>\r\n"
              "\t</Parameter>\r\n");
}

TEST_F(MethodTraceTest, AShortArrayIsWrittenWhole) {
    writer_.traceArrays = true;
    SafeArrayPtr array(SafeArrayCreateVector(VT_BSTR, 0, 2));
    array.Elements<BSTR>()[0] = MakeBstr(u"a<");
    EXPECT_EQ(ParameterText(In("v", array.Get())),
              "<Parameter Name=\"v\" Direction=\"In\" NumDims=\"1\" DimSizes=\"2\" "
              "DataType=\"String[]\">\r\n"
              "\t\t<Element Value=\"a&lt;\"/>\r\n"
              "\t\t<Element Value=\"(null)\"/>\r\n"
              "\t</Parameter>\r\n");
}

TEST_F(MethodTraceTest, TheDimensionsStandInTheirOrder) {
    writer_.traceArrays = true;
    writer_.arraySizeMax = 4;
    const SAFEARRAYBOUND bounds[] = {{3, 0}, {2, 1}};
    SafeArrayPtr array(SafeArrayCreate(VT_I4, 2, bounds));
    for (LONG row = 0; row < 3; ++row) {
        for (LONG column = 1; column <= 2; ++column) {
            const LONG place[] = {row, column};
            const LONG value = 10 * row + column;
            ASSERT_EQ(SafeArrayPutElement(array.Get(), place, &value), S_OK);
        }
    }
    EXPECT_EQ(ParameterText(In("v", array.Get())),
              "<Parameter Name=\"v\" Direction=\"In\" NumDims=\"2\" DimSizes=\"3,2\" "
              "DataType=\"Int32[]\">\r\n"
              "\t\t<Element Value=\"1\"/>\r\n"
              "\t\t<Element Value=\"11\"/>\r\n"
              "\t\t<Element Value=\"21\"/>\r\n"
              "\t\t<Element Value=\"2\"/>\r\n"
              "\t</Parameter>\r\n");
}

TEST_F(MethodTraceTest, AnEmptyArrayHasTheSizeZero) {
    writer_.traceArrays = true;
    SafeArrayPtr array(SafeArrayCreateVector(VT_I4, 0, 0));
    EXPECT_EQ(ParameterText(In("v", array.Get())),
              "<Parameter Name=\"v\" Direction=\"In\" NumDims=\"1\" DimSizes=\"0\" "
              "DataType=\"Int32[]\"/>\r\n");
}

TEST_F(MethodTraceTest, ALimitBelowZeroWritesNoElements) {
    writer_.traceArrays = true;
    writer_.arraySizeMax = -1;
    SafeArrayPtr array(SafeArrayCreateVector(VT_I4, 0, 5));
    EXPECT_THAT(ParameterText(In("v", array.Get())), Not(HasSubstr("Element")));
}

TEST_F(MethodTraceTest, ANullArrayIsNull) {
    SAFEARRAY* none = nullptr;
    Call(Parameters(OutArray("a", &none, VT_R8), Out("b", &none),
                    Out("c", static_cast<SAFEARRAY**>(nullptr))));
    EXPECT_THAT(Body(),
                HasSubstr("\"a\" Direction=\"Out\" Value=\"(null)\" DataType=\"Double[]\"/>"));
    EXPECT_THAT(Body(),
                HasSubstr("\"b\" Direction=\"Out\" Value=\"(null)\" DataType=\"(unknown)\"/>"));
    EXPECT_THAT(Body(),
                HasSubstr("\"c\" Direction=\"Out\" Value=\"(null)\" DataType=\"(unknown)\"/>"));
}

TEST_F(MethodTraceTest, AnArrayIsUnlockedAgain) {
    writer_.traceArrays = true;
    SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 0, 5);
    Call(Parameters(In("v", array)));
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

// Saving, stopping and failing.

TEST_F(MethodTraceTest, AnIntervalOfZeroFlushesAfterEachRecord) {
    writer_.saveInterval = 0;
    Call();
    EXPECT_EQ(host_.File().flushes, 1);
    Call();
    EXPECT_EQ(host_.File().flushes, 2);
}

TEST_F(MethodTraceTest, WithinTheIntervalNothingIsFlushed) {
    // 1000 seconds are 16 minutes.
    writer_.saveInterval = 17;
    Call();
    EXPECT_EQ(host_.File().flushes, 0);
}

TEST_F(MethodTraceTest, TheSizeLimitStopsNewRecordsAndLetsOpenOnesEnd) {
    writer_.saveInterval = 0;
    writer_.sizeMax = 10;
    {
        const HRESULT status = S_OK;
        const CMethodTrace outer(&writer_, "I", "Outer", &status, Parameters());
        Call();
        EXPECT_EQ(writer_.RunState(), TraceRunState::kSizeLimit);
        Call();
    }
    EXPECT_EQ(Count(Body(), "<Method "), 2U);
    EXPECT_EQ(Count(Body(), "</Method>"), 2U);
}

TEST_F(MethodTraceTest, ClosingEndsTheFileBehindTheRecordThatEndsNext) {
    {
        const HRESULT status = S_OK;
        const CMethodTrace trace(&writer_, "IIviDriver", "Close", &status, Parameters());
        writer_.closing = true;
    }
    EXPECT_TRUE(Body().ends_with("</Method>\r\n</TraceRecords>\r\n"));
    EXPECT_FALSE(host_.File().isOpen);
    EXPECT_FALSE(writer_.closing);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kStopped);
}

TEST_F(MethodTraceTest, ClosingEndsTheFileEvenBehindTheSizeLimit) {
    writer_.saveInterval = 0;
    writer_.sizeMax = 10;
    Call();
    ASSERT_EQ(writer_.RunState(), TraceRunState::kSizeLimit);
    {
        const HRESULT status = S_OK;
        const CMethodTrace trace(&writer_, "IIviDriver", "Close", &status, Parameters());
        writer_.closing = true;
    }
    EXPECT_EQ(Count(Body(), "<Method "), 1U);
    EXPECT_FALSE(host_.File().isOpen);
    EXPECT_EQ(writer_.RunState(), TraceRunState::kStopped);
}

TEST_F(MethodTraceTest, ARecordDoesNotEndInAnotherFileThanItBeganIn) {
    {
        const HRESULT status = S_OK;
        const CMethodTrace trace(&writer_, "I", "M", &status, Parameters());
        ASSERT_EQ(writer_.Stop(), S_OK);
        ASSERT_EQ(writer_.Start(), S_OK);
    }
    ASSERT_THAT(host_.files, SizeIs(2));
    EXPECT_EQ(host_.files[1]->content, kDocumentBegin);
    EXPECT_THAT(host_.files[0]->content,
                testing::EndsWith(" Timestamp=\"5000\"/>\r\n</TraceRecords>\r\n"));
}

TEST_F(MethodTraceTest, AWriteFailureDoesNotReachTheCallAndSavesNothing) {
    writer_.saveInterval = 0;
    host_.File().writeStatus = static_cast<HRESULT>(0x80070070U);
    const HRESULT status = S_OK;
    { const CMethodTrace trace(&writer_, "I", "M", &status, Parameters()); }
    EXPECT_EQ(status, S_OK);
    EXPECT_EQ(host_.File().flushes, 0);
    host_.File().writeStatus = S_OK;
    Call();
    EXPECT_EQ(Count(Body(), "<Method "), 1U);
    EXPECT_EQ(host_.File().flushes, 1);
}

TEST_F(MethodTraceTest, AFailureOfTheEntryAloneSavesNothingEither) {
    writer_.saveInterval = 0;
    host_.File().writeStatus = static_cast<HRESULT>(0x80070070U);
    {
        const HRESULT status = S_OK;
        const CMethodTrace trace(&writer_, "I", "M", &status, Parameters());
        host_.File().writeStatus = S_OK;
    }
    EXPECT_EQ(host_.File().flushes, 0);
}

TEST_F(MethodTraceTest, WithoutAWriterNothingHappens) {
    const HRESULT status = S_OK;
    EXPECT_EQ(test::CountAllocations(
                  [&] { const CMethodTrace trace(nullptr, "I", "M", &status, Parameters()); }),
              0U);
}

TEST_F(MethodTraceTest, AStoppedTraceWritesAndAllocatesNothing) {
    ASSERT_EQ(writer_.Stop(), S_OK);
    const std::string before = host_.Content();
    LONG val = 0;
    const HRESULT status = kFailure;
    const std::uint64_t counter = host_.counter;
    EXPECT_EQ(test::CountAllocations([&] {
                  const auto records = Parameters(Out("val", &val), In("other", 1.0));
                  const CMethodTrace trace(&writer_, "I", "M", &status, records);
              }),
              0U);
    EXPECT_EQ(host_.Content(), before);
    EXPECT_EQ(host_.counter, counter) << "not even the time is taken";
}

TEST_F(MethodTraceTest, ACallThatBeganBeforeTheTraceLeavesNoRecord) {
    ASSERT_EQ(writer_.Stop(), S_OK);
    {
        const HRESULT status = S_OK;
        const CMethodTrace trace(&writer_, "IIviDriver", "Initialize", &status, Parameters());
        ASSERT_EQ(writer_.Start(), S_OK);
    }
    EXPECT_EQ(host_.Content(), kDocumentBegin);
}

// Listeners.

TEST_F(MethodTraceTest, AListenerGetsEachRecordWithTheProcess) {
    std::vector<std::string> records;
    std::uint32_t process = 0;
    writer_.AddListener([&](std::uint32_t id, std::string_view record) {
        process = id;
        records.emplace_back(record);
    });
    Call();
    Call();
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_TRUE(records[0].starts_with("<Method Name=\"get_Mode\""));
    EXPECT_TRUE(records[0].ends_with("</Method>"));
    EXPECT_TRUE(records[1].starts_with("\r\n<Method "))
        << "from behind the former one's last \">\"";
    EXPECT_TRUE(records[1].ends_with("</Method>"));
    EXPECT_EQ(process, CurrentProcessNumber());
}

TEST_F(MethodTraceTest, TheEndOfANestedCallIsAnEventOfItsOwn) {
    std::vector<std::string> records;
    writer_.AddListener(
        [&](std::uint32_t, std::string_view record) { records.emplace_back(record); });
    {
        const HRESULT status = S_OK;
        const CMethodTrace outer(&writer_, "I", "Outer", &status, Parameters());
        const CMethodTrace inner(&writer_, "I", "Inner", &status, Parameters());
    }
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_THAT(records[0], HasSubstr("Outer"));
    EXPECT_THAT(records[0], HasSubstr("Inner"));
    EXPECT_EQ(Count(records[0], "<HRESULT"), 1U);
    EXPECT_THAT(records[1], Not(HasSubstr("<Method")));
    EXPECT_EQ(Count(records[1], "<HRESULT"), 1U);
}

TEST_F(MethodTraceTest, ARemovedListenerGetsNothing) {
    int first = 0;
    int second = 0;
    const std::int32_t number =
        writer_.AddListener([&](std::uint32_t, std::string_view) { ++first; });
    writer_.AddListener([&](std::uint32_t, std::string_view) { ++second; });
    Call();
    writer_.RemoveListener(number);
    writer_.RemoveListener(99);
    Call();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

TEST_F(MethodTraceTest, AListenerMayMakeACallOfItsOwn) {
    int depth = 0;
    writer_.AddListener([&](std::uint32_t, std::string_view) {
        if (++depth == 1) {
            Call();
        }
    });
    Call();
    EXPECT_EQ(depth, 2);
    EXPECT_EQ(Count(Body(), "<Method "), 2U);
}

TEST_F(MethodTraceTest, WhatAListenerThrowsIsDropped) {
    int reached = 0;
    writer_.AddListener(
        [](std::uint32_t, std::string_view) { throw std::runtime_error("listener"); });
    writer_.AddListener([&](std::uint32_t, std::string_view) { ++reached; });
    writer_.saveInterval = 0;
    Call();
    EXPECT_EQ(reached, 1);
    EXPECT_EQ(host_.File().flushes, 1);
}

TEST_F(MethodTraceTest, ThreadsMayInterleaveTheirRecords) {
    constexpr int kThreads = 8;
    constexpr int kCalls = 100;
    // One time for all: the fake's counter isn't made for threads.
    TraceWriter writer;
    writer.traceName = testing::TempDir() + "method_trace_threads.xml";
    writer.enabled = true;
    ASSERT_EQ(writer.Start(), S_OK);
    std::atomic<int> events{0};
    writer.AddListener([&](std::uint32_t, std::string_view) { ++events; });
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&writer] {
            for (LONG call = 0; call < kCalls; ++call) {
                const HRESULT status = S_OK;
                const auto records = Parameters(In("val", call));
                const CMethodTrace trace(&writer, "I", "M", &status, records);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(writer.Stop(), S_OK);
    EXPECT_EQ(events, kThreads * kCalls);
    // Records may stand inside of each other, but each begins and ends.
    std::ostringstream text;
    text << std::ifstream(writer.traceName, std::ios::binary).rdbuf();
    EXPECT_EQ(Count(text.str(), "<Method "), std::size_t{kThreads * kCalls});
    EXPECT_EQ(Count(text.str(), "</Method>"), std::size_t{kThreads * kCalls});
    EXPECT_EQ(Count(text.str(), "<Parameter "), std::size_t{kThreads * kCalls});
    std::filesystem::remove(writer.traceName);
}

}  // namespace
}  // namespace kestrion
