// The operations on text and bytes in all their forms: what goes over the wire, call by call, what
// the caller gets, and whether the instrument's status is polled behind it.
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "tests/io/session_fixture.h"

namespace kestrion {
namespace {

struct Operation {
    std::string name;
    std::string response;  // what waits in the instrument; none if empty
    std::function<HRESULT(CVisaCSession&, std::string& got)> run;
    std::vector<std::string> calls;
    int polls;
    std::string got = {};
    HRESULT status = S_OK;
};

using Session = CVisaCSession&;
using Text = std::string&;

const std::string kWrite = "viWrite(\"CH 1\\n\")";
const std::string kAsk = "viWrite(\"Q?\\n\")";
const std::string kRead = "viRead(4096)";

// The text of a wide result.
std::string Narrow(const BstrPtr& text) {
    const std::u16string_view wide = text.View();
    return {wide.begin(), wide.end()};
}

std::string Of(const SafeArrayPtr& bytes) {
    const auto elements = bytes.Elements<BYTE>();
    return {elements.begin(), elements.end()};
}

const BYTE* Bytes(const char* text) {
    return reinterpret_cast<const BYTE*>(text);
}

SafeArrayPtr ArrayOf(const char* text) {
    return MakeArray(std::vector<BYTE>(text, text + std::strlen(text)));
}

std::vector<Operation> FormattedWrites() {
    return {
        {"Printf", "", [](Session s, Text) { return s.Printf("CH %d", 1); }, {kWrite}, 1},
        {"VPrintf",
         "",
         [](Session s, Text) { return s.VPrintf("CH %d", PackArgs(1)); },
         {kWrite},
         1},
        {"PrintfNoFlush", "", [](Session s, Text) { return s.PrintfNoFlush("CH %d", 1); }, {}, 0},
        {"VPrintfNoFlush",
         "",
         [](Session s, Text) {
             const HRESULT status = s.VPrintfNoFlush("CH %d", PackArgs(1));
             return Failed(status) ? status : s.FlushWrite(true);
         },
         {kWrite},
         0},
    };
}

std::vector<Operation> FormattedReads() {
    return {
        {"Scanf",
         "1;2\n",
         [](Session s, Text got) { return s.Scanf("%$C[^;]", &got); },
         {kRead},
         1,
         "1"},
        {"ScanfNoFlush",
         "1;2\n",
         [](Session s, Text got) { return s.ScanfNoFlush("%$C[^;]", &got); },
         {kRead},
         0,
         "1",
         IoStatusMoreData},
        {"ScanfTimeout",
         "1;2\n",
         [](Session s, Text got) { return s.ScanfTimeout("%$C[^;]", 700, &got); },
         {"viGetAttribute(TMO_VALUE)", "viSetAttribute(TMO_VALUE, 700)", kRead,
          "viSetAttribute(TMO_VALUE, 2000)"},
         1,
         "1"},
        {"ScanfTimeoutNoFlush",
         "1;2\n",
         [](Session s, Text got) { return s.ScanfTimeoutNoFlush("%$C[^;]", -2, &got); },
         {kRead},
         0,
         "1",
         IoStatusMoreData},
        {"VScanf",
         "1;2\n",
         [](Session s, Text got) { return s.VScanf("%$C[^;]", -2, PackArgs(&got)); },
         {kRead},
         1,
         "1"},
        {"VScanfNoFlush",
         "1;2\n",
         [](Session s, Text got) { return s.VScanfNoFlush("%$C[^;]", -2, PackArgs(&got)); },
         {kRead},
         0,
         "1",
         IoStatusMoreData},
    };
}

std::vector<Operation> FormattedQueries() {
    return {
        {"Queryf",
         "AB\n",
         [](Session s, Text got) { return s.Queryf("%s?", "%$Ct", "Q", &got); },
         {kAsk, kRead},
         1,
         "AB"},
        {"QueryfNoPoll",
         "AB\n",
         [](Session s, Text got) { return s.QueryfNoPoll("%s?", "%$Ct", "Q", &got); },
         {kAsk, kRead},
         0,
         "AB"},
        {"QueryfTimeout",
         "AB\n",
         [](Session s, Text got) { return s.QueryfTimeout("Q?", "%$Ct", 700, &got); },
         {"viGetAttribute(TMO_VALUE)", "viSetAttribute(TMO_VALUE, 700)", kAsk, kRead,
          "viSetAttribute(TMO_VALUE, 2000)"},
         1,
         "AB"},
        {"QueryfTimeoutNoPoll",
         "AB\n",
         [](Session s, Text got) { return s.QueryfTimeoutNoPoll("Q?", "%$Ct", -2, &got); },
         {kAsk, kRead},
         0,
         "AB"},
        {"VQueryf",
         "AB\n",
         [](Session s, Text got) { return s.VQueryf("Q?", "%$Ct", -2, PackArgs(&got)); },
         {kAsk, kRead},
         1,
         "AB"},
        {"VQueryfNoPoll",
         "AB\n",
         [](Session s, Text got) { return s.VQueryfNoPoll("Q?", "%$Ct", -2, PackArgs(&got)); },
         {kAsk, kRead},
         0,
         "AB"},
    };
}

std::vector<Operation> TextQueriesAndReads() {
    return {
        {"QueryString",
         "AB\n",
         [](Session s, Text got) { return s.QueryString("Q?", &got); },
         {kAsk, kRead},
         1,
         "AB"},
        {"QueryStringNoPoll",
         "AB\n",
         [](Session s, Text got) { return s.QueryStringNoPoll("Q?", &got); },
         {kAsk, kRead},
         0,
         "AB"},
        {"QueryStringWide",
         "AB\n",
         [](Session s, Text got) {
             BstrPtr text;
             const HRESULT status = s.QueryString("Q?", text.Out());
             got = Narrow(text);
             return status;
         },
         {kAsk, kRead},
         1,
         "AB"},
        {"QueryStringWideNoPoll",
         "AB\n",
         [](Session s, Text got) {
             BstrPtr text;
             const HRESULT status = s.QueryStringNoPoll("Q?", text.Out());
             got = Narrow(text);
             return status;
         },
         {kAsk, kRead},
         0,
         "AB"},
        {"ReadString",
         "AB\n",
         [](Session s, Text got) { return s.ReadString(&got); },
         {kRead},
         1,
         "AB"},
        {"ReadStringNoPoll",
         "AB\n",
         [](Session s, Text got) { return s.ReadStringNoPoll(&got); },
         {kRead},
         0,
         "AB"},
        {"ReadStringWide",
         "AB\n",
         [](Session s, Text got) {
             BstrPtr text;
             const HRESULT status = s.ReadString(text.Out());
             got = Narrow(text);
             return status;
         },
         {kRead},
         1,
         "AB"},
        {"ReadStringWideNoPoll",
         "AB\n",
         [](Session s, Text got) {
             BstrPtr text;
             const HRESULT status = s.ReadStringNoPoll(text.Out());
             got = Narrow(text);
             return status;
         },
         {kRead},
         0,
         "AB"},
        {"ReadListOfTexts",
         "AB;CD\n",
         [](Session s, Text got) {
             std::string texts[2];
             std::int32_t actual = 0;
             const HRESULT status = s.ReadList(texts, 2, &actual, ";");
             got = texts[0] + " " + texts[1];
             return status;
         },
         {kRead},
         1,
         "AB CD"},
        {"QueryListOfTextsNoPoll",
         "AB;CD\n",
         [](Session s, Text got) {
             std::string texts[2];
             std::int32_t actual = 0;
             const HRESULT status = s.QueryListNoPoll("Q?", texts, 2, &actual, ";");
             got = texts[0] + " " + texts[1];
             return status;
         },
         {kAsk, kRead},
         0,
         "AB CD"},
    };
}

std::vector<Operation> TextAndByteWrites() {
    return {
        {"WriteString",
         "",
         [](Session s, Text) { return s.WriteString("CH 1", true); },
         {kWrite},
         1},
        {"WriteStringNoPoll",
         "",
         [](Session s, Text) { return s.WriteStringNoPoll("CH 1", true); },
         {kWrite},
         0},
        {"WriteStringWide",
         "",
         [](Session s, Text) { return s.WriteString(std::u16string_view(u"CH 1"), true); },
         {kWrite},
         1},
        {"WriteStringWideNoPoll",
         "",
         [](Session s, Text) { return s.WriteStringNoPoll(std::u16string_view(u"CH 1"), true); },
         {kWrite},
         0},
        {"WriteStringCounted",
         "",
         [](Session s, Text) {
             return s.WriteString(BstrPtr(std::u16string_view(u"CH 1")).Get(), true);
         },
         {kWrite},
         1},
        {"WriteStringCountedNoPoll",
         "",
         [](Session s, Text) {
             return s.WriteStringNoPoll(BstrPtr(std::u16string_view(u"CH 1")).Get(), true);
         },
         {kWrite},
         0},
        {"WriteBytes",
         "",
         [](Session s, Text) { return s.WriteBytes(Bytes("CH 1"), 4, nullptr, true); },
         {kWrite},
         1},
        {"WriteBytesNoPoll",
         "",
         [](Session s, Text) { return s.WriteBytesNoPoll(Bytes("CH 1"), 4, nullptr, true); },
         {kWrite},
         0},
        {"WriteBytesOfAnArray",
         "",
         [](Session s, Text) { return s.WriteBytes(ArrayOf("CH 1").Get(), true); },
         {kWrite},
         1},
        {"WriteBytesOfAnArrayNoPoll",
         "",
         [](Session s, Text) { return s.WriteBytesNoPoll(ArrayOf("CH 1").Get(), true); },
         {kWrite},
         0},
        {"WriteChar",
         "",
         [](Session s, Text) { return s.WriteChar('X', true); },
         {"viWrite(\"X\\n\")"},
         0},
    };
}

std::vector<Operation> ByteReads() {
    return {
        {"ReadBytes",
         "ABC\n",
         [](Session s, Text got) {
             BYTE bytes[2] = {};
             const HRESULT status = s.ReadBytes(bytes, 2, nullptr, false);
             got.assign(bytes, bytes + 2);
             return status;
         },
         {kRead},
         1,
         "AB",
         IoStatusMoreData},
        {"ReadBytesNoPoll",
         "ABC\n",
         [](Session s, Text got) {
             BYTE bytes[2] = {};
             const HRESULT status = s.ReadBytesNoPoll(bytes, 2, nullptr, true);
             got.assign(bytes, bytes + 2);
             return status;
         },
         {kRead},
         0,
         "AB"},
        {"ReadBytesOfAnArray",
         "ABC\n",
         [](Session s, Text got) {
             SafeArrayPtr array;
             const HRESULT status = s.ReadBytes(array.Out(), 9, true);
             got = Of(array);
             return status;
         },
         {kRead},
         1,
         "ABC"},
        {"ReadBytesOfAnArrayNoPoll",
         "ABC\n",
         [](Session s, Text got) {
             SafeArrayPtr array;
             const HRESULT status = s.ReadBytesNoPoll(array.Out(), 9, true);
             got = Of(array);
             return status;
         },
         {kRead},
         0,
         "ABC"},
        {"ReadChar",
         "ABC\n",
         [](Session s, Text got) {
             BYTE byte = 0;
             const HRESULT status = s.ReadChar(&byte, true);
             got = static_cast<char>(byte);
             return status;
         },
         {kRead},
         0,
         "A"},
    };
}

std::vector<Operation> Operations() {
    std::vector<Operation> all;
    for (auto* family : {FormattedWrites, FormattedReads, FormattedQueries, TextQueriesAndReads,
                         TextAndByteWrites, ByteReads}) {
        for (Operation& operation : family()) {
            all.push_back(std::move(operation));
        }
    }
    return all;
}

class SessionTranscript : public OpenSessionFixture,
                          public testing::WithParamInterface<Operation> {};

TEST_P(SessionTranscript, IsAsExpected) {
    const Operation& operation = GetParam();
    if (!operation.response.empty()) {
        fake.Respond(operation.response);
    }
    std::string got;
    EXPECT_EQ(operation.run(session, got), operation.status);
    EXPECT_EQ(got, operation.got);
    EXPECT_EQ(fake.Calls(), operation.calls);
    EXPECT_EQ(poller.polls, operation.polls);
}

// The same operation on a session that is closed reaches nothing and polls nothing.
TEST_P(SessionTranscript, ClosedSessionReachesNothing) {
    ASSERT_EQ(session.Close(), S_OK);
    session.SetClosedReporter(&reporter);
    fake.ForgetCalls();
    std::string got;
    EXPECT_EQ(GetParam().run(session, got), kNotInitializedStatus);
    EXPECT_THAT(fake.Calls(), testing::IsEmpty());
    EXPECT_EQ(poller.polls, 0);
}

INSTANTIATE_TEST_SUITE_P(All, SessionTranscript, testing::ValuesIn(Operations()),
                         [](const testing::TestParamInfo<Operation>& parameter) {
                             return parameter.param.name;
                         });

}  // namespace
}  // namespace kestrion
